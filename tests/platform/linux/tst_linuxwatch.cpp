// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FreshProcess.h"
#include "Inotify.h"
#include "TestFiles.h"
#include "TestHome.h"
#include "UserNamespace.h"
#include "WatchRun.h"

#include <QApplication>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSemaphore>
#include <QSet>
#include <QTest>
#include <QTimer>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <string_view>

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using Platform::FileAdded;

/// What only the watcher of this system has to cope with: one watch for each directory, of which
/// there may be too few, and a queue that may be too short.
class LinuxWatchTest : public QObject, private TestTree
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void oneWatchForEachDirectory();
    void excludedDirectoriesAreNotWatched();
    void directoryLosesAndGainsAnExcludedName();
    void linksAreNotFollowed();
    void rootMayBeALink();
    void namesThatAreNoTextAreLeftOut();
    void deepDirectoriesAreWatched_data();
    void deepDirectoriesAreWatched();
    void wideDirectoriesAreWatched();
    void directoriesAreExchanged();
    void directoryMovesOnBeforeItIsLookedAt_data();
    void directoryMovesOnBeforeItIsLookedAt();
    void filesAreExchanged();
    void directoryReplacesAnother();
    void removedRootEndsTheRun();
    void movedRootEndsTheRun();
    void changesDuringTheFirstWalkAreALoss();
    void oldTreesAreNoLoss();
    void queueOverflowIsALoss();
    void runningOutOfWatchesIsALossOnce_data();
    void runningOutOfWatchesIsALossOnce();
    void watchesThatComeFreeAreUsed();
    void noWatchAtAll();
    void rootIsWatchedAsSoonAsItCanBe();
    void noDescriptorForTheRoot_data();
    void noDescriptorForTheRoot();
    void noDescriptorForADirectory();
    void limitOfTheSystem_data();
    void limitOfTheSystem();
    void sleepsWhileNothingHappens();
    void stopsInTheMiddleOfTheFirstWalk();
    void churn_data();
    void churn();

private:
    void makeDirectories(int count, const QString& prefix = "d") const
    {
        for (int i = 0; i < count; ++i)
            makeDirectory(prefix + QString::number(i));
    }
    void ageTree() const;
    QString watchedOne(const WatchRun& watch) const;

    std::unique_ptr<QTemporaryDir> m_elsewhere;
};

namespace
{

std::atomic<int> s_watchLimit{INT_MAX};
std::atomic<int> s_limitError{ENOSPC};
std::atomic<int> s_watchTries{0};
std::atomic<bool> s_areMountsBarred{false};      ///< no descriptor is left for them
std::atomic<bool> s_areDirectoriesBarred{false}; ///< nor for any directory
std::atomic<int> s_refusedOpens{0};              ///< for want of descriptors
std::atomic<int> s_walkDelays{0};                ///< the next so many directories take 1 ms each

/// Holds the watching thread up, so that changes pile up before it looks at the first of them.
class Gate
{
public:
    void close() { m_isClosed = true; }
    void open() { m_isOpen.release(); }
    void waitForVisitor() { m_hasCome.acquire(); }
    void pass()
    {
        if (!m_isClosed.exchange(false))
            return;
        m_hasCome.release();
        m_isOpen.acquire();
    }

private:
    std::atomic<bool> m_isClosed{false};
    QSemaphore m_hasCome;
    QSemaphore m_isOpen;
};

int inotifyDescriptor()
{
    for (const QFileInfo& link : QDir("/proc/self/fd").entryInfoList(QDir::Files | QDir::System)) {
        char target[PATH_MAX] = {};
        const QByteArray path = QFile::encodeName(link.filePath());
        if (::readlink(path.constData(), target, sizeof target - 1) > 0 &&
            QByteArray(target) == "anon_inode:inotify")
            return link.fileName().toInt();
    }
    return -1;
}

/// As the system counts them.
int watchCount(int inotify = inotifyDescriptor())
{
    QFile file(QStringLiteral("/proc/self/fdinfo/%1").arg(inotify));
    return file.open(QIODevice::ReadOnly) ? static_cast<int>(file.readAll().count("inotify wd:"))
                                          : -1;
}

void removeTree(const QString& path)
{
    // Goes deeper than a path is long.
    QCOMPARE(QProcess::execute("rm", {"-rf", "--", path}), 0);
}

bool isExcluded(const QString& rel)
{
    return rel.split('/').contains("node_modules");
}

/// Directories, or all that is there, below a root, but for what is below excluded ones.
QSet<QString> allowed(const QString& root, QDir::Filters filters)
{
    QSet<QString> found;
    QDirIterator it(root, filters | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString rel = it.next().mid(root.size() + 1);
        if (!isExcluded(filters & QDir::Files ? rel.section('/', 0, -2) : rel))
            found.insert(rel);
    }
    return found;
}

/// How often the watching thread went to sleep so far, which is as often as it woke up.
qint64 sleepsOfTheWatcher()
{
    const auto read = [](const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    qint64 sum = 0;
    const QDir tasks("/proc/self/task");
    for (const QString& task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (read(tasks.filePath(task + "/comm")) != "QThread\n")
            continue;
        static const QRegularExpression voluntary("\nvoluntary_ctxt_switches:\\s*(\\d+)");
        sum += voluntary.match(read(tasks.filePath(task + "/status"))).captured(1).toLongLong();
    }
    return sum;
}

bool exchange(const QByteArray& a, const QByteArray& b)
{
    return ::renameat2(AT_FDCWD, a.constData(), AT_FDCWD, b.constData(), RENAME_EXCHANGE) == 0;
}

int limitWatches(const QStringList& arguments)
{
    const QByteArray limit = arguments.at(0).toLatin1();
    return UserNamespace::write("/proc/sys/user/max_inotify_watches", limit) ? 0 : 1;
}

/// Watches a tree under a real limit, if one is given, and prints how many watches there were and
/// what was lost.
int watchUnderLimit(const QStringList& arguments)
{
    const bool isLimited = !arguments.at(0).isEmpty();
    if (isLimited && limitWatches(arguments) != 0)
        return 1;
    WatchRun watch(arguments.at(1));
    // Nothing may be made before: it might be taken for a loss.
    const int whole = 1 + static_cast<int>(allowed(arguments.at(1), QDir::Dirs).size());
    const auto isWalked = [&] { return isLimited ? watch.overflows() > 0 : watchCount() == whole; };
    if (!QTest::qWaitFor(isWalked, 10000) || !watch.isWatched())
        return 2;
    const int isStillWatched = watch.isWatched();
    std::printf("%d %d %d", watchCount(), watch.overflows(), isStillWatched);
    return 0;
}

} // namespace

/// Stands in for the real one, which it calls, to have fewer watches than the system.
int Platform::watchDirectory(int inotify, int directory, uint32_t mask)
{
    ++s_watchTries;
    if (s_walkDelays > 0) {
        --s_walkDelays;
        ::usleep(1000);
    }
    const QByteArray path = "/proc/self/fd/" + QByteArray::number(directory);
    const int watch =
        ::inotify_add_watch(inotify, path.constData(), mask | IN_MASK_ADD | IN_ONLYDIR);
    if (watch < 0 || s_watchLimit == INT_MAX || watchCount(inotify) <= s_watchLimit)
        return watch;
    ::inotify_rm_watch(inotify, watch);
    errno = s_limitError;
    return -1;
}

/// Stands in for the system's own. Taking all descriptors instead would leave none for the
/// sanitizers either.
extern "C" int openat(int directory, const char* path, int flags, ...)
{
    const bool isMounts = std::string_view(path) == "/proc/self/mountinfo";
    const bool isDirectory = flags & O_DIRECTORY;
    if ((isMounts && s_areMountsBarred) || (isDirectory && s_areDirectoriesBarred)) {
        ++s_refusedOpens;
        errno = EMFILE;
        return -1;
    }
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = flags & O_CREAT ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return static_cast<int>(::syscall(SYS_openat, directory, path, flags, mode));
}

void LinuxWatchTest::initTestCase()
{
    // So that a walk that leaves files open behind it comes to an end.
    const rlimit files = {256, 256};
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &files), 0);
}

void LinuxWatchTest::init()
{
    s_watchLimit = INT_MAX;
    s_limitError = ENOSPC;
    s_watchTries = 0;
    s_refusedOpens = 0;
    s_areMountsBarred = s_areDirectoriesBarred = false;
    makeRoot();
    m_elsewhere = TestFiles::newDirectory("elsewhere");
}

void LinuxWatchTest::cleanup()
{
    removeTree(root());
    removeTree(m_elsewhere->path());
}

/// Dates the tree back, so that it doesn't look as if it had changed since the watch began.
void LinuxWatchTest::ageTree() const
{
    const timespec times[] = {{1'000'000'000, 500}, {1'000'000'000, 500}};
    QCOMPARE(::utimensat(AT_FDCWD, bytes("").constData(), times, 0), 0);
    for (const QString& rel : allowed(root(), QDir::Dirs))
        QCOMPARE(::utimensat(AT_FDCWD, bytes(rel).constData(), times, 0), 0);
}

/// One of the directories "d..." that hold nothing and have a watch.
QString LinuxWatchTest::watchedOne(const WatchRun& watch) const
{
    for (int i = 10; i < 30; ++i)
        makeFile(QStringLiteral("d%1/in").arg(i));
    makeFile("marker");
    const bool isTold = QTest::qWaitFor([&] { return watch.hasSeen(FileAdded, "marker"); });
    for (int i = 10; i < 30 && isTold; ++i) {
        if (watch.hasSeen(FileAdded, QStringLiteral("d%1/in").arg(i)))
            return QStringLiteral("d%1").arg(i);
    }
    return "none";
}

void LinuxWatchTest::oneWatchForEachDirectory()
{
    makeDirectory("a/b");
    makeDirectory("c");
    makeFile("a/file");
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    QCOMPARE(watchCount(), 4);
    makeDirectory("a/b/d/e");
    QTRY_COMPARE(watchCount(), 6);
    QVERIFY(QDir().rename(path("a/b"), path("c/b")));
    QVERIFY(watch.isWatched("c/b/d/e"));
    QCOMPARE(watchCount(), 6);
    QVERIFY(QDir().rename(path("c/b"), m_elsewhere->filePath("b")));
    QTRY_COMPARE(watchCount(), 3);
    removeTree(path("a"));
    QTRY_COMPARE(watchCount(), 2);
}

void LinuxWatchTest::excludedDirectoriesAreNotWatched()
{
    makeDirectory("a/node_modules/b");
    WatchRun watch(root());
    QVERIFY(watch.isWatched("a"));
    makeDirectory("node_modules/c");
    makeFile("a/node_modules/file");
    makeFile("a/node_modules/b/file");
    makeFile("node_modules/c/file");
    QVERIFY(watch.isWatched("a"));
    QCOMPARE(watchCount(), 2);
    // The directory itself is what its parent reports.
    QVERIFY(watch.hasSeen(FileAdded, "node_modules"));
    for (const Platform::TreeChange& change : watch.changes())
        QVERIFY2(!change.rel.contains("node_modules/"), qPrintable(change.rel));
}

void LinuxWatchTest::directoryLosesAndGainsAnExcludedName()
{
    makeDirectory("node_modules/a/b");
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    QCOMPARE(watchCount(), 1);
    QVERIFY(QDir().rename(path("node_modules"), path("modules")));
    QVERIFY(watch.isWatched("modules/a/b"));
    QCOMPARE(watchCount(), 4);
    QVERIFY(QDir().rename(path("modules"), path("node_modules")));
    QTRY_COMPARE(watchCount(), 1);
}

void LinuxWatchTest::linksAreNotFollowed()
{
    QVERIFY(QDir().mkpath(m_elsewhere->filePath("target")));
    QVERIFY(QFile::link(m_elsewhere->filePath("target"), path("before")));
    QVERIFY(QFile::link(root(), path("self")));
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    QVERIFY(QFile::link(m_elsewhere->filePath("target"), path("after")));
    QVERIFY(watch.isWatched());
    QVERIFY(watch.hasSeen(FileAdded, "after"));
    QCOMPARE(watchCount(), 1);
}

void LinuxWatchTest::rootMayBeALink()
{
    makeDirectory("real/a");
    QVERIFY(QFile::link("real", path("link")));
    WatchRun watch(path("link") + '/');
    QVERIFY(watch.isWatched("a"));
    makeDirectory("real/b");
    QVERIFY(watch.isWatched("b"));
}

void LinuxWatchTest::namesThatAreNoTextAreLeftOut()
{
    QCOMPARE(::mkdir((bytes("./") + "bad\xFF").constData(), 0700), 0);
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    QCOMPARE(watchCount(), 1);
    QCOMPARE(::mkdir((bytes("./") + "\xC3").constData(), 0700), 0);
    QCOMPARE(::mkdir((bytes("./") + "good").constData(), 0700), 0);
    QVERIFY(watch.isWatched("good"));
    QCOMPARE(watchCount(), 2);
    QCOMPARE(
        ::rename((bytes("./") + "good").constData(), (bytes("./") + "\xED\xA0\x80").constData()),
        0);
    QTRY_COMPARE(watchCount(), 1);
    QCOMPARE(::rename((bytes("./") + "bad\xFF").constData(), bytes("better").constData()), 0);
    QVERIFY(watch.isWatched("better"));
    QCOMPARE(watchCount(), 2);
}

void LinuxWatchTest::deepDirectoriesAreWatched_data()
{
    QTest::addColumn<bool>("isThereBefore");
    QTest::newRow("there before") << true;
    QTest::newRow("made while it is watched") << false;
}

void LinuxWatchTest::deepDirectoriesAreWatched()
{
    QFETCH(bool, isThereBefore);
    // Deeper than a path is long, and than there may be open files.
    constexpr int Depth = 3000;
    std::unique_ptr<WatchRun> watch;
    if (!isThereBefore) {
        watch = std::make_unique<WatchRun>(root());
        QVERIFY(watch->isWatched());
    }
    int directory = ::open(bytes("").constData(), O_PATH | O_DIRECTORY);
    QStringList names;
    for (int i = 0; i < Depth; ++i) {
        names.append("dir" + QString::number(i % 7));
        const QByteArray name = names.constLast().toLatin1();
        QCOMPARE(::mkdirat(directory, name.constData(), 0700), 0);
        const int next = ::openat(directory, name.constData(), O_PATH | O_DIRECTORY);
        ::close(directory);
        directory = next;
    }
    if (isThereBefore)
        watch = std::make_unique<WatchRun>(root());
    QTRY_COMPARE(watchCount(), Depth + 1);
    ::close(::openat(directory, "file", O_CREAT | O_WRONLY, 0600));
    ::close(directory);
    QTRY_VERIFY(watch->hasSeen(FileAdded, names.join('/') + "/file"));
    QVERIFY(QDir().rename(path("dir0"), path("moved")));
    QVERIFY(watch->isWatched("moved/dir1/dir2"));
    QCOMPARE(watchCount(), Depth + 1);
    removeTree(path("moved"));
    QTRY_COMPARE(watchCount(), 1);
}

void LinuxWatchTest::wideDirectoriesAreWatched()
{
    constexpr int Count = 2000;
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    makeDirectories(Count);
    QTRY_COMPARE(watchCount(), Count + 1);
    for (int i = 0; i < Count; ++i)
        QCOMPARE(::rename(bytes("d" + QString::number(i)).constData(),
                          bytes("e" + QString::number(i)).constData()),
                 0);
    QVERIFY(watch.isWatched("e0"));
    QVERIFY(watch.isWatched("e1999"));
    QTRY_COMPARE(watchCount(), Count + 1);
}

void LinuxWatchTest::directoriesAreExchanged()
{
    makeDirectory("a/in a");
    makeDirectory("x/b/in b");
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    QVERIFY(exchange(bytes("a"), bytes("x/b")));
    QVERIFY(watch.isWatched("a/in b"));
    QVERIFY(watch.isWatched("x/b/in a"));
    QCOMPARE(watchCount(), 6);
    // A directory and a file, both ways.
    makeFile("file");
    QVERIFY(exchange(bytes("a"), bytes("file")));
    QVERIFY(watch.isWatched("file/in b"));
    QVERIFY(exchange(bytes("a"), bytes("file")));
    QVERIFY(watch.isWatched("a/in b"));
    QCOMPARE(watchCount(), 6);
}

void LinuxWatchTest::directoryMovesOnBeforeItIsLookedAt_data()
{
    QTest::addColumn<QStringList>("follows");
    QTest::newRow("nothing in its place") << QStringList();
    QTest::newRow("another in its place") << QStringList({"a"});
    QTest::newRow("one with the same names in its place") << QStringList({"a/new/other"});
}

void LinuxWatchTest::directoryMovesOnBeforeItIsLookedAt()
{
    QFETCH(QStringList, follows);
    makeDirectory("a");
    makeDirectory("b");
    makeDirectory("a/moves/inner");
    Gate gate;
    WatchRun watch(root(), [&] { gate.pass(); });
    QVERIFY(watch.isWatched());
    gate.close();
    makeFile("blocks");
    gate.waitForVisitor();
    makeDirectory("a/new/inner");
    QVERIFY(QDir().rename(path("a/moves"), path("b/moved")));
    makeDirectory("b/moved/new");
    QVERIFY(QDir().rename(path("b/moved"), path("a/moved again")));
    QVERIFY(QDir().rename(path("a"), path("b/a")));
    for (const QString& rel : follows)
        makeDirectory(rel);
    gate.open();
    const QSet<QString> directories = allowed(root(), QDir::Dirs);
    for (const QString& rel : directories)
        QVERIFY2(watch.isWatched(rel), qPrintable(rel));
    QCOMPARE(watchCount(), static_cast<int>(directories.size()) + 1);
}

void LinuxWatchTest::filesAreExchanged()
{
    makeFile("a");
    makeDirectory("dir");
    makeFile("dir/b");
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    QVERIFY(exchange(bytes("a"), bytes("dir/b")));
    makeFile("marker");
    QTRY_VERIFY(watch.hasSeen(FileAdded, "marker"));
    // Both are still there, so that is the last to be told of them.
    QCOMPARE(watch.actionsOf("a").constLast(), quint32(Platform::FileRenamedNewName));
    QCOMPARE(watch.actionsOf("dir/b").constLast(), quint32(Platform::FileRenamedNewName));
}

void LinuxWatchTest::directoryReplacesAnother()
{
    makeDirectory("old");
    makeDirectory("new/inner");
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    QCOMPARE(::rename(bytes("new").constData(), bytes("old").constData()), 0);
    QVERIFY(watch.isWatched("old"));
    QVERIFY(watch.isWatched("old/inner"));
    QTRY_COMPARE(watchCount(), 3);
}

void LinuxWatchTest::removedRootEndsTheRun()
{
    makeDirectory("home/a");
    WatchRun watch(path("home"));
    QVERIFY(watch.isWatched());
    watch.forget();
    removeTree(path("home"));
    QTRY_VERIFY(watch.hasEnded());
    QCOMPARE(watch.overflows(), 1);
}

void LinuxWatchTest::movedRootEndsTheRun()
{
    makeDirectory("home/a");
    WatchRun watch(path("home"));
    QVERIFY(watch.isWatched());
    watch.forget();
    QVERIFY(QDir().rename(path("home"), path("other")));
    QTRY_VERIFY(watch.hasEnded());
    QCOMPARE(watch.overflows(), 1);
}

void LinuxWatchTest::changesDuringTheFirstWalkAreALoss()
{
    makeDirectories(100);
    ageTree();
    s_walkDelays = 100;
    WatchRun watch(root());
    // The last one that the walk comes to is as likely as any other to be it, so all are changed.
    for (int i = 0; i < 100; ++i)
        makeFile(QStringLiteral("d%1/file").arg(i));
    QTRY_COMPARE(watch.overflows(), 1);
    QVERIFY(watch.isWatched());
    QCOMPARE(watch.overflows(), 1);
}

void LinuxWatchTest::oldTreesAreNoLoss()
{
    makeDirectories(20);
    ageTree();
    WatchRun watch(root());
    // Nothing may be made before.
    QTRY_COMPARE(watchCount(), 21);
    QVERIFY(watch.isWatched("d7"));
    QCOMPARE(watch.overflows(), 0);
}

void LinuxWatchTest::queueOverflowIsALoss()
{
    QFile limit("/proc/sys/fs/inotify/max_queued_events");
    QVERIFY(limit.open(QIODevice::ReadOnly));
    const int queueLength = limit.readAll().trimmed().toInt();
    makeDirectory("a/stays");
    makeDirectory("a/goes");
    makeDirectory("a/leaves/inner");
    makeDirectory("b");
    Gate gate;
    WatchRun watch(root(), [&] { gate.pass(); });
    QVERIFY(watch.isWatched());
    watch.forget();
    gate.close();
    makeFile("blocks");
    gate.waitForVisitor();
    for (int i = 0; i < queueLength / 2 + 10; ++i) {
        makeFile("often");
        QVERIFY(QFile::remove(path("often")));
    }
    // Nobody is told of these.
    QVERIFY(QDir().rename(path("a/goes"), path("b/came")));
    QVERIFY(QDir().rename(path("a/leaves"), m_elsewhere->filePath("left")));
    makeDirectory("b/new/inner");
    removeTree(path("a/stays"));
    gate.open();
    QTRY_COMPARE_WITH_TIMEOUT(watch.overflows(), 1, 30000);
    for (const QString rel : {"a", "b", "b/came", "b/new", "b/new/inner"})
        QVERIFY2(watch.isWatched(rel), qPrintable(rel));
    QTRY_COMPARE(watchCount(), 6);
    QCOMPARE(watch.overflows(), 1);
}

void LinuxWatchTest::runningOutOfWatchesIsALossOnce_data()
{
    QTest::addColumn<int>("error");
    QTest::newRow("limit of the user") << ENOSPC;
    QTest::newRow("memory") << ENOMEM;
}

void LinuxWatchTest::runningOutOfWatchesIsALossOnce()
{
    QFETCH(int, error);
    makeDirectories(30);
    ageTree();
    s_watchLimit = 10;
    s_limitError = error;
    WatchRun watch(root());
    QTRY_COMPARE(watch.overflows(), 1);
    QVERIFY(watch.isWatched());
    QCOMPARE(watchCount(), 10);
    makeDirectory("new/inner");
    makeDirectory("other");
    QVERIFY(watch.isWatched());
    QVERIFY(watch.hasSeen(FileAdded, "new"));
    QVERIFY(watch.hasSeen(FileAdded, "other"));
    QCOMPARE(watch.overflows(), 1);
    QCOMPARE(watchCount(), 10);
    QVERIFY(!watch.hasEnded());
}

void LinuxWatchTest::watchesThatComeFreeAreUsed()
{
    makeDirectories(30);
    makeDirectory("d3/inner/most");
    ageTree();
    s_watchLimit = 10;
    WatchRun watch(root());
    QTRY_COMPARE(watch.overflows(), 1);
    QVERIFY(watch.isWatched());
    // One goes, so one that was left out is watched, and what happened there until now is lost.
    const QString goes = watchedOne(watch);
    QVERIFY(goes != "none");
    removeTree(path(goes));
    QTRY_COMPARE(watch.overflows(), 2);
    QCOMPARE(watchCount(), 10);
    QVERIFY(watch.isWatched());
    QCOMPARE(watch.overflows(), 2);
    s_watchLimit = INT_MAX;
    makeDirectory("new");
    QTRY_COMPARE(watchCount(), 1 + static_cast<int>(allowed(root(), QDir::Dirs).size()));
    QTRY_COMPARE(watch.overflows(), 3);
    for (const QString& rel : allowed(root(), QDir::Dirs))
        QVERIFY2(watch.isWatched(rel), qPrintable(rel));
    QCOMPARE(watch.overflows(), 3);
    // All is well again, so it counts the next time.
    s_watchLimit = watchCount();
    makeDirectory("one more");
    QTRY_COMPARE(watch.overflows(), 4);
}

void LinuxWatchTest::noWatchAtAll()
{
    s_watchLimit = 0;
    WatchRun watch(root());
    QTRY_COMPARE(watch.overflows(), 1);
    QVERIFY(!watch.hasEnded());
    QVERIFY(watch.end());
}

void LinuxWatchTest::rootIsWatchedAsSoonAsItCanBe()
{
    ageTree();
    s_watchLimit = 0;
    WatchRun watch(root());
    QTRY_COMPARE(watch.overflows(), 1);
    QTRY_VERIFY_WITH_TIMEOUT(s_watchTries >= 2, 15000);
    makeFile("missed");
    // Long enough for a further report, too short for a further try.
    QTest::qWait(500);
    QCOMPARE(watch.overflows(), 1);
    s_watchLimit = INT_MAX;
    QTRY_COMPARE_WITH_TIMEOUT(watch.overflows(), 2, 15000);
    QVERIFY(watch.isWatched());
    QVERIFY(!watch.hasSeen(FileAdded, "missed"));
    const qint64 before = sleepsOfTheWatcher();
    QVERIFY(before > 0);
    // Beyond the time after which it would try again.
    QTest::qWait(6000);
    QCOMPARE(sleepsOfTheWatcher(), before);
    QCOMPARE(watch.overflows(), 2);
}

void LinuxWatchTest::noDescriptorForTheRoot_data()
{
    QTest::addColumn<bool>("isRootBarred");
    QTest::newRow("nor for the mounts") << true;
    QTest::newRow("but only for the mounts") << false;
}

void LinuxWatchTest::noDescriptorForTheRoot()
{
    QFETCH(bool, isRootBarred);
    makeDirectory("a/b");
    ageTree();
    s_areMountsBarred = true;
    s_areDirectoriesBarred = isRootBarred;
    WatchRun watch(root());
    QTRY_COMPARE(watch.overflows(), 1);
    QVERIFY(s_refusedOpens > 0);
    // A watch that gives up would end now; the next try comes much later.
    QTest::qWait(200);
    QVERIFY(!watch.hasEnded());
    QCOMPARE(watchCount(), 0);
    s_areMountsBarred = s_areDirectoriesBarred = false;
    QTRY_COMPARE_WITH_TIMEOUT(watch.overflows(), 2, 15000);
    QCOMPARE(watchCount(), 3);
    QVERIFY(watch.isWatched("a/b"));
    QCOMPARE(watch.overflows(), 2);
}

void LinuxWatchTest::noDescriptorForADirectory()
{
    makeDirectory("a");
    Gate gate;
    WatchRun watch(root(), [&] { gate.pass(); });
    QVERIFY(watch.isWatched("a"));
    watch.forget();
    gate.close();
    makeFile("blocks");
    gate.waitForVisitor();
    makeDirectory("a/new/inner");
    s_areDirectoriesBarred = true;
    gate.open();
    QTRY_VERIFY(watch.hasSeen(FileAdded, "a/new"));
    QTRY_VERIFY(s_refusedOpens > 0);
    // Nothing comes that could be waited for: what mustn't happen would happen now.
    QTest::qWait(500);
    QCOMPARE(watch.overflows(), 0);
    QCOMPARE(watchCount(), 2);
    s_areDirectoriesBarred = false;
    // Any event is an occasion to look once more.
    makeFile("again");
    QTRY_COMPARE(watchCount(), 4);
    QTRY_COMPARE(watch.overflows(), 1);
    QVERIFY(watch.isWatched("a/new/inner"));
    QCOMPARE(watch.overflows(), 1);
}

void LinuxWatchTest::limitOfTheSystem_data()
{
    QTest::addColumn<QString>("limit");
    QTest::addColumn<QByteArray>("output");
    QTest::newRow("none, for comparison") << "" << QByteArray("21 0 1");
    // Not every system lets a user have limits of their own.
    if (UserNamespace::run("limitWatches", {"5"}).exitCode == 0)
        QTest::newRow("of a namespace") << "5" << QByteArray("5 1 1");
}

void LinuxWatchTest::limitOfTheSystem()
{
    QFETCH(QString, limit);
    makeDirectories(20);
    ageTree();
    const QStringList arguments{limit, root()};
    const FreshProcess::Outcome outcome = limit.isEmpty()
                                              ? FreshProcess::run("watchUnderLimit", arguments)
                                              : UserNamespace::run("watchUnderLimit", arguments);
    QVERIFY(outcome.hasExited);
    QCOMPARE(outcome.exitCode, 0);
    QTEST(outcome.output, "output");
}

void LinuxWatchTest::sleepsWhileNothingHappens()
{
    makeDirectories(20);
    s_watchLimit = 10;
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    QTRY_COMPARE(watch.overflows(), 1);
    const qint64 before = sleepsOfTheWatcher();
    QVERIFY(before > 0);
    bool isOver = false;
    QTimer::singleShot(500, this, [&] { isOver = true; });
    QTRY_VERIFY(isOver);
    QCOMPARE(sleepsOfTheWatcher(), before);
}

void LinuxWatchTest::stopsInTheMiddleOfTheFirstWalk()
{
    makeDirectories(1000);
    s_walkDelays = INT_MAX;
    WatchRun watch(root());
    QTRY_VERIFY(watchCount() > 10);
    watch.stop();
    QTRY_VERIFY(watch.hasEnded());
    // The walk would have taken a second.
    const int delaysLeft = s_walkDelays.exchange(0);
    QVERIFY(INT_MAX - delaysLeft < 900);
    QCOMPARE(watch.overflows(), 0);
}

void LinuxWatchTest::churn_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 8; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

namespace
{

/// Changes a tree at random, as fast as it goes.
class Churn
{
public:
    Churn(quint32 seed, const QString& root, const QString& elsewhere)
        : m_random(seed), m_root(root), m_elsewhere(elsewhere)
    {}

    void step()
    {
        const QString a = anyDirectory();
        const QString b = anyDirectory();
        switch (m_random.bounded(12)) {
        case 0:
        case 1:
        case 2:
            QDir().mkpath(a + '/' + anyName());
            break;
        case 3:
            QDir().mkpath(a + '/' + anyName() + '/' + anyName() + '/' + anyName());
            break;
        case 4:
        case 5:
            std::rename(local(a), local(b + '/' + anyName()));
            break;
        case 6:
            if (a != m_root)
                std::rename(local(a), local(m_elsewhere + '/' + anyName()));
            break;
        case 7:
            std::rename(local(m_elsewhere + '/' + anyName()), local(b + '/' + anyName()));
            break;
        case 8:
            if (a != m_root)
                QDir(a).removeRecursively();
            break;
        case 9:
            exchange(QFile::encodeName(a), QFile::encodeName(b));
            break;
        case 10: {
            QFile file(a + '/' + anyName());
            file.open(QIODevice::WriteOnly);
            break;
        }
        default:
            std::rename(local(a + '/' + anyName()), local(b + '/' + anyName()));
        }
    }

private:
    QString anyName()
    {
        static const QStringList names = {"a", "b", "c", "d", "e", "f", "node_modules"};
        return names.at(m_random.bounded(names.size()));
    }

    QString anyDirectory()
    {
        QString path = m_root;
        for (int depth = m_random.bounded(5); depth > 0; --depth) {
            const QStringList inside = QDir(path).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
            if (inside.isEmpty())
                break;
            path += '/' + inside.at(m_random.bounded(inside.size()));
        }
        return path;
    }

    const char* local(const QString& path)
    {
        m_names[++m_used % 2] = QFile::encodeName(path);
        return m_names[m_used % 2].constData();
    }

    QRandomGenerator m_random;
    QString m_root;
    QString m_elsewhere;
    QByteArray m_names[2];
    int m_used = 0;
};

/// What a copy of the tree holds if it is kept by the reports, with each directory that is added
/// being read whole.
QSet<QString> copyOf(const QString& root, const QVector<Platform::TreeChange>& changes)
{
    QSet<QString> copy;
    for (const Platform::TreeChange& change : changes) {
        if (isExcluded(change.rel.section('/', 0, -2)))
            continue;
        const QFileInfo info(root + '/' + change.rel);
        const bool isGone =
            change.action == Platform::FileRemoved || change.action == Platform::FileRenamedOldName;
        if (isGone) {
            copy.removeIf([&](const QString& rel) {
                return rel == change.rel || rel.startsWith(change.rel + '/');
            });
        }
        // If two are exchanged, the name of one is reported last as the old one.
        if (info.exists() && (!isGone || info.isDir()))
            copy.insert(change.rel);
        if (info.isDir() && !isExcluded(change.rel)) {
            for (const QString& rel : allowed(info.filePath(), QDir::AllEntries))
                copy.insert(change.rel + '/' + rel);
        }
    }
    return copy;
}

} // namespace

void LinuxWatchTest::churn()
{
    QFETCH(quint32, seed);
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    Churn churn(seed, root(), m_elsewhere->path());
    for (int i = 0; i < 1000; ++i)
        churn.step();
    QVERIFY(watch.isWatched());
    const QSet<QString> directories = allowed(root(), QDir::Dirs);
    QTRY_COMPARE(watchCount(), static_cast<int>(directories.size()) + 1);
    QCOMPARE(copyOf(root(), watch.changes()), allowed(root(), QDir::AllEntries));
    for (const QString& rel : directories)
        makeFile(rel + "/watched?");
    for (const QString& rel : directories)
        QTRY_VERIFY2(watch.hasSeen(FileAdded, rel + "/watched?"), qPrintable(rel));
}

int main(int argc, char** argv)
{
    return FreshProcess::main<LinuxWatchTest>(
        argc, argv, {{"limitWatches", limitWatches}, {"watchUnderLimit", watchUnderLimit}});
}

#include "tst_linuxwatch.moc"
