#include "DefaultTerminalServices.h"
#include "TerminalLauncher.h"
#include "TestFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QScopeGuard>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <signal.h> // NOLINT(modernize-deprecated-headers): kill() is POSIX, and only <signal.h> declares it

using namespace Qt::StringLiterals;

namespace
{
/// A private X server for the test, on the first free display number from 60 on.
class PrivateXServer
{
public:
    ~PrivateXServer()
    {
        if (m_server.state() != QProcess::NotRunning) {
            m_server.terminate();
            if (!m_server.waitForFinished(10000)) {
                m_server.kill();
                m_server.waitForFinished();
            }
        }
    }

    /// Starts Xvfb; the display name (":N") or an empty text when no display could be started.
    QString start(const QString& xvfb)
    {
        for (int display = 60; display < 160; ++display) {
            const QString socket = u"/tmp/.X11-unix/X"_s + QString::number(display);
            if (QFileInfo::exists(socket) || QFileInfo::exists(u"/tmp/.X%1-lock"_s.arg(display)))
                continue;
            m_server.setProgram(xvfb);
            m_server.setArguments(
                { u":"_s + QString::number(display), u"-nolisten"_s, u"tcp"_s, u"-screen"_s, u"0"_s, u"800x600x24"_s });
            m_server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
            m_server.start();
            if (waitForSocket(socket))
                return u":"_s + QString::number(display);
            // Another server took the number between our check and its start: try the next one.
            m_server.kill();
            m_server.waitForFinished();
        }
        return {};
    }

private:
    bool waitForSocket(const QString& socket)
    {
        for (int attempt = 0; attempt < 200; ++attempt) {
            if (QFileInfo::exists(socket))
                return true;
            if (m_server.waitForFinished(50))
                return false; // exited: the display was taken
        }
        return false;
    }

    QProcess m_server;
};
} // namespace

class TestXtermLaunch : public QObject
{
    Q_OBJECT

private slots:
    void xtermRunsTheCommandAndKeepsTheSessionOpen()
    {
        const QString xvfb = QStandardPaths::findExecutable(u"Xvfb"_s);
        const QString xterm = QStandardPaths::findExecutable(u"xterm"_s);
        if (xvfb.isEmpty() || xterm.isEmpty())
            QSKIP("Xvfb or xterm is not installed");

        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        PrivateXServer server;
        const QString display = server.start(xvfb);
        QVERIFY2(!display.isEmpty(), "no X display could be started");
        const bool hadDisplay = qEnvironmentVariableIsSet("DISPLAY");
        const QByteArray savedDisplay = qgetenv("DISPLAY");
        qputenv("DISPLAY", display.toUtf8());
        const auto restoreDisplay = qScopeGuard([&] {
            if (hadDisplay)
                qputenv("DISPLAY", savedDisplay);
            else
                qunsetenv("DISPLAY");
        });

        qint64 terminalId = 0;
        TerminalLauncher launcher({}, {}, {}, {}, {}, [&](const QString& program, const QStringList& arguments) {
            return startDetachedProcessReportingId(program, arguments, &terminalId);
        });
        TerminalApp app(u"debian-xterm"_s, u"XTerm"_s, TerminalApp::LaunchMode::commandLine);
        app.setCommandPrefix({ xterm, u"-e"_s });
        const QString marker = dir.filePath(u"marker"_s);
        // Quoted as the view model quotes a host: one word for the shell, whatever the path holds.
        const QString command = u"printf '%s' \"$0 ran\" > '"_s + marker + u"'"_s;

        const bool onClipboard = launcher.launch(app, command);
        const auto stopTerminal = qScopeGuard([&] {
            if (terminalId > 0)
                ::kill(static_cast<pid_t>(terminalId), SIGTERM);
        });
        QCOMPARE(onClipboard, false);
        QVERIFY(terminalId > 0);

        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(marker).size() > 0, 60000);
        QCOMPARE(readBytes(marker), QByteArray("sh ran"));
        // The session waits for Enter after the command, so the window is still there to be read.
        QCOMPARE(::kill(static_cast<pid_t>(terminalId), 0), 0);
    }
};

QTEST_GUILESS_MAIN(TestXtermLaunch)
#include "test_xterm_launch.moc"
