#include "LoweredTextSearch.h"

using namespace Qt::StringLiterals;

namespace
{

bool isAscii(QStringView text)
{
    char16_t bits = 0;
    for (QChar c : text)
        bits |= c.unicode();
    return bits < 0x80;
}

char16_t asciiLower(char16_t c)
{
    return (c >= u'A' && c <= u'Z') ? char16_t(c + (u'a' - u'A')) : c;
}

bool isAsciiLetter(char16_t c)
{
    return c >= u'a' && c <= u'z';
}

// Whether the query occurs at hay[i], comparing ASCII-lower-cased text with the lower-case query.
// Only a region of ASCII characters can match this way.
bool matchesAt(const char16_t* hay, const char16_t* needle, qsizetype length)
{
    for (qsizetype k = 0; k < length; ++k) {
        if (hay[k] >= 0x80 || asciiLower(hay[k]) != needle[k])
            return false;
    }
    return true;
}

struct ScanResult
{
    bool found = false;
    bool sawNonAscii = false;
};

// Looks for the lower-case ASCII query in text, treating the text's ASCII letters case-insensitively,
// and notes whether the text holds anything beyond ASCII. The first character serves as a sieve.
ScanResult scan(QStringView text, QStringView query)
{
    const char16_t* hay = text.utf16();
    const char16_t* needle = query.utf16();
    const qsizetype length = query.size();
    const qsizetype last = text.size() - length;
    const char16_t first = needle[0];
    // For a letter, setting bit 0x20 folds the upper-case form onto the lower-case one; a few
    // non-letters fold too, which matchesAt() then rejects.
    const char16_t fold = isAsciiLetter(first) ? 0x20 : 0;
    ScanResult result;
    qsizetype i = 0;
    for (; i <= last; ++i) {
        result.sawNonAscii = result.sawNonAscii || hay[i] >= 0x80;
        if ((hay[i] | fold) == first && matchesAt(hay + i, needle, length))
            return { true, false };
    }
    for (qsizetype k = std::max<qsizetype>(i, 0); k < text.size() && !result.sawNonAscii; ++k)
        result.sawNonAscii = hay[k] >= 0x80;
    return result;
}

} // namespace

namespace LoweredTextSearch
{

bool contains(QStringView text, QStringView loweredQuery)
{
    if (loweredQuery.isEmpty())
        return true;
    if (!isAscii(loweredQuery)) {
        // Lower-casing ASCII gives ASCII, so such a query can only occur in a text beyond ASCII.
        return !isAscii(text) && text.toString().toLower().contains(loweredQuery);
    }
    if (text.size() < loweredQuery.size() && isAscii(text))
        return false;
    const ScanResult result = scan(text, loweredQuery);
    if (result.found)
        return true;
    // A few characters beyond ASCII lower-case to ASCII (the Kelvin sign to "k"); only then is the
    // full lower-casing needed.
    return result.sawNonAscii && text.toString().toLower().contains(loweredQuery);
}

bool containsInJoined(const QStringList& texts, QStringView loweredQuery)
{
    // A match that does not cover a joining blank lies inside one element, so only a query with a
    // blank needs the joined text.
    if (loweredQuery.contains(u' '))
        return contains(QString(texts.join(u' ')), loweredQuery);
    for (const QString& text : texts) {
        if (contains(text, loweredQuery))
            return true;
    }
    return loweredQuery.isEmpty();
}

bool containsInHostsField(QStringView hostsField, QStringView loweredQuery)
{
    // A query without blank or comma matches inside one host either way, so only such a query needs
    // the hosts joined as the search sees them.
    if (loweredQuery.contains(u' ') || loweredQuery.contains(u','))
        return contains(hostsField.toString().replace(u',', u' '), loweredQuery);
    return contains(hostsField, loweredQuery);
}

bool containsInPair(QStringView first, QStringView second, QStringView loweredQuery)
{
    if (loweredQuery.contains(u' '))
        return contains(QString(first.toString() + u' ' + second.toString()), loweredQuery);
    return contains(first, loweredQuery) || contains(second, loweredQuery);
}

} // namespace LoweredTextSearch
