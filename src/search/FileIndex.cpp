// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FileIndex.h"

#include "FileScan.h"
#include "FileSearch.h"
#include "FileUpdates.h"
#include "FolderTree.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

#include <utility>
#include <vector>

namespace
{

class State
{
public:
    bool started = false;
    bool ready = false;
    FileStore store;
    FileSearch search;
    std::function<void()> onReady;
    FileUpdates updates{
        store, {[this](bool areFoldersOthers) { forget(areFoldersOthers); }, [this] { tell(); }}};

private:
    void forget(bool areFoldersOthers)
    {
        if (areFoldersOthers)
            search.forgetAll();
        else
            search.forgetNarrowing();
    }

    void tell()
    {
        ready = true;
        // A copy, because the function may set another.
        const std::function<void()> told = onReady;
        if (told)
            told();
    }
};

/// Never destroyed: a thread that is stuck beyond the shutdown's patience may still look.
State& state()
{
    static auto* const only = new State;
    return *only;
}

FileIndex::Entry entryOf(const FileStore& store, FileStore::Id id)
{
    return {store.path(id), store.lowerName(id), store.isDir(id)};
}

} // namespace

FileIndex::Entry FileIndex::Entries::Iterator::operator*() const
{
    return entryOf(*m_store, m_id);
}

FileIndex::Entry FileIndex::Entries::last() const
{
    return entryOf(*m_store, m_store->last());
}

void FileIndex::build()
{
    if (state().started)
        return;
    QCoreApplication* app = QCoreApplication::instance();
    if (!app)
        return;
    state().started = true;
    const auto stop = [] { state().updates.stop(); };
    QObject::connect(app, &QCoreApplication::aboutToQuit, app, stop);
    // An application whose event loop never ran doesn't say that it is about to quit.
    qAddPostRoutine(stop);
    state().updates.start(rootPath());
}

void FileIndex::refresh()
{
    if (state().started)
        state().updates.refresh();
}

bool FileIndex::isReady()
{
    return state().ready;
}

void FileIndex::setOnReady(std::function<void()> onReady)
{
    state().onReady = std::move(onReady);
}

QVector<FileIndex::Entry> FileIndex::search(const QString& query, int limit, Kind kind)
{
    const QString q = query.trimmed().toLower();
    if (q.isEmpty() || !state().ready || limit <= 0)
        return {};
    const FileStore& store = state().store;
    QVector<Entry> best;
    for (const FileStore::Id id : state().search.best(store, q, limit, kind == Folders))
        best.append(entryOf(store, id));
    return best;
}

QVector<qsizetype> FileIndex::countUnder(const QStringList& folders)
{
    const FileStore& store = state().store;
    FolderTree tree(folders);
    std::vector<FolderTree::Place> places;
    store.addPlaces(tree, places);
    const std::vector<quint32> entries = store.countsByFolder();
    for (std::size_t folder = 0; folder < places.size(); ++folder)
        tree.add(places[folder], entries[folder]);
    return tree.counts();
}

FileIndex::Entries FileIndex::entries()
{
    return Entries(state().store);
}

const QString& FileIndex::rootPath()
{
    static const QString root =
        QDir::toNativeSeparators(QStandardPaths::writableLocation(QStandardPaths::HomeLocation));
    return root;
}

bool FileIndex::isExcludedPath(const QString& rel)
{
    return FileScan::isExcludedPath(rel);
}

void FileIndex::forgetNarrowing()
{
    state().search.forgetNarrowing();
}
