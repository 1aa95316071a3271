#pragma once

#include <QString>
#include <QStringView>

#include <optional>

/// What ssh says when a host's key no longer matches known_hosts ("WARNING: REMOTE HOST IDENTIFICATION
/// HAS CHANGED!"), as far as it tells which line to look at and what the server now presents.
struct SSHHostKeyWarning
{
    /// From "Offending ECDSA key in /home/u/.ssh/known_hosts:12" (or "Offending key for IP in ...").
    QString offendingFile;
    int offendingLine = 0;
    /// "ECDSA", "ED25519", "RSA", ...; empty for the IP form.
    QString offendingKeyType;
    /// The name ssh looked up, from "... host key for web-1 has changed" ("[web-1]:2222" for a port).
    QString host;
    /// The key type and fingerprint of the key the server sent ("SHA256:..." or "MD5:...").
    QString newKeyType;
    QString newFingerprint;

    friend bool operator==(const SSHHostKeyWarning&, const SSHHostKeyWarning&) = default;
};

/// Reads the parts above out of text pasted from a terminal (with or without carriage returns and
/// surrounding output). Nothing when the text names neither an offending line nor a changed host.
std::optional<SSHHostKeyWarning> parseSSHHostKeyWarning(QStringView text);
