// Pasting ssh's changed-host-key warning: the offending entry is selected and its fingerprint set beside the
// new one, for every key type, plain and hashed names (ssh-keygen -H) and a non-standard port. ssh-keygen
// makes the keys, prints both fingerprints, hashes the file and says which line ssh reads for the host.

#include "HostKeyWarningText.h"
#include "SshKeygen.h"
#include "ViewModelFixture.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

class TestViewModelHostKeyWarning : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!m_keygen.isAvailable())
            QSKIP("ssh-keygen is not installed");
    }

    void selectsTheOffendingEntry_data()
    {
        QTest::addColumn<QString>("keygenType");
        QTest::addColumn<QString>("sshType");
        QTest::addColumn<bool>("hashed");
        QTest::addColumn<QString>("port");
        for (const auto& [keygenType, sshType] : { std::pair { u"ecdsa"_s, u"ECDSA"_s },
                 std::pair { u"ed25519"_s, u"ED25519"_s }, std::pair { u"rsa"_s, u"RSA"_s } }) {
            for (const bool hashed : { false, true }) {
                for (const QString& port : { QString(), u"2222"_s }) {
                    const QString tag = sshType + (hashed ? u" hashed"_s : u" plain"_s)
                        + (port.isEmpty() ? QString() : u" port "_s + port);
                    QTest::newRow(qPrintable(tag)) << keygenType << sshType << hashed << port;
                }
            }
        }
    }

    void selectsTheOffendingEntry()
    {
        QFETCH(QString, keygenType);
        QFETCH(QString, sshType);
        QFETCH(bool, hashed);
        QFETCH(QString, port);
        const QString oldKey = m_keygen.generatePublicKey(keygenType);
        const QString newKey = m_keygen.generatePublicKey(keygenType);
        const QString other = m_keygen.generatePublicKey(u"ed25519"_s);
        QVERIFY(!oldKey.isEmpty() && !newKey.isEmpty() && !other.isEmpty());
        const QString host = port.isEmpty() ? u"web-1"_s : u"[web-1]:"_s + port;
        // The same name on another port, and another host, around the offending line.
        QString text = u"web-2 "_s + other + u"\n"_s + (port.isEmpty() ? u"[web-1]:2200 "_s : u"web-1 "_s) + other
            + u"\n"_s + host + u" "_s + oldKey + u"\n"_s;
        if (hashed)
            text = hashedByKeygen(text);
        const int line = lineSshReads(text, host);
        QVERIFY(line > 0);

        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), text);
        vm.applyHostKeyWarning(
            changedHostKeyText(sshType, fingerprintOf(newKey), fixture.knownHostsPath(), line, host));

        QCOMPARE(vm.activeEditorTab(), SSHConfigViewModel::EditorTab::knownHosts);
        QVERIFY(vm.selectedKnownHostEntry());
        QCOMPARE(vm.selectedKnownHostEntry()->lineNumber(), line);
        QVERIFY(vm.hostKeyChange());
        QCOMPARE(vm.hostKeyChange()->entryID, vm.selectedKnownHostEntryID());
        QCOMPARE(vm.hostKeyChange()->oldFingerprint, fingerprintOf(oldKey));
        QCOMPARE(vm.hostKeyChange()->warning.newFingerprint, fingerprintOf(newKey));
        QCOMPARE(vm.hostKeyChange()->warning.host, host);

        // Remove as offered: ssh then finds no key for the host, and the other lines stay.
        vm.deleteSelectedKnownHostEntry();
        vm.saveKnownHosts();
        QVERIFY(m_keygen.run({ u"-F"_s, host, u"-f"_s, fixture.knownHostsPath() }).output.isEmpty());
        QVERIFY(!m_keygen.run({ u"-F"_s, u"web-2"_s, u"-f"_s, fixture.knownHostsPath() }).output.isEmpty());
    }

    // The file changed here since ssh read it: the line ssh named holds another host now, so the entry is
    // found by the host instead.
    void movedLineIsFoundByHost()
    {
        const QString oldKey = m_keygen.generatePublicKey(u"ed25519"_s);
        const QString other = m_keygen.generatePublicKey(u"ed25519"_s);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm
            = fixture.make(QString(), u"a "_s + other + u"\nb "_s + other + u"\nweb-1 "_s + oldKey + u"\n"_s);
        vm.applyHostKeyWarning(
            changedHostKeyText(u"ED25519"_s, fingerprintOf(other), fixture.knownHostsPath(), 2, u"web-1"_s));
        QCOMPARE(selectedEntryHost(vm), u"web-1"_s);
    }

    void warningAboutAnotherFile()
    {
        const QString key = m_keygen.generatePublicKey(u"ed25519"_s);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), u"web-1 "_s + key + u"\n"_s);
        vm.applyHostKeyWarning(
            changedHostKeyText(u"ED25519"_s, fingerprintOf(key), u"/etc/ssh/ssh_known_hosts"_s, 1, u"db-9"_s));
        QCOMPARE(vm.statusMessage(),
            u"De oude sleutel staat in /etc/ssh/ssh_known_hosts, niet in "_s + fixture.knownHostsPath() + u"."_s);
        QVERIFY(vm.hostKeyChange());
        QVERIFY(!vm.hostKeyChange()->entryID);
    }

    void textWithoutWarning()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), QString());
        vm.applyHostKeyWarning(u"Permission denied (publickey)."_s);
        QCOMPARE(
            vm.statusMessage(), u"Geen ssh-waarschuwing over een gewijzigde host key herkend in de geplakte tekst."_s);
        QVERIFY(!vm.hostKeyChange());
    }

    void undoOfTheRemoveBringsTheEntryBack()
    {
        const QString oldKey = m_keygen.generatePublicKey(u"ecdsa"_s);
        const QString newKey = m_keygen.generatePublicKey(u"ecdsa"_s);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), u"web-1 "_s + oldKey + u"\n"_s);
        vm.applyHostKeyWarning(
            changedHostKeyText(u"ECDSA"_s, fingerprintOf(newKey), fixture.knownHostsPath(), 1, u"web-1"_s));
        vm.deleteSelectedKnownHostEntry();
        QCOMPARE(vm.knownHostsEntryCount(), 0);
        vm.undo();
        QCOMPARE(vm.knownHostsEntryCount(), 1);
        QCOMPARE(selectedEntryHost(vm), u"web-1"_s);
    }

private:
    QString fingerprintOf(const QString& publicKey)
    {
        const QString path = m_keygen.writeFile(u"fp%1.pub"_s.arg(++m_files), publicKey + u"\n"_s);
        return m_keygen.run({ u"-l"_s, u"-f"_s, path }).output.section(u' ', 1, 1);
    }

    QString hashedByKeygen(const QString& text)
    {
        const QString path = m_keygen.writeFile(u"hash%1"_s.arg(++m_files), text);
        if (m_keygen.run({ u"-H"_s, u"-f"_s, path }).exitCode != 0)
            return {};
        return SshKeygen::readFile(path);
    }

    // The line ssh-keygen -F reports for host ("# Host web-1 found: line 3").
    int lineSshReads(const QString& text, const QString& host)
    {
        const QString path = m_keygen.writeFile(u"find%1"_s.arg(++m_files), text);
        static const QRegularExpression found(u"found: line (\\d+)"_s);
        return found.match(m_keygen.run({ u"-F"_s, host, u"-f"_s, path }).output).captured(1).toInt();
    }

    SshKeygen m_keygen;
    int m_files = 0;
};

QTEST_GUILESS_MAIN(TestViewModelHostKeyWarning)
#include "test_view_model_host_key_warning.moc"
