#include "RandomUuid.h"

#include <QSet>
#include <QTest>

class TestRandomUuid : public QObject
{
    Q_OBJECT

private slots:
    void isVersionFourRfcVariant()
    {
        for (int i = 0; i < 1000; ++i) {
            const QUuid id = createRandomUuid();
            QCOMPARE(id.version(), QUuid::Random);
            QCOMPARE(id.variant(), QUuid::DCE);
        }
    }

    void doesNotRepeat()
    {
        QSet<QUuid> seen;
        for (int i = 0; i < 100000; ++i)
            seen.insert(createRandomUuid());
        QCOMPARE(seen.size(), 100000);
    }
};

QTEST_GUILESS_MAIN(TestRandomUuid)
#include "test_random_uuid.moc"
