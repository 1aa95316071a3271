#pragma once

#include <QString>
#include <QStringList>

/// Tells whether a freedesktop system has an application registered for a URI scheme, from the files
/// the desktop's own lookup uses: mimeapps.list defaults and added associations, mimeinfo.cache, and the
/// MimeType of desktop entries in directories without a cache.
class SchemeHandlerLookup
{
public:
    /// Reads mimeapps.list from configDirectories and applicationDirectories and the desktop entries of
    /// applicationDirectories, all in the order given.
    SchemeHandlerLookup(QStringList configDirectories, QStringList applicationDirectories);

    /// Over the user's XDG configuration directories and application directories.
    static SchemeHandlerLookup fromEnvironment();

    /// True when some application handles "x-scheme-handler/<scheme>" (scheme compared ignoring case).
    /// Unreadable files count as saying nothing.
    bool hasHandler(const QString& scheme) const;

private:
    bool listedInMimeApps(const QString& mimeType) const;
    bool listedByApplications(const QString& mimeType) const;

    QStringList m_configDirectories;
    QStringList m_applicationDirectories;
};
