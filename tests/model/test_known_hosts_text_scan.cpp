#include "KnownHostsTextScan.h"

#include <QTest>

using namespace Qt::StringLiterals;

// The searches skip blocks of characters at a time; these rows put the character sought at every
// position around a block edge and use every character of each class.
class TestKnownHostsTextScan : public QObject
{
    Q_OBJECT

private slots:
    void findsEveryLineBreakAtEveryPosition_data()
    {
        QTest::addColumn<char16_t>("character");
        QTest::addColumn<bool>("isLineBreak");
        QTest::addColumn<bool>("isWhiteSpace");
        const QList<std::tuple<const char*, char16_t, bool, bool>> rows { { "LF", u'\n', true, true },
            { "VT", u'\v', true, true }, { "FF", u'\f', true, true }, { "CR", u'\r', true, true },
            { "NEL", u'\u0085', true, true }, { "LS", u'\u2028', true, true }, { "PS", u'\u2029', true, true },
            { "blank", u' ', false, true }, { "tab", u'\t', false, true }, { "no-break space", u'\u00a0', false, true },
            { "em space", u'\u2003', false, true }, { "ideographic space", u'\u3000', false, true },
            { "unit separator", u'\u001f', false, false }, { "delete", u'\u007f', false, false },
            { "0x84", u'\u0084', false, false }, { "e acute", u'\u00e9', false, false },
            { "letter", u'x', false, false } };
        for (const auto& [name, character, isLineBreak, isWhiteSpace] : rows)
            QTest::newRow(name) << character << isLineBreak << isWhiteSpace;
    }
    void findsEveryLineBreakAtEveryPosition()
    {
        QFETCH(char16_t, character);
        QFETCH(bool, isLineBreak);
        QFETCH(bool, isWhiteSpace);
        for (qsizetype length = 1; length <= 40; ++length) {
            for (qsizetype position = 0; position < length; ++position) {
                QString text(length, u'a');
                text[position] = QChar(character);
                for (qsizetype from = 0; from <= length; ++from) {
                    const qsizetype expected = from <= position ? position : length;
                    QCOMPARE(KnownHostsTextScan::nextLineBreak(text, from), isLineBreak ? expected : length);
                    QCOMPARE(KnownHostsTextScan::nextWhiteSpace(text, from), isWhiteSpace ? expected : length);
                }
                QCOMPARE(KnownHostsTextScan::countLineBreaks(text), isLineBreak ? 1 : 0);
            }
        }
    }

    void countsAdjacentBreaks()
    {
        QCOMPARE(KnownHostsTextScan::countLineBreaks(u"\r\n\r\n"_s), 4);
        QCOMPARE(KnownHostsTextScan::countLineBreaks(QString()), 0);
        QCOMPARE(KnownHostsTextScan::countLineBreaks(QString(100, u'\n')), 100);
    }
};

QTEST_GUILESS_MAIN(TestKnownHostsTextScan)
#include "test_known_hosts_text_scan.moc"
