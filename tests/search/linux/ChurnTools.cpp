// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ChurnTools.h"

#include "WatchLimit.h"

#include <QFile>

#include <limits>

#include <cstdio>
#include <fcntl.h>

namespace
{

size_t s_limit = std::numeric_limits<size_t>::max();

} // namespace

/// In the place of the library's own.
size_t Platform::watchLimit()
{
    return s_limit;
}

void ChurnTools::allowWatches(int count)
{
    s_limit = static_cast<size_t>(count);
}

bool ChurnTools::isWatchedWherever()
{
    return true;
}

bool ChurnTools::exchange(const QString& path, const QString& other)
{
    return ::renameat2(AT_FDCWD, QFile::encodeName(path).constData(), AT_FDCWD,
                       QFile::encodeName(other).constData(), RENAME_EXCHANGE) == 0;
}
