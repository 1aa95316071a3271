// Speed of the known_hosts tab itself, shown in a window, on a known_hosts file of 100,000 entries:
// one keystroke in "Search known_hosts" until the list has repainted, and selecting an entry until
// its details have repainted (target: 16 ms, one frame); each action on the selected entry until
// both have repainted (target: 5 ms). Runs on the offscreen platform.

#include "BenchSupport.h"
#include "KnownHostsSearchText.h"
#include "KnownHostsView.h"
#include "PageFaults.h"
#include "SSHConfigViewModel.h"

#include <QApplication>

#include <QAbstractItemView>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTemporaryDir>
#include <optional>

#include <benchmark/benchmark.h>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{

/// The file, the view model and one known_hosts tab on screen; built once.
struct Setup
{
    Setup()
    {
        const QString knownHosts = directory.filePath(u".ssh/known_hosts"_s);
        QDir().mkpath(QFileInfo(knownHosts).absolutePath());
        QFile file(knownHosts);
        const QByteArray bytes = realisticKnownHostsText(100'000);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(knownHosts));
        file.close();
        viewModel = std::make_unique<SSHConfigViewModel>(
            std::make_shared<SSHFileService>(directory.filePath(u".ssh/config"_s), knownHosts),
            std::make_shared<NoTerminals>(), std::make_shared<NoLaunch>(),
            std::make_shared<InMemoryUserDefaultsStore>());
        view = std::make_unique<KnownHostsView>(*viewModel);
        view->resize(1100, 700);
        view->show();
        search = view->findChild<QLineEdit*>(u"knownHostsSearchField"_s);
        list = view->findChild<QAbstractItemView*>(u"knownHostsList"_s);
        detail = view->findChild<QWidget*>(u"knownHostDetailView"_s);
        QApplication::processEvents();
    }

    /// One key press and release in the search field, as the keyboard would deliver it.
    void type(Qt::Key key, const QString& text) const
    {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
        QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
        QApplication::sendEvent(search, &press);
        QApplication::sendEvent(search, &release);
    }

    /// Delivers what is pending and paints the list (and the detail pane) now, as the next frame would.
    void redraw() const
    {
        QApplication::processEvents();
        list->viewport()->repaint();
        detail->repaint();
    }

    QTemporaryDir directory;
    std::unique_ptr<SSHConfigViewModel> viewModel;
    std::unique_ptr<KnownHostsView> view;
    QLineEdit* search = nullptr;
    QAbstractItemView* list = nullptr;
    QWidget* detail = nullptr;
};

// Torn down by main() while the application still exists: windows and file watchers need it.
std::optional<Setup> instance;

Setup& setup()
{
    if (!instance)
        instance.emplace();
    return *instance;
}

enum class Timed {
    bothKeys,
    characterOnly,
};

// Each iteration is one keystroke: the character after prefix, then Backspace, and so on. With
// characterOnly, each iteration types the character and the Backspace runs outside the timing.
void keystrokes(benchmark::State& state, const QString& prefix, Qt::Key key, const QString& character,
    Timed timed = Timed::bothKeys)
{
    Setup& s = setup();
    s.search->setFocus();
    s.viewModel->setKnownHostsSearchText(prefix);
    s.redraw();
    bool typed = false;
    for (auto _ : state) {
        if (timed == Timed::characterOnly && typed) {
            state.PauseTiming();
            s.type(Qt::Key_Backspace, QString());
            s.redraw();
            typed = false;
            state.ResumeTiming();
        }
        if (typed)
            s.type(Qt::Key_Backspace, QString());
        else
            s.type(key, character);
        typed = !typed;
        s.redraw();
    }
    state.counters["rows"] = double(s.list->model()->rowCount());
    s.viewModel->setKnownHostsSearchText(QString());
    s.redraw();
}

void BM_SearchKeystroke_Host(benchmark::State& state)
{
    keystrokes(state, u"host12"_s, Qt::Key_3, u"3"_s);
}
BENCHMARK(BM_SearchKeystroke_Host)->Unit(benchmark::kMillisecond);

// From the whole list to almost nothing and back: the most rows leave and come back.
void BM_SearchKeystroke_FirstLetter(benchmark::State& state)
{
    keystrokes(state, QString(), Qt::Key_Q, u"q"_s);
}
BENCHMARK(BM_SearchKeystroke_FirstLetter)->Unit(benchmark::kMillisecond);

// The letter alone, without the Backspace that brings the whole list back.
void BM_SearchKeystroke_FirstLetterOnly(benchmark::State& state)
{
    keystrokes(state, QString(), Qt::Key_Q, u"q"_s, Timed::characterOnly);
}
BENCHMARK(BM_SearchKeystroke_FirstLetterOnly)->Unit(benchmark::kMillisecond);

// A query found nowhere makes every entry search all of its fields, keys included.
void BM_SearchKeystroke_NoMatch(benchmark::State& state)
{
    keystrokes(state, u"qq.z"_s, Qt::Key_X, u"x"_s);
}
BENCHMARK(BM_SearchKeystroke_NoMatch)->Unit(benchmark::kMillisecond);

// A click on a row: the list's selection, the view model, the detail pane, and both repainted.
void selectRows(benchmark::State& state, int firstRow)
{
    Setup& s = setup();
    QItemSelectionModel* selection = s.list->selectionModel();
    int step = 0;
    for (auto _ : state) {
        const QModelIndex index = s.list->model()->index(firstRow + step % 2 * 7, 0);
        selection->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
        s.redraw();
        ++step;
    }
}

void BM_SelectEntry_Top(benchmark::State& state)
{
    selectRows(state, 1);
}
BENCHMARK(BM_SelectEntry_Top)->Unit(benchmark::kMillisecond);

// The selected entry is looked up by id, so an entry near the end costs the most.
void BM_SelectEntry_End(benchmark::State& state)
{
    selectRows(state, 99'990);
}
BENCHMARK(BM_SelectEntry_End)->Unit(benchmark::kMillisecond);

// What every timing below includes: delivering pending events and painting the list and the detail
// pane, with nothing changed.
void BM_RedrawFloor(benchmark::State& state)
{
    Setup& s = setup();
    const PageFaultCounter faults(state);
    for (auto _ : state)
        s.redraw();
}
BENCHMARK(BM_RedrawFloor)->Unit(benchmark::kMillisecond);

// Selects an entry in the middle of the list, as a click would, for the actions below.
void selectMiddleEntry(Setup& s)
{
    s.viewModel->setActiveEditorTab(SSHConfigViewModel::EditorTab::knownHosts);
    s.viewModel->setKnownHostsSearchText(QString());
    s.redraw();
    s.list->selectionModel()->setCurrentIndex(s.list->model()->index(50'000, 0), QItemSelectionModel::ClearAndSelect);
    s.redraw();
}

// Each iteration is one action, alternating with its opposite, until the window has repainted.
void alternatingActions(benchmark::State& state, const std::function<void(SSHConfigViewModel&, bool)>& act)
{
    Setup& s = setup();
    selectMiddleEntry(s);
    const PageFaultCounter faults(state);
    bool forth = true;
    for (auto _ : state) {
        act(*s.viewModel, forth);
        s.redraw();
        forth = !forth;
    }
}

void BM_Action_Marker(benchmark::State& state)
{
    alternatingActions(state, [](SSHConfigViewModel& viewModel, bool forth) {
        viewModel.setMarkerOnSelectedKnownHostEntry(
            forth ? std::optional(KnownHostMarker::revoked) : std::optional<KnownHostMarker>());
    });
}
BENCHMARK(BM_Action_Marker)->Unit(benchmark::kMillisecond);

void BM_Action_CommentOut(benchmark::State& state)
{
    alternatingActions(
        state, [](SSHConfigViewModel& viewModel, bool) { viewModel.toggleCommentOnSelectedKnownHostEntry(); });
}
BENCHMARK(BM_Action_CommentOut)->Unit(benchmark::kMillisecond);

// Deleting the selected entry; Undo puts it back outside the timing. The first delete after a load
// is timed on its own first: whatever is built lazily is built then.
void deletes(benchmark::State& state)
{
    Setup& s = setup();
    selectMiddleEntry(s);
    const PageFaultCounter faults(state);
    for (auto _ : state) {
        s.viewModel->deleteSelectedKnownHostEntry();
        s.redraw();
        state.PauseTiming();
        s.viewModel->undo();
        s.redraw();
        state.ResumeTiming();
    }
}

void BM_Action_FirstDelete(benchmark::State& state)
{
    deletes(state);
}
BENCHMARK(BM_Action_FirstDelete)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_Action_Delete(benchmark::State& state)
{
    deletes(state);
}
BENCHMARK(BM_Action_Delete)->Unit(benchmark::kMillisecond);

// What a load or reload adds for the search: the lowered search text of every entry.
void BM_SearchTextBuild(benchmark::State& state)
{
    Setup& s = setup();
    QList<const KnownHostEntry*> entries;
    qsizetype bytes = 0;
    for (const KnownHostsRecord& record : s.viewModel->knownHostsDocument().records()) {
        if (const KnownHostEntry* entry = record.kind().entry()) {
            entries.append(entry);
            bytes += KnownHostsSearchText::bytesFor(*entry);
        }
    }
    for (auto _ : state) {
        KnownHostsSearchText text;
        text.reserve(entries.size(), bytes);
        for (const KnownHostEntry* entry : std::as_const(entries))
            text.append(*entry);
        benchmark::DoNotOptimize(text.rowCount());
    }
    state.counters["entries"] = double(entries.size());
}
BENCHMARK(BM_SearchTextBuild)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    instance.reset();
    return 0;
}
