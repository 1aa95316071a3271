#pragma once

// The terminal apps the tests offer, described as discovery finds them.

#include "TerminalApp.h"

inline TerminalApp appleTerminalApp()
{
    return TerminalApp(
        QStringLiteral("com.apple.Terminal"), QStringLiteral("Terminal"), TerminalApp::LaunchMode::appleTerminal);
}

inline TerminalApp iTermApp()
{
    return TerminalApp(
        QStringLiteral("com.googlecode.iterm2"), QStringLiteral("iTerm2"), TerminalApp::LaunchMode::iTerm2);
}

inline TerminalApp warpApp()
{
    return TerminalApp(QStringLiteral("dev.warp.Warp-Stable"), QStringLiteral("Warp"), TerminalApp::LaunchMode::warp,
        QStringLiteral("warp"));
}

inline TerminalApp genericApp()
{
    return TerminalApp(
        QStringLiteral("org.example.Console"), QStringLiteral("Console"), TerminalApp::LaunchMode::generic);
}
