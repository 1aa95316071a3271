#pragma once

#include "ProcessQueue.h"
#include "SshCheckResult.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QStringView>
#include <QTemporaryDir>

#include <functional>
#include <memory>

/// What the two checks share: one OpenSSH program, a private directory for the files it reads, and a
/// queue that runs it on the event loop, one process per core, each with a time limit. Starting a
/// check cancels the one before it; only the last one started reports.
class OpenSSHCheck : public QObject
{
    Q_OBJECT

public:
    /// program is the path of ssh or ssh-keygen, empty when it is not installed.
    OpenSSHCheck(QString program, QObject* parent = nullptr);
    ~OpenSSHCheck() override;

    const QString& program() const { return m_program; }
    /// Stops the running check; it will not report.
    void cancel();
    bool isRunning() const { return m_running; }

Q_SIGNALS:
    /// done of total program runs have ended.
    void progressed(qsizetype done, qsizetype total);
    /// The check is complete (or could not be made; result.problem says why).
    void finished(const SshCheckResult& result);

protected:
    using Outcome = ProcessQueue::Outcome;
    /// What a check makes of pair number pair: the same question put to the file on disk and to the
    /// text a save would write. It keeps only what it concludes, never the outputs.
    using PairJudge = std::function<void(qsizetype pair, const Outcome& onDisk, const Outcome& toSave)>;
    /// The result, once every pair is judged.
    using Conclusion = std::function<SshCheckResult()>;

    /// A new empty private directory for this check's files (the previous one is removed), or null.
    QTemporaryDir* freshDirectory();
    /// Runs jobs in pairs (job 2n asks about the file on disk, job 2n + 1 the same about the text to
    /// save) and reports what conclude makes of them. Each pair is judged as soon as both its jobs
    /// have ended, so the work on the outputs is spread over the run instead of held up to its end.
    void runPairs(QList<ProcessQueue::Job> jobs, PairJudge judge, Conclusion conclude);
    /// Reports result without running anything (still from the event loop, never from the caller's call).
    void finishWith(SshCheckResult result);
    /// Where the part of text that starts at from ends, for work done a part at a time: just past the
    /// first line end at least partSize characters on, or at the end of the text.
    static qsizetype endOfPart(QStringView text, qsizetype from, qsizetype partSize);
    /// One step of preparing a check; it returns whether it is done. A step that is not runs again on
    /// the next turn of the event loop, for work that is done a part at a time.
    using Step = std::function<bool()>;
    /// Runs the steps that prepare a check one per turn of the event loop, the first one too (the turn
    /// that starts a check has work of its own, such as writing out the text to save), so that preparing
    /// a large file never holds up the window for long. The last step runs the jobs (or reports); a step
    /// that reports, or a new start, drops the steps after it.
    void prepareInSteps(QList<Step> steps);

private:
    void takeOutcome(qsizetype job, const Outcome& outcome);
    void runStepsFrom(std::shared_ptr<const QList<Step>> steps, qsizetype next, quint64 generation);

    QString m_program;
    ProcessQueue* m_queue;
    std::unique_ptr<QTemporaryDir> m_directory;
    PairJudge m_judge;
    Conclusion m_conclude;
    // The first outcome of each pair whose other job is still running.
    QHash<qsizetype, Outcome> m_halfPairs;
    bool m_running = false;
    quint64 m_generation = 0;
};
