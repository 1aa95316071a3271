#include "HostListView.h"

#include "AccessibleText.h"
#include "HostFilterModel.h"
#include "HostListModel.h"
#include "HostRowDelegate.h"
#include "SSHConfigViewModel.h"

#include <QApplication>
#include <QDrag>
#include <QDragMoveEvent>
#include <QMimeData>
#include <QPainter>

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
    setAcceptDrops(true);
    viewport()->setAcceptDrops(true);

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

QString HostListView::positionsMimeType()
{
    return u"application/x-tarnwick-host-positions"_s;
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

qsizetype HostListView::dropPosition(const QPoint& point) const
{
    const QModelIndex index = indexAt(point);
    int row = model()->rowCount();
    if (index.isValid())
        row = point.y() < visualRect(index).center().y() ? index.row() : index.row() + 1;
    if (row >= model()->rowCount())
        return m_viewModel.document().hosts.size();
    return model()->index(row, 0).data(HostListModel::PositionRole).toInt();
}

void HostListView::mousePressEvent(QMouseEvent* event)
{
    m_pressedIndex = indexAt(event->position().toPoint());
    m_pressPosition = event->position().toPoint();
    QListView::mousePressEvent(event);
}

void HostListView::mouseMoveEvent(QMouseEvent* event)
{
    const bool dragging = event->buttons().testFlag(Qt::LeftButton) && m_pressedIndex.isValid() &&
                          (event->position().toPoint() - m_pressPosition).manhattanLength() >=
                              QApplication::startDragDistance();
    if (dragging && m_viewModel.canReorderHosts()) {
        startReorderDrag();
        return;
    }
    QListView::mouseMoveEvent(event);
}

void HostListView::startReorderDrag()
{
    const QModelIndex index = m_pressedIndex;
    m_pressedIndex = QPersistentModelIndex();
    auto* mimeData = new QMimeData;
    mimeData->setData(positionsMimeType(), QByteArray::number(index.data(HostListModel::PositionRole).toInt()));
    auto* drag = new QDrag(this);
    drag->setMimeData(mimeData);
    const QRect rowRect = visualRect(index);
    drag->setPixmap(viewport()->grab(rowRect));
    drag->setHotSpot(m_pressPosition - rowRect.topLeft());
    setState(DraggingState);
    // The drop itself moves the hosts in the view model; whatever the drag reports, nothing is removed here.
    drag->exec(Qt::MoveAction, Qt::MoveAction);
    setState(NoState);
    clearDropIndicator();
}

bool HostListView::acceptsReorderDrop(const QDropEvent& event) const
{
    return event.source() == this && event.mimeData()->hasFormat(positionsMimeType()) &&
           m_viewModel.canReorderHosts();
}

void HostListView::dragEnterEvent(QDragEnterEvent* event)
{
    if (!acceptsReorderDrop(*event)) {
        event->ignore();
        return;
    }
    setState(DraggingState);
    event->acceptProposedAction();
}

void HostListView::dragMoveEvent(QDragMoveEvent* event)
{
    // The base class keeps the list scrolling while the pointer rests near an edge.
    QListView::dragMoveEvent(event);
    if (!acceptsReorderDrop(*event)) {
        event->ignore();
        clearDropIndicator();
        return;
    }
    const QPoint point = event->position().toPoint();
    const QModelIndex index = indexAt(point);
    m_dropIndicatorRow = !index.isValid() ? model()->rowCount()
                         : point.y() < visualRect(index).center().y() ? index.row()
                                                                       : index.row() + 1;
    event->acceptProposedAction();
    viewport()->update();
}

void HostListView::dragLeaveEvent(QDragLeaveEvent* event)
{
    QListView::dragLeaveEvent(event);
    clearDropIndicator();
}

void HostListView::dropEvent(QDropEvent* event)
{
    stopAutoScroll();
    setState(NoState);
    clearDropIndicator();
    if (!acceptsReorderDrop(*event)) {
        event->ignore();
        return;
    }
    bool ok = false;
    const qsizetype from = event->mimeData()->data(positionsMimeType()).toLongLong(&ok);
    if (!ok) {
        event->ignore();
        return;
    }
    m_viewModel.moveHosts({from}, dropPosition(event->position().toPoint()));
    event->acceptProposedAction();
}

void HostListView::clearDropIndicator()
{
    if (m_dropIndicatorRow < 0)
        return;
    m_dropIndicatorRow = -1;
    viewport()->update();
}

void HostListView::paintEvent(QPaintEvent* event)
{
    QListView::paintEvent(event);
    if (m_dropIndicatorRow < 0)
        return;
    const int rows = model()->rowCount();
    int y = 0;
    if (m_dropIndicatorRow < rows)
        y = visualRect(model()->index(m_dropIndicatorRow, 0)).top();
    else if (rows > 0)
        y = visualRect(model()->index(rows - 1, 0)).bottom();
    QPainter painter(viewport());
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawLine(0, y, viewport()->width(), y);
}
