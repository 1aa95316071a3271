#include "SSHConfigViewModel.h"

#include "GroupList.h"

#include "FileWatcher.h"
#include "ServiceError.h"

using namespace Qt::StringLiterals;

SSHConfigViewModel::SSHConfigViewModel(std::shared_ptr<SSHFileService> fileService,
    std::shared_ptr<TerminalDiscovering> terminalDiscovery, std::shared_ptr<TerminalLaunching> terminalLauncher,
    std::shared_ptr<UserDefaultsStore> userDefaults, QObject* parent)
    : QObject(parent)
    , m_fileService(std::move(fileService))
    , m_terminalDiscovery(std::move(terminalDiscovery))
    , m_terminalLauncher(std::move(terminalLauncher))
    , m_userDefaults(std::move(userDefaults))
    , m_preferredTerminalBundleIdentifierKey(u"preferredTerminalBundleIdentifier"_s)
    , m_selectedGroup(allGroupsFilter())
{
    Q_ASSERT(m_fileService && m_terminalDiscovery && m_terminalLauncher && m_userDefaults);
    connectKnownHostTools();
    refreshTerminalApps();
    load();
    // What the first load brought is where the histories start, not a step to undo.
    m_configHistory = UndoHistory();
    m_knownHostsHistory = UndoHistory();
    m_fileWatcher = new FileWatcher({ m_fileService->configURL(), m_fileService->knownHostsURL() }, this);
    connect(m_fileWatcher, &FileWatcher::filesMayHaveChanged, this, &SSHConfigViewModel::checkFilesOnDisk);
    setUpSshCheck();
}

SSHConfigViewModel::~SSHConfigViewModel() = default;

void SSHConfigViewModel::setRawText(const QString& rawText)
{
    change(m_rawText, rawText, &SSHConfigViewModel::rawTextChanged);
}

void SSHConfigViewModel::setSelectedHostID(const std::optional<QUuid>& id)
{
    change(m_selectedHostID, id, &SSHConfigViewModel::selectedHostIDChanged);
}

void SSHConfigViewModel::setSearchText(const QString& searchText)
{
    change(m_searchText, searchText, &SSHConfigViewModel::searchTextChanged);
}

void SSHConfigViewModel::setSelectedGroup(const QString& group)
{
    change(m_selectedGroup, group, &SSHConfigViewModel::selectedGroupChanged);
}

void SSHConfigViewModel::setSelectedKnownHostEntryID(const std::optional<QUuid>& id)
{
    change(m_selectedKnownHostEntryID, id, &SSHConfigViewModel::selectedKnownHostEntryIDChanged);
}

void SSHConfigViewModel::setKnownHostsSearchText(const QString& searchText)
{
    change(m_knownHostsSearchText, searchText, &SSHConfigViewModel::knownHostsSearchTextChanged);
}

void SSHConfigViewModel::setActiveEditorTab(EditorTab tab)
{
    change(m_activeEditorTab, tab, &SSHConfigViewModel::activeEditorTabChanged);
}

void SSHConfigViewModel::setRawEditorDirty(bool dirty)
{
    change(m_rawEditorDirty, dirty, &SSHConfigViewModel::rawEditorDirtyChanged);
}

void SSHConfigViewModel::setRawTextDirty(bool dirty)
{
    change(m_rawTextDirty, dirty, &SSHConfigViewModel::rawTextDirtyChanged);
}

void SSHConfigViewModel::markRawTextEdited()
{
    // The raw editor has already written the new text; the step starts from the text before it.
    ConfigUndoState before = captureConfigState();
    before.rawText = m_rawTextBeforeTyping;
    setRawEditorDirty(true);
    setRawTextDirty(true);
    recordConfigStep(u"Raw tekst bewerken"_s, u"Raw tekst bewerkt"_s, before, u"raw-typing"_s);
}

void SSHConfigViewModel::setStatusMessage(const QString& message)
{
    change(m_statusMessage, message, &SSHConfigViewModel::statusMessageChanged);
}

void SSHConfigViewModel::setParseErrors(const QList<SSHParseError>& errors)
{
    change(m_parseErrors, errors, &SSHConfigViewModel::parseErrorsChanged);
}

void SSHConfigViewModel::setKnownHostsDirty(bool dirty)
{
    change(m_knownHostsDirty, dirty, &SSHConfigViewModel::knownHostsDirtyChanged);
}

void SSHConfigViewModel::setLastBackupPath(const QString& path)
{
    change(m_lastBackupPath, path, &SSHConfigViewModel::lastBackupPathChanged);
}

void SSHConfigViewModel::setSelectedTerminalBundleIdentifier(const QString& bundleIdentifier)
{
    change(m_selectedTerminalBundleIdentifier, bundleIdentifier,
        &SSHConfigViewModel::selectedTerminalBundleIdentifierChanged);
}

void SSHConfigViewModel::replaceDocument(const SSHConfigDocument& document)
{
    if (m_document == document)
        return;
    Q_EMIT hostsAboutToBeReset();
    m_document = document;
    Q_EMIT hostsReset();
    Q_EMIT documentChanged();
}

void SSHConfigViewModel::replaceKnownHosts(
    const KnownHostsDocument& document, const QList<KnownHostsParseError>& errors)
{
    if (!(m_knownHostsDocument == document)) {
        Q_EMIT knownHostsAboutToBeReset();
        m_knownHostsDocument = document;
        Q_EMIT knownHostsReset();
        Q_EMIT knownHostsDocumentChanged();
    }
    change(m_knownHostsParseErrors, errors, &SSHConfigViewModel::knownHostsParseErrorsChanged);
}

void SSHConfigViewModel::load()
{
    m_unchangedSaveWarningDismissed = false;
    // The links between the files are worked out once both are read, not once for each.
    m_loadingBothFiles = true;
    const QString configSentence = loadConfig();
    const QString knownHostsSentence = loadKnownHosts();
    m_loadingBothFiles = false;
    updateHostLinks();
    QString status = configSentence + u' ' + knownHostsSentence;
    // Said last, so the two load sentences keep their place at the start of the status line.
    if (m_configUnreadable)
        status += u" Het bestand "_s + m_fileService->configURL() + u" is niet geladen en wordt niet opgeslagen."_s;
    if (m_knownHostsUnreadable)
        status += u" Het bestand "_s + m_fileService->knownHostsURL() + u" is niet geladen en wordt niet opgeslagen."_s;
    setStatusMessage(status);
    // Right after a load, not after the pause edits get: the bar about an unchanged save belongs here.
    checkWhatSshWillDo();
    updateUnchangedSaveWarning();
}

// The snapshot is taken before the read: should the file change in between, the snapshot is the older
// one, and the difference is reported later instead of being overwritten unseen.
QString SSHConfigViewModel::loadConfig()
{
    const ConfigUndoState before = captureConfigState();
    m_configOnDisk = FileSnapshot::take(m_fileService->configURL());
    setChangeNotice(SSHFile::config, {});
    QString text;
    try {
        text = m_fileService->readConfig();
    } catch (const ServiceError& error) {
        change(m_configUnreadable, true, &SSHConfigViewModel::configUnreadableChanged);
        noteTextOnDisk(SSHFile::config, std::nullopt);
        return u"Config laden mislukt: "_s + error.description();
    }
    adoptConfigText(text);
    recordConfigStep(u"Herladen"_s, u"Herladen"_s, before);
    m_configHistory.markSaved();
    return u"SSH configuratie geladen."_s;
}

void SSHConfigViewModel::adoptConfigText(const QString& text, const SelectionKeeper& keepSelection)
{
    setRawText(text);
    SSHConfigParseResult parsed = m_parser.parse(text);
    replaceDocument(parsed.document);
    setParseErrors(parsed.errors);
    if (const std::optional<QUuid> kept = keepSelection ? keepSelection() : std::nullopt)
        setSelectedHostID(kept);
    ensureValidHostSelection();
    setRawEditorDirty(false);
    setRawTextDirty(false);
    change(m_configUnreadable, false, &SSHConfigViewModel::configUnreadableChanged);
    noteTextOnDisk(SSHFile::config, text);
}

QString SSHConfigViewModel::loadKnownHosts()
{
    KnownHostsSide before { m_knownHostsDocument, m_knownHostsParseErrors };
    const KnownHostsUndoView viewBefore = captureKnownHostsView();
    m_knownHostsOnDisk = FileSnapshot::take(m_fileService->knownHostsURL());
    setChangeNotice(SSHFile::knownHosts, {});
    QString text;
    try {
        text = m_fileService->readKnownHosts();
    } catch (const ServiceError& error) {
        replaceKnownHosts(KnownHostsDocument(), {});
        setSelectedKnownHostEntryID(std::nullopt);
        setKnownHostsDirty(false);
        change(m_knownHostsEntryCount, qsizetype(0), &SSHConfigViewModel::knownHostsEntryCountChanged);
        change(m_knownHostsUnreadable, true, &SSHConfigViewModel::knownHostsUnreadableChanged);
        noteTextOnDisk(SSHFile::knownHosts, std::nullopt);
        recordKnownHostsReplacement(u"Herladen"_s, u"Herladen"_s, std::move(before), viewBefore);
        return u"known_hosts laden mislukt: "_s + error.description();
    }
    adoptKnownHostsText(text);
    recordKnownHostsReplacement(u"Herladen"_s, u"Herladen"_s, std::move(before), viewBefore);
    m_knownHostsHistory.markSaved();
    if (!m_knownHostsParseErrors.isEmpty())
        return u"known_hosts geladen met "_s + QString::number(m_knownHostsParseErrors.size()) + u" parsefout(en)."_s;
    return u"known_hosts geladen."_s;
}

void SSHConfigViewModel::adoptKnownHostsText(const QString& text, const SelectionKeeper& keepSelection)
{
    KnownHostsParseResult parsed = m_knownHostsService.parse(text);
    replaceKnownHosts(parsed.document, parsed.errors);
    if (const std::optional<QUuid> kept = keepSelection ? keepSelection() : std::nullopt)
        setSelectedKnownHostEntryID(kept);
    ensureValidKnownHostSelection();
    setKnownHostsDirty(false);
    updateKnownHostsEntryCount();
    change(m_knownHostsUnreadable, false, &SSHConfigViewModel::knownHostsUnreadableChanged);
    noteTextOnDisk(SSHFile::knownHosts, text);
}

void SSHConfigViewModel::ensureValidHostSelection()
{
    const QList<SSHHost>& hosts = m_document.hosts;
    if (m_selectedHostID) {
        for (const SSHHost& host : hosts) {
            if (host.id() == *m_selectedHostID)
                return;
        }
    }
    for (const SSHHost& host : hosts) {
        for (const QString& pattern : host.patterns) {
            if (isPlainHostName(pattern)) {
                setSelectedHostID(host.id());
                return;
            }
        }
    }
    setSelectedHostID(hosts.isEmpty() ? std::nullopt : std::optional<QUuid>(hosts.first().id()));
}

void SSHConfigViewModel::ensureValidKnownHostSelection()
{
    if (m_selectedKnownHostEntryID && indexOfKnownHostRecord(*m_selectedKnownHostEntryID))
        return;
    for (const KnownHostsRecord& record : m_knownHostsDocument.records()) {
        if (const KnownHostEntry* entry = record.kind().entry()) {
            setSelectedKnownHostEntryID(entry->id());
            return;
        }
    }
    setSelectedKnownHostEntryID(std::nullopt);
}

void SSHConfigViewModel::updateKnownHostsEntryCount()
{
    qsizetype count = 0;
    for (const KnownHostsRecord& record : m_knownHostsDocument.records()) {
        if (record.kind().isEntry())
            ++count;
    }
    change(m_knownHostsEntryCount, count, &SSHConfigViewModel::knownHostsEntryCountChanged);
}
