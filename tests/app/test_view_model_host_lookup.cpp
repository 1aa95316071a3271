// "Zoek host" on a file hashed by ssh-keygen -H: the entries found, the list filtered to them, the
// selection and the sentences; ssh-keygen -F says which lines are right.

#include "KnownHostsFilterModel.h"
#include "KnownHostsModel.h"
#include "SshKeygen.h"
#include "ViewModelFixture.h"

#include <QRegularExpression>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class TestViewModelHostLookup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!m_keygen.isAvailable())
            QSKIP("ssh-keygen is not installed");
        const QString key = m_keygen.generatePublicKey(u"ed25519"_s);
        const QString other = m_keygen.generatePublicKey(u"ecdsa"_s);
        const QString path = m_keygen.writeFile(u"known_hosts"_s,
            u"web-1,10.0.0.5 "_s + key + u"\nweb-1 "_s + other + u"\n[web-1]:2222 "_s + key + u"\ndb-1 "_s + key
                + u"\n"_s);
        QCOMPARE(m_keygen.run({ u"-H"_s, u"-f"_s, path }).exitCode, 0);
        m_hashedText = SshKeygen::readFile(path);
        m_path = path;
    }

    void findsWhatSshKeygenFinds_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("name");
        QTest::newRow("name") << u"web-1"_s << u"web-1"_s;
        QTest::newRow("upper case as ssh lower-cases it") << u"  WEB-1 "_s << u"web-1"_s;
        QTest::newRow("name:port") << u"web-1:2222"_s << u"[web-1]:2222"_s;
        QTest::newRow("bracketed") << u"[web-1]:2222"_s << u"[web-1]:2222"_s;
        QTest::newRow("port 22 is the plain name") << u"web-1:22"_s << u"web-1"_s;
        QTest::newRow("address") << u"10.0.0.5"_s << u"10.0.0.5"_s;
        QTest::newRow("unknown") << u"nowhere"_s << u"nowhere"_s;
    }

    void findsWhatSshKeygenFinds()
    {
        QFETCH(QString, typed);
        QFETCH(QString, name);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), m_hashedText);
        KnownHostsModel model(vm);
        KnownHostsFilterModel filter(model);
        QSignalSpy lookupChanged(&vm, &SSHConfigViewModel::knownHostLookupChanged);
        vm.findKnownHostEntriesForHost(typed);
        QCOMPARE(lookupChanged.count(), 1);
        QVERIFY(vm.knownHostLookup());
        QCOMPARE(vm.knownHostLookup()->name, name);
        const QList<int> expected = sshKeygenLines(name);
        QList<int> lines;
        for (const QUuid& id : vm.knownHostLookup()->entryIDs)
            lines.append(static_cast<int>(*vm.indexOfKnownHostRecord(id)) + 1);
        QCOMPARE(lines, expected);
        QCOMPARE(filter.rowCount(), expected.size());
        if (expected.isEmpty()) {
            QCOMPARE(vm.statusMessage(), u"Geen known_hosts entry gevonden voor "_s + name + u"."_s);
            return;
        }
        QCOMPARE(vm.selectedKnownHostEntryID(), vm.knownHostLookup()->entryIDs.constFirst());
        const QString count = expected.size() == 1 ? u"1 known_hosts entry"_s
                                                   : QString::number(expected.size()) + u" known_hosts entries"_s;
        QCOMPARE(vm.statusMessage(), count + u" gevonden voor "_s + name + u"."_s);
        vm.clearKnownHostLookup();
        QCOMPARE(vm.knownHostLookup(), std::nullopt);
        QCOMPARE(filter.rowCount(), vm.knownHostsEntryCount());
    }

    void refusesWhatSshWouldNotLookUp_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::newRow("wildcard") << u"web-*"_s;
        QTest::newRow("port not a number") << u"web-1:ssh"_s;
        QTest::newRow("two words") << u"web-1 db-1"_s;
    }

    void refusesWhatSshWouldNotLookUp()
    {
        QFETCH(QString, typed);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), m_hashedText);
        vm.findKnownHostEntriesForHost(typed);
        QCOMPARE(vm.knownHostLookup(), std::nullopt);
        QCOMPARE(vm.statusMessage(), u"Geef een hostnaam, eventueel met poort (naam:poort), zonder jokertekens."_s);
    }

    void lookupFollowsDeleteAndReload()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), m_hashedText);
        KnownHostsModel model(vm);
        KnownHostsFilterModel filter(model);
        vm.findKnownHostEntriesForHost(u"web-1"_s);
        QCOMPARE(filter.rowCount(), 2);
        vm.deleteSelectedKnownHostEntry();
        QCOMPARE(filter.rowCount(), 1);
        // A search text narrows the lookup's entries further.
        vm.setKnownHostsSearchText(u"ecdsa"_s);
        QCOMPARE(filter.rowCount(), 1);
        vm.setKnownHostsSearchText(u"ed25519"_s);
        QCOMPARE(filter.rowCount(), 0);
        vm.setKnownHostsSearchText(QString());
        vm.load();
        QCOMPARE(vm.knownHostLookup()->entryIDs.size(), 2);
        QCOMPARE(filter.rowCount(), 2);
        // An empty text ends the lookup.
        vm.findKnownHostEntriesForHost(u"  "_s);
        QCOMPARE(vm.knownHostLookup(), std::nullopt);
        QCOMPARE(filter.rowCount(), vm.knownHostsEntryCount());
    }

private:
    QList<int> sshKeygenLines(const QString& name) const
    {
        static const QRegularExpression found(u"^# Host .* found: line (\\d+)"_s, QRegularExpression::MultilineOption);
        QList<int> lines;
        const QString output = m_keygen.run({ u"-F"_s, name, u"-f"_s, m_path }).output;
        for (auto it = found.globalMatch(output); it.hasNext();)
            lines.append(it.next().captured(1).toInt());
        return lines;
    }

    SshKeygen m_keygen;
    QString m_hashedText;
    QString m_path;
};

QTEST_GUILESS_MAIN(TestViewModelHostLookup)
#include "test_view_model_host_lookup.moc"
