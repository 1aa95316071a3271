#pragma once

#include "ApplicationLocating.h"
#include "TerminalLauncher.h"

#include <memory>

/// Opens an application by its desktop-entry id: starts the entry's Exec command, detached, without
/// arguments of our own (field codes are dropped). Never runs a macOS-style "open".
class DesktopApplicationOpener
{
public:
    /// startProcess is the one that really starts programs (detached), so tests can record instead.
    DesktopApplicationOpener(
        std::shared_ptr<const ApplicationLocating> locator, TerminalLauncher::ProcessStarter startProcess);

    /// Throws TerminalLaunchError::launchFailed(desktopId) when the entry is not installed, has no usable
    /// Exec line, or its program does not start.
    void open(const QString& desktopId) const;

private:
    std::shared_ptr<const ApplicationLocating> m_locator;
    TerminalLauncher::ProcessStarter m_startProcess;
};
