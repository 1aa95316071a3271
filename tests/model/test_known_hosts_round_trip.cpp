#include "KnownHostsService.h"
#include "KnownHostsTextGenerator.h"
#include "TestFiles.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
constexpr int generatedTexts = 400;

int countLines(const QString& text)
{
    int lines = 1;
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        if ((u >= 0x0A && u <= 0x0D) || u == 0x85 || u == 0x2028 || u == 0x2029)
            ++lines;
    }
    return lines;
}

// Checks what holds for every parse, whatever the text; returns the first broken rule or an empty text.
QString brokenInvariant(const QString& text, const KnownHostsParseResult& result)
{
    const QList<KnownHostsRecord>& records = result.document.records();
    if (records.size() != countLines(text))
        return u"record count differs from line count"_s;
    QList<int> invalidLines;
    for (qsizetype i = 0; i < records.size(); ++i) {
        const KnownHostsRecordKind& kind = records[i].kind();
        if (kind.isInvalid())
            invalidLines.append(static_cast<int>(i + 1));
        if (const KnownHostEntry* entry = kind.entry()) {
            if (entry->lineNumber() != i + 1)
                return u"entry line number is not its position"_s;
            if (entry->hosts().isEmpty() || entry->hosts().contains(QString()))
                return u"entry without hosts or with an empty host"_s;
        }
        if (kind.isComment() && !kind.text().startsWith(u'#'))
            return u"comment that does not begin with #"_s;
    }
    QList<int> errorLines;
    for (const KnownHostsParseError& error : result.errors)
        errorLines.append(error.line());
    return errorLines == invalidLines ? QString() : u"errors are not exactly the invalid lines"_s;
}

} // namespace

class TestKnownHostsRoundTrip : public QObject
{
    Q_OBJECT

private slots:
    void normalFormIsWrittenBackExactly_data() { seeds(); }
    void normalFormIsWrittenBackExactly()
    {
        QFETCH(quint32, seed);
        const QString text = KnownHostsTextGenerator(seed).normalFormText(40);
        const KnownHostsParseResult result = KnownHostsService {}.parse(text);
        QCOMPARE(KnownHostsService {}.serialize(result.document), text);
        writeFuzzSeed(u"fuzz_known_hosts"_s, u"normal-%1.txt"_s.arg(seed), text);
    }

    void secondWriteEqualsFirst_data() { seeds(); }
    void secondWriteEqualsFirst()
    {
        QFETCH(quint32, seed);
        const QString text = KnownHostsTextGenerator(seed).irregularText(40);
        const KnownHostsParseResult first = KnownHostsService {}.parse(text);
        const QString firstWrite = KnownHostsService {}.serialize(first.document);
        const KnownHostsParseResult second = KnownHostsService {}.parse(firstWrite);
        QCOMPARE(second.document.records().size(), first.document.records().size());
        QCOMPARE(KnownHostsService {}.serialize(second.document), firstWrite);
        writeFuzzSeed(u"fuzz_known_hosts"_s, u"irregular-%1.txt"_s.arg(seed), text);
    }

    void invariantsHold_data() { seeds(); }
    void invariantsHold()
    {
        QFETCH(quint32, seed);
        KnownHostsTextGenerator generator(seed);
        for (const QString& text : { generator.irregularText(30), generator.normalFormText(30) }) {
            const QString broken = brokenInvariant(text, KnownHostsService {}.parse(text));
            QVERIFY2(broken.isEmpty(), qPrintable(broken + u" in: "_s + text));
        }
    }

    // A line read as an entry keeps everything a later reader needs: writing it and reading it again
    // gives the same fields (ids and line numbers aside).
    void entriesSurviveTheirOwnWrite_data() { seeds(); }
    void entriesSurviveTheirOwnWrite()
    {
        QFETCH(quint32, seed);
        const QString text = KnownHostsTextGenerator(seed).irregularText(20);
        const KnownHostsDocument first = KnownHostsService {}.parse(text).document;
        const KnownHostsDocument second = KnownHostsService {}.parse(KnownHostsService {}.serialize(first)).document;
        for (qsizetype i = 0; i < first.records().size(); ++i) {
            const KnownHostEntry* before = first.records()[i].kind().entry();
            const KnownHostEntry* after = second.records()[i].kind().entry();
            QCOMPARE(after != nullptr, before != nullptr);
            if (!before)
                continue;
            QCOMPARE(after->marker(), before->marker());
            QCOMPARE(after->hosts(), before->hosts());
            QCOMPARE(after->keyType(), before->keyType());
            QCOMPARE(after->key(), before->key());
            QCOMPARE(after->comment(), before->comment());
            QCOMPARE(after->isHashed(), before->isHashed());
            QCOMPARE(after->isCommentedOut(), before->isCommentedOut());
        }
    }

    // Inputs the fuzzer found, kept as they were found (base64 of the file's bytes).
    void fuzzFindingsSettle_data()
    {
        QTest::addColumn<QByteArray>("base64");
        QTest::addColumn<int>("writesUntilStable");
        QTest::newRow("comma-shielded @revoked among broken UTF-8") << QByteArray(
            "LEByZXZva2VkIGhvc3RBPXNoLWVkMjU1MSwJ5pel5pys4oCDQUFBQSAggqBvbGTjgGNvbSBzc2gtZTU1ZDE5MiBBQUFBPT12ZXI=")
                                                                    << 2;
        QTest::newRow("shield behind shield: active, then commented out, then marked")
            << QByteArray("LCMsQHJldm9rZWQgLCMJIyBh") << 3;
    }
    void fuzzFindingsSettle()
    {
        QFETCH(QByteArray, base64);
        QFETCH(int, writesUntilStable);
        QString text = QString::fromUtf8(QByteArray::fromBase64(base64));
        writeFuzzSeed(u"fuzz_known_hosts"_s, u"finding-%1.txt"_s.arg(qHash(base64, 0), 0, 16), text);
        const qsizetype records = KnownHostsService {}.parse(text).document.records().size();
        for (int write = 0; write < writesUntilStable; ++write) {
            const KnownHostsParseResult result = KnownHostsService {}.parse(text);
            QVERIFY(brokenInvariant(text, result).isEmpty());
            QCOMPARE(result.document.records().size(), records);
            text = KnownHostsService {}.serialize(result.document);
        }
        QCOMPARE(KnownHostsService {}.serialize(KnownHostsService {}.parse(text).document), text);
    }

    void generatorIsDeterministic()
    {
        QCOMPARE(KnownHostsTextGenerator(42).irregularText(30), KnownHostsTextGenerator(42).irregularText(30));
        QVERIFY(KnownHostsTextGenerator(42).irregularText(30) != KnownHostsTextGenerator(43).irregularText(30));
    }

private:
    static void seeds()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= generatedTexts; ++seed)
            QTest::addRow("seed %u", seed) << seed;
    }
};

QTEST_GUILESS_MAIN(TestKnownHostsRoundTrip)
#include "test_known_hosts_round_trip.moc"
