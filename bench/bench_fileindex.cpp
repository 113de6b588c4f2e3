// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// The file index over home directories with generated trees of 10,000, 100,000 and, if the
// arguments say so, other numbers of entries: the first scan, with and without watches, beside
// `find` over the same tree, the memory of an entry, a keystroke for each letter and the next one
// after it, the counts of what lies below a few folders and below many, the longest time for which
// the GUI thread is busy at 32 changes, at 10,000, at 1,000 folders that come and go, and when the
// folder that holds everything is renamed, with the memory that it takes meanwhile, the wake-ups of
// an idle process, and the way out of a scan that has just begun. Then what other programs that
// find files by name need on the same tree, if they are installed. Every tree has a process of its
// own, since an index lasts as long. All that is made and removed lies in one folder of a private
// home.
//
//     bench_fileindex [entries...]

#include "FileIndex.h"
#include "FileScan.h"
#include "FreshProcess.h"
#include "TestHome.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <ctime>
#include <functional>
#include <vector>

namespace
{

constexpr int kFilesPerFolder = 12;
constexpr int kParents = 500;
constexpr int kRadix = 36;
constexpr int kRounds = 9;
constexpr int kCap = 6; // of results for each kind
constexpr int kUsualFolders = 8;
constexpr int kManyFolders = 1000;
constexpr int kBurst = 10000;
constexpr int kFolders = 1000;
constexpr int kTurnMs = 1;
constexpr int kIdleMs = 30000;
constexpr int kSettleMs = 3000; // beyond the coalescing time and the scan behind it
constexpr int kPatienceMs = 1800000;
constexpr int kExitPatienceMs = 100;
constexpr quint32 kSeed = 250000;
constexpr double kNsPerMs = 1e6;

double msSince(const QElapsedTimer& timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / kNsPerMs;
}

double timed(const std::function<void()>& work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return msSince(timer);
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

double medianTime(const std::function<void()>& prepare, const std::function<void()>& work)
{
    std::vector<double> times;
    for (int round = 0; round < kRounds; ++round) {
        prepare();
        times.push_back(timed(work));
    }
    return median(times);
}

/// Names as people and programs give them: words, numbers, few suffixes.
QString makeName(QRandomGenerator& random, int number)
{
    static const QStringList words = {"report", "invoice", "IMG",   "draft", "photo",  "main",
                                      "index",  "Notes",   "setup", "test",  "module", "Budget",
                                      "letter", "query",   "jazz",  "zip",   "backup", "config"};
    static const QStringList joints = {"_", "-", " ", "."};
    const auto pick = [&random](const QStringList& list) {
        return list.at(random.bounded(static_cast<int>(list.size())));
    };
    return pick(words) + pick(joints) + pick(words) + pick(joints) + QString::number(number);
}

void makeFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot make %s", qPrintable(path));
}

/// Makes so many entries: folders in each other, with a dozen files in each.
void makeTree(const QString& root, int entries)
{
    static const QStringList suffixes = {".txt", ".jpg", ".cpp", ".pdf", ".json", ""};
    QRandomGenerator random(kSeed);
    QStringList parents = {root}; // a few, so that paths get no longer than those of people
    QString folder = root;
    for (int i = 0; i < entries; ++i) {
        if (i % (kFilesPerFolder + 1) == 0) {
            folder = parents.at(random.bounded(static_cast<int>(parents.size()))) + '/' +
                     QString::number(i, kRadix);
            if (!QDir().mkdir(folder))
                qFatal("cannot make %s", qPrintable(folder));
            if (parents.size() < kParents)
                parents.append(folder);
        } else {
            const int suffix = random.bounded(static_cast<int>(suffixes.size()));
            makeFile(folder + '/' + makeName(random, i) + suffixes.at(suffix));
        }
    }
}

QString home()
{
    return QStandardPaths::writableLocation(QStandardPaths::HomeLocation);
}

/// The only place in the home directory in which anything is made or removed.
QString corner()
{
    return home() + QStringLiteral("/bench");
}

double findTime()
{
    return timed([] { QProcess::execute("find", {home(), "-printf", ""}); });
}

/// A number out of one of the process's own files that Linux has; -1 elsewhere.
qint64 numberBehind(const QString& fileName, const QByteArray& key)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray content = file.readAll();
    const qsizetype begin = content.indexOf(key);
    if (begin < 0)
        return -1;
    return content.mid(begin + key.size()).simplified().split(' ').first().toLongLong();
}

qint64 residentBytes()
{
    const qint64 kilobytes = numberBehind("/proc/self/status", "VmRSS:");
    return kilobytes < 0 ? -1 : kilobytes * 1024;
}

int threadCount()
{
    return static_cast<int>(
        QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size());
}

/// How often each thread of the process has waited for something so far.
QHash<QString, qint64> waits()
{
    QHash<QString, qint64> counts;
    QDirIterator tasks("/proc/self/task", QDir::Dirs | QDir::NoDotAndDotDot);
    while (tasks.hasNext()) {
        const QString task = tasks.next();
        counts.insert(task, numberBehind(task + "/status", "\nvoluntary_ctxt_switches:"));
    }
    return counts;
}

double threadMs()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / kNsPerMs;
}

/// The longest time between two turns of the event loop.
struct Block
{
    double ms = 0.0;
    double ownMs = 0.0; ///< in which the thread really worked, and no other had the processor

    QByteArray text() const
    {
        return QString("%1 ms at the most, %2 ms of them at work")
            .arg(ms, 0, 'f', 1)
            .arg(ownMs, 0, 'f', 1)
            .toUtf8();
    }
};

Block longestBlock(const std::function<bool()>& isDone)
{
    Block longest;
    QElapsedTimer sinceTurn;
    sinceTurn.start();
    double atTurn = threadMs();
    QEventLoop loop;
    QTimer turns;
    QObject::connect(&turns, &QTimer::timeout, &loop, [&] {
        longest.ms = std::max(longest.ms, msSince(sinceTurn) - kTurnMs);
        longest.ownMs = std::max(longest.ownMs, threadMs() - atTurn);
        const bool isOver = isDone(); // whose own work doesn't count
        sinceTurn.restart();
        atTurn = threadMs();
        if (isOver)
            loop.quit();
    });
    turns.start(kTurnMs);
    loop.exec();
    return longest;
}

/// Lets the event loop turn until all that was caused is over.
void settle()
{
    QElapsedTimer timer;
    timer.start();
    longestBlock([&timer] { return timer.elapsed() > kSettleMs; });
}

void keystroke(const QString& query)
{
    FileIndex::search(query, kCap, FileIndex::Files);
    FileIndex::search(query, kCap, FileIndex::Folders);
}

void measureMemory(qint64 before)
{
    qint64 lengths = 0;
    for (const FileIndex::Entry& entry : FileIndex::entries())
        lengths += entry.path.size();
    const double count = static_cast<double>(FileIndex::entries().size());
    std::printf("  memory: %.0f bytes an entry, path of %.1f characters on average\n",
                static_cast<double>(residentBytes() - before) / count,
                static_cast<double>(lengths) / count);
}

void measureKeystrokes()
{
    const QString letters = "abcdefghijklmnopqrstuvwxyz0123456789._-";
    const QString nextLetters = "aeinorst.0"; // those that most names hold
    double worstFirst = 0.0;
    double worstNext = 0.0;
    QString worstFirstKey;
    QString worstNextKeys;
    std::vector<double> firsts;
    std::vector<double> nexts;
    for (const QChar first : letters) {
        const QString query(first);
        firsts.push_back(medianTime(&FileIndex::forgetNarrowing, [&] { keystroke(query); }));
        if (firsts.back() > worstFirst) {
            worstFirst = firsts.back();
            worstFirstKey = query;
        }
        for (const QChar next : nextLetters) {
            const QString extended = query + next;
            const auto prepare = [&] {
                FileIndex::forgetNarrowing();
                FileIndex::search(query, 1, FileIndex::Files);
            };
            nexts.push_back(medianTime(prepare, [&] { keystroke(extended); }));
            if (nexts.back() > worstNext) {
                worstNext = nexts.back();
                worstNextKeys = extended;
            }
        }
    }
    std::printf("  a letter: median %.2f ms, worst %.2f ms (\"%s\")\n", median(firsts), worstFirst,
                qPrintable(worstFirstKey));
    std::printf("  one more letter: median %.2f ms, worst %.2f ms (\"%s\")\n", median(nexts),
                worstNext, qPrintable(worstNextKeys));
}

/// What the dialog asks that limits the search to folders: how much is in each of its rows.
void measureCounts()
{
    QStringList folders;
    const FileIndex::Entries all = FileIndex::entries();
    for (const FileIndex::Entry& entry : all) {
        if (entry.isDir && folders.size() < kManyFolders)
            folders.append(entry.path);
    }
    for (const qsizetype count : {qsizetype(kUsualFolders), folders.size()}) {
        const QStringList rows = folders.first(std::min(count, folders.size()));
        const double time = medianTime([] {}, [&rows] { FileIndex::countUnder(rows); });
        std::printf("  counts below %lld folders: %.1f ms\n", static_cast<long long>(rows.size()),
                    time);
    }
}

/// Changes that are applied one by one: half of them new files, half removed ones.
void measureFlush()
{
    QStringList removed;
    const FileIndex::Entries all = FileIndex::entries();
    const QString within = QDir::toNativeSeparators(corner() + '/');
    const auto isOwnFile = [&within](const FileIndex::Entry& entry) {
        return !entry.isDir && entry.path.startsWith(within);
    };
    for (int i = 1; removed.size() < FileIndex::MaxIncremental / 2; ++i) {
        const auto file =
            std::find_if(std::next(all.begin(), all.size() / FileIndex::MaxIncremental * i),
                         all.end(), isOwnFile);
        if (file == all.end())
            qFatal("too few files to remove some");
        removed.append((*file).path);
    }
    const QString last = corner() + "/zz last";
    for (const QString& path : std::as_const(removed))
        QFile::remove(path);
    for (int i = 1; i < FileIndex::MaxIncremental / 2; ++i)
        makeFile(corner() + QString("/zz new %1").arg(i));
    makeFile(last);
    const Block block = longestBlock([path = QDir::toNativeSeparators(last)] {
        return FileIndex::entries().last().path == path;
    });
    std::printf("  32 changes: GUI thread busy for %s\n", block.text().constData());
}

void measureBurst()
{
    int deliveries = 0;
    FileIndex::setOnReady([&deliveries] { ++deliveries; });
    const QString folder = corner() + "/zz burst";
    QProcess maker; // in a process of its own: this one's threads have enough to do
    FreshProcess::start(maker, "burst", {folder});
    const Block block = longestBlock(
        [&deliveries, &maker] { return deliveries > 0 && maker.state() == QProcess::NotRunning; });
    settle();
    std::printf("  %d new files: GUI thread busy for %s\n", kBurst, block.text().constData());
    FileIndex::setOnReady({});
}

double processorMs()
{
    return static_cast<double>(std::clock()) * 1000.0 / CLOCKS_PER_SEC;
}

bool isIndexed(const QString& path)
{
    return !FileIndex::search(QFileInfo(path).fileName(), 1, FileIndex::Folders).isEmpty();
}

/// Has a process make or remove many folders with a file in each, and waits until that is known.
void measureFolders(const QString& task)
{
    const QString last = corner() + QString("/zz folders/zz folder %1").arg(kFolders - 1);
    const bool isMaking = task == "make folders";
    int deliveries = 0;
    FileIndex::setOnReady([&deliveries] { ++deliveries; });
    const double before = processorMs();
    QProcess maker;
    FreshProcess::start(maker, task, {QFileInfo(last).path()});
    int seen = -1;
    const Block block = longestBlock([&] {
        if (maker.state() != QProcess::NotRunning || deliveries == seen)
            return false;
        seen = deliveries;
        return isIndexed(last) == isMaking;
    });
    const double spent = processorMs() - before;
    FileIndex::setOnReady({});
    std::printf("  %d folders %s: GUI thread busy for %s; %.0f ms of processor time in all\n",
                kFolders, isMaking ? "made" : "removed", block.text().constData(), spent);
}

int runMakeFolders(const QStringList& arguments)
{
    QDir().mkpath(arguments.first());
    for (int i = 0; i < kFolders; ++i) {
        const QString folder = arguments.first() + QString("/zz folder %1").arg(i);
        QDir().mkdir(folder);
        makeFile(folder + "/file.txt");
    }
    return 0;
}

int runRemoveFolders(const QStringList& arguments)
{
    for (int i = 0; i < kFolders; ++i)
        QDir(arguments.first() + QString("/zz folder %1").arg(i)).removeRecursively();
    return 0;
}

/// Everything under another name: the most that can be read at once while the old list serves.
void measureMove()
{
    QFile reset("/proc/self/clear_refs"); // of the peak
    if (!reset.open(QIODevice::WriteOnly) || reset.write("5") != 1)
        return;
    reset.close();
    const qint64 before = residentBytes();
    const double processorBefore = processorMs();
    int deliveries = 0;
    FileIndex::setOnReady([&deliveries] { ++deliveries; });
    QDir().rename(corner(), corner() + " moved");
    const Block block = longestBlock([&deliveries] { return deliveries > 0; });
    const qint64 peak = numberBehind("/proc/self/status", "VmHWM:") * 1024;
    std::printf("  everything renamed: GUI thread busy for %s; %.0f ms of processor time in all, "
                "memory %.2f times that before\n",
                block.text().constData(), processorMs() - processorBefore,
                static_cast<double>(peak) / static_cast<double>(before));
    FileIndex::setOnReady({});
    QDir().rename(corner() + " moved", corner());
}

/// What the two figures before are worth on this machine.
void measureNothing()
{
    QElapsedTimer timer;
    timer.start();
    std::printf("  nothing to do for %d s: GUI thread kept away for %s\n", kSettleMs / 1000,
                longestBlock([&timer] { return timer.elapsed() > kSettleMs; }).text().constData());
}

void measureIdle()
{
    const QHash<QString, qint64> before = waits();
    QEventLoop loop;
    QTimer::singleShot(kIdleMs, &loop, &QEventLoop::quit);
    loop.exec();
    const QHash<QString, qint64> after = waits();
    qint64 wakeUps = 0;
    for (auto it = after.begin(); it != after.end(); ++it)
        wakeUps += it.value() - before.value(it.key());
    std::printf(
        "  idle for %d s: %lld wake-ups of %lld threads, of which one ends the measurement\n",
        kIdleMs / 1000, static_cast<long long>(wakeUps), static_cast<long long>(after.size()));
}

int runBurst(const QStringList& arguments)
{
    QDir().mkpath(arguments.first());
    for (int i = 0; i < kBurst; ++i)
        makeFile(arguments.first() + QString("/file %1.txt").arg(i));
    return 0;
}

/// Builds the index and returns how long it took until it was there.
double buildTime()
{
    QEventLoop loop;
    QElapsedTimer timer;
    timer.start();
    double scan = 0.0;
    FileIndex::setOnReady([&] {
        scan = msSince(timer);
        loop.quit();
    });
    FileIndex::build();
    loop.exec();
    FileIndex::setOnReady({});
    return scan;
}

int runScan(const QStringList&)
{
    std::printf("%.3f", buildTime());
    return 0;
}

int runPlainScan(const QStringList&)
{
    const std::atomic<bool> cancel = false;
    const double scan = timed([&cancel] {
        FileScan::read({QDir::toNativeSeparators(home()), nullptr, cancel},
                       FileIndex::ExpectedEntries);
    });
    std::printf("%.3f", scan);
    return 0;
}

/// An index is built once for each process.
double scanTime(const QString& task)
{
    const FreshProcess::Outcome outcome = FreshProcess::run(task, {});
    return outcome.output.toDouble();
}

void measureScan()
{
    findTime(); // fills the caches of the system
    std::vector<double> finds;
    std::vector<double> scans;
    std::vector<double> plainScans;
    for (int round = 0; round < kRounds; ++round) { // in turn, so that both meet the same machine
        finds.push_back(findTime());
        scans.push_back(scanTime("scan"));
        plainScans.push_back(scanTime("plain scan"));
    }
    const double find = median(finds);
    const double scan = median(scans);
    const double plain = median(plainScans);
    std::printf("  first scan: %.0f ms, find: %.0f ms, ratio %.2f; without watches: %.0f ms, ratio "
                "%.2f\n",
                scan, find, scan / find, plain, plain / find);
}

int runMeasurement(const QStringList&)
{
    const qint64 before = residentBytes();
    buildTime();
    measureMemory(before);
    settle();
    measureIdle();
    measureKeystrokes();
    measureCounts();
    settle();
    measureFlush();
    settle();
    measureBurst();
    settle();
    measureFolders("make folders");
    settle();
    measureFolders("remove folders");
    settle();
    measureNothing();
    measureMove();
    return 0;
}

/// Quits in the middle of the first scan.
int runQuit(const QStringList&)
{
    static QElapsedTimer quitting;
    qAddPostRoutine([] {
        const double duration = msSince(quitting);
        // The system may count a thread for a moment longer than it can be waited for.
        for (int i = 0; threadCount() > 1 && i < kExitPatienceMs; ++i)
            QThread::msleep(1);
        std::printf("  quit during the first scan: %.0f ms, threads left: %d\n", duration,
                    threadCount() - 1);
    });
    FileIndex::build();
    QTimer::singleShot(20, QCoreApplication::instance(), [] {
        quitting.start();
        QCoreApplication::quit();
    });
    return QCoreApplication::exec();
}

/// The time of a command, if there is such a program; negative otherwise.
double commandTime(const QString& program, const QStringList& arguments)
{
    if (QStandardPaths::findExecutable(program).isEmpty())
        return -1.0;
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    return medianTime([] {},
                      [&] {
                          process.start(program, arguments);
                          process.waitForFinished(kPatienceMs);
                      });
}

void printOther(const char* name, double ms, const QString& remark = {})
{
    if (ms >= 0.0)
        std::printf("    %-34s %9.1f ms  %s\n", name, ms, qPrintable(remark));
}

/// What others need to find files by a part of their name, on the same tree.
void measureOthers(int entries)
{
    const QString wanted = QStringLiteral("budget");
    const QString pattern = '*' + wanted + '*';
    const QString database = TestHome::path() + QStringLiteral("/plocate.db");
    std::printf("  others, looking for \"%s\":\n", qPrintable(wanted));
    printOther("find", commandTime("find", {home(), "-iname", pattern}));
    printOther("fd", commandTime("fdfind", {"--unrestricted", "--ignore-case", wanted, home()}));
    QStringList update{"--database-root",      home(), "--output", database,
                       "--require-visibility", "no"};
    const double updating =
        commandTime("updatedb.plocate", update + QStringList{"--prunepaths", ""});
    printOther("plocate: making the database", updating,
               QString("%1 bytes an entry")
                   .arg(static_cast<double>(QFileInfo(database).size()) / entries, 0, 'f', 1));
    printOther("plocate: a query", commandTime("plocate", {"-d", database, "-i", wanted}));
    QFile::remove(database);
}

void measureTree(int entries)
{
    if (!QDir().mkdir(corner()))
        qFatal("cannot make %s, or it is there already", qPrintable(corner()));
    makeTree(corner(), entries);
    std::printf("%d entries\n", entries);
    measureScan();
    std::fflush(stdout);
    for (const QString& task : {QStringLiteral("measure"), QStringLiteral("quit")}) {
        QProcess process;
        FreshProcess::start(process, task, {});
        process.waitForFinished(kPatienceMs);
        std::printf("%s", process.readAllStandardOutput().constData());
        std::fflush(stdout);
    }
    measureOthers(entries);
    if (!QDir(corner()).removeRecursively())
        qFatal("cannot remove %s", qPrintable(corner()));
}

} // namespace

int main(int argc, char** argv)
{
    if (FreshProcess::isTask(argc, argv)) {
        return FreshProcess::runTask(argc, argv,
                                     {{"scan", runScan},
                                      {"plain scan", runPlainScan},
                                      {"make folders", runMakeFolders},
                                      {"remove folders", runRemoveFolders},
                                      {"measure", runMeasurement},
                                      {"quit", runQuit},
                                      {"burst", runBurst}});
    }
    TestHome::installWithHome();
    const QCoreApplication application(argc, argv);
    QStringList sizes = QCoreApplication::arguments().mid(1);
    if (sizes.isEmpty())
        sizes = {"10000", "100000"};
    for (const QString& size : std::as_const(sizes))
        measureTree(size.toInt());
    return 0;
}
