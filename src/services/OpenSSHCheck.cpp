#include "OpenSSHCheck.h"

#include <QThread>
#include <QTimer>

namespace
{
// ssh -G and ssh-keygen -F answer in milliseconds; a process still running after this is stuck.
constexpr int processTimeLimitMs = 10000;
} // namespace

OpenSSHCheck::OpenSSHCheck(QString program, QObject* parent)
    : QObject(parent)
    , m_program(std::move(program))
    , m_queue(new ProcessQueue(QThread::idealThreadCount(), processTimeLimitMs, this))
{
    m_queue->setKeepsOutcomes(false);
    connect(m_queue, &ProcessQueue::jobEnded, this, &OpenSSHCheck::takeOutcome);
    connect(m_queue, &ProcessQueue::progressed, this, &OpenSSHCheck::progressed);
    connect(m_queue, &ProcessQueue::finished, this, [this] {
        m_running = false;
        const SshCheckResult result = m_conclude();
        Q_EMIT finished(result);
    });
}

OpenSSHCheck::~OpenSSHCheck()
{
    // The processes go first: they may still be reading files in the directory.
    m_queue->cancel();
}

void OpenSSHCheck::cancel()
{
    ++m_generation;
    m_running = false;
    m_queue->cancel();
    m_halfPairs.clear();
}

QTemporaryDir* OpenSSHCheck::freshDirectory()
{
    m_directory.reset();
    m_directory = std::make_unique<QTemporaryDir>();
    return m_directory->isValid() ? m_directory.get() : nullptr;
}

void OpenSSHCheck::runPairs(QList<ProcessQueue::Job> jobs, PairJudge judge, Conclusion conclude)
{
    cancel();
    m_judge = std::move(judge);
    m_conclude = std::move(conclude);
    m_running = true;
    m_queue->run(std::move(jobs));
}

void OpenSSHCheck::takeOutcome(qsizetype job, const Outcome& outcome)
{
    const qsizetype pair = job / 2;
    if (!m_halfPairs.contains(pair)) {
        m_halfPairs.insert(pair, outcome);
        return;
    }
    const Outcome first = m_halfPairs.take(pair);
    const bool onDiskFirst = job % 2 == 1;
    m_judge(pair, onDiskFirst ? first : outcome, onDiskFirst ? outcome : first);
}

qsizetype OpenSSHCheck::endOfPart(QStringView text, qsizetype from, qsizetype partSize)
{
    const qsizetype lineEnd = from + partSize < text.size() ? text.indexOf(u'\n', from + partSize) : -1;
    return lineEnd < 0 ? text.size() : lineEnd + 1;
}

void OpenSSHCheck::finishWith(SshCheckResult result)
{
    cancel();
    m_running = true;
    QTimer::singleShot(0, this, [this, generation = m_generation, result = std::move(result)] {
        if (generation != m_generation)
            return;
        m_running = false;
        Q_EMIT finished(result);
    });
}

void OpenSSHCheck::prepareInSteps(QList<Step> steps)
{
    cancel();
    m_running = true;
    runStepsFrom(std::make_shared<const QList<Step>>(std::move(steps)), 0, m_generation);
}

void OpenSSHCheck::runStepsFrom(std::shared_ptr<const QList<Step>> steps, qsizetype next, quint64 generation)
{
    QTimer::singleShot(0, this, [this, steps = std::move(steps), next, generation] {
        if (next >= steps->size() || generation != m_generation)
            return;
        const bool done = steps->at(next)();
        runStepsFrom(steps, done ? next + 1 : next, generation);
    });
}
