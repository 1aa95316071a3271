#include "HomeDirectory.h"

#include <QDir>

#include <pwd.h>
#include <unistd.h>

QString userHomeDirectory()
{
    // The user database wins over $HOME: a sudo'ed or oddly started process may carry another user's HOME,
    // and we must never edit someone else's ssh files.
    if (const passwd* entry = getpwuid(getuid()); entry && entry->pw_dir && entry->pw_dir[0] != '\0')
        return QDir::cleanPath(QString::fromLocal8Bit(entry->pw_dir));
    return QDir::cleanPath(QDir::homePath());
}
