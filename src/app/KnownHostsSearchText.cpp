#include "KnownHostsSearchText.h"

#include "KnownHostMarker.h"

#include <algorithm>
#include <cstring>
#include <string_view>

using namespace Qt::StringLiterals;

namespace
{

// Between the fields of one row and after each row, so that a query never matches across two of
// them. No field of a known_hosts line can hold it (lines are split at line breaks, and NUL is not
// text), and a query that holds it is not answered here.
constexpr char separator = '\0';

// Free bytes after each row's terminator: enough for the longest marker, so that setting one
// keeps the row in place.
constexpr qsizetype roomAfterRow = 16;

// Lower-cases ASCII letters in place, eight at a time: a load lowers every key of the file.
// Every byte must be below 0x80, so no sum below carries into the next byte.
void lowerAscii(char* begin, char* end)
{
    constexpr quint64 ones = 0x0101010101010101;
    char* c = begin;
    for (; end - c >= 8; c += 8) {
        quint64 word = 0;
        std::memcpy(&word, c, sizeof word);
        const quint64 atLeastA = word + ones * (0x80 - 'A');
        const quint64 aboveZ = word + ones * (0x80 - 'Z' - 1);
        word |= (atLeastA & ~aboveZ & ones * 0x80) >> 2;
        std::memcpy(c, &word, sizeof word);
    }
    for (; c != end; ++c)
        *c = *c >= 'A' && *c <= 'Z' ? static_cast<char>(*c | 0x20) : *c;
}

} // namespace

std::optional<QByteArray> KnownHostsSearchText::searchableQuery(QStringView loweredQuery)
{
    // UTF-8 turns a lone surrogate into a replacement character, so a query with surrogates could
    // match where the text itself does not; such a query is rare enough to go the long way.
    for (QChar c : loweredQuery) {
        if (c.isSurrogate() || c.unicode() == separator)
            return std::nullopt;
    }
    return loweredQuery.toUtf8();
}

qsizetype KnownHostsSearchText::bytesFor(const KnownHostEntry& entry)
{
    constexpr qsizetype separatorsAndMarker = 4 + 16;
    return entry.hostsField().size() + entry.keyType().size() + 1 + entry.key().size() + entry.comment().size()
        + separatorsAndMarker + roomAfterRow;
}

void KnownHostsSearchText::clear()
{
    m_text.clear();
    m_rows.clear();
    m_used = 0;
    m_inRowOrder = true;
}

void KnownHostsSearchText::reserve(qsizetype rows, qsizetype bytes)
{
    m_rows.reserve(static_cast<size_t>(rows));
    m_text.reserve(bytes);
}

void KnownHostsSearchText::append(const KnownHostEntry& entry)
{
    m_rows.push_back(appendRow(entry));
    m_used += m_rows.back().length + 1;
}

void KnownHostsSearchText::insert(qsizetype row, const KnownHostEntry& entry)
{
    // An entry put back where it was deleted finds its old bytes still free.
    const Slice slice = placeRow(entry, roomBegin(row), roomEnd(row), row == rowCount());
    m_rows.insert(m_rows.begin() + row, slice);
    m_used += slice.length + 1;
    compactWhenMostlyUnused();
}

void KnownHostsSearchText::replace(qsizetype row, const KnownHostEntry& entry)
{
    Slice& slice = m_rows[static_cast<size_t>(row)];
    m_used -= slice.length + 1;
    slice = placeRow(entry, slice.offset, roomEnd(row + 1), row == rowCount() - 1);
    m_used += slice.length + 1;
    compactWhenMostlyUnused();
}

void KnownHostsSearchText::remove(qsizetype firstRow, qsizetype count)
{
    const auto first = m_rows.begin() + firstRow;
    for (auto slice = first; slice != first + count; ++slice)
        m_used -= slice->length + 1;
    m_rows.erase(first, first + count);
    compactWhenMostlyUnused();
}

bool KnownHostsSearchText::rowContains(qsizetype row, const QByteArray& query) const
{
    const Slice& slice = m_rows[static_cast<size_t>(row)];
    const std::string_view text(m_text.constData() + slice.offset, static_cast<size_t>(slice.length));
    return text.find(std::string_view(query.constData(), static_cast<size_t>(query.size()))) != text.npos;
}

std::vector<char> KnownHostsSearchText::rowsContaining(const QByteArray& query) const
{
    std::vector<char> found(m_rows.size(), 0);
    if (!m_inRowOrder) {
        for (size_t row = 0; row < found.size(); ++row)
            found[row] = rowContains(static_cast<qsizetype>(row), query) ? 1 : 0;
        return found;
    }
    const std::string_view text(m_text.constData(), static_cast<size_t>(m_text.size()));
    const std::string_view needle(query.constData(), static_cast<size_t>(query.size()));
    size_t row = 0;
    size_t at = text.find(needle);
    while (at != text.npos) {
        while (row < found.size() && static_cast<size_t>(m_rows[row].end()) <= at)
            ++row;
        if (row == found.size())
            break;
        const Slice& slice = m_rows[row];
        if (static_cast<qsizetype>(at) < slice.offset) {
            // In the free bytes before the row: nobody's text.
            at = text.find(needle, at + 1);
            continue;
        }
        // A match cannot reach past the row's terminator, so it is this row's; the rest of the row
        // need not be searched.
        found[row] = 1;
        if (++row == found.size())
            break;
        at = text.find(needle, static_cast<size_t>(m_rows[row].offset));
    }
    return found;
}

KnownHostsSearchText::Slice KnownHostsSearchText::appendRow(const KnownHostEntry& entry)
{
    Slice slice { m_text.size(), 0 };
    appendLowered(entry.hostsField());
    // Neither a comma nor a blank is the lower case of anything else, so replacing after
    // lower-casing gives the hosts joined with blanks.
    std::replace(m_text.begin() + slice.offset, m_text.end(), ',', ' ');
    m_text.append(separator);
    if (const std::optional<KnownHostMarker> marker = entry.marker())
        appendLowered(knownHostMarkerRawValue(*marker));
    m_text.append(separator);
    // Lower-casing maps each character on its own, so the key type and key can go one at a time.
    appendLowered(entry.keyType());
    m_text.append(' ');
    appendLowered(entry.key());
    m_text.append(separator);
    appendLowered(entry.comment());
    slice.length = m_text.size() - slice.offset;
    m_text.append(1 + roomAfterRow, separator);
    return slice;
}

void KnownHostsSearchText::appendLowered(QStringView field)
{
    // Qt's UTF-8 encoder has a fast path for ASCII, and only ASCII keeps one byte per character.
    const qsizetype at = m_text.size();
    m_text.resize(at + m_encoder.requiredSpace(field.size()));
    char* const begin = m_text.data() + at;
    char* const end = m_encoder.appendToBuffer(begin, field);
    if (end - begin != field.size()) {
        m_text.resize(at);
        m_text.append(field.toString().toLower().toUtf8());
        return;
    }
    lowerAscii(begin, end);
    m_text.resize(end - m_text.constData());
}

KnownHostsSearchText::Slice KnownHostsSearchText::placeRow(
    const KnownHostEntry& entry, qsizetype roomBegin, qsizetype roomEnd, bool lastRow)
{
    const qsizetype textEnd = m_text.size();
    const Slice appended = appendRow(entry);
    if (appended.length + 1 <= roomEnd - roomBegin) {
        std::memcpy(
            m_text.data() + roomBegin, m_text.constData() + appended.offset, static_cast<size_t>(appended.length + 1));
        m_text.truncate(textEnd);
        return { roomBegin, appended.length };
    }
    // Behind every other row, the last row stays in order; any other row does not.
    m_inRowOrder = m_inRowOrder && lastRow;
    return appended;
}

qsizetype KnownHostsSearchText::roomBegin(qsizetype row) const
{
    return row == 0 ? 0 : m_rows[static_cast<size_t>(row - 1)].end() + 1;
}

qsizetype KnownHostsSearchText::roomEnd(qsizetype row) const
{
    // Out of order, rows may lie anywhere after a row's text, so it gets no room in place.
    if (!m_inRowOrder)
        return 0;
    return row < rowCount() ? m_rows[static_cast<size_t>(row)].offset : m_text.size();
}

void KnownHostsSearchText::compactWhenMostlyUnused()
{
    if (m_used >= m_text.size() / 2)
        return;
    QByteArray compacted;
    compacted.reserve(m_used + rowCount() * roomAfterRow);
    for (Slice& slice : m_rows) {
        const qsizetype offset = compacted.size();
        compacted.append(m_text.constData() + slice.offset, slice.length);
        compacted.append(1 + roomAfterRow, separator);
        slice.offset = offset;
    }
    m_text = std::move(compacted);
    m_inRowOrder = true;
}
