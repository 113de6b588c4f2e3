// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FileSearch.h"

#include "FolderFilter.h"
#include "NameBytes.h"
#include "NameMatcher.h"
#include "UsageStats.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace
{

constexpr int kTiers = 3;

/// The paths of folders. Entries come folder by folder, so that the last one is mostly the next.
class FolderPath
{
public:
    explicit FolderPath(const FileStore& store) : m_store(store), m_path(store.root()) {}

    const QString& of(FileStore::Folder folder)
    {
        if (folder != m_folder) {
            m_folder = folder;
            m_path = m_store.folderPath(folder);
        }
        return m_path;
    }

private:
    const FileStore& m_store;
    FileStore::Folder m_folder = FileStore::Root;
    QString m_path;
};

} // namespace

void AcceptedFolders::update(const FileStore& store)
{
    if (m_chosen != FolderFilter::folders()) {
        m_chosen = FolderFilter::folders();
        m_tree = &FolderFilter::tree();
        m_places.clear();
    }
    if (!m_chosen.isEmpty())
        store.addPlaces(*m_tree, m_places);
}

QVector<FileStore::Id> FileSearch::best(const FileStore& store, const QString& query, int limit,
                                        bool wantDirs)
{
    narrow(store, query);
    m_accepted.update(store);
    std::vector<Candidate> ranked = candidates(store, wantDirs);
    const auto rank = [](const Candidate& candidate) {
        return std::make_tuple(candidate.tier, -candidate.score, candidate.nameSize);
    };
    std::stable_sort(ranked.begin(), ranked.end(),
                     [&rank](const Candidate& left, const Candidate& right) {
                         return rank(left) < rank(right);
                     });
    QVector<FileStore::Id> ids;
    for (const Candidate& candidate : ranked) {
        if (ids.size() == limit)
            break;
        ids.append(candidate.id);
    }
    return ids;
}

void FileSearch::forgetNarrowing()
{
    m_lastQuery.clear();
    m_lastHits.clear();
}

void FileSearch::forgetAll()
{
    forgetNarrowing();
    m_accepted.forget();
}

void FileSearch::narrow(const FileStore& store, const QString& query)
{
    if (query == m_lastQuery)
        return;
    const NameMatcher matcher(NameBytes::fromText(query));
    if (!m_lastQuery.isEmpty() && query.startsWith(m_lastQuery))
        store.narrow(matcher, m_lastHits);
    else
        store.search(matcher, m_lastHits);
    m_lastQuery = query;
}

std::vector<FileSearch::Candidate> FileSearch::candidates(const FileStore& store,
                                                          bool wantDirs) const
{
    std::vector<Candidate> candidates;
    std::array<int, kTiers> counts = {};
    FolderPath folderPath(store);
    const auto isFull = [](int count) { return count >= PoolPerTier; };
    for (const FileStore::Hit hit : m_lastHits) {
        const int tier = hit.isWhole ? 0 : hit.begins ? 1 : 2;
        int& count = counts[static_cast<std::size_t>(tier)];
        if (hit.isDir != quint32(wantDirs) || isFull(count))
            continue;
        const FileStore::Folder folder = store.folderOf(hit.id);
        if (!m_accepted.accepts(folder))
            continue;
        ++count;
        const QString path = FileStore::pathIn(folderPath.of(folder), store.name(hit.id));
        candidates.push_back(
            {hit.id, tier, UsageStats::scoreFor(path), store.lowerName(hit.id).size()});
        if (std::all_of(counts.begin(), counts.end(), isFull))
            break;
    }
    return candidates;
}
