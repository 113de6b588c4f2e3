// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FileScan.h"

#include "DirectoryReader.h"

#include <QDir>
#include <QLatin1String>
#include <QStringBuilder>
#include <QStringList>

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

struct Due
{
    QString path;
    FileStore::Folder folder;
};

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

FileStore FileScan::read(const QString& root, qsizetype expected, Platform::TreeWatcher* watcher,
                         const std::atomic<bool>& cancel)
{
    FileStore found(root);
    if (root.isEmpty())
        return found;
    found.reserve(expected);
    const std::unique_ptr<Platform::DirectoryReader> reader =
        Platform::DirectoryReader::create(root, watcher);
    std::vector<Due> stack = {{root, FileStore::Root}};
    Due walked;
    const Platform::DirectoryReader::Visitor visit = [&](Platform::DirectoryItem&& item) {
        // Here too, because a single directory can hold a million files.
        if (cancel || (item.isDir && isExcludedDir(item.name)))
            return;
        if (item.enter) {
            stack.push_back({walked.path % QDir::separator() % item.name,
                             found.addFolder(walked.folder, item.name)});
        }
        found.append(walked.folder, item.name, item.isDir);
    };
    while (!stack.empty() && !cancel) {
        walked = std::move(stack.back());
        stack.pop_back();
        // One that can't be read is left out, like all that is below it.
        reader->list(walked.path, visit);
    }
    found.squeeze();
    return found;
}
