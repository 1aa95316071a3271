#include "KnownHostEntry.h"

KnownHostEntry::KnownHostEntry(QUuid id, int lineNumber, std::optional<KnownHostMarker> marker, QStringList hosts,
                               QString keyType, QString key, QString comment, bool isHashed, bool isCommentedOut)
    : m_id(id)
    , m_lineNumber(lineNumber)
    , m_marker(marker)
    , m_isHashed(isHashed)
    , m_isCommentedOut(isCommentedOut)
    , m_hosts(std::move(hosts))
    , m_keyType(std::move(keyType))
    , m_key(std::move(key))
    , m_comment(std::move(comment))
{
}
