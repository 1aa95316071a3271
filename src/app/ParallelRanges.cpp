#include "ParallelRanges.h"

#include <QThread>

#include <algorithm>
#include <thread>
#include <vector>

namespace
{
// Starting a thread costs tens of microseconds; below this many items one thread is quicker.
constexpr std::size_t smallestRangePerThread = 16'384;
} // namespace

void inParallelRanges(std::size_t count, const std::function<void(std::size_t begin, std::size_t end)>& work)
{
    const auto cores = static_cast<std::size_t>(std::max(1, QThread::idealThreadCount()));
    const std::size_t threads = std::clamp<std::size_t>(count / smallestRangePerThread, 1, cores);
    const std::size_t rangeSize = (count + threads - 1) / threads;
    std::vector<std::jthread> helpers;
    helpers.reserve(threads - 1);
    for (std::size_t begin = rangeSize; begin < count; begin += rangeSize)
        helpers.emplace_back(work, begin, std::min(count, begin + rangeSize));
    work(0, std::min(count, rangeSize));
}
