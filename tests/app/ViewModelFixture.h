#pragma once

// Shared set-up for the view model tests: the two ssh files in a temporary directory, a terminal
// discovery that answers what the test says, a launcher that records every call, and an in-memory
// preference store.

#include "SSHConfigViewModel.h"
#include "ServiceError.h"
#include "UserDefaultsStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <optional>

class FakeTerminalDiscovery final : public TerminalDiscovering
{
public:
    QList<TerminalApp> discoverTerminalApps() const override
    {
        ++calls;
        return apps;
    }

    QList<TerminalApp> apps;
    mutable int calls = 0;
};

class RecordingTerminalLauncher final : public TerminalLaunching
{
public:
    struct Call
    {
        TerminalApp app;
        QString command;
    };

    bool launch(const TerminalApp& app, const QString& command) override
    {
        calls.append({app, command});
        if (failure)
            throw PlatformError(*failure);
        return putsOnClipboard;
    }

    QList<Call> calls;
    bool putsOnClipboard = false;
    std::optional<QString> failure;
};

inline TerminalApp appleTerminalApp()
{
    return TerminalApp(QStringLiteral("com.apple.Terminal"), QStringLiteral("Terminal"),
                       TerminalApp::LaunchMode::appleTerminal);
}

inline TerminalApp iTermApp()
{
    return TerminalApp(QStringLiteral("com.googlecode.iterm2"), QStringLiteral("iTerm2"),
                       TerminalApp::LaunchMode::iTerm2);
}

inline TerminalApp genericApp()
{
    return TerminalApp(QStringLiteral("org.example.Console"), QStringLiteral("Console"),
                       TerminalApp::LaunchMode::generic);
}

/// Writes bytes to path, making the parent directory; fails the test when it cannot.
inline bool writeBytes(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    return file.write(bytes) == bytes.size();
}

inline QByteArray readBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A view model over files in its own temporary directory. Files are written before construction, so
/// the constructor's load sees them.
class ViewModelFixture
{
public:
    ViewModelFixture()
        : discovery(std::make_shared<FakeTerminalDiscovery>())
        , launcher(std::make_shared<RecordingTerminalLauncher>())
        , defaults(std::make_shared<InMemoryUserDefaultsStore>())
    {
        discovery->apps = {appleTerminalApp(), iTermApp()};
    }

    QString configPath() const { return directory.filePath(QStringLiteral(".ssh/config")); }
    QString knownHostsPath() const { return directory.filePath(QStringLiteral(".ssh/known_hosts")); }

    void writeConfig(const QString& text) { QVERIFY(writeBytes(configPath(), text.toUtf8())); }
    void writeKnownHosts(const QString& text) { QVERIFY(writeBytes(knownHostsPath(), text.toUtf8())); }

    /// Builds the view model (once); optionally with a file manager whose atomic writer the test chose.
    SSHConfigViewModel& make(FileManager fileManager = FileManager())
    {
        fileService = std::make_shared<SSHFileService>(configPath(), knownHostsPath(), std::move(fileManager));
        viewModel = std::make_unique<SSHConfigViewModel>(fileService, discovery, launcher, defaults);
        return *viewModel;
    }

    /// A view model over the given config and known_hosts texts (nothing is written for an empty one).
    SSHConfigViewModel& make(const QString& config, const QString& knownHosts = QString())
    {
        if (!config.isEmpty())
            writeConfig(config);
        if (!knownHosts.isEmpty())
            writeKnownHosts(knownHosts);
        return make();
    }

    QTemporaryDir directory;
    std::shared_ptr<FakeTerminalDiscovery> discovery;
    std::shared_ptr<RecordingTerminalLauncher> launcher;
    std::shared_ptr<InMemoryUserDefaultsStore> defaults;
    std::shared_ptr<SSHFileService> fileService;
    std::unique_ptr<SSHConfigViewModel> viewModel;
};

/// The first pattern of every host, in document order.
inline QStringList firstPatterns(const QList<SSHHost>& hosts)
{
    QStringList result;
    for (const SSHHost& host : hosts)
        result.append(host.patterns.value(0));
    return result;
}

/// The first pattern of the selected host, or an empty text.
inline QString selectedHostName(const SSHConfigViewModel& viewModel)
{
    const std::optional<qsizetype> index = viewModel.selectedHostIndex();
    return index ? viewModel.document().hosts.at(*index).patterns.value(0) : QString();
}

/// The first host of the selected known_hosts entry, or an empty text.
inline QString selectedEntryHost(const SSHConfigViewModel& viewModel)
{
    const std::optional<KnownHostEntry> entry = viewModel.selectedKnownHostEntry();
    return entry ? entry->hosts().value(0) : QString();
}
