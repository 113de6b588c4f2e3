// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FileTypeIcon.h"

#include "ShellIcon.h"

#include <QString>

#include <shellapi.h>

QIcon Platform::fileTypeIcon(const QString& suffix, bool isDir)
{
    // Nothing needs to exist under these names.
    const QString name = isDir ? QStringLiteral("folder") : QStringLiteral("file") + suffix;
    return shellIcon(reinterpret_cast<LPCWSTR>(name.utf16()),
                     isDir ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_NORMAL,
                     SHGFI_USEFILEATTRIBUTES);
}
