#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

/// Writes bytes to path so that the path holds either its old content or all of the new bytes, never a
/// mix, even when the process dies half-way. Throws PlatformError naming the path on failure.
using AtomicFileWriter = std::function<void(const QString& path, const QByteArray& bytes)>;

/// The file-system operations the file service and the view model need, in one place so that their
/// failures all read the same way: every operation that fails throws PlatformError, whose description
/// is a Dutch sentence naming the path followed by the system's reason.
///
/// The atomic write is the one seam: tests hand in a writer that fails or that lands other bytes.
class FileManager
{
public:
    /// A file manager that writes through writeWithSaveFile().
    FileManager();
    explicit FileManager(AtomicFileWriter writer);

    /// Whether anything (file or directory) exists at path, following symbolic links: a dangling link
    /// counts as nothing.
    bool fileExists(const QString& path) const;

    /// Makes the directory at path with any missing parents, with default attributes.
    /// Throws PlatformError when it cannot be made.
    void createDirectory(const QString& path) const;

    /// Copies the bytes of the file at source (through any symbolic link) to a new regular file at
    /// destination, which must not exist yet. Throws PlatformError naming destination when
    /// destination exists or the copy fails; source is never changed.
    void copyItem(const QString& source, const QString& destination) const;

    /// The largest file read or replaced: far above any real ssh file, and low enough that a mistaken
    /// path (a disk image, say) is refused instead of filling the memory.
    static constexpr qint64 readLimit = qint64(1) << 30;

    /// Throws PlatformError "Schrijven mislukt op <path>: <reason>" unless a save may replace what is at
    /// path: nothing, a dangling symbolic link, or (through any links) a regular file of at most
    /// readLimit bytes. A link loop gives the system's reason; a directory, device, named pipe or
    /// socket is named as such. Changes nothing.
    void checkReplaceable(const QString& path) const;

    /// Replaces the content of path atomically through the writer this manager was given.
    /// Throws PlatformError naming path on failure; the old content then stays in place.
    void writeAtomically(const QString& path, const QByteArray& bytes) const;

    /// The whole content of the file at path. Reads only a regular file (through any symbolic links) of
    /// at most readLimit bytes, and never blocks: a named pipe, a device or a directory is refused before
    /// anything is read. Throws PlatformError "Lezen mislukt op <path>: <reason>" otherwise, with the
    /// system's reason where the system gives one (a missing file, a link loop).
    QByteArray contents(const QString& path) const;

    /// The content of the file at path decoded as strict UTF-8 (a byte-order mark is kept as U+FEFF).
    /// Throws PlatformError naming path when it cannot be read as contents() or holds bytes that are not
    /// UTF-8.
    QString readUtf8Text(const QString& path) const;

    /// As readUtf8Text(), but nothing when no file is at path: a dangling symbolic link, or a path
    /// through something that is not a directory, counts as missing; a link loop is an error.
    std::optional<QString> readUtf8TextUnlessMissing(const QString& path) const;

    /// bytes decoded as UTF-8, or nothing when they hold an invalid or truncated sequence.
    /// Nothing is replaced: a leading byte-order mark becomes U+FEFF.
    static std::optional<QString> decodeUtf8Strictly(const QByteArray& bytes);

    /// The default writer: a temporary file beside the target, written whole, synced and renamed over it
    /// (see replaceFileAtomically()). Writes through a symbolic link to its final target (the link
    /// stays), keeps the permission bits of an existing file, never falls back to writing in place, and
    /// first removes temporary files that crashed saves of earlier processes left beside the target.
    /// Throws PlatformError "Schrijven mislukt op <path>: <reason>" with the system's reason (a full
    /// disk, no free inodes, a file-size limit); the old file then stays whole. A link loop or a target
    /// that is not a regular file is refused and nothing is written.
    static void writeWithSaveFile(const QString& path, const QByteArray& bytes);

private:
    AtomicFileWriter m_writer;
};
