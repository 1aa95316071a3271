#pragma once

#include <QString>

#include <optional>

#include <sys/stat.h>

/// The system's own wording for an errno value, in the user's language.
QString systemReason(int error);

/// Why something of the given stat mode is not taken for a config file, as a Dutch phrase such as
/// "dit is een map, geen gewoon bestand".
QString notARegularFileReason(mode_t mode);

/// Where a save to a path lands: the path itself, or the end of its chain of symbolic links.
struct WriteTarget
{
    QString path;
    /// The target's status, or nothing when no file is there yet (a dangling link's target, say).
    std::optional<struct stat> status;
};

/// Follows the symbolic links at path to the file a save replaces. Throws PlatformError
/// "Schrijven mislukt op <path>: ..." for a link loop, for a target that exists but is not a regular
/// file, and for any other reason the target cannot be looked at.
WriteTarget resolveWriteTarget(const QString& path);

/// Closes a file descriptor when it goes out of scope.
class FileDescriptor
{
public:
    explicit FileDescriptor(int descriptor)
        : m_descriptor(descriptor)
    { }
    ~FileDescriptor();
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    int get() const { return m_descriptor; }
    /// Closes the descriptor held so far and holds descriptor instead.
    void reset(int descriptor);
    /// Closes now; the error number when closing failed (a write-back error on some file systems), else 0.
    int close();

private:
    int m_descriptor;
};
