// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>
#include <memory>

namespace Platform
{

/// What became of a name; the numbers are those of the Windows interface on every system.
enum FileAction : quint32 {
    FileAdded = 1,
    FileRemoved = 2,
    FileModified = 3,
    FileRenamedOldName = 4,
    FileRenamedNewName = 5
};

struct TreeChange
{
    quint32 action = 0; ///< a `FileAction`
    QString rel;        ///< path below the root, with native separators
};

/// Reports what is created, deleted and renamed below a directory, at any depth. Where the system
/// watches no whole trees, that is below the directories which a `DirectoryReader` that was made
/// with the watcher has listed.
class TreeWatcher
{
public:
    struct Handlers
    {
        /// Paths at which something happened; never none. It is a hint to look what stands there
        /// now: of two things that have been exchanged, for one, the last word of a name may be
        /// that it went. A path that leads through a directory which is on the move may be the
        /// old one; both ends of that move are told as well.
        std::function<void(QVector<TreeChange>&& batch)> changes;
        /// Changes were lost: whoever keeps a copy of the tree has to read it anew.
        std::function<void()> overflow;
    };

    TreeWatcher() = default;
    TreeWatcher(const TreeWatcher&) = delete;
    TreeWatcher& operator=(const TreeWatcher&) = delete;
    virtual ~TreeWatcher() = default;

    /// \returns null if the system has no means left.
    static std::unique_ptr<TreeWatcher> create(const QString& root);

    /// Calls the handlers, all on the calling thread, until `stop()` is called or the watch fails
    /// for good, of which an overflow is the last word unless the root was never there. Blocks,
    /// without waking up while nothing happens; only where it can't begin for want of means it
    /// tries again every few seconds. Once only.
    virtual void run(const Handlers& handlers) = 0;

    /// Ends `run()`, also one that has yet to begin. Any thread.
    virtual void stop() = 0;

    /// Nothing at or below that path is of interest any more. To be called when what has been moved
    /// from there has been listed at its new place: that goes on being watched. Never for a path
    /// that was listed and is still there. Any thread.
    /// \param rel path below the root, with native separators.
    virtual void forget(const QString& rel) = 0;

    /// Paths below the root of directories that are listed, but inside which nothing is watched,
    /// so that they have to be read again from time to time; an empty one is the root. Any thread.
    virtual QStringList unwatched() const = 0;
};

} // namespace Platform
