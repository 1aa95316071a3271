#pragma once

#include <QHash>
#include <QUuid>

#include <algorithm>

/// Finds the row of an identity in a list model without a linear scan per lookup.
///
/// Rebuilding the hash after every removal would cost a full pass over 100,000 rows each time, so a
/// removal is only counted: an identity's row can only lie up to that many rows above the row the hash
/// remembers. Likewise an insertion (an undone removal) is counted and its own row remembered, so a row
/// can lie up to that many rows below. Moves and resets rebuild it lazily.
class IdRowIndex
{
public:
    /// The row whose id (as idAt(row) gives it) is id, or -1. rowCount is the model's current row count.
    template<typename IdAt> int rowOf(const QUuid& id, int rowCount, IdAt idAt) const
    {
        if (!m_valid || m_removals + m_insertions > maximumRemovalsBeforeRebuild)
            rebuild(rowCount, idAt);
        const int remembered = m_rows.value(id, -1);
        if (remembered < 0)
            return -1;
        const int lowest = std::max(0, remembered - m_removals);
        for (int row = std::min(remembered + m_insertions, rowCount - 1); row >= lowest; --row) {
            if (idAt(row) == id)
                return row;
        }
        return -1;
    }

    /// Rows were inserted, moved or replaced: rebuild on the next lookup.
    void invalidate() { m_valid = false; }
    /// One row was removed; the rows below it moved up by one.
    void noteRemoval() { ++m_removals; }
    /// The row with id was inserted at row; the rows below it moved down by one.
    void noteInsertion(const QUuid& id, int row)
    {
        if (!m_valid)
            return;
        ++m_insertions;
        m_rows.insert(id, row);
    }

private:
    static constexpr int maximumRemovalsBeforeRebuild = 64;

    template<typename IdAt> void rebuild(int rowCount, IdAt idAt) const
    {
        m_rows.clear();
        m_rows.reserve(rowCount);
        for (int row = 0; row < rowCount; ++row)
            m_rows.insert(idAt(row), row);
        m_removals = 0;
        m_insertions = 0;
        m_valid = true;
    }

    mutable QHash<QUuid, int> m_rows;
    mutable int m_removals = 0;
    mutable int m_insertions = 0;
    mutable bool m_valid = false;
};
