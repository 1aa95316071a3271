#include "KnownHostsService.h"

#include "KnownHostsEntryReader.h"

using namespace Qt::StringLiterals;

namespace
{
qsizetype countLines(QStringView text)
{
    qsizetype lines = 1;
    for (const QChar c : text) {
        if (KnownHostsEntryReader::isLineBreak(c))
            ++lines;
    }
    return lines;
}

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
    records.reserve(countLines(text));
    KnownHostsEntryReader reader;
    const QStringView view(text);
    qsizetype lineStart = 0;
    int lineNumber = 1;
    for (qsizetype at = 0; at <= view.size(); ++at) {
        if (at < view.size() && !KnownHostsEntryReader::isLineBreak(view[at]))
            continue;
        const QStringView line = view.sliced(lineStart, at - lineStart);
        records.emplaceBack(kindOfLine(line, lineNumber, reader, result.errors));
        lineStart = at + 1;
        ++lineNumber;
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
