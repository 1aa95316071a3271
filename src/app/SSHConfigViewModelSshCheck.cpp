// What OpenSSH itself makes of a save, asked before the save happens.
//
// The parser and serializer keep this program's own reading of the files, and on configs written by
// others that reading can differ from ssh's: a save of an unedited file may change what ssh does. So
// after every load, edit, save and tab change (after a short pause, so typing does not start a run per
// key) the file on disk is compared with what a save would write, by ssh -G and ssh-keygen -F
// themselves. Saving is never blocked: the answer is shown, and the user decides.

#include "SSHConfigViewModel.h"

#include "CharacterClasses.h"
#include "KnownHostsCheck.h"
#include "SSHConfigSyntax.h"
#include "SshConfigCheck.h"

#include <QStandardPaths>
#include <QTimer>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{
// Long enough to let a burst of keystrokes settle, short enough to feel immediate.
constexpr int sshCheckDelayMs = 300;
// The pane lists a keyword's lines up to this many; more would say nothing more.
constexpr qsizetype maxCauseLines = 40;
// known_hosts records written out per turn of the event loop for a check: about a millisecond's work.
constexpr qsizetype recordsPerTurn = 10000;

// The keyword as written in a config: the check adds a note to keywords of the exec pass.
QString configKeyword(const QString& keyword)
{
    return keyword.section(u' ', 0, 0);
}

// Whether part of a line (after any comment marks) starts with keyword, as "Port 22" or "Port=22".
bool setsKeyword(QStringView part, const QString& keyword)
{
    part = SSHConfigSyntax::trimBlanks(part);
    while (part.startsWith(u'#'))
        part = SSHConfigSyntax::trimBlanks(part.mid(1));
    if (!part.startsWith(keyword, Qt::CaseInsensitive))
        return false;
    const QStringView rest = part.mid(keyword.size());
    return rest.isEmpty() || rest.front() == u'=' || CharacterClasses::isWhiteSpace(rest.front().unicode());
}

// A line can hide several lines to this program's reader (a line separator inside a comment).
bool lineSetsKeyword(QStringView line, const QString& keyword)
{
    qsizetype start = 0;
    for (qsizetype i = 0; i <= line.size(); ++i) {
        if (i < line.size() && !CharacterClasses::isLineBreak(line.at(i).unicode()))
            continue;
        if (setsKeyword(line.sliced(start, i - start), keyword))
            return true;
        start = i + 1;
    }
    return false;
}
} // namespace

void SSHConfigViewModel::setUpSshCheck()
{
    m_sshCheckDelay = new QTimer(this);
    m_sshCheckDelay->setSingleShot(true);
    m_sshCheckDelay->setInterval(sshCheckDelayMs);
    connect(m_sshCheckDelay, &QTimer::timeout, this, &SSHConfigViewModel::checkChangedFiles);
    m_knownHostsTextWriter = new QTimer(this);
    m_knownHostsTextWriter->setSingleShot(true);
    m_knownHostsTextWriter->setInterval(0);
    connect(m_knownHostsTextWriter, &QTimer::timeout, this, &SSHConfigViewModel::writeKnownHostsTextPart);
    for (const auto signal : { &SSHConfigViewModel::documentChanged, &SSHConfigViewModel::rawTextChanged,
             &SSHConfigViewModel::activeEditorTabChanged, &SSHConfigViewModel::rawEditorDirtyChanged,
             &SSHConfigViewModel::rawTextDirtyChanged })
        connect(this, signal, this, [this] { scheduleSshCheck(SSHFile::config); });
    for (const auto signal :
        { &SSHConfigViewModel::knownHostsDocumentChanged, &SSHConfigViewModel::knownHostsDirtyChanged })
        connect(this, signal, this, [this] { scheduleSshCheck(SSHFile::knownHosts); });
    for (const auto signal : { &SSHConfigViewModel::rawEditorDirtyChanged, &SSHConfigViewModel::rawTextDirtyChanged,
             &SSHConfigViewModel::knownHostsDirtyChanged })
        connect(this, signal, this, &SSHConfigViewModel::updateUnchangedSaveWarning);
    setSshCheckPrograms(QStandardPaths::findExecutable(u"ssh"_s), QStandardPaths::findExecutable(u"ssh-keygen"_s));
}

void SSHConfigViewModel::setSshCheckPrograms(const QString& ssh, const QString& sshKeygen)
{
    delete m_configCheck;
    delete m_knownHostsCheck;
    m_configCheck = new SshConfigCheck(ssh, this);
    m_knownHostsCheck = new KnownHostsCheck(sshKeygen, this);
    for (const SSHFile file : { SSHFile::config, SSHFile::knownHosts }) {
        OpenSSHCheck* check = file == SSHFile::config ? static_cast<OpenSSHCheck*>(m_configCheck) : m_knownHostsCheck;
        auto& progress = file == SSHFile::config ? m_configCheckProgress : m_knownHostsCheckProgress;
        connect(check, &OpenSSHCheck::progressed, this, [this, &progress](qsizetype done, qsizetype total) {
            progress = { done, total };
            updateSshCheckProgress();
        });
        connect(check, &OpenSSHCheck::finished, this,
            [this, file](const SshCheckResult& result) { takeSshCheckResult(file, result); });
    }
    m_configCheckTexts.reset();
    m_knownHostsCheckTexts.reset();
    checkWhatSshWillDo();
}

void SSHConfigViewModel::scheduleSshCheck(SSHFile file)
{
    (file == SSHFile::config ? m_configCheckDue : m_knownHostsCheckDue) = true;
    // A text half written out belongs to a document that is no longer there.
    if (file == SSHFile::knownHosts && m_knownHostsTextWriter) {
        m_knownHostsTextWriter->stop();
        m_knownHostsTextToCheck.clear();
    }
    if (m_sshCheckDelay)
        m_sshCheckDelay->start();
}

void SSHConfigViewModel::noteTextOnDisk(SSHFile file, std::optional<QString> text)
{
    (file == SSHFile::config ? m_configTextOnDisk : m_knownHostsTextOnDisk) = std::move(text);
    scheduleSshCheck(file);
}

QString SSHConfigViewModel::configTextToSave() const
{
    if (m_activeEditorTab == EditorTab::raw && (m_rawTextDirty || !m_rawEditorDirty))
        return m_rawText;
    return m_parser.serialize(m_document);
}

void SSHConfigViewModel::checkWhatSshWillDo()
{
    m_configCheckDue = true;
    m_knownHostsCheckDue = true;
    checkChangedFiles();
}

// Only a file that may have changed since its last check is written out again, and a check starts
// only for a pair of texts it has not started on yet. A file with no text on disk (its load failed) is
// not checked, since no save of it happens from that state.
void SSHConfigViewModel::checkChangedFiles()
{
    if (m_sshCheckDelay)
        m_sshCheckDelay->stop();
    if (!m_configCheck)
        return;
    if (std::exchange(m_configCheckDue, false) && m_configTextOnDisk) {
        std::pair<QString, QString> texts { *m_configTextOnDisk, configTextToSave() };
        if (texts != m_configCheckTexts) {
            m_configCheckTexts = texts;
            m_configCheckProgress = {};
            m_configCheck->start(texts.first, texts.second);
        }
    }
    if (std::exchange(m_knownHostsCheckDue, false) && m_knownHostsTextOnDisk) {
        m_knownHostsTextToCheck = m_knownHostsService.emptyTextFor(m_knownHostsDocument);
        m_knownHostsTextWritten = 0;
        writeKnownHostsTextPart();
    }
    updateSshCheckRunning();
    updateSshCheckProgress();
}

// At 100,000 entries the text a save would write takes 10 ms or more to write out, so it is written a
// part per turn of the event loop; a change of the document in between starts it again.
void SSHConfigViewModel::writeKnownHostsTextPart()
{
    const qsizetype records = m_knownHostsDocument.records().size();
    const qsizetype end = std::min(m_knownHostsTextWritten + recordsPerTurn, records);
    m_knownHostsService.serializePart(m_knownHostsTextToCheck, m_knownHostsDocument, m_knownHostsTextWritten, end);
    m_knownHostsTextWritten = end;
    if (end < records) {
        m_knownHostsTextWriter->start();
        return;
    }
    std::pair<QString, QString> texts { *m_knownHostsTextOnDisk, std::exchange(m_knownHostsTextToCheck, {}) };
    if (texts != m_knownHostsCheckTexts) {
        m_knownHostsCheckTexts = texts;
        m_knownHostsCheckProgress = {};
        m_knownHostsCheck->start(texts.first, texts.second);
    }
    updateSshCheckRunning();
    updateSshCheckProgress();
}

void SSHConfigViewModel::updateSshCheckRunning()
{
    const bool running
        = m_configCheck->isRunning() || m_knownHostsTextWriter->isActive() || m_knownHostsCheck->isRunning();
    change(m_sshCheckRunning, running, &SSHConfigViewModel::sshCheckRunningChanged);
}

void SSHConfigViewModel::takeSshCheckResult(SSHFile file, const SshCheckResult& result)
{
    if (file == SSHFile::config) {
        change(m_configSshChanges, result.hosts, &SSHConfigViewModel::configSshChangesChanged);
        m_configCheckProblem = result.problem;
    } else {
        change(m_knownHostsSshChanges, result.hosts, &SSHConfigViewModel::knownHostsSshChangesChanged);
        m_knownHostsCheckProblem = result.problem;
    }
    QStringList problems { m_configCheckProblem, m_knownHostsCheckProblem };
    problems.removeAll(QString());
    change(m_sshCheckProblem, problems.join(u' '), &SSHConfigViewModel::sshCheckProblemChanged);
    updateSshCheckRunning();
    updateSshCheckProgress();
    updateUnchangedSaveWarning();
}

void SSHConfigViewModel::updateSshCheckProgress()
{
    const qsizetype total = m_configCheckProgress.second + m_knownHostsCheckProgress.second;
    const qsizetype done = m_configCheckProgress.first + m_knownHostsCheckProgress.first;
    const int percent = !m_sshCheckRunning ? 100 : total == 0 ? 0 : static_cast<int>(done * 100 / total);
    change(m_sshCheckProgress, percent, &SSHConfigViewModel::sshCheckProgressChanged);
}

// Said only while nothing has been changed since the load: once the user edits, the pane tells the
// whole story, and the bar's "zonder dat je iets wijzigde" would no longer be true.
void SSHConfigViewModel::updateUnchangedSaveWarning()
{
    const bool untouched = !m_rawEditorDirty && !m_rawTextDirty && !m_knownHostsDirty;
    if (!untouched || m_unchangedSaveWarningDismissed) {
        change(m_unchangedSaveWarning, QString(), &SSHConfigViewModel::unchangedSaveWarningChanged);
        return;
    }
    // While a new answer is on its way the bar keeps the last one instead of flickering.
    if (m_sshCheckRunning)
        return;
    const qsizetype hosts = m_configSshChanges.size() + m_knownHostsSshChanges.size();
    const QString warning = hosts == 0 ? QString()
                                       : u"Let op: opslaan verandert voor "_s + QString::number(hosts)
            + u" hosts wat ssh doet, zonder dat je iets wijzigde"_s;
    change(m_unchangedSaveWarning, warning, &SSHConfigViewModel::unchangedSaveWarningChanged);
}

void SSHConfigViewModel::showSshChanges()
{
    change(m_sshChangesShown, true, &SSHConfigViewModel::sshChangesShownChanged);
}

void SSHConfigViewModel::hideSshChanges()
{
    change(m_sshChangesShown, false, &SSHConfigViewModel::sshChangesShownChanged);
}

void SSHConfigViewModel::dismissUnchangedSaveWarning()
{
    m_unchangedSaveWarningDismissed = true;
    updateUnchangedSaveWarning();
}

QList<qsizetype> SSHConfigViewModel::rawTextLinesFor(const SshHostChange& change) const
{
    QList<qsizetype> lines;
    qsizetype number = 0;
    for (const QStringView line : QStringView(m_rawText).split(u'\n')) {
        ++number;
        const bool causes = std::any_of(change.changes.cbegin(), change.changes.cend(),
            [&](const SshSettingChange& c) { return lineSetsKeyword(line, configKeyword(c.keyword)); });
        if (causes)
            lines.append(number);
        if (lines.size() == maxCauseLines)
            break;
    }
    return lines;
}

void SSHConfigViewModel::showRawTextLine(qsizetype line)
{
    setActiveEditorTab(EditorTab::raw);
    Q_EMIT rawTextLineRequested(line);
}
