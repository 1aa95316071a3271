#pragma once

#include "ApplicationLocating.h"
#include "TerminalDiscovering.h"

#include <QList>
#include <QStringList>

#include <functional>
#include <memory>

/// Finds the freedesktop terminal emulators that take a command on their own command line, by their
/// desktop entries, and offers the desktop's default terminal when none of them is installed.
///
/// Each found terminal is a commandLine TerminalApp whose identifier is the desktop id, whose name is the
/// entry's own, and whose command prefix is the entry's program followed by what the terminal expects
/// before a command.
class CommandLineTerminalDiscovery final : public TerminalDiscovering
{
public:
    /// One known terminal emulator.
    struct Candidate
    {
        QStringList desktopIds; ///< tried in order; the first installed one is used
        QString fallbackName; ///< shown when the entry names nothing
        QStringList argumentsBeforeCommand;
    };

    /// Gives the absolute path of an executable program, looked up on the search path when the name is
    /// bare; an empty text when there is no such program.
    using ExecutableFinder = std::function<QString(const QString& program)>;

    /// The known terminal emulators, in order of preference.
    static const QList<Candidate>& candidates();
    /// The identifier and program name of the desktop's default terminal ("x-terminal-emulator").
    static QString defaultTerminalIdentifier();
    /// The name the default terminal is shown under ("Standaardterminal").
    static QString defaultTerminalName();

    CommandLineTerminalDiscovery(std::shared_ptr<const ApplicationLocating> locator, ExecutableFinder findExecutable);

    /// The installed candidates in table order, one per candidate; else the default terminal when there is
    /// one; else nothing. Never fails.
    QList<TerminalApp> discoverTerminalApps() const override;

private:
    std::optional<TerminalApp> discover(const Candidate& candidate) const;
    std::optional<TerminalApp> discover(const Candidate& candidate, const QString& desktopId) const;
    std::optional<TerminalApp> defaultTerminal() const;

    std::shared_ptr<const ApplicationLocating> m_locator;
    ExecutableFinder m_findExecutable;
};
