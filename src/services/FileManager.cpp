#include "FileManager.h"

#include "AtomicFileReplacement.h"
#include "FileSystemEntry.h"
#include "ServiceError.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
[[noreturn]] void fail(const QString& sentence, const QString& path, const QString& reason)
{
    throw PlatformError(sentence + path + u": "_s + reason);
}

std::filesystem::path nativePath(const QString& path)
{
    return std::filesystem::path(QFile::encodeName(path).toStdString());
}

QString tooLargeReason()
{
    return u"het bestand is groter dan %1 GiB"_s.arg(FileManager::readLimit >> 30);
}

// Opens for reading without ever blocking: opening a named pipe waits for a writer unless O_NONBLOCK
// is given. Returns the descriptor, or -1 with errno set.
int openForReading(const QString& path)
{
    return ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
}

// Reads at most limit + 1 bytes, so that a file growing while it is read still ends up too large
// instead of filling the memory.
QByteArray readAtMost(int descriptor, qint64 expectedSize, const QString& path)
{
    constexpr qint64 chunkSize = qint64 { 64 } * 1024;
    QByteArray bytes;
    bytes.reserve(expectedSize + 1);
    while (bytes.size() <= FileManager::readLimit) {
        const qsizetype offset = bytes.size();
        bytes.resize(offset + chunkSize);
        const ssize_t result = ::read(descriptor, bytes.data() + offset, chunkSize);
        if (result < 0 && errno == EINTR) {
            bytes.resize(offset);
            continue;
        }
        if (result < 0)
            fail(u"Lezen mislukt op "_s, path, systemReason(errno));
        bytes.resize(offset + result);
        if (result == 0)
            return bytes;
    }
    fail(u"Lezen mislukt op "_s, path, tooLargeReason());
}

// The bytes of the regular file behind descriptor, refusing anything else before a single byte is read:
// a device such as /dev/zero never ends, a directory has no bytes, and a named pipe may never close.
QByteArray readRegularFile(int descriptor, const QString& path)
{
    struct stat status
    {
    };
    if (::fstat(descriptor, &status) != 0)
        fail(u"Lezen mislukt op "_s, path, systemReason(errno));
    if (!S_ISREG(status.st_mode))
        fail(u"Lezen mislukt op "_s, path, notARegularFileReason(status.st_mode));
    if (status.st_size > FileManager::readLimit)
        fail(u"Lezen mislukt op "_s, path, tooLargeReason());
    return readAtMost(descriptor, status.st_size, path);
}

QString decodeOrFail(const QByteArray& bytes, const QString& path)
{
    std::optional<QString> text = FileManager::decodeUtf8Strictly(bytes);
    if (!text)
        fail(u"Lezen mislukt op "_s, path, u"het bestand bevat geen geldige UTF-8"_s);
    return *std::move(text);
}

bool isMissing(int error)
{
    // ENOENT covers a dangling link; ENOTDIR a file where a directory on the way should be.
    return error == ENOENT || error == ENOTDIR;
}
} // namespace

FileManager::FileManager()
    : FileManager(&FileManager::writeWithSaveFile)
{ }

FileManager::FileManager(AtomicFileWriter writer)
    : m_writer(std::move(writer))
{ }

bool FileManager::fileExists(const QString& path) const
{
    return QFileInfo::exists(path);
}

void FileManager::createDirectory(const QString& path) const
{
    // std::filesystem rather than QDir::mkpath: only it tells why the directory could not be made.
    std::error_code error;
    std::filesystem::create_directories(nativePath(path), error);
    if (error)
        fail(u"Map aanmaken mislukt op "_s, path, QString::fromLocal8Bit(error.message()));
}

void FileManager::copyItem(const QString& source, const QString& destination) const
{
    // QFile::copy reads through a symbolic link and refuses an existing destination, so an earlier
    // backup is never overwritten and a link is never copied as a link.
    QFile file(source);
    if (!file.copy(destination))
        fail(u"Backup maken mislukt op "_s, destination, file.errorString());
}

void FileManager::writeAtomically(const QString& path, const QByteArray& bytes) const
{
    m_writer(path, bytes);
}

void FileManager::checkReplaceable(const QString& path) const
{
    const WriteTarget target = resolveWriteTarget(path);
    if (target.status && target.status->st_size > readLimit)
        fail(u"Schrijven mislukt op "_s, path, tooLargeReason());
}

QByteArray FileManager::contents(const QString& path) const
{
    const FileDescriptor file(openForReading(path));
    if (file.get() < 0)
        fail(u"Lezen mislukt op "_s, path, systemReason(errno));
    return readRegularFile(file.get(), path);
}

QString FileManager::readUtf8Text(const QString& path) const
{
    return decodeOrFail(contents(path), path);
}

std::optional<QString> FileManager::readUtf8TextUnlessMissing(const QString& path) const
{
    const FileDescriptor file(openForReading(path));
    if (file.get() < 0 && isMissing(errno))
        return std::nullopt;
    if (file.get() < 0)
        fail(u"Lezen mislukt op "_s, path, systemReason(errno));
    return decodeOrFail(readRegularFile(file.get(), path), path);
}

std::optional<QString> FileManager::decodeUtf8Strictly(const QByteArray& bytes)
{
    // Stateless so that a sequence cut off at the end is an error instead of being held back for more
    // input; ConvertInitialBom so that the text read equals the text written, byte-order mark and all.
    QStringDecoder decoder(
        QStringDecoder::Utf8, QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

void FileManager::writeWithSaveFile(const QString& path, const QByteArray& bytes)
{
    replaceFileAtomically(path, bytes);
}
