// A save killed at any moment must leave the old file or the new one, whole. The test binary re-runs
// itself as a child that saves large texts in a loop, kills it with SIGKILL at a random moment, and
// looks at what is on disk.

#include "SSHFileService.h"
#include "ServiceInHome.h"
#include "TestFiles.h"

#include <QCoreApplication>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{
constexpr const char* saveLoopVariable = "TARNWICK_TEST_SAVE_LOOP_HOME";

// One of two large configurations (about 2.5 MB) that differ on every line, so any mix of them is seen.
QString largeText(char variant)
{
    QByteArray text;
    text.reserve(3 << 20);
    for (int i = 0; i < 40000; ++i) {
        text += "Host server-" + QByteArray(1, variant) + '-' + QByteArray::number(i) + "\n    HostName 10.0."
            + QByteArray::number(i % 250) + '.' + QByteArray(1, variant) + "\n    User beheer\n";
    }
    return QString::fromLatin1(text);
}

// The child's whole life: save A and B in turn until killed. Backups are removed again only to keep
// the disk from filling up; they are not what this test is about.
[[noreturn]] void runSaveLoop(const QString& home)
{
    const SSHFileService service = serviceIn(home);
    const QString texts[] = { largeText('a'), largeText('b') };
    std::fputs("ready\n", stdout);
    std::fflush(stdout);
    for (unsigned round = 0;; ++round) {
        try {
            if (const std::optional<QString> backup = service.writeConfig(texts[round % 2]))
                QFile::remove(*backup);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "save failed: %s\n", error.what());
            std::exit(2);
        }
    }
}

} // namespace

class TestSSHFileServiceCrash : public QObject
{
    Q_OBJECT

private slots:
    void killedSaveLeavesAWholeFile_data()
    {
        QTest::addColumn<int>("attempt");
        for (int attempt = 1; attempt <= 12; ++attempt)
            QTest::addRow("kill %d", attempt) << attempt;
    }

    void killedSaveLeavesAWholeFile()
    {
        QTemporaryDir home;
        const SSHFileService service = serviceIn(home.path());
        static const QString a = largeText('a');
        static const QString b = largeText('b');
        service.writeConfig(a);

        QProcess child;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QString::fromLatin1(saveLoopVariable), home.path());
        child.setProcessEnvironment(environment);
        child.start(QCoreApplication::applicationFilePath(), {});
        QVERIFY2(child.waitForStarted(), qPrintable(child.errorString()));
        QVERIFY2(child.waitForReadyRead(60000), child.readAllStandardError().constData());
        QCOMPARE(child.readLine(), QByteArray("ready\n"));

        // A random moment somewhere in the save cycle: backup, temporary file, rename or read-back.
        QThread::msleep(QRandomGenerator::global()->bounded(1u, 500u));
        child.kill();
        QVERIFY(child.waitForFinished(60000));
        QVERIFY2(child.exitStatus() == QProcess::CrashExit, child.readAllStandardError().constData());

        const QByteArray onDisk = readBytes(service.configURL());
        QVERIFY2(onDisk == a.toLatin1() || onDisk == b.toLatin1(),
            qPrintable(u"%1 bytes on disk, neither text whole"_s.arg(onDisk.size())));
    }
};

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    if (qEnvironmentVariableIsSet(saveLoopVariable))
        runSaveLoop(qEnvironmentVariable(saveLoopVariable));
    TestSSHFileServiceCrash test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "test_ssh_file_service_crash.moc"
