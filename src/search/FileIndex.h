// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileSearch.h"
#include "FileStore.h"
#include "Types.h"

#include <QIcon>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>
#include <iterator>
#include <utility>

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

        bool operator==(const Entry& other) const = default;
    };

    /// All entries, each put together when it is asked for. Valid until the next event is handled.
    class Entries
    {
    public:
        class Iterator
        {
        public:
            using iterator_category = std::input_iterator_tag;
            using difference_type = qsizetype;
            using value_type = Entry;
            using pointer = void;
            using reference = Entry;

            Iterator(const FileStore* store, FileStore::Id id) : m_store(store), m_id(id) {}
            Entry operator*() const;
            Iterator& operator++()
            {
                m_id = m_store->next(m_id);
                return *this;
            }
            Iterator operator++(int) { return std::exchange(*this, ++Iterator(*this)); }
            bool operator==(const Iterator& other) const = default;

        private:
            const FileStore* m_store;
            FileStore::Id m_id;
        };

        explicit Entries(const FileStore& store) : m_store(&store) {}
        qsizetype size() const { return m_store->size(); }
        bool isEmpty() const { return size() == 0; }
        Iterator begin() const { return {m_store, m_store->begin()}; }
        Iterator end() const { return {m_store, m_store->end()}; }
        /// There must be one.
        Entry last() const;

    private:
        const FileStore* m_store;
    };

    /// What a search is after.
    enum Kind { Files = 0, Folders = 1 };

    static constexpr int ExpectedEntries = 90000; ///< of a usual home, reserved before a scan
    static constexpr int CoalesceMs = 800;        ///< of quiet, before changes are looked at
    static constexpr int MaxIncremental = 32;     ///< changes at a time; more are a thread's task
    static constexpr int PoolPerTier = FileSearch::PoolPerTier;
    static constexpr int ShutdownWaitMs = 2000; ///< for each of the threads, at the most
    /// Between two scans for changes that were lost, at the least.
    static constexpr int LossPauseMs = 30000;
    static constexpr int FreshMs =
        60000; ///< for which `refresh()` takes what isn't watched as known

    FileIndex() = delete;

    /// Starts the first scan and the watching, which last until the application quits. No effect
    /// from the second call on, nor without an application object.
    static void build();

    /// Has what the system can't watch read again, unless that was less than a minute ago. To be
    /// called when somebody is about to search. Returns at once.
    static void refresh();

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
    static Entries entries();

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
};
