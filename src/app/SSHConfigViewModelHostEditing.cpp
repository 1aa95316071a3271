// Host editing and groups: add, delete, replace a host, and create a group for the selected host.

#include "SSHConfigViewModel.h"

using namespace Qt::StringLiterals;

namespace {

const QString allGroups = u"All"_s;

// A name under a domain reserved for documentation, so a new host never points at a real machine.
const QString placeholderHostName = u"new-host.example.com"_s;

} // namespace

void SSHConfigViewModel::addHost()
{
    QStringList groups;
    if (m_selectedGroup != allGroups)
        groups.append(m_selectedGroup);
    const SSHHost host({u"new-host"_s}, groups, true,
                       {SSHHostItem::option(SSHOption(u"HostName"_s, placeholderHostName)),
                        SSHHostItem::option(SSHOption(u"User"_s, u"user"_s))});
    insertHost(host, m_document.hosts.size());
    setSelectedHostID(host.id());
    setRawEditorDirty(true);
}

void SSHConfigViewModel::deleteSelectedHost()
{
    const std::optional<qsizetype> position = selectedHostIndex();
    if (!position)
        return;
    removeHost(*position);
    setRawEditorDirty(true);
    const QList<SSHHost>& hosts = m_document.hosts;
    if (hosts.isEmpty())
        setSelectedHostID(std::nullopt);
    else
        setSelectedHostID(hosts.at(std::min(*position, hosts.size() - 1)).id());
}

SSHHost SSHConfigViewModel::host(qsizetype position) const
{
    Q_ASSERT(position >= 0 && position < m_document.hosts.size());
    return m_document.hosts.at(position);
}

void SSHConfigViewModel::updateHost(const SSHHost& host, qsizetype position)
{
    if (position < 0 || position >= m_document.hosts.size())
        return;
    if (!(m_document.hosts.at(position) == host)) {
        m_document.hosts[position] = host;
        Q_EMIT hostChanged(position);
        Q_EMIT documentChanged();
    }
    setRawEditorDirty(true);
}

bool SSHConfigViewModel::createGroupForSelectedHost(const QString& name)
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty()) {
        setStatusMessage(u"Geef een geldige groepsnaam op."_s);
        return false;
    }
    for (const QString& existing : availableGroups()) {
        if (existing.compare(trimmed, Qt::CaseInsensitive) == 0) {
            setSelectedGroup(existing);
            setStatusMessage(u"Groep bestaat al: "_s + existing);
            return true;
        }
    }
    const std::optional<qsizetype> position = selectedHostIndex();
    if (!position) {
        setStatusMessage(u"Selecteer eerst een host om een nieuwe groep aan te koppelen."_s);
        return false;
    }
    m_document.hosts[*position].groups.append(trimmed);
    Q_EMIT hostChanged(*position);
    Q_EMIT documentChanged();
    setSelectedGroup(trimmed);
    setRawEditorDirty(true);
    setStatusMessage(u"Groep aangemaakt en gekoppeld: "_s + trimmed);
    return true;
}

void SSHConfigViewModel::insertHost(const SSHHost& host, qsizetype position)
{
    Q_EMIT hostAboutToBeInserted(position);
    m_document.hosts.insert(position, host);
    Q_EMIT hostInserted(position);
    Q_EMIT documentChanged();
}

void SSHConfigViewModel::removeHost(qsizetype position)
{
    Q_EMIT hostAboutToBeRemoved(position);
    m_document.hosts.removeAt(position);
    Q_EMIT hostRemoved(position);
    Q_EMIT documentChanged();
}
