#include "DefaultTerminalServices.h"

#include "CombinedTerminalDiscovery.h"
#include "CommandLineTerminalDiscovery.h"
#include "HomeDirectory.h"
#include "TerminalAppDiscoveryService.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#ifdef Q_OS_MACOS
#include "mac/MacTerminalOperations.h"
#else
#include "DesktopApplicationOpener.h"
#include "SchemeHandlerLookup.h"
#include "TerminalLaunchError.h"
#include "XdgApplicationLocator.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#endif

using namespace Qt::StringLiterals;

#ifndef Q_OS_MACOS
namespace
{
[[noreturn]] void runAppleScriptUnavailable(const QString&)
{
    throw TerminalLaunchError::appleScriptFailed(u"AppleScript is niet beschikbaar op dit systeem."_s);
}

void setClipboardText(const QString& text)
{
    if (qGuiApp)
        QGuiApplication::clipboard()->setText(text, QClipboard::Clipboard);
}

/// Asks the desktop's own MIME tool, which also knows desktop-specific defaults the files do not show.
bool xdgMimeNamesHandler(const QString& scheme)
{
    const QString xdgMime = QStandardPaths::findExecutable(u"xdg-mime"_s);
    if (xdgMime.isEmpty())
        return false;
    QProcess query;
    query.start(xdgMime, { u"query"_s, u"default"_s, u"x-scheme-handler/"_s + scheme });
    if (!query.waitForFinished(5000)) {
        query.kill();
        query.waitForFinished();
        return false;
    }
    return query.exitCode() == 0 && !query.readAllStandardOutput().trimmed().isEmpty();
}

/// Opening a URI nobody handles would "succeed" silently or pop up an unrelated chooser, so refuse first.
bool openUri(const QUrl& uri)
{
    if (!qGuiApp)
        return false;
    if (!SchemeHandlerLookup::fromEnvironment().hasHandler(uri.scheme()) && !xdgMimeNamesHandler(uri.scheme()))
        return false;
    return QDesktopServices::openUrl(uri);
}

std::shared_ptr<const ApplicationLocating> defaultLocator()
{
    return std::make_shared<XdgApplicationLocator>(XdgApplicationLocator::fromEnvironment());
}
} // namespace
#endif

QString defaultWarpLaunchConfigurationDirectory()
{
#ifdef Q_OS_MACOS
    return userHomeDirectory() + u"/.warp/launch_configurations"_s;
#else
    QString dataHome = qEnvironmentVariable("XDG_DATA_HOME");
    if (!QDir::isAbsolutePath(dataHome))
        dataHome = userHomeDirectory() + u"/.local/share"_s;
    return QDir::cleanPath(dataHome + u"/warp-terminal/launch_configurations"_s);
#endif
}

bool startDetachedProcess(const QString& program, const QStringList& arguments)
{
    return startDetachedProcessReportingId(program, arguments, nullptr);
}

bool startDetachedProcessReportingId(const QString& program, const QStringList& arguments, qint64* processId)
{
    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    process.setWorkingDirectory(userHomeDirectory());
    process.setStandardInputFile(QProcess::nullDevice());
    return process.startDetached(processId);
}

QString findExecutableProgram(const QString& program)
{
    if (program.isEmpty())
        return {};
    if (QDir::isAbsolutePath(program)) {
        const QFileInfo info(program);
        return info.isFile() && info.isExecutable() ? program : QString();
    }
    if (program.contains(u'/'))
        return {}; // relative paths depend on our working directory, which means nothing to the entry
    return QStandardPaths::findExecutable(program);
}

std::unique_ptr<TerminalLauncher> makeDefaultTerminalLauncher()
{
    TerminalLauncher::WarpLocations warp { userHomeDirectory(), defaultWarpLaunchConfigurationDirectory() };
#ifdef Q_OS_MACOS
    return std::make_unique<TerminalLauncher>(
        warp, macRunAppleScript, macOpenApplication, macSetClipboardText, macOpenUri, startDetachedProcess);
#else
    const auto opener = std::make_shared<DesktopApplicationOpener>(defaultLocator(), startDetachedProcess);
    return std::make_unique<TerminalLauncher>(
        warp, runAppleScriptUnavailable, [opener](const QString& desktopId) { opener->open(desktopId); },
        setClipboardText, openUri, startDetachedProcess);
#endif
}

std::unique_ptr<TerminalDiscovering> makeDefaultTerminalDiscovery()
{
#ifdef Q_OS_MACOS
    return std::make_unique<TerminalAppDiscoveryService>(std::make_shared<MacApplicationLocator>());
#else
    const std::shared_ptr<const ApplicationLocating> locator = defaultLocator();
    return std::make_unique<CombinedTerminalDiscovery>(
        QList<std::shared_ptr<const TerminalDiscovering>> { std::make_shared<TerminalAppDiscoveryService>(locator),
            std::make_shared<CommandLineTerminalDiscovery>(locator, findExecutableProgram) });
#endif
}
