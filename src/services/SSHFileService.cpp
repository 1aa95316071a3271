#include "SSHFileService.h"

#include "CanonicalText.h"
#include "HomeDirectory.h"
#include "RandomUuid.h"
#include "SSHFileServiceError.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace
{
// Asked once: the user database does not change under a running process, and both paths must agree.
const QString& homeDirectory()
{
    static const QString home = userHomeDirectory();
    return home;
}
} // namespace

SSHFileService::SSHFileService()
    : SSHFileService(
        QDir(homeDirectory()).filePath(u".ssh/config"_s), QDir(homeDirectory()).filePath(u".ssh/known_hosts"_s))
{ }

SSHFileService::SSHFileService(QString configURL, QString knownHostsURL, FileManager fileManager)
    : m_fileManager(std::move(fileManager))
    , m_configURL(std::move(configURL))
    , m_knownHostsURL(std::move(knownHostsURL))
{ }

std::optional<QString> SSHFileService::writeConfig(const QString& text) const
{
    return write(text, m_configURL);
}

std::optional<QString> SSHFileService::writeKnownHosts(const QString& text) const
{
    return write(text, m_knownHostsURL);
}

std::optional<QString> SSHFileService::write(const QString& text, const QString& location) const
{
    const QString directory = QFileInfo(location).absolutePath();
    if (!m_fileManager.fileExists(directory))
        m_fileManager.createDirectory(directory);
    // Before the backup: copying a named pipe or a device would hang or never end, and writing through
    // a link loop would replace the link by a regular file.
    m_fileManager.checkReplaceable(location);

    std::optional<QString> backup = backUp(location);
    m_fileManager.writeAtomically(location, text.toUtf8());
    verify(text, location);
    return backup;
}

std::optional<QString> SSHFileService::backUp(const QString& location) const
{
    if (!m_fileManager.fileExists(location))
        return std::nullopt;
    // Named after the path as given, so a symbolic link's backup sits beside the link, not its target.
    const QFileInfo file(location);
    const QString backup
        = file.dir().filePath(backupFileName(file.fileName(), QDateTime::currentDateTime(), createRandomUuid()));
    m_fileManager.copyItem(location, backup);
    return backup;
}

void SSHFileService::verify(const QString& text, const QString& location) const
{
    if (!canonicallyEqual(m_fileManager.readUtf8Text(location), text))
        throw SSHFileServiceError::writeVerificationFailed(location);
}

QString SSHFileService::readConfig() const
{
    return read(m_configURL);
}

QString SSHFileService::readKnownHosts() const
{
    return read(m_knownHostsURL);
}

QString SSHFileService::read(const QString& location) const
{
    return m_fileManager.readUtf8TextUnlessMissing(location).value_or(QString());
}

QString SSHFileService::backupFileName(const QString& fileName, const QDateTime& moment, const QUuid& uuid)
{
    // "zzz" is Qt's three-digit millisecond field; toString() with a format uses the C locale and the
    // Gregorian calendar, so the name never carries localized digits.
    const QString timestamp = moment.toLocalTime().toString(u"yyyyMMdd-HHmmss-zzz"_s);
    const QString uuidPrefix = uuid.toString(QUuid::WithoutBraces).left(8).toUpper();
    return fileName + u".backup-"_s + timestamp + u"-"_s + uuidPrefix;
}
