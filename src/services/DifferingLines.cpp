#include "DifferingLines.h"

#include <algorithm>

namespace
{
// Texts are compared a block at a time: equality of two blocks is a comparison of memory, so a
// known_hosts file of megabytes is looked through in a few milliseconds.
constexpr qsizetype blockSize = 4096;

qsizetype commonStartLength(QStringView first, QStringView second)
{
    const qsizetype length = std::min(first.size(), second.size());
    for (qsizetype same = 0; same < length; same += blockSize) {
        const qsizetype block = std::min(blockSize, length - same);
        const QStringView a = first.sliced(same, block);
        const QStringView b = second.sliced(same, block);
        if (a != b)
            return same + (std::mismatch(a.begin(), a.end(), b.begin()).first - a.begin());
    }
    return length;
}

// At most room characters, so that the common end does not reach back into the common start.
qsizetype commonEndLength(QStringView first, QStringView second, qsizetype room)
{
    for (qsizetype same = 0; same < room; same += blockSize) {
        const qsizetype block = std::min(blockSize, room - same);
        const QStringView a = first.sliced(first.size() - same - block, block);
        const QStringView b = second.sliced(second.size() - same - block, block);
        if (a != b)
            return same + (std::mismatch(a.rbegin(), a.rend(), b.rbegin()).first - a.rbegin());
    }
    return room;
}
} // namespace

DifferingLines DifferingLines::of(QStringView first, QStringView second)
{
    // A line is common when it ends inside the common start...
    const qsizetype sameStart = commonStartLength(first, second);
    const qsizetype start = sameStart == 0 ? 0 : first.lastIndexOf(u'\n', sameStart - 1) + 1;
    // ...or starts inside the common end, where a line starts in both texts. What is left then ends
    // at a line end (or is empty) in both texts, which adds the same empty last line to each.
    const qsizetype sameEnd = commonEndLength(first, second, std::min(first.size(), second.size()) - start);
    const auto startsLine = [](QStringView text, qsizetype at) { return at == 0 || text.at(at - 1) == u'\n'; };
    qsizetype commonTail = 0;
    if (startsLine(first, first.size() - sameEnd) && startsLine(second, second.size() - sameEnd))
        commonTail = sameEnd;
    else if (const qsizetype lineEnd = first.indexOf(u'\n', first.size() - sameEnd); lineEnd >= 0)
        commonTail = first.size() - lineEnd - 1;
    return { first.sliced(start, first.size() - commonTail - start),
        second.sliced(start, second.size() - commonTail - start) };
}
