// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileScan.h"
#include "FileStore.h"
#include "TreeWatcher.h"

#include <QHash>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVector>

#include <atomic>
#include <functional>
#include <memory>

class QThread;
class QTimer;

/// Paths to be looked at, each once. Of several spellings of one the last counts.
class DuePaths
{
public:
    void add(const QString& rel, bool isSpelledAsOnDisk);
    QStringList take();
    qsizetype size() const { return m_paths.size(); }

private:
    QStringList m_paths; ///< in the order in which they came
    QHash<QString, qsizetype> m_placeOf;
};

/// Keeps a list of files as its tree is: reads all of it at first, then what it is told of.
///
/// A change makes its path due. A few changes of files alone are applied as they are; otherwise a
/// thread looks at all due paths and reads the folders among them. What becomes due while a thread
/// reads is looked at when that has ended. The whole tree is read again only if changes were lost.
///
/// GUI thread, every function. Needs an application object. Never destroyed, since a thread that is
/// stuck beyond the patience of `stop()` may still look at it.
class FileUpdates
{
public:
    using Change = Platform::TreeChange;

    static constexpr int MaxDue = 100000; ///< paths; if there are more they count as lost

    struct Handlers
    {
        /// The places of entries in the list mean others now; so may the numbers of folders.
        std::function<void(bool areFoldersOthers)> listChanged;
        /// All that was due has arrived, and brought something new.
        std::function<void()> delivered;
    };

    FileUpdates(FileStore& store, Handlers handlers);
    FileUpdates(const FileUpdates&) = delete;
    FileUpdates& operator=(const FileUpdates&) = delete;

    /// Begins to read and to watch the tree. Once only.
    void start(const QString& root);

    /// Ends the threads. Nothing is started any more.
    void stop();

    /// Reads what isn't watched, if that was some time ago.
    void refresh();

private:
    void startWatcher();
    void startThread(std::function<void()> read, std::function<void()> deliver);
    void startScan();
    void startReading();
    void deliverScan(FileStore&& found);
    void deliverReading(FileScan::Findings&& findings);
    void flushLater();

    void postChanges(QVector<Change>&& batch);
    void postLoss();
    void queueChanges(QVector<Change>&& batch);
    void flush();
    void applyChanges();
    FileScan::Tree tree() const { return {m_root, m_watcher.get(), m_isStopped}; }

    FileStore& m_store;
    Handlers m_handlers;
    QString m_root;

    QVector<Change> m_changes; ///< in their order; no more than suffice to be too many
    DuePaths m_due;
    bool m_mustRead = false; ///< the due paths, however few changes there are
    bool m_areLost = false;  ///< changes: all has to be read
    bool m_isReading = false;

    QTimer* m_coalesceTimer = nullptr;
    QTimer* m_lossTimer = nullptr;  ///< active for as long as no scan for lost changes may begin
    QTimer* m_freshTimer = nullptr; ///< active while what isn't watched counts as known

    std::atomic<bool> m_isStopped = false; ///< all threads
    /// Owned by the threads that use it as well, so that it lasts as long as they run.
    std::shared_ptr<Platform::TreeWatcher> m_watcher;
    QPointer<QThread> m_readThread;
    QPointer<QThread> m_watchThread;
};
