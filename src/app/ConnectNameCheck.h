#pragma once

#include <QString>
#include <QStringView>

#include <optional>

/// Why a name cannot be handed to ssh as its host argument.
enum class ConnectNameProblem {
    /// A C0 or C1 control character or DEL: a NUL cuts the terminal's command line short and a line break
    /// splits it, so the shell would run something other than the ssh command that was built.
    controlCharacter,
    /// Longer than maximumConnectNameLength.
    tooLong,
    /// Begins with "-": ssh would read it as an option (think "-oProxyCommand=...") instead of a host.
    leadingDash,
};

/// The longest name, in UTF-16 code units, handed to ssh. A DNS name has at most 253 characters and the
/// resolver's host-name buffer (NI_MAXHOST) holds 1,024 bytes and a NUL, so nothing longer names a real
/// host; a much longer one only overruns the kernel's limit for one argument (128 KiB on Linux) when the
/// command line is handed to a terminal, which then fails as if the terminal itself could not be opened.
inline constexpr qsizetype maximumConnectNameLength = 1024;

/// The first problem of name as ssh's host argument, tested in the order of ConnectNameProblem; nothing
/// when ssh can take it as a host. Shell quoting is a separate matter: any name without a problem can be
/// quoted into one shell word.
std::optional<ConnectNameProblem> connectNameProblem(QStringView name);

/// The status sentence that refuses to connect to the host name, or nothing when it may be handed to
/// ssh. The name appears in the sentence only when it is readable, and then shortened.
std::optional<QString> connectHostNameRefusal(QStringView name);

/// As connectHostNameRefusal, for a port given on ssh's command line; a port read from a known_hosts
/// field is digits only, so only its length can be at fault.
std::optional<QString> connectPortRefusal(QStringView port);
