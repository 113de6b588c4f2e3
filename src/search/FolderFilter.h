// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QtGlobal>

class FolderTree;

/// The folders to which the user has narrowed the file results, kept in "folderfilter.json" of the
/// data directory, which is read once per process. GUI thread; every failure is silent.
class FolderFilter
{
public:
    /// A larger file is not read but moved aside, as `moveFileAside` does.
    static constexpr qint64 MaxFileBytes = 16LL * 1024 * 1024;

    FolderFilter() = delete;

    /// The chosen folders, absolute and with native separators; empty means no narrowing.
    static const QStringList& folders();

    /// Whether results are narrowed at all.
    static bool isActive();

    /// How many folders are chosen.
    static int count();

    /// Replaces the chosen folders and writes the file at once.
    static void setFolders(const QStringList& folders);

    /// Whether a result may be shown: it is under a chosen folder, or none is chosen.
    static bool accepts(const QString& path);

    /// The chosen folders as a tree, which tells of folder after folder what `accepts` tells of the
    /// entries in it. Always the same object, with other content after `setFolders`.
    static const FolderTree& tree();

    /// Whether `path` lies below `folder`, whatever the case of either. A folder isn't under
    /// itself, unless it is a root that ends with a separator. Nothing is under an empty folder.
    static bool isUnder(const QString& path, const QString& folder);

    /// What a folder is called: its last component, or all of it if it is a root, which has none.
    static QString nameOf(const QString& folder);

    /// Full path of "folderfilter.json".
    static QString filePath();

    /// The folders in the content of a file. Never fails: anything but an array is no folders, and
    /// what is no text in it is left out.
    static QStringList fromBytes(const QByteArray& bytes);

    /// The content of the file for these folders.
    static QByteArray toBytes(const QStringList& folders);

private:
    static QStringList& list();
    /// The same folders, made for finding one.
    static FolderTree& mutableTree();
    static void take(const QStringList& folders);
    static void load();
    static void save();

    static inline bool s_loaded = false;
};
