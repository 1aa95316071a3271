#include "KnownHostsRecordKind.h"

KnownHostsRecordKind KnownHostsRecordKind::fromEntry(KnownHostEntry entry)
{
    return KnownHostsRecordKind(Value(std::in_place_type<KnownHostEntry>, std::move(entry)));
}

KnownHostsRecordKind KnownHostsRecordKind::fromComment(QString text)
{
    return KnownHostsRecordKind(Value(Comment { std::move(text) }));
}

KnownHostsRecordKind KnownHostsRecordKind::fromInvalid(QString text)
{
    return KnownHostsRecordKind(Value(Invalid { std::move(text) }));
}

KnownHostsRecordKind KnownHostsRecordKind::blank()
{
    return KnownHostsRecordKind(Value(Blank {}));
}

QString KnownHostsRecordKind::text() const
{
    if (const auto* comment = std::get_if<Comment>(&m_value))
        return comment->text;
    if (const auto* invalid = std::get_if<Invalid>(&m_value))
        return invalid->text;
    return {};
}
