// The links between the two files. ssh -G says which HostName, Port and HostKeyAlias ssh takes from each
// config block, and ssh-keygen -F which known_hosts lines ssh reads for the name formed from them, in a
// plain file and in the same file hashed by ssh-keygen -H.

#include "SSHHostKnownHostsName.h"
#include "SshKeygen.h"
#include "ViewModelFixture.h"

#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{

const QString configText = uR"(Host web1
    HostName Web1.Example.com
Host db
    HostName db.example.com
    Port 2222
Host db-default-port
    HostName db.example.com
    Port 22
Host aliased
    HostName 10.0.0.9
    HostKeyAlias Shared-Key
Host short
    HostName %h.example.com
Host bare.example.com
Host *.corp
    User deploy
# Host off
#     HostName web1.example.com
)"_s;

// The plain names of the config blocks that ssh -G can be asked about.
const QStringList askedHosts
    = { u"web1"_s, u"db"_s, u"db-default-port"_s, u"aliased"_s, u"short"_s, u"bare.example.com"_s };

} // namespace

class TestViewModelHostLinks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!m_keygen.isAvailable() || QStandardPaths::findExecutable(u"ssh"_s).isEmpty())
            QSKIP("ssh and ssh-keygen are needed");
        const QString key = m_keygen.generatePublicKey(u"ed25519"_s);
        QVERIFY(!key.isEmpty());
        m_knownHosts = QStringList { u"web1.example.com"_s, u"web1.example.com,10.0.0.1"_s, u"[db.example.com]:2222"_s,
            u"db.example.com"_s, u"shared-key"_s, u"short.example.com"_s, u"*.example.com"_s,
            u"unrelated.example.org"_s }
                           .join(u' ' + key + u'\n')
            + u' ' + key + u'\n';
        m_configPath = m_keygen.writeFile(u"config"_s, configText);
    }

    void lookupNameIsWhatSshReads_data() { files(); }

    void lookupNameIsWhatSshReads()
    {
        QFETCH(bool, hashed);
        const QString knownHosts = hashed ? hashedByKeygen(m_knownHosts) : m_knownHosts;
        const QString judgePath = m_keygen.writeFile(u"judge"_s, knownHosts);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(configText, knownHosts);
        for (const QString& alias : askedHosts) {
            vm.setSelectedHostID(hostNamed(vm, alias));
            const std::optional<SSHConfigViewModel::HostKnownHostsLink>& link = vm.selectedHostKnownHostsLink();
            QVERIFY2(link, qPrintable(alias));
            QCOMPARE(link->lookupName, sshLookupName(alias));
            QCOMPARE(link->entryCount, linesSshReads(judgePath, link->lookupName).size());
        }
    }

    void hostsWithoutLink()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(configText, m_knownHosts);
        vm.setSelectedHostID(hostNamed(vm, u"*.corp"_s));
        QVERIFY(!vm.selectedHostKnownHostsLink());
        vm.setSelectedHostID(hostNamed(vm, u"off"_s));
        QVERIFY(!vm.selectedHostKnownHostsLink());
        vm.showKnownHostEntriesForSelectedHost();
        QCOMPARE(vm.statusMessage(), u"Deze host noemt geen host waarvoor ssh known_hosts leest."_s);
        QCOMPARE(vm.activeEditorTab(), SSHConfigViewModel::EditorTab::structured);
    }

    // For each entry, the config hosts listed are exactly those whose name ssh-keygen -F finds on its line.
    void configHostsReachingEachEntry_data() { files(); }

    void configHostsReachingEachEntry()
    {
        QFETCH(bool, hashed);
        const QString knownHosts = hashed ? hashedByKeygen(m_knownHosts) : m_knownHosts;
        const QString judgePath = m_keygen.writeFile(u"judge"_s, knownHosts);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(configText, knownHosts);
        vm.setActiveEditorTab(SSHConfigViewModel::EditorTab::knownHosts);
        for (const KnownHostsRecord& record : vm.knownHostsDocument().records()) {
            const KnownHostEntry* entry = record.kind().entry();
            if (!entry)
                continue;
            vm.setSelectedKnownHostEntryID(entry->id());
            QStringList expected;
            for (const QString& alias : askedHosts) {
                if (linesSshReads(judgePath, sshLookupName(alias)).contains(entry->lineNumber()))
                    expected.append(alias);
            }
            QStringList listed;
            for (const SSHConfigViewModel::ConfigHostLink& link : vm.selectedKnownHostConfigHosts())
                listed.append(link.title);
            QCOMPARE(listed, expected);
        }
    }

    void linkShowsTheEntriesInTheKnownHostsTab()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(configText, m_knownHosts);
        vm.setSelectedHostID(hostNamed(vm, u"web1"_s));
        vm.showKnownHostEntriesForSelectedHost();
        QCOMPARE(vm.activeEditorTab(), SSHConfigViewModel::EditorTab::knownHosts);
        QVERIFY(vm.knownHostLookup());
        QCOMPARE(vm.knownHostLookup()->name, u"web1.example.com"_s);
        QCOMPARE(vm.knownHostLookup()->entryIDs.size(), 3);
        QCOMPARE(vm.selectedKnownHostEntryID(), std::optional(vm.knownHostLookup()->entryIDs.first()));
        QCOMPARE(vm.statusMessage(), u"3 known_hosts entries gevonden voor web1.example.com."_s);
    }

    void linkSelectsTheConfigHost()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(configText, m_knownHosts);
        vm.setActiveEditorTab(SSHConfigViewModel::EditorTab::knownHosts);
        vm.setSelectedKnownHostEntryID(vm.knownHostsDocument().records().at(2).kind().entry()->id());
        QCOMPARE(vm.selectedKnownHostConfigHosts().size(), 1);
        vm.selectConfigHostFromKnownHosts(vm.selectedKnownHostConfigHosts().first().hostID);
        QCOMPARE(vm.activeEditorTab(), SSHConfigViewModel::EditorTab::structured);
        QCOMPARE(selectedHostName(vm), u"db"_s);
        QCOMPARE(vm.statusMessage(), u"SSH-config host geselecteerd: db."_s);
        vm.selectConfigHostFromKnownHosts(QUuid::createUuid());
        QCOMPARE(vm.statusMessage(), u"Deze SSH-config host bestaat niet meer."_s);
    }

    // The links follow edits of either file, and a commented-out entry is reached by nobody.
    void linksFollowEdits()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(configText, m_knownHosts);
        vm.setSelectedHostID(hostNamed(vm, u"db"_s));
        QCOMPARE(vm.selectedHostKnownHostsLink()->entryCount, 1);
        SSHHost host = vm.document().hosts.at(*vm.selectedHostIndex());
        for (SSHHostItem& item : host.items) {
            if (item.asOption() && item.asOption()->key == u"Port"_s)
                item.asOption()->value = u"22"_s;
        }
        vm.updateHost(host, *vm.selectedHostIndex());
        QCOMPARE(vm.selectedHostKnownHostsLink()->lookupName, u"db.example.com"_s);
        QCOMPARE(vm.selectedHostKnownHostsLink()->entryCount, 2);

        vm.setActiveEditorTab(SSHConfigViewModel::EditorTab::knownHosts);
        vm.setSelectedKnownHostEntryID(vm.knownHostsDocument().records().at(3).kind().entry()->id());
        QCOMPARE(vm.selectedKnownHostConfigHosts().size(), 2);
        vm.toggleCommentOnSelectedKnownHostEntry();
        QVERIFY(vm.selectedKnownHostConfigHosts().isEmpty());
        // The host editor's count follows without a new lookup, through removal and its undo too.
        QCOMPARE(vm.selectedHostKnownHostsLink()->entryCount, 1);
        vm.setSelectedKnownHostEntryID(vm.knownHostsDocument().records().at(6).kind().entry()->id());
        vm.deleteSelectedKnownHostEntry();
        QCOMPARE(vm.selectedHostKnownHostsLink()->entryCount, 0);
        vm.undo();
        QCOMPARE(vm.selectedHostKnownHostsLink()->entryCount, 1);
        vm.setActiveEditorTab(SSHConfigViewModel::EditorTab::structured);
        QCOMPARE(vm.selectedHostKnownHostsLink()->entryCount, 1);
    }

private:
    static void files()
    {
        QTest::addColumn<bool>("hashed");
        QTest::newRow("plain names") << false;
        QTest::newRow("hashed by ssh-keygen -H") << true;
    }

    static QUuid hostNamed(const SSHConfigViewModel& vm, const QString& pattern)
    {
        for (const SSHHost& host : vm.document().hosts) {
            if (host.patterns.contains(pattern))
                return host.id();
        }
        return {};
    }

    // What ssh -G reports for alias, put together as ssh names the host in known_hosts.
    QString sshLookupName(const QString& alias) const
    {
        QProcess ssh;
        ssh.start(u"ssh"_s, { u"-G"_s, u"-F"_s, m_configPath, alias });
        if (!ssh.waitForFinished())
            return {};
        QHash<QString, QString> options;
        for (const QString& line : QString::fromUtf8(ssh.readAllStandardOutput()).split(u'\n'))
            options.insert(line.section(u' ', 0, 0), line.section(u' ', 1));
        if (options.contains(u"hostkeyalias"_s))
            return options.value(u"hostkeyalias"_s).toLower();
        const QString port = options.value(u"port"_s);
        const QString host = options.value(u"hostname"_s).toLower();
        return port == u"22"_s ? host : u'[' + host + u"]:"_s + port;
    }

    QList<int> linesSshReads(const QString& path, const QString& name) const
    {
        static const QRegularExpression found(u"found: line (\\d+)"_s);
        QList<int> lines;
        QRegularExpressionMatchIterator it = found.globalMatch(m_keygen.run({ u"-F"_s, name, u"-f"_s, path }).output);
        while (it.hasNext())
            lines.append(it.next().captured(1).toInt());
        return lines;
    }

    QString hashedByKeygen(const QString& text)
    {
        const QString path = m_keygen.writeFile(u"hashed"_s, text);
        if (m_keygen.run({ u"-H"_s, u"-f"_s, path }).exitCode != 0)
            return {};
        return SshKeygen::readFile(path);
    }

    SshKeygen m_keygen;
    QString m_knownHosts;
    QString m_configPath;
};

QTEST_GUILESS_MAIN(TestViewModelHostLinks)
#include "test_view_model_host_links.moc"
