#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

/// The line tests of the ssh config reader, each a pure function of its text. Lines end at
/// CharacterClasses::isLineBreak; blanks, and the separators between words, are
/// CharacterClasses::isWhiteSpace.
namespace SSHConfigSyntax
{
/// Space separators and tab, no line breaks (ASCII: space, tab).
bool isSpace(char16_t c);

/// text without leading and trailing blanks (white space, line breaks included).
QStringView trimBlanks(QStringView text);
/// text without leading and trailing spaces (line breaks stay).
QStringView trimSpaces(QStringView text);

/// True when the first five characters are "host " ignoring ASCII letter case: "HOST web" is one,
/// "Host\tweb", "Host" and "Hostname x" are not.
bool isHostLine(QStringView text);

/// Drops one leading "#" (and one space after it) from text trimmed of spaces; text that then does
/// not start with "#" comes back unchanged, untrimmed.
QStringView stripCommentMarker(QStringView text);

/// The words after the first of a host line, split at white space; "*" when there are none.
QStringList parseHostPatterns(QStringView hostLine);

/// A keyword line cut into its key and its trimmed value (both pointing into the line).
struct OptionParts
{
    QStringView key;
    QStringView value;
};

/// Splits a raw line at its first white-space character into key and trimmed rest. Nothing for a blank
/// line, a comment, or a key that is not one ASCII letter followed by ASCII letters and digits.
/// "=" is never a separator: "Port=22" is no option, "Port = 22" has the value "= 22".
std::optional<OptionParts> parseOption(QStringView rawLine);

/// One ASCII letter, then ASCII letters or digits only.
bool isValidOptionKey(QStringView key);

/// The labels of a group comment such as "# Group: werk, klanten", trimmed, empty ones dropped,
/// duplicates kept; an empty list when text is not a group comment or names no label.
QStringList parseGroupComment(QStringView text);

/// The label of a section header such as "# WEB  SERVERS" (giving "WEB SERVERS"): upper-case ASCII
/// letters, digits, spaces, "_", "-" and "/", with at least one letter, and not a group comment.
std::optional<QString> parseSectionHeader(QStringView text);

/// The comment as written: text trimmed of blanks, with "# " put in front unless it starts with "#".
QString normalizedComment(QStringView text);
} // namespace SSHConfigSyntax
