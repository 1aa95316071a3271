#include "FileWatcher.h"

#include "ServiceLog.h"

#include <QDir>
#include <QFileInfo>

namespace
{
// Long enough to let a writer finish a burst of small writes, short enough to feel immediate.
constexpr int settleMilliseconds = 150;
} // namespace

FileWatcher::FileWatcher(const QStringList& files, QObject* parent)
    : QObject(parent)
    , m_files(files)
{
    m_settle.setSingleShot(true);
    m_settle.setInterval(settleMilliseconds);
    connect(&m_settle, &QTimer::timeout, this, &FileWatcher::filesMayHaveChanged);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &FileWatcher::noticeChange);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &FileWatcher::noticeChange);
    watchWhatExists();
}

void FileWatcher::noticeChange()
{
    watchWhatExists();
    m_settle.start();
}

void FileWatcher::watchWhatExists()
{
    // File watches are renewed every time: after an atomic replace the old watch may still be listed
    // while it follows the replaced inode, and an append in place is reported only on the new one.
    if (!m_watcher.files().isEmpty())
        m_watcher.removePaths(m_watcher.files());
    QStringList paths;
    for (const QString& file : m_files) {
        const QFileInfo info(file);
        // Only regular files: a watch on a FIFO or a device would report nothing useful.
        if (info.isFile())
            paths.append(file);
        if (info.dir().exists() && !m_watcher.directories().contains(info.absolutePath()))
            paths.append(info.absolutePath());
    }
    paths.removeDuplicates();
    // A path that vanished in the meantime is harmless here: the next notice or check finds it again.
    if (paths.isEmpty())
        return;
    const QStringList unwatched = m_watcher.addPaths(paths);
    if (!unwatched.isEmpty())
        qCDebug(serviceLog) << "Not watched:" << unwatched;
}
