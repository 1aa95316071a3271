#include "AppIcon.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QPainter>
#include <QPainterPath>

using namespace Qt::StringLiterals;

namespace
{
constexpr qreal side = 512.0;

// The drawing is defined with its origin at the lower left; Qt's is at the upper left.
QPointF fromLowerLeft(qreal x, qreal y)
{
    return { x, side - y };
}

QColor accentRed()
{
    return QColor::fromRgbF(0.82f, 0.06f, 0.12f, 1.0f);
}

void drawBackground(QPainter& painter)
{
    const QRectF square(23.04, 23.04, 465.92, 465.92);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgbF(0.04f, 0.04f, 0.04f, 1.0f));
    painter.drawRoundedRect(square, 112.64, 112.64);

    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(accentRed(), 28.16));
    painter.drawRoundedRect(square, 112.64, 112.64);
}

void drawPrompt(QPainter& painter)
{
    painter.setBrush(Qt::NoBrush);

    QPainterPath chevron(fromLowerLeft(153.6, 174.08));
    chevron.lineTo(fromLowerLeft(235.52, 256));
    chevron.lineTo(fromLowerLeft(153.6, 337.92));
    painter.setPen(QPen(accentRed(), 46.08, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(chevron);

    QPainterPath underscore(fromLowerLeft(281.6, 174.08));
    underscore.lineTo(fromLowerLeft(378.88, 174.08));
    painter.setPen(QPen(accentRed(), 46.08, Qt::SolidLine, Qt::RoundCap));
    painter.drawPath(underscore);
}

QStringList bundledIconCandidates()
{
    // A macOS bundle keeps its resources beside the executable's folder; a Qt resource works everywhere.
    return { QCoreApplication::applicationDirPath() + u"/../Resources/AppIcon.icns"_s, u":/AppIcon.icns"_s };
}
} // namespace

QImage drawFallbackAppIcon()
{
    QImage image(512, 512, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);

    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawBackground(painter);
    drawPrompt(painter);
    return image;
}

QIcon tarnwickApplicationIcon()
{
    for (const QString& path : bundledIconCandidates()) {
        if (!QFileInfo::exists(path))
            continue;
        if (const QImage image(path); !image.isNull())
            return QIcon(QPixmap::fromImage(image));
    }
    return QIcon(QPixmap::fromImage(drawFallbackAppIcon()));
}
