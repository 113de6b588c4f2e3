// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "UsageStats.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace
{

constexpr qint64 kNow = 1700000000;

void require(bool condition)
{
    if (!condition)
        std::abort();
}

} // namespace

/// Whatever lies in "usage.json": only countable records come out, their scores are sane, and
/// they come back equal after a save.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const UsageStats::Map records = UsageStats::fromBytes(input);
    for (const UsageStats::Stat& stat : records) {
        require(stat.count > 0);
        const double score = UsageStats::decayedCount(stat, kNow);
        require(score >= 0.0 && score <= stat.count);
        require(stat.last < kNow || score == stat.count);
    }
    require(UsageStats::fromBytes(UsageStats::toBytes(records)) == records);
    return 0;
}
