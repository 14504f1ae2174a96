#pragma once
// What is measured: times in seconds, and the middle one of many.

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <ctime>
#include <functional>
#include <vector>

namespace vardelin::bench {

// A moment that can be compared between processes.
inline std::int64_t nanosecondsNow()
{
    return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

inline double secondsSince(std::int64_t start)
{
    return static_cast<double>(nanosecondsNow() - start) * 1e-9;
}

inline double secondsOf(const std::function<void()> &work)
{
    const std::int64_t start = nanosecondsNow();
    work();
    return secondsSince(start);
}

// Elapsed, and on the processors with what the system does for us.
struct Figures
{
    double seconds = 0, cpuSeconds = 0;
};

inline Figures figuresOf(const std::function<void()> &work)
{
    const std::clock_t before = std::clock();
    const double seconds = secondsOf(work);
    return {seconds, static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC};
}

inline double median(std::vector<double> times)
{
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

} // namespace vardelin::bench
