#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

/// How OpenSSH itself cuts one line of a client config into words, which is not how this program's
/// own config reader sees it: ssh ends lines at LF alone, lets "=" separate the keyword from its first
/// argument, groups quoted words and stops at a word that begins with "#".
namespace OpenSSHLineWords
{
/// The words of line: the keyword first (as written), then the arguments without their quotes.
/// Empty for a blank line or a comment. An unterminated quote takes the rest of the line.
QStringList split(QStringView line);

/// word as ssh reads it back as one argument: unchanged when it needs no quotes, else in double quotes.
QString quoted(const QString& word);
} // namespace OpenSSHLineWords
