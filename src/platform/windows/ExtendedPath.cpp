// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ExtendedPath.h"

#include <QDir>

QString Platform::extendedPath(const QString& path)
{
    // From here on the system neither unites doubled separators nor follows "..".
    const QString clean = QDir::toNativeSeparators(QDir::cleanPath(path));
    if (clean.startsWith(QLatin1String("\\\\?\\")) || clean.startsWith(QLatin1String("\\\\.\\")))
        return clean;
    if (clean.startsWith(QLatin1String("\\\\")))
        return QStringLiteral("\\\\?\\UNC\\") + clean.mid(2);
    // "C:name" is meant from the current directory of that drive.
    const bool isAbsolute = clean.mid(1, 2) == QLatin1String(":\\");
    return isAbsolute ? QStringLiteral("\\\\?\\") + clean : path;
}
