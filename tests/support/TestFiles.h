#pragma once

// File and error helpers that many tests share: raw bytes in and out of real files, and the description
// of the error an operation throws.

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>

#include <sys/stat.h>

/// Writes bytes to path, making the parent directory; false when that fails.
inline bool writeBytes(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

/// The file's bytes, or "<unreadable>" so that a missing file never equals an empty one.
inline QByteArray readBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

/// The permission bits of path (following links), or 0 when it cannot be read.
inline unsigned modeOf(const QString& path)
{
    struct stat status
    {
    };
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777u : 0u;
}

/// The description of the Error that operation throws, or "<no error>".
template<typename Error, typename Operation> QString errorOf(Operation&& operation)
{
    try {
        operation();
    } catch (const Error& error) {
        return error.description();
    }
    return QStringLiteral("<no error>");
}

/// Leaves text as name in the fuzzer's seed corpus when the test run names a seed folder.
inline void writeFuzzSeed(const QString& fuzzer, const QString& name, const QString& text)
{
    const QString seedRoot = qEnvironmentVariable("TARNWICK_FUZZ_SEED_DIR");
    if (!seedRoot.isEmpty())
        writeBytes(seedRoot + u'/' + fuzzer + u'/' + name, text.toUtf8());
}
