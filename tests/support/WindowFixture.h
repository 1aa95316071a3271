#pragma once

#include "SSHConfigViewModel.h"
#include "TerminalDiscovering.h"
#include "TerminalLaunching.h"
#include "UserDefaultsStore.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

/// A discovery that answers a fixed list of terminals and counts how often it was asked.
class ScriptedTerminalDiscovery final : public TerminalDiscovering
{
public:
    QList<TerminalApp> discoverTerminalApps() const override;

    QList<TerminalApp> apps;
    mutable int calls = 0;
};

/// A launcher that records every command instead of starting a terminal.
class RecordingLauncher final : public TerminalLaunching
{
public:
    bool launch(const TerminalApp& app, const QString& command) override;

    QList<QPair<QString, QString>> launches; // bundle identifier, command
};

/// A view model over real files in a temporary directory (".ssh/config" and ".ssh/known_hosts" in it),
/// with a scripted discovery offering Terminal, a recording launcher and an in-memory preference store.
/// Write the files, then call make(); the view model loads them as it is built.
class WindowFixture
{
public:
    WindowFixture();

    QString configPath() const;
    QString knownHostsPath() const;
    /// Writes text as UTF-8 to path, making the folder; false when that fails.
    static bool writeText(const QString& path, const QString& text);
    /// The file's bytes as UTF-8 text, or an empty text when it cannot be read.
    static QString readText(const QString& path);
    /// The names of the backups beside path ("<name>.backup-..."), sorted.
    static QStringList backupsOf(const QString& path);

    /// Writes the two texts (an empty one is not written) and builds the view model on them.
    SSHConfigViewModel& make(const QString& config, const QString& knownHosts = QString());
    SSHConfigViewModel& viewModel() const { return *m_viewModel; }

    /// A realistic config: an Include line, three groups over three hosts, a disabled host and a wildcard.
    static QString sampleConfig();
    /// A known_hosts text with three entries, one of them hashed and one commented out.
    static QString sampleKnownHosts();

    QTemporaryDir directory;
    std::shared_ptr<ScriptedTerminalDiscovery> discovery;
    std::shared_ptr<RecordingLauncher> launcher;
    std::shared_ptr<InMemoryUserDefaultsStore> defaults;

private:
    std::unique_ptr<SSHConfigViewModel> m_viewModel;
};
