// What OpenSSH makes of a save, as the view model publishes it: the bar after a load whose save would
// change what ssh does, the lists of changes after edits, the lines that cause them, and a missing ssh.

#include "ViewModelFixture.h"

#include <QSignalSpy>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{
using EditorTab = SSHConfigViewModel::EditorTab;

const QString edKey = u"ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIOMqqnkVzrm0SdG6UOoqKLsabgH5C9okWi0dh2l9GKJl"_s;
const QString silentPortChange = u"Host web\n  HostName web.example\n  Port=2222\n"_s;

// Generous: only a hang reaches it.
constexpr int checkWaitMs = 120000;

QStringList namesOf(const QList<SshHostChange>& changes)
{
    QStringList names;
    for (const SshHostChange& change : changes)
        names.append(change.name);
    return names;
}

void waitForCheck(const SSHConfigViewModel& vm)
{
    QTRY_VERIFY_WITH_TIMEOUT(!vm.sshCheckRunning(), checkWaitMs);
}
} // namespace

class TestViewModelSshCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (QStandardPaths::findExecutable(u"ssh"_s).isEmpty()
            || QStandardPaths::findExecutable(u"ssh-keygen"_s).isEmpty())
            QSKIP("ssh and ssh-keygen are not installed");
    }

    void loadWhoseSaveChangesSshRaisesTheBar()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(silentPortChange, u"@REVOKED web.example "_s + edKey + u"\n"_s);
        QTRY_COMPARE_WITH_TIMEOUT(vm.unchangedSaveWarning(),
            u"Let op: opslaan verandert voor 2 hosts wat ssh doet, zonder dat je iets wijzigde"_s, checkWaitMs);
        QCOMPARE(namesOf(vm.configSshChanges()), QStringList { u"web"_s });
        QCOMPARE(
            vm.configSshChanges().first().changes, (QList<SshSettingChange> { { u"port"_s, u"2222"_s, u"22"_s } }));
        QCOMPARE(namesOf(vm.knownHostsSshChanges()), QStringList { u"web.example"_s });
        QCOMPARE(vm.sshCheckProgress(), 100);
        QVERIFY(vm.sshCheckProblem().isEmpty());
        // The status sentence of the load stays as it was.
        QCOMPARE(vm.statusMessage(), u"SSH configuratie geladen. known_hosts geladen."_s);
    }

    /// The check informs, it never refuses: Save writes, and then disk and save agree again.
    void saveGoesAheadAndTheChangesAreGone()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(silentPortChange);
        QTRY_VERIFY_WITH_TIMEOUT(!vm.configSshChanges().isEmpty(), checkWaitMs);
        vm.saveConfig();
        QVERIFY2(vm.statusMessage().startsWith(u"Opgeslagen naar "_s), qPrintable(vm.statusMessage()));
        QTRY_VERIFY_WITH_TIMEOUT(vm.configSshChanges().isEmpty() && !vm.sshCheckRunning(), checkWaitMs);
        QVERIFY(vm.unchangedSaveWarning().isEmpty());
    }

    void cleanLoadRaisesNothing()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm
            = fixture.make(u"Host web\n\tHostName web.example\n"_s, u"web.example "_s + edKey + u"\n"_s);
        waitForCheck(vm);
        QVERIFY(vm.configSshChanges().isEmpty());
        QVERIFY(vm.knownHostsSshChanges().isEmpty());
        QVERIFY(vm.unchangedSaveWarning().isEmpty());
    }

    void editsAreListedAndHideTheBar()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(silentPortChange);
        QTRY_VERIFY_WITH_TIMEOUT(!vm.unchangedSaveWarning().isEmpty(), checkWaitMs);
        SSHHost host = vm.host(0);
        host.items.append(SSHHostItem::option(SSHOption(u"User"_s, u"deploy"_s)));
        vm.updateHost(host, 0);
        QVERIFY(vm.unchangedSaveWarning().isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(vm.configSshChanges().value(0).changes.size() == 2, checkWaitMs);
        QCOMPARE(vm.configSshChanges().first().changes.first().keyword, u"port"_s);
        QCOMPARE(vm.configSshChanges().first().changes.last().after, u"deploy"_s);
        QVERIFY(vm.unchangedSaveWarning().isEmpty());
    }

    void rawTabComparesTheTypedText()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(silentPortChange);
        QTRY_VERIFY_WITH_TIMEOUT(!vm.configSshChanges().isEmpty(), checkWaitMs);
        // Save Raw would write the file's own text: nothing changes for ssh.
        vm.setActiveEditorTab(EditorTab::raw);
        QTRY_VERIFY_WITH_TIMEOUT(vm.configSshChanges().isEmpty() && !vm.sshCheckRunning(), checkWaitMs);
        vm.setRawText(silentPortChange + u"  Compression yes\n"_s);
        vm.markRawTextEdited();
        QTRY_COMPARE_WITH_TIMEOUT(namesOf(vm.configSshChanges()), QStringList { u"web"_s }, checkWaitMs);
        QCOMPARE(vm.configSshChanges().first().changes.first().keyword, u"compression"_s);
    }

    /// A known_hosts file of several parts is written out for the check a part per turn of the event
    /// loop; an edit while that is under way starts it again, so the check judges the document as it is.
    void knownHostsEditedWhileWrittenOut()
    {
        QString knownHosts;
        for (int i = 0; i < 25000; ++i)
            knownHosts += u"host"_s + QString::number(i) + u".example "_s + edKey + u'\n';
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host web\n  HostName web.example\n"_s, knownHosts);
        waitForCheck(vm);
        QVERIFY(vm.knownHostsSshChanges().isEmpty());
        const auto deleteEntry = [&vm](qsizetype record) {
            vm.setSelectedKnownHostEntryID(vm.knownHostsDocument().records().at(record).kind().entry()->id());
            vm.deleteSelectedKnownHostEntry();
        };
        deleteEntry(100);
        vm.checkWhatSshWillDo();
        QVERIFY(vm.sshCheckRunning());
        // In the part already written out: going on would still hold it, and skip a record further on.
        deleteEntry(50);
        waitForCheck(vm);
        QCOMPARE(namesOf(vm.knownHostsSshChanges()), (QStringList { u"host100.example"_s, u"host50.example"_s }));
    }

    void causeLinesAndJump()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(silentPortChange);
        QTRY_VERIFY_WITH_TIMEOUT(!vm.configSshChanges().isEmpty(), checkWaitMs);
        QCOMPARE(vm.rawTextLinesFor(vm.configSshChanges().first()), QList<qsizetype> { 3 });
        QSignalSpy requested(&vm, &SSHConfigViewModel::rawTextLineRequested);
        vm.showRawTextLine(3);
        QCOMPARE(vm.activeEditorTab(), EditorTab::raw);
        QCOMPARE(requested.size(), 1);
        QCOMPARE(requested.first().first().value<qsizetype>(), qsizetype(3));
    }

    void dismissedBarStaysAwayUntilReload()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(silentPortChange);
        QTRY_VERIFY_WITH_TIMEOUT(!vm.unchangedSaveWarning().isEmpty(), checkWaitMs);
        vm.dismissUnchangedSaveWarning();
        QVERIFY(vm.unchangedSaveWarning().isEmpty());
        vm.load();
        QTRY_VERIFY_WITH_TIMEOUT(!vm.unchangedSaveWarning().isEmpty(), checkWaitMs);
    }

    void paneIsShownAndHidden()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make();
        QSignalSpy shown(&vm, &SSHConfigViewModel::sshChangesShownChanged);
        vm.showSshChanges();
        vm.showSshChanges();
        QVERIFY(vm.sshChangesShown());
        vm.hideSshChanges();
        QVERIFY(!vm.sshChangesShown());
        QCOMPARE(shown.size(), 2);
    }

    void missingSshIsSaidAndNothingElseChanges()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(silentPortChange);
        vm.setSshCheckPrograms(QString(), QString());
        QTRY_VERIFY_WITH_TIMEOUT(!vm.sshCheckProblem().isEmpty(), checkWaitMs);
        QVERIFY(vm.sshCheckProblem().startsWith(u"ssh is niet gevonden"_s));
        QVERIFY(vm.configSshChanges().isEmpty());
        vm.saveConfig();
        QVERIFY(vm.statusMessage().startsWith(u"Opgeslagen naar "_s));
    }
};

QTEST_GUILESS_MAIN(TestViewModelSshCheck)
#include "test_view_model_ssh_check.moc"
