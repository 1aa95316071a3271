#include "KnownHostsService.h"

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

KnownHostsRecordKind kindOfLine(QStringView line, int lineNumber, KnownHostsEntryReader& reader,
                                QList<KnownHostsParseError>& errors)
{
    const QStringView trimmed = line.trimmed();
    if (trimmed.isEmpty())
        return KnownHostsRecordKind::blank();
    const bool isComment = trimmed.startsWith(u'#');
    const QStringView entryText = isComment ? strippedCommentPrefix(trimmed) : trimmed;
    if (std::optional<KnownHostEntry> entry = reader.read(entryText, lineNumber, isComment))
        return KnownHostsRecordKind::fromEntry(std::move(*entry));
    if (isComment)
        return KnownHostsRecordKind::fromComment(trimmed.toString());
    errors.append(KnownHostsParseError(lineNumber, KnownHostsParseError::invalidLineMessage()));
    return KnownHostsRecordKind::fromInvalid(line.toString());
}

qsizetype entryLength(const KnownHostEntry& entry)
{
    qsizetype length = entry.keyType().size() + entry.key().size() + entry.comment().size() + 24;
    for (const QString& host : entry.hosts())
        length += host.size() + 1;
    return length;
}

void appendEntry(QString& out, const KnownHostEntry& entry)
{
    if (entry.isCommentedOut())
        out += u"# ";
    if (entry.marker())
        out += knownHostMarkerRawValue(*entry.marker()) + u' ';
    const QStringList& hosts = entry.hosts();
    for (qsizetype i = 0; i < hosts.size(); ++i) {
        if (i > 0)
            out += u',';
        out += hosts[i];
    }
    out += u' ' + entry.keyType() + u' ' + entry.key();
    const QStringView comment = QStringView(entry.comment()).trimmed();
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
    const QStringView view(text);
    records.reserve(KnownHostsTextScan::countLineBreaks(view) + 1);
    KnownHostsEntryReader reader;
    int lineNumber = 1;
    for (qsizetype lineStart = 0; lineStart <= view.size(); ++lineNumber) {
        const qsizetype lineEnd = KnownHostsTextScan::nextLineBreak(view, lineStart);
        records.emplaceBack(kindOfLine(view.sliced(lineStart, lineEnd - lineStart), lineNumber, reader, result.errors));
        lineStart = lineEnd + 1;
    }
    return result;
}

QString KnownHostsService::serialize(const KnownHostsDocument& document) const
{
    QString out;
    out.reserve(estimatedLength(document));
    bool first = true;
    for (const KnownHostsRecord& record : document.records()) {
        if (!first)
            out += u'\n';
        first = false;
        appendRecord(out, record.kind());
    }
    return out;
}
