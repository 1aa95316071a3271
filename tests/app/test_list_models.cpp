// The list adapters under QAbstractItemModelTester, and the exact row signals they give for each
// change of the view model's documents.

#include "HostFilterModel.h"
#include "HostListModel.h"
#include "KnownHostsFilterModel.h"
#include "KnownHostsModel.h"
#include "ViewModelFixture.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <functional>

using namespace Qt::StringLiterals;

namespace
{

/// Records the structural signals of a model as short texts, e.g. "insert 2-2" or "reset".
class ModelSignalLog
{
public:
    explicit ModelSignalLog(QAbstractItemModel& model)
    {
        QObject::connect(&model, &QAbstractItemModel::rowsInserted, &m_context,
            [this](const QModelIndex&, int first, int last) { add(u"insert"_s, first, last); });
        QObject::connect(&model, &QAbstractItemModel::rowsRemoved, &m_context,
            [this](const QModelIndex&, int first, int last) { add(u"remove"_s, first, last); });
        QObject::connect(&model, &QAbstractItemModel::rowsMoved, &m_context,
            [this](const QModelIndex&, int first, int last, const QModelIndex&, int to) {
                entries.append(u"move %1-%2 to %3"_s.arg(first).arg(last).arg(to));
            });
        QObject::connect(&model, &QAbstractItemModel::dataChanged, &m_context,
            [this](const QModelIndex& from, const QModelIndex& to) { add(u"change"_s, from.row(), to.row()); });
        QObject::connect(&model, &QAbstractItemModel::modelReset, &m_context, [this] { entries.append(u"reset"_s); });
        QObject::connect(
            &model, &QAbstractItemModel::layoutChanged, &m_context, [this] { entries.append(u"layout"_s); });
    }

    QStringList entries;

private:
    void add(const QString& what, int first, int last) { entries.append(u"%1 %2-%3"_s.arg(what).arg(first).arg(last)); }

    QObject m_context;
};

QStringList column(const QAbstractItemModel& model, int role = Qt::DisplayRole)
{
    QStringList result;
    for (int row = 0; row < model.rowCount(); ++row)
        result.append(model.index(row, 0).data(role).toString());
    return result;
}

using Operation = std::function<void(SSHConfigViewModel&)>;

const QString hostsConfig = u"Host a\n# Group: Web\nHost b\nHost c\n"_s;
const QString knownHosts = u"# header\none ssh-rsa AAAA\n\ntwo ssh-ed25519 BBBB\nbad\nthree ssh-rsa CCCC\n"_s;

} // namespace

Q_DECLARE_METATYPE(Operation)

class TestListModels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hostModelRows()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(hostsConfig);
        HostListModel model(vm);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(column(model), (QStringList { u"a"_s, u"b"_s, u"c"_s }));
        QCOMPARE(column(model, HostListModel::GroupsTextRole), (QStringList { QString(), u"Web"_s, QString() }));
        QCOMPARE(model.index(1).data(HostListModel::IdRole).toUuid(), vm.document().hosts.at(1).id());
        QCOMPARE(model.rowOf(vm.document().hosts.at(2).id()), 2);
        QCOMPARE(model.rowOf(createRandomUuid()), -1);
    }

    void hostModelFollowsEdits_data()
    {
        QTest::addColumn<Operation>("operation");
        QTest::addColumn<QStringList>("expectedSignals");
        QTest::addColumn<QStringList>("rows");
        QTest::newRow("add") << Operation([](SSHConfigViewModel& vm) { vm.addHost(); })
                             << QStringList { u"insert 3-3"_s }
                             << QStringList { u"a"_s, u"b"_s, u"c"_s, u"new-host"_s };
        QTest::newRow("delete middle") << Operation([](SSHConfigViewModel& vm) {
            vm.setSelectedHostID(vm.document().hosts.at(1).id());
            vm.deleteSelectedHost();
        }) << QStringList { u"remove 1-1"_s }
                                       << QStringList { u"a"_s, u"c"_s };
        QTest::newRow("update") << Operation([](SSHConfigViewModel& vm) {
            SSHHost host = vm.host(0);
            host.patterns = { u"z"_s };
            vm.updateHost(host, 0);
        }) << QStringList { u"change 0-0"_s }
                                << QStringList { u"z"_s, u"b"_s, u"c"_s };
        QTest::newRow("move first to end")
            << Operation([](SSHConfigViewModel& vm) { vm.moveHosts({ 0 }, 3); }) << QStringList { u"move 0-0 to 3"_s }
            << QStringList { u"b"_s, u"c"_s, u"a"_s };
        QTest::newRow("move two together") << Operation([](SSHConfigViewModel& vm) {
            vm.moveHosts({ 1, 2 }, 0);
        }) << QStringList { u"move 1-1 to 0"_s, u"move 2-2 to 1"_s }
                                           << QStringList { u"b"_s, u"c"_s, u"a"_s };
        QTest::newRow("group created") << Operation(
            [](SSHConfigViewModel& vm) { vm.createGroupForSelectedHost(u"New"_s); })
                                       << QStringList { u"change 0-0"_s } << QStringList { u"a"_s, u"b"_s, u"c"_s };
        QTest::newRow("reload") << Operation([](SSHConfigViewModel& vm) { vm.load(); }) << QStringList { u"reset"_s }
                                << QStringList { u"a"_s, u"b"_s, u"c"_s };
        QTest::newRow("parse") << Operation([](SSHConfigViewModel& vm) {
            vm.setRawText(u"Host x\nHost y\n"_s);
            vm.parseRawText();
        }) << QStringList { u"reset"_s }
                               << QStringList { u"x"_s, u"y"_s };
    }

    void hostModelFollowsEdits()
    {
        QFETCH(Operation, operation);
        QFETCH(QStringList, expectedSignals);
        QFETCH(QStringList, rows);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(hostsConfig);
        HostListModel model(vm);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        ModelSignalLog log(model);
        operation(vm);
        QCOMPARE(log.entries, expectedSignals);
        QCOMPARE(column(model), rows);
        for (int row = 0; row < model.rowCount(); ++row)
            QCOMPARE(model.rowOf(vm.document().hosts.at(row).id()), row);
    }

    void hostFilterUsesViewModelRules()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(hostsConfig);
        HostListModel source(vm);
        HostFilterModel filter(source);
        QAbstractItemModelTester tester(&filter, QAbstractItemModelTester::FailureReportingMode::QtTest);
        vm.setSelectedGroup(u"web"_s);
        QCOMPARE(column(filter), QStringList { u"b"_s });
        QCOMPARE(filter.rowOf(vm.document().hosts.at(0).id()), -1);
        QCOMPARE(filter.rowOf(vm.document().hosts.at(1).id()), 0);
        vm.setSelectedGroup(u"All"_s);
        vm.setSearchText(u" C "_s);
        QCOMPARE(column(filter), QStringList { u"c"_s });
        QCOMPARE(filter.sourceRow(0), 2);
        // An edit that makes a host match brings it into the filtered rows.
        SSHHost host = vm.host(0);
        host.items.append(SSHHostItem::option(SSHOption(u"HostName"_s, u"c.example.com"_s)));
        vm.updateHost(host, 0);
        QCOMPARE(column(filter), (QStringList { u"a"_s, u"c"_s }));
        QCOMPARE(firstPatterns(vm.filteredHosts()), column(filter));
    }

    void knownHostsModelRows()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), knownHosts);
        KnownHostsModel model(vm);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(column(model), (QStringList { u"one"_s, u"two"_s, u"three"_s }));
        QCOMPARE(column(model, KnownHostsModel::KeyTypeRole),
            (QStringList { u"ssh-rsa"_s, u"ssh-ed25519"_s, u"ssh-rsa"_s }));
        const QList<KnownHostEntry> entries = vm.filteredKnownHostEntries();
        for (int row = 0; row < entries.size(); ++row) {
            QCOMPARE(model.rowOf(entries.at(row).id()), row);
            QCOMPARE(model.index(row).data(KnownHostsModel::IdRole).toUuid(), entries.at(row).id());
        }
    }

    void knownHostsModelFollowsActions()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), knownHosts);
        KnownHostsModel model(vm);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        ModelSignalLog log(model);
        const QUuid three = vm.filteredKnownHostEntries().at(2).id();

        vm.setSelectedKnownHostEntryID(vm.filteredKnownHostEntries().at(1).id());
        vm.setMarkerOnSelectedKnownHostEntry(KnownHostMarker::revoked);
        QCOMPARE(model.index(1).data(KnownHostsModel::MarkerRole).toString(), u"@revoked"_s);
        vm.toggleCommentOnSelectedKnownHostEntry();
        QVERIFY(model.index(1).data(KnownHostsModel::IsCommentedOutRole).toBool());
        vm.setSelectedKnownHostEntryID(vm.filteredKnownHostEntries().at(0).id());
        vm.deleteSelectedKnownHostEntry();
        QCOMPARE(log.entries, (QStringList { u"change 1-1"_s, u"change 1-1"_s, u"remove 0-0"_s }));
        QCOMPARE(column(model), (QStringList { u"two"_s, u"three"_s }));
        QCOMPARE(model.rowOf(three), 1);

        log.entries.clear();
        vm.load();
        QCOMPARE(log.entries, QStringList { u"reset"_s });
        QCOMPARE(column(model), (QStringList { u"one"_s, u"two"_s, u"three"_s }));
    }

    void knownHostsFilterUsesViewModelRules()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), knownHosts);
        KnownHostsModel source(vm);
        KnownHostsFilterModel filter(source);
        QAbstractItemModelTester tester(&filter, QAbstractItemModelTester::FailureReportingMode::QtTest);
        vm.setKnownHostsSearchText(u"RSA"_s);
        QCOMPARE(column(filter), (QStringList { u"one"_s, u"three"_s }));
        vm.setKnownHostsSearchText(u" rsa  "_s);
        QCOMPARE(column(filter), (QStringList { u"one"_s, u"three"_s }));
        QCOMPARE(filter.rowOf(vm.filteredKnownHostEntries().at(1).id()), 1);
        // A marker that makes an entry match brings it in.
        vm.setKnownHostsSearchText(u"revoked"_s);
        QCOMPARE(filter.rowCount(), 0);
        vm.setSelectedKnownHostEntryID(vm.knownHostsDocument().records().at(3).kind().entry()->id());
        vm.setMarkerOnSelectedKnownHostEntry(KnownHostMarker::revoked);
        QCOMPARE(column(filter), QStringList { u"two"_s });
        // What the last search found is forgotten once an entry changes under it.
        vm.setKnownHostsSearchText(u"revoke"_s);
        QCOMPARE(column(filter), QStringList { u"two"_s });
        vm.setMarkerOnSelectedKnownHostEntry(std::nullopt);
        vm.setKnownHostsSearchText(u"revo"_s);
        QCOMPARE(filter.rowCount(), 0);
        vm.setMarkerOnSelectedKnownHostEntry(KnownHostMarker::revoked);
        vm.deleteSelectedKnownHostEntry();
        QCOMPARE(filter.rowCount(), 0);
        vm.setKnownHostsSearchText(QString());
        QCOMPARE(column(filter), (QStringList { u"one"_s, u"three"_s }));
    }

    void knownHostsFilterResetsOnScatteredChanges()
    {
        QString text;
        for (int i = 0; i < 80; ++i)
            text += (i % 2 ? u"odd"_s : u"even"_s) + QString::number(i) + u" ssh-rsa AAAA\n"_s;
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), text);
        KnownHostsModel source(vm);
        KnownHostsFilterModel filter(source);
        QAbstractItemModelTester tester(&filter, QAbstractItemModelTester::FailureReportingMode::QtTest);
        ModelSignalLog log(filter);

        vm.setKnownHostsSearchText(u"odd"_s);
        QCOMPARE(log.entries, QStringList { u"reset"_s });
        QCOMPARE(filter.rowCount(), 40);
        vm.setKnownHostsSearchText(u"odd7"_s);
        QCOMPARE(
            column(filter), (QStringList { u"odd7"_s, u"odd71"_s, u"odd73"_s, u"odd75"_s, u"odd77"_s, u"odd79"_s }));
        // A few runs are announced row by row.
        log.entries.clear();
        vm.setKnownHostsSearchText(u"odd79"_s);
        QCOMPARE(log.entries, (QStringList { u"remove 0-4"_s }));
        QCOMPARE(column(filter), QStringList { u"odd79"_s });
        vm.setKnownHostsSearchText(u"odd"_s);
        QCOMPARE(filter.rowCount(), 40);
        log.entries.clear();
        vm.setKnownHostsSearchText(u"d1"_s);
        QCOMPARE(log.entries, QStringList { u"reset"_s });
        QCOMPARE(
            column(filter), (QStringList { u"odd1"_s, u"odd11"_s, u"odd13"_s, u"odd15"_s, u"odd17"_s, u"odd19"_s }));
        QStringList expected;
        for (const KnownHostEntry& entry : vm.filteredKnownHostEntries())
            expected.append(entry.hosts().first());
        QCOMPARE(column(filter), expected);
    }

    // Large enough that the entries are tested on several threads: the ranges must meet exactly.
    void knownHostsFilterAgreesOnALargeFile()
    {
        QString text;
        for (int i = 0; i < 40'000; ++i)
            text += u"h"_s + QString::number(i) + u" ssh-ed25519 K"_s + QString::number(i % 7) + u'\n';
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), text);
        KnownHostsModel source(vm);
        KnownHostsFilterModel filter(source);
        for (const QString& query : { u"9"_s, u"k3"_s, u"99"_s, u"k"_s, QString() }) {
            vm.setKnownHostsSearchText(query);
            QStringList expected;
            for (const KnownHostEntry& entry : vm.filteredKnownHostEntries())
                expected.append(entry.firstHost().toString());
            QCOMPARE(column(filter), expected);
        }
    }

    void knownHostsRowLabel_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<QString>("label");
        QTest::newRow("short") << u"web"_s << u"web"_s;
        QTest::newRow("55 characters in full") << QString(55, u'h') << QString(55, u'h');
        QTest::newRow("56 characters cut") << QString(56, u'h') << QString(52, u'h') + u'\u2026';
        QTest::newRow("hashed name of 60") << u"|1|"_s + QString(57, u'x') << u"|1|"_s + QString(49, u'x') + u'\u2026';
    }

    void knownHostsRowLabel()
    {
        QFETCH(QString, host);
        QFETCH(QString, label);
        const KnownHostEntry entry(
            createRandomUuid(), 1, std::nullopt, { host }, u"ssh-rsa"_s, u"AAAA"_s, QString(), false, false);
        QCOMPARE(KnownHostsModel::rowLabel(entry), label);
    }
};

QTEST_GUILESS_MAIN(TestListModels)
#include "test_list_models.moc"
