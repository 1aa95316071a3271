#include "CombinedTerminalDiscovery.h"

#include <QSet>

CombinedTerminalDiscovery::CombinedTerminalDiscovery(QList<std::shared_ptr<const TerminalDiscovering>> discoverers)
    : m_discoverers(std::move(discoverers))
{ }

QList<TerminalApp> CombinedTerminalDiscovery::discoverTerminalApps() const
{
    QList<TerminalApp> apps;
    QSet<QString> seen;
    for (const auto& discoverer : m_discoverers) {
        for (const TerminalApp& app : discoverer->discoverTerminalApps()) {
            if (!seen.contains(app.bundleIdentifier())) {
                seen.insert(app.bundleIdentifier());
                apps.append(app);
            }
        }
    }
    return apps;
}
