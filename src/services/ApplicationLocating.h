#pragma once

#include "ApplicationInformation.h"

#include <QString>

#include <optional>

/// Looks up installed applications by identifier: the platform's application registry (LaunchServices on
/// macOS, desktop entries in the XDG application directories elsewhere).
class ApplicationLocating
{
public:
    virtual ~ApplicationLocating() = default;

    /// Where the application with this bundle identifier (desktop-entry id) is installed, or nothing when it
    /// is not installed.
    virtual std::optional<QString> applicationLocation(const QString& bundleIdentifier) const = 0;

    /// What the application at location says about itself; nothing when it cannot be read at all.
    virtual std::optional<ApplicationInformation> applicationInformation(const QString& location) const = 0;
};
