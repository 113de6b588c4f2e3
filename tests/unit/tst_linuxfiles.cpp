// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FreshProcess.h"
#include "TestHome.h"
#include "WatchRun.h"
#include "platform/DirectoryReader.h"
#include "platform/FileTypeIcon.h"
#include "platform/linux/DirectoryAccess.h"
#include "platform/linux/LinkTarget.h"
#include "platform/linux/MountTable.h"

#include <QApplication>
#include <QImage>
#include <QMap>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <climits>
#include <cstdio>

#include <fcntl.h>
#include <sched.h>
#include <sys/fsuid.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using Platform::DirectoryItem;
using Platform::DirectoryReader;
using Platform::MountTable;
using Platform::PathKind;

/// What only the file systems of this system hold.
class LinuxFilesTest : public QObject
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
    void rootOfTheFileSystem();
    void pathsThatAreNone_data();
    void pathsThatAreNone();
    void mountTable_data();
    void mountTable();
    void brokenMountTable_data();
    void brokenMountTable();
    void mountsBelow();
    void topmostMountCounts();
    void linksIntoRemoteMounts_data();
    void linksIntoRemoteMounts();
    void homeOnTheNetwork();
    void deadMountIsNotTouched_data();
    void deadMountIsNotTouched();
    void iconsOfTheTheme_data();
    void iconsOfTheTheme();

private:
    QString path(const QString& rel) const { return m_root->filePath(rel); }
    QString root() const { return m_root->path(); }
    QByteArray bytes(const QString& rel) const { return QFile::encodeName(path(rel)); }
    void makeFile(const QString& rel) const
    {
        QFile file(path(rel));
        QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(rel));
    }
    void makeDirectory(const QString& rel) const { QVERIFY(QDir().mkpath(path(rel))); }
    void makeLink(const QByteArray& target, const QString& rel) const
    {
        QCOMPARE(::symlink(target.constData(), bytes(rel).constData()), 0);
    }

    std::unique_ptr<QTemporaryDir> m_root;
};

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

bool writeAll(const char* path, const char* text, size_t size)
{
    const int file = ::open(path, O_WRONLY);
    const bool isWritten = file >= 0 && ::write(file, text, size) == static_cast<ssize_t>(size);
    ::close(file);
    return isWritten;
}

/// Starts a task as the superuser of a namespace of its own, who may mount.
FreshProcess::Outcome runInNamespace(const QString& task, const QStringList& arguments)
{
    char users[64] = {};
    char groups[64] = {};
    std::snprintf(users, sizeof users, "0 %u 1", ::geteuid());
    std::snprintf(groups, sizeof groups, "0 %u 1", ::getegid());
    QProcess process;
    process.setChildProcessModifier([=] {
        if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0 ||
            !writeAll("/proc/self/setgroups", "deny", 4) ||
            !writeAll("/proc/self/uid_map", users, qstrlen(users)) ||
            !writeAll("/proc/self/gid_map", groups, qstrlen(groups)))
            ::_exit(EXIT_FAILURE);
    });
    FreshProcess::start(process, task, arguments);
    FreshProcess::Outcome outcome;
    outcome.hasExited =
        process.waitForFinished(30000) && process.exitStatus() == QProcess::NormalExit;
    outcome.exitCode = process.exitCode();
    outcome.output = process.readAllStandardOutput();
    return outcome;
}

/// Mounts a file system whose program never answers: whoever touches it waits for ever.
/// \returns the connection to it, not open if it can't be had.
Platform::FileDescriptor mountDead(const QString& directory)
{
    Platform::FileDescriptor device(::open("/dev/fuse", O_RDWR | O_CLOEXEC));
    const QByteArray options =
        "fd=" + QByteArray::number(device.get()) + ",rootmode=40000,user_id=0,group_id=0";
    const QByteArray target = QFile::encodeName(directory);
    if (device.isOpen() &&
        ::mount("dead", target.constData(), "fuse.dead", 0, options.constData()) == 0)
        return device;
    return Platform::FileDescriptor();
}

int canMountDead(const QStringList& arguments)
{
    return mountDead(arguments.at(0)).isOpen() ? EXIT_SUCCESS : EXIT_FAILURE;
}

void printListing(const QString& root)
{
    const Listing listing = listingOf(root);
    for (auto it = listing.cbegin(); it != listing.cend(); ++it)
        std::printf("%s %d%d\n", qPrintable(it.key()), it->isDir, it->enter);
}

/// Reads and watches a tree with a dead mount in it, which is there before or comes later.
int lookAtDeadMount(const QStringList& arguments)
{
    const QString root = arguments.at(0);
    const QString dead = root + "/dead";
    Platform::FileDescriptor connection;
    const bool comesLater = arguments.at(1) == "later";
    if (!comesLater)
        connection = mountDead(dead);
    WatchRun watch(root);
    if (!watch.isWatched("alive"))
        return 2;
    if (comesLater) {
        watch.forget();
        connection = mountDead(dead);
        // Nothing tells of what is in a mount, so it is all to be read anew.
        if (!QTest::qWaitFor([&] { return watch.overflows() == 1; }, 10000))
            return 3;
    }
    if (!connection.isOpen() || !QDir().mkpath(root + "/alive/new") ||
        !watch.isWatched("alive/new"))
        return 4;
    printListing(root);
    std::printf("%d %d", Platform::kindOfPath(root + "/into") == PathKind::Missing,
                Platform::kindOfPath(root + "/through") == PathKind::Missing);
    return 0;
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
    m_root = std::make_unique<QTemporaryDir>(TestHome::path() + "/tree-XXXXXX");
    QVERIFY(m_root->isValid());
}

void LinuxFilesTest::cleanup()
{
    // Goes deeper than a path is long.
    QCOMPARE(QProcess::execute("rm", {"-rf", "--", m_root->path()}), 0);
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
    QCOMPARE(Platform::kindOfPath(path("tree/link")),
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
        QCOMPARE(Platform::kindOfPath(path(name)), PathKind::File);
    }
    QCOMPARE(Platform::kindOfPath("/dev/null"), PathKind::File);
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
    QCOMPARE(Platform::kindOfPath(path(name)), PathKind::Directory);
    QCOMPARE(Platform::kindOfPath(path(name) + '/' + name), PathKind::File);
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
    QCOMPARE(Platform::kindOfPath(end), PathKind::Directory);
    QCOMPARE(Platform::kindOfPath(end + "/file"), PathKind::File);
    QCOMPARE(Platform::kindOfPath(end + "/to file"), PathKind::File);
    QCOMPARE(Platform::kindOfPath(end + "/to dir"), PathKind::Missing);
    QCOMPARE(Platform::kindOfPath(end + "/other"), PathKind::Missing);
    QCOMPARE(Platform::kindOfPath('/' + QString(2 * PATH_MAX, 'x') + "/file"), PathKind::Missing);
    // With more slashes than it needs, at every place where it may be cut.
    const QString slashed = QString(end).replace('/', "///") + "//file//";
    for (int more = 0; more < names.constFirst().size() + 3; ++more)
        QCOMPARE(Platform::kindOfPath(QString(more, '/') + slashed), PathKind::File);
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
    const PathKind belowClosed = Platform::kindOfPath(path("closed/inner"));
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

void LinuxFilesTest::rootOfTheFileSystem()
{
    const Listing listing = listingOf("/");
    QVERIFY(listing["proc"].isDir);
    QVERIFY(listing["dev"].enter);
    Listing dev;
    QVERIFY(listInto(*DirectoryReader::create("/"), "/dev", dev));
    QVERIFY(dev.contains("null"));
    QCOMPARE(Platform::kindOfPath("/"), PathKind::Directory);
    QCOMPARE(Platform::kindOfPath("///"), PathKind::Directory);
    QCOMPARE(Platform::kindOfPath("/proc"), PathKind::Directory);
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
    QCOMPARE(Platform::kindOfPath(path("tree/") + QChar(0xD800)), PathKind::Missing);
}

void LinuxFilesTest::mountTable_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<bool>("isRemote");
    for (const char* type : {"nfs", "nfs4", "cifs", "smb3", "smbfs", "9p", "afs", "ceph", "ncpfs",
                             "coda", "fuse", "fuse.sshfs", "fuse.gvfsd-fuse", "autofs"})
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

void LinuxFilesTest::deadMountIsNotTouched_data()
{
    QTest::addColumn<QString>("when");
    // Not every system lets a user mount something.
    QTemporaryDir mountPoint;
    if (runInNamespace("canMountDead", {mountPoint.path()}).exitCode == EXIT_SUCCESS) {
        QTest::newRow("there from the beginning") << "before";
        QTest::newRow("mounted while the tree is watched") << "later";
    }
}

void LinuxFilesTest::deadMountIsNotTouched()
{
    QFETCH(QString, when);
    makeDirectory("dead");
    makeDirectory("alive");
    makeLink("dead/file", "into");
    makeLink("alive/../dead", "through");
    const FreshProcess::Outcome outcome = runInNamespace("lookAtDeadMount", {root(), when});
    QVERIFY(outcome.hasExited);
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.output, "alive 11\ndead 10\n1 1");
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
    if (FreshProcess::isTask(argc, argv)) {
        return FreshProcess::runTask(
            argc, argv, {{"canMountDead", canMountDead}, {"lookAtDeadMount", lookAtDeadMount}});
    }
    LinuxFilesTest::initMain();
    const QApplication application(argc, argv);
    LinuxFilesTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_linuxfiles.moc"
