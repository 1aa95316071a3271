#include "SSHConfigSyntax.h"

#include "CharacterClasses.h"

#include <QChar>

using namespace Qt::StringLiterals;
using CharacterClasses::isWhiteSpace;

namespace SSHConfigSyntax
{
namespace
{
bool isAsciiLetter(char16_t c)
{
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

bool isAsciiDigit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

char16_t asciiLower(char16_t c)
{
    return (c >= u'A' && c <= u'Z') ? static_cast<char16_t>(c + (u'a' - u'A')) : c;
}

/// ASCII-only case-insensitive prefix test; both prefixes this reader looks for are ASCII.
bool startsWithIgnoringAsciiCase(QStringView text, QStringView lowerPrefix)
{
    if (text.size() < lowerPrefix.size())
        return false;
    for (qsizetype i = 0; i < lowerPrefix.size(); ++i) {
        if (asciiLower(text[i].unicode()) != lowerPrefix[i].unicode())
            return false;
    }
    return true;
}

bool isSectionHeaderChar(char16_t c)
{
    return (c >= u'A' && c <= u'Z') || isAsciiDigit(c) || c == u' ' || c == u'_' || c == u'-' || c == u'/';
}

/// The text after a leading "#", trimmed of blanks; nothing when text (trimmed) is no comment.
std::optional<QStringView> commentBody(QStringView text)
{
    const QStringView t = trimBlanks(text);
    if (!t.startsWith(u'#'))
        return std::nullopt;
    return trimBlanks(t.sliced(1));
}
} // namespace

bool isSpace(char16_t c)
{
    return c == u' ' || c == u'\t' || (c >= 0x80 && QChar::category(c) == QChar::Separator_Space);
}

template<typename Predicate> static QStringView trimWith(QStringView text, Predicate isTrimmed)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isTrimmed(text[begin].unicode()))
        ++begin;
    while (end > begin && isTrimmed(text[end - 1].unicode()))
        --end;
    return text.sliced(begin, end - begin);
}

QStringView trimBlanks(QStringView text)
{
    return trimWith(text, [](char16_t c) { return isWhiteSpace(c); });
}

QStringView trimSpaces(QStringView text)
{
    return trimWith(text, [](char16_t c) { return isSpace(c); });
}

bool isHostLine(QStringView text)
{
    return startsWithIgnoringAsciiCase(text, u"host ");
}

QStringView stripCommentMarker(QStringView text)
{
    QStringView result = trimSpaces(text);
    if (!result.startsWith(u'#'))
        return text;
    result = result.sliced(1);
    if (result.startsWith(u' '))
        result = result.sliced(1);
    return result;
}

QStringList parseHostPatterns(QStringView hostLine)
{
    QStringList words;
    qsizetype start = -1;
    for (qsizetype i = 0; i <= hostLine.size(); ++i) {
        const bool separator = i == hostLine.size() || isWhiteSpace(hostLine[i].unicode());
        if (separator && start >= 0) {
            words.append(hostLine.sliced(start, i - start).toString());
            start = -1;
        } else if (!separator && start < 0) {
            start = i;
        }
    }
    if (words.size() < 2)
        return { u"*"_s };
    words.removeFirst();
    return words;
}

bool isValidOptionKey(QStringView key)
{
    if (key.isEmpty() || !isAsciiLetter(key.front().unicode()))
        return false;
    for (const QChar c : key) {
        if (!isAsciiLetter(c.unicode()) && !isAsciiDigit(c.unicode()))
            return false;
    }
    return true;
}

std::optional<OptionParts> parseOption(QStringView rawLine)
{
    const QStringView t = trimBlanks(rawLine);
    if (t.isEmpty() || t.startsWith(u'#'))
        return std::nullopt;
    qsizetype cut = 0;
    while (cut < t.size() && !isWhiteSpace(t[cut].unicode()))
        ++cut;
    const QStringView key = t.first(cut);
    if (!isValidOptionKey(key))
        return std::nullopt;
    const QStringView value = cut < t.size() ? trimBlanks(t.sliced(cut + 1)) : QStringView();
    return OptionParts { key, value };
}

QStringList parseGroupComment(QStringView text)
{
    const std::optional<QStringView> body = commentBody(text);
    if (!body || !startsWithIgnoringAsciiCase(*body, u"group:"))
        return {};
    QStringList labels;
    for (const QStringView piece : body->sliced(6).tokenize(u',')) {
        const QStringView label = trimBlanks(piece);
        if (!label.isEmpty())
            labels.append(label.toString());
    }
    return labels;
}

std::optional<QString> parseSectionHeader(QStringView text)
{
    const std::optional<QStringView> body = commentBody(text);
    if (!body || body->isEmpty() || startsWithIgnoringAsciiCase(*body, u"group:"))
        return std::nullopt;
    const char16_t first = body->front().unicode();
    if (!(first >= u'A' && first <= u'Z') && !isAsciiDigit(first))
        return std::nullopt;
    bool hasLetter = false;
    QString label;
    label.reserve(body->size());
    for (const QChar c : *body) {
        const char16_t u = c.unicode();
        if (!isSectionHeaderChar(u))
            return std::nullopt;
        hasLetter = hasLetter || (u >= u'A' && u <= u'Z');
        // Only U+0020 can be a word separator here, so collapsing runs of it is the whole rule.
        if (u != u' ' || !label.endsWith(u' '))
            label.append(c);
    }
    if (!hasLetter)
        return std::nullopt;
    return label;
}

QString normalizedComment(QStringView text)
{
    const QStringView x = trimBlanks(text);
    if (x.startsWith(u'#'))
        return x.toString();
    return u"# "_s + x;
}
} // namespace SSHConfigSyntax
