#include "DesktopExecLine.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestDesktopExecLine : public QObject
{
    Q_OBJECT

private slots:
    void arguments_data();
    void arguments();
};

void TestDesktopExecLine::arguments_data()
{
    QTest::addColumn<QString>("exec");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("program only") << u"xterm"_s << QStringList { u"xterm"_s };
    QTest::newRow("arguments split at blanks")
        << u"wezterm start  --cwd ."_s << QStringList { u"wezterm"_s, u"start"_s, u"--cwd"_s, u"."_s };
    QTest::newRow("surrounding blanks") << u"  foot  "_s << QStringList { u"foot"_s };
    QTest::newRow("file codes dropped") << u"gedit %U"_s << QStringList { u"gedit"_s };
    QTest::newRow("every code dropped") << u"app %f %F %u %U %i %c %k %d %D %n %N %v %m"_s << QStringList { u"app"_s };
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

void TestDesktopExecLine::arguments()
{
    QFETCH(QString, exec);
    QFETCH(QStringList, expected);
    QCOMPARE(DesktopExecLine::arguments(exec), expected);
}

QTEST_GUILESS_MAIN(TestDesktopExecLine)
#include "test_desktop_exec_line.moc"
