#pragma once

#include "SSHOption.h"

#include <QString>

#include <variant>

/// One line inside a host block after its Host line: an option, a comment or a blank line.
///
/// A small wrapper over a std::variant so call sites read as SSHHostItem::option(o) and
/// item.isOption(); visit variant() when every case must be handled.
class SSHHostItem
{
public:
    /// A comment line; as parsed, trimmed text that starts with "#".
    struct Comment
    {
        QString text;
        friend bool operator==(const Comment& a, const Comment& b);
    };
    /// An empty line or one made only of whitespace.
    struct Blank
    {
        friend bool operator==(const Blank&, const Blank&) { return true; }
    };
    enum class Kind { Option, Comment, Blank };
    using Variant = std::variant<SSHOption, Comment, Blank>;

    /// A blank item.
    SSHHostItem() = default;
    explicit SSHHostItem(Variant value)
        : m_value(std::move(value))
    { }

    static SSHHostItem option(SSHOption option) { return SSHHostItem(Variant(std::move(option))); }
    static SSHHostItem comment(QString text) { return SSHHostItem(Variant(Comment { std::move(text) })); }
    static SSHHostItem blank() { return SSHHostItem(Variant(Blank {})); }

    Kind kind() const { return static_cast<Kind>(m_value.index()); }
    bool isOption() const { return std::holds_alternative<SSHOption>(m_value); }
    bool isComment() const { return std::holds_alternative<Comment>(m_value); }
    bool isBlank() const { return std::holds_alternative<Blank>(m_value); }

    /// The option, or nullptr when this item is not an option. The mutable form edits in place.
    const SSHOption* asOption() const { return std::get_if<SSHOption>(&m_value); }
    SSHOption* asOption() { return std::get_if<SSHOption>(&m_value); }
    /// The comment text, or an empty text when this item is not a comment.
    QString commentText() const;

    const Variant& variant() const { return m_value; }
    Variant& variant() { return m_value; }

    /// Same case and equal payload (option ids included).
    friend bool operator==(const SSHHostItem& a, const SSHHostItem& b) { return a.m_value == b.m_value; }

private:
    Variant m_value = Blank {};
};
