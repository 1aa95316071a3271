#include "KnownHostsDocument.h"
#include "RandomUuid.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
KnownHostEntry sampleEntry(QUuid id, std::optional<KnownHostMarker> marker = std::nullopt)
{
    return KnownHostEntry(
        id, 3, marker, { u"host1"_s, u"host2"_s }, u"ssh-ed25519"_s, u"AAAA"_s, u"key comment"_s, false, false);
}
} // namespace

class TestKnownHostsModel : public QObject
{
    Q_OBJECT

private slots:
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
        for (KnownHostMarker marker : allKnownHostMarkers)
            QVERIFY(knownHostMarkerFromRawValue(knownHostMarkerRawValue(marker)) == marker);
    }

    void entryEqualityCoversEveryField_data()
    {
        QTest::addColumn<int>("field");
        const char* names[] = { "id", "lineNumber", "marker", "hosts", "keyType", "key", "comment", "isHashed",
            "isCommentedOut", "other marker" };
        for (int field = 0; field < 10; ++field)
            QTest::newRow(names[field]) << field;
    }

    void entryEqualityCoversEveryField()
    {
        QFETCH(int, field);
        const QUuid id = createRandomUuid();
        const KnownHostEntry original
            = sampleEntry(id, field == 9 ? std::optional(KnownHostMarker::revoked) : std::nullopt);
        KnownHostEntry changed = field == 0 ? sampleEntry(createRandomUuid()) : original;
        switch (field) {
        case 1:
            changed.setLineNumber(4);
            break;
        case 2:
            changed.setMarker(KnownHostMarker::revoked);
            break;
        case 3:
            changed.setHosts({ u"host1"_s });
            break;
        case 4:
            changed.setKeyType(u"ssh-rsa"_s);
            break;
        case 5:
            changed.setKey(u"AAAB"_s);
            break;
        case 6:
            changed.setComment(u"key  comment"_s);
            break;
        case 7:
            changed.setHashed(true);
            break;
        case 8:
            changed.setCommentedOut(true);
            break;
        case 9:
            changed.setMarker(KnownHostMarker::certAuthority);
            break;
        default:
            break;
        }
        QVERIFY(!(changed == original));
        QVERIFY(original == KnownHostEntry(original));
    }

    void recordsCompareCaseTextAndId()
    {
        QVERIFY(KnownHostsRecordKind::fromComment(u"#a"_s) == KnownHostsRecordKind::fromComment(u"#a"_s));
        QVERIFY(KnownHostsRecordKind::fromComment(u"#a"_s) != KnownHostsRecordKind::fromInvalid(u"#a"_s));
        QVERIFY(KnownHostsRecordKind::fromComment(u"#a"_s) != KnownHostsRecordKind::fromComment(u"#b"_s));
        QVERIFY(KnownHostsRecordKind::fromInvalid(QString()) != KnownHostsRecordKind::blank());
        const KnownHostsRecord first(KnownHostsRecordKind::blank());
        QVERIFY(first != KnownHostsRecord(KnownHostsRecordKind::blank()));
        QVERIFY(first == KnownHostsRecord(first.id(), KnownHostsRecordKind::blank()));
        const KnownHostsRecord comment(KnownHostsRecordKind::fromComment(u"#"_s));
        QVERIFY(KnownHostsDocument({ first, comment }) != KnownHostsDocument({ comment, first }));
    }
};

QTEST_GUILESS_MAIN(TestKnownHostsModel)
#include "test_known_hosts_model.moc"
