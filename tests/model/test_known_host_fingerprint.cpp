// Fingerprints of known_hosts keys, judged by ssh-keygen -l on keys of every type it knows.

#include "KnownHostFingerprint.h"
#include "KnownHostsService.h"
#include "SshKeygen.h"

#include <QHash>
#include <QTest>

using namespace Qt::StringLiterals;

class TestKnownHostFingerprint : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!m_keygen.isAvailable())
            QSKIP("ssh-keygen is not installed");
        const QList<std::pair<QString, QString>> keys {
            { u"ed25519"_s, m_keygen.generatePublicKey(u"ed25519"_s) },
            { u"rsa"_s, m_keygen.generatePublicKey(u"rsa"_s, 3072) },
            { u"ecdsa-256"_s, m_keygen.generatePublicKey(u"ecdsa"_s, 256) },
            { u"ecdsa-384"_s, m_keygen.generatePublicKey(u"ecdsa"_s, 384) },
            { u"ecdsa-521"_s, m_keygen.generatePublicKey(u"ecdsa"_s, 521) },
            { u"ed25519-sk"_s, m_keygen.ed25519SkPublicKey() },
            { u"ecdsa-sk"_s, m_keygen.ecdsaSkPublicKey() },
        };
        QString text;
        for (const auto& [name, key] : keys) {
            QVERIFY2(!key.isEmpty(), qPrintable(name));
            m_lines.insert(name, name + u".example "_s + key);
            text += m_lines.value(name) + u'\n';
        }
        const QString path = m_keygen.writeFile(u"known_hosts"_s, text);
        QVERIFY(!path.isEmpty());
        m_sha256 = fingerprintsByHost(m_keygen.run({ u"-l"_s, u"-f"_s, path }));
        m_md5 = fingerprintsByHost(m_keygen.run({ u"-l"_s, u"-E"_s, u"md5"_s, u"-f"_s, path }));
        QCOMPARE(m_sha256.size(), keys.size());
        QCOMPARE(m_md5.size(), keys.size());
    }

    void sameAsSshKeygen_data()
    {
        QTest::addColumn<QString>("type");
        for (const QString& type :
            { u"ed25519"_s, u"rsa"_s, u"ecdsa-256"_s, u"ecdsa-384"_s, u"ecdsa-521"_s, u"ed25519-sk"_s, u"ecdsa-sk"_s })
            QTest::newRow(qPrintable(type)) << type;
    }

    void sameAsSshKeygen()
    {
        QFETCH(QString, type);
        const auto [document, errors] = KnownHostsService().parse(m_lines.value(type));
        QVERIFY(errors.isEmpty());
        const KnownHostEntry* entry = document.records().at(0).kind().entry();
        QVERIFY(entry);
        const std::optional<KnownHostFingerprints> fingerprints = knownHostFingerprints(entry->key());
        QVERIFY(fingerprints);
        const QString host = type + u".example"_s;
        QCOMPARE(fingerprints->sha256, m_sha256.value(host));
        QCOMPARE(fingerprints->md5, m_md5.value(host));
        QCOMPARE(knownHostSha256Fingerprint(entry->key()), std::optional<QString>(m_sha256.value(host)));
    }

    void notBase64_data()
    {
        QTest::addColumn<QString>("key");
        QTest::newRow("empty") << QString();
        QTest::newRow("character outside the alphabet") << u"AAAA!AAA"_s;
        QTest::newRow("length not a multiple of four") << u"AAAAC3NzaC1"_s;
        QTest::newRow("padding in the middle") << u"AA==AAAA"_s;
        QTest::newRow("three padding characters") << u"A==="_s;
        QTest::newRow("non-ASCII letter") << u"AAAA\u00e9AAA"_s;
        QTest::newRow("url-safe alphabet") << u"AAAA-_AA"_s;
    }

    void notBase64()
    {
        QFETCH(QString, key);
        QCOMPARE(decodedKnownHostKey(key), std::nullopt);
        QCOMPARE(knownHostFingerprints(key), std::nullopt);
    }

    void paddedKeyDecodes()
    {
        QCOMPARE(decodedKnownHostKey(u"YWI="_s), std::optional<QByteArray>("ab"));
        QCOMPARE(decodedKnownHostKey(u"YQ=="_s), std::optional<QByteArray>("a"));
    }

private:
    // "256 SHA256:... host (ED25519)" per line: the host's fingerprint.
    static QHash<QString, QString> fingerprintsByHost(const SshKeygenRun& run)
    {
        QHash<QString, QString> result;
        for (const QString& line : run.output.split(u'\n', Qt::SkipEmptyParts)) {
            const QStringList fields = line.split(u' ', Qt::SkipEmptyParts);
            if (fields.size() >= 3)
                result.insert(fields.at(2), fields.at(1));
        }
        return result;
    }

    SshKeygen m_keygen;
    QHash<QString, QString> m_lines;
    QHash<QString, QString> m_sha256;
    QHash<QString, QString> m_md5;
};

QTEST_GUILESS_MAIN(TestKnownHostFingerprint)
#include "test_known_host_fingerprint.moc"
