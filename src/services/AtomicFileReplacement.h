#pragma once

#include <QByteArray>
#include <QString>

/// Replaces the file at path with bytes through a temporary file beside it, named after the file, "."
/// and 6 random letters or digits, that is written whole, synced and then renamed over the file.
///
/// A symbolic link at path stays a link and its final target is replaced (or created, for a dangling
/// link). An existing file keeps its permission bits; a new one gets the process's default mode.
/// Every failure throws PlatformError "Schrijven mislukt op <path>: <reason>" with the system's own
/// reason, and leaves the old file in place, whole, with no temporary file behind: a link loop, a
/// target that is not a regular file, a full disk, no free inodes or a file-size limit alike.
void replaceFileAtomically(const QString& path, const QByteArray& bytes);

/// Removes what earlier processes left of replaceFileAtomically() (or of QSaveFile, which names its
/// temporary files the same way) beside the file at targetPath when they died before the rename:
/// regular files named after the file, ".", and 6 letters or digits, last modified before this process
/// started. Anything else, backups included, is never touched; a file that cannot be removed stays.
void removeStaleTemporaryFiles(const QString& targetPath);
