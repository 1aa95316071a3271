// Connect: build one quoted ssh command for the selected host or known_hosts entry and start it.

#include "SSHConfigViewModel.h"

#include "ConnectNameCheck.h"
#include "ServiceError.h"
#include "ShellQuoting.h"

using namespace Qt::StringLiterals;

namespace
{

std::optional<QString> connectTargetRefusal(const SSHConfigViewModel::ConnectTarget& target)
{
    if (std::optional<QString> refusal = connectHostNameRefusal(target.host))
        return refusal;
    return target.port ? connectPortRefusal(*target.port) : std::nullopt;
}

} // namespace

QString SSHConfigViewModel::shellQuoted(QStringView text)
{
    return ::shellQuoted(text);
}

std::optional<QString> SSHConfigViewModel::connectableAlias(const SSHHost& host)
{
    for (const QString& pattern : host.patterns) {
        if (isPlainHostName(pattern))
            return pattern;
    }
    return std::nullopt;
}

std::optional<SSHConfigViewModel::ConnectTarget> SSHConfigViewModel::connectTarget(const KnownHostEntry& entry)
{
    const std::optional<QString> field = chosenKnownHostField(entry.hosts());
    if (!field)
        return std::nullopt;
    if (const std::optional<BracketedHostPort> hostPort = ::parseBracketedHostPort(*field))
        return ConnectTarget { hostPort->host, hostPort->port };
    const qsizetype at = field->indexOf(u'@');
    if (at < 0 || !::parseBracketedHostPort(QStringView(*field).mid(at + 1)))
        return ConnectTarget { *field, std::nullopt };
    // "user@[host]:port": which command that should give is not settled, so it is not connected to.
    return std::nullopt;
}

void SSHConfigViewModel::connectSelectedHost()
{
    const std::optional<qsizetype> position = selectedHostIndex();
    if (!position) {
        setStatusMessage(u"Selecteer eerst een host om te verbinden."_s);
        return;
    }
    const SSHHost& selected = m_document.hosts.at(*position);
    if (!selected.isEnabled) {
        setStatusMessage(u"Host is uitgeschakeld en kan niet direct verbinden."_s);
        return;
    }
    const std::optional<QString> alias = connectableAlias(selected);
    if (!alias) {
        setStatusMessage(u"Deze host heeft alleen wildcardpatronen. Kies een specifieke host-alias."_s);
        return;
    }
    // Quoting keeps the shell from reading the alias, but not ssh: refuse what it would take for an option.
    if (const std::optional<QString> refusal = connectHostNameRefusal(*alias)) {
        setStatusMessage(*refusal);
        return;
    }
    launchInTerminal(u"ssh "_s + shellQuoted(*alias), *alias);
}

void SSHConfigViewModel::connectSelectedKnownHostEntry()
{
    const KnownHostEntry* entry = selectedEntry();
    if (!entry) {
        setStatusMessage(u"Selecteer eerst een known_hosts entry."_s);
        return;
    }
    if (entry->isCommentedOut()) {
        setStatusMessage(u"Deze known_hosts entry is uitgecommentarieerd."_s);
        return;
    }
    const std::optional<ConnectTarget> target = connectTarget(*entry);
    if (!target) {
        setStatusMessage(u"Geen direct bruikbare host in deze known_hosts entry (mogelijk hashed of wildcard)."_s);
        return;
    }
    if (const std::optional<QString> refusal = connectTargetRefusal(*target)) {
        setStatusMessage(*refusal);
        return;
    }
    if (target->port) {
        launchInTerminal(u"ssh -p "_s + shellQuoted(*target->port) + u' ' + shellQuoted(target->host),
            target->host + u':' + *target->port);
    } else {
        launchInTerminal(u"ssh "_s + shellQuoted(target->host), target->host);
    }
}

void SSHConfigViewModel::launchInTerminal(const QString& command, const QString& target)
{
    const std::optional<TerminalApp> app = selectedTerminalApp();
    if (!app) {
        setStatusMessage(u"Geen terminal app beschikbaar. Kies er één in Preferences."_s);
        return;
    }
    bool onClipboard = false;
    try {
        onClipboard = m_terminalLauncher->launch(*app, command);
    } catch (const ServiceError& error) {
        setStatusMessage(u"Connect mislukt: "_s + error.description());
        return;
    }
    if (onClipboard)
        setStatusMessage(
            app->displayName() + u" geopend; ssh-commando staat op klembord. Plak met Cmd+V en druk Enter."_s);
    else
        setStatusMessage(u"Verbinding gestart in "_s + app->displayName() + u": "_s + target);
}
