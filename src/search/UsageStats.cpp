// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "UsageStats.h"

#include "Files.h"
#include "StorageManager.h"

#include <QDateTime>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QLatin1String>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

constexpr QLatin1String kCount("c");
constexpr QLatin1String kLast("t");

constexpr double kSecondsPerDay = 86400.0;
// The largest time that a JSON number holds exactly. Without a bound a hand-written 1e300 would
// not fit the integer it is read into.
constexpr double kMaxSeconds = 9007199254740992.0;

} // namespace

void UsageStats::record(const QString& key)
{
    if (key.isEmpty())
        return;
    load();
    Stat& stat = stats()[key];
    if (stat.count < std::numeric_limits<int>::max())
        ++stat.count;
    stat.last = QDateTime::currentSecsSinceEpoch();
    save();
}

double UsageStats::scoreFor(const QString& key)
{
    if (key.isEmpty())
        return 0.0;
    load();
    const auto found = stats().constFind(key);
    if (found == stats().cend())
        return 0.0;
    return decayedCount(found.value(), QDateTime::currentSecsSinceEpoch());
}

QString UsageStats::filePath()
{
    return QDir(StorageManager::appDataDir()).filePath(QStringLiteral("usage.json"));
}

double UsageStats::decayedCount(const Stat& stat, qint64 nowSeconds)
{
    const double ageDays = std::max(
        0.0, (static_cast<double>(nowSeconds) - static_cast<double>(stat.last)) / kSecondsPerDay);
    return stat.count * std::pow(2.0, -ageDays / HalfLifeDays);
}

UsageStats::Map UsageStats::fromBytes(const QByteArray& bytes)
{
    Map records;
    const QJsonObject root = QJsonDocument::fromJson(bytes).object();
    for (auto it = root.begin(); it != root.end(); ++it) {
        if (!it.value().isObject())
            continue;
        const QJsonObject member = it.value().toObject();
        const double last = member.value(kLast).toDouble(0.0);
        const Stat stat = {member.value(kCount).toInt(0),
                           static_cast<qint64>(std::clamp(last, -kMaxSeconds, kMaxSeconds))};
        if (stat.count > 0)
            records.insert(it.key(), stat);
    }
    return records;
}

QByteArray UsageStats::toBytes(const Map& records)
{
    QJsonObject root;
    for (auto it = records.begin(); it != records.end(); ++it) {
        root.insert(it.key(), QJsonObject{{kCount, it.value().count},
                                          {kLast, static_cast<double>(it.value().last)}});
    }
    return QJsonDocument(root).toJson(QJsonDocument::Compact);
}

UsageStats::Map& UsageStats::stats()
{
    static Map map;
    return map;
}

void UsageStats::load()
{
    if (s_loaded)
        return;
    // Set first, so that a file that is missing or broken is tried only once.
    s_loaded = true;
    stats() = fromBytes(readOwnFile(filePath(), MaxFileBytes));
}

void UsageStats::save()
{
    // Nothing to do about a failure: the counts stay in memory, and the next launch tries again.
    replaceFile(filePath(), toBytes(stats()));
}
