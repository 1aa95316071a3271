// Links between the two files: how many known_hosts entries ssh uses for the selected config host, and
// which config hosts reach the selected known_hosts entry.

#include "SSHConfigViewModel.h"

#include "KnownHostNameMatch.h"
#include "SSHHostKnownHostsName.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace
{

// The lookup names (keys of byName) that an active entry with hostsField matches.
QList<QString> namesMatchedBy(QStringView hostsField, const QHash<QString, QList<QUuid>>& byName)
{
    QList<QString> matched;
    if (hostsField.startsWith(u'|')) {
        // One HMAC per config name: the salt is decoded once.
        const HashedHostName hashed = parseHashedHostName(hostsField);
        for (auto it = byName.cbegin(); hashed.isValid() && it != byName.cend(); ++it) {
            if (hashedHostNameMatches(hashed, it.key().toUtf8()))
                matched.append(it.key());
        }
    } else if (isLiteralHostsField(hostsField)) {
        for (const QStringView host : hostsField.tokenize(u',', Qt::SkipEmptyParts)) {
            const QString lowered = asciiLowered(host.trimmed());
            if (byName.contains(lowered))
                matched.append(lowered);
        }
    } else {
        for (auto it = byName.cbegin(); it != byName.cend(); ++it) {
            if (knownHostsFieldMatches(hostsField, it.key()))
                matched.append(it.key());
        }
    }
    return matched;
}

} // namespace

void SSHConfigViewModel::connectHostLinks()
{
    connect(this, &SSHConfigViewModel::documentChanged, this, [this] {
        m_configHostsByLookupName.reset();
        m_configHostLookupNames.clear();
        m_configHostsLinkedEntry.clear();
        updateHostLinks();
    });
    connect(this, &SSHConfigViewModel::knownHostsReset, this, &SSHConfigViewModel::updateHostLinks);
    // A change of single records adjusts the host editor's count by those records alone: looking the
    // name up again would rebuild the index of the whole file after every change.
    connect(this, &SSHConfigViewModel::knownHostRecordAboutToBeRemoved, this, [this](qsizetype position) {
        if (const KnownHostEntry* entry = m_knownHostsDocument.records().at(position).kind().entry())
            countLinkedEntry(entry->id(), false);
    });
    connect(this, &SSHConfigViewModel::knownHostRecordInserted, this,
        [this](qsizetype position) { recountLinkedRecords(position, position); });
    connect(this, &SSHConfigViewModel::knownHostRecordsChanged, this,
        [this](qsizetype first, qsizetype last, bool lineNumberOnly) {
            if (!lineNumberOnly)
                recountLinkedRecords(first, last);
        });
    connect(this, &SSHConfigViewModel::knownHostsDocumentChanged, this, [this] {
        if (m_activeEditorTab == EditorTab::knownHosts && !m_loadingBothFiles)
            updateSelectedKnownHostConfigHosts();
    });
    connect(this, &SSHConfigViewModel::activeEditorTabChanged, this, &SSHConfigViewModel::updateHostLinks);
    connect(this, &SSHConfigViewModel::selectedHostIDChanged, this, &SSHConfigViewModel::updateHostLinks);
    connect(this, &SSHConfigViewModel::selectedKnownHostEntryIDChanged, this, &SSHConfigViewModel::updateHostLinks);
}

void SSHConfigViewModel::recountLinkedRecords(qsizetype first, qsizetype last)
{
    if (!m_selectedHostKnownHostsLink)
        return;
    for (qsizetype position = first; position <= last; ++position) {
        const KnownHostEntry* entry = m_knownHostsDocument.records().at(position).kind().entry();
        if (entry) {
            countLinkedEntry(entry->id(),
                !entry->isCommentedOut()
                    && knownHostsFieldMatches(entry->hostsField(), m_selectedHostKnownHostsLink->lookupName));
        }
    }
}

void SSHConfigViewModel::countLinkedEntry(const QUuid& entryID, bool linked)
{
    if (!m_selectedHostKnownHostsLink)
        return;
    const bool changed
        = linked ? !m_selectedHostLinkedEntries.contains(entryID) : m_selectedHostLinkedEntries.contains(entryID);
    if (!changed)
        return;
    if (linked)
        m_selectedHostLinkedEntries.insert(entryID);
    else
        m_selectedHostLinkedEntries.remove(entryID);
    HostKnownHostsLink link = *m_selectedHostKnownHostsLink;
    link.entryCount = m_selectedHostLinkedEntries.size();
    change(m_selectedHostKnownHostsLink, std::optional(link), &SSHConfigViewModel::selectedHostKnownHostsLinkChanged);
}

// Each side is brought up to date only while its tab is shown, so that typing in the host editor does
// not test the known_hosts entry and editing known_hosts does not look up the config host.
void SSHConfigViewModel::updateHostLinks()
{
    if (m_loadingBothFiles)
        return;
    if (m_activeEditorTab == EditorTab::knownHosts)
        updateSelectedKnownHostConfigHosts();
    else
        updateSelectedHostKnownHostsLink();
}

const QHash<QString, QList<QUuid>>& SSHConfigViewModel::configHostsByLookupName() const
{
    if (m_configHostsByLookupName)
        return *m_configHostsByLookupName;
    QHash<QString, QList<QUuid>> byName;
    for (const SSHHost& host : m_document.hosts) {
        const std::optional<QString> name = knownHostLookupNameForConfigHost(host);
        if (!name)
            continue;
        byName[*name].append(host.id());
        m_configHostLookupNames.insert(host.id(), *name);
    }
    return m_configHostsByLookupName.emplace(std::move(byName));
}

void SSHConfigViewModel::updateSelectedHostKnownHostsLink()
{
    // A load or an undo replaces the document before it repairs the selection, and the repair updates the
    // link again: the moment between is not published.
    if (m_selectedHostID && positionOfHost(*m_selectedHostID) < 0)
        return;
    std::optional<HostKnownHostsLink> link;
    m_selectedHostLinkedEntries.clear();
    if (m_selectedHostID) {
        configHostsByLookupName();
        const auto name = m_configHostLookupNames.constFind(*m_selectedHostID);
        if (name != m_configHostLookupNames.cend()) {
            const QList<QUuid> ids = knownHostEntryIDsForName(*name);
            m_selectedHostLinkedEntries = QSet<QUuid>(ids.cbegin(), ids.cend());
            link = HostKnownHostsLink { *name, ids.size() };
        }
    }
    change(m_selectedHostKnownHostsLink, link, &SSHConfigViewModel::selectedHostKnownHostsLinkChanged);
}

void SSHConfigViewModel::updateSelectedKnownHostConfigHosts()
{
    QList<ConfigHostLink> links;
    const KnownHostEntry* entry = selectedEntry();
    // Renumbering and changes of other entries leave the answer as it is; a hashed entry costs one HMAC
    // per config host, so it is not asked again for nothing.
    const QString asked = entry
        ? entry->id().toString() + (entry->isCommentedOut() ? u"#"_s : u" "_s) + entry->hostsField()
        : QString();
    if (!asked.isEmpty() && asked == m_configHostsLinkedEntry)
        return;
    m_configHostsLinkedEntry = asked;
    if (entry && !entry->isCommentedOut()) {
        const QHash<QString, QList<QUuid>>& byName = configHostsByLookupName();
        QSet<QUuid> reaching;
        for (const QString& name : namesMatchedBy(entry->hostsField(), byName)) {
            for (const QUuid& id : byName.value(name))
                reaching.insert(id);
        }
        for (qsizetype i = 0; !reaching.isEmpty() && i < m_document.hosts.size(); ++i) {
            const SSHHost& host = m_document.hosts.at(i);
            if (reaching.remove(host.id()))
                links.append(ConfigHostLink { host.id(), host.patterns.join(u' ') });
        }
    }
    change(m_selectedKnownHostConfigHosts, links, &SSHConfigViewModel::selectedKnownHostConfigHostsChanged);
}

void SSHConfigViewModel::showKnownHostEntriesForSelectedHost()
{
    updateSelectedHostKnownHostsLink();
    if (!m_selectedHostKnownHostsLink) {
        setStatusMessage(u"Deze host noemt geen host waarvoor ssh known_hosts leest."_s);
        return;
    }
    // The lookup field shows the name, so the filtered list explains itself.
    const QString name = m_selectedHostKnownHostsLink->lookupName;
    setActiveEditorTab(EditorTab::knownHosts);
    showKnownHostLookup(name);
}

void SSHConfigViewModel::selectConfigHostFromKnownHosts(const QUuid& hostID)
{
    if (positionOfHost(hostID) < 0) {
        setStatusMessage(u"Deze SSH-config host bestaat niet meer."_s);
        return;
    }
    setSelectedHostID(hostID);
    setActiveEditorTab(EditorTab::structured);
    const SSHHost& host = m_document.hosts.at(positionOfHost(hostID));
    setStatusMessage(u"SSH-config host geselecteerd: "_s + host.patterns.join(u' ') + u"."_s);
}
