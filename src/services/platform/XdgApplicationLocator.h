#pragma once

#include "ApplicationLocating.h"

#include <QStringList>

/// Finds applications by their freedesktop desktop-entry id in the XDG application directories.
///
/// An application is installed when "<id>.desktop" is found in the first directory that has it, is of type
/// Application (or names no type) and, when it has TryExec, that program exists. An entry with Hidden=true
/// counts as deleted, and it hides the same id in later directories too. NoDisplay=true only keeps an
/// entry out of menus: the application is still installed and found.
class XdgApplicationLocator final : public ApplicationLocating
{
public:
    /// Searches directories in order, reading names for the locale named like "nl_NL".
    XdgApplicationLocator(QStringList applicationDirectories, QString localeName);

    /// Over the user's directories ($XDG_DATA_HOME or ~/.local/share, then $XDG_DATA_DIRS or
    /// /usr/local/share:/usr/share, each joined with "applications") and the user's message locale.
    static XdgApplicationLocator fromEnvironment();
    /// Those directories, in search order.
    static QStringList applicationDirectoriesFromEnvironment();

    /// The path of the desktop entry file, or nothing when the application is not installed.
    std::optional<QString> applicationLocation(const QString& desktopId) const override;
    /// The entry's Name in the reader's language and its Exec line, each empty when the entry has none;
    /// nothing when the file cannot be read or is no desktop entry.
    std::optional<ApplicationInformation> applicationInformation(const QString& location) const override;

private:
    QStringList m_applicationDirectories;
    QString m_localeName;
};
