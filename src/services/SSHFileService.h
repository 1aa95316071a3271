#pragma once

#include "FileManager.h"

#include <QDateTime>
#include <QString>
#include <QUuid>

#include <optional>

/// Knows where the user's two ssh files live and saves them safely: the old file is first copied to a
/// timestamped backup beside it, the new text is written atomically as UTF-8, then read back and compared.
///
/// Holds no mutable state; every operation is synchronous. Locations are absolute file-system paths.
class SSHFileService
{
public:
    /// The user's own files: the home directory from the user database (else the process's home),
    /// determined once per process, joined with ".ssh/config" and ".ssh/known_hosts".
    SSHFileService();

    /// Files at the two given paths, e.g. inside a temporary directory.
    SSHFileService(QString configURL, QString knownHostsURL, FileManager fileManager = FileManager());

    const FileManager& fileManager() const { return m_fileManager; }
    QString configURL() const { return m_configURL; }
    QString knownHostsURL() const { return m_knownHostsURL; }

    /// Saves text to configURL() by write(); returns the backup's path, or nothing when there was no old file.
    std::optional<QString> writeConfig(const QString& text) const;
    /// Saves text to knownHostsURL() by write(); returns the backup's path, or nothing when there was no old file.
    std::optional<QString> writeKnownHosts(const QString& text) const;

    /// The safe save, stopping at the first step that fails:
    /// 1. creates the parent directory when nothing exists there (PlatformError on failure), then
    ///    refuses a location that FileManager::checkReplaceable() refuses (a link loop, a directory,
    ///    device or named pipe, a file above FileManager::readLimit), leaving it as it is;
    /// 2. when a file exists at location, copies it to a new backup beside it named by backupFileName()
    ///    (PlatformError on failure; the file is then untouched);
    /// 3. writes text as UTF-8 without byte-order mark, atomically (PlatformError with the system's reason,
    ///    such as a full disk; the old file stays whole), after removing temporary files that crashed
    ///    saves of earlier processes left beside the file;
    /// 4. reads the file back strictly as UTF-8 (PlatformError) and compares it, canonically equivalent
    ///    texts being equal (SSHFileServiceError::writeVerificationFailed; new file and backup stay).
    /// Returns the backup's path, or nothing when no file existed. A symbolic link at location stays a
    /// link and its target is replaced; the backup then holds the target's old bytes as a regular file.
    std::optional<QString> write(const QString& text, const QString& location) const;

    /// The text of configURL(); a missing file, a dangling symbolic link included, reads as empty text.
    /// Throws PlatformError "Lezen mislukt op <path>: <reason>" when the file cannot be read (a link
    /// loop, something other than a regular file, a file above FileManager::readLimit) or is not valid
    /// UTF-8. Never blocks, not even on a named pipe.
    QString readConfig() const;
    /// The text of knownHostsURL(), as readConfig().
    QString readKnownHosts() const;
    /// The text of the file at location, as readConfig().
    QString read(const QString& location) const;

    /// The backup name for a file called fileName: fileName, ".backup-", moment in local time as
    /// "yyyyMMdd-HHmmss-SSS", "-", and the first 8 hexadecimal digits of uuid in upper case.
    static QString backupFileName(const QString& fileName, const QDateTime& moment, const QUuid& uuid);

private:
    std::optional<QString> backUp(const QString& location) const;
    void verify(const QString& text, const QString& location) const;

    FileManager m_fileManager;
    QString m_configURL;
    QString m_knownHostsURL;
};
