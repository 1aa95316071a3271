#pragma once

#include <benchmark/benchmark.h>

#include <sys/resource.h>

inline long minorPageFaults()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_minflt;
}

// On a small virtual machine a page fault costs microseconds, so the faults explain most of the
// differences between runs: the counter shows them per pass.
class PageFaultCounter
{
public:
    explicit PageFaultCounter(benchmark::State& state)
        : m_state(state)
        , m_start(minorPageFaults())
    { }
    ~PageFaultCounter()
    {
        m_state.counters["faults_per_pass"]
            = static_cast<double>(minorPageFaults() - m_start) / static_cast<double>(m_state.iterations());
    }

private:
    benchmark::State& m_state;
    long m_start;
};
