// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "InstalledApplications.h"
#include "Types.h"

#include <QHash>
#include <QIcon>
#include <QString>
#include <QVector>

/// The installed applications, as they were when the process started. GUI thread only; every
/// failure is silent.
class AppIndex
{
public:
    /// Its `key` is also that under which a launch is remembered.
    using Entry = Platform::InstalledApplication;

    AppIndex() = delete;

    /// Asks the system for its applications, once per process; later calls do nothing. Takes as
    /// long as the system takes, so it doesn't belong into the start of the program.
    static void build();

    /// True from the beginning of `build()` on.
    static bool isBuilt();

    /// Up to `limit` applications with the trimmed query in their name, whatever the letter case:
    /// first those whose name begins with it, then the others, each in the order of the system.
    static QVector<Entry> search(const QString& query, int limit);

    /// Null if the application has none. Asked for once per key, also where the answer is null.
    static QIcon iconFor(const Entry& entry);

    /// The item that starts the application; it has no id.
    static LauncherElement asElement(const Entry& entry);

private:
    static QVector<Entry>& entries();
    static QHash<QString, QIcon>& iconCache();
    static void addEntry(const Entry& entry, QHash<QString, int>& seen);

    static inline bool s_built = false;
};
