// Every property's change signal fires once for a real change and never for an equal write.

#include "ViewModelFixture.h"

#include <QMetaProperty>
#include <QSignalSpy>

#include <functional>

using namespace Qt::StringLiterals;

namespace
{

using EditorTab = SSHConfigViewModel::EditorTab;

/// Counts every property's notify signal, by property name.
class PropertySpies
{
public:
    explicit PropertySpies(QObject& object)
    {
        const QMetaObject* meta = object.metaObject();
        for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
            const QMetaProperty property = meta->property(i);
            // The four undo properties share one signal; it is counted once, as "undoHistory".
            const bool history = property.notifySignal().name() == "undoHistoryChanged";
            const QString name = history ? u"undoHistory"_s : QString::fromLatin1(property.name());
            if (!m_spies.contains(name))
                m_spies.emplace(name, std::make_unique<QSignalSpy>(&object, property.notifySignal()));
        }
    }

    /// The names of the properties that signalled, each with its count, e.g. "rawText=1".
    QStringList fired() const
    {
        QStringList result;
        for (const auto& [name, spy] : m_spies) {
            if (!spy->isEmpty())
                result.append(name + u'=' + QString::number(spy->count()));
        }
        result.sort();
        return result;
    }

    void clear()
    {
        for (auto& entry : m_spies)
            entry.second->clear();
    }

private:
    std::map<QString, std::unique_ptr<QSignalSpy>> m_spies;
};

using Operation = std::function<void(SSHConfigViewModel&, PropertySpies&)>;

} // namespace

Q_DECLARE_METATYPE(Operation)

class TestViewModelSignals : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyPropertyHasANotifySignal()
    {
        const QMetaObject& meta = SSHConfigViewModel::staticMetaObject;
        QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 39);
        for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i)
            QVERIFY2(meta.property(i).hasNotifySignal(), meta.property(i).name());
    }

    void writableProperties_data()
    {
        QTest::addColumn<QString>("property");
        QTest::addColumn<QVariant>("value");
        QTest::newRow("rawText") << u"rawText"_s << QVariant(u"Host x"_s);
        QTest::newRow("searchText") << u"searchText"_s << QVariant(u"web"_s);
        QTest::newRow("selectedGroup") << u"selectedGroup"_s << QVariant(u"Production"_s);
        QTest::newRow("knownHostsSearchText") << u"knownHostsSearchText"_s << QVariant(u"ssh-rsa"_s);
        QTest::newRow("activeEditorTab") << u"activeEditorTab"_s << QVariant::fromValue(EditorTab::knownHosts);
        QTest::newRow("rawEditorDirty") << u"rawEditorDirty"_s << QVariant(true);
        QTest::newRow("rawTextDirty") << u"rawTextDirty"_s << QVariant(true);
        QTest::newRow("selectedHostID") << u"selectedHostID"_s
                                        << QVariant::fromValue(std::optional<QUuid>(createRandomUuid()));
        QTest::newRow("selectedKnownHostEntryID")
            << u"selectedKnownHostEntryID"_s << QVariant::fromValue(std::optional<QUuid>(createRandomUuid()));
    }

    void writableProperties()
    {
        QFETCH(QString, property);
        QFETCH(QVariant, value);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make();
        PropertySpies spies(vm);
        const QByteArray name = property.toLatin1();

        QVERIFY(vm.setProperty(name.constData(), value));
        QCOMPARE(spies.fired(), QStringList { property + u"=1"_s });
        QVERIFY(vm.setProperty(name.constData(), value));
        QCOMPARE(spies.fired(), QStringList { property + u"=1"_s });
    }

    void operations_data()
    {
        QTest::addColumn<Operation>("operation");
        QTest::addColumn<QStringList>("fired");
        const auto row = [](const char* tag, const Operation& operation, const QStringList& fired) {
            QTest::newRow(tag) << operation << fired;
        };
        row("addHost", [](auto& vm, auto&) { vm.addHost(); },
            { u"document=1"_s, u"rawEditorDirty=1"_s, u"selectedHostID=1"_s, u"selectedHostKnownHostsLink=1"_s,
                u"undoHistory=1"_s });
        row("updateHost with an equal host", [](auto& vm, auto&) { vm.updateHost(vm.host(0), 0); },
            { u"rawEditorDirty=1"_s });
        row("reload of unchanged files", [](auto& vm, auto&) { vm.load(); },
            { u"document=1"_s, u"knownHostsDocument=1"_s, u"selectedHostID=1"_s, u"selectedKnownHostEntryID=1"_s,
                u"undoHistory=2"_s });
        row("marker", [](auto& vm, auto&) { vm.setMarkerOnSelectedKnownHostEntry(KnownHostMarker::revoked); },
            { u"knownHostsDirty=1"_s, u"knownHostsDocument=1"_s, u"statusMessage=1"_s, u"undoHistory=1"_s });
        row("delete entry", [](auto& vm, auto&) { vm.deleteSelectedKnownHostEntry(); },
            { u"knownHostsDirty=1"_s, u"knownHostsDocument=1"_s, u"knownHostsEntryCount=1"_s,
                u"selectedKnownHostEntryID=1"_s, u"selectedKnownHostFingerprints=1"_s, u"statusMessage=1"_s,
                u"undoHistory=1"_s });
        row("save config", [](auto& vm, auto&) { vm.saveConfig(); },
            { u"lastBackupPath=1"_s, u"rawText=1"_s, u"statusMessage=1"_s });
        row("refresh terminals, same list", [](auto& vm, auto&) { vm.refreshTerminalApps(); }, {});
        row("select other terminal", [](auto& vm, auto&) { vm.selectTerminal(u"com.googlecode.iterm2"_s); },
            { u"selectedTerminalBundleIdentifier=1"_s });
        row("parse with errors",
            [](auto& vm, auto& spies) {
                vm.setRawText(u"Host c\n    Port=2\n"_s);
                spies.clear();
                vm.parseRawText();
            },
            { u"document=1"_s, u"parseErrors=1"_s, u"rawEditorDirty=1"_s, u"selectedHostID=1"_s,
                u"selectedHostKnownHostsLink=1"_s, u"statusMessage=1"_s, u"undoHistory=1"_s });
    }

    void operations()
    {
        QFETCH(Operation, operation);
        QFETCH(QStringList, fired);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host a\nHost b\n"_s, u"# c\none ssh-rsa AAAA\ntwo ssh-rsa BBBB\n"_s);
        PropertySpies spies(vm);
        operation(vm, spies);
        QCOMPARE(spies.fired(), fired);
    }
};

QTEST_GUILESS_MAIN(TestViewModelSignals)
#include "test_view_model_signals.moc"
