// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "TreeWatcher.h"

#include "DirectoryAccess.h"
#include "Inotify.h"
#include "MountTable.h"
#include "WatchedTree.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <ctime>
#include <span>
#include <unordered_map>
#include <unordered_set>

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/stat.h>

namespace
{

using Directory = Platform::WatchedDirectory;

constexpr uint32_t kWatchMask =
    IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_EXCL_UNLINK;
constexpr uint32_t kRootMask = kWatchMask | IN_DELETE_SELF | IN_MOVE_SELF;
constexpr uint32_t kRootGone = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;
constexpr size_t kReadBytes = size_t{64} * 1024;

// The time in a file comes from a clock that may lag behind by a tick; file systems that keep whole
// seconds round down, by two at most.
constexpr qint64 kTickNs = 20'000'000;
constexpr qint64 kSecondNs = 1'000'000'000;

constexpr int kForEver = -1;
constexpr int kRootRetryMs = 5000;

qint64 nanoseconds(const timespec& time)
{
    return static_cast<qint64>(time.tv_sec) * kSecondNs + time.tv_nsec;
}

quint32 actionOf(uint32_t mask)
{
    if (mask & IN_CREATE)
        return Platform::FileAdded;
    if (mask & IN_DELETE)
        return Platform::FileRemoved;
    return mask & IN_MOVED_FROM ? Platform::FileRenamedOldName : Platform::FileRenamedNewName;
}

/// \returns false on failure.
bool waitForAny(std::span<pollfd> sources, int timeoutMs = kForEver)
{
    int ready = -1;
    do {
        ready = ::poll(sources.data(), sources.size(), timeoutMs);
    } while (ready < 0 && errno == EINTR);
    return ready >= 0;
}

/// Keeps a model of the directories below the root, each with its watch, and brings it up to date
/// with every event that speaks of a directory.
///
/// A look at the file system tells of now, an event of some time before: what it speaks of may have
/// been moved on, or replaced. So an event is only taken as a hint to look at one name of one
/// directory, and a directory is known by its watch, which belongs to the directory itself and not
/// to its path. Whatever a look finds too early, the events still to come have looked at again.
class InotifyWatcher final : public Platform::TreeWatcher
{
public:
    InotifyWatcher(Platform::FileDescriptor&& inotify, Platform::FileDescriptor&& walkEvent,
                   Platform::FileDescriptor&& stopEvent)
        : m_inotify(std::move(inotify)),
          m_walkEvent(std::move(walkEvent)),
          m_stopEvent(std::move(stopEvent))
    {}

    void run(const QString& root, const Handlers& handlers) override;
    void allowWalk() override;
    void stop() override;

private:
    struct Found
    {
        Directory* parent;
        std::string name;
    };

    bool isStopping() const { return m_stopping.load(); }

    bool waitUntilWalkIsAllowed();
    bool waitForEvents();
    int patienceMs() const;
    bool readEvents();
    void handleEvents(const char* events, size_t size, QVector<Platform::TreeChange>& batch);
    void handleEvent(const inotify_event& event, QVector<Platform::TreeChange>& batch);
    bool isTakenOver(Directory* parent, const inotify_event& event);
    void handleDirectory(Directory* parent, const inotify_event& event);
    void takeEventsWord(Directory* parent, const inotify_event& event);
    void lookAtMounts();

    void settle();
    void walkAll();
    bool watchRoot(Platform::FileDescriptor& root);
    bool failToWatchRoot(int error);
    void relistUnsettled();
    void retryLeftOut();
    void dropDetached();
    bool relist(Directory* directory);

    void walk();
    bool enter(int parentDirectory, const Found& found);
    Directory* place(int watch, const Found& found);
    bool collect(int directory, Directory* of);
    void compareTime(int directory);
    int open(Directory* directory);
    Platform::FileDescriptor openByPath(const Directory* directory) const;
    QByteArray canonicalPath(const Directory* directory) const;
    bool isRemote(const Directory* parent, const std::string& name) const;
    bool isUnwanted(Directory* parent, const std::string& name) const;
    void leaveOut(Directory* parent);
    void detach(Directory* directory, uint32_t cookie);
    void drop(Directory* directory);

    Platform::FileDescriptor m_inotify;
    Platform::FileDescriptor m_walkEvent;
    Platform::FileDescriptor m_stopEvent;
    std::atomic<bool> m_stopping{false};

    const Handlers* m_handlers = nullptr;
    QByteArray m_root;
    QByteArray m_canonicalRoot; ///< as the mount table names it
    Platform::CurrentMounts m_mounts;
    QHash<QByteArray, bool> m_mountsInside; ///< those of the table that are below the root
    Platform::WatchedTree m_tree;
    Platform::EntryBuffer m_buffer;
    Platform::DirectoryChain<Directory*> m_chain;
    std::vector<Found> m_found; ///< still to be walked into
    uint32_t m_walk = 0;        ///< number of the current walk
    qint64 m_startedNs = 0;     ///< when `run` began
    bool m_isFirstWalk = false; ///< the index was ahead of it
    bool m_isWholeWalk = false; ///< also into what is known already
    bool m_needsWholeWalk = true;
    bool m_hasLost = false; ///< to be told once the model is right
    bool m_hasEnded = false;
    bool m_isBarred = false; ///< there were no means for the last whole walk
    bool m_isHeldUp = false; ///< there were none to look into an unsettled directory
    bool m_isOutOfWatches = false;
    bool m_hasRunOut = false;      ///< once more, since it was last set to false
    bool m_mayHaveWatches = false; ///< some came free since the last attempt
    size_t m_takenIn = 0;          ///< directories that a walk found new

    std::unordered_map<Directory*, uint32_t> m_detached; ///< with the cookie of their move
    std::unordered_set<Directory*> m_unsettled; ///< couldn't be looked into when it was due
    std::unordered_set<Directory*> m_leftOut;   ///< with children for which no watch was left
};

void InotifyWatcher::run(const QString& root, const Handlers& handlers)
{
    timespec now = {};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
    m_startedNs = nanoseconds(now);
    const std::optional<QByteArray> path = Platform::pathBytes(root);
    if (!path)
        return;
    m_root = *path;
    m_handlers = &handlers;
    m_isFirstWalk = true;
    if (!waitUntilWalkIsAllowed())
        return;
    do {
        settle();
    } while (!m_hasEnded && waitForEvents() && readEvents());
    if (m_hasEnded && m_tree.root() && !isStopping())
        handlers.overflow();
}

void InotifyWatcher::allowWalk()
{
    ::eventfd_write(m_walkEvent.get(), 1);
}

void InotifyWatcher::stop()
{
    m_stopping.store(true);
    // Never read, so it ends every wait to come as well.
    ::eventfd_write(m_stopEvent.get(), 1);
}

bool InotifyWatcher::waitUntilWalkIsAllowed()
{
    std::array<pollfd, 2> sources{pollfd{m_walkEvent.get(), POLLIN, 0},
                                  pollfd{m_stopEvent.get(), POLLIN, 0}};
    return waitForAny(sources) && !isStopping();
}

bool InotifyWatcher::waitForEvents()
{
    std::array<pollfd, 3> sources{pollfd{m_inotify.get(), POLLIN, 0},
                                  pollfd{m_stopEvent.get(), POLLIN, 0},
                                  pollfd{m_mounts.descriptor(), POLLPRI, 0}};
    if (!waitForAny(sources, patienceMs()) || isStopping())
        return false;
    if (sources[2].revents != 0) {
        m_mounts.expectNews();
        lookAtMounts();
    }
    return true;
}

/// Nothing tells of means that come free elsewhere. Without a watch of the root there are no events
/// either that would be an occasion to try again.
int InotifyWatcher::patienceMs() const
{
    if (m_isBarred)
        return kRootRetryMs;
    return m_needsWholeWalk ? 0 : kForEver;
}

/// No event tells of what is in a mount, nor of what it hid.
void InotifyWatcher::lookAtMounts()
{
    if (m_mounts.look() != Platform::CurrentMounts::News::Changed)
        return;
    QHash<QByteArray, bool> inside = m_mounts.table().below(m_canonicalRoot);
    if (m_tree.root() && inside != m_mountsInside)
        m_needsWholeWalk = m_hasLost = true;
    m_mountsInside = std::move(inside);
}

/// \returns false if the watch has failed or is to end.
bool InotifyWatcher::readEvents()
{
    alignas(inotify_event) std::array<char, kReadBytes> events;
    while (!isStopping() && !m_hasEnded) {
        const ssize_t size = ::read(m_inotify.get(), events.data(), events.size());
        if (size < 0 && errno == EINTR)
            continue;
        if (size <= 0)
            return size < 0 && errno == EAGAIN;
        QVector<Platform::TreeChange> batch;
        handleEvents(events.data(), static_cast<size_t>(size), batch);
        // Told after the new directories are watched: whoever reads them now misses nothing.
        if (!batch.isEmpty() && !isStopping())
            m_handlers->changes(std::move(batch));
    }
    return !isStopping();
}

void InotifyWatcher::handleEvents(const char* events, size_t size,
                                  QVector<Platform::TreeChange>& batch)
{
    for (size_t offset = 0; offset < size && !isStopping() && !m_hasEnded;) {
        const auto* event = reinterpret_cast<const inotify_event*>(events + offset);
        offset += sizeof(inotify_event) + event->len;
        handleEvent(*event, batch);
    }
}

void InotifyWatcher::handleEvent(const inotify_event& event, QVector<Platform::TreeChange>& batch)
{
    if (event.mask & IN_Q_OVERFLOW) {
        m_needsWholeWalk = m_hasLost = true;
        return;
    }
    Directory* directory = m_tree.find(event.wd);
    if (!directory)
        return;
    if (directory == m_tree.root() && (event.mask & kRootGone)) {
        m_hasEnded = true;
        return;
    }
    if (event.mask & IN_IGNORED) {
        drop(directory);
        return;
    }
    const QString name = event.len > 0 ? Platform::fileNameText(event.name) : QString();
    if (name.isEmpty())
        return;
    if (m_tree.isAttached(directory)) {
        const QString parent = Platform::fileNameText(m_tree.path(directory));
        const QString path = parent.isEmpty() ? name : parent + '/' + name;
        batch.append({actionOf(event.mask), path});
        if (isTakenOver(directory, event))
            batch.append({Platform::FileRenamedNewName, path});
    }
    if (event.mask & IN_ISDIR)
        handleDirectory(directory, event);
}

/// If two files are exchanged, the system tells of the one that took a name before it tells of the
/// one that left it, and whoever believes the last word would miss the name.
bool InotifyWatcher::isTakenOver(Directory* parent, const inotify_event& event)
{
    if (!(event.mask & IN_MOVED_FROM) || event.mask & IN_ISDIR)
        return false;
    const int directory = open(parent);
    if (directory < 0)
        return false;
    return isRemote(parent, event.name) ||
           ::faccessat(directory, event.name, F_OK, AT_SYMLINK_NOFOLLOW) == 0;
}

/// Brings the model up to date with one name of a directory.
void InotifyWatcher::handleDirectory(Directory* parent, const inotify_event& event)
{
    const int parentDirectory = open(parent);
    if (parentDirectory < 0)
        m_unsettled.insert(parent);
    if (parentDirectory < 0 || !enter(parentDirectory, {parent, event.name}))
        takeEventsWord(parent, event);
    walk();
}

/// Where nothing can be seen any more, what was there at the time of the event is put down. It
/// gives the events in between their right paths; another one has the name looked at again.
void InotifyWatcher::takeEventsWord(Directory* parent, const inotify_event& event)
{
    if (Directory* previous = m_tree.child(parent, event.name))
        detach(previous, event.mask & IN_MOVED_FROM ? event.cookie : 0);
    if (!(event.mask & IN_MOVED_TO) || isUnwanted(parent, event.name))
        return;
    for (const auto& [directory, cookie] : m_detached) {
        if (cookie != event.cookie || Platform::WatchedTree::isAtOrAbove(directory, parent))
            continue;
        m_tree.move(directory, parent, event.name);
        m_detached.erase(directory);
        return;
    }
}

/// Nothing is left in the queue: does what had to wait for that, and tells of losses.
void InotifyWatcher::settle()
{
    if (m_needsWholeWalk && !m_hasEnded)
        walkAll();
    if (m_hasEnded)
        return;
    relistUnsettled();
    dropDetached();
    retryLeftOut();
    // Nothing stays open while there is nothing to do: an open directory can't be unmounted.
    m_chain.clear();
    // Not while a walk is due: whoever reads the tree before it has to do so once more behind it.
    if (m_hasLost && !isStopping() && (!m_needsWholeWalk || m_isBarred)) {
        m_hasLost = false;
        m_handlers->overflow();
    }
}

/// Watches whatever is there and forgets what no longer is.
void InotifyWatcher::walkAll()
{
    m_needsWholeWalk = false;
    m_chain.clear();
    Platform::FileDescriptor root;
    if (!watchRoot(root))
        return;
    m_unsettled.clear();
    m_leftOut.clear();
    ++m_walk;
    m_isWholeWalk = true;
    m_tree.root()->seen = m_walk;
    collect(root.get(), m_tree.root());
    m_chain.append(m_tree.root(), std::move(root));
    walk();
    m_isWholeWalk = m_isFirstWalk = false;
    if (isStopping())
        return;
    for (Directory* directory : m_tree.unseen(m_walk))
        detach(directory, 0);
}

bool InotifyWatcher::watchRoot(Platform::FileDescriptor& root)
{
    root = Platform::openPath(m_root, O_RDONLY | O_DIRECTORY);
    if (!root.isOpen())
        return failToWatchRoot(errno);
    m_canonicalRoot = Platform::canonicalPath(root.get(), m_root);
    // Without the table the walk might enter what never answers.
    if (m_mounts.look() == Platform::CurrentMounts::News::Unknown)
        return failToWatchRoot(EMFILE);
    m_mountsInside = m_mounts.table().below(m_canonicalRoot);
    const int watch = Platform::watchDirectory(m_inotify.get(), root.get(), kRootMask);
    if (watch < 0)
        return failToWatchRoot(errno);
    // All that happened until now was told by nobody.
    m_hasLost = std::exchange(m_isBarred, false) || m_hasLost;
    m_hasEnded = m_tree.root() && m_tree.root()->watch != watch;
    if (!m_tree.root())
        m_tree.addRoot(watch);
    if (m_isFirstWalk)
        compareTime(root.get());
    return !m_hasEnded;
}

/// The walk stays due, unless there is nothing to wait for. \returns false.
bool InotifyWatcher::failToWatchRoot(int error)
{
    m_hasEnded = !Platform::isOutOfMeans(error);
    m_isBarred = m_needsWholeWalk = !m_hasEnded;
    if (m_isBarred)
        leaveOut(nullptr);
    return false;
}

void InotifyWatcher::relistUnsettled()
{
    const bool wasHeldUp = std::exchange(m_isHeldUp, false);
    const size_t before = m_takenIn;
    const std::vector<Directory*> directories(m_unsettled.begin(), m_unsettled.end());
    for (Directory* directory : directories) {
        // Otherwise it has been moved on, and the event that tells where is still to come.
        if (!isStopping() && m_tree.isAttached(directory) && relist(directory))
            m_unsettled.erase(directory);
    }
    // What happened in new ones in the meantime was told by nobody.
    m_hasLost = m_hasLost || (wasHeldUp && m_takenIn != before);
}

/// There is no way to be told of watches that come free elsewhere, so what had to be left out is
/// tried again when some of our own did, or when a new directory could be watched.
void InotifyWatcher::retryLeftOut()
{
    if (std::exchange(m_mayHaveWatches, false)) {
        const std::vector<Directory*> directories(m_leftOut.begin(), m_leftOut.end());
        m_leftOut.clear();
        const size_t before = m_takenIn;
        m_hasRunOut = false;
        for (Directory* directory : directories) {
            if (m_hasRunOut || isStopping() || !relist(directory))
                m_leftOut.insert(directory);
        }
        // What happened there so far was told by nobody.
        m_hasLost = m_hasLost || m_takenIn != before;
        dropDetached();
        m_mayHaveWatches = false;
    }
    if (m_leftOut.empty() && !m_isBarred)
        m_isOutOfWatches = false;
}

/// A directory that was taken from its place and turned up nowhere has left the tree.
void InotifyWatcher::dropDetached()
{
    while (!m_detached.empty())
        drop(m_detached.begin()->first);
}

/// Looks at all names of a directory. \returns false if it isn't where it is thought to be, or
/// can't be opened for now.
bool InotifyWatcher::relist(Directory* directory)
{
    const int opened = open(directory);
    if (opened < 0) {
        const int error = errno;
        m_isHeldUp = m_isHeldUp || Platform::isOutOfMeans(error);
        return error != ENOENT && error != ENOTDIR && error != ELOOP &&
               !Platform::isOutOfMeans(error);
    }
    ++m_walk;
    // It may have been read already on the way to others.
    ::lseek(opened, 0, SEEK_SET);
    const bool isComplete = collect(opened, directory);
    walk();
    std::vector<Directory*> gone;
    for (Directory* child = directory->firstChild; child; child = child->next) {
        if (child->seen != m_walk)
            gone.push_back(child);
    }
    if (isComplete && !isStopping()) {
        for (Directory* child : gone)
            detach(child, 0);
    }
    return true;
}

/// Goes into the directories in `m_found` and those below, depth first.
void InotifyWatcher::walk()
{
    while (!m_found.empty() && !isStopping()) {
        const Found found = std::move(m_found.back());
        m_found.pop_back();
        const int parent = open(found.parent);
        if (parent < 0)
            m_unsettled.insert(found.parent);
        else
            enter(parent, found);
    }
    m_found.clear();
}

/// Watches a directory and collects those in it. Watches first: one that is made after the
/// listing is told by an event. \returns false if there is none that is to be watched.
bool InotifyWatcher::enter(int parentDirectory, const Found& found)
{
    if (isUnwanted(found.parent, found.name))
        return false;
    Platform::FileDescriptor directory =
        Platform::openSubdirectory(parentDirectory, found.name.c_str());
    const int watch = directory.isOpen()
                          ? Platform::watchDirectory(m_inotify.get(), directory.get(), kWatchMask)
                          : -1;
    if (watch < 0) {
        if (Platform::isOutOfMeans(errno))
            leaveOut(found.parent);
        return false;
    }
    const bool isKnown = m_tree.find(watch);
    Directory* placed = place(watch, found);
    if (!placed)
        return false;
    placed->seen = m_walk;
    if (isKnown && !m_isWholeWalk)
        return true; // with all that is below it
    if (!isKnown) {
        ++m_takenIn;
        m_mayHaveWatches = m_mayHaveWatches || m_isOutOfWatches;
    }
    if (m_isFirstWalk)
        compareTime(directory.get());
    collect(directory.get(), placed);
    m_chain.append(placed, std::move(directory));
    return true;
}

/// Puts the directory of a watch to its place in the model, wherever it was before.
/// \returns null if it would come to be below itself.
Directory* InotifyWatcher::place(int watch, const Found& found)
{
    Directory* known = m_tree.find(watch);
    Directory* previous = m_tree.child(found.parent, found.name);
    if (known && known == previous)
        return known;
    if (known && Platform::WatchedTree::isAtOrAbove(known, found.parent)) {
        // Either the model is behind in more than one place, or a directory is mounted inside
        // itself. A whole walk finds out; if that comes here too, it is a mount.
        m_needsWholeWalk = m_needsWholeWalk || !m_isWholeWalk;
        return nullptr;
    }
    if (previous)
        detach(previous, 0);
    if (!known)
        return m_tree.add(watch, found.parent, found.name);
    m_tree.move(known, found.parent, found.name);
    m_detached.erase(known);
    return known;
}

/// Puts the directories in an open one to `m_found`. \returns false if it couldn't be read whole.
bool InotifyWatcher::collect(int directory, Directory* of)
{
    return m_buffer.read(
        directory,
        [&](std::string_view name, unsigned char type) {
            // Of unknown type: whether it is a directory shows when it is opened as one.
            if (type == DT_DIR || type == DT_UNKNOWN)
                m_found.push_back({of, std::string(name)});
        },
        [this] { return isStopping(); });
}

/// The index has read the tree before there was a watch. What was changed in between, nobody tells;
/// the time of the last change in the directory shows it.
void InotifyWatcher::compareTime(int directory)
{
    struct stat status = {};
    if (m_hasLost || ::fstat(directory, &status) != 0)
        return;
    const qint64 slack = status.st_mtim.tv_nsec == 0 ? 2 * kSecondNs : kTickNs;
    m_hasLost = nanoseconds(status.st_mtim) >= m_startedNs - slack;
}

/// \returns the open directory, owned by the chain; negative if it isn't where it is thought to be.
int InotifyWatcher::open(Directory* directory)
{
    // Here, because all that touches the tree begins with it.
    lookAtMounts();
    const int reached = m_chain.shorten([=](const Directory* key) { return key == directory; });
    if (reached >= 0)
        return reached;
    errno = ENOENT;
    if (!m_tree.isAttached(directory))
        return -1;
    Platform::FileDescriptor opened = openByPath(directory);
    if (!opened.isOpen())
        return -1;
    // Another directory may bear that name by now. Its watch is the only thing that tells.
    const int watch = Platform::watchDirectory(m_inotify.get(), opened.get(), kWatchMask);
    if (watch == directory->watch)
        return m_chain.append(directory, std::move(opened));
    if (watch >= 0 && !m_tree.find(watch))
        ::inotify_rm_watch(m_inotify.get(), watch);
    errno = ENOENT;
    return -1;
}

Platform::FileDescriptor InotifyWatcher::openByPath(const Directory* directory) const
{
    Platform::FileDescriptor root = Platform::openPath(m_root, O_RDONLY | O_DIRECTORY);
    if (!root.isOpen() || directory == m_tree.root())
        return root;
    // What was watched may be hidden by a mount by now, or have a link in its place that leads
    // into one.
    if (m_mounts.table().isBehindRemote(canonicalPath(directory), m_canonicalRoot)) {
        errno = ENOENT;
        return Platform::FileDescriptor();
    }
    return Platform::openBelow(root.get(), QByteArray::fromStdString(m_tree.path(directory)));
}

/// The directory must be attached.
QByteArray InotifyWatcher::canonicalPath(const Directory* directory) const
{
    QByteArray path = m_canonicalRoot;
    if (directory != m_tree.root())
        path += '/' + QByteArray::fromStdString(m_tree.path(directory));
    return path;
}

bool InotifyWatcher::isRemote(const Directory* parent, const std::string& name) const
{
    if (!m_mounts.table().hasRemote() || !m_tree.isAttached(parent))
        return false;
    const QByteArray path = canonicalPath(parent);
    return m_mounts.table().holdsRemote(path) &&
           m_mounts.table().isRemote(path + '/' + name.c_str());
}

/// Whether nothing below a directory of that place is to be looked at.
bool InotifyWatcher::isUnwanted(Directory* parent, const std::string& name) const
{
    const QString text = Platform::fileNameText(name);
    return text.isNull() || m_handlers->isExcludedDir(text) || isRemote(parent, name);
}

/// No watch is left for a child of that directory.
void InotifyWatcher::leaveOut(Directory* parent)
{
    m_hasRunOut = true;
    if (parent)
        m_leftOut.insert(parent);
    // Told once. Whatever is left out from now on was missing in what is read then, or is told
    // as a new directory.
    if (!std::exchange(m_isOutOfWatches, true))
        m_hasLost = true;
}

void InotifyWatcher::detach(Directory* directory, uint32_t cookie)
{
    m_tree.detach(directory);
    m_detached[directory] = cookie;
}

void InotifyWatcher::drop(Directory* directory)
{
    m_chain.clear();
    m_tree.remove(directory, [this](Directory* gone) {
        m_detached.erase(gone);
        m_unsettled.erase(gone);
        m_leftOut.erase(gone);
        // Fails where the directory is gone and its watch with it.
        ::inotify_rm_watch(m_inotify.get(), gone->watch);
        m_mayHaveWatches = true;
    });
}

} // namespace

std::unique_ptr<Platform::TreeWatcher> Platform::TreeWatcher::create()
{
    FileDescriptor inotify(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    FileDescriptor walkEvent(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC));
    FileDescriptor stopEvent(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC));
    if (!inotify.isOpen() || !walkEvent.isOpen() || !stopEvent.isOpen())
        return nullptr;
    return std::make_unique<InotifyWatcher>(std::move(inotify), std::move(walkEvent),
                                            std::move(stopEvent));
}
