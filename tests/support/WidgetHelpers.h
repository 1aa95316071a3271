#pragma once

// Small helpers for widget tests: finding a named child, reading a list's rows and clicking one.

#include <QAbstractItemView>
#include <QComboBox>
#include <QStringList>
#include <QTest>

/// The child named name of type T, or null with a warning that names it.
template<typename T> T* child(const QObject& parent, const QString& name)
{
    T* found = parent.findChild<T*>(name);
    if (!found)
        qWarning("no child named %s", qPrintable(name));
    return found;
}

/// The data of every row of model's first column in role.
inline QStringList rowTexts(const QAbstractItemModel& model, int role = Qt::DisplayRole)
{
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row)
        texts.append(model.index(row, 0).data(role).toString());
    return texts;
}

/// Every item text of a combo box, in order.
inline QStringList comboItems(const QComboBox& combo)
{
    QStringList items;
    for (int i = 0; i < combo.count(); ++i)
        items.append(combo.itemText(i));
    return items;
}

/// Clicks the centre of row as a user would, scrolling it into view first.
inline void clickRow(QAbstractItemView& view, int row)
{
    const QModelIndex index = view.model()->index(row, 0);
    view.scrollTo(index);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(index).center());
}
