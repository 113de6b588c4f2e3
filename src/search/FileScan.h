// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileStore.h"

#include <QString>

#include <atomic>

namespace Platform
{
class TreeWatcher;
}

/// Reads what the file index holds from the disk. Any thread.
namespace FileScan
{

/// Whether folders of that name are left out, with all that is in them.
bool isExcludedDir(const QString& name);

/// Whether a component of a path relative to the root is the name of a folder that is left out, be
/// it a folder here or not.
bool isExcludedPath(const QString& rel);

/// All files and folders below `root`; what can't be read is left out. The last folder found is the
/// first one that is walked into.
/// \param expected so many entries, for which the list is prepared; there may be more.
/// \param watcher of the root, which watches each folder before it is read; null for none.
/// \param cancel ends the walk when it is set; the list is of no use then.
FileStore read(const QString& root, qsizetype expected, Platform::TreeWatcher* watcher,
               const std::atomic<bool>& cancel);

} // namespace FileScan
