// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FileChanges.h"

#include "DirectoryReader.h"
#include "FileScan.h"
#include "FileStore.h"

#include <QDir>
#include <QHash>
#include <QStringBuilder>
#include <QStringView>

#include <cstddef>
#include <optional>
#include <vector>

namespace
{

using Platform::TreeChange;

bool isArrival(const TreeChange& change)
{
    return change.action == Platform::FileAdded || change.action == Platform::FileRenamedNewName;
}

bool isDeparture(const TreeChange& change)
{
    return change.action == Platform::FileRemoved || change.action == Platform::FileRenamedOldName;
}

class Applier
{
public:
    explicit Applier(FileStore& store) : m_store(store) {}

    FileChanges::Outcome apply(const QVector<TreeChange>& changes);

private:
    void lookUp(const QVector<TreeChange>& changes);
    FileStore::Folder folderFor(QStringView rel);
    void add(const TreeChange& change);
    void remove(const TreeChange& change);
    std::optional<FileStore::Id>& entryAt(const TreeChange& change);

    static QString keyOf(const QString& rel);

    FileStore& m_store;
    QHash<QString, std::size_t> m_numbers; ///< of the places, by their paths
    std::vector<FileStore::Place> m_places;
    std::vector<std::optional<FileStore::Id>> m_entries; ///< at the places, as of now
    std::vector<FileStore::Id> m_removed;                ///< to be taken out in one go
    FileChanges::Outcome m_outcome;
};

FileChanges::Outcome Applier::apply(const QVector<TreeChange>& changes)
{
    lookUp(changes);
    for (const TreeChange& change : changes) {
        if (!m_numbers.contains(keyOf(change.rel)))
            continue;
        if (isArrival(change))
            add(change);
        else
            remove(change);
        if (m_outcome.needsScan)
            break;
    }
    m_store.remove(m_removed);
    return m_outcome;
}

/// Finds the entries of all changes in one walk over the list.
void Applier::lookUp(const QVector<TreeChange>& changes)
{
    for (const TreeChange& change : changes) {
        const bool concernsTheList = isArrival(change) || isDeparture(change);
        if (!concernsTheList || change.rel.isEmpty() || FileScan::isExcludedPath(change.rel) ||
            m_numbers.contains(keyOf(change.rel)))
            continue;
        m_numbers.insert(keyOf(change.rel), m_places.size());
        const qsizetype nameBegin = change.rel.lastIndexOf(QDir::separator()) + 1;
        m_places.push_back(
            {folderFor(QStringView(change.rel).first(nameBegin)), change.rel.mid(nameBegin)});
    }
    m_entries = m_store.find(m_places);
}

/// One that no scan has brought yet is added: what is told of its contents counts all the same.
FileStore::Folder Applier::folderFor(QStringView rel)
{
    FileStore::Folder folder = FileStore::Root;
    for (const QStringView name : rel.split(QDir::separator(), Qt::SkipEmptyParts)) {
        const std::optional<FileStore::Folder> known = m_store.childOf(folder, name);
        folder = known ? *known : m_store.addFolder(folder, name);
    }
    return folder;
}

void Applier::add(const TreeChange& change)
{
    const QString full = m_store.root() % QDir::separator() % change.rel;
    std::optional<FileStore::Id>& entry = entryAt(change);
    switch (Platform::kindOfPath(full, m_store.root())) {
    case Platform::PathKind::Missing:
        break;
    case Platform::PathKind::Directory:
        m_outcome.needsScan = true;
        break;
    case Platform::PathKind::File:
        if (entry)
            break;
        const FileStore::Place& place = m_places[m_numbers.value(keyOf(change.rel))];
        entry = m_store.append(place.folder, place.name, false);
        m_outcome.hasChanged = true;
        break;
    }
}

void Applier::remove(const TreeChange& change)
{
    std::optional<FileStore::Id>& entry = entryAt(change);
    if (!entry)
        return;
    if (m_store.isDir(*entry)) {
        // All that was below it has to go as well.
        m_outcome.needsScan = true;
        return;
    }
    m_removed.push_back(*entry);
    entry.reset();
    m_outcome.hasChanged = true;
}

std::optional<FileStore::Id>& Applier::entryAt(const TreeChange& change)
{
    return m_entries[m_numbers.value(keyOf(change.rel))];
}

/// The same for all paths that mean the same file.
QString Applier::keyOf(const QString& rel)
{
    return Platform::pathCaseSensitivity() == Qt::CaseSensitive ? rel : rel.toCaseFolded();
}

} // namespace

FileChanges::Outcome FileChanges::apply(FileStore& store, const QVector<TreeChange>& changes)
{
    return Applier(store).apply(changes);
}
