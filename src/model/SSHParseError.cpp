#include "SSHParseError.h"

#include "CanonicalText.h"

using namespace Qt::StringLiterals;

QString SSHParseError::identity() const
{
    return QString::number(m_line) + u'-' + m_message;
}

bool operator==(const SSHParseError& a, const SSHParseError& b)
{
    return a.m_line == b.m_line && canonicallyEqual(a.m_message, b.m_message);
}
