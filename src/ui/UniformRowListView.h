#pragma once

#include <QTableView>

/// A list of 100,000 rows of one height: a one-column table without headers or grid.
///
/// QListView keeps a position for every row and computes them all again after a row is inserted or
/// removed, milliseconds at that size; a table with rows of a fixed height finds a row's position
/// from its number. The row height is what the item delegate asks for.
class UniformRowListView : public QTableView
{
    Q_OBJECT

public:
    explicit UniformRowListView(QWidget* parent = nullptr);

protected:
    QModelIndex moveCursor(CursorAction cursorAction, Qt::KeyboardModifiers modifiers) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void adoptDelegateRowHeight();
};
