#include "OpenSSHLineWords.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// Lines cut into words the way ssh reads its config, which differs from this program's own reader.
class TestOpenSSHLineWords : public QObject
{
    Q_OBJECT

private slots:
    void split_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("words");
        QTest::newRow("keyword and value") << u"  Port 22"_s << QStringList { u"Port"_s, u"22"_s };
        QTest::newRow("equals after the keyword") << u"Port=2222"_s << QStringList { u"Port"_s, u"2222"_s };
        QTest::newRow("spaced equals") << u"Port = 2222"_s << QStringList { u"Port"_s, u"2222"_s };
        QTest::newRow("quoted argument keeps its blanks")
            << u"Match exec \"test -f x\" host a,b"_s
            << QStringList { u"Match"_s, u"exec"_s, u"test -f x"_s, u"host"_s, u"a,b"_s };
        QTest::newRow("comment word ends the line") << u"Host a # note"_s << QStringList { u"Host"_s, u"a"_s };
        QTest::newRow("comment line") << u"  # Host a"_s << QStringList {};
        QTest::newRow("tab separates") << u"Host\tweb"_s << QStringList { u"Host"_s, u"web"_s };
        QTest::newRow("line separator stays inside a word") << u"# x\u2028User root"_s << QStringList {};
        QTest::newRow("unterminated quote takes the rest")
            << u"Include \"a b"_s << QStringList { u"Include"_s, u"a b"_s };
        QTest::newRow("quotes inside a word join its parts")
            << u"User a\"b c\"'d'e"_s << QStringList { u"User"_s, u"ab cde"_s };
        QTest::newRow("NUL is part of a word") << u"User a\u0000b"_s << QStringList { u"User"_s, u"a\u0000b"_s };
    }

    void split()
    {
        QFETCH(QString, line);
        QFETCH(QStringList, words);
        QCOMPARE(OpenSSHLineWords::split(line), words);
    }

    void quoted_data()
    {
        QTest::addColumn<QString>("word");
        QTest::addColumn<QString>("expected");
        QTest::newRow("plain") << u"a,b"_s << u"a,b"_s;
        QTest::newRow("blank") << u"/my dir/x"_s << u"\"/my dir/x\""_s;
        QTest::newRow("empty") << QString() << u"\"\""_s;
    }

    void quoted()
    {
        QFETCH(QString, word);
        QFETCH(QString, expected);
        QCOMPARE(OpenSSHLineWords::quoted(word), expected);
        const QString line = u"Include "_s + OpenSSHLineWords::quoted(word);
        QCOMPARE(OpenSSHLineWords::split(line).value(1), word);
    }
};

QTEST_GUILESS_MAIN(TestOpenSSHLineWords)
#include "test_openssh_line_words.moc"
