// Which names a check may leave out: only those whose reachable lines a save leaves as they are, and
// never one that a doubtful pattern might reach.

#include "SshConfigReach.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestSshConfigReach : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void mayDiffer_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("differs");

        const QString twoHosts = u"Host web\n  Port=2222\n\nHost db\n  User admin\n"_s;
        QTest::newRow("own block changed")
            << twoHosts << u"Host web\n  # Port=2222\n\nHost db\n  User admin\n"_s << u"web"_s << true;
        QTest::newRow("other block changed")
            << twoHosts << u"Host web\n  # Port=2222\n\nHost db\n  User admin\n"_s << u"db"_s << false;
        QTest::newRow("spacing, tabs, = and comments do not count")
            << u"Host web\n\tPort=2222 # old\n"_s << u"# Group: x\nHost   web\n  Port 2222\n"_s << u"web"_s << false;
        QTest::newRow("global line reaches every name")
            << u"Compression yes\nHost web\n  Port 1\n"_s << u"# Compression yes\nHost web\n  Port 1\n"_s << u"db"_s
            << true;
        QTest::newRow("wildcard block reaches a matching name")
            << u"Host *.lan\n  User a\n"_s << u"Host *.lan\n  User b\n"_s << u"web.LAN"_s << true;
        QTest::newRow("wildcard block does not reach another name")
            << u"Host *.lan\n  User a\n"_s << u"Host *.lan\n  User b\n"_s << u"web.example"_s << false;
        QTest::newRow("question mark") << u"Host web?\n  User a\n"_s << u"Host web?\n  User b\n"_s << u"web1"_s << true;
        QTest::newRow("a negated pattern never excludes")
            << u"Host * !web\n  User a\n"_s << u"Host * !web\n  User b\n"_s << u"web"_s << true;
        QTest::newRow("a changed Host line")
            << u"Host web db\n  User a\n"_s << u"Host db\n  User a\n"_s << u"web"_s << true;
        QTest::newRow("order of blocks counts") << u"Host web\n  User a\nHost *\n  User b\n"_s
                                                << u"Host *\n  User b\nHost web\n  User a\n"_s << u"web"_s << true;
        QTest::newRow("a Match line anywhere judges no name")
            << u"Host web\n  Port 1\nMatch user x\n  User a\n"_s << u"Host web\n  Port 1\nMatch user x\n  User b\n"_s
            << u"db"_s << true;
        QTest::newRow("a line separator is no line end to ssh")
            << u"Host web\n  # a\u2028Port 1\n"_s << u"Host web\n  # a\n  Port 1\n"_s << u"web"_s << true;
        QTest::newRow("a name in two blocks, the later one changed")
            << u"Host web\n  User a\nHost db web\n  Port 1\n"_s << u"Host web\n  User a\nHost db web\n  Port 2\n"_s
            << u"WEB"_s << true;
        QTest::newRow("a plain name beside a wildcard on one Host line")
            << u"Host web *.lan\n  User a\n"_s << u"Host web *.lan\n  User b\n"_s << u"db.lan"_s << true;
        QTest::newRow("a Host line without patterns")
            << u"Host\n  User a\n"_s << u"Host\n  User b\n"_s << u"db"_s << true;
        QTest::newRow("many stars stay cheap")
            << u"Host *a*a*a*a*a*a*a*a*a*a*a*a*b\n  User a\n"_s << u"Host *a*a*a*a*a*a*a*a*a*a*a*a*b\n  User b\n"_s
            << u"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaac"_s << false;
    }

    void mayDiffer()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);
        QFETCH(QString, name);
        QFETCH(bool, differs);
        QCOMPARE(SshConfigReach::mayDiffer(SshConfigReach(before), SshConfigReach(after), name), differs);
    }

    /// A large config is read a part at a time; wherever a part ends, the answer is the same.
    void readingInPartsGivesTheSameAnswer_data() { mayDiffer_data(); }

    void readingInPartsGivesTheSameAnswer()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);
        QFETCH(QString, name);
        QFETCH(bool, differs);
        const SshConfigReach afterAtOnce(after);
        for (qsizetype lineStart = 0; lineStart >= 0 && lineStart <= before.size();
             lineStart = before.indexOf(u'\n', lineStart) < 0 ? -1 : before.indexOf(u'\n', lineStart) + 1) {
            SshConfigReach inParts;
            inParts.read(QStringView(before).first(lineStart));
            inParts.read(QStringView(before).sliced(lineStart));
            QCOMPARE(SshConfigReach::mayDiffer(inParts, afterAtOnce, name), differs);
        }
    }
};

QTEST_GUILESS_MAIN(TestSshConfigReach)
#include "test_ssh_config_reach.moc"
