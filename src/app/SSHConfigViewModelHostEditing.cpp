// Host editing and groups: add, delete, replace a host, and create a group for the selected host.

#include "SSHConfigViewModel.h"

#include "GroupList.h"

using namespace Qt::StringLiterals;

namespace
{

// A name under a domain reserved for documentation, so a new host never points at a real machine.
const QString placeholderHostName = u"new-host.example.com"_s;

// The one field an edit changed ("patterns", "groups" or an option's key), or an empty text when it
// changed something else or several things: only such single-field edits are typing to be grouped.
QString changedHostField(const SSHHost& before, const SSHHost& after)
{
    if (before.isEnabled != after.isEnabled || before.items.size() != after.items.size())
        return QString();
    QStringList fields;
    if (before.patterns != after.patterns)
        fields.append(u"patterns"_s);
    if (before.groups != after.groups)
        fields.append(u"groups"_s);
    for (qsizetype i = 0; i < before.items.size(); ++i) {
        if (before.items.at(i) == after.items.at(i))
            continue;
        const SSHOption* old = before.items.at(i).asOption();
        const SSHOption* now = after.items.at(i).asOption();
        if (!old || !now || old->key.compare(now->key, Qt::CaseInsensitive) != 0)
            return QString();
        fields.append(u"option:"_s + old->key.toLower());
    }
    return fields.size() == 1 ? fields.first() : QString();
}

} // namespace

void SSHConfigViewModel::addHost()
{
    const ConfigUndoState before = captureConfigState();
    QStringList groups;
    if (m_selectedGroup != allGroupsFilter())
        groups.append(m_selectedGroup);
    const SSHHost host({ u"new-host"_s }, groups, true,
        { SSHHostItem::option(SSHOption(u"HostName"_s, placeholderHostName)),
            SSHHostItem::option(SSHOption(u"User"_s, u"user"_s)) });
    insertHost(host, m_document.hosts.size());
    setSelectedHostID(host.id());
    setRawEditorDirty(true);
    recordConfigStep(u"Host toevoegen"_s, u"Host toegevoegd"_s, before);
}

void SSHConfigViewModel::deleteSelectedHost()
{
    const std::optional<qsizetype> position = selectedHostIndex();
    if (!position)
        return;
    const ConfigUndoState before = captureConfigState();
    removeHost(*position);
    setRawEditorDirty(true);
    const QList<SSHHost>& hosts = m_document.hosts;
    if (hosts.isEmpty())
        setSelectedHostID(std::nullopt);
    else
        setSelectedHostID(hosts.at(std::min(*position, hosts.size() - 1)).id());
    recordConfigStep(u"Host verwijderen"_s, u"Host verwijderd"_s, before);
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
    const ConfigUndoState before = captureConfigState();
    const QString field = changedHostField(m_document.hosts.at(position), host);
    if (!(m_document.hosts.at(position) == host)) {
        m_document.hosts[position] = host;
        Q_EMIT hostChanged(position);
        Q_EMIT documentChanged();
    }
    setRawEditorDirty(true);
    // Repeated edits of one field of one host (typing) are one step.
    const QString mergeKey = field.isEmpty() ? QString() : host.id().toString() + u'/' + field;
    recordConfigStep(u"Host bewerken"_s, u"Host bewerkt"_s, before, mergeKey);
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
    const ConfigUndoState before = captureConfigState();
    m_document.hosts[*position].groups.append(trimmed);
    Q_EMIT hostChanged(*position);
    Q_EMIT documentChanged();
    setSelectedGroup(trimmed);
    setRawEditorDirty(true);
    recordConfigStep(u"Groep aanmaken"_s, u"Groep aangemaakt"_s, before);
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
