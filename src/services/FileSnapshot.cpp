#include "FileSnapshot.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

#include <cerrno>

#include <sys/stat.h>

namespace
{
// Far above any real ssh file; a larger "file" is treated as unreadable instead of being hashed.
constexpr qint64 largestHashedFile = qint64(1) << 30;
// Coarser than any file system's time stamps (FAT keeps two seconds).
constexpr qint64 timeStampTickMilliseconds = 2000;
} // namespace

FileSnapshot FileSnapshot::metadataOf(const QString& path)
{
    FileSnapshot snapshot;
    snapshot.m_takenAt = QDateTime::currentDateTimeUtc();
    struct stat status
    {
    };
    if (::stat(QFile::encodeName(path).constData(), &status) != 0) {
        // Nothing there, or a dangling link, reads as a missing file; a link loop or a path that cannot
        // be searched is something the user has there, so it is remembered as unreadable.
        snapshot.m_kind = errno == ENOENT ? Kind::missing : Kind::unreadable;
        return snapshot;
    }
    snapshot.m_size = status.st_size;
    snapshot.m_inode = static_cast<quint64>(status.st_ino);
    snapshot.m_kind = S_ISREG(status.st_mode) && status.st_size <= largestHashedFile ? Kind::regular : Kind::unreadable;
    snapshot.m_lastModified = QFileInfo(path).lastModified();
    return snapshot;
}

FileSnapshot FileSnapshot::take(const QString& path)
{
    FileSnapshot snapshot = metadataOf(path);
    if (snapshot.m_kind != Kind::regular)
        return snapshot;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        snapshot.m_kind = Kind::unreadable;
        return snapshot;
    }
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!hash.addData(&file) || file.error() != QFileDevice::NoError) {
        snapshot.m_kind = Kind::unreadable;
        return snapshot;
    }
    snapshot.m_hash = hash.result();
    return snapshot;
}

FileSnapshot FileSnapshot::ofWrittenFile(const QString& path, QByteArrayView bytes)
{
    FileSnapshot snapshot = metadataOf(path);
    if (snapshot.m_kind == Kind::regular)
        snapshot.m_hash = contentHash(bytes);
    return snapshot;
}

bool FileSnapshot::sameContent(const FileSnapshot& other) const
{
    return m_kind == other.m_kind && m_hash == other.m_hash;
}

bool FileSnapshot::stillMatches(const QString& path) const
{
    const FileSnapshot now = metadataOf(path);
    const bool settled = m_lastModified.msecsTo(m_takenAt) > timeStampTickMilliseconds;
    if (settled && now.m_kind == m_kind && now.m_size == m_size && now.m_inode == m_inode
        && now.m_lastModified == m_lastModified)
        return true;
    return sameContent(take(path));
}

QByteArray FileSnapshot::contentHash(QByteArrayView bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}
