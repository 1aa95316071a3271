#pragma once

#include "KnownHostEntry.h"

#include <QString>
#include <QStringView>

#include <optional>

/// Reads one trimmed known_hosts line (or the rest of a comment line) as an entry, for
/// KnownHostsService while it parses one text.
namespace KnownHostsEntryReader
{
/// The entry text reads as, with a fresh id, or nothing when it has fewer than three fields (four
/// after a marker) or a hosts field without a name. text lies inside source; an entry whose fields
/// stand in source as they would be written shares source instead of copying them. Never throws.
std::optional<KnownHostEntry> read(const QString& source, QStringView text, int lineNumber, bool isCommentedOut);
} // namespace KnownHostsEntryReader
