#pragma once

#include <QStandardPaths>
#include <QStringList>

/// Qt's directories for location, in search order, as the XDG base directory rules read the
/// environment: a relative $XDG_*_HOME counts as unset (homeDefault, relative to the home directory,
/// stands in) and a relative entry of $XDG_*_DIRS is skipped. Qt alone keeps both as they stand.
QStringList xdgDirectories(QStandardPaths::StandardLocation location, const QString& homeDefault);
