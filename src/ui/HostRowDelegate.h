#pragma once

#include <QStyledItemDelegate>

/// Draws one row of the host list: a small green dot for an enabled host or a gray one for a disabled
/// host, the first pattern (or "*") in bold, and below it the host's groups joined with ", " in small
/// muted text when it has any. Reads HostListModel's roles.
///
/// Every row has the same height, room for both lines, so the list can lay out ten thousand rows
/// without measuring each; a row without groups centres its one line.
class HostRowDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    /// The dot colour for an enabled or a disabled host.
    static QColor dotColour(bool isEnabled);
    /// The colour of a row's title: the text colour, muted for a disabled host unless the row is
    /// selected (then the highlight's text colour, whatever the host).
    static QColor titleColour(const QStyleOptionViewItem& option, bool isEnabled);

private:
    static QFont titleFont(const QFont& base);
    static QFont groupsFont(const QFont& base);
};
