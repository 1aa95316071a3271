#include "KnownHostsFilterModel.h"

KnownHostsFilterModel::KnownHostsFilterModel(KnownHostsModel& source, QObject* parent)
    : QSortFilterProxyModel(parent)
    , m_source(source)
{
    setSourceModel(&source);
    setDynamicSortFilter(true);
    const SSHConfigViewModel* viewModel = &source.viewModel();
    m_query = viewModel->knownHostsSearchQuery();
    connect(viewModel, &SSHConfigViewModel::knownHostsSearchTextChanged, this, &KnownHostsFilterModel::refilter);
}

void KnownHostsFilterModel::refilter()
{
    const QString query = m_source.viewModel().knownHostsSearchQuery();
    // Blanks around the text change the field but not the query; the rows stay as they are.
    if (query == m_query)
        return;
    m_query = query;
    invalidateFilter();
}

bool KnownHostsFilterModel::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const
{
    if (sourceParent.isValid())
        return false;
    return SSHConfigViewModel::knownHostEntryMatches(m_source.entryAt(sourceRow), m_query);
}

int KnownHostsFilterModel::rowOf(const QUuid& id) const
{
    const int row = m_source.rowOf(id);
    return row < 0 ? -1 : mapFromSource(m_source.index(row)).row();
}
