#include "KnownHostsDocument.h"
#include "RandomUuid.h"

#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace
{
KnownHostEntry sampleEntry(QUuid id, std::optional<KnownHostMarker> marker = std::nullopt)
{
    return KnownHostEntry(
        id, 3, marker, { u"host1"_s, u"host2"_s }, u"ssh-ed25519"_s, u"AAAA"_s, u"key comment"_s, false, false);
}

using EntryChange = std::function<void(KnownHostEntry&)>;
} // namespace

Q_DECLARE_METATYPE(EntryChange)

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
        QTest::addColumn<EntryChange>("change");
        QTest::newRow("id") << EntryChange([](KnownHostEntry& e) { e = sampleEntry(createRandomUuid()); });
        QTest::newRow("lineNumber") << EntryChange([](KnownHostEntry& e) { e.setLineNumber(4); });
        QTest::newRow("no marker") << EntryChange([](KnownHostEntry& e) { e.setMarker(std::nullopt); });
        QTest::newRow("other marker") << EntryChange(
            [](KnownHostEntry& e) { e.setMarker(KnownHostMarker::certAuthority); });
        QTest::newRow("hosts") << EntryChange([](KnownHostEntry& e) { e.setHosts({ u"host1"_s }); });
        QTest::newRow("keyType") << EntryChange([](KnownHostEntry& e) { e.setKeyType(u"ssh-rsa"_s); });
        QTest::newRow("key") << EntryChange([](KnownHostEntry& e) { e.setKey(u"AAAB"_s); });
        QTest::newRow("comment") << EntryChange([](KnownHostEntry& e) { e.setComment(u"key  comment"_s); });
        QTest::newRow("isHashed") << EntryChange([](KnownHostEntry& e) { e.setHashed(true); });
        QTest::newRow("isCommentedOut") << EntryChange([](KnownHostEntry& e) { e.setCommentedOut(true); });
    }

    void entryEqualityCoversEveryField()
    {
        QFETCH(EntryChange, change);
        const KnownHostEntry original = sampleEntry(createRandomUuid(), KnownHostMarker::revoked);
        KnownHostEntry changed = original;
        QVERIFY(changed == original);
        change(changed);
        QVERIFY(!(changed == original));
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
