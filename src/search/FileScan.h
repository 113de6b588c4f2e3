// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileStore.h"

#include <QString>
#include <QStringList>

#include <atomic>
#include <vector>

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

/// The same for all paths, relative to the root or not, that mean the same file.
QString keyOf(const QString& path);

/// What a walk begins with.
struct Tree
{
    QString root;                             ///< with native separators
    Platform::TreeWatcher* watcher = nullptr; ///< is to watch all that is read; may be null
    const std::atomic<bool>& cancel;          ///< ends the walk; what it found is of no use then
};

/// All files and folders below the root; what can't be read is left out. The last folder found is
/// the first one that is walked into.
/// \param expected so many entries, for which the list is prepared; there may be more.
FileStore read(const Tree& tree, qsizetype expected);

/// What stands at some paths, as `FileStore::renew` takes it.
struct Findings
{
    FileStore store;
    std::vector<FileStore::Finding> places;
};

/// Looks at paths relative to the root, and reads those that are folders with all below them.
/// Excluded ones are passed over, and those below another one. Where no folder is any more, the
/// watcher is told so.
Findings readAgain(const Tree& tree, const QStringList& paths);

} // namespace FileScan
