#pragma once

#include <QChar>

/// The two character classes that the ssh config and known_hosts readers share: where a line ends, and
/// what separates and surrounds words. Both are Unicode; their ASCII members are in the comments.
namespace CharacterClasses
{
/// LF, VT, FF, CR, NEL, LINE SEPARATOR and PARAGRAPH SEPARATOR, each of which ends a line on its own.
inline bool isLineBreak(char16_t c)
{
    // Bitwise rather than short-circuit, so that loops over long texts vectorise.
    return (static_cast<char16_t>(c - 0x0A) <= 3) | (c == 0x85) | (c == 0x2028) | (c == 0x2029);
}

/// Unicode white space: the space, line and paragraph separators, tab, the line breaks and NEL (ASCII:
/// space, tab, LF, VT, FF, CR). Described by category or by the White_Space property, these are the same
/// characters, so one test serves as the blanks that are trimmed and as the separators between words.
inline bool isWhiteSpace(char16_t c)
{
    return QChar::isSpace(c);
}
} // namespace CharacterClasses
