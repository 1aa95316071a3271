#include "SSHConfigParser.h"
#include "TestFiles.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// A plain alias: something ssh can be asked about directly (no wildcard, no negation).
bool isPlainAlias(const QString& pattern)
{
    return !pattern.contains(u'*') && !pattern.contains(u'?') && !pattern.startsWith(u'!');
}

QStringList plainAliases(const SSHConfigDocument& document)
{
    QStringList aliases;
    for (const SSHHost& host : document.hosts) {
        for (const QString& pattern : host.patterns) {
            if (isPlainAlias(pattern) && !aliases.contains(pattern))
                aliases.append(pattern);
        }
    }
    return aliases;
}
} // namespace

/// OpenSSH itself judges the writer: for every plain alias, `ssh -G` must resolve the written file
/// exactly as it resolves the file that was read, except where the model knowingly changes a line.
class TestSSHConfigOpenSSH : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_ssh = QStandardPaths::findExecutable(u"ssh"_s);
        if (m_ssh.isEmpty())
            QSKIP("ssh is not installed");
        QVERIFY(m_home.isValid());
        const QString dir = m_home.path();
        QVERIFY(writeBytes(dir + u"/conf.d/10-included.conf"_s, "Host inc-host\n  HostName 192.0.2.1\n"));
        QVERIFY(writeBytes(dir + u"/my dir/extra.conf"_s, "Host extra-host\n  Port 2022\n"));
    }

    void sameAnswers_data()
    {
        QTest::addColumn<QString>("config");
        QTest::addColumn<QStringList>("extraAliases");
        const QString dir = m_home.path();

        QTest::newRow("includes, match blocks, quoted paths, key=value and wildcards")
            << (u"Include "_s + dir + u"/conf.d/*.conf\nInclude \""_s + dir
                   + u"/my dir/extra.conf\"\nServerAliveInterval=30\n\n# PRODUCTION\n# Group: web\n"
                     u"Host web-1 web-1.lan\n\tHostName 10.0.0.5\n  User deploy # main\n"
                     u"  IdentityFile \"~/my keys/id_ed25519\"\n  Port = 2200\n\n"
                     u"Host *.lan !bastion.lan\n  ForwardAgent yes\n\nMatch host db-1\n  User postgres\n\n"
                     u"# Host old-box\n#   HostName 10.0.0.9\n# # retired\n\nHost db-1 bastion.lan\n"
                     u"  HostName 10.0.0.7\n  Port 5432\n  LocalForward 8080   localhost:80\nHost *\n"
                     u"  ServerAliveCountMax 3\n"_s)
            << QStringList { u"inc-host"_s, u"extra-host"_s, u"other.lan"_s, u"nowhere"_s };

        QTest::newRow("CR LF line ends, tabs and comments")
            << u"# global note\r\nHost\tcrlf-global\r\n  Port 2001\r\n\r\nHost a b\r\n\tUser\tann\r\n"
               u"\t# tab indented comment\r\n  # Group: indented\r\nHost c\r\n  HostName c.example # primary\r\n"_s
            << QStringList { u"crlf-global"_s };

        QTest::newRow("disabled blocks, section headers and Host with a tab")
            << u"Host first\n  User one\n# LEGACY\n#Host off-1\n#   User nobody\n#\n# Host off-2 off-3\n"
               u"#   Port 1\nHost second\n  HostName second.example\nHost\tthird\n  Port 3333\n"
               u"# Group: tail\n"_s
            << QStringList { u"third"_s };
    }

    void sameAnswers()
    {
        QFETCH(QString, config);
        QFETCH(QStringList, extraAliases);
        const auto [document, errors] = SSHConfigParser {}.parse(config);
        QVERIFY(errors.isEmpty());
        const QString written = SSHConfigParser {}.serialize(document);
        const QStringList aliases = plainAliases(document) + extraAliases;
        for (const QString& alias : aliases) {
            const QStringList original = resolve(config, alias);
            QCOMPARE(original.value(0), u"exit 0"_s);
            QCOMPARE(resolve(written, alias), original);
        }
    }

    /// An option line that is invalid to this program ("Key=Value" inside a block) is kept as a
    /// comment, so ssh no longer sees it: the written file resolves as if the line were not there.
    void invalidLineBecomesComment()
    {
        const QString config = u"Host kv\n  Port=2222\n  HostName kv.example\n"_s;
        const auto [document, errors] = SSHConfigParser {}.parse(config);
        QCOMPARE(errors.size(), 1);
        const QString written = SSHConfigParser {}.serialize(document);
        QVERIFY(written.contains(u"\n  # Port=2222\n"_s));
        QVERIFY(resolve(config, u"kv"_s).contains(u"port 2222"_s));
        QCOMPARE(resolve(written, u"kv"_s), resolve(u"Host kv\n  HostName kv.example\n"_s, u"kv"_s));
    }

    /// ssh reads an uncommented line under "# Host gone" as part of the block above; this program
    /// files it under the disabled host and writes it commented out, so it stops applying to "keep".
    void uncommentedLineOfDisabledHostIsCommentedOut()
    {
        const QString config = u"Host keep\n  HostName keep.example\n# Host gone\n  User root2\n"_s;
        const QString written = SSHConfigParser {}.serialize(SSHConfigParser {}.parse(config).document);
        QVERIFY(written.contains(u"#   User root2"_s));
        QVERIFY(resolve(config, u"keep"_s).contains(u"user root2"_s));
        QVERIFY(!resolve(written, u"keep"_s).contains(u"user root2"_s));
    }

private:
    /// The lines `ssh -G -F file alias` prints for text written to a file in the test home.
    QStringList resolve(const QString& text, const QString& alias)
    {
        const QString path = m_home.filePath(u"config-under-test"_s);
        if (!writeBytes(path, text.toUtf8()))
            return { u"cannot write "_s + path };
        QProcess ssh;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"HOME"_s, m_home.path());
        ssh.setProcessEnvironment(environment);
        ssh.setStandardInputFile(QProcess::nullDevice());
        ssh.start(m_ssh, { u"-G"_s, u"-F"_s, path, alias });
        if (!ssh.waitForFinished(60000))
            return { u"ssh did not finish"_s };
        QStringList lines = QString::fromUtf8(ssh.readAllStandardOutput()).split(u'\n');
        lines.prepend(u"exit "_s + QString::number(ssh.exitCode()));
        return lines;
    }

    QTemporaryDir m_home;
    QString m_ssh;
};

QTEST_GUILESS_MAIN(TestSSHConfigOpenSSH)
#include "test_ssh_config_openssh.moc"
