#include "TerminalApp.h"

#include <QHash>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::array rawValues {
    std::pair { TerminalApp::LaunchMode::appleTerminal, u"appleTerminal" },
    std::pair { TerminalApp::LaunchMode::iTerm2, u"iTerm2" },
    std::pair { TerminalApp::LaunchMode::warp, u"warp" },
    std::pair { TerminalApp::LaunchMode::generic, u"generic" },
    std::pair { TerminalApp::LaunchMode::commandLine, u"commandLine" },
};
} // namespace

std::optional<TerminalApp::LaunchMode> TerminalApp::launchModeFromRawValue(const QString& rawValue)
{
    for (const auto& [mode, text] : rawValues) {
        if (rawValue == QStringView(text))
            return mode;
    }
    return std::nullopt;
}

QString TerminalApp::rawValue(LaunchMode mode)
{
    for (const auto& [candidate, text] : rawValues) {
        if (candidate == mode)
            return QStringView(text).toString();
    }
    Q_UNREACHABLE();
    return {};
}

TerminalApp::TerminalApp(
    QString bundleIdentifier, QString displayName, LaunchMode launchMode, std::optional<QString> uriScheme)
    : m_bundleIdentifier(std::move(bundleIdentifier))
    , m_displayName(std::move(displayName))
    , m_launchMode(launchMode)
    , m_uriScheme(std::move(uriScheme))
{ }

size_t qHash(const TerminalApp& app, size_t seed) noexcept
{
    // has_value() keeps "no scheme" apart from an empty scheme, as equality does.
    return qHashMulti(seed, app.bundleIdentifier(), app.displayName(), static_cast<int>(app.launchMode()),
        app.uriScheme().has_value(), app.uriScheme().value_or(QString()), app.commandPrefix());
}
