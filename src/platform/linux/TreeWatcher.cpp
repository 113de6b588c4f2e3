// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "TreeWatcher.h"

#include "DirectoryAccess.h"
#include "Inotify.h"
#include "MountTable.h"
#include "TreeWatch.h"
#include "WatchLimit.h"
#include "WatchedTree.h"

#include <QDebug>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <mutex>
#include <set>

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>

namespace
{

using Directory = Platform::WatchedDirectory;

constexpr uint32_t kWatchMask =
    IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_EXCL_UNLINK;
constexpr uint32_t kRootMask = kWatchMask | IN_DELETE_SELF | IN_MOVE_SELF;
constexpr uint32_t kRootGone = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;
constexpr size_t kReadBytes = size_t{64} * 1024;
// Each watch that is given back is an event as well: so few that one read takes them all in.
constexpr int kGivenBackAtATime = 128;
// The smallest part of all watches to make room with, since to choose costs a look at all of them.
constexpr size_t kRoomDivisor = 16;

constexpr int kForEver = -1;
constexpr int kBeginRetryMs = 5000;

quint32 actionOf(uint32_t mask)
{
    if (mask & IN_CREATE)
        return Platform::FileAdded;
    if (mask & IN_DELETE)
        return Platform::FileRemoved;
    return mask & IN_MOVED_FROM ? Platform::FileRenamedOldName : Platform::FileRenamedNewName;
}

/// What programs keep there they write all day, and nobody waits to find it.
bool isHiddenBelowRoot(std::string_view rel)
{
    return rel.starts_with('.') && rel.find('/') == std::string_view::npos;
}

bool isAtOrBelow(std::string_view rel, std::string_view directory)
{
    return directory.empty() || (rel.starts_with(directory) &&
                                 (rel.size() == directory.size() || rel[directory.size()] == '/'));
}

/// Empty for what is directly below the root.
std::string_view parentOf(std::string_view rel)
{
    const size_t slash = rel.rfind('/');
    return slash == std::string_view::npos ? std::string_view() : rel.substr(0, slash);
}

std::string_view nameOf(std::string_view rel)
{
    return rel.substr(rel.rfind('/') + 1);
}

/// \returns false on failure.
template <size_t Count>
bool waitForAny(std::array<pollfd, Count>& sources, int timeoutMs)
{
    int ready = -1;
    do {
        ready = ::poll(sources.data(), sources.size(), timeoutMs);
    } while (ready < 0 && errno == EINTR);
    return ready >= 0;
}

/// Knows where each directory was when it was last listed, and tells what happens in it by that
/// path. A directory that has moved on since is told by its old and its new parent, and is put to
/// its new place when it is listed there; nothing is ever looked up on the disk.
class InotifyWatcher final : public Platform::TreeWatch
{
public:
    InotifyWatcher(const QString& root, Platform::FileDescriptor&& inotify,
                   Platform::FileDescriptor&& alarm)
        : m_root(Platform::pathBytes(root)),
          m_alarm(std::move(alarm)),
          m_inotify(std::move(inotify))
    {
        // What is mounted later than this may have been missed by the first to read the tree.
        m_mounts.look();
    }

    void run(const Handlers& handlers) override;
    void stop() override;
    void forget(const QString& rel) override;
    QStringList unwatched() const override;

    void beginReading() override;
    void endReading() override;
    void watch(int directory, std::string_view rel) override;
    void noteLoss() override;

private:
    struct News
    {
        QVector<Platform::TreeChange> changes;
        bool hasLost = false;
        bool hasEnded = false;
        bool isMoreToDo = false;
    };

    void wake() { ::eventfd_write(m_alarm.get(), 1); }
    void resetAlarm();
    bool begin();
    int tryToBegin();
    void end();
    bool waitForEvents(int timeoutMs);
    Platform::CurrentMounts::News lookAtMounts();
    News takeNews();
    bool tell(News&& news, const Handlers& handlers);

    // With the mutex held:
    void readEvents();
    void noteEvent(const inotify_event& event);
    int setWatch(int directory, std::string_view rel);
    void put(int watch, Directory* parent, std::string_view rel);
    bool makeRoom();
    bool giveSomeBack();
    void leaveOut(std::string_view rel);
    void forgetLeftOut(std::string_view rel);

    const std::optional<QByteArray> m_root; ///< nothing if it can't be a path
    const size_t m_limit = Platform::watchLimit();
    const Platform::FileDescriptor m_alarm;
    std::atomic<bool> m_isStopping{false};

    // Of the watching thread.
    QByteArray m_canonicalRoot; ///< as the mount table names it
    Platform::CurrentMounts m_mounts;
    QHash<QByteArray, bool> m_mountsInside; ///< those of the table that are below the root

    // Held from before a watch is set until its place is known: an event may come at once.
    mutable std::mutex m_mutex; ///< guards what follows
    Platform::FileDescriptor m_inotify;
    Platform::WatchedTree m_tree;
    std::set<std::string, std::less<>> m_leftOut; ///< listed, but not watched; none below another
    int m_readers = 0;
    bool m_hasToldLimit = false;
    News m_news;
};

void InotifyWatcher::run(const Handlers& handlers)
{
    if (!m_root || !begin())
        return;
    bool goesOn = true;
    while (goesOn && !m_isStopping) {
        News news = takeNews();
        const int timeoutMs = news.isMoreToDo ? 0 : kForEver;
        goesOn = tell(std::move(news), handlers) && waitForEvents(timeoutMs);
    }
    end();
}

void InotifyWatcher::stop()
{
    m_isStopping = true;
    wake();
}

void InotifyWatcher::forget(const QString& rel)
{
    const std::string path = rel.toStdString();
    const std::lock_guard lock(m_mutex);
    forgetLeftOut(path);
    Directory* directory = m_tree.at(path);
    if (!directory)
        return;
    if (directory == m_tree.root())
        m_tree.detachChildren(directory);
    else
        m_tree.detach(directory);
    wake();
}

QStringList InotifyWatcher::unwatched() const
{
    const std::lock_guard lock(m_mutex);
    QStringList paths;
    for (const std::string& rel : m_leftOut)
        paths.append(Platform::fileNameText(rel));
    return paths;
}

void InotifyWatcher::beginReading()
{
    const std::lock_guard lock(m_mutex);
    ++m_readers;
}

void InotifyWatcher::endReading()
{
    const std::lock_guard lock(m_mutex);
    --m_readers;
    wake();
}

void InotifyWatcher::watch(int directory, std::string_view rel)
{
    const std::lock_guard lock(m_mutex);
    setWatch(directory, rel);
}

void InotifyWatcher::noteLoss()
{
    const std::lock_guard lock(m_mutex);
    m_news.hasLost = true;
    wake();
}

/// \returns false if there is nothing to watch, or no time left to.
bool InotifyWatcher::begin()
{
    for (;;) {
        const int error = tryToBegin();
        if (error == 0)
            return true;
        if (!Platform::isOutOfMeans(error))
            return false;
        {
            // What happens until then is told by nobody.
            const std::lock_guard lock(m_mutex);
            m_news.hasLost = true;
        }
        std::array<pollfd, 1> sources{pollfd{m_alarm.get(), POLLIN, 0}};
        const bool hasWaited = waitForAny(sources, kBeginRetryMs);
        resetAlarm();
        if (!hasWaited || m_isStopping)
            return false;
    }
}

/// \returns why it isn't possible, as in `errno`; 0 on success.
int InotifyWatcher::tryToBegin()
{
    const Platform::FileDescriptor root = Platform::openPath(*m_root, O_RDONLY | O_DIRECTORY);
    if (!root.isOpen())
        return errno;
    m_canonicalRoot = Platform::canonicalPath(root.get(), *m_root);
    m_mountsInside = m_mounts.table().below(m_canonicalRoot);
    if (lookAtMounts() == Platform::CurrentMounts::News::Unknown)
        return EMFILE;
    const std::lock_guard lock(m_mutex);
    // Otherwise a reader has come first, and may be further on by now.
    return m_tree.root() ? 0 : setWatch(root.get(), {});
}

/// From now on everything is to be read again from time to time.
void InotifyWatcher::end()
{
    const std::lock_guard lock(m_mutex);
    m_inotify = Platform::FileDescriptor();
    leaveOut({});
}

void InotifyWatcher::resetAlarm()
{
    eventfd_t ignored = 0;
    ::eventfd_read(m_alarm.get(), &ignored);
}

bool InotifyWatcher::waitForEvents(int timeoutMs)
{
    std::array<pollfd, 3> sources{pollfd{m_inotify.get(), POLLIN, 0},
                                  pollfd{m_alarm.get(), POLLIN, 0},
                                  pollfd{m_mounts.descriptor(), POLLPRI, 0}};
    if (!waitForAny(sources, timeoutMs))
        return false;
    if (sources[1].revents != 0)
        resetAlarm();
    if (sources[2].revents != 0) {
        m_mounts.expectNews();
        lookAtMounts();
    }
    return true;
}

/// No event tells of what is in a mount, nor of what it hid.
Platform::CurrentMounts::News InotifyWatcher::lookAtMounts()
{
    const Platform::CurrentMounts::News news = m_mounts.look();
    QHash<QByteArray, bool> inside = m_mounts.table().below(m_canonicalRoot);
    const std::lock_guard lock(m_mutex);
    m_news.hasLost = m_news.hasLost || inside != m_mountsInside;
    m_mountsInside = std::move(inside);
    return news;
}

InotifyWatcher::News InotifyWatcher::takeNews()
{
    const std::lock_guard lock(m_mutex);
    readEvents();
    // Not while somebody may be about to list what has lost its place.
    m_news.isMoreToDo = m_readers == 0 && giveSomeBack();
    return std::exchange(m_news, {});
}

/// \returns false if that was the last.
bool InotifyWatcher::tell(News&& news, const Handlers& handlers)
{
    if (m_isStopping)
        return false;
    if (!news.changes.isEmpty())
        handlers.changes(std::move(news.changes));
    if (news.hasLost || news.hasEnded)
        handlers.overflow();
    return !news.hasEnded;
}

/// Takes in what one read gives.
void InotifyWatcher::readEvents()
{
    alignas(inotify_event) std::array<char, kReadBytes> events;
    const ssize_t size = ::read(m_inotify.get(), events.data(), events.size());
    for (ssize_t offset = 0; offset < size;) {
        const auto* event = reinterpret_cast<const inotify_event*>(events.data() + offset);
        offset += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        noteEvent(*event);
    }
}

void InotifyWatcher::noteEvent(const inotify_event& event)
{
    m_news.hasLost = m_news.hasLost || event.mask & IN_Q_OVERFLOW;
    Directory* directory = m_tree.find(event.wd);
    if (!directory)
        return;
    m_news.hasEnded = m_news.hasEnded || (directory == m_tree.root() && event.mask & kRootGone);
    if (event.mask & IN_IGNORED) {
        m_tree.remove(directory);
        return;
    }
    const QString name = event.len > 0 ? Platform::fileNameText(event.name) : QString();
    const std::optional<std::string> parent = m_tree.path(directory);
    if (name.isEmpty() || !parent)
        return;
    const QString path = Platform::fileNameText(*parent);
    m_news.changes.append({actionOf(event.mask), path.isEmpty() ? name : path + '/' + name});
}

/// \returns why the directory can't be watched, as in `errno`; 0 if it is, or isn't to be.
int InotifyWatcher::setWatch(int directory, std::string_view rel)
{
    if (isHiddenBelowRoot(rel)) {
        leaveOut(rel);
        return 0;
    }
    // Asked anew each time: what makes room may be a directory above this one.
    for (;;) {
        Directory* parent = rel.empty() ? nullptr : m_tree.at(parentOf(rel));
        if (!rel.empty() && (!parent || m_leftOut.contains(rel)))
            return 0;
        const uint32_t mask = rel.empty() ? kRootMask : kWatchMask;
        const int watch = Platform::watchDirectory(m_inotify.get(), directory, mask);
        int error = watch < 0 ? errno : 0;
        if (error == 0 && !rel.empty() && !m_tree.find(watch) && m_tree.size() >= m_limit) {
            ::inotify_rm_watch(m_inotify.get(), watch);
            error = ENOSPC;
        }
        if (error == 0)
            put(watch, parent, rel);
        else if (rel.empty() || !Platform::isOutOfMeans(error) || !makeRoom())
            leaveOut(rel);
        else
            continue;
        return error;
    }
}

/// \param parent null for the root.
void InotifyWatcher::put(int watch, Directory* parent, std::string_view rel)
{
    // Refused where a directory is mounted inside itself; it has its watch at the upper place.
    m_tree.put(watch, parent, nameOf(rel));
    // What happened in the root so far was told by nobody.
    if (!parent && m_leftOut.erase(std::string()) > 0)
        m_news.hasLost = true;
}

/// Gives watches back: those of directories that have lost their place, or else those of the
/// largest ones. \returns false if there are none.
bool InotifyWatcher::makeRoom()
{
    const auto giveBack = [this] {
        bool hasGiven = false;
        while (giveSomeBack())
            hasGiven = true;
        return hasGiven;
    };
    wake(); // for the events that are taken in meanwhile
    if (giveBack())
        return true;
    const size_t wanted = std::max<size_t>(m_tree.size() / kRoomDivisor, 1);
    for (Directory* directory : m_tree.largest(wanted)) {
        const std::string path = m_tree.path(directory).value();
        if (!std::exchange(m_hasToldLimit, true))
            qWarning() << "Batas inotify tercapai, folder ini hanya dibaca ulang sesekali:"
                       << Platform::fileNameText(path);
        leaveOut(path);
        m_tree.detach(directory);
    }
    return giveBack();
}

/// \returns false if there was none to be given back.
bool InotifyWatcher::giveSomeBack()
{
    int count = 0;
    for (; count < kGivenBackAtATime; ++count) {
        const std::optional<int> watch = m_tree.takeDetached();
        if (!watch)
            break;
        // Fails where the directory is gone and its watch with it.
        ::inotify_rm_watch(m_inotify.get(), *watch);
    }
    if (count > 0)
        readEvents();
    return count > 0;
}

void InotifyWatcher::leaveOut(std::string_view rel)
{
    forgetLeftOut(rel);
    m_leftOut.emplace(rel);
}

/// That and all below it.
void InotifyWatcher::forgetLeftOut(std::string_view rel)
{
    std::erase_if(m_leftOut, [rel](const std::string& each) { return isAtOrBelow(each, rel); });
}

} // namespace

std::unique_ptr<Platform::TreeWatcher> Platform::TreeWatcher::create(const QString& root)
{
    FileDescriptor inotify(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    FileDescriptor alarm(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC));
    if (!inotify.isOpen() || !alarm.isOpen())
        return nullptr;
    return std::make_unique<InotifyWatcher>(root, std::move(inotify), std::move(alarm));
}
