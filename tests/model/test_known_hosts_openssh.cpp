#include "KnownHostsService.h"
#include "SshKeygen.h"

#include <QFileInfo>
#include <QTest>

using namespace Qt::StringLiterals;

// OpenSSH judges the writer: for every host, ssh-keygen -F must find the same keys, on the same lines
// and with the same markers, in the file we wrote as in the file we read.
class TestKnownHostsOpenSsh : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (!m_keygen.isAvailable())
            QSKIP("ssh-keygen is not installed");
        for (const QString& type : { u"ed25519"_s, u"rsa"_s, u"ecdsa"_s }) {
            m_keys.insert(type, m_keygen.generatePublicKey(type, type == u"rsa"_s ? 2048 : 0));
            QVERIFY2(!m_keys[type].isEmpty(), qPrintable(type));
        }
        m_plainFile = m_keygen.writeFile(u"known_hosts"_s, knownHostsText() + unhashableLines());
        m_hashedFile = m_keygen.writeFile(u"known_hosts_hashed"_s, knownHostsText());
        QVERIFY(!m_plainFile.isEmpty() && !m_hashedFile.isEmpty());
        m_keygen.run({ u"-H"_s, u"-f"_s, m_hashedFile });
        const QString hashedText = SshKeygen::readFile(m_hashedFile);
        QVERIFY2(hashedText.contains(u"|1|"_s), "ssh-keygen -H hashed nothing");
        QVERIFY(!m_keygen.writeFile(u"known_hosts_hashed"_s, hashedText + unhashableLines()).isEmpty());
    }

    void sameKeysFoundAfterWriting_data()
    {
        QTest::addColumn<bool>("hashed");
        QTest::addColumn<QString>("host");
        QTest::addColumn<bool>("known");
        const QList<std::pair<QString, bool>> hosts { { u"github.com"_s, true }, { u"10.0.0.1"_s, true },
            { u"[db.example.org]:2222"_s, true }, { u"db.example.org"_s, true }, { u"plain.example"_s, true },
            { u"www.example.org"_s, true }, { u"revoked.example"_s, true }, { u"commented.example"_s, false },
            { u"multi1"_s, true }, { u"multi2"_s, true }, { u"[multi3]:2200"_s, true },
            { u"unknown.example"_s, false } };
        for (const bool hashed : { false, true }) {
            for (const auto& [host, known] : hosts)
                QTest::addRow("%s %s", hashed ? "hashed" : "plain", qPrintable(host)) << hashed << host << known;
        }
    }

    void sameKeysFoundAfterWriting()
    {
        QFETCH(bool, hashed);
        QFETCH(QString, host);
        QFETCH(bool, known);
        const QString original = hashed ? m_hashedFile : m_plainFile;
        const QString written = rewrite(original);
        QVERIFY(!written.isEmpty());

        const QString before = lookup(host, original);
        QCOMPARE(!before.isEmpty(), known);
        QCOMPARE(lookup(host, written), before);
    }

private:
    QString knownHostsText();
    QString unhashableLines();
    QString lookup(const QString& host, const QString& file);
    QString rewrite(const QString& file);

    SshKeygen m_keygen;
    QHash<QString, QString> m_keys;
    QString m_plainFile;
    QString m_hashedFile;
};

QString TestKnownHostsOpenSsh::knownHostsText()
{
    const QString ed = m_keys[u"ed25519"_s];
    const QString rsa = m_keys[u"rsa"_s];
    QString ecdsaIrregular = m_keys[u"ecdsa"_s];
    ecdsaIrregular.replace(u' ', u"\t  "_s);
    return u"# known hosts of the test\n"_s + u"github.com,10.0.0.1 "_s + ed + u"\n"_s + u"\n"_s
        + u"[db.example.org]:2222 "_s + rsa + u" db key\n"_s + u"   plain.example \t "_s + ecdsaIrregular
        + u"   trailing  comment\twords   \n"_s + u"@cert-authority *.example.org "_s + ed + u"\n"_s
        + u"@revoked revoked.example "_s + rsa + u"\n"_s + u"#commented.example "_s + ed + u"\n"_s + u"  \t \n"_s
        + u"## two words\n"_s;
}

// ssh-keygen -H refuses a file with lines it cannot read and drops empty host names, so these
// lines are added after hashing.
QString TestKnownHostsOpenSsh::unhashableLines()
{
    return u",multi1,,multi2,,[multi3]:2200, "_s + m_keys[u"ecdsa"_s] + u"\n"_s
        + u"not a valid line at all? yes it is\n"_s + u"broken-line\n"_s + u"@revoked only.two.fields ssh-rsa\n"_s;
}

QString TestKnownHostsOpenSsh::lookup(const QString& host, const QString& file)
{
    // Compare what OpenSSH found (line numbers, markers as "CA" or "REVOKED", keys), not how it echoes the matching
    // line, whose spacing and hosts field the writer normalises.
    QStringList found;
    for (const QString& line : m_keygen.run({ u"-F"_s, host, u"-f"_s, file }).output.split(u'\n', Qt::SkipEmptyParts)) {
        const QString simplified = line.simplified();
        if (simplified.startsWith(u'#')) {
            found.append(simplified);
            continue;
        }
        for (const QString& key : std::as_const(m_keys)) {
            if (simplified.contains(key))
                found.append(key);
        }
    }
    return found.join(u'\n');
}

QString TestKnownHostsOpenSsh::rewrite(const QString& file)
{
    const KnownHostsDocument document = KnownHostsService {}.parse(SshKeygen::readFile(file)).document;
    return m_keygen.writeFile(QFileInfo(file).fileName() + u".written"_s, KnownHostsService {}.serialize(document));
}

QTEST_GUILESS_MAIN(TestKnownHostsOpenSsh)
#include "test_known_hosts_openssh.moc"
