// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "DirectoryAccess.h"
#include "DirectoryReader.h"
#include "FileTypeIcon.h"
#include "FreshProcess.h"
#include "LinkTarget.h"
#include "MountTable.h"
#include "PathLocality.h"
#include "TestFiles.h"
#include "TestHome.h"
#include "UserNamespace.h"
#include "WatchRun.h"

#include <QApplication>
#include <QImage>
#include <QMap>
#include <QProcess>
#include <QScopeGuard>
#include <QSemaphore>
#include <QTest>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <string_view>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sched.h>
#include <sys/fsuid.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

using Platform::CurrentMounts;
using Platform::DirectoryItem;
using Platform::DirectoryReader;
using Platform::MountTable;
using Platform::PathKind;

/// What only the file systems of this system hold.
class LinuxFilesTest : public QObject, private TestTree
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void links_data();
    void links();
    void rootMayBeALink();
    void replacedByALink();
    void specialFilesAreFiles();
    void namesThatAreNoTextArePassedOver_data();
    void namesThatAreNoTextArePassedOver();
    void namesOfAnyOtherKind_data();
    void namesOfAnyOtherKind();
    void pathsBeyondTheLimit();
    void deeperThanOpenFilesAllow();
    void directoryVanishesWhileItIsRead();
    void unreadableDirectories();
    void fileSystemThatTellsNoTypes();
    void rootOfTheFileSystem();
    void pathsThatAreNone_data();
    void pathsThatAreNone();
    void mountTable_data();
    void mountTable();
    void brokenMountTable_data();
    void brokenMountTable();
    void mountsBelow();
    void topmostMountCounts();
    void waysThroughRemoteMounts_data();
    void waysThroughRemoteMounts();
    void noDescriptorForTheMounts();
    void linksIntoRemoteMounts_data();
    void linksIntoRemoteMounts();
    void homeOnTheNetwork();
    void pathsThatLeadAway_data();
    void pathsThatLeadAway();
    void chainOfLinksThatLeadsAway();
    void deadMountIsNotTouched_data();
    void deadMountIsNotTouched();
    void mountedMeanwhile_data();
    void mountedMeanwhile();
    void iconsOfTheTheme_data();
    void iconsOfTheTheme();

private:
    void makeLink(const QByteArray& target, const QString& rel) const
    {
        QCOMPARE(::symlink(target.constData(), bytes(rel).constData()), 0);
    }
};

namespace
{

std::atomic<bool> s_areTypesBlank{false};
std::atomic<bool> s_areMountsBarred{false}; ///< no descriptor is left for them
QByteArray s_vanishing; ///< a file that goes as soon as its name is read; empty for none

void blankTypes(char* entries, ssize_t size)
{
    for (ssize_t offset = 0; offset < size;) {
        auto* entry = reinterpret_cast<dirent64*>(entries + offset);
        entry->d_type = DT_UNKNOWN;
        offset += entry->d_reclen;
    }
}

} // namespace

/// Stands in for the system's own, to be a file system that leaves types out of its directories.
extern "C" ssize_t getdents64(int directory, void* buffer, size_t size) noexcept
{
    const ssize_t filled = ::syscall(SYS_getdents64, directory, buffer, size);
    if (s_areTypesBlank)
        blankTypes(static_cast<char*>(buffer), filled);
    if (!s_vanishing.isEmpty())
        ::unlink(s_vanishing.constData());
    return filled;
}

/// Stands in for the system's own too. Taking all descriptors instead would leave none for the
/// sanitizers either.
extern "C" int openat(int directory, const char* path, int flags, ...)
{
    if (s_areMountsBarred && std::string_view(path) == "/proc/self/mountinfo") {
        errno = EMFILE;
        return -1;
    }
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = flags & O_CREAT ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return static_cast<int>(::syscall(SYS_openat, directory, path, flags, mode));
}

namespace
{

using Listing = QMap<QString, DirectoryItem>;

bool listInto(DirectoryReader& reader, const QString& directory, Listing& listing)
{
    return reader.list(directory, [&](DirectoryItem&& item) { listing.insert(item.name, item); });
}

Listing listingOf(const QString& directory)
{
    Listing listing;
    return listInto(*DirectoryReader::create(directory), directory, listing)
               ? listing
               : Listing{{"unreadable", DirectoryItem()}};
}

QStringList walk(const QString& root)
{
    const std::unique_ptr<DirectoryReader> reader = DirectoryReader::create(root);
    QStringList found;
    QStringList stack = {root};
    while (!stack.isEmpty()) {
        const QString directory = stack.takeLast();
        reader->list(directory, [&](DirectoryItem&& item) {
            found.append(directory + '/' + item.name);
            if (item.enter)
                stack.append(found.constLast());
        });
    }
    return found;
}

/// Makes directories inside each other, whatever the length of their path.
/// \returns the last one, open.
Platform::FileDescriptor makeChain(const QByteArray& root, const QByteArrayList& names)
{
    Platform::FileDescriptor directory(::open(root.constData(), O_PATH | O_DIRECTORY));
    for (const QByteArray& name : names) {
        ::mkdirat(directory.get(), name.constData(), 0700);
        directory = Platform::FileDescriptor(
            ::openat(directory.get(), name.constData(), O_PATH | O_DIRECTORY));
    }
    return directory;
}

QByteArray mountLine(const QByteArray& mountPoint, const QByteArray& type)
{
    return "36 35 98:0 /mnt1 " + mountPoint + " rw,noatime master:1 - " + type + " /dev/x rw\n";
}

/// Mounts a file system whose program never answers: whoever touches it waits for ever.
/// \param path a directory, or a file, which gets a file system of one file.
/// \returns the connection to it, not open if it can't be had.
Platform::FileDescriptor mountDead(const QString& path)
{
    Platform::FileDescriptor device(::open("/dev/fuse", O_RDWR | O_CLOEXEC));
    const QByteArray options = "fd=" + QByteArray::number(device.get()) +
                               ",rootmode=" + (QFileInfo(path).isDir() ? "40000" : "100000") +
                               ",user_id=0,group_id=0";
    const QByteArray target = QFile::encodeName(path);
    if (device.isOpen() &&
        ::mount("dead", target.constData(), "fuse.dead", 0, options.constData()) == 0)
        return device;
    return Platform::FileDescriptor();
}

int canMountDead(const QStringList& arguments)
{
    return mountDead(arguments.at(0)).isOpen() ? EXIT_SUCCESS : EXIT_FAILURE;
}

/// Not every system lets a user mount something.
bool canMount()
{
    const QTemporaryDir mountPoint;
    return UserNamespace::run("canMountDead", {mountPoint.path()}, CLONE_NEWNS).exitCode ==
           EXIT_SUCCESS;
}

PathKind kindOf(const QString& path, const QString& root)
{
    return DirectoryReader::create(root)->kindOf(path);
}

void printListing(const QString& root)
{
    const Listing listing = listingOf(root);
    for (auto it = listing.cbegin(); it != listing.cend(); ++it)
        std::printf("%s %d%d\n", qPrintable(it.key()), it->isDir, it->enter);
}

void printKind(const QString& rel, const QString& root)
{
    switch (kindOf(root + '/' + rel, root)) {
    case PathKind::Missing:
        std::putchar('M');
        break;
    case PathKind::File:
        std::putchar('F');
        break;
    case PathKind::Directory:
        std::putchar('D');
    }
}

/// Reads and watches a tree with dead mounts in it, which are there before or come later.
int lookAtDeadMount(const QStringList& arguments)
{
    const QString root = arguments.at(0);
    const QString when = arguments.at(1);
    std::vector<Platform::FileDescriptor> connections;
    const auto mountBoth = [&] {
        connections.push_back(mountDead(root + "/dead"));
        connections.push_back(mountDead(root + "/dead file"));
        return connections.at(0).isOpen() && connections.at(1).isOpen();
    };
    s_areTypesBlank = when == "before, without types";
    if (when.startsWith("before") && !mountBoth())
        return 1;
    WatchRun watch(root);
    if (!watch.isWatched("alive"))
        return 2;
    if (when == "later") {
        watch.forget();
        // Nothing tells of what is in a mount, so it is all to be read anew.
        if (!mountBoth() || !QTest::qWaitFor([&] { return watch.overflows() > 0; }, 10000))
            return 3;
    }
    if (!QDir().mkpath(root + "/alive/new") || !watch.isWatched("alive/new"))
        return 4;
    printListing(root);
    for (const char* rel :
         {"dead", "dead/below", "dead/below/file", "dead file", "into", "through", "through/below"})
        printKind(rel, root);
    for (const char* rel : {"dead", "dead/below"})
        printKind(rel, root + "/home");
    for (const char* rel : {"alive", "dead", "dead/below/file", "dead file", "into", "through"})
        std::putchar(Platform::isLocalPath(root + '/' + rel) ? 'L' : 'R');
    return 0;
}

/// Scans a tree in which something is mounted when the scan knows of it but hasn't come to it yet.
int scanWhileMounting(const QStringList& arguments)
{
    const QString root = arguments.at(0);
    const auto reader = DirectoryReader::create(root);
    Listing listing;
    listInto(*reader, root, listing);
    Platform::FileDescriptor connection;
    if (arguments.at(1) == "mount") {
        connection = mountDead(root + "/dead");
        if (!connection.isOpen())
            return 1;
    }
    for (int i = 0; i < 64; ++i) {
        if (!listInto(*reader, root + "/alive", listing))
            return 2;
    }
    const bool isListed = listInto(*reader, root + "/dead", listing);
    std::printf("%d%d", isListed, listInto(*reader, root + "/dead/inner", listing));
    return 0;
}

/// Has events of a directory wait until the way to it leads into a dead mount.
int watchWhileMounting(const QStringList& arguments)
{
    const QString root = arguments.at(0);
    const QString way = arguments.at(1);
    const QString directory = root + "/dead";
    const QString name = directory + "/inner/file";
    Platform::FileDescriptor connection;
    if (way == "link")
        connection = mountDead(root + "/other");
    std::atomic<bool> isHeld{false};
    QSemaphore hasCome;
    QSemaphore mayGo;
    WatchRun watch(root, [&] {
        if (isHeld.exchange(false)) {
            hasCome.release();
            mayGo.acquire();
        }
    });
    if (!watch.isWatched("dead/inner"))
        return 2;
    watch.forget();
    isHeld = true;
    if (!QDir().mkdir(directory + "/blocks"))
        return 3;
    hasCome.acquire();
    // Of what is told, each is looked for.
    if (!QFile::rename(name, directory + "/inner/moved") || !QDir().mkdir(directory + "/inner/new"))
        return 4;
    if (way == "above")
        connection = mountDead(directory);
    else if (way == "name" && QDir().mkdir(name))
        connection = mountDead(name);
    else if (way == "link" &&
             (!QDir().rename(directory, root + "/moved") || !QFile::link("other", directory)))
        return 5;
    mayGo.release();
    if (!connection.isOpen() || !watch.isWatched(way == "link" ? "moved/inner/new" : "alive"))
        return 6;
    // The link hides nothing that was watched.
    if (way != "link" && !QTest::qWaitFor([&] { return watch.overflows() > 0; }, 10000))
        return 7;
    std::printf("%d", watch.overflows());
    return 0;
}

/// Mounts when a watcher has been made, but not yet begun.
int mountBeforeTheWatch(const QStringList& arguments)
{
    const QString root = arguments.at(0);
    std::atomic<int> overflows{0};
    const auto watcher = Platform::TreeWatcher::create(root);
    const Platform::FileDescriptor connection =
        arguments.at(1) == "mount" ? mountDead(root + "/dead") : Platform::FileDescriptor();
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        watcher->run(
            {[&](QVector<Platform::TreeChange>&&) { watcher->stop(); }, [&] { ++overflows; }});
    }));
    thread->start();
    // Until something else is told.
    const bool hasEnded = QTest::qWaitFor(
        [&] {
            static int number = 0;
            QDir().mkdir(root + "/alive" + QString::number(++number));
            return thread->isFinished();
        },
        10000);
    if (!hasEnded)
        std::_Exit(1);
    std::printf("%d", overflows.load());
    return 0;
}

/// Unmounts what is watched.
int unmountWatched(const QStringList& arguments)
{
    const QString root = arguments.at(0);
    const QByteArray disk = QFile::encodeName(root + "/other");
    if (::mount("none", disk.constData(), "tmpfs", 0, nullptr) != 0 ||
        !QDir().mkpath(root + "/other/a/b"))
        return 1;
    WatchRun watch(root);
    if (!watch.isWatched("other/a/b"))
        return 2;
    // Would fail if anything were still open in it.
    if (::umount(disk.constData()) != 0)
        return 3;
    if (!QTest::qWaitFor([&] { return watch.overflows() > 0; }, 10000))
        return 4;
    std::printf("%d%d", watch.copy().contains("other"), watch.copy().contains("other/a"));
    return watch.isWatched("other") ? 0 : 5;
}

} // namespace

void LinuxFilesTest::initTestCase()
{
    // So that a walk that leaves files open behind it comes to an end.
    const rlimit files = {256, 256};
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &files), 0);
}

void LinuxFilesTest::init()
{
    makeRoot();
}

void LinuxFilesTest::cleanup()
{
    // Goes deeper than a path is long.
    QCOMPARE(QProcess::execute("rm", {"-rf", "--", root()}), 0);
}

void LinuxFilesTest::links_data()
{
    QTest::addColumn<QByteArray>("target");
    QTest::addColumn<bool>("isListed");
    QTest::newRow("file") << QByteArray("file") << true;
    QTest::newRow("file in a directory") << QByteArray("dir/inner") << true;
    QTest::newRow("file by way of the parent") << QByteArray("../tree/./file") << true;
    QTest::newRow("nothing") << QByteArray("nowhere") << true;
    QTest::newRow("itself") << QByteArray("link") << true;
    QTest::newRow("link to a file") << QByteArray("to file") << true;
    QTest::newRow("file by way of a link") << QByteArray("to dir/inner") << true;
    QTest::newRow("device") << QByteArray("/dev/null") << true;
    QTest::newRow("file taken for a directory") << QByteArray("file/") << true;
    QTest::newRow("directory") << QByteArray("dir") << false;
    QTest::newRow("directory with a slash") << QByteArray("dir/") << false;
    QTest::newRow("directory, absolute") << QByteArray("/usr") << false;
    QTest::newRow("root") << QByteArray("/") << false;
    QTest::newRow("here") << QByteArray(".") << false;
    QTest::newRow("parent") << QByteArray("..") << false;
    QTest::newRow("link to a directory") << QByteArray("to dir") << false;
    QTest::newRow("directory by way of a link") << QByteArray("to dir/..") << false;
    QTest::newRow("above the root") << QByteArray("/../../../usr") << false;
}

void LinuxFilesTest::links()
{
    QFETCH(QByteArray, target);
    QFETCH(bool, isListed);
    makeDirectory("tree/dir");
    makeFile("tree/file");
    makeFile("tree/dir/inner");
    makeLink("dir", "tree/to dir");
    makeLink("file", "tree/to file");
    makeLink(target, "tree/link");
    const Listing listing = listingOf(path("tree"));
    QCOMPARE(listing.contains("link"), isListed);
    QVERIFY(!listing["link"].isDir);
    QVERIFY(!listing["link"].enter);
    QVERIFY(listing.contains("file"));
    QCOMPARE(kindOf(path("tree/link"), path("tree")),
             isListed ? PathKind::File : PathKind::Missing);
    // The same without a look at the system's own table, and with a step at a time.
    const Platform::FileDescriptor tree = Platform::openPath(bytes("tree"), O_PATH | O_DIRECTORY);
    const QByteArray treePath = Platform::canonicalPath(tree.get(), bytes("tree"));
    const MountTable far = MountTable::parse(mountLine("/net", "nfs"));
    for (const MountTable& mounts : {MountTable(), far})
        QCOMPARE(Platform::linkLeadsToFile(tree.get(), treePath, "link", mounts), isListed);
}

void LinuxFilesTest::rootMayBeALink()
{
    makeDirectory("real/dir");
    makeFile("real/dir/file");
    makeLink("real", "home");
    QCOMPARE(walk(path("home")), QStringList({path("home/dir"), path("home/dir/file")}));
}

void LinuxFilesTest::replacedByALink()
{
    makeDirectory("dir/inner");
    makeDirectory("other/inner");
    makeFile("other/inner/secret");
    const auto reader = DirectoryReader::create(root());
    Listing listing;
    QVERIFY(listInto(*reader, root(), listing));
    QVERIFY(listing["dir"].enter);
    QVERIFY(QDir(path("dir")).removeRecursively());
    makeLink("other", "dir");
    QVERIFY(!listInto(*reader, path("dir"), listing));
    QVERIFY(!listInto(*reader, path("dir/inner"), listing));
    QVERIFY(!listing.contains("secret"));
}

void LinuxFilesTest::specialFilesAreFiles()
{
    QCOMPARE(::mkfifo(bytes("pipe").constData(), 0600), 0);
    const Platform::FileDescriptor listener(::socket(AF_UNIX, SOCK_STREAM, 0));
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray socketPath = bytes("socket");
    QVERIFY(static_cast<size_t>(socketPath.size()) < sizeof address.sun_path);
    qstrcpy(address.sun_path, socketPath.constData());
    QCOMPARE(::bind(listener.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    const Listing listing = listingOf(root());
    QCOMPARE(listing.keys(), QStringList({"pipe", "socket"}));
    for (const QString name : {"pipe", "socket"}) {
        QVERIFY(!listing[name].isDir);
        QCOMPARE(kindOf(path(name), root()), PathKind::File);
    }
    QCOMPARE(kindOf("/dev/null", "/"), PathKind::File);
}

void LinuxFilesTest::namesThatAreNoTextArePassedOver_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("byte that never occurs") << QByteArray("\xFF");
    QTest::newRow("Latin-1") << QByteArray("M\xFAsica");
    QTest::newRow("cut off") << QByteArray("a\xE3\x81");
    QTest::newRow("continuation alone") << QByteArray("\x80 b");
    QTest::newRow("too long a form") << QByteArray("\xC0\xAF");
    QTest::newRow("half of a pair") << QByteArray("\xED\xA0\x80");
    QTest::newRow("beyond the last character") << QByteArray("\xF4\x90\x80\x80");
}

void LinuxFilesTest::namesThatAreNoTextArePassedOver()
{
    QFETCH(QByteArray, name);
    makeDirectory("files");
    makeDirectory("directories");
    QCOMPARE(::mknod((bytes("files/") + '/' + name).constData(), S_IFREG | 0600, 0), 0);
    QCOMPARE(::mkdir((bytes("directories/") + '/' + name).constData(), 0700), 0);
    makeFile("files/good");
    QStringList found = walk(root());
    found.sort();
    QCOMPARE(found, QStringList({path("directories"), path("files"), path("files/good")}));
}

void LinuxFilesTest::namesOfAnyOtherKind_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("line feed") << "a\nb";
    QTest::newRow("backslash") << "a\\b";
    QTest::newRow("colon") << "C:";
    QTest::newRow("control characters") << "\x01\x1B[0m\x7F";
    QTest::newRow("blanks alone") << "  ";
    QTest::newRow("blank and dot at the end") << "a. .";
    QTest::newRow("wildcards") << "*?<>|\"";
    QTest::newRow("non-character") << QString(QChar(0xFFFE)) + QChar(0xFFFF);
    QTest::newRow("replacement character") << QString(QChar(0xFFFD));
    QTest::newRow("255 bytes") << QString(255, 'x');
    QTest::newRow("255 bytes, not ASCII") << QString(85, QChar(0x65E5));
}

void LinuxFilesTest::namesOfAnyOtherKind()
{
    QFETCH(QString, name);
    makeDirectory(name);
    makeFile(name + '/' + name);
    QCOMPARE(walk(root()), QStringList({path(name), path(name) + '/' + name}));
    QCOMPARE(kindOf(path(name), root()), PathKind::Directory);
    QCOMPARE(kindOf(path(name) + '/' + name, root()), PathKind::File);
}

void LinuxFilesTest::pathsBeyondTheLimit()
{
    const QByteArrayList names(60, QByteArray(200, 'd'));
    const Platform::FileDescriptor last = makeChain(bytes("."), names);
    QVERIFY(last.isOpen());
    QCOMPARE(::mknodat(last.get(), "file", S_IFREG | 0600, 0), 0);
    QCOMPARE(::mkdirat(last.get(), "dir", 0700), 0);
    QCOMPARE(::symlinkat("dir", last.get(), "to dir"), 0);
    QCOMPARE(::symlinkat("file", last.get(), "to file"), 0);
    const QString end = path(QString::fromLatin1(names.join('/')));
    QVERIFY(end.size() > 2 * PATH_MAX);
    QStringList found = walk(root());
    QCOMPARE(found.size(), 63);
    found.sort();
    QCOMPARE(found.mid(59), QStringList({end, end + "/dir", end + "/file", end + "/to file"}));
    QCOMPARE(kindOf(end, root()), PathKind::Directory);
    QCOMPARE(kindOf(end + "/file", root()), PathKind::File);
    QCOMPARE(kindOf(end + "/to file", root()), PathKind::File);
    QCOMPARE(kindOf(end + "/to dir", root()), PathKind::Missing);
    QCOMPARE(kindOf(end + "/other", root()), PathKind::Missing);
    QCOMPARE(kindOf('/' + QString(2 * PATH_MAX, 'x') + "/file", "/"), PathKind::Missing);
    // With more slashes than it needs, at every place where it may be cut.
    const QString slashed = QString(end).replace('/', "///") + "//file//";
    for (int more = 0; more < names.constFirst().size() + 3; ++more)
        QCOMPARE(kindOf(QString(more, '/') + slashed, "//"), PathKind::File);
    // As a root, and straight to the end.
    QCOMPARE(listingOf(end).keys(), QStringList({"dir", "file", "to file"}));
    Listing listing;
    QVERIFY(listInto(*DirectoryReader::create(root()), end, listing));
    QCOMPARE(listing.keys(), QStringList({"dir", "file", "to file"}));
}

void LinuxFilesTest::deeperThanOpenFilesAllow()
{
    constexpr int Depth = 2500;
    const Platform::FileDescriptor last = makeChain(bytes("."), QByteArrayList(Depth, "d"));
    QVERIFY(last.isOpen());
    // Beside each of the upper ones another, to which the walk comes back from far below.
    for (int i = 0; i < 100; ++i)
        makeDirectory(QString("d/").repeated(i) + "a/b");
    for (int i = 0; i < 100; ++i)
        makeDirectory(QString("d/").repeated(i) + "z/b");
    QCOMPARE(walk(root()).size(), Depth + 400);
}

void LinuxFilesTest::directoryVanishesWhileItIsRead()
{
    for (int i = 0; i < 3000; ++i)
        makeFile(QString("a rather long name, so that it takes a few portions %1").arg(i));
    makeDirectory("inner/most");
    const auto reader = DirectoryReader::create(root());
    int visits = 0;
    reader->list(root(), [&](DirectoryItem&&) {
        if (++visits == 1)
            QCOMPARE(QProcess::execute("rm", {"-rf", "--", root()}), 0);
    });
    QVERIFY(visits >= 1);
    Listing listing;
    QVERIFY(!listInto(*reader, path("inner"), listing));
    QVERIFY(!listInto(*reader, root(), listing));
}

void LinuxFilesTest::unreadableDirectories()
{
    makeDirectory("open");
    makeDirectory("closed/inner");
    makeDirectory("no names/inner");
    makeFile("open/file");
    QCOMPARE(::chmod(bytes("closed").constData(), 0), 0);
    QCOMPARE(::chmod(bytes("no names").constData(), S_IXUSR | S_IXGRP | S_IXOTH), 0);
    for (QString way = root(); way.startsWith(TestHome::path()); way = QFileInfo(way).path())
        QCOMPARE(::chmod(QFile::encodeName(way).constData(), 0755), 0);
    // Nothing is closed to the superuser, so this thread becomes somebody else, if it can.
    constexpr uid_t Nobody = 65534;
    const int previous = ::setfsuid(Nobody);
    const Listing listing = listingOf(root());
    const auto reader = DirectoryReader::create(root());
    Listing nothing;
    const bool isClosedRead = listInto(*reader, path("closed"), nothing);
    const bool isBelowClosedRead = listInto(*reader, path("closed/inner"), nothing);
    const bool isNamelessRead = listInto(*reader, path("no names"), nothing);
    const PathKind belowClosed = kindOf(path("closed/inner"), root());
    const QStringList found = walk(root());
    ::setfsuid(static_cast<uid_t>(previous));
    QCOMPARE(::chmod(bytes("closed").constData(), 0700), 0);
    QCOMPARE(listing.keys(), QStringList({"closed", "no names", "open"}));
    QVERIFY(!isClosedRead);
    QVERIFY(!isBelowClosedRead);
    QVERIFY(!isNamelessRead);
    QVERIFY(nothing.isEmpty());
    QCOMPARE(belowClosed, PathKind::Missing);
    QCOMPARE(found.size(), 4);
    QVERIFY(found.contains(path("open/file")));
}

void LinuxFilesTest::fileSystemThatTellsNoTypes()
{
    makeDirectory("dir/inner");
    makeFile("dir/inner/file");
    makeFile("file");
    makeFile("gone");
    makeLink("dir", "to dir");
    makeLink("file", "to file");
    QCOMPARE(::mkfifo(bytes("pipe").constData(), 0600), 0);
    const auto restore = qScopeGuard([] {
        s_areTypesBlank = false;
        s_vanishing.clear();
    });
    s_areTypesBlank = true;
    s_vanishing = bytes("gone");
    const Listing listing = listingOf(root());
    s_vanishing.clear();
    QCOMPARE(listing.keys(), QStringList({"dir", "file", "pipe", "to file"}));
    for (auto it = listing.cbegin(); it != listing.cend(); ++it) {
        QCOMPARE(it->isDir, it.key() == "dir");
        QCOMPARE(it->enter, it->isDir);
    }
    QVERIFY(walk(root()).contains(path("dir/inner/file")));
    WatchRun watch(root());
    QVERIFY(watch.isWatched("dir/inner"));
}

void LinuxFilesTest::rootOfTheFileSystem()
{
    const Listing listing = listingOf("/");
    QVERIFY(listing["proc"].isDir);
    QVERIFY(listing["dev"].enter);
    Listing dev;
    QVERIFY(listInto(*DirectoryReader::create("/"), "/dev", dev));
    QVERIFY(dev.contains("null"));
    QCOMPARE(kindOf("/", "/"), PathKind::Directory);
    QCOMPARE(kindOf("///", "/"), PathKind::Directory);
    QCOMPARE(kindOf("/proc", "/"), PathKind::Directory);
}

void LinuxFilesTest::pathsThatAreNone_data()
{
    QTest::addColumn<QString>("directory"); // %1: what the temporary directory is
    QTest::newRow("empty") << "";
    QTest::newRow("relative") << "tree";
    QTest::newRow("beside the root") << "%1/tree2";
    QTest::newRow("above the root") << "%1";
    QTest::newRow("with a zero") << "%1/tree" + QString(QChar(0));
    QTest::newRow("half of a pair") << "%1/tree/" + QString(QChar(0xD800));
    QTest::newRow("root by another name") << "%1/other/../tree";
}

void LinuxFilesTest::pathsThatAreNone()
{
    QFETCH(QString, directory);
    directory.replace("%1", root());
    makeDirectory("tree/?");
    makeDirectory("other");
    makeDirectory("tree2");
    const auto reader = DirectoryReader::create(path("tree"));
    Listing listing;
    QVERIFY(!listInto(*reader, directory, listing));
    QVERIFY(listInto(*reader, path("tree/"), listing));
    QVERIFY(!listInto(*DirectoryReader::create(""), directory, listing));
    QCOMPARE(kindOf(path("tree/") + QChar(0xD800), root()), PathKind::Missing);
}

void LinuxFilesTest::mountTable_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<bool>("isRemote");
    for (const char* type :
         {"nfs",    "nfs4",     "cifs", "smb3",       "smbfs",           "9p",     "afs", "ceph",
          "ncpfs",  "coda",     "fuse", "fuse.sshfs", "fuse.gvfsd-fuse", "autofs", "ncp", "beegfs",
          "lustre", "orangefs", "gpfs", "vboxsf",     "virtiofs"})
        QTest::newRow(type) << QByteArray(type) << true;
    for (const char* type : {"ext4", "btrfs", "xfs", "vfat", "fuseblk", "overlay", "tmpfs", "ntfs3",
                             "fusectl", "nfsd", "ecryptfs"})
        QTest::newRow(type) << QByteArray(type) << false;
}

void LinuxFilesTest::mountTable()
{
    QFETCH(QByteArray, type);
    const MountTable table = MountTable::parse(
        mountLine("/", "ext4") + mountLine("/home/me/two\\040words\\134\\011\\012", type));
    QTEST(table.hasRemote(), "isRemote");
    QTEST(table.isRemote("/home/me/two words\\\t\n"), "isRemote");
    QTEST(table.holdsRemote("/home/me"), "isRemote");
    QVERIFY(!table.isRemote("/home/me"));
    QVERIFY(!table.isRemote("/home/me/two"));
    QVERIFY(!table.isRemote("/home/me/two words\\\t\n/below"));
    QVERIFY(!table.holdsRemote("/home"));
}

void LinuxFilesTest::brokenMountTable_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("line feeds") << QByteArray("\n\n");
    QTest::newRow("blanks") << QByteArray(50, ' ');
    QTest::newRow("too short") << QByteArray("36 35 98:0 /a /b");
    QTest::newRow("no hyphen") << QByteArray("36 35 98:0 /a /b rw nfs x y");
    QTest::newRow("nothing behind the hyphen") << QByteArray("36 35 98:0 /a /b rw -");
    QTest::newRow("hyphen too early") << QByteArray("36 - 98:0 - /b nfs");
    QTest::newRow("relative") << mountLine("b", "nfs");
    QTest::newRow("zeros") << QByteArray(100, '\0');
}

void LinuxFilesTest::brokenMountTable()
{
    QFETCH(QByteArray, text);
    QVERIFY(!MountTable::parse(text).hasRemote());
    // A good line beside it still counts, and what only looks like an escape stays.
    const MountTable table = MountTable::parse(text + '\n' + mountLine("/n\\9\\04", "nfs") + text);
    QVERIFY(table.isRemote("/n\\9\\04"));
}

void LinuxFilesTest::mountsBelow()
{
    const MountTable table = MountTable::parse(
        mountLine("/", "9p") + mountLine("/home", "nfs") + mountLine("/home/me/a", "nfs") +
        mountLine("/home/me/a/b", "ext4") + mountLine("/home/melanie", "nfs"));
    using Mounts = QHash<QByteArray, bool>;
    QCOMPARE(table.below("/home/me"), Mounts({{"/home/me/a", true}, {"/home/me/a/b", false}}));
    QCOMPARE(table.below("").size(), 4);
    QCOMPARE(table.below("/other"), Mounts());
}

void LinuxFilesTest::topmostMountCounts()
{
    const QByteArray automatic = mountLine("/home/me/a", "autofs");
    const QByteArray disk = mountLine("/home/me/a", "ext4");
    QVERIFY(!MountTable::parse(automatic + disk).isRemote("/home/me/a"));
    QVERIFY(!MountTable::parse(automatic + disk).hasRemote());
    QVERIFY(MountTable::parse(disk + automatic).isRemote("/home/me/a"));
}

void LinuxFilesTest::waysThroughRemoteMounts_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<bool>("isBehind");
    QTest::newRow("home that is on one") << QByteArray("/net/me") << false;
    QTest::newRow("in the home") << QByteArray("/net/me/dir/file") << false;
    QTest::newRow("mount") << QByteArray("/net/me/nas") << true;
    QTest::newRow("in the mount") << QByteArray("/net/me/nas/dir/file") << true;
    QTest::newRow("disk in the mount") << QByteArray("/net/me/nas/disk/file") << true;
    QTest::newRow("name that begins alike") << QByteArray("/net/me/nas2/file") << false;
    QTest::newRow("disk") << QByteArray("/net/me/disk") << false;
    QTest::newRow("in the disk") << QByteArray("/net/me/disk/file") << false;
    QTest::newRow("mount in the disk") << QByteArray("/net/me/disk/nas/file") << true;
}

void LinuxFilesTest::waysThroughRemoteMounts()
{
    QFETCH(QByteArray, path);
    const MountTable table = MountTable::parse(
        mountLine("/", "9p") + mountLine("/net", "nfs4") + mountLine("/net/me", "nfs4") +
        mountLine("/net/me/nas", "fuse.sshfs") + mountLine("/net/me/nas/disk", "ext4") +
        mountLine("/net/me/disk", "ext4") + mountLine("/net/me/disk/nas", "cifs"));
    QTEST(table.isBehindRemote(path, "/net/me"), "isBehind");
    QVERIFY(table.isBehindRemote(path, "/net"));
    QVERIFY(table.isBehindRemote(path, {}));
    QVERIFY(table.hasRemoteBelow("/net/me/disk"));
    QVERIFY(!table.hasRemoteBelow("/net/me/nas"));
}

/// What can't be known to answer isn't entered.
void LinuxFilesTest::noDescriptorForTheMounts()
{
    makeDirectory("dir");
    const auto reader = DirectoryReader::create(root());
    Listing listing;
    CurrentMounts mounts;
    const auto restore = qScopeGuard([] { s_areMountsBarred = false; });
    s_areMountsBarred = true;
    QCOMPARE(mounts.look(), CurrentMounts::News::Unknown);
    QCOMPARE(kindOf(path("dir"), root()), PathKind::Missing);
    QVERIFY(!listInto(*reader, root(), listing));
    s_areMountsBarred = false;
    QCOMPARE(mounts.look(), CurrentMounts::News::Changed);
    QVERIFY(listInto(*reader, root(), listing));
    QCOMPARE(listing.keys(), QStringList("dir"));
    // Once there is a descriptor, no other is needed.
    s_areMountsBarred = true;
    QCOMPARE(mounts.look(), CurrentMounts::News::None);
    mounts.expectNews();
    QCOMPARE(mounts.look(), CurrentMounts::News::Changed);
    QVERIFY(!mounts.table().below({}).isEmpty());
}

void LinuxFilesTest::linksIntoRemoteMounts_data()
{
    QTest::addColumn<QByteArray>("target");
    QTest::addColumn<bool>("isFile");
    QTest::newRow("the mount") << QByteArray("nas") << false;
    QTest::newRow("file in it") << QByteArray("nas/file") << false;
    QTest::newRow("nothing in it") << QByteArray("nas/nowhere") << false;
    QTest::newRow("back out of it") << QByteArray("nas/../file") << false;
    QTest::newRow("by way of a link") << QByteArray("to nas/file") << false;
    QTest::newRow("by way of two links") << QByteArray("to file in nas") << false;
    QTest::newRow("by way of the parent") << QByteArray("dir/../nas/file") << false;
    QTest::newRow("beside it") << QByteArray("file") << true;
    QTest::newRow("name that begins alike") << QByteArray("nas2") << true;
}

void LinuxFilesTest::linksIntoRemoteMounts()
{
    QFETCH(QByteArray, target);
    // A look at what is there would always see a file.
    makeDirectory("nas");
    makeDirectory("dir");
    makeFile("nas/file");
    makeFile("file");
    makeFile("nas2");
    makeLink("nas", "to nas");
    makeLink("to nas/file", "to file in nas");
    makeLink(target, "link");
    const Platform::FileDescriptor directory = Platform::openPath(bytes("."), O_PATH | O_DIRECTORY);
    const QByteArray here = Platform::canonicalPath(directory.get(), {});
    const MountTable mounts = MountTable::parse(mountLine(here + "/nas", "nfs4"));
    QTEST(Platform::linkLeadsToFile(directory.get(), here, "link", mounts), "isFile");
}

void LinuxFilesTest::homeOnTheNetwork()
{
    makeDirectory("home/dir");
    makeFile("home/file");
    makeLink(bytes("home/file"), "home/to file");
    makeLink(bytes("home/dir"), "home/to dir");
    const Platform::FileDescriptor home = Platform::openPath(bytes("home"), O_PATH | O_DIRECTORY);
    const QByteArray here = Platform::canonicalPath(home.get(), {});
    const MountTable mounts =
        MountTable::parse(mountLine(here.left(here.lastIndexOf('/')), "nfs4"));
    QVERIFY(mounts.hasRemote());
    QVERIFY(Platform::linkLeadsToFile(home.get(), here, "to file", mounts));
    QVERIFY(!Platform::linkLeadsToFile(home.get(), here, "to dir", mounts));
}

void LinuxFilesTest::pathsThatLeadAway_data()
{
    QTest::addColumn<QByteArray>("rel");
    QTest::addColumn<bool>("isRemote");
    QTest::newRow("file of the disk") << QByteArray("home/file") << false;
    QTest::newRow("name that begins alike") << QByteArray("nas2/file") << false;
    QTest::newRow("mount") << QByteArray("nas") << true;
    QTest::newRow("in the mount") << QByteArray("nas/dir/file") << true;
    QTest::newRow("back out of it") << QByteArray("nas/../home/file") << true;
    QTest::newRow("by way of the parent") << QByteArray("home/../nas/file") << true;
    QTest::newRow("by way of a link") << QByteArray("home/to nas/file") << true;
    QTest::newRow("by way of a link to a link") << QByteArray("home/to link/file") << true;
    QTest::newRow("link to the mount itself") << QByteArray("home/to nas") << true;
    QTest::newRow("link to what isn't there") << QByteArray("home/to nowhere") << false;
    QTest::newRow("link in a circle") << QByteArray("home/circle") << false;
    QTest::newRow("below a file") << QByteArray("home/file/nas") << false;
    QTest::newRow("home that is mounted") << QByteArray("far/home/file") << false;
    QTest::newRow("beside that home, in the same mount") << QByteArray("far/other/file") << false;
    QTest::newRow("mount in that home") << QByteArray("far/home/nas/file") << true;
}

void LinuxFilesTest::pathsThatLeadAway()
{
    QFETCH(QByteArray, rel);
    for (const char* directory : {"home", "nas/dir", "nas2", "far/home/nas", "far/other"})
        makeDirectory(directory);
    for (const char* file : {"home/file", "nas/dir/file", "far/home/file", "far/home/nas/file"})
        makeFile(file);
    const QByteArray here = QFile::encodeName(QDir(root()).canonicalPath());
    makeLink(here + "/nas", "home/to nas");
    makeLink("to nas", "home/to link");
    makeLink("nowhere", "home/to nowhere");
    makeLink("circle", "home/circle");
    const MountTable mounts =
        MountTable::parse(mountLine(here + "/nas", "nfs4") + mountLine(here + "/far", "nfs4") +
                          mountLine(here + "/far/home/nas", "cifs"));
    QTEST(Platform::pathLeadsToRemote(here + '/' + rel, here + "/far/home", mounts), "isRemote");
    QVERIFY(!Platform::pathLeadsToRemote(here + '/' + rel, here, MountTable()));
}

/// The system follows forty links, so no fewer may hide where they lead.
void LinuxFilesTest::chainOfLinksThatLeadsAway()
{
    makeDirectory("nas");
    const QByteArray here = QFile::encodeName(QDir(root()).canonicalPath());
    makeLink("nas", "1");
    for (int i = 2; i <= 41; ++i)
        makeLink(QByteArray::number(i - 1), QString::number(i));
    struct stat status = {};
    QCOMPARE(::stat((here + "/40").constData(), &status), 0);
    QCOMPARE(::stat((here + "/41").constData(), &status), -1);
    const MountTable mounts = MountTable::parse(mountLine(here + "/nas", "nfs4"));
    QVERIFY(Platform::pathLeadsToRemote(here + "/40", {}, mounts));
    QVERIFY(!Platform::pathLeadsToRemote(here + "/41", {}, mounts));
}

void LinuxFilesTest::deadMountIsNotTouched_data()
{
    QTest::addColumn<QString>("when");
    QTest::addColumn<QByteArray>("listing");
    QTest::addColumn<QByteArray>("kinds");
    const QByteArray mounted = "alive 11\ndead 10\ndead file 00\n";
    QTest::newRow("never, for comparison") << "never"
                                           << QByteArray("alive 11\ndead 11\ndead file 00\n"
                                                         "into 00\n")
                                           << QByteArray("DDFFFMMDDLLLLLL");
    if (canMount()) {
        QTest::newRow("there from the beginning")
            << "before" << mounted << QByteArray("DMMFMMMDMLRRRRR");
        QTest::newRow("mounted while the tree is watched")
            << "later" << mounted << QByteArray("DMMFMMMDMLRRRRR");
        // Nothing else tells that it is a file.
        QTest::newRow("on a file system that tells no types")
            << "before, without types" << QByteArray("alive 11\ndead 10\ndead file 10\n")
            << QByteArray("DMMDMMMDMLRRRRR");
    }
}

void LinuxFilesTest::deadMountIsNotTouched()
{
    QFETCH(QString, when);
    QFETCH(QByteArray, listing);
    QFETCH(QByteArray, kinds);
    makeDirectory("dead/below");
    makeDirectory("alive");
    makeFile("dead/below/file");
    makeFile("dead file");
    makeLink("dead/below/file", "into");
    makeLink("alive/../dead", "through");
    makeLink(".", "home");
    const FreshProcess::Outcome outcome =
        when == "never" ? FreshProcess::run("lookAtDeadMount", {root(), when})
                        : UserNamespace::run("lookAtDeadMount", {root(), when}, CLONE_NEWNS);
    QVERIFY(outcome.hasExited);
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.output, listing + kinds);
}

void LinuxFilesTest::mountedMeanwhile_data()
{
    QTest::addColumn<QString>("task");
    QTest::addColumn<QString>("what");
    QTest::addColumn<QByteArray>("output");
    QTest::newRow("not at all, for comparison") << "scanWhileMounting"
                                                << "nothing" << QByteArray("11");
    QTest::newRow("not before the watch either") << "mountBeforeTheWatch"
                                                 << "nothing" << QByteArray("0");
    if (canMount()) {
        QTest::newRow("while the tree is scanned") << "scanWhileMounting"
                                                   << "mount" << QByteArray("00");
        QTest::newRow("before the tree is watched") << "mountBeforeTheWatch"
                                                    << "mount" << QByteArray("1");
        QTest::newRow("and taken away again") << "unmountWatched"
                                              << "disk" << QByteArray("10");
        QTest::newRow("while events wait") << "watchWhileMounting"
                                           << "above" << QByteArray("1");
        QTest::newRow("where a moved file was") << "watchWhileMounting"
                                                << "name" << QByteArray("1");
        QTest::newRow("before a link to it comes in the way") << "watchWhileMounting"
                                                              << "link" << QByteArray("0");
    }
}

void LinuxFilesTest::mountedMeanwhile()
{
    QFETCH(QString, task);
    QFETCH(QString, what);
    makeDirectory("dead/inner");
    makeDirectory("alive");
    makeDirectory("other");
    makeFile("dead/inner/file");
    const FreshProcess::Outcome outcome =
        what == "nothing" ? FreshProcess::run(task, {root(), what})
                          : UserNamespace::run(task, {root(), what}, CLONE_NEWNS);
    QVERIFY(outcome.hasExited);
    QCOMPARE(outcome.exitCode, 0);
    QTEST(outcome.output, "output");
}

void LinuxFilesTest::iconsOfTheTheme_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<bool>("isDir");
    QTest::addColumn<QColor>("color"); // invalid: no icon
    QTest::newRow("folder") << "" << true << QColor(Qt::blue);
    QTest::newRow("of the type") << ".txt" << false << QColor(Qt::red);
    QTest::newRow("of its kind") << ".ogg" << false << QColor(Qt::green);
    QTest::newRow("none") << ".zip" << false << QColor();
    QTest::newRow("unreadable") << ".pdf" << false << QColor();
    QTest::newRow("unknown type") << ".nosuchtype" << false << QColor();
}

void LinuxFilesTest::iconsOfTheTheme()
{
    QFETCH(QString, suffix);
    QFETCH(bool, isDir);
    QFETCH(QColor, color);
    makeDirectory("test/32");
    QFile index(path("test/index.theme"));
    QVERIFY(index.open(QIODevice::WriteOnly));
    index.write("[Icon Theme]\nName=Test\nDirectories=32\n[32]\nSize=32\nType=Fixed\n");
    index.close();
    const auto paint = [&](const QString& name, Qt::GlobalColor fill) {
        QImage image(32, 32, QImage::Format_RGB32);
        image.fill(fill);
        QVERIFY(image.save(path("test/32/" + name + ".png")));
    };
    paint("folder", Qt::blue);
    paint("text-plain", Qt::red);
    paint("audio-x-generic", Qt::green);
    makeFile("test/32/application-pdf.png");
    QIcon::setThemeSearchPaths({root()});
    QIcon::setThemeName("test");
    const QIcon icon = Platform::fileTypeIcon(suffix, isDir);
    QCOMPARE(icon.isNull(), !color.isValid());
    if (color.isValid())
        QCOMPARE(icon.pixmap(32).toImage().pixelColor(16, 16), color);
}

int main(int argc, char** argv)
{
    return FreshProcess::main<LinuxFilesTest>(argc, argv,
                                              {{"canMountDead", canMountDead},
                                               {"lookAtDeadMount", lookAtDeadMount},
                                               {"scanWhileMounting", scanWhileMounting},
                                               {"watchWhileMounting", watchWhileMounting},
                                               {"mountBeforeTheWatch", mountBeforeTheWatch},
                                               {"unmountWatched", unmountWatched}});
}

#include "tst_linuxfiles.moc"
