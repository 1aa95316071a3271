#include "HostListView.h"

#include "AccessibleText.h"
#include "HostFilterModel.h"
#include "HostListModel.h"
#include "HostRowDelegate.h"
#include "SSHConfigViewModel.h"

using namespace Qt::StringLiterals;

HostListView::HostListView(SSHConfigViewModel& viewModel, QWidget* parent)
    : QListView(parent)
    , m_viewModel(viewModel)
    , m_hosts(new HostListModel(viewModel, this))
    , m_filtered(new HostFilterModel(*m_hosts, this))
{
    setObjectName(u"hostList"_s);
    setAccessibleText(*this, u"Hosts"_s, u"De hostblokken van de SSH config in bestandsvolgorde."_s);
    // Before setModel, so these run ahead of the list's own handlers, which move the selection to a
    // neighbour when the selected row is filtered away.
    followRowChanges();
    setModel(m_filtered);
    setItemDelegate(new HostRowDelegate(this));
    // Rows differ in height (a second line only for hosts with groups), so sizes are not uniform; a
    // config holds hundreds of hosts at most, not the known_hosts file's hundred thousand entries.
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    // Qt's own internal move: the models hand a drop to the view model's moveHosts(), and refuse drags
    // while a search or group filter hides hosts.
    setDragDropMode(QAbstractItemView::InternalMove);
    setDefaultDropAction(Qt::MoveAction);
    setDropIndicatorShown(true);

    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, &HostListView::takeUserSelection);
    connect(&m_viewModel, &SSHConfigViewModel::selectedHostIDChanged, this, &HostListView::showViewModelSelection);
    showViewModelSelection();
}

HostListView::~HostListView()
{
    // The models go down with this widget's children, after this object, and announce it on the way.
    disconnect(m_filtered, nullptr, this, nullptr);
}

void HostListView::followRowChanges()
{
    // While filtering or reloading adds and removes rows, whatever the list does with its own selection
    // is not the user's choice; afterwards the view model's selection is shown again.
    const auto begin = [this] { ++m_rowsChanging; };
    const auto end = [this] {
        --m_rowsChanging;
        showViewModelSelection();
    };
    connect(m_filtered, &QAbstractItemModel::rowsAboutToBeInserted, this, begin);
    connect(m_filtered, &QAbstractItemModel::rowsInserted, this, end);
    connect(m_filtered, &QAbstractItemModel::rowsAboutToBeRemoved, this, begin);
    connect(m_filtered, &QAbstractItemModel::rowsRemoved, this, end);
    connect(m_filtered, &QAbstractItemModel::rowsAboutToBeMoved, this, begin);
    connect(m_filtered, &QAbstractItemModel::rowsMoved, this, end);
    connect(m_filtered, &QAbstractItemModel::layoutAboutToBeChanged, this, begin);
    connect(m_filtered, &QAbstractItemModel::layoutChanged, this, end);
    connect(m_filtered, &QAbstractItemModel::modelAboutToBeReset, this, begin);
    connect(m_filtered, &QAbstractItemModel::modelReset, this, end);
}

void HostListView::showViewModelSelection()
{
    const std::optional<QUuid>& id = m_viewModel.selectedHostID();
    const int row = id ? m_filtered->rowOf(*id) : -1;
    const QModelIndex target = row >= 0 ? m_filtered->index(row, 0) : QModelIndex();
    if (target.isValid() && selectionModel()->isSelected(target) && currentIndex() == target)
        return;
    m_showingViewModelSelection = true;
    if (target.isValid()) {
        selectionModel()->setCurrentIndex(target, QItemSelectionModel::ClearAndSelect);
        scrollTo(target);
    } else {
        // Without a current row either, no neighbour of the hidden host looks chosen.
        selectionModel()->clear();
    }
    m_showingViewModelSelection = false;
}

void HostListView::takeUserSelection()
{
    if (m_showingViewModelSelection || m_rowsChanging > 0)
        return;
    const QModelIndexList rows = selectionModel()->selectedRows();
    // An emptied selection comes from rows being filtered away, not from the user choosing no host.
    if (rows.isEmpty())
        return;
    m_viewModel.setSelectedHostID(rows.first().data(HostListModel::IdRole).toUuid());
}
