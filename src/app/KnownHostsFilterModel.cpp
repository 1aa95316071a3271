#include "KnownHostsFilterModel.h"

#include <algorithm>

namespace
{

// Beyond this many runs a reset costs the views less than announcing each run.
constexpr qsizetype maximumRunsAnnouncedRowByRow = 32;

} // namespace

KnownHostsFilterModel::KnownHostsFilterModel(KnownHostsModel& source, QObject* parent)
    : QAbstractProxyModel(parent)
    , m_source(source)
{
    const SSHConfigViewModel* viewModel = &source.viewModel();
    adoptSearch(viewModel->knownHostsSearchQuery(), viewModel->knownHostsFingerprintQuery(), currentLookup());
    rebuildSearchText();
    m_sourceRows = keptRows(acceptedRows(std::vector<char>(static_cast<size_t>(source.rowCount())), false, false));
    setSourceModel(&source);
    followSource();
    connect(viewModel, &SSHConfigViewModel::knownHostsSearchTextChanged, this, &KnownHostsFilterModel::refilter);
    connect(viewModel, &SSHConfigViewModel::knownHostLookupChanged, this, &KnownHostsFilterModel::refilter);
}

QModelIndex KnownHostsFilterModel::index(int row, int column, const QModelIndex& parent) const
{
    if (parent.isValid() || column != 0 || row < 0 || static_cast<size_t>(row) >= m_sourceRows.size())
        return {};
    return createIndex(row, column);
}

QModelIndex KnownHostsFilterModel::parent(const QModelIndex& child) const
{
    Q_UNUSED(child)
    return {};
}

QModelIndex KnownHostsFilterModel::sibling(int row, int column, const QModelIndex& index) const
{
    return index.isValid() ? this->index(row, column) : QModelIndex();
}

int KnownHostsFilterModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_sourceRows.size());
}

int KnownHostsFilterModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : 1;
}

bool KnownHostsFilterModel::hasChildren(const QModelIndex& parent) const
{
    return !parent.isValid() && !m_sourceRows.empty();
}

QModelIndex KnownHostsFilterModel::mapToSource(const QModelIndex& proxyIndex) const
{
    if (!proxyIndex.isValid() || proxyIndex.model() != this)
        return {};
    return m_source.index(m_sourceRows[static_cast<size_t>(proxyIndex.row())]);
}

QModelIndex KnownHostsFilterModel::mapFromSource(const QModelIndex& sourceIndex) const
{
    if (!sourceIndex.isValid() || sourceIndex.model() != &m_source)
        return {};
    const int row = firstRowFrom(sourceIndex.row());
    if (static_cast<size_t>(row) == m_sourceRows.size() || m_sourceRows[static_cast<size_t>(row)] != sourceIndex.row())
        return {};
    return createIndex(row, 0);
}

int KnownHostsFilterModel::rowOf(const QUuid& id) const
{
    const int row = m_source.rowOf(id);
    return row < 0 ? -1 : mapFromSource(m_source.index(row)).row();
}

int KnownHostsFilterModel::firstRowFrom(int sourceRow) const
{
    return static_cast<int>(
        std::lower_bound(m_sourceRows.cbegin(), m_sourceRows.cend(), sourceRow) - m_sourceRows.cbegin());
}

void KnownHostsFilterModel::followSource()
{
    const QAbstractItemModel* source = &m_source;
    connect(source, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex& parent, int first, int last) {
        if (!parent.isValid())
            sourceRowsInserted(first, last);
    });
    connect(source, &QAbstractItemModel::rowsAboutToBeRemoved, this,
        [this](const QModelIndex& parent, int first, int last) {
            if (!parent.isValid())
                sourceRowsAboutToBeRemoved(first, last);
        });
    connect(source, &QAbstractItemModel::rowsRemoved, this, [this](const QModelIndex& parent, int first, int last) {
        if (!parent.isValid())
            sourceRowsRemoved(first, last);
    });
    connect(source, &QAbstractItemModel::dataChanged, this, &KnownHostsFilterModel::sourceDataChanged);
    // Whatever else reorders the source is rare enough to start over.
    connect(source, &QAbstractItemModel::modelAboutToBeReset, this, &KnownHostsFilterModel::sourceAboutToBeRebuilt);
    connect(source, &QAbstractItemModel::modelReset, this, &KnownHostsFilterModel::sourceRebuilt);
    connect(source, &QAbstractItemModel::layoutAboutToBeChanged, this, &KnownHostsFilterModel::sourceAboutToBeRebuilt);
    connect(source, &QAbstractItemModel::layoutChanged, this, &KnownHostsFilterModel::sourceRebuilt);
    connect(source, &QAbstractItemModel::rowsAboutToBeMoved, this, &KnownHostsFilterModel::sourceAboutToBeRebuilt);
    connect(source, &QAbstractItemModel::rowsMoved, this, &KnownHostsFilterModel::sourceRebuilt);
}

void KnownHostsFilterModel::sourceRowsInserted(int first, int last)
{
    for (int row = first; row <= last; ++row)
        m_searchText.insert(row, m_source.entryAt(row));
    const int count = last - first + 1;
    for (auto it = m_sourceRows.begin() + firstRowFrom(first); it != m_sourceRows.end(); ++it)
        *it += count;
    std::vector<char> accepted(static_cast<size_t>(count));
    for (int row = first; row <= last; ++row)
        accepted[static_cast<size_t>(row - first)] = accepts(row) ? 1 : 0;
    insertAccepted(first, last, accepted);
}

// The rows go while the source still has them, as the views expect, and the mapping follows once
// the source has let them go.
void KnownHostsFilterModel::sourceRowsAboutToBeRemoved(int first, int last)
{
    const int begin = firstRowFrom(first);
    const int end = firstRowFrom(last + 1);
    if (begin == end)
        return;
    m_pendingRemoval = std::pair(begin, end);
    beginRemoveRows({}, begin, end - 1);
}

void KnownHostsFilterModel::sourceRowsRemoved(int first, int last)
{
    m_searchText.remove(first, last - first + 1);
    auto later = m_sourceRows.begin() + firstRowFrom(first);
    if (m_pendingRemoval)
        later = m_sourceRows.erase(
            m_sourceRows.begin() + m_pendingRemoval->first, m_sourceRows.begin() + m_pendingRemoval->second);
    const int count = last - first + 1;
    for (auto it = later; it != m_sourceRows.end(); ++it)
        *it -= count;
    if (!m_pendingRemoval)
        return;
    m_pendingRemoval.reset();
    endRemoveRows();
}

// As a dynamically filtering proxy does: rows that no longer match go, the ones that stay are
// changed, then rows that now match come in.
void KnownHostsFilterModel::sourceDataChanged(
    const QModelIndex& topLeft, const QModelIndex& bottomRight, const QList<int>& roles)
{
    if (!topLeft.isValid() || !bottomRight.isValid() || topLeft.parent().isValid())
        return;
    const int first = topLeft.row();
    const int last = bottomRight.row();
    std::vector<char> accepted(static_cast<size_t>(last - first + 1));
    for (int row = first; row <= last; ++row) {
        m_searchText.replace(row, m_source.entryAt(row));
        accepted[static_cast<size_t>(row - first)] = accepts(row) ? 1 : 0;
    }
    removeRejected(first, last, accepted);
    const int begin = firstRowFrom(first);
    const int end = firstRowFrom(last + 1);
    if (begin < end)
        Q_EMIT dataChanged(index(begin, 0), index(end - 1, 0), roles);
    insertAccepted(first, last, accepted);
}

void KnownHostsFilterModel::sourceAboutToBeRebuilt()
{
    m_sourceRebuilding = true;
    beginResetModel();
}

void KnownHostsFilterModel::sourceRebuilt()
{
    m_sourceRebuilding = false;
    rebuildSearchText();
    m_sourceRows = keptRows(acceptedRows(std::vector<char>(static_cast<size_t>(m_source.rowCount())), false, false));
    endResetModel();
}

void KnownHostsFilterModel::removeRejected(int first, int last, const std::vector<char>& accepted)
{
    const auto rejected = [&](int row) {
        const int sourceRow = m_sourceRows[static_cast<size_t>(row)];
        return sourceRow <= last && !accepted[static_cast<size_t>(sourceRow - first)];
    };
    int row = firstRowFrom(first);
    while (static_cast<size_t>(row) < m_sourceRows.size() && m_sourceRows[static_cast<size_t>(row)] <= last) {
        if (!rejected(row)) {
            ++row;
            continue;
        }
        int end = row + 1;
        while (static_cast<size_t>(end) < m_sourceRows.size() && rejected(end))
            ++end;
        beginRemoveRows({}, row, end - 1);
        m_sourceRows.erase(m_sourceRows.begin() + row, m_sourceRows.begin() + end);
        endRemoveRows();
    }
}

void KnownHostsFilterModel::insertAccepted(int first, int last, const std::vector<char>& accepted)
{
    int row = firstRowFrom(first);
    std::vector<int> run;
    const auto insertRun = [&] {
        if (run.empty())
            return;
        const int count = static_cast<int>(run.size());
        beginInsertRows({}, row, row + count - 1);
        m_sourceRows.insert(m_sourceRows.begin() + row, run.cbegin(), run.cend());
        endInsertRows();
        row += count;
        run.clear();
    };
    for (int sourceRow = first; sourceRow <= last; ++sourceRow) {
        if (static_cast<size_t>(row) < m_sourceRows.size() && m_sourceRows[static_cast<size_t>(row)] == sourceRow) {
            insertRun();
            ++row;
        } else if (accepted[static_cast<size_t>(sourceRow - first)]) {
            run.push_back(sourceRow);
        }
    }
    insertRun();
}

void KnownHostsFilterModel::refilter()
{
    const QString query = m_source.viewModel().knownHostsSearchQuery();
    const QString fingerprintQuery = m_source.viewModel().knownHostsFingerprintQuery();
    // Blanks around the text change the field but not the query; the rows stay as they are.
    std::optional<QSet<QUuid>> lookup = currentLookup();
    if (query == m_query && fingerprintQuery == m_fingerprintQuery && lookup == m_lookup)
        return;
    // A reload tells the view model's own listeners first, and they may end or renew the lookup while
    // the source still maps its rows into the old document: the rows wait for the source's reset.
    if (m_sourceRebuilding) {
        adoptSearch(query, fingerprintQuery, std::move(lookup));
        return;
    }
    const std::vector<char> shown = shownSourceRows();
    // A longer query can only hide rows and a shorter one only show them, so typing on tests just
    // the rows still shown and deleting tests just the hidden ones. A fingerprint is matched by its
    // start, so the same holds for the fingerprint query as long as there is one before and after.
    const bool sameKind = m_fingerprintQuery.isEmpty() == fingerprintQuery.isEmpty() && lookup == m_lookup;
    const bool narrowing = sameKind && query.contains(m_query) && fingerprintQuery.startsWith(m_fingerprintQuery);
    const bool widening = sameKind && m_query.contains(query) && m_fingerprintQuery.startsWith(fingerprintQuery);
    adoptSearch(query, fingerprintQuery, std::move(lookup));
    const std::vector<char> accepted = acceptedRows(shown, narrowing, widening);
    if (changedRuns(shown, accepted) <= maximumRunsAnnouncedRowByRow) {
        const int last = static_cast<int>(accepted.size()) - 1;
        removeRejected(0, last, accepted);
        insertAccepted(0, last, accepted);
    } else {
        beginResetModel();
        m_sourceRows = keptRows(accepted);
        endResetModel();
    }
}

void KnownHostsFilterModel::adoptSearch(
    const QString& query, const QString& fingerprintQuery, std::optional<QSet<QUuid>> lookup)
{
    m_query = query;
    m_searchableQuery = KnownHostsSearchText::searchableQuery(m_query);
    m_fingerprintQuery = fingerprintQuery;
    m_lookup = std::move(lookup);
}

std::vector<char> KnownHostsFilterModel::acceptedRows(
    const std::vector<char>& shown, bool narrowing, bool widening) const
{
    // Typing on only tests the rows still shown, deleting only the rows hidden. A fingerprint, or a
    // query the search text cannot answer, needs the entries themselves.
    if (!m_searchableQuery || !m_fingerprintQuery.isEmpty()) {
        std::vector<char> accepted(shown.size());
        for (size_t row = 0; row < accepted.size(); ++row) {
            if ((narrowing && !shown[row]) || (widening && shown[row]))
                accepted[row] = shown[row];
            else
                accepted[row] = accepts(static_cast<int>(row)) ? 1 : 0;
        }
        return accepted;
    }
    Q_ASSERT(m_searchText.rowCount() == static_cast<qsizetype>(shown.size()));
    const QByteArray& query = *m_searchableQuery;
    std::vector<char> accepted;
    if (query.isEmpty()) {
        accepted.assign(shown.size(), 1);
    } else if (narrowing || widening) {
        accepted = shown;
        for (size_t row = 0; row < accepted.size(); ++row) {
            if (narrowing == (shown[row] != 0))
                accepted[row] = m_searchText.rowContains(static_cast<qsizetype>(row), query) ? 1 : 0;
        }
    } else {
        accepted = m_searchText.rowsContaining(query);
    }
    if (m_lookup) {
        for (size_t row = 0; row < accepted.size(); ++row)
            accepted[row] = accepted[row] && m_lookup->contains(m_source.entryAt(static_cast<int>(row)).id()) ? 1 : 0;
    }
    return accepted;
}

std::vector<char> KnownHostsFilterModel::shownSourceRows() const
{
    std::vector<char> shown(static_cast<size_t>(m_source.rowCount()), 0);
    for (const int sourceRow : m_sourceRows)
        shown[static_cast<size_t>(sourceRow)] = 1;
    return shown;
}

std::vector<int> KnownHostsFilterModel::keptRows(const std::vector<char>& accepted)
{
    std::vector<int> rows;
    rows.reserve(static_cast<size_t>(std::count(accepted.cbegin(), accepted.cend(), 1)));
    for (size_t row = 0; row < accepted.size(); ++row) {
        if (accepted[row])
            rows.push_back(static_cast<int>(row));
    }
    return rows;
}

qsizetype KnownHostsFilterModel::changedRuns(const std::vector<char>& shown, const std::vector<char>& accepted)
{
    qsizetype runs = 0;
    bool inRun = false;
    for (size_t row = 0; row < accepted.size(); ++row) {
        const bool changes = (shown[row] != 0) != (accepted[row] != 0);
        if (changes && !inRun)
            ++runs;
        inRun = changes;
    }
    return runs;
}

bool KnownHostsFilterModel::accepts(int sourceRow) const
{
    if (m_lookup && !m_lookup->contains(m_source.entryAt(sourceRow).id()))
        return false;
    if (!m_searchableQuery)
        return SSHConfigViewModel::knownHostEntryMatchesSearch(
            m_source.entryAt(sourceRow), m_query, m_fingerprintQuery);
    return m_searchableQuery->isEmpty() || m_searchText.rowContains(sourceRow, *m_searchableQuery)
        || SSHConfigViewModel::knownHostEntryMatchesFingerprint(m_source.entryAt(sourceRow), m_fingerprintQuery);
}

void KnownHostsFilterModel::rebuildSearchText()
{
    m_searchText.clear();
    const int rows = m_source.rowCount();
    qsizetype bytes = 0;
    for (int row = 0; row < rows; ++row)
        bytes += KnownHostsSearchText::bytesFor(m_source.entryAt(row));
    m_searchText.reserve(rows, bytes);
    for (int row = 0; row < rows; ++row)
        m_searchText.append(m_source.entryAt(row));
}

std::optional<QSet<QUuid>> KnownHostsFilterModel::currentLookup() const
{
    const std::optional<SSHConfigViewModel::KnownHostLookup>& lookup = m_source.viewModel().knownHostLookup();
    if (!lookup)
        return std::nullopt;
    return QSet<QUuid>(lookup->entryIDs.cbegin(), lookup->entryIDs.cend());
}
