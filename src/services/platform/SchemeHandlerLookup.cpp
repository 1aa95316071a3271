#include "SchemeHandlerLookup.h"

#include "HomeDirectory.h"
#include "XdgApplicationLocator.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace
{
/// Whether a group among groups of the ini-style file at path gives key a non-empty value.
bool hasValueInGroups(const QString& path, const QStringList& groups, const QString& key)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    bool inGroup = false;
    for (const QString& rawLine : QString::fromUtf8(file.readAll()).split(u'\n')) {
        const QString line = rawLine.trimmed();
        if (line.startsWith(u'[')) {
            inGroup = groups.contains(line.mid(1, line.size() - 2));
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        if (inGroup && equals > 0 && line.left(equals).trimmed().compare(key, Qt::CaseInsensitive) == 0) {
            if (!line.mid(equals + 1).split(u';', Qt::SkipEmptyParts).isEmpty())
                return true;
        }
    }
    return false;
}

bool desktopEntryDeclares(const QString& path, const QString& mimeType)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    for (const QString& rawLine : QString::fromUtf8(file.readAll()).split(u'\n')) {
        const QString line = rawLine.trimmed();
        if (!line.startsWith(u"MimeType"_s))
            continue;
        const QString value = line.section(u'=', 1).trimmed();
        if (value.split(u';', Qt::SkipEmptyParts).contains(mimeType, Qt::CaseInsensitive))
            return true;
    }
    return false;
}

QStringList configDirectoriesFromEnvironment()
{
    QString configHome = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (!QDir::isAbsolutePath(configHome))
        configHome = userHomeDirectory() + u"/.config"_s;
    QStringList directories { configHome };
    for (const QString& directory : qEnvironmentVariable("XDG_CONFIG_DIRS").split(u':', Qt::SkipEmptyParts)) {
        if (QDir::isAbsolutePath(directory))
            directories << directory;
    }
    if (directories.size() == 1)
        directories << u"/etc/xdg"_s;
    return directories;
}
} // namespace

SchemeHandlerLookup::SchemeHandlerLookup(QStringList configDirectories, QStringList applicationDirectories)
    : m_configDirectories(std::move(configDirectories))
    , m_applicationDirectories(std::move(applicationDirectories))
{ }

SchemeHandlerLookup SchemeHandlerLookup::fromEnvironment()
{
    return SchemeHandlerLookup(
        configDirectoriesFromEnvironment(), XdgApplicationLocator::applicationDirectoriesFromEnvironment());
}

bool SchemeHandlerLookup::hasHandler(const QString& scheme) const
{
    if (scheme.isEmpty())
        return false;
    const QString mimeType = u"x-scheme-handler/"_s + scheme.toLower();
    return listedInMimeApps(mimeType) || listedByApplications(mimeType);
}

bool SchemeHandlerLookup::listedInMimeApps(const QString& mimeType) const
{
    static const QStringList groups { u"Default Applications"_s, u"Added Associations"_s };
    for (const QString& directory : m_configDirectories + m_applicationDirectories) {
        if (hasValueInGroups(directory + u"/mimeapps.list"_s, groups, mimeType))
            return true;
    }
    return false;
}

bool SchemeHandlerLookup::listedByApplications(const QString& mimeType) const
{
    for (const QString& directory : m_applicationDirectories) {
        const QString cache = directory + u"/mimeinfo.cache"_s;
        if (QFile::exists(cache)) {
            if (hasValueInGroups(cache, { u"MIME Cache"_s }, mimeType))
                return true;
            continue;
        }
        const QDir applications(directory);
        for (const QString& name : applications.entryList({ u"*.desktop"_s }, QDir::Files)) {
            if (desktopEntryDeclares(applications.filePath(name), mimeType))
                return true;
        }
    }
    return false;
}
