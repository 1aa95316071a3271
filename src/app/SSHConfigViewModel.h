#pragma once

#include "FileSnapshot.h"
#include "HostFieldRules.h"
#include "KnownHostFingerprint.h"
#include "KnownHostNameIndex.h"
#include "KnownHostsService.h"
#include "SSHConfigParser.h"
#include "SSHFileService.h"
#include "SSHHostKeyWarning.h"
#include "SshCheckResult.h"
#include "TerminalApp.h"
#include "TerminalDiscovering.h"
#include "TerminalLaunching.h"
#include "UndoHistory.h"
#include "UserDefaultsStore.h"

#include <QList>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <functional>
#include <memory>
#include <optional>

class FileWatcher;
class KnownHostsCheck;
class QTimer;
class SshConfigCheck;

/// The whole state of the application and every user action on it.
///
/// One instance lives for the whole run; the windows show its properties and call its operations.
/// Every operation runs to completion on the calling (user-interface) thread and, where it has
/// something to say, replaces statusMessage with one Dutch sentence. No operation throws: service
/// errors are caught and become that sentence. Every property's change signal fires exactly once for
/// a real change and never for a write of an equal value.
///
/// Besides the per-property signals, fine-grained signals (hostInserted, knownHostRecordRemoved, ...)
/// let HostListModel and KnownHostsModel follow the two documents row by row; whole-document
/// replacements (load, parse) are announced as resets.
///
/// The operations are implemented in one source file per concern: SSHConfigViewModel.cpp (state and
/// loading), ...HostList.cpp, ...HostEditing.cpp, ...RawText.cpp, ...KnownHosts.cpp, ...Connect.cpp and
/// ...Terminal.cpp; what OpenSSH makes of a save is in ...SshCheck.cpp.
class SSHConfigViewModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(SSHConfigDocument document READ document NOTIFY documentChanged)
    Q_PROPERTY(QString rawText READ rawText WRITE setRawText NOTIFY rawTextChanged)
    Q_PROPERTY(QList<SSHParseError> parseErrors READ parseErrors NOTIFY parseErrorsChanged)
    Q_PROPERTY(
        std::optional<QUuid> selectedHostID READ selectedHostID WRITE setSelectedHostID NOTIFY selectedHostIDChanged)
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
    Q_PROPERTY(QString selectedGroup READ selectedGroup WRITE setSelectedGroup NOTIFY selectedGroupChanged)
    Q_PROPERTY(KnownHostsDocument knownHostsDocument READ knownHostsDocument NOTIFY knownHostsDocumentChanged)
    Q_PROPERTY(QList<KnownHostsParseError> knownHostsParseErrors READ knownHostsParseErrors NOTIFY
            knownHostsParseErrorsChanged)
    Q_PROPERTY(std::optional<QUuid> selectedKnownHostEntryID READ selectedKnownHostEntryID WRITE
            setSelectedKnownHostEntryID NOTIFY selectedKnownHostEntryIDChanged)
    Q_PROPERTY(QString knownHostsSearchText READ knownHostsSearchText WRITE setKnownHostsSearchText NOTIFY
            knownHostsSearchTextChanged)
    Q_PROPERTY(QList<TerminalApp> availableTerminalApps READ availableTerminalApps NOTIFY availableTerminalAppsChanged)
    Q_PROPERTY(QString selectedTerminalBundleIdentifier READ selectedTerminalBundleIdentifier NOTIFY
            selectedTerminalBundleIdentifierChanged)
    Q_PROPERTY(EditorTab activeEditorTab READ activeEditorTab WRITE setActiveEditorTab NOTIFY activeEditorTabChanged)
    Q_PROPERTY(QString statusMessage READ statusMessage NOTIFY statusMessageChanged)
    Q_PROPERTY(bool rawEditorDirty READ rawEditorDirty WRITE setRawEditorDirty NOTIFY rawEditorDirtyChanged)
    Q_PROPERTY(bool rawTextDirty READ rawTextDirty WRITE setRawTextDirty NOTIFY rawTextDirtyChanged)
    Q_PROPERTY(bool knownHostsDirty READ knownHostsDirty NOTIFY knownHostsDirtyChanged)
    Q_PROPERTY(qsizetype knownHostsEntryCount READ knownHostsEntryCount NOTIFY knownHostsEntryCountChanged)
    Q_PROPERTY(QString lastBackupPath READ lastBackupPath NOTIFY lastBackupPathChanged)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY undoHistoryChanged)
    Q_PROPERTY(bool canRedo READ canRedo NOTIFY undoHistoryChanged)
    Q_PROPERTY(QString undoText READ undoText NOTIFY undoHistoryChanged)
    Q_PROPERTY(QString redoText READ redoText NOTIFY undoHistoryChanged)
    Q_PROPERTY(bool configUnreadable READ configUnreadable NOTIFY configUnreadableChanged)
    Q_PROPERTY(bool knownHostsUnreadable READ knownHostsUnreadable NOTIFY knownHostsUnreadableChanged)
    Q_PROPERTY(FileChangeNotice configChangeNotice READ configChangeNotice NOTIFY configChangeNoticeChanged)
    Q_PROPERTY(FileChangeNotice knownHostsChangeNotice READ knownHostsChangeNotice NOTIFY knownHostsChangeNoticeChanged)
    Q_PROPERTY(QList<SshHostChange> configSshChanges READ configSshChanges NOTIFY configSshChangesChanged)
    Q_PROPERTY(QList<SshHostChange> knownHostsSshChanges READ knownHostsSshChanges NOTIFY knownHostsSshChangesChanged)
    Q_PROPERTY(bool sshCheckRunning READ sshCheckRunning NOTIFY sshCheckRunningChanged)
    Q_PROPERTY(int sshCheckProgress READ sshCheckProgress NOTIFY sshCheckProgressChanged)
    Q_PROPERTY(QString sshCheckProblem READ sshCheckProblem NOTIFY sshCheckProblemChanged)
    Q_PROPERTY(QString unchangedSaveWarning READ unchangedSaveWarning NOTIFY unchangedSaveWarningChanged)
    Q_PROPERTY(bool sshChangesShown READ sshChangesShown NOTIFY sshChangesShownChanged)
    Q_PROPERTY(std::optional<KnownHostFingerprints> selectedKnownHostFingerprints READ selectedKnownHostFingerprints
            NOTIFY selectedKnownHostFingerprintsChanged)
    Q_PROPERTY(std::optional<KnownHostLookup> knownHostLookup READ knownHostLookup NOTIFY knownHostLookupChanged)
    Q_PROPERTY(std::optional<HostKeyChange> hostKeyChange READ hostKeyChange NOTIFY hostKeyChangeChanged)
    Q_PROPERTY(std::optional<HostKnownHostsLink> selectedHostKnownHostsLink READ selectedHostKnownHostsLink NOTIFY
            selectedHostKnownHostsLinkChanged)
    Q_PROPERTY(QList<ConfigHostLink> selectedKnownHostConfigHosts READ selectedKnownHostConfigHosts NOTIFY
            selectedKnownHostConfigHostsChanged)

public:
    /// Which editor the main window shows.
    enum class EditorTab {
        structured,
        raw,
        knownHosts,
    };
    Q_ENUM(EditorTab)

    /// One of the two files the application edits.
    enum class SSHFile {
        config,
        knownHosts,
    };
    Q_ENUM(SSHFile)

    /// What the bar above the editors says about a file that another program changed.
    struct FileChangeNotice
    {
        enum class Kind {
            /// Nothing to say: no bar.
            none,
            /// The file changed on disk while it has unsaved changes here: the user chooses between
            /// reloadChangedFile() and keepMyVersion(); until then a save of that file is refused.
            conflict,
            /// Lines appended on disk were taken into the unsaved document; the bar only informs.
            merged,
        };
        Kind kind = Kind::none;
        QString text;

        friend bool operator==(const FileChangeNotice&, const FileChangeNotice&) = default;
    };

    /// The answer to "Zoek host": the name ssh looks up and the entries it would use for it, in file order.
    /// While there is one, the known_hosts list shows only those entries.
    struct KnownHostLookup
    {
        QString name;
        QList<QUuid> entryIDs;

        friend bool operator==(const KnownHostLookup&, const KnownHostLookup&) = default;
    };

    /// A pasted ssh warning about a changed host key and the entry it points at, for the side-by-side view.
    struct HostKeyChange
    {
        SSHHostKeyWarning warning;
        /// The offending entry, when this file holds it.
        std::optional<QUuid> entryID;
        /// The offending entry's SHA256 fingerprint (empty when its key is not base64 or there is none).
        QString oldFingerprint;

        friend bool operator==(const HostKeyChange&, const HostKeyChange&) = default;
    };

    /// For the host editor: the name ssh looks up in known_hosts for the selected host and how many active
    /// entries it would use for it.
    struct HostKnownHostsLink
    {
        QString lookupName;
        qsizetype entryCount = 0;

        friend bool operator==(const HostKnownHostsLink&, const HostKnownHostsLink&) = default;
    };

    /// For the known_hosts detail pane: a config host through which ssh reaches the selected entry.
    struct ConfigHostLink
    {
        QUuid hostID;
        /// The host's patterns joined with one blank, as the host list names it.
        QString title;

        friend bool operator==(const ConfigHostLink&, const ConfigHostLink&) = default;
    };

    /// What a known_hosts entry gives for finding or making a config host block.
    struct KnownHostSeed
    {
        /// The pattern of the host block to find or create.
        QString alias;
        /// The value of its "HostName" option (as built here, always equal to alias).
        QString hostName;
        /// The value of its "User" option, when the entry names a user.
        std::optional<QString> user;
        /// The value of its "Port" option (digits only), when the entry names a port.
        std::optional<QString> port;

        friend bool operator==(const KnownHostSeed&, const KnownHostSeed&) = default;
    };

    /// The host text and optional digits-only port that connecting to a known_hosts entry uses.
    struct ConnectTarget
    {
        QString host;
        std::optional<QString> port;

        friend bool operator==(const ConnectTarget&, const ConnectTarget&) = default;
    };

    /// Sets every property to its initial value, refreshes the terminal list and restores the
    /// stored terminal choice, then loads both files. No service may be null.
    SSHConfigViewModel(std::shared_ptr<SSHFileService> fileService,
        std::shared_ptr<TerminalDiscovering> terminalDiscovery, std::shared_ptr<TerminalLaunching> terminalLauncher,
        std::shared_ptr<UserDefaultsStore> userDefaults, QObject* parent = nullptr);
    ~SSHConfigViewModel() override;

    // --- Published fields -------------------------------------------------------------------------

    const SSHConfigDocument& document() const { return m_document; }
    const QString& rawText() const { return m_rawText; }
    /// The raw editor writes here directly; it reports the edit separately (markRawTextEdited()).
    void setRawText(const QString& rawText);
    const QList<SSHParseError>& parseErrors() const { return m_parseErrors; }
    const std::optional<QUuid>& selectedHostID() const { return m_selectedHostID; }
    void setSelectedHostID(const std::optional<QUuid>& id);
    const QString& searchText() const { return m_searchText; }
    void setSearchText(const QString& searchText);
    /// "All" (exactly) means no group filter; any other text filters by that group, ignoring case.
    const QString& selectedGroup() const { return m_selectedGroup; }
    void setSelectedGroup(const QString& group);
    const KnownHostsDocument& knownHostsDocument() const { return m_knownHostsDocument; }
    const QList<KnownHostsParseError>& knownHostsParseErrors() const { return m_knownHostsParseErrors; }
    const std::optional<QUuid>& selectedKnownHostEntryID() const { return m_selectedKnownHostEntryID; }
    void setSelectedKnownHostEntryID(const std::optional<QUuid>& id);
    const QString& knownHostsSearchText() const { return m_knownHostsSearchText; }
    void setKnownHostsSearchText(const QString& searchText);
    const QList<TerminalApp>& availableTerminalApps() const { return m_availableTerminalApps; }
    /// Empty when no terminal application is available; changed only by refreshTerminalApps() and
    /// selectTerminal().
    const QString& selectedTerminalBundleIdentifier() const { return m_selectedTerminalBundleIdentifier; }
    EditorTab activeEditorTab() const { return m_activeEditorTab; }
    void setActiveEditorTab(EditorTab tab);
    const QString& statusMessage() const { return m_statusMessage; }
    bool rawEditorDirty() const { return m_rawEditorDirty; }
    /// The editors set this when they report a change; saves and loads clear it.
    void setRawEditorDirty(bool dirty);
    bool rawTextDirty() const { return m_rawTextDirty; }
    void setRawTextDirty(bool dirty);
    /// The raw editor's one report that the user changed the text: sets rawEditorDirty, then rawTextDirty.
    void markRawTextEdited();
    bool knownHostsDirty() const { return m_knownHostsDirty; }
    /// Records of kind entry in knownHostsDocument, commented-out entries included.
    qsizetype knownHostsEntryCount() const { return m_knownHostsEntryCount; }
    const QString& lastBackupPath() const { return m_lastBackupPath; }
    /// The last load of the config failed: the config state did not come from the file, so only text
    /// the user typed in the raw editor may be saved over it, until a load succeeds.
    bool configUnreadable() const { return m_configUnreadable; }
    /// The last load of known_hosts failed: known_hosts is not saved until a load succeeds.
    bool knownHostsUnreadable() const { return m_knownHostsUnreadable; }
    const FileChangeNotice& configChangeNotice() const { return m_configChangeNotice; }
    const FileChangeNotice& knownHostsChangeNotice() const { return m_knownHostsChangeNotice; }
    /// The config hosts whose settings from `ssh -G` differ between the file on disk and what a save
    /// from the active tab would write, with each differing keyword (see SSHConfigViewModelSshCheck.cpp).
    const QList<SshHostChange>& configSshChanges() const { return m_configSshChanges; }
    /// The host names whose `ssh-keygen -F` answer differs between known_hosts on disk and what a save
    /// would write.
    const QList<SshHostChange>& knownHostsSshChanges() const { return m_knownHostsSshChanges; }
    /// A check by OpenSSH is under way; the two lists above still hold the last complete answer.
    bool sshCheckRunning() const { return m_sshCheckRunning; }
    /// How far the running check is, 0 to 100.
    int sshCheckProgress() const { return m_sshCheckProgress; }
    /// Why OpenSSH could not judge (ssh or ssh-keygen missing, ...); empty when it could.
    const QString& sshCheckProblem() const { return m_sshCheckProblem; }
    /// The bar's sentence when a save would change what ssh does although nothing was changed since
    /// the last load; empty for no bar.
    const QString& unchangedSaveWarning() const { return m_unchangedSaveWarning; }
    /// Whether the "Wat verandert er voor ssh?" pane is shown.
    bool sshChangesShown() const { return m_sshChangesShown; }

    // --- Fixed fields -----------------------------------------------------------------------------

    const SSHFileService& fileService() const { return *m_fileService; }
    const SSHConfigParser& parser() const { return m_parser; }
    const KnownHostsService& knownHostsService() const { return m_knownHostsService; }
    const TerminalDiscovering& terminalDiscovery() const { return *m_terminalDiscovery; }
    TerminalLaunching& terminalLauncher() const { return *m_terminalLauncher; }
    UserDefaultsStore& userDefaults() const { return *m_userDefaults; }
    /// "preferredTerminalBundleIdentifier", the one persistent preference.
    const QString& preferredTerminalBundleIdentifierKey() const { return m_preferredTerminalBundleIdentifierKey; }

    // --- State and loading (SSHConfigViewModel.cpp) ------------------------------------------------

    /// Reads and parses both files again (a missing file reads as empty), repairs both selections,
    /// counts the entries and sets statusMessage to the two outcomes joined by one blank. A config
    /// read failure keeps the config state; a known_hosts read failure empties the known_hosts state.
    /// Unsaved changes are discarded without a question.
    void load();
    /// Keeps a selected host that exists, else selects the first host with a plain pattern, else the
    /// first host, else nothing.
    void ensureValidHostSelection();
    /// Keeps a selected entry that exists, else selects the first entry, else nothing.
    void ensureValidKnownHostSelection();
    void updateKnownHostsEntryCount();

    // --- Undo and redo (SSHConfigViewModelUndo.cpp) -----------------------------------------------

    // Each document has its own history; the config's serves the structured and raw tabs, the
    // known_hosts history the known_hosts tab. Every change of a document is one step, a reload
    // included; saves are not steps, and the steps before a save stay undoable.

    /// Whether the active tab's document has a step to undo.
    bool canUndo() const;
    bool canRedo() const;
    /// "Ongedaan maken: " and the step's name ("Host verwijderen"), or "Ongedaan maken" without one.
    QString undoText() const;
    /// "Opnieuw doen: " and the step's name, or "Opnieuw doen" without one.
    QString redoText() const;
    /// Takes back the active tab's last step: document, raw text, selection and tab as they were, the
    /// unsaved-change flags as they follow from the last save, and a status sentence naming the step.
    void undo();
    void redo();
    const UndoHistory& configHistory() const { return m_configHistory; }
    const UndoHistory& knownHostsHistory() const { return m_knownHostsHistory; }

    // --- Changes by other programs (SSHConfigViewModelFileGuard.cpp) -------------------------------

    /// Compares both files on disk with what was last loaded or saved. A changed file without unsaved
    /// changes here is reloaded on its own, keeping the selection where the same host or entry is still
    /// there; lines only appended to known_hosts are merged into unsaved known_hosts edits; any other
    /// change to a file with unsaved changes raises that file's conflict notice. Called by the file
    /// watcher; harmless to call at any time.
    void checkFilesOnDisk();
    /// "Herladen": reads that file again, discarding its unsaved changes; the other file is untouched.
    void reloadChangedFile(SSHFile file);
    /// "Mijn versie bewaren": accepts the file as it now is on disk as the one a save may replace.
    void keepMyVersion(SSHFile file);
    /// Hides an informing notice ("merged"); a conflict stays until the user chooses.
    void dismissChangeNotice(SSHFile file);

    // --- What OpenSSH makes of a save (SSHConfigViewModelSshCheck.cpp) ------------------------------

    /// Uses these programs for the check instead of the ssh and ssh-keygen found on the PATH; an empty
    /// path means the program is missing. Checks again.
    void setSshCheckPrograms(const QString& ssh, const QString& sshKeygen);
    /// Starts both checks now (cancelling running ones); they also start on their own shortly after
    /// every load, edit, save and tab change.
    void checkWhatSshWillDo();
    /// Shows the "Wat verandert er voor ssh?" pane.
    void showSshChanges();
    /// Hides that pane.
    void hideSshChanges();
    /// Hides the bar about an unchanged save until the next load.
    void dismissUnchangedSaveWarning();
    /// The text a config save from the active tab would write (the table in ...RawText.cpp).
    QString configTextToSave() const;
    /// The 1-based numbers of the lines of rawText that set a keyword of change (its cause, as far as
    /// it can be found), at most a few dozen.
    QList<qsizetype> rawTextLinesFor(const SshHostChange& change) const;
    /// Shows the raw editor with line (1-based) of rawText.
    void showRawTextLine(qsizetype line);

    // --- Host list (SSHConfigViewModelHostList.cpp) -------------------------------------------------

    /// The hosts that hostMatchesFilters() keeps for the current searchText and selectedGroup, in
    /// document order.
    QList<SSHHost> filteredHosts() const;
    /// searchText trimmed of blanks and line breaks and lower-cased: the query filteredHosts() uses.
    QString hostSearchQuery() const;
    /// The group test of selectedGroup, then (for a non-empty lower-cased query) a substring search in
    /// the patterns, the groups and each option's "key value"; comments and blank lines are not searched.
    bool hostMatchesFilters(const SSHHost& host, QStringView loweredQuery) const;
    /// Every group of the hosts and of the group comments among the global items, each once (first
    /// spelling wins), sorted by a locale-aware case-insensitive comparison.
    QStringList availableGroups() const;
    /// The group named by a comment "# Group: name" (any letter case of "group:"), or nothing.
    static std::optional<QString> groupDeclarationName(QStringView commentText);
    /// True when no search text (blanks aside) and no group filter are active, so list positions are
    /// document positions.
    bool canReorderHosts() const;
    /// Moves the hosts at fromOffsets to toOffset (a position before the move; the moved hosts keep
    /// their order). Refused with a status sentence while a filter is active. Offsets outside the
    /// document are ignored and toOffset is clamped to it.
    void moveHosts(const QList<qsizetype>& fromOffsets, qsizetype toOffset);
    /// The position of the selected host in document().hosts, or nothing.
    std::optional<qsizetype> selectedHostIndex() const;

    // --- Host editing and groups (SSHConfigViewModelHostEditing.cpp) ---------------------------------

    /// Appends a "new-host" block (in the active group filter's group, if any) and selects it.
    void addHost();
    /// Removes the selected host and selects its successor, else the new last host; silent without a
    /// selection.
    void deleteSelectedHost();
    /// A copy of the host at position; position must lie inside document().hosts.
    SSHHost host(qsizetype position) const;
    /// Replaces the host at position (which must lie inside document().hosts) and marks the config changed.
    void updateHost(const SSHHost& host, qsizetype position);
    /// Switches the group filter to an existing group of that name (ignoring case), or attaches the new
    /// group to the selected host. Returns false, with a status sentence, for an empty name or when a new
    /// group has no selected host to go to.
    bool createGroupForSelectedHost(const QString& name);

    // --- Raw text and saving (SSHConfigViewModelRawText.cpp) ----------------------------------------

    /// Parses rawText into the document (what could be read replaces it) and reports the error count.
    void parseRawText();
    /// Parses rawText and, when it has no errors, writes it unchanged; refused on parse errors.
    void saveRawText();
    /// Serializes the document into rawText and writes it.
    void saveConfig();
    /// Renumbers the entries, serializes knownHostsDocument and writes it.
    void saveKnownHosts();
    /// The save the active tab calls for: see the table in SSHConfigViewModelRawText.cpp.
    void saveCurrentTab();
    /// Replaces rawText by the serialized document, unless the user has typed in the raw editor.
    void refreshRawTextFromDocument();

    // --- known_hosts actions (SSHConfigViewModelKnownHosts.cpp) --------------------------------------

    /// knownHostsSearchText trimmed of blanks and line breaks and lower-cased.
    QString knownHostsSearchQuery() const;
    /// The entries of all entry records in record order that match knownHostsSearchQuery(), or whose
    /// fingerprint matches knownHostsFingerprintQuery().
    QList<KnownHostEntry> filteredKnownHostEntries() const;
    /// True when the lower-cased query occurs in the entry's hosts joined with one blank, its marker's
    /// text, its key type, one blank and key, or its comment (all lower-cased); an empty query matches.
    static bool knownHostEntryMatches(const KnownHostEntry& entry, QStringView loweredQuery);
    /// The entry selectedKnownHostEntryID names, or nothing.
    std::optional<KnownHostEntry> selectedKnownHostEntry() const;
    /// Sets (or with nothing, removes) the selected entry's marker.
    void setMarkerOnSelectedKnownHostEntry(std::optional<KnownHostMarker> marker);
    /// "Uncomment" for a selected commented-out entry, else "Comment Out".
    QString knownHostCommentActionTitle() const;
    void toggleCommentOnSelectedKnownHostEntry();
    /// Selects the config host whose pattern is the entry's alias, or creates one, and shows the
    /// structured editor.
    void openSSHHostForSelectedKnownHostEntry();
    void deleteSelectedKnownHostEntry();
    /// Removes one host name (at hostIndex in the entry's hosts) from the selected entry and keeps the
    /// entry for the others, where ssh-keygen -R would delete the whole line. Refused, with a sentence, for
    /// the only host of an entry (that is deleteSelectedKnownHostEntry()) or an index outside the hosts.
    void removeHostFromSelectedKnownHostEntry(qsizetype hostIndex);
    /// Sets the lineNumber of every entry from record position from on to its position plus one; true,
    /// after announcing the change, when any entry had another number.
    bool renumberKnownHostEntries(qsizetype from = 0);
    /// The position of the record holding the entry with that id, or nothing.
    std::optional<qsizetype> indexOfKnownHostRecord(const QUuid& entryID) const;
    /// Alias, host name, user and port for a config host made from the entry, or nothing when the
    /// entry names no usable host.
    static std::optional<KnownHostSeed> knownHostSeed(const KnownHostEntry& entry);
    static std::optional<BracketedHostPort> parseBracketedHostPort(QStringView text);

    // --- Fingerprints (SSHConfigViewModelFingerprints.cpp) --------------------------------------------

    /// The fingerprints of the selected entry's key; nothing without a selection or when the key is not
    /// valid base64 (the detail pane then says so). Computed for the selected entry only.
    const std::optional<KnownHostFingerprints>& selectedKnownHostFingerprints() const
    {
        return m_selectedKnownHostFingerprints;
    }
    /// The search text, trimmed, when it starts with "SHA256:" in any letter case (written back as
    /// "SHA256:"); empty otherwise. Fingerprints are base64 and so case-sensitive after the prefix.
    QString knownHostsFingerprintQuery() const;
    /// True when the entry's SHA-256 fingerprint starts with fingerprintQuery (never for an empty query
    /// or a key that is not base64).
    static bool knownHostEntryMatchesFingerprint(const KnownHostEntry& entry, QStringView fingerprintQuery);
    /// What the known_hosts list shows: knownHostEntryMatches(), or else a fingerprint match.
    static bool knownHostEntryMatchesSearch(
        const KnownHostEntry& entry, QStringView loweredQuery, QStringView fingerprintQuery);
    /// The detail pane put a fingerprint on the clipboard: says so in the status line.
    void reportFingerprintCopied();

    // --- Host lookup (SSHConfigViewModelHostLookup.cpp) -----------------------------------------------

    const std::optional<KnownHostLookup>& knownHostLookup() const { return m_knownHostLookup; }
    /// "Zoek host": finds every entry ssh would use for a host typed as "name", "name:port" or
    /// "[name]:port" (hashed names included), shows only those in the list, selects the first and says
    /// how many there are. An empty text ends the lookup.
    void findKnownHostEntriesForHost(const QString& hostText);
    /// Shows every entry again.
    void clearKnownHostLookup();
    /// The name ssh looks up for a typed host: lower-cased as ssh does with the name it is given, in
    /// brackets with a port other than 22; nothing for an empty text or a port that is not a number.
    static std::optional<QString> knownHostLookupNameForText(QStringView hostText);
    /// The ids of the active entries ssh would use for lookupName, in file order.
    QList<QUuid> knownHostEntryIDsForName(const QString& lookupName) const;

    // --- Pasted ssh warning (SSHConfigViewModelHostKeyWarning.cpp) -------------------------------------

    const std::optional<HostKeyChange>& hostKeyChange() const { return m_hostKeyChange; }
    /// Reads ssh's "REMOTE HOST IDENTIFICATION HAS CHANGED" text, selects the offending entry (by its line
    /// when that line holds an entry ssh uses for the host, else the first entry ssh uses for the host),
    /// shows the known_hosts tab and publishes old and new fingerprint. Says why when it finds nothing.
    void applyHostKeyWarning(const QString& pastedText);
    /// Hides the side-by-side view.
    void dismissHostKeyChange();

    // --- Config <-> known_hosts links (SSHConfigViewModelHostLinks.cpp) ----------------------------------

    /// The selected config host's known_hosts name and entry count (see knownHostLookupNameForConfigHost());
    /// nothing without a selected host or for a host that names no concrete host. The count follows every
    /// change of known_hosts entries; a reload of known_hosts while its tab is shown is counted anew when
    /// another tab is chosen, which is when the host editor shows it.
    const std::optional<HostKnownHostsLink>& selectedHostKnownHostsLink() const { return m_selectedHostKnownHostsLink; }
    /// Switches to the known_hosts tab showing only the entries ssh would use for the selected host, the
    /// first of them selected, as "Zoek host" would for its name.
    void showKnownHostEntriesForSelectedHost();
    /// The enabled config hosts, in document order, whose known_hosts name the selected entry matches; empty
    /// for a commented-out entry. It follows the config while the known_hosts tab is shown.
    const QList<ConfigHostLink>& selectedKnownHostConfigHosts() const { return m_selectedKnownHostConfigHosts; }
    /// Selects the config host with hostID and shows the structured tab; says so when it is gone.
    void selectConfigHostFromKnownHosts(const QUuid& hostID);

    // --- Connect (SSHConfigViewModelConnect.cpp) ---------------------------------------------------

    void connectSelectedHost();
    void connectSelectedKnownHostEntry();
    /// The host's first plain pattern, untrimmed, or nothing.
    static std::optional<QString> connectableAlias(const SSHHost& host);
    /// The host and optional port to connect to for the entry, or nothing.
    static std::optional<ConnectTarget> connectTarget(const KnownHostEntry& entry);
    static QString shellQuoted(QStringView text);
    /// Hands command to the launcher with selectedTerminalApp() and reports the outcome, naming target.
    void launchInTerminal(const QString& command, const QString& target);

    // --- Terminal preference (SSHConfigViewModelTerminal.cpp) ----------------------------------------

    /// Asks discovery again and restores the stored choice, else "com.apple.Terminal", else the first app.
    void refreshTerminalApps();
    /// Chooses and stores the app with that bundle identifier; does nothing for an identifier not in
    /// availableTerminalApps.
    void selectTerminal(const QString& bundleIdentifier);
    /// The app selectedTerminalBundleIdentifier names, or nothing.
    std::optional<TerminalApp> selectedTerminalApp() const;

Q_SIGNALS:
    void documentChanged();
    void rawTextChanged();
    void parseErrorsChanged();
    void selectedHostIDChanged();
    void searchTextChanged();
    void selectedGroupChanged();
    void knownHostsDocumentChanged();
    void knownHostsParseErrorsChanged();
    void selectedKnownHostEntryIDChanged();
    void knownHostsSearchTextChanged();
    void availableTerminalAppsChanged();
    void selectedTerminalBundleIdentifierChanged();
    void activeEditorTabChanged();
    void statusMessageChanged();
    void rawEditorDirtyChanged();
    void rawTextDirtyChanged();
    void knownHostsDirtyChanged();
    void knownHostsEntryCountChanged();
    void lastBackupPathChanged();
    void configUnreadableChanged();
    void knownHostsUnreadableChanged();
    void configChangeNoticeChanged();
    void knownHostsChangeNoticeChanged();
    void configSshChangesChanged();
    void knownHostsSshChangesChanged();
    void sshCheckRunningChanged();
    void sshCheckProgressChanged();
    void sshCheckProblemChanged();
    void unchangedSaveWarningChanged();
    void sshChangesShownChanged();
    /// showRawTextLine() asks the raw editor to show this 1-based line of rawText.
    void rawTextLineRequested(qsizetype line);
    void selectedKnownHostFingerprintsChanged();
    void knownHostLookupChanged();
    void hostKeyChangeChanged();
    void selectedHostKnownHostsLinkChanged();
    void selectedKnownHostConfigHostsChanged();
    /// canUndo, canRedo, undoText or redoText may have changed.
    void undoHistoryChanged();

    // Row-level changes of document().hosts, for list adapters. Each "about to" signal comes before the
    // change, its partner after; positions are those of document().hosts.
    void hostsAboutToBeReset();
    void hostsReset();
    void hostAboutToBeInserted(qsizetype position);
    void hostInserted(qsizetype position);
    void hostAboutToBeRemoved(qsizetype position);
    void hostRemoved(qsizetype position);
    /// One host moves from position from to position to (its position after the move).
    void hostAboutToBeMoved(qsizetype from, qsizetype to);
    void hostMoved(qsizetype from, qsizetype to);
    void hostChanged(qsizetype position);

    // Record-level changes of knownHostsDocument().records(), for list adapters.
    void knownHostsAboutToBeReset();
    void knownHostsReset();
    void knownHostRecordAboutToBeRemoved(qsizetype recordPosition);
    void knownHostRecordRemoved(qsizetype recordPosition);
    /// A record is put back at recordPosition (an undone removal).
    void knownHostRecordAboutToBeInserted(qsizetype recordPosition);
    void knownHostRecordInserted(qsizetype recordPosition);
    /// The entries of the records first..last (inclusive) changed in place; lineNumberOnly when only
    /// their line numbers did.
    void knownHostRecordsChanged(qsizetype first, qsizetype last, bool lineNumberOnly);

private:
    template<typename T> bool change(T& field, const T& value, void (SSHConfigViewModel::*changed)())
    {
        if (field == value)
            return false;
        field = value;
        Q_EMIT(this->*changed)();
        return true;
    }

    void setStatusMessage(const QString& message);
    void setParseErrors(const QList<SSHParseError>& errors);
    void setKnownHostsDirty(bool dirty);
    void setLastBackupPath(const QString& path);
    void setSelectedTerminalBundleIdentifier(const QString& bundleIdentifier);
    void replaceDocument(const SSHConfigDocument& document);
    void replaceKnownHosts(const KnownHostsDocument& document, const QList<KnownHostsParseError>& errors);
    void insertHost(const SSHHost& host, qsizetype position);
    void removeHost(qsizetype position);
    bool moveHost(qsizetype from, qsizetype to);
    qsizetype positionOfHost(const QUuid& id) const;
    qsizetype positionAfterStayingHosts(const QList<QUuid>& moving, qsizetype count) const;
    QString loadConfig();
    QString loadKnownHosts();
    // Gives the id to select in a freshly parsed document, before the usual repair chooses.
    using SelectionKeeper = std::function<std::optional<QUuid>()>;
    void adoptConfigText(const QString& text, const SelectionKeeper& keepSelection = {});
    void adoptKnownHostsText(const QString& text, const SelectionKeeper& keepSelection = {});
    // What a config step restores: the whole config state. Config files are small, and the lists
    // share their elements, so a copy costs little.
    struct ConfigUndoState
    {
        SSHConfigDocument document;
        QString rawText;
        QList<SSHParseError> parseErrors;
        bool rawTextDirty = false;
        std::optional<QUuid> selectedHostID;
        EditorTab activeEditorTab = EditorTab::structured;
    };
    // What a known_hosts step restores besides the records it names.
    struct KnownHostsUndoView
    {
        std::optional<QUuid> selectedEntryID;
        EditorTab activeEditorTab = EditorTab::knownHosts;
    };
    // A whole known_hosts document held by a step; undo and redo swap it with the live one.
    struct KnownHostsSide
    {
        KnownHostsDocument document;
        QList<KnownHostsParseError> errors;
    };
    ConfigUndoState captureConfigState() const;
    void restoreConfigState(const ConfigUndoState& state);
    void recordConfigStep(const QString& name, const QString& pastTense, const ConfigUndoState& before,
        const QString& mergeKey = QString());
    KnownHostsUndoView captureKnownHostsView() const;
    void restoreKnownHostsView(const KnownHostsUndoView& view);
    void recordKnownHostsRecordChange(const QString& name, const QString& pastTense, qsizetype position,
        const std::optional<KnownHostsRecord>& before, const std::optional<KnownHostsRecord>& after,
        const KnownHostsUndoView& viewBefore);
    void recordKnownHostsReplacement(
        const QString& name, const QString& pastTense, KnownHostsSide before, const KnownHostsUndoView& viewBefore);
    void putKnownHostsRecord(qsizetype position, const std::optional<KnownHostsRecord>& current,
        const std::optional<KnownHostsRecord>& wanted);
    void swapKnownHosts(KnownHostsSide& other);
    void pushStep(UndoHistory& history, UndoHistory::Step step);
    UndoHistory& activeHistory();
    const UndoHistory& activeHistory() const;
    bool refuseConfigSave(bool writesTypedText);
    bool refuseKnownHostsSave();
    bool refuseChangedOnDisk(SSHFile file);
    void rememberSavedFile(SSHFile file, const QString& text);
    void handleExternalChange(SSHFile file);
    void reloadQuietly(SSHFile file);
    bool mergeAppendedKnownHosts();
    void setChangeNotice(SSHFile file, const FileChangeNotice& notice);
    void raiseConflict(SSHFile file);
    bool hasUnsavedChanges(SSHFile file) const;
    QString pathOf(SSHFile file) const;
    FileSnapshot& snapshotOf(SSHFile file);
    const KnownHostEntry* selectedEntry() const;
    bool changeSelectedEntry(
        const std::function<void(KnownHostEntry&)>& edit, const QString& stepName, const QString& stepPastTense);
    void openSeedInConfig(const KnownHostSeed& seed);
    QString writeConfigText(const QString& text, const QString& prefixOnSuccess);
    void setUpSshCheck();
    void scheduleSshCheck(SSHFile file);
    void checkChangedFiles();
    void writeKnownHostsTextPart();
    void updateSshCheckRunning();
    void noteTextOnDisk(SSHFile file, std::optional<QString> text);
    void takeSshCheckResult(SSHFile file, const SshCheckResult& result);
    void updateSshCheckProgress();
    void updateUnchangedSaveWarning();
    /// Keeps the properties derived from the known_hosts document and the selections up to date.
    void connectKnownHostTools();
    void updateSelectedKnownHostFingerprints();
    void connectHostLookup();
    std::optional<QUuid> offendingEntry(const SSHHostKeyWarning& warning) const;
    bool isKnownHostsFile(const QString& path) const;
    void forgetKnownHostNameIndex();
    void setKnownHostLookup(const std::optional<KnownHostLookup>& lookup);
    void showKnownHostLookup(const QString& lookupName);
    void connectHostLinks();
    void updateHostLinks();
    void updateSelectedHostKnownHostsLink();
    void updateSelectedKnownHostConfigHosts();
    const QHash<QString, QList<QUuid>>& configHostsByLookupName() const;
    void recountLinkedRecords(qsizetype first, qsizetype last);
    void countLinkedEntry(const QUuid& entryID, bool linked);

    std::shared_ptr<SSHFileService> m_fileService;
    SSHConfigParser m_parser;
    KnownHostsService m_knownHostsService;
    std::shared_ptr<TerminalDiscovering> m_terminalDiscovery;
    std::shared_ptr<TerminalLaunching> m_terminalLauncher;
    std::shared_ptr<UserDefaultsStore> m_userDefaults;
    QString m_preferredTerminalBundleIdentifierKey;

    SSHConfigDocument m_document;
    QString m_rawText;
    QList<SSHParseError> m_parseErrors;
    std::optional<QUuid> m_selectedHostID;
    QString m_searchText;
    QString m_selectedGroup;
    KnownHostsDocument m_knownHostsDocument;
    QList<KnownHostsParseError> m_knownHostsParseErrors;
    std::optional<QUuid> m_selectedKnownHostEntryID;
    /// Where indexOfKnownHostRecord() found an entry last; only a hint, checked before use.
    mutable qsizetype m_lastFoundKnownHostRecord = 0;
    QString m_knownHostsSearchText;
    QList<TerminalApp> m_availableTerminalApps;
    QString m_selectedTerminalBundleIdentifier;
    EditorTab m_activeEditorTab = EditorTab::structured;
    QString m_statusMessage;
    bool m_rawEditorDirty = false;
    bool m_rawTextDirty = false;
    bool m_knownHostsDirty = false;
    qsizetype m_knownHostsEntryCount = 0;
    QString m_lastBackupPath;
    bool m_configUnreadable = false;
    bool m_knownHostsUnreadable = false;
    FileChangeNotice m_configChangeNotice;
    FileChangeNotice m_knownHostsChangeNotice;
    // What each file held when it was last loaded or saved (or accepted by keepMyVersion()).
    FileSnapshot m_configOnDisk;
    FileSnapshot m_knownHostsOnDisk;
    FileWatcher* m_fileWatcher = nullptr;

    QList<SshHostChange> m_configSshChanges;
    QList<SshHostChange> m_knownHostsSshChanges;
    bool m_sshCheckRunning = false;
    int m_sshCheckProgress = 0;
    QString m_sshCheckProblem;
    QString m_unchangedSaveWarning;
    bool m_sshChangesShown = false;
    // The text of each file as last loaded or saved: what a save is compared with. Nothing after a
    // failed load, when there is no such text to compare.
    std::optional<QString> m_configTextOnDisk;
    std::optional<QString> m_knownHostsTextOnDisk;
    SshConfigCheck* m_configCheck = nullptr;
    KnownHostsCheck* m_knownHostsCheck = nullptr;
    QTimer* m_sshCheckDelay = nullptr;
    // Whether each file may have changed since its check last started.
    bool m_configCheckDue = false;
    bool m_knownHostsCheckDue = false;
    // The known_hosts text a save would write, as far as it is written out for the next check.
    QTimer* m_knownHostsTextWriter = nullptr;
    QString m_knownHostsTextToCheck;
    qsizetype m_knownHostsTextWritten = 0;
    // The pair of texts each check last started on, so that an unchanged pair is not checked again.
    std::optional<std::pair<QString, QString>> m_configCheckTexts;
    std::optional<std::pair<QString, QString>> m_knownHostsCheckTexts;
    // Progress of the two checks: done and total runs.
    std::pair<qsizetype, qsizetype> m_configCheckProgress;
    std::pair<qsizetype, qsizetype> m_knownHostsCheckProgress;
    QString m_configCheckProblem;
    QString m_knownHostsCheckProblem;
    bool m_unchangedSaveWarningDismissed = false;
    std::optional<KnownHostFingerprints> m_selectedKnownHostFingerprints;
    std::optional<KnownHostLookup> m_knownHostLookup;
    std::optional<HostKeyChange> m_hostKeyChange;
    std::optional<HostKnownHostsLink> m_selectedHostKnownHostsLink;
    QList<ConfigHostLink> m_selectedKnownHostConfigHosts;
    // The enabled config hosts by the name ssh looks up for them, in document order; built on first use
    // after each change of the config document.
    mutable std::optional<QHash<QString, QList<QUuid>>> m_configHostsByLookupName;
    mutable QHash<QUuid, QString> m_configHostLookupNames;
    // The entries counted in m_selectedHostKnownHostsLink.
    QSet<QUuid> m_selectedHostLinkedEntries;
    // The entry (id, commented-out state and hosts) that m_selectedKnownHostConfigHosts was worked out for.
    QString m_configHostsLinkedEntry;
    bool m_loadingBothFiles = false;
    // Built on the first lookup after a change of the known_hosts document, with the answers given since.
    mutable std::optional<KnownHostNameIndex> m_knownHostNameIndex;
    mutable QHash<QString, QList<QUuid>> m_knownHostLookupAnswers;
    UndoHistory m_configHistory;
    UndoHistory m_knownHostsHistory;
    // The raw text as the last config step left it: the raw editor writes rawText before it reports
    // the edit, so the text before a keystroke is kept here.
    QString m_rawTextBeforeTyping;
};
