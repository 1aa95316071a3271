#pragma once

#include <QString>

/// A line of a known_hosts file that could not be read. Equality: line and message.
class KnownHostsParseError
{
public:
    /// The only message the parser produces: "Ongeldige known_hosts regel.".
    static QString invalidLineMessage();

    KnownHostsParseError(int line, QString message)
        : m_line(line)
        , m_message(std::move(message))
    { }

    /// 1-based line number.
    int line() const { return m_line; }
    QString message() const { return m_message; }

    /// The line number in decimal, "-" and the message, e.g. "7-Ongeldige known_hosts regel.".
    QString identity() const;

    friend bool operator==(const KnownHostsParseError&, const KnownHostsParseError&) = default;

private:
    int m_line = 0;
    QString m_message;
};
