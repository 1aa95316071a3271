#include "SSHHostItem.h"

#include "CanonicalText.h"

bool operator==(const SSHHostItem::Comment& a, const SSHHostItem::Comment& b)
{
    return canonicallyEqual(a.text, b.text);
}

QString SSHHostItem::commentText() const
{
    const auto* comment = std::get_if<Comment>(&m_value);
    return comment ? comment->text : QString();
}
