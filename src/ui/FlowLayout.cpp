#include "FlowLayout.h"

#include <QWidget>

#include <algorithm>

FlowLayout::FlowLayout(int horizontalSpacing, int verticalSpacing, QWidget* parent)
    : QLayout(parent)
    , m_horizontalSpacing(horizontalSpacing)
    , m_verticalSpacing(verticalSpacing)
{
    setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout()
{
    qDeleteAll(m_items);
}

void FlowLayout::addItem(QLayoutItem* item)
{
    m_items.append(item);
}

int FlowLayout::count() const
{
    return static_cast<int>(m_items.size());
}

QLayoutItem* FlowLayout::itemAt(int index) const
{
    return m_items.value(index);
}

QLayoutItem* FlowLayout::takeAt(int index)
{
    if (index < 0 || index >= m_items.size())
        return nullptr;
    return m_items.takeAt(index);
}

Qt::Orientations FlowLayout::expandingDirections() const
{
    return {};
}

bool FlowLayout::hasHeightForWidth() const
{
    return true;
}

int FlowLayout::heightForWidth(int width) const
{
    return arrange(QRect(0, 0, width, 0), false);
}

// As narrow as the widest item: everything else can move to a row of its own.
QSize FlowLayout::minimumSize() const
{
    QSize size;
    for (const QLayoutItem* item : m_items) {
        if (!item->isEmpty())
            size = size.expandedTo(item->minimumSize());
    }
    const QMargins margins = contentsMargins();
    return size.grownBy(margins);
}

// All items in one row.
QSize FlowLayout::sizeHint() const
{
    int width = 0;
    int height = 0;
    for (const QLayoutItem* item : m_items) {
        if (item->isEmpty())
            continue;
        const QSize hint = item->sizeHint();
        width += (width > 0 ? m_horizontalSpacing : 0) + hint.width();
        height = std::max(height, hint.height());
    }
    return QSize(width, height).grownBy(contentsMargins());
}

void FlowLayout::setGeometry(const QRect& rect)
{
    QLayout::setGeometry(rect);
    arrange(rect, true);
}

namespace
{
struct Placed
{
    QLayoutItem* item;
    QRect rect;
};

// Centres the items of one finished row on the row's middle line.
void placeRow(const QList<Placed>& row, int rowHeight)
{
    for (const Placed& placed : row) {
        QRect rect = placed.rect;
        rect.moveTop(rect.top() + (rowHeight - rect.height()) / 2);
        placed.item->setGeometry(rect);
    }
}
} // namespace

int FlowLayout::arrange(const QRect& rect, bool place) const
{
    const QRect area = rect.marginsRemoved(contentsMargins());
    QList<Placed> row;
    int x = area.x();
    int y = area.y();
    int rowHeight = 0;
    for (QLayoutItem* item : m_items) {
        if (item->isEmpty())
            continue;
        QSize size = item->sizeHint().expandedTo(item->minimumSize()).boundedTo(item->maximumSize());
        // An item wider than the whole row gets the row, down to its own minimum.
        size.setWidth(std::max(std::min(size.width(), area.width()), item->minimumSize().width()));
        if (!row.isEmpty() && x + size.width() > area.x() + area.width()) {
            if (place)
                placeRow(row, rowHeight);
            row.clear();
            x = area.x();
            y += rowHeight + m_verticalSpacing;
            rowHeight = 0;
        }
        row.append({ item, QRect(QPoint(x, y), size) });
        x += size.width() + m_horizontalSpacing;
        rowHeight = std::max(rowHeight, size.height());
    }
    if (place)
        placeRow(row, rowHeight);
    return y + rowHeight - rect.y() + contentsMargins().bottom();
}
