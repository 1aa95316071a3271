// Reading ssh's "REMOTE HOST IDENTIFICATION HAS CHANGED" text as OpenSSH 9.x prints it: the offending
// file and line, the host as ssh looked it up and the fingerprint of the key the server sent.

#include "HostKeyWarningText.h"
#include "SSHHostKeyWarning.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QString fingerprint = u"SHA256:Ffa9vkTzzn/PvF0x9RCHnbFyEXnGnqtYaN4DSYbY6hY"_s;
} // namespace

class TestSSHHostKeyWarning : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsOpenSshText_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("host");
        QTest::addColumn<bool>("typePrefix");
        QTest::newRow("ECDSA") << u"ECDSA"_s << u"web-1"_s << false;
        QTest::newRow("ED25519") << u"ED25519"_s << u"web-1"_s << false;
        QTest::newRow("RSA") << u"RSA"_s << u"10.0.0.5"_s << false;
        QTest::newRow("port 2222") << u"ED25519"_s << u"[web-1]:2222"_s << false;
        QTest::newRow("key type before Host key for") << u"ECDSA"_s << u"web-1"_s << true;
    }

    void readsOpenSshText()
    {
        QFETCH(QString, type);
        QFETCH(QString, host);
        QFETCH(bool, typePrefix);
        const QString file = u"/home/u/.ssh/known_hosts"_s;
        const std::optional<SSHHostKeyWarning> warning
            = parseSSHHostKeyWarning(changedHostKeyText(type, fingerprint, file, 12, host, typePrefix));
        QVERIFY(warning);
        QCOMPARE(warning->offendingFile, file);
        QCOMPARE(warning->offendingLine, 12);
        QCOMPARE(warning->offendingKeyType, type);
        QCOMPARE(warning->host, host);
        QCOMPARE(warning->newKeyType, type);
        QCOMPARE(warning->newFingerprint, fingerprint);
    }

    // A path with blanks, and the text as copied from a terminal without its CRs, among other output.
    void pathWithBlanksAmongOtherOutput()
    {
        const QString file = u"/Users/Jan de Vries/.ssh/known_hosts"_s;
        const QString text = u"$ ssh web-1\n"_s
            + changedHostKeyText(u"ED25519"_s, fingerprint, file, 3, u"web-1"_s).remove(u'\r') + u"$ \n"_s;
        const std::optional<SSHHostKeyWarning> warning = parseSSHHostKeyWarning(text);
        QVERIFY(warning);
        QCOMPARE(warning->offendingFile, file);
        QCOMPARE(warning->offendingLine, 3);
    }

    // With CheckHostIP the address's own line is named in a sentence of its own.
    void offendingAddressLine()
    {
        const QString text = u"Warning: the ECDSA host key for 'web-1' differs from the key for the IP address "
                             "'10.0.0.5'\r\nOffending key for IP in /home/u/.ssh/known_hosts:7\r\n"_s;
        const std::optional<SSHHostKeyWarning> warning = parseSSHHostKeyWarning(text);
        QVERIFY(warning);
        QCOMPARE(warning->offendingFile, u"/home/u/.ssh/known_hosts"_s);
        QCOMPARE(warning->offendingLine, 7);
        QVERIFY(warning->offendingKeyType.isEmpty());
    }

    void otherTextIsNoWarning_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("a host name") << u"web-1"_s;
        QTest::newRow("unknown host") << u"The authenticity of host 'web-1 (10.0.0.5)' can't be established."_s;
    }

    void otherTextIsNoWarning()
    {
        QFETCH(QString, text);
        QVERIFY(!parseSSHHostKeyWarning(text));
    }
};

QTEST_GUILESS_MAIN(TestSSHHostKeyWarning)
#include "test_ssh_host_key_warning.moc"
