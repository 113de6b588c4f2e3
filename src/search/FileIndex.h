// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "NameMatcher.h"
#include "TreeWatcher.h"
#include "Types.h"

#include <QHash>
#include <QIcon>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QThread>
#include <QTypeInfo>
#include <QVector>

#include <atomic>
#include <functional>
#include <memory>

class QTimer;

/// All files and folders under the user's home directory, in memory alone: read anew by a
/// background thread at each start, kept up to date by a second one that watches the tree.
///
/// GUI thread, every function: the two threads own nothing but what they are about to hand over,
/// so there is no lock. Nothing is shown or logged: what can't be read is left out.
class FileIndex
{
public:
    struct Entry
    {
        QString path;      ///< full, with native separators
        QString lowerName; ///< last component of the path in lower case
        bool isDir = false;
        /// Those of `lowerName`, for a search to leave most names unread. They lie behind the flag,
        /// where they take no memory of their own.
        NameMatcher::Pairs pairs = NameMatcher::AllPairs;

        /// The pairs say nothing about an entry that the name doesn't say.
        bool operator==(const Entry& other) const
        {
            return path == other.path && lowerName == other.lowerName && isDir == other.isDir;
        }
    };
    using Change = Platform::TreeChange;

    /// What a search is after.
    enum Kind { Files = 0, Folders = 1 };

    static constexpr int ExpectedEntries = 90000; ///< of a usual home, reserved before a scan
    static constexpr int CoalesceMs = 800;        ///< of quiet, before changes are looked at
    static constexpr int MaxIncremental = 32;     ///< changes at a time; more are a reason to scan
    static constexpr int PoolPerTier = 200;       ///< candidates of a search with equal quality
    static constexpr int ShutdownWaitMs = 2000;   ///< for each of the threads, at the most

    FileIndex() = delete;

    /// Starts the first scan and the watching, which last until the application quits. No effect
    /// from the second call on, nor without an application object.
    static void build();

    /// Whether a first scan has been delivered; true from then on.
    static bool isReady();

    /// Replaces the one function that is called whenever the index has changed. May be empty.
    static void setOnReady(std::function<void()> onReady);

    /// The best entries whose name contains `query`, which is trimmed and compared without regard
    /// to case: an equal name before one that begins with it before any other, in these by usage,
    /// then by length of the name. What `FolderFilter` doesn't accept is left out. Empty for an
    /// empty query, a `limit` below 1, or before the index is ready.
    static QVector<Entry> search(const QString& query, int limit, Kind kind);

    /// The icon of the entry's kind of file, asked for once per suffix; may be null.
    static QIcon iconFor(const Entry& entry);

    /// What to launch for an entry. It has no id.
    static LauncherElement asElement(const Entry& entry);

    /// Last component of the path as it is written on disk.
    static QString nameOf(const Entry& entry);

    /// All of it, in no order that lasts.
    static const QVector<Entry>& entries();

    /// How many entries lie under each of these folders, files and folders alike, by the rule of
    /// `FolderFilter::isUnder`. One walk over all entries, however many folders there are.
    static QVector<qsizetype> countUnder(const QStringList& folders);

    /// The home directory with native separators. Any thread.
    static const QString& rootPath();

    /// Whether a component of a path relative to the root is the name of a folder that is left
    /// out, be it a folder here or not. Any thread.
    static bool isExcludedPath(const QString& rel);

    /// Lets the next search walk all entries. Due whenever these change.
    static void forgetNarrowing();

private:
    struct Hit
    {
        int index = 0;        ///< into the entries
        quint16 position = 0; ///< where in the name the query begins first
        bool isDir = false;   ///< the entry's, here to be asked without reading that
    };

    struct Candidate
    {
        int index = 0; ///< into the entries
        int tier = 0;  ///< quality of the match, 0 is the best
        double score = 0.0;
        qsizetype nameLen = 0;
    };

    static void shutdown();

    static void startScan();
    static void scanInto(QVector<Entry>* out);
    static void complete(Entry& entry, const QString& directory);
    static void deliver(QVector<Entry>&& found);
    static bool isExcludedDir(const QString& name);

    static void startWatcher();
    static void watchLoop(Platform::TreeWatcher& watcher);
    static void postChanges(QVector<Change>&& batch);
    static void postRescan();

    static void queueChanges(QVector<Change>&& batch);
    static void armCoalesceTimer();
    static QTimer* coalesceTimer();
    static void flushChanges();
    static bool applyPending();
    static bool applyChange(const Change& change);
    static bool addPath(const QString& full);
    static bool removePath(const QString& full);
    static void notifyReady();

    static void findSuspects();
    static qsizetype indexOfPath(const QString& path);
    static void dropRemoved();
    static const QVector<Hit>& narrow(const QString& q);
    static QVector<Candidate> candidatesFor(const QString& q, Kind kind);

    static QString nameOfPath(const QString& path);
    static QString suffixOf(const Entry& entry);
    static QHash<QString, QIcon>& iconCache();
    static QIcon shellIconFor(const QString& key, bool isDir);
    static QVector<Entry>& mutableEntries();

    static inline bool s_started = false;
    static inline bool s_ready = false;
    static inline bool s_scanning = false;
    static inline bool s_needRescan = false; ///< the next flush ends in a scan
    static inline QVector<Change> s_pending; ///< waiting for the coalescing timer
    static inline QString s_lastQuery;       ///< what `s_lastHits` are the hits of
    static inline QVector<Hit> s_lastHits;
    /// Indices of all entries that a change in `s_pending` may be about, valid during a flush.
    static inline QVector<qsizetype> s_suspects;
    static inline std::function<void()> s_onReady;

    /// Ends both threads. All threads.
    static inline std::atomic<bool> s_cancel = false;
    /// Owned by the watch thread as well, so that it lasts as long as that runs.
    static inline std::shared_ptr<Platform::TreeWatcher> s_watcher;
    static inline QPointer<QThread> s_scanThread;
    static inline QPointer<QThread> s_watchThread;
};

// Lets the list of them grow in place instead of moving them one by one.
Q_DECLARE_TYPEINFO(FileIndex::Entry, Q_RELOCATABLE_TYPE);
