// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
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

/// Reports what is created, deleted and renamed below a directory, at any depth.
class TreeWatcher
{
public:
    struct Handlers
    {
        /// Whether what happens below directories of that name may be left out.
        std::function<bool(const QString& name)> isExcludedDir;
        std::function<void(QVector<TreeChange>&& batch)> changes; ///< never empty
        /// Changes were lost: whoever keeps a copy of the tree has to read it anew.
        std::function<void()> overflow;
    };

    TreeWatcher() = default;
    TreeWatcher(const TreeWatcher&) = delete;
    TreeWatcher& operator=(const TreeWatcher&) = delete;
    virtual ~TreeWatcher() = default;

    /// \returns null if the system has no means left.
    static std::unique_ptr<TreeWatcher> create();

    /// Watches the tree and calls the handlers, all on the calling thread, until `stop()` is called
    /// or the watch fails for good. Blocks, without waking up while nothing happens; only where it
    /// can't begin for want of means it tries again every few seconds. Once only.
    /// Where the system watches no whole trees, `run()` has to walk through it first, which it
    /// leaves until `allowWalk()`; if anything changed in the meantime, it tells an overflow.
    virtual void run(const QString& root, const Handlers& handlers) = 0;

    /// Lets `run()` walk through the tree, also one that has yet to begin. To be called when the
    /// tree has been read, which would take twice as long beside the walk. Any thread.
    virtual void allowWalk() = 0;

    /// Ends `run()`, also one that has yet to begin. Any thread.
    virtual void stop() = 0;
};

} // namespace Platform
