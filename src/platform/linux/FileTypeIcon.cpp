// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FileTypeIcon.h"

#include "IconTheme.h"

#include <QMimeDatabase>

QIcon Platform::fileTypeIcon(const QString& suffix, bool isDir)
{
    if (isDir)
        return IconTheme::icon(QStringLiteral("folder"));
    // By the name alone: with a file of that name in the working directory the database would
    // look into it otherwise.
    const QMimeType type =
        QMimeDatabase().mimeTypeForFile("file" + suffix, QMimeDatabase::MatchExtension);
    const QIcon icon = IconTheme::icon(type.iconName());
    return icon.isNull() ? IconTheme::icon(type.genericIconName()) : icon;
}
