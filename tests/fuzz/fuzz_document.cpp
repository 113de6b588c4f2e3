// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "StorageManager.h"

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace
{

void require(bool condition)
{
    if (!condition)
        std::abort();
}

void writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    require(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

} // namespace

/// Whatever lies in "data.json": it loads as a usable document, nothing that might be rescued is
/// lost, and what is loaded comes back equal after a save.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("data.json"));
    const QString quarantined = path + QStringLiteral(".bak");
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QFile::remove(quarantined);
    writeFile(path, input);

    const LauncherData loaded = StorageManager::loadData(path);
    require(!loaded.categories.isEmpty());
    require(loaded.categories.contains(loaded.defaultCategory));
    for (const QList<LauncherElement>& elements : loaded.sectionElements) {
        for (const LauncherElement& element : elements)
            require(!element.id.isEmpty());
    }
    for (const SectionTemplate& sectionTemplate : loaded.templates) {
        for (const LauncherElement& element : sectionTemplate.items)
            require(element.id.isEmpty());
    }

    const bool isMoved = QFile::exists(quarantined);
    require(QFile::exists(path) != isMoved);
    require(readFile(isMoved ? quarantined : path) == input);

    StorageManager::saveData(path, loaded);
    const QByteArray saved = readFile(path);
    require(StorageManager::loadData(path) == loaded);
    StorageManager::saveData(path, loaded);
    require(readFile(path) == saved);
    return 0;
}
