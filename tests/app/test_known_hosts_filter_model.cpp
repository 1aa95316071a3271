// The known_hosts list filter as its own proxy: the row signals it gives for each change of its source,
// and a long random run of actions, searches and host lookups after each of which it must hold what a
// filter built afresh holds, agree with the view model's own rule, and keep its persistent indexes on
// the right entries.

#include "KnownHostsFilterModel.h"
#include "KnownHostsModel.h"
#include "KnownHostsTextGenerator.h"
#include "ViewModelFixture.h"

#include <QAbstractItemModelTester>

#include <functional>
#include <random>

using namespace Qt::StringLiterals;

namespace
{

using Operation = std::function<void(SSHConfigViewModel&)>;

const QString fourEntries = u"one ssh-rsa AAAA\n# comment\ntwo ssh-ed25519 BBBB\nthree,3.example ssh-rsa CCCC\n"
                            u"four ssh-ed25519 DDDD\n"_s;

/// The structural and data signals of a model as short texts, e.g. "insert 2-2", "change 0-0" or "reset".
QStringList signalLog(QAbstractItemModel& model, const std::function<void()>& action)
{
    QStringList log;
    QObject context;
    const auto add = [&log](const QString& what, int first, int last) {
        log.append(u"%1 %2-%3"_s.arg(what).arg(first).arg(last));
    };
    QObject::connect(&model, &QAbstractItemModel::rowsInserted, &context,
        [&](const QModelIndex&, int first, int last) { add(u"insert"_s, first, last); });
    QObject::connect(&model, &QAbstractItemModel::rowsRemoved, &context,
        [&](const QModelIndex&, int first, int last) { add(u"remove"_s, first, last); });
    QObject::connect(&model, &QAbstractItemModel::dataChanged, &context,
        [&](const QModelIndex& from, const QModelIndex& to) { add(u"change"_s, from.row(), to.row()); });
    QObject::connect(&model, &QAbstractItemModel::modelReset, &context, [&log] { log.append(u"reset"_s); });
    QObject::connect(&model, &QAbstractItemModel::layoutChanged, &context, [&log] { log.append(u"layout"_s); });
    action();
    return log;
}

QStringList firstHosts(const QAbstractItemModel& model)
{
    QStringList hosts;
    for (int row = 0; row < model.rowCount(); ++row)
        hosts.append(model.index(row, 0).data(KnownHostsModel::FirstHostRole).toString());
    return hosts;
}

QList<QUuid> ids(const QAbstractItemModel& model)
{
    QList<QUuid> result;
    for (int row = 0; row < model.rowCount(); ++row)
        result.append(model.index(row, 0).data(KnownHostsModel::IdRole).toUuid());
    return result;
}

/// What the list must show by the view model's own rule: its filtered entries, within its host lookup.
QList<QUuid> expectedIds(const SSHConfigViewModel& vm)
{
    QList<QUuid> result;
    const std::optional<SSHConfigViewModel::KnownHostLookup>& lookup = vm.knownHostLookup();
    for (const KnownHostEntry& entry : vm.filteredKnownHostEntries()) {
        if (!lookup || lookup->entryIDs.contains(entry.id()))
            result.append(entry.id());
    }
    return result;
}

const KnownHostEntry* entryWithHost(const SSHConfigViewModel& vm, const QString& host)
{
    for (const KnownHostsRecord& record : vm.knownHostsDocument().records()) {
        const KnownHostEntry* entry = record.kind().entry();
        if (entry && entry->hosts().contains(host))
            return entry;
    }
    return nullptr;
}

void selectHost(SSHConfigViewModel& vm, const QString& host)
{
    const KnownHostEntry* entry = entryWithHost(vm, host);
    QVERIFY(entry);
    vm.setSelectedKnownHostEntryID(entry->id());
}

/// Random steps on a view model: actions on random entries, undo and redo, typing on, deleting and
/// replacing the search text, host lookups and reloads.
class RandomSteps
{
public:
    RandomSteps(SSHConfigViewModel& vm, quint32 seed)
        : m_vm(vm)
        , m_random(seed)
    { }

    /// Takes one step and says which, for the failure message.
    QString step()
    {
        switch (below(11)) {
        case 0:
        case 1:
            return search();
        case 2:
            return act(u"marker"_s, [this] {
                static const std::optional<KnownHostMarker> markers[]
                    = { KnownHostMarker::revoked, KnownHostMarker::certAuthority, std::nullopt };
                m_vm.setMarkerOnSelectedKnownHostEntry(markers[below(3)]);
            });
        case 3:
            return act(u"comment"_s, [this] { m_vm.toggleCommentOnSelectedKnownHostEntry(); });
        case 4:
            return act(u"delete"_s, [this] { m_vm.deleteSelectedKnownHostEntry(); });
        case 5:
            return act(u"remove host"_s, [this] {
                const std::optional<KnownHostEntry> entry = m_vm.selectedKnownHostEntry();
                if (entry && entry->hosts().size() > 1)
                    m_vm.removeHostFromSelectedKnownHostEntry(below(static_cast<int>(entry->hosts().size())));
            });
        case 6:
        case 7:
            m_vm.undo();
            return u"undo"_s;
        case 8:
            m_vm.redo();
            return u"redo"_s;
        case 9:
            return lookup();
        default:
            if (below(4) == 0) {
                m_vm.load();
                return u"load"_s;
            }
            return act(u"select"_s, [] {});
        }
    }

private:
    int below(int bound) { return static_cast<int>(m_random() % static_cast<quint32>(bound)); }

    QString act(const QString& name, const std::function<void()>& action)
    {
        const QList<const KnownHostEntry*> entries = allEntries();
        if (entries.isEmpty())
            return name + u" without entries"_s;
        const KnownHostEntry* entry = entries.at(below(static_cast<int>(entries.size())));
        m_vm.setSelectedKnownHostEntryID(entry->id());
        action();
        return name + u" on line "_s + QString::number(entry->lineNumber());
    }

    // Typing on narrows, deleting a letter widens, a new text does neither.
    QString search()
    {
        static const QStringList texts { QString(), u"g"_s, u"github"_s, u"10.0"_s, u"db.example"_s, u"ssh-"_s,
            u"ssh-rsa"_s, u"ed25519"_s, u"@revoked"_s, u"cert"_s, u"aaaa"_s, u"x"_s, u"n\u00e9e"_s, u"\u65e5"_s,
            u"zzz"_s, u"SHA256:"_s, u"sha256:ny"_s };
        static const QString letters = u"aceghiorst.-1:"_s;
        QString text = m_vm.knownHostsSearchText();
        const int choice = below(4);
        if (choice == 0 && !text.isEmpty())
            text.chop(1);
        else if (choice == 1)
            text += letters.at(below(static_cast<int>(letters.size())));
        else if (choice == 2)
            text = fingerprintPrefix();
        else
            text = texts.at(below(static_cast<int>(texts.size())));
        m_vm.setKnownHostsSearchText(text);
        return u"search \""_s + text + u'"';
    }

    QString fingerprintPrefix()
    {
        const QList<const KnownHostEntry*> entries = allEntries();
        if (entries.isEmpty())
            return QString();
        m_vm.setSelectedKnownHostEntryID(entries.at(below(static_cast<int>(entries.size())))->id());
        const std::optional<KnownHostFingerprints>& fingerprints = m_vm.selectedKnownHostFingerprints();
        return fingerprints ? fingerprints->sha256.left(7 + below(4)) : QString();
    }

    QString lookup()
    {
        static const QStringList names { u"github.com"_s, u"10.0.0.1"_s, u"db.example.org:2222"_s, u"nowhere"_s };
        if (below(3) == 0) {
            m_vm.clearKnownHostLookup();
            return u"end lookup"_s;
        }
        const QString name = names.at(below(static_cast<int>(names.size())));
        m_vm.findKnownHostEntriesForHost(name);
        return u"lookup "_s + name;
    }

    QList<const KnownHostEntry*> allEntries() const
    {
        QList<const KnownHostEntry*> entries;
        for (const KnownHostsRecord& record : m_vm.knownHostsDocument().records()) {
            if (const KnownHostEntry* entry = record.kind().entry())
                entries.append(entry);
        }
        return entries;
    }

    SSHConfigViewModel& m_vm;
    std::mt19937 m_random;
};

} // namespace

Q_DECLARE_METATYPE(Operation)

class TestKnownHostsFilterModel : public QObject
{
    Q_OBJECT

private slots:
    void followsItsSource_data()
    {
        QTest::addColumn<QString>("search");
        QTest::addColumn<Operation>("operation");
        QTest::addColumn<QStringList>("expectedSignals");
        QTest::addColumn<QStringList>("rows");
        const QStringList all { u"one"_s, u"two"_s, u"three"_s, u"four"_s };
        QTest::newRow("change of a shown row") << QString() << Operation([](SSHConfigViewModel& vm) {
            selectHost(vm, u"two"_s);
            vm.setMarkerOnSelectedKnownHostEntry(KnownHostMarker::revoked);
        }) << QStringList { u"change 1-1"_s } << all;
        QTest::newRow("change of a hidden row that still does not match")
            << u"rsa"_s << Operation([](SSHConfigViewModel& vm) {
                   selectHost(vm, u"two"_s);
                   vm.toggleCommentOnSelectedKnownHostEntry();
               })
            << QStringList() << QStringList { u"one"_s, u"three"_s };
        QTest::newRow("change that makes a row match") << u"revoked"_s << Operation([](SSHConfigViewModel& vm) {
            selectHost(vm, u"three"_s);
            vm.setMarkerOnSelectedKnownHostEntry(KnownHostMarker::revoked);
        }) << QStringList { u"insert 0-0"_s } << QStringList { u"three"_s };
        QTest::newRow("change that makes a row stop matching")
            << u"3.example"_s << Operation([](SSHConfigViewModel& vm) {
                   selectHost(vm, u"three"_s);
                   vm.removeHostFromSelectedKnownHostEntry(1);
               })
            << QStringList { u"remove 0-0"_s } << QStringList();
        QTest::newRow("deleting a shown row") << u"ed25519"_s << Operation([](SSHConfigViewModel& vm) {
            selectHost(vm, u"four"_s);
            vm.deleteSelectedKnownHostEntry();
        }) << QStringList { u"remove 1-1"_s } << QStringList { u"two"_s };
        QTest::newRow("deleting a hidden row") << u"ed25519"_s << Operation([](SSHConfigViewModel& vm) {
            selectHost(vm, u"three"_s);
            vm.deleteSelectedKnownHostEntry();
        }) << QStringList() << QStringList { u"two"_s, u"four"_s };
        QTest::newRow("a deleted row that comes back") << u"rsa"_s << Operation([](SSHConfigViewModel& vm) {
            selectHost(vm, u"three"_s);
            vm.deleteSelectedKnownHostEntry();
            vm.undo();
        }) << QStringList { u"remove 1-1"_s, u"insert 1-1"_s }
                                                       << QStringList { u"one"_s, u"three"_s };
        QTest::newRow("a hidden row that comes back") << u"rsa"_s << Operation([](SSHConfigViewModel& vm) {
            selectHost(vm, u"two"_s);
            vm.deleteSelectedKnownHostEntry();
            vm.undo();
        }) << QStringList() << QStringList { u"one"_s, u"three"_s };
        QTest::newRow("reload") << u"rsa"_s << Operation([](SSHConfigViewModel& vm) { vm.load(); })
                                << QStringList { u"reset"_s } << QStringList { u"one"_s, u"three"_s };
    }

    void followsItsSource()
    {
        QFETCH(QString, search);
        QFETCH(Operation, operation);
        QFETCH(QStringList, expectedSignals);
        QFETCH(QStringList, rows);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), fourEntries);
        vm.setActiveEditorTab(SSHConfigViewModel::EditorTab::knownHosts); // whose history undo takes back
        KnownHostsModel source(vm);
        KnownHostsFilterModel filter(source);
        QAbstractItemModelTester tester(&filter, QAbstractItemModelTester::FailureReportingMode::QtTest);
        vm.setKnownHostsSearchText(search);
        QCOMPARE(signalLog(filter, [&] { operation(vm); }), expectedSignals);
        QCOMPARE(firstHosts(filter), rows);
    }

    void agreesWithAFreshFilterAfterEveryStep_data()
    {
        QTest::addColumn<quint32>("seed");
        QTest::addColumn<int>("lines");
        for (quint32 seed = 1; seed <= 4; ++seed)
            QTest::addRow("seed %u, short file", seed) << seed << 30;
        for (quint32 seed = 11; seed <= 12; ++seed)
            QTest::addRow("seed %u, long file", seed) << seed << 400;
    }

    void agreesWithAFreshFilterAfterEveryStep()
    {
        QFETCH(quint32, seed);
        QFETCH(int, lines);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(QString(), KnownHostsTextGenerator(seed).normalFormText(lines));
        vm.setActiveEditorTab(SSHConfigViewModel::EditorTab::knownHosts);
        KnownHostsModel source(vm);
        KnownHostsFilterModel filter(source);
        QAbstractItemModelTester tester(&filter, QAbstractItemModelTester::FailureReportingMode::QtTest);
        bool reset = false;
        connect(&filter, &QAbstractItemModel::modelReset, this, [&reset] { reset = true; });
        RandomSteps steps(vm, seed);
        QPersistentModelIndex followed;
        QUuid followedId;
        for (int i = 0; i < 300; ++i) {
            reset = false;
            const QString step = steps.step();
            const QByteArray context = (QString::number(i) + u": "_s + step).toUtf8();
            const QList<QUuid> shown = ids(filter);
            KnownHostsFilterModel fresh(source);
            QVERIFY2(shown == ids(fresh), context.constData());
            QVERIFY2(shown == expectedIds(vm), context.constData());
            for (int row = 0; row < shown.size(); ++row) {
                QVERIFY2(filter.rowOf(shown.at(row)) == row, context.constData());
                const QModelIndex index = filter.index(row, 0);
                QVERIFY2(filter.mapFromSource(filter.mapToSource(index)) == index, context.constData());
            }
            // A persistent index stays on its entry while the entry is shown, and goes when it goes.
            if (!followedId.isNull()) {
                if (!shown.contains(followedId)) {
                    QVERIFY2(!followed.isValid(), context.constData());
                    followedId = QUuid();
                } else if (!reset) {
                    QVERIFY2(followed.data(KnownHostsModel::IdRole).toUuid() == followedId, context.constData());
                }
            }
            if (!followed.isValid() && !shown.isEmpty()) {
                followed = filter.index(i * 37 % static_cast<int>(shown.size()), 0);
                followedId = followed.data(KnownHostsModel::IdRole).toUuid();
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestKnownHostsFilterModel)
#include "test_known_hosts_filter_model.moc"
