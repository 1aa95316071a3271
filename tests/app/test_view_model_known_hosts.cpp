// known_hosts actions: search, marker, comment toggle, delete with renumbering, the seed rules and
// finding or creating the config host.

#include "ViewModelFixture.h"

#include <functional>

using namespace Qt::StringLiterals;

namespace
{

using Seed = SSHConfigViewModel::KnownHostSeed;
using Action = std::function<void(SSHConfigViewModel&)>;

KnownHostEntry entryWithHosts(const QStringList& hosts)
{
    return KnownHostEntry(
        createRandomUuid(), 1, std::nullopt, hosts, u"ssh-ed25519"_s, u"AAAA"_s, QString(), false, false);
}

QStringList filteredHosts(const SSHConfigViewModel& vm)
{
    QStringList result;
    for (const KnownHostEntry& entry : vm.filteredKnownHostEntries())
        result.append(entry.hosts().value(0));
    return result;
}

QList<int> lineNumbers(const SSHConfigViewModel& vm)
{
    QList<int> result;
    for (const KnownHostEntry& entry : vm.filteredKnownHostEntries())
        result.append(entry.lineNumber());
    return result;
}

const QString sample = u"alpha,10.0.0.1 ssh-ed25519 AAAAC3alpha laptop key\n"
                       "@revoked beta ssh-rsa AAAAB3beta\n"
                       "@cert-authority *.corp ssh-ed25519 AAAAC3corp\n"
                       "# gamma ssh-ed25519 AAAAC3gamma\n"_s;

} // namespace

Q_DECLARE_METATYPE(Action)

class TestViewModelKnownHosts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void search_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addColumn<QStringList>("expected");
        const QStringList all { u"alpha"_s, u"beta"_s, u"*.corp"_s, u"gamma"_s };
        QTest::newRow("empty lists all") << QString() << all;
        QTest::newRow("blanks only list all") << u"   "_s << all;
        QTest::newRow("marker text") << u"revoked"_s << QStringList { u"beta"_s };
        QTest::newRow("key type") << u"ssh-ed25519"_s << QStringList { u"alpha"_s, u"*.corp"_s, u"gamma"_s };
        QTest::newRow("comment word, upper case, padded") << u"  LAPTOP "_s << QStringList { u"alpha"_s };
        QTest::newRow("second host") << u"10.0.0"_s << QStringList { u"alpha"_s };
        QTest::newRow("across the host blank") << u"alpha 10."_s << QStringList { u"alpha"_s };
        QTest::newRow("key type blank key") << u"rsa aaaab3beta"_s << QStringList { u"beta"_s };
        QTest::newRow("key lower-cased") << u"aaaac3gamma"_s << QStringList { u"gamma"_s };
        QTest::newRow("nothing") << u"zzz"_s << QStringList {};
    }

    void search()
    {
        QFETCH(QString, query);
        QFETCH(QStringList, expected);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), sample);
        vm.setKnownHostsSearchText(query);
        QCOMPARE(filteredHosts(vm), expected);
        QCOMPARE(vm.knownHostsEntryCount(), 4);
    }

    // The marker sentences and the picker are proven through the known_hosts view; here what it cannot see.
    void markerOnACommentedOutEntry()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), sample);
        vm.setSelectedKnownHostEntryID(vm.filteredKnownHostEntries().at(3).id());
        vm.setMarkerOnSelectedKnownHostEntry(KnownHostMarker::revoked);
        QCOMPARE(vm.selectedKnownHostEntry()->marker(), KnownHostMarker::revoked);
        QVERIFY(vm.selectedKnownHostEntry()->isCommentedOut());
        QCOMPARE(vm.statusMessage(), u"Marker gezet op @revoked."_s);
        QVERIFY(vm.knownHostsDirty());
    }

    void toggleComment()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), sample);
        QCOMPARE(vm.knownHostCommentActionTitle(), u"Comment Out"_s);
        vm.toggleCommentOnSelectedKnownHostEntry();
        QCOMPARE(vm.statusMessage(), u"Entry is uitgecommentarieerd."_s);
        QCOMPARE(vm.knownHostCommentActionTitle(), u"Uncomment"_s);
        QVERIFY(vm.knownHostsDirty());
        vm.toggleCommentOnSelectedKnownHostEntry();
        QCOMPARE(vm.statusMessage(), u"Entry is weer actief gemaakt."_s);
        QCOMPARE(vm.knownHostCommentActionTitle(), u"Comment Out"_s);
        QVERIFY(!vm.selectedKnownHostEntry()->isCommentedOut());
        QCOMPARE(vm.knownHostsEntryCount(), 4);
    }

    void refusalsWithoutSelection_data()
    {
        QTest::addColumn<Action>("action");
        QTest::newRow("marker") << Action(
            [](auto& vm) { vm.setMarkerOnSelectedKnownHostEntry(KnownHostMarker::revoked); });
        QTest::newRow("comment") << Action([](auto& vm) { vm.toggleCommentOnSelectedKnownHostEntry(); });
        QTest::newRow("delete") << Action([](auto& vm) { vm.deleteSelectedKnownHostEntry(); });
        QTest::newRow("open host") << Action([](auto& vm) { vm.openSSHHostForSelectedKnownHostEntry(); });
        QTest::newRow("connect") << Action([](auto& vm) { vm.connectSelectedKnownHostEntry(); });
    }

    void refusalsWithoutSelection()
    {
        QFETCH(Action, action);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), sample);
        vm.setSelectedKnownHostEntryID(createRandomUuid());
        QVERIFY(!vm.selectedKnownHostEntry());
        QCOMPARE(vm.knownHostCommentActionTitle(), u"Comment Out"_s);
        action(vm);
        QCOMPARE(vm.statusMessage(), u"Selecteer eerst een known_hosts entry."_s);
        QVERIFY(!vm.knownHostsDirty());
        QCOMPARE(vm.knownHostsEntryCount(), 4);
        QVERIFY(fixture.launcher->calls.isEmpty());
    }

    void deleteRenumbersAndReselects()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), u"# header\nfirst ssh-rsa AAAA\nsecond ssh-rsa BBBB"_s);
        QCOMPARE(lineNumbers(vm), (QList<int> { 2, 3 }));
        vm.deleteSelectedKnownHostEntry();
        QCOMPARE(vm.statusMessage(), u"known_hosts entry verwijderd."_s);
        QCOMPARE(filteredHosts(vm), QStringList { u"second"_s });
        QCOMPARE(selectedEntryHost(vm), u"second"_s);
        QCOMPARE(lineNumbers(vm), QList<int> { 2 });
        QCOMPARE(vm.knownHostsEntryCount(), 1);
        QVERIFY(vm.knownHostsDirty());
        QCOMPARE(vm.knownHostsDocument().records().size(), 2);
    }

    void deleteLastEntryClearsSelection()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), u"only ssh-rsa AAAA"_s);
        vm.deleteSelectedKnownHostEntry();
        QVERIFY(!vm.selectedKnownHostEntryID());
        QCOMPARE(vm.knownHostsEntryCount(), 0);
        vm.deleteSelectedKnownHostEntry();
        QCOMPARE(vm.statusMessage(), u"Selecteer eerst een known_hosts entry."_s);
    }

    void parseBracketedHostPort_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("host");
        QTest::addColumn<QString>("port");
        QTest::newRow("host and port") << u"[dbhost]:2222"_s << u"dbhost"_s << u"2222"_s;
        QTest::newRow("blanks inside trimmed") << u"[ db ]: 22 "_s << u"db"_s << u"22"_s;
        QTest::newRow("no port") << u"[dbhost]"_s << QString() << QString();
        QTest::newRow("named port") << u"[dbhost]:ssh"_s << QString() << QString();
        QTest::newRow("empty port") << u"[dbhost]:"_s << QString() << QString();
        QTest::newRow("empty host") << u"[ ]:22"_s << QString() << QString();
        QTest::newRow("no colon after bracket") << u"[db]x22"_s << QString() << QString();
        QTest::newRow("no opening bracket") << u"db]:22"_s << QString() << QString();
        QTest::newRow("leading blank") << u" [db]:22"_s << QString() << QString();
        QTest::newRow("non-ASCII digits") << u"[db]:\u0662\u0662"_s << QString() << QString();
        QTest::newRow("first bracket counts") << u"[a]:1]:2"_s << QString() << QString();
    }

    void parseBracketedHostPort()
    {
        QFETCH(QString, text);
        QFETCH(QString, host);
        QFETCH(QString, port);
        const std::optional<BracketedHostPort> parsed = SSHConfigViewModel::parseBracketedHostPort(text);
        QCOMPARE(parsed.has_value(), !host.isEmpty());
        if (parsed) {
            QCOMPARE(parsed->host, host);
            QCOMPARE(parsed->port, port);
        }
    }

    void seed_data()
    {
        QTest::addColumn<QStringList>("hosts");
        QTest::addColumn<bool>("hasSeed");
        QTest::addColumn<QString>("alias");
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("port");
        QTest::newRow("hashed only") << QStringList { u"|1|abc=|def="_s } << false << QString() << QString()
                                     << QString();
        QTest::newRow("wildcard skipped")
            << QStringList { u"*.corp"_s, u"web01"_s } << true << u"web01"_s << QString() << QString();
        QTest::newRow("bracketed port") << QStringList { u"[gitbox]:2222"_s } << true << u"gitbox"_s << QString()
                                        << u"2222"_s;
        QTest::newRow("user at host") << QStringList { u"deploy@build7"_s } << true << u"build7"_s << u"deploy"_s
                                      << QString();
        QTest::newRow("user at bracketed port")
            << QStringList { u"ops@[db]:2200"_s } << true << u"db"_s << u"ops"_s << u"2200"_s;
        QTest::newRow("leading at is part of the name")
            << QStringList { u"@odd"_s } << true << u"@odd"_s << QString() << QString();
        QTest::newRow("negation, then hashed, then plain")
            << QStringList { u"!bad"_s, u"|2|x|y"_s, u"ok"_s } << true << u"ok"_s << QString() << QString();
        QTest::newRow("user at wildcard unusable")
            << QStringList { u"me@*.lan"_s } << false << QString() << QString() << QString();
        QTest::newRow("question mark") << QStringList { u"db?"_s } << false << QString() << QString() << QString();
    }

    void seed()
    {
        QFETCH(QStringList, hosts);
        QFETCH(bool, hasSeed);
        QFETCH(QString, alias);
        QFETCH(QString, user);
        QFETCH(QString, port);
        const std::optional<Seed> seed = SSHConfigViewModel::knownHostSeed(entryWithHosts(hosts));
        QCOMPARE(seed.has_value(), hasSeed);
        if (!seed)
            return;
        QCOMPARE(seed->alias, alias);
        QCOMPARE(seed->hostName, alias);
        QCOMPARE(seed->user.value_or(QString()), user);
        QCOMPARE(seed->user.has_value(), !user.isEmpty());
        QCOMPARE(seed->port.value_or(QString()), port);
        QCOMPARE(seed->port.has_value(), !port.isEmpty());
    }

    void openCreatesThenSelectsHost()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host web\n"_s, u"[gitbox]:2222 ssh-ed25519 AAAA\n"_s);
        vm.setActiveEditorTab(SSHConfigViewModel::EditorTab::knownHosts);

        vm.openSSHHostForSelectedKnownHostEntry();
        QCOMPARE(vm.statusMessage(), u"Nieuwe SSH-config host aangemaakt op basis van known_hosts: gitbox"_s);
        QCOMPARE(vm.activeEditorTab(), SSHConfigViewModel::EditorTab::structured);
        QVERIFY(vm.rawEditorDirty());
        const SSHHost created = vm.host(*vm.selectedHostIndex());
        QCOMPARE(created.patterns, QStringList { u"gitbox"_s });
        QVERIFY(created.groups.isEmpty());
        QCOMPARE(created.items.size(), 2);
        QCOMPARE(created.items.at(0).asOption()->key, u"HostName"_s);
        QCOMPARE(created.items.at(0).asOption()->value, u"gitbox"_s);
        QCOMPARE(created.items.at(1).asOption()->key, u"Port"_s);
        QCOMPARE(created.items.at(1).asOption()->value, u"2222"_s);

        // The second press (selecting the existing host) is proven through the known_hosts view.
        vm.setSelectedHostID(vm.document().hosts.first().id());
        vm.openSSHHostForSelectedKnownHostEntry();
        QCOMPARE(vm.document().hosts.size(), 2);
        QCOMPARE(selectedHostName(vm), u"gitbox"_s);
    }

    void openIgnoresGroupFilter()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"# Group: Production\nHost web\n"_s, u"deploy@build7 ssh-rsa AAAA\n"_s);
        vm.setSelectedGroup(u"Production"_s);
        vm.openSSHHostForSelectedKnownHostEntry();
        const SSHHost created = vm.host(*vm.selectedHostIndex());
        QCOMPARE(created.patterns, QStringList { u"build7"_s });
        QVERIFY(created.groups.isEmpty());
        QCOMPARE(created.items.at(1).asOption()->key, u"User"_s);
        QCOMPARE(created.items.at(1).asOption()->value, u"deploy"_s);
        QCOMPARE(firstPatterns(vm.filteredHosts()), QStringList { u"web"_s });
    }

    void openRefusesUnusableEntry()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), u"|1|abc=|def= ssh-rsa AAAA\n"_s);
        vm.openSSHHostForSelectedKnownHostEntry();
        QCOMPARE(vm.statusMessage(), u"Kan geen bruikbare host-alias bepalen uit deze known_hosts entry."_s);
        QVERIFY(vm.document().hosts.isEmpty());
        QVERIFY(!vm.rawEditorDirty());
    }
};

QTEST_GUILESS_MAIN(TestViewModelKnownHosts)
#include "test_view_model_known_hosts.moc"
