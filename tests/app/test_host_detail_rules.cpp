// The host editor's text rules: how field text becomes patterns, groups and option values.

#include "HostDetailRules.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

SSHHost hostWith(QList<SSHHostItem> items)
{
    return SSHHost({ u"db"_s }, {}, true, std::move(items));
}

} // namespace

class TestHostDetailRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Host patterns split at any white space and default to "*"; groups split at commas. Either list
    // written as field text reads back as itself.
    void listsFromText_data()
    {
        QTest::addColumn<bool>("groups");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("list");
        const auto patterns = [](const char* tag) -> QTestData& { return QTest::addRow("patterns: %s", tag) << false; };
        patterns("one") << u"web"_s << QStringList { u"web"_s };
        patterns("runs of blanks") << u"web  db"_s << QStringList { u"web"_s, u"db"_s };
        patterns("tab and line break") << u"a\tb\nc\r\nd"_s << QStringList { u"a"_s, u"b"_s, u"c"_s, u"d"_s };
        patterns("no-break and ideographic space") << u"a\u00a0b\u3000c"_s << QStringList { u"a"_s, u"b"_s, u"c"_s };
        patterns("blanks at both ends") << u" \t web \n"_s << QStringList { u"web"_s };
        patterns("empty gives star") << QString() << QStringList { u"*"_s };
        patterns("white space only gives star") << u" \t\n"_s << QStringList { u"*"_s };
        patterns("commas are not separators") << u"a,b"_s << QStringList { u"a,b"_s };
        const auto groups = [](const char* tag) -> QTestData& { return QTest::addRow("groups: %s", tag) << true; };
        groups("empty") << QString() << QStringList();
        groups("commas only") << u", ,,"_s << QStringList();
        groups("blank, empty piece, trailing comma")
            << u" werk,, klanten,"_s << QStringList { u"werk"_s, u"klanten"_s };
        groups("line breaks trimmed") << u"\nwerk\t,klanten\n"_s << QStringList { u"werk"_s, u"klanten"_s };
        groups("duplicates and case kept") << u"a, A, a"_s << QStringList { u"a"_s, u"A"_s, u"a"_s };
        groups("inner blanks kept") << u"mijn  klanten"_s << QStringList { u"mijn  klanten"_s };
    }
    void listsFromText()
    {
        QFETCH(bool, groups);
        QFETCH(QString, text);
        QFETCH(QStringList, list);
        const auto fromText = groups ? HostDetailRules::groupsFromText : HostDetailRules::patternsFromText;
        const auto toText = groups ? HostDetailRules::groupsText : HostDetailRules::patternsText;
        QCOMPARE(fromText(text), list);
        QCOMPARE(fromText(toText(list)), list);
    }

    void optionValueIsTheFirstMatchIgnoringCase()
    {
        const SSHHost host = hostWith(
            { SSHHostItem::comment(u"# User commented"_s), SSHHostItem::option(SSHOption(u"USER"_s, u" first "_s)),
                SSHHostItem::option(SSHOption(u"User"_s, u"second"_s)) });
        QCOMPARE(HostDetailRules::optionValue(host, u"user"), u" first "_s);
        QCOMPARE(HostDetailRules::optionValue(host, u"Port"), QString());
    }

    void setOptionValue_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("reported");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("found: replaced in place, key spelled as given")
            << u" bar "_s << u"HostName"_s << true << QStringList { u"#c"_s, u"HostName=bar"_s, u"hostname=second"_s };
        QTest::newRow("found, empty: removed")
            << u"  "_s << u"HOSTNAME"_s << true << QStringList { u"#c"_s, u"hostname=second"_s };
        QTest::newRow("missing, empty: nothing")
            << u"\n"_s << u"Port"_s << false << QStringList { u"#c"_s, u"hostname=foo"_s, u"hostname=second"_s };
        QTest::newRow("missing: appended")
            << u"22"_s << u"Port"_s << true
            << QStringList { u"#c"_s, u"hostname=foo"_s, u"hostname=second"_s, u"Port=22"_s };
    }
    void setOptionValue()
    {
        QFETCH(QString, value);
        QFETCH(QString, key);
        QFETCH(bool, reported);
        QFETCH(QStringList, lines);
        const SSHOption first(u"hostname"_s, u"foo"_s);
        SSHHost host = hostWith({ SSHHostItem::comment(u"#c"_s), SSHHostItem::option(first),
            SSHHostItem::option(SSHOption(u"hostname"_s, u"second"_s)) });
        QCOMPARE(HostDetailRules::setOptionValue(host, value, key), reported);
        QStringList actual;
        for (const SSHHostItem& item : host.items)
            actual.append(item.isOption() ? item.asOption()->key + u'=' + item.asOption()->value : item.commentText());
        QCOMPARE(actual, lines);
        // Wherever the first option is still in its place it is the same option, changed in place.
        if (lines.at(1).startsWith(u"hostname="_s, Qt::CaseInsensitive) && lines.at(1) != u"hostname=second"_s)
            QCOMPARE(host.items.at(1).asOption()->id(), first.id());
    }

    void extraOptionsLeaveOutCommonKeysInAnyCase()
    {
        const SSHHost host = hostWith({ SSHHostItem::option(SSHOption(u"identityfile"_s, u"~/.ssh/a"_s)),
            SSHHostItem::option(SSHOption(u"ForwardAgent"_s, u"yes"_s)), SSHHostItem::blank(),
            SSHHostItem::option(SSHOption(u"PORT"_s, u"22"_s)),
            SSHHostItem::option(SSHOption(u"ProxyJump"_s, u"bastion"_s)) });
        QStringList keys;
        for (const SSHOption& option : HostDetailRules::extraOptions(host))
            keys.append(option.key);
        QCOMPARE(keys, (QStringList { u"ForwardAgent"_s, u"ProxyJump"_s }));
    }
};

QTEST_GUILESS_MAIN(TestHostDetailRules)
#include "test_host_detail_rules.moc"
