// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FileStore.h"

#include "DirectoryReader.h"
#include "NameBytes.h"
#include "NameMatcher.h"

#include <QDir>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

namespace
{

using Header = quint32; // of a record: size of the lower-case name, and in the lowest bit its kind

Qt::CaseSensitivity pathCase()
{
    static const Qt::CaseSensitivity caseSensitivity = Platform::pathCaseSensitivity();
    return caseSensitivity;
}

bool isSameName(const QString& left, QStringView right)
{
    // Looked at first: names that differ in case alone have one size.
    return left.size() == right.size() && left.compare(right, pathCase()) == 0;
}

/// Of names that are the same to the system, the same.
std::size_t hashOf(FileStore::Folder parent, QStringView name)
{
    constexpr std::size_t Factor = 0x9e3779b1; // odd, without a pattern in its bits
    const bool isFolded = pathCase() == Qt::CaseInsensitive;
    std::size_t hash = parent * Factor;
    for (const QChar unit : name) {
        // Halves of pairs would have to be folded together.
        if (!isFolded || !unit.isSurrogate())
            hash = (hash ^ (isFolded ? unit.toCaseFolded() : unit).unicode()) * Factor;
    }
    return hash ^ (hash >> 16);
}

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

FileStore::FileStore(QString root) : m_root(std::move(root))
{
    m_folders.push_back({Root, 0});
}

FileStore::Folder FileStore::addFolder(Folder parent, QStringView name)
{
    const auto folder = folderCount();
    m_folders.push_back({parent, static_cast<quint32>(m_folderNames.size())});
    const QByteArray bytes = NameBytes::fromText(name);
    m_folderNames.insert(m_folderNames.end(), bytes.begin(), bytes.end());
    m_folderByHash.emplace(hashOf(parent, name), folder);
    return folder;
}

QString FileStore::folderName(Folder folder) const
{
    const std::size_t begin = m_folders[folder].nameBegin;
    const std::size_t end =
        folder + 1 < folderCount() ? m_folders[folder + 1].nameBegin : m_folderNames.size();
    return NameBytes::toText(m_folderNames.data() + begin, static_cast<qsizetype>(end - begin));
}

QString FileStore::folderPath(Folder folder) const
{
    std::vector<Folder> way;
    for (; folder != Root; folder = parentOf(folder))
        way.push_back(folder);
    QString path = m_root;
    std::reverse(way.begin(), way.end());
    for (const Folder step : way) {
        path += QDir::separator();
        path += folderName(step);
    }
    return path;
}

void FileStore::addPlaces(const FolderTree& tree, std::vector<FolderTree::Place>& places) const
{
    if (places.empty())
        places.push_back(tree.placeOf(m_root));
    // Parents have the lower numbers.
    for (auto folder = static_cast<Folder>(places.size()); folder < folderCount(); ++folder) {
        const FolderTree::Place parent = places[parentOf(folder)];
        places.push_back(tree.hasNothingBelow(parent) ? FolderTree::Place{parent.node, false}
                                                      : tree.below(parent, folderName(folder)));
    }
}

std::optional<FileStore::Folder> FileStore::childOf(Folder parent, QStringView name) const
{
    const auto [first, behind] = m_folderByHash.equal_range(hashOf(parent, name));
    const auto child = std::find_if(first, behind, [&](const auto& known) {
        return parentOf(known.second) == parent && isSameName(folderName(known.second), name);
    });
    return child == behind ? std::nullopt : std::optional(child->second);
}

FileStore::Id FileStore::append(Folder folder, QStringView name, bool isDir)
{
    if (m_chunks.empty() || m_chunks.back().begins.size() == ChunkSize) {
        squeeze();
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
    const Chunk& chunk = chunkOf(id);
    const std::size_t index = indexIn(id);
    const char* record = recordAt(chunk, index);
    const char* end = index + 1 < chunk.begins.size()
                          ? recordAt(chunk, index + 1)
                          : chunk.text.data() + chunk.text.size() - NameMatcher::Padding;
    const Header header = headerAt(record);
    const char* lower = record + sizeof(Header);
    const char* written = lower + sizeIn(header);
    if (written == end)
        written = lower;
    return {lower, sizeIn(header), written, end - written, (header & 1) != 0};
}

QString FileStore::path(Id id) const
{
    return folderPath(folderOf(id)) + QDir::separator() + name(id);
}

QString FileStore::name(Id id) const
{
    const Record record = recordOf(id);
    return NameBytes::toText(record.written, record.writtenSize);
}

bool FileStore::isWritten(Id id, const QByteArray& name) const
{
    const Record record = recordOf(id);
    return record.writtenSize == name.size() &&
           std::memcmp(record.written, name.constData(), static_cast<std::size_t>(name.size())) ==
               0;
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
    std::vector<bool> isWanted(m_folders.size());
    std::vector<QByteArray> names;
    for (const Place& place : places) {
        isWanted[place.folder] = true;
        names.push_back(NameBytes::fromText(place.name));
    }
    for (std::size_t c = 0; c < m_chunks.size(); ++c) {
        const std::vector<Folder>& folders = m_chunks[c].folders;
        for (std::size_t i = 0; i < folders.size(); ++i) {
            if (isWanted[folders[i]])
                noteIfFound(idOf(c, i), places, names, found);
        }
    }
    return found;
}

/// \param names of the places, as bytes.
void FileStore::noteIfFound(Id id, std::span<const Place> places,
                            const std::vector<QByteArray>& names,
                            std::vector<std::optional<Id>>& found) const
{
    // Where case counts, no name has to be put together.
    const bool isExact = pathCase() == Qt::CaseSensitive;
    const QString entry = isExact ? QString() : name(id);
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (found[i] || places[i].folder != folderOf(id))
            continue;
        if (isExact ? isWritten(id, names[i]) : isSameName(entry, places[i].name))
            found[i] = id;
    }
}

void FileStore::remove(std::vector<Id> ids)
{
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
    std::erase_if(m_chunks, [](const Chunk& chunk) { return chunk.begins.empty(); });
}

/// Within the memory that the chunk has.
void FileStore::keepOnly(Chunk& chunk, const std::vector<bool>& isRemoved)
{
    const std::size_t textEnd = chunk.text.size() - NameMatcher::Padding;
    char* to = chunk.text.data();
    std::size_t kept = 0;
    for (std::size_t i = 0; i < isRemoved.size(); ++i) {
        if (isRemoved[i])
            continue;
        const char* record = recordAt(chunk, i);
        const char* end =
            i + 1 < isRemoved.size() ? recordAt(chunk, i + 1) : chunk.text.data() + textEnd;
        chunk.begins[kept] = static_cast<quint32>(to - chunk.text.data());
        chunk.folders[kept] = chunk.folders[i];
        std::memmove(to, record, static_cast<std::size_t>(end - record));
        to += end - record;
        ++kept;
    }
    chunk.begins.resize(kept);
    chunk.folders.resize(kept);
    chunk.text.resize(static_cast<std::size_t>(to - chunk.text.data()) + NameMatcher::Padding);
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
    if (m_chunks.empty())
        return;
    Chunk& chunk = m_chunks.back();
    chunk.text.shrink_to_fit();
    chunk.begins.shrink_to_fit();
    chunk.folders.shrink_to_fit();
}
