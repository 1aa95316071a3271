#include "SSHConfigDocument.h"

#include <QSet>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

using HostChange = std::function<void(SSHHost&)>;
Q_DECLARE_METATYPE(HostChange)

class TestSSHConfigModel : public QObject
{
    Q_OBJECT

private slots:
    void appendUniqueGroup_data()
    {
        QTest::addColumn<QString>("label");
        QTest::addColumn<QStringList>("before");
        QTest::addColumn<QStringList>("after");

        QTest::newRow("same label in other case and blanks keeps first form")
            << u"  web  "_s << QStringList { u"WEB"_s } << QStringList { u"WEB"_s };
        QTest::newRow("only blanks changes nothing")
            << u" \t "_s << QStringList { u"WEB"_s } << QStringList { u"WEB"_s };
        QTest::newRow("new label is appended")
            << u"db"_s << QStringList { u"WEB"_s } << QStringList { u"WEB"_s, u"db"_s };
        QTest::newRow("trimmed of tab, newline and non-breaking space")
            << u"\t\u00a0werk\n"_s << QStringList {} << QStringList { u"werk"_s };
        QTest::newRow("trimmed of line separator, next line and ideographic space")
            << u"\u2028\u0085werk\u3000"_s << QStringList {} << QStringList { u"werk"_s };
        QTest::newRow("inner blanks stay") << u" web servers "_s << QStringList {} << QStringList { u"web servers"_s };
        QTest::newRow("non-ASCII letters compare ignoring case")
            << u"\u00c9T\u00c9"_s << QStringList { u"\u00e9t\u00e9"_s } << QStringList { u"\u00e9t\u00e9"_s };
        QTest::newRow("empty label") << QString() << QStringList {} << QStringList {};
    }

    void appendUniqueGroup()
    {
        QFETCH(QString, label);
        QFETCH(QStringList, before);
        QFETCH(QStringList, after);
        ::appendUniqueGroup(label, before);
        QCOMPARE(before, after);
    }

    void appendUniqueGroupsDropsEmptyAndLaterDuplicates()
    {
        QStringList groups;
        ::appendUniqueGroups({ u"a"_s, u"A"_s, u"  b  "_s, QString() }, groups);
        QCOMPARE(groups, (QStringList { u"a"_s, u"b"_s }));
    }

    void equalityCoversEveryField_data()
    {
        QTest::addColumn<HostChange>("change");
        QTest::newRow("patterns") << HostChange([](SSHHost& h) { h.patterns = { u"b"_s }; });
        QTest::newRow("groups order") << HostChange([](SSHHost& h) { h.groups = { u"y"_s, u"x"_s }; });
        QTest::newRow("flag") << HostChange([](SSHHost& h) { h.isEnabled = false; });
        QTest::newRow("option value") << HostChange([](SSHHost& h) { h.items[0].asOption()->value = u"ROOT"_s; });
        QTest::newRow("item case") << HostChange(
            [](SSHHost& h) { h.items[0] = SSHHostItem::comment(u"# User root"_s); });
        QTest::newRow("option id") << HostChange(
            [](SSHHost& h) { h.items[0] = SSHHostItem::option(SSHOption(u"User"_s, u"root"_s)); });
        QTest::newRow("host id") << HostChange(
            [](SSHHost& h) { h = SSHHost(h.patterns, h.groups, h.isEnabled, h.items); });
    }

    void equalityCoversEveryField()
    {
        QFETCH(HostChange, change);
        const SSHHost original(
            { u"a"_s }, { u"x"_s, u"y"_s }, true, { SSHHostItem::option(SSHOption(u"User"_s, u"root"_s)) });
        SSHHost changed = original;
        QVERIFY(changed == original);
        change(changed);
        QVERIFY(!(changed == original));
    }

    void canonicallyEquivalentTextIsEqual()
    {
        const QUuid id = createRandomUuid();
        QVERIFY(SSHOption(id, u"User"_s, u"caf\u00e9"_s) == SSHOption(id, u"User"_s, u"cafe\u0301"_s));
        QVERIFY(!(SSHOption(id, u"User"_s, u"cafe"_s) == SSHOption(id, u"User"_s, u"Cafe"_s)));
        QVERIFY(SSHGlobalItem::comment(u"# \u00c5"_s) == SSHGlobalItem::comment(u"# A\u030a"_s));
        QVERIFY(!(SSHGlobalItem::directive(u"# x"_s) == SSHGlobalItem::comment(u"# x"_s)));
    }

    // Identities are random version-4 RFC 4122 UUIDs that do not repeat; a given one is kept.
    void identities()
    {
        QCOMPARE(SSHOption().id().version(), QUuid::Random);
        QCOMPARE(SSHHost().id().version(), QUuid::Random);
        QVERIFY(SSHHost().id() != SSHHost().id());
        const QUuid given = createRandomUuid();
        QCOMPARE(SSHHost(given, { u"a"_s }, {}, false, {}).id(), given);
        QSet<QUuid> seen;
        for (int i = 0; i < 100000; ++i) {
            const QUuid id = createRandomUuid();
            QCOMPARE(id.version(), QUuid::Random);
            QCOMPARE(id.variant(), QUuid::DCE);
            seen.insert(id);
        }
        QCOMPARE(seen.size(), 100000);
    }
};

QTEST_GUILESS_MAIN(TestSSHConfigModel)
#include "test_ssh_config_model.moc"
