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

    /// Replaces the content of path atomically through the writer this manager was given.
    /// Throws PlatformError naming path on failure; the old content then stays in place.
    void writeAtomically(const QString& path, const QByteArray& bytes) const;

    /// The whole content of the file at path. Throws PlatformError naming path when it cannot be read.
    QByteArray contents(const QString& path) const;

    /// The content of the file at path decoded as strict UTF-8 (a byte-order mark is kept as U+FEFF).
    /// Throws PlatformError naming path when it cannot be read or holds bytes that are not UTF-8.
    QString readUtf8Text(const QString& path) const;

    /// bytes decoded as UTF-8, or nothing when they hold an invalid or truncated sequence.
    /// Nothing is replaced: a leading byte-order mark becomes U+FEFF.
    static std::optional<QString> decodeUtf8Strictly(const QByteArray& bytes);

    /// The default writer: a QSaveFile committed in one rename. Writes through a symbolic link to its
    /// target (the link stays), keeps the permission bits of an existing file, and never falls back
    /// to writing in place. Throws PlatformError naming path on failure.
    static void writeWithSaveFile(const QString& path, const QByteArray& bytes);

private:
    AtomicFileWriter m_writer;
};
