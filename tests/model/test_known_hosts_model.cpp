#include "KnownHostsDocument.h"
#include "RandomUuid.h"

#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(KnownHostMarker)
Q_DECLARE_METATYPE(std::optional<KnownHostMarker>)

namespace
{
KnownHostEntry sampleEntry(QUuid id, std::optional<KnownHostMarker> marker = std::nullopt)
{
    return KnownHostEntry(id, 3, marker, {u"host1"_s, u"host2"_s}, u"ssh-ed25519"_s, u"AAAA"_s, u"key comment"_s,
                          false, false);
}
} // namespace

class TestKnownHostsModel : public QObject
{
    Q_OBJECT

private slots:
    // --- markers
    void markerRawValuesAndTitles_data()
    {
        QTest::addColumn<KnownHostMarker>("marker");
        QTest::addColumn<QString>("rawValue");
        QTest::addColumn<QString>("title");
        QTest::newRow("cert authority") << KnownHostMarker::certAuthority << u"@cert-authority"_s
                                        << u"Certification Authority"_s;
        QTest::newRow("revoked") << KnownHostMarker::revoked << u"@revoked"_s << u"Revoked"_s;
    }
    void markerRawValuesAndTitles()
    {
        QFETCH(KnownHostMarker, marker);
        QFETCH(QString, rawValue);
        QFETCH(QString, title);
        QCOMPARE(knownHostMarkerRawValue(marker), rawValue);
        QCOMPARE(knownHostMarkerTitle(marker), title);
        QCOMPARE(knownHostMarkerFromRawValue(rawValue), std::optional<KnownHostMarker>(marker));
    }

    void markerFromRawValueIsExact_data()
    {
        QTest::addColumn<QString>("rawValue");
        QTest::newRow("capital R after the at sign") << u"@Revoked"_s;
        QTest::newRow("upper case") << u"@CERT-AUTHORITY"_s;
        QTest::newRow("without at sign") << u"revoked"_s;
        QTest::newRow("trailing blank") << u"@revoked "_s;
        QTest::newRow("empty") << QString();
    }
    void markerFromRawValueIsExact()
    {
        QFETCH(QString, rawValue);
        QCOMPARE(knownHostMarkerFromRawValue(rawValue), std::nullopt);
    }

    void allMarkersInOrder()
    {
        QCOMPARE(allKnownHostMarkers.size(), 2u);
        QCOMPARE(allKnownHostMarkers[0], KnownHostMarker::certAuthority);
        QCOMPARE(allKnownHostMarkers[1], KnownHostMarker::revoked);
    }

    void markersAreHashableByRawValue()
    {
        QSet<KnownHostMarker> markers{KnownHostMarker::revoked, KnownHostMarker::certAuthority, KnownHostMarker::revoked};
        QCOMPARE(markers.size(), 2);
        QCOMPARE(qHash(KnownHostMarker::revoked, 7), qHash(u"@revoked"_s, 7));
    }

    // --- entries
    void entryEqualityCoversEveryField_data()
    {
        QTest::addColumn<int>("field");
        const char* names[] = {"id", "lineNumber", "marker", "hosts", "keyType", "key", "comment", "isHashed",
                               "isCommentedOut"};
        for (int field = 0; field < 9; ++field)
            QTest::newRow(names[field]) << field;
    }
    void entryEqualityCoversEveryField()
    {
        QFETCH(int, field);
        const KnownHostEntry original = sampleEntry(createRandomUuid());
        KnownHostEntry changed = field == 0 ? sampleEntry(createRandomUuid()) : original;
        switch (field) {
        case 1: changed.setLineNumber(4); break;
        case 2: changed.setMarker(KnownHostMarker::revoked); break;
        case 3: changed.setHosts({u"host1"_s}); break;
        case 4: changed.setKeyType(u"ssh-rsa"_s); break;
        case 5: changed.setKey(u"AAAB"_s); break;
        case 6: changed.setComment(u"key  comment"_s); break;
        case 7: changed.setHashed(true); break;
        case 8: changed.setCommentedOut(true); break;
        default: break;
        }
        QVERIFY(!(changed == original));
        QVERIFY(original == KnownHostEntry(original));
    }

    void absentMarkerEqualsOnlyAbsentMarker()
    {
        const QUuid id = createRandomUuid();
        QVERIFY(sampleEntry(id) == sampleEntry(id));
        QVERIFY(sampleEntry(id, KnownHostMarker::revoked) != sampleEntry(id));
        QVERIFY(sampleEntry(id, KnownHostMarker::revoked) != sampleEntry(id, KnownHostMarker::certAuthority));
        QVERIFY(sampleEntry(id, KnownHostMarker::revoked) == sampleEntry(id, KnownHostMarker::revoked));
    }

    void settersDoNotRecomputeOtherFields()
    {
        KnownHostEntry entry = sampleEntry(createRandomUuid());
        entry.setHosts({u"|1|abc=|def="_s});
        QVERIFY(!entry.isHashed());
    }

    // --- record kinds and records
    void recordKindCasesAndPayloads()
    {
        const KnownHostEntry entry = sampleEntry(createRandomUuid());
        const auto kindEntry = KnownHostsRecordKind::fromEntry(entry);
        QCOMPARE(kindEntry.tag(), KnownHostsRecordKind::Case::entry);
        QVERIFY(kindEntry.entry() && *kindEntry.entry() == entry);
        QCOMPARE(KnownHostsRecordKind::fromComment(u"# x"_s).tag(), KnownHostsRecordKind::Case::comment);
        QCOMPARE(KnownHostsRecordKind::fromComment(u"# x"_s).text(), u"# x"_s);
        QCOMPARE(KnownHostsRecordKind::fromInvalid(u" bad "_s).text(), u" bad "_s);
        QVERIFY(KnownHostsRecordKind::blank().isBlank());
        QVERIFY(KnownHostsRecordKind().isBlank());
        QCOMPARE(KnownHostsRecordKind::blank().entry(), nullptr);
    }

    void recordKindEqualityNeedsSameCaseAndPayload()
    {
        QVERIFY(KnownHostsRecordKind::blank() == KnownHostsRecordKind::blank());
        QVERIFY(KnownHostsRecordKind::fromComment(u"#a"_s) == KnownHostsRecordKind::fromComment(u"#a"_s));
        QVERIFY(KnownHostsRecordKind::fromComment(u"#a"_s) != KnownHostsRecordKind::fromInvalid(u"#a"_s));
        QVERIFY(KnownHostsRecordKind::fromComment(u"#a"_s) != KnownHostsRecordKind::fromComment(u"#b"_s));
        QVERIFY(KnownHostsRecordKind::fromInvalid(QString()) != KnownHostsRecordKind::blank());
    }

    void recordsAreIdentifiedByFreshIds()
    {
        const KnownHostsRecord first(KnownHostsRecordKind::blank());
        const KnownHostsRecord second(KnownHostsRecordKind::blank());
        QVERIFY(!first.id().isNull());
        QVERIFY(first.id() != second.id());
        QVERIFY(first != second);
        QVERIFY(first == KnownHostsRecord(first.id(), KnownHostsRecordKind::blank()));
        QVERIFY(first != KnownHostsRecord(first.id(), KnownHostsRecordKind::fromComment(u"#"_s)));
    }

    void recordEntryChangesInPlace()
    {
        KnownHostsDocument document({KnownHostsRecord(KnownHostsRecordKind::fromEntry(sampleEntry(createRandomUuid())))});
        document.records()[0].kind().entry()->setMarker(KnownHostMarker::certAuthority);
        QCOMPARE(document.records()[0].kind().entry()->marker(), KnownHostMarker::certAuthority);
    }

    void documentsCompareRecordsInOrder()
    {
        const KnownHostsRecord blank(KnownHostsRecordKind::blank());
        const KnownHostsRecord comment(KnownHostsRecordKind::fromComment(u"#"_s));
        QVERIFY(KnownHostsDocument({blank, comment}) == KnownHostsDocument({blank, comment}));
        QVERIFY(KnownHostsDocument({blank, comment}) != KnownHostsDocument({comment, blank}));
        QVERIFY(KnownHostsDocument({blank}) != KnownHostsDocument());
    }

    // --- parse errors
    void parseErrorIdentity()
    {
        const KnownHostsParseError error(7, KnownHostsParseError::invalidLineMessage());
        QCOMPARE(error.identity(), u"7-Ongeldige known_hosts regel."_s);
        QCOMPARE(error.identity(), KnownHostsParseError(7, u"Ongeldige known_hosts regel."_s).identity());
        QVERIFY(error == KnownHostsParseError(7, u"Ongeldige known_hosts regel."_s));
        QVERIFY(error != KnownHostsParseError(8, u"Ongeldige known_hosts regel."_s));
        QVERIFY(error != KnownHostsParseError(7, u"Iets anders."_s));
    }
};

QTEST_GUILESS_MAIN(TestKnownHostsModel)
#include "test_known_hosts_model.moc"
