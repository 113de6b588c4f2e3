// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// What a palette costs: computed for a seed never seen before, as after a change of the accent
// colour, and taken from the cache, as in every paint. Each time stands beside a reference measured
// in the same run, so that numbers from different machines can be compared.

#include "Theme.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <vector>

namespace
{

constexpr int kRuns = 101;
constexpr int kCachedCalls = 10000;
constexpr int kPowCalls = 10000;
constexpr int kForceLight = 1;
constexpr int kForceDark = 2;

volatile double s_sink = 0.0; // results go here, or the compiler would drop the work

/// The median time of one call, in nanoseconds, over `kRuns` runs of `calls` calls each.
double medianNs(int calls, const std::function<void(int)>& run)
{
    std::vector<double> times;
    for (int i = 0; i < kRuns; ++i) {
        QElapsedTimer timer;
        timer.start();
        run(i);
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / calls);
    }
    std::nth_element(times.begin(), times.begin() + kRuns / 2, times.end());
    return times[kRuns / 2];
}

double powNs()
{
    return medianNs(kPowCalls, [](int) {
        for (int i = 0; i < kPowCalls; ++i)
            s_sink = std::pow(1.0 + i, 0.42);
    });
}

double tableCopyNs()
{
    const ColorTokens tokens = Theme::colors();
    return medianNs(kCachedCalls, [&tokens](int) {
        for (int i = 0; i < kCachedCalls; ++i) {
            const ColorTokens copy = tokens;
            s_sink = static_cast<double>(copy.primary.size());
        }
    });
}

double newSeedNs(int saturation)
{
    return medianNs(1, [saturation](int run) {
        Theme::seedColorHex = QColor::fromHsl(run * 360 / kRuns, saturation, 128).name();
        s_sink = static_cast<double>(getItemTheme().primary.size());
    });
}

double cachedNs()
{
    return medianNs(kCachedCalls, [](int) {
        for (int i = 0; i < kCachedCalls; ++i)
            s_sink = static_cast<double>(Theme::colors().primary.size());
    });
}

void report(const char* what, double ns, double referenceNs, const char* reference)
{
    std::printf("%-44s %12.3f us  = %8.1f x %s\n", what, ns / 1000.0, ns / referenceNs, reference);
}

} // namespace

int main()
{
    const double onePowNs = powNs();
    std::printf("%-44s %12.3f us\n", "reference: one pow()", onePowNs / 1000.0);
    for (const int mode : {kForceLight, kForceDark}) {
        Theme::forceTheme = mode;
        const char* name = mode == kForceDark ? "dark" : "light";
        std::printf("%s\n", name);
        report("  new vivid seed, all 25 tokens", newSeedNs(255), onePowNs, "pow()");
        report("  new dull seed, all 25 tokens", newSeedNs(64), onePowNs, "pow()");
        const double copyNs = tableCopyNs();
        std::printf("%-44s %12.3f us\n", "  reference: one copy of the table", copyNs / 1000.0);
        report("  cached Theme::colors()", cachedNs(), copyNs, "copy");
    }
    // Following the desktop, a cached palette also looks at the clock.
    Theme::forceTheme = 0;
    const double copyNs = tableCopyNs();
    report("cached Theme::colors(), following the desktop", cachedNs(), copyNs, "copy");
    return 0;
}
