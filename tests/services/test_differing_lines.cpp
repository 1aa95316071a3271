#include "DifferingLines.h"

#include <QHash>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
using Balance = QHash<QStringView, qsizetype>;

void count(Balance& balance, QStringView text, qsizetype weight)
{
    for (const QStringView line : text.split(u'\n'))
        balance[line] += weight;
}

// The lines found more often in one text than in the other, as a sorted list of "line: count".
QStringList difference(QStringView first, QStringView second)
{
    Balance balance;
    count(balance, first, 1);
    count(balance, second, -1);
    QStringList lines;
    for (auto it = balance.cbegin(); it != balance.cend(); ++it) {
        if (it.value() != 0)
            lines.append(it.key().toString() + u": "_s + QString::number(it.value()));
    }
    lines.sort();
    return lines;
}

QString numberedLines(int count)
{
    QString text;
    for (int i = 0; i < count; ++i)
        text += u"line "_s + QString::number(i) + u'\n';
    return text;
}
} // namespace

class TestDifferingLines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leavesOutCommonLines_data()
    {
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");
        QTest::addColumn<QString>("firstLeft");
        QTest::addColumn<QString>("secondLeft");
        QTest::newRow("equal") << u"a\nb\n"_s << u"a\nb\n"_s << QString() << QString();
        QTest::newRow("both empty") << QString() << QString() << QString() << QString();
        QTest::newRow("line deleted") << u"a\nb\nc\nd\n"_s << u"a\nb\nd\n"_s << u"c\n"_s << QString();
        QTest::newRow("line changed") << u"a\nb\nc\n"_s << u"a\nB\nc\n"_s << u"b\n"_s << u"B\n"_s;
        QTest::newRow("line added at the end") << u"a\n"_s << u"a\nb\n"_s << QString() << u"b\n"_s;
        QTest::newRow("line added at the top") << u"b\nc\n"_s << u"a\nb\nc\n"_s << QString() << u"a\n"_s;
        QTest::newRow("repeated line deleted") << u"x\nx\n"_s << u"x\n"_s << u"x\n"_s << QString();
        QTest::newRow("no last line end") << u"a\nb"_s << u"a\nc"_s << u"b"_s << u"c"_s;
        QTest::newRow("last line end removed") << u"a\nb\n"_s << u"a\nb"_s << u"b\n"_s << u"b"_s;
        QTest::newRow("a line's end shared") << u"a\nxb\n"_s << u"a\nyb\n"_s << u"xb\n"_s << u"yb\n"_s;
        QTest::newRow("a line's start shared") << u"ab\nc\n"_s << u"ax\nc\n"_s << u"ab\n"_s << u"ax\n"_s;
        QTest::newRow("lines joined") << u"a\nb\n"_s << u"ab\n"_s << u"a\nb\n"_s << u"ab\n"_s;
    }

    void leavesOutCommonLines()
    {
        QFETCH(QString, first);
        QFETCH(QString, second);
        QFETCH(QString, firstLeft);
        QFETCH(QString, secondLeft);
        const DifferingLines left = DifferingLines::of(first, second);
        QCOMPARE(left.first.toString(), firstLeft);
        QCOMPARE(left.second.toString(), secondLeft);
        QCOMPARE(difference(left.first, left.second), difference(first, second));
    }

    /// Texts of several comparison blocks, with one line deleted, changed or added at every position:
    /// what is left counts as the whole texts, and holds no more than the edit and a line beside it.
    void anEditAnywhereLeavesOnlyItsLines_data()
    {
        QTest::addColumn<int>("edit");
        QTest::newRow("delete") << 0;
        QTest::newRow("change") << 1;
        QTest::newRow("add") << 2;
    }

    void anEditAnywhereLeavesOnlyItsLines()
    {
        QFETCH(int, edit);
        const QString text = numberedLines(1500);
        const QStringList lines = text.split(u'\n');
        for (qsizetype at = 0; at < lines.size(); ++at) {
            QStringList edited = lines;
            if (edit == 0)
                edited.removeAt(at);
            else if (edit == 1)
                edited[at] += u'x';
            else
                edited.insert(at, u"new line"_s);
            const QString second = edited.join(u'\n');
            const DifferingLines left = DifferingLines::of(text, second);
            QCOMPARE(difference(left.first, left.second), difference(text, second));
            QVERIFY2(left.first.size() + left.second.size() <= 40, qPrintable(u"at line "_s + QString::number(at)));
        }
    }
};

QTEST_GUILESS_MAIN(TestDifferingLines)
#include "test_differing_lines.moc"
