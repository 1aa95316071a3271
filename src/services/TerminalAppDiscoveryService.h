#pragma once

#include "ApplicationLocating.h"
#include "TerminalDiscovering.h"

#include <QList>

#include <memory>

/// Finds which of the built-in known terminals are installed, through an application locator.
///
/// Keeps no state between calls: every discovery asks the locator afresh.
class TerminalAppDiscoveryService final : public TerminalDiscovering
{
public:
    /// One row of the table of known terminals.
    struct Candidate
    {
        QString bundleIdentifier;
        QString fallbackName; ///< shown when the installed app does not name itself
        TerminalApp::LaunchMode launchMode;
        std::optional<QString> uriScheme;
        qint64 order; ///< rank in the result; lower comes first
    };

    /// The table of known terminals, in table order.
    static const QList<Candidate>& candidates();

    explicit TerminalAppDiscoveryService(std::shared_ptr<const ApplicationLocating> locator);

    /// The installed candidates, each once, ordered by the candidates' order and then by name.
    QList<TerminalApp> discoverTerminalApps() const override;

    /// The name under which the application at location presents itself: its non-empty display name, else
    /// its non-empty name, else the location's last path component without its extension; nothing when even
    /// that is empty.
    static std::optional<QString> displayName(const ApplicationLocating& locator, const QString& location);

private:
    std::shared_ptr<const ApplicationLocating> m_locator;
};
