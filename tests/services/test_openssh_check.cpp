#include "KnownHostsCheck.h"
#include "SSHConfigParser.h"
#include "SshConfigCheck.h"
#include "TestFiles.h"

#include <QDir>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QString edKey = u"ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIOMqqnkVzrm0SdG6UOoqKLsabgH5C9okWi0dh2l9GKJl"_s;

// Plenty for a few dozen short processes on a busy machine; only a hang would reach it.
constexpr int generousWaitMs = 120000;

/// What the structured editor's Save writes for text that was only loaded.
QString savedUnchanged(const QString& text)
{
    const SSHConfigParser parser;
    return parser.serialize(parser.parse(text).document);
}

/// "name: keyword before -> after" for every reported change, so a failure shows all of them.
QStringList describe(const SshCheckResult& result)
{
    QStringList lines;
    for (const SshHostChange& host : result.hosts) {
        for (const SshSettingChange& change : host.changes)
            lines.append(host.name + u": "_s + change.keyword + u" "_s + change.before + u" -> "_s + change.after);
    }
    return lines;
}

SshCheckResult waitForResult(OpenSSHCheck& check)
{
    QSignalSpy finished(&check, &OpenSSHCheck::finished);
    if (finished.isEmpty() && !finished.wait(generousWaitMs))
        return { {}, u"no result"_s };
    return finished.first().first().value<SshCheckResult>();
}
} // namespace

/// The check asks the real ssh and ssh-keygen; each case from a real config must be reported with the
/// right host and keyword, and nothing for a save that changes no answer.
class TestOpenSSHCheck : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qRegisterMetaType<SshCheckResult>();
        m_ssh = QStandardPaths::findExecutable(u"ssh"_s);
        m_sshKeygen = QStandardPaths::findExecutable(u"ssh-keygen"_s);
        if (m_ssh.isEmpty() || m_sshKeygen.isEmpty())
            QSKIP("ssh and ssh-keygen are not installed");
        QVERIFY(m_files.isValid());
    }

    void unchangedConfigSave_data()
    {
        QTest::addColumn<QString>("config");
        QTest::addColumn<QString>("host");
        QTest::addColumn<QString>("change");

        QTest::newRow("Key=Value in a block becomes a comment")
            << u"Host web\n  HostName web.example\n  Port=2222\n"_s << u"web"_s << u"port 2222 -> 22"_s;
        QTest::newRow("prose comment starting with host opens a disabled block")
            << u"Host web\n  HostName web.example\n  # host keys are pinned, check strictly\n"
               u"  StrictHostKeyChecking yes\n"_s
            << u"web"_s << u"stricthostkeychecking true -> ask"_s;
        QTest::newRow("commented-out Host * example switches global options off")
            << u"# Host *\n#   ForwardAgent no\nCompression yes\n\nHost web\n  HostName web.example\n"_s << u"web"_s
            << u"compression yes -> no"_s;
        QTest::newRow("line separator in a comment makes the rest a live option")
            << u"Host web\n  HostName web.example\n  # was: \u2028User deploy\n"_s << u"web"_s << u"user  -> deploy"_s;
        QTest::newRow("next line character in a comment makes the rest a live option")
            << u"Host web\n  HostName web.example\n  # port \u0085Port 2200\n"_s << u"web"_s << u"port 22 -> 2200"_s;
    }

    void unchangedConfigSave()
    {
        QFETCH(QString, config);
        QFETCH(QString, host);
        QFETCH(QString, change);
        SshConfigCheck check(m_ssh);
        check.start(config, savedUnchanged(config));
        const QStringList reported = describe(waitForResult(check));
        const QString expected = host + u": "_s + change;
        // The user before is whoever runs the test: only the rest of that line is compared.
        const bool found = std::any_of(reported.cbegin(), reported.cend(), [&](const QString& line) {
            return line == expected
                || (change.startsWith(u"user "_s) && line.startsWith(host + u": user "_s)
                    && line.endsWith(u" -> deploy"_s));
        });
        QVERIFY2(found, qPrintable(reported.join(u'\n')));
    }

    /// Editing the Port of a host that a Match block follows puts the port inside the Match block.
    void editAfterMatchBlockChangesOtherHosts()
    {
        const QString config = u"Host web\n  HostName web.example\nMatch all\n  User admin\n\n"
                               u"Host db\n  HostName db.example\n"_s;
        const SSHConfigParser parser;
        SSHConfigDocument document = parser.parse(config).document;
        QCOMPARE(document.hosts.size(), 2);
        document.hosts[0].items.append(SSHHostItem::option(SSHOption(u"Port"_s, u"2222"_s)));
        SshConfigCheck check(m_ssh);
        check.start(config, parser.serialize(document));
        const QStringList reported = describe(waitForResult(check));
        QVERIFY2(reported.contains(u"db: port 22 -> 2222"_s), qPrintable(reported.join(u'\n')));
        QVERIFY2(reported.contains(u"*: port 22 -> 2222"_s), qPrintable(reported.join(u'\n')));
    }

    void saveThatChangesNoAnswer_data()
    {
        QTest::addColumn<QString>("config");
        QTest::newRow("tabs, indentation and spacing")
            << u"Host a b\n\tUser ann\n    HostName   a.example\n\n\n# Group: web\nHost *.lan\n ForwardAgent yes\n"_s;
        QTest::newRow("already in the written form") << u"Host a\n  HostName a.example\n"_s;
        QTest::newRow("empty") << QString();
    }

    void saveThatChangesNoAnswer()
    {
        QFETCH(QString, config);
        SshConfigCheck check(m_ssh);
        check.start(config, savedUnchanged(config));
        const SshCheckResult result = waitForResult(check);
        QVERIFY2(result.problem.isEmpty(), qPrintable(result.problem));
        QVERIFY2(result.hosts.isEmpty(), qPrintable(describe(result).join(u'\n')));
    }

    /// Neither the main file's nor an included file's Match exec command ever runs, and a difference
    /// inside a Match exec block is still seen, in the pass where every command succeeds.
    void matchExecNeverRuns()
    {
        const QString marker = m_files.filePath(u"exec-ran"_s);
        const QString included = m_files.filePath(u"included.conf"_s);
        QVERIFY(writeBytes(included, (u"Match exec \"touch "_s + marker + u"-included\"\n  Port 2022\n"_s).toUtf8()));
        const QString config = u"Include "_s + included + u"\nMatch exec \"touch "_s + marker
            + u"\"\n  User=admin\n\nHost web\n  HostName web.example\n"_s;
        SshConfigCheck check(m_ssh);
        check.start(config, QString(config).replace(u"User=admin"_s, u"User=root"_s) + u"  Port 2200\n"_s);
        const QStringList reported = describe(waitForResult(check));
        QVERIFY(!QFile::exists(marker));
        QVERIFY(!QFile::exists(marker + u"-included"_s));
        QVERIFY2(reported.contains(u"web: port 22 -> 2200"_s), qPrintable(reported.join(u'\n')));
        QVERIFY2(
            reported.contains(u"web: user (als Match exec slaagt) admin -> root"_s), qPrintable(reported.join(u'\n')));
    }

    /// A relative Include is read from ~/.ssh, as ssh reads it for the user's own config, and its
    /// options count for the check.
    void relativeIncludeIsReadFromTheUsersSshFolder()
    {
        const QString home = m_files.filePath(u"home"_s);
        QVERIFY(QDir().mkpath(home + u"/.ssh/config.d"_s));
        QVERIFY(writeBytes(home + u"/.ssh/config.d/web.conf"_s, "Host web\n  User from-include\n"));
        const QByteArray oldHome = qgetenv("HOME");
        qputenv("HOME", QFile::encodeName(home));
        const QString config = u"Include config.d/*.conf\nHost web\n  HostName web.example\n"_s;
        SshConfigCheck check(m_ssh);
        check.start(config, config + u"Host *\n  User=fallback\n"_s);
        const SshCheckResult result = waitForResult(check);
        qputenv("HOME", oldHome);
        // web keeps the user from the included file; only the other names take the new fallback.
        const QStringList reported = describe(result);
        QVERIFY2(!reported.join(u'\n').contains(u"web: user"_s), qPrintable(reported.join(u'\n')));
        QVERIFY2(
            std::any_of(reported.cbegin(), reported.cend(),
                [](const QString& line) { return line.startsWith(u"*: user "_s) && line.endsWith(u" -> fallback"_s); }),
            qPrintable(reported.join(u'\n')));
    }

    /// "Match final" in an included file makes ssh read the config again for the HostName: a block of
    /// another name then reaches web, and web must still be asked about.
    void matchFinalInAnIncludedFileReachesOtherBlocks()
    {
        const QString included = m_files.filePath(u"final.conf"_s);
        QVERIFY(writeBytes(included, "Match final\n  Compression yes\n"));
        const QString head = u"Include "_s + included + u"\nHost web\n  HostName db\n\nHost db\n"_s;
        SshConfigCheck check(m_ssh);
        check.start(head + u"  User olduser\n"_s, head + u"  User newuser\n"_s);
        const QStringList reported = describe(waitForResult(check));
        QVERIFY2(reported.contains(u"web: user olduser -> newuser"_s), qPrintable(reported.join(u'\n')));
        QVERIFY2(reported.contains(u"db: user olduser -> newuser"_s), qPrintable(reported.join(u'\n')));
    }

    /// Thousands of names would keep ssh busy for minutes: the check says it skipped them instead.
    void tooManyNamesAreSkippedAndSaid()
    {
        QString config;
        for (int i = 0; i < 5001; ++i)
            config += u"Host h"_s + QString::number(i) + u"\n  Port=1\n"_s;
        SshConfigCheck check(m_ssh);
        check.start(config, savedUnchanged(config));
        const SshCheckResult result = waitForResult(check);
        QVERIFY(result.hosts.isEmpty());
        QVERIFY2(result.problem.startsWith(u"Te veel hostnamen (5002)"_s), qPrintable(result.problem));
    }

    void knownHostsMarkers_data()
    {
        QTest::addColumn<QString>("knownHosts");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("after");
        QTest::newRow("@REVOKED becomes an active revocation")
            << (u"@REVOKED web.example "_s + edKey + u"\nweb.example "_s + edKey + u"\n"_s) << u"web.example"_s
            << (u"@revoked "_s + edKey + u"; "_s + edKey);
        QTest::newRow("@CERT-AUTHORITY becomes an active authority for a wildcard")
            << (u"@CERT-AUTHORITY *.corp.example "_s + edKey + u"\n"_s) << u"*.corp.example"_s
            << (u"@cert-authority "_s + edKey);
    }

    void knownHostsMarkers()
    {
        QFETCH(QString, knownHosts);
        QFETCH(QString, name);
        QFETCH(QString, after);
        const QString saved = QString(knownHosts)
                                  .replace(u"@REVOKED"_s, u"@revoked"_s)
                                  .replace(u"@CERT-AUTHORITY"_s, u"@cert-authority"_s);
        KnownHostsCheck check(m_sshKeygen);
        check.start(knownHosts, saved);
        const SshCheckResult result = waitForResult(check);
        QCOMPARE(result.hosts.size(), 1);
        QCOMPARE(result.hosts.first().name, name);
        QCOMPARE(result.hosts.first().changes.first().keyword, u"known_hosts"_s);
        QCOMPARE(result.hosts.first().changes.first().after, after);
    }

    void knownHostsAsksOnlyAboutChangedLines()
    {
        const QString before = u"a.example "_s + edKey + u"\n@revoked b.example "_s + edKey + u"\n"_s;
        const QString after = u"a.example "_s + edKey + u"\n# @revoked b.example "_s + edKey + u"\n"_s;
        QCOMPARE(KnownHostsCheck::patternsOnChangedLines(before, after), QStringList { u"b.example"_s });
        KnownHostsCheck check(m_sshKeygen);
        check.start(before, after);
        const SshCheckResult result = waitForResult(check);
        QCOMPARE(describe(result), QStringList { u"b.example: known_hosts @revoked "_s + edKey + u" -> "_s });
    }

    /// Files of several parts for every stage of the preparation (copies, counting, reading, weighing
    /// names): only the hosts whose answers change are reported.
    void largeConfigIsJudgedAcrossItsParts()
    {
        QString config;
        for (int i = 0; i < 2500; ++i) {
            const QString n = QString::number(i);
            config += u"Host web"_s + n + u" web"_s + n + u".lan\n  HostName 10.0.0.1\n  User deploy\n\n"_s;
        }
        const qsizetype host = config.indexOf(u"Host web1700 "_s);
        config.insert(config.indexOf(u'\n', host) + 1, u"  Port=2222\n"_s);
        SshConfigCheck check(m_ssh);
        check.start(config, savedUnchanged(config));
        QCOMPARE(describe(waitForResult(check)),
            (QStringList { u"web1700: port 2222 -> 22"_s, u"web1700.lan: port 2222 -> 22"_s }));
    }

    void largeKnownHostsIsJudgedAcrossItsParts()
    {
        QString before;
        for (int i = 0; i < 4000; ++i)
            before += u"host"_s + QString::number(i) + u".example "_s + edKey + u'\n';
        QString after = before;
        // Near both ends, so that nearly every line lies between the first and last changed one.
        after.replace(u"\nhost5.example "_s, u"\n@revoked host5.example "_s);
        after.replace(u"\nhost3995.example "_s, u"\n@revoked host3995.example "_s);
        KnownHostsCheck check(m_sshKeygen);
        check.start(before, after);
        QCOMPARE(describe(waitForResult(check)),
            (QStringList { u"host3995.example: known_hosts "_s + edKey + u" -> @revoked "_s + edKey,
                u"host5.example: known_hosts "_s + edKey + u" -> @revoked "_s + edKey }));
    }

    void missingProgramIsReported()
    {
        SshConfigCheck config { QString() };
        config.start(u"Host a\n"_s, u"Host b\n"_s);
        QVERIFY(waitForResult(config).problem.startsWith(u"ssh is niet gevonden"_s));
        KnownHostsCheck knownHosts { QString() };
        knownHosts.start(u"a "_s + edKey, QString());
        QVERIFY(waitForResult(knownHosts).problem.startsWith(u"ssh-keygen is niet gevonden"_s));
    }

    /// A second start cancels the first: only the last one reports.
    void restartReportsOnce()
    {
        SshConfigCheck check(m_ssh);
        QSignalSpy finished(&check, &OpenSSHCheck::finished);
        check.start(u"Host a\n  Port=1\n"_s, u"Host a\n  # Port=1\n"_s);
        check.start(u"Host b\n  Port 2\n"_s, u"Host b\n  Port 3\n"_s);
        QVERIFY(finished.wait(generousWaitMs));
        QCOMPARE(describe(finished.first().first().value<SshCheckResult>()), QStringList { u"b: port 2 -> 3"_s });
        QVERIFY(!finished.wait(200) || finished.size() == 1);
        QCOMPARE(finished.size(), 1);
    }

private:
    QTemporaryDir m_files;
    QString m_ssh;
    QString m_sshKeygen;
};

QTEST_GUILESS_MAIN(TestOpenSSHCheck)
#include "test_openssh_check.moc"
