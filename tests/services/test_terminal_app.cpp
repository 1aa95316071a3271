#include "TerminalApp.h"
#include "TerminalLaunchError.h"

#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

using LaunchMode = TerminalApp::LaunchMode;
Q_DECLARE_METATYPE(LaunchMode)
Q_DECLARE_METATYPE(std::optional<LaunchMode>)

class TestTerminalApp : public QObject
{
    Q_OBJECT

private slots:
    void launchModeFromRawValue_data();
    void launchModeFromRawValue();
    void rawValueRoundTrips();
    void equalityCoversEveryField_data();
    void equalityCoversEveryField();
    void equalAppsHashEqually();
    void errorDescriptions_data();
    void errorDescriptions();
};

void TestTerminalApp::launchModeFromRawValue_data()
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

void TestTerminalApp::launchModeFromRawValue()
{
    QFETCH(QString, raw);
    QFETCH(std::optional<LaunchMode>, expected);
    QCOMPARE(TerminalApp::launchModeFromRawValue(raw), expected);
}

void TestTerminalApp::rawValueRoundTrips()
{
    for (LaunchMode mode : { LaunchMode::appleTerminal, LaunchMode::iTerm2, LaunchMode::warp, LaunchMode::generic,
             LaunchMode::commandLine }) {
        QCOMPARE(TerminalApp::launchModeFromRawValue(TerminalApp::rawValue(mode)), std::optional(mode));
    }
}

void TestTerminalApp::equalityCoversEveryField_data()
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

void TestTerminalApp::equalityCoversEveryField()
{
    QFETCH(TerminalApp, other);
    const TerminalApp base(u"dev.warp.Warp"_s, u"Warp"_s, LaunchMode::warp, u"warp"_s);
    QVERIFY(!(base == other));
    QVERIFY(base != other);
    QCOMPARE(QSet<TerminalApp>({ base, other }).size(), 2);
}

void TestTerminalApp::equalAppsHashEqually()
{
    TerminalApp first(u"org.gnome.Terminal"_s, u"Terminal"_s, LaunchMode::commandLine);
    first.setCommandPrefix({ u"gnome-terminal"_s, u"--"_s });
    TerminalApp second = first;
    QCOMPARE(first, second);
    QCOMPARE(qHash(first, 7), qHash(second, 7));
    second.setUriScheme(u"x"_s);
    QVERIFY(first != second);
}

void TestTerminalApp::errorDescriptions_data()
{
    QTest::addColumn<TerminalLaunchError>("error");
    QTest::addColumn<QString>("description");

    QTest::newRow("apple script") << TerminalLaunchError::appleScriptFailed(u"boom"_s)
                                  << u"Terminalscript mislukt: boom"_s;
    QTest::newRow("launch") << TerminalLaunchError::launchFailed(u"com.apple.Terminal"_s)
                            << u"Terminal app openen mislukt voor com.apple.Terminal."_s;
    QTest::newRow("warp config") << TerminalLaunchError::warpConfigWriteFailed(u"/tmp/x.yaml"_s)
                                 << u"Warp launch config schrijven mislukt op /tmp/x.yaml."_s;
    QTest::newRow("invalid uri") << TerminalLaunchError::invalidURI(u"a b://launch"_s)
                                 << u"Ongeldige URI: a b://launch"_s;
    QTest::newRow("uri open") << TerminalLaunchError::uriOpenFailed(u"warp://launch/tarnwick-connect"_s)
                              << u"Openen van URI mislukt: warp://launch/tarnwick-connect"_s;
}

void TestTerminalApp::errorDescriptions()
{
    QFETCH(TerminalLaunchError, error);
    QFETCH(QString, description);
    QCOMPARE(error.description(), description);
    QCOMPARE(QString::fromUtf8(error.what()), description);
}

QTEST_GUILESS_MAIN(TestTerminalApp)
#include "test_terminal_app.moc"
