// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FileStore.h"
#include "FileStorePlaces.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace
{

// Fewer numbers of folders that are gone aren't worth the walk over the list.
constexpr std::size_t kFewestBuried = 1000;

} // namespace

/// Compares what a list knows of some places with what was found there, and takes over the
/// difference. Each folder's own entries are compared in their order and replaced as a whole: who
/// reads a directory once more gets them in the same order, if nothing has changed in it.
class FileStore::Renewer
{
public:
    Renewer(FileStore& known, FileStore& found, std::span<const Finding> findings)
        : m_known(known),
          m_found(found),
          m_findings(findings),
          m_isRead(found.folderCount()),
          m_isChanged(found.folderCount()),
          m_runs(found.folderCount()),
          m_knownAs(found.folderCount(), NoFolder),
          m_isInScope(known.folderCount()),
          m_match(known.folderCount(), NoFolder),
          m_places(known.folderCount()),
          m_isAtPlace(findings.size()),
          m_isSpelledAlike(findings.size())
    {}

    Renewal renew();

private:
    /// The entries of a folder that was read lie one behind the other.
    struct Run
    {
        Id next = 0;       ///< not compared yet
        quint32 count = 0; ///< of those
    };

    void noteWhatWasRead();
    void matchFolders();
    void noteScope();
    void compareEntries();
    void compareInFolder(Folder known, Id id);
    void compareAtPlace(Folder known, Id id);
    std::vector<Id> outdated();
    std::vector<Id> superfluous();
    void buryFolders();
    void addFolders();
    void takeOverEntries();

    FileStore& m_known;
    FileStore& m_found;
    std::span<const Finding> m_findings;

    // By the numbers of the found folders.
    std::vector<bool> m_isRead; ///< otherwise it is on the way to such a one
    std::vector<bool> m_isChanged;
    std::vector<Run> m_runs;
    std::vector<Folder> m_knownAs;

    // By the numbers of the known folders.
    std::vector<bool> m_isInScope; ///< at a place that was looked at, or below it
    std::vector<Folder> m_match;   ///< the one that was read; none if there was none

    // By the numbers of the findings.
    PlaceTable m_places;                ///< in the known list
    std::vector<bool> m_isAtPlace;      ///< what was found is known
    std::vector<bool> m_isSpelledAlike; ///< something known is, be it outdated or not

    std::vector<std::pair<std::size_t, Id>> m_unlike; ///< at places, but spelled otherwise
    std::vector<Id> m_outdated;
    std::vector<Id> m_compared; ///< in folders that stay
};

FileStore::Renewal FileStore::Renewer::renew()
{
    noteWhatWasRead();
    matchFolders();
    noteScope();
    compareEntries();
    const std::vector<Id> outdatedIds = outdated();
    const std::vector<Id> superfluousIds = superfluous();
    Renewal renewal;
    renewal.hasChanged =
        !outdatedIds.empty() || superfluousIds.size() != static_cast<std::size_t>(m_found.size());
    m_known.remove(outdatedIds);
    buryFolders();
    if (superfluousIds.size() < static_cast<std::size_t>(m_found.size())) {
        m_found.remove(superfluousIds);
        addFolders();
        takeOverEntries();
    }
    renewal.areFoldersRenumbered = m_known.dropBuried();
    return renewal;
}

void FileStore::Renewer::noteWhatWasRead()
{
    for (const Finding& finding : m_findings) {
        if (const auto folder = m_found.childOf(finding.place.folder, finding.place.name))
            m_isRead[*folder] = true;
    }
    for (Folder folder = Root + 1; folder < m_found.folderCount(); ++folder)
        m_isRead[folder] = m_isRead[folder] || m_isRead[m_found.parentOf(folder)];
    for (std::size_t c = 0; c < m_found.m_chunks.size(); ++c) {
        const std::vector<Folder>& folders = m_found.m_chunks[c].folders;
        for (std::size_t i = 0; i < folders.size(); ++i) {
            Run& run = m_runs[folders[i]];
            if (run.count++ == 0)
                run.next = idOf(c, i);
        }
    }
}

void FileStore::Renewer::matchFolders()
{
    m_knownAs[Root] = Root;
    for (Folder folder = Root + 1; folder < m_found.folderCount(); ++folder) {
        const Folder parent = m_knownAs[m_found.parentOf(folder)];
        if (parent == NoFolder)
            continue;
        const std::string_view name = m_found.folderBytes(folder);
        const auto known = m_known.childOf(parent, name, m_found.m_folders[folder].hash);
        // What was read is to be called by the name under which it was found.
        if (!known || (m_isRead[folder] && m_known.folderBytes(*known) != name))
            continue;
        m_knownAs[folder] = *known;
        if (!m_isRead[folder])
            continue;
        // Some file systems list a name twice while it changes.
        if (m_match[*known] != NoFolder)
            m_isChanged[folder] = m_isChanged[m_match[*known]] = true;
        else
            m_match[*known] = folder;
    }
}

void FileStore::Renewer::noteScope()
{
    for (const Finding& finding : m_findings) {
        const Folder parent = m_knownAs[finding.place.folder];
        if (parent == NoFolder) {
            m_places.skip();
            continue;
        }
        m_places.add(parent, finding.place.name);
        if (const auto known = m_known.childOf(parent, finding.place.name))
            m_isInScope[*known] = true;
    }
    for (Folder folder = Root + 1; folder < m_known.folderCount(); ++folder) {
        const Folder parent = m_known.parentOf(folder);
        if (parent != NoFolder && m_isInScope[parent])
            m_isInScope[folder] = true;
    }
}

void FileStore::Renewer::compareEntries()
{
    for (std::size_t c = 0; c < m_known.m_chunks.size(); ++c) {
        const std::vector<Folder>& folders = m_known.m_chunks[c].folders;
        for (std::size_t i = 0; i < folders.size(); ++i) {
            if (m_isInScope[folders[i]])
                compareInFolder(folders[i], idOf(c, i));
            else if (m_places.hasIn(folders[i]))
                compareAtPlace(folders[i], idOf(c, i));
        }
    }
}

void FileStore::Renewer::compareInFolder(Folder known, Id id)
{
    const Folder folder = m_match[known];
    if (folder == NoFolder) {
        m_outdated.push_back(id);
        return;
    }
    m_compared.push_back(id);
    if (m_isChanged[folder])
        return;
    Run& run = m_runs[folder];
    if (run.count == 0 || m_found.folderOf(run.next) != folder ||
        m_found.bytesOf(run.next) != m_known.bytesOf(id)) {
        m_isChanged[folder] = true;
        return;
    }
    if (--run.count > 0)
        run.next = m_found.next(run.next);
}

void FileStore::Renewer::compareAtPlace(Folder known, Id id)
{
    m_places.visit(known, m_known.writtenName(id), [&](std::size_t place, bool isAlike) {
        if (!isAlike) {
            m_unlike.emplace_back(place, id);
            return;
        }
        m_isSpelledAlike[place] = true;
        const std::optional<Id> entry = m_findings[place].entry;
        if (entry && !m_isAtPlace[place] && m_found.bytesOf(*entry) == m_known.bytesOf(id))
            m_isAtPlace[place] = true;
        else
            m_outdated.push_back(id);
    });
}

/// What the list must lose.
std::vector<FileStore::Id> FileStore::Renewer::outdated()
{
    for (Folder folder = Root; folder < m_found.folderCount(); ++folder) {
        if (m_isRead[folder] && m_runs[folder].count > 0)
            m_isChanged[folder] = true; // more than was known
    }
    for (const Id id : m_compared) {
        if (m_isChanged[m_match[m_known.folderOf(id)]])
            m_outdated.push_back(id);
    }
    // The same file under another spelling, unless the file system tells the two apart.
    for (const auto& [place, id] : m_unlike) {
        if (!m_isSpelledAlike[place])
            m_outdated.push_back(id);
    }
    return std::exchange(m_outdated, {});
}

/// What was found and is known.
std::vector<FileStore::Id> FileStore::Renewer::superfluous()
{
    std::vector<Id> ids;
    for (std::size_t i = 0; i < m_findings.size(); ++i) {
        if (m_isAtPlace[i])
            ids.push_back(*m_findings[i].entry);
    }
    for (std::size_t c = 0; c < m_found.m_chunks.size(); ++c) {
        const std::vector<Folder>& folders = m_found.m_chunks[c].folders;
        for (std::size_t i = 0; i < folders.size(); ++i) {
            if (m_isRead[folders[i]] && !m_isChanged[folders[i]])
                ids.push_back(idOf(c, i));
        }
    }
    return ids;
}

void FileStore::Renewer::buryFolders()
{
    for (auto folder = static_cast<Folder>(m_isInScope.size()); folder-- > Root + 1;) {
        if (m_isInScope[folder] && m_match[folder] == NoFolder &&
            m_known.parentOf(folder) != NoFolder)
            m_known.bury(folder);
    }
}

/// Those that are not known yet, unless nothing is in them and they were only on the way.
void FileStore::Renewer::addFolders()
{
    std::vector<bool> isNeeded = m_isRead;
    for (const Chunk& chunk : m_found.m_chunks) {
        for (const Folder folder : chunk.folders)
            isNeeded[folder] = true;
    }
    for (Folder folder = m_found.folderCount() - 1; folder > Root; --folder) {
        if (isNeeded[folder])
            isNeeded[m_found.parentOf(folder)] = true;
    }
    for (Folder folder = Root + 1; folder < m_found.folderCount(); ++folder) {
        if (!isNeeded[folder] || m_knownAs[folder] != NoFolder)
            continue;
        m_knownAs[folder] =
            m_known.addFolder(m_knownAs[m_found.parentOf(folder)], m_found.folderBytes(folder),
                              m_found.m_folders[folder].hash);
    }
}

void FileStore::Renewer::takeOverEntries()
{
    m_known.m_size += m_found.m_size;
    for (Chunk& chunk : m_found.m_chunks) {
        for (Folder& folder : chunk.folders)
            folder = m_knownAs[folder];
        std::vector<Chunk>& chunks = m_known.m_chunks;
        if (!chunks.empty() && chunks.back().begins.size() + chunk.begins.size() <= ChunkSize)
            join(chunks.back(), chunk);
        else
            chunks.push_back(std::move(chunk));
    }
    m_found = FileStore();
}

FileStore::Renewal FileStore::renew(FileStore& found, std::span<const Finding> findings)
{
    return Renewer(*this, found, findings).renew();
}

/// Nothing may be in the folder any more.
void FileStore::bury(Folder folder)
{
    takeFromBucket(folder);
    m_folders[folder].parent = NoFolder;
    ++m_buried;
}

/// Gives new numbers to the folders that there are, once they are the fewer.
/// \returns whether it did.
bool FileStore::dropBuried()
{
    if (m_buried < kFewestBuried || m_buried * 2 < m_folders.size())
        return false;
    std::vector<Folder> numbers(m_folders.size(), NoFolder);
    std::vector<FolderRecord> kept;
    std::vector<char> names;
    for (Folder folder = Root; folder < folderCount(); ++folder) {
        const FolderRecord& record = m_folders[folder];
        if (record.parent == NoFolder)
            continue;
        const std::string_view name = folderBytes(folder);
        numbers[folder] = static_cast<Folder>(kept.size());
        kept.push_back(
            {numbers[record.parent], static_cast<quint32>(names.size()), record.hash, Root});
        names.insert(names.end(), name.begin(), name.end());
    }
    for (Chunk& chunk : m_chunks) {
        for (Folder& folder : chunk.folders)
            folder = numbers[folder];
    }
    m_folders = std::move(kept);
    m_folderNames = std::move(names);
    m_buried = 0;
    growBuckets();
    return true;
}
