#include "XdgDirectories.h"

#include <QDir>

QStringList xdgDirectories(QStandardPaths::StandardLocation location, const QString& homeDefault)
{
    QStringList directories = QStandardPaths::standardLocations(location);
    if (!directories.isEmpty() && QDir::isRelativePath(directories.constFirst()))
        directories.first() = QDir::home().filePath(homeDefault);
    directories.removeIf([](const QString& directory) { return QDir::isRelativePath(directory); });
    directories.removeDuplicates();
    return directories;
}
