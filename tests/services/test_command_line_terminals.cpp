#include "CommandLineTerminalDiscovery.h"
#include "DefaultTerminalServices.h"
#include "TerminalLaunchError.h"
#include "TerminalLauncher.h"
#include "XdgApplicationLocator.h"
#include "XdgDataFixture.h"

#include <QTest>

using namespace Qt::StringLiterals;

using LaunchMode = TerminalApp::LaunchMode;

namespace
{
/// Programs are "installed" when a test says so; they resolve to a path under /opt/bin.
struct FakePrograms
{
    QStringList installed;

    CommandLineTerminalDiscovery::ExecutableFinder finder() const
    {
        return [this](const QString& program) {
            const QString name = program.section(u'/', -1);
            return installed.contains(name) ? u"/opt/bin/"_s + name : QString();
        };
    }

    /// Discovery over the entries in xdg, read in locale, with these programs.
    CommandLineTerminalDiscovery discoveryOver(const XdgDataFixture& xdg, const QString& locale = u"C"_s) const
    {
        return CommandLineTerminalDiscovery(
            std::make_shared<XdgApplicationLocator>(xdg.applicationDirectories(), locale), finder());
    }
};

QStringList identifiersOf(const QList<TerminalApp>& apps)
{
    QStringList identifiers;
    for (const TerminalApp& app : apps)
        identifiers << app.bundleIdentifier();
    return identifiers;
}

/// Desktop entries for every known terminal emulator, as their packages ship them.
void installEveryTerminal(const XdgDataFixture& xdg, FakePrograms& programs)
{
    const QList<std::pair<QString, QByteArray>> entries {
        { u"org.gnome.Terminal"_s, XdgDataFixture::entry(u"Terminal"_s, u"gnome-terminal --window"_s) },
        { u"org.gnome.Ptyxis"_s, XdgDataFixture::entry(u"Ptyxis"_s, u"ptyxis --new-window"_s) },
        { u"org.gnome.Console"_s, XdgDataFixture::entry(u"Console"_s, u"kgx"_s) },
        { u"org.kde.konsole"_s, XdgDataFixture::entry(u"Konsole"_s, u"konsole"_s) },
        { u"xfce4-terminal"_s, XdgDataFixture::entry(u"Xfce Terminal"_s, u"xfce4-terminal"_s) },
        { u"com.gexperts.Tilix"_s, XdgDataFixture::entry(u"Tilix"_s, u"tilix --action=app-new-window"_s) },
        { u"kitty"_s, XdgDataFixture::entry(u"kitty"_s, u"kitty"_s) },
        { u"Alacritty"_s, XdgDataFixture::entry(u"Alacritty"_s, u"alacritty"_s) },
        { u"org.wezfurlong.wezterm"_s, XdgDataFixture::entry(u"WezTerm"_s, u"wezterm start --cwd ."_s) },
        { u"foot"_s, XdgDataFixture::entry(u"Foot"_s, u"foot"_s) },
        { u"debian-xterm"_s, XdgDataFixture::entry(u"XTerm"_s, u"xterm"_s) },
    };
    for (const auto& [id, content] : entries)
        xdg.writeEntry(2, id, content);
    programs.installed << u"gnome-terminal"_s << u"ptyxis"_s << u"kgx"_s << u"konsole"_s << u"xfce4-terminal"_s
                       << u"tilix"_s << u"kitty"_s << u"alacritty"_s << u"wezterm"_s << u"foot"_s << u"xterm"_s;
}
} // namespace

class TestCommandLineTerminals : public QObject
{
    Q_OBJECT

private slots:
    void discoversInTableOrderWithEntryNames()
    {
        XdgDataFixture xdg;
        FakePrograms programs;
        installEveryTerminal(xdg, programs);
        xdg.writeEntry(0, u"org.gnome.Terminal"_s,
            "[Desktop Entry]\nName=Terminal\nName[nl]=Terminalvenster\nExec=gnome-terminal\n");
        const CommandLineTerminalDiscovery discovery = programs.discoveryOver(xdg, u"nl_NL.UTF-8"_s);

        const QList<TerminalApp> apps = discovery.discoverTerminalApps();
        QCOMPARE(identifiersOf(apps),
            (QStringList { u"org.gnome.Terminal"_s, u"org.gnome.Ptyxis"_s, u"org.gnome.Console"_s, u"org.kde.konsole"_s,
                u"xfce4-terminal"_s, u"com.gexperts.Tilix"_s, u"kitty"_s, u"Alacritty"_s, u"org.wezfurlong.wezterm"_s,
                u"foot"_s, u"debian-xterm"_s }));
        QStringList names;
        for (const TerminalApp& app : apps) {
            names << app.displayName();
            QCOMPARE(app.launchMode(), LaunchMode::commandLine);
            QCOMPARE(app.uriScheme(), std::optional<QString>());
        }
        QCOMPARE(names,
            (QStringList { u"Terminalvenster"_s, u"Ptyxis"_s, u"Console"_s, u"Konsole"_s, u"Xfce Terminal"_s,
                u"Tilix"_s, u"kitty"_s, u"Alacritty"_s, u"WezTerm"_s, u"Foot"_s, u"XTerm"_s }));
    }

    void builtInTerminalsComeFirst()
    {
        XdgDataFixture xdg;
        xdg.writeEntry(2, u"debian-xterm"_s, XdgDataFixture::entry(u"XTerm"_s, u"sh"_s));
        xdg.writeEntry(2, u"kitty"_s, XdgDataFixture::entry(u"kitty"_s, u"sh"_s));
        xdg.writeEntry(1, u"dev.warp.Warp"_s, XdgDataFixture::entry(u"Warp"_s, u"sh"_s));
        xdg.writeEntry(0, u"dev.warp.Warp-Preview"_s, XdgDataFixture::entry(u"Warp Preview"_s, u"sh"_s));

        // The application's own discoverer, reading the XDG variables the fixture set.
        const QList<TerminalApp> apps = makeDefaultTerminalDiscovery()->discoverTerminalApps();
        QCOMPARE(identifiersOf(apps),
            (QStringList { u"dev.warp.Warp"_s, u"dev.warp.Warp-Preview"_s, u"kitty"_s, u"debian-xterm"_s }));
        QCOMPARE(apps[0], TerminalApp(u"dev.warp.Warp"_s, u"Warp"_s, LaunchMode::warp, u"warp"_s));
        QCOMPARE(
            apps[1], TerminalApp(u"dev.warp.Warp-Preview"_s, u"Warp Preview"_s, LaunchMode::warp, u"warppreview"_s));
        QCOMPARE(apps[3].commandPrefix(), (QStringList { findExecutableProgram(u"sh"_s), u"-e"_s }));
    }

    void firstInstalledIdOfATerminalWins()
    {
        XdgDataFixture xdg;
        FakePrograms programs { { u"alacritty"_s, u"xterm"_s } };
        xdg.writeEntry(2, u"org.alacritty.Alacritty"_s, XdgDataFixture::entry(u"Alacritty (new)"_s, u"alacritty"_s));
        xdg.writeEntry(2, u"Alacritty"_s, XdgDataFixture::entry(u"Alacritty"_s, u"alacritty"_s));
        xdg.writeEntry(2, u"xterm"_s, XdgDataFixture::entry(u"xterm"_s, u"xterm"_s));
        const CommandLineTerminalDiscovery discovery = programs.discoveryOver(xdg);

        QCOMPARE(identifiersOf(discovery.discoverTerminalApps()), (QStringList { u"Alacritty"_s, u"xterm"_s }));
    }

    void entryWithoutProgramIsSkipped_data()
    {
        QTest::addColumn<QByteArray>("content");

        QTest::newRow("program not installed") << XdgDataFixture::entry(u"Konsole"_s, u"konsole"_s);
        QTest::newRow("no Exec") << QByteArray("[Desktop Entry]\nName=Konsole\n");
        QTest::newRow("broken Exec") << XdgDataFixture::entry(u"Konsole"_s, u"\"konsole"_s);
        QTest::newRow("hidden") << QByteArray(XdgDataFixture::entry(u"Konsole"_s, u"kitty"_s) + "Hidden=true\n");
    }

    void entryWithoutProgramIsSkipped()
    {
        QFETCH(QByteArray, content);
        XdgDataFixture xdg;
        FakePrograms programs { { u"kitty"_s } };
        xdg.writeEntry(2, u"org.kde.konsole"_s, content);
        xdg.writeEntry(2, u"kitty"_s, XdgDataFixture::entry(u"kitty"_s, u"kitty"_s));
        const CommandLineTerminalDiscovery discovery = programs.discoveryOver(xdg);

        QCOMPARE(identifiersOf(discovery.discoverTerminalApps()), QStringList { u"kitty"_s });
    }

    void defaultTerminalOnlyWhenNothingElse()
    {
        XdgDataFixture xdg;
        FakePrograms programs { { u"x-terminal-emulator"_s } };
        const auto locator = std::make_shared<XdgApplicationLocator>(xdg.applicationDirectories(), u"C"_s);

        TerminalApp expected(u"x-terminal-emulator"_s, u"Standaardterminal"_s, LaunchMode::commandLine);
        expected.setCommandPrefix({ u"/opt/bin/x-terminal-emulator"_s, u"-e"_s });
        QCOMPARE(CommandLineTerminalDiscovery(locator, programs.finder()).discoverTerminalApps(),
            QList<TerminalApp> { expected });

        programs.installed << u"foot"_s;
        xdg.writeEntry(1, u"foot"_s, XdgDataFixture::entry(u"Foot"_s, u"foot"_s));
        QCOMPARE(identifiersOf(CommandLineTerminalDiscovery(locator, programs.finder()).discoverTerminalApps()),
            QStringList { u"foot"_s });

        programs.installed.clear();
        QVERIFY(CommandLineTerminalDiscovery(locator, programs.finder()).discoverTerminalApps().isEmpty());
    }

    void flatpakEntryKeepsItsRunArguments()
    {
        XdgDataFixture xdg;
        FakePrograms programs { { u"flatpak"_s } };
        xdg.writeEntry(0, u"org.gnome.Ptyxis"_s,
            XdgDataFixture::entry(u"Ptyxis"_s,
                u"/usr/bin/flatpak run --branch=stable --command=ptyxis "
                u"org.gnome.Ptyxis --new-window @@u %U @@"_s));
        const CommandLineTerminalDiscovery discovery = programs.discoveryOver(xdg);

        const QList<TerminalApp> apps = discovery.discoverTerminalApps();
        QCOMPARE(apps.size(), 1);
        QCOMPARE(apps[0].commandPrefix(),
            (QStringList { u"/opt/bin/flatpak"_s, u"run"_s, u"--branch=stable"_s, u"--command=ptyxis"_s,
                u"org.gnome.Ptyxis"_s, u"--new-window"_s, u"--"_s }));
    }

    void argumentVectorPerTerminal_data()
    {
        QTest::addColumn<QString>("identifier");
        QTest::addColumn<QStringList>("expected");

        QTest::newRow("GNOME Terminal") << u"org.gnome.Terminal"_s
                                        << QStringList { u"/opt/bin/gnome-terminal"_s, u"--"_s };
        QTest::newRow("Ptyxis") << u"org.gnome.Ptyxis"_s << QStringList { u"/opt/bin/ptyxis"_s, u"--"_s };
        QTest::newRow("Console") << u"org.gnome.Console"_s << QStringList { u"/opt/bin/kgx"_s, u"--"_s };
        QTest::newRow("Konsole") << u"org.kde.konsole"_s << QStringList { u"/opt/bin/konsole"_s, u"-e"_s };
        QTest::newRow("Xfce Terminal") << u"xfce4-terminal"_s << QStringList { u"/opt/bin/xfce4-terminal"_s, u"-x"_s };
        QTest::newRow("Tilix") << u"com.gexperts.Tilix"_s << QStringList { u"/opt/bin/tilix"_s, u"-e"_s };
        QTest::newRow("kitty") << u"kitty"_s << QStringList { u"/opt/bin/kitty"_s };
        QTest::newRow("Alacritty") << u"Alacritty"_s << QStringList { u"/opt/bin/alacritty"_s, u"-e"_s };
        QTest::newRow("WezTerm") << u"org.wezfurlong.wezterm"_s
                                 << QStringList { u"/opt/bin/wezterm"_s, u"start"_s, u"--"_s };
        QTest::newRow("foot") << u"foot"_s << QStringList { u"/opt/bin/foot"_s };
        QTest::newRow("XTerm") << u"debian-xterm"_s << QStringList { u"/opt/bin/xterm"_s, u"-e"_s };
    }

    void argumentVectorPerTerminal()
    {
        QFETCH(QString, identifier);
        QFETCH(QStringList, expected);
        XdgDataFixture xdg;
        FakePrograms programs;
        installEveryTerminal(xdg, programs);
        const CommandLineTerminalDiscovery discovery = programs.discoveryOver(xdg);
        const QList<TerminalApp> apps = discovery.discoverTerminalApps();
        const auto app = std::find_if(apps.cbegin(), apps.cend(),
            [&](const TerminalApp& found) { return found.bundleIdentifier() == identifier; });
        QVERIFY(app != apps.cend());

        QList<QStringList> started;
        TerminalLauncher launcher({}, {}, {}, {}, {}, [&](const QString& program, const QStringList& arguments) {
            started << QStringList { program } + arguments;
            return true;
        });
        const QString command = u"ssh -p 2222 'web-01'"_s;
        QCOMPARE(launcher.launch(*app, command), false);
        const QStringList expectedVector
            = expected + QStringList { u"sh"_s, u"-c"_s, TerminalLauncher::sessionScript(command) };
        QCOMPARE(started, QList<QStringList> { expectedVector });
        QVERIFY(TerminalLauncher::sessionScript(command).startsWith(command + u'\n'));
    }

    void terminalThatCannotStartFails()
    {
        TerminalApp app(u"org.kde.konsole"_s, u"Konsole"_s, LaunchMode::commandLine);
        app.setCommandPrefix({ u"/nonexistent/konsole"_s, u"-e"_s });
        TerminalLauncher launcher({}, {}, {}, {}, {}, startDetachedProcess);
        try {
            launcher.launch(app, u"ssh web"_s);
            QFAIL("a missing program started");
        } catch (const TerminalLaunchError& error) {
            QCOMPARE(error.description(), u"Terminal app openen mislukt voor org.kde.konsole."_s);
        }
    }
};

QTEST_GUILESS_MAIN(TestCommandLineTerminals)
#include "test_command_line_terminals.moc"
