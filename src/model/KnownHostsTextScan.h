#pragma once

#include "CharacterClasses.h"

#include <QStringView>

#include <algorithm>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// Fast searches for line breaks and white space in known_hosts text. Files run to hundreds
/// of thousands of lines of long base64 keys, so the searches first skip whole blocks of characters
/// that cannot match (eight at a time with SSE2, one by one elsewhere) and only then look closely.
namespace KnownHostsTextScan
{
namespace Detail
{
constexpr qsizetype blockSize = 8;

// Skips whole blocks in which every character lies strictly between low and high.
inline qsizetype skipBlocks(const char16_t* text, qsizetype from, qsizetype end, char16_t low, char16_t high)
{
#if defined(__SSE2__)
    const __m128i lowBound = _mm_set1_epi16(static_cast<short>(low));
    const __m128i highBound = _mm_set1_epi16(static_cast<short>(high));
    const __m128i zero = _mm_setzero_si128();
    // Unsigned saturating subtraction gives zero exactly where c <= low, or where c >= high.
    const auto candidates = [&](qsizetype at) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + at));
        return _mm_or_si128(_mm_cmpeq_epi16(_mm_subs_epu16(block, lowBound), zero),
            _mm_cmpeq_epi16(_mm_subs_epu16(highBound, block), zero));
    };
    // Two blocks per test: keys run to hundreds of characters between two candidates.
    while (end - from >= 2 * blockSize) {
        if (_mm_movemask_epi8(_mm_or_si128(candidates(from), candidates(from + blockSize))) != 0)
            break;
        from += 2 * blockSize;
    }
    while (end - from >= blockSize) {
        if (_mm_movemask_epi8(candidates(from)) != 0)
            break;
        from += blockSize;
    }
#else
    while (end - from >= blockSize) {
        bool candidate = false;
        for (qsizetype i = 0; i < blockSize; ++i)
            candidate |= (text[from + i] <= low) | (text[from + i] >= high);
        if (candidate)
            break;
        from += blockSize;
    }
#endif
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
