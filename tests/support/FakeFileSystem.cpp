// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FakeFileSystem.h"

#include "FileTypeIcon.h"

#include <QCoreApplication>
#include <QDir>
#include <QHash>
#include <QSet>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace
{

enum class Kind { File, Folder, Closed, Unreadable };

struct Item
{
    QString path;
    Kind kind = Kind::File;
};

struct State
{
    // Of the standard library, because a thread sanitizer sees through these.
    std::mutex mutex;
    std::condition_variable hasChanged;

    QVector<Item> items;
    Qt::CaseSensitivity caseSensitivity = Qt::CaseSensitive;
    int scanCount = 0;
    int readingCount = 0;
    int threadCount = 0;
    QStringList listings;
    QStringList looks;
    QSet<QString> watched;
    bool isHolding = false;
    int heldCount = 0;

    bool isRefused = false;
    bool isBroken = false;
    bool isStuck = false;
    bool isStopped = false;
    bool isWatching = false;
    QStringList forgotten;
    QStringList unwatched;
    QVector<std::function<void(const Platform::TreeWatcher::Handlers&)>> orders; ///< to the watch
    FakeFileSystem::Changes endless;
    int busyCount = 0;

    QStringList iconRequests;
    QHash<QString, QIcon> icons;
};

/// Never destroyed: a thread that a test left behind may still wait in it when the process ends.
State& state()
{
    static auto* const instance = new State;
    return *instance;
}

QString native(const QString& path)
{
    return QDir::toNativeSeparators(path);
}

/// Counts a user of the file system, and with it a thread, for as long as it lives.
class Busy
{
public:
    Busy() { add(1); }
    ~Busy() { add(-1); }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

private:
    static void add(int count)
    {
        const std::lock_guard lock(state().mutex);
        state().busyCount += count;
    }
};

void addItem(const QString& path, Kind kind)
{
    const auto isIt = [&path](const Item& item) { return item.path == path; };
    QVector<Item>& items = state().items;
    if (path.isEmpty() || std::any_of(items.cbegin(), items.cend(), isIt))
        return;
    addItem(path.left(std::max<qsizetype>(path.lastIndexOf('/'), 0)), Kind::Folder);
    items.append({path, kind});
}

bool isMainThread()
{
    const QCoreApplication* app = QCoreApplication::instance();
    return app && QThread::currentThread() == app->thread();
}

QString parentOf(const QString& path)
{
    return path.left(std::max<qsizetype>(path.lastIndexOf('/'), 0));
}

class FakeReader : public Platform::DirectoryReader
{
public:
    FakeReader(const QString& root, bool isWatched) : m_root(root), m_isWatched(isWatched)
    {
        const std::lock_guard lock(state().mutex);
        state().threadCount += m_isInBackground ? 1 : 0;
    }

    bool list(const QString& directory, const Visitor& visit) override
    {
        const QString folder = relative(directory);
        QVector<Item> contents;
        {
            std::unique_lock lock(state().mutex);
            state().listings.append(folder);
            if (m_isWatched)
                state().watched.insert(folder);
            if (folder.isEmpty())
                ++state().scanCount;
            wait(lock);
            for (const Item& item : std::as_const(state().items)) {
                if (item.path == folder && item.kind == Kind::Unreadable)
                    return false;
                if (parentOf(item.path) == folder)
                    contents.append(item);
            }
        }
        for (const Item& item : std::as_const(contents)) {
            const bool isDir = item.kind != Kind::File;
            visit({item.path.mid(item.path.lastIndexOf('/') + 1), isDir,
                   isDir && item.kind != Kind::Closed});
        }
        return true;
    }

    Platform::PathKind kindOf(const QString& path) override
    {
        const QString wanted = relative(path);
        std::unique_lock lock(state().mutex);
        if (m_isInBackground) {
            state().looks.append(wanted);
            if (std::exchange(m_isFirstLook, false))
                ++state().readingCount;
            wait(lock);
        }
        for (const Item& item : std::as_const(state().items)) {
            if (item.path.compare(wanted, state().caseSensitivity) == 0)
                return item.kind == Kind::File ? Platform::PathKind::File
                                               : Platform::PathKind::Directory;
        }
        return Platform::PathKind::Missing;
    }

private:
    /// Behind the separator.
    QString relative(const QString& path) const
    {
        return QDir::fromNativeSeparators(path.mid(m_root.size() + 1));
    }

    static void wait(std::unique_lock<std::mutex>& lock)
    {
        ++state().heldCount;
        state().hasChanged.wait(lock, [] { return !state().isHolding; });
        --state().heldCount;
    }

    Busy m_busy;
    QString m_root;
    bool m_isWatched;
    bool m_isInBackground = !isMainThread();
    bool m_isFirstLook = true;
};

class FakeWatcher : public Platform::TreeWatcher
{
public:
    void run(const Handlers& handlers) override
    {
        const Busy busy;
        std::unique_lock lock(state().mutex);
        state().isWatching = true;
        while (!state().isBroken && (state().isStuck || !state().isStopped)) {
            if (state().orders.isEmpty() && state().endless.isEmpty()) {
                state().hasChanged.wait(lock);
                continue;
            }
            const auto orders = std::exchange(state().orders, {});
            FakeFileSystem::Changes endless = state().endless;
            lock.unlock();
            for (const auto& order : orders)
                order(handlers);
            const bool isEndless = !endless.isEmpty();
            if (isEndless)
                handlers.changes(std::move(endless));
            lock.lock();
            // A system takes its time to report. Without any, the queue of the other thread would
            // grow faster than it is worked off, and never end.
            if (isEndless)
                state().hasChanged.wait_for(lock, std::chrono::milliseconds(1));
        }
        state().isWatching = false;
    }

    void stop() override
    {
        const std::lock_guard lock(state().mutex);
        state().isStopped = true;
        state().hasChanged.notify_all();
    }

    void forget(const QString& rel) override
    {
        const std::lock_guard lock(state().mutex);
        state().forgotten.append(QDir::fromNativeSeparators(rel));
    }

    QStringList unwatched() const override
    {
        const std::lock_guard lock(state().mutex);
        return state().unwatched;
    }
};

/// Changes the state in front of its threads.
template <typename Function>
auto with(const Function& function)
{
    const std::lock_guard lock(state().mutex);
    state().hasChanged.notify_all();
    return function();
}

FakeFileSystem::Changes nativeChanges(FakeFileSystem::Changes changes)
{
    for (Platform::TreeChange& change : changes)
        change.rel = native(change.rel);
    return changes;
}

void order(const std::function<void(const Platform::TreeWatcher::Handlers&)>& function)
{
    with([&] { state().orders.append(function); });
}

} // namespace

void FakeFileSystem::add(const QString& path)
{
    const bool isFolder = path.endsWith('/');
    with([&] { addItem(isFolder ? path.chopped(1) : path, isFolder ? Kind::Folder : Kind::File); });
}

void FakeFileSystem::add(const QStringList& paths)
{
    for (const QString& path : paths)
        add(path);
}

void FakeFileSystem::remove(const QString& path)
{
    with([&] {
        state().items.removeIf([&path](const Item& item) {
            return item.path == path || item.path.startsWith(path + '/');
        });
    });
}

void FakeFileSystem::addClosed(const QString& path)
{
    with([&] { addItem(path, Kind::Closed); });
}

void FakeFileSystem::addUnreadable(const QString& path)
{
    with([&] { addItem(path, Kind::Unreadable); });
}

void FakeFileSystem::setCaseSensitivity(Qt::CaseSensitivity caseSensitivity)
{
    with([&] { state().caseSensitivity = caseSensitivity; });
}

int FakeFileSystem::scanCount()
{
    return with([] { return state().scanCount; });
}

int FakeFileSystem::readingCount()
{
    return with([] { return state().readingCount; });
}

int FakeFileSystem::threadCount()
{
    return with([] { return state().threadCount; });
}

QStringList FakeFileSystem::listings()
{
    return with([] { return std::exchange(state().listings, {}); });
}

QStringList FakeFileSystem::looks()
{
    return with([] { return std::exchange(state().looks, {}); });
}

void FakeFileSystem::hold()
{
    with([] { state().isHolding = true; });
}

void FakeFileSystem::release()
{
    with([] { state().isHolding = false; });
}

bool FakeFileSystem::isHeld()
{
    return with([] { return state().isHolding && state().heldCount > 0; });
}

void FakeFileSystem::refuseWatcher()
{
    with([] { state().isRefused = true; });
}

void FakeFileSystem::breakWatch()
{
    with([] { state().isBroken = true; });
}

void FakeFileSystem::jamWatch()
{
    with([] { state().isStuck = true; });
}

bool FakeFileSystem::isWatching()
{
    return with([] { return state().isWatching; });
}

bool FakeFileSystem::isListedUnderWatch(const QString& folder)
{
    return with([&] { return state().watched.contains(folder); });
}

QStringList FakeFileSystem::forgotten()
{
    return with([] { return std::exchange(state().forgotten, {}); });
}

void FakeFileSystem::setUnwatched(const QStringList& paths)
{
    with([&] {
        state().unwatched.clear();
        for (const QString& path : paths)
            state().unwatched.append(native(path));
    });
}

void FakeFileSystem::report(const QVector<Changes>& batches)
{
    for (const Changes& batch : batches) {
        order([changes = nativeChanges(batch)](const Platform::TreeWatcher::Handlers& handlers) {
            handlers.changes(Changes(changes));
        });
    }
}

void FakeFileSystem::reportOverflow()
{
    order([](const Platform::TreeWatcher::Handlers& handlers) { handlers.overflow(); });
}

void FakeFileSystem::reportWithoutEnd(const Changes& changes)
{
    with([&] { state().endless = nativeChanges(changes); });
}

void FakeFileSystem::awaitReports()
{
    bool isDone = false;
    order([&](const Platform::TreeWatcher::Handlers&) { with([&] { isDone = true; }); });
    std::unique_lock lock(state().mutex);
    while (!isDone)
        state().hasChanged.wait(lock);
}

int FakeFileSystem::busyCount()
{
    return with([] { return state().busyCount; });
}

QStringList FakeFileSystem::iconRequests()
{
    return with([] { return state().iconRequests; });
}

void FakeFileSystem::setIcon(const QString& suffix, const QIcon& icon)
{
    with([&] { state().icons.insert(suffix, icon); });
}

std::unique_ptr<Platform::DirectoryReader> Platform::DirectoryReader::create(const QString& root,
                                                                             TreeWatcher* watcher)
{
    return std::make_unique<FakeReader>(root, watcher != nullptr);
}

QString Platform::programDataFolderName()
{
    return QStringLiteral(".programs");
}

Qt::CaseSensitivity Platform::pathCaseSensitivity()
{
    return with([] { return state().caseSensitivity; });
}

std::unique_ptr<Platform::TreeWatcher> Platform::TreeWatcher::create(const QString& /*root*/)
{
    return with([]() -> std::unique_ptr<TreeWatcher> {
        if (state().isRefused)
            return nullptr;
        return std::make_unique<FakeWatcher>();
    });
}

QIcon Platform::fileTypeIcon(const QString& suffix, bool isDir)
{
    return with([&] {
        state().iconRequests.append(isDir ? QStringLiteral("<dir>") : suffix);
        return state().icons.value(suffix);
    });
}
