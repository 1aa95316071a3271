#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

/// What a file on disk held at one moment: enough to tell later whether another program changed it.
///
/// The content hash decides; size and modification time only let a check skip reading a file whose
/// metadata did not move. Anything that is not a regular file (a FIFO, a device, a link loop) is
/// remembered by its kind alone and never opened, so taking a snapshot cannot block or read forever.
class FileSnapshot
{
public:
    enum class Kind {
        missing,
        regular,
        unreadable,
    };

    FileSnapshot() = default;

    /// The file at path now (through symbolic links): its metadata, then a hash of its bytes.
    static FileSnapshot take(const QString& path);
    /// The file at path now, whose bytes are known to be bytes (for example just written): only the
    /// metadata is read.
    static FileSnapshot ofWrittenFile(const QString& path, QByteArrayView bytes);

    Kind kind() const { return m_kind; }
    qint64 size() const { return m_size; }
    /// The hash of the bytes of a regular file; empty for anything else.
    const QByteArray& hash() const { return m_hash; }

    /// Whether both name the same content: the same kind and, for regular files, the same bytes.
    bool sameContent(const FileSnapshot& other) const;
    /// Whether the file at path still holds this content. Reads it unless its metadata is unchanged and
    /// the file had been left alone for a while when this snapshot was taken: file systems keep times
    /// in coarse ticks, so a same-size rewrite in the same tick leaves the metadata as it was.
    bool stillMatches(const QString& path) const;

    /// The hash a snapshot of these bytes carries.
    static QByteArray contentHash(QByteArrayView bytes);

private:
    static FileSnapshot metadataOf(const QString& path);

    Kind m_kind = Kind::missing;
    qint64 m_size = 0;
    qint64 m_modifiedNanoseconds = 0;
    qint64 m_takenAtNanoseconds = 0;
    quint64 m_inode = 0;
    QByteArray m_hash;
};
