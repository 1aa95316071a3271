#pragma once

#include "KnownHostEntry.h"

#include <QByteArray>
#include <QStringEncoder>
#include <QStringView>

#include <optional>
#include <vector>

/// The text the known_hosts search looks in, laid out for a keystroke over 100,000 entries. For every
/// row it holds the four fields knownHostEntryMatches() tests (the hosts joined with one blank, the
/// marker, the key type with one blank and the key, the comment), each lower-cased as
/// QString::toLower() does, as UTF-8 in one contiguous buffer, row after row. A query is then one
/// pass of a byte search over that buffer, instead of four case-folding comparisons per entry.
///
/// A row keeps a little room after its text, so that a new marker or a removed host is written in
/// place and the rows stay in order. A row that does not fit goes to the end of the buffer; until
/// the next compaction a search then asks row by row. Compaction happens once the bytes no row
/// uses outweigh the ones in use, so an action costs one entry, not 100,000.
class KnownHostsSearchText
{
public:
    /// The query as this text can answer it: the lower-cased query as UTF-8, or nothing for a
    /// query this layout cannot answer exactly (one with a NUL or a surrogate), which the caller
    /// then tests on the entry itself.
    static std::optional<QByteArray> searchableQuery(QStringView loweredQuery);
    /// About how many bytes an entry takes here, for reserve().
    static qsizetype bytesFor(const KnownHostEntry& entry);

    void clear();
    /// Room for rows entries of bytes in all (bytesFor() summed), so that building the text for a
    /// whole file does not copy it as it grows.
    void reserve(qsizetype rows, qsizetype bytes);
    void append(const KnownHostEntry& entry);
    void insert(qsizetype row, const KnownHostEntry& entry);
    void replace(qsizetype row, const KnownHostEntry& entry);
    void remove(qsizetype firstRow, qsizetype count);

    qsizetype rowCount() const { return static_cast<qsizetype>(m_rows.size()); }
    /// Whether the entry in row holds the query from searchableQuery(); row must be valid.
    bool rowContains(qsizetype row, const QByteArray& query) const;
    /// For every row, whether its entry holds the query from searchableQuery().
    std::vector<char> rowsContaining(const QByteArray& query) const;

private:
    struct Slice
    {
        qsizetype offset = 0;
        qsizetype length = 0;
        qsizetype end() const { return offset + length; }
    };

    /// Writes the entry's text, its terminator and the room after it at the end of the buffer.
    Slice appendRow(const KnownHostEntry& entry);
    void appendLowered(QStringView field);
    /// The entry's text between roomBegin and roomEnd when it fits there, else at the end.
    Slice placeRow(const KnownHostEntry& entry, qsizetype roomBegin, qsizetype roomEnd, bool lastRow);
    /// Where the room of a row at position row begins: after the terminator of the row before.
    qsizetype roomBegin(qsizetype row) const;
    qsizetype roomEnd(qsizetype row) const;
    void compactWhenMostlyUnused();

    QStringEncoder m_encoder { QStringEncoder::Utf8, QStringEncoder::Flag::Stateless };
    QByteArray m_text;
    std::vector<Slice> m_rows;
    /// Bytes of m_text covered by a row's text and terminator.
    qsizetype m_used = 0;
    /// Whether every row's slice starts after the previous row's, so that one pass over the text
    /// meets the rows in order.
    bool m_inRowOrder = true;
};
