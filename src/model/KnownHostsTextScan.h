#pragma once

#include "CharacterClasses.h"

#include <QStringView>

#include <algorithm>
#include <cstring>

/// Fast searches for line breaks and white space in known_hosts text. Files run to hundreds
/// of thousands of lines of long base64 keys, so the searches first skip whole blocks of characters
/// that cannot match and only then look closely. The blocks are GCC/Clang vector types, which the
/// compiler turns into SSE2 on x86 and NEON on ARM from this one piece of code.
namespace KnownHostsTextScan
{
namespace Detail
{
constexpr qsizetype blockSize = 8;

using Block = char16_t __attribute__((vector_size(blockSize * sizeof(char16_t))));

// For every character of the block at text, all ones where it lies outside (low, high), else zero.
inline Block candidates(const char16_t* text, char16_t low, char16_t high)
{
    Block block;
    std::memcpy(&block, text, sizeof block);
    return reinterpret_cast<Block>((block <= low) | (block >= high));
}

inline bool any(Block lanes)
{
    quint64 words[2];
    static_assert(sizeof words == sizeof lanes);
    std::memcpy(words, &lanes, sizeof words);
    return (words[0] | words[1]) != 0;
}

// Skips whole blocks in which every character lies strictly between low and high.
inline qsizetype skipBlocks(const char16_t* text, qsizetype from, qsizetype end, char16_t low, char16_t high)
{
    // Two blocks per test: keys run to hundreds of characters between two candidates.
    while (end - from >= 2 * blockSize
        && !any(candidates(text + from, low, high) | candidates(text + from + blockSize, low, high)))
        from += 2 * blockSize;
    while (end - from >= blockSize && !any(candidates(text + from, low, high)))
        from += blockSize;
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
