// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FoundItem.h"

namespace
{

/// Other reparse points, such as the folders of a cloud drive, are folders like any.
bool isLinkToDirectory(const WIN32_FIND_DATAW& found)
{
    return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           (found.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT ||
            found.dwReserved0 == IO_REPARSE_TAG_SYMLINK);
}

} // namespace

std::optional<Platform::DirectoryItem> Platform::itemOf(const WIN32_FIND_DATAW& found)
{
    // Unit by unit: a conversion would take a byte order mark for none of the name's own.
    QString name(reinterpret_cast<const QChar*>(found.cFileName));
    if (name == QLatin1String(".") || name == QLatin1String(".."))
        return std::nullopt;
    const bool isDir = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (isDir && isLinkToDirectory(found))
        return std::nullopt;
    return DirectoryItem{std::move(name), isDir, isDir};
}
