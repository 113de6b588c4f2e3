// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FileIndex.h"

#include "FileChanges.h"
#include "FileScan.h"
#include "FileTypeIcon.h"
#include "FolderTree.h"

#include <QCoreApplication>
#include <QDir>
#include <QLatin1String>
#include <QMetaObject>
#include <QPointer>
#include <QStandardPaths>
#include <QThread>
#include <QThreadPool>
#include <QTimer>

#include <atomic>
#include <memory>
#include <utility>
#include <vector>

namespace
{

constexpr QLatin1String kFolderKey("<folder>");

/// Has the GUI thread call `function`. Called by the background threads.
template <typename Function>
void postToGui(Function&& function)
{
    if (QCoreApplication* app = QCoreApplication::instance())
        QMetaObject::invokeMethod(app, std::forward<Function>(function), Qt::QueuedConnection);
}

} // namespace

struct FileIndex::State
{
    bool started = false;
    bool ready = false;
    bool scanning = false;
    bool needRescan = false; ///< the next flush ends in a scan
    FileStore store;
    FileSearch search;
    QVector<Change> pending; ///< waiting for the coalescing timer
    std::function<void()> onReady;

    /// Ends both threads. All threads.
    std::atomic<bool> cancel = false;
    /// Owned by the watch thread as well, so that it lasts as long as that runs.
    std::shared_ptr<Platform::TreeWatcher> watcher;
    QPointer<QThread> scanThread;
    QPointer<QThread> watchThread;
};

/// Never destroyed: a thread that is stuck beyond the shutdown's patience may still look.
FileIndex::State& FileIndex::state()
{
    static auto* const only = new State;
    return *only;
}

void FileIndex::build()
{
    if (state().started)
        return;
    QCoreApplication* app = QCoreApplication::instance();
    if (!app)
        return;
    state().started = true;
    QObject::connect(app, &QCoreApplication::aboutToQuit, app, &FileIndex::shutdown);
    // An application whose event loop never ran doesn't say that it is about to quit.
    qAddPostRoutine(&FileIndex::shutdown);
    startWatcher();
    startScan();
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

QIcon FileIndex::iconFor(const Entry& entry)
{
    const QString key = entry.isDir ? QString(kFolderKey) : suffixOf(entry);
    const auto known = iconCache().constFind(key);
    if (known != iconCache().cend())
        return known.value();
    return iconCache().insert(key, shellIconFor(key, entry.isDir)).value();
}

LauncherElement FileIndex::asElement(const Entry& entry)
{
    LauncherElement element;
    element.name = nameOf(entry);
    element.shortcutType = ItemType::File;
    element.value = entry.path;
    return element;
}

QString FileIndex::nameOf(const Entry& entry)
{
    return nameOfPath(entry.path);
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

FileIndex::Entry FileIndex::entryOf(const FileStore& store, FileStore::Id id)
{
    return {store.path(id), store.lowerName(id), store.isDir(id)};
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

void FileIndex::shutdown()
{
    // Both ends of an application call this; a thread that is stuck is waited for only once.
    if (state().cancel.exchange(true))
        return;
    if (state().watcher)
        state().watcher->stop();
    for (const QPointer<QThread>& thread : {state().scanThread, state().watchThread}) {
        if (thread)
            thread->wait(ShutdownWaitMs);
    }
}

void FileIndex::startScan()
{
    if (state().scanning)
        return;
    state().scanning = true;
    auto found = std::make_shared<FileStore>();
    state().scanThread = QThread::create(
        [found, watcher = state().watcher, &cancel = std::as_const(state().cancel)] {
            *found = FileScan::read(rootPath(), ExpectedEntries, watcher.get(), cancel);
        });
    // Handed over by the thread's last signal and not by a call from within it: a scan that is
    // stuck beyond the shutdown's patience must not touch an application that may be going away.
    QObject::connect(state().scanThread, &QThread::finished, QCoreApplication::instance(), [found] {
        if (state().cancel)
            state().scanning = false;
        else
            deliver(std::move(*found));
    });
    QObject::connect(state().scanThread, &QThread::finished, state().scanThread,
                     &QObject::deleteLater);
    state().scanThread->start();
}

void FileIndex::deliver(FileStore&& found)
{
    auto outdated = std::make_shared<FileStore>(std::exchange(state().store, std::move(found)));
    state().search.forgetAll();
    state().ready = true;
    state().scanning = false;
    // Off this thread: to give a large list back takes longer than a frame.
    if (outdated->size() > 0)
        QThreadPool::globalInstance()->start(
            [outdated = std::move(outdated)] { *outdated = FileStore(); });
    notifyReady();
}

void FileIndex::startWatcher()
{
    state().watcher = Platform::TreeWatcher::create(rootPath());
    if (!state().watcher)
        return;
    state().watchThread = QThread::create([watcher = state().watcher] { watchLoop(*watcher); });
    QObject::connect(state().watchThread, &QThread::finished, state().watchThread,
                     &QObject::deleteLater);
    state().watchThread->start();
}

void FileIndex::watchLoop(Platform::TreeWatcher& watcher)
{
    if (rootPath().isEmpty())
        return;
    watcher.run({&FileIndex::postChanges, &FileIndex::postRescan});
}

void FileIndex::postChanges(QVector<Change>&& batch)
{
    // Between this look and the call lies no wait, so the application, which waits for this thread
    // after it has set the flag, is still there.
    if (batch.isEmpty() || state().cancel)
        return;
    postToGui([batch = std::move(batch)]() mutable { queueChanges(std::move(batch)); });
}

void FileIndex::postRescan()
{
    if (state().cancel)
        return;
    postToGui([] {
        state().needRescan = true;
        armCoalesceTimer();
    });
}

void FileIndex::queueChanges(QVector<Change>&& batch)
{
    // Beyond the limit it is their number alone that counts.
    for (Change& change : batch) {
        if (state().pending.size() > MaxIncremental)
            break;
        state().pending.append(std::move(change));
    }
    armCoalesceTimer();
}

void FileIndex::armCoalesceTimer()
{
    // Restarted by every batch, so that an unpacked archive ends in one flush.
    coalesceTimer()->start(CoalesceMs);
}

QTimer* FileIndex::coalesceTimer()
{
    static QTimer* const timer = [] {
        auto* single = new QTimer(QCoreApplication::instance());
        single->setSingleShot(true);
        QObject::connect(single, &QTimer::timeout, single, &FileIndex::flushChanges);
        return single;
    }();
    return timer;
}

void FileIndex::flushChanges()
{
    if (state().scanning || state().cancel) {
        // The scan is taken to cover them. What changed behind its back shows up with the next. And
        // once the application has quit, nothing may start a thread any more.
        state().pending.clear();
        state().needRescan = false;
        return;
    }
    if (state().needRescan || state().pending.size() > MaxIncremental) {
        state().needRescan = false;
        state().pending.clear();
        startScan();
        return;
    }
    const bool hasChanged = applyPending();
    state().pending.clear();
    if (state().needRescan) {
        state().needRescan = false;
        startScan();
    } else if (hasChanged) {
        notifyReady();
    }
}

bool FileIndex::applyPending()
{
    const FileChanges::Outcome outcome = FileChanges::apply(state().store, state().pending);
    state().needRescan = state().needRescan || outcome.needsScan;
    // Also if a scan follows: until it ends, searches go through the list as it is now.
    if (outcome.hasChanged)
        forgetNarrowing();
    return outcome.hasChanged;
}

void FileIndex::notifyReady()
{
    // A copy, because the function may set another.
    const std::function<void()> onReady = state().onReady;
    if (onReady)
        onReady();
}

QString FileIndex::nameOfPath(const QString& path)
{
    return path.mid(path.lastIndexOf(QDir::separator()) + 1);
}

QString FileIndex::suffixOf(const Entry& entry)
{
    const QString name = nameOf(entry);
    const qsizetype dot = name.lastIndexOf('.');
    return dot > 0 ? name.mid(dot).toLower() : QString();
}

QHash<QString, QIcon>& FileIndex::iconCache()
{
    static QHash<QString, QIcon> map;
    return map;
}

QIcon FileIndex::shellIconFor(const QString& key, bool isDir)
{
    return isDir ? Platform::fileTypeIcon(QString(), true) : Platform::fileTypeIcon(key, false);
}
