#include "FileSnapshot.h"

#include <QDateTime>
#include <QFile>
#include <QHashFunctions>

#include <cerrno>

#include <sys/stat.h>

namespace
{
// Far above any real ssh file; a larger "file" is treated as unreadable instead of being hashed.
constexpr qint64 largestHashedFile = qint64(1) << 30;
// Coarser than any file system's time stamps (FAT keeps two seconds).
constexpr qint64 timeStampTickNanoseconds = qint64(2) * 1'000'000'000;
} // namespace

FileSnapshot FileSnapshot::metadataOf(const QString& path)
{
    FileSnapshot snapshot;
    snapshot.m_takenAtNanoseconds = QDateTime::currentMSecsSinceEpoch() * 1'000'000;
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
#ifdef __APPLE__
    const struct timespec modified = status.st_mtimespec;
#else
    const struct timespec modified = status.st_mtim;
#endif
    snapshot.m_modifiedNanoseconds = qint64(modified.tv_sec) * 1'000'000'000 + modified.tv_nsec;
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
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        snapshot.m_kind = Kind::unreadable;
        return snapshot;
    }
    snapshot.m_hash = contentHash(bytes);
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
    const bool settled = m_takenAtNanoseconds - m_modifiedNanoseconds > timeStampTickNanoseconds;
    if (settled && now.m_kind == m_kind && now.m_size == m_size && now.m_inode == m_inode
        && now.m_modifiedNanoseconds == m_modifiedNanoseconds)
        return true;
    return sameContent(take(path));
}

// Only compared within this process, to notice a change, never to vouch for content: two seeded
// 64-bit hashes are ample for that and several times faster than a cryptographic digest, which
// matters for a known_hosts file of 100,000 lines read at every load.
QByteArray FileSnapshot::contentHash(QByteArrayView bytes)
{
    QByteArray hash;
    for (const size_t seed : { size_t(0x5441524eu), size_t(0x5749434bu) }) {
        const size_t value = qHashBits(bytes.data(), size_t(bytes.size()), seed);
        hash.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    return hash;
}
