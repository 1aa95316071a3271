#include "KnownHostsParseError.h"

using namespace Qt::StringLiterals;

QString KnownHostsParseError::invalidLineMessage()
{
    return u"Ongeldige known_hosts regel."_s;
}

QString KnownHostsParseError::identity() const
{
    return QString::number(m_line) + u'-' + m_message;
}
