#pragma once

#include <QString>

/// One problem found while parsing config text. Both fields are fixed when the value is made.
class SSHParseError
{
public:
    SSHParseError(qsizetype line, QString message)
        : m_line(line)
        , m_message(std::move(message))
    { }

    /// The 1-based number of the offending line.
    qsizetype line() const { return m_line; }
    /// The Dutch message shown to the user.
    QString message() const { return m_message; }
    /// The key by which lists refer to this error: the decimal line number, "-" and the message,
    /// for example "12-Ongeldige host-regel: Port=22".
    QString identity() const;

    friend bool operator==(const SSHParseError& a, const SSHParseError& b);

private:
    qsizetype m_line;
    QString m_message;
};
