#pragma once

#include <QString>
#include <QVariantMap>

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

    /// The information values of the application at location, keyed as in a bundle's information list
    /// ("CFBundleDisplayName", "CFBundleName"; desktop entries add "Exec"). Values may be of any type.
    /// Nothing when the application cannot be read at all.
    virtual std::optional<QVariantMap> applicationInformation(const QString& location) const = 0;
};
