// The laid-out search text must answer every query exactly as the search rule does on the entries
// themselves, also after rows have been changed, inserted and removed in any order.

#include "KnownHostsSearchText.h"
#include "KnownHostsService.h"
#include "SSHConfigViewModel.h"

#include <QTest>

#include <random>

using namespace Qt::StringLiterals;

namespace
{

const QString sampleFile = uR"(web-01.Example.COM,10.0.0.5 ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIQq admin@Laptop
@revoked [git.example.com]:2222 ssh-rsa AAAAB3NzaC1yc2EAAAADAQABAAABAQ
# @cert-authority *.corp.example ecdsa-sha2-nistp256 AAAAE2VjZHNhLXNoYTI=
|1|c2FsdHNhbHRzYWx0c2FsdHNhbHQ=|aGFzaGhhc2hoYXNoaGFzaGhhc2g= ssh-ed25519 AAAAC3Nz
caf\u00c9.example ssh-ed25519 AAAAC3Nz Stra\u00dfe \u212Aelvin
\u0130stanbul,host-\u00e9 ssh-ed25519 AAAAC3Nz x
)"_s;

QList<KnownHostEntry> entriesOf(const QString& text)
{
    const KnownHostsParseResult parsed = KnownHostsService {}.parse(text);
    QList<KnownHostEntry> entries;
    for (const KnownHostsRecord& record : parsed.document.records()) {
        if (const KnownHostEntry* entry = record.kind().entry())
            entries.append(*entry);
    }
    return entries;
}

const QStringList queries = {
    u"example.com"_s,
    u"web-01.example.com 10.0"_s, // across the joining blank of the hosts
    u"com,10"_s, // the comma is not searched
    u"@revoked"_s, u"@cert"_s,
    u"ssh-ed25519 aaaac3"_s, // across the blank between key type and key
    u"laptop"_s,
    u"10.0.0.5ssh"_s, // never across two fields
    u"caf\u00e9"_s, u"stra\u00dfe"_s,
    u"kelvin"_s, // the Kelvin sign lower-cases to k
    u"i\u0307stanbul"_s, // the dotted capital I lower-cases to two characters
    u"q"_s, u"z"_s, u"|1|"_s,
    u"\U0001F600"_s, // answered by the entries themselves
};

// Whether the text answers every query for every row as the search rule does.
bool agreesWithTheRule(const KnownHostsSearchText& text, const QList<KnownHostEntry>& rows, QString* failure)
{
    for (const QString& query : queries) {
        const std::optional<QByteArray> searchable = KnownHostsSearchText::searchableQuery(query);
        const std::vector<char> found = searchable ? text.rowsContaining(*searchable) : std::vector<char>();
        for (qsizetype row = 0; row < rows.size(); ++row) {
            const bool expected = SSHConfigViewModel::knownHostEntryMatches(rows.at(row), query);
            if (!searchable)
                continue;
            if (text.rowContains(row, *searchable) != expected
                || (found.at(static_cast<size_t>(row)) != 0) != expected) {
                *failure = u"row %1, query \"%2\""_s.arg(row).arg(query);
                return false;
            }
        }
    }
    return true;
}

} // namespace

class TestKnownHostsSearchText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersAsTheSearchRule()
    {
        const QList<KnownHostEntry> entries = entriesOf(sampleFile);
        QCOMPARE(entries.size(), 6);
        KnownHostsSearchText text;
        for (const KnownHostEntry& entry : entries)
            text.append(entry);
        QString failure;
        QVERIFY2(agreesWithTheRule(text, entries, &failure), qPrintable(failure));
    }

    void queriesItCannotAnswerAreLeftToTheEntries_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addColumn<bool>("answered");
        QTest::newRow("plain") << u"web"_s << true;
        QTest::newRow("beyond ASCII") << u"stra\u00dfe"_s << true;
        QTest::newRow("outside the basic plane") << u"\U0001F600"_s << false;
        QTest::newRow("lone surrogate") << QString(QChar(0xD800)) << false;
        QTest::newRow("NUL") << QString(QChar(0)) << false;
    }

    void queriesItCannotAnswerAreLeftToTheEntries()
    {
        QFETCH(QString, query);
        QFETCH(bool, answered);
        QCOMPARE(KnownHostsSearchText::searchableQuery(query).has_value(), answered);
    }

    // Marker changes, removed names, deletions and entries put back, in random order: rows written
    // in place, rows moved to the end, and compactions all meet.
    void staysRightThroughChanges()
    {
        const QList<KnownHostEntry> pool = entriesOf(sampleFile + uR"(a ssh-ed25519 K
@cert-authority web-01.example.com,10.0.0.5 ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIQq admin@laptop and a much longer comment that does not fit
)"_s);
        std::mt19937 random(11);
        auto pick = [&](qsizetype size) { return std::uniform_int_distribution<qsizetype>(0, size - 1)(random); };
        QList<KnownHostEntry> rows = pool;
        KnownHostsSearchText text;
        for (const KnownHostEntry& entry : std::as_const(rows))
            text.append(entry);
        for (int step = 0; step < 2000; ++step) {
            const int operation = static_cast<int>(pick(3));
            if (operation == 0 && !rows.isEmpty()) {
                const qsizetype row = pick(rows.size());
                rows[row] = pool.at(pick(pool.size()));
                text.replace(row, rows.at(row));
            } else if (operation == 1 || rows.isEmpty()) {
                const qsizetype row = pick(rows.size() + 1);
                rows.insert(row, pool.at(pick(pool.size())));
                text.insert(row, rows.at(row));
            } else {
                const qsizetype row = pick(rows.size());
                const qsizetype count = std::min<qsizetype>(1 + pick(3), rows.size() - row);
                rows.remove(row, count);
                text.remove(row, count);
            }
            QCOMPARE(text.rowCount(), rows.size());
            QString failure;
            QVERIFY2(agreesWithTheRule(text, rows, &failure), qPrintable(u"step %1: "_s.arg(step) + failure));
        }
    }
};

QTEST_GUILESS_MAIN(TestKnownHostsSearchText)
#include "test_known_hosts_search_text.moc"
