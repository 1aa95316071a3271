#pragma once

#include <QString>

/// The current user's home directory as the user database records it (getpwuid(getuid())),
/// else the process's own home directory. No trailing slash.
QString userHomeDirectory();
