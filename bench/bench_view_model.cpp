// Speed of the view model with the list adapters attached, on a config of 10,000 hosts and a
// known_hosts file of 100,000 entries: one keystroke in either search field (filtering as the list
// adapter sees it), load() of both files, a marker change, a comment toggle and a delete, and the
// longest stall of the event loop while OpenSSH checks a delete.
// Targets: 16 ms per keystroke, 500 ms per load, 5 ms per known_hosts action, no stall over 16 ms.

#include "BenchSupport.h"
#include "HostFilterModel.h"
#include "HostListModel.h"
#include "KnownHostsFilterModel.h"
#include "KnownHostsModel.h"
#include "SSHConfigViewModel.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <memory>
#include <optional>

#ifdef __GLIBC__
#include <malloc.h>
#endif

using namespace Qt::StringLiterals;

namespace
{

QByteArray configText(int hosts)
{
    QByteArray text = "Include ~/.ssh/config.d/*\n\n";
    for (int i = 0; i < hosts; ++i) {
        const QByteArray n = QByteArray::number(i);
        if (i % 50 == 0)
            text += "# Group: team" + QByteArray::number(i / 50 % 40) + "\n";
        text += "Host web" + n + " web" + n + ".lan\n    HostName 10." + QByteArray::number(i % 250) + ".0."
            + QByteArray::number(i / 250) + "\n    User deploy\n    Port 22\n\n";
    }
    return text;
}

/// The files, the view model and the adapters as the main window would hold them; built once.
struct Setup
{
    Setup()
    {
        writeFile(directory.filePath(u".ssh/config"_s), configText(10'000));
        writeFile(directory.filePath(u".ssh/known_hosts"_s), realisticKnownHostsText(100'000));
        viewModel = std::make_unique<SSHConfigViewModel>(
            std::make_shared<SSHFileService>(
                directory.filePath(u".ssh/config"_s), directory.filePath(u".ssh/known_hosts"_s)),
            std::make_shared<NoTerminals>(), std::make_shared<NoLaunch>(),
            std::make_shared<InMemoryUserDefaultsStore>());
        hosts = std::make_unique<HostListModel>(*viewModel);
        hostFilter = std::make_unique<HostFilterModel>(*hosts);
        knownHosts = std::make_unique<KnownHostsModel>(*viewModel);
        knownHostsFilter = std::make_unique<KnownHostsFilterModel>(*knownHosts);
    }

    static void writeFile(const QString& path, const QByteArray& bytes)
    {
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(path));
    }

    void selectEntry(int row) { viewModel->setSelectedKnownHostEntryID(knownHosts->entryAt(row).id()); }

    QTemporaryDir directory;
    std::unique_ptr<SSHConfigViewModel> viewModel;
    std::unique_ptr<HostListModel> hosts;
    std::unique_ptr<HostFilterModel> hostFilter;
    std::unique_ptr<KnownHostsModel> knownHosts;
    std::unique_ptr<KnownHostsFilterModel> knownHostsFilter;
};

std::optional<Setup> instance;

Setup& setup()
{
    if (!instance)
        instance.emplace();
    return *instance;
}

// Alternates between two texts, as typing a character and deleting it again would.
void keystrokes(benchmark::State& state, void (SSHConfigViewModel::*set)(const QString&), const QString& shorter,
    const QString& longer, const QAbstractItemModel& filter)
{
    SSHConfigViewModel& vm = *setup().viewModel;
    bool toggle = false;
    for (auto _ : state) {
        (vm.*set)(toggle ? shorter : longer);
        toggle = !toggle;
        benchmark::DoNotOptimize(filter.rowCount());
    }
    (vm.*set)(QString());
}

void BM_KnownHostsSearchKeystroke_Host(benchmark::State& state)
{
    keystrokes(
        state, &SSHConfigViewModel::setKnownHostsSearchText, u"host12"_s, u"host123"_s, *setup().knownHostsFilter);
}
BENCHMARK(BM_KnownHostsSearchKeystroke_Host)->Unit(benchmark::kMillisecond);

// A query found nowhere makes every entry search all of its fields, keys included.
void BM_KnownHostsSearchKeystroke_NoMatch(benchmark::State& state)
{
    keystrokes(state, &SSHConfigViewModel::setKnownHostsSearchText, u"qq.z"_s, u"qq.zx"_s, *setup().knownHostsFilter);
}
BENCHMARK(BM_KnownHostsSearchKeystroke_NoMatch)->Unit(benchmark::kMillisecond);

void BM_KnownHostsSearchKeystroke_FirstLetter(benchmark::State& state)
{
    keystrokes(state, &SSHConfigViewModel::setKnownHostsSearchText, QString(), u"x"_s, *setup().knownHostsFilter);
}
BENCHMARK(BM_KnownHostsSearchKeystroke_FirstLetter)->Unit(benchmark::kMillisecond);

void BM_HostSearchKeystroke(benchmark::State& state)
{
    keystrokes(state, &SSHConfigViewModel::setSearchText, u"web12"_s, u"web123"_s, *setup().hostFilter);
}
BENCHMARK(BM_HostSearchKeystroke)->Unit(benchmark::kMillisecond);

void BM_HostSearchKeystroke_NoMatch(benchmark::State& state)
{
    keystrokes(state, &SSHConfigViewModel::setSearchText, u"qq.z"_s, u"qq.zx"_s, *setup().hostFilter);
}
BENCHMARK(BM_HostSearchKeystroke_NoMatch)->Unit(benchmark::kMillisecond);

void BM_LoadBoth(benchmark::State& state)
{
    for (auto _ : state)
        setup().viewModel->load();
    state.counters["entries"] = double(setup().viewModel->knownHostsEntryCount());
}
BENCHMARK(BM_LoadBoth)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_MarkerChange(benchmark::State& state)
{
    Setup& s = setup();
    s.selectEntry(50'000);
    bool toggle = false;
    for (auto _ : state) {
        s.viewModel->setMarkerOnSelectedKnownHostEntry(
            toggle ? std::nullopt : std::optional(KnownHostMarker::certAuthority));
        toggle = !toggle;
    }
}
BENCHMARK(BM_MarkerChange)->Unit(benchmark::kMillisecond);

void BM_CommentToggle(benchmark::State& state)
{
    Setup& s = setup();
    s.selectEntry(50'000);
    for (auto _ : state)
        s.viewModel->toggleCommentOnSelectedKnownHostEntry();
}
BENCHMARK(BM_CommentToggle)->Unit(benchmark::kMillisecond);

// Deleting near the top moves the most rows and renumbers the most entries.
void BM_DeleteEntry(benchmark::State& state)
{
    Setup& s = setup();
    for (auto _ : state) {
        s.selectEntry(10);
        s.viewModel->deleteSelectedKnownHostEntry();
    }
    state.counters["entries"] = double(s.viewModel->knownHostsEntryCount());
}
BENCHMARK(BM_DeleteEntry)->Unit(benchmark::kMillisecond)->Iterations(200);

// The same with a search active, so the filter re-checks what changed.
void BM_DeleteEntryWhileSearching(benchmark::State& state)
{
    Setup& s = setup();
    s.viewModel->setKnownHostsSearchText(u"example"_s);
    for (auto _ : state) {
        s.selectEntry(10);
        s.viewModel->deleteSelectedKnownHostEntry();
    }
    s.viewModel->setKnownHostsSearchText(QString());
}
BENCHMARK(BM_DeleteEntryWhileSearching)->Unit(benchmark::kMillisecond)->Iterations(200);

// Undo and redo of a Remove near the top, which moves the most rows back; the known_hosts tab is active,
// so the known_hosts history answers.
void BM_UndoRemove(benchmark::State& state)
{
    Setup& s = setup();
    s.viewModel->setActiveEditorTab(SSHConfigViewModel::EditorTab::knownHosts);
    for (auto _ : state) {
        state.PauseTiming();
        s.selectEntry(10);
        s.viewModel->deleteSelectedKnownHostEntry();
        state.ResumeTiming();
        s.viewModel->undo();
    }
}
BENCHMARK(BM_UndoRemove)->Unit(benchmark::kMillisecond)->Iterations(100);

void BM_RedoRemove(benchmark::State& state)
{
    Setup& s = setup();
    s.viewModel->setActiveEditorTab(SSHConfigViewModel::EditorTab::knownHosts);
    s.selectEntry(10);
    s.viewModel->deleteSelectedKnownHostEntry();
    for (auto _ : state) {
        state.PauseTiming();
        s.viewModel->undo();
        state.ResumeTiming();
        s.viewModel->redo();
    }
}
BENCHMARK(BM_RedoRemove)->Unit(benchmark::kMillisecond)->Iterations(100);

// What OpenSSH's check of a delete costs the window, from the start of the check (serializing the
// document included) to its answer: "stall_ms" is the longest the event loop went without turning
// (a 1 ms timer measures it). Only ssh-keygen is given, so the config is not checked.
void BM_SshCheckAfterDelete(benchmark::State& state)
{
    const QString sshKeygen = QStandardPaths::findExecutable(u"ssh-keygen"_s);
    if (sshKeygen.isEmpty()) {
        state.SkipWithError("ssh-keygen is not installed");
        return;
    }
    Setup& s = setup();
    s.viewModel->setSshCheckPrograms(QString(), sshKeygen);
    // The check of the load, and what building the set-up left for the event loop, come first.
    const auto waitForTheCheck = [&] {
        QEventLoop loop;
        QObject::connect(s.viewModel.get(), &SSHConfigViewModel::sshCheckRunningChanged, &loop, [&] {
            if (!s.viewModel->sshCheckRunning())
                loop.quit();
        });
        if (s.viewModel->sshCheckRunning())
            loop.exec();
    };
    waitForTheCheck();
    QCoreApplication::processEvents();
    qint64 stall = 0;
    for (auto _ : state) {
        state.PauseTiming();
        s.selectEntry(50'000);
        s.viewModel->deleteSelectedKnownHostEntry();
        state.ResumeTiming();
        QElapsedTimer sinceTick;
        QTimer tick;
        tick.setInterval(1);
        QObject::connect(&tick, &QTimer::timeout, [&] { stall = std::max(stall, sinceTick.restart()); });
        sinceTick.start();
        tick.start();
        s.viewModel->checkWhatSshWillDo();
        waitForTheCheck();
        stall = std::max(stall, sinceTick.elapsed());
    }
    state.counters["stall_ms"] = static_cast<double>(stall);
}
BENCHMARK(BM_SshCheckAfterDelete)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

#ifdef __GLIBC__
// What one known_hosts step keeps alive at 100,000 entries: the heap in use after 100 marker changes
// (each one step) against before them, per step. The list of records is never shared with a step, so
// no change copies the document.
void BM_HistoryMemoryPerStep(benchmark::State& state)
{
    Setup& s = setup();
    constexpr int steps = 100;
    double perStep = 0;
    qsizetype kept = 0;
    for (auto _ : state) {
        // A view model of its own, so the history starts empty.
        SSHConfigViewModel viewModel(std::make_shared<SSHFileService>(s.directory.filePath(u".ssh/config"_s),
                                         s.directory.filePath(u".ssh/known_hosts"_s)),
            std::make_shared<NoTerminals>(), std::make_shared<NoLaunch>(),
            std::make_shared<InMemoryUserDefaultsStore>());
        viewModel.setActiveEditorTab(SSHConfigViewModel::EditorTab::knownHosts);
        const auto entryID = [&viewModel](qsizetype record) {
            return viewModel.knownHostsDocument().records().at(record).kind().entry()->id();
        };
        const size_t before = mallinfo2().uordblks;
        for (int i = 0; i < steps; ++i) {
            viewModel.setSelectedKnownHostEntryID(entryID(1000 + i));
            viewModel.setMarkerOnSelectedKnownHostEntry(KnownHostMarker::revoked);
        }
        perStep = (double(mallinfo2().uordblks) - double(before)) / steps;
        kept = viewModel.knownHostsHistory().size();
    }
    state.counters["bytes_per_step"] = perStep;
    state.counters["steps"] = double(kept);
}
BENCHMARK(BM_HistoryMemoryPerStep)->Unit(benchmark::kMillisecond)->Iterations(1);
#endif

} // namespace

// The view model watches its files, as in the application, so it needs an event loop's application.
int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    instance.reset();
    return 0;
}
