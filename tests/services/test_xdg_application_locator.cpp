#include "DesktopEntry.h"
#include "HomeDirectory.h"
#include "TerminalAppDiscoveryService.h"
#include "XdgApplicationLocator.h"
#include "XdgDataFixture.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestXdgApplicationLocator : public QObject
{
    Q_OBJECT

private slots:
    // desktop entry files
    void localizedName_data();
    void localizedName();
    void onlyTheDesktopEntryGroupCounts();
    void notADesktopEntry_data();
    void notADesktopEntry();

    // locating applications
    void installedWhen_data();
    void installedWhen();
    void userEntryWinsOverSystem();
    void hiddenUserEntryMasksSystemEntry();
    void informationOfEntry();
    void nameFallsBackToDesktopId();
    void directoriesFromEnvironment_data();
    void directoriesFromEnvironment();
};

void TestXdgApplicationLocator::localizedName_data()
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

void TestXdgApplicationLocator::localizedName()
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

void TestXdgApplicationLocator::onlyTheDesktopEntryGroupCounts()
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

void TestXdgApplicationLocator::notADesktopEntry_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no group") << QByteArray("Name=X\nExec=x\n");
    QTest::newRow("other group") << QByteArray("[KDE Desktop Entry]\nName=X\n");
}

void TestXdgApplicationLocator::notADesktopEntry()
{
    QFETCH(QByteArray, content);
    QVERIFY(!DesktopEntry::parse(content));
}

void TestXdgApplicationLocator::installedWhen_data()
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

void TestXdgApplicationLocator::installedWhen()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, installed);
    XdgDataFixture xdg;
    const QString path = xdg.writeEntry(2, u"org.example.Term"_s, content);
    const XdgApplicationLocator locator(xdg.applicationDirectories(), u"C"_s);

    QCOMPARE(locator.applicationLocation(u"org.example.Term"_s), installed ? std::optional(path) : std::nullopt);
    QCOMPARE(locator.applicationLocation(u"org.example.Other"_s), std::optional<QString>());
}

void TestXdgApplicationLocator::userEntryWinsOverSystem()
{
    XdgDataFixture xdg;
    xdg.writeEntry(2, u"kitty"_s, XdgDataFixture::entry(u"kitty"_s, u"kitty"_s));
    const QString local = xdg.writeEntry(1, u"kitty"_s, XdgDataFixture::entry(u"Local kitty"_s, u"kitty"_s));
    const QString user = xdg.writeEntry(0, u"kitty"_s, XdgDataFixture::entry(u"My kitty"_s, u"kitty"_s));
    const XdgApplicationLocator locator(xdg.applicationDirectories(), u"C"_s);

    QCOMPARE(locator.applicationLocation(u"kitty"_s), std::optional(user));
    QFile::remove(user);
    QCOMPARE(locator.applicationLocation(u"kitty"_s), std::optional(local));
}

void TestXdgApplicationLocator::hiddenUserEntryMasksSystemEntry()
{
    XdgDataFixture xdg;
    xdg.writeEntry(2, u"foot"_s, XdgDataFixture::entry(u"Foot"_s, u"foot"_s));
    xdg.writeEntry(0, u"foot"_s, "[Desktop Entry]\nHidden=true\n");
    const XdgApplicationLocator locator(xdg.applicationDirectories(), u"C"_s);
    QCOMPARE(locator.applicationLocation(u"foot"_s), std::optional<QString>());
}

void TestXdgApplicationLocator::informationOfEntry()
{
    XdgDataFixture xdg;
    const QString path = xdg.writeEntry(1, u"org.gnome.Terminal"_s,
        "[Desktop Entry]\nName=Terminal\nName[nl]=Terminalvenster\nExec=gnome-terminal --window\nType=Application\n");
    const XdgApplicationLocator locator(xdg.applicationDirectories(), u"nl_NL.UTF-8"_s);

    const QVariantMap expected { { u"CFBundleName"_s, u"Terminalvenster"_s },
        { u"Exec"_s, u"gnome-terminal --window"_s } };
    QCOMPARE(locator.applicationInformation(path), std::optional(expected));
    QCOMPARE(locator.applicationInformation(path + u".missing"_s), std::optional<QVariantMap>());
}

void TestXdgApplicationLocator::nameFallsBackToDesktopId()
{
    XdgDataFixture xdg;
    xdg.writeEntry(0, u"dev.warp.Warp"_s, "[Desktop Entry]\nExec=warp-terminal\n");
    auto locator = std::make_shared<XdgApplicationLocator>(xdg.applicationDirectories(), u"C"_s);

    const QList<TerminalApp> apps = TerminalAppDiscoveryService(locator).discoverTerminalApps();
    QCOMPARE(apps,
        QList<TerminalApp>(
            { TerminalApp(u"dev.warp.Warp"_s, u"dev.warp.Warp"_s, TerminalApp::LaunchMode::warp, u"warp"_s) }));
}

void TestXdgApplicationLocator::directoriesFromEnvironment_data()
{
    QTest::addColumn<QByteArray>("dataHome");
    QTest::addColumn<QByteArray>("dataDirs");
    QTest::addColumn<QStringList>("expected");

    const QString home = userHomeDirectory();
    QTest::newRow("both set") << QByteArray("/x/share") << QByteArray("/a:/b/")
                              << QStringList { u"/x/share/applications"_s, u"/a/applications"_s, u"/b/applications"_s };
    QTest::newRow("defaults") << QByteArray() << QByteArray()
                              << QStringList { home + u"/.local/share/applications"_s,
                                     u"/usr/local/share/applications"_s, u"/usr/share/applications"_s };
    QTest::newRow("relative paths are ignored")
        << QByteArray("share") << QByteArray("rel:/only")
        << QStringList { home + u"/.local/share/applications"_s, u"/only/applications"_s };
}

void TestXdgApplicationLocator::directoriesFromEnvironment()
{
    QFETCH(QByteArray, dataHome);
    QFETCH(QByteArray, dataDirs);
    QFETCH(QStringList, expected);
    XdgDataFixture restoresEnvironment;
    qputenv("XDG_DATA_HOME", dataHome);
    qputenv("XDG_DATA_DIRS", dataDirs);
    QCOMPARE(XdgApplicationLocator::applicationDirectoriesFromEnvironment(), expected);
}

QTEST_GUILESS_MAIN(TestXdgApplicationLocator)
#include "test_xdg_application_locator.moc"
