#include "TerminalLauncher.h"

#include "FileManager.h"
#include "ServiceError.h"
#include "TerminalLaunchError.h"

#include <QDir>

#include <array>

using namespace Qt::StringLiterals;

namespace
{
using LaunchMode = TerminalApp::LaunchMode;

/// Whether error is the system refusing this program control of the terminal (macOS Automation permission,
/// error -1743), in which case the command can still reach the user by clipboard.
bool isAuthorisationRefusal(const TerminalLaunchError& error)
{
    if (error.kind() != TerminalLaunchError::Kind::appleScriptFailed)
        return false;
    const QString message = error.payload().toLower();
    static constexpr std::array refusalTexts { u"not authorized to send apple events", u"errornumber = \"-1743\"",
        u"errornumber = -1743", u"-1743" };
    for (const char16_t* text : refusalTexts) {
        if (message.contains(QStringView(text)))
            return true;
    }
    return false;
}

} // namespace

TerminalLauncher::TerminalLauncher(WarpLocations warpLocations, AppleScriptExecutor appleScriptExecutor,
    AppOpener appOpener, ClipboardSetter clipboardSetter, UriOpener uriOpener, ProcessStarter processStarter)
    : m_warpLocations(std::move(warpLocations))
    , m_appleScriptExecutor(std::move(appleScriptExecutor))
    , m_appOpener(std::move(appOpener))
    , m_clipboardSetter(std::move(clipboardSetter))
    , m_uriOpener(std::move(uriOpener))
    , m_processStarter(std::move(processStarter))
{ }

bool TerminalLauncher::launch(const TerminalApp& app, const QString& command)
{
    switch (app.launchMode()) {
    case LaunchMode::appleTerminal:
        return runScript(app, appleTerminalScript(command), command);
    case LaunchMode::iTerm2:
        return runScript(app, iTermScript(command), command);
    case LaunchMode::warp:
        launchThroughWarp(app.uriScheme().value_or(u"warp"_s), command);
        return false;
    case LaunchMode::generic:
        return openAndCopy(app, command);
    case LaunchMode::commandLine:
        launchOnCommandLine(app, command);
        return false;
    }
    Q_UNREACHABLE();
    return false;
}

QString TerminalLauncher::escapedForDoubleQuotes(const QString& command)
{
    QString escaped = command;
    escaped.replace(u'\\', u"\\\\"_s);
    escaped.replace(u'"', u"\\\""_s);
    return escaped;
}

QString TerminalLauncher::appleTerminalScript(const QString& command)
{
    return u"tell application \"Terminal\"\n    activate\n    do script \""_s + escapedForDoubleQuotes(command)
        + u"\"\nend tell"_s;
}

QString TerminalLauncher::iTermScript(const QString& command)
{
    return u"tell application \"iTerm\"\n"
           u"    activate\n"
           u"    if (count of windows) = 0 then\n"
           u"        create window with default profile\n"
           u"    end if\n"
           u"    tell current window\n"
           u"        create tab with default profile\n"
           u"        tell current session to write text \""_s
        + escapedForDoubleQuotes(command) + u"\"\n    end tell\nend tell"_s;
}

QString TerminalLauncher::warpLaunchConfiguration(const QString& homeDirectory, const QString& command)
{
    return u"---\n"
           u"name: Tarnwick Connect\n"
           u"windows:\n"
           u"  - tabs:\n"
           u"      - title: SSH Connect\n"
           u"        layout:\n"
           u"          cwd: \""_s
        + escapedForDoubleQuotes(homeDirectory)
        + u"\"\n"
          u"          commands:\n"
          u"            - exec: \""_s
        + escapedForDoubleQuotes(command) + u"\""_s;
}

QString TerminalLauncher::sessionScript(const QString& command)
{
    // The command stays on its own line, so a trailing comment in it cannot swallow the pause.
    return command
        + u"\n"
          u"status=$?\n"
          u"printf '\\n%s ' \"Verbinding beëindigd (code $status). Druk op Enter om dit venster te sluiten.\"\n"
          u"read -r _\n"
          u"exit \"$status\""_s;
}

QStringList TerminalLauncher::commandLineArguments(const TerminalApp& app, const QString& command)
{
    return app.commandPrefix().mid(1) + QStringList { u"sh"_s, u"-c"_s, sessionScript(command) };
}

bool TerminalLauncher::runScript(const TerminalApp& app, const QString& script, const QString& command)
{
    try {
        if (!m_appleScriptExecutor)
            throw TerminalLaunchError::appleScriptFailed(u"Geen scriptomgeving beschikbaar."_s);
        m_appleScriptExecutor(script);
        return false;
    } catch (const TerminalLaunchError& error) {
        if (!isAuthorisationRefusal(error))
            throw;
    }
    // Refused control of the terminal: the user can still paste the command into the opened app.
    return openAndCopy(app, command);
}

bool TerminalLauncher::openAndCopy(const TerminalApp& app, const QString& command)
{
    if (!m_appOpener)
        throw TerminalLaunchError::launchFailed(app.bundleIdentifier());
    m_appOpener(app.bundleIdentifier());
    // Only now: a failed open must leave the user's clipboard as it was.
    if (m_clipboardSetter)
        m_clipboardSetter(command);
    return true;
}

void TerminalLauncher::launchThroughWarp(const QString& scheme, const QString& command)
{
    writeWarpConfiguration(command);
    const QString uriText = scheme + u"://launch/"_s + warpConfigurationName;
    const QUrl uri(uriText, QUrl::StrictMode);
    if (!uri.isValid() || uri.scheme().isEmpty())
        throw TerminalLaunchError::invalidURI(uriText);
    if (!m_uriOpener || !m_uriOpener(uri))
        throw TerminalLaunchError::uriOpenFailed(uriText);
}

void TerminalLauncher::writeWarpConfiguration(const QString& command)
{
    const FileManager files;
    const QString directory = m_warpLocations.launchConfigurationDirectory;
    if (!files.fileExists(directory))
        files.createDirectory(directory);
    const QString path = QDir(directory).filePath(warpConfigurationName + u".yaml"_s);
    try {
        files.writeAtomically(path, warpLaunchConfiguration(m_warpLocations.homeDirectory, command).toUtf8());
    } catch (const PlatformError&) {
        throw TerminalLaunchError::warpConfigWriteFailed(path);
    }
}

void TerminalLauncher::launchOnCommandLine(const TerminalApp& app, const QString& command)
{
    const QStringList& prefix = app.commandPrefix();
    if (prefix.isEmpty() || prefix.constFirst().isEmpty() || !m_processStarter
        || !m_processStarter(prefix.constFirst(), commandLineArguments(app, command)))
        throw TerminalLaunchError::launchFailed(app.bundleIdentifier());
}
