#include "TerminalAppDiscoveryService.h"

#include <QCollator>
#include <QFileInfo>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace
{
using LaunchMode = TerminalApp::LaunchMode;

/// The last path component without its extension, ignoring a trailing slash as a bundle path may have one.
QString lastComponentWithoutExtension(const QString& location)
{
    QString path = location;
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    return QFileInfo(path).completeBaseName();
}

void sortByOrderThenName(QList<TerminalApp>& apps)
{
    QHash<QString, qint64> orderOf;
    for (const auto& candidate : TerminalAppDiscoveryService::candidates())
        orderOf.insert(candidate.bundleIdentifier, candidate.order);
    const auto rank = [&orderOf](const TerminalApp& app) {
        return orderOf.value(app.bundleIdentifier(), std::numeric_limits<qint64>::max());
    };

    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::stable_sort(apps.begin(), apps.end(), [&](const TerminalApp& left, const TerminalApp& right) {
        const qint64 leftRank = rank(left);
        const qint64 rightRank = rank(right);
        if (leftRank != rightRank)
            return leftRank < rightRank;
        return collator.compare(left.displayName(), right.displayName()) < 0;
    });
}
} // namespace

const QList<TerminalAppDiscoveryService::Candidate>& TerminalAppDiscoveryService::candidates()
{
    static const QList<Candidate> table {
        { u"com.apple.Terminal"_s, u"Terminal"_s, LaunchMode::appleTerminal, std::nullopt, 0 },
        { u"dev.warp.Warp-Stable"_s, u"Warp"_s, LaunchMode::warp, u"warp"_s, 1 },
        { u"dev.warp.Warp"_s, u"Warp"_s, LaunchMode::warp, u"warp"_s, 2 },
        { u"dev.warp.Warp-Preview"_s, u"Warp Preview"_s, LaunchMode::warp, u"warppreview"_s, 3 },
        { u"com.googlecode.iterm2"_s, u"iTerm2"_s, LaunchMode::iTerm2, std::nullopt, 4 },
        { u"com.googlecode.iterm2nightly"_s, u"iTerm2 Nightly"_s, LaunchMode::iTerm2, std::nullopt, 5 },
    };
    return table;
}

TerminalAppDiscoveryService::TerminalAppDiscoveryService(std::shared_ptr<const ApplicationLocating> locator)
    : m_locator(std::move(locator))
{ }

QList<TerminalApp> TerminalAppDiscoveryService::discoverTerminalApps() const
{
    QList<TerminalApp> apps;
    QSet<QString> seen;
    for (const auto& candidate : candidates()) {
        const std::optional<QString> location = m_locator->applicationLocation(candidate.bundleIdentifier);
        if (!location)
            continue;
        if (seen.contains(candidate.bundleIdentifier))
            continue;
        seen.insert(candidate.bundleIdentifier);
        const QString name = displayName(*m_locator, *location).value_or(candidate.fallbackName);
        apps.append(TerminalApp(candidate.bundleIdentifier, name, candidate.launchMode, candidate.uriScheme));
    }
    sortByOrderThenName(apps);
    return apps;
}

std::optional<QString> TerminalAppDiscoveryService::displayName(
    const ApplicationLocating& locator, const QString& location)
{
    if (const std::optional<ApplicationInformation> information = locator.applicationInformation(location)) {
        if (!information->displayName.isEmpty())
            return information->displayName;
        if (!information->name.isEmpty())
            return information->name;
    }
    QString name = lastComponentWithoutExtension(location);
    if (name.isEmpty())
        return std::nullopt;
    return name;
}
