// The whole check by OpenSSH of one save, from start to the last answer, with the real ssh and
// ssh-keygen: configs of 10 to 10,000 hosts whose written form differs from the file (tab indentation,
// and a "Key=Value" line in every tenth host), and known_hosts files of 10,000 and 100,000 lines with 100
// entries deleted across the file, or one in the middle (a user's delete). Besides wall time,
// "stall_ms" is the longest the event loop went without turning while the check ran (a 1 ms timer
// measures it), the user-interface cost of the check. "start_ms" is the part of that spent in start()
// itself, before the first process runs.
// Targets: 100 hosts under 1.5 s on 2 cores; no stall over 16 ms. BM_IdleEventLoop gives the stall
// the machine itself causes, with no check running.

#include "BenchSupport.h"
#include "KnownHostsCheck.h"
#include "SSHConfigParser.h"
#include "SshConfigCheck.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QStandardPaths>
#include <QTimer>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace
{
QString configOnDisk(int hosts)
{
    QString text = u"Include ~/.ssh/config.d/*\nServerAliveInterval 30\n\n"_s;
    for (int i = 0; i < hosts; ++i) {
        const QString n = QString::number(i);
        text += u"Host web"_s + n + u" web"_s + n + u".lan\n\tHostName 10.0."_s + QString::number(i / 250) + u"."_s
            + QString::number(i % 250) + u"\n\tUser deploy\n"_s + (i % 10 == 0 ? u"\tPort=2222\n"_s : QString())
            + u"\n"_s;
    }
    return text + u"Host *.lan\n\tForwardAgent no\n"_s;
}

// Runs check until it reports, and gives the longest gap between two turns of the event loop.
template<typename Start> qint64 runAndMeasureStall(OpenSSHCheck& check, Start start)
{
    QEventLoop loop;
    QObject::connect(&check, &OpenSSHCheck::finished, &loop, &QEventLoop::quit);
    QElapsedTimer sinceTick;
    qint64 longest = 0;
    QTimer tick;
    tick.setInterval(1);
    QObject::connect(&tick, &QTimer::timeout, [&] { longest = std::max(longest, sinceTick.restart()); });
    sinceTick.start();
    tick.start();
    start();
    loop.exec();
    return std::max(longest, sinceTick.elapsed());
}

void BM_ConfigCheck(benchmark::State& state)
{
    const QString ssh = QStandardPaths::findExecutable(u"ssh"_s);
    if (ssh.isEmpty()) {
        state.SkipWithError("ssh is not installed");
        return;
    }
    const QString before = configOnDisk(static_cast<int>(state.range(0)));
    const SSHConfigParser parser;
    const QString after = parser.serialize(parser.parse(before).document);
    qint64 stall = 0;
    qint64 startMs = 0;
    for (auto _ : state) {
        SshConfigCheck check(ssh);
        stall = std::max(stall, runAndMeasureStall(check, [&] {
            QElapsedTimer starting;
            starting.start();
            check.start(before, after);
            startMs = std::max(startMs, starting.elapsed());
        }));
    }
    state.counters["stall_ms"] = static_cast<double>(stall);
    state.counters["start_ms"] = static_cast<double>(startMs);
}
BENCHMARK(BM_ConfigCheck)->Arg(10)->Arg(100)->Arg(1000)->Arg(10'000)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_KnownHostsCheck(benchmark::State& state)
{
    const QString sshKeygen = QStandardPaths::findExecutable(u"ssh-keygen"_s);
    if (sshKeygen.isEmpty()) {
        state.SkipWithError("ssh-keygen is not installed");
        return;
    }
    const QString before = QString::fromUtf8(realisticKnownHostsText(static_cast<int>(state.range(0))));
    QStringList lines = before.split(u'\n');
    const qsizetype deletions = state.range(1);
    const qsizetype spacing = lines.size() / deletions;
    // Spread evenly, from the middle of the first stretch on; the entry above a comment line is
    // taken instead of the comment, so that every deletion takes names away.
    for (qsizetype i = spacing * (deletions - 1) + spacing / 2; i >= 0; i -= spacing)
        lines.removeAt(lines.at(i).startsWith(u'#') ? i - 1 : i);
    const QString after = lines.join(u'\n');
    qint64 stall = 0;
    qint64 startMs = 0;
    for (auto _ : state) {
        KnownHostsCheck check(sshKeygen);
        stall = std::max(stall, runAndMeasureStall(check, [&] {
            QElapsedTimer starting;
            starting.start();
            check.start(before, after);
            startMs = std::max(startMs, starting.elapsed());
        }));
    }
    state.counters["stall_ms"] = static_cast<double>(stall);
    state.counters["start_ms"] = static_cast<double>(startMs);
}
BENCHMARK(BM_KnownHostsCheck)
    ->Args({ 10'000, 100 })
    ->Args({ 100'000, 100 })
    ->Args({ 100'000, 1 })
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// The same measure of stalls with no check at all, for one second: on a busy machine the event loop
// also waits for the scheduler, and the figures above are only as good as this floor.
void BM_IdleEventLoop(benchmark::State& state)
{
    OpenSSHCheck idle { QString() };
    qint64 stall = 0;
    for (auto _ : state) {
        QTimer end;
        end.setSingleShot(true);
        QObject::connect(&end, &QTimer::timeout, &idle, [&idle] { Q_EMIT idle.finished({}); });
        stall = std::max(stall, runAndMeasureStall(idle, [&] { end.start(1000); }));
    }
    state.counters["stall_ms"] = static_cast<double>(stall);
}
BENCHMARK(BM_IdleEventLoop)->Unit(benchmark::kMillisecond)->UseRealTime();
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
