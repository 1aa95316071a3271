#pragma once

#include <QString>
#include <QStringList>

/// The command line of a freedesktop desktop entry's Exec key, split into a program and its arguments.
class DesktopExecLine
{
public:
    /// Splits exec (already unescaped as a desktop-entry string value) into arguments: blanks separate
    /// arguments, double quotes group them and inside quotes a backslash escapes '"', '`', '$' and '\'.
    /// Field codes are dropped, as nothing is handed to the application: an argument that was only a field
    /// code disappears, "%%" becomes "%". Gives an empty list when exec is blank or a quote is left open.
    static QStringList arguments(const QString& exec);
};
