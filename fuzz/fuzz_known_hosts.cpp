// Reads any bytes as a known_hosts file and writes it, again and again: every reading keeps one record
// per line with errors on exactly the lines that could not be read, and the text stops changing as
// soon as no entry's first host is shielded by a leading comma any more.
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
        const QStringView first = entry->firstHost();
        if (knownHostMarkerFromRawValue(first.toString().toLower())
            || (!entry->isCommentedOut() && first.startsWith(u'#')))
            return true;
    }
    return false;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const KnownHostsService service;
    QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    KnownHostsParseResult result = service.parse(text);
    checkInvariants(text, result);
    const qsizetype records = result.document.records().size();

    // Each shielded step drops a leading comma or turns an active line into a commented-out one, so
    // the chain is shorter than the text.
    for (qsizetype steps = 0;; ++steps) {
        check(steps <= text.size() + 1);
        const bool mayChange = firstHostReadsAsSomethingElse(result.document);
        const QString written = service.serialize(result.document);
        KnownHostsParseResult reread = service.parse(written);
        checkInvariants(written, reread);
        check(reread.document.records().size() == records);
        const bool stable = service.serialize(reread.document) == written;
        if (stable)
            return 0;
        check(mayChange);
        text = written;
        result = std::move(reread);
    }
}
