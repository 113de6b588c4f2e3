// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FileChanges.h"

#include "DirectoryReader.h"
#include "FileScan.h"
#include "FileStore.h"

#include <QDir>
#include <QHash>
#include <QStringList>
#include <QStringView>

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace
{

using Platform::TreeChange;

class Applier
{
public:
    explicit Applier(FileStore& store)
        : m_store(store), m_reader(Platform::DirectoryReader::create(store.root()))
    {}

    FileChanges::Outcome apply(const QVector<TreeChange>& changes);

private:
    using Entry = std::optional<FileStore::Id>;

    void lookUp(const QVector<TreeChange>& changes);
    std::optional<FileStore::Folder> knownFolder(QStringView rel) const;
    FileStore::Folder folderFor(QStringView rel);
    void add(const TreeChange& change, Entry& entry);
    void remove(Entry& entry);
    void addWhatStands(const QVector<TreeChange>& changes);

    static QStringView folderOf(const QString& rel);
    static QString nameOf(const QString& rel);

    FileStore& m_store;
    std::unique_ptr<Platform::DirectoryReader> m_reader;
    QHash<QString, Entry> m_entries;      ///< at the places of the changes, as of now
    std::vector<FileStore::Id> m_removed; ///< to be taken out in one go
    FileChanges::Outcome m_outcome;
};

FileChanges::Outcome Applier::apply(const QVector<TreeChange>& changes)
{
    lookUp(changes);
    for (const TreeChange& change : changes) {
        const auto entry = m_entries.find(FileScan::keyOf(change.rel));
        if (entry == m_entries.end())
            continue;
        if (FileChanges::isArrival(change))
            add(change, *entry);
        else if (FileChanges::isDeparture(change))
            remove(*entry);
        if (m_outcome.needsReading)
            break;
    }
    if (!m_outcome.needsReading)
        addWhatStands(changes);
    m_store.remove(m_removed);
    return m_outcome;
}

/// Finds the entries of all changes in one walk over the list.
void Applier::lookUp(const QVector<TreeChange>& changes)
{
    QStringList keys;
    std::vector<FileStore::Place> places;
    for (const TreeChange& change : changes) {
        const bool concernsTheList =
            FileChanges::isArrival(change) || FileChanges::isDeparture(change);
        const QString key = FileScan::keyOf(change.rel);
        if (!concernsTheList || change.rel.isEmpty() || FileScan::isExcludedPath(change.rel) ||
            m_entries.contains(key))
            continue;
        m_entries.insert(key, std::nullopt);
        // An unknown folder holds no entries; of many, all is gone again by now.
        if (const auto folder = knownFolder(folderOf(change.rel))) {
            keys.append(key);
            places.push_back({*folder, nameOf(change.rel)});
        }
    }
    const std::vector<Entry> found = m_store.find(places);
    for (std::size_t i = 0; i < found.size(); ++i)
        m_entries[keys.at(static_cast<qsizetype>(i))] = found[i];
}

std::optional<FileStore::Folder> Applier::knownFolder(QStringView rel) const
{
    std::optional<FileStore::Folder> folder = FileStore::Root;
    for (const QStringView name : rel.split(QDir::separator(), Qt::SkipEmptyParts)) {
        folder = m_store.childOf(*folder, name);
        if (!folder)
            break;
    }
    return folder;
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

void Applier::add(const TreeChange& change, Entry& entry)
{
    switch (m_reader->kindOf(FileStore::pathIn(m_store.root(), change.rel))) {
    case Platform::PathKind::Missing:
        break;
    case Platform::PathKind::Directory:
        m_outcome.needsReading = true;
        break;
    case Platform::PathKind::File:
        if (entry) {
            // In the place of a folder, of which all has to go.
            m_outcome.needsReading = m_store.isDir(*entry);
            break;
        }
        entry = m_store.append(folderFor(folderOf(change.rel)), nameOf(change.rel), false);
        m_outcome.hasChanged = true;
        break;
    }
}

void Applier::remove(Entry& entry)
{
    if (!entry)
        return;
    if (m_store.isDir(*entry)) {
        // All that was below it has to go as well.
        m_outcome.needsReading = true;
        return;
    }
    m_removed.push_back(*entry);
    entry.reset();
    m_outcome.hasChanged = true;
}

/// The order of changes is no more than a hint: of two files that changed places, a name may have
/// gone last of all and be there all the same.
void Applier::addWhatStands(const QVector<TreeChange>& changes)
{
    for (const TreeChange& change : changes) {
        const auto entry = m_entries.find(FileScan::keyOf(change.rel));
        if (entry != m_entries.end() && !*entry && FileChanges::isDeparture(change))
            add(change, *entry);
    }
}

QStringView Applier::folderOf(const QString& rel)
{
    return QStringView(rel).first(rel.lastIndexOf(QDir::separator()) + 1);
}

QString Applier::nameOf(const QString& rel)
{
    return rel.mid(rel.lastIndexOf(QDir::separator()) + 1);
}

} // namespace

bool FileChanges::isArrival(const TreeChange& change)
{
    return change.action == Platform::FileAdded || change.action == Platform::FileRenamedNewName;
}

bool FileChanges::isDeparture(const TreeChange& change)
{
    return change.action == Platform::FileRemoved || change.action == Platform::FileRenamedOldName;
}

FileChanges::Outcome FileChanges::apply(FileStore& store, const QVector<TreeChange>& changes)
{
    return Applier(store).apply(changes);
}
