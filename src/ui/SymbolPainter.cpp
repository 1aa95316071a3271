#include "SymbolPainter.h"

#include <QPainterPath>
#include <QPolygonF>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace
{
// Every drawing is made in a 24 by 24 box, the grid most symbol sets use, and scaled to the target.
constexpr qreal grid = 24.0;

QPen linePen(const QColor& colour, qreal width = 2.0)
{
    return QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

void strokeOnly(QPainter& painter, const QColor& colour, qreal width = 2.0)
{
    painter.setPen(linePen(colour, width));
    painter.setBrush(Qt::NoBrush);
}

void fillOnly(QPainter& painter, const QColor& colour)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
}

void drawPlus(QPainter& p, const QColor& c)
{
    strokeOnly(p, c, 2.2);
    p.drawLine(QPointF(12, 4.5), QPointF(12, 19.5));
    p.drawLine(QPointF(4.5, 12), QPointF(19.5, 12));
}

void drawPlusCircle(QPainter& p, const QColor& c)
{
    strokeOnly(p, c);
    p.drawEllipse(QPointF(12, 12), 9, 9);
    p.drawLine(QPointF(12, 7.5), QPointF(12, 16.5));
    p.drawLine(QPointF(7.5, 12), QPointF(16.5, 12));
}

void drawTrash(QPainter& p, const QColor& c)
{
    strokeOnly(p, c);
    p.drawLine(QPointF(4, 6.5), QPointF(20, 6.5));
    p.drawPolyline(QPolygonF({ QPointF(9.5, 6.5), QPointF(9.5, 4), QPointF(14.5, 4), QPointF(14.5, 6.5) }));
    p.drawPolygon(QPolygonF({ QPointF(6, 6.5), QPointF(7.2, 20), QPointF(16.8, 20), QPointF(18, 6.5) }));
    p.drawLine(QPointF(10, 10), QPointF(10, 16.5));
    p.drawLine(QPointF(14, 10), QPointF(14, 16.5));
}

void drawTerminal(QPainter& p, const QColor& c)
{
    strokeOnly(p, c);
    p.drawRoundedRect(QRectF(3, 4.5, 18, 15), 3, 3);
    p.drawPolyline(QPolygonF({ QPointF(7, 9), QPointF(10, 12), QPointF(7, 15) }));
    p.drawLine(QPointF(12.5, 15), QPointF(17, 15));
}

void drawSquareAndArrowDown(QPainter& p, const QColor& c)
{
    strokeOnly(p, c);
    p.drawPolyline(QPolygonF(
        { QPointF(8, 10), QPointF(5, 10), QPointF(5, 20.5), QPointF(19, 20.5), QPointF(19, 10), QPointF(16, 10) }));
    p.drawLine(QPointF(12, 3.5), QPointF(12, 15));
    p.drawPolyline(QPolygonF({ QPointF(8.5, 11.5), QPointF(12, 15), QPointF(15.5, 11.5) }));
}

void drawArrowClockwise(QPainter& p, const QColor& c)
{
    strokeOnly(p, c);
    QPainterPath arc;
    arc.arcMoveTo(QRectF(4, 4, 16, 16), 60);
    arc.arcTo(QRectF(4, 4, 16, 16), 60, 300);
    p.drawPath(arc);
    p.drawPolyline(QPolygonF({ QPointF(12.5, 3), QPointF(16.5, 5.2), QPointF(14, 9) }));
}

void drawRectangleStack(QPainter& p, const QColor& c)
{
    strokeOnly(p, c);
    p.drawRoundedRect(QRectF(3.5, 10, 17, 10), 2, 2);
    p.drawLine(QPointF(5.5, 7), QPointF(18.5, 7));
    p.drawLine(QPointF(7.5, 4), QPointF(16.5, 4));
}

void drawExclamationTriangle(QPainter& p, const QColor& c)
{
    strokeOnly(p, c);
    p.drawPolygon(QPolygonF({ QPointF(12, 3.5), QPointF(21.5, 20), QPointF(2.5, 20) }));
    p.drawLine(QPointF(12, 9.5), QPointF(12, 14));
    fillOnly(p, c);
    p.drawEllipse(QPointF(12, 17), 1.2, 1.2);
}

void drawCupAndSaucer(QPainter& p, const QColor& c)
{
    fillOnly(p, c);
    QPainterPath cup;
    cup.moveTo(4.5, 7);
    cup.lineTo(16.5, 7);
    cup.lineTo(16.5, 12);
    cup.cubicTo(16.5, 15.5, 14, 17.5, 10.5, 17.5);
    cup.cubicTo(7, 17.5, 4.5, 15.5, 4.5, 12);
    cup.closeSubpath();
    p.drawPath(cup);
    strokeOnly(p, c, 1.8);
    p.drawArc(QRectF(14.5, 8.2, 5.5, 5.5), -90 * 16, 180 * 16);
    p.drawLine(QPointF(3, 20), QPointF(18, 20));
    p.drawLine(QPointF(8, 2.5), QPointF(8, 4.5));
    p.drawLine(QPointF(12, 2.5), QPointF(12, 4.5));
}

void drawNumber(QPainter& p, const QColor& c)
{
    strokeOnly(p, c);
    p.drawLine(QPointF(10, 4), QPointF(8, 20));
    p.drawLine(QPointF(16, 4), QPointF(14, 20));
    p.drawLine(QPointF(5, 9), QPointF(19.5, 9));
    p.drawLine(QPointF(4.5, 15), QPointF(19, 15));
}

void drawLockFill(QPainter& p, const QColor& c)
{
    strokeOnly(p, c, 2.2);
    p.drawArc(QRectF(7.5, 3.5, 9, 10), 0, 180 * 16);
    p.drawLine(QPointF(7.5, 8.5), QPointF(7.5, 11));
    p.drawLine(QPointF(16.5, 8.5), QPointF(16.5, 11));
    fillOnly(p, c);
    p.drawRoundedRect(QRectF(5, 10.5, 14, 10.5), 2, 2);
}

void drawKeyHorizontal(QPainter& p, const QColor& c)
{
    strokeOnly(p, c);
    p.drawEllipse(QPointF(7, 12), 4, 4);
    p.drawLine(QPointF(11, 12), QPointF(21, 12));
    p.drawLine(QPointF(17.5, 12), QPointF(17.5, 15.5));
    p.drawLine(QPointF(20.5, 12), QPointF(20.5, 15));
}

void drawCheckmarkCircle(QPainter& p, const QColor& c)
{
    strokeOnly(p, c);
    p.drawEllipse(QPointF(12, 12), 9, 9);
    p.drawPolyline(QPolygonF({ QPointF(8, 12.5), QPointF(11, 15.5), QPointF(16.5, 9) }));
}

void drawXmarkCircle(QPainter& p, const QColor& c)
{
    strokeOnly(p, c);
    p.drawEllipse(QPointF(12, 12), 9, 9);
    p.drawLine(QPointF(9, 9), QPointF(15, 15));
    p.drawLine(QPointF(15, 9), QPointF(9, 15));
}

void drawMagnifyingGlass(QPainter& p, const QColor& c)
{
    strokeOnly(p, c);
    p.drawEllipse(QPointF(10.5, 10.5), 6, 6);
    p.drawLine(QPointF(15, 15), QPointF(20, 20));
}

void drawDocText(QPainter& p, const QColor& c)
{
    strokeOnly(p, c);
    p.drawPolygon(
        QPolygonF({ QPointF(5.5, 3), QPointF(14, 3), QPointF(18.5, 7.5), QPointF(18.5, 21), QPointF(5.5, 21) }));
    p.drawLine(QPointF(9, 11), QPointF(15, 11));
    p.drawLine(QPointF(9, 14.5), QPointF(15, 14.5));
    p.drawLine(QPointF(9, 18), QPointF(13, 18));
}

void drawGearshape(QPainter& p, const QColor& c)
{
    strokeOnly(p, c, 2.6);
    for (int tooth = 0; tooth < 8; ++tooth) {
        p.save();
        p.translate(12, 12);
        p.rotate(tooth * 45.0);
        p.drawLine(QPointF(0, -6.5), QPointF(0, -9.5));
        p.restore();
    }
    strokeOnly(p, c);
    p.drawEllipse(QPointF(12, 12), 6, 6);
    p.drawEllipse(QPointF(12, 12), 2.2, 2.2);
}

void drawDot(QPainter& p, const QColor& c)
{
    fillOnly(p, c);
    p.drawEllipse(QPointF(12, 12), 4.5, 4.5);
}

struct Drawing
{
    QStringView name;
    void (*draw)(QPainter&, const QColor&);
};

const auto& drawings()
{
    static const std::array<Drawing, 17> all = { {
        { u"plus", drawPlus },
        { u"plus.circle", drawPlusCircle },
        { u"trash", drawTrash },
        { u"terminal", drawTerminal },
        { u"square.and.arrow.down", drawSquareAndArrowDown },
        { u"arrow.clockwise", drawArrowClockwise },
        { u"rectangle.stack", drawRectangleStack },
        { u"exclamationmark.triangle", drawExclamationTriangle },
        { u"cup.and.saucer.fill", drawCupAndSaucer },
        { u"number", drawNumber },
        { u"lock.fill", drawLockFill },
        { u"key.horizontal", drawKeyHorizontal },
        { u"checkmark.circle", drawCheckmarkCircle },
        { u"xmark.circle", drawXmarkCircle },
        { u"magnifyingglass", drawMagnifyingGlass },
        { u"doc.text", drawDocText },
        { u"gearshape", drawGearshape },
    } };
    return all;
}

const Drawing* findDrawing(QStringView systemName)
{
    const auto& all = drawings();
    const auto found
        = std::find_if(all.begin(), all.end(), [systemName](const Drawing& d) { return d.name == systemName; });
    return found == all.end() ? nullptr : &*found;
}
} // namespace

void paintSymbol(QPainter& painter, QStringView systemName, const QRectF& rect, const QColor& colour)
{
    const qreal side = std::min(rect.width(), rect.height());
    if (side <= 0)
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(rect.center().x() - side / 2, rect.center().y() - side / 2);
    painter.scale(side / grid, side / grid);
    const Drawing* drawing = findDrawing(systemName);
    (drawing ? drawing->draw : drawDot)(painter, colour);
    painter.restore();
}

bool hasSymbolDrawing(QStringView systemName)
{
    return findDrawing(systemName) != nullptr;
}
