// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FileIndex.h"
#include "FolderFilter.h"
#include "FreshProcess.h"
#include "TestFiles.h"
#include "TestHome.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QTest>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <functional>

using Entry = FileIndex::Entry;

/// The index over real files, with the system's own reader and watch.
class FileIndexTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::installWithHome(); }

private slots:
    void initTestCase();
    void cleanupTestCase();
    void homeIsListed();
    void excludedFoldersAreLeftOut();
    void linkedFolderIsNeitherListedNorFollowed_data();
    void linkedFolderIsNeitherListedNorFollowed();
    void newFileIsFound();
    void renamedFileIsFoundUnderItsNewName();
    void movedFileIsFoundWhereItIs();
    void deletedFileIsForgotten();
    void newFolderBringsItsContents();
    void renamedFolderTakesItsContentsAlong();
    void deletedFolderTakesItsContentsAway();
    void newFileInAnExcludedFolderIsIgnored();
    void fileCalledLikeAnExcludedFolder();
    void manyFilesAtOnce();
    void oddNames_data();
    void oddNames();
    void comesAndGoes();
};

namespace
{

constexpr int kPatienceMs = 30000;
constexpr int kManyFiles = 500;
constexpr int kProcesses = 20;

/// A folder of this test alone in the home directory, which may hold other things.
const QString kCorner = QStringLiteral("fileindex corner");

QString path(const QString& relative)
{
    return FileIndex::rootPath() + QDir::separator() +
           QDir::toNativeSeparators(kCorner + '/' + relative);
}

void makeFolder(const QString& relative)
{
    if (!QDir().mkpath(path(relative)))
        qFatal("cannot make %s", qPrintable(relative));
}

void makeFile(const QString& relative)
{
    if (!TestFiles::write(path(relative)))
        qFatal("cannot make %s", qPrintable(relative));
}

bool isIndexed(const QString& relative)
{
    const QString wanted = path(relative);
    const FileIndex::Entries all = FileIndex::entries();
    return std::any_of(all.begin(), all.end(),
                       [&wanted](const Entry& entry) { return entry.path == wanted; });
}

/// Whether this user may make links to folders on this system.
bool canLink()
{
    const QString link = path("probe");
    const bool isMade = QFile::link(FileIndex::rootPath(), link);
    const bool isLink = isMade && QFileInfo(link).isSymbolicLink();
    QFile::remove(link);
    return isLink;
}

QStringList found(const QString& query)
{
    QStringList paths;
    for (const auto kind : {FileIndex::Files, FileIndex::Folders}) {
        for (const Entry& entry : FileIndex::search(query, 1000, kind))
            paths.append(entry.path);
    }
    return paths;
}

} // namespace

// Waits until all that the test has done has arrived: what comes last is there.
#define SETTLE_WITH(marker)                                                                        \
    makeFile(marker);                                                                              \
    QTRY_VERIFY_WITH_TIMEOUT(isIndexed(marker), kPatienceMs)

void FileIndexTest::initTestCase()
{
    makeFile("A File.TXT");
    makeFile("folder/inner/deep.txt");
    makeFile("folder/node_modules/package.js");
    makeFile("folder/.git/config");
    makeFile("AppData/x.txt");
    makeFile(".hidden/.file");
    makeFolder("target of a link");
    makeFile("target of a link/within.txt");
    makeFolder("empty");
    FileIndex::build();
    QTRY_VERIFY_WITH_TIMEOUT(FileIndex::isReady(), kPatienceMs);
}

void FileIndexTest::cleanupTestCase()
{
    QVERIFY(QDir(path(QString())).removeRecursively());
}

void FileIndexTest::homeIsListed()
{
    QCOMPARE(FileIndex::search("a file.t", 9, FileIndex::Files),
             (QVector<Entry>{{path("A File.TXT"), "a file.txt", false}}));
    QCOMPARE(FileIndex::search("inner", 9, FileIndex::Folders),
             (QVector<Entry>{{path("folder/inner"), "inner", true}}));
    QVERIFY(isIndexed("folder/inner/deep.txt"));
    QVERIFY(isIndexed(".hidden/.file"));
    QVERIFY(isIndexed("empty"));
}

void FileIndexTest::excludedFoldersAreLeftOut()
{
    for (const char* excluded : {"folder/node_modules", "folder/node_modules/package.js",
                                 "folder/.git", "folder/.git/config", "AppData", "AppData/x.txt"})
        QVERIFY2(!isIndexed(excluded), excluded);
}

void FileIndexTest::linkedFolderIsNeitherListedNorFollowed_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("target"); // of a link in it; empty for none
    QTest::newRow("no link, for comparison") << "linking/none"
                                             << "";
    if (canLink()) {
        QTest::newRow("to a folder") << "linking/a" << path("target of a link");
        QTest::newRow("to the folder it is in") << "linking/b" << path("linking/b");
        QTest::newRow("to the folder above") << "linking/c"
                                             << "..";
        QTest::newRow("to the home directory") << "linking/d" << FileIndex::rootPath();
    }
}

void FileIndexTest::linkedFolderIsNeitherListedNorFollowed()
{
    QFETCH(QString, folder);
    QFETCH(QString, target);
    // In a new folder, so that a scan comes by.
    makeFolder(folder);
    QVERIFY(target.isEmpty() || QFile::link(target, path(folder + "/link")));
    SETTLE_WITH(folder + "/last.txt");
    QVERIFY(!isIndexed(folder + "/link"));
    QCOMPARE(found("within.txt"), QStringList{path("target of a link/within.txt")});
    // A search that is limited to a link finds nothing, as if that were gone.
    const auto unlimit = qScopeGuard([] { FolderFilter::setFolders({}); });
    FolderFilter::setFolders({path(folder + "/link")});
    QCOMPARE(found("within.txt"), QStringList());
    FolderFilter::setFolders({path(folder + "/link"), path("target of a link")});
    QCOMPARE(found("within.txt"), QStringList{path("target of a link/within.txt")});
    FolderFilter::setFolders({});
    // Nor is it listed when it comes as news.
    QVERIFY(target.isEmpty() || QFile::link(target, path(folder + "/second")));
    SETTLE_WITH(folder + "/end.txt");
    QVERIFY(!isIndexed(folder + "/second"));
    QCOMPARE(found("within.txt").size(), 1);
}

void FileIndexTest::newFileIsFound()
{
    QVERIFY(found("brandnew").isEmpty());
    makeFile("folder/BrandNew.txt");
    QTRY_COMPARE_WITH_TIMEOUT(found("brandnew"), QStringList{path("folder/BrandNew.txt")},
                              kPatienceMs);
}

void FileIndexTest::renamedFileIsFoundUnderItsNewName()
{
    SETTLE_WITH("before.txt");
    QVERIFY(QFile::rename(path("before.txt"), path("After.txt")));
    QTRY_COMPARE_WITH_TIMEOUT(found("after.txt"), QStringList{path("After.txt")}, kPatienceMs);
    QVERIFY(!isIndexed("before.txt"));
}

void FileIndexTest::movedFileIsFoundWhereItIs()
{
    SETTLE_WITH("moving.txt");
    QVERIFY(QFile::rename(path("moving.txt"), path("folder/inner/moving.txt")));
    QTRY_COMPARE_WITH_TIMEOUT(found("moving.txt"), QStringList{path("folder/inner/moving.txt")},
                              kPatienceMs);
}

void FileIndexTest::deletedFileIsForgotten()
{
    SETTLE_WITH("doomed.txt");
    QVERIFY(QFile::remove(path("doomed.txt")));
    QTRY_VERIFY_WITH_TIMEOUT(found("doomed").isEmpty(), kPatienceMs);
}

void FileIndexTest::newFolderBringsItsContents()
{
    // Whatever was in it before anybody could watch it.
    for (int i = 0; i < 10; ++i)
        makeFile(QString("fresh/%1/%2/file.txt").arg(i).arg(i * i));
    QTRY_VERIFY_WITH_TIMEOUT(isIndexed("fresh/9/81/file.txt"), kPatienceMs);
    QVERIFY(isIndexed("fresh"));
    QVERIFY(isIndexed("fresh/0/0"));
    // And what comes into it later.
    SETTLE_WITH("fresh/9/81/later.txt");
}

void FileIndexTest::renamedFolderTakesItsContentsAlong()
{
    SETTLE_WITH("old name/sub/file.txt");
    QVERIFY(QDir().rename(path("old name"), path("new name")));
    QTRY_VERIFY_WITH_TIMEOUT(isIndexed("new name/sub/file.txt"), kPatienceMs);
    QVERIFY(!isIndexed("old name"));
    QVERIFY(!isIndexed("old name/sub/file.txt"));
}

void FileIndexTest::deletedFolderTakesItsContentsAway()
{
    SETTLE_WITH("going/sub/file.txt");
    QVERIFY(QDir(path("going")).removeRecursively());
    QTRY_VERIFY_WITH_TIMEOUT(!isIndexed("going"), kPatienceMs);
    QVERIFY(!isIndexed("going/sub"));
    QVERIFY(!isIndexed("going/sub/file.txt"));
}

void FileIndexTest::newFileInAnExcludedFolderIsIgnored()
{
    makeFile("folder/node_modules/new.js");
    makeFile("folder/.git/new.lock");
    SETTLE_WITH("folder/after the excluded.txt");
    QVERIFY(!isIndexed("folder/node_modules/new.js"));
    QVERIFY(!isIndexed("folder/.git/new.lock"));
}

void FileIndexTest::fileCalledLikeAnExcludedFolder()
{
    // Left out while it is news, and listed when its folder is read.
    makeFile("folder/inner/node_modules");
    SETTLE_WITH("folder/inner/beside it.txt");
    QVERIFY(!isIndexed("folder/inner/node_modules"));
    QVERIFY(QDir().rename(path("folder/inner"), path("folder/other")));
    QTRY_VERIFY_WITH_TIMEOUT(isIndexed("folder/other/beside it.txt"), kPatienceMs);
    QVERIFY(isIndexed("folder/other/node_modules"));
}

void FileIndexTest::manyFilesAtOnce()
{
    for (int i = 0; i < kManyFiles; ++i)
        makeFile(QString("folder/many %1.txt").arg(i));
    QTRY_VERIFY_WITH_TIMEOUT(isIndexed(QString("folder/many %1.txt").arg(kManyFiles - 1)),
                             kPatienceMs);
    for (int i = 0; i < kManyFiles; ++i)
        QVERIFY(isIndexed(QString("folder/many %1.txt").arg(i)));
}

void FileIndexTest::oddNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("query");
    QTest::newRow("accents") << "Éclair à la crème.txt"
                             << "éclair À";
    QTest::newRow("kana and kanji") << "日本語のファイル.txt"
                                    << "のファ";
    QTest::newRow("beyond the first plane") << "smile 😀.txt"
                                            << "😀.";
    QTest::newRow("blanks") << "a   lot   of   blanks"
                            << "t   o";
    QTest::newRow("quotes and percent") << "100% 'it's'.txt"
                                        << "% 'it's";
    QTest::newRow("a long name") << QString(120, 'x') + "y.txt"
                                 << "xxy";
    QTest::newRow("only a suffix") << ".onlysuffix"
                                   << ".onlys";
}

void FileIndexTest::oddNames()
{
    QFETCH(QString, name);
    QFETCH(QString, query);
    makeFile("odd/" + name);
    QTRY_COMPARE_WITH_TIMEOUT(found(query), QStringList{path("odd/" + name)}, kPatienceMs);
}

namespace
{

/// A life of the index: at some point of it the application quits.
int runLife(const QStringList& arguments)
{
    const int steps = arguments.first().toInt();
    FileIndex::build();
    if (steps > 0 && !QTest::qWaitFor(&FileIndex::isReady, kPatienceMs))
        return 1;
    if (steps > 1) {
        makeFile(QString("life/%1.txt").arg(steps));
        FileIndex::search("a", 10, FileIndex::Files);
        FileIndex::search("ab", 10, FileIndex::Folders);
    }
    QTimer::singleShot(steps % 5, QCoreApplication::instance(), &QCoreApplication::quit);
    return QCoreApplication::exec();
}

} // namespace

void FileIndexTest::comesAndGoes()
{
    for (int i = 0; i < kProcesses; ++i) {
        const FreshProcess::Outcome outcome = FreshProcess::run("life", {QString::number(i % 8)});
        QVERIFY(outcome.hasExited);
        QCOMPARE(outcome.exitCode, 0);
    }
}

int main(int argc, char** argv)
{
    return FreshProcess::main<FileIndexTest>(argc, argv, {{"life", runLife}});
}

#include "tst_fileindex.moc"
