#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

class QProcess;
class QTimer;

/// Runs a list of short programs on the event loop, a few at a time, each with a time limit, and hands
/// back each output as its program ends and all of them at once at the end. Never blocks and starts no
/// thread: every process is a QProcess whose signals arrive on the caller's loop. Standard input is the
/// null device; the environment is the caller's. The programs run at a lower priority than the caller:
/// they are background work, and on a busy machine the caller's event loop comes first.
class ProcessQueue : public QObject
{
    Q_OBJECT

public:
    struct Job
    {
        QString program;
        QStringList arguments;
    };

    /// How one job ended. ran is false when the program could not be started or was stopped at its
    /// time limit; problem then says why.
    struct Outcome
    {
        bool ran = false;
        int exitCode = -1;
        QByteArray output;
        QByteArray errorOutput;
        QString problem;
    };

    /// At most parallel processes at once (at least one); each is killed after timeLimitMs.
    ProcessQueue(int parallel, int timeLimitMs, QObject* parent = nullptr);
    ~ProcessQueue() override;

    /// Cancels what is running and starts jobs; finished() follows, also for an empty list.
    void run(QList<Job> jobs);
    /// Kills the running processes; no finished() comes for them.
    void cancel();
    bool isRunning() const { return m_running; }
    /// Whether finished() carries the outcomes (the default). A caller that takes each outcome from
    /// jobEnded() switches this off, so that a long run does not hold every output until its end.
    void setKeepsOutcomes(bool keeps) { m_keepsOutcomes = keeps; }

Q_SIGNALS:
    /// Job number job (counted from 0 in the list given to run()) has ended. Jobs end in any order.
    void jobEnded(qsizetype job, const ProcessQueue::Outcome& outcome);
    /// done of total jobs have ended.
    void progressed(qsizetype done, qsizetype total);
    /// Every job has ended; outcomes are in job order, or empty when the queue does not keep them.
    void finished(const QList<ProcessQueue::Outcome>& outcomes);

private:
    void fillFreeSlot();
    void startNext();
    void collect(QProcess* process, qsizetype index);
    Outcome outcomeOf(QProcess* process) const;
    bool report(qsizetype index, const Outcome& outcome);

    int m_parallel;
    int m_timeLimitMs;
    QTimer* m_starter;
    QList<Job> m_jobs;
    QList<Outcome> m_outcomes;
    QList<QProcess*> m_processes;
    qsizetype m_next = 0;
    qsizetype m_done = 0;
    bool m_running = false;
    bool m_keepsOutcomes = true;
    quint64 m_generation = 0;
};
