#include "HostRowDelegate.h"

#include "HostListModel.h"
#include "TextStyle.h"

#include <QApplication>
#include <QPainter>

namespace
{
constexpr int dotSide = 8;
constexpr int horizontalPadding = 6;
constexpr int verticalPadding = 2;
constexpr int lineSpacing = 4;
constexpr int dotGap = 6;
} // namespace

QColor HostRowDelegate::dotColour(bool isEnabled)
{
    return isEnabled ? QColor(52, 199, 89) : QColor(142, 142, 147);
}

QColor HostRowDelegate::titleColour(const QStyleOptionViewItem& option, bool isEnabled)
{
    const QPalette::ColorGroup group
        = option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
    if (option.state.testFlag(QStyle::State_Selected))
        return option.palette.color(group, QPalette::HighlightedText);
    // A disabled host reads as such without its dot's colour: its title is muted as well.
    return option.palette.color(isEnabled ? group : QPalette::Disabled, QPalette::Text);
}

QFont HostRowDelegate::titleFont(const QFont& base)
{
    QFont font = base;
    font.setBold(true);
    return font;
}

QFont HostRowDelegate::groupsFont(const QFont& base)
{
    return textStyleFont(TextStyle::caption, base);
}

// A host without groups takes one line; the groups line below the title only when there are groups.
QSize HostRowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const int title = QFontMetrics(titleFont(option.font)).height();
    int height = verticalPadding * 2 + title + 4;
    if (!index.data(HostListModel::GroupsTextRole).toString().isEmpty())
        height += lineSpacing + QFontMetrics(groupsFont(option.font)).height();
    return { 200, height };
}

void HostRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QStyleOptionViewItem panel = option;
    initStyleOption(&panel, index);
    panel.text.clear();
    panel.icon = QIcon();
    const QWidget* widget = option.widget;
    QStyle* style = widget ? widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &panel, painter, widget);

    const bool selected = option.state.testFlag(QStyle::State_Selected);
    const QPalette::ColorGroup group
        = option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
    const QColor textColour = option.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text);
    QColor mutedColour = selected ? textColour : option.palette.color(group, QPalette::PlaceholderText);

    const QFont title = titleFont(option.font);
    const QFont groups = groupsFont(option.font);
    const QString groupsText = index.data(HostListModel::GroupsTextRole).toString();
    const int titleHeight = QFontMetrics(title).height();
    const int groupsHeight = groupsText.isEmpty() ? 0 : lineSpacing + QFontMetrics(groups).height();
    const QRect area = option.rect.adjusted(horizontalPadding, verticalPadding, -horizontalPadding, -verticalPadding);
    const int top = area.top() + (area.height() - titleHeight - groupsHeight) / 2;

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(dotColour(index.data(HostListModel::IsEnabledRole).toBool()));
    painter->drawEllipse(QRectF(area.left(), top + (titleHeight - dotSide) / 2.0, dotSide, dotSide));

    const int textLeft = area.left() + dotSide + dotGap;
    const QRect titleRect(textLeft, top, area.right() - textLeft, titleHeight);
    painter->setFont(title);
    painter->setPen(titleColour(option, index.data(HostListModel::IsEnabledRole).toBool()));
    painter->drawText(titleRect, Qt::AlignLeft | Qt::AlignVCenter,
        QFontMetrics(title).elidedText(index.data(Qt::DisplayRole).toString(), Qt::ElideRight, titleRect.width()));
    if (!groupsText.isEmpty()) {
        const QRect groupsRect(
            area.left(), titleRect.bottom() + 1 + lineSpacing, area.width(), QFontMetrics(groups).height());
        painter->setFont(groups);
        painter->setPen(mutedColour);
        painter->drawText(groupsRect, Qt::AlignLeft | Qt::AlignVCenter,
            QFontMetrics(groups).elidedText(groupsText, Qt::ElideRight, groupsRect.width()));
    }
    painter->restore();
}
