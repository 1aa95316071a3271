#pragma once

#include <cstddef>
#include <functional>

/// Calls work(begin, end) for disjoint ranges that together cover [0, count), on as many threads as
/// the machine has cores when count is large enough to pay for them, and on the calling thread
/// alone otherwise. Returns when every range is done. work must only read shared state (each call
/// writes nothing but its own range of results) and must not throw.
void inParallelRanges(std::size_t count, const std::function<void(std::size_t begin, std::size_t end)>& work);
