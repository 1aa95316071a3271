#pragma once

#include "KnownHostEntry.h"

#include <QString>

#include <variant>

/// What one line of a known_hosts file is: an entry, a comment, an unreadable line kept verbatim,
/// or an empty line. Equality: same case and equal payload.
class KnownHostsRecordKind
{
public:
    /// The cases, in their fixed order.
    enum class Case {
        entry,
        comment,
        invalid,
        blank,
    };

    /// A comment line that is not a commented-out entry: the trimmed line, beginning with "#".
    struct Comment
    {
        QString text;
        friend bool operator==(const Comment&, const Comment&) = default;
    };
    /// A line that is neither empty, a comment nor an entry, exactly as it stood (white space included).
    struct Invalid
    {
        QString text;
        friend bool operator==(const Invalid&, const Invalid&) = default;
    };
    /// An empty line or a line of white space only.
    struct Blank
    {
        friend bool operator==(const Blank&, const Blank&) = default;
    };

    /// Alternatives in the order of Case.
    using Value = std::variant<KnownHostEntry, Comment, Invalid, Blank>;

    /// A blank line.
    KnownHostsRecordKind() = default;

    static KnownHostsRecordKind fromEntry(KnownHostEntry entry);
    static KnownHostsRecordKind fromComment(QString text);
    static KnownHostsRecordKind fromInvalid(QString text);
    static KnownHostsRecordKind blank();

    Case tag() const { return static_cast<Case>(m_value.index()); }
    bool isEntry() const { return tag() == Case::entry; }
    bool isComment() const { return tag() == Case::comment; }
    bool isInvalid() const { return tag() == Case::invalid; }
    bool isBlank() const { return tag() == Case::blank; }

    /// The entry payload, or nullptr when this is not an entry.
    const KnownHostEntry* entry() const { return std::get_if<KnownHostEntry>(&m_value); }
    KnownHostEntry* entry() { return std::get_if<KnownHostEntry>(&m_value); }

    /// The text payload of a comment or invalid line; empty for the other cases.
    QString text() const;

    /// The underlying tagged union, for std::visit.
    const Value& value() const { return m_value; }

    friend bool operator==(const KnownHostsRecordKind&, const KnownHostsRecordKind&) = default;

private:
    explicit KnownHostsRecordKind(Value value)
        : m_value(std::move(value))
    { }

    Value m_value { Blank {} };
};
