// Undo and redo: every change of either document is one step that gives back exactly the state before
// it (documents with their identifiers, raw text, flags, selection, tab), and again the state after it.

#include "ViewModelFixture.h"

#include <QSignalSpy>

#include <functional>

using namespace Qt::StringLiterals;

namespace
{
using EditorTab = SSHConfigViewModel::EditorTab;

// Everything a step must give back, compared as one value so a failure shows which part differs.
struct State
{
    SSHConfigDocument document;
    QString rawText;
    QList<SSHParseError> parseErrors;
    bool rawEditorDirty;
    bool rawTextDirty;
    std::optional<QUuid> selectedHostID;
    KnownHostsDocument knownHostsDocument;
    QList<KnownHostsParseError> knownHostsParseErrors;
    bool knownHostsDirty;
    std::optional<QUuid> selectedKnownHostEntryID;
    qsizetype knownHostsEntryCount;
    EditorTab tab;

    friend bool operator==(const State&, const State&) = default;
};

State stateOf(const SSHConfigViewModel& vm)
{
    return { vm.document(), vm.rawText(), vm.parseErrors(), vm.rawEditorDirty(), vm.rawTextDirty(), vm.selectedHostID(),
        vm.knownHostsDocument(), vm.knownHostsParseErrors(), vm.knownHostsDirty(), vm.selectedKnownHostEntryID(),
        vm.knownHostsEntryCount(), vm.activeEditorTab() };
}

QString differences(const State& a, const State& b)
{
    QStringList parts;
    if (!(a.document == b.document))
        parts << u"document"_s;
    if (a.rawText != b.rawText)
        parts << u"rawText"_s;
    if (a.parseErrors != b.parseErrors)
        parts << u"parseErrors"_s;
    if (a.rawEditorDirty != b.rawEditorDirty || a.rawTextDirty != b.rawTextDirty)
        parts << u"config flags"_s;
    if (a.selectedHostID != b.selectedHostID)
        parts << u"selectedHostID"_s;
    if (!(a.knownHostsDocument == b.knownHostsDocument) || a.knownHostsParseErrors != b.knownHostsParseErrors)
        parts << u"knownHostsDocument"_s;
    if (a.knownHostsDirty != b.knownHostsDirty)
        parts << u"knownHostsDirty"_s;
    if (a.selectedKnownHostEntryID != b.selectedKnownHostEntryID)
        parts << u"selectedKnownHostEntryID"_s;
    if (a.knownHostsEntryCount != b.knownHostsEntryCount || a.tab != b.tab)
        parts << u"count or tab"_s;
    return parts.join(u", "_s);
}

const QString config = u"# Group: werk\nHost alpha\n    HostName alpha.example.com\n    Port 22\n\nHost beta\n"_s;
const QString knownHosts = u"# keys\nalpha ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIAlpha\n"
                           u"gamma,10.0.0.3 ssh-rsa AAAAB3NzaC1yc2EAAAADAQABAAABGamma\n"
                           u"delta ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIDelta\n"_s;

// What the user does, before the step (choose a tab, a row, type text: none of it a step) and as the step.
using Action = std::function<void(SSHConfigViewModel&, ViewModelFixture&)>;

// Chooses the known_hosts tab and, when given, the entry on record index.
Action onKnownHostsTab(std::optional<int> record = std::nullopt)
{
    return [record](SSHConfigViewModel& vm, ViewModelFixture&) {
        vm.setActiveEditorTab(EditorTab::knownHosts);
        if (record)
            vm.setSelectedKnownHostEntryID(vm.knownHostsDocument().records().at(*record).kind().entry()->id());
    };
}

void row(const char* tag, const QString& stepName, const Action& prepare, const Action& act)
{
    QTest::newRow(tag) << prepare << act << stepName;
}
} // namespace

Q_DECLARE_METATYPE(Action)

class TestViewModelUndo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyStepUndoesAndRedoes_data()
    {
        QTest::addColumn<Action>("prepare");
        QTest::addColumn<Action>("act");
        QTest::addColumn<QString>("stepName");
        row("add host", u"Host toevoegen"_s, {}, [](auto& vm, auto&) { vm.addHost(); });
        row("delete host", u"Host verwijderen"_s, {}, [](auto& vm, auto&) { vm.deleteSelectedHost(); });
        row("edit a field", u"Host bewerken"_s, {}, [](auto& vm, auto&) {
            SSHHost host = vm.host(0);
            host.items[1].asOption()->value = u"2222"_s;
            vm.updateHost(host, 0);
        });
        row("move", u"Hosts verplaatsen"_s, {}, [](auto& vm, auto&) { vm.moveHosts({ 1 }, 0); });
        row("create group", u"Groep aanmaken"_s, {},
            [](auto& vm, auto&) { vm.createGroupForSelectedHost(u"klanten"_s); });
        const Action typeOnRawTab = [](auto& vm, auto&) {
            vm.setActiveEditorTab(EditorTab::raw);
            vm.setRawText(u"Host only\n"_s);
        };
        row("parse raw text", u"Raw tekst parsen"_s, typeOnRawTab, [](auto& vm, auto&) { vm.parseRawText(); });
        row("type raw text", u"Raw tekst bewerken"_s, {}, [](auto& vm, auto&) {
            vm.setRawText(vm.rawText() + u"Host typed\n"_s);
            vm.markRawTextEdited();
        });
        row("host from known_hosts", u"Host uit known_hosts maken"_s, onKnownHostsTab(3),
            [](auto& vm, auto&) { vm.openSSHHostForSelectedKnownHostEntry(); });
        row("reload config", u"Herladen"_s, {}, [](auto& vm, auto& fixture) {
            fixture.writeConfig(u"Host reloaded\n"_s);
            vm.reloadChangedFile(SSHConfigViewModel::SSHFile::config);
        });
        row("marker", u"Marker zetten"_s, onKnownHostsTab(),
            [](auto& vm, auto&) { vm.setMarkerOnSelectedKnownHostEntry(KnownHostMarker::revoked); });
        row("comment out", u"Entry uitcommentariëren"_s, onKnownHostsTab(),
            [](auto& vm, auto&) { vm.toggleCommentOnSelectedKnownHostEntry(); });
        row("remove entry", u"Entry verwijderen"_s, onKnownHostsTab(2),
            [](auto& vm, auto&) { vm.deleteSelectedKnownHostEntry(); });
        row("reload known_hosts", u"Herladen"_s, onKnownHostsTab(), [](auto& vm, auto& fixture) {
            fixture.writeKnownHosts(u"other ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIOther\n"_s);
            vm.reloadChangedFile(SSHConfigViewModel::SSHFile::knownHosts);
        });
    }

    void everyStepUndoesAndRedoes()
    {
        QFETCH(Action, prepare);
        QFETCH(Action, act);
        QFETCH(QString, stepName);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(config, knownHosts);
        QVERIFY(!vm.canUndo() && !vm.canRedo());
        QCOMPARE(vm.undoText(), u"Ongedaan maken"_s);
        if (prepare)
            prepare(vm, fixture);
        const State before = stateOf(vm);
        act(vm, fixture);
        const State after = stateOf(vm);
        QVERIFY(!(after == before));
        QCOMPARE(vm.undoText(), u"Ongedaan maken: "_s + stepName);

        // Each undo and redo announces a known_hosts change once, and only when there is one.
        const int knownHostsAnnouncements = after.knownHostsDocument == before.knownHostsDocument ? 0 : 1;
        QSignalSpy knownHostsChanges(&vm, &SSHConfigViewModel::knownHostsDocumentChanged);
        vm.undo();
        QCOMPARE(knownHostsChanges.size(), knownHostsAnnouncements);
        State expected = before;
        // An undone reload shows what the file no longer holds: that is unsaved, whatever it was before.
        if (stepName == u"Herladen"_s)
            (before.tab == EditorTab::knownHosts ? expected.knownHostsDirty : expected.rawEditorDirty) = true;
        QVERIFY2(stateOf(vm) == expected, qPrintable(differences(stateOf(vm), expected)));
        QVERIFY2(vm.statusMessage().startsWith(u"Ongedaan gemaakt: "_s), qPrintable(vm.statusMessage()));
        // Redo belongs to the document the step changed, whose tab the step may have left.
        vm.setActiveEditorTab(after.tab);
        QVERIFY(vm.canRedo());
        QCOMPARE(vm.redoText(), u"Opnieuw doen: "_s + stepName);
        knownHostsChanges.clear();
        vm.redo();
        QCOMPARE(knownHostsChanges.size(), knownHostsAnnouncements);
        QVERIFY2(stateOf(vm) == after, qPrintable(differences(stateOf(vm), after)));
        QVERIFY2(vm.statusMessage().startsWith(u"Opnieuw gedaan: "_s), qPrintable(vm.statusMessage()));
    }

    void statusNamesTheStep()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(config);
        vm.deleteSelectedHost();
        vm.undo();
        QCOMPARE(vm.statusMessage(), u"Ongedaan gemaakt: Host verwijderd."_s);
        vm.redo();
        QCOMPARE(vm.statusMessage(), u"Opnieuw gedaan: Host verwijderd."_s);
    }

    void typingInOneFieldIsOneStep()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(config);
        const QString loaded = vm.rawText();
        for (const QString& text : { u"H"_s, u"Ho"_s, u"Hos"_s }) {
            vm.setRawText(loaded + text);
            vm.markRawTextEdited();
        }
        QCOMPARE(vm.configHistory().size(), 1);
        for (const QString& port : { u"2"_s, u"22"_s, u"222"_s }) {
            SSHHost host = vm.host(0);
            host.items[1].asOption()->value = port;
            vm.updateHost(host, 0);
        }
        QCOMPARE(vm.configHistory().size(), 2);
        SSHHost host = vm.host(0);
        host.patterns = { u"alpha2"_s };
        vm.updateHost(host, 0);
        QCOMPARE(vm.configHistory().size(), 3);

        vm.undo();
        vm.undo();
        QCOMPARE(vm.host(0).items.at(1).asOption()->value, u"22"_s);
        vm.undo();
        QCOMPARE(vm.rawText(), loaded);
        QVERIFY(!vm.rawEditorDirty() && !vm.rawTextDirty());
        QVERIFY(!vm.canUndo());
    }

    void undoAfterSave()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(config, knownHosts);
        vm.addHost();
        const State added = stateOf(vm);
        vm.saveConfig();
        QVERIFY(!vm.rawEditorDirty());
        vm.undo();
        QCOMPARE(vm.document().hosts.size(), 2);
        QVERIFY2(vm.rawEditorDirty(), "the undone state differs from the saved file");
        vm.redo();
        QCOMPARE(vm.document(), added.document);
        QVERIFY2(!vm.rawEditorDirty(), "back at the saved state");

        vm.setActiveEditorTab(EditorTab::knownHosts);
        vm.deleteSelectedKnownHostEntry();
        vm.saveKnownHosts();
        vm.undo();
        QCOMPARE(vm.knownHostsEntryCount(), 3);
        QVERIFY(vm.knownHostsDirty());
        QCOMPARE(WindowFixture::readText(fixture.knownHostsPath()).count(u"ssh-"_s), 2);
    }

    // An undone reload gives back the unsaved edits it had thrown away.
    void reloadIsUndone()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(config, knownHosts);
        vm.addHost();
        vm.setActiveEditorTab(EditorTab::knownHosts);
        vm.toggleCommentOnSelectedKnownHostEntry();
        const State edited = stateOf(vm);
        vm.load();
        QVERIFY(!vm.rawEditorDirty() && !vm.knownHostsDirty());
        vm.undo(); // the known_hosts tab: its reload
        vm.setActiveEditorTab(EditorTab::structured);
        vm.undo(); // the config's reload
        vm.setActiveEditorTab(EditorTab::knownHosts);
        QVERIFY2(stateOf(vm) == edited, qPrintable(differences(stateOf(vm), edited)));
    }

    void historyLimits()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(config);
        for (int i = 0; i < 1100; ++i)
            vm.moveHosts({ 1 }, 0);
        QCOMPARE(vm.configHistory().size(), UndoHistory::maximumSteps);
        QVERIFY(vm.configHistory().cost() <= UndoHistory::memoryBudget);
        int undone = 0;
        while (vm.canUndo()) {
            vm.undo();
            ++undone;
        }
        QCOMPARE(undone, UndoHistory::maximumSteps);
        QVERIFY(vm.rawEditorDirty()); // the loaded state itself was dropped from reach
    }

    // Steps past the memory budget are dropped oldest first, but never below the minimum count.
    void budgetKeepsTheMinimum()
    {
        UndoHistory history;
        int undone = 0;
        for (int i = 0; i < 150; ++i)
            history.push({ u"x"_s, u"x"_s, QString(), [&undone] { ++undone; }, [] {}, UndoHistory::memoryBudget / 50 });
        QCOMPARE(history.size(), UndoHistory::minimumSteps);
        while (history.canUndo())
            history.undo();
        QCOMPARE(undone, UndoHistory::minimumSteps);
        QVERIFY(!history.atSavedState());
    }
};

QTEST_GUILESS_MAIN(TestViewModelUndo)
#include "test_view_model_undo.moc"
