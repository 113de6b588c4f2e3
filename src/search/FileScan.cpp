// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FileScan.h"

#include "CaseFold.h"
#include "DirectoryReader.h"
#include "TreeWatcher.h"

#include <QDir>
#include <QLatin1String>
#include <QSet>
#include <QStringList>
#include <QStringView>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>
#include <vector>

namespace
{

// Large and of no interest to somebody who looks for a file of his own.
constexpr std::array<QLatin1String, 5> kExcludedNames = {
    QLatin1String("AppData"), QLatin1String("node_modules"), QLatin1String(".git"),
    QLatin1String("__pycache__"), QLatin1String(".venv")};

/// A walk over a tree, or parts of it.
class Walk
{
public:
    explicit Walk(const FileScan::Tree& tree)
        : m_tree(tree),
          m_reader(Platform::DirectoryReader::create(tree.root, tree.watcher)),
          m_found(tree.root)
    {}

    FileStore& found() { return m_found; }
    void readBelow(const QString& path, FileStore::Folder folder);
    FileStore::Finding lookAt(const QString& rel);

private:
    struct Due
    {
        QString path;
        FileStore::Folder folder;
    };

    FileStore::Folder folderFor(QStringView rel);

    const FileScan::Tree& m_tree;
    std::unique_ptr<Platform::DirectoryReader> m_reader;
    FileStore m_found;
};

void Walk::readBelow(const QString& path, FileStore::Folder folder)
{
    std::vector<Due> stack = {{path, folder}};
    Due walked;
    const Platform::DirectoryReader::Visitor visit = [&](Platform::DirectoryItem&& item) {
        // Here too, because a single directory can hold a million files.
        if (m_tree.cancel || (item.isDir && FileScan::isExcludedDir(item.name)))
            return;
        if (item.enter) {
            stack.push_back({FileStore::pathIn(walked.path, item.name),
                             m_found.addFolder(walked.folder, item.name)});
        }
        m_found.append(walked.folder, item.name, item.isDir);
    };
    while (!stack.empty() && !m_tree.cancel) {
        walked = std::move(stack.back());
        stack.pop_back();
        // One that can't be read is left out, like all that is below it.
        m_reader->list(walked.path, visit);
    }
}

FileStore::Finding Walk::lookAt(const QString& rel)
{
    const qsizetype nameBegin = rel.lastIndexOf(QDir::separator()) + 1;
    const QString name = rel.mid(nameBegin);
    const FileStore::Folder parent = folderFor(QStringView(rel).first(nameBegin));
    const QString path = FileStore::pathIn(m_tree.root, rel);
    const Platform::PathKind kind = m_reader->kindOf(path);
    FileStore::Finding finding{{parent, name}, std::nullopt};
    if (kind != Platform::PathKind::Missing)
        finding.entry = m_found.append(parent, name, kind == Platform::PathKind::Directory);
    if (kind == Platform::PathKind::Directory)
        readBelow(path, m_found.addFolder(parent, name));
    return finding;
}

FileStore::Folder Walk::folderFor(QStringView rel)
{
    FileStore::Folder folder = FileStore::Root;
    for (const QStringView name : rel.split(QDir::separator(), Qt::SkipEmptyParts)) {
        const auto known = m_found.childOf(folder, name);
        folder = known ? *known : m_found.addFolder(folder, name);
    }
    return folder;
}

/// Whether a folder on the way to the path is in the set.
bool isBelowAny(const QString& rel, const QSet<QString>& keys)
{
    const QString key = FileScan::keyOf(rel);
    for (qsizetype end = key.lastIndexOf(QDir::separator()); end > 0;
         end = key.lastIndexOf(QDir::separator(), end - 1)) {
        if (keys.contains(key.first(end)))
            return true;
    }
    return false;
}

} // namespace

bool FileScan::isExcludedDir(const QString& name)
{
    static const QString programDataName = Platform::programDataFolderName();
    const auto isSame = [&name](const auto& excluded) {
        return name.size() == excluded.size() && name.compare(excluded, Qt::CaseInsensitive) == 0;
    };
    return std::any_of(kExcludedNames.begin(), kExcludedNames.end(), isSame) ||
           isSame(programDataName);
}

bool FileScan::isExcludedPath(const QString& rel)
{
    const QStringList parts = rel.split(QDir::separator(), Qt::SkipEmptyParts);
    return std::any_of(parts.begin(), parts.end(), &FileScan::isExcludedDir);
}

QString FileScan::keyOf(const QString& path)
{
    return Platform::pathCaseSensitivity() == Qt::CaseSensitive ? path : CaseFold::keyOf(path);
}

FileStore FileScan::read(const Tree& tree, qsizetype expected)
{
    if (tree.root.isEmpty())
        return FileStore();
    Walk walk(tree);
    walk.found().reserve(expected);
    walk.readBelow(tree.root, FileStore::Root);
    walk.found().squeeze();
    return std::move(walk.found());
}

FileScan::Findings FileScan::readAgain(const Tree& tree, const QStringList& paths)
{
    QSet<QString> keys;
    for (const QString& rel : paths) {
        if (!isExcludedPath(rel))
            keys.insert(keyOf(rel));
    }
    Walk walk(tree);
    Findings findings;
    QStringList without; // a folder
    for (const QString& rel : paths) {
        if (tree.cancel)
            break;
        if (!keys.contains(keyOf(rel)) || isBelowAny(rel, keys))
            continue;
        findings.places.push_back(walk.lookAt(rel));
        const auto entry = findings.places.back().entry;
        if (!entry || !walk.found().isDir(*entry))
            without.append(rel);
    }
    // Only now, since what has been moved from there stays watched once its new place was read.
    if (tree.watcher) {
        for (const QString& rel : std::as_const(without))
            tree.watcher->forget(rel);
    }
    walk.found().squeeze();
    findings.store = std::move(walk.found());
    return findings;
}
