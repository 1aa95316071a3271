#pragma once

#include "CharacterClasses.h"

#include <QStringView>

#include <algorithm>

/// Fast searches for line breaks and white space in known_hosts text. Files run to hundreds
/// of thousands of lines of long base64 keys, so the searches first skip whole blocks of characters
/// that cannot match (a branch-free test the compiler can turn into vector instructions on any
/// processor) and only then look closely.
namespace KnownHostsTextScan
{
namespace Detail
{
constexpr qsizetype blockSize = 8;

// Skips whole blocks in which every character lies strictly between low and high.
inline qsizetype skipBlocks(const char16_t* text, qsizetype from, qsizetype end, char16_t low, char16_t high)
{
    while (end - from >= blockSize) {
        bool candidate = false;
        for (qsizetype i = 0; i < blockSize; ++i)
            candidate |= (text[from + i] <= low) | (text[from + i] >= high);
        if (candidate)
            break;
        from += blockSize;
    }
    return from;
}
} // namespace Detail

/// The position of the first line break at or after from, or text.size() when there is none.
inline qsizetype nextLineBreak(QStringView text, qsizetype from)
{
    const char16_t* data = text.utf16();
    const qsizetype end = text.size();
    for (;;) {
        // No line break lies strictly between CR and NEL.
        from = Detail::skipBlocks(data, from, end, 0x0D, 0x85);
        const qsizetype stop = std::min(end, from + Detail::blockSize);
        for (; from < stop; ++from) {
            if (CharacterClasses::isLineBreak(data[from]))
                return from;
        }
        if (from == end)
            return end;
    }
}

/// The position of the first white-space character at or after from, or text.size().
inline qsizetype nextWhiteSpace(QStringView text, qsizetype from)
{
    const char16_t* data = text.utf16();
    const qsizetype end = text.size();
    for (;;) {
        // No white space lies strictly between the space and NEL.
        from = Detail::skipBlocks(data, from, end, 0x20, 0x85);
        const qsizetype stop = std::min(end, from + Detail::blockSize);
        for (; from < stop; ++from) {
            if (CharacterClasses::isWhiteSpace(data[from]))
                return from;
        }
        if (from == end)
            return end;
    }
}

/// The number of line-break characters in text.
inline qsizetype countLineBreaks(QStringView text)
{
    qsizetype count = 0;
    for (qsizetype at = nextLineBreak(text, 0); at < text.size(); at = nextLineBreak(text, at + 1))
        ++count;
    return count;
}
} // namespace KnownHostsTextScan
