#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QStringList>
#include <QTimer>

/// Tells when any of a few files may have been changed by another program.
///
/// Watches each file and its directory: an atomic replace (what editors, ssh-keygen and our own save
/// do) removes the watched inode, so the directory is what still reports it, and the file is watched
/// again as soon as it exists. A burst of notifications (a save writes a backup, a temporary file and
/// renames it) is reported once, a moment after the burst, so a half-written file is rarely looked at;
/// the receiver compares contents and decides what, if anything, changed.
class FileWatcher : public QObject
{
    Q_OBJECT

public:
    explicit FileWatcher(const QStringList& files, QObject* parent = nullptr);

    /// Watches the files and directories that exist now; called after a save that may have made them.
    void watchWhatExists();

Q_SIGNALS:
    /// Something happened to one of the files or their directories.
    void filesMayHaveChanged();

private:
    void noticeChange();

    QStringList m_files;
    QFileSystemWatcher m_watcher;
    QTimer m_settle;
};
