#pragma once

#include "SSHHost.h"

#include <QString>

#include <optional>

/// The name ssh looks up in known_hosts when it connects through host, as ssh 9.x forms it:
/// - the HostKeyAlias when the block sets one (ssh then ignores the port);
/// - else the HostName ("%h" stands for the name typed, "%%" for "%"), or without one the block's first
///   plain pattern, as "[name]:port" when the block's Port is not 22, else the name alone.
/// ssh lower-cases both forms before it looks them up, and so does this.
///
/// Only the block's own options count: what a later "Host *" block would add is not read, since only the
/// block names the host the user chose. Nothing for a disabled block (ssh reads it as comments) and for a
/// block without a plain pattern (wildcards only: it names no host to connect to).
std::optional<QString> knownHostLookupNameForConfigHost(const SSHHost& host);
