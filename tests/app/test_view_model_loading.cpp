// Start-up and loading: initial state, the status sentences of load(), failures of either file,
// the selection repairs and the entry count.

#include "ViewModelFixture.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

class TestViewModelLoading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void neitherFileExists()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make();
        // A missing file reads as the empty text, which is one empty line.
        QVERIFY(vm.document().hosts.isEmpty());
        QCOMPARE(vm.document().globalItems, QList<SSHGlobalItem> { SSHGlobalItem::blank() });
        QCOMPARE(vm.knownHostsDocument().records().size(), 1);
        QVERIFY(vm.knownHostsDocument().records().first().kind().isBlank());
        QVERIFY(vm.parseErrors().isEmpty());
        QVERIFY(vm.knownHostsParseErrors().isEmpty());
        QVERIFY(!vm.selectedHostID());
        QVERIFY(!vm.selectedKnownHostEntryID());
        QCOMPARE(vm.rawText(), QString());
        QCOMPARE(vm.searchText(), QString());
        QCOMPARE(vm.selectedGroup(), u"All"_s);
        QCOMPARE(vm.knownHostsSearchText(), QString());
        QCOMPARE(vm.activeEditorTab(), SSHConfigViewModel::EditorTab::structured);
        QCOMPARE(vm.statusMessage(), u"SSH configuratie geladen. known_hosts geladen."_s);
        QVERIFY(!vm.rawEditorDirty());
        QVERIFY(!vm.rawTextDirty());
        QVERIFY(!vm.knownHostsDirty());
        QCOMPARE(vm.knownHostsEntryCount(), 0);
        QCOMPARE(vm.lastBackupPath(), QString());
    }

    void constructionChoosesTerminalBeforeLoading()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host web\n"_s);
        QCOMPARE(fixture.discovery->calls, 1);
        QCOMPARE(vm.availableTerminalApps(), fixture.discovery->apps);
        QCOMPARE(vm.selectedTerminalBundleIdentifier(), u"com.apple.Terminal"_s);
        QCOMPARE(selectedHostName(vm), u"web"_s);
    }

    void loadsBothFiles()
    {
        ViewModelFixture fixture;
        const QString config = u"# Group: werk\nHost web\n    HostName web.example.com\n"_s;
        SSHConfigViewModel& vm = fixture.make(config, u"web.example.com ssh-ed25519 AAAAC3Nza\n# a comment\n"_s);
        QCOMPARE(vm.rawText(), config);
        QCOMPARE(firstPatterns(vm.document().hosts), QStringList { u"web"_s });
        QCOMPARE(vm.document().hosts.first().groups, QStringList { u"werk"_s });
        QCOMPARE(vm.knownHostsDocument().records().size(), 3);
        QCOMPARE(vm.knownHostsEntryCount(), 1);
        QCOMPARE(selectedEntryHost(vm), u"web.example.com"_s);
    }

    // What a known_hosts file loads as: the entries counted (commented-out ones too), the unreadable
    // lines, the status sentence and the entry selected first.
    void knownHostsFile_data()
    {
        QTest::addColumn<QString>("knownHosts");
        QTest::addColumn<int>("entries");
        QTest::addColumn<int>("errors");
        QTest::addColumn<QString>("selected");
        QTest::newRow("all lines readable") << u"a ssh-ed25519 AAAA\n"_s << 1 << 0 << u"a"_s;
        QTest::newRow("two unreadable lines") << u"a ssh-ed25519 AAAA\nnonsense\nmore nonsense\n"_s << 1 << 2 << u"a"_s;
        QTest::newRow("commented-out entries count")
            << u"a ssh-rsa AAAA\n# b ssh-rsa BBBB\n# just words\n\nbroken\nc ssh-ed25519 CCCC\n"_s << 3 << 1 << u"a"_s;
        QTest::newRow("comment before the first entry")
            << u"# c\nfirst ssh-rsa AAAA\nsecond ssh-rsa BBBB\n"_s << 2 << 0 << u"first"_s;
        QTest::newRow("commented-out entry is selected")
            << u"# gone ssh-rsa AAAA\nsecond ssh-rsa BBBB\n"_s << 2 << 0 << u"gone"_s;
        QTest::newRow("no entries") << u"# note\n\n"_s << 0 << 0 << QString();
    }

    void knownHostsFile()
    {
        QFETCH(QString, knownHosts);
        QFETCH(int, entries);
        QFETCH(int, errors);
        QFETCH(QString, selected);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host a\n"_s, knownHosts);
        QCOMPARE(vm.knownHostsEntryCount(), entries);
        QCOMPARE(vm.knownHostsParseErrors().size(), errors);
        QCOMPARE(vm.statusMessage(),
            errors == 0 ? u"SSH configuratie geladen. known_hosts geladen."_s
                        : u"SSH configuratie geladen. known_hosts geladen met %1 parsefout(en)."_s.arg(errors));
        QCOMPARE(selectedEntryHost(vm), selected);
    }

    void configNotUtf8KeepsConfigState()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host first\n"_s);
        const SSHConfigDocument before = vm.document();
        const std::optional<QUuid> selected = vm.selectedHostID();
        vm.setRawText(u"typed"_s);
        vm.markRawTextEdited();
        QVERIFY(writeBytes(fixture.configPath(), QByteArray("Host \xff\xfe broken\n")));

        vm.load();
        QVERIFY2(vm.statusMessage().startsWith(u"Config laden mislukt: "_s), qPrintable(vm.statusMessage()));
        QVERIFY2(vm.statusMessage().endsWith(u" known_hosts geladen. Het bestand "_s + fixture.configPath()
                     + u" is niet geladen en wordt niet opgeslagen."_s),
            qPrintable(vm.statusMessage()));
        QCOMPARE(vm.rawText(), u"typed"_s);
        QCOMPARE(vm.document(), before);
        QCOMPARE(vm.selectedHostID(), selected);
        QVERIFY(vm.rawEditorDirty());
        QVERIFY(vm.rawTextDirty());
    }

    void knownHostsUnreadableEmptiesKnownHostsState()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), u"a ssh-ed25519 AAAA\nbad\n"_s);
        QCOMPARE(vm.knownHostsEntryCount(), 1);
        vm.setSelectedKnownHostEntryID(vm.filteredKnownHostEntries().first().id());
        vm.deleteSelectedKnownHostEntry();
        QVERIFY(vm.knownHostsDirty());
        // A directory where the file should be cannot be read as text.
        QVERIFY(QFile::remove(fixture.knownHostsPath()));
        QVERIFY(QDir().mkpath(fixture.knownHostsPath()));

        vm.load();
        QVERIFY(vm.statusMessage().startsWith(u"SSH configuratie geladen. known_hosts laden mislukt: "_s));
        QVERIFY(vm.knownHostsDocument().records().isEmpty());
        QVERIFY(vm.knownHostsParseErrors().isEmpty());
        QVERIFY(!vm.selectedKnownHostEntryID());
        QVERIFY(!vm.knownHostsDirty());
        QCOMPARE(vm.knownHostsEntryCount(), 0);
    }

    void hostSelectionRepair_data()
    {
        QTest::addColumn<QString>("config");
        QTest::addColumn<QString>("expected");
        QTest::newRow("wildcard first, plain second") << u"Host *\n    User me\nHost web\n"_s << u"web"_s;
        QTest::newRow("only a wildcard") << u"Host *\n"_s << u"*"_s;
        QTest::newRow("negation and question mark skipped") << u"Host !bastion\nHost db?\nHost db1\n"_s << u"db1"_s;
        QTest::newRow("disabled host counts") << u"Host *\n# Host old\n#     HostName x\n"_s << u"old"_s;
        QTest::newRow("empty document") << QString() << QString();
    }

    void hostSelectionRepair()
    {
        QFETCH(QString, config);
        QFETCH(QString, expected);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(config);
        QCOMPARE(selectedHostName(vm), expected);
        QCOMPARE(vm.selectedHostID().has_value(), !expected.isEmpty());
    }

    void reloadChoosesNewIdentities()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host *\nHost web\nHost db\n"_s, u"a ssh-rsa AAAA\nb ssh-rsa BBBB\n"_s);
        vm.setSelectedHostID(vm.document().hosts.at(2).id());
        vm.setSelectedKnownHostEntryID(vm.filteredKnownHostEntries().at(1).id());
        const std::optional<QUuid> hostBefore = vm.selectedHostID();

        vm.load();
        QVERIFY(vm.selectedHostID() != hostBefore);
        QCOMPARE(selectedHostName(vm), u"web"_s);
        QCOMPARE(selectedEntryHost(vm), u"a"_s);
    }

    void reloadDiscardsEditsAndClearsFlags()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host web\n"_s);
        vm.addHost();
        vm.setRawText(u"Host typed\n"_s);
        vm.markRawTextEdited();
        QVERIFY(vm.rawEditorDirty() && vm.rawTextDirty());

        vm.load();
        QVERIFY(!vm.rawEditorDirty());
        QVERIFY(!vm.rawTextDirty());
        QCOMPARE(vm.rawText(), u"Host web\n"_s);
        QCOMPARE(firstPatterns(vm.document().hosts), QStringList { u"web"_s });
    }
};

QTEST_GUILESS_MAIN(TestViewModelLoading)
#include "test_view_model_loading.moc"
