// Terminal preference: the installed terminals and the one connecting uses, kept across runs.

#include "SSHConfigViewModel.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

const QString defaultTerminalBundleIdentifier = u"com.apple.Terminal"_s;

bool containsApp(const QList<TerminalApp>& apps, const QString& bundleIdentifier)
{
    return std::any_of(apps.cbegin(), apps.cend(),
        [&bundleIdentifier](const TerminalApp& app) { return app.bundleIdentifier() == bundleIdentifier; });
}

} // namespace

void SSHConfigViewModel::refreshTerminalApps()
{
    change(m_availableTerminalApps, m_terminalDiscovery->discoverTerminalApps(),
        &SSHConfigViewModel::availableTerminalAppsChanged);
    const std::optional<QString> stored = m_userDefaults->string(m_preferredTerminalBundleIdentifierKey);
    if (stored && containsApp(m_availableTerminalApps, *stored)) {
        setSelectedTerminalBundleIdentifier(*stored);
        return;
    }
    if (containsApp(m_availableTerminalApps, defaultTerminalBundleIdentifier))
        selectTerminal(defaultTerminalBundleIdentifier);
    else if (!m_availableTerminalApps.isEmpty())
        selectTerminal(m_availableTerminalApps.first().bundleIdentifier());
    else
        setSelectedTerminalBundleIdentifier(QString());
}

void SSHConfigViewModel::selectTerminal(const QString& bundleIdentifier)
{
    if (!containsApp(m_availableTerminalApps, bundleIdentifier))
        return;
    setSelectedTerminalBundleIdentifier(bundleIdentifier);
    m_userDefaults->setString(m_preferredTerminalBundleIdentifierKey, bundleIdentifier);
}

std::optional<TerminalApp> SSHConfigViewModel::selectedTerminalApp() const
{
    for (const TerminalApp& app : m_availableTerminalApps) {
        if (app.bundleIdentifier() == m_selectedTerminalBundleIdentifier)
            return app;
    }
    return std::nullopt;
}
