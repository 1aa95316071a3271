// The two files are never written from a state that did not come from them: not after a failed load,
// and not over changes another program made since they were loaded. The file watcher is the real one.

#include "ViewModelFixture.h"

#include <QFile>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace
{
using EditorTab = SSHConfigViewModel::EditorTab;
using SSHFile = SSHConfigViewModel::SSHFile;
using NoticeKind = SSHConfigViewModel::FileChangeNotice::Kind;

const QByteArray latin1Config = "# Caf\xe9 servers\nHost web\n    HostName web.example.com\n";
const QString knownHostsText = u"alpha ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIAlpha\n"
                               u"beta ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIBeta\n"_s;
const QString appendedLine = u"gamma ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIGamma\n"_s;

bool appendBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::Append) && file.write(bytes) == bytes.size();
}

QStringList entryHosts(const SSHConfigViewModel& viewModel)
{
    QStringList hosts;
    for (const KnownHostsRecord& record : viewModel.knownHostsDocument().records()) {
        if (const KnownHostEntry* entry = record.kind().entry())
            hosts.append(entry->hostsField().toString());
    }
    return hosts;
}

void selectEntry(SSHConfigViewModel& viewModel, const QString& host)
{
    for (const KnownHostsRecord& record : viewModel.knownHostsDocument().records()) {
        if (const KnownHostEntry* entry = record.kind().entry(); entry && entry->hostsField() == host)
            viewModel.setSelectedKnownHostEntryID(entry->id());
    }
}

const SSHConfigViewModel::FileChangeNotice& noticeOf(const SSHConfigViewModel& viewModel, SSHFile file)
{
    return file == SSHFile::config ? viewModel.configChangeNotice() : viewModel.knownHostsChangeNotice();
}
} // namespace

class TestViewModelFileGuard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void failedLoadIsNeverSaved_data()
    {
        QTest::addColumn<bool>("configBroken");
        QTest::addColumn<EditorTab>("tab");
        QTest::newRow("config, structured tab") << true << EditorTab::structured;
        QTest::newRow("config, raw tab without typing") << true << EditorTab::raw;
        QTest::newRow("known_hosts") << false << EditorTab::knownHosts;
    }

    void failedLoadIsNeverSaved()
    {
        QFETCH(bool, configBroken);
        QFETCH(EditorTab, tab);
        ViewModelFixture fixture;
        const QString path = configBroken ? fixture.configPath() : fixture.knownHostsPath();
        QVERIFY(writeBytes(path, latin1Config));
        SSHConfigViewModel& vm = fixture.make();
        QVERIFY(
            vm.statusMessage().endsWith(u" Het bestand "_s + path + u" is niet geladen en wordt niet opgeslagen."_s));
        QCOMPARE(configBroken ? vm.configUnreadable() : vm.knownHostsUnreadable(), true);

        // An edit that would otherwise be saved: a new host, or a marker on no entry at all.
        vm.addHost();
        vm.setActiveEditorTab(tab);
        vm.saveCurrentTab();
        QCOMPARE(
            vm.statusMessage(), u"Niet opgeslagen: "_s + path + u" kon niet gelezen worden en is niet gewijzigd."_s);
        QCOMPARE(readBytes(path), latin1Config);
        QVERIFY(WindowFixture::backupsOf(path).isEmpty());

        // Once the file reads, a reload lifts the refusal.
        QVERIFY(writeBytes(path, configBroken ? "Host web\n"_ba : knownHostsText.toUtf8()));
        vm.load();
        QVERIFY(!vm.configUnreadable() && !vm.knownHostsUnreadable());
        vm.addHost();
        vm.saveCurrentTab();
        QVERIFY2(vm.statusMessage().contains(u" met backup."_s), qPrintable(vm.statusMessage()));
    }

    // The way out of an unreadable config: type the text anew and save it as raw text.
    void typedRawTextReplacesAnUnreadableConfig()
    {
        ViewModelFixture fixture;
        QVERIFY(writeBytes(fixture.configPath(), latin1Config));
        SSHConfigViewModel& vm = fixture.make();
        vm.setActiveEditorTab(EditorTab::raw);
        vm.setRawText(u"Host web\n    HostName web.example.com\n"_s);
        vm.markRawTextEdited();
        vm.saveCurrentTab();
        QVERIFY2(vm.statusMessage().startsWith(u"Raw config opgeslagen naar "_s), qPrintable(vm.statusMessage()));
        QCOMPARE(readBytes(fixture.configPath()), "Host web\n    HostName web.example.com\n"_ba);
        QCOMPARE(readBytes(vm.lastBackupPath()), latin1Config);
        QVERIFY(!vm.configUnreadable());
    }

    void unchangedFileReloadsQuietlyKeepingTheSelection()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host alpha\nHost beta\n"_s, knownHostsText);
        vm.setSelectedHostID(vm.document().hosts.at(1).id());
        selectEntry(vm, u"beta"_s);
        vm.deleteSelectedKnownHostEntry(); // unsaved known_hosts edits must survive the config reload
        selectEntry(vm, u"alpha"_s);

        fixture.writeConfig(u"Host first\nHost beta\n    Port 2222\n"_s);
        QTRY_COMPARE(firstPatterns(vm.document().hosts), (QStringList { u"first"_s, u"beta"_s }));
        QCOMPARE(selectedHostName(vm), u"beta"_s);
        QCOMPARE(vm.statusMessage(),
            u"Het bestand "_s + fixture.configPath() + u" is buiten Tarnwick gewijzigd en opnieuw geladen."_s);
        QCOMPARE(vm.configChangeNotice().kind, NoticeKind::none);
        QCOMPARE(entryHosts(vm), QStringList { u"alpha"_s });
        QVERIFY(vm.knownHostsDirty());

        // known_hosts has unsaved edits, so appended lines are merged instead of reloaded.
        QVERIFY(appendBytes(fixture.knownHostsPath(), appendedLine.toUtf8()));
        QTRY_COMPARE(entryHosts(vm), (QStringList { u"alpha"_s, u"gamma"_s }));
        QCOMPARE(selectedEntryHost(vm), u"alpha"_s);
        QCOMPARE(vm.knownHostsChangeNotice().kind, NoticeKind::merged);
        QVERIFY(vm.knownHostsChangeNotice().text.contains(u"1 regel toegevoegd"_s));
        vm.saveKnownHosts();
        QCOMPARE(WindowFixture::readText(fixture.knownHostsPath()),
            u"alpha ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIAlpha\n"_s + appendedLine);
        QCOMPARE(vm.knownHostsChangeNotice().kind, NoticeKind::none);
    }

    void appendedLinesMerge_data()
    {
        QTest::addColumn<QString>("original");
        QTest::addColumn<QByteArray>("appended");
        QTest::addColumn<QString>("saved");
        QTest::addColumn<int>("gammaLine");
        const QString alpha = u"alpha ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIAlpha"_s;
        const QString beta = u"beta ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIBeta"_s;
        const QString gamma = appendedLine.chopped(1);
        QTest::newRow("after a final line break")
            << alpha + u'\n' + beta + u'\n' << appendedLine.toUtf8() << alpha + u'\n' + gamma + u'\n' << 2;
        // ssh first ends a last line that has no line break of its own.
        QTest::newRow("after a last line without line break")
            << alpha + u'\n' + beta << "\n"_ba + appendedLine.toUtf8() << alpha + u'\n' + gamma + u'\n' << 2;
        QTest::newRow("two lines, one unreadable")
            << alpha + u'\n' + beta + u'\n' << appendedLine.toUtf8() + "garbage\n"
            << alpha + u'\n' + gamma + u"\ngarbage\n"_s << 2;
    }

    void appendedLinesMerge()
    {
        QFETCH(QString, original);
        QFETCH(QByteArray, appended);
        QFETCH(QString, saved);
        QFETCH(int, gammaLine);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), original);
        const qsizetype errorsBefore = vm.knownHostsParseErrors().size();
        selectEntry(vm, u"beta"_s);
        vm.deleteSelectedKnownHostEntry();
        QVERIFY(appendBytes(fixture.knownHostsPath(), appended));
        vm.checkFilesOnDisk();
        QCOMPARE(vm.knownHostsChangeNotice().kind, NoticeKind::merged);
        for (const KnownHostsRecord& record : vm.knownHostsDocument().records()) {
            if (const KnownHostEntry* entry = record.kind().entry(); entry && entry->hostsField() == u"gamma"_s)
                QCOMPARE(entry->lineNumber(), gammaLine);
        }
        QCOMPARE(vm.knownHostsParseErrors().size(), errorsBefore + (appended.contains("garbage") ? 1 : 0));
        vm.saveKnownHosts();
        QCOMPARE(WindowFixture::readText(fixture.knownHostsPath()), saved);
        vm.dismissChangeNotice(SSHFile::knownHosts);
        QCOMPARE(vm.knownHostsChangeNotice().kind, NoticeKind::none);
    }

    void changeUnderUnsavedEditsIsAConflict_data()
    {
        QTest::addColumn<SSHFile>("file");
        QTest::addColumn<bool>("keepMine");
        QTest::newRow("config, keep mine") << SSHFile::config << true;
        QTest::newRow("config, reload") << SSHFile::config << false;
        QTest::newRow("known_hosts, keep mine") << SSHFile::knownHosts << true;
        QTest::newRow("known_hosts, reload") << SSHFile::knownHosts << false;
    }

    void changeUnderUnsavedEditsIsAConflict()
    {
        QFETCH(SSHFile, file);
        QFETCH(bool, keepMine);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host alpha\n"_s, knownHostsText);
        const bool config = file == SSHFile::config;
        const QString path = config ? fixture.configPath() : fixture.knownHostsPath();
        if (config) {
            vm.addHost();
        } else {
            selectEntry(vm, u"beta"_s);
            vm.deleteSelectedKnownHostEntry();
        }
        // Not an append: another editor rewrote the file.
        const QByteArray theirs = config ? "Host theirs\n"_ba : appendedLine.toUtf8();
        QVERIFY(writeBytes(path, theirs));
        QTRY_COMPARE(noticeOf(vm, file).kind, NoticeKind::conflict);
        QVERIFY(noticeOf(vm, file).text.contains(path));
        QCOMPARE(noticeOf(vm, config ? SSHFile::knownHosts : SSHFile::config).kind, NoticeKind::none);

        vm.setActiveEditorTab(config ? EditorTab::structured : EditorTab::knownHosts);
        vm.saveCurrentTab();
        QCOMPARE(vm.statusMessage(),
            u"Niet opgeslagen: "_s + path + u" is buiten Tarnwick gewijzigd. Kies Herladen of Mijn versie bewaren."_s);
        QCOMPARE(readBytes(path), theirs);

        if (keepMine) {
            vm.keepMyVersion(file);
            QCOMPARE(noticeOf(vm, file).kind, NoticeKind::none);
            vm.saveCurrentTab();
            QVERIFY2(vm.statusMessage().contains(u" met backup."_s), qPrintable(vm.statusMessage()));
            QVERIFY(readBytes(path) != theirs);
            QCOMPARE(readBytes(vm.lastBackupPath()), theirs);
        } else {
            vm.reloadChangedFile(file);
            QCOMPARE(noticeOf(vm, file).kind, NoticeKind::none);
            if (config)
                QCOMPARE(firstPatterns(vm.document().hosts), QStringList { u"theirs"_s });
            else
                QCOMPARE(entryHosts(vm), QStringList { u"gamma"_s });
            QVERIFY(!vm.rawEditorDirty() && !vm.knownHostsDirty());
        }
    }

    void fileChangedBackLiftsTheConflict()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host alpha\n"_s);
        vm.addHost();
        fixture.writeConfig(u"Host other\n"_s);
        vm.checkFilesOnDisk();
        QCOMPARE(vm.configChangeNotice().kind, NoticeKind::conflict);
        fixture.writeConfig(u"Host alpha\n"_s);
        vm.checkFilesOnDisk();
        QCOMPARE(vm.configChangeNotice().kind, NoticeKind::none);
        vm.saveConfig();
        QVERIFY2(vm.statusMessage().startsWith(u"Opgeslagen naar "_s), qPrintable(vm.statusMessage()));
    }

    // Our own saves, and a file made by the first save, must never look like someone else's change.
    void ownSavesAreNotExternalChanges()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make();
        vm.addHost();
        vm.saveConfig();
        const QString status = vm.statusMessage();
        vm.addHost();
        QSignalSpy notices(&vm, &SSHConfigViewModel::configChangeNoticeChanged);
        QTest::qWait(400); // let the watcher report the save, had it anything to report
        vm.checkFilesOnDisk();
        QCOMPARE(notices.count(), 0);
        QCOMPARE(vm.statusMessage(), status);
        vm.saveConfig();
        QVERIFY2(vm.statusMessage().contains(u" met backup."_s), qPrintable(vm.statusMessage()));

        // The file the first save made is watched too.
        vm.addHost();
        fixture.writeConfig(u"Host elsewhere\n"_s);
        QTRY_COMPARE(vm.configChangeNotice().kind, NoticeKind::conflict);
    }
};

QTEST_GUILESS_MAIN(TestViewModelFileGuard)
#include "test_view_model_file_guard.moc"
