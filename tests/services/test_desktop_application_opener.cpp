#include "DesktopApplicationOpener.h"
#include "TerminalLaunchError.h"
#include "XdgApplicationLocator.h"
#include "XdgDataFixture.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestDesktopApplicationOpener : public QObject
{
    Q_OBJECT

private slots:
    void startsTheEntrysCommand_data();
    void startsTheEntrysCommand();
    void failures_data();
    void failures();
};

void TestDesktopApplicationOpener::startsTheEntrysCommand_data()
{
    QTest::addColumn<QString>("exec");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("program") << u"warp-terminal"_s << QStringList { u"warp-terminal"_s };
    QTest::newRow("field codes dropped") << u"warp-terminal %U --new"_s
                                         << QStringList { u"warp-terminal"_s, u"--new"_s };
    QTest::newRow("quoted program") << u"\"/opt/My Apps/term\" %f"_s << QStringList { u"/opt/My Apps/term"_s };
}

void TestDesktopApplicationOpener::startsTheEntrysCommand()
{
    QFETCH(QString, exec);
    QFETCH(QStringList, expected);
    XdgDataFixture xdg;
    xdg.writeEntry(1, u"com.example.Term"_s, XdgDataFixture::entry(u"Term"_s, exec));
    QList<QStringList> started;
    const DesktopApplicationOpener opener(std::make_shared<XdgApplicationLocator>(xdg.applicationDirectories(), u"C"_s),
        [&](const QString& program, const QStringList& arguments) {
            started << QStringList { program } + arguments;
            return true;
        });

    opener.open(u"com.example.Term"_s);
    QCOMPARE(started, QList<QStringList> { expected });
}

void TestDesktopApplicationOpener::failures_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("starts");
    QTest::addColumn<int>("expectedStarts");

    QTest::newRow("not installed") << QByteArray() << true << 0;
    QTest::newRow("no Exec") << QByteArray("[Desktop Entry]\nName=Term\n") << true << 0;
    QTest::newRow("broken Exec") << XdgDataFixture::entry(u"Term"_s, u"\"term"_s) << true << 0;
    QTest::newRow("program does not start") << XdgDataFixture::entry(u"Term"_s, u"term"_s) << false << 1;
}

void TestDesktopApplicationOpener::failures()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, starts);
    QFETCH(int, expectedStarts);
    XdgDataFixture xdg;
    if (!content.isEmpty())
        xdg.writeEntry(0, u"com.example.Term"_s, content);
    int startCount = 0;
    const DesktopApplicationOpener opener(std::make_shared<XdgApplicationLocator>(xdg.applicationDirectories(), u"C"_s),
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

QTEST_GUILESS_MAIN(TestDesktopApplicationOpener)
#include "test_desktop_application_opener.moc"
