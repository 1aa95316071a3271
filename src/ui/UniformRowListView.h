#pragma once

#include <QListView>

/// A list whose rows all have the same size (uniformItemSizes), for lists of 100,000 rows.
///
/// QListView lays out every row again after any change of an item's data, in case its size
/// changed; with uniform sizes it cannot have, so a changed row here only repaints.
class UniformRowListView : public QListView
{
    Q_OBJECT

public:
    explicit UniformRowListView(QWidget* parent = nullptr);

protected:
    void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QList<int>& roles) override;
};
