// A pasted "REMOTE HOST IDENTIFICATION HAS CHANGED" warning: find the offending entry and compare keys.

#include "SSHConfigViewModel.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

bool SSHConfigViewModel::isKnownHostsFile(const QString& path) const
{
    const QString ours = m_fileService->knownHostsURL();
    QString theirs = path;
    if (theirs.startsWith(u"~/"_s))
        theirs = QDir::homePath() + theirs.mid(1);
    if (QDir::cleanPath(theirs) == QDir::cleanPath(ours))
        return true;
    const QString canonical = QFileInfo(theirs).canonicalFilePath();
    return !canonical.isEmpty() && canonical == QFileInfo(ours).canonicalFilePath();
}

std::optional<QUuid> SSHConfigViewModel::offendingEntry(const SSHHostKeyWarning& warning) const
{
    const QList<QUuid> forHost = warning.host.isEmpty() ? QList<QUuid>() : knownHostEntryIDsForName(warning.host);
    const QList<KnownHostsRecord>& records = m_knownHostsDocument.records();
    const qsizetype position = warning.offendingLine - 1;
    // The line number is the file's as ssh read it; unsaved edits here may have moved entries since, so the
    // line counts only when the host confirms it.
    if (isKnownHostsFile(warning.offendingFile) && position >= 0 && position < records.size()) {
        const KnownHostEntry* entry = records.at(position).kind().entry();
        if (entry && (warning.host.isEmpty() || forHost.contains(entry->id())))
            return entry->id();
    }
    return forHost.isEmpty() ? std::nullopt : std::optional<QUuid>(forHost.constFirst());
}

void SSHConfigViewModel::applyHostKeyWarning(const QString& pastedText)
{
    const std::optional<SSHHostKeyWarning> warning = parseSSHHostKeyWarning(pastedText);
    if (!warning) {
        setStatusMessage(u"Geen ssh-waarschuwing over een gewijzigde host key herkend in de geplakte tekst."_s);
        return;
    }
    HostKeyChange hostKeyChange { *warning, offendingEntry(*warning), QString() };
    setActiveEditorTab(EditorTab::knownHosts);
    if (hostKeyChange.entryID) {
        setSelectedKnownHostEntryID(hostKeyChange.entryID);
        const std::optional<QString> fingerprint = knownHostSha256Fingerprint(selectedEntry()->key());
        hostKeyChange.oldFingerprint = fingerprint.value_or(QString());
    }
    change(m_hostKeyChange, std::optional<HostKeyChange>(hostKeyChange), &SSHConfigViewModel::hostKeyChangeChanged);
    if (hostKeyChange.entryID) {
        setStatusMessage(u"Oude sleutel van "_s + (warning->host.isEmpty() ? u"deze host"_s : warning->host)
            + u" geselecteerd; vergelijk de fingerprints en kies Remove als de nieuwe klopt."_s);
    } else if (!warning->offendingFile.isEmpty() && !isKnownHostsFile(warning->offendingFile)) {
        setStatusMessage(u"De oude sleutel staat in "_s + warning->offendingFile + u", niet in "_s
            + m_fileService->knownHostsURL() + u"."_s);
    } else {
        setStatusMessage(u"Geen known_hosts entry gevonden die bij de waarschuwing past."_s);
    }
}

void SSHConfigViewModel::dismissHostKeyChange()
{
    change(m_hostKeyChange, std::optional<HostKeyChange>(), &SSHConfigViewModel::hostKeyChangeChanged);
}
