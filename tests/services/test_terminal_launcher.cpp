#include "ServiceError.h"
#include "TerminalApps.h"
#include "TerminalLaunchError.h"
#include "TerminalLauncher.h"
#include "TestFiles.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

using LaunchMode = TerminalApp::LaunchMode;
Q_DECLARE_METATYPE(LaunchMode)
Q_DECLARE_METATYPE(std::optional<LaunchMode>)

namespace
{
/// Records every platform operation the launcher calls, in order, and fails the ones a test asks to fail.
struct RecordingPlatform
{
    QStringList calls;
    std::shared_ptr<ServiceError> scriptError;
    std::shared_ptr<ServiceError> openError;
    bool uriAccepted = true;
    bool processStarts = true;

    TerminalLauncher makeLauncher(const QString& home, const QString& warpDirectory)
    {
        return TerminalLauncher(
            { home, warpDirectory },
            [this](const QString& source) {
                calls << u"script:"_s + source;
                throwIfSet(scriptError);
            },
            [this](const QString& identifier) {
                calls << u"open:"_s + identifier;
                throwIfSet(openError);
            },
            [this](const QString& text) { calls << u"clipboard:"_s + text; },
            [this](const QUrl& uri) {
                calls << u"uri:"_s + uri.toString();
                return uriAccepted;
            },
            [this](const QString& program, const QStringList& arguments) {
                calls << u"process:"_s + program + u"|"_s + arguments.join(u'|');
                return processStarts;
            });
    }

    static void throwIfSet(const std::shared_ptr<ServiceError>& error)
    {
        if (auto* launchError = dynamic_cast<TerminalLaunchError*>(error.get()))
            throw *launchError;
        if (auto* platformError = dynamic_cast<PlatformError*>(error.get()))
            throw *platformError;
    }
};

QString terminalScript(const QString& escaped)
{
    return u"tell application \"Terminal\"\n    activate\n    do script \""_s + escaped + u"\"\nend tell"_s;
}

/// Runs launch and returns the description of the ServiceError it threw, or an empty text when it did not.
template<typename Launch> QString failureOf(Launch&& launch)
{
    try {
        launch();
    } catch (const ServiceError& error) {
        if (QString::fromUtf8(error.what()) != error.description())
            return u"what() differs from description(): "_s + QString::fromUtf8(error.what());
        return error.description();
    }
    return {};
}
} // namespace

class TestTerminalLauncher : public QObject
{
    Q_OBJECT

private slots:
    // The terminal description itself

    void launchModeFromRawValue_data()
    {
        QTest::addColumn<QString>("raw");
        QTest::addColumn<std::optional<LaunchMode>>("expected");

        QTest::newRow("appleTerminal") << u"appleTerminal"_s << std::optional(LaunchMode::appleTerminal);
        QTest::newRow("iTerm2") << u"iTerm2"_s << std::optional(LaunchMode::iTerm2);
        QTest::newRow("warp") << u"warp"_s << std::optional(LaunchMode::warp);
        QTest::newRow("generic") << u"generic"_s << std::optional(LaunchMode::generic);
        QTest::newRow("commandLine") << u"commandLine"_s << std::optional(LaunchMode::commandLine);
        QTest::newRow("case differs") << u"iterm2"_s << std::optional<LaunchMode>();
        QTest::newRow("leading blank") << u" warp"_s << std::optional<LaunchMode>();
        QTest::newRow("empty") << QString() << std::optional<LaunchMode>();
        QTest::newRow("case name spelled as Swift") << u"Warp"_s << std::optional<LaunchMode>();
    }

    void launchModeFromRawValue()
    {
        QFETCH(QString, raw);
        QFETCH(std::optional<LaunchMode>, expected);
        QCOMPARE(TerminalApp::launchModeFromRawValue(raw), expected);
        if (expected)
            QCOMPARE(TerminalApp::rawValue(*expected), raw);
    }

    void equalityCoversEveryField_data()
    {
        QTest::addColumn<TerminalApp>("other");

        const TerminalApp base(u"dev.warp.Warp"_s, u"Warp"_s, LaunchMode::warp, u"warp"_s);
        QTest::newRow("identifier") << TerminalApp(u"dev.warp.Warp-Stable"_s, u"Warp"_s, LaunchMode::warp, u"warp"_s);
        QTest::newRow("name") << TerminalApp(u"dev.warp.Warp"_s, u"warp"_s, LaunchMode::warp, u"warp"_s);
        QTest::newRow("mode") << TerminalApp(u"dev.warp.Warp"_s, u"Warp"_s, LaunchMode::generic, u"warp"_s);
        QTest::newRow("scheme") << TerminalApp(u"dev.warp.Warp"_s, u"Warp"_s, LaunchMode::warp, u"warppreview"_s);
        QTest::newRow("no scheme") << TerminalApp(u"dev.warp.Warp"_s, u"Warp"_s, LaunchMode::warp);
        QTest::newRow("empty scheme") << TerminalApp(u"dev.warp.Warp"_s, u"Warp"_s, LaunchMode::warp, QString());
        TerminalApp withPrefix = base;
        withPrefix.setCommandPrefix({ u"warp"_s });
        QTest::newRow("command prefix") << withPrefix;
    }

    void equalityCoversEveryField()
    {
        QFETCH(TerminalApp, other);
        const TerminalApp base(u"dev.warp.Warp"_s, u"Warp"_s, LaunchMode::warp, u"warp"_s);
        QVERIFY(!(base == other));
        QVERIFY(base != other);
        QCOMPARE(QSet<TerminalApp>({ base, other }).size(), 2);
        const TerminalApp copy = other; // NOLINT(performance-unnecessary-copy-initialization): the copy is under test
        QCOMPARE(copy, other);
        QCOMPARE(qHash(copy, 7), qHash(other, 7));
    }

    // Launching

    void init()
    {
        m_platform = RecordingPlatform();
        QVERIFY(m_dir.isValid());
        // Every test starts without a Warp directory.
        QVERIFY(QDir(m_dir.path()).removeRecursively());
        QVERIFY(QDir().mkpath(m_dir.path()));
        m_warpDirectory = m_dir.filePath(u"home/.warp/launch_configurations"_s);
    }

    // AppleScript modes

    void terminalScriptEscapesTheCommand_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("escaped");

        QTest::newRow("plain command unchanged") << u"ssh web-01"_s << u"ssh web-01"_s;
        QTest::newRow("double quote") << u"ssh \"my host\""_s << u"ssh \\\"my host\\\""_s;
        QTest::newRow("backslash doubled") << u"ssh a\\b"_s << u"ssh a\\\\b"_s;
        QTest::newRow("backslash before quote") << u"x\\\"y"_s << u"x\\\\\\\"y"_s;
        QTest::newRow("single quotes pass") << u"ssh -p 22 'web 01'"_s << u"ssh -p 22 'web 01'"_s;
        QTest::newRow("line feed passes") << u"ssh a\nb"_s << u"ssh a\nb"_s;
        QTest::newRow("non-ascii passes") << u"ssh ümlaut"_s << u"ssh ümlaut"_s;
    }

    void terminalScriptEscapesTheCommand()
    {
        QFETCH(QString, command);
        QFETCH(QString, escaped);
        TerminalLauncher launcher = m_platform.makeLauncher(u"/home/u"_s, m_warpDirectory);

        QCOMPARE(launcher.launch(appleTerminalApp(), command), false);
        QCOMPARE(m_platform.calls, QStringList { u"script:"_s + terminalScript(escaped) });
    }

    void iTermScriptIsExact()
    {
        TerminalLauncher launcher = m_platform.makeLauncher(u"/home/u"_s, m_warpDirectory);
        QCOMPARE(launcher.launch(iTermApp(), u"ssh \"a\""_s), false);

        const QString expected = u"tell application \"iTerm\"\n"
                                 u"    activate\n"
                                 u"    if (count of windows) = 0 then\n"
                                 u"        create window with default profile\n"
                                 u"    end if\n"
                                 u"    tell current window\n"
                                 u"        create tab with default profile\n"
                                 u"        tell current session to write text \"ssh \\\"a\\\"\"\n"
                                 u"    end tell\n"
                                 u"end tell"_s;
        QCOMPARE(m_platform.calls, QStringList { u"script:"_s + expected });
    }

    void scriptFailureIsPassedOn_data()
    {
        QTest::addColumn<std::shared_ptr<ServiceError>>("error");
        QTest::addColumn<QString>("description");

        QTest::newRow("other script error") << std::shared_ptr<ServiceError>(
            new TerminalLaunchError(TerminalLaunchError::appleScriptFailed(u"{NSAppleScriptErrorNumber = -2741;}"_s)))
                                            << u"Terminalscript mislukt: {NSAppleScriptErrorNumber = -2741;}"_s;
        QTest::newRow("refusal text in a platform error is no refusal")
            << std::shared_ptr<ServiceError>(new PlatformError(u"-1743"_s)) << u"-1743"_s;
        QTest::newRow("refusal text in another case is no refusal")
            << std::shared_ptr<ServiceError>(new TerminalLaunchError(TerminalLaunchError::launchFailed(u"-1743"_s)))
            << u"Terminal app openen mislukt voor -1743."_s;
    }

    void scriptFailureIsPassedOn()
    {
        QFETCH(std::shared_ptr<ServiceError>, error);
        QFETCH(QString, description);
        m_platform.scriptError = error;
        TerminalLauncher launcher = m_platform.makeLauncher(u"/home/u"_s, m_warpDirectory);

        QCOMPARE(failureOf([&] { launcher.launch(appleTerminalApp(), u"ssh web"_s); }), description);
        QCOMPARE(m_platform.calls.size(), 1);
        QVERIFY(m_platform.calls.constFirst().startsWith(u"script:"_s));
    }

    void refusalFallsBackToClipboard_data()
    {
        QTest::addColumn<TerminalApp>("app");
        QTest::addColumn<QString>("message");

        QTest::newRow("not authorized, mixed case")
            << appleTerminalApp() << u"Tarnwick is Not Authorized To Send Apple Events to Terminal."_s;
        QTest::newRow("quoted error number")
            << appleTerminalApp() << u"{\n    NSAppleScriptErrorNumber = \"-1743\";\n}"_s;
        QTest::newRow("bare error number") << iTermApp() << u"{ NSAppleScriptErrorNumber = -1743; }"_s;
        QTest::newRow("number anywhere") << iTermApp() << u"error -1743 happened"_s;
    }

    void refusalFallsBackToClipboard()
    {
        QFETCH(TerminalApp, app);
        QFETCH(QString, message);
        m_platform.scriptError = std::make_shared<TerminalLaunchError>(TerminalLaunchError::appleScriptFailed(message));
        TerminalLauncher launcher = m_platform.makeLauncher(u"/home/u"_s, m_warpDirectory);

        QCOMPARE(launcher.launch(app, u"ssh \"q\" a\\b"_s), true);
        QCOMPARE(m_platform.calls.size(), 3);
        QVERIFY(m_platform.calls[0].startsWith(u"script:"_s));
        QCOMPARE(m_platform.calls[1], u"open:"_s + app.bundleIdentifier());
        QCOMPARE(m_platform.calls[2], u"clipboard:ssh \"q\" a\\b"_s);
    }

    // The clipboard is touched only after the app opened: a failing opener leaves it alone.
    void failingOpenerLeavesTheClipboard_data()
    {
        QTest::addColumn<TerminalApp>("app");
        QTest::addColumn<std::shared_ptr<ServiceError>>("openError");
        QTest::addColumn<QString>("description");

        QTest::newRow("refused script, open exits non-zero")
            << appleTerminalApp()
            << std::shared_ptr<ServiceError>(
                   new TerminalLaunchError(TerminalLaunchError::launchFailed(u"com.apple.Terminal"_s)))
            << u"Terminal app openen mislukt voor com.apple.Terminal."_s;
        QTest::newRow("refused script, open cannot start")
            << appleTerminalApp() << std::shared_ptr<ServiceError>(new PlatformError(u"No such file or directory"_s))
            << u"No such file or directory"_s;
        QTest::newRow("generic, open fails") << TerminalApp(u"com.example.Term"_s, u"Term"_s, LaunchMode::generic)
                                             << std::shared_ptr<ServiceError>(new TerminalLaunchError(
                                                    TerminalLaunchError::launchFailed(u"com.example.Term"_s)))
                                             << u"Terminal app openen mislukt voor com.example.Term."_s;
    }

    void failingOpenerLeavesTheClipboard()
    {
        QFETCH(TerminalApp, app);
        QFETCH(std::shared_ptr<ServiceError>, openError);
        QFETCH(QString, description);
        m_platform.scriptError
            = std::make_shared<TerminalLaunchError>(TerminalLaunchError::appleScriptFailed(u"-1743"_s));
        m_platform.openError = openError;
        TerminalLauncher launcher = m_platform.makeLauncher(u"/home/u"_s, m_warpDirectory);

        QCOMPARE(failureOf([&] { launcher.launch(app, u"ssh web"_s); }), description);
        QCOMPARE(m_platform.calls.constLast(), u"open:"_s + app.bundleIdentifier());
        QVERIFY(!m_platform.calls.join(u'\n').contains(u"clipboard:"_s));
    }

    void missingScriptRunnerFails()
    {
        TerminalLauncher launcher({}, {}, {}, {}, {});
        QCOMPARE(failureOf([&] { launcher.launch(iTermApp(), u"ssh web"_s); }),
            u"Terminalscript mislukt: Geen scriptomgeving beschikbaar."_s);
    }

    // generic mode

    void genericOpensThenCopies()
    {
        TerminalLauncher launcher = m_platform.makeLauncher(u"/home/u"_s, m_warpDirectory);
        const TerminalApp app(u"com.example.Term"_s, u"Term"_s, LaunchMode::generic);

        QCOMPARE(launcher.launch(app, u"ssh \"x\""_s), true);
        QCOMPARE(m_platform.calls, (QStringList { u"open:com.example.Term"_s, u"clipboard:ssh \"x\""_s }));
    }

    // Warp

    void warpWritesConfigurationAndOpensUri_data()
    {
        QTest::addColumn<std::optional<QString>>("scheme");
        QTest::addColumn<QString>("home");
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("uri");
        QTest::addColumn<QString>("layout"); // the cwd and exec lines as written

        const QString plainLayout = u"          cwd: \"/home/user\"\n          commands:\n"
                                    u"            - exec: \"ssh -p 2222 web-01\""_s;
        QTest::newRow("warp") << std::optional<QString>(u"warp"_s) << u"/home/user"_s << u"ssh -p 2222 web-01"_s
                              << u"warp://launch/tarnwick-connect"_s << plainLayout;
        QTest::newRow("preview") << std::optional<QString>(u"warppreview"_s) << u"/home/user"_s
                                 << u"ssh -p 2222 web-01"_s << u"warppreview://launch/tarnwick-connect"_s
                                 << plainLayout;
        QTest::newRow("no scheme means warp") << std::optional<QString>() << u"/home/user"_s << u"ssh -p 2222 web-01"_s
                                              << u"warp://launch/tarnwick-connect"_s << plainLayout;
        QTest::newRow("quotes and backslashes escaped")
            << std::optional<QString>(u"warp"_s) << u"/home/Jan \"JJ\" de\\Vries"_s << u"ssh 'a\"b'"_s
            << u"warp://launch/tarnwick-connect"_s
            << u"          cwd: \"/home/Jan \\\"JJ\\\" de\\\\Vries\"\n          commands:\n"
               u"            - exec: \"ssh 'a\\\"b'\""_s;
    }

    void warpWritesConfigurationAndOpensUri()
    {
        QFETCH(std::optional<QString>, scheme);
        QFETCH(QString, home);
        QFETCH(QString, command);
        QFETCH(QString, uri);
        QFETCH(QString, layout);
        // The launch configuration folder does not exist yet: the launcher makes it.
        QVERIFY(!QFileInfo::exists(QFileInfo(m_warpDirectory).path()));
        TerminalLauncher launcher = m_platform.makeLauncher(home, m_warpDirectory);

        QCOMPARE(launcher.launch(TerminalApp(u"dev.warp.Warp"_s, u"Warp"_s, LaunchMode::warp, scheme), command), false);
        QCOMPARE(m_platform.calls, QStringList { u"uri:"_s + uri });
        const QString expected = u"---\n"
                                 u"name: Tarnwick Connect\n"
                                 u"windows:\n"
                                 u"  - tabs:\n"
                                 u"      - title: SSH Connect\n"
                                 u"        layout:\n"_s
            + layout;
        QCOMPARE(QString::fromUtf8(readBytes(m_warpDirectory + u"/tarnwick-connect.yaml"_s)), expected);
    }

    void secondWarpLaunchReplacesFirst()
    {
        TerminalLauncher launcher = m_platform.makeLauncher(u"/home/user"_s, m_warpDirectory);
        const TerminalApp warp(u"dev.warp.Warp"_s, u"Warp"_s, LaunchMode::warp, u"warp"_s);
        launcher.launch(warp, u"ssh a-very-long-first-host-name-indeed"_s);
        launcher.launch(warp, u"ssh b"_s);

        QVERIFY(QString::fromUtf8(readBytes(m_warpDirectory + u"/tarnwick-connect.yaml"_s))
                    .endsWith(u"- exec: \"ssh b\""_s));
        QCOMPARE(
            QDir(m_warpDirectory).entryList(QDir::Files | QDir::Hidden), QStringList { u"tarnwick-connect.yaml"_s });
    }

    void warpDirectoryThatCannotBeMadeIsPlatformError()
    {
        QVERIFY(writeBytes(m_dir.filePath(u"blocker"_s), {}));
        const QString directory = m_dir.filePath(u"blocker/launch_configurations"_s);
        TerminalLauncher launcher = m_platform.makeLauncher(u"/home/user"_s, directory);

        try {
            launcher.launch(TerminalApp(u"dev.warp.Warp"_s, u"Warp"_s, LaunchMode::warp), u"ssh a"_s);
            QFAIL("launch succeeded");
        } catch (const PlatformError& error) {
            QVERIFY2(error.description().contains(directory), qPrintable(error.description()));
        }
        QVERIFY(m_platform.calls.isEmpty());
    }

    void warpFileThatCannotBeWrittenFails()
    {
        // The configuration's path is taken by a directory, so the atomic write cannot replace it.
        QVERIFY(QDir().mkpath(m_warpDirectory + u"/tarnwick-connect.yaml/inner"_s));
        TerminalLauncher launcher = m_platform.makeLauncher(u"/home/user"_s, m_warpDirectory);

        QCOMPARE(
            failureOf([&] { launcher.launch(TerminalApp(u"dev.warp.Warp"_s, u"Warp"_s, LaunchMode::warp), u"ssh"_s); }),
            u"Warp launch config schrijven mislukt op "_s + m_warpDirectory + u"/tarnwick-connect.yaml."_s);
        QVERIFY(m_platform.calls.isEmpty());
        QVERIFY(QFileInfo(m_warpDirectory + u"/tarnwick-connect.yaml/inner"_s).isDir());
    }

    void warpInvalidUri_data()
    {
        QTest::addColumn<QString>("scheme");

        QTest::newRow("empty scheme") << QString();
        QTest::newRow("blank in scheme") << u"wa rp"_s;
        QTest::newRow("scheme starts with digit") << u"1warp"_s;
    }

    void warpInvalidUri()
    {
        QFETCH(QString, scheme);
        TerminalLauncher launcher = m_platform.makeLauncher(u"/home/user"_s, m_warpDirectory);
        const TerminalApp app(u"dev.warp.Warp"_s, u"Warp"_s, LaunchMode::warp, scheme);

        QCOMPARE(failureOf([&] { launcher.launch(app, u"ssh a"_s); }),
            u"Ongeldige URI: "_s + scheme + u"://launch/tarnwick-connect"_s);
        QVERIFY(m_platform.calls.isEmpty());
        // The configuration is written before the URI is made.
        QVERIFY(QFileInfo(m_warpDirectory + u"/tarnwick-connect.yaml"_s).isFile());
    }

    void warpRefusedUri()
    {
        m_platform.uriAccepted = false;
        TerminalLauncher launcher = m_platform.makeLauncher(u"/home/user"_s, m_warpDirectory);
        const TerminalApp app(u"dev.warp.Warp-Preview"_s, u"Warp Preview"_s, LaunchMode::warp, u"warppreview"_s);

        QCOMPARE(failureOf([&] { launcher.launch(app, u"ssh a"_s); }),
            u"Openen van URI mislukt: warppreview://launch/tarnwick-connect"_s);
        QCOMPARE(m_platform.calls, QStringList { u"uri:warppreview://launch/tarnwick-connect"_s });
    }

    // command-line terminals

    void commandLineStartsProgramWithScript()
    {
        TerminalApp app(u"debian-xterm"_s, u"XTerm"_s, LaunchMode::commandLine);
        app.setCommandPrefix({ u"/usr/bin/xterm"_s, u"-e"_s });
        TerminalLauncher launcher = m_platform.makeLauncher(u"/home/user"_s, m_warpDirectory);

        QCOMPARE(launcher.launch(app, u"ssh -p 2222 'web 01'"_s), false);
        const QString script
            = u"ssh -p 2222 'web 01'\n"
              u"status=$?\n"
              u"printf '\\n%s ' \"Verbinding beëindigd (code $status). Druk op Enter om dit venster te "
              u"sluiten.\"\n"
              u"read -r _\n"
              u"exit \"$status\""_s;
        QCOMPARE(m_platform.calls, QStringList { u"process:/usr/bin/xterm|-e|sh|-c|"_s + script });
    }

    void commandLineFailures_data()
    {
        QTest::addColumn<QStringList>("prefix");
        QTest::addColumn<bool>("processStarts");

        QTest::newRow("program does not start") << QStringList { u"/usr/bin/xterm"_s, u"-e"_s } << false;
        QTest::newRow("no program known") << QStringList() << true;
        QTest::newRow("empty program") << QStringList { QString() } << true;
    }

    void commandLineFailures()
    {
        QFETCH(QStringList, prefix);
        QFETCH(bool, processStarts);
        m_platform.processStarts = processStarts;
        TerminalApp app(u"org.gnome.Terminal"_s, u"Terminal"_s, LaunchMode::commandLine);
        app.setCommandPrefix(prefix);
        TerminalLauncher launcher = m_platform.makeLauncher(u"/home/user"_s, m_warpDirectory);

        QCOMPARE(failureOf([&] { launcher.launch(app, u"ssh a"_s); }),
            u"Terminal app openen mislukt voor org.gnome.Terminal."_s);
        QVERIFY(!m_platform.calls.join(u'\n').contains(u"clipboard:"_s));
    }

private:
    QTemporaryDir m_dir;
    RecordingPlatform m_platform;
    QString m_warpDirectory;
};

QTEST_GUILESS_MAIN(TestTerminalLauncher)
#include "test_terminal_launcher.moc"
