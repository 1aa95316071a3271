// Terminal preference: restoring the stored choice, the fallbacks and what gets stored.

#include "ViewModelFixture.h"

using namespace Qt::StringLiterals;

namespace
{
const QString key = u"preferredTerminalBundleIdentifier"_s;
} // namespace

class TestViewModelTerminal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refresh_data()
    {
        QTest::addColumn<QList<TerminalApp>>("apps");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("selected");
        QTest::addColumn<QString>("storedAfter");
        QTest::newRow("first start chooses and stores Terminal") << QList<TerminalApp> { appleTerminalApp(),
            iTermApp() } << QString() << u"com.apple.Terminal"_s << u"com.apple.Terminal"_s;
        QTest::newRow("stored iTerm2 kept, store untouched")
            << QList<TerminalApp> { appleTerminalApp(), iTermApp() } << u"com.googlecode.iterm2"_s
            << u"com.googlecode.iterm2"_s << u"com.googlecode.iterm2"_s;
        QTest::newRow("uninstalled choice falls back to Terminal")
            << QList<TerminalApp> { appleTerminalApp(), iTermApp() } << u"dev.warp.Warp"_s << u"com.apple.Terminal"_s
            << u"com.apple.Terminal"_s;
        QTest::newRow("no Terminal: first app") << QList<TerminalApp> { warpApp(), iTermApp() } << u"gone"_s
                                                << u"dev.warp.Warp-Stable"_s << u"dev.warp.Warp-Stable"_s;
        QTest::newRow("stored choice compared case-sensitively")
            << QList<TerminalApp> { appleTerminalApp(), iTermApp() } << u"COM.GOOGLECODE.ITERM2"_s
            << u"com.apple.Terminal"_s << u"com.apple.Terminal"_s;
        QTest::newRow("nothing installed keeps the stored value")
            << QList<TerminalApp> {} << u"com.googlecode.iterm2"_s << QString() << u"com.googlecode.iterm2"_s;
        QTest::newRow("nothing installed, nothing stored")
            << QList<TerminalApp> {} << QString() << QString() << QString();
    }

    void refresh()
    {
        QFETCH(QList<TerminalApp>, apps);
        QFETCH(QString, stored);
        QFETCH(QString, selected);
        QFETCH(QString, storedAfter);
        ViewModelFixture fixture;
        fixture.discovery->apps = apps;
        if (!stored.isEmpty())
            fixture.defaults->setString(key, stored);
        SSHConfigViewModel& vm = fixture.make();
        QCOMPARE(vm.availableTerminalApps(), apps);
        QCOMPARE(vm.selectedTerminalBundleIdentifier(), selected);
        QCOMPARE(vm.selectedTerminalApp().has_value(), !selected.isEmpty());
        if (vm.selectedTerminalApp())
            QCOMPARE(vm.selectedTerminalApp()->bundleIdentifier(), selected);
        QCOMPARE(fixture.defaults->string(key).value_or(QString()), storedAfter);
        QCOMPARE(vm.statusMessage(), u"SSH configuratie geladen. known_hosts geladen."_s);
    }

    // A choice is stored, an unknown one changes nothing, and a new discovery without it falls back.
    void selectTerminal()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make();
        vm.selectTerminal(u"com.googlecode.iterm2"_s);
        QCOMPARE(vm.selectedTerminalBundleIdentifier(), u"com.googlecode.iterm2"_s);
        QCOMPARE(fixture.defaults->string(key), std::optional<QString>(u"com.googlecode.iterm2"_s));
        QCOMPARE(vm.selectedTerminalApp(), std::optional<TerminalApp>(iTermApp()));

        vm.selectTerminal(u"org.unknown"_s);
        QCOMPARE(vm.selectedTerminalBundleIdentifier(), u"com.googlecode.iterm2"_s);
        QCOMPARE(fixture.defaults->string(key), std::optional<QString>(u"com.googlecode.iterm2"_s));

        fixture.discovery->apps = { appleTerminalApp() };
        vm.refreshTerminalApps();
        QCOMPARE(fixture.discovery->calls, 2);
        QCOMPARE(vm.availableTerminalApps(), QList<TerminalApp> { appleTerminalApp() });
        QCOMPARE(vm.selectedTerminalBundleIdentifier(), u"com.apple.Terminal"_s);
        QCOMPARE(fixture.defaults->string(key), std::optional<QString>(u"com.apple.Terminal"_s));
    }
};

QTEST_GUILESS_MAIN(TestViewModelTerminal)
#include "test_view_model_terminal.moc"
