#include "HostFilterModel.h"

HostFilterModel::HostFilterModel(HostListModel& source, QObject* parent)
    : QSortFilterProxyModel(parent)
    , m_source(source)
{
    setSourceModel(&source);
    setDynamicSortFilter(true);
    const SSHConfigViewModel* viewModel = &source.viewModel();
    m_query = viewModel->hostSearchQuery();
    connect(viewModel, &SSHConfigViewModel::searchTextChanged, this, &HostFilterModel::refilter);
    connect(viewModel, &SSHConfigViewModel::selectedGroupChanged, this, &HostFilterModel::refilter);
}

void HostFilterModel::refilter()
{
    // The query is computed once per change, not once per row.
    m_query = m_source.viewModel().hostSearchQuery();
    invalidateFilter();
}

bool HostFilterModel::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const
{
    if (sourceParent.isValid())
        return false;
    return m_source.viewModel().hostMatchesFilters(m_source.hostAt(sourceRow), m_query);
}

int HostFilterModel::sourceRow(int proxyRow) const
{
    return mapToSource(index(proxyRow, 0)).row();
}

int HostFilterModel::rowOf(const QUuid& id) const
{
    const int row = m_source.rowOf(id);
    return row < 0 ? -1 : mapFromSource(m_source.index(row)).row();
}

bool HostFilterModel::moveRows(const QModelIndex& sourceParent, int sourceRow, int count,
    const QModelIndex& destinationParent, int destinationChild)
{
    const int rows = rowCount();
    if (sourceParent.isValid() || destinationParent.isValid() || count <= 0 || sourceRow < 0 || sourceRow + count > rows
        || destinationChild < 0 || destinationChild > rows)
        return false;
    const int first = this->sourceRow(sourceRow);
    if (this->sourceRow(sourceRow + count - 1) != first + count - 1)
        return false;
    const int destination = destinationChild == rows ? m_source.rowCount() : this->sourceRow(destinationChild);
    return m_source.moveRows({}, first, count, {}, destination);
}
