// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "DirectoryReader.h"
#include "TreeWatcher.h"

#include <QDir>
#include <QFile>
#include <QMutex>
#include <QMutexLocker>
#include <QSet>
#include <QTest>
#include <QThread>

#include <algorithm>
#include <memory>
#include <set>

/// Reads a tree, watches it on a thread of its own, and keeps what is reported and what is there by
/// now: a path of which something is told is looked at again, with all that is below it. Ends with
/// the object.
class WatchRun
{
public:
    /// \param beforeReport called on the watching thread before a batch is looked at.
    explicit WatchRun(const QString& root, std::function<void()> beforeReport = {})
        : m_root(root), m_watcher(Platform::TreeWatcher::create(root))
    {
        Platform::TreeWatcher::Handlers handlers;
        handlers.changes = [this, beforeReport](QVector<Platform::TreeChange>&& batch) {
            if (beforeReport)
                beforeReport();
            look(batch);
            const QMutexLocker locker(&m_mutex);
            m_isBatchEmpty = m_isBatchEmpty || batch.isEmpty();
            m_changes += batch;
        };
        handlers.overflow = [this] {
            readAll();
            const QMutexLocker locker(&m_mutex);
            ++m_overflows;
        };
        if (!m_watcher)
            return;
        readAll();
        m_thread.reset(QThread::create([this, handlers] { m_watcher->run(handlers); }));
        m_thread->start();
    }
    ~WatchRun()
    {
        if (m_thread)
            end();
    }
    WatchRun(const WatchRun&) = delete;
    WatchRun& operator=(const WatchRun&) = delete;

    Platform::TreeWatcher& watcher() { return *m_watcher; }
    void stop() { m_watcher->stop(); }
    bool hasEnded() const { return m_thread->isFinished(); }

    /// Stops and waits. \returns false if it doesn't end.
    bool end()
    {
        m_watcher->stop();
        return m_thread->wait(10000);
    }

    /// Makes files in a directory until one of them is reported, which is when it is watched.
    /// \param rel path of the directory below the root; empty for the root.
    bool isWatched(const QString& rel = {})
    {
        const QString directory = rel.isEmpty() ? QString() : rel + QDir::separator();
        return QTest::qWaitFor(
            [&] {
                const QString name = directory + QStringLiteral("probe%1").arg(++m_probes);
                QFile file(m_root + QDir::separator() + name);
                const bool isMade = file.open(QIODevice::WriteOnly);
                file.close();
                const bool isSeen = isMade && QTest::qWaitFor([&] { return hasSeen(name); }, 200);
                file.remove();
                // What is reported later must not be mixed up with this.
                return isSeen &&
                       QTest::qWaitFor([&] { return hasSeen(Platform::FileRemoved, name); }, 5000);
            },
            10000);
    }

    bool hasSeen(quint32 action, const QString& rel) const
    {
        const QMutexLocker locker(&m_mutex);
        return std::any_of(m_changes.cbegin(), m_changes.cend(), [&](const auto& change) {
            return change.action == action && change.rel == QDir::toNativeSeparators(rel);
        });
    }

    /// What was reported about one path, in its order.
    QVector<quint32> actionsOf(const QString& rel) const
    {
        const QMutexLocker locker(&m_mutex);
        QVector<quint32> actions;
        for (const Platform::TreeChange& change : m_changes) {
            if (change.rel == QDir::toNativeSeparators(rel))
                actions.append(change.action);
        }
        return actions;
    }

    QVector<Platform::TreeChange> changes() const
    {
        const QMutexLocker locker(&m_mutex);
        return m_changes;
    }

    /// All that is there as far as it was told, relative to the root.
    QSet<QString> copy() const
    {
        const QMutexLocker locker(&m_mutex);
        return QSet<QString>(m_copy.cbegin(), m_copy.cend());
    }

    int overflows() const
    {
        const QMutexLocker locker(&m_mutex);
        return m_overflows;
    }

    bool wasABatchEmpty() const
    {
        const QMutexLocker locker(&m_mutex);
        return m_isBatchEmpty;
    }

    void forget()
    {
        const QMutexLocker locker(&m_mutex);
        m_changes.clear();
        m_overflows = 0;
    }

private:
    bool hasSeen(const QString& rel) const { return !actionsOf(rel).isEmpty(); }

    static bool isExcluded(const QString& name)
    {
        return name.compare(QLatin1String("node_modules"), Qt::CaseInsensitive) == 0;
    }

    /// What is below a directory, as far as it can be read; empty for the root.
    QStringList read(Platform::DirectoryReader& reader, const QString& rel) const
    {
        QStringList found;
        QStringList due = {rel};
        while (!due.isEmpty()) {
            const QString directory = due.takeLast();
            const QString prefix = directory.isEmpty() ? QString() : directory + QDir::separator();
            reader.list(m_root + (directory.isEmpty() ? QString() : QDir::separator() + directory),
                        [&](Platform::DirectoryItem&& item) {
                            found.append(prefix + item.name);
                            if (item.enter && !isExcluded(item.name))
                                due.append(found.constLast());
                        });
        }
        return found;
    }

    void readAll()
    {
        const QStringList found =
            read(*Platform::DirectoryReader::create(m_root, m_watcher.get()), {});
        const QMutexLocker locker(&m_mutex);
        m_copy = std::set<QString>(found.cbegin(), found.cend());
    }

    void look(const QVector<Platform::TreeChange>& batch)
    {
        QStringList paths;
        for (const Platform::TreeChange& change : batch)
            paths.append(change.rel);
        paths.sort();
        paths.removeDuplicates();
        const auto reader = Platform::DirectoryReader::create(m_root, m_watcher.get());
        QString known;
        QStringList gone;
        for (const QString& rel : std::as_const(paths)) {
            const QStringList names = rel.split(QDir::separator());
            const bool isOutside = std::any_of(names.cbegin(), names.cend() - 1, isExcluded);
            if (isOutside || (!known.isEmpty() && rel.startsWith(known)))
                continue;
            known = rel + QDir::separator();
            const Platform::PathKind kind = reader->kindOf(m_root + QDir::separator() + rel);
            QStringList found;
            if (kind != Platform::PathKind::Missing)
                found.append(rel);
            if (kind == Platform::PathKind::Directory && !isExcluded(names.constLast()))
                found += read(*reader, rel);
            else
                gone.append(rel);
            replace(rel, found);
        }
        // Behind the reading, so that what has been moved keeps its watch.
        for (const QString& rel : std::as_const(gone))
            m_watcher->forget(rel);
    }

    void replace(const QString& rel, const QStringList& found)
    {
        const QMutexLocker locker(&m_mutex);
        // All that begins with the path and a separator stands together in the order.
        const QChar behindSeparator(QDir::separator().unicode() + 1);
        m_copy.erase(m_copy.lower_bound(rel + QDir::separator()),
                     m_copy.lower_bound(rel + behindSeparator));
        m_copy.erase(rel);
        m_copy.insert(found.cbegin(), found.cend());
    }

    QString m_root;
    std::unique_ptr<Platform::TreeWatcher> m_watcher;
    std::unique_ptr<QThread> m_thread;
    mutable QMutex m_mutex; ///< guards what follows
    QVector<Platform::TreeChange> m_changes;
    int m_overflows = 0;
    std::set<QString> m_copy;
    bool m_isBatchEmpty = false;
    int m_probes = 0; ///< of the testing thread alone
};
