// The freedesktop side of the platform layer: desktop entries and their Exec lines, finding and opening
// applications in the XDG directories, and URI scheme handlers.

#include "DesktopApplicationOpener.h"
#include "DesktopEntry.h"
#include "DesktopExecLine.h"
#include "SchemeHandlerLookup.h"
#include "TerminalAppDiscoveryService.h"
#include "TerminalLaunchError.h"
#include "TestFiles.h"
#include "XdgApplicationLocator.h"
#include "XdgDataFixture.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestXdgApplicationLocator : public QObject
{
    Q_OBJECT

private slots:
    // desktop entry files

    void localizedName_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("expected");

        QTest::newRow("language and encoding") << u"nl_NL.UTF-8"_s << u"Terminalvenster"_s;
        QTest::newRow("language and country") << u"nl_BE"_s << u"Terminal (BE)"_s;
        QTest::newRow("modifier") << u"sr_RS@latin"_s << u"Terminal latinica"_s;
        QTest::newRow("country with modifier") << u"sr_ME@latin"_s << u"Terminal ME"_s;
        QTest::newRow("other language") << u"de_DE"_s << u"Terminal"_s;
        QTest::newRow("C locale") << u"C"_s << u"Terminal"_s;
        QTest::newRow("no locale") << QString() << u"Terminal"_s;
    }

    void localizedName()
    {
        QFETCH(QString, locale);
        QFETCH(QString, expected);
        const auto entry = DesktopEntry::parse("[Desktop Entry]\n"
                                               "Name=Terminal\n"
                                               "Name[nl]=Terminalvenster\n"
                                               "Name[nl_BE]=Terminal (BE)\n"
                                               "Name[sr@latin]=Terminal latinica\n"
                                               "Name[sr_ME@latin]=Terminal ME\n");
        QVERIFY(entry);
        QCOMPARE(entry->localizedValue(u"Name"_s, locale), std::optional(expected));
    }

    void onlyTheDesktopEntryGroupCounts()
    {
        const auto entry = DesktopEntry::parse("# comment\n"
                                               "[Desktop Entry]\n"
                                               "Name = Spaced\\sOut\\\\\n"
                                               "Name=Second wins nothing\n"
                                               "NoDisplay=true\n"
                                               "Hidden=True\n"
                                               "[Desktop Action new-window]\n"
                                               "Exec=other --new-window\n");
        QVERIFY(entry);
        QCOMPARE(entry->value(u"Name"_s), std::optional(u"Spaced Out\\"_s));
        QCOMPARE(entry->value(u"Exec"_s), std::optional<QString>());
        QVERIFY(entry->isTrue(u"NoDisplay"_s));
        QVERIFY(!entry->isTrue(u"Hidden"_s)); // booleans are lower case; anything else is not true
    }

    void notADesktopEntry_data()
    {
        QTest::addColumn<QByteArray>("content");

        QTest::newRow("empty") << QByteArray();
        QTest::newRow("no group") << QByteArray("Name=X\nExec=x\n");
        QTest::newRow("other group") << QByteArray("[KDE Desktop Entry]\nName=X\n");
    }

    void notADesktopEntry()
    {
        QFETCH(QByteArray, content);
        QVERIFY(!DesktopEntry::parse(content));
    }

    // locating applications

    void installedWhen_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("installed");

        const QByteArray base = "[Desktop Entry]\nName=Term\nExec=term\n";
        QTest::newRow("plain application") << QByteArray(base + "Type=Application\n") << true;
        QTest::newRow("no type given") << base << true;
        QTest::newRow("NoDisplay keeps it installed") << QByteArray(base + "NoDisplay=true\n") << true;
        QTest::newRow("Hidden deletes it") << QByteArray(base + "Hidden=true\n") << false;
        QTest::newRow("Hidden false") << QByteArray(base + "Hidden=false\n") << true;
        QTest::newRow("link entry") << QByteArray(base + "Type=Link\n") << false;
        QTest::newRow("TryExec found on PATH") << QByteArray(base + "TryExec=sh\n") << true;
        QTest::newRow("TryExec missing") << QByteArray(base + "TryExec=no-such-terminal-xyz\n") << false;
        QTest::newRow("TryExec absolute missing") << QByteArray(base + "TryExec=/nonexistent/term\n") << false;
        QTest::newRow("not a desktop entry") << QByteArray("Name=Term\n") << false;
    }

    void installedWhen()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, installed);
        XdgDataFixture xdg;
        const QString path = xdg.writeEntry(2, u"org.example.Term"_s, content);
        const XdgApplicationLocator locator(xdg.applicationDirectories(), u"C"_s);

        QCOMPARE(locator.applicationLocation(u"org.example.Term"_s), installed ? std::optional(path) : std::nullopt);
        QCOMPARE(locator.applicationLocation(u"org.example.Other"_s), std::optional<QString>());
    }

    void userEntryWinsOverSystem()
    {
        XdgDataFixture xdg;
        xdg.writeEntry(2, u"kitty"_s, XdgDataFixture::entry(u"kitty"_s, u"kitty"_s));
        const QString local = xdg.writeEntry(1, u"kitty"_s, XdgDataFixture::entry(u"Local kitty"_s, u"kitty"_s));
        const QString user = xdg.writeEntry(0, u"kitty"_s, XdgDataFixture::entry(u"My kitty"_s, u"kitty"_s));
        const XdgApplicationLocator locator(xdg.applicationDirectories(), u"C"_s);
        QCOMPARE(locator.applicationLocation(u"kitty"_s), std::optional(user));
        QFile::remove(user);
        QCOMPARE(locator.applicationLocation(u"kitty"_s), std::optional(local));
        // A hidden user entry deletes the application, whatever the system has.
        xdg.writeEntry(0, u"kitty"_s, "[Desktop Entry]\nHidden=true\n");
        QCOMPARE(locator.applicationLocation(u"kitty"_s), std::optional<QString>());
    }

    void informationOfEntry()
    {
        XdgDataFixture xdg;
        const QString path = xdg.writeEntry(1, u"org.gnome.Terminal"_s,
            "[Desktop Entry]\nName=Terminal\nName[nl]=Terminalvenster\nExec=gnome-terminal "
            "--window\nType=Application\n");
        const XdgApplicationLocator locator(xdg.applicationDirectories(), u"nl_NL.UTF-8"_s);

        const ApplicationInformation expected { QString(), u"Terminalvenster"_s, u"gnome-terminal --window"_s };
        QCOMPARE(locator.applicationInformation(path), std::optional(expected));
        QCOMPARE(locator.applicationInformation(path + u".missing"_s), std::optional<ApplicationInformation>());
    }

    void nameFallsBackToDesktopId()
    {
        XdgDataFixture xdg;
        xdg.writeEntry(0, u"dev.warp.Warp"_s, "[Desktop Entry]\nExec=warp-terminal\n");
        auto locator = std::make_shared<XdgApplicationLocator>(xdg.applicationDirectories(), u"C"_s);

        const QList<TerminalApp> apps = TerminalAppDiscoveryService(locator).discoverTerminalApps();
        QCOMPARE(apps,
            QList<TerminalApp>(
                { TerminalApp(u"dev.warp.Warp"_s, u"dev.warp.Warp"_s, TerminalApp::LaunchMode::warp, u"warp"_s) }));
    }

    void directoriesFromEnvironment_data()
    {
        QTest::addColumn<QByteArray>("dataHome");
        QTest::addColumn<QByteArray>("dataDirs");
        QTest::addColumn<QStringList>("expected");

        const QString home = QDir::homePath();
        QTest::newRow("both set") << QByteArray("/x/share") << QByteArray("/a:/b/")
                                  << QStringList { u"/x/share/applications"_s, u"/a/applications"_s,
                                         u"/b/applications"_s };
        QTest::newRow("defaults") << QByteArray() << QByteArray()
                                  << QStringList { home + u"/.local/share/applications"_s,
                                         u"/usr/local/share/applications"_s, u"/usr/share/applications"_s };
        QTest::newRow("relative paths are ignored")
            << QByteArray("share") << QByteArray("rel:/only")
            << QStringList { home + u"/.local/share/applications"_s, u"/only/applications"_s };
    }

    void directoriesFromEnvironment()
    {
        QFETCH(QByteArray, dataHome);
        QFETCH(QByteArray, dataDirs);
        QFETCH(QStringList, expected);
        XdgDataFixture restoresEnvironment;
        qputenv("XDG_DATA_HOME", dataHome);
        qputenv("XDG_DATA_DIRS", dataDirs);
        QCOMPARE(XdgApplicationLocator::applicationDirectoriesFromEnvironment(), expected);
    }

    // Exec lines

    void execLineArguments_data()
    {
        QTest::addColumn<QString>("exec");
        QTest::addColumn<QStringList>("expected");

        QTest::newRow("program only") << u"xterm"_s << QStringList { u"xterm"_s };
        QTest::newRow("arguments split at blanks")
            << u"wezterm start  --cwd ."_s << QStringList { u"wezterm"_s, u"start"_s, u"--cwd"_s, u"."_s };
        QTest::newRow("surrounding blanks") << u"  foot  "_s << QStringList { u"foot"_s };
        QTest::newRow("file codes dropped") << u"gedit %U"_s << QStringList { u"gedit"_s };
        QTest::newRow("every code dropped")
            << u"app %f %F %u %U %i %c %k %d %D %n %N %v %m"_s << QStringList { u"app"_s };
        QTest::newRow("percent escaped") << u"app 100%%"_s << QStringList { u"app"_s, u"100%"_s };
        QTest::newRow("code inside an argument") << u"app --file=%f"_s << QStringList { u"app"_s, u"--file="_s };
        QTest::newRow("quoted program with blank")
            << u"\"/opt/My Term/term\" -e"_s << QStringList { u"/opt/My Term/term"_s, u"-e"_s };
        QTest::newRow("escapes inside quotes") << u"sh -c \"echo \\\"\\$HOME\\\" \\\\ \\`x\\`\""_s
                                               << QStringList { u"sh"_s, u"-c"_s, u"echo \"$HOME\" \\ `x`"_s };
        QTest::newRow("percent inside quotes kept") << u"app \"%f\""_s << QStringList { u"app"_s, u"%f"_s };
        QTest::newRow("empty quoted argument kept") << u"app \"\""_s << QStringList { u"app"_s, QString() };
        QTest::newRow("quote joins with neighbours") << u"a\"b c\"d"_s << QStringList { u"ab cd"_s };
        QTest::newRow("flatpak export") << u"/usr/bin/flatpak run --command=ptyxis org.gnome.Ptyxis @@u %U @@"_s
                                        << QStringList { u"/usr/bin/flatpak"_s, u"run"_s, u"--command=ptyxis"_s,
                                               u"org.gnome.Ptyxis"_s, u"@@u"_s, u"@@"_s };
        QTest::newRow("open quote is unusable") << u"app \"half"_s << QStringList();
        QTest::newRow("escape at the end is unusable") << u"app \"x\\"_s << QStringList();
        QTest::newRow("blank") << u"   "_s << QStringList();
        QTest::newRow("empty") << QString() << QStringList();
    }

    void execLineArguments()
    {
        QFETCH(QString, exec);
        QFETCH(QStringList, expected);
        QCOMPARE(DesktopExecLine::arguments(exec), expected);
    }

    // Opening an application by its desktop entry

    void startsTheEntrysCommand_data()
    {
        QTest::addColumn<QString>("exec");
        QTest::addColumn<QStringList>("expected");

        QTest::newRow("program") << u"warp-terminal"_s << QStringList { u"warp-terminal"_s };
        QTest::newRow("field codes dropped")
            << u"warp-terminal %U --new"_s << QStringList { u"warp-terminal"_s, u"--new"_s };
        QTest::newRow("quoted program") << u"\"/opt/My Apps/term\" %f"_s << QStringList { u"/opt/My Apps/term"_s };
    }

    void startsTheEntrysCommand()
    {
        QFETCH(QString, exec);
        QFETCH(QStringList, expected);
        XdgDataFixture xdg;
        xdg.writeEntry(1, u"com.example.Term"_s, XdgDataFixture::entry(u"Term"_s, exec));
        QList<QStringList> started;
        const DesktopApplicationOpener opener(
            std::make_shared<XdgApplicationLocator>(xdg.applicationDirectories(), u"C"_s),
            [&](const QString& program, const QStringList& arguments) {
                started << QStringList { program } + arguments;
                return true;
            });

        opener.open(u"com.example.Term"_s);
        QCOMPARE(started, QList<QStringList> { expected });
    }

    void openingFails_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("starts");
        QTest::addColumn<int>("expectedStarts");

        QTest::newRow("not installed") << QByteArray() << true << 0;
        QTest::newRow("no Exec") << QByteArray("[Desktop Entry]\nName=Term\n") << true << 0;
        QTest::newRow("broken Exec") << XdgDataFixture::entry(u"Term"_s, u"\"term"_s) << true << 0;
        QTest::newRow("program does not start") << XdgDataFixture::entry(u"Term"_s, u"term"_s) << false << 1;
    }

    void openingFails()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, starts);
        QFETCH(int, expectedStarts);
        XdgDataFixture xdg;
        if (!content.isEmpty())
            xdg.writeEntry(0, u"com.example.Term"_s, content);
        int startCount = 0;
        const DesktopApplicationOpener opener(
            std::make_shared<XdgApplicationLocator>(xdg.applicationDirectories(), u"C"_s),
            [&](const QString&, const QStringList&) {
                ++startCount;
                return starts;
            });

        try {
            opener.open(u"com.example.Term"_s);
            QFAIL("opening succeeded");
        } catch (const TerminalLaunchError& error) {
            QCOMPARE(error, TerminalLaunchError::launchFailed(u"com.example.Term"_s));
        }
        QCOMPARE(startCount, expectedStarts);
    }

    // URI scheme handlers

    void schemeHasHandler_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("scheme");
        QTest::addColumn<bool>("expected");

        const QByteArray entry
            = "[Desktop Entry]\nName=Warp\nExec=warp %u\nMimeType=text/plain;x-scheme-handler/warp;\n";
        QTest::newRow("nothing registered") << QString() << QByteArray() << u"warp"_s << false;
        QTest::newRow("user default") << u"config/mimeapps.list"_s
                                      << QByteArray(
                                             "[Default Applications]\nx-scheme-handler/warp=dev.warp.Warp.desktop\n")
                                      << u"warp"_s << true;
        QTest::newRow("scheme ignores case")
            << u"config/mimeapps.list"_s << QByteArray("[Default Applications]\nx-scheme-handler/warp=w.desktop\n")
            << u"WARP"_s << true;
        QTest::newRow("added association in system config")
            << u"xdg/mimeapps.list"_s << QByteArray("[Added Associations]\nx-scheme-handler/warp=w.desktop;\n")
            << u"warp"_s << true;
        QTest::newRow("removed association says nothing")
            << u"config/mimeapps.list"_s << QByteArray("[Removed Associations]\nx-scheme-handler/warp=w.desktop;\n")
            << u"warp"_s << false;
        QTest::newRow("empty default") << u"config/mimeapps.list"_s
                                       << QByteArray("[Default Applications]\nx-scheme-handler/warp=;\n") << u"warp"_s
                                       << false;
        QTest::newRow("other scheme only")
            << u"config/mimeapps.list"_s
            << QByteArray("[Default Applications]\nx-scheme-handler/warppreview=p.desktop\n") << u"warp"_s << false;
        QTest::newRow("list in applications directory")
            << u"apps/mimeapps.list"_s << QByteArray("[Default Applications]\nx-scheme-handler/warp=w.desktop\n")
            << u"warp"_s << true;
        QTest::newRow("mime cache") << u"apps/mimeinfo.cache"_s
                                    << QByteArray("[MIME Cache]\nx-scheme-handler/warp=dev.warp.Warp.desktop;\n")
                                    << u"warp"_s << true;
        QTest::newRow("entry declares it") << u"apps/dev.warp.Warp.desktop"_s << entry << u"warp"_s << true;
        QTest::newRow("entry declares another")
            << u"apps/dev.warp.Warp.desktop"_s << entry << u"warppreview"_s << false;
        QTest::newRow("empty scheme") << u"apps/dev.warp.Warp.desktop"_s << entry << QString() << false;
        QTest::newRow("mime type of an action says nothing")
            << u"apps/dev.warp.Warp.desktop"_s
            << QByteArray("[Desktop Entry]\nName=Warp\n[Desktop Action x]\nMimeType=x-scheme-handler/warp;\n")
            << u"warp"_s << false;
        QTest::newRow("key that only starts with MimeType says nothing")
            << u"apps/dev.warp.Warp.desktop"_s
            << QByteArray("[Desktop Entry]\nName=Warp\nMimeTypeHint=x-scheme-handler/warp;\n") << u"warp"_s << false;
    }

    void schemeHasHandler()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, content);
        QFETCH(QString, scheme);
        QFETCH(bool, expected);
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        if (!file.isEmpty())
            QVERIFY(writeBytes(dir.filePath(file), content));

        const SchemeHandlerLookup lookup(
            { dir.filePath(u"config"_s), dir.filePath(u"xdg"_s) }, { dir.filePath(u"apps"_s) });
        QCOMPARE(lookup.hasHandler(scheme), expected);
    }
};

QTEST_GUILESS_MAIN(TestXdgApplicationLocator)
#include "test_xdg_application_locator.moc"
