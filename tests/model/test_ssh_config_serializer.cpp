#include "ConfigDump.h"
#include "SSHConfigParser.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
QString parseAndWrite(const QString& text)
{
    return SSHConfigParser {}.serialize(SSHConfigParser {}.parse(text).document);
}

SSHHost host(
    const QStringList& patterns, bool isEnabled, const QList<SSHHostItem>& items, const QStringList& groups = {})
{
    return SSHHost(patterns, groups, isEnabled, items);
}

SSHHostItem option(const QString& key, const QString& value)
{
    return SSHHostItem::option(SSHOption(key, value));
}
} // namespace

class TestSSHConfigSerializer : public QObject
{
    Q_OBJECT

private slots:
    void workedExample()
    {
        const QString input = u"Include ~/.ssh/conf.d/*\n\n# PRODUCTION\n# Group: web, db\nHost web-1 web-1.lan\n"
                              u"  HostName 10.0.0.5\n  # primary\n  Port=2222\n\n# Host old-box\n"
                              u"#   HostName 10.0.0.9\n# # retired\n#   bad-key x"_s;
        const QStringList expected = { u"Include ~/.ssh/conf.d/*"_s, QString(), u"# Group: PRODUCTION"_s,
            u"# Group: web"_s, u"# Group: db"_s, u"Host web-1 web-1.lan"_s, u"  HostName 10.0.0.5"_s, u"  # primary"_s,
            u"  # Port=2222"_s, QString(), u"# Group: PRODUCTION"_s, u"# Host old-box"_s, u"#   HostName 10.0.0.9"_s,
            u"#   # retired"_s, u"#   # #   bad-key x"_s };
        const auto [document, errors] = SSHConfigParser {}.parse(input);
        const QString written = SSHConfigParser {}.serialize(document);
        QCOMPARE(written.split(u'\n'), expected);
        QVERIFY(!written.endsWith(u'\n'));

        const auto [reread, rereadErrors] = SSHConfigParser {}.parse(written);
        QCOMPARE(dumpIgnoringIds(reread), dumpIgnoringIds(document));
        QVERIFY(rereadErrors.isEmpty());
    }

    void lineForms_data()
    {
        QTest::addColumn<bool>("isEnabled");
        QTest::addColumn<QString>("expected");
        QTest::newRow("enabled") << true << u"Host web-1 web-1.lan\n  HostName 10.0.0.5\n  ForwardAgent\n  # note\n"_s;
        QTest::newRow("disabled") << false
                                  << u"# Host web-1 web-1.lan\n#   HostName 10.0.0.5\n#   ForwardAgent\n#   # note\n"_s;
    }

    void lineForms()
    {
        QFETCH(bool, isEnabled);
        QFETCH(QString, expected);
        SSHConfigDocument document;
        document.hosts.append(host({ u"web-1"_s, u"web-1.lan"_s }, isEnabled,
            { option(u"HostName"_s, u"10.0.0.5"_s), option(u"ForwardAgent"_s, QString()),
                SSHHostItem::comment(u"# note"_s), SSHHostItem::blank() }));
        QCOMPARE(SSHConfigParser {}.serialize(document), expected);
    }

    void documents_data()
    {
        QTest::addColumn<SSHConfigDocument>("document");
        QTest::addColumn<QString>("text");

        SSHConfigDocument empty;
        QTest::newRow("empty document") << empty << QString();

        SSHConfigDocument separated;
        separated.globalItems = { SSHGlobalItem::directive(u"  Include x "_s), SSHGlobalItem::comment(u"  note"_s) };
        separated.hosts = { host({ u"a"_s }, true, {}), host({ u"b"_s }, false, { SSHHostItem::blank() }),
            host({ u"c"_s }, true, {}) };
        QTest::newRow("separators only where the last line is not empty")
            << separated << u"  Include x \n# note\n\nHost a\n\n# Host b\n\nHost c"_s;

        SSHConfigDocument firstBlock;
        firstBlock.hosts = { host({ u"a"_s }, true, { option(u"User"_s, u"x"_s) }, { u" g "_s, u"  "_s, u"g"_s }) };
        QTest::newRow("no separator before a first block, blank labels skipped, duplicates written")
            << firstBlock << u"# Group: g\n# Group: g\nHost a\n  User x"_s;

        SSHConfigDocument unusual;
        unusual.hosts = { host({}, true, { option(u"bad key"_s, u" v "_s), SSHHostItem::comment(u"note"_s) }),
            host({ u"a b"_s }, false, {}) };
        QTest::newRow("whatever the document holds") << unusual << u"Host \n  bad key  v \n  # note\n\n# Host a b"_s;

        SSHConfigDocument emptyDirective;
        emptyDirective.globalItems = { SSHGlobalItem::directive(QString()) };
        emptyDirective.hosts = { host({ u"a"_s }, true, {}) };
        QTest::newRow("an empty directive counts as an empty line") << emptyDirective << u"\nHost a"_s;
    }

    void documents()
    {
        QFETCH(SSHConfigDocument, document);
        QFETCH(QString, text);
        QCOMPARE(SSHConfigParser {}.serialize(document), text);
    }

    void readBack_data()
    {
        QTest::addColumn<QString>("input");
        QTest::addColumn<QString>("written");
        QTest::addColumn<QString>("writtenAgain");

        QTest::newRow("empty text") << QString() << QString() << QString();
        QTest::newRow("CR LF files gain an empty line after every line")
            << u"Host a\r\n  User x\r\n"_s << u"Host a\n\n  User x\n\n"_s << u"Host a\n\n  User x\n\n"_s;
        QTest::newRow("separator comes back as an item")
            << u"Include x\nHost a\nHost b"_s << u"Include x\n\nHost a\n\nHost b"_s
            << u"Include x\n\nHost a\n\nHost b"_s;
        QTest::newRow("indented capitals become a section header")
            << u" # PROD\nHost a"_s << u"# PROD\n\nHost a"_s << u"\n# Group: PROD\nHost a"_s;
        QTest::newRow("leftover group comment goes to the first host")
            << u"Host a\n# Group: x"_s << u"# Group: x\n\nHost a"_s << u"\n# Group: x\nHost a"_s;
        QTest::newRow("leftover group comment without hosts stays")
            << u"Include z\n# Group: x"_s << u"Include z\n# Group: x"_s << u"Include z\n# Group: x"_s;
        QTest::newRow("Host option splits the block")
            << u"Host a\nHost\tweb\n  User x"_s << u"Host a\n  Host web\n  User x"_s
            << u"Host a\n\nHost web\n  User x"_s;
        QTest::newRow("disabled Host option starts a disabled block")
            << u"# Host a\n#\tHost\tweb"_s << u"# Host a\n#   Host web"_s << u"# Host a\n\n# Host web"_s;
        QTest::newRow("disabled capitals become a section header")
            << u"# Host a\n  PORT 22\nHost b"_s << u"# Host a\n#   PORT 22\n\nHost b"_s
            << u"# Host a\n\n# Group: PORT 22\nHost b"_s;
    }

    void readBack()
    {
        QFETCH(QString, input);
        QFETCH(QString, written);
        QFETCH(QString, writtenAgain);
        QCOMPARE(parseAndWrite(input), written);
        QCOMPARE(parseAndWrite(written), writtenAgain);
        QCOMPARE(parseAndWrite(writtenAgain), writtenAgain);
    }

    void unusualDocumentsReadBack()
    {
        SSHConfigDocument document;
        document.hosts = { host({ u"a"_s }, true, { option(u"User"_s, u"x"_s) }, { u"x,y"_s, u"X"_s }),
            host({}, true, { option(u"Port"_s, u"1"_s) }), host({ u"b"_s }, false, { option(u"bad-key"_s, u"1"_s) }) };
        const auto [reread, errors] = SSHConfigParser {}.parse(SSHConfigParser {}.serialize(document));
        QCOMPARE(dumpIgnoringIds(reread),
            (QStringList { u"host [\"a\"] groups [\"x\", \"y\"]"_s, u"  option \"User\" \"x\""_s, u"  blank"_s,
                u"  option \"Host\" \"\""_s, u"  option \"Port\" \"1\""_s, u"  blank"_s,
                u"disabled host [\"b\"] groups []"_s, u"  comment \"# #   bad-key 1\""_s }));
        QCOMPARE(dumpErrors(errors), (QStringList { u"10: Ongeldige disabled host-regel: #   bad-key 1"_s }));
    }
};

QTEST_GUILESS_MAIN(TestSSHConfigSerializer)
#include "test_ssh_config_serializer.moc"
