#pragma once

#include "ProcessQueue.h"
#include "SshCheckResult.h"

#include <QObject>
#include <QString>
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
    using Judge = std::function<SshCheckResult(const QList<ProcessQueue::Outcome>&)>;

    /// A new empty private directory for this check's files (the previous one is removed), or null.
    QTemporaryDir* freshDirectory();
    /// Runs jobs and reports what judge makes of their outcomes.
    void runJobs(QList<ProcessQueue::Job> jobs, Judge judge);
    /// Reports result without running anything (still from the event loop, never from the caller's call).
    void finishWith(SshCheckResult result);
    using Step = std::function<void()>;
    /// Runs the steps that prepare a check one per turn of the event loop, the first at once, so that
    /// preparing a large file never holds up the window for long. The last step runs the jobs (or
    /// reports); a step that reports, or a new start, drops the steps after it.
    void prepareInSteps(QList<Step> steps);

private:
    void runStepsFrom(std::shared_ptr<const QList<Step>> steps, qsizetype next, quint64 generation);

    QString m_program;
    ProcessQueue* m_queue;
    std::unique_ptr<QTemporaryDir> m_directory;
    Judge m_judge;
    bool m_running = false;
    quint64 m_generation = 0;
};
