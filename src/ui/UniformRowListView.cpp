#include "UniformRowListView.h"

UniformRowListView::UniformRowListView(QWidget* parent)
    : QListView(parent)
{
    setUniformItemSizes(true);
}

void UniformRowListView::dataChanged(
    const QModelIndex& topLeft, const QModelIndex& bottomRight, const QList<int>& roles)
{
    // Skips QListView's own handler, whose only addition is the new layout of every row.
    QAbstractItemView::dataChanged(topLeft, bottomRight, roles); // NOLINT(bugprone-parent-virtual-call)
}
