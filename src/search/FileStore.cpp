// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FileStore.h"

#include "FileStorePlaces.h"
#include "NameBytes.h"
#include "NameMatcher.h"

#include <QDir>
#include <QStringBuilder>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

namespace
{

using Header = quint32; // of a record: size of the lower-case name, and in the lowest bit its kind

using StoredNames::hashOf;
using StoredNames::isSame;
using StoredNames::textOf;
using StoredNames::viewOf;

constexpr std::size_t kFewestBuckets = 16;

bool isAscii(QStringView name)
{
    char16_t all = 0;
    for (const QChar unit : name)
        all |= unit.unicode();
    return all < 0x80;
}

char asciiLower(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + ('a' - 'A')) : letter;
}

Header headerAt(const char* record)
{
    Header header = 0;
    std::memcpy(&header, record, sizeof(header));
    return header;
}

qsizetype sizeIn(Header header)
{
    return header >> 1;
}

} // namespace

FileStore::FileStore(QString root) : m_root(std::move(root)), m_buckets(kFewestBuckets, Root)
{
    m_folders.push_back({Root, 0, 0, Root});
}

QString FileStore::pathIn(const QString& folder, QStringView name)
{
    const QChar separator = QDir::separator();
    if (folder.endsWith(separator)) // the root of a file system
        return folder % name;
    return folder % separator % name;
}

FileStore::Folder FileStore::addFolder(Folder parent, QStringView name)
{
    const QByteArray bytes = NameBytes::fromText(name);
    return addFolder(parent, viewOf(bytes), hashOf(viewOf(bytes)));
}

FileStore::Folder FileStore::addFolder(Folder parent, std::string_view name, quint32 hash)
{
    const auto folder = folderCount();
    m_folders.push_back({parent, static_cast<quint32>(m_folderNames.size()), hash, Root});
    m_folderNames.insert(m_folderNames.end(), name.begin(), name.end());
    if (m_folders.size() > m_buckets.size())
        growBuckets();
    else
        putIntoBucket(folder);
    return folder;
}

std::string_view FileStore::folderBytes(Folder folder) const
{
    const std::size_t begin = m_folders[folder].nameBegin;
    const std::size_t end =
        folder + 1 < folderCount() ? m_folders[folder + 1].nameBegin : m_folderNames.size();
    return {m_folderNames.data() + begin, end - begin};
}

QString FileStore::folderName(Folder folder) const
{
    return textOf(folderBytes(folder));
}

QString FileStore::folderPath(Folder folder) const
{
    std::vector<Folder> way;
    for (; folder != Root; folder = parentOf(folder))
        way.push_back(folder);
    QString path = m_root;
    std::reverse(way.begin(), way.end());
    for (const Folder step : way)
        path = pathIn(path, folderName(step));
    return path;
}

void FileStore::addPlaces(const FolderTree& tree, std::vector<FolderTree::Place>& places) const
{
    if (places.empty()) {
        // The root of a file system ends with a separator, behind which no name of it lies.
        const bool endsWithName = !m_root.endsWith(QDir::separator());
        places.push_back(tree.placeOf(QStringView(m_root).chopped(endsWithName ? 0 : 1)));
    }
    // Parents have the lower numbers.
    for (auto folder = static_cast<Folder>(places.size()); folder < folderCount(); ++folder) {
        if (parentOf(folder) == NoFolder) {
            places.emplace_back();
            continue;
        }
        const FolderTree::Place parent = places[parentOf(folder)];
        places.push_back(tree.hasNothingBelow(parent) ? FolderTree::Place{parent.node, false}
                                                      : tree.below(parent, folderName(folder)));
    }
}

std::optional<FileStore::Folder> FileStore::childOf(Folder parent, QStringView name) const
{
    const QByteArray bytes = NameBytes::fromText(name);
    return childOf(parent, viewOf(bytes), hashOf(viewOf(bytes)));
}

std::optional<FileStore::Folder> FileStore::childOf(Folder parent, std::string_view name,
                                                    quint32 hash) const
{
    std::optional<Folder> child;
    for (Folder f = m_buckets[bucketOf(parent, hash)]; f != Root; f = m_folders[f].next) {
        if (m_folders[f].hash != hash || parentOf(f) != parent)
            continue;
        if (folderBytes(f) == name)
            return f;
        if (isSame(folderBytes(f), name))
            child = f;
    }
    return child;
}

std::size_t FileStore::bucketOf(Folder parent, quint32 hash) const
{
    constexpr quint32 Factor = 0x85ebca6b; // odd, without a pattern in its bits
    quint32 mixed = (hash ^ parent) * Factor;
    mixed ^= mixed >> 15;
    return mixed & (m_buckets.size() - 1);
}

void FileStore::putIntoBucket(Folder folder)
{
    FolderRecord& record = m_folders[folder];
    Folder& first = m_buckets[bucketOf(record.parent, record.hash)];
    record.next = first;
    first = folder;
}

void FileStore::takeFromBucket(Folder folder)
{
    const FolderRecord& record = m_folders[folder];
    Folder* link = &m_buckets[bucketOf(record.parent, record.hash)];
    while (*link != folder)
        link = &m_folders[*link].next;
    *link = record.next;
}

/// So that there are as many as folders, all of which it puts into their buckets.
void FileStore::growBuckets()
{
    std::size_t count = kFewestBuckets;
    while (count < m_folders.size())
        count *= 2;
    m_buckets.assign(count, Root);
    for (Folder folder = Root + 1; folder < folderCount(); ++folder) {
        if (parentOf(folder) != NoFolder)
            putIntoBucket(folder);
    }
}

FileStore::Id FileStore::append(Folder folder, QStringView name, bool isDir)
{
    if (m_chunks.empty() || m_chunks.back().begins.size() == ChunkSize) {
        if (!m_chunks.empty())
            squeeze(m_chunks.back());
        m_chunks.emplace_back().text.resize(NameMatcher::Padding);
    }
    Chunk& chunk = m_chunks.back();
    appendRecord(chunk, name, isDir);
    chunk.folders.push_back(folder);
    ++m_size;
    return idOf(m_chunks.size() - 1, chunk.begins.size() - 1);
}

void FileStore::appendRecord(Chunk& chunk, QStringView name, bool isDir)
{
    QByteArray written;
    QByteArray lower;
    if (isAscii(name)) {
        written = name.toLatin1();
        lower = written;
        std::transform(lower.begin(), lower.end(), lower.begin(), &asciiLower);
    } else {
        written = NameBytes::fromText(name);
        lower = NameBytes::fromText(name.toString().toLower());
    }
    if (lower == written)
        written.clear();
    const Header header = static_cast<Header>(lower.size()) << 1 | (isDir ? 1 : 0);
    const std::size_t begin = chunk.text.size() - NameMatcher::Padding;
    chunk.text.resize(chunk.text.size() + sizeof(header) +
                      static_cast<std::size_t>(lower.size() + written.size()));
    char* to = chunk.text.data() + begin;
    std::memcpy(to, &header, sizeof(header));
    to = std::copy(lower.begin(), lower.end(), to + sizeof(header));
    std::copy(written.begin(), written.end(), to);
    chunk.begins.push_back(static_cast<quint32>(begin));
}

const char* FileStore::recordAt(const Chunk& chunk, std::size_t index)
{
    return chunk.text.data() + chunk.begins[index];
}

FileStore::Record FileStore::recordOf(Id id) const
{
    const std::string_view bytes = bytesOf(id);
    const char* end = bytes.data() + bytes.size();
    const Header header = headerAt(bytes.data());
    const char* lower = bytes.data() + sizeof(Header);
    const char* written = lower + sizeIn(header);
    if (written == end)
        written = lower;
    return {lower, sizeIn(header), written, end - written, (header & 1) != 0};
}

QString FileStore::path(Id id) const
{
    return pathIn(folderPath(folderOf(id)), name(id));
}

QString FileStore::name(Id id) const
{
    const Record record = recordOf(id);
    return NameBytes::toText(record.written, record.writtenSize);
}

std::string_view FileStore::writtenName(Id id) const
{
    const Record record = recordOf(id);
    return {record.written, static_cast<std::size_t>(record.writtenSize)};
}

/// All that the list keeps of an entry but its folder.
std::string_view FileStore::bytesOf(Id id) const
{
    const Chunk& chunk = chunkOf(id);
    const std::size_t index = indexIn(id);
    const std::size_t end = index + 1 < chunk.begins.size()
                                ? chunk.begins[index + 1]
                                : chunk.text.size() - NameMatcher::Padding;
    return {recordAt(chunk, index), end - chunk.begins[index]};
}

QString FileStore::lowerName(Id id) const
{
    const Record record = recordOf(id);
    return NameBytes::toText(record.lower, record.lowerSize);
}

FileStore::Folder FileStore::folderOf(Id id) const
{
    return chunkOf(id).folders[indexIn(id)];
}

FileStore::Id FileStore::next(Id id) const
{
    const bool isLastOfChunk = indexIn(id) + 1 == chunkOf(id).begins.size();
    return isLastOfChunk ? idOf((id >> ChunkBits) + 1, 0) : id + 1;
}

FileStore::Id FileStore::last() const
{
    return idOf(m_chunks.size() - 1, m_chunks.back().begins.size() - 1);
}

std::vector<std::optional<FileStore::Id>> FileStore::find(std::span<const Place> places) const
{
    std::vector<std::optional<Id>> found(places.size());
    std::vector<bool> isSpelledAlike(places.size());
    PlaceTable table(m_folders.size());
    for (const Place& place : places)
        table.add(place.folder, place.name);
    for (std::size_t c = 0; c < m_chunks.size(); ++c) {
        const std::vector<Folder>& folders = m_chunks[c].folders;
        Folder folder = NoFolder;
        bool isWanted = false;
        for (std::size_t i = 0; i < folders.size(); ++i) {
            // Entries come folder by folder, so that most need no look into the table.
            if (folders[i] != folder) {
                folder = folders[i];
                isWanted = table.hasIn(folder);
            }
            if (!isWanted)
                continue;
            const Id id = idOf(c, i);
            table.visit(folders[i], writtenName(id), [&](std::size_t place, bool isAlike) {
                if (found[place] && (isSpelledAlike[place] || !isAlike))
                    return;
                found[place] = id;
                isSpelledAlike[place] = isAlike;
            });
        }
    }
    return found;
}

void FileStore::remove(std::vector<Id> ids)
{
    if (ids.empty())
        return;
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    for (auto id = ids.begin(); id != ids.end();) {
        Chunk& chunk = m_chunks[*id >> ChunkBits];
        const Id behind = ((*id >> ChunkBits) + 1) << ChunkBits;
        std::vector<bool> isRemoved(chunk.begins.size());
        for (; id != ids.end() && *id < behind; ++id)
            isRemoved[indexIn(*id)] = true;
        keepOnly(chunk, isRemoved);
    }
    m_size -= static_cast<qsizetype>(ids.size());
    joinSmallChunks();
}

/// What lies between two of those removed moves at once.
void FileStore::keepOnly(Chunk& chunk, const std::vector<bool>& isRemoved)
{
    const std::size_t count = isRemoved.size();
    const auto beginOf = [&](std::size_t index) {
        return index < count ? std::size_t(chunk.begins[index])
                             : chunk.text.size() - NameMatcher::Padding;
    };
    std::size_t kept = 0;
    std::size_t to = 0;
    for (std::size_t first = 0; first < count;) {
        if (isRemoved[first]) {
            ++first;
            continue;
        }
        std::size_t behind = first;
        while (behind < count && !isRemoved[behind])
            ++behind;
        const std::size_t from = beginOf(first);
        const std::size_t size = beginOf(behind) - from;
        std::memmove(chunk.text.data() + to, chunk.text.data() + from, size);
        for (; first < behind; ++first, ++kept) {
            chunk.begins[kept] = static_cast<quint32>(chunk.begins[first] - (from - to));
            chunk.folders[kept] = chunk.folders[first];
        }
        to += size;
    }
    chunk.begins.resize(kept);
    chunk.folders.resize(kept);
    chunk.text.resize(to + NameMatcher::Padding);
    if (chunk.text.size() < chunk.text.capacity() / 2)
        squeeze(chunk);
}

/// Puts the entries of the next chunk to the end of this one.
void FileStore::join(Chunk& chunk, const Chunk& next)
{
    const auto shift = static_cast<quint32>(chunk.text.size() - NameMatcher::Padding);
    chunk.text.resize(shift);
    chunk.text.insert(chunk.text.end(), next.text.begin(), next.text.end());
    for (const quint32 begin : next.begins)
        chunk.begins.push_back(begin + shift);
    chunk.folders.insert(chunk.folders.end(), next.folders.begin(), next.folders.end());
}

/// Keeps the list from becoming one of a few entries here and there, each with the memory of a
/// whole chunk.
void FileStore::joinSmallChunks()
{
    std::size_t kept = 0;
    for (Chunk& chunk : m_chunks) {
        if (chunk.begins.empty())
            continue;
        if (kept > 0 && m_chunks[kept - 1].begins.size() + chunk.begins.size() <= ChunkSize / 2) {
            join(m_chunks[kept - 1], chunk);
            continue;
        }
        if (&m_chunks[kept] != &chunk)
            m_chunks[kept] = std::move(chunk);
        ++kept;
    }
    m_chunks.resize(kept);
}

std::vector<quint32> FileStore::countsByFolder() const
{
    std::vector<quint32> counts(m_folders.size());
    for (const Chunk& chunk : m_chunks) {
        for (const Folder folder : chunk.folders)
            ++counts[folder];
    }
    return counts;
}

inline bool FileStore::isHit(const char* record, Id id, const NameMatcher& matcher, Hit* hit)
{
    const Header header = headerAt(record);
    const NameMatcher::Match match = matcher.matchIn(record + sizeof(Header), sizeIn(header));
    *hit = {id & ((Id(1) << IdBits) - 1), header & 1, match.begins,
            match.begins && sizeIn(header) == matcher.size()};
    return match.isThere;
}

// Hits are written in any case and kept by counting: a branch on hit or miss would be mispredicted
// half of the time.

void FileStore::search(const NameMatcher& matcher, std::vector<Hit>& hits) const
{
    hits.resize(static_cast<std::size_t>(m_size));
    Hit* hit = hits.data();
    for (std::size_t c = 0; c < m_chunks.size(); ++c) {
        const char* text = m_chunks[c].text.data();
        Id id = idOf(c, 0);
        for (const quint32 begin : m_chunks[c].begins)
            hit += isHit(text + begin, id++, matcher, hit) ? 1 : 0;
    }
    hits.resize(static_cast<std::size_t>(hit - hits.data()));
}

void FileStore::narrow(const NameMatcher& matcher, std::vector<Hit>& hits) const
{
    Hit* hit = hits.data();
    for (const Hit before : hits) {
        const char* record = recordAt(chunkOf(before.id), indexIn(before.id));
        hit += isHit(record, before.id, matcher, hit) ? 1 : 0;
    }
    hits.resize(static_cast<std::size_t>(hit - hits.data()));
}

void FileStore::reserve(qsizetype entries)
{
    m_chunks.reserve(static_cast<std::size_t>(entries) / ChunkSize + 1);
}

void FileStore::squeeze()
{
    if (!m_chunks.empty())
        squeeze(m_chunks.back());
    m_folders.shrink_to_fit();
    m_folderNames.shrink_to_fit();
}

void FileStore::squeeze(Chunk& chunk)
{
    chunk.text.shrink_to_fit();
    chunk.begins.shrink_to_fit();
    chunk.folders.shrink_to_fit();
}
