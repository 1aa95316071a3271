#pragma once

#include "ApplicationLocating.h"

#include <QString>
#include <QUrl>

// The terminal services' operations on macOS, over AppKit and Foundation.

/// Applications by bundle identifier through NSWorkspace; their names from the bundle's information list
/// ("CFBundleDisplayName" and "CFBundleName", when they are strings).
class MacApplicationLocator final : public ApplicationLocating
{
public:
    std::optional<QString> applicationLocation(const QString& bundleIdentifier) const override;
    std::optional<ApplicationInformation> applicationInformation(const QString& location) const override;
};

/// Compiles and runs source as an NSAppleScript, synchronously. Throws TerminalLaunchError::appleScriptFailed
/// with "Script initialisatie mislukt." when it cannot be made, or with the error dictionary's description.
void macRunAppleScript(const QString& source);

/// Runs "/usr/bin/open -b bundleIdentifier" and waits for it. Throws PlatformError when it cannot start,
/// TerminalLaunchError::launchFailed when it exits with a status other than 0.
void macOpenApplication(const QString& bundleIdentifier);

/// Clears the general pasteboard and puts text on it as plain text.
void macSetClipboardText(const QString& text);

/// Asks NSWorkspace to open uri; its answer.
bool macOpenUri(const QUrl& uri);
