// Reads any bytes as a known_hosts file, writes it, reads and writes again: the second write must
// equal the first (or, where a shielded first host changes meaning, the third the second), and the document must keep one record per line with errors on exactly the lines
// that could not be read.
#include "KnownHostsService.h"

#include <QString>

#include <cstddef>
#include <cstdint>

namespace
{
void check(bool condition)
{
    if (!condition)
        __builtin_trap();
}

qsizetype countLines(const QString& text)
{
    qsizetype lines = 1;
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        if ((u >= 0x0A && u <= 0x0D) || u == 0x85 || u == 0x2028 || u == 0x2029)
            ++lines;
    }
    return lines;
}

void checkInvariants(const QString& text, const KnownHostsParseResult& result)
{
    const QList<KnownHostsRecord>& records = result.document.records();
    check(records.size() == countLines(text));
    qsizetype nextError = 0;
    for (qsizetype i = 0; i < records.size(); ++i) {
        const KnownHostsRecordKind& kind = records[i].kind();
        if (kind.isInvalid()) {
            check(nextError < result.errors.size() && result.errors[nextError].line() == i + 1);
            check(result.errors[nextError].message() == KnownHostsParseError::invalidLineMessage());
            ++nextError;
        }
        if (const KnownHostEntry* entry = kind.entry()) {
            check(entry->lineNumber() == i + 1);
            check(!entry->hosts().isEmpty() && !entry->hosts().contains(QString()));
            check(!entry->keyType().isEmpty() && !entry->key().isEmpty());
            check(!entry->id().isNull() && entry->id() != records[i].id());
        }
        if (kind.isComment())
            check(kind.text().startsWith(u'#'));
    }
    check(nextError == result.errors.size());
}

// The writer joins the hosts with "," and puts nothing before the first one, so an entry whose hosts
// field began with a comma that shielded "@revoked" (or, on an active line, "#...") reads back as a
// marked (or commented-out) entry. That second reading is stable again.
bool firstHostReadsAsSomethingElse(const KnownHostsDocument& document)
{
    for (const KnownHostsRecord& record : document.records()) {
        const KnownHostEntry* entry = record.kind().entry();
        if (!entry || entry->marker())
            continue;
        const QString& first = entry->hosts().constFirst();
        if (knownHostMarkerFromRawValue(first.toLower()) || (!entry->isCommentedOut() && first.startsWith(u'#')))
            return true;
    }
    return false;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const KnownHostsService service;

    const KnownHostsParseResult first = service.parse(text);
    checkInvariants(text, first);
    const QString firstWrite = service.serialize(first.document);

    const KnownHostsParseResult second = service.parse(firstWrite);
    checkInvariants(firstWrite, second);
    check(second.document.records().size() == first.document.records().size());
    const QString secondWrite = service.serialize(second.document);
    if (!firstHostReadsAsSomethingElse(first.document)) {
        check(secondWrite == firstWrite);
        return 0;
    }
    check(service.serialize(service.parse(secondWrite).document) == secondWrite);
    return 0;
}
