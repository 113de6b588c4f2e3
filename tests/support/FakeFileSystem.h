// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "DirectoryReader.h"
#include "TreeWatcher.h"

#include <QIcon>
#include <QString>
#include <QStringList>
#include <QVector>

/// A home directory in memory, with threads that a test holds by the hand. Its object file defines
/// what "DirectoryReader.h", "TreeWatcher.h" and "FileTypeIcon.h" declare: compiled
/// into a test, it replaces the real ones of the library.
///
/// Paths are relative to the root and have "/" between their parts, whatever the system.
class FakeFileSystem
{
public:
    using Changes = QVector<Platform::TreeChange>;

    FakeFileSystem() = delete;

    /// Makes a file, or a folder if the path ends with "/", with all that is above it. A directory
    /// lists in the order in which its contents were made.
    static void add(const QString& path);
    static void add(const QStringList& paths);
    /// Takes a file or a folder with all that is in it away.
    static void remove(const QString& path);
    /// Makes a folder that no walk may enter, as where another file system begins.
    static void addClosed(const QString& path);
    /// Makes a folder that can't be read, whatever is in it.
    static void addUnreadable(const QString& path);

    static void setCaseSensitivity(Qt::CaseSensitivity caseSensitivity);

    /// How often a scan of all has begun.
    static int scanCount();
    /// How often a thread has begun to look at some paths.
    static int readingCount();
    /// How often a thread has begun to read, be it one or the other.
    static int threadCount();
    /// The folders that have been listed since the last call, in order; the root is an empty path.
    static QStringList listings();
    /// The paths that a thread has looked at since the last call, in order.
    static QStringList looks();
    /// Lets every thread that reads wait within its next step until `release()`.
    static void hold();
    static void release();
    /// Whether such a thread is waiting.
    static bool isHeld();

    /// Lets the system have no means left to watch anything.
    static void refuseWatcher();
    /// Ends the watch as if it had failed, at once or when it begins.
    static void breakWatch();
    /// Lets the watch go on whoever stops it, as long as the process lives.
    static void jamWatch();
    static bool isWatching();
    /// Whether a folder has ever been listed by a reader that had the watch.
    static bool isListedUnderWatch(const QString& folder);
    /// What the watch was told to forget since the last call, in order.
    static QStringList forgotten();
    /// What the watch says that it doesn't cover.
    static void setUnwatched(const QStringList& paths);
    /// Has the watch thread report changes. \param changes as many calls as there are lists.
    static void report(const QVector<Changes>& batches);
    static void reportOverflow();
    /// Has the watch thread report again and again, until it is stopped.
    static void reportWithoutEnd(const Changes& changes);
    /// Returns when the watch thread has reported all that it was to report.
    static void awaitReports();

    /// Readers and watches in use, and so threads of the program that still run.
    static int busyCount();

    /// The suffixes for which icons have been asked for, in order, "<dir>" for folders.
    static QStringList iconRequests();
    static void setIcon(const QString& suffix, const QIcon& icon);
};
