#pragma once

#include <QIcon>
#include <QImage>

/// The 512 by 512 fallback icon: a red ">" and "_" on a dark rounded square with a red rim,
/// on a transparent background.
QImage drawFallbackAppIcon();

/// The application's icon: the bundled "AppIcon" image when one is present and loads, else the drawn one.
QIcon tarnwickApplicationIcon();
