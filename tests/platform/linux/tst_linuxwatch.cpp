// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "DirectoryReader.h"
#include "FreshProcess.h"
#include "Inotify.h"
#include "TestFiles.h"
#include "TestHome.h"
#include "UserNamespace.h"
#include "WatchLimit.h"
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
    void watchIsSetBeforeTheReading();
    void readingIsNoLoss();
    void whatIsNotListedAgainIsNotWatched();
    void movedDirectoryKeepsItsWatches();
    void forgotten();
    void hiddenFoldersBelowTheRootAreNotWatched();
    void queueOverflowIsALoss();
    void runningOutOfWatches_data();
    void runningOutOfWatches();
    void largestProjectIsLeftOut();
    void forgottenIsWatchedAgain();
    void noWatchAtAll();
    void rootIsWatchedAsSoonAsItCanBe();
    void noDescriptorForTheRoot_data();
    void noDescriptorForTheRoot();
    void noDescriptorForADirectory();
    void limitOfTheSystem_data();
    void limitOfTheSystem();
    void sleepsWhileNothingHappens();
    void namesOfAnyBytes();
    void manyThreads();
    void churn_data();
    void churn();

private:
    void makeDirectories(int count, const QString& prefix = "d") const
    {
        for (int i = 0; i < count; ++i)
            makeDirectory(prefix + QString::number(i));
    }
    QSet<QString> watchedBelow(const WatchRun& watch) const;

    std::unique_ptr<QTemporaryDir> m_elsewhere;
};

namespace
{

constexpr int kPatienceMs = 60000; ///< for thousands of directories

std::atomic<int> s_watchLimit{INT_MAX};
std::atomic<int> s_limitError{ENOSPC};
std::atomic<int> s_watchTries{0};
std::atomic<bool> s_areMountsBarred{false};      ///< no descriptor is left for them
std::atomic<bool> s_areDirectoriesBarred{false}; ///< nor for any directory
std::atomic<int> s_refusedOpens{0};              ///< for want of descriptors
std::atomic<int> s_limitOfTheProgram{INT_MAX};
std::atomic<bool> s_isLateFileMade{false}; ///< in each directory once it has been read

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

/// As the system has them.
QSet<QByteArray> watches(int inotify = inotifyDescriptor())
{
    QSet<QByteArray> found;
    QFile file(QStringLiteral("/proc/self/fdinfo/%1").arg(inotify));
    if (!file.open(QIODevice::ReadOnly))
        found.insert("none can be told");
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith("inotify wd:"))
            found.insert(line.split(' ').at(1));
    }
    return found;
}

int watchCount(int inotify = inotifyDescriptor())
{
    return static_cast<int>(watches(inotify).size());
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

/// Watches a tree under a real limit, if one is given, and prints how many watches there were, how
/// many directories had none, and what was lost.
int watchUnderLimit(const QStringList& arguments)
{
    const bool isLimited = !arguments.at(0).isEmpty();
    if (isLimited && limitWatches(arguments) != 0)
        return 1;
    WatchRun watch(arguments.at(1));
    if (!watch.isWatched())
        return 2;
    const auto leftOut = static_cast<int>(watch.watcher().unwatched().size());
    std::printf("%d %d %d", watchCount(), leftOut, watch.overflows());
    return 0;
}

} // namespace

/// Stands in for the real one, which it calls, to have fewer watches than the system.
int Platform::watchDirectory(int inotify, int directory, uint32_t mask)
{
    ++s_watchTries;
    const QByteArray path = "/proc/self/fd/" + QByteArray::number(directory);
    const int watch =
        ::inotify_add_watch(inotify, path.constData(), mask | IN_MASK_ADD | IN_ONLYDIR);
    if (watch < 0 || s_watchLimit == INT_MAX || watchCount(inotify) <= s_watchLimit)
        return watch;
    ::inotify_rm_watch(inotify, watch);
    errno = s_limitError;
    return -1;
}

/// Stands in for the real one, which is too high for a test.
size_t Platform::watchLimit()
{
    return static_cast<size_t>(s_limitOfTheProgram.load());
}

/// Stands in for the system's own, to have something happen right behind it.
extern "C" ssize_t getdents64(int directory, void* buffer, size_t size) noexcept
{
    const ssize_t filled = ::syscall(SYS_getdents64, directory, buffer, size);
    if (s_isLateFileMade)
        ::close(::openat(directory, "late", O_CREAT | O_WRONLY, 0600));
    return filled;
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
    s_limitOfTheProgram = INT_MAX;
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

/// Directories in which a new file is told of.
QSet<QString> LinuxWatchTest::watchedBelow(const WatchRun& watch) const
{
    const QSet<QString> directories = allowed(root(), QDir::Dirs);
    for (const QString& rel : directories)
        makeFile(rel + "/in it");
    makeFile("last");
    QSet<QString> watched;
    if (!QTest::qWaitFor([&] { return watch.hasSeen(FileAdded, "last"); }))
        return watched;
    for (const QString& rel : directories) {
        if (watch.hasSeen(FileAdded, rel + "/in it"))
            watched.insert(rel);
    }
    return watched;
}

void LinuxWatchTest::oneWatchForEachDirectory()
{
    makeDirectory("a/b");
    makeDirectory("c");
    makeFile("a/file");
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    QTRY_COMPARE(watchCount(), 4);
    makeDirectory("a/b/d/e");
    QTRY_COMPARE(watchCount(), 6);
    QVERIFY(QDir().rename(path("a/b"), path("c/b")));
    QVERIFY(watch.isWatched("c/b/d/e"));
    QTRY_COMPARE(watchCount(), 6);
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
    QTRY_COMPARE(watchCount(), 2);
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
    QTRY_COMPARE(watchCount(), 1);
    QVERIFY(QDir().rename(path("node_modules"), path("modules")));
    QVERIFY(watch.isWatched("modules/a/b"));
    QTRY_COMPARE(watchCount(), 4);
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
    QTRY_COMPARE(watchCount(), 1);
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
    QTRY_COMPARE(watchCount(), 1);
    QCOMPARE(::mkdir((bytes("./") + "\xC3").constData(), 0700), 0);
    QCOMPARE(::mkdir((bytes("./") + "good").constData(), 0700), 0);
    QVERIFY(watch.isWatched("good"));
    QTRY_COMPARE(watchCount(), 2);
    QCOMPARE(
        ::rename((bytes("./") + "good").constData(), (bytes("./") + "\xED\xA0\x80").constData()),
        0);
    QTRY_COMPARE(watchCount(), 1);
    QCOMPARE(::rename((bytes("./") + "bad\xFF").constData(), bytes("better").constData()), 0);
    QVERIFY(watch.isWatched("better"));
    QTRY_COMPARE(watchCount(), 2);
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
    constexpr int Depth = 1200;
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
    QTRY_COMPARE_WITH_TIMEOUT(watchCount(), Depth + 1, kPatienceMs);
    ::close(::openat(directory, "file", O_CREAT | O_WRONLY, 0600));
    ::close(directory);
    QTRY_VERIFY_WITH_TIMEOUT(watch->hasSeen(FileAdded, names.join('/') + "/file"), kPatienceMs);
    QVERIFY(QDir().rename(path("dir0"), path("moved")));
    QVERIFY(watch->isWatched("moved/dir1/dir2"));
    QTRY_COMPARE_WITH_TIMEOUT(watchCount(), Depth + 1, kPatienceMs);
    removeTree(path("moved"));
    QTRY_COMPARE_WITH_TIMEOUT(watchCount(), 1, kPatienceMs);
}

void LinuxWatchTest::wideDirectoriesAreWatched()
{
    constexpr int Count = 2000;
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    makeDirectories(Count);
    QTRY_COMPARE_WITH_TIMEOUT(watchCount(), Count + 1, kPatienceMs);
    for (int i = 0; i < Count; ++i)
        QCOMPARE(::rename(bytes("d" + QString::number(i)).constData(),
                          bytes("e" + QString::number(i)).constData()),
                 0);
    QVERIFY(watch.isWatched("e0"));
    QVERIFY(watch.isWatched("e1999"));
    QTRY_COMPARE_WITH_TIMEOUT(watchCount(), Count + 1, kPatienceMs);
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
    QTRY_COMPARE(watchCount(), 6);
    // A directory and a file, both ways.
    makeFile("file");
    QVERIFY(exchange(bytes("a"), bytes("file")));
    QVERIFY(watch.isWatched("file/in b"));
    QVERIFY(exchange(bytes("a"), bytes("file")));
    QVERIFY(watch.isWatched("a/in b"));
    QTRY_COMPARE(watchCount(), 6);
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
    QTRY_COMPARE(watchCount(), static_cast<int>(directories.size()) + 1);
}

void LinuxWatchTest::filesAreExchanged()
{
    makeFile("a");
    makeDirectory("dir");
    makeFile("dir/b");
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    watch.forget();
    QVERIFY(exchange(bytes("a"), bytes("dir/b")));
    makeFile("marker");
    QTRY_VERIFY(watch.hasSeen(FileAdded, "marker"));
    // The last that is told of one of them is that it went; whoever looks sees both.
    QVERIFY(!watch.actionsOf("a").isEmpty());
    QVERIFY(!watch.actionsOf("dir/b").isEmpty());
    QCOMPARE(watch.copy(), QSet<QString>({"a", "dir", "dir/b", "marker"}));
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

void LinuxWatchTest::watchIsSetBeforeTheReading()
{
    makeDirectory("a/b");
    s_isLateFileMade = true;
    WatchRun watch(root());
    s_isLateFileMade = false;
    // Too late to be listed, at least the first time.
    for (const QString rel : {"late", "a/late", "a/b/late"}) {
        QTRY_VERIFY2(watch.hasSeen(FileAdded, rel), qPrintable(rel));
        QTRY_VERIFY2(watch.copy().contains(rel), qPrintable(rel));
    }
}

void LinuxWatchTest::readingIsNoLoss()
{
    makeDirectories(20);
    WatchRun watch(root());
    QVERIFY(watch.isWatched("d7"));
    QCOMPARE(watchCount(), 21);
    QCOMPARE(watch.overflows(), 0);
    QCOMPARE(watch.watcher().unwatched(), QStringList());
    // Whatever is read again keeps its watch.
    const QSet<QByteArray> before = watches();
    makeFile("marker");
    const auto reader = Platform::DirectoryReader::create(root(), &watch.watcher());
    const auto ignore = [](Platform::DirectoryItem&&) {};
    QVERIFY(reader->list(root(), ignore));
    for (int i = 0; i < 20; ++i)
        QVERIFY(reader->list(path("d" + QString::number(i)), ignore));
    QVERIFY(watch.isWatched("d7"));
    QCOMPARE(watches(), before);
}

/// Whatever became of it: it may have gone while nobody could tell.
void LinuxWatchTest::whatIsNotListedAgainIsNotWatched()
{
    makeDirectory("a/b/c");
    makeDirectory("d/e");
    WatchRun watch(root());
    QVERIFY(watch.isWatched("a/b/c"));
    auto reader = Platform::DirectoryReader::create(root(), &watch.watcher());
    const auto ignore = [](Platform::DirectoryItem&&) {};
    QVERIFY(reader->list(path("a"), ignore));
    makeFile("marker");
    QTRY_VERIFY(watch.hasSeen(FileAdded, "marker"));
    QCOMPARE(watchCount(), 6);
    reader.reset();
    QTRY_COMPARE(watchCount(), 4);
    QVERIFY(watch.isWatched("a"));
    QVERIFY(watch.isWatched("d/e"));
    // Nor is what is below something that isn't watched.
    reader = Platform::DirectoryReader::create(root(), &watch.watcher());
    QVERIFY(reader->list(path("a/b/c"), ignore));
    QCOMPARE(watchCount(), 4);
}

void LinuxWatchTest::movedDirectoryKeepsItsWatches()
{
    makeDirectory("a/b/c");
    makeDirectory("other");
    WatchRun watch(root());
    QVERIFY(watch.isWatched("a/b/c"));
    const QSet<QByteArray> before = watches();
    QVERIFY(QDir().rename(path("a"), path("other/z")));
    QVERIFY(watch.isWatched("other/z/b/c"));
    QCOMPARE(watches(), before);
    // Its old name is told of no more, and to forget it again takes nothing away.
    watch.watcher().forget("a");
    watch.watcher().forget("other/z/b/x");
    makeFile("other/z/b/file");
    QTRY_VERIFY(watch.hasSeen(FileAdded, "other/z/b/file"));
    QCOMPARE(watches(), before);
}

void LinuxWatchTest::forgotten()
{
    makeDirectory("a/b/c");
    makeDirectory("ab");
    WatchRun watch(root());
    QVERIFY(watch.isWatched("a/b/c"));
    watch.watcher().forget("a/b");
    QTRY_COMPARE(watchCount(), 3);
    QCOMPARE(watchedBelow(watch), QSet<QString>({"a", "ab"}));
    watch.watcher().forget("a");
    QTRY_COMPARE(watchCount(), 2);
    watch.watcher().forget("nowhere/at all");
    watch.watcher().forget({});
    QTRY_COMPARE(watchCount(), 1);
    QVERIFY(watch.isWatched());
}

void LinuxWatchTest::hiddenFoldersBelowTheRootAreNotWatched()
{
    makeDirectory(".config/app");
    makeDirectory("a/.hidden");
    makeFile(".profile");
    WatchRun watch(root());
    QVERIFY(watch.isWatched("a/.hidden"));
    QCOMPARE(watchCount(), 3);
    QCOMPARE(watch.watcher().unwatched(), QStringList(".config"));
    // But they are read.
    QVERIFY(watch.copy().contains(".config/app"));
    const qint64 before = sleepsOfTheWatcher();
    QVERIFY(before > 0);
    makeFile(".config/file");
    makeFile(".config/app/file");
    makeDirectory(".config/new/inner");
    QCOMPARE(sleepsOfTheWatcher(), before);
    // They themselves are what the root reports.
    makeDirectory(".new/inner");
    QTRY_VERIFY(watch.hasSeen(FileAdded, ".new"));
    QTRY_COMPARE(watch.watcher().unwatched(), QStringList({".config", ".new"}));
    QVERIFY(QDir().rename(path(".config"), path("config")));
    QVERIFY(watch.isWatched("config/app"));
    QCOMPARE(watch.watcher().unwatched(), QStringList(".new"));
    QVERIFY(QDir().rename(path("a"), path(".a")));
    QTRY_COMPARE(watch.watcher().unwatched(), QStringList({".a", ".new"}));
    QTRY_COMPARE(watchCount(), 5);
    for (const Platform::TreeChange& change : watch.changes())
        QVERIFY2(!change.rel.startsWith('.') || !change.rel.contains('/'), qPrintable(change.rel));
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

void LinuxWatchTest::runningOutOfWatches_data()
{
    QTest::addColumn<int>("error");
    QTest::newRow("limit of the user") << ENOSPC;
    QTest::newRow("memory") << ENOMEM;
    QTest::newRow("limit of the program") << 0;
}

void LinuxWatchTest::runningOutOfWatches()
{
    QFETCH(int, error);
    makeDirectories(30);
    (error == 0 ? s_limitOfTheProgram : s_watchLimit) = 10;
    s_limitError = error;
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    QCOMPARE(watchCount(), 10);
    QCOMPARE(watch.watcher().unwatched().size(), 21);
    // What is there, is told all the same, and so is what comes.
    QCOMPARE(watch.copy().size(), 30);
    makeDirectory("new/inner");
    makeDirectory("other");
    QVERIFY(watch.isWatched());
    QVERIFY(watch.hasSeen(FileAdded, "new"));
    QVERIFY(watch.hasSeen(FileAdded, "other"));
    QCOMPARE(watchCount(), 10);
    const QStringList leftOut = watch.watcher().unwatched();
    QSet<QString> watched = allowed(root(), QDir::Dirs);
    QCOMPARE(watched.size(), 33);
    for (const QString& rel : leftOut)
        watched.removeIf([&](const QString& each) { return (each + '/').startsWith(rel + '/'); });
    QCOMPARE(watched.size(), 9);
    QCOMPARE(watchedBelow(watch), watched);
    QCOMPARE(watch.overflows(), 0);
    QVERIFY(!watch.hasEnded());
}

/// Not all that is beside it as well.
void LinuxWatchTest::largestProjectIsLeftOut()
{
    for (int i = 0; i < 40; ++i)
        makeDirectory(QStringLiteral("projects/huge/source/d%1").arg(i));
    for (int i = 0; i < 5; ++i)
        makeDirectory(QStringLiteral("projects/small%1/source").arg(i));
    makeDirectory("music/a/b");
    QStringList warnings;
    static QStringList* s_warnings = nullptr;
    s_warnings = &warnings;
    const QtMessageHandler previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& text) { *s_warnings += text; });
    s_limitOfTheProgram = 30;
    WatchRun watch(root());
    const bool isWatched = watch.isWatched("projects/small3/source");
    const QStringList leftOut = watch.watcher().unwatched();
    // It is larger than any other still, and read again, and nothing is said again.
    makeDirectory("projects/huge/source/new");
    for (int i = 0; i < 40; ++i)
        makeDirectory(QStringLiteral("more/source/d%1").arg(i));
    const bool isNewTold = QTest::qWaitFor([&] { return watch.hasSeen(FileAdded, "more"); });
    qInstallMessageHandler(previous);
    QVERIFY(isWatched && isNewTold);
    QCOMPARE(leftOut, QStringList("projects/huge/source"));
    QTRY_COMPARE(watch.watcher().unwatched(), QStringList({"more/source", "projects/huge/source"}));
    QVERIFY(watch.isWatched("music/a/b"));
    QVERIFY(watchCount() <= 30);
    QCOMPARE(warnings.size(), 1);
    QVERIFY2(warnings.constFirst().contains("projects/huge/source"),
             qPrintable(warnings.constFirst()));
}

void LinuxWatchTest::forgottenIsWatchedAgain()
{
    for (int i = 0; i < 20; ++i)
        makeDirectory(QStringLiteral("huge/d%1").arg(i));
    makeDirectory("small");
    s_watchLimit = 10;
    WatchRun watch(root());
    QVERIFY(watch.isWatched("small"));
    QCOMPARE(watch.watcher().unwatched(), QStringList("huge"));
    s_watchLimit = INT_MAX;
    // To read it again is no reason.
    const auto readIt = [&] {
        const auto reader = Platform::DirectoryReader::create(root(), &watch.watcher());
        QStringList found;
        QVERIFY(reader->list(path("huge"),
                             [&](Platform::DirectoryItem&& item) { found.append(item.name); }));
        for (const QString& name : std::as_const(found))
            QVERIFY(reader->list(path("huge/" + name), [](Platform::DirectoryItem&&) {}));
    };
    readIt();
    QVERIFY(watch.isWatched());
    QCOMPARE(watchCount(), 2);
    watch.watcher().forget("huge");
    QCOMPARE(watch.watcher().unwatched(), QStringList());
    readIt();
    QVERIFY(watch.isWatched("huge/d7"));
    QCOMPARE(watchCount(), 23);
    // Nor does one that goes leave its name behind.
    s_watchLimit = 10;
    makeDirectory("small/more");
    QTRY_COMPARE(watch.watcher().unwatched(), QStringList("huge"));
    QVERIFY(QDir().rename(path("huge"), m_elsewhere->filePath("huge")));
    QTRY_COMPARE(watch.watcher().unwatched(), QStringList());
}

void LinuxWatchTest::noWatchAtAll()
{
    makeDirectory("a");
    s_watchLimit = 0;
    WatchRun watch(root());
    QCOMPARE(watch.watcher().unwatched(), QStringList(QString()));
    QCOMPARE(watch.copy(), QSet<QString>({"a"}));
    QTRY_VERIFY(s_watchTries >= 2);
    QVERIFY(!watch.hasEnded());
    QVERIFY(watch.end());
    QCOMPARE(watch.overflows(), 0);
}

void LinuxWatchTest::rootIsWatchedAsSoonAsItCanBe()
{
    makeDirectory("a/b");
    s_watchLimit = 0;
    WatchRun watch(root());
    // Once by who reads it, and once more by the watching thread.
    QTRY_VERIFY(s_watchTries >= 2);
    makeFile("missed");
    s_watchLimit = INT_MAX;
    QTRY_COMPARE_WITH_TIMEOUT(watch.overflows(), 1, 15000);
    QVERIFY(watch.isWatched("a/b"));
    QVERIFY(!watch.hasSeen(FileAdded, "missed"));
    QVERIFY(watch.copy().contains("missed"));
    QCOMPARE(watch.watcher().unwatched(), QStringList());
    const qint64 before = sleepsOfTheWatcher();
    QVERIFY(before > 0);
    // Beyond the time after which it would try again.
    QTest::qWait(6000);
    QCOMPARE(sleepsOfTheWatcher(), before);
    QCOMPARE(watch.overflows(), 1);
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
    s_areMountsBarred = true;
    s_areDirectoriesBarred = isRootBarred;
    WatchRun watch(root());
    QVERIFY(s_refusedOpens > 0);
    QCOMPARE(watch.copy(), QSet<QString>());
    // A watch that gives up would end now; the next try comes much later.
    QTest::qWait(200);
    QVERIFY(!watch.hasEnded());
    QCOMPARE(watchCount(), 0);
    s_areMountsBarred = s_areDirectoriesBarred = false;
    QTRY_COMPARE_WITH_TIMEOUT(watch.overflows(), 1, 15000);
    QCOMPARE(watchCount(), 3);
    QVERIFY(watch.isWatched("a/b"));
    QCOMPARE(watch.overflows(), 1);
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
    // It has to be read again until it can be.
    QTRY_VERIFY(watch.overflows() > 1);
    QVERIFY(!watch.copy().contains("a/new/inner"));
    s_areDirectoriesBarred = false;
    QTRY_COMPARE(watchCount(), 4);
    QTRY_VERIFY(watch.copy().contains("a/new/inner"));
    QVERIFY(watch.isWatched("a/new/inner"));
    const int overflows = watch.overflows();
    QVERIFY(watch.isWatched());
    QCOMPARE(watch.overflows(), overflows);
}

void LinuxWatchTest::limitOfTheSystem_data()
{
    QTest::addColumn<QString>("limit");
    QTest::addColumn<QByteArray>("output");
    QTest::newRow("none, for comparison") << "" << QByteArray("21 0 0");
    // Not every system lets a user have limits of their own.
    if (UserNamespace::run("limitWatches", {"5"}).exitCode == 0)
        QTest::newRow("of a namespace") << "5" << QByteArray("5 16 0");
}

void LinuxWatchTest::limitOfTheSystem()
{
    QFETCH(QString, limit);
    makeDirectories(20);
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
    QCOMPARE(watch.watcher().unwatched().size(), 11);
    const qint64 before = sleepsOfTheWatcher();
    QVERIFY(before > 0);
    bool isOver = false;
    QTimer::singleShot(500, this, [&] { isOver = true; });
    QTRY_VERIFY(isOver);
    QCOMPARE(sleepsOfTheWatcher(), before);
}

void LinuxWatchTest::namesOfAnyBytes()
{
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    QRandomGenerator random(7);
    QSet<QByteArray> names;
    for (int i = 0; i < 300; ++i) {
        QByteArray name("d");
        for (int length = random.bounded(6); length >= 0; --length)
            name += static_cast<char>(random.bounded(i % 2 == 0 ? 128 : 1, 256));
        name.replace('/', '_');
        if (::mkdir((bytes("./") + name).constData(), 0700) == 0)
            names.insert(name);
        ::close(::open((bytes("./") + name + "/file").constData(), O_CREAT | O_WRONLY, 0600));
    }
    QSet<QString> texts;
    for (const QByteArray& name : std::as_const(names)) {
        if (QString::fromUtf8(name).toUtf8() == name)
            texts += {QString::fromUtf8(name), QString::fromUtf8(name) + "/file"};
    }
    QVERIFY(texts.size() > 50);
    QVERIFY(texts.size() < 2 * names.size());
    QTRY_COMPARE(watch.copy(), texts);
    QTRY_COMPARE(watchCount(), 1 + static_cast<int>(texts.size() / 2));
}

/// Readers come and go on threads of their own, and are told to forget by others.
void LinuxWatchTest::manyThreads()
{
    for (int i = 0; i < 10; ++i)
        makeDirectory(QStringLiteral("a%1/b/c").arg(i));
    s_limitOfTheProgram = 25;
    WatchRun watch(root());
    std::atomic<bool> isOver{false};
    const auto repeat = [&](const std::function<void(int)>& action) {
        std::unique_ptr<QThread> thread(QThread::create([&isOver, action] {
            for (int i = 0; !isOver; ++i)
                action(i);
        }));
        thread->start();
        return thread;
    };
    std::atomic<int> rounds{0};
    const auto readAll = [&](int) {
        const auto reader = Platform::DirectoryReader::create(root(), &watch.watcher());
        QStringList due = {root()};
        while (!due.isEmpty()) {
            const QString directory = due.takeLast();
            reader->list(directory, [&](Platform::DirectoryItem&& item) {
                if (item.enter)
                    due.append(directory + '/' + item.name);
            });
        }
        ++rounds;
    };
    const auto readers = {repeat(readAll).release(), repeat(readAll).release()};
    const auto forgetter = repeat([&](int i) {
        watch.watcher().forget(QStringLiteral("a%1").arg(i % 10));
        static_cast<void>(watch.watcher().unwatched());
    });
    for (int i = 0; rounds < 200; i = (i + 1) % 10) {
        static_cast<void>(QDir().rename(path(QStringLiteral("a%1/b").arg(i)),
                                        path(QStringLiteral("a%1/b").arg((i + 1) % 10))));
        QTest::qWait(1); // between two moves the others are to find the folder somewhere
    }
    isOver = true;
    for (QThread* reader : readers) {
        QVERIFY(reader->wait(10000));
        delete reader;
    }
    QVERIFY(forgetter->wait(10000));
    // And all is well once they have gone.
    s_limitOfTheProgram = INT_MAX;
    QVERIFY(watch.end());
    WatchRun after(root());
    QVERIFY(after.isWatched("a7"));
    QCOMPARE(after.copy(), allowed(root(), QDir::AllEntries));
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
    QTRY_COMPARE(watch.copy(), allowed(root(), QDir::AllEntries));
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
