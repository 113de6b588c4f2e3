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

} // namespace Platform
