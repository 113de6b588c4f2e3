// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AppIndex.h"

QVector<AppIndex::Entry>& AppIndex::entries()
{
    static QVector<Entry> list;
    return list;
}

QHash<QString, QIcon>& AppIndex::iconCache()
{
    static QHash<QString, QIcon> cache;
    return cache;
}

void AppIndex::build()
{
    if (s_built)
        return;
    s_built = true;
    QHash<QString, int> seen;
    Platform::listInstalledApplications([&seen](const Entry& entry) { addEntry(entry, seen); });
}

bool AppIndex::isBuilt()
{
    return s_built;
}

void AppIndex::addEntry(const Entry& entry, QHash<QString, int>& seen)
{
    if (entry.name.isEmpty() || entry.launchPath.isEmpty() || seen.contains(entry.key))
        return;
    seen.insert(entry.key, int(entries().size()));
    entries().append(entry);
}

QVector<AppIndex::Entry> AppIndex::search(const QString& query, int limit)
{
    const QString q = query.trimmed();
    QVector<Entry> result;
    if (q.isEmpty() || limit < 1)
        return result;
    QVector<Entry> rest;
    for (const Entry& entry : entries()) {
        if (entry.name.startsWith(q, Qt::CaseInsensitive))
            result.append(entry);
        else if (entry.name.contains(q, Qt::CaseInsensitive))
            rest.append(entry);
        if (result.size() == limit)
            return result;
    }
    result.append(rest.mid(0, limit - result.size()));
    return result;
}

QIcon AppIndex::iconFor(const Entry& entry)
{
    if (!entry.presetIcon.isNull())
        return entry.presetIcon;
    QHash<QString, QIcon>& cache = iconCache();
    const auto cached = cache.constFind(entry.key);
    if (cached != cache.constEnd())
        return *cached;
    return *cache.insert(entry.key, Platform::applicationIcon(entry.launchPath));
}

LauncherElement AppIndex::asElement(const Entry& entry)
{
    LauncherElement element;
    element.name = entry.name;
    element.value = entry.launchPath;
    element.shortcutType = entry.isShellItem ? ItemType::ShellItem : ItemType::File;
    return element;
}
