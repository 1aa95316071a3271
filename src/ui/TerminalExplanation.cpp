#include "TerminalExplanation.h"

#ifndef Q_OS_MACOS
#include "CommandLineTerminalDiscovery.h"

#include <QStringList>
#endif

using namespace Qt::StringLiterals;

#ifndef Q_OS_MACOS
namespace
{
/// "a, b en c": names listed as a Dutch sentence does.
QString listedInDutch(const QStringList& names)
{
    if (names.size() < 2)
        return names.join(QString());
    return names.first(names.size() - 1).join(u", "_s) + u" en "_s + names.constLast();
}

/// Taken from the discovery table, so a terminal added there is named here too.
QStringList directlyRunningTerminals()
{
    QStringList names;
    for (const CommandLineTerminalDiscovery::Candidate& candidate : CommandLineTerminalDiscovery::candidates())
        names << candidate.fallbackName;
    names << u"Warp"_s << u"de "_s + CommandLineTerminalDiscovery::defaultTerminalName().toLower();
    return names;
}
} // namespace
#endif

QString terminalExplanation()
{
#ifdef Q_OS_MACOS
    return u"Voor Terminal, iTerm2 en Warp start de app direct `ssh`. Voor andere terminals opent de app en zet hij "
           u"het ssh-commando op je klembord."_s;
#else
    // Terminal emulators on Linux take Ctrl+V for themselves, so the paste keys are part of the hint.
    return u"Voor "_s + listedInDutch(directlyRunningTerminals())
        + u" start de app direct `ssh`. Voor andere terminals opent de app en zet hij het ssh-commando op je "
          u"klembord; plak het met Ctrl+Shift+V."_s;
#endif
}
