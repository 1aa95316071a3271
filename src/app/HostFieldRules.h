#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

/// A host and a port read from a known_hosts field written as "[host]:port".
struct BracketedHostPort
{
    QString host;
    /// One or more ASCII digits.
    QString port;

    friend bool operator==(const BracketedHostPort&, const BracketedHostPort&) = default;
};

/// True when text, trimmed of blanks and line breaks, is not empty, holds neither "*" nor "?" and does
/// not begin with "!": a name of one concrete host rather than a wildcard or a negation.
bool isPlainHostName(QStringView text);

/// Reads "[host]:port": text must begin with "[", the first "]" after it must be followed directly by
/// ":", and host and port (each trimmed) must be non-empty with port made of ASCII digits only.
/// Nothing for any other text ("[db]" and "[db]:ssh" give nothing).
std::optional<BracketedHostPort> parseBracketedHostPort(QStringView text);

/// The first element of a known_hosts entry's host list that names a usable host: not empty, not
/// hashed ("|1|", "|2|"), and either "[host]:port", "user@" followed by "[host]:port" or a plain host
/// name, or a plain host name itself. Returned untrimmed; nothing when every element is unusable.
std::optional<QString> chosenKnownHostField(const QStringList& hosts);
