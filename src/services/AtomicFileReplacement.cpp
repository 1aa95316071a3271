#include "AtomicFileReplacement.h"

#include "FileSystemEntry.h"
#include "ServiceError.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
// Taken when the program starts: a temporary file older than this belongs to a process that is gone
// (or to another instance of the application, whose save then fails cleanly at its rename).
const QDateTime processStart = QDateTime::currentDateTimeUtc();

constexpr int temporaryNameAttempts = 100;

[[noreturn]] void failWrite(const QString& path, int error)
{
    throw PlatformError(u"Schrijven mislukt op "_s + path + u": "_s + systemReason(error));
}

QString randomSuffix()
{
    static constexpr char16_t alphabet[] = u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    QString suffix;
    for (int i = 0; i < 6; ++i)
        suffix += QChar(alphabet[QRandomGenerator::global()->bounded(62)]);
    return suffix;
}

/// A new file beside the target that removes itself again unless it was renamed into place.
class TemporaryFile
{
public:
    /// Creates the file; throws PlatformError naming reportedPath when no file can be made there.
    TemporaryFile(const WriteTarget& target, const QString& reportedPath);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    /// Gives the file the target's mode, writes all of bytes, syncs and closes it; the error number of
    /// the first step that fails, else 0.
    int fill(const QByteArray& bytes, const WriteTarget& target);
    /// Renames the file over targetPath; the error number on failure, else 0.
    int renameOver(const QString& targetPath);

private:
    QByteArray m_path;
    FileDescriptor m_descriptor;
    bool m_renamed = false;
};

int createExclusively(const QByteArray& path, mode_t mode)
{
    return ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
}

// A new file gets the default mode through the umask, as any program's new file does; the copy of an
// existing file stays private until it carries that file's own mode.
TemporaryFile::TemporaryFile(const WriteTarget& target, const QString& reportedPath)
    : m_descriptor(-1)
{
    const mode_t creationMode = target.status ? 0600 : 0666;
    for (int attempt = 0; attempt < temporaryNameAttempts; ++attempt) {
        m_path = QFile::encodeName(target.path + u"."_s + randomSuffix());
        const int descriptor = createExclusively(m_path, creationMode);
        if (descriptor >= 0) {
            m_descriptor.reset(descriptor);
            return;
        }
        if (errno != EEXIST)
            break;
    }
    failWrite(reportedPath, errno);
}

TemporaryFile::~TemporaryFile()
{
    m_descriptor.close();
    if (!m_renamed)
        ::unlink(m_path.constData());
}

int writeAll(int descriptor, const QByteArray& bytes)
{
    // write() may take fewer bytes than offered; the call that then finds the disk full or the size
    // limit reached returns the system's reason, which is what the user is shown.
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t result
            = ::write(descriptor, bytes.constData() + written, static_cast<size_t>(bytes.size() - written));
        if (result < 0 && errno == EINTR)
            continue;
        if (result < 0)
            return errno;
        written += result;
    }
    return 0;
}

int TemporaryFile::fill(const QByteArray& bytes, const WriteTarget& target)
{
    if (target.status && ::fchmod(m_descriptor.get(), target.status->st_mode & 07777) != 0)
        return errno;
    if (const int error = writeAll(m_descriptor.get(), bytes))
        return error;
    // Synced before the rename, so that after a power cut the name never points at unwritten blocks;
    // a file system that reports lost data only here (NFS, some full disks) fails the save too.
    if (::fsync(m_descriptor.get()) != 0)
        return errno;
    return m_descriptor.close();
}

int TemporaryFile::renameOver(const QString& targetPath)
{
    if (::rename(m_path.constData(), QFile::encodeName(targetPath).constData()) != 0)
        return errno;
    m_renamed = true;
    return 0;
}

// Best effort: the rename itself is what makes the save atomic; syncing the directory only makes it
// survive a power cut sooner, and a directory that cannot be opened for it does not fail the save.
void syncDirectoryOf(const QString& path)
{
    FileDescriptor directory(
        ::open(QFile::encodeName(QFileInfo(path).absolutePath()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.get() >= 0)
        ::fsync(directory.get());
}

bool isStaleTemporaryFile(const QString& path)
{
    struct stat status
    {
    };
    if (::lstat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return false;
    return QFileInfo(path).lastModified() < processStart;
}
} // namespace

void replaceFileAtomically(const QString& path, const QByteArray& bytes)
{
    const WriteTarget target = resolveWriteTarget(path);
    // First, so that what a crashed save left behind cannot be what keeps this one from fitting.
    removeStaleTemporaryFiles(target.path);
    TemporaryFile temporary(target, path);
    if (const int error = temporary.fill(bytes, target))
        failWrite(path, error);
    if (const int error = temporary.renameOver(target.path))
        failWrite(path, error);
    syncDirectoryOf(target.path);
}

void removeStaleTemporaryFiles(const QString& targetPath)
{
    const QFileInfo target(targetPath);
    const QRegularExpression ownNaming(
        QRegularExpression::anchoredPattern(QRegularExpression::escape(target.fileName()) + u"\\.[A-Za-z0-9]{6}"_s));
    const QDir directory = target.absoluteDir();
    const QStringList candidates = directory.entryList(
        { target.fileName() + u".??????"_s }, QDir::Files | QDir::Hidden | QDir::System | QDir::NoSymLinks);
    for (const QString& name : candidates) {
        const QString path = directory.filePath(name);
        if (ownNaming.match(name).hasMatch() && isStaleTemporaryFile(path))
            QFile::remove(path);
    }
}
