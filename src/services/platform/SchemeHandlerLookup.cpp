#include "SchemeHandlerLookup.h"

#include "DesktopEntry.h"
#include "DesktopFile.h"
#include "XdgApplicationLocator.h"
#include "XdgDirectories.h"

#include <QDir>
#include <QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
/// Whether a group among groups of the desktop file at path lists anything for key.
bool hasValueInGroups(const QString& path, const QStringList& groups, const QString& key)
{
    const std::optional<DesktopFile> file = DesktopFile::read(path);
    return file && std::any_of(groups.cbegin(), groups.cend(), [&](const QString& group) {
        return !file->listValue(group, key).isEmpty();
    });
}

bool desktopEntryDeclares(const QString& path, const QString& mimeType)
{
    const std::optional<DesktopEntry> entry = DesktopEntry::read(path);
    return entry
        && entry->value(u"MimeType"_s)
               .value_or(QString())
               .split(u';', Qt::SkipEmptyParts)
               .contains(mimeType, Qt::CaseInsensitive);
}

} // namespace

SchemeHandlerLookup::SchemeHandlerLookup(QStringList configDirectories, QStringList applicationDirectories)
    : m_configDirectories(std::move(configDirectories))
    , m_applicationDirectories(std::move(applicationDirectories))
{ }

SchemeHandlerLookup SchemeHandlerLookup::fromEnvironment()
{
    return SchemeHandlerLookup(xdgDirectories(QStandardPaths::GenericConfigLocation, u".config"_s),
        XdgApplicationLocator::applicationDirectoriesFromEnvironment());
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
