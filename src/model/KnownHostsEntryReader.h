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

    /// Unicode white space (blank, tab, the line breaks, no-break and other separators).
    static bool isWhiteSpace(QChar c) { return c.isSpace(); }

    /// The characters that end a line, each on its own: LF, VT, FF, CR, NEL, LS and PS.
    static bool isLineBreak(QChar c)
    {
        const char16_t u = c.unicode();
        return (u >= 0x0A && u <= 0x0D) || u == 0x85 || u == 0x2028 || u == 0x2029;
    }

private:
    QString sharedKeyType(QStringView keyType);

    std::array<QString, 8> m_keyTypes;
    std::size_t m_nextKeyTypeSlot = 0;
};
