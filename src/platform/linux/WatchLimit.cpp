// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "WatchLimit.h"

#include <QFile>

#include <limits>

size_t Platform::watchLimit()
{
    QFile file(QStringLiteral("/proc/sys/fs/inotify/max_user_watches"));
    bool isNumber = false;
    const qulonglong ofUser =
        file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().toULongLong(&isNumber) : 0;
    return isNumber ? static_cast<size_t>(ofUser / 2) : std::numeric_limits<size_t>::max();
}
