// Undo and redo: one history per document. Config steps hold the whole config state before and after
// (config files are small); known_hosts steps hold only the records they changed, or, for a reload,
// the one other document, so a step at 100,000 entries costs a few hundred bytes.

#include "SSHConfigViewModel.h"

#include <memory>

using namespace Qt::StringLiterals;

namespace
{
// Rough sizes for the history's memory budget; they only need to be of the right order.
constexpr qsizetype bytesPerHost = 512;
constexpr qsizetype bytesPerKnownHostsRecord = 160;
constexpr qsizetype bytesPerStep = 256;

qsizetype textCost(const QString& text)
{
    return text.size() * qsizetype(sizeof(QChar));
}
} // namespace

UndoHistory& SSHConfigViewModel::activeHistory()
{
    return m_activeEditorTab == EditorTab::knownHosts ? m_knownHostsHistory : m_configHistory;
}

const UndoHistory& SSHConfigViewModel::activeHistory() const
{
    return m_activeEditorTab == EditorTab::knownHosts ? m_knownHostsHistory : m_configHistory;
}

bool SSHConfigViewModel::canUndo() const
{
    return activeHistory().canUndo();
}

bool SSHConfigViewModel::canRedo() const
{
    return activeHistory().canRedo();
}

QString SSHConfigViewModel::undoText() const
{
    const UndoHistory::Step* step = activeHistory().nextUndo();
    return step ? u"Ongedaan maken: "_s + step->name : u"Ongedaan maken"_s;
}

QString SSHConfigViewModel::redoText() const
{
    const UndoHistory::Step* step = activeHistory().nextRedo();
    return step ? u"Opnieuw doen: "_s + step->name : u"Opnieuw doen"_s;
}

void SSHConfigViewModel::undo()
{
    UndoHistory& history = activeHistory();
    const UndoHistory::Step* step = history.nextUndo();
    if (!step)
        return;
    const QString pastTense = step->pastTense;
    history.undo();
    setStatusMessage(u"Ongedaan gemaakt: "_s + pastTense + u"."_s);
    Q_EMIT undoHistoryChanged();
}

void SSHConfigViewModel::redo()
{
    UndoHistory& history = activeHistory();
    const UndoHistory::Step* step = history.nextRedo();
    if (!step)
        return;
    const QString pastTense = step->pastTense;
    history.redo();
    setStatusMessage(u"Opnieuw gedaan: "_s + pastTense + u"."_s);
    Q_EMIT undoHistoryChanged();
}

void SSHConfigViewModel::pushStep(UndoHistory& history, UndoHistory::Step step)
{
    history.push(std::move(step));
    Q_EMIT undoHistoryChanged();
}

// --- Config ----------------------------------------------------------------------------------------

SSHConfigViewModel::ConfigUndoState SSHConfigViewModel::captureConfigState() const
{
    return { m_document, m_rawText, m_parseErrors, m_rawTextDirty, m_selectedHostID, m_activeEditorTab };
}

void SSHConfigViewModel::restoreConfigState(const ConfigUndoState& state)
{
    replaceDocument(state.document);
    setRawText(state.rawText);
    m_rawTextBeforeTyping = state.rawText;
    setParseErrors(state.parseErrors);
    setSelectedHostID(state.selectedHostID);
    ensureValidHostSelection();
    setActiveEditorTab(state.activeEditorTab);
    // The flags follow from the last save, not from the moment the step was recorded: a state that
    // was unsaved then may have been written since, and the saved one may now be undone.
    const bool saved = m_configHistory.atSavedState();
    setRawEditorDirty(!saved);
    setRawTextDirty(state.rawTextDirty && !saved);
}

void SSHConfigViewModel::recordConfigStep(
    const QString& name, const QString& pastTense, const ConfigUndoState& before, const QString& mergeKey)
{
    m_rawTextBeforeTyping = m_rawText;
    ConfigUndoState after = captureConfigState();
    if (after.document == before.document && after.rawText == before.rawText && after.parseErrors == before.parseErrors)
        return;
    const qsizetype cost = bytesPerStep
        + bytesPerHost * (after.document.hosts.size() + after.document.globalItems.size()) + textCost(after.rawText);
    pushStep(m_configHistory,
        { name, pastTense, mergeKey, [this, before] { restoreConfigState(before); },
            [this, after = std::move(after)] { restoreConfigState(after); }, cost });
}

// --- known_hosts -----------------------------------------------------------------------------------

SSHConfigViewModel::KnownHostsUndoView SSHConfigViewModel::captureKnownHostsView() const
{
    return { m_selectedKnownHostEntryID, m_activeEditorTab };
}

// Follows every change of an undo or a redo, and announces it once.
void SSHConfigViewModel::restoreKnownHostsView(const KnownHostsUndoView& view)
{
    if (!renumberKnownHostEntries())
        Q_EMIT knownHostsDocumentChanged();
    updateKnownHostsEntryCount();
    setKnownHostsDirty(!m_knownHostsHistory.atSavedState());
    if (view.selectedEntryID && indexOfKnownHostRecord(*view.selectedEntryID))
        setSelectedKnownHostEntryID(view.selectedEntryID);
    ensureValidKnownHostSelection();
    setActiveEditorTab(view.activeEditorTab);
}

void SSHConfigViewModel::recordKnownHostsRecordChange(const QString& name, const QString& pastTense, qsizetype position,
    const std::optional<KnownHostsRecord>& before, const std::optional<KnownHostsRecord>& after,
    const KnownHostsUndoView& viewBefore)
{
    const KnownHostsUndoView viewAfter = captureKnownHostsView();
    UndoHistory::Step step { name, pastTense, QString(),
        [this, position, before, after, viewBefore] {
            putKnownHostsRecord(position, after, before);
            restoreKnownHostsView(viewBefore);
        },
        [this, position, before, after, viewAfter] {
            putKnownHostsRecord(position, before, after);
            restoreKnownHostsView(viewAfter);
        },
        bytesPerStep + 2 * bytesPerKnownHostsRecord };
    pushStep(m_knownHostsHistory, std::move(step));
}

void SSHConfigViewModel::recordKnownHostsReplacement(
    const QString& name, const QString& pastTense, KnownHostsSide before, const KnownHostsUndoView& viewBefore)
{
    if (before.document == m_knownHostsDocument && before.errors == m_knownHostsParseErrors)
        return;
    const KnownHostsUndoView viewAfter = captureKnownHostsView();
    const qsizetype cost = bytesPerStep
        + bytesPerKnownHostsRecord * std::max(before.document.records().size(), m_knownHostsDocument.records().size());
    auto other = std::make_shared<KnownHostsSide>(std::move(before));
    UndoHistory::Step step { name, pastTense, QString(),
        [this, other, viewBefore] {
            swapKnownHosts(*other);
            restoreKnownHostsView(viewBefore);
        },
        [this, other, viewAfter] {
            swapKnownHosts(*other);
            restoreKnownHostsView(viewAfter);
        },
        cost };
    pushStep(m_knownHostsHistory, std::move(step));
}

// The live document always equals the side the step does not hold, so undo and redo only swap them:
// one step keeps one document alive, never two.
void SSHConfigViewModel::swapKnownHosts(KnownHostsSide& other)
{
    Q_EMIT knownHostsAboutToBeReset();
    std::swap(m_knownHostsDocument, other.document);
    Q_EMIT knownHostsReset();
    std::swap(m_knownHostsParseErrors, other.errors);
    Q_EMIT knownHostsParseErrorsChanged();
}

void SSHConfigViewModel::putKnownHostsRecord(
    qsizetype position, const std::optional<KnownHostsRecord>& current, const std::optional<KnownHostsRecord>& wanted)
{
    QList<KnownHostsRecord>& records = m_knownHostsDocument.records();
    if (current && wanted) {
        records[position] = *wanted;
        Q_EMIT knownHostRecordsChanged(position, position, false);
    } else if (current) {
        Q_EMIT knownHostRecordAboutToBeRemoved(position);
        records.removeAt(position);
        Q_EMIT knownHostRecordRemoved(position);
    } else if (wanted) {
        Q_EMIT knownHostRecordAboutToBeInserted(position);
        records.insert(position, *wanted);
        Q_EMIT knownHostRecordInserted(position);
    }
}
