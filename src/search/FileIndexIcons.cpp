// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FileIndex.h"
#include "FileTypeIcon.h"

#include <QDir>
#include <QHash>
#include <QLatin1String>

namespace
{

constexpr QLatin1String kFolderKey("<folder>");

QHash<QString, QIcon>& iconCache()
{
    static QHash<QString, QIcon> map;
    return map;
}

QString suffixOf(const FileIndex::Entry& entry)
{
    const QString name = FileIndex::nameOf(entry);
    const qsizetype dot = name.lastIndexOf('.');
    return dot > 0 ? name.mid(dot).toLower() : QString();
}

} // namespace

QIcon FileIndex::iconFor(const Entry& entry)
{
    const QString key = entry.isDir ? QString(kFolderKey) : suffixOf(entry);
    const auto known = iconCache().constFind(key);
    if (known != iconCache().cend())
        return known.value();
    const QIcon icon = Platform::fileTypeIcon(entry.isDir ? QString() : key, entry.isDir);
    return iconCache().insert(key, icon).value();
}

LauncherElement FileIndex::asElement(const Entry& entry)
{
    LauncherElement element;
    element.name = nameOf(entry);
    element.shortcutType = ItemType::File;
    element.value = entry.path;
    return element;
}

QString FileIndex::nameOf(const Entry& entry)
{
    return entry.path.mid(entry.path.lastIndexOf(QDir::separator()) + 1);
}
