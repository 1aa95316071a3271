#pragma once

#include <QString>

#include <variant>

/// One line before the first host block: a directive, a comment or a blank line.
class SSHGlobalItem
{
public:
    /// Any line that is not blank and not a comment, kept exactly as read (indentation included).
    struct Directive
    {
        QString text;
        friend bool operator==(const Directive& a, const Directive& b);
    };
    /// A comment line; as parsed, the trimmed line, which starts with "#".
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
    enum class Kind { Directive, Comment, Blank };
    using Variant = std::variant<Directive, Comment, Blank>;

    /// A blank item.
    SSHGlobalItem() = default;
    explicit SSHGlobalItem(Variant value)
        : m_value(std::move(value))
    { }

    static SSHGlobalItem directive(QString text) { return SSHGlobalItem(Variant(Directive { std::move(text) })); }
    static SSHGlobalItem comment(QString text) { return SSHGlobalItem(Variant(Comment { std::move(text) })); }
    static SSHGlobalItem blank() { return SSHGlobalItem(Variant(Blank {})); }

    Kind kind() const { return static_cast<Kind>(m_value.index()); }
    bool isDirective() const { return std::holds_alternative<Directive>(m_value); }
    bool isComment() const { return std::holds_alternative<Comment>(m_value); }
    bool isBlank() const { return std::holds_alternative<Blank>(m_value); }

    /// The directive's or comment's text; empty for a blank.
    QString text() const;

    const Variant& variant() const { return m_value; }
    Variant& variant() { return m_value; }

    /// Same case and equal payload.
    friend bool operator==(const SSHGlobalItem& a, const SSHGlobalItem& b) { return a.m_value == b.m_value; }

private:
    Variant m_value = Blank {};
};
