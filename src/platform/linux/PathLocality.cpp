// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "PathLocality.h"

#include "DirectoryAccess.h"
#include "LinkTarget.h"
#include "MountTable.h"

#include <QDir>

namespace
{

/// Without links, or the mount that the home is on wouldn't be recognised.
const QByteArray& homePath()
{
    static const QByteArray s_home =
        Platform::pathBytes(QDir(QDir::homePath()).canonicalPath()).value_or(QByteArray());
    return s_home;
}

} // namespace

bool Platform::isLocalPath(const QString& path)
{
    if (path.startsWith(u':'))
        return true;
    // Not QDir::cleanPath: what ".." leads to behind a link is for the walk to find out.
    const QString absolute = path.startsWith(u'/') ? path : QDir::currentPath() + u'/' + path;
    const std::optional<QByteArray> bytes = pathBytes(absolute);
    if (path.isEmpty() || !bytes)
        return false;
    thread_local CurrentMounts mounts;
    if (mounts.look() == CurrentMounts::News::Unknown)
        return false;
    return !pathLeadsToRemote(*bytes, homePath(), mounts.table());
}
