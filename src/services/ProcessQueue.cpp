#include "ProcessQueue.h"

#include <QProcess>
#include <QTimer>
#include <QVariant>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#endif

using namespace Qt::StringLiterals;

namespace
{
const char* const timedOutProperty = "timedOut";

// The conventional niceness of background work: the caller's event loop, and the start of the next
// program, win the processor from running programs.
constexpr int backgroundNiceness = 10;

void lowerPriority(const QProcess& process)
{
#ifdef Q_OS_UNIX
    // The program already runs, and ends as a zombie that keeps its number until QProcess collects it,
    // so the number cannot name another process here.
    if (process.state() != QProcess::NotRunning) {
        const auto pid = static_cast<id_t>(process.processId());
        setpriority(PRIO_PROCESS, pid, getpriority(PRIO_PROCESS, 0) + backgroundNiceness);
    }
#else
    Q_UNUSED(process)
#endif
}
} // namespace

ProcessQueue::ProcessQueue(int parallel, int timeLimitMs, QObject* parent)
    : QObject(parent)
    , m_parallel(std::max(parallel, 1))
    , m_timeLimitMs(timeLimitMs)
    , m_starter(new QTimer(this))
{
    m_starter->setSingleShot(true);
    m_starter->setInterval(0);
    connect(m_starter, &QTimer::timeout, this, &ProcessQueue::fillFreeSlot);
}

ProcessQueue::~ProcessQueue()
{
    cancel();
}

void ProcessQueue::run(QList<Job> jobs)
{
    cancel();
    m_jobs = std::move(jobs);
    m_outcomes = QList<Outcome>(m_keepsOutcomes ? m_jobs.size() : 0);
    m_next = 0;
    m_done = 0;
    m_running = true;
    if (m_jobs.isEmpty()) {
        // Still asynchronous, so callers see one order of events whatever the list holds.
        QTimer::singleShot(0, this, [this, generation = m_generation] {
            if (generation == m_generation && m_running) {
                m_running = false;
                Q_EMIT finished({});
            }
        });
        return;
    }
    m_starter->start();
}

// Starting a process holds this thread until the new process runs its program, which on a busy
// machine can take a scheduler tick. A zero timer fires once per turn of the event loop, so however
// many processes end at once, one turn starts at most one.
void ProcessQueue::fillFreeSlot()
{
    if (!m_running || m_processes.size() >= m_parallel || m_next >= m_jobs.size())
        return;
    startNext();
    if (m_processes.size() < m_parallel && m_next < m_jobs.size())
        m_starter->start();
}

// A cancelled process is killed and left to delete itself once it has really ended, so cancelling
// never waits for a process on the user-interface thread.
void ProcessQueue::cancel()
{
    ++m_generation;
    m_running = false;
    m_starter->stop();
    for (QProcess* process : std::as_const(m_processes)) {
        process->disconnect(this);
        if (process->state() == QProcess::NotRunning) {
            delete process;
            continue;
        }
        connect(process, &QProcess::finished, process, &QObject::deleteLater);
        process->kill();
    }
    m_processes.clear();
}

void ProcessQueue::startNext()
{
    const qsizetype index = m_next++;
    auto* process = new QProcess(this);
    m_processes.append(process);
    process->setStandardInputFile(QProcess::nullDevice());
    connect(process, &QProcess::finished, this, [this, process, index] { collect(process, index); });
    connect(process, &QProcess::errorOccurred, this, [this, process, index](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            collect(process, index);
    });
    QTimer::singleShot(m_timeLimitMs, process, [process] {
        process->setProperty(timedOutProperty, true);
        process->kill();
    });
    process->start(m_jobs.at(index).program, m_jobs.at(index).arguments);
    lowerPriority(*process);
}

void ProcessQueue::collect(QProcess* process, qsizetype index)
{
    const Outcome outcome = outcomeOf(process);
    m_processes.removeOne(process);
    process->disconnect(this);
    process->deleteLater();
    if (!report(index, outcome))
        return;
    if (m_done == m_jobs.size()) {
        m_running = false;
        Q_EMIT finished(m_outcomes);
        return;
    }
    m_starter->start();
}

ProcessQueue::Outcome ProcessQueue::outcomeOf(QProcess* process) const
{
    Outcome outcome;
    outcome.output = process->readAllStandardOutput();
    outcome.errorOutput = process->readAllStandardError();
    if (process->property(timedOutProperty).toBool()) {
        outcome.problem = u"geen antwoord binnen "_s + QString::number((m_timeLimitMs + 999) / 1000) + u" s"_s;
    } else if (process->error() == QProcess::FailedToStart) {
        outcome.problem = process->errorString();
    } else {
        outcome.ran = process->exitStatus() == QProcess::NormalExit;
        outcome.exitCode = process->exitCode();
        if (!outcome.ran)
            outcome.problem = u"afgebroken"_s;
    }
    return outcome;
}

// Tells the receivers about one ended job; false when one of them cancelled this run or started
// another, so nothing more of this run may happen.
bool ProcessQueue::report(qsizetype index, const Outcome& outcome)
{
    if (m_keepsOutcomes)
        m_outcomes[index] = outcome;
    ++m_done;
    const quint64 generation = m_generation;
    Q_EMIT jobEnded(index, outcome);
    if (generation != m_generation || !m_running)
        return false;
    Q_EMIT progressed(m_done, m_jobs.size());
    return generation == m_generation && m_running;
}
