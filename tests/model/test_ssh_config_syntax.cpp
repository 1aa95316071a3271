#include "SSHConfigSyntax.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace SSHConfigSyntax;

class TestSSHConfigSyntax : public QObject
{
    Q_OBJECT

private slots:
    void spaces()
    {
        for (const char16_t c : { u'\n', u'\v', u'\f', u'\r', u'\u0085', u'\u2028', u'\u2029' })
            QVERIFY(!isSpace(c));
        for (const char16_t c : { u' ', u'\t', u'\u00a0', u'\u1680', u'\u2000', u'\u200a', u'\u202f', u'\u3000' })
            QVERIFY(isSpace(c));
        for (const char16_t c : { u'x', u'#', u'\u200b', u'\u180e', u'\u0000', u'\u001c' })
            QVERIFY(!isSpace(c));
    }

    void hostLine_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isHost");
        QTest::newRow("plain") << u"Host web"_s << true;
        QTest::newRow("upper case") << u"HOST web"_s << true;
        QTest::newRow("mixed case") << u"hOsT web"_s << true;
        QTest::newRow("tab after keyword") << u"Host\tweb"_s << false;
        QTest::newRow("keyword alone") << u"Host"_s << false;
        QTest::newRow("keyword and space only") << u"Host "_s << true;
        QTest::newRow("Hostname") << u"Hostname x"_s << false;
        QTest::newRow("non-breaking space after keyword") << u"Host\u00a0web"_s << false;
        QTest::newRow("long s is not ASCII s") << u"Ho\u017ft web"_s << false;
    }

    void hostLine()
    {
        QFETCH(QString, text);
        QFETCH(bool, isHost);
        QCOMPARE(isHostLine(text), isHost);
    }

    void stripMarker_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("stripped");
        QTest::newRow("one space after marker removed") << u"# Host x"_s << u"Host x"_s;
        QTest::newRow("further indentation stays") << u"#   HostName y"_s << u"  HostName y"_s;
        QTest::newRow("no space") << u"#Host x"_s << u"Host x"_s;
        QTest::newRow("surrounding spaces and tabs trimmed first") << u" \t# a \t"_s << u"a"_s;
        QTest::newRow("tab after marker stays") << u"#\tUser x"_s << u"\tUser x"_s;
        QTest::newRow("no marker returns text untrimmed") << u"  User root  "_s << u"  User root  "_s;
        QTest::newRow("only marker") << u"#"_s << QString();
        QTest::newRow("double marker loses one") << u"# # retired"_s << u"# retired"_s;
    }

    void stripMarker()
    {
        QFETCH(QString, text);
        QFETCH(QString, stripped);
        QCOMPARE(stripCommentMarker(text).toString(), stripped);
    }

    void hostPatterns_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("patterns");
        QTest::newRow("two patterns") << u"Host web-1 web-1.lan"_s << QStringList { u"web-1"_s, u"web-1.lan"_s };
        QTest::newRow("runs of mixed separators")
            << u"Host  a\t\u00a0b\u3000c"_s << QStringList { u"a"_s, u"b"_s, u"c"_s };
        QTest::newRow("keyword alone gives star") << u"Host"_s << QStringList { u"*"_s };
        QTest::newRow("keyword and blanks give star") << u"Host   "_s << QStringList { u"*"_s };
        QTest::newRow("negation and wildcard kept") << u"Host !a *.b"_s << QStringList { u"!a"_s, u"*.b"_s };
    }

    void hostPatterns()
    {
        QFETCH(QString, text);
        QFETCH(QStringList, patterns);
        QCOMPARE(parseHostPatterns(text), patterns);
    }

    void option_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<bool>("isOption");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::newRow("indented") << u"  HostName 10.0.0.5"_s << true << u"HostName"_s << u"10.0.0.5"_s;
        QTest::newRow("equals glued is no option") << u"Port=22"_s << false << QString() << QString();
        QTest::newRow("spaced equals belongs to value") << u"Port = 22"_s << true << u"Port"_s << u"= 22"_s;
        QTest::newRow("no value") << u"ForwardAgent"_s << true << u"ForwardAgent"_s << QString();
        QTest::newRow("key and trailing blank") << u"ForwardAgent \t"_s << true << u"ForwardAgent"_s << QString();
        QTest::newRow("tab separates") << u"User\troot"_s << true << u"User"_s << u"root"_s;
        QTest::newRow("non-breaking space separates") << u"User\u00a0root"_s << true << u"User"_s << u"root"_s;
        QTest::newRow("inner runs of blanks kept")
            << u"LocalForward  8080   localhost:80  "_s << true << u"LocalForward"_s << u"8080   localhost:80"_s;
        QTest::newRow("quoted path kept with quotes")
            << u"IdentityFile \"~/my keys/id\""_s << true << u"IdentityFile"_s << u"\"~/my keys/id\""_s;
        QTest::newRow("comment after value belongs to value")
            << u"  HostName x # main"_s << true << u"HostName"_s << u"x # main"_s;
        QTest::newRow("key starting with digit") << u"1Port 22"_s << false << QString() << QString();
        QTest::newRow("key with dash") << u"bad-key x"_s << false << QString() << QString();
        QTest::newRow("key with non-ASCII letter") << u"\u00dcser x"_s << false << QString() << QString();
        QTest::newRow("comment") << u"# User x"_s << false << QString() << QString();
        QTest::newRow("blank") << u" \t"_s << false << QString() << QString();
        QTest::newRow("unknown key accepted") << u"Frobnicate 1"_s << true << u"Frobnicate"_s << u"1"_s;
    }

    void option()
    {
        QFETCH(QString, line);
        QFETCH(bool, isOption);
        QFETCH(QString, key);
        QFETCH(QString, value);
        const std::optional<OptionParts> parts = parseOption(line);
        QCOMPARE(parts.has_value(), isOption);
        if (parts) {
            QCOMPARE(parts->key.toString(), key);
            QCOMPARE(parts->value.toString(), value);
        }
    }

    void groupComment_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("labels");
        QTest::newRow("two labels") << u"# Group: werk, klanten"_s << QStringList { u"werk"_s, u"klanten"_s };
        QTest::newRow("no space, empty piece") << u"#group:a,,b"_s << QStringList { u"a"_s, u"b"_s };
        QTest::newRow("no labels") << u"# Group:"_s << QStringList {};
        QTest::newRow("Groups is not Group") << u"# Groups: a"_s << QStringList {};
        QTest::newRow("duplicates kept here") << u"# GROUP: a, A"_s << QStringList { u"a"_s, u"A"_s };
        QTest::newRow("indented with blanks") << u"\t#   group :x"_s << QStringList {};
        QTest::newRow("not a comment") << u"Group: a"_s << QStringList {};
        QTest::newRow("blanks around") << u" #\tGroup:\u00a0a ,\tb "_s << QStringList { u"a"_s, u"b"_s };
    }

    void groupComment()
    {
        QFETCH(QString, text);
        QFETCH(QStringList, labels);
        QCOMPARE(parseGroupComment(text), labels);
    }

    void sectionHeader_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("label");
        QTest::addColumn<bool>("isHeader");
        QTest::newRow("runs of spaces collapse") << u"# WEB  SERVERS"_s << u"WEB SERVERS"_s << true;
        QTest::newRow("plain") << u"# PRODUCTION"_s << u"PRODUCTION"_s << true;
        QTest::newRow("digits, dash, slash, underscore") << u"#EU-1/DC_2"_s << u"EU-1/DC_2"_s << true;
        QTest::newRow("mixed case") << u"# Web servers"_s << QString() << false;
        QTest::newRow("dashes only") << u"# ---"_s << QString() << false;
        QTest::newRow("digits only") << u"# 42"_s << QString() << false;
        QTest::newRow("starts with dash") << u"# -WEB"_s << QString() << false;
        QTest::newRow("group comment") << u"# GROUP: WEB"_s << QString() << false;
        QTest::newRow("group comment without colon label") << u"# GROUP WEB"_s << u"GROUP WEB"_s << true;
        QTest::newRow("empty comment") << u"#"_s << QString() << false;
        QTest::newRow("tab inside") << u"# A\tB"_s << QString() << false;
        QTest::newRow("non-ASCII capital") << u"# \u00c9T\u00c9"_s << QString() << false;
        QTest::newRow("trailing blanks trimmed") << u"# PORT 22 \t"_s << u"PORT 22"_s << true;
    }

    void sectionHeader()
    {
        QFETCH(QString, text);
        QFETCH(QString, label);
        QFETCH(bool, isHeader);
        const std::optional<QString> result = parseSectionHeader(text);
        QCOMPARE(result.has_value(), isHeader);
        if (result)
            QCOMPARE(*result, label);
    }

    void normalizedComments()
    {
        QCOMPARE(normalizedComment(u"  # note "_s), u"# note"_s);
        QCOMPARE(normalizedComment(u"note"_s), u"# note"_s);
        QCOMPARE(normalizedComment(u"#x"_s), u"#x"_s);
        QCOMPARE(normalizedComment(QString()), u"# "_s);
    }
};

QTEST_GUILESS_MAIN(TestSSHConfigSyntax)
#include "test_ssh_config_syntax.moc"
