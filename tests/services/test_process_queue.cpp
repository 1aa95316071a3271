// The queue that runs ssh and ssh-keygen for the check: outcomes in job order whatever order the
// processes end in, each job's outcome reported as it ends, a time limit that stops a hung program, a program that
// cannot start, and a cancelled run that never reports.

#include "ProcessQueue.h"

#include <QFile>
#include <QSet>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <sys/resource.h>

using namespace Qt::StringLiterals;
using Outcome = ProcessQueue::Outcome;

namespace
{
// Only a hang reaches it.
constexpr int generousWaitMs = 60000;

ProcessQueue::Job shell(const QString& script)
{
    return { u"/bin/sh"_s, { u"-c"_s, script } };
}

QList<Outcome> runToEnd(ProcessQueue& queue, QList<ProcessQueue::Job> jobs)
{
    QSignalSpy finished(&queue, &ProcessQueue::finished);
    queue.run(std::move(jobs));
    if (!finished.wait(generousWaitMs))
        return {};
    return finished.first().first().value<QList<Outcome>>();
}
} // namespace

class TestProcessQueue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qRegisterMetaType<QList<Outcome>>();
        qRegisterMetaType<Outcome>();
    }

    void outcomesComeInJobOrder()
    {
        ProcessQueue queue(2, generousWaitMs);
        QSignalSpy progressed(&queue, &ProcessQueue::progressed);
        // The first job ends last.
        const QList<Outcome> outcomes = runToEnd(
            queue, { shell(u"sleep 0.3; echo first"_s), shell(u"echo second"_s), shell(u"echo third >&2; exit 3"_s) });
        QCOMPARE(outcomes.size(), 3);
        QCOMPARE(outcomes.at(0).output, QByteArray("first\n"));
        QCOMPARE(outcomes.at(1).output, QByteArray("second\n"));
        QVERIFY(outcomes.at(2).ran);
        QCOMPARE(outcomes.at(2).exitCode, 3);
        QCOMPARE(outcomes.at(2).errorOutput, QByteArray("third\n"));
        QCOMPARE(progressed.size(), 3);
        QCOMPARE(progressed.last().at(0).value<qsizetype>(), qsizetype(3));
        QCOMPARE(progressed.last().at(1).value<qsizetype>(), qsizetype(3));
    }

    // Each outcome comes as its process ends, under the number of its job, so a receiver can pair
    // them up although they arrive out of order.
    void eachJobIsReportedAsItEnds()
    {
        QTemporaryDir directory;
        QVERIFY(directory.isValid());
        const QString signal = directory.filePath(u"third-reported"_s);
        ProcessQueue queue(2, generousWaitMs);
        QList<std::pair<qsizetype, QByteArray>> ended;
        connect(&queue, &ProcessQueue::jobEnded, this, [&](qsizetype job, const Outcome& outcome) {
            ended.append({ job, outcome.output });
            if (job == 2)
                QFile(signal).open(QIODevice::WriteOnly);
        });
        // The first job holds its slot until the third is reported, so the third can only start in the
        // second's slot: the order of ending is fixed, whatever the machine's speed.
        const QList<Outcome> outcomes = runToEnd(queue,
            { shell(u"while [ ! -e '"_s + signal + u"' ]; do sleep 0.01; done; echo first"_s), shell(u"echo second"_s),
                shell(u"echo third"_s) });
        const QList<std::pair<qsizetype, QByteArray>> expected { { 1, "second\n" }, { 2, "third\n" },
            { 0, "first\n" } };
        QCOMPARE(ended, expected);
        QCOMPARE(outcomes.size(), 3);
        QCOMPARE(outcomes.at(0).output, QByteArray("first\n"));
        QCOMPARE(outcomes.at(2).output, QByteArray("third\n"));
    }

    void outcomesNotKeptStillComeOneByOne()
    {
        ProcessQueue queue(2, generousWaitMs);
        queue.setKeepsOutcomes(false);
        QSignalSpy ended(&queue, &ProcessQueue::jobEnded);
        QVERIFY(runToEnd(queue, { shell(u"echo one"_s), shell(u"exit 4"_s) }).isEmpty());
        QCOMPARE(ended.size(), 2);
        QSet<qsizetype> jobs;
        for (const QList<QVariant>& arguments : ended) {
            const qsizetype job = arguments.at(0).value<qsizetype>();
            const Outcome outcome = arguments.at(1).value<Outcome>();
            jobs.insert(job);
            QVERIFY(outcome.ran);
            QCOMPARE(outcome.exitCode, job == 0 ? 0 : 4);
            QCOMPARE(outcome.output, job == 0 ? QByteArray("one\n") : QByteArray());
        }
        QCOMPARE(jobs, QSet<qsizetype>({ 0, 1 }));
    }

    // A receiver that cancels on the first outcome hears nothing more of that run.
    void cancelOnAnEndedJobStopsTheRun()
    {
        ProcessQueue queue(1, generousWaitMs);
        QSignalSpy finished(&queue, &ProcessQueue::finished);
        QSignalSpy progressed(&queue, &ProcessQueue::progressed);
        qsizetype endedJobs = 0;
        connect(&queue, &ProcessQueue::jobEnded, this, [&queue, &endedJobs] {
            ++endedJobs;
            queue.cancel();
        });
        queue.run({ shell(u"echo one"_s), shell(u"echo two"_s) });
        QTRY_COMPARE_WITH_TIMEOUT(endedJobs, qsizetype(1), generousWaitMs);
        QVERIFY(!finished.wait(1000));
        QCOMPARE(endedJobs, qsizetype(1));
        QCOMPARE(progressed.size(), 0);
    }

    // The program waits until it sees its priority lowered, so the answer does not depend on who runs
    // first; were it never lowered, the time limit would stop it.
    void programsRunAtALowerPriority()
    {
        const QByteArray own = QByteArray::number(getpriority(PRIO_PROCESS, 0));
        ProcessQueue queue(1, 20000);
        const QList<Outcome> outcomes = runToEnd(queue,
            { shell(u"while [ $(ps -o ni= -p $$) -le "_s + QString::fromLatin1(own)
                + u" ]; do sleep 0.01; done; ps -o ni= -p $$"_s) });
        QCOMPARE(outcomes.size(), 1);
        QCOMPARE(outcomes.first().problem, QString());
        QCOMPARE(outcomes.first().output.trimmed(), QByteArray::number(std::min(own.toInt() + 10, 19)));
    }

    void standardInputIsEmpty()
    {
        ProcessQueue queue(1, generousWaitMs);
        const QList<Outcome> outcomes = runToEnd(queue, { { u"cat"_s, {} } });
        QCOMPARE(outcomes.size(), 1);
        QVERIFY(outcomes.first().ran);
        QVERIFY(outcomes.first().output.isEmpty());
    }

    void hungProgramIsStoppedAtItsLimit()
    {
        ProcessQueue queue(1, 200);
        const QList<Outcome> outcomes = runToEnd(queue, { shell(u"exec sleep 600"_s), shell(u"echo after"_s) });
        QCOMPARE(outcomes.size(), 2);
        QVERIFY(!outcomes.first().ran);
        QCOMPARE(outcomes.first().problem, u"geen antwoord binnen 1 s"_s);
        QCOMPARE(outcomes.last().output, QByteArray("after\n"));
    }

    void programThatCannotStart()
    {
        ProcessQueue queue(1, generousWaitMs);
        const QList<Outcome> outcomes = runToEnd(queue, { { u"/nonexistent/ssh"_s, { u"-G"_s } } });
        QCOMPARE(outcomes.size(), 1);
        QVERIFY(!outcomes.first().ran);
        QVERIFY(!outcomes.first().problem.isEmpty());
    }

    void cancelledRunNeverReports()
    {
        ProcessQueue queue(1, generousWaitMs);
        QSignalSpy finished(&queue, &ProcessQueue::finished);
        queue.run({ shell(u"sleep 0.2; echo old"_s) });
        queue.run({ shell(u"echo new"_s) });
        QVERIFY(finished.wait(generousWaitMs));
        QCOMPARE(finished.first().first().value<QList<Outcome>>().first().output, QByteArray("new\n"));
        queue.run({ shell(u"sleep 0.2"_s) });
        queue.cancel();
        QVERIFY(!queue.isRunning());
        // The killed process ends on its own; the queue must stay quiet about it.
        QVERIFY(!finished.wait(1000));
        QCOMPARE(finished.size(), 1);
    }

    void emptyListStillReportsLater()
    {
        ProcessQueue queue(2, generousWaitMs);
        QSignalSpy finished(&queue, &ProcessQueue::finished);
        queue.run({});
        QCOMPARE(finished.size(), 0);
        QVERIFY(finished.wait(generousWaitMs));
        QVERIFY(finished.first().first().value<QList<Outcome>>().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestProcessQueue)
#include "test_process_queue.moc"
