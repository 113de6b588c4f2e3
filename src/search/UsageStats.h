// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QtGlobal>

/// Remembers how often and how recently something was launched, in "usage.json" of the data
/// directory, which is read once per process. Keys are opaque and not empty: an item's id, an
/// application's key, a file's full path. GUI thread; every failure is silent.
class UsageStats
{
public:
    struct Stat
    {
        int count = 0;   ///< recorded launches
        qint64 last = 0; ///< the latest one, whole seconds since the Unix epoch

        bool operator==(const Stat&) const = default;
    };
    using Map = QHash<QString, Stat>;

    static constexpr double HalfLifeDays = 30.0; ///< a score halves in this time
    /// A larger file is not read but moved aside, as `moveFileAside` does.
    static constexpr qint64 MaxFileBytes = 64LL * 1024 * 1024;

    UsageStats() = delete;

    /// Counts one launch and writes the file at once. No effect for an empty key.
    static void record(const QString& key);

    /// The count, halved for every 30 days since the latest launch; 0 for an unknown key. Cheap
    /// after the first call, so it may stand inside a comparator.
    static double scoreFor(const QString& key);

    /// Full path of "usage.json".
    static QString filePath();

    /// The score of one record at a given time. A record from the future has not decayed.
    static double decayedCount(const Stat& stat, qint64 nowSeconds);

    /// The records in the content of a file. Never fails: what is no record with a positive count
    /// is left out.
    static Map fromBytes(const QByteArray& bytes);

    /// The content of the file for these records.
    static QByteArray toBytes(const Map& records);

private:
    static Map& stats();
    static void load();
    static void save();

    static inline bool s_loaded = false;
};
