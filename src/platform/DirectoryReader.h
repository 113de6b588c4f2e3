// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace Platform
{

class TreeWatcher;

/// What a directory holds under a name.
struct DirectoryItem
{
    QString name;
    bool isDir = false;
    bool enter = false; ///< a directory into which a walk may go on
};

/// What stands at a path.
enum class PathKind {
    Missing, ///< nothing, or nothing that a walk would list
    File,
    Directory
};

/// Lists the directories of one walk over a tree, as fast as the system allows. To be used by one
/// thread, whichever that is.
class DirectoryReader
{
public:
    using Visitor = std::function<void(DirectoryItem&&)>;

    DirectoryReader() = default;
    DirectoryReader(const DirectoryReader&) = delete;
    DirectoryReader& operator=(const DirectoryReader&) = delete;
    virtual ~DirectoryReader() = default;

    /// \param root where the walk begins.
    /// \param watcher of the same root, which must outlive the reader; or null. From then on it
    /// watches each directory that is listed, from just before it is read, so that nothing is
    /// missed. Whoever lists a directory then has to list all that he wants to know below it as
    /// well, as long as the reader lives: whatever isn't listed again is no longer watched.
    static std::unique_ptr<DirectoryReader> create(const QString& root,
                                                   TreeWatcher* watcher = nullptr);

    /// Visits what `directory` (the root or below it, with native separators) holds, in the order
    /// of the file system. Links to directories are not visited. \returns false if it can't be
    /// read.
    virtual bool list(const QString& directory, const Visitor& visit) = 0;

    /// What a walk would list at an absolute path, which lies below the root; with native
    /// separators. Sets no watch.
    virtual PathKind kindOf(const QString& path) = 0;
};

/// Name of the folder in a home directory in which programs keep their own files, which nobody
/// searches for.
QString programDataFolderName();

/// Whether two paths that differ in case alone mean the same file.
Qt::CaseSensitivity pathCaseSensitivity();

} // namespace Platform
