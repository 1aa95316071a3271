#pragma once

#include <QColor>
#include <QIconEngine>
#include <QString>

#include <optional>

/// An icon engine that paints one of the application's own symbol drawings (SymbolPainter) at
/// whatever size is asked for, so the picture stays sharp on any screen. Without a fixed tint the
/// colour follows the application palette at paint time: the text colour, its disabled form for a
/// disabled button and the highlighted-text colour for a selected item.
class DrawnSymbolIconEngine final : public QIconEngine
{
public:
    explicit DrawnSymbolIconEngine(QString systemName, std::optional<QColor> tint = std::nullopt);

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state, qreal scale) override;
    QIconEngine* clone() const override;
    QString key() const override;
    QString iconName() override;
    bool isNull() override { return false; }

private:
    QColor colourFor(QIcon::Mode mode) const;

    QString m_systemName;
    std::optional<QColor> m_tint;
};
