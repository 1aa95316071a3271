#include "DrawnSymbolIconEngine.h"

#include "SymbolPainter.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmap>

#include <cmath>

using namespace Qt::StringLiterals;

DrawnSymbolIconEngine::DrawnSymbolIconEngine(QString systemName, std::optional<QColor> tint)
    : m_systemName(std::move(systemName))
    , m_tint(tint)
{ }

void DrawnSymbolIconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State)
{
    paintSymbol(*painter, m_systemName, QRectF(rect), colourFor(mode));
}

QPixmap DrawnSymbolIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state)
{
    return scaledPixmap(size, mode, state, 1.0);
}

QPixmap DrawnSymbolIconEngine::scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal scale)
{
    const QSize deviceSize(
        static_cast<int>(std::lround(size.width() * scale)), static_cast<int>(std::lround(size.height() * scale)));
    QPixmap pixmap(deviceSize);
    pixmap.fill(Qt::transparent);
    {
        QPainter painter(&pixmap);
        paintSymbol(painter, m_systemName, QRectF(QPointF(0, 0), QSizeF(deviceSize)), colourFor(mode));
    }
    pixmap.setDevicePixelRatio(scale);
    return pixmap;
}

QIconEngine* DrawnSymbolIconEngine::clone() const
{
    return new DrawnSymbolIconEngine(m_systemName, m_tint);
}

QString DrawnSymbolIconEngine::key() const
{
    return u"DrawnSymbolIconEngine"_s;
}

QString DrawnSymbolIconEngine::iconName()
{
    return m_systemName;
}

QColor DrawnSymbolIconEngine::colourFor(QIcon::Mode mode) const
{
    const QPalette palette = QGuiApplication::palette();
    if (m_tint) {
        QColor tint = *m_tint;
        if (mode == QIcon::Disabled)
            tint.setAlphaF(tint.alphaF() * 0.4f);
        return tint;
    }
    switch (mode) {
    case QIcon::Disabled:
        return palette.color(QPalette::Disabled, QPalette::WindowText);
    case QIcon::Selected:
        return palette.color(QPalette::Active, QPalette::HighlightedText);
    case QIcon::Normal:
    case QIcon::Active:
        break;
    }
    return palette.color(QPalette::Active, QPalette::WindowText);
}
