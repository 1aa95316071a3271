#include "KnownHostsService.h"
#include "RandomUuid.h"

#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
// One record as a line of text, so a row can state everything the parser made of a line at once.
QString describe(const KnownHostsRecord& record)
{
    const KnownHostsRecordKind& kind = record.kind();
    switch (kind.tag()) {
    case KnownHostsRecordKind::Case::blank:
        return u"blank"_s;
    case KnownHostsRecordKind::Case::comment:
        return u"comment<"_s + kind.text() + u'>';
    case KnownHostsRecordKind::Case::invalid:
        return u"invalid<"_s + kind.text() + u'>';
    case KnownHostsRecordKind::Case::entry:
        break;
    }
    const KnownHostEntry& e = *kind.entry();
    return u"entry line=%1 marker=%2 hosts=<%3> type=<%4> key=<%5> comment=<%6>%7%8"_s.arg(e.lineNumber())
        .arg(e.marker() ? knownHostMarkerRawValue(*e.marker()) : u"none"_s, e.hosts().join(u'|'), e.keyType(), e.key(),
            e.comment())
        .arg(e.isHashed() ? u" hashed"_s : QString(), e.isCommentedOut() ? u" commented-out"_s : QString());
}

QStringList describeAll(const KnownHostsDocument& document)
{
    QStringList lines;
    for (const KnownHostsRecord& record : document.records())
        lines.append(describe(record));
    return lines;
}

QList<int> errorLines(const QList<KnownHostsParseError>& errors)
{
    QList<int> lines;
    for (const KnownHostsParseError& error : errors) {
        if (error.message() != u"Ongeldige known_hosts regel."_s)
            return { -1 };
        lines.append(error.line());
    }
    return lines;
}

QString roundTrip(const QString& text)
{
    return KnownHostsService {}.serialize(KnownHostsService {}.parse(text).document);
}

KnownHostsRecord entryRecord(const QStringList& hosts, const QString& keyType, const QString& key,
    const QString& comment, std::optional<KnownHostMarker> marker = std::nullopt, bool isCommentedOut = false)
{
    return KnownHostsRecord(KnownHostsRecordKind::fromEntry(
        KnownHostEntry(createRandomUuid(), 1, marker, hosts, keyType, key, comment, false, isCommentedOut)));
}
} // namespace

class TestKnownHostsService : public QObject
{
    Q_OBJECT

private slots:
    // --- one line: what it reads as and how it is written back

    void parsesOneLine_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("record");
        QTest::addColumn<QString>("written");

        const QString normal = u"host1,host2 ssh-ed25519 AAAA key comment"_s;
        QTest::newRow("entry: two hosts and a comment")
            << normal
            << u"entry line=1 marker=none hosts=<host1|host2> type=<ssh-ed25519> key=<AAAA> comment=<key comment>"_s
            << normal;
        QTest::newRow("entry: no comment")
            << u"h ssh-rsa AAAA"_s << u"entry line=1 marker=none hosts=<h> type=<ssh-rsa> key=<AAAA> comment=<>"_s
            << u"h ssh-rsa AAAA"_s;
        QTest::newRow("entry: fourth field is the comment without a marker")
            << u"h t k c"_s << u"entry line=1 marker=none hosts=<h> type=<t> key=<k> comment=<c>"_s << u"h t k c"_s;
        QTest::newRow("marker: upper case, written lower")
            << u"@CERT-AUTHORITY node? ssh-rsa AAAA"_s
            << u"entry line=1 marker=@cert-authority hosts=<node?> type=<ssh-rsa> key=<AAAA> comment=<>"_s
            << u"@cert-authority node? ssh-rsa AAAA"_s;
        QTest::newRow("marker: capital R still revoked")
            << u"@Revoked h t k"_s << u"entry line=1 marker=@revoked hosts=<h> type=<t> key=<k> comment=<>"_s
            << u"@revoked h t k"_s;
        QTest::newRow("marker: Kelvin sign lower-cases to k")
            << u"@revo\u212Aed h t k"_s << u"entry line=1 marker=@revoked hosts=<h> type=<t> key=<k> comment=<>"_s
            << u"@revoked h t k"_s;
        QTest::newRow("marker: dotted capital I lower-cases to two characters")
            << u"@CERT-AUTHOR\u0130TY h t k"_s
            << u"entry line=1 marker=none hosts=<@CERT-AUTHOR\u0130TY> type=<h> key=<t> comment=<k>"_s
            << u"@CERT-AUTHOR\u0130TY h t k"_s;
        QTest::newRow("marker: with a comment")
            << u"@revoked h t k one two"_s
            << u"entry line=1 marker=@revoked hosts=<h> type=<t> key=<k> comment=<one two>"_s
            << u"@revoked h t k one two"_s;
        QTest::newRow("marker: not a marker word is a host")
            << u"@revoke t k"_s << u"entry line=1 marker=none hosts=<@revoke> type=<t> key=<k> comment=<>"_s
            << u"@revoke t k"_s;
        QTest::newRow("invalid: marker, hosts and key type only")
            << u"@revoked host ssh-ed25519"_s << u"invalid<@revoked host ssh-ed25519>"_s
            << u"@revoked host ssh-ed25519"_s;
        QTest::newRow("invalid: two fields")
            << u"  host ssh-ed25519\t"_s << u"invalid<  host ssh-ed25519\t>"_s << u"  host ssh-ed25519\t"_s;
        QTest::newRow("invalid: one field") << u"garbage"_s << u"invalid<garbage>"_s << u"garbage"_s;
        QTest::newRow("invalid: hosts field of commas only")
            << u",,, ssh-rsa AAAA"_s << u"invalid<,,, ssh-rsa AAAA>"_s << u",,, ssh-rsa AAAA"_s;
        QTest::newRow("invalid: marker and hosts of commas only")
            << u"@revoked , t k"_s << u"invalid<@revoked , t k>"_s << u"@revoked , t k"_s;
        QTest::newRow("hosts: empty pieces dropped")
            << u",a,,b, t k"_s << u"entry line=1 marker=none hosts=<a|b> type=<t> key=<k> comment=<>"_s << u"a,b t k"_s;
        // The writer puts nothing before the first host, so the shielding comma is gone and the written
        // line reads back as a marked or commented-out entry.
        QTest::newRow("hosts: leading comma shields a marker word")
            << u",@Revoked t k"_s << u"entry line=1 marker=none hosts=<@Revoked> type=<t> key=<k> comment=<>"_s
            << u"@Revoked t k"_s;
        QTest::newRow("hosts: leading comma shields a #")
            << u",#x t k"_s << u"entry line=1 marker=none hosts=<#x> type=<t> key=<k> comment=<>"_s << u"#x t k"_s;
        QTest::newRow("hashed: |1|")
            << u"|1|abc=|def= ssh-rsa AAAA"_s
            << u"entry line=1 marker=none hosts=<|1|abc=|def=> type=<ssh-rsa> key=<AAAA> comment=<> hashed"_s
            << u"|1|abc=|def= ssh-rsa AAAA"_s;
        QTest::newRow("hashed: |2| after a plain name")
            << u"plain,|2|x t k"_s
            << u"entry line=1 marker=none hosts=<plain||2|x> type=<t> key=<k> comment=<> hashed"_s
            << u"plain,|2|x t k"_s;
        QTest::newRow("hashed: 1| is not")
            << u"1|abc t k"_s << u"entry line=1 marker=none hosts=<1|abc> type=<t> key=<k> comment=<>"_s
            << u"1|abc t k"_s;
        QTest::newRow("hashed: |3| is not")
            << u"|3|abc t k"_s << u"entry line=1 marker=none hosts=<|3|abc> type=<t> key=<k> comment=<>"_s
            << u"|3|abc t k"_s;
        QTest::newRow("commented out: no blank after #")
            << u"#host ssh-ed25519 AAAA"_s
            << u"entry line=1 marker=none hosts=<host> type=<ssh-ed25519> key=<AAAA> comment=<> commented-out"_s
            << u"# host ssh-ed25519 AAAA"_s;
        QTest::newRow("commented out: with marker")
            << u"# @Cert-Authority *.x t k"_s
            << u"entry line=1 marker=@cert-authority hosts=<*.x> type=<t> key=<k> comment=<> commented-out"_s
            << u"# @cert-authority *.x t k"_s;
        QTest::newRow("commented out: tab after # is absorbed")
            << u"#\thost t k"_s << u"entry line=1 marker=none hosts=<host> type=<t> key=<k> comment=<> commented-out"_s
            << u"# host t k"_s;
        QTest::newRow("commented out: double # gives host #")
            << u"## a b"_s << u"entry line=1 marker=none hosts=<#> type=<a> key=<b> comment=<> commented-out"_s
            << u"# # a b"_s;
        QTest::newRow("commented out: prose of three words")
            << u"# the old server, gone"_s
            << u"entry line=1 marker=none hosts=<the> type=<old> key=<server,> comment=<gone> commented-out"_s
            << u"# the old server, gone"_s;
        QTest::newRow("commented out: invalid marker line stays a comment")
            << u"# @revoked h t"_s << u"comment<# @revoked h t>"_s << u"# @revoked h t"_s;
        QTest::newRow("comment: lone #") << u"#"_s << u"comment<#>"_s << u"#"_s;
        QTest::newRow("comment: one word") << u"# word"_s << u"comment<# word>"_s << u"# word"_s;
        QTest::newRow("comment: two words") << u"#two words"_s << u"comment<#two words>"_s << u"#two words"_s;
        QTest::newRow("comment: two blanks after #") << u"#  a b"_s << u"comment<#  a b>"_s << u"#  a b"_s;
        QTest::newRow("comment: leading and trailing blanks dropped")
            << u"  \t# a b \t"_s << u"comment<# a b>"_s << u"# a b"_s;
        QTest::newRow("comment: commas only after #") << u"# ,, t k"_s << u"comment<# ,, t k>"_s << u"# ,, t k"_s;
        QTest::newRow("spacing: runs and tabs become single blanks")
            << u"  host\t\tssh-ed25519   AAAA  c1 \t c2   "_s
            << u"entry line=1 marker=none hosts=<host> type=<ssh-ed25519> key=<AAAA> comment=<c1 c2>"_s
            << u"host ssh-ed25519 AAAA c1 c2"_s;
        QTest::newRow("spacing: Unicode white space separates fields")
            << u"h\u00a0t\u2003k\u3000c"_s << u"entry line=1 marker=none hosts=<h> type=<t> key=<k> comment=<c>"_s
            << u"h t k c"_s;
        QTest::newRow("blank: white space only") << u" \t \u00a0"_s << u"blank"_s << QString();
        QTest::newRow("blank: empty") << QString() << u"blank"_s << QString();
    }

    void parsesOneLine()
    {
        QFETCH(QString, line);
        QFETCH(QString, record);
        QFETCH(QString, written);

        const auto [document, errors] = KnownHostsService {}.parse(line);
        QCOMPARE(describeAll(document), QStringList { record });
        QCOMPARE(errorLines(errors), record.startsWith(u"invalid"_s) ? QList<int> { 1 } : QList<int> {});
        QCOMPARE(KnownHostsService {}.serialize(document), written);
    }

    // --- whole texts: line splitting, line numbers, errors

    void parsesText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("records");
        QTest::addColumn<QList<int>>("errors");
        QTest::addColumn<QString>("written");

        const QString entry1 = u"entry line=1 marker=none hosts=<a> type=<t> key=<k> comment=<>"_s;
        QTest::newRow("empty text is one blank line")
            << QString() << QStringList { u"blank"_s } << QList<int> {} << QString();
        QTest::newRow("final newline gives a final blank")
            << u"a t k\n"_s << QStringList { entry1, u"blank"_s } << QList<int> {} << u"a t k\n"_s;
        QTest::newRow("CR LF gains an empty line after every line")
            << u"a t k\r\n#x\r\n"_s << QStringList { entry1, u"blank"_s, u"comment<#x>"_s, u"blank"_s, u"blank"_s }
            << QList<int> {} << u"a t k\n\n#x\n\n"_s;
        QTest::newRow("every line break ends a line on its own")
            << u"a\u000bb\u000cc\rd\u0085e\u2028f\u2029g"_s
            << QStringList { u"invalid<a>"_s, u"invalid<b>"_s, u"invalid<c>"_s, u"invalid<d>"_s, u"invalid<e>"_s,
                   u"invalid<f>"_s, u"invalid<g>"_s }
            << QList<int> { 1, 2, 3, 4, 5, 6, 7 } << u"a\nb\nc\nd\ne\nf\ng"_s;
        QTest::newRow("errors only for lines without #, in line order")
            << u"bad\n# x\n\nb t k\n  bad two  \n#\n"_s
            << QStringList { u"invalid<bad>"_s, u"comment<# x>"_s, u"blank"_s,
                   u"entry line=4 marker=none hosts=<b> type=<t> key=<k> comment=<>"_s, u"invalid<  bad two  >"_s,
                   u"comment<#>"_s, u"blank"_s }
            << QList<int> { 1, 5 } << u"bad\n# x\n\nb t k\n  bad two  \n#\n"_s;
        QTest::newRow("line numbers count blank and comment lines")
            << u"# header\n\n   \n@revoked a t k\n#a t k"_s
            << QStringList { u"comment<# header>"_s, u"blank"_s, u"blank"_s,
                   u"entry line=4 marker=@revoked hosts=<a> type=<t> key=<k> comment=<>"_s,
                   u"entry line=5 marker=none hosts=<a> type=<t> key=<k> comment=<> commented-out"_s }
            << QList<int> {} << u"# header\n\n\n@revoked a t k\n# a t k"_s;
    }

    void parsesText()
    {
        QFETCH(QString, text);
        QFETCH(QStringList, records);
        QFETCH(QList<int>, errors);
        QFETCH(QString, written);

        const auto [document, parseErrors] = KnownHostsService {}.parse(text);
        QCOMPARE(describeAll(document), records);
        QCOMPARE(errorLines(parseErrors), errors);
        QCOMPARE(KnownHostsService {}.serialize(document), written);
        QCOMPARE(roundTrip(written), written);
    }

    // --- documents built by hand

    void serializesDocument_data()
    {
        QTest::addColumn<KnownHostsDocument>("document");
        QTest::addColumn<QString>("written");

        const auto record = [](KnownHostsRecordKind kind) { return KnownHostsRecord(std::move(kind)); };
        QTest::newRow("no records") << KnownHostsDocument() << QString();
        QTest::newRow("blank records only") << KnownHostsDocument({ record({}), record({}) }) << u"\n"_s;
        QTest::newRow("comment without # gets one")
            << KnownHostsDocument({ record(KnownHostsRecordKind::fromComment(u"  note \t"_s)) }) << u"# note"_s;
        QTest::newRow("comment is trimmed")
            << KnownHostsDocument({ record(KnownHostsRecordKind::fromComment(u" \t#x  "_s)) }) << u"#x"_s;
        QTest::newRow("empty comment becomes #")
            << KnownHostsDocument({ record(KnownHostsRecordKind::fromComment(QString())) }) << u"# "_s;
        QTest::newRow("invalid text unchanged")
            << KnownHostsDocument({ record(KnownHostsRecordKind::fromInvalid(u" \tx y "_s)) }) << u" \tx y "_s;
        QTest::newRow("entry comment trimmed, blank comment dropped") << KnownHostsDocument(
            { entryRecord({ u"a"_s }, u"t"_s, u"k"_s, u"  c  d "_s),
                entryRecord({ u"b"_s }, u"t"_s, u"k"_s, u" \t "_s) }) << u"a t k c  d\nb t k"_s;
        QTest::newRow("key type and key written untrimmed")
            << KnownHostsDocument({ entryRecord({ u"a"_s, u"b"_s }, u" t"_s, u"k "_s, QString()) }) << u"a,b  t k "_s;
        QTest::newRow("marker and commented out") << KnownHostsDocument(
            { entryRecord({ u"*.x"_s }, u"t"_s, u"k"_s, u"c"_s, KnownHostMarker::certAuthority, true),
                entryRecord({ u"h"_s }, u"t"_s, u"k"_s, QString(), KnownHostMarker::revoked) })
                                                  << u"# @cert-authority *.x t k c\n@revoked h t k"_s;
    }

    void serializesDocument()
    {
        QFETCH(KnownHostsDocument, document);
        QFETCH(QString, written);
        QCOMPARE(KnownHostsService {}.serialize(document), written);
    }

    // --- identities

    void everyParseMakesFreshIdentifiers()
    {
        const QString text = u"# c\na t k\n\nbad\n#b t k\n"_s;
        const KnownHostsParseResult first = KnownHostsService {}.parse(text);
        const KnownHostsParseResult second = KnownHostsService {}.parse(text);
        QVERIFY(first.document != second.document);
        QCOMPARE(first.errors, second.errors);
        QCOMPARE(KnownHostsService {}.serialize(first.document), KnownHostsService {}.serialize(second.document));

        QSet<QUuid> ids;
        for (const KnownHostsParseResult* result : { &first, &second }) {
            for (const KnownHostsRecord& record : result->document.records()) {
                ids.insert(record.id());
                if (record.kind().isEntry())
                    ids.insert(record.kind().entry()->id());
            }
        }
        QCOMPARE(ids.size(), 2 * (6 + 2));
        QVERIFY(!ids.contains(QUuid()));
    }

    // Entries share the text they were read from; whatever becomes of the caller's text afterwards,
    // and whatever is edited in one entry, the others keep their fields.
    void entriesKeepTheirFieldsWhenTheTextGoes()
    {
        const QString lines = u"a,b ssh-ed25519 AAAA one\n@revoked c ssh-rsa BBBB two  words\n"_s;
        QList<QChar> buffer(lines.begin(), lines.end());
        KnownHostsDocument fromRaw
            = KnownHostsService {}.parse(QString::fromRawData(buffer.constData(), buffer.size())).document;
        buffer.fill(u'x');

        KnownHostsDocument fromOwned;
        {
            QString text = lines;
            fromOwned = KnownHostsService {}.parse(text).document;
            text[0] = u'z';
            text.clear();
        }
        for (KnownHostsDocument* document : { &fromRaw, &fromOwned }) {
            QCOMPARE(KnownHostsService {}.serialize(*document),
                u"a,b ssh-ed25519 AAAA one\n@revoked c ssh-rsa BBBB two words\n"_s);
            document->records()[0].kind().entry()->setKey(u"CCCC"_s);
            QCOMPARE(document->records()[0].kind().entry()->hosts(), QStringList({ u"a"_s, u"b"_s }));
            QCOMPARE(document->records()[1].kind().entry()->key(), u"BBBB"_s);
            QCOMPARE(document->records()[1].kind().entry()->comment(), u"two words"_s);
        }
    }
};

QTEST_GUILESS_MAIN(TestKnownHostsService)
#include "test_known_hosts_service.moc"
