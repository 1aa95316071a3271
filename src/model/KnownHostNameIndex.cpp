#include "KnownHostNameIndex.h"

#include <algorithm>

namespace {

// Lower-cases ASCII letters only, as ssh does for host names.
QString asciiLowered(QStringView text)
{
    QString lowered = text.toString();
    for (QChar& c : lowered) {
        if (c >= u'A' && c <= u'Z')
            c = QChar(c.unicode() - u'A' + u'a');
    }
    return lowered;
}

bool isLiteralList(QStringView hostsField)
{
    return !hostsField.contains(u'*') && !hostsField.contains(u'?') && !hostsField.contains(u'!');
}

} // namespace

KnownHostNameIndex::KnownHostNameIndex(const KnownHostsDocument& document)
{
    const QList<KnownHostsRecord>& records = document.records();
    for (qsizetype position = 0; position < records.size(); ++position) {
        const KnownHostEntry* entry = records.at(position).kind().entry();
        if (entry && !entry->isCommentedOut())
            add(position, entry->hostsField());
    }
}

void KnownHostNameIndex::add(qsizetype position, QStringView hostsField)
{
    if (hostsField.startsWith(u'|')) {
        HashedHostName hashed = parseHashedHostName(hostsField);
        if (hashed.isValid())
            m_hashed.push_back({position, std::move(hashed)});
        return;
    }
    if (!isLiteralList(hostsField)) {
        m_patterned.push_back({position, hostsField.toString()});
        return;
    }
    for (const QStringView host : hostsField.tokenize(u',', Qt::SkipEmptyParts))
        m_plain.insert(asciiLowered(host), position);
}

QList<qsizetype> KnownHostNameIndex::recordsFor(QStringView name) const
{
    QList<qsizetype> found = m_plain.values(asciiLowered(name));
    for (const PatternRecord& record : m_patterned) {
        if (knownHostsFieldMatches(record.hostsField, name))
            found.append(record.position);
    }
    const QByteArray nameBytes = name.toUtf8();
    for (const HashedRecord& record : m_hashed) {
        if (hashedHostNameMatches(record.name, nameBytes))
            found.append(record.position);
    }
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}
