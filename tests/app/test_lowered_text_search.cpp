// The allocation-free search behind both search fields must give exactly what lower-casing the
// text and testing for the substring gives.

#include "LoweredTextSearch.h"

#include <QTest>

#include <random>

using namespace Qt::StringLiterals;

class TestLoweredTextSearch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void contains_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("query");
        QTest::addColumn<bool>("expected");
        QTest::newRow("empty query") << u"abc"_s << QString() << true;
        QTest::newRow("empty text") << QString() << u"a"_s << false;
        QTest::newRow("upper-case text") << u"WEB-01.Example.COM"_s << u"example.com"_s << true;
        QTest::newRow("at the very end") << u"xxxxxxxxxxxxxxxxxxxxab"_s << u"ab"_s << true;
        QTest::newRow("query longer than text") << u"ab"_s << u"abc"_s << false;
        QTest::newRow("folding false friend") << u"@@@@@@@@@@@@"_s << u"`"_s << false;
        QTest::newRow("bracket is not a letter") << u"[host]:22"_s << u"{host"_s << false;
        QTest::newRow("non-ASCII text, ASCII query") << u"caf\u00c9-web"_s << u"-web"_s << true;
        QTest::newRow("non-ASCII query") << u"CAF\u00c9"_s << u"caf\u00e9"_s << true;
        QTest::newRow("non-ASCII query, ASCII text") << u"cafe"_s << u"caf\u00e9"_s << false;
        QTest::newRow("Kelvin sign lower-cases to k") << u"\u212Aey"_s << u"key"_s << true;
        QTest::newRow("Kelvin sign in a long text") << QString(40, u'x') + u"\u212A"_s << u"xk"_s << true;
    }

    void contains()
    {
        QFETCH(QString, text);
        QFETCH(QString, query);
        QFETCH(bool, expected);
        QCOMPARE(LoweredTextSearch::contains(text, query), expected);
        QCOMPARE(text.toLower().contains(query), expected);
    }

    void agreesWithLowerCasingOnRandomTexts()
    {
        std::mt19937 random(7);
        const QString alphabet = u"aAbB@`[{.-09 \u00c9\u212A"_s;
        std::uniform_int_distribution<qsizetype> pick(0, alphabet.size() - 1);
        std::uniform_int_distribution<int> textLength(0, 40);
        std::uniform_int_distribution<int> queryLength(1, 3);
        for (int round = 0; round < 20000; ++round) {
            QString text;
            for (int i = textLength(random); i > 0; --i)
                text.append(alphabet.at(pick(random)));
            QString query;
            for (int i = queryLength(random); i > 0; --i)
                query.append(alphabet.at(pick(random)));
            query = query.toLower();
            QVERIFY2(LoweredTextSearch::contains(text, query) == text.toLower().contains(query),
                qPrintable(text + u" / "_s + query));
        }
    }

    void joined_data()
    {
        QTest::addColumn<QStringList>("texts");
        QTest::addColumn<QString>("query");
        QTest::addColumn<bool>("expected");
        QTest::newRow("within one") << QStringList { u"alpha"_s, u"Beta"_s } << u"bet"_s << true;
        QTest::newRow("across the blank") << QStringList { u"alpha"_s, u"Beta"_s } << u"ha be"_s << true;
        QTest::newRow("not across without the blank") << QStringList { u"alpha"_s, u"Beta"_s } << u"habe"_s << false;
        QTest::newRow("empty list, empty query") << QStringList {} << QString() << true;
        QTest::newRow("empty list") << QStringList {} << u"a"_s << false;
    }

    void joined()
    {
        QFETCH(QStringList, texts);
        QFETCH(QString, query);
        QFETCH(bool, expected);
        QCOMPARE(LoweredTextSearch::containsInJoined(texts, query), expected);
        QCOMPARE(texts.join(u' ').toLower().contains(query), expected);
    }
};

QTEST_GUILESS_MAIN(TestLoweredTextSearch)
#include "test_lowered_text_search.moc"
