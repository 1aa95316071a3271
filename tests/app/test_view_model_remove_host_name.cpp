// Removing one name from a line of several: the others keep the entry, and after saving ssh-keygen -F
// finds them and no longer the removed one.

#include "SshKeygen.h"
#include "ViewModelFixture.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

class TestViewModelRemoveHostName : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!m_keygen.isAvailable())
            QSKIP("ssh-keygen is not installed");
        m_key = m_keygen.generatePublicKey(u"ed25519"_s);
        QVERIFY(!m_key.isEmpty());
    }

    void removedNameIsGoneForSsh_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("removed");
        QTest::addColumn<QStringList>("kept");
        QTest::newRow("first") << 0 << u"host1"_s << QStringList { u"host2"_s, u"10.0.0.5"_s };
        QTest::newRow("middle") << 1 << u"host2"_s << QStringList { u"host1"_s, u"10.0.0.5"_s };
        QTest::newRow("last") << 2 << u"10.0.0.5"_s << QStringList { u"host1"_s, u"host2"_s };
    }

    void removedNameIsGoneForSsh()
    {
        QFETCH(int, index);
        QFETCH(QString, removed);
        QFETCH(QStringList, kept);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), u"# keep\nhost1,host2,10.0.0.5 "_s + m_key + u" laptop\n"_s);
        QSignalSpy dirty(&vm, &SSHConfigViewModel::knownHostsDirtyChanged);
        const QUuid id = *vm.selectedKnownHostEntryID();
        vm.removeHostFromSelectedKnownHostEntry(index);
        QCOMPARE(vm.statusMessage(), u"Host "_s + removed + u" verwijderd uit deze known_hosts entry."_s);
        QCOMPARE(vm.selectedKnownHostEntryID(), std::optional<QUuid>(id));
        QCOMPARE(vm.selectedKnownHostEntry()->hosts(), kept);
        QCOMPARE(dirty.count(), 1);
        vm.saveKnownHosts();
        const QString path = fixture.knownHostsPath();
        QCOMPARE(WindowFixture::readText(path), u"# keep\n"_s + kept.join(u',') + u' ' + m_key + u" laptop\n"_s);
        QVERIFY(m_keygen.run({ u"-F"_s, removed, u"-f"_s, path }).output.isEmpty());
        for (const QString& host : kept)
            QVERIFY2(
                m_keygen.run({ u"-F"_s, host, u"-f"_s, path }).output.contains(u"found: line 2"_s), qPrintable(host));
    }

    // A refusal says why, changes nothing and is no step to undo.
    void refusals_data()
    {
        QTest::addColumn<QString>("hosts");
        QTest::addColumn<bool>("selected");
        QTest::addColumn<QString>("status");
        QTest::newRow("only name") << u"host1"_s << true
                                   << u"Dit is de enige host van deze entry; gebruik Remove om de hele entry te "
                                      u"verwijderen."_s;
        QTest::newRow("nothing selected") << u"a,b"_s << false << u"Selecteer eerst een known_hosts entry."_s;
    }

    void refusals()
    {
        QFETCH(QString, hosts);
        QFETCH(bool, selected);
        QFETCH(QString, status);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), hosts + u' ' + m_key + u"\n"_s);
        vm.setActiveEditorTab(SSHConfigViewModel::EditorTab::knownHosts);
        if (!selected)
            vm.setSelectedKnownHostEntryID(std::nullopt);
        vm.removeHostFromSelectedKnownHostEntry(0);
        QCOMPARE(vm.statusMessage(), status);
        QVERIFY(!vm.knownHostsDirty());
        QVERIFY(!vm.canUndo());
        QCOMPARE(vm.knownHostsDocument().records().first().kind().entry()->hosts(), hosts.split(u','));
    }

    void hashedFlagFollowsTheNamesLeft()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(
            QString(), u"|1|F1E1KeoE/eEWhi10WpGv4OdiO6Y=|3988QV0VE8wmZL7suNrYQLITLCg=,plain "_s + m_key + u"\n"_s);
        QVERIFY(vm.selectedKnownHostEntry()->isHashed());
        vm.removeHostFromSelectedKnownHostEntry(0);
        QVERIFY(!vm.selectedKnownHostEntry()->isHashed());
    }

    // The whole removal is one step: undo gives ssh the name back, redo takes it again, and the file
    // written after each is what ssh-keygen reads.
    void undoAndRedoAreOneStep()
    {
        ViewModelFixture fixture;
        const QString original = u"host1,host2,10.0.0.5 "_s + m_key + u"\n"_s;
        SSHConfigViewModel& vm = fixture.make(QString(), original);
        vm.setActiveEditorTab(SSHConfigViewModel::EditorTab::knownHosts);
        const QUuid id = *vm.selectedKnownHostEntryID();
        vm.removeHostFromSelectedKnownHostEntry(1);
        QVERIFY(vm.canUndo());
        QCOMPARE(vm.undoText(), u"Ongedaan maken: Host uit entry verwijderen"_s);

        vm.undo();
        QCOMPARE(vm.statusMessage(), u"Ongedaan gemaakt: Host uit entry verwijderd."_s);
        QVERIFY(!vm.canUndo());
        QVERIFY(!vm.knownHostsDirty());
        QCOMPARE(vm.selectedKnownHostEntryID(), std::optional<QUuid>(id));
        QCOMPARE(vm.selectedKnownHostEntry()->hosts(), (QStringList { u"host1"_s, u"host2"_s, u"10.0.0.5"_s }));
        QCOMPARE(vm.knownHostEntryIDsForName(u"host2"_s), QList<QUuid> { id });

        QCOMPARE(vm.redoText(), u"Opnieuw doen: Host uit entry verwijderen"_s);
        vm.redo();
        QCOMPARE(vm.statusMessage(), u"Opnieuw gedaan: Host uit entry verwijderd."_s);
        QVERIFY(vm.knownHostsDirty());
        QCOMPARE(vm.selectedKnownHostEntry()->hosts(), (QStringList { u"host1"_s, u"10.0.0.5"_s }));
        QVERIFY(vm.knownHostEntryIDsForName(u"host2"_s).isEmpty());
        vm.saveKnownHosts();
        const QString path = fixture.knownHostsPath();
        QVERIFY(m_keygen.run({ u"-F"_s, u"host2"_s, u"-f"_s, path }).output.isEmpty());
        QVERIFY(m_keygen.run({ u"-F"_s, u"host1"_s, u"-f"_s, path }).output.contains(u"found: line 1"_s));

        vm.undo();
        vm.saveKnownHosts();
        QCOMPARE(WindowFixture::readText(path), original);
        QVERIFY(m_keygen.run({ u"-F"_s, u"host2"_s, u"-f"_s, path }).output.contains(u"found: line 1"_s));
    }

private:
    SshKeygen m_keygen;
    QString m_key;
};

QTEST_GUILESS_MAIN(TestViewModelRemoveHostName)
#include "test_view_model_remove_host_name.moc"
