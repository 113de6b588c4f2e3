// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FolderTree.h"

#include <QByteArray>
#include <QString>
#include <QStringView>
#include <QtGlobal>

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

class NameMatcher;

/// The names of very many files and folders, as a list in which each knows its folder by number. Of
/// a path only its last name is kept, in few bytes and next to those of its neighbours in the list,
/// so that a search takes little more time than the memory does to hand them over.
///
/// One thread at a time.
class FileStore
{
public:
    /// A folder into which entries can be put. A number stays valid until folders are renumbered.
    using Folder = quint32;
    /// Place in the list, which counts on with gaps; valid until entries are removed.
    using Id = quint32;
    static constexpr int IdBits = 29;

    static constexpr Folder Root = 0;

    /// An entry that a search has found. In few bytes, because there may be a million.
    struct Hit
    {
        Id id : IdBits;
        quint32 isDir : 1;
        quint32 begins : 1;  ///< the lower-case name begins with what was looked for
        quint32 isWhole : 1; ///< and is nothing else
    };

    /// What a path consists of.
    struct Place
    {
        Folder folder;
        QString name;
    };

    /// What was found at a place that was looked at again.
    struct Finding
    {
        Place place;             ///< in the numbers of the list in which the rest was put
        std::optional<Id> entry; ///< in that list; none if nothing stands there
    };

    /// What a renewal has done to a list.
    struct Renewal
    {
        bool hasChanged = false;           ///< entries came or went
        bool areFoldersRenumbered = false; ///< the numbers of folders mean others now
    };

    /// The path of what lies in a folder; with native separators.
    static QString pathIn(const QString& folder, QStringView name);

    /// \param root path of the folder with the number `Root`, with native separators.
    explicit FileStore(QString root = QString());

    const QString& root() const { return m_root; }
    qsizetype size() const { return m_size; }

    /// \param parent the root or a folder that was added before.
    Folder addFolder(Folder parent, QStringView name);

    /// Puts an entry to the end of the list.
    Id append(Folder folder, QStringView name, bool isDir);

    /// All numbers of folders lie below it, that of each above that of its parent. Some may be
    /// those of folders that are gone.
    Folder folderCount() const { return static_cast<Folder>(m_folders.size()); }
    /// The root has itself for a parent, and one that is gone none at all.
    Folder parentOf(Folder folder) const { return m_folders[folder].parent; }
    static constexpr Folder NoFolder = ~Folder(0);
    QString folderName(Folder folder) const;
    QString folderPath(Folder folder) const;

    /// Puts the places of the folders in a tree to the end of a list that has those of the first
    /// ones already.
    void addPlaces(const FolderTree& tree, std::vector<FolderTree::Place>& places) const;

    /// The folder of that name in another one; none if no such folder was added. In the way of the
    /// system, case counts or doesn't, but one that is spelled alike is preferred.
    std::optional<Folder> childOf(Folder parent, QStringView name) const;

    // Of an entry.
    QString path(Id id) const;
    QString name(Id id) const;      ///< as it is written
    QString lowerName(Id id) const; ///< the same as `QString::toLower` makes of it
    bool isDir(Id id) const { return recordOf(id).isDir; }
    Folder folderOf(Id id) const;

    /// The first entry; equal to `end()` if there is none.
    Id begin() const { return 0; }
    /// The entry behind another one, in the order of the list.
    Id next(Id id) const;
    /// Behind the last one.
    Id end() const { return static_cast<Id>(m_chunks.size()) << ChunkBits; }
    /// The list must not be empty.
    Id last() const;

    /// For each of the places the first entry there, in one walk over the list. In the way of the
    /// system, case counts or doesn't, but one that is spelled alike is preferred.
    std::vector<std::optional<Id>> find(std::span<const Place> places) const;

    /// Takes entries from the list; the others keep their order.
    void remove(std::vector<Id> ids);

    /// Brings the list up to date with what was found where it was looked again: what it knows of
    /// these places and of all below them gives way to that. What is known already stays where it
    /// is in the list, folder by folder; the rest comes to its end. \param found all that stands at
    /// the places and below them, directory by directory, and nothing else; with the same root.
    /// What this list has no use for is left in it. \param findings none of their places lies below
    /// another one or is the root.
    Renewal renew(FileStore& found, std::span<const Finding> findings);

    /// How many entries lie in each folder itself, by the folders' numbers.
    std::vector<quint32> countsByFolder() const;

    /// All entries with a lower-case name in which the matcher finds what it looks for.
    void search(const NameMatcher& matcher, std::vector<Hit>& hits) const;

    /// Keeps those of the hits of which that is still true.
    void narrow(const NameMatcher& matcher, std::vector<Hit>& hits) const;

    /// Keeps the list of pieces from being moved before so many entries have come.
    void reserve(qsizetype entries);

    /// Gives back memory that was taken in expectation of more entries.
    void squeeze();

private:
    // Short pieces, so that removing an entry moves little, and adding one never moves all.
    static constexpr int ChunkBits = 12;
    static constexpr Id ChunkSize = Id(1) << ChunkBits;

    struct Chunk
    {
        std::vector<char> text;      ///< a record for each entry, then padding for the matcher
        std::vector<quint32> begins; ///< of the records
        std::vector<Folder> folders;
    };

    /// The lower-case name, behind which stands the name as it is written if that is another.
    struct Record
    {
        const char* lower;
        qsizetype lowerSize;
        const char* written;
        qsizetype writtenSize;
        bool isDir;
    };

    struct FolderRecord
    {
        Folder parent;
        quint32 nameBegin; ///< in `m_folderNames`
        quint32 hash;      ///< of the name; the same for names that are the same to the system
        Folder next;       ///< in the same bucket; the root, which is in none, ends it
    };

    class PlaceTable;
    class Renewer;

    const Chunk& chunkOf(Id id) const { return m_chunks[id >> ChunkBits]; }
    static std::size_t indexIn(Id id) { return id & (ChunkSize - 1); }
    static Id idOf(std::size_t chunk, std::size_t index)
    {
        return static_cast<Id>(chunk << ChunkBits | index);
    }
    static const char* recordAt(const Chunk& chunk, std::size_t index);
    static bool isHit(const char* record, Id id, const NameMatcher& matcher, Hit* hit);
    static void appendRecord(Chunk& chunk, QStringView name, bool isDir);
    static void keepOnly(Chunk& chunk, const std::vector<bool>& isRemoved);
    static void join(Chunk& chunk, const Chunk& next);
    void joinSmallChunks();
    static void squeeze(Chunk& chunk);
    Record recordOf(Id id) const;
    std::string_view bytesOf(Id id) const;
    std::string_view writtenName(Id id) const;

    std::string_view folderBytes(Folder folder) const;
    Folder addFolder(Folder parent, std::string_view name, quint32 hash);
    std::optional<Folder> childOf(Folder parent, std::string_view name, quint32 hash) const;
    std::size_t bucketOf(Folder parent, quint32 hash) const;
    void putIntoBucket(Folder folder);
    void takeFromBucket(Folder folder);
    void growBuckets();
    void bury(Folder folder);
    bool dropBuried();

    QString m_root;
    qsizetype m_size = 0;
    std::vector<Chunk> m_chunks;
    std::vector<FolderRecord> m_folders;
    std::vector<char> m_folderNames;
    std::vector<Folder> m_buckets; ///< the first folder in each; as many as a power of two
    std::size_t m_buried = 0;      ///< numbers of folders that are gone
};
