#include "SSHGlobalItem.h"

#include "CanonicalText.h"

bool operator==(const SSHGlobalItem::Directive& a, const SSHGlobalItem::Directive& b)
{
    return canonicallyEqual(a.text, b.text);
}

bool operator==(const SSHGlobalItem::Comment& a, const SSHGlobalItem::Comment& b)
{
    return canonicallyEqual(a.text, b.text);
}

QString SSHGlobalItem::text() const
{
    if (const auto* directive = std::get_if<Directive>(&m_value))
        return directive->text;
    if (const auto* comment = std::get_if<Comment>(&m_value))
        return comment->text;
    return {};
}
