#pragma once

#include "FileManager.h"
#include "SSHConfigViewModel.h"
#include "TerminalDiscovering.h"
#include "TerminalLaunching.h"
#include "UserDefaultsStore.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <optional>

/// A discovery that answers a fixed list of terminals and counts how often it was asked.
class ScriptedTerminalDiscovery final : public TerminalDiscovering
{
public:
    QList<TerminalApp> discoverTerminalApps() const override;

    QList<TerminalApp> apps;
    mutable int calls = 0;
};

/// A launcher that records every launch instead of starting a terminal; it answers putsOnClipboard, or
/// throws a PlatformError with failure when one is set.
class RecordingLauncher final : public TerminalLaunching
{
public:
    struct Call
    {
        TerminalApp app;
        QString command;
    };

    bool launch(const TerminalApp& app, const QString& command) override;

    QList<Call> calls;
    bool putsOnClipboard = false;
    std::optional<QString> failure;
};

/// A view model over real files in a temporary directory (".ssh/config" and ".ssh/known_hosts" in it),
/// with a scripted discovery offering Terminal and iTerm2, a recording launcher and an in-memory
/// preference store. Write the files, then call make(); the view model loads them as it is built.
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

    void writeConfig(const QString& text) const { QVERIFY(writeText(configPath(), text)); }
    void writeKnownHosts(const QString& text) const { QVERIFY(writeText(knownHostsPath(), text)); }

    /// Writes the two texts (an empty one is not written) and builds the view model on them.
    SSHConfigViewModel& make(const QString& config = QString(), const QString& knownHosts = QString());
    /// Builds the view model on the files as they are, writing through fileManager.
    SSHConfigViewModel& make(FileManager fileManager);
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
