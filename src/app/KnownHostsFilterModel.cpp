#include "KnownHostsFilterModel.h"

namespace
{

// Beyond this many runs a reset costs the views less than announcing each run.
constexpr qsizetype maximumRunsAnnouncedRowByRow = 32;

} // namespace

KnownHostsFilterModel::KnownHostsFilterModel(KnownHostsModel& source, QObject* parent)
    : QSortFilterProxyModel(parent)
    , m_source(source)
{
    // Before the proxy's own connections, so that the search text is current when it asks a
    // changed or inserted row.
    followSourceRows();
    rebuildSearchText();
    setSourceModel(&source);
    setDynamicSortFilter(true);
    const SSHConfigViewModel* viewModel = &source.viewModel();
    m_query = viewModel->knownHostsSearchQuery();
    m_searchableQuery = KnownHostsSearchText::searchableQuery(m_query);
    m_fingerprintQuery = viewModel->knownHostsFingerprintQuery();
    m_lookup = currentLookup();
    connect(viewModel, &SSHConfigViewModel::knownHostsSearchTextChanged, this, &KnownHostsFilterModel::refilter);
    connect(viewModel, &SSHConfigViewModel::knownHostLookupChanged, this, &KnownHostsFilterModel::refilter);
    connect(&source, &QAbstractItemModel::rowsInserted, this, &KnownHostsFilterModel::forgetShownRows);
    connect(&source, &QAbstractItemModel::rowsRemoved, this, &KnownHostsFilterModel::forgetShownRows);
    connect(&source, &QAbstractItemModel::rowsMoved, this, &KnownHostsFilterModel::forgetShownRows);
    connect(&source, &QAbstractItemModel::dataChanged, this, &KnownHostsFilterModel::forgetShownRows);
    connect(&source, &QAbstractItemModel::layoutChanged, this, &KnownHostsFilterModel::forgetShownRows);
    connect(&source, &QAbstractItemModel::modelReset, this, &KnownHostsFilterModel::forgetShownRows);
}

void KnownHostsFilterModel::refilter()
{
    const QString query = m_source.viewModel().knownHostsSearchQuery();
    const QString fingerprintQuery = m_source.viewModel().knownHostsFingerprintQuery();
    // Blanks around the text change the field but not the query; the rows stay as they are.
    std::optional<QSet<QUuid>> lookup = currentLookup();
    if (query == m_query && fingerprintQuery == m_fingerprintQuery && lookup == m_lookup)
        return;
    const std::vector<char> shown = shownSourceRows();
    // A longer query can only hide rows and a shorter one only show them, so typing on tests just
    // the rows still shown and deleting tests just the hidden ones. A fingerprint is matched by its
    // start, so the same holds for the fingerprint query as long as there is one before and after.
    const bool sameKind = m_fingerprintQuery.isEmpty() == fingerprintQuery.isEmpty() && lookup == m_lookup;
    const bool narrowing = sameKind && query.contains(m_query) && fingerprintQuery.startsWith(m_fingerprintQuery);
    const bool widening = sameKind && m_query.contains(query) && m_fingerprintQuery.startsWith(fingerprintQuery);
    m_query = query;
    m_searchableQuery = KnownHostsSearchText::searchableQuery(m_query);
    m_fingerprintQuery = fingerprintQuery;
    m_lookup = std::move(lookup);
    std::vector<char> accepted = acceptedRows(shown, narrowing, widening);
    m_accepted = &accepted;
    if (changedRuns(shown, accepted) <= maximumRunsAnnouncedRowByRow) {
        invalidateFilter();
    } else {
        beginResetModel();
        endResetModel();
        // Builds the new mapping now, while the answers are at hand.
        rowCount();
    }
    m_accepted = nullptr;
    m_shown = std::move(accepted);
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
    if (m_shown.size() == static_cast<size_t>(m_source.rowCount()))
        return m_shown;
    std::vector<char> shown(static_cast<size_t>(m_source.rowCount()), 0);
    const int rows = rowCount();
    for (int row = 0; row < rows; ++row)
        shown[static_cast<size_t>(mapToSource(index(row, 0)).row())] = 1;
    return shown;
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

bool KnownHostsFilterModel::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const
{
    if (sourceParent.isValid())
        return false;
    if (m_accepted && static_cast<size_t>(sourceRow) < m_accepted->size())
        return m_accepted->at(static_cast<size_t>(sourceRow)) != 0;
    return accepts(sourceRow);
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

void KnownHostsFilterModel::followSourceRows()
{
    connect(&m_source, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex&, int first, int last) {
        for (int row = first; row <= last; ++row)
            m_searchText.insert(row, m_source.entryAt(row));
    });
    connect(&m_source, &QAbstractItemModel::rowsRemoved, this,
        [this](const QModelIndex&, int first, int last) { m_searchText.remove(first, last - first + 1); });
    connect(&m_source, &QAbstractItemModel::dataChanged, this,
        [this](const QModelIndex& topLeft, const QModelIndex& bottomRight) {
            for (int row = topLeft.row(); row <= bottomRight.row(); ++row)
                m_searchText.replace(row, m_source.entryAt(row));
        });
    connect(&m_source, &QAbstractItemModel::modelReset, this, &KnownHostsFilterModel::rebuildSearchText);
    connect(&m_source, &QAbstractItemModel::layoutChanged, this, &KnownHostsFilterModel::rebuildSearchText);
    connect(&m_source, &QAbstractItemModel::rowsMoved, this, &KnownHostsFilterModel::rebuildSearchText);
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

int KnownHostsFilterModel::rowOf(const QUuid& id) const
{
    const int row = m_source.rowOf(id);
    return row < 0 ? -1 : mapFromSource(m_source.index(row)).row();
}
