#pragma once

#include "TerminalApp.h"

#include <QString>

/// Starts a shell command line in a terminal application.
class TerminalLaunching
{
public:
    virtual ~TerminalLaunching() = default;

    /// Makes app run command. Returns true when the command was put on the clipboard instead of being run
    /// (the app was only opened and the user must paste it), false when the terminal runs it.
    /// Throws a ServiceError (TerminalLaunchError, or PlatformError passed on unchanged) on failure.
    virtual bool launch(const TerminalApp& app, const QString& command) = 0;
};
