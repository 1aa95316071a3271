#pragma once

// The file service of a user whose home directory is a test's temporary directory.

#include "FileManager.h"
#include "SSHFileService.h"

#include <QString>

/// A service whose two files lie in home/.ssh, written through fileManager.
inline SSHFileService serviceIn(const QString& home, FileManager fileManager = FileManager())
{
    return SSHFileService(
        home + QStringLiteral("/.ssh/config"), home + QStringLiteral("/.ssh/known_hosts"), std::move(fileManager));
}
