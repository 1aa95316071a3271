#include "KnownHostsFilterModel.h"

#include "ParallelRanges.h"

namespace
{

// Beyond this many runs a reset costs the views less than announcing each run.
constexpr qsizetype maximumRunsAnnouncedRowByRow = 32;

} // namespace

KnownHostsFilterModel::KnownHostsFilterModel(KnownHostsModel& source, QObject* parent)
    : QSortFilterProxyModel(parent)
    , m_source(source)
{
    setSourceModel(&source);
    setDynamicSortFilter(true);
    const SSHConfigViewModel* viewModel = &source.viewModel();
    m_query = viewModel->knownHostsSearchQuery();
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
    m_fingerprintQuery = fingerprintQuery;
    m_lookup = std::move(lookup);
    std::vector<char> accepted(shown.size());
    // The entries are only read here, so a first letter over 100,000 of them can use every core.
    inParallelRanges(accepted.size(), [&](size_t begin, size_t end) {
        for (size_t row = begin; row < end; ++row) {
            if ((narrowing && !shown[row]) || (widening && shown[row]))
                accepted[row] = shown[row];
            else
                // NOLINTNEXTLINE(bugprone-narrowing-conversions): a bool keeps its value as a char
                accepted[row] = accepts(m_source.entryAt(static_cast<int>(row)));
        }
    });
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
    return accepts(m_source.entryAt(sourceRow));
}

bool KnownHostsFilterModel::accepts(const KnownHostEntry& entry) const
{
    if (m_lookup && !m_lookup->contains(entry.id()))
        return false;
    return SSHConfigViewModel::knownHostEntryMatchesSearch(entry, m_query, m_fingerprintQuery);
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
