// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FileUpdates.h"

#include "FileChanges.h"
#include "FileIndex.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QThread>
#include <QThreadPool>
#include <QTimer>

#include <utility>

namespace
{

/// Has the GUI thread call `function`. Called by the background threads.
template <typename Function>
void postToGui(Function&& function)
{
    if (QCoreApplication* app = QCoreApplication::instance())
        QMetaObject::invokeMethod(app, std::forward<Function>(function), Qt::QueuedConnection);
}

QTimer* makeTimer(const char* name)
{
    auto* timer = new QTimer(QCoreApplication::instance());
    timer->setObjectName(name);
    timer->setSingleShot(true);
    return timer;
}

/// Off this thread: to give a large list back takes longer than a frame.
void freeLater(FileStore&& store)
{
    if (store.size() == 0)
        return;
    QThreadPool::globalInstance()->start(
        [outdated = std::make_shared<FileStore>(std::move(store))] { *outdated = FileStore(); });
}

} // namespace

void DuePaths::add(const QString& rel, bool isSpelledAsOnDisk)
{
    const QString key = FileScan::keyOf(rel);
    const auto known = m_placeOf.constFind(key);
    if (known == m_placeOf.cend()) {
        m_placeOf.insert(key, m_paths.size());
        m_paths.append(rel);
    } else if (isSpelledAsOnDisk) {
        m_paths[*known] = rel;
    }
}

QStringList DuePaths::take()
{
    m_placeOf.clear();
    return std::exchange(m_paths, {});
}

FileUpdates::FileUpdates(FileStore& store, Handlers handlers)
    : m_store(store), m_handlers(std::move(handlers))
{}

void FileUpdates::start(const QString& root)
{
    m_root = root;
    m_coalesceTimer = makeTimer("fileCoalesceTimer");
    m_lossTimer = makeTimer("fileLossTimer");
    m_freshTimer = makeTimer("fileFreshTimer");
    // Whatever counts its time may be late, but shall not wake the machine by itself.
    m_freshTimer->setTimerType(Qt::VeryCoarseTimer);
    QObject::connect(m_coalesceTimer, &QTimer::timeout, m_coalesceTimer, [this] { flush(); });
    QObject::connect(m_lossTimer, &QTimer::timeout, m_lossTimer, [this] {
        if (m_areLost)
            flush();
    });
    if (!m_root.isEmpty())
        m_watcher = Platform::TreeWatcher::create(m_root);
    startScan();
    startWatcher();
}

void FileUpdates::stop()
{
    // Both ends of an application call this; a thread that is stuck is waited for only once.
    if (m_isStopped.exchange(true))
        return;
    if (m_watcher)
        m_watcher->stop();
    for (const QPointer<QThread>& thread : {m_readThread, m_watchThread}) {
        if (thread)
            thread->wait(FileIndex::ShutdownWaitMs);
    }
}

void FileUpdates::refresh()
{
    if (!m_watcher || m_isStopped || m_freshTimer->isActive())
        return;
    const QStringList unwatched = m_watcher->unwatched();
    if (unwatched.isEmpty())
        return;
    m_freshTimer->start(FileIndex::FreshMs);
    if (unwatched.contains(QString())) {
        m_areLost = true; // of the whole tree
        m_coalesceTimer->start(FileIndex::CoalesceMs);
        return;
    }
    for (const QString& rel : unwatched)
        m_due.add(rel, true);
    m_mustRead = true;
    if (!m_isReading)
        startReading();
}

// Reading

void FileUpdates::startThread(std::function<void()> read, std::function<void()> deliver)
{
    m_isReading = true;
    m_readThread = QThread::create(std::move(read));
    // Handed over by the thread's last signal and not by a call from within it: one that is stuck
    // beyond the patience of the shutdown must not touch an application that may be going away.
    QObject::connect(m_readThread, &QThread::finished, QCoreApplication::instance(),
                     [this, deliver = std::move(deliver)] {
                         m_isReading = false;
                         if (!m_isStopped)
                             deliver();
                     });
    QObject::connect(m_readThread, &QThread::finished, m_readThread, &QObject::deleteLater);
    m_readThread->start();
}

void FileUpdates::startScan()
{
    // All that is due by now has happened already.
    m_changes.clear();
    m_due.take();
    m_mustRead = false;
    m_areLost = false;
    m_freshTimer->start(FileIndex::FreshMs);
    auto found = std::make_shared<FileStore>();
    startThread(
        [this, found, watcher = m_watcher] {
            *found = FileScan::read(tree(), FileIndex::ExpectedEntries);
        },
        [this, found] { deliverScan(std::move(*found)); });
}

void FileUpdates::startReading()
{
    m_changes.clear();
    m_mustRead = false;
    const QStringList paths = m_due.take();
    auto findings = std::make_shared<FileScan::Findings>();
    startThread([this, findings, paths,
                 watcher = m_watcher] { *findings = FileScan::readAgain(tree(), paths); },
                [this, findings] { deliverReading(std::move(*findings)); });
}

void FileUpdates::deliverScan(FileStore&& found)
{
    m_freshTimer->start(FileIndex::FreshMs);
    freeLater(std::exchange(m_store, std::move(found)));
    m_handlers.listChanged(true);
    flushLater();
    m_handlers.delivered();
}

void FileUpdates::deliverReading(FileScan::Findings&& findings)
{
    const FileStore::Renewal renewal = m_store.renew(findings.store, findings.places);
    freeLater(std::move(findings.store));
    if (renewal.hasChanged || renewal.areFoldersRenumbered)
        m_handlers.listChanged(renewal.areFoldersRenumbered);
    flushLater();
    if (renewal.hasChanged)
        m_handlers.delivered();
}

/// What has become due in the meantime.
void FileUpdates::flushLater()
{
    const bool isDue = m_areLost || m_mustRead || !m_changes.isEmpty();
    if (isDue && !m_coalesceTimer->isActive())
        m_coalesceTimer->start(FileIndex::CoalesceMs);
}

// Watching

void FileUpdates::startWatcher()
{
    if (!m_watcher)
        return;
    m_watchThread = QThread::create([this, watcher = m_watcher] {
        watcher->run({[this](QVector<Change>&& batch) { postChanges(std::move(batch)); },
                      [this] { postLoss(); }});
    });
    QObject::connect(m_watchThread, &QThread::finished, m_watchThread, &QObject::deleteLater);
    m_watchThread->start();
}

void FileUpdates::postChanges(QVector<Change>&& batch)
{
    // Between this look and the call lies no wait, so the application, which waits for this thread
    // after it has set the flag, is still there.
    if (batch.isEmpty() || m_isStopped)
        return;
    postToGui([this, batch = std::move(batch)]() mutable { queueChanges(std::move(batch)); });
}

void FileUpdates::postLoss()
{
    if (m_isStopped)
        return;
    postToGui([this] {
        m_areLost = true;
        m_coalesceTimer->start(FileIndex::CoalesceMs);
    });
}

void FileUpdates::queueChanges(QVector<Change>&& batch)
{
    for (Change& change : batch) {
        const bool isArrival = FileChanges::isArrival(change);
        if (!change.rel.isEmpty() && (isArrival || FileChanges::isDeparture(change)))
            m_due.add(change.rel, isArrival);
        // Beyond the limit it is their number alone that counts.
        if (m_changes.size() <= FileIndex::MaxIncremental)
            m_changes.append(std::move(change));
    }
    if (m_due.size() > MaxDue) {
        m_areLost = true;
        m_due.take();
    }
    // Restarted by every batch, so that an unpacked archive ends in one flush.
    m_coalesceTimer->start(FileIndex::CoalesceMs);
}

void FileUpdates::flush()
{
    // Once the application has quit, nothing may start a thread any more. And what comes to light
    // while one reads may have happened behind its back.
    if (m_isStopped || m_isReading)
        return;
    if (m_areLost && !m_lossTimer->isActive()) {
        m_lossTimer->start(FileIndex::LossPauseMs);
        startScan();
    } else if (m_mustRead || m_changes.size() > FileIndex::MaxIncremental) {
        startReading();
    } else {
        applyChanges();
    }
}

void FileUpdates::applyChanges()
{
    const FileChanges::Outcome outcome = FileChanges::apply(m_store, std::exchange(m_changes, {}));
    // Also if more follows: until it comes, searches go through the list as it is now.
    if (outcome.hasChanged)
        m_handlers.listChanged(false);
    if (outcome.needsReading) {
        startReading();
        return;
    }
    m_due.take();
    if (outcome.hasChanged)
        m_handlers.delivered();
}
