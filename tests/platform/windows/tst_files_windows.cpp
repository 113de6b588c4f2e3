// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "DirectoryReader.h"
#include "ExtendedPath.h"
#include "FileTypeIcon.h"
#include "FoundItem.h"
#include "NotifyRecords.h"
#include "PathLocality.h"
#include "SystemResources.h"
#include "TestHome.h"
#include "TreeWatcher.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <atomic>
#include <cstring>
#include <cwchar>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include <windows.h>

using Platform::DirectoryItem;
using Platform::PathKind;
using Platform::TreeChange;

namespace
{

/// The system's own function, which a spy stands in front of.
template <typename Function>
Function systemFunction(const char* name)
{
    const FARPROC address = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), name);
    return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(address));
}

/// What a read of changes is said to have come to.
enum class Result { Real, Nothing, EnumDir, OtherError };

/// How the program asked the system, and what it is told instead of the truth.
struct Spies
{
    std::atomic<DWORD> watchBytes = 0;
    std::atomic<BOOL> watchesSubtree = FALSE;
    std::atomic<DWORD> watchFilter = 0;
    std::atomic<Result> nextResult = Result::Real; ///< of one read; that behind it is real again

    FINDEX_INFO_LEVELS findLevel = FindExInfoStandard;
    DWORD findFlags = 0;
    DWORD linkTag = 0; ///< of what is called "link"; 0: it is what it is

    static Spies& instance()
    {
        static Spies spies;
        return spies;
    }
};

BOOL WINAPI spiedRead(HANDLE directory, LPVOID buffer, DWORD bytes, BOOL subtree, DWORD filter,
                      LPDWORD returned, LPOVERLAPPED overlapped,
                      LPOVERLAPPED_COMPLETION_ROUTINE routine)
{
    static const auto real =
        systemFunction<decltype(&ReadDirectoryChangesW)>("ReadDirectoryChangesW");
    Spies::instance().watchBytes = bytes;
    Spies::instance().watchesSubtree = subtree;
    Spies::instance().watchFilter = filter;
    return real(directory, buffer, bytes, subtree, filter, returned, overlapped, routine);
}

BOOL WINAPI spiedResult(HANDLE file, LPOVERLAPPED overlapped, LPDWORD bytes, BOOL wait)
{
    static const auto real = systemFunction<decltype(&GetOverlappedResult)>("GetOverlappedResult");
    const BOOL isRead = real(file, overlapped, bytes, wait);
    if (wait) // for the end of a read that was cancelled
        return isRead;
    switch (Spies::instance().nextResult.exchange(Result::Real)) {
    case Result::Real:
        return isRead;
    case Result::Nothing:
        *bytes = 0;
        return TRUE;
    case Result::EnumDir:
        SetLastError(ERROR_NOTIFY_ENUM_DIR);
        return FALSE;
    case Result::OtherError:
        SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
    }
    return isRead;
}

void disguise(WIN32_FIND_DATAW* found)
{
    if (Spies::instance().linkTag != 0 && std::wcscmp(found->cFileName, L"link") == 0) {
        found->dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
        found->dwReserved0 = Spies::instance().linkTag;
    }
}

HANDLE WINAPI spiedFindFirst(LPCWSTR pattern, FINDEX_INFO_LEVELS level, LPVOID found,
                             FINDEX_SEARCH_OPS operation, LPVOID filter, DWORD flags)
{
    static const auto real = systemFunction<decltype(&FindFirstFileExW)>("FindFirstFileExW");
    Spies::instance().findLevel = level;
    Spies::instance().findFlags = flags;
    const HANDLE find = real(pattern, level, found, operation, filter, flags);
    if (find != INVALID_HANDLE_VALUE)
        disguise(static_cast<WIN32_FIND_DATAW*>(found));
    return find;
}

BOOL WINAPI spiedFindNext(HANDLE find, LPWIN32_FIND_DATAW found)
{
    static const auto real = systemFunction<decltype(&FindNextFileW)>("FindNextFileW");
    const BOOL isFound = real(find, found);
    if (isFound)
        disguise(found);
    return isFound;
}

} // namespace

// Each call of a function of the system goes through a pointer of such a name. The linker looks for
// them in the system's library only if there are no others.
extern "C" {
extern decltype(&ReadDirectoryChangesW) importedRead asm("__imp_ReadDirectoryChangesW");
extern decltype(&GetOverlappedResult) importedResult asm("__imp_GetOverlappedResult");
extern decltype(&FindFirstFileExW) importedFindFirst asm("__imp_FindFirstFileExW");
extern decltype(&FindNextFileW) importedFindNext asm("__imp_FindNextFileW");
}
decltype(&ReadDirectoryChangesW) importedRead = &spiedRead;
decltype(&GetOverlappedResult) importedResult = &spiedResult;
decltype(&FindFirstFileExW) importedFindFirst = &spiedFindFirst;
decltype(&FindNextFileW) importedFindNext = &spiedFindNext;

namespace
{

constexpr int kPatienceMs = 30000;

LPCWSTR wide(const QString& text)
{
    return reinterpret_cast<LPCWSTR>(text.utf16());
}

void writeFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write("content") < 0)
        qFatal("cannot write %s", qPrintable(path));
}

void setAttributes(const QString& path, DWORD attributes)
{
    if (!SetFileAttributesW(wide(path), attributes))
        qFatal("cannot change %s", qPrintable(path));
}

/// Makes a file under a name that the system's usual way of reading paths would change.
bool writeLiterally(const QString& path)
{
    const HANDLE file = CreateFileW(wide("\\\\?\\" + path), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    return file != INVALID_HANDLE_VALUE && CloseHandle(file);
}

bool makeDirectoryLiterally(const QString& path)
{
    return CreateDirectoryW(wide("\\\\?\\" + path), nullptr) != 0;
}

/// Its name, with a separator behind those of directories.
QString shown(const DirectoryItem& item)
{
    return item.isDir ? item.name + '\\' : item.name;
}

struct Listing
{
    bool isRead = false;
    QStringList names; ///< sorted
};

Listing list(const QString& directory)
{
    Listing listing;
    const auto reader = Platform::DirectoryReader::create(directory);
    listing.isRead = reader->list(
        directory, [&listing](DirectoryItem&& item) { listing.names.append(shown(item)); });
    listing.names.sort();
    return listing;
}

/// A record as the system writes it: the header, then the name.
QByteArray record(quint32 action, const QString& name, quint32 next, quint32 nameBytes)
{
    QByteArray bytes;
    for (const quint32 number : {next, action, nameBytes})
        bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
    return bytes.append(reinterpret_cast<const char*>(name.utf16()), name.size() * 2);
}

QByteArray lastRecord(quint32 action, const QString& name)
{
    return record(action, name, 0, static_cast<quint32>(name.size()) * 2);
}

/// A record with another one behind it, as far away as the system puts it.
QByteArray recordBefore(quint32 action, const QString& name, const QByteArray& following)
{
    const auto nameBytes = static_cast<quint32>(name.size()) * 2;
    const quint32 next = (12 + nameBytes + 3) / 4 * 4;
    return record(action, name, next, nameBytes).leftJustified(next, '\0') + following;
}

/// The number of its action and its path.
QString shown(const TreeChange& change)
{
    return QString::number(change.action) + ' ' + change.rel;
}

QStringList shown(const QVector<TreeChange>& changes)
{
    QStringList texts;
    for (const TreeChange& change : changes)
        texts.append(shown(change));
    return texts;
}

QImage imageOf(const QIcon& icon)
{
    return icon.pixmap(icon.availableSizes().value(0)).toImage();
}

/// A watch on a thread of its own, which ends with it.
class Watch : public QObject
{
    Q_OBJECT

public:
    explicit Watch(const QString& root)
        : m_root(root), m_watcher(Platform::TreeWatcher::create(root))
    {
        Platform::TreeWatcher::Handlers handlers;
        handlers.changes = [this](QVector<TreeChange>&& batch) {
            if (m_onBatch)
                m_onBatch();
            QMetaObject::invokeMethod(
                this, [this, batch] { m_seen += shown(batch); }, Qt::QueuedConnection);
        };
        handlers.overflow = [this] {
            QMetaObject::invokeMethod(
                this, [this] { ++m_overflows; }, Qt::QueuedConnection);
        };
        m_thread.reset(QThread::create([this, handlers] { m_watcher->run(handlers); }));
    }
    ~Watch() override { end(); }

    /// What the watching thread does with each batch before it goes on.
    void onBatch(const std::function<void()>& action) { m_onBatch = action; }

    void start() { m_thread->start(); }
    void stop() { m_watcher->stop(); }
    bool waitForEnd() { return m_thread->wait(kPatienceMs); }
    bool isRunning() const { return m_thread->isRunning(); }
    bool end()
    {
        stop();
        return waitForEnd();
    }

    /// Waits until the system reports what happens: what happened before is nobody's business.
    void startAndWait()
    {
        start();
        static int number = 0; // no name twice, or nothing would come into being
        QTRY_VERIFY_WITH_TIMEOUT(
            (writeFile(m_root + "\\probe" + QString::number(number++)), !m_seen.isEmpty()),
            kPatienceMs);
    }

    bool hasSeen(const QString& change) const { return m_seen.contains(change); }
    QStringList seen() const { return m_seen; }
    int overflows() const { return m_overflows; }

private:
    QString m_root;
    std::unique_ptr<Platform::TreeWatcher> m_watcher;
    std::unique_ptr<QThread> m_thread;
    std::function<void()> m_onBatch;
    QStringList m_seen;
    int m_overflows = 0;
};

} // namespace

/// Directories, changes in them, and icons of file types, as Windows tells of them.
class FilesTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup();

    void namesOfTheSystem();
    void extendedPaths_data();
    void extendedPaths();
    void pathsThatLeadAway_data();
    void pathsThatLeadAway();

    void directoryIsListed();
    void listingIsOfOneLevel();
    void emptyDirectory();
    void unreadableDirectory_data();
    void unreadableDirectory();
    void rootOfADrive();
    void longPaths();
    void oddNames_data();
    void oddNames();
    void manyItems();
    void foundItems_data();
    void foundItems();
    void tagsOfAListing_data();
    void tagsOfAListing();
    void listingIsFast();
    void listingLeaksNothing();

    void kinds_data();
    void kinds();

    void recordsAreRead_data();
    void recordsAreRead();
    void recordsOfAnyLength();

    void changesAreReported();
    void renamesAreReported();
    void contentIsNotReported();
    void longRootIsWatched();
    void burstIsReportedOrLost();
    void watchIsOneForTheTree();
    void lostChanges_data();
    void lostChanges();
    void failedReadEndsTheWatch();
    void watchEndsWhenStopped();
    void stoppedBeforeItRuns();
    void stoppedUnderSteadyChange();
    void watchOfNothingEnds_data();
    void watchOfNothingEnds();
    void watchesLeakNothing();

    void typesHaveIcons_data();
    void typesHaveIcons();
    void folderHasAnother();
    void suffixDecidesAlone();
    void wildSuffixes_data();
    void wildSuffixes();
    void typeIconsLeakNothing();

private:
    QString path(const QString& name) const { return m_root + '\\' + name; }

    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_root; ///< with native separators, as all paths here
};

void FilesTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    m_root = QDir::toNativeSeparators(m_dir->path());
}

void FilesTest::cleanup()
{
    Spies::instance().nextResult = Result::Real;
    Spies::instance().linkTag = 0;
    m_dir.reset();
}

void FilesTest::namesOfTheSystem()
{
    QCOMPARE(Platform::programDataFolderName(), QString("AppData"));
    QCOMPARE(Platform::pathCaseSensitivity(), Qt::CaseInsensitive);
}

void FilesTest::extendedPaths_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");
    QTest::newRow("drive") << "C:\\a\\b"
                           << "\\\\?\\C:\\a\\b";
    QTest::newRow("pattern") << "C:\\a\\*"
                             << "\\\\?\\C:\\a\\*";
    QTest::newRow("root of a drive") << "C:\\"
                                     << "\\\\?\\C:\\";
    QTest::newRow("doubled separator") << "C:\\\\a\\\\b"
                                       << "\\\\?\\C:\\a\\b";
    QTest::newRow("separator at the end") << "C:\\a\\"
                                          << "\\\\?\\C:\\a";
    QTest::newRow("separators of other systems") << "C:/a/b"
                                                 << "\\\\?\\C:\\a\\b";
    QTest::newRow("upwards") << "C:\\a\\..\\b"
                             << "\\\\?\\C:\\b";
    QTest::newRow("share") << "\\\\server\\share\\a"
                           << "\\\\?\\UNC\\server\\share\\a";
    QTest::newRow("dots and blanks that are names") << "C:\\a .\\b "
                                                    << "\\\\?\\C:\\a .\\b ";
    QTest::newRow("relative") << "a\\b"
                              << "a\\b";
    QTest::newRow("relative to a drive") << "C:a"
                                         << "C:a";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("extended already") << "\\\\?\\C:\\a"
                                      << "\\\\?\\C:\\a";
}

void FilesTest::extendedPaths()
{
    QFETCH(QString, path);
    QTEST(Platform::extendedPath(path), "expected");
}

void FilesTest::pathsThatLeadAway_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("isLocal");
    const QString drive = QDir::toNativeSeparators(QDir::rootPath());
    QTest::newRow("drive") << drive << true;
    QTest::newRow("nothing there") << drive + R"(nothing\there)" << true;
    QTest::newRow("slashes") << QDir::rootPath() + "nothing/there" << true;
    QTest::newRow("drive as it stands") << R"(\\?\)" + drive + "picture.png" << true;
    QTest::newRow("from the root of the drive") << R"(\nothing\there)" << true;
    QTest::newRow("share") << R"(\\server\share\picture.png)" << false;
    QTest::newRow("share with slashes") << "//server/share/picture.png" << false;
    QTest::newRow("share with both") << R"(\/server\share/picture.png)" << false;
    QTest::newRow("share as it stands") << R"(\\?\UNC\server\share\picture.png)" << false;
    QTest::newRow("share by its object") << R"(\??\UNC\server\share\picture.png)" << false;
    QTest::newRow("device") << R"(\\.\C:\picture.png)" << false;
    QTest::newRow("drive that there is not") << R"(\\?\1:\picture.png)" << false;
}

void FilesTest::pathsThatLeadAway()
{
    QFETCH(QString, path);
    QTEST(Platform::isLocalPath(path), "isLocal");
}

void FilesTest::directoryIsListed()
{
    QVERIFY(QDir(m_root).mkdir("Folder"));
    QVERIFY(QDir(m_root).mkdir(".hidden folder"));
    for (const char* name :
         {"plain.txt", "no suffix", ".gitignore", "hidden", "system", "read only"})
        writeFile(path(name));
    writeFile(path(QStringLiteral("Ünïcode 日本.txt")));
    setAttributes(path("hidden"), FILE_ATTRIBUTE_HIDDEN);
    setAttributes(path("system"), FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_HIDDEN);
    setAttributes(path("read only"), FILE_ATTRIBUTE_READONLY);
    setAttributes(path(".hidden folder"), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);

    const Listing listing = list(m_root);
    QVERIFY(listing.isRead);
    QCOMPARE(listing.names,
             QStringList({".gitignore", ".hidden folder\\", "Folder\\", "hidden", "no suffix",
                          "plain.txt", "read only", "system", QStringLiteral("Ünïcode 日本.txt")}));
    setAttributes(path("read only"), FILE_ATTRIBUTE_NORMAL);
}

void FilesTest::listingIsOfOneLevel()
{
    QVERIFY(QDir(m_root).mkpath("a/b/c"));
    const auto reader = Platform::DirectoryReader::create(m_root);
    QVector<DirectoryItem> found;
    const auto visit = [&found](DirectoryItem&& item) { found.append(std::move(item)); };
    // One reader serves the whole walk.
    QVERIFY(reader->list(m_root, visit));
    QVERIFY(reader->list(path("a"), visit));
    QCOMPARE(found.size(), 2);
    QCOMPARE(found.at(0).name, QString("a"));
    QVERIFY(found.at(0).isDir && found.at(0).enter);
    QCOMPARE(found.at(1).name, QString("b"));
}

void FilesTest::emptyDirectory()
{
    const Listing listing = list(m_root);
    QVERIFY(listing.isRead);
    QCOMPARE(listing.names, QStringList());
}

void FilesTest::unreadableDirectory_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << "gone";
    QTest::newRow("below something missing") << "gone\\a";
    QTest::newRow("file") << "file";
    QTest::newRow("below a file") << "file\\a";
    QTest::newRow("pattern that would fit") << "f*";
}

void FilesTest::unreadableDirectory()
{
    QFETCH(QString, name);
    writeFile(path("file"));
    const Listing listing = list(path(name));
    QVERIFY(!listing.isRead);
    QCOMPARE(listing.names, QStringList());
}

void FilesTest::rootOfADrive()
{
    const Listing listing = list("C:\\");
    QVERIFY(listing.isRead);
    QVERIFY(listing.names.contains("users\\", Qt::CaseInsensitive));
}

void FilesTest::longPaths()
{
    QString directory = m_root;
    for (int depth = 0; depth < 8; ++depth) {
        directory += '\\' + QString(100, QChar('a' + depth));
        QVERIFY(makeDirectoryLiterally(directory));
    }
    QVERIFY(directory.size() > 3 * MAX_PATH);
    QVERIFY(writeLiterally(directory + "\\file.txt"));
    const Listing listing = list(directory);
    QVERIFY(listing.isRead);
    QCOMPARE(listing.names, QStringList("file.txt"));
    QCOMPARE(Platform::DirectoryReader::create(m_root)->kindOf(directory + "\\file.txt"),
             PathKind::File);
    QCOMPARE(Platform::DirectoryReader::create(m_root)->kindOf(directory), PathKind::Directory);
    QCOMPARE(Platform::DirectoryReader::create(m_root)->kindOf(directory + "\\gone.txt"),
             PathKind::Missing);
}

void FilesTest::oddNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("device") << "aux";
    QTest::newRow("device with a suffix") << "nul.txt";
    QTest::newRow("dot at the end") << "name.";
    QTest::newRow("blank at the end") << "name ";
    QTest::newRow("three dots") << "...";
    QTest::newRow("blank at the beginning") << " name";
    QTest::newRow("brackets and percent") << "[a] %b% {c} 'd'";
}

void FilesTest::oddNames()
{
    QFETCH(QString, name);
    QVERIFY(makeDirectoryLiterally(path(name)));
    QVERIFY(writeLiterally(path(name) + "\\inside"));
    QCOMPARE(list(m_root).names, QStringList(name + '\\'));
    QCOMPARE(list(path(name)).names, QStringList("inside"));
    QCOMPARE(Platform::DirectoryReader::create(m_root)->kindOf(path(name)), PathKind::Directory);
    QCOMPARE(Platform::DirectoryReader::create(m_root)->kindOf(path(name) + "\\inside"),
             PathKind::File);
    QVERIFY(DeleteFileW(wide("\\\\?\\" + path(name) + "\\inside")));
    QVERIFY(RemoveDirectoryW(wide("\\\\?\\" + path(name))));
}

void FilesTest::manyItems()
{
    // More than the system hands over at once.
    QStringList expected;
    for (int i = 0; i < 2500; ++i) {
        const QString name = QString("file with a name of some length, number %1").arg(i);
        writeFile(path(name));
        expected.append(name);
    }
    expected.sort();
    QCOMPARE(list(m_root).names, expected);
}

void FilesTest::foundItems_data()
{
    constexpr DWORD kCloudTag = 0x9000001A;
    constexpr DWORD kLink = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    QTest::addColumn<QString>("name");
    QTest::addColumn<DWORD>("attributes");
    QTest::addColumn<DWORD>("tag");
    QTest::addColumn<QString>("expected"); // empty: not visited
    QTest::newRow("file") << "a" << DWORD(FILE_ATTRIBUTE_NORMAL) << DWORD(0) << "a";
    QTest::newRow("folder") << "a" << DWORD(FILE_ATTRIBUTE_DIRECTORY) << DWORD(0) << "a\\";
    QTest::newRow("hidden folder")
        << "a" << DWORD(FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN) << DWORD(0) << "a\\";
    QTest::newRow("itself") << "." << DWORD(FILE_ATTRIBUTE_DIRECTORY) << DWORD(0) << "";
    QTest::newRow("parent") << ".." << DWORD(FILE_ATTRIBUTE_DIRECTORY) << DWORD(0) << "";
    QTest::newRow("three dots") << "..." << DWORD(FILE_ATTRIBUTE_DIRECTORY) << DWORD(0) << "...\\";
    QTest::newRow("junction") << "a" << kLink << DWORD(0xA0000003) << "";
    QTest::newRow("link to a folder") << "a" << kLink << DWORD(0xA000000C) << "";
    QTest::newRow("folder of a cloud drive") << "a" << kLink << kCloudTag << "a\\";
    QTest::newRow("reparse point of no kind") << "a" << kLink << DWORD(0) << "a\\";
    QTest::newRow("link to a file")
        << "a" << DWORD(FILE_ATTRIBUTE_REPARSE_POINT) << DWORD(0xA000000C) << "a";
    // The field means something else then.
    QTest::newRow("tag without a reparse point")
        << "a" << DWORD(FILE_ATTRIBUTE_DIRECTORY) << DWORD(0xA000000C) << "a\\";
}

void FilesTest::foundItems()
{
    QFETCH(QString, name);
    QFETCH(DWORD, attributes);
    QFETCH(DWORD, tag);
    QFETCH(QString, expected);
    WIN32_FIND_DATAW found{};
    found.dwFileAttributes = attributes;
    found.dwReserved0 = tag;
    std::memcpy(found.cFileName, name.utf16(), static_cast<std::size_t>(name.size()) * 2);
    const std::optional<DirectoryItem> item = Platform::itemOf(found);
    QCOMPARE(item.has_value(), !expected.isEmpty());
    if (item) {
        QCOMPARE(shown(*item), expected);
        QCOMPARE(item->enter, item->isDir);
    }
}

void FilesTest::tagsOfAListing_data()
{
    QTest::addColumn<DWORD>("tag");
    QTest::addColumn<QStringList>("names");
    const QStringList all{"folder\\", "link\\"};
    QTest::newRow("no reparse point") << DWORD(0) << all;
    QTest::newRow("junction") << DWORD(0xA0000003) << QStringList("folder\\");
    QTest::newRow("link to a folder") << DWORD(0xA000000C) << QStringList("folder\\");
    QTest::newRow("folder of a cloud drive") << DWORD(0x9000001A) << all;
}

void FilesTest::tagsOfAListing()
{
    QFETCH(DWORD, tag);
    // Wine makes no reparse points, so the kind of one of the folders is made up.
    QVERIFY(QDir(m_root).mkdir("folder"));
    QVERIFY(QDir(m_root).mkdir("link"));
    Spies::instance().linkTag = tag;
    QTEST(list(m_root).names, "names");
}

void FilesTest::listingIsFast()
{
    // Without the short names, and as much at a time as the system can hand over.
    list(m_root);
    QCOMPARE(Spies::instance().findLevel, FindExInfoBasic);
    QCOMPARE(Spies::instance().findFlags, DWORD(FIND_FIRST_EX_LARGE_FETCH));
}

void FilesTest::listingLeaksNothing()
{
    constexpr int kRounds = 1000;
    writeFile(path("file"));
    list(m_root);
    const quintptr handle = SystemResources::nextHandle();
    const std::size_t blocks = SystemResources::heapBlocks();
    for (int i = 0; i < kRounds; ++i) {
        list(m_root);
        list(path("gone"));
    }
    QCOMPARE(SystemResources::nextHandle(), handle);
    // Wine closes a finished search by itself and keeps memory for it alone.
    QVERIFY(SystemResources::heapBlocks() < blocks + kRounds / 2);
}

void FilesTest::kinds_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<PathKind>("kind");
    QTest::newRow("file") << "file" << PathKind::File;
    QTest::newRow("other case") << "FILE" << PathKind::File;
    QTest::newRow("hidden file") << "hidden" << PathKind::File;
    QTest::newRow("directory") << "folder" << PathKind::Directory;
    QTest::newRow("inside") << "folder\\inside" << PathKind::File;
    QTest::newRow("missing") << "gone" << PathKind::Missing;
    QTest::newRow("below something missing") << "gone\\a" << PathKind::Missing;
    QTest::newRow("below a file") << "file\\a" << PathKind::Missing;
    QTest::newRow("device") << "nul" << PathKind::Missing;
    QTest::newRow("pattern") << "f*" << PathKind::Missing;
}

void FilesTest::kinds()
{
    QFETCH(QString, name);
    QVERIFY(QDir(m_root).mkdir("folder"));
    for (const char* file : {"file", "hidden", "folder/inside"})
        writeFile(path(file));
    setAttributes(path("hidden"), FILE_ATTRIBUTE_HIDDEN);
    QTEST(Platform::DirectoryReader::create(m_root)->kindOf(path(name)), "kind");
}

void FilesTest::recordsAreRead_data()
{
    QTest::addColumn<QByteArray>("buffer");
    QTest::addColumn<QStringList>("expected");
    const QByteArray one = lastRecord(1, "a\\b.txt");
    const QStringList justOne{"1 a\\b.txt"};
    QTest::newRow("one") << one << justOne;
    QTest::newRow("three") << recordBefore(4, "old", recordBefore(5, "new", one))
                           << QStringList({"4 old", "5 new", "1 a\\b.txt"});
    QTest::newRow("other letters")
        << lastRecord(2, QStringLiteral("é日\\𝄞")) << QStringList(QStringLiteral("2 é日\\𝄞"));
    QTest::newRow("action of no meaning") << lastRecord(99, "a") << QStringList("99 a");
    QTest::newRow("no name") << lastRecord(1, "") << QStringList();
    QTest::newRow("no name before a name") << recordBefore(1, "", one) << justOne;
    QTest::newRow("bytes behind the last") << one + QByteArray(40, '\xff') << justOne;
    QTest::newRow("nothing") << QByteArray() << QStringList();
    QTest::newRow("half a header") << one.left(11) << QStringList();
    QTest::newRow("header alone") << one.left(12) << QStringList();
    QTest::newRow("name cut off") << one.chopped(1) << QStringList();
    QTest::newRow("second cut off") << recordBefore(2, "b", one).chopped(2) << QStringList("2 b");
    QTest::newRow("second's header cut off")
        << recordBefore(2, "b", one.left(8)) << QStringList("2 b");
    QTest::newRow("next behind the end") << record(1, "a", 4000, 2) << QStringList("1 a");
    QTest::newRow("next at the end") << record(1, "ab", 16, 4) << QStringList("1 ab");
    QTest::newRow("next without end") << record(1, "a", 0xFFFFFFFF, 2) << QStringList("1 a");
    QTest::newRow("name without end") << record(1, "a", 0, 0xFFFFFFFF) << QStringList();
    QTest::newRow("name nearly without end") << record(1, "a", 0, 0xFFFFFFFE) << QStringList();
    QTest::newRow("odd number of bytes") << record(1, "ab", 0, 3) << QStringList("1 a");
    QTest::newRow("one byte") << record(1, "a", 0, 1) << QStringList();
    QTest::newRow("next out of step")
        << record(1, "a", 15, 2).leftJustified(15, '\0') + one << QStringList({"1 a", justOne[0]});
}

void FilesTest::recordsAreRead()
{
    QFETCH(QByteArray, buffer);
    QTEST(shown(Platform::changesIn(reinterpret_cast<const unsigned char*>(buffer.constData()),
                                    static_cast<std::size_t>(buffer.size()))),
          "expected");
}

void FilesTest::recordsOfAnyLength()
{
    // Whatever number of bytes is said to be filled, nothing behind them counts.
    const QByteArray whole =
        recordBefore(4, "old name", recordBefore(5, "new", lastRecord(1, "a")));
    const QStringList all{"4 old name", "5 new", "1 a"};
    qsizetype before = 0;
    for (qsizetype size = 0; size <= whole.size(); ++size) {
        const auto copy = std::make_unique<unsigned char[]>(static_cast<std::size_t>(size));
        std::memcpy(copy.get(), whole.constData(), static_cast<std::size_t>(size));
        const QStringList found =
            shown(Platform::changesIn(copy.get(), static_cast<std::size_t>(size)));
        QVERIFY(found.size() >= before);
        QCOMPARE(found, all.mid(0, found.size()));
        before = found.size();
    }
    QCOMPARE(before, all.size());
}

void FilesTest::changesAreReported()
{
    Watch watch(m_root);
    watch.startAndWait();
    // Made after the watch began, because Wine doesn't watch directories that were there before.
    QVERIFY(QDir(m_root).mkdir("a"));
    QTRY_VERIFY(watch.hasSeen("1 a"));
    QVERIFY(QDir(m_root).mkdir("a/b"));
    QTRY_VERIFY(watch.hasSeen("1 a\\b"));
    const QString deep = QStringLiteral("a\\b\\é日 deep.txt");
    writeFile(path("top.txt"));
    writeFile(path(deep));
    QTRY_VERIFY(watch.hasSeen("1 top.txt"));
    QTRY_VERIFY(watch.hasSeen("1 " + deep));
    QVERIFY(QFile::remove(path("top.txt")));
    QVERIFY(QFile::remove(path(deep)));
    QTRY_VERIFY(watch.hasSeen("2 top.txt"));
    QTRY_VERIFY(watch.hasSeen("2 " + deep));
    QVERIFY(QDir(m_root).rmdir("a/b"));
    QVERIFY(QDir(m_root).rmdir("a"));
    QTRY_VERIFY(watch.hasSeen("2 a\\b"));
    QTRY_VERIFY(watch.hasSeen("2 a"));
    QCOMPARE(watch.overflows(), 0);
    QVERIFY(watch.isRunning());
}

void FilesTest::renamesAreReported()
{
    Watch watch(m_root);
    watch.startAndWait();
    QVERIFY(QDir(m_root).mkdir("folder"));
    QTRY_VERIFY(watch.hasSeen("1 folder"));
    writeFile(path("folder\\old"));
    QTRY_VERIFY(watch.hasSeen("1 folder\\old"));
    QVERIFY(QFile::rename(path("folder\\old"), path("folder\\new")));
    QTRY_VERIFY(watch.hasSeen("5 folder\\new"));
    QCOMPARE(watch.seen().indexOf("4 folder\\old"), watch.seen().indexOf("5 folder\\new") - 1);
    QVERIFY(QDir(m_root).rename("folder", "directory"));
    QTRY_VERIFY(watch.hasSeen("5 directory"));
    QCOMPARE(watch.seen().indexOf("4 folder"), watch.seen().indexOf("5 directory") - 1);
}

void FilesTest::contentIsNotReported()
{
    writeFile(path("file"));
    Watch watch(m_root);
    watch.startAndWait();
    writeFile(path("file"));
    setAttributes(path("file"), FILE_ATTRIBUTE_HIDDEN);
    writeFile(path("end"));
    QTRY_VERIFY(watch.hasSeen("1 end"));
    const QStringList seen = watch.seen();
    QVERIFY2(!seen.contains("3 file") && !seen.contains("1 file"), qPrintable(seen.join(", ")));
}

void FilesTest::longRootIsWatched()
{
    QString root = m_root;
    for (int depth = 0; depth < 4; ++depth) {
        root += '\\' + QString(100, 'x');
        QVERIFY(makeDirectoryLiterally(root));
    }
    QVERIFY(root.size() > MAX_PATH);
    Watch watch(root);
    watch.start();
    int number = 0;
    QTRY_VERIFY_WITH_TIMEOUT(
        (writeLiterally(root + "\\probe" + QString::number(number++)), !watch.seen().isEmpty()),
        kPatienceMs);
    QVERIFY(watch.seen().first().startsWith("1 probe"));
}

void FilesTest::burstIsReportedOrLost()
{
    constexpr int kFiles = 1500; // more than fits into one buffer, with names of that length
    const QString name = QString(60, 'n') + "%1";
    Watch watch(m_root);
    std::atomic<bool> isHeld = false;
    std::atomic<bool> isFree = false;
    watch.onBatch([&isHeld, &isFree] {
        isHeld = true;
        isFree.wait(false);
    });
    watch.start();
    int number = 0;
    QTRY_VERIFY_WITH_TIMEOUT((writeFile(path("probe" + QString::number(number++))), isHeld.load()),
                             kPatienceMs);
    for (int i = 0; i < kFiles; ++i)
        writeFile(path(name.arg(i)));
    isFree = true;
    isFree.notify_all();
    const auto isComplete = [&watch, &name] {
        const QStringList all = watch.seen();
        const QSet<QString> seen(all.cbegin(), all.cend());
        for (int i = 0; i < kFiles; ++i) {
            if (!seen.contains("1 " + name.arg(i)))
                return false;
        }
        return true;
    };
    QTRY_VERIFY_WITH_TIMEOUT(watch.overflows() > 0 || isComplete(), kPatienceMs);
    // It goes on afterwards.
    writeFile(path("end"));
    QTRY_VERIFY_WITH_TIMEOUT(watch.hasSeen("1 end"), kPatienceMs);
}

void FilesTest::watchIsOneForTheTree()
{
    Watch watch(m_root);
    watch.startAndWait();
    QCOMPARE(Spies::instance().watchBytes.load(), DWORD(65536));
    QCOMPARE(Spies::instance().watchesSubtree.load(), TRUE);
    QCOMPARE(Spies::instance().watchFilter.load(),
             DWORD(FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_DIR_NAME));
}

void FilesTest::lostChanges_data()
{
    QTest::addColumn<int>("result");
    QTest::newRow("a read of nothing") << static_cast<int>(Result::Nothing);
    QTest::newRow("under the name of an error") << static_cast<int>(Result::EnumDir);
}

void FilesTest::lostChanges()
{
    QFETCH(int, result);
    Watch watch(m_root);
    watch.startAndWait();
    QCOMPARE(watch.overflows(), 0);
    Spies::instance().nextResult = static_cast<Result>(result);
    writeFile(path("lost"));
    QTRY_COMPARE_WITH_TIMEOUT(watch.overflows(), 1, kPatienceMs);
    // It goes on afterwards.
    writeFile(path("end"));
    QTRY_VERIFY_WITH_TIMEOUT(watch.hasSeen("1 end"), kPatienceMs);
    QCOMPARE(watch.overflows(), 1);
}

void FilesTest::failedReadEndsTheWatch()
{
    Watch watch(m_root);
    watch.startAndWait();
    Spies::instance().nextResult = Result::OtherError;
    writeFile(path("cause"));
    QVERIFY(watch.waitForEnd());
    QCoreApplication::sendPostedEvents();
    QCOMPARE(watch.overflows(), 0);
}

void FilesTest::watchEndsWhenStopped()
{
    Watch watch(m_root);
    watch.startAndWait();
    QVERIFY(watch.isRunning());
    watch.stop();
    QVERIFY(watch.waitForEnd());
    watch.stop(); // says nothing new
    // Nothing of it is left behind that would keep the directory.
    QVERIFY(m_dir->remove());
    QVERIFY(!QFileInfo::exists(m_root));
}

void FilesTest::stoppedBeforeItRuns()
{
    Watch watch(m_root);
    watch.stop();
    watch.start();
    QVERIFY(watch.waitForEnd());
    QCOMPARE(watch.seen(), QStringList());
}

void FilesTest::stoppedUnderSteadyChange()
{
    Watch watch(m_root);
    std::atomic<int> batches = 0;
    // Each batch brings about the next one, so one is always ready.
    watch.onBatch([this, &batches] { writeFile(path(QString::number(++batches))); });
    watch.start();
    int number = 0;
    QTRY_VERIFY_WITH_TIMEOUT((writeFile(path("probe" + QString::number(number++))), batches > 20),
                             kPatienceMs);
    watch.stop();
    QVERIFY(watch.waitForEnd());
}

void FilesTest::watchOfNothingEnds_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << "gone";
    QTest::newRow("below something missing") << "gone\\a";
    QTest::newRow("file") << "file";
    QTest::newRow("no root") << QString();
}

void FilesTest::watchOfNothingEnds()
{
    QFETCH(QString, name);
    writeFile(path("file"));
    Watch watch(name.isEmpty() ? QString() : path(name));
    watch.start();
    QVERIFY(watch.waitForEnd());
    QCOMPARE(watch.seen(), QStringList());
    QCOMPARE(watch.overflows(), 0);
}

void FilesTest::watchesLeakNothing()
{
    const auto watchOnce = [this] {
        Watch watch(m_root);
        watch.startAndWait();
        Watch failing(path("gone"));
        failing.start();
        return watch.end() && failing.waitForEnd();
    };
    QVERIFY(watchOnce());
    const quintptr handle = SystemResources::nextHandle();
    for (int i = 0; i < 50; ++i)
        QVERIFY(watchOnce());
    QCOMPARE(SystemResources::nextHandle(), handle);
}

void FilesTest::typesHaveIcons_data()
{
    QTest::addColumn<QString>("suffix");
    for (const char* suffix : {".txt", ".exe", ".lnk", ".pdf", ".unheard-of"})
        QTest::addRow("%s", suffix) << suffix;
    QTest::newRow("none") << "";
}

void FilesTest::typesHaveIcons()
{
    QFETCH(QString, suffix);
    QVERIFY(!Platform::fileTypeIcon(suffix, false).isNull());
}

void FilesTest::folderHasAnother()
{
    const QImage folder = imageOf(Platform::fileTypeIcon({}, true));
    QVERIFY(!folder.isNull());
    QVERIFY(folder != imageOf(Platform::fileTypeIcon({}, false)));
    QCOMPARE(imageOf(Platform::fileTypeIcon(".txt", true)), folder);
}

void FilesTest::suffixDecidesAlone()
{
    // A directory under the name that is asked for, in the directory where it would be found.
    const QString before = QDir::currentPath();
    const QImage expected = imageOf(Platform::fileTypeIcon(".txt", false));
    QVERIFY(QDir::setCurrent(m_root));
    QVERIFY(QDir().mkdir("file.txt"));
    writeFile("folder");
    const QImage file = imageOf(Platform::fileTypeIcon(".txt", false));
    const QImage folder = imageOf(Platform::fileTypeIcon({}, true));
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(file, expected);
    QVERIFY(folder != expected);
}

void FilesTest::wildSuffixes_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::newRow("as long as a name may be") << '.' + QString(254, 'x');
    QTest::newRow("longer than any path") << '.' + QString(5000, 'x');
    QTest::newRow("dot alone") << ".";
    QTest::newRow("other letters") << QStringLiteral(".日本é");
    QTest::newRow("separators") << ".\\..\\/x";
    QTest::newRow("wildcards") << ".*?";
    QTest::newRow("blanks") << ". ";
}

void FilesTest::wildSuffixes()
{
    QFETCH(QString, suffix);
    // Whether there is an icon is up to the system; an answer there must be, and always the same.
    const QIcon first = Platform::fileTypeIcon(suffix, false);
    const QIcon second = Platform::fileTypeIcon(suffix, false);
    QCOMPARE(first.isNull(), second.isNull());
}

void FilesTest::typeIconsLeakNothing()
{
    Platform::fileTypeIcon(".txt", false);
    Platform::fileTypeIcon({}, true);
    const std::size_t freeObjects = SystemResources::freeGdiObjects();
    const quintptr handle = SystemResources::nextHandle();
    for (int i = 0; i < 1000; ++i) {
        Platform::fileTypeIcon(".txt", false);
        Platform::fileTypeIcon({}, true);
    }
    QCOMPARE(SystemResources::freeGdiObjects(), freeObjects);
    QCOMPARE(SystemResources::nextHandle(), handle);
}

QTEST_MAIN(FilesTest)
#include "tst_files_windows.moc"
