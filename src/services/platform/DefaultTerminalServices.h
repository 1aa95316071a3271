#pragma once

#include "TerminalDiscovering.h"
#include "TerminalLauncher.h"

#include <memory>

// The terminal services with this platform's own operations, as the application shell makes them.
// On macOS: LaunchServices, NSAppleScript, "/usr/bin/open -b", the pasteboard and NSWorkspace.
// Elsewhere (freedesktop): desktop entries, no AppleScript, QClipboard, QDesktopServices, QProcess.

/// The launcher over the platform's operations. Needs a QGuiApplication for the clipboard; without one the
/// clipboard is left alone.
std::unique_ptr<TerminalLauncher> makeDefaultTerminalLauncher();

/// The discoverer of installed terminals: the built-in known terminals, and on freedesktop systems after
/// them the terminal emulators that take a command on their command line.
std::unique_ptr<TerminalDiscovering> makeDefaultTerminalDiscovery();

/// Where Warp reads launch configurations on this platform: "~/.warp/launch_configurations" on macOS,
/// "${XDG_DATA_HOME:-~/.local/share}/warp-terminal/launch_configurations" elsewhere.
QString defaultWarpLaunchConfigurationDirectory();

/// Starts program detached with arguments, in the user's home directory, its input from the null device;
/// true when it started.
bool startDetachedProcess(const QString& program, const QStringList& arguments);
/// As startDetachedProcess, and tells the started process's id through processId.
bool startDetachedProcessReportingId(const QString& program, const QStringList& arguments, qint64* processId);

/// The absolute path of an executable program (searched on PATH when bare), or an empty text.
QString findExecutableProgram(const QString& program);
