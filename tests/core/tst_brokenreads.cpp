// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Files.h"
#include "FolderFilter.h"
#include "FreshProcess.h"
#include "Settings.h"
#include "StorageManager.h"
#include "TestHome.h"
#include "UsageStats.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <string_view>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

/// A disk or a server that fails in the middle of a file: what was in it is still there for whoever
/// can rescue it, however often the program saves afterwards.
class BrokenReadsTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void stateOfTheRead_data();
    void stateOfTheRead();
    void fileIsMovedAside_data();
    void fileIsMovedAside();
    void settingsThatDoNotOpenAreKept_data();
    void settingsThatDoNotOpenAreKept();
};

namespace
{

/// Where reading breaks off.
struct BadSpot
{
    QByteArray path;  ///< empty for none
    off_t offset = 0; ///< below 0: the file can't even be opened
    int error = EIO;
};
BadSpot s_badSpot;

bool isBad(int descriptor)
{
    std::array<char, 64> link{};
    std::array<char, PATH_MAX> target{};
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", descriptor);
    const ssize_t size = ::readlink(link.data(), target.data(), target.size());
    return size > 0 && std::string_view(target.data(), static_cast<size_t>(size)) ==
                           std::string_view(s_badSpot.path.constData());
}

} // namespace

/// Stands in for the system's own, also in Qt.
extern "C" int open64(const char* path, int flags, ...)
{
    if (s_badSpot.offset < 0 && s_badSpot.path == path) {
        errno = s_badSpot.error;
        return -1;
    }
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

extern "C" ssize_t read(int descriptor, void* buffer, size_t size)
{
    if (!s_badSpot.path.isEmpty() && isBad(descriptor)) {
        const off_t left = s_badSpot.offset - ::lseek(descriptor, 0, SEEK_CUR);
        if (left <= 0) {
            errno = s_badSpot.error;
            return -1;
        }
        size = std::min(size, static_cast<size_t>(left));
    }
    return ::syscall(SYS_read, descriptor, buffer, size);
}

namespace
{

// What the processes do: read their file, then save what they have.

void changeDocument(const QString& path)
{
    LauncherData data = StorageManager::loadData(path);
    data.categories.append("new");
    StorageManager::saveData(path, data);
}

void changeUsage(const QString&)
{
    UsageStats::record("new");
}

void changeFolders(const QString&)
{
    FolderFilter::setFolders(FolderFilter::folders() + QStringList("/new"));
}

void changeSetting(const QString&)
{
    // Asked first, as at the start of the program: what came of that must not be forgotten.
    Settings::value("Some/old");
    Settings::setValue("Some/new", 1);
}

int changeSettingOnceItOpens(const QStringList& arguments)
{
    s_badSpot = {QFile::encodeName(arguments.at(0)), -1, arguments.at(1).toInt()};
    const bool isHidden = !Settings::value("Some/old").isValid();
    Settings::setValue("Some/early", 1);
    s_badSpot = {};
    Settings::setValue("Some/new", 1);
    return isHidden ? EXIT_SUCCESS : EXIT_FAILURE;
}

struct Case
{
    const char* file;
    const char* content;
    void (*change)(const QString&);
};

constexpr std::array kCases{
    Case{"data.json", R"({"categories": ["old"], "sectionElements": {}})", changeDocument},
    Case{"usage.json", R"({"old":{"c":3,"t":1}})", changeUsage},
    Case{"folderfilter.json", R"(["/old"])", changeFolders},
    Case{"settings.ini", "[Some]\nold=1\n", changeSetting}};

int change(const QStringList& arguments)
{
    const QString path = arguments.at(0);
    s_badSpot = {QFile::encodeName(path), arguments.at(1).toInt(), arguments.at(2).toInt()};
    for (const Case& each : kCases) {
        if (QFileInfo(path).fileName() == each.file)
            each.change(path);
    }
    return EXIT_SUCCESS;
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(not readable)");
}

constexpr int kNever = 1000000; ///< beyond the end of any file here

} // namespace

void BrokenReadsTest::init()
{
    s_badSpot = {};
    QVERIFY(QDir(TestHome::dataDir()).removeRecursively());
}

void BrokenReadsTest::stateOfTheRead_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("offset");
    QTest::addColumn<bool>("isBroken");
    QTest::newRow("never") << 100000 << kNever << false;
    QTest::newRow("at once") << 100000 << 0 << true;
    QTest::newRow("soon") << 100000 << 10 << true;
    QTest::newRow("between two blocks") << 100000 << 4096 << true;
    QTest::newRow("at the last byte") << 100000 << 99999 << true;
    // It may be all there, but who knows.
    QTest::newRow("at the end") << 100000 << 100000 << true;
    QTest::newRow("empty file") << 0 << 0 << true;
}

void BrokenReadsTest::stateOfTheRead()
{
    QFETCH(int, size);
    QFETCH(int, offset);
    const QByteArray content(size, 'x');
    const QString path = TestHome::writeDataFile("some file", content);
    s_badSpot = {QFile::encodeName(path), offset, EIO};
    const FileContent result = readFile(path, kNever);
    QCOMPARE(result.state == FileContent::State::Broken, result.state != FileContent::State::Whole);
    QTEST(result.state == FileContent::State::Broken, "isBroken");
    QCOMPARE(result.bytes, offset == kNever ? content : QByteArray());
}

void BrokenReadsTest::fileIsMovedAside_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("error");
    QTest::addColumn<bool>("isMoved");
    for (int i = 0; i < int(kCases.size()); ++i) {
        const int size = static_cast<int>(std::string_view(kCases.at(i).content).size());
        const auto row = [i](const char* name, int offset, int error, bool isMoved) {
            QTest::addRow("%s, %s", kCases.at(i).file, name) << i << offset << error << isMoved;
        };
        row("healthy, for comparison", kNever, EIO, false);
        row("at once", 0, EIO, true);
        row("in the middle", size / 2, EIO, true);
        row("stale handle", size / 2, ESTALE, true);
        row("before the last byte", size - 1, EIO, true);
    }
}

void BrokenReadsTest::fileIsMovedAside()
{
    QFETCH(int, index);
    QFETCH(int, offset);
    QFETCH(int, error);
    QFETCH(bool, isMoved);
    const Case& subject = kCases.at(index);
    const QString path = TestHome::writeDataFile(subject.file, subject.content);
    TestHome::writeDataFile(QString(subject.file) + ".bak", "older");
    const FreshProcess::Outcome outcome =
        FreshProcess::run("change", {path, QString::number(offset), QString::number(error)});
    QVERIFY(outcome.hasExited);
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(contentOf(path + ".bak"), isMoved ? QByteArray(subject.content) : "older");
    const QByteArray saved = contentOf(path);
    QVERIFY2(saved.contains("new"), saved.constData());
    QCOMPARE(saved.contains("old"), !isMoved);
}

void BrokenReadsTest::settingsThatDoNotOpenAreKept_data()
{
    QTest::addColumn<int>("error");
    QTest::newRow("broken disk") << EIO;
    QTest::newRow("stale handle") << ESTALE;
    QTest::newRow("no rights") << EACCES;
}

void BrokenReadsTest::settingsThatDoNotOpenAreKept()
{
    QFETCH(int, error);
    const QString path = TestHome::writeDataFile("settings.ini", "[Some]\nold=1\n");
    const FreshProcess::Outcome outcome =
        FreshProcess::run("changeSettingOnceItOpens", {path, QString::number(error)});
    QVERIFY(outcome.hasExited);
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(contentOf(path), QByteArray("[Some]\nnew=1\nold=1\n"));
    QVERIFY(!QFile::exists(path + ".bak"));
}

int main(int argc, char** argv)
{
    if (FreshProcess::isTask(argc, argv))
        return FreshProcess::runTask(
            argc, argv,
            {{"change", change}, {"changeSettingOnceItOpens", changeSettingOnceItOpens}});
    BrokenReadsTest::initMain();
    const QCoreApplication application(argc, argv);
    BrokenReadsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_brokenreads.moc"
