#include "LoweredTextSearch.h"

using namespace Qt::StringLiterals;

namespace {

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

// Both sides are ASCII and the query is lower-case: a plain scan with the first character as a
// sieve is enough, and it stays allocation-free.
bool asciiContains(QStringView text, QStringView query)
{
    const qsizetype last = text.size() - query.size();
    const char16_t* hay = text.utf16();
    const char16_t* needle = query.utf16();
    const char16_t first = needle[0];
    for (qsizetype i = 0; i <= last; ++i) {
        if (asciiLower(hay[i]) != first)
            continue;
        qsizetype k = 1;
        while (k < query.size() && asciiLower(hay[i + k]) == needle[k])
            ++k;
        if (k == query.size())
            return true;
    }
    return false;
}

} // namespace

namespace LoweredTextSearch {

bool contains(QStringView text, QStringView loweredQuery)
{
    if (loweredQuery.isEmpty())
        return true;
    if (!isAscii(text))
        return text.toString().toLower().contains(loweredQuery);
    // Lower-casing ASCII gives ASCII, so a query with anything else cannot occur in it.
    if (!isAscii(loweredQuery))
        return false;
    return asciiContains(text, loweredQuery);
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

bool containsInPair(QStringView first, QStringView second, QStringView loweredQuery)
{
    if (loweredQuery.contains(u' '))
        return contains(QString(first.toString() + u' ' + second.toString()), loweredQuery);
    return contains(first, loweredQuery) || contains(second, loweredQuery);
}

} // namespace LoweredTextSearch
