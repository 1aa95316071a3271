#include "ConfigDump.h"
#include "SSHConfigParser.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QStringList workedExampleLines = { u"Include ~/.ssh/conf.d/*"_s, QString(), u"# PRODUCTION"_s,
    u"# Group: web, db"_s, u"Host web-1 web-1.lan"_s, u"  HostName 10.0.0.5"_s, u"  # primary"_s, u"  Port=2222"_s,
    QString(), u"# Host old-box"_s, u"#   HostName 10.0.0.9"_s, u"# # retired"_s, u"#   bad-key x"_s };
} // namespace

class TestSSHConfigParser : public QObject
{
    Q_OBJECT

private slots:
    void workedExample()
    {
        const auto [document, errors] = SSHConfigParser {}.parse(workedExampleLines.join(u'\n'));
        QCOMPARE(dumpIgnoringIds(document),
            (QStringList { u"global directive \"Include ~/.ssh/conf.d/*\""_s, u"global blank"_s,
                u"host [\"web-1\", \"web-1.lan\"] groups [\"PRODUCTION\", \"web\", \"db\"]"_s,
                u"  option \"HostName\" \"10.0.0.5\""_s, u"  comment \"# primary\""_s, u"  comment \"# Port=2222\""_s,
                u"  blank"_s, u"disabled host [\"old-box\"] groups [\"PRODUCTION\"]"_s,
                u"  option \"HostName\" \"10.0.0.9\""_s, u"  comment \"# retired\""_s,
                u"  comment \"# #   bad-key x\""_s }));
        QCOMPARE(dumpErrors(errors),
            (QStringList {
                u"8: Ongeldige host-regel: Port=2222"_s, u"13: Ongeldige disabled host-regel: #   bad-key x"_s }));
        QCOMPARE(errors.at(0).identity(), u"8-Ongeldige host-regel: Port=2222"_s);
    }

    void everyParseMakesFreshIds()
    {
        const QString text = u"Host a\n  User x"_s;
        const SSHConfigDocument first = SSHConfigParser {}.parse(text).document;
        const SSHConfigDocument second = SSHConfigParser {}.parse(text).document;
        QCOMPARE(dumpIgnoringIds(first), dumpIgnoringIds(second));
        QVERIFY(!(first == second));
        QVERIFY(first.hosts[0].id() != second.hosts[0].id());
        QVERIFY(first.hosts[0].items[0].asOption()->id() != second.hosts[0].items[0].asOption()->id());
    }

    void edges_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("dump");
        QTest::addColumn<QStringList>("errors");

        addLines();
        addHostLines();
        addSectionHeaders();
        addDisabledBlocks();
        addGroupComments();
        addValues();
    }

    void edges()
    {
        QFETCH(QString, text);
        QFETCH(QStringList, dump);
        QFETCH(QStringList, errors);
        const auto [document, parseErrors] = SSHConfigParser {}.parse(text);
        QCOMPARE(dumpIgnoringIds(document), dump);
        QCOMPARE(dumpErrors(parseErrors), errors);
    }

private:
    static void row(const char* tag, const QString& text, const QStringList& dump, const QStringList& errors = {})
    {
        QTest::newRow(tag) << text << dump << errors;
    }

    void addLines()
    {
        row("empty text is one blank", QString(), { u"global blank"_s });
        row("final line break gives final blank", u"Include a\n"_s,
            { u"global directive \"Include a\""_s, u"global blank"_s });
        row("final line break in a host", u"Host a\n"_s, { u"host [\"a\"] groups []"_s, u"  blank"_s });
        row("CR LF gives a blank after every line, counted", u"Host a\r\n  Port=1\r\n"_s,
            { u"host [\"a\"] groups []"_s, u"  blank"_s, u"  comment \"# Port=1\""_s, u"  blank"_s, u"  blank"_s },
            { u"3: Ongeldige host-regel: Port=1"_s });
        row("every Unicode line break ends a line", u"A\u0085B\u2028C\u2029D\vE\fF\rG"_s,
            { u"global directive \"A\""_s, u"global directive \"B\""_s, u"global directive \"C\""_s,
                u"global directive \"D\""_s, u"global directive \"E\""_s, u"global directive \"F\""_s,
                u"global directive \"G\""_s });
        row("directive kept raw", u"  Match all  "_s, { u"global directive \"  Match all  \""_s });
        row("whitespace-only line is blank", u"Host a\n \t\u00a0"_s, { u"host [\"a\"] groups []"_s, u"  blank"_s });
        row("global comment trimmed", u"  # note  "_s, { u"global comment \"# note\""_s });
        row("Match and Include inside a block are options", u"Host a\nMatch host b\nInclude x"_s,
            { u"host [\"a\"] groups []"_s, u"  option \"Match\" \"host b\""_s, u"  option \"Include\" \"x\""_s });
        row("lines before the first host never fail", u"Port=22\nbad-key x"_s,
            { u"global directive \"Port=22\""_s, u"global directive \"bad-key x\""_s });
    }

    void addHostLines()
    {
        row("Host and tab before a host is a directive", u"Host\tweb"_s, { u"global directive \"Host\tweb\""_s });
        row("Host and tab in a block is an option", u"Host a\nHost\tweb"_s,
            { u"host [\"a\"] groups []"_s, u"  option \"Host\" \"web\""_s });
        row("upper-case host keyword", u"HOST web"_s, { u"host [\"web\"] groups []"_s });
        row("comment reading as a host line starts a disabled host", u"# host keys follow"_s,
            { u"disabled host [\"keys\", \"follow\"] groups []"_s });
        row("no space after marker", u"#Host x"_s, { u"disabled host [\"x\"] groups []"_s });
        row("indented host line", u"\t Host a"_s, { u"host [\"a\"] groups []"_s });
        row("upper-case disabled host line is not a section", u"# HOST DB\nHost e"_s,
            { u"disabled host [\"DB\"] groups []"_s, u"host [\"e\"] groups []"_s });
        row("host line with only blanks after keyword is a directive", u"Host \t"_s,
            { u"global directive \"Host \t\""_s });
    }

    void addSectionHeaders()
    {
        row("section header in a block goes to later hosts only", u"Host a\n# LEGACY\nHost b"_s,
            { u"host [\"a\"] groups []"_s, u"host [\"b\"] groups [\"LEGACY\"]"_s });
        row("indented capitals in an enabled block are a comment", u"Host a\n # LEGACY\nHost b"_s,
            { u"host [\"a\"] groups []"_s, u"  comment \"# LEGACY\""_s, u"host [\"b\"] groups []"_s });
        row("indented capitals in a disabled block are an option", u"# Host a\n # LEGACY"_s,
            { u"disabled host [\"a\"] groups []"_s, u"  option \"LEGACY\" \"\""_s });
        row("section header in a disabled block", u"# Host a\n#   PORT 22\nHost b"_s,
            { u"disabled host [\"a\"] groups []"_s, u"host [\"b\"] groups [\"PORT 22\"]"_s });
        row("indented capitals before first host are a comment", u" # PROD\nHost a"_s,
            { u"global comment \"# PROD\""_s, u"host [\"a\"] groups []"_s });
        row("a later header replaces the earlier", u"# ONE\nHost a\n# TWO\nHost b\nHost c"_s,
            { u"host [\"a\"] groups [\"ONE\"]"_s, u"host [\"b\"] groups [\"TWO\"]"_s,
                u"host [\"c\"] groups [\"TWO\"]"_s });
        row("section label first, then own labels, duplicates dropped", u"# WEB\n# Group: web, db\nHost a"_s,
            { u"host [\"a\"] groups [\"WEB\", \"db\"]"_s });
    }

    void addDisabledBlocks()
    {
        row("only a marker is blank", u"# Host a\n#\n# \t"_s,
            { u"disabled host [\"a\"] groups []"_s, u"  blank"_s, u"  blank"_s });
        row("uncommented line is still an option", u"# Host a\n  User root"_s,
            { u"disabled host [\"a\"] groups []"_s, u"  option \"User\" \"root\""_s });
        row("disabled option spellings", u"# Host a\n#User x\n#\tPort 2\n  # IdentityFile k"_s,
            { u"disabled host [\"a\"] groups []"_s, u"  option \"User\" \"x\""_s, u"  option \"Port\" \"2\""_s,
                u"  option \"IdentityFile\" \"k\""_s });
        row("disabled invalid line without marker", u"# Host a\n  Port=2"_s,
            { u"disabled host [\"a\"] groups []"_s, u"  comment \"# Port=2\""_s },
            { u"2: Ongeldige disabled host-regel: Port=2"_s });
        row("enabled block after disabled one", u"# Host a\nHost b\n# x"_s,
            { u"disabled host [\"a\"] groups []"_s, u"host [\"b\"] groups []"_s, u"  comment \"# x\""_s });
    }

    void addGroupComments()
    {
        row("indented group comment in an enabled block", u"Host a\n  # Group: a"_s,
            { u"host [\"a\"] groups []"_s, u"  comment \"# Group: a\""_s });
        row("indented group comment in a disabled block", u"# Host a\n  # Group: a"_s,
            { u"disabled host [\"a\"] groups []"_s, u"  comment \"# # Group: a\""_s },
            { u"2: Ongeldige disabled host-regel: # Group: a"_s });
        row("indented group comment before first host", u"   # Group: a\nHost h"_s,
            { u"host [\"h\"] groups [\"a\"]"_s });
        row("duplicate labels collapse to first", u"# Group: Web, WEB, web\nHost h"_s,
            { u"host [\"h\"] groups [\"Web\"]"_s });
        row("group comment between blocks goes below", u"Host a\n# Group: x\nHost b"_s,
            { u"host [\"a\"] groups []"_s, u"host [\"b\"] groups [\"x\"]"_s });
        row("group comment after the last host", u"Host a\n# Group: x, y"_s,
            { u"global comment \"# Group: x\""_s, u"global comment \"# Group: y\""_s, u"host [\"a\"] groups []"_s });
        row("group comment in a file without hosts", u"Include z\n# Group: x"_s,
            { u"global directive \"Include z\""_s, u"global comment \"# Group: x\""_s });
        row("pending groups are used once", u"# Group: x\nHost a\nHost b"_s,
            { u"host [\"a\"] groups [\"x\"]"_s, u"host [\"b\"] groups []"_s });
        row("group comment with no labels is a comment", u"# Group:\nHost a\n# Group:"_s,
            { u"global comment \"# Group:\""_s, u"host [\"a\"] groups []"_s, u"  comment \"# Group:\""_s });
    }

    void addValues()
    {
        row("key keeps its letter case", u"Host a\nhOSTNAME x"_s,
            { u"host [\"a\"] groups []"_s, u"  option \"hOSTNAME\" \"x\""_s });
    }
};

QTEST_GUILESS_MAIN(TestSSHConfigParser)
#include "test_ssh_config_parser.moc"
