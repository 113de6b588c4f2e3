// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <vector>

struct Timing
{
    double medianMs = 0.0;
    double worstMs = 0.0;
};

class Stopwatch
{
public:
    /// Of the processor, what a busy machine gives to others doesn't count.
    enum Time { OfTheClock, OfTheProcessor };

    explicit Stopwatch(Time time = OfTheClock) : m_time(time) {}

    /// Adds the time that `work` takes.
    void measure(const std::function<void()>& work)
    {
        constexpr double kNsPerMs = 1e6;
        constexpr double kMsPerSecond = 1000;
        QElapsedTimer timer;
        timer.start();
        const std::clock_t begin = std::clock();
        work();
        m_times.push_back(m_time == OfTheClock
                              ? static_cast<double>(timer.nsecsElapsed()) / kNsPerMs
                              : static_cast<double>(std::clock() - begin) * kMsPerSecond /
                                    CLOCKS_PER_SEC);
    }

    Timing timing()
    {
        std::sort(m_times.begin(), m_times.end());
        return {m_times[m_times.size() / 2], m_times.back()};
    }

private:
    Time m_time;
    std::vector<double> m_times;
};

/// Prints one line: the times of the program beside those of a bare window or list.
inline void report(const char* what, const Timing& timing, const Timing& reference)
{
    std::printf("%-32s median %9.3f ms  worst %9.3f ms  = %7.1f x bare (%.3f ms, worst %.3f ms)\n",
                what, timing.medianMs, timing.worstMs, timing.medianMs / reference.medianMs,
                reference.medianMs, reference.worstMs);
}
