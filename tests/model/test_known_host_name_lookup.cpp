// Finding the entries ssh would use for a host name: the rules on small rows, then ssh-keygen -F as the
// judge for a thousand names over a plain and a hashed (ssh-keygen -H) file.

#include "KnownHostNameIndex.h"
#include "KnownHostNameMatch.h"
#include "KnownHostsService.h"
#include "SshKeygen.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

// A file of plain, bracketed, multi-name, wildcard, negated, marked and commented-out lines.
QString knownHostsText(const QString& key)
{
    static const QStringList forms = { u"host%1.example,10.0.0.%1"_s, u"[host%1.example]:2222"_s,
        u"@revoked host%1.example"_s, u"# host%1.example"_s, u"Host%1.Example,[host%1.example]:22,[10.0.1.%1]:2200"_s,
        u"*.wild%1.example,!bad.wild%1.example"_s, u"host?%1.example"_s, u"host%1.example"_s };
    QString text = u"# generated for the lookup test\n"_s;
    for (int i = 0; i < 200; ++i)
        text += forms.at(i % forms.size()).arg(i) + u' ' + key + u'\n';
    return text;
}

// A thousand names: the ones in the file in every form ssh asks for, and as many it does not know.
QStringList lookupNames()
{
    static const QStringList forms = { u"host%1.example"_s, u"[host%1.example]:2222"_s, u"10.0.0.%1"_s,
        u"HOST%1.EXAMPLE"_s, u"[10.0.1.%1]:2200"_s, u"a.wild%1.example"_s, u"bad.wild%1.example"_s,
        u"hostx%1.example"_s, u"[host%1.example]:22"_s, u"unknown%1.example"_s };
    QStringList names;
    for (int i = 0; names.size() < 1000; ++i)
        names << forms.at(i % forms.size()).arg(i % 220);
    return names;
}

} // namespace

class TestKnownHostNameLookup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lookupName_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<QString>("port");
        QTest::addColumn<QString>("expected");
        QTest::newRow("no port") << u"web-1"_s << QString() << u"web-1"_s;
        QTest::newRow("port 22 is not written") << u"web-1"_s << u"22"_s << u"web-1"_s;
        QTest::newRow("other port in brackets") << u"web-1"_s << u"2222"_s << u"[web-1]:2222"_s;
        QTest::newRow("address with port") << u"10.0.0.5"_s << u"2200"_s << u"[10.0.0.5]:2200"_s;
    }

    void lookupName()
    {
        QFETCH(QString, host);
        QFETCH(QString, port);
        QFETCH(QString, expected);
        QCOMPARE(knownHostLookupName(host, port), expected);
    }

    void fieldMatches_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("expected");
        QTest::newRow("second of a list") << u"a,b,c"_s << u"b"_s << true;
        QTest::newRow("letter case ignored") << u"Web-1"_s << u"wEB-1"_s << true;
        QTest::newRow("star") << u"*.corp"_s << u"db.corp"_s << true;
        QTest::newRow("star needs the dot") << u"*.corp"_s << u"corp"_s << false;
        QTest::newRow("question mark is one character") << u"web?"_s << u"web12"_s << false;
        QTest::newRow("negation vetoes") << u"*.corp,!db.corp"_s << u"db.corp"_s << false;
        QTest::newRow("negation alone never matches") << u"!db.corp"_s << u"web.corp"_s << false;
        QTest::newRow("bracketed form is literal") << u"[web]:2222"_s << u"web"_s << false;
        QTest::newRow("hashed with a list after it")
            << u"|1|F1E1KeoE/eEWhi10WpGv4OdiO6Y=|3988QV0VE8wmZL7suNrYQLITLCg=,x"_s << u"x"_s << false;
        QTest::newRow("hash kind 2 unknown to ssh")
            << u"|2|F1E1KeoE/eEWhi10WpGv4OdiO6Y=|3988QV0VE8wmZL7suNrYQLITLCg="_s << u"x"_s << false;
    }

    void fieldMatches()
    {
        QFETCH(QString, field);
        QFETCH(QString, name);
        QFETCH(bool, expected);
        QCOMPARE(knownHostsFieldMatches(field, name), expected);
    }

    void sameAnswersAsSshKeygen_data()
    {
        QTest::addColumn<bool>("hashed");
        QTest::addColumn<int>("names");
        QTest::newRow("hashed by ssh-keygen -H") << true << 1000;
        QTest::newRow("plain") << false << 300;
    }

    void sameAnswersAsSshKeygen()
    {
        QFETCH(bool, hashed);
        QFETCH(int, names);
        SshKeygen keygen;
        if (!keygen.isAvailable())
            QSKIP("ssh-keygen is not installed");
        const QString key = keygen.generatePublicKey(u"ed25519"_s);
        const QString path = keygen.writeFile(u"known_hosts"_s, knownHostsText(key));
        if (hashed) {
            QCOMPARE(keygen.run({ u"-H"_s, u"-f"_s, path }).exitCode, 0);
            QVERIFY(SshKeygen::readFile(path).contains(u"|1|"_s));
        }
        const auto [document, errors] = KnownHostsService().parse(SshKeygen::readFile(path));
        const KnownHostNameIndex index(document);
        int found = 0;
        for (const QString& name : lookupNames().first(names)) {
            const QList<qsizetype> expected = sshKeygenFind(keygen, path, name);
            QList<qsizetype> actual;
            for (const qsizetype position : index.recordsFor(name))
                actual.append(position + 1);
            QVERIFY2(actual == expected, qPrintable(name));
            found += expected.isEmpty() ? 0 : 1;
        }
        // The names must test something: a good share of them are in the file.
        QVERIFY2(found > names / 10, qPrintable(QString::number(found)));
    }

    // An index told of each change answers as one built afresh from the changed document.
    void keptCurrentThroughChanges()
    {
        const QString file = knownHostsText(u"ssh-ed25519 AAAAC3NzaC1lZDI1NTE5"_s)
            + u"|1|c2FsdHNhbHRzYWx0c2FsdHNhbHQ=|aGFzaGhhc2hoYXNoaGFzaGhhc2g= ssh-ed25519 AAAA\n"_s;
        KnownHostsDocument document = KnownHostsService().parse(file).document;
        const QList<KnownHostsRecord> pool = document.records();
        KnownHostNameIndex index(document);
        QList<KnownHostsRecord>& records = document.records();
        for (int step = 0; step < 300; ++step) {
            const qsizetype position = (step * 37) % records.size();
            switch (step % 3) {
            case 0:
                records[position] = pool.at((step * 11) % pool.size());
                index.recordChanged(position, records.at(position));
                break;
            case 1:
                records.removeAt(position);
                index.recordRemoved(position);
                break;
            default:
                records.insert(position, pool.at((step * 13) % pool.size()));
                index.recordInserted(position, records.at(position));
                break;
            }
        }
        const KnownHostNameIndex fresh(document);
        for (const QString& name : lookupNames())
            QCOMPARE(index.recordsFor(name), fresh.recordsFor(name));
    }

private:
    // The line numbers ssh-keygen -F reports for name ("# Host name found: line 12").
    static QList<qsizetype> sshKeygenFind(const SshKeygen& keygen, const QString& path, const QString& name)
    {
        static const QRegularExpression found(u"^# Host .* found: line (\\d+)"_s, QRegularExpression::MultilineOption);
        QList<qsizetype> lines;
        const QString output = keygen.run({ u"-F"_s, name, u"-f"_s, path }).output;
        for (auto it = found.globalMatch(output); it.hasNext();)
            lines.append(it.next().captured(1).toLongLong());
        return lines;
    }
};

QTEST_GUILESS_MAIN(TestKnownHostNameLookup)
#include "test_known_host_name_lookup.moc"
