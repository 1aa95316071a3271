#pragma once

#include <QHash>
#include <QIcon>
#include <QStyledItemDelegate>

/// Paints one row of the known_hosts list from KnownHostsModel's roles: on the first line the marker
/// badge (when there is a marker) and the row label in bold; on the second the key type and the
/// "commented" and "hashed" labels, in the secondary colour.
///
/// Every row has the same height, worked out from the fonts alone, so a list with uniform item sizes
/// never asks the model for more than the rows it shows.
class KnownHostEntryDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit KnownHostEntryDelegate(QObject* parent = nullptr);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    struct Lines;

    Lines linesFor(const QStyleOptionViewItem& option) const;
    void paintFirstLine(
        QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index, const QRect& line) const;
    void paintSecondLine(
        QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index, const QRect& line) const;
    /// Paints symbol and text at the left of area and returns the width used.
    int paintSymbolText(
        QPainter* painter, QStringView symbol, const QString& text, const QRect& area, const QColor& colour) const;
    QIcon tintedSymbol(QStringView symbol, const QColor& colour) const;

    mutable QHash<QString, QIcon> m_symbols;
};
