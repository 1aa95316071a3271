#pragma once

#include <QRect>
#include <QSize>

/// The smallest size of the main window, in device-independent points.
inline constexpr QSize mainWindowMinimumSize { 1080, 700 };

/// wanted, but never larger than available (a screen's available geometry): with display scaling a
/// minimum in points can exceed a small screen, and a window that cannot fit its screen cannot be used.
QSize minimumWindowSize(QSize wanted, const QRect& available);
