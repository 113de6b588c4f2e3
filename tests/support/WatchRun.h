// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "TreeWatcher.h"

#include <QDir>
#include <QFile>
#include <QMutex>
#include <QMutexLocker>
#include <QTest>
#include <QThread>

#include <algorithm>
#include <memory>

/// Watches a tree on a thread of its own and keeps what it reports. Ends with the object.
class WatchRun
{
public:
    /// \param beforeReport called on the watching thread before a batch is kept.
    explicit WatchRun(const QString& root, std::function<void()> beforeReport = {})
        : m_root(root), m_watcher(Platform::TreeWatcher::create())
    {
        Platform::TreeWatcher::Handlers handlers;
        handlers.isExcludedDir = [](const QString& name) {
            return name.compare(QLatin1String("node_modules"), Qt::CaseInsensitive) == 0;
        };
        handlers.changes = [this, beforeReport](QVector<Platform::TreeChange>&& batch) {
            if (beforeReport)
                beforeReport();
            const QMutexLocker locker(&m_mutex);
            m_isBatchEmpty = m_isBatchEmpty || batch.isEmpty();
            m_changes += batch;
        };
        handlers.overflow = [this] {
            const QMutexLocker locker(&m_mutex);
            ++m_overflows;
        };
        if (!m_watcher)
            return;
        m_thread.reset(QThread::create([this, handlers] { m_watcher->run(m_root, handlers); }));
        m_watcher->allowWalk();
        m_thread->start();
    }
    ~WatchRun()
    {
        if (m_thread)
            end();
    }
    WatchRun(const WatchRun&) = delete;
    WatchRun& operator=(const WatchRun&) = delete;

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

    QString m_root;
    std::unique_ptr<Platform::TreeWatcher> m_watcher;
    std::unique_ptr<QThread> m_thread;
    mutable QMutex m_mutex; ///< guards what follows
    QVector<Platform::TreeChange> m_changes;
    int m_overflows = 0;
    bool m_isBatchEmpty = false;
    int m_probes = 0; ///< of the testing thread alone
};
