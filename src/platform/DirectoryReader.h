// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace Platform
{

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
    static std::unique_ptr<DirectoryReader> create(const QString& root);

    /// Visits what `directory` (the root or below it, with native separators) holds, in the order
    /// of the file system. Links to directories are not visited. \returns false if it can't be
    /// read.
    virtual bool list(const QString& directory, const Visitor& visit) = 0;
};

/// What a walk that begins at `root` would list at an absolute path, which lies below it; both with
/// native separators. Any thread.
PathKind kindOfPath(const QString& path, const QString& root);

/// Name of the folder in a home directory in which programs keep their own files, which nobody
/// searches for.
QString programDataFolderName();

/// Whether two paths that differ in case alone mean the same file.
Qt::CaseSensitivity pathCaseSensitivity();

} // namespace Platform
