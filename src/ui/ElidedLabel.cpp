#include "ElidedLabel.h"

#include <QPainter>

ElidedLabel::ElidedLabel(QWidget* parent)
    : QFrame(parent)
{
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

void ElidedLabel::setText(const QString& text)
{
    if (text == m_text)
        return;
    m_text = text;
    setToolTip(text);
    updateGeometry();
    update();
}

QSize ElidedLabel::sizeHint() const
{
    return { fontMetrics().horizontalAdvance(m_text), fontMetrics().height() };
}

QSize ElidedLabel::minimumSizeHint() const
{
    return { 0, fontMetrics().height() };
}

void ElidedLabel::paintEvent(QPaintEvent* event)
{
    QFrame::paintEvent(event);
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    const QRect area = contentsRect();
    const QString shown = fontMetrics().elidedText(m_text, Qt::ElideMiddle, area.width());
    painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter, shown);
}
