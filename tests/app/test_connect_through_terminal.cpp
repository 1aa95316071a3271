// Connect through the real launcher: a commandLine terminal stand-in runs the session script it is given,
// with a stand-in ssh first on its PATH that records the arguments it receives. An ordinary name reaches
// ssh as exactly the words the command names; a hostile one is refused before any process starts.

#include "ViewModelFixture.h"

#include "SSHFileService.h"
#include "ShellQuoting.h"
#include "TerminalLauncher.h"

#include <QProcess>

using namespace Qt::StringLiterals;

namespace
{

bool writeExecutable(const QString& path, const QString& text)
{
    return writeBytes(path, text.toUtf8())
        && QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

/// Starts the terminal as the desktop's own process starter does: detached, input from the null device
/// (so the session's closing "press Enter" returns at once), and counts the starts.
TerminalLauncher::ProcessStarter countingDetachedStarter(const QString& workingDirectory, int& starts)
{
    return [workingDirectory, &starts](const QString& program, const QStringList& arguments) {
        ++starts;
        QProcess process;
        process.setProgram(program);
        process.setArguments(arguments);
        process.setWorkingDirectory(workingDirectory);
        process.setStandardInputFile(QProcess::nullDevice());
        return process.startDetached();
    };
}

/// A commandLine terminal made of two scripts in the fixture's directory: "terminal" runs what it is given
/// with "bin" first on PATH, its output kept to itself as a terminal window would, and "bin/ssh" writes each argument
/// it receives as "[argument]" on a line.
struct StandInTerminal
{
    explicit StandInTerminal(const QString& directory)
        : bin(directory + u"/bin"_s)
        , program(directory + u"/terminal"_s)
        , record(directory + u"/ssh-arguments"_s)
    { }

    bool write() const
    {
        // The record appears whole or not at all, so waiting for it never reads half of it.
        const QString part = shellQuoted(QString(record + u".part"_s));
        return writeExecutable(bin + u"/ssh"_s,
                   u"#!/bin/sh\nfor a in \"$@\"; do printf '[%s]\\n' \"$a\"; done > "_s + part + u"\nmv "_s + part
                       + u' ' + shellQuoted(record) + u'\n')
            && writeExecutable(program,
                u"#!/bin/sh\nPATH="_s + shellQuoted(bin) + u":\"$PATH\"\nexport PATH\nexec \"$@\" >/dev/null 2>&1\n"_s);
    }

    TerminalApp app() const
    {
        TerminalApp standIn(u"org.example.StandIn"_s, u"Stand-in"_s, TerminalApp::LaunchMode::commandLine);
        standIn.setCommandPrefix({ program });
        return standIn;
    }

    QString bin;
    QString program;
    QString record;
};

// "config" and "known_hosts" write name into the file; "editor" stores it through the host editor.
void prepareSource(ViewModelFixture& fixture, const QString& source, const QString& name)
{
    if (source == u"config"_s)
        fixture.writeConfig(u"Host "_s + name + u'\n');
    if (source == u"known_hosts"_s)
        fixture.writeKnownHosts(name + u" ssh-ed25519 AAAA\n"_s);
}

void selectEditedHost(SSHConfigViewModel& vm, const QString& source, const QString& name)
{
    if (source != u"editor"_s)
        return;
    vm.addHost();
    vm.updateHost(SSHHost({ name }, {}, true, {}), *vm.selectedHostIndex());
    vm.setSelectedHostID(vm.document().hosts.last().id());
}

} // namespace

class TestConnectThroughTerminal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void connect_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("arguments"); // empty: refused, nothing started
        QTest::addColumn<QString>("status");
        const QString started = u"Verbinding gestart in Stand-in: "_s;
        QTest::newRow("config alias") << u"config"_s << u"web-01"_s << QStringList { u"web-01"_s }
                                      << started + u"web-01"_s;
        QTest::newRow("config alias with a quote")
            << u"config"_s << u"it's"_s << QStringList { u"it's"_s } << started + u"it's"_s;
        QTest::newRow("editor alias with shell words")
            << u"editor"_s << u"a b; touch pwned"_s << QStringList { u"a b; touch pwned"_s }
            << started + u"a b; touch pwned"_s;
        QTest::newRow("known_hosts user at host") << u"known_hosts"_s << u"deploy@build7"_s
                                                  << QStringList { u"deploy@build7"_s } << started + u"deploy@build7"_s;
        QTest::newRow("known_hosts port")
            << u"known_hosts"_s << u"[gitbox]:2222"_s << QStringList { u"-p"_s, u"2222"_s, u"gitbox"_s }
            << started + u"gitbox:2222"_s;
        const QString dash = u"\") begint met \"-\" en zou door ssh als optie gelezen worden; niet verbonden."_s;
        QTest::newRow("config option") << u"config"_s << u"-oProxyCommand=touch${IFS}pwned"_s << QStringList()
                                       << u"Deze hostnaam (\"-oProxyCommand=touch${IFS}pwned"_s + dash;
        QTest::newRow("known_hosts bracketed option")
            << u"known_hosts"_s << u"[-oProxyCommand=touch${IFS}pwned]:22"_s << QStringList()
            << u"Deze hostnaam (\"-oProxyCommand=touch${IFS}pwned"_s + dash;
        QTest::newRow("editor line break") << u"editor"_s << u"web\ntouch pwned"_s << QStringList()
                                           << u"Deze hostnaam bevat een stuurteken (U+000A) en kan niet veilig aan "
                                              u"ssh worden doorgegeven; niet verbonden."_s;
        QTest::newRow("editor 200,000 characters") << u"editor"_s << QString(200'000, u'a') << QStringList()
                                                   << u"Deze hostnaam (\""_s + QString(40, u'a')
                + u"…\") is te lang om aan ssh door te geven (200000 tekens, hooguit 1024); niet verbonden."_s;
    }

    void connect()
    {
        QFETCH(QString, source);
        QFETCH(QString, name);
        QFETCH(QStringList, arguments);
        QFETCH(QString, status);
        ViewModelFixture fixture;
        const StandInTerminal terminal(fixture.directory.path());
        QVERIFY(terminal.write());
        fixture.discovery->apps = { terminal.app() };
        prepareSource(fixture, source, name);
        int starts = 0;
        auto launcher = std::make_shared<TerminalLauncher>(TerminalLauncher::WarpLocations {}, nullptr, nullptr,
            nullptr, nullptr, countingDetachedStarter(fixture.directory.path(), starts));
        auto files = std::make_shared<SSHFileService>(fixture.configPath(), fixture.knownHostsPath(), FileManager());
        SSHConfigViewModel vm(files, fixture.discovery, launcher, fixture.defaults);
        selectEditedHost(vm, source, name);

        if (source == u"known_hosts"_s)
            vm.connectSelectedKnownHostEntry();
        else
            vm.connectSelectedHost();

        QCOMPARE(vm.statusMessage(), status);
        if (arguments.isEmpty()) {
            // Refused before the launch: no terminal started, so nothing can reach ssh later either.
            QCOMPARE(starts, 0);
            QVERIFY(!QFileInfo::exists(terminal.record));
            return;
        }
        QCOMPARE(starts, 1);
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(terminal.record), 60000);
        QStringList expected;
        for (const QString& argument : arguments)
            expected.append(u'[' + argument + u"]\n"_s);
        QCOMPARE(QString::fromUtf8(readBytes(terminal.record)), expected.join(QString()));
        QVERIFY(!QFileInfo::exists(fixture.directory.filePath(u"pwned"_s)));
    }
};

QTEST_GUILESS_MAIN(TestConnectThroughTerminal)
#include "test_connect_through_terminal.moc"
