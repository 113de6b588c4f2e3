// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "platform/ShellLaunch.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace
{

constexpr QLatin1String kEntrySuffix(".desktop");
constexpr QLatin1String kEntriesFolder("applications");

/// The file of desktop entry `id` below `folder`; empty if there is none. The id is the path below
/// the folder, with a dash for each slash, so a dash may be the one or the other.
QString findBelow(const QDir& folder, const QString& id)
{
    if (QFileInfo(folder, id).isFile())
        return folder.absoluteFilePath(id);
    for (qsizetype dash = id.indexOf(QLatin1Char('-')); dash > 0;
         dash = id.indexOf(QLatin1Char('-'), dash + 1)) {
        const QString name = id.left(dash);
        // No folder of entries is hidden, and "." and ".." would lead out of the tree.
        if (name.startsWith(QLatin1Char('.')) || !QFileInfo(folder, name).isDir())
            continue;
        QString found = findBelow(QDir(folder.filePath(name)), id.mid(dash + 1));
        if (!found.isEmpty())
            return found;
    }
    return {};
}

QString entryPath(const QString& value)
{
    if (!value.endsWith(kEntrySuffix))
        return {};
    if (value.contains(QLatin1Char('/'))) {
        const QFileInfo file(value);
        return file.isFile() ? file.absoluteFilePath() : QString();
    }
    // The user's own folder comes first in the list, so that it hides entries of the system.
    const QStringList dataFolders =
        QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation);
    for (const QString& dataFolder : dataFolders) {
        QString found = findBelow(QDir(dataFolder + QLatin1Char('/') + kEntriesFolder), value);
        if (!found.isEmpty())
            return found;
    }
    return {};
}

} // namespace

bool Platform::launchShellItem(const QString& value)
{
    const QString path = entryPath(value);
    return !path.isEmpty() &&
           QProcess::startDetached(QStringLiteral("gio"), {QStringLiteral("launch"), path},
                                   QString(), nullptr);
}
