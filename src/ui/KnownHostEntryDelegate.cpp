#include "KnownHostEntryDelegate.h"

#include "KnownHostsModel.h"
#include "SymbolIcon.h"
#include "TextStyle.h"

#include <QApplication>
#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>

using namespace Qt::StringLiterals;

namespace
{

constexpr int verticalPadding = 2;
constexpr int lineSpacing = 3;
constexpr int firstLineSpacing = 6;
constexpr int secondLineSpacing = 8;
constexpr int badgeHorizontalPadding = 6;
constexpr int badgeVerticalPadding = 2;
constexpr int horizontalMargin = 6;

} // namespace

struct KnownHostEntryDelegate::Lines
{
    QFont headline;
    QFont caption;
    QFont caption2;
    int firstHeight;
    int secondHeight;
};

KnownHostEntryDelegate::KnownHostEntryDelegate(QObject* parent)
    : QStyledItemDelegate(parent)
{ }

KnownHostEntryDelegate::Lines KnownHostEntryDelegate::linesFor(const QStyleOptionViewItem& option) const
{
    Lines lines { textStyleFont(TextStyle::headline, option.font), textStyleFont(TextStyle::caption, option.font),
        textStyleFont(TextStyle::caption2, option.font), 0, 0 };
    const int badgeHeight = QFontMetrics(lines.caption2).height() + 2 * badgeVerticalPadding;
    lines.firstHeight = qMax(QFontMetrics(lines.headline).height(), badgeHeight);
    lines.secondHeight = qMax(QFontMetrics(lines.caption).height(), QFontMetrics(lines.caption2).height());
    return lines;
}

QSize KnownHostEntryDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    Q_UNUSED(index)
    const Lines lines = linesFor(option);
    const int height = 2 * verticalPadding + lines.firstHeight + lineSpacing + lines.secondHeight + 4;
    return { 200, height };
}

void KnownHostEntryDelegate::paint(
    QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QStyleOptionViewItem panel = option;
    initStyleOption(&panel, index);
    panel.text.clear();
    panel.icon = QIcon();
    const QWidget* widget = option.widget;
    QStyle* style = widget ? widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &panel, painter, widget);

    const Lines lines = linesFor(option);
    const QRect content = option.rect.adjusted(horizontalMargin, 0, -horizontalMargin, 0);
    const int top = content.top() + (content.height() - lines.firstHeight - lineSpacing - lines.secondHeight) / 2;
    const QRect first(content.left(), top, content.width(), lines.firstHeight);
    const QRect second(content.left(), first.bottom() + 1 + lineSpacing, content.width(), lines.secondHeight);
    painter->save();
    paintFirstLine(painter, option, index, first);
    paintSecondLine(painter, option, index, second);
    painter->restore();
}

void KnownHostEntryDelegate::paintFirstLine(
    QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index, const QRect& line) const
{
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    const QColor text = option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
    QRect rest = line;
    const QString marker = index.data(KnownHostsModel::MarkerRole).toString();
    if (!marker.isEmpty()) {
        const QFont badgeFont = textStyleFont(TextStyle::caption2, option.font);
        const QFontMetrics metrics(badgeFont);
        const QSize badgeSize(metrics.horizontalAdvance(marker) + 2 * badgeHorizontalPadding,
            metrics.height() + 2 * badgeVerticalPadding);
        const QRect badge(QPoint(line.left(), line.center().y() - badgeSize.height() / 2), badgeSize);
        QColor fill = warningOrange();
        fill.setAlphaF(selected ? 0.35F : 0.15F);
        painter->setRenderHint(QPainter::Antialiasing);
        QPainterPath path;
        path.addRoundedRect(QRectF(badge), 4, 4);
        painter->fillPath(path, fill);
        painter->setFont(badgeFont);
        painter->setPen(text);
        painter->drawText(badge, Qt::AlignCenter, marker);
        rest.setLeft(badge.right() + 1 + firstLineSpacing);
    }
    const QFont headline = textStyleFont(TextStyle::headline, option.font);
    painter->setFont(headline);
    painter->setPen(text);
    const QString label
        = QFontMetrics(headline).elidedText(index.data(Qt::DisplayRole).toString(), Qt::ElideRight, rest.width());
    painter->drawText(rest, Qt::AlignLeft | Qt::AlignVCenter, label);
}

void KnownHostEntryDelegate::paintSecondLine(
    QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index, const QRect& line) const
{
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    QColor colour = selected ? option.palette.color(QPalette::HighlightedText) : secondaryTextColor(option.palette);
    if (selected)
        colour.setAlphaF(0.8F);
    const QFont caption = textStyleFont(TextStyle::caption, option.font);
    painter->setFont(caption);
    painter->setPen(colour);
    const QString keyType = index.data(KnownHostsModel::KeyTypeRole).toString();
    const QString shownKeyType = QFontMetrics(caption).elidedText(keyType, Qt::ElideRight, line.width());
    painter->drawText(line, Qt::AlignLeft | Qt::AlignVCenter, shownKeyType);
    QRect rest = line;
    rest.setLeft(line.left() + QFontMetrics(caption).horizontalAdvance(shownKeyType) + secondLineSpacing);
    painter->setFont(textStyleFont(TextStyle::caption2, option.font));
    if (index.data(KnownHostsModel::IsCommentedOutRole).toBool())
        rest.setLeft(
            rest.left() + paintSymbolText(painter, u"number", u"commented"_s, rest, colour) + secondLineSpacing);
    if (index.data(KnownHostsModel::IsHashedRole).toBool())
        paintSymbolText(painter, u"lock.fill", u"hashed"_s, rest, colour);
}

int KnownHostEntryDelegate::paintSymbolText(
    QPainter* painter, QStringView symbol, const QString& text, const QRect& area, const QColor& colour) const
{
    if (area.width() <= 0)
        return 0;
    const QFontMetrics metrics(painter->font());
    const int side = metrics.height() - 2;
    const QRect symbolRect(area.left(), area.center().y() - side / 2, side, side);
    tintedSymbol(symbol, colour).paint(painter, symbolRect);
    const QRect textRect = area.adjusted(side + 3, 0, 0, 0);
    painter->drawText(textRect, Qt::AlignLeft | Qt::AlignVCenter, text);
    return side + 3 + metrics.horizontalAdvance(text);
}

QIcon KnownHostEntryDelegate::tintedSymbol(QStringView symbol, const QColor& colour) const
{
    // Rows repaint on every scroll step; making the icon once per symbol and colour keeps that cheap.
    const QString key = symbol.toString() + u'/' + colour.name(QColor::HexArgb);
    auto found = m_symbols.constFind(key);
    if (found != m_symbols.constEnd())
        return *found;
    QIcon icon = symbolIcon(symbol, colour);
    m_symbols.insert(key, icon);
    return icon;
}
