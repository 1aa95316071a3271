#include "KnownHostEntry.h"

KnownHostEntry::KnownHostEntry(QUuid id, int lineNumber, std::optional<KnownHostMarker> marker,
    const QStringList& hosts, QStringView keyType, QStringView key, QStringView comment, bool isHashed,
    bool isCommentedOut)
    : m_id(id)
    , m_lineNumber(lineNumber)
    , m_marker(marker)
    , m_isHashed(isHashed)
    , m_isCommentedOut(isCommentedOut)
{
    setFields(hosts.join(u','), keyType, key, comment);
}

KnownHostEntry KnownHostEntry::fromSpans(QUuid id, int lineNumber, std::optional<KnownHostMarker> marker,
    const QString& text, Span hostsField, Span keyType, Span key, Span comment, bool isHashed, bool isCommentedOut)
{
    KnownHostEntry entry;
    entry.m_id = id;
    entry.m_lineNumber = lineNumber;
    entry.m_marker = marker;
    entry.m_isHashed = isHashed;
    entry.m_isCommentedOut = isCommentedOut;
    entry.m_text = text;
    entry.m_start = hostsField.start;
    const auto relative = [start = hostsField.start](Span span) {
        return Field { static_cast<int>(span.start - start), static_cast<int>(span.length) };
    };
    entry.m_hostsField = relative(hostsField);
    entry.m_keyType = relative(keyType);
    entry.m_key = relative(key);
    entry.m_comment = relative(comment);
    return entry;
}

QStringList KnownHostEntry::hosts() const
{
    QStringList hosts;
    for (const QStringView host : hostsField().tokenize(u',', Qt::SkipEmptyParts))
        hosts.append(host.toString());
    return hosts;
}

void KnownHostEntry::setHosts(const QStringList& hosts)
{
    setFields(hosts.join(u','), keyType(), key(), comment());
}

QStringView KnownHostEntry::firstHost() const
{
    for (const QStringView host : hostsField().tokenize(u',', Qt::SkipEmptyParts))
        return host;
    return {};
}

void KnownHostEntry::setKeyType(QStringView keyType)
{
    setFields(hostsField(), keyType, key(), comment());
}

void KnownHostEntry::setKey(QStringView key)
{
    setFields(hostsField(), keyType(), key, comment());
}

void KnownHostEntry::setComment(QStringView comment)
{
    setFields(hostsField(), keyType(), key(), comment);
}

void KnownHostEntry::setFields(QStringView hostsField, QStringView keyType, QStringView key, QStringView comment)
{
    // The new fields may be views into the current text, so build before replacing it.
    QString text;
    text.reserve(hostsField.size() + keyType.size() + key.size() + comment.size());
    Field* const fields[] = { &m_hostsField, &m_keyType, &m_key, &m_comment };
    const QStringView values[] = { hostsField, keyType, key, comment };
    for (std::size_t i = 0; i < std::size(values); ++i) {
        *fields[i] = Field { static_cast<int>(text.size()), static_cast<int>(values[i].size()) };
        text += values[i];
    }
    m_text = std::move(text);
    m_start = 0;
}

bool operator==(const KnownHostEntry& a, const KnownHostEntry& b)
{
    return a.m_id == b.m_id && a.m_lineNumber == b.m_lineNumber && a.m_marker == b.m_marker
        && a.m_isHashed == b.m_isHashed && a.m_isCommentedOut == b.m_isCommentedOut && a.hostsField() == b.hostsField()
        && a.keyType() == b.keyType() && a.key() == b.key() && a.comment() == b.comment();
}
