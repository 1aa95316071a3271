#include "KnownHostsService.h"

#include "HugePageAdvice.h"
#include "KnownHostsEntryReader.h"
#include "KnownHostsTextScan.h"

using namespace Qt::StringLiterals;

namespace
{
// "#", then one blank, come off; a second "#" or a tab stays (the field split absorbs the tab).
QStringView strippedCommentPrefix(QStringView trimmed)
{
    QStringView rest = trimmed;
    if (rest.startsWith(u'#'))
        rest = rest.sliced(1);
    if (rest.startsWith(u' '))
        rest = rest.sliced(1);
    return rest;
}

KnownHostsRecordKind kindOfLine(
    const QString& source, QStringView line, int lineNumber, QList<KnownHostsParseError>& errors)
{
    const QStringView trimmed = line.trimmed();
    if (trimmed.isEmpty())
        return KnownHostsRecordKind::blank();
    const bool isComment = trimmed.startsWith(u'#');
    const QStringView entryText = isComment ? strippedCommentPrefix(trimmed) : trimmed;
    if (std::optional<KnownHostEntry> entry = KnownHostsEntryReader::read(source, entryText, lineNumber, isComment))
        return KnownHostsRecordKind::fromEntry(std::move(*entry));
    if (isComment)
        return KnownHostsRecordKind::fromComment(trimmed.toString());
    errors.append(KnownHostsParseError(lineNumber, KnownHostsParseError::invalidLineMessage()));
    return KnownHostsRecordKind::fromInvalid(line.toString());
}

qsizetype entryLength(const KnownHostEntry& entry)
{
    qsizetype length = entry.keyType().size() + entry.key().size() + entry.comment().size() + 24;
    return length + entry.hostsField().size();
}

void appendEntry(QString& out, const KnownHostEntry& entry)
{
    if (entry.isCommentedOut())
        out += u"# ";
    if (entry.marker()) {
        // Two appends rather than one of a concatenation: Qt's append of a concatenation doubles the
        // capacity once the text is half full, which at a million lines costs half a gigabyte.
        out += knownHostMarkerRawValue(*entry.marker());
        out += u' ';
    }
    out += entry.hostsField();
    out += u' ';
    out += entry.keyType();
    out += u' ';
    out += entry.key();
    const QStringView comment = entry.comment().trimmed();
    if (!comment.isEmpty()) {
        out += u' ';
        out += comment;
    }
}

void appendComment(QString& out, QStringView text)
{
    const QStringView trimmed = text.trimmed();
    if (!trimmed.startsWith(u'#'))
        out += u"# ";
    out += trimmed;
}

void appendRecord(QString& out, const KnownHostsRecordKind& kind)
{
    switch (kind.tag()) {
    case KnownHostsRecordKind::Case::entry:
        appendEntry(out, *kind.entry());
        break;
    case KnownHostsRecordKind::Case::comment:
        appendComment(out, std::get<KnownHostsRecordKind::Comment>(kind.value()).text);
        break;
    case KnownHostsRecordKind::Case::invalid:
        out += std::get<KnownHostsRecordKind::Invalid>(kind.value()).text;
        break;
    case KnownHostsRecordKind::Case::blank:
        break;
    }
}

qsizetype estimatedLength(const KnownHostsDocument& document)
{
    qsizetype length = 0;
    for (const KnownHostsRecord& record : document.records()) {
        const KnownHostsRecordKind& kind = record.kind();
        length += 1 + (kind.isEntry() ? entryLength(*kind.entry()) : kind.text().size() + 2);
    }
    return length;
}
} // namespace

KnownHostsParseResult KnownHostsService::parse(const QString& text) const
{
    KnownHostsParseResult result;
    QList<KnownHostsRecord>& records = result.document.records();
    // Entries share the text rather than copy their fields out of it, which takes a text that owns
    // its characters: one made with fromRawData() or from a literal has no allocated capacity.
    const QString source = text.capacity() >= text.size() ? text : QString(text.constData(), text.size());
    const QStringView view(source);
    records.reserve(KnownHostsTextScan::countLineBreaks(view) + 1);
    adviseHugePages(records.data(), static_cast<std::size_t>(records.capacity()) * sizeof(KnownHostsRecord));
    int lineNumber = 1;
    for (qsizetype lineStart = 0; lineStart <= view.size(); ++lineNumber) {
        const qsizetype lineEnd = KnownHostsTextScan::nextLineBreak(view, lineStart);
        records.emplaceBack(kindOfLine(source, view.sliced(lineStart, lineEnd - lineStart), lineNumber, result.errors));
        lineStart = lineEnd + 1;
    }
    return result;
}

QString KnownHostsService::serialize(const KnownHostsDocument& document) const
{
    QString out = emptyTextFor(document);
    serializePart(out, document, 0, document.records().size());
    return out;
}

QString KnownHostsService::emptyTextFor(const KnownHostsDocument& document) const
{
    QString out;
    out.reserve(estimatedLength(document));
    adviseHugePages(out.data(), static_cast<std::size_t>(out.capacity()) * sizeof(QChar));
    return out;
}

void KnownHostsService::serializePart(
    QString& out, const KnownHostsDocument& document, qsizetype first, qsizetype end) const
{
    const QList<KnownHostsRecord>& records = document.records();
    for (qsizetype i = first; i < end; ++i) {
        if (i > 0)
            out += u'\n';
        appendRecord(out, records.at(i).kind());
    }
}
