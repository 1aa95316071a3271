#include "WindowFixture.h"

#include "TerminalApps.h"

#include "SSHFileService.h"
#include "ServiceError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

QList<TerminalApp> ScriptedTerminalDiscovery::discoverTerminalApps() const
{
    ++calls;
    return apps;
}

bool RecordingLauncher::launch(const TerminalApp& app, const QString& command)
{
    calls.append({ app, command });
    if (failure)
        throw PlatformError(*failure);
    return putsOnClipboard;
}

WindowFixture::WindowFixture()
    : discovery(std::make_shared<ScriptedTerminalDiscovery>())
    , launcher(std::make_shared<RecordingLauncher>())
    , defaults(std::make_shared<InMemoryUserDefaultsStore>())
{
    discovery->apps = { appleTerminalApp(), iTermApp() };
}

QString WindowFixture::configPath() const
{
    return directory.filePath(u".ssh/config"_s);
}

QString WindowFixture::knownHostsPath() const
{
    return directory.filePath(u".ssh/known_hosts"_s);
}

bool WindowFixture::writeText(const QString& path, const QString& text)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    const QByteArray bytes = text.toUtf8();
    return file.write(bytes) == bytes.size();
}

QString WindowFixture::readText(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList WindowFixture::backupsOf(const QString& path)
{
    const QFileInfo info(path);
    return info.dir().entryList({ info.fileName() + u".backup-*"_s }, QDir::Files, QDir::Name);
}

SSHConfigViewModel& WindowFixture::make(const QString& config, const QString& knownHosts)
{
    if (!config.isEmpty())
        writeText(configPath(), config);
    if (!knownHosts.isEmpty())
        writeText(knownHostsPath(), knownHosts);
    return make(FileManager());
}

SSHConfigViewModel& WindowFixture::make(FileManager fileManager)
{
    auto files = std::make_shared<SSHFileService>(configPath(), knownHostsPath(), std::move(fileManager));
    m_viewModel = std::make_unique<SSHConfigViewModel>(files, discovery, launcher, defaults);
    return *m_viewModel;
}

QString WindowFixture::sampleConfig()
{
    return u"Include config.d/*\n"
           u"\n"
           u"# Group: werk, productie\n"
           u"Host web-1 web-1.example.com\n"
           u"    HostName 10.0.0.11\n"
           u"    User deploy\n"
           u"    IdentityFile ~/.ssh/id_ed25519\n"
           u"\n"
           u"# Group: werk\n"
           u"Host db-1\n"
           u"    HostName db-1.internal.example.com\n"
           u"    Port 2200\n"
           u"\n"
           u"# Group: klanten\n"
           u"Host klant-acme\n"
           u"    HostName acme.example.net\n"
           u"    User support\n"
           u"\n"
           u"# Host old-server\n"
           u"#     HostName 10.0.0.99\n"
           u"\n"
           u"Host *\n"
           u"    ServerAliveInterval 60\n"_s;
}

QString WindowFixture::sampleKnownHosts()
{
    return u"web-1.example.com ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIOMqqnkVzrm0SdG6UOoqKLsabgH5C9okWi0dh2l9GKJl\n"
           u"[db-1.internal.example.com]:2200 ecdsa-sha2-nistp256 "
           u"AAAAE2VjZHNhLXNoYTItbmlzdHAyNTYAAAAIbmlzdHAyNTYAAABBBEmKSENjQEezOmxkZMy7opKgwFB9nkt5YRrYMjNuG5N87uRgg6CLrb"
           u"o5wAdT/y6v0mKV0U2w0WZ2YB/++Tpockg=\n"
           u"# acme.example.net ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIHZ3b3JsZGhlbGxvd29ybGRoZWxsb3dvcmxkaGVsbG8K\n"_s;
}
