// known_hosts actions: search, marker, comment toggle, delete, renumbering and the config host seed.

#include "SSHConfigViewModel.h"

#include "LoweredTextSearch.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace
{

const QString selectEntryFirst = u"Selecteer eerst een known_hosts entry."_s;

} // namespace

QString SSHConfigViewModel::knownHostsSearchQuery() const
{
    return m_knownHostsSearchText.trimmed().toLower();
}

QList<KnownHostEntry> SSHConfigViewModel::filteredKnownHostEntries() const
{
    const QString query = knownHostsSearchQuery();
    const QString fingerprintQuery = knownHostsFingerprintQuery();
    QList<KnownHostEntry> result;
    for (const KnownHostsRecord& record : m_knownHostsDocument.records()) {
        const KnownHostEntry* entry = record.kind().entry();
        if (entry && knownHostEntryMatchesSearch(*entry, query, fingerprintQuery))
            result.append(*entry);
    }
    return result;
}

bool SSHConfigViewModel::knownHostEntryMatches(const KnownHostEntry& entry, QStringView loweredQuery)
{
    if (loweredQuery.isEmpty())
        return true;
    if (LoweredTextSearch::containsInHostsField(entry.hostsField(), loweredQuery))
        return true;
    const std::optional<KnownHostMarker> marker = entry.marker();
    if (marker && LoweredTextSearch::contains(knownHostMarkerRawValue(*marker), loweredQuery))
        return true;
    return LoweredTextSearch::containsInPair(entry.keyType(), entry.key(), loweredQuery)
        || LoweredTextSearch::contains(entry.comment(), loweredQuery);
}

const KnownHostEntry* SSHConfigViewModel::selectedEntry() const
{
    if (!m_selectedKnownHostEntryID)
        return nullptr;
    const std::optional<qsizetype> position = indexOfKnownHostRecord(*m_selectedKnownHostEntryID);
    return position ? m_knownHostsDocument.records().at(*position).kind().entry() : nullptr;
}

std::optional<KnownHostEntry> SSHConfigViewModel::selectedKnownHostEntry() const
{
    const KnownHostEntry* entry = selectedEntry();
    return entry ? std::optional<KnownHostEntry>(*entry) : std::nullopt;
}

std::optional<qsizetype> SSHConfigViewModel::indexOfKnownHostRecord(const QUuid& entryID) const
{
    const QList<KnownHostsRecord>& records = m_knownHostsDocument.records();
    // The selected entry is asked for several times per action; ids are unique, so where it was
    // found last is the answer as long as it is still there.
    if (m_lastFoundKnownHostRecord < records.size()) {
        const KnownHostEntry* entry = records.at(m_lastFoundKnownHostRecord).kind().entry();
        if (entry && entry->id() == entryID)
            return m_lastFoundKnownHostRecord;
    }
    for (qsizetype i = 0; i < records.size(); ++i) {
        const KnownHostEntry* entry = records.at(i).kind().entry();
        if (entry && entry->id() == entryID) {
            m_lastFoundKnownHostRecord = i;
            return i;
        }
    }
    return std::nullopt;
}

// Applies edit to the selected entry in place and does the bookkeeping every entry change needs.
// Returns false, having said so, when nothing is selected.
bool SSHConfigViewModel::changeSelectedEntry(
    const std::function<void(KnownHostEntry&)>& edit, const QString& stepName, const QString& stepPastTense)
{
    const std::optional<qsizetype> position
        = m_selectedKnownHostEntryID ? indexOfKnownHostRecord(*m_selectedKnownHostEntryID) : std::nullopt;
    if (!position) {
        setStatusMessage(selectEntryFirst);
        return false;
    }
    const KnownHostsUndoView viewBefore = captureKnownHostsView();
    const KnownHostsRecord recordBefore = std::as_const(m_knownHostsDocument).records().at(*position);
    KnownHostEntry* entry = m_knownHostsDocument.records()[*position].kind().entry();
    edit(*entry);
    const bool changed = !(*recordBefore.kind().entry() == *entry);
    if (changed) {
        Q_EMIT knownHostRecordsChanged(*position, *position, false);
        Q_EMIT knownHostsDocumentChanged();
    }
    setKnownHostsDirty(true);
    // A change in place moves no record and adds none, so the line numbers and the count stand;
    // at 100,000 entries, checking them would cost more than the change.
    if (changed) {
        recordKnownHostsRecordChange(
            stepName, stepPastTense, *position, recordBefore, m_knownHostsDocument.records().at(*position), viewBefore);
    }
    return true;
}

void SSHConfigViewModel::setMarkerOnSelectedKnownHostEntry(std::optional<KnownHostMarker> marker)
{
    if (!changeSelectedEntry([marker](KnownHostEntry& entry) { entry.setMarker(marker); },
            marker ? u"Marker zetten"_s : u"Marker verwijderen"_s, marker ? u"Marker gezet"_s : u"Marker verwijderd"_s))
        return;
    if (marker)
        setStatusMessage(u"Marker gezet op "_s + knownHostMarkerRawValue(*marker) + u"."_s);
    else
        setStatusMessage(u"Marker verwijderd."_s);
}

QString SSHConfigViewModel::knownHostCommentActionTitle() const
{
    const KnownHostEntry* entry = selectedEntry();
    return (entry && entry->isCommentedOut()) ? u"Uncomment"_s : u"Comment Out"_s;
}

void SSHConfigViewModel::toggleCommentOnSelectedKnownHostEntry()
{
    const KnownHostEntry* selected = selectedEntry();
    const bool commenting = selected && !selected->isCommentedOut();
    if (!changeSelectedEntry([](KnownHostEntry& entry) { entry.setCommentedOut(!entry.isCommentedOut()); },
            commenting ? u"Entry uitcommentariëren"_s : u"Entry activeren"_s,
            commenting ? u"Entry uitgecommentarieerd"_s : u"Entry geactiveerd"_s))
        return;
    const KnownHostEntry* entry = selectedEntry();
    if (entry && entry->isCommentedOut())
        setStatusMessage(u"Entry is uitgecommentarieerd."_s);
    else
        setStatusMessage(u"Entry is weer actief gemaakt."_s);
}

void SSHConfigViewModel::deleteSelectedKnownHostEntry()
{
    const std::optional<qsizetype> position
        = m_selectedKnownHostEntryID ? indexOfKnownHostRecord(*m_selectedKnownHostEntryID) : std::nullopt;
    if (!position) {
        setStatusMessage(selectEntryFirst);
        return;
    }
    const KnownHostsUndoView viewBefore = captureKnownHostsView();
    const KnownHostsRecord removed = std::as_const(m_knownHostsDocument).records().at(*position);
    Q_EMIT knownHostRecordAboutToBeRemoved(*position);
    m_knownHostsDocument.records().removeAt(*position);
    Q_EMIT knownHostRecordRemoved(*position);
    setKnownHostsDirty(true);
    // Only the records after the removed one move. Renumbering announces the change itself when any
    // entry followed it.
    if (!renumberKnownHostEntries(*position))
        Q_EMIT knownHostsDocumentChanged();
    change(m_knownHostsEntryCount, m_knownHostsEntryCount - 1, &SSHConfigViewModel::knownHostsEntryCountChanged);
    ensureValidKnownHostSelection();
    recordKnownHostsRecordChange(
        u"Entry verwijderen"_s, u"Entry verwijderd"_s, *position, removed, std::nullopt, viewBefore);
    setStatusMessage(u"known_hosts entry verwijderd."_s);
}

void SSHConfigViewModel::removeHostFromSelectedKnownHostEntry(qsizetype hostIndex)
{
    const KnownHostEntry* selected = selectedEntry();
    const QStringList hosts = selected ? selected->hosts() : QStringList();
    if (selected && hosts.size() < 2) {
        setStatusMessage(u"Dit is de enige host van deze entry; gebruik Remove om de hele entry te verwijderen."_s);
        return;
    }
    if (selected && (hostIndex < 0 || hostIndex >= hosts.size()))
        return;
    QString removed;
    const bool changed = changeSelectedEntry(
        [&](KnownHostEntry& entry) {
            QStringList remaining = entry.hosts();
            removed = remaining.takeAt(hostIndex);
            entry.setHosts(remaining);
            // The label "hashed" must stay true of the names that are left.
            entry.setHashed(std::any_of(remaining.cbegin(), remaining.cend(),
                [](const QString& host) { return host.startsWith(u"|1|"_s) || host.startsWith(u"|2|"_s); }));
        },
        u"Host uit entry verwijderen"_s, u"Host uit entry verwijderd"_s);
    if (changed)
        setStatusMessage(u"Host "_s + removed + u" verwijderd uit deze known_hosts entry."_s);
}

bool SSHConfigViewModel::renumberKnownHostEntries(qsizetype from)
{
    QList<KnownHostsRecord>& records = m_knownHostsDocument.records();
    qsizetype first = std::numeric_limits<qsizetype>::max();
    qsizetype last = -1;
    for (qsizetype i = from; i < records.size(); ++i) {
        // Reading through a const reference first keeps an untouched list from detaching.
        const KnownHostEntry* current = std::as_const(records).at(i).kind().entry();
        const int lineNumber = static_cast<int>(i + 1);
        if (!current || current->lineNumber() == lineNumber)
            continue;
        records[i].kind().entry()->setLineNumber(lineNumber);
        first = std::min(first, i);
        last = i;
    }
    if (last < 0)
        return false;
    Q_EMIT knownHostRecordsChanged(first, last, true);
    Q_EMIT knownHostsDocumentChanged();
    return true;
}

std::optional<SSHConfigViewModel::KnownHostSeed> SSHConfigViewModel::knownHostSeed(const KnownHostEntry& entry)
{
    const std::optional<QString> field = chosenKnownHostField(entry.hosts());
    if (!field)
        return std::nullopt;
    const QString& text = *field;
    if (const std::optional<BracketedHostPort> hostPort = ::parseBracketedHostPort(text))
        return KnownHostSeed { hostPort->host, hostPort->host, std::nullopt, hostPort->port };
    const qsizetype at = text.indexOf(u'@');
    if (at <= 0)
        return KnownHostSeed { text, text, std::nullopt, std::nullopt };
    const QString user = text.left(at).trimmed();
    const std::optional<QString> seedUser = user.isEmpty() ? std::nullopt : std::optional<QString>(user);
    const QString host = text.mid(at + 1).trimmed();
    if (const std::optional<BracketedHostPort> hostPort = ::parseBracketedHostPort(host))
        return KnownHostSeed { hostPort->host, hostPort->host, seedUser, hostPort->port };
    if (isPlainHostName(host))
        return KnownHostSeed { host, host, seedUser, std::nullopt };
    return std::nullopt;
}

std::optional<BracketedHostPort> SSHConfigViewModel::parseBracketedHostPort(QStringView text)
{
    return ::parseBracketedHostPort(text);
}

void SSHConfigViewModel::openSSHHostForSelectedKnownHostEntry()
{
    const KnownHostEntry* entry = selectedEntry();
    if (!entry) {
        setStatusMessage(selectEntryFirst);
        return;
    }
    const std::optional<KnownHostSeed> seed = knownHostSeed(*entry);
    if (!seed) {
        setStatusMessage(u"Kan geen bruikbare host-alias bepalen uit deze known_hosts entry."_s);
        return;
    }
    openSeedInConfig(*seed);
}

void SSHConfigViewModel::openSeedInConfig(const KnownHostSeed& seed)
{
    const ConfigUndoState before = captureConfigState();
    for (const SSHHost& existing : m_document.hosts) {
        for (const QString& pattern : existing.patterns) {
            if (pattern.compare(seed.alias, Qt::CaseInsensitive) != 0)
                continue;
            setSelectedHostID(existing.id());
            setActiveEditorTab(EditorTab::structured);
            setStatusMessage(u"Bestaande SSH-config host geselecteerd: "_s + seed.alias);
            return;
        }
    }
    QList<SSHHostItem> items { SSHHostItem::option(SSHOption(u"HostName"_s, seed.hostName)) };
    if (seed.user)
        items.append(SSHHostItem::option(SSHOption(u"User"_s, *seed.user)));
    if (seed.port)
        items.append(SSHHostItem::option(SSHOption(u"Port"_s, *seed.port)));
    const SSHHost created({ seed.alias }, {}, true, items);
    insertHost(created, m_document.hosts.size());
    setSelectedHostID(created.id());
    setActiveEditorTab(EditorTab::structured);
    setRawEditorDirty(true);
    recordConfigStep(u"Host uit known_hosts maken"_s, u"Host uit known_hosts gemaakt"_s, before);
    setStatusMessage(u"Nieuwe SSH-config host aangemaakt op basis van known_hosts: "_s + seed.alias);
}
