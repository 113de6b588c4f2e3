// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileStore.h"

#include <QDir>
#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVector>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

/// A tree of files in memory, and how the index reads it into a list of which the root is "/r".
namespace FileTree
{

/// A tree as a disk has it.
struct Tree
{
    QMap<QString, bool> entries; ///< whether each path is that of a folder

    QStringList in(const QString& folder) const
    {
        QStringList names;
        const QString begin = folder.isEmpty() ? folder : folder + '/';
        for (auto entry = entries.lowerBound(begin); entry != entries.end(); ++entry) {
            if (!entry.key().startsWith(begin))
                break;
            const QString name = entry.key().mid(begin.size());
            if (!name.isEmpty() && !name.contains('/'))
                names.append(name);
        }
        return names;
    }

    void remove(const QString& path)
    {
        entries.remove(path);
        entries.removeIf([&path](const auto& entry) { return entry.key().startsWith(path + '/'); });
    }

    QStringList folders() const
    {
        QStringList found{QString()};
        for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
            if (entry.value())
                found.append(entry.key());
        }
        return found;
    }
};

inline QString joined(const QString& folder, const QString& name)
{
    return folder.isEmpty() ? name : folder + '/' + name;
}

/// Puts all below a folder into a list, directory by directory.
inline void read(const Tree& tree, const QString& path, FileStore::Folder folder, FileStore& store)
{
    QVector<std::pair<QString, FileStore::Folder>> inner;
    for (const QString& name : tree.in(path)) {
        const bool isDir = tree.entries.value(joined(path, name));
        store.append(folder, name, isDir);
        if (isDir)
            inner.append({joined(path, name), store.addFolder(folder, name)});
    }
    for (const auto& [below, number] : inner)
        read(tree, below, number, store);
}

inline FileStore readAll(const Tree& tree)
{
    FileStore store("/r");
    read(tree, QString(), FileStore::Root, store);
    return store;
}

/// Looks at some paths, as the index does.
inline FileStore::Renewal renew(FileStore& store, const Tree& tree, const QStringList& paths)
{
    FileStore found("/r");
    std::vector<FileStore::Finding> findings;
    for (const QString& path : paths) {
        FileStore::Folder folder = FileStore::Root;
        QStringList way = path.split('/');
        const QString name = way.takeLast();
        for (const QString& step : std::as_const(way)) {
            const auto known = found.childOf(folder, step);
            folder = known ? *known : found.addFolder(folder, step);
        }
        FileStore::Finding finding{{folder, name}, std::nullopt};
        if (tree.entries.contains(path)) {
            const bool isDir = tree.entries.value(path);
            finding.entry = found.append(folder, name, isDir);
            if (isDir)
                read(tree, path, found.addFolder(folder, name), found);
        }
        findings.push_back(finding);
    }
    return store.renew(found, findings);
}

/// Those that don't lie below another one.
inline QStringList withoutNested(QStringList paths)
{
    paths.removeDuplicates();
    const QStringList all = paths;
    paths.removeIf([&all](const QString& path) {
        return std::any_of(all.begin(), all.end(),
                           [&path](const QString& above) { return path.startsWith(above + '/'); });
    });
    return paths;
}

/// As relative paths, folders with "/" at their end.
inline QStringList entriesIn(const FileStore& store)
{
    QStringList paths;
    for (FileStore::Id id = store.begin(); id != store.end(); id = store.next(id))
        paths.append(QDir::fromNativeSeparators(store.path(id).mid(3)) +
                     (store.isDir(id) ? "/" : ""));
    return paths;
}

inline QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

inline QStringList entriesOf(const Tree& tree)
{
    QStringList paths;
    for (auto entry = tree.entries.begin(); entry != tree.entries.end(); ++entry)
        paths.append(entry.key() + (entry.value() ? "/" : ""));
    return sorted(paths);
}

/// Every folder of the tree, and no other, is found by its way.
inline bool hasFoldersOf(const FileStore& store, const Tree& tree)
{
    QSet<FileStore::Folder> numbers;
    const QStringList folders = tree.folders();
    for (const QString& path : folders) {
        std::optional<FileStore::Folder> folder = FileStore::Root;
        for (const QString& step : path.split('/', Qt::SkipEmptyParts))
            folder = folder ? store.childOf(*folder, step) : std::nullopt;
        const QString expected = path.isEmpty() ? QString("/r") : "/r/" + path;
        if (!folder || QDir::fromNativeSeparators(store.folderPath(*folder)) != expected)
            return false;
        numbers.insert(*folder);
    }
    return numbers.size() == folders.size();
}

} // namespace FileTree
