#include "FileSystemEntry.h"

#include "ServiceError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
// As many links as Linux follows before it gives up with ELOOP.
constexpr int maximumLinksFollowed = 40;

[[noreturn]] void failWrite(const QString& path, const QString& reason)
{
    throw PlatformError(u"Schrijven mislukt op "_s + path + u": "_s + reason);
}

QString linkTarget(const QString& link, const QString& reportedPath)
{
    std::error_code error;
    const std::filesystem::path target
        = std::filesystem::read_symlink(std::filesystem::path(QFile::encodeName(link).toStdString()), error);
    if (error)
        failWrite(reportedPath, QString::fromLocal8Bit(error.message()));
    // A relative link counts from the link's own directory; QDir::filePath keeps an absolute one as it is.
    return QDir(QFileInfo(link).absolutePath()).filePath(QFile::decodeName(QByteArray::fromStdString(target.native())));
}
} // namespace

QString systemReason(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

QString notARegularFileReason(mode_t mode)
{
    if (S_ISDIR(mode))
        return u"dit is een map, geen gewoon bestand"_s;
    if (S_ISFIFO(mode))
        return u"dit is een named pipe, geen gewoon bestand"_s;
    if (S_ISCHR(mode) || S_ISBLK(mode))
        return u"dit is een apparaat, geen gewoon bestand"_s;
    if (S_ISSOCK(mode))
        return u"dit is een socket, geen gewoon bestand"_s;
    return u"dit is geen gewoon bestand"_s;
}

WriteTarget resolveWriteTarget(const QString& path)
{
    // Followed by hand rather than with realpath(), which refuses a dangling link whose target a save
    // is meant to create.
    QString current = path;
    for (int followed = 0; followed <= maximumLinksFollowed; ++followed) {
        struct stat status
        {
        };
        if (::lstat(QFile::encodeName(current).constData(), &status) != 0) {
            if (errno == ENOENT)
                return { current, std::nullopt };
            failWrite(path, systemReason(errno));
        }
        if (S_ISREG(status.st_mode))
            return { current, status };
        if (!S_ISLNK(status.st_mode))
            failWrite(path, notARegularFileReason(status.st_mode));
        current = linkTarget(current, path);
    }
    failWrite(path, systemReason(ELOOP));
}

FileDescriptor::~FileDescriptor()
{
    close();
}

void FileDescriptor::reset(int descriptor)
{
    close();
    m_descriptor = descriptor;
}

int FileDescriptor::close()
{
    if (m_descriptor < 0)
        return 0;
    const int result = ::close(m_descriptor);
    m_descriptor = -1;
    // Linux releases the descriptor even when close() fails, so it is never retried.
    return result == 0 ? 0 : errno;
}
