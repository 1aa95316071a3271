#include "UniformRowListView.h"

#include <QEvent>
#include <QHeaderView>

UniformRowListView::UniformRowListView(QWidget* parent)
    : QTableView(parent)
{
    horizontalHeader()->hide();
    horizontalHeader()->setStretchLastSection(true);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    setShowGrid(false);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    // A list: Tab leaves it, and a click selects the whole row.
    setTabKeyNavigation(false);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

QModelIndex UniformRowListView::moveCursor(CursorAction cursorAction, Qt::KeyboardModifiers modifiers)
{
    // In a list Home and End go to the first and the last row; a table sends them along the row
    // unless Control is held.
    if (cursorAction == MoveHome || cursorAction == MoveEnd)
        modifiers |= Qt::ControlModifier;
    return QTableView::moveCursor(cursorAction, modifiers);
}

void UniformRowListView::changeEvent(QEvent* event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        adoptDelegateRowHeight();
}

void UniformRowListView::showEvent(QShowEvent* event)
{
    adoptDelegateRowHeight();
    QTableView::showEvent(event);
}

void UniformRowListView::adoptDelegateRowHeight()
{
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    const int height = itemDelegate()->sizeHint(option, QModelIndex()).height();
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setDefaultSectionSize(height);
}
