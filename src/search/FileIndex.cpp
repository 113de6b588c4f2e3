// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FileIndex.h"

#include "DirectoryReader.h"
#include "FileTypeIcon.h"
#include "FolderCounts.h"
#include "FolderFilter.h"
#include "UsageStats.h"

#include <QCoreApplication>
#include <QDir>
#include <QLatin1String>
#include <QMetaObject>
#include <QStandardPaths>
#include <QStringBuilder>
#include <QStringView>
#include <QThreadPool>
#include <QTimer>

#include <algorithm>
#include <array>
#include <bitset>
#include <cstddef>
#include <iterator>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace
{

constexpr QLatin1String kFolderKey("<folder>");

// Large and of no interest to somebody who looks for a file of his own.
constexpr std::array<QLatin1String, 5> kExcludedNames = {
    QLatin1String("AppData"), QLatin1String("node_modules"), QLatin1String(".git"),
    QLatin1String("__pycache__"), QLatin1String(".venv")};

constexpr int kTiers = 3;
constexpr qsizetype kLineUnits = 32; // characters that the memory gives at a time
constexpr qsizetype kLookAhead = 16; // names; takes about as long as the memory to answer
constexpr qsizetype kMaxPosition = std::numeric_limits<quint16>::max();

/// As `QString::toLower`, in the memory of the name where that is possible.
QString lowered(QString&& name)
{
    QString lower = std::move(name).toLower();
    // The name may have been decoded into more memory than it took in the end.
    if (lower.capacity() > lower.size() + 8)
        lower.squeeze();
    return lower;
}

/// Trims the memory of a scanned list but for a few entries that may be added by and by.
void fitMemory(QVector<FileIndex::Entry>& entries)
{
    QVector<FileIndex::Entry> fitting;
    fitting.reserve(entries.size() + entries.size() / 64 + FileIndex::MaxIncremental);
    std::move(entries.begin(), entries.end(), std::back_inserter(fitting));
    entries.swap(fitting);
}

Qt::CaseSensitivity pathCase()
{
    static const Qt::CaseSensitivity caseSensitivity = Platform::pathCaseSensitivity();
    return caseSensitivity;
}

QString fullPath(const FileIndex::Change& change)
{
    return FileIndex::rootPath() % QDir::separator() % change.rel;
}

/// Asks for memory that is to be read soon. Only a hint, and none with some compilers.
void prefetch([[maybe_unused]] const void* address)
{
#ifdef __GNUC__
    __builtin_prefetch(address);
#endif
}

/// Tells quickly of nearly every path that it is none of a few.
class PathFilter
{
public:
    void add(const QString& path)
    {
        m_lengths.set(lengthSlot(path));
        m_ends.set(endSlot(path));
    }

    bool canHold(const QString& path) const
    {
        // The length first, because it is at hand without reading the path.
        return m_lengths.test(lengthSlot(path)) && m_ends.test(endSlot(path));
    }

private:
    static constexpr std::size_t LengthSlots = 1024;
    static constexpr std::size_t EndSlots = 65536;
    static constexpr qsizetype EndLength = 10; ///< enough for a number and a suffix

    static std::size_t lengthSlot(const QString& path)
    {
        return static_cast<std::size_t>(path.size()) % LengthSlots;
    }

    static std::size_t endSlot(const QString& path)
    {
        const bool isFolded = pathCase() == Qt::CaseInsensitive;
        std::size_t hash = 0;
        for (const QChar c : QStringView(path).right(EndLength))
            hash = hash * 31 + (isFolded ? c.toCaseFolded() : c).unicode();
        return hash % EndSlots;
    }

    std::bitset<LengthSlots> m_lengths;
    std::bitset<EndSlots> m_ends;
};

/// Has the GUI thread call `function`. Called by the background threads.
template <typename Function>
void postToGui(Function&& function)
{
    if (QCoreApplication* app = QCoreApplication::instance())
        QMetaObject::invokeMethod(app, std::forward<Function>(function), Qt::QueuedConnection);
}

} // namespace

void FileIndex::build()
{
    if (s_started)
        return;
    QCoreApplication* app = QCoreApplication::instance();
    if (!app)
        return;
    s_started = true;
    QObject::connect(app, &QCoreApplication::aboutToQuit, app, &FileIndex::shutdown);
    // An application whose event loop never ran doesn't say that it is about to quit.
    qAddPostRoutine(&FileIndex::shutdown);
    startScan();
    startWatcher();
}

bool FileIndex::isReady()
{
    return s_ready;
}

void FileIndex::setOnReady(std::function<void()> onReady)
{
    s_onReady = std::move(onReady);
}

QVector<FileIndex::Entry> FileIndex::search(const QString& query, int limit, Kind kind)
{
    const QString q = query.trimmed().toLower();
    if (q.isEmpty() || !s_ready || limit <= 0)
        return {};
    QVector<Candidate> candidates = candidatesFor(q, kind);
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const Candidate& a, const Candidate& b) {
                         if (a.tier != b.tier)
                             return a.tier < b.tier;
                         if (a.score != b.score)
                             return a.score > b.score;
                         return a.nameLen < b.nameLen;
                     });
    candidates.resize(std::min<qsizetype>(candidates.size(), limit));
    QVector<Entry> best;
    best.reserve(candidates.size());
    for (const Candidate& candidate : std::as_const(candidates))
        best.append(entries().at(candidate.index));
    return best;
}

QIcon FileIndex::iconFor(const Entry& entry)
{
    const QString key = entry.isDir ? QString(kFolderKey) : suffixOf(entry);
    const auto known = iconCache().constFind(key);
    if (known != iconCache().cend())
        return known.value();
    return iconCache().insert(key, shellIconFor(key, entry.isDir)).value();
}

LauncherElement FileIndex::asElement(const Entry& entry)
{
    LauncherElement element;
    element.name = nameOf(entry);
    element.shortcutType = ItemType::File;
    element.value = entry.path;
    return element;
}

QString FileIndex::nameOf(const Entry& entry)
{
    return nameOfPath(entry.path);
}

QVector<qsizetype> FileIndex::countUnder(const QStringList& folders)
{
    const QString start = rootPath() + QDir::separator(); // of every path
    FolderCounts counts(folders, start);
    const QVector<Entry>& all = entries();
    const qsizetype size = all.size();
    constexpr qsizetype Ahead = 2 * kLookAhead; // a path is done with sooner than a name
    for (qsizetype i = 0; i < size; ++i) {
        if (i + Ahead < size) {
            // The start of what differs, and what of it is in the next piece of the memory.
            const QString& path = all.at(i + Ahead).path;
            prefetch(path.constData() + start.size());
            prefetch(path.constData() + std::min(path.size(), start.size() + kLineUnits));
        }
        counts.add(all.at(i).path);
    }
    return counts.counts();
}

const QVector<FileIndex::Entry>& FileIndex::entries()
{
    return mutableEntries();
}

const QString& FileIndex::rootPath()
{
    static const QString root =
        QDir::toNativeSeparators(QStandardPaths::writableLocation(QStandardPaths::HomeLocation));
    return root;
}

bool FileIndex::isExcludedPath(const QString& rel)
{
    const QStringList parts = rel.split(QDir::separator(), Qt::SkipEmptyParts);
    return std::any_of(parts.begin(), parts.end(), &FileIndex::isExcludedDir);
}

void FileIndex::forgetNarrowing()
{
    s_lastQuery.clear();
    s_lastHits.clear();
}

void FileIndex::shutdown()
{
    // Both ends of an application call this; a thread that is stuck is waited for only once.
    if (s_cancel.exchange(true))
        return;
    if (s_watcher)
        s_watcher->stop();
    for (const QPointer<QThread>& thread : {s_scanThread, s_watchThread}) {
        if (thread)
            thread->wait(ShutdownWaitMs);
    }
}

void FileIndex::startScan()
{
    if (s_scanning)
        return;
    s_scanning = true;
    auto found = std::make_shared<QVector<Entry>>();
    s_scanThread = QThread::create([found] {
        found->reserve(ExpectedEntries);
        scanInto(found.get());
        fitMemory(*found);
    });
    // Handed over by the thread's last signal and not by a call from within it: a scan that is
    // stuck beyond the shutdown's patience must not touch an application that may be going away.
    QObject::connect(s_scanThread, &QThread::finished, QCoreApplication::instance(), [found] {
        if (s_cancel)
            s_scanning = false;
        else
            deliver(std::move(*found));
    });
    QObject::connect(s_scanThread, &QThread::finished, s_scanThread, &QObject::deleteLater);
    s_scanThread->start();
}

void FileIndex::scanInto(QVector<Entry>* out)
{
    if (rootPath().isEmpty())
        return;
    const std::unique_ptr<Platform::DirectoryReader> reader =
        Platform::DirectoryReader::create(rootPath());
    std::vector<QString> stack = {rootPath()};
    std::vector<std::pair<QString, qsizetype>> walked; // a directory, and its first entry in `out`
    const Platform::DirectoryReader::Visitor visit = [&](Platform::DirectoryItem&& item) {
        // Here too, because a single directory can hold a million files.
        if (s_cancel || (item.isDir && isExcludedDir(item.name)))
            return;
        QString path;
        if (item.enter) {
            path = walked.back().first % QDir::separator() % item.name;
            stack.push_back(path);
        }
        out->append({path, std::move(item.name), item.isDir});
    };
    while (!stack.empty() && !s_cancel) {
        walked.emplace_back(std::move(stack.back()), out->size());
        stack.pop_back();
        // One that can't be read is left out, like all that is below it.
        reader->list(walked.back().first, visit);
    }
    // Most paths only now, so that the names lie next to each other in the memory: to a search,
    // this is half of its time.
    for (qsizetype end = out->size(); !walked.empty() && !s_cancel; walked.pop_back()) {
        const auto& [directory, begin] = walked.back();
        for (qsizetype i = begin; i < end; ++i)
            complete((*out)[i], directory);
        end = begin;
    }
}

void FileIndex::complete(Entry& entry, const QString& directory)
{
    if (entry.path.isEmpty())
        entry.path = directory % QDir::separator() % entry.lowerName;
    entry.lowerName = lowered(std::move(entry.lowerName));
    entry.pairs = NameMatcher::pairsOf(entry.lowerName);
}

void FileIndex::deliver(QVector<Entry>&& found)
{
    auto outdated =
        std::make_shared<QVector<Entry>>(std::exchange(mutableEntries(), std::move(found)));
    forgetNarrowing();
    s_ready = true;
    s_scanning = false;
    if (s_watcher)
        s_watcher->allowWalk();
    // To free a million names takes many times as long as a frame.
    if (!outdated->isEmpty())
        QThreadPool::globalInstance()->start([outdated = std::move(outdated)] { *outdated = {}; });
    notifyReady();
}

bool FileIndex::isExcludedDir(const QString& name)
{
    static const QString programDataName = Platform::programDataFolderName();
    const auto isSame = [&name](const auto& excluded) {
        return name.size() == excluded.size() && name.compare(excluded, Qt::CaseInsensitive) == 0;
    };
    return std::any_of(kExcludedNames.begin(), kExcludedNames.end(), isSame) ||
           isSame(programDataName);
}

void FileIndex::startWatcher()
{
    s_watcher = Platform::TreeWatcher::create();
    if (!s_watcher)
        return;
    s_watchThread = QThread::create([watcher = s_watcher] { watchLoop(*watcher); });
    QObject::connect(s_watchThread, &QThread::finished, s_watchThread, &QObject::deleteLater);
    s_watchThread->start();
}

void FileIndex::watchLoop(Platform::TreeWatcher& watcher)
{
    if (rootPath().isEmpty())
        return;
    watcher.run(rootPath(),
                {&FileIndex::isExcludedDir, &FileIndex::postChanges, &FileIndex::postRescan});
}

void FileIndex::postChanges(QVector<Change>&& batch)
{
    // Between this look and the call lies no wait, so the application, which waits for this thread
    // after it has set the flag, is still there.
    if (batch.isEmpty() || s_cancel)
        return;
    postToGui([batch = std::move(batch)]() mutable { queueChanges(std::move(batch)); });
}

void FileIndex::postRescan()
{
    if (s_cancel)
        return;
    postToGui([] {
        s_needRescan = true;
        armCoalesceTimer();
    });
}

void FileIndex::queueChanges(QVector<Change>&& batch)
{
    // Beyond the limit it is their number alone that counts.
    for (Change& change : batch) {
        if (s_pending.size() > MaxIncremental)
            break;
        s_pending.append(std::move(change));
    }
    armCoalesceTimer();
}

void FileIndex::armCoalesceTimer()
{
    // Restarted by every batch, so that an unpacked archive ends in one flush.
    coalesceTimer()->start(CoalesceMs);
}

QTimer* FileIndex::coalesceTimer()
{
    static QTimer* const timer = [] {
        auto* single = new QTimer(QCoreApplication::instance());
        single->setSingleShot(true);
        QObject::connect(single, &QTimer::timeout, single, &FileIndex::flushChanges);
        return single;
    }();
    return timer;
}

void FileIndex::flushChanges()
{
    if (s_scanning || s_cancel) {
        // The scan is taken to cover them. What changed behind its back shows up with the next. And
        // once the application has quit, nothing may start a thread any more.
        s_pending.clear();
        s_needRescan = false;
        return;
    }
    if (s_needRescan || s_pending.size() > MaxIncremental) {
        s_needRescan = false;
        s_pending.clear();
        startScan();
        return;
    }
    const bool hasChanged = applyPending();
    s_pending.clear();
    if (s_needRescan) {
        s_needRescan = false;
        startScan();
    } else if (hasChanged) {
        notifyReady();
    }
}

bool FileIndex::applyPending()
{
    findSuspects();
    bool hasChanged = false;
    for (const Change& change : std::as_const(s_pending)) {
        hasChanged = applyChange(change) || hasChanged;
        if (s_needRescan)
            break;
    }
    if (hasChanged) {
        dropRemoved();
        // Also if a scan follows: until it ends, searches go through the list as it is now.
        forgetNarrowing();
    }
    return hasChanged;
}

bool FileIndex::applyChange(const Change& change)
{
    if (change.rel.isEmpty() || isExcludedPath(change.rel))
        return false;
    const QString full = fullPath(change);
    switch (change.action) {
    case Platform::FileAdded:
    case Platform::FileRenamedNewName:
        return addPath(full);
    case Platform::FileRemoved:
    case Platform::FileRenamedOldName:
        return removePath(full);
    default:
        return false;
    }
}

bool FileIndex::addPath(const QString& full)
{
    switch (Platform::kindOfPath(full, rootPath())) {
    case Platform::PathKind::Missing:
        return false;
    case Platform::PathKind::Directory:
        // What it contains is not known, so only a scan can bring it.
        s_needRescan = true;
        return false;
    case Platform::PathKind::File:
        break;
    }
    if (indexOfPath(full) >= 0)
        return false;
    const QString name = nameOfPath(full).toLower();
    s_suspects.append(entries().size());
    mutableEntries().append({full, name, false, NameMatcher::pairsOf(name)});
    return true;
}

bool FileIndex::removePath(const QString& full)
{
    const qsizetype index = indexOfPath(full);
    if (index < 0)
        return false;
    if (entries().at(index).isDir) {
        // All that was below it has to go as well.
        s_needRescan = true;
        return false;
    }
    // Taken out at the end of the flush, for all of them in one go.
    mutableEntries()[index].path.clear();
    return true;
}

void FileIndex::notifyReady()
{
    // A copy, because the function may set another.
    const std::function<void()> onReady = s_onReady;
    if (onReady)
        onReady();
}

void FileIndex::findSuspects()
{
    PathFilter filter;
    for (const Change& change : std::as_const(s_pending))
        filter.add(fullPath(change));
    s_suspects.clear();
    for (qsizetype i = 0; i < entries().size(); ++i) {
        if (filter.canHold(entries().at(i).path))
            s_suspects.append(i);
    }
}

qsizetype FileIndex::indexOfPath(const QString& path)
{
    const auto found =
        std::find_if(s_suspects.cbegin(), s_suspects.cend(), [&path](qsizetype index) {
            return entries().at(index).path.compare(path, pathCase()) == 0;
        });
    return found == s_suspects.cend() ? -1 : *found;
}

void FileIndex::dropRemoved()
{
    mutableEntries().removeIf([](const Entry& entry) { return entry.path.isEmpty(); });
}

const QVector<FileIndex::Hit>& FileIndex::narrow(const QString& q)
{
    if (q == s_lastQuery)
        return s_lastHits;
    const bool isExtension = !s_lastQuery.isEmpty() && q.startsWith(s_lastQuery);
    if (!isExtension)
        s_lastHits.resize(entries().size());
    const NameMatcher matcher(q);
    const Entry* const all = entries().constData();
    Hit* const hits = s_lastHits.data();
    const qsizetype candidateCount = s_lastHits.size();
    qsizetype hitCount = 0;
    for (qsizetype i = 0; i < candidateCount; ++i) {
        // Earlier hits lie scattered, so each would be a wait for the memory. All entries in their
        // order are fetched well ahead by the processor itself.
        if (isExtension && i + 2 * kLookAhead < candidateCount) {
            prefetch(&all[hits[i + 2 * kLookAhead].index].lowerName);
            prefetch(all[hits[i + kLookAhead].index].lowerName.constData());
        }
        Hit hit = isExtension ? hits[i] : Hit{static_cast<int>(i), 0, all[i].isDir};
        const Entry& entry = all[hit.index];
        if (!matcher.canBeIn(entry.pairs))
            continue;
        const qsizetype position = matcher.indexIn(entry.lowerName, hit.position);
        hit.position = static_cast<quint16>(std::min(position, kMaxPosition));
        // Written in any case and kept by counting, because a branch on hit or miss would be
        // mispredicted half of the time.
        hits[hitCount] = hit;
        hitCount += position >= 0 ? 1 : 0;
    }
    s_lastHits.resize(hitCount);
    s_lastQuery = q;
    return s_lastHits;
}

QVector<FileIndex::Candidate> FileIndex::candidatesFor(const QString& q, Kind kind)
{
    QVector<Candidate> candidates;
    std::array<int, kTiers> counts = {};
    const bool wantDirs = kind == Folders;
    const auto isFull = [](int count) { return count >= PoolPerTier; };
    const Entry* const all = entries().constData();
    for (const Hit& hit : narrow(q)) {
        if (hit.isDir != wantDirs)
            continue;
        const Entry& entry = all[hit.index];
        const int tier = hit.position > 0 ? 2 : entry.lowerName.size() > q.size() ? 1 : 0;
        int& count = counts[static_cast<std::size_t>(tier)];
        if (isFull(count) || !FolderFilter::accepts(entry.path))
            continue;
        ++count;
        candidates.append(
            {hit.index, tier, UsageStats::scoreFor(entry.path), entry.lowerName.size()});
        if (std::all_of(counts.begin(), counts.end(), isFull))
            break;
    }
    return candidates;
}

QString FileIndex::nameOfPath(const QString& path)
{
    return path.mid(path.lastIndexOf(QDir::separator()) + 1);
}

QString FileIndex::suffixOf(const Entry& entry)
{
    const QString name = nameOf(entry);
    const qsizetype dot = name.lastIndexOf('.');
    return dot > 0 ? name.mid(dot).toLower() : QString();
}

QHash<QString, QIcon>& FileIndex::iconCache()
{
    static QHash<QString, QIcon> map;
    return map;
}

QIcon FileIndex::shellIconFor(const QString& key, bool isDir)
{
    return isDir ? Platform::fileTypeIcon(QString(), true) : Platform::fileTypeIcon(key, false);
}

QVector<FileIndex::Entry>& FileIndex::mutableEntries()
{
    static QVector<Entry> list;
    return list;
}
