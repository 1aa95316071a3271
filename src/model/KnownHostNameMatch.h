#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

/// How ssh decides whether a known_hosts line is about the host it connects to. ssh looks up one name:
/// the host name alone for port 22, "[host]:port" for any other port (or the HostKeyAlias as it is).

/// The name ssh looks up for host and port: "[host]:port" when port is given and is not "22", else host.
QString knownHostLookupName(QStringView host, QStringView port = {});

/// text with ASCII letters lower-cased, as ssh compares host names; other letters stay as they are.
QString asciiLowered(QStringView text);

/// True when a hosts field holds plain names only: no "*", "?" or "!".
bool isLiteralHostsField(QStringView hostsField);

/// ssh's wildcard match of one pattern ("*" any run of characters, "?" one character), ignoring the case of
/// ASCII letters as ssh does for host names.
bool knownHostPatternMatches(QStringView pattern, QStringView name);

/// True when the line's hosts field (the hosts joined with ",") names name, as ssh decides it:
/// - a field that begins with "|" is one hashed name (see hashedHostNameMatches);
/// - otherwise it is a comma-separated list of patterns, which matches when one pattern matches and no
///   negated pattern ("!pattern") matches.
bool knownHostsFieldMatches(QStringView hostsField, QStringView name);

/// The salt and hash of a hashed name "|1|base64 salt|base64 hash"; both empty when the text is not one
/// (ssh knows no other hash kind, so "|2|" never matches).
struct HashedHostName
{
    QByteArray salt;
    QByteArray hash;

    bool isValid() const { return !salt.isEmpty() && !hash.isEmpty(); }
};
HashedHostName parseHashedHostName(QStringView text);

/// True when the HMAC-SHA1 of name (UTF-8) keyed with the salt equals the hash.
bool hashedHostNameMatches(const HashedHostName& hashed, const QByteArray& nameUtf8);
bool hashedHostNameMatches(QStringView hashedName, QStringView name);
