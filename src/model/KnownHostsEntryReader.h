#pragma once

#include "KnownHostEntry.h"

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

/// Reads one trimmed known_hosts line (or the rest of a comment line) as an entry. Used by
/// KnownHostsService while it parses one text; it keeps the key types it has seen so the many
/// entries of a large file share one copy of "ssh-ed25519" instead of each holding its own.
class KnownHostsEntryReader
{
public:
    /// The entry the text reads as, with a fresh id, or nothing when it has fewer than three fields
    /// (four after a marker) or a hosts field without a name. Never throws.
    std::optional<KnownHostEntry> read(QStringView text, int lineNumber, bool isCommentedOut);

private:
    QString sharedKeyType(QStringView keyType);

    std::array<QString, 8> m_keyTypes;
    std::size_t m_nextKeyTypeSlot = 0;
};
