#pragma once
// Every figure of the benchmarks is a ratio to a reference that is measured in the same run, in turn with the
// subject, so that it means the same on a slow machine, a fast one and a busy one.

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

#include <benchmark/benchmark.h>

namespace ratio
{

using Clock = std::chrono::steady_clock;

template <class Work>
double SecondsOf(Work&& work)
{
    const Clock::time_point start = Clock::now();
    work();
    benchmark::ClobberMemory();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

inline double Median(std::vector<double>& values)
{
    if (values.empty())
        return 0.0;
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Runs subject and reference once per iteration, in alternating order so that neither always finds the cache
/// as the other left it. Reports the subject's time (register the benchmark with UseManualTime) and three
/// counters: "ratio", the median of subject time over reference time of the same iteration; "aim", which the
/// ratio should not exceed; "reference_us", the reference's median time in microseconds.
template <class Subject, class Reference>
void Measure(benchmark::State& state, double aim, Subject&& subject, Reference&& reference)
{
    constexpr double MICROSECONDS = 1e6;
    std::vector<double> ratios;
    std::vector<double> referenceTimes;
    subject();
    reference();
    bool bSubjectFirst = false;
    for (auto _ : state) {
        double subjectTime = 0.0;
        double referenceTime = 0.0;
        if (bSubjectFirst)
            subjectTime = SecondsOf(subject);
        referenceTime = SecondsOf(reference);
        if (!bSubjectFirst)
            subjectTime = SecondsOf(subject);
        bSubjectFirst = !bSubjectFirst;
        state.SetIterationTime(subjectTime);
        ratios.push_back(subjectTime / referenceTime);
        referenceTimes.push_back(referenceTime * MICROSECONDS);
    }
    state.counters["ratio"] = Median(ratios);
    state.counters["aim"] = aim;
    state.counters["reference_us"] = Median(referenceTimes);
}

} // namespace ratio
