// Speed and memory of the config reader and writer on generated files of 1k, 10k and 100k host
// blocks, against a baseline that only decodes the bytes and keeps every trimmed line.
#include "SSHConfigParser.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <benchmark/benchmark.h>
#include <malloc.h>

using namespace Qt::StringLiterals;

namespace
{
QByteArray number(int value)
{
    return QByteArray::number(value);
}

QByteArray optionLine(int index, int host)
{
    switch (index) {
    case 0:
        return "    HostName 10." + number(host % 250) + '.' + number((host / 250) % 250) + ".7\n";
    case 1:
        return "    User deploy\n";
    case 2:
        return "    Port 22" + number(host % 7) + "\n";
    case 3:
        return "    IdentityFile ~/.ssh/id_ed25519_work\n";
    case 4:
        return "    ForwardAgent yes\n";
    case 5:
        return "    ServerAliveInterval 60\n";
    case 6:
        return "    ProxyJump bastion-" + number(host % 5) + ".example.com\n";
    default:
        return "    LocalForward 8080 localhost:80\n";
    }
}

/// A realistic file: a global part, section headers, group comments, disabled blocks, comments
/// inside blocks and 3 to 8 options per host, with a blank line between blocks.
QByteArray generateConfig(int hostCount)
{
    QByteArray text = "# ~/.ssh/config\nInclude ~/.ssh/conf.d/*\nServerAliveCountMax 3\n\n";
    for (int i = 0; i < hostCount; ++i) {
        if (i % 100 == 0)
            text += i % 200 == 0 ? "# PRODUCTION\n" : "# STAGING SERVERS\n";
        if (i % 3 == 0)
            text += i % 2 == 0 ? "# Group: werk, klanten\n" : "# Group: thuis\n";
        const bool disabled = i % 10 == 7;
        const QByteArray prefix = disabled ? "#" : "";
        text += prefix + "Host web-" + number(i) + " web-" + number(i) + ".example.com\n";
        const int optionCount = 3 + i % 6;
        for (int o = 0; o < optionCount; ++o)
            text += prefix + optionLine(o, i);
        if (i % 4 == 0)
            text += disabled ? "#    # retired in 2023\n" : "    # added for the migration\n";
        text += "\n";
    }
    return text;
}

void setThroughput(benchmark::State& state, const QByteArray& bytes)
{
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * bytes.size());
    state.counters["text_MB"] = static_cast<double>(bytes.size()) / 1e6;
}

void BM_Baseline(benchmark::State& state)
{
    const QByteArray bytes = generateConfig(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const QString text = QString::fromUtf8(bytes);
        QStringList lines;
        for (const QStringView line : QStringView(text).tokenize(u'\n'))
            lines.append(line.trimmed().toString());
        benchmark::DoNotOptimize(lines);
    }
    setThroughput(state, bytes);
}

void BM_DecodeAndParse(benchmark::State& state)
{
    const QByteArray bytes = generateConfig(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const QString text = QString::fromUtf8(bytes);
        SSHConfigParseResult result = SSHConfigParser {}.parse(text);
        benchmark::DoNotOptimize(result);
    }
    setThroughput(state, bytes);
}

void BM_Parse(benchmark::State& state)
{
    const QByteArray bytes = generateConfig(static_cast<int>(state.range(0)));
    const QString text = QString::fromUtf8(bytes);
    for (auto _ : state) {
        SSHConfigParseResult result = SSHConfigParser {}.parse(text);
        benchmark::DoNotOptimize(result);
    }
    setThroughput(state, bytes);
    // What the parsed document itself holds, per byte of the file's UTF-8 text.
    const size_t before = mallinfo2().uordblks;
    const SSHConfigParseResult kept = SSHConfigParser {}.parse(text);
    const size_t after = mallinfo2().uordblks;
    state.counters["mem_per_text_byte"] = static_cast<double>(after - before) / static_cast<double>(bytes.size());
    benchmark::DoNotOptimize(kept);
}

void BM_Serialize(benchmark::State& state)
{
    const QByteArray bytes = generateConfig(static_cast<int>(state.range(0)));
    const SSHConfigDocument document = SSHConfigParser {}.parse(QString::fromUtf8(bytes)).document;
    for (auto _ : state) {
        QString text = SSHConfigParser {}.serialize(document);
        benchmark::DoNotOptimize(text);
    }
    setThroughput(state, bytes);
}
} // namespace

BENCHMARK(BM_Baseline)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DecodeAndParse)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Parse)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Serialize)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
