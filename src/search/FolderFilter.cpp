// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FolderFilter.h"

#include "Files.h"
#include "FolderTree.h"
#include "StorageManager.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>

const QStringList& FolderFilter::folders()
{
    load();
    return list();
}

bool FolderFilter::isActive()
{
    return !folders().isEmpty();
}

int FolderFilter::count()
{
    return static_cast<int>(folders().size());
}

void FolderFilter::setFolders(const QStringList& folders)
{
    load();
    take(folders);
    save();
}

bool FolderFilter::accepts(const QString& path)
{
    if (folders().isEmpty())
        return true;
    const qsizetype end = path.lastIndexOf(QDir::separator());
    return end >= 0 && tree().isUnderAny(tree().placeOf(QStringView(path).first(end)));
}

bool FolderFilter::isUnder(const QString& path, const QString& folder)
{
    if (folder.isEmpty())
        return false;
    if (!folder.endsWith(QDir::separator())) {
        // Looked at first, because it sorts out nearly every path without reading it.
        const bool hasBoundary =
            path.size() > folder.size() && path.at(folder.size()) == QDir::separator();
        if (!hasBoundary)
            return false;
    }
    return path.startsWith(folder, Qt::CaseInsensitive);
}

QString FolderFilter::nameOf(const QString& folder)
{
    const QString name = QDir(folder).dirName();
    return name.isEmpty() ? folder : name;
}

QString FolderFilter::filePath()
{
    return QDir(StorageManager::appDataDir()).filePath(QStringLiteral("folderfilter.json"));
}

QStringList FolderFilter::fromBytes(const QByteArray& bytes)
{
    QStringList folders;
    const QJsonArray values = QJsonDocument::fromJson(bytes).array();
    for (const auto value : values) {
        const QString folder = value.toString();
        if (!folder.isEmpty())
            folders.append(folder);
    }
    return folders;
}

QByteArray FolderFilter::toBytes(const QStringList& folders)
{
    return QJsonDocument(QJsonArray::fromStringList(folders)).toJson(QJsonDocument::Compact);
}

QStringList& FolderFilter::list()
{
    static QStringList paths;
    return paths;
}

const FolderTree& FolderFilter::tree()
{
    load();
    return mutableTree();
}

FolderTree& FolderFilter::mutableTree()
{
    static FolderTree tree;
    return tree;
}

void FolderFilter::take(const QStringList& folders)
{
    list() = folders;
    mutableTree() = FolderTree(folders);
}

void FolderFilter::load()
{
    if (s_loaded)
        return;
    // Set first, so that a file that is missing or broken is tried only once.
    s_loaded = true;
    take(fromBytes(readOwnFile(filePath(), MaxFileBytes)));
}

void FolderFilter::save()
{
    // Nothing to do about a failure: the choice holds for this process.
    replaceFile(filePath(), toBytes(list()));
}
