// The selected entry's fingerprints and the search by fingerprint, on keys that ssh-keygen made and
// fingerprinted itself.

#include "KnownHostsFilterModel.h"
#include "KnownHostsModel.h"
#include "SshKeygen.h"
#include "ViewModelFixture.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace
{

QStringList rowTexts(const QAbstractItemModel& model, int role = Qt::DisplayRole)
{
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row)
        texts.append(model.index(row, 0).data(role).toString());
    return texts;
}

} // namespace

class TestViewModelFingerprints : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!m_keygen.isAvailable())
            QSKIP("ssh-keygen is not installed");
        const QStringList types { u"ed25519"_s, u"rsa"_s, u"ecdsa"_s };
        for (const QString& type : types) {
            const QString key = m_keygen.generatePublicKey(type);
            QVERIFY2(!key.isEmpty(), qPrintable(type));
            m_text += type + u".example "_s + key + u'\n';
        }
        m_text += u"broken.example ssh-ed25519 not*base64\n"_s;
        const QString path = m_keygen.writeFile(u"known_hosts"_s, m_text);
        for (const QString& line : m_keygen.run({ u"-l"_s, u"-f"_s, path }).output.split(u'\n', Qt::SkipEmptyParts))
            m_sshKeygenFingerprints.insert(line.section(u' ', 2, 2), line.section(u' ', 1, 1));
        QCOMPARE(m_sshKeygenFingerprints.size(), types.size());
    }

    void searchByFingerprint_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<int>("prefixLength");
        QTest::addColumn<QString>("prefix");
        for (const char* host : { "ed25519.example", "rsa.example", "ecdsa.example" }) {
            QTest::addRow("%s whole", host) << QString::fromLatin1(host) << -1 << u"SHA256:"_s;
            QTest::addRow("%s first letters", host) << QString::fromLatin1(host) << 12 << u"SHA256:"_s;
            QTest::addRow("%s lower-case prefix", host) << QString::fromLatin1(host) << -1 << u"sha256:"_s;
        }
    }

    void searchByFingerprint()
    {
        QFETCH(QString, host);
        QFETCH(int, prefixLength);
        QFETCH(QString, prefix);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), m_text);
        const QString fingerprint = m_sshKeygenFingerprints.value(host);
        vm.setKnownHostsSearchText(u"  "_s + prefix + fingerprint.mid(7).left(prefixLength) + u" "_s);
        QStringList found;
        for (const KnownHostEntry& entry : vm.filteredKnownHostEntries())
            found.append(entry.firstHost().toString());
        QCOMPARE(found, QStringList { host });
        // The list of the tab applies the same rule.
        KnownHostsModel model(vm);
        KnownHostsFilterModel filter(model);
        QCOMPARE(rowTexts(filter), QStringList { host });
    }

    void fingerprintIsCaseSensitiveAfterThePrefix()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), m_text);
        const QString fingerprint = m_sshKeygenFingerprints.value(u"rsa.example"_s);
        QString swapped = fingerprint.mid(7);
        for (QChar& c : swapped)
            c = c.isUpper() ? c.toLower() : c.toUpper();
        vm.setKnownHostsSearchText(u"SHA256:"_s + swapped);
        QVERIFY(vm.filteredKnownHostEntries().isEmpty());
    }

    void listFollowsFingerprintTyping()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), m_text);
        KnownHostsModel model(vm);
        KnownHostsFilterModel filter(model);
        const QString fingerprint = m_sshKeygenFingerprints.value(u"ecdsa.example"_s);
        // The whole fingerprint, then letters taken off one at a time until only the prefix is left: every
        // step must agree with the view model's own list.
        for (qsizetype length = fingerprint.size(); length >= 6; --length) {
            vm.setKnownHostsSearchText(fingerprint.left(length));
            QStringList expected;
            for (const KnownHostEntry& entry : vm.filteredKnownHostEntries())
                expected.append(entry.firstHost().toString());
            QCOMPARE(rowTexts(filter), expected);
        }
        vm.setKnownHostsSearchText(QString());
        QCOMPARE(rowTexts(filter).size(), 4);
        QCOMPARE(rowTexts(filter, KnownHostsModel::Sha256FingerprintRole).value(0),
            m_sshKeygenFingerprints.value(u"ed25519.example"_s));
    }

    void selectedFingerprints()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), m_text);
        QSignalSpy changed(&vm, &SSHConfigViewModel::selectedKnownHostFingerprintsChanged);
        const QList<KnownHostEntry> entries = vm.filteredKnownHostEntries();
        QCOMPARE(vm.selectedKnownHostFingerprints()->sha256, m_sshKeygenFingerprints.value(u"ed25519.example"_s));
        vm.setSelectedKnownHostEntryID(entries.at(1).id());
        QCOMPARE(changed.count(), 1);
        QCOMPARE(vm.selectedKnownHostFingerprints()->sha256, m_sshKeygenFingerprints.value(u"rsa.example"_s));
        QVERIFY(vm.selectedKnownHostFingerprints()->md5.startsWith(u"MD5:"_s));
        // A marker does not change the key, so nothing is announced.
        vm.setMarkerOnSelectedKnownHostEntry(KnownHostMarker::revoked);
        QCOMPARE(changed.count(), 1);
        vm.setSelectedKnownHostEntryID(entries.at(3).id());
        QCOMPARE(changed.count(), 2);
        QCOMPARE(vm.selectedKnownHostFingerprints(), std::nullopt);
        vm.setSelectedKnownHostEntryID(std::nullopt);
        QCOMPARE(changed.count(), 2);
    }

    void copyIsReported()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), m_text);
        vm.reportFingerprintCopied();
        QCOMPARE(vm.statusMessage(), u"Fingerprint gekopieerd naar het klembord."_s);
    }

private:
    SshKeygen m_keygen;
    QString m_text;
    QHash<QString, QString> m_sshKeygenFingerprints;
};

QTEST_GUILESS_MAIN(TestViewModelFingerprints)
#include "test_view_model_fingerprints.moc"
