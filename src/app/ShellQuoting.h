#pragma once

#include <QString>
#include <QStringView>

/// text as one word for a POSIX shell: unchanged when it is made only of ASCII letters, digits and
/// ".", "_", "@", ":", "/", "-" (and is not empty); otherwise wrapped in single quotes, each inner
/// single quote written as '\''. Nothing inside single quotes is expanded, so "$(...)", backticks,
/// ";" and "&&" reach the program as plain characters.
QString shellQuoted(QStringView text);
