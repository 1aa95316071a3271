// Raw text editing and saving: parse, the three saves, the save-choice table and the end-to-end story
// of editing a host and saving it.

#include "ViewModelFixture.h"

#include <QDir>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace
{
using EditorTab = SSHConfigViewModel::EditorTab;
} // namespace

class TestViewModelSaving : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The whole road of one edit: the Port field of the host editor, then Command-S on the structured tab.
    void editPortAndSave()
    {
        ViewModelFixture fixture;
        const QString original = u"Host web\n    HostName web.example.com\n    Port 22\n"_s;
        SSHConfigViewModel& vm = fixture.make(original);
        const qsizetype index = *vm.selectedHostIndex();
        SSHHost host = vm.host(index);
        for (SSHHostItem& item : host.items) {
            if (SSHOption* option = item.asOption(); option && option->key == u"Port"_s) {
                option->value = u"2222"_s;
                break;
            }
        }
        vm.updateHost(host, index);
        QVERIFY(vm.rawEditorDirty());

        vm.saveCurrentTab();
        const QString path = fixture.configPath();
        const QString written = QString::fromUtf8(readBytes(path));
        QVERIFY2(written.contains(u"Port 2222"_s), qPrintable(written));
        QVERIFY(!written.contains(u"Port 22\n"_s));
        const QStringList backups = WindowFixture::backupsOf(fixture.configPath());
        QCOMPARE(backups.size(), 1);
        static const QRegularExpression backupName(u"^config\\.backup-\\d{8}-\\d{6}-\\d{3}-[0-9A-F]{8}$"_s);
        QVERIFY2(backupName.match(backups.first()).hasMatch(), qPrintable(backups.first()));
        const QString backupPath = QFileInfo(fixture.configPath()).dir().filePath(backups.first());
        QCOMPARE(QString::fromUtf8(readBytes(backupPath)), original);
        QCOMPARE(vm.lastBackupPath(), backupPath);
        QCOMPARE(vm.statusMessage(), u"Opgeslagen naar "_s + path + u" met backup."_s);
        QCOMPARE(vm.rawText(), written);
        QVERIFY(!vm.rawEditorDirty());
        QVERIFY(!vm.rawTextDirty());
    }

    void saveChoice_data()
    {
        QTest::addColumn<EditorTab>("tab");
        QTest::addColumn<bool>("rawTextDirty");
        QTest::addColumn<bool>("rawEditorDirty");
        QTest::addColumn<QString>("expectedFile");
        QTest::addColumn<QString>("expectedStatusPrefix");

        // The document holds host "doc"; the raw text, as typed, holds host "typed" with its own spacing.
        const QString documentText = u"Host doc"_s;
        const QString typedText = u"Host   typed\n"_s;
        QTest::newRow("structured, nothing dirty")
            << EditorTab::structured << false << false << documentText << u"Opgeslagen naar "_s;
        QTest::newRow("structured, typed in raw")
            << EditorTab::structured << true << true << documentText << u"Opgeslagen naar "_s;
        QTest::newRow("structured, structured edit")
            << EditorTab::structured << false << true << documentText << u"Opgeslagen naar "_s;
        QTest::newRow("raw, typed") << EditorTab::raw << true << true << typedText << u"Raw config opgeslagen naar "_s;
        QTest::newRow("raw, typed, editor flag clear")
            << EditorTab::raw << true << false << typedText << u"Raw config opgeslagen naar "_s;
        QTest::newRow("raw, nothing pending")
            << EditorTab::raw << false << false << typedText << u"Raw config opgeslagen naar "_s;
        QTest::newRow("raw, only structured edits")
            << EditorTab::raw << false << true << documentText << u"Opgeslagen naar "_s;
    }

    void saveChoice()
    {
        QFETCH(EditorTab, tab);
        QFETCH(bool, rawTextDirty);
        QFETCH(bool, rawEditorDirty);
        QFETCH(QString, expectedFile);
        QFETCH(QString, expectedStatusPrefix);

        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host doc"_s);
        vm.setRawText(u"Host   typed\n"_s);
        vm.setRawTextDirty(rawTextDirty);
        vm.setRawEditorDirty(rawEditorDirty);
        vm.setActiveEditorTab(tab);

        vm.saveCurrentTab();
        QCOMPARE(QString::fromUtf8(readBytes(fixture.configPath())), expectedFile);
        QCOMPARE(vm.rawText(), expectedFile);
        QCOMPARE(vm.statusMessage(), expectedStatusPrefix + fixture.configPath() + u" met backup."_s);
        QVERIFY(!vm.rawEditorDirty());
        QVERIFY(!vm.rawTextDirty());
    }

    void parseRawText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("status");
        QTest::addColumn<QStringList>("hosts");
        QTest::newRow("clean") << u"Host a\nHost b\n"_s << u"Raw editor: parse gelukt."_s
                               << QStringList { u"a"_s, u"b"_s };
        QTest::newRow("one bad line") << u"Host a\n    Port=22\nHost b\n"_s << u"Raw editor: 1 parsefout(en)."_s
                                      << QStringList { u"a"_s, u"b"_s };
    }

    void parseRawText()
    {
        QFETCH(QString, text);
        QFETCH(QString, status);
        QFETCH(QStringList, hosts);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host old\n"_s);
        vm.setRawText(text);
        vm.markRawTextEdited();

        vm.parseRawText();
        QCOMPARE(vm.statusMessage(), status);
        QCOMPARE(firstPatterns(vm.document().hosts), hosts);
        QCOMPARE(vm.parseErrors().isEmpty(), status.endsWith(u"gelukt."_s));
        QVERIFY(vm.rawEditorDirty());
        QVERIFY(vm.rawTextDirty());
        QCOMPARE(QString::fromUtf8(readBytes(fixture.configPath())), u"Host old\n"_s);
    }

    void parseGivesNewIdentities()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host *\nHost web\nHost db\n"_s);
        vm.setSelectedHostID(vm.document().hosts.at(2).id());
        vm.parseRawText();
        QCOMPARE(selectedHostName(vm), u"web"_s);
        QVERIFY(vm.rawEditorDirty());
        QVERIFY(!vm.rawTextDirty());
    }

    void saveRawTextRefusedOnParseErrors()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host old\n"_s);
        const SSHConfigDocument before = vm.document();
        vm.setRawText(u"Host new\n    Port=22\n"_s);
        vm.markRawTextEdited();

        vm.saveRawText();
        QCOMPARE(vm.statusMessage(), u"Niet opgeslagen door parsefouten."_s);
        QCOMPARE(vm.parseErrors().size(), 1);
        QCOMPARE(vm.document(), before);
        QCOMPARE(QString::fromUtf8(readBytes(fixture.configPath())), u"Host old\n"_s);
        QVERIFY(WindowFixture::backupsOf(fixture.configPath()).isEmpty());
        QVERIFY(vm.rawTextDirty());
    }

    void saveRawTextWritesTextAsTyped()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make();
        const QString typed = u"# mine\nHost   a   b\n\tUser    me\n"_s;
        vm.setRawText(typed);
        vm.markRawTextEdited();

        vm.saveRawText();
        QCOMPARE(QString::fromUtf8(readBytes(fixture.configPath())), typed);
        QCOMPARE(vm.statusMessage(), u"Raw config opgeslagen naar "_s + fixture.configPath() + u"."_s);
        QCOMPARE(vm.lastBackupPath(), QString());
        QCOMPARE(selectedHostName(vm), u"a"_s);
        QVERIFY(!vm.rawEditorDirty());
        QVERIFY(!vm.rawTextDirty());
    }

    void saveConfigWithoutAndWithBackup()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make();
        vm.addHost();
        vm.saveConfig();
        QCOMPARE(vm.statusMessage(), u"Opgeslagen naar "_s + fixture.configPath() + u"."_s);
        QCOMPARE(vm.lastBackupPath(), QString());
        const QString first = QString::fromUtf8(readBytes(fixture.configPath()));
        QVERIFY(first.contains(u"Host new-host"_s));

        vm.saveConfig();
        QCOMPARE(vm.statusMessage(), u"Opgeslagen naar "_s + fixture.configPath() + u" met backup."_s);
        QVERIFY(!vm.lastBackupPath().isEmpty());
        QCOMPARE(QString::fromUtf8(readBytes(vm.lastBackupPath())), first);
    }

    void verificationFailureKeepsFlags()
    {
        ViewModelFixture fixture;
        fixture.writeConfig(u"Host web\n"_s);
        // A writer that lands other bytes than it was given, as if someone changed the file meanwhile.
        SSHConfigViewModel& vm = fixture.make(FileManager([](const QString& path, const QByteArray& bytes) {
            FileManager::writeWithSaveFile(path, bytes + "# changed behind our back\n");
        }));
        vm.addHost();

        vm.saveConfig();
        QCOMPARE(vm.statusMessage(),
            u"Opslaan mislukt: Verificatie van opgeslagen bestand mislukt op "_s + fixture.configPath() + u"."_s);
        QVERIFY(vm.rawEditorDirty());
        QCOMPARE(vm.lastBackupPath(), QString());
    }

    void saveKnownHostsRenumbersAndReports()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), u"# header\na ssh-rsa AAAA\nb ssh-rsa BBBB\n"_s);
        vm.deleteSelectedKnownHostEntry();
        QVERIFY(vm.knownHostsDirty());
        vm.setActiveEditorTab(EditorTab::knownHosts);

        vm.saveCurrentTab();
        QCOMPARE(QString::fromUtf8(readBytes(fixture.knownHostsPath())), u"# header\nb ssh-rsa BBBB\n"_s);
        QCOMPARE(vm.statusMessage(), u"known_hosts opgeslagen naar "_s + fixture.knownHostsPath() + u" met backup."_s);
        QVERIFY(!vm.knownHostsDirty());
        QCOMPARE(vm.filteredKnownHostEntries().first().lineNumber(), 2);
        QCOMPARE(QString::fromUtf8(readBytes(vm.lastBackupPath())), u"# header\na ssh-rsa AAAA\nb ssh-rsa BBBB\n"_s);
    }

    void knownHostsSaveFailure()
    {
        ViewModelFixture fixture;
        fixture.writeKnownHosts(u"a ssh-rsa AAAA\n"_s);
        SSHConfigViewModel& vm = fixture.make(FileManager([](const QString& path, const QByteArray&) {
            throw PlatformError(u"Kan "_s + path + u" niet schrijven."_s);
        }));
        vm.toggleCommentOnSelectedKnownHostEntry();

        vm.saveKnownHosts();
        QCOMPARE(vm.statusMessage(),
            u"known_hosts opslaan mislukt: Kan "_s + fixture.knownHostsPath() + u" niet schrijven."_s);
        QVERIFY(vm.knownHostsDirty());
        QCOMPARE(QString::fromUtf8(readBytes(fixture.knownHostsPath())), u"a ssh-rsa AAAA\n"_s);
    }

    void refreshRawTextFromDocument()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host a\nHost b\n"_s);
        vm.moveHosts({ 1 }, 0);
        QCOMPARE(vm.rawText(), vm.parser().serialize(vm.document()));
        QVERIFY(vm.rawText().indexOf(u"Host b"_s) < vm.rawText().indexOf(u"Host a"_s));

        vm.setRawText(u"typed"_s);
        vm.markRawTextEdited();
        vm.moveHosts({ 1 }, 0);
        QCOMPARE(vm.rawText(), u"typed"_s);
    }
};

QTEST_GUILESS_MAIN(TestViewModelSaving)
#include "test_view_model_saving.moc"
