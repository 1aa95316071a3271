#pragma once

#include "TerminalLaunching.h"

#include <QStringList>
#include <QUrl>

#include <functional>

/// Makes a terminal application run a command line, each launch mode its own way, through platform
/// operations handed in at construction so the logic runs without a desktop. Holds no mutable state.
class TerminalLauncher final : public TerminalLaunching
{
public:
    /// Runs the AppleScript source; throws a ServiceError (appleScriptFailed) when it cannot.
    using AppleScriptExecutor = std::function<void(const QString& source)>;
    /// Opens (starts or activates) the application; throws a ServiceError when it cannot.
    using AppOpener = std::function<void(const QString& bundleIdentifier)>;
    /// Makes text the clipboard's only content.
    using ClipboardSetter = std::function<void(const QString& text)>;
    /// Asks the system to open the URI; true when the system accepted it.
    using UriOpener = std::function<bool(const QUrl& uri)>;
    /// Starts program with arguments, detached; true when it started.
    using ProcessStarter = std::function<bool(const QString& program, const QStringList& arguments)>;

    /// Where Warp launches go: the home directory written as the session's working directory, and the
    /// directory Warp reads launch configurations from on this platform.
    struct WarpLocations
    {
        QString homeDirectory;
        QString launchConfigurationDirectory;
    };

    /// The name of the Warp launch configuration, both its file's base name and the URI's last segment.
    static constexpr QStringView warpConfigurationName = u"tarnwick-connect";

    /// An operation left empty fails as its platform would when the facility is missing: the script runner
    /// with appleScriptFailed, the opener and process starter with launchFailed, the URI opener by refusing.
    TerminalLauncher(WarpLocations warpLocations, AppleScriptExecutor appleScriptExecutor, AppOpener appOpener,
        ClipboardSetter clipboardSetter, UriOpener uriOpener, ProcessStarter processStarter = {});

    /// See TerminalLaunching. Failures: TerminalLaunchError, or a PlatformError/other ServiceError from the
    /// operations and the Warp directory, passed on unchanged.
    bool launch(const TerminalApp& app, const QString& command) override;

    /// command with every backslash doubled and then every double quote preceded by a backslash.
    static QString escapedForDoubleQuotes(const QString& command);
    /// The AppleScript that runs command in a new Terminal window.
    static QString appleTerminalScript(const QString& command);
    /// The AppleScript that runs command in a new iTerm2 tab.
    static QString iTermScript(const QString& command);
    /// The Warp launch configuration that runs command in homeDirectory.
    static QString warpLaunchConfiguration(const QString& homeDirectory, const QString& command);
    /// The shell script a commandLine terminal runs: command as given, then a pause for Enter so the
    /// session's last words stay readable after it ends.
    static QString sessionScript(const QString& command);
    /// The arguments after the terminal's program for a commandLine launch: the app's own arguments before
    /// a command, then "sh", "-c" and the session script.
    static QStringList commandLineArguments(const TerminalApp& app, const QString& command);

private:
    bool runScript(const TerminalApp& app, const QString& script, const QString& command);
    bool openAndCopy(const TerminalApp& app, const QString& command);
    void launchThroughWarp(const QString& scheme, const QString& command);
    void writeWarpConfiguration(const QString& command);
    void launchOnCommandLine(const TerminalApp& app, const QString& command);

    WarpLocations m_warpLocations;
    AppleScriptExecutor m_appleScriptExecutor;
    AppOpener m_appOpener;
    ClipboardSetter m_clipboardSetter;
    UriOpener m_uriOpener;
    ProcessStarter m_processStarter;
};
