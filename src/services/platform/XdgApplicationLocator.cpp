#include "XdgApplicationLocator.h"

#include "DesktopEntry.h"
#include "XdgDirectories.h"

#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{
bool isLaunchable(const DesktopEntry& entry)
{
    if (const auto type = entry.value(u"Type"_s); type && *type != u"Application"_s)
        return false;
    if (const auto tryExec = entry.value(u"TryExec"_s); tryExec && !tryExec->isEmpty()) {
        const QFileInfo program(*tryExec);
        if (program.isAbsolute() ? !program.isExecutable() : QStandardPaths::findExecutable(*tryExec).isEmpty())
            return false;
    }
    return true;
}
} // namespace

XdgApplicationLocator::XdgApplicationLocator(QStringList applicationDirectories, QString localeName)
    : m_applicationDirectories(std::move(applicationDirectories))
    , m_localeName(std::move(localeName))
{ }

XdgApplicationLocator XdgApplicationLocator::fromEnvironment()
{
    return XdgApplicationLocator(applicationDirectoriesFromEnvironment(), DesktopEntry::messagesLocaleName());
}

QStringList XdgApplicationLocator::applicationDirectoriesFromEnvironment()
{
    return xdgDirectories(QStandardPaths::ApplicationsLocation, u".local/share/applications"_s);
}

std::optional<QString> XdgApplicationLocator::applicationLocation(const QString& desktopId) const
{
    if (desktopId.isEmpty() || desktopId.contains(u'/'))
        return std::nullopt;
    for (const QString& directory : m_applicationDirectories) {
        const QString path = directory + u'/' + desktopId + u".desktop"_s;
        if (!QFileInfo(path).isFile())
            continue;
        // The first file found decides: a hidden or unusable entry masks the system's copy on purpose.
        const std::optional<DesktopEntry> entry = DesktopEntry::read(path);
        if (!entry || entry->isTrue(u"Hidden"_s) || !isLaunchable(*entry))
            return std::nullopt;
        return path;
    }
    return std::nullopt;
}

std::optional<ApplicationInformation> XdgApplicationLocator::applicationInformation(const QString& location) const
{
    const std::optional<DesktopEntry> entry = DesktopEntry::read(location);
    if (!entry)
        return std::nullopt;
    ApplicationInformation information;
    information.name = entry->localizedValue(u"Name"_s, m_localeName).value_or(QString());
    information.execLine = entry->value(u"Exec"_s).value_or(QString());
    return information;
}
