#pragma once

#include "TerminalDiscovering.h"

#include <QList>

#include <memory>

/// Asks several discoverers in turn and lists their terminals in that order, each identifier once
/// (the first discoverer to report an identifier wins).
class CombinedTerminalDiscovery final : public TerminalDiscovering
{
public:
    explicit CombinedTerminalDiscovery(QList<std::shared_ptr<const TerminalDiscovering>> discoverers);

    /// Never fails, as none of the discoverers does.
    QList<TerminalApp> discoverTerminalApps() const override;

private:
    QList<std::shared_ptr<const TerminalDiscovering>> m_discoverers;
};
