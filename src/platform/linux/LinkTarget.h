// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

namespace Platform
{

class MountTable;

/// Whether a symbolic link leads to something that is surely no directory, or to nothing. What lies
/// on a remote file system isn't touched, and counts as a directory.
/// \param parent the open directory that holds the link, `parentPath` its path without links.
bool linkLeadsToFile(int parent, const QByteArray& parentPath, const char* name,
                     const MountTable& mounts);

/// Whether the way to a path goes onto a remote file system, at the path itself or before it. Links
/// are followed; nothing remote is touched. False as well where the way ends before: at a name that
/// isn't there.
/// \param path in the form of `pathBytes`.
/// \param home in the same form and without links. A file system that holds it doesn't count.
bool pathLeadsToRemote(const QByteArray& path, const QByteArray& home, const MountTable& mounts);

} // namespace Platform
