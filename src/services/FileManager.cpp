#include "FileManager.h"

#include "ServiceError.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringDecoder>

#include <filesystem>
#include <system_error>

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

QByteArray FileManager::contents(const QString& path) const
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        fail(u"Lezen mislukt op "_s, path, file.errorString());
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        fail(u"Lezen mislukt op "_s, path, file.errorString());
    return bytes;
}

QString FileManager::readUtf8Text(const QString& path) const
{
    std::optional<QString> text = decodeUtf8Strictly(contents(path));
    if (!text)
        fail(u"Lezen mislukt op "_s, path, u"het bestand bevat geen geldige UTF-8"_s);
    return *std::move(text);
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
    // No direct-write fallback: a file that cannot be replaced atomically is not written at all.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        fail(u"Schrijven mislukt op "_s, path, file.errorString());
    if (file.write(bytes) != bytes.size()) {
        const QString reason = file.errorString();
        file.cancelWriting();
        fail(u"Schrijven mislukt op "_s, path, reason);
    }
    if (!file.commit())
        fail(u"Schrijven mislukt op "_s, path, file.errorString());
}
