// Guarding the two files against being overwritten from a state that did not come from them: after a
// failed load, and after another program (ssh appending a host key, another editor) changed them.

#include "SSHConfigViewModel.h"

#include "FileWatcher.h"
#include "ServiceError.h"

using namespace Qt::StringLiterals;

using NoticeKind = SSHConfigViewModel::FileChangeNotice::Kind;

namespace
{
QString countedLines(qsizetype count)
{
    return QString::number(count) + (count == 1 ? u" regel"_s : u" regels"_s);
}
} // namespace

QString SSHConfigViewModel::pathOf(SSHFile file) const
{
    return file == SSHFile::config ? m_fileService->configURL() : m_fileService->knownHostsURL();
}

FileSnapshot& SSHConfigViewModel::snapshotOf(SSHFile file)
{
    return file == SSHFile::config ? m_configOnDisk : m_knownHostsOnDisk;
}

bool SSHConfigViewModel::hasUnsavedChanges(SSHFile file) const
{
    return file == SSHFile::config ? m_rawEditorDirty || m_rawTextDirty : m_knownHostsDirty;
}

void SSHConfigViewModel::setChangeNotice(SSHFile file, const FileChangeNotice& notice)
{
    if (file == SSHFile::config)
        change(m_configChangeNotice, notice, &SSHConfigViewModel::configChangeNoticeChanged);
    else
        change(m_knownHostsChangeNotice, notice, &SSHConfigViewModel::knownHostsChangeNoticeChanged);
}

// Only text the user typed may replace a config that could not be read: the document is then not
// the file's content but whatever was there before (at start-up, nothing).
bool SSHConfigViewModel::refuseConfigSave(bool writesTypedText)
{
    if (m_configUnreadable && !writesTypedText) {
        setStatusMessage(
            u"Niet opgeslagen: "_s + m_fileService->configURL() + u" kon niet gelezen worden en is niet gewijzigd."_s);
        return true;
    }
    return refuseChangedOnDisk(SSHFile::config);
}

bool SSHConfigViewModel::refuseKnownHostsSave()
{
    if (m_knownHostsUnreadable) {
        setStatusMessage(u"Niet opgeslagen: "_s + m_fileService->knownHostsURL()
            + u" kon niet gelezen worden en is niet gewijzigd."_s);
        return true;
    }
    return refuseChangedOnDisk(SSHFile::knownHosts);
}

// Always compares contents, whatever the watcher said: a notification may still be on its way.
bool SSHConfigViewModel::refuseChangedOnDisk(SSHFile file)
{
    const QString path = pathOf(file);
    if (snapshotOf(file).sameContent(FileSnapshot::take(path)))
        return false;
    raiseConflict(file);
    setStatusMessage(
        u"Niet opgeslagen: "_s + path + u" is buiten Tarnwick gewijzigd. Kies Herladen of Mijn versie bewaren."_s);
    return true;
}

void SSHConfigViewModel::raiseConflict(SSHFile file)
{
    setChangeNotice(file,
        { NoticeKind::conflict,
            u"Het bestand "_s + pathOf(file)
                + u" is buiten Tarnwick gewijzigd terwijl je niet-opgeslagen wijzigingen hebt."_s });
}

void SSHConfigViewModel::rememberSavedFile(SSHFile file, const QString& text)
{
    snapshotOf(file) = FileSnapshot::ofWrittenFile(pathOf(file), text.toUtf8());
    noteTextOnDisk(file, text);
    if (file == SSHFile::config)
        change(m_configUnreadable, false, &SSHConfigViewModel::configUnreadableChanged);
    else
        change(m_knownHostsUnreadable, false, &SSHConfigViewModel::knownHostsUnreadableChanged);
    setChangeNotice(file, {});
    // A first save may have made the directory and the file, which can only now be watched.
    if (m_fileWatcher)
        m_fileWatcher->watchWhatExists();
}

void SSHConfigViewModel::checkFilesOnDisk()
{
    for (const SSHFile file : { SSHFile::config, SSHFile::knownHosts }) {
        if (snapshotOf(file).stillMatches(pathOf(file))) {
            // Changed back to what was loaded: nothing is left to choose.
            if ((file == SSHFile::config ? m_configChangeNotice : m_knownHostsChangeNotice).kind
                == NoticeKind::conflict)
                setChangeNotice(file, {});
            continue;
        }
        handleExternalChange(file);
    }
}

void SSHConfigViewModel::handleExternalChange(SSHFile file)
{
    if (!hasUnsavedChanges(file)) {
        reloadQuietly(file);
        return;
    }
    if (file == SSHFile::knownHosts && mergeAppendedKnownHosts())
        return;
    raiseConflict(file);
}

void SSHConfigViewModel::reloadQuietly(SSHFile file)
{
    const QString path = pathOf(file);
    const FileSnapshot onDisk = FileSnapshot::take(path);
    const ConfigUndoState configBefore = captureConfigState();
    KnownHostsSide knownHostsBefore { m_knownHostsDocument, m_knownHostsParseErrors };
    const KnownHostsUndoView knownHostsViewBefore = captureKnownHostsView();
    try {
        if (file == SSHFile::config) {
            const QString text = m_fileService->readConfig();
            const std::optional<qsizetype> selected = selectedHostIndex();
            const QStringList selectedPatterns = selected ? m_document.hosts.at(*selected).patterns : QStringList();
            adoptConfigText(text, [this, selectedPatterns]() -> std::optional<QUuid> {
                for (const SSHHost& host : m_document.hosts) {
                    if (!selectedPatterns.isEmpty() && host.patterns == selectedPatterns)
                        return host.id();
                }
                return std::nullopt;
            });
        } else {
            const QString text = m_fileService->readKnownHosts();
            const std::optional<KnownHostEntry> selected = selectedKnownHostEntry();
            adoptKnownHostsText(text, [this, selected]() -> std::optional<QUuid> {
                if (!selected)
                    return std::nullopt;
                for (const KnownHostsRecord& record : m_knownHostsDocument.records()) {
                    const KnownHostEntry* entry = record.kind().entry();
                    if (entry && entry->hostsField() == selected->hostsField()
                        && entry->keyType() == selected->keyType() && entry->key() == selected->key())
                        return entry->id();
                }
                return std::nullopt;
            });
        }
    } catch (const ServiceError& error) {
        // The old content stays shown, but it no longer matches the file, so it is not saved over it.
        snapshotOf(file) = onDisk;
        noteTextOnDisk(file, std::nullopt);
        if (file == SSHFile::config)
            change(m_configUnreadable, true, &SSHConfigViewModel::configUnreadableChanged);
        else
            change(m_knownHostsUnreadable, true, &SSHConfigViewModel::knownHostsUnreadableChanged);
        setStatusMessage(u"Het bestand "_s + path + u" is buiten Tarnwick gewijzigd en kon niet gelezen worden: "_s
            + error.description());
        return;
    }
    snapshotOf(file) = onDisk;
    if (file == SSHFile::config) {
        recordConfigStep(u"Extern gewijzigd bestand laden"_s, u"Extern gewijzigd bestand geladen"_s, configBefore);
        m_configHistory.markSaved();
    } else {
        recordKnownHostsReplacement(u"Extern gewijzigd bestand laden"_s, u"Extern gewijzigd bestand geladen"_s,
            std::move(knownHostsBefore), knownHostsViewBefore);
        m_knownHostsHistory.markSaved();
    }
    setChangeNotice(file, {});
    setStatusMessage(u"Het bestand "_s + path + u" is buiten Tarnwick gewijzigd en opnieuw geladen."_s);
}

// What ssh does when it learns a new host key: it appends a line, leaving every earlier byte as it
// was. Such lines can join unsaved edits without a question; any other change cannot.
bool SSHConfigViewModel::mergeAppendedKnownHosts()
{
    const QString path = m_fileService->knownHostsURL();
    const FileSnapshot& loaded = m_knownHostsOnDisk;
    if (loaded.kind() == FileSnapshot::Kind::unreadable || m_knownHostsUnreadable)
        return false;
    const FileSnapshot onDisk = FileSnapshot::take(path);
    QByteArray bytes;
    try {
        bytes = m_fileService->readKnownHosts().toUtf8();
    } catch (const ServiceError&) {
        return false;
    }
    const qsizetype oldSize = loaded.kind() == FileSnapshot::Kind::missing ? 0 : loaded.size();
    if (bytes.size() <= oldSize || FileSnapshot::contentHash(bytes.first(oldSize)) != loaded.hash())
        return false;
    const bool oldEndedLine = oldSize == 0 || bytes.at(oldSize - 1) == '\n';
    if (!oldEndedLine && bytes.at(oldSize) != '\n')
        return false;

    KnownHostsSide before { m_knownHostsDocument, m_knownHostsParseErrors };
    const KnownHostsUndoView viewBefore = captureKnownHostsView();
    const KnownHostsParseResult appended = m_knownHostsService.parse(QString::fromUtf8(bytes.sliced(oldSize)));
    // Errors name lines of the file on disk; entries are renumbered by position like after every edit.
    const int lineOffset = static_cast<int>(bytes.first(oldSize).count('\n'));
    QList<KnownHostsRecord> records = m_knownHostsDocument.records();
    QList<KnownHostsRecord> added = appended.document.records();
    // The old text's final line break ended the file in an empty last record; when it did not end in
    // one, the appended text starts with the line break that closes the old last line instead.
    if (oldEndedLine) {
        if (!records.isEmpty() && records.last().kind().isBlank())
            records.removeLast();
    } else if (!added.isEmpty()) {
        added.removeFirst();
    }
    const qsizetype addedLines = std::count_if(
        added.cbegin(), added.cend(), [](const KnownHostsRecord& record) { return !record.kind().isBlank(); });
    records.append(added);
    QList<KnownHostsParseError> errors = m_knownHostsParseErrors;
    for (const KnownHostsParseError& error : appended.errors)
        errors.append(KnownHostsParseError(error.line() + lineOffset, error.message()));
    replaceKnownHosts(KnownHostsDocument(std::move(records)), errors);
    ensureValidKnownHostSelection();
    renumberKnownHostEntries();
    updateKnownHostsEntryCount();
    recordKnownHostsReplacement(
        u"Toegevoegde regels opnemen"_s, u"Toegevoegde regels opgenomen"_s, std::move(before), viewBefore);
    m_knownHostsOnDisk = onDisk;
    noteTextOnDisk(SSHFile::knownHosts, QString::fromUtf8(bytes));
    setChangeNotice(SSHFile::knownHosts,
        { NoticeKind::merged,
            u"Aan "_s + path + u" zijn buiten Tarnwick "_s + countedLines(addedLines)
                + u" toegevoegd (zoals ssh doet bij een nieuwe host); ze zijn opgenomen "
                  u"in je niet-opgeslagen wijzigingen."_s });
    return true;
}

void SSHConfigViewModel::reloadChangedFile(SSHFile file)
{
    if (file == SSHFile::config) {
        setStatusMessage(loadConfig());
    } else {
        setStatusMessage(loadKnownHosts());
    }
}

void SSHConfigViewModel::keepMyVersion(SSHFile file)
{
    snapshotOf(file) = FileSnapshot::take(pathOf(file));
    setChangeNotice(file, {});
    setStatusMessage(u"Je versie blijft staan; opslaan vervangt het gewijzigde bestand "_s + pathOf(file) + u"."_s);
}

void SSHConfigViewModel::dismissChangeNotice(SSHFile file)
{
    if ((file == SSHFile::config ? m_configChangeNotice : m_knownHostsChangeNotice).kind == NoticeKind::merged)
        setChangeNotice(file, {});
}
