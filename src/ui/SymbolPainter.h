#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>
#include <QStringView>

/// Draws the application's own small line-art versions of the system symbols its buttons name
/// ("plus", "trash", "terminal", ...), so a button shows a picture even where the desktop's icon
/// theme has none. Every name gets a drawing: names without one of their own get a plain dot.
///
/// The drawing fills the largest centred square inside rect, in colour, on whatever the painter
/// already holds; the painter's state is restored afterwards.
void paintSymbol(QPainter& painter, QStringView systemName, const QRectF& rect, const QColor& colour);

/// True when systemName has a drawing of its own rather than the plain dot.
bool hasSymbolDrawing(QStringView systemName);
