// Reading and writing known_hosts files of realistic make-up at 10k, 100k and 1M lines, against a
// baseline that only decodes the bytes and keeps every trimmed line. Counters: MB/s, and the heap
// a parsed document holds per byte of file text.
#include "KnownHostsService.h"
#include "PageFaults.h"

#include <benchmark/benchmark.h>

#include <QByteArray>
#include <QStringList>

#include <malloc.h>

#include <map>
#include <random>

using namespace Qt::StringLiterals;

namespace
{
class RealisticKnownHosts
{
public:
    explicit RealisticKnownHosts(quint32 seed)
        : m_random(seed)
    { }

    QByteArray text(int lines)
    {
        QByteArray out;
        out.reserve(static_cast<qsizetype>(lines) * 160);
        for (int i = 0; i < lines; ++i)
            out += line(i) + '\n';
        return out;
    }

private:
    int below(int bound) { return static_cast<int>(m_random() % static_cast<quint32>(bound)); }

    QByteArray base64(int length)
    {
        static const char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        QByteArray out(length, '=');
        for (int i = 0; i < length - 1; ++i)
            out[i] = alphabet[below(64)];
        return out;
    }

    QByteArray hostName(int i)
    {
        switch (below(6)) {
        case 0:
            return "|1|" + base64(28) + '|' + base64(28); // ssh-keygen -H: 20-byte salt and hash
        case 1:
            return "[host" + QByteArray::number(i) + ".example.com]:" + QByteArray::number(2200 + below(100));
        case 2:
            return "srv" + QByteArray::number(i) + ".internal.example.org,10." + QByteArray::number(below(256)) + '.'
                + QByteArray::number(below(256)) + '.' + QByteArray::number(below(256));
        default:
            return "host" + QByteArray::number(i) + ".example.com";
        }
    }

    // Key lengths as OpenSSH writes them: ed25519 68, ecdsa-p256 140, rsa-3072 544, rsa-2048 372.
    QByteArray keyPart()
    {
        const int kind = below(10);
        if (kind < 5)
            return "ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAI" + base64(43);
        if (kind < 7)
            return "ecdsa-sha2-nistp256 AAAAE2VjZHNhLXNoYTItbmlzdHAyNTYAAAAIbmlzdHAyNTYAAABBB" + base64(88);
        return "ssh-rsa AAAAB3NzaC1yc2EAAAADAQABAAAB" + base64(kind < 9 ? 508 : 336);
    }

    QByteArray line(int i)
    {
        const int kind = below(100);
        if (kind < 2)
            return {};
        if (kind < 5)
            return "# added by hand on 2024-0" + QByteArray::number(1 + below(9)) + " for the staging servers";
        QByteArray entry = hostName(i) + ' ' + keyPart();
        if (kind < 10)
            entry += " root@laptop";
        if (kind < 12)
            entry = (below(2) ? "@cert-authority *.example.com " : "@revoked ") + entry;
        if (kind > 96)
            entry = "# " + entry;
        return entry;
    }

    std::mt19937 m_random;
};

const QByteArray& fileOfLines(int lines)
{
    static std::map<int, QByteArray> files;
    auto found = files.find(lines);
    if (found == files.end())
        found = files.emplace(lines, RealisticKnownHosts(20240601).text(lines)).first;
    return found->second;
}

QStringList trimmedLines(const QString& text)
{
    QStringList lines;
    const QList<QStringView> views = QStringView(text).split(u'\n');
    lines.reserve(views.size());
    for (const QStringView line : views)
        lines.append(line.trimmed().toString());
    return lines;
}

std::size_t heapInUse()
{
    // Large blocks (the record array, the text) are mapped, not taken from the heap arenas.
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void setThroughput(benchmark::State& state, const QByteArray& bytes)
{
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * bytes.size());
    state.counters["lines"] = static_cast<double>(state.range(0));
}
} // namespace

// Decoding the file's bytes and keeping each trimmed line: the least any reader of the file does.
static void BM_Baseline(benchmark::State& state)
{
    const QByteArray& bytes = fileOfLines(static_cast<int>(state.range(0)));
    const PageFaultCounter faults(state);
    for (auto _ : state) {
        const QStringList lines = trimmedLines(QString::fromUtf8(bytes));
        benchmark::DoNotOptimize(lines.constData());
    }
    setThroughput(state, bytes);
}

// What loading does: decode the bytes, then parse.
static void BM_Load(benchmark::State& state)
{
    const QByteArray& bytes = fileOfLines(static_cast<int>(state.range(0)));
    const PageFaultCounter faults(state);
    for (auto _ : state) {
        const KnownHostsParseResult result = KnownHostsService {}.parse(QString::fromUtf8(bytes));
        benchmark::DoNotOptimize(result.document.records().constData());
    }
    setThroughput(state, bytes);

    // The document shares the decoded text, so the text is counted too: it lives as long as the document.
    const std::size_t before = heapInUse();
    const KnownHostsParseResult kept = KnownHostsService {}.parse(QString::fromUtf8(bytes));
    const std::size_t after = heapInUse();
    state.counters["heap_per_text_byte"] = static_cast<double>(after - before) / static_cast<double>(bytes.size());
}

// The parser alone, from text already decoded.
static void BM_Parse(benchmark::State& state)
{
    const QByteArray& bytes = fileOfLines(static_cast<int>(state.range(0)));
    const QString text = QString::fromUtf8(bytes);
    const PageFaultCounter faults(state);
    for (auto _ : state) {
        const KnownHostsParseResult result = KnownHostsService {}.parse(text);
        benchmark::DoNotOptimize(result.document.records().constData());
    }
    setThroughput(state, bytes);
}

// The serializer alone, document to text.
static void BM_Serialize(benchmark::State& state)
{
    const QByteArray& bytes = fileOfLines(static_cast<int>(state.range(0)));
    const KnownHostsDocument document = KnownHostsService {}.parse(QString::fromUtf8(bytes)).document;
    const PageFaultCounter faults(state);
    for (auto _ : state) {
        const QString text = KnownHostsService {}.serialize(document);
        benchmark::DoNotOptimize(text.constData());
    }
    setThroughput(state, bytes);
}

// What saving does before the file is written: serialize, then encode.
static void BM_Save(benchmark::State& state)
{
    const QByteArray& bytes = fileOfLines(static_cast<int>(state.range(0)));
    const KnownHostsDocument document = KnownHostsService {}.parse(QString::fromUtf8(bytes)).document;
    const PageFaultCounter faults(state);
    for (auto _ : state) {
        const QByteArray out = KnownHostsService {}.serialize(document).toUtf8();
        benchmark::DoNotOptimize(out.constData());
    }
    setThroughput(state, bytes);
}

static void fileSizes(benchmark::internal::Benchmark* run)
{
    run->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_Baseline)->Apply(fileSizes);
BENCHMARK(BM_Load)->Apply(fileSizes);
BENCHMARK(BM_Parse)->Apply(fileSizes);
BENCHMARK(BM_Serialize)->Apply(fileSizes);
BENCHMARK(BM_Save)->Apply(fileSizes);

// Every iteration frees a document and builds the next. Left to itself glibc hands freed memory back
// to the system and faults it in again page by page, which on a virtual machine can cost more than
// the parsing; keeping blocks up to glibc's limit (32 MiB) in the heap measures the code instead.
// Larger blocks (the text and record array of the 1M-line file) are always mapped afresh.
int main(int argc, char** argv)
{
    mallopt(M_MMAP_THRESHOLD, 32 << 20);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    {
        // Grow the heap once to the largest document, so no benchmark pays for the first touch.
        const QString largest = QString::fromUtf8(fileOfLines(1'000'000));
        const QStringList lines = trimmedLines(largest);
        const KnownHostsParseResult result = KnownHostsService {}.parse(largest);
        benchmark::DoNotOptimize(KnownHostsService {}.serialize(result.document).constData());
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
