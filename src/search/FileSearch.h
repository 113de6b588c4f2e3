// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileStore.h"
#include "FolderTree.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <vector>

/// Whether entries in a folder lie under one of those to which the user has narrowed the results:
/// what `FolderFilter::accepts` would tell of each, found out once for the folder. GUI thread only.
class AcceptedFolders
{
public:
    /// To be called before a series of questions: takes in folders that came to the store, and
    /// another choice of the user's.
    void update(const FileStore& store);

    bool accepts(FileStore::Folder folder) const
    {
        return m_chosen.isEmpty() || m_tree->isUnderAny(m_places[folder]);
    }

    /// To be called when the folders' numbers mean others.
    void forget() { m_places.clear(); }

private:
    QStringList m_chosen;
    const FolderTree* m_tree = nullptr; ///< of those chosen
    std::vector<FolderTree::Place> m_places;
};

/// Finds and ranks entries of a list. Remembers what it found last: a longer query looks at those
/// hits alone. GUI thread only.
class FileSearch
{
public:
    /// Candidates with equal quality; those behind them in the list aren't looked at.
    static constexpr int PoolPerTier = 200;

    /// The best entries, as `FileIndex::search` tells it.
    /// \param query neither empty nor in upper case.
    QVector<FileStore::Id> best(const FileStore& store, const QString& query, int limit,
                                bool wantDirs);

    /// Lets the next search walk all entries. Due whenever these change.
    void forgetNarrowing();

    /// Due when it is another list.
    void forgetAll();

private:
    struct Candidate
    {
        FileStore::Id id;
        int tier; ///< quality of the match, 0 is the best
        double score;
        qsizetype nameSize;
    };

    void narrow(const FileStore& store, const QString& query);
    std::vector<Candidate> candidates(const FileStore& store, bool wantDirs) const;

    QString m_lastQuery; ///< what `m_lastHits` are the hits of
    std::vector<FileStore::Hit> m_lastHits;
    AcceptedFolders m_accepted;
};
