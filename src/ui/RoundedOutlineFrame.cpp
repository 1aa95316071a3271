#include "RoundedOutlineFrame.h"

#include <QPainter>
#include <QVBoxLayout>

namespace
{

constexpr qreal cornerRadius = 8.0;
// Enough inset that the content's square corners stay inside the rounded outline.
constexpr int contentInset = 4;

} // namespace

RoundedOutlineFrame::RoundedOutlineFrame(QWidget* content, QWidget* parent)
    : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(contentInset, contentInset, contentInset, contentInset);
    layout->addWidget(content);
}

void RoundedOutlineFrame::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor outline = palette().color(QPalette::PlaceholderText);
    outline.setAlphaF(0.2f);
    painter.setPen(QPen(outline, 1.0));
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
}
