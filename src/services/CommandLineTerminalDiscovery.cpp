#include "CommandLineTerminalDiscovery.h"

#include "DesktopExecLine.h"
#include "ServiceLog.h"
#include "TerminalAppDiscoveryService.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace
{
/// The part of an entry's command line that starts the terminal itself. Only the program is kept, since
/// an entry's own arguments (a working directory, "--window") can clash with a command; a Flatpak export
/// is the exception, as its arguments name the application to run.
QStringList terminalProgram(const QStringList& execArguments)
{
    if (QFileInfo(execArguments.constFirst()).fileName() != u"flatpak"_s)
        return { execArguments.constFirst() };
    QStringList program;
    for (const QString& argument : execArguments) {
        // "@@" and "@@u" bracket the file arguments in Flatpak exports.
        if (argument != u"@@"_s && argument != u"@@u"_s)
            program << argument;
    }
    return program;
}
} // namespace

const QList<CommandLineTerminalDiscovery::Candidate>& CommandLineTerminalDiscovery::candidates()
{
    static const QList<Candidate> table {
        { { u"org.gnome.Terminal"_s }, u"GNOME Terminal"_s, { u"--"_s } },
        { { u"org.gnome.Ptyxis"_s }, u"Ptyxis"_s, { u"--"_s } },
        { { u"org.gnome.Console"_s }, u"Console"_s, { u"--"_s } },
        { { u"org.kde.konsole"_s }, u"Konsole"_s, { u"-e"_s } },
        { { u"xfce4-terminal"_s }, u"Xfce Terminal"_s, { u"-x"_s } },
        { { u"com.gexperts.Tilix"_s }, u"Tilix"_s, { u"-e"_s } },
        { { u"kitty"_s }, u"kitty"_s, {} },
        { { u"Alacritty"_s, u"org.alacritty.Alacritty"_s }, u"Alacritty"_s, { u"-e"_s } },
        { { u"org.wezfurlong.wezterm"_s }, u"WezTerm"_s, { u"start"_s, u"--"_s } },
        { { u"foot"_s }, u"foot"_s, {} },
        { { u"debian-xterm"_s, u"xterm"_s }, u"XTerm"_s, { u"-e"_s } },
    };
    return table;
}

QString CommandLineTerminalDiscovery::defaultTerminalIdentifier()
{
    return u"x-terminal-emulator"_s;
}

QString CommandLineTerminalDiscovery::defaultTerminalName()
{
    return u"Standaardterminal"_s;
}

CommandLineTerminalDiscovery::CommandLineTerminalDiscovery(
    std::shared_ptr<const ApplicationLocating> locator, ExecutableFinder findExecutable)
    : m_locator(std::move(locator))
    , m_findExecutable(std::move(findExecutable))
{ }

QList<TerminalApp> CommandLineTerminalDiscovery::discoverTerminalApps() const
{
    QList<TerminalApp> apps;
    for (const Candidate& candidate : candidates()) {
        if (std::optional<TerminalApp> app = discover(candidate))
            apps.append(*app);
    }
    if (apps.isEmpty()) {
        if (std::optional<TerminalApp> app = defaultTerminal())
            apps.append(*app);
    }
    return apps;
}

std::optional<TerminalApp> CommandLineTerminalDiscovery::discover(const Candidate& candidate) const
{
    for (const QString& desktopId : candidate.desktopIds) {
        if (std::optional<TerminalApp> app = discover(candidate, desktopId))
            return app;
    }
    return std::nullopt;
}

std::optional<TerminalApp> CommandLineTerminalDiscovery::discover(
    const Candidate& candidate, const QString& desktopId) const
{
    const std::optional<QString> location = m_locator->applicationLocation(desktopId);
    if (!location)
        return std::nullopt;
    const std::optional<ApplicationInformation> information = m_locator->applicationInformation(*location);
    if (!information) {
        qCDebug(serviceLog) << "Terminal left out, its entry cannot be read:" << *location;
        return std::nullopt;
    }
    const QStringList exec = DesktopExecLine::arguments(information->execLine);
    if (exec.isEmpty()) {
        qCDebug(serviceLog) << "Terminal left out, its entry has no Exec line:" << *location;
        return std::nullopt;
    }
    QStringList prefix = terminalProgram(exec);
    prefix.first() = m_findExecutable(prefix.constFirst());
    if (prefix.constFirst().isEmpty()) {
        // An entry left behind by an uninstalled terminal.
        qCDebug(serviceLog) << "Terminal left out, its program is not installed:" << *location;
        return std::nullopt;
    }

    const QString name
        = TerminalAppDiscoveryService::displayName(*m_locator, *location).value_or(candidate.fallbackName);
    TerminalApp app(desktopId, name, TerminalApp::LaunchMode::commandLine);
    app.setCommandPrefix(prefix + candidate.argumentsBeforeCommand);
    return app;
}

std::optional<TerminalApp> CommandLineTerminalDiscovery::defaultTerminal() const
{
    const QString program = m_findExecutable(defaultTerminalIdentifier());
    if (program.isEmpty())
        return std::nullopt;
    TerminalApp app(defaultTerminalIdentifier(), defaultTerminalName(), TerminalApp::LaunchMode::commandLine);
    // Debian's terminal alternatives all accept "-e" followed by a program and its arguments.
    app.setCommandPrefix({ program, u"-e"_s });
    return app;
}
