// The known_hosts tools at 100,000 entries (a third of them hashed) and a config of 10,000 hosts:
// fingerprints of the rows a list shows and of the selected entry, the "Zoek host" lookup with the
// index built and without, and the links between the files on a selection change.
// Targets: hashed-name lookup under 50 ms; a link update under 16 ms per selection change.

#include "BenchSupport.h"
#include "KnownHostFingerprint.h"
#include "KnownHostNameIndex.h"
#include "KnownHostsService.h"
#include "SSHConfigViewModel.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{

constexpr int entries = 100'000;
constexpr int configHosts = 10'000;

// Hosts named after the plain names of the known_hosts text, every fifth on the port of its bracketed form.
QByteArray configText()
{
    QByteArray text;
    for (int i = 0; i < configHosts; ++i) {
        const QByteArray n = QByteArray::number(i);
        text += "Host web" + n + "\n    HostName host" + n + ".example.com\n";
        if (i % 5 == 0)
            text += "    Port 2222\n";
        text += "\n";
    }
    return text;
}

const KnownHostsDocument& document()
{
    static const KnownHostsDocument parsed
        = KnownHostsService().parse(QString::fromUtf8(realisticKnownHostsText(entries))).document;
    return parsed;
}

struct Setup
{
    Setup()
    {
        writeFile(directory.filePath(u".ssh/config"_s), configText());
        writeFile(directory.filePath(u".ssh/known_hosts"_s), realisticKnownHostsText(entries));
        viewModel = std::make_unique<SSHConfigViewModel>(
            std::make_shared<SSHFileService>(
                directory.filePath(u".ssh/config"_s), directory.filePath(u".ssh/known_hosts"_s)),
            std::make_shared<NoTerminals>(), std::make_shared<NoLaunch>(),
            std::make_shared<InMemoryUserDefaultsStore>());
    }

    static void writeFile(const QString& path, const QByteArray& bytes)
    {
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(path));
    }

    QUuid entryAt(qsizetype record) const
    {
        const KnownHostEntry* entry = viewModel->knownHostsDocument().records().at(record).kind().entry();
        return entry ? entry->id() : QUuid();
    }

    QTemporaryDir directory;
    std::unique_ptr<SSHConfigViewModel> viewModel;
};

Setup& setup()
{
    static Setup instance;
    return instance;
}

// The rows a list shows at once: only these are fingerprinted, whatever the file's size.
void BM_FingerprintsOfShownRows(benchmark::State& state)
{
    const QList<KnownHostsRecord>& records = document().records();
    qsizetype first = 0;
    for (auto _ : state) {
        for (qsizetype i = first; i < first + 40; ++i) {
            if (const KnownHostEntry* entry = records.at(i).kind().entry())
                benchmark::DoNotOptimize(knownHostSha256Fingerprint(entry->key()));
        }
        first = (first + 40) % (records.size() - 40);
    }
}
BENCHMARK(BM_FingerprintsOfShownRows)->Unit(benchmark::kMicrosecond);

// Selecting an entry computes its SHA256 and MD5 fingerprints for the detail pane.
void BM_SelectEntryWithFingerprints(benchmark::State& state)
{
    Setup& s = setup();
    s.viewModel->setActiveEditorTab(SSHConfigViewModel::EditorTab::knownHosts);
    qsizetype record = 5;
    for (auto _ : state) {
        s.viewModel->setSelectedKnownHostEntryID(s.entryAt(record));
        benchmark::DoNotOptimize(s.viewModel->selectedKnownHostFingerprints());
        record = record == 5 ? 50'000 : 5;
    }
}
BENCHMARK(BM_SelectEntryWithFingerprints)->Unit(benchmark::kMicrosecond);

// Built once per change of the known_hosts document.
void BM_LookupIndexBuild(benchmark::State& state)
{
    document();
    for (auto _ : state)
        benchmark::DoNotOptimize(KnownHostNameIndex(document()));
}
BENCHMARK(BM_LookupIndexBuild)->Unit(benchmark::kMillisecond);

// One name through the built index: a hash probe for plain names, one HMAC-SHA1 per hashed entry.
void BM_HashedLookup(benchmark::State& state)
{
    const KnownHostNameIndex index(document());
    int i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(index.recordsFor(QString(u"host"_s + QString::number(++i) + u".example.com"_s)));
}
BENCHMARK(BM_HashedLookup)->Unit(benchmark::kMillisecond);

// "Zoek host" as the user sees it, right after a change of the document: the index is built first.
void BM_FindHostAfterChange(benchmark::State& state)
{
    Setup& s = setup();
    s.viewModel->setActiveEditorTab(SSHConfigViewModel::EditorTab::knownHosts);
    s.viewModel->setSelectedKnownHostEntryID(s.entryAt(50'000));
    int i = 0;
    for (auto _ : state) {
        state.PauseTiming();
        s.viewModel->toggleCommentOnSelectedKnownHostEntry();
        state.ResumeTiming();
        s.viewModel->findKnownHostEntriesForHost(u"host"_s + QString::number(++i) + u".example.com"_s);
    }
    s.viewModel->clearKnownHostLookup();
}
BENCHMARK(BM_FindHostAfterChange)->Unit(benchmark::kMillisecond)->Iterations(20);

// The host editor's link: each selection is a host not asked about before, so nothing is cached.
void BM_HostLinkSelectionChange(benchmark::State& state)
{
    Setup& s = setup();
    s.viewModel->setActiveEditorTab(SSHConfigViewModel::EditorTab::structured);
    const QList<SSHHost>& hosts = s.viewModel->document().hosts;
    qsizetype i = 0;
    for (auto _ : state) {
        s.viewModel->setSelectedHostID(hosts.at(i).id());
        benchmark::DoNotOptimize(s.viewModel->selectedHostKnownHostsLink());
        i = (i + 1) % hosts.size();
    }
}
BENCHMARK(BM_HostLinkSelectionChange)->Unit(benchmark::kMillisecond);

// The known_hosts pane's config hosts, alternating a plain entry and a hashed one (one HMAC per config
// host name).
void BM_EntryLinkSelectionChange(benchmark::State& state)
{
    Setup& s = setup();
    s.viewModel->setActiveEditorTab(SSHConfigViewModel::EditorTab::knownHosts);
    const QUuid plain = s.entryAt(1005);
    const QUuid hashed = s.entryAt(1004);
    bool toggle = false;
    for (auto _ : state) {
        s.viewModel->setSelectedKnownHostEntryID(toggle ? plain : hashed);
        benchmark::DoNotOptimize(s.viewModel->selectedKnownHostConfigHosts());
        toggle = !toggle;
    }
}
BENCHMARK(BM_EntryLinkSelectionChange)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
