#pragma once

#include "TerminalApp.h"

#include <QList>

/// Finds the installed terminal applications that Connect knows how to drive.
class TerminalDiscovering
{
public:
    virtual ~TerminalDiscovering() = default;

    /// The installed known terminals, most preferred first. Never fails: an empty list means none is installed.
    virtual QList<TerminalApp> discoverTerminalApps() const = 0;
};
