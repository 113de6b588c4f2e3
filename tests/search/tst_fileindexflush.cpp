// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FakeFileSystem.h"
#include "FileIndex.h"
#include "FreshProcess.h"
#include "TestHome.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTest>
#include <QTextStream>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <functional>

using Entry = FileIndex::Entry;
using Changes = FakeFileSystem::Changes;

/// How scans and changes come into the index, and how the threads end, in exact steps.
class FileIndexFlushTest : public QObject
{
    Q_OBJECT

public:
    static void initMain();

private slots:
    // The first ones follow the index through its start, in this order.
    void nothingIsThereBeforeTheBuild();
    void firstScanIsAwaited();
    void firstScanIsDelivered();
    void scanGoesDeepFirst();
    void buildsOnce();

    void init();
    void cleanup();
    void numbers();
    void excludedPaths_data();
    void excludedPaths();
    void singleChanges_data();
    void singleChanges();
    void changesFollowTheirOrder_data();
    void changesFollowTheirOrder();
    void renamedFileGoesToTheEnd();
    void asManyAsTheLimitAreApplied();
    void moreThanTheLimitAreReadByAThread();
    void lookedAtOnceAndFromAbove();
    void readingBringsOnlyWhatIsNew();
    void pathsBeyondAllMeasureAreAScan();
    void everyChangeCounts_data();
    void everyChangeCounts();
    void batchesAddUp();
    void emptyBatchIsNoNews();
    void everyBatchRestartsTheTimer();
    void foldersAreReadByThemselves_data();
    void foldersAreReadByThemselves();
    void readingIsWatchedAndForgets();
    void whatIsNoFolderAnyMore();
    void filesThatChangePlaces();
    void overflowCausesAScan();
    void overflowsCauseAScanAtATime();
    void changesBeforeAFolderStandUntilItIsRead();
    void changesDuringAReadingAreLookedAtBehindIt_data();
    void changesDuringAReadingAreLookedAtBehindIt();
    void changesDuringAScanAreLookedAtBehindIt();
    void oldListServesDuringAReading();
    void refreshReadsWhatIsNotWatched();
    void refreshOfAllIsAScan();
    void deliveryIsCompleteWhenItIsTold();
    void callbackMayBeReplacedWithinACall();

    void caseIsIgnoredWhereTheSystemDoes();
    void withoutAWatcherTheIndexStandsStill();
    void brokenWatchLeavesTheIndexUsable();
    void quit_data();
    void quit();
};

namespace
{

constexpr int kPatienceMs = 20000;
constexpr int kStartMs = 300; ///< in which a thread surely starts
constexpr int kClockMs = 20;  ///< by which clocks of one system may differ

bool s_isBuiltWithoutApplication = true; ///< set before the application exists
int s_readyCount = 0;
bool s_wasToldTooEarly = false; ///< of changes to an index that wasn't ready

QString full(const QString& path)
{
    return FileIndex::rootPath() + QDir::separator() + QDir::toNativeSeparators(path);
}

QString relative(const Entry& entry)
{
    return QDir::fromNativeSeparators(entry.path.mid(FileIndex::rootPath().size() + 1));
}

/// The index as relative paths, folders with "/" at their end.
QStringList indexed()
{
    QStringList paths;
    for (const Entry& entry : FileIndex::entries())
        paths.append(relative(entry) + (entry.isDir ? "/" : ""));
    return paths;
}

bool isIndexed(const QString& path)
{
    return indexed().contains(path);
}

QTimer* timerOf(const QString& name)
{
    const QList<QTimer*> timers =
        QCoreApplication::instance()->findChildren<QTimer*>(Qt::FindDirectChildrenOnly);
    const auto found = std::find_if(timers.begin(), timers.end(), [&name](const QTimer* timer) {
        return timer->objectName() == name;
    });
    return found == timers.end() ? nullptr : *found;
}

QTimer* coalesceTimer()
{
    return timerOf("fileCoalesceTimer");
}

bool isFlushDue()
{
    const QTimer* timer = coalesceTimer();
    return timer && timer->isActive();
}

bool waitFor(const std::function<bool()>& condition)
{
    return QTest::qWaitFor(condition, kPatienceMs);
}

Changes added(const QStringList& paths)
{
    Changes changes;
    for (const QString& path : paths)
        changes.append({Platform::FileAdded, path});
    return changes;
}

Changes removed(const QStringList& paths)
{
    Changes changes;
    for (const QString& path : paths)
        changes.append({Platform::FileRemoved, path});
    return changes;
}

Changes numbered(const QString& pattern, int count)
{
    QStringList paths;
    for (int i = 0; i < count; ++i)
        paths.append(pattern.arg(i));
    return added(paths);
}

/// Has the changes arrive, and with them the flush without the wait for quiet.
bool flush(const QVector<Changes>& batches)
{
    FakeFileSystem::report(batches);
    if (!waitFor(isFlushDue))
        return false;
    // All batches are on their way by now, or not needed: the last one answers.
    FakeFileSystem::awaitReports();
    QCoreApplication::sendPostedEvents();
    coalesceTimer()->start(0);
    return waitFor([] { return !isFlushDue(); });
}

void countReady()
{
    ++s_readyCount;
    s_wasToldTooEarly = s_wasToldTooEarly || !FileIndex::isReady();
}

/// How far the index had come at a time.
struct Mark
{
    int scans = FakeFileSystem::scanCount();
    int readings = FakeFileSystem::readingCount();
    int ready = s_readyCount;
};

/// Waits for one more reading of some paths than there were, and for its delivery; no scan.
bool hasReadSince(const Mark& mark)
{
    return waitFor([&mark] {
        return FakeFileSystem::readingCount() == mark.readings + 1 &&
               s_readyCount == mark.ready + 1 && FakeFileSystem::scanCount() == mark.scans;
    });
}

/// Lets the time pass for which lost changes cause no further scan.
bool endPause()
{
    QTimer* pause = timerOf("fileLossTimer");
    if (pause->isActive())
        pause->start(0);
    return waitFor([pause] { return !pause->isActive() || pause->interval() > 0; });
}

/// Waits for one more scan than there were, and for its delivery.
bool hasScannedSince(const Mark& mark)
{
    return waitFor([&mark] {
        return FakeFileSystem::scanCount() == mark.scans + 1 && s_readyCount == mark.ready + 1;
    });
}

/// Whether nothing has been read by a thread. One may take its time to be counted, so this has a
/// new file arrive: one that is under way puts it off, and one that isn't has been counted. The
/// file stays at the end of the list.
bool hasNotReadSince(const Mark& mark)
{
    static int number = 0;
    const QString witness = QString("witness %1.txt").arg(++number);
    FakeFileSystem::add(witness);
    return flush({added({witness})}) && FileIndex::entries().last().path == full(witness) &&
           FakeFileSystem::scanCount() == mark.scans &&
           FakeFileSystem::readingCount() == mark.readings;
}

} // namespace

void FileIndexFlushTest::initMain()
{
    TestHome::install();
    FileIndex::build(); // too early, and without effect
    s_isBuiltWithoutApplication = FakeFileSystem::threadCount() > 0;
}

void FileIndexFlushTest::nothingIsThereBeforeTheBuild()
{
    QVERIFY(!s_isBuiltWithoutApplication);
    QVERIFY(!FileIndex::isReady());
    QVERIFY(FileIndex::entries().isEmpty());
    QVERIFY(FileIndex::search("a", 10, FileIndex::Files).isEmpty());
    QCOMPARE(FakeFileSystem::scanCount(), 0);
    QCOMPARE(FileIndex::rootPath(), QDir::toNativeSeparators(QDir::homePath()));
}

void FileIndexFlushTest::firstScanIsAwaited()
{
    FakeFileSystem::add({"b.txt", "Alpha/One.TXT", "Alpha/deep/two.txt", "Beta/three.txt",
                         ".hidden", ".git", "node_modules.txt", "Program/AppData/x.txt",
                         "appdata/x.txt", "Beta/NODE_MODULES/x.txt", "Alpha/.git/x.txt",
                         "__pycache__/x.txt", ".venv/x.txt", ".programs/x.txt",
                         "Beta/.Programs/x.txt", "empty/"});
    FakeFileSystem::addClosed("elsewhere");
    FakeFileSystem::add("elsewhere/x.txt");
    FakeFileSystem::addUnreadable("locked");
    FakeFileSystem::add("locked/x.txt");
    FakeFileSystem::hold();
    FileIndex::setOnReady(&countReady);
    FileIndex::build();
    QVERIFY(waitFor(&FakeFileSystem::isHeld));
    QVERIFY(waitFor(&FakeFileSystem::isWatching));
    QVERIFY(!FileIndex::isReady());
    QVERIFY(FileIndex::search("b", 10, FileIndex::Files).isEmpty());
    QCOMPARE(s_readyCount, 0);
}

void FileIndexFlushTest::firstScanIsDelivered()
{
    FakeFileSystem::release();
    QTRY_COMPARE(s_readyCount, 1);
    QVERIFY(!s_wasToldTooEarly);
    QVERIFY(FileIndex::isReady());
    QVERIFY(FakeFileSystem::isListedUnderWatch(""));
    QVERIFY(FakeFileSystem::isListedUnderWatch("Alpha/deep"));
    QCOMPARE(FileIndex::search("one", 10, FileIndex::Files),
             (QVector<Entry>{{full("Alpha/One.TXT"), "one.txt", false}}));
    QCOMPARE(FileIndex::search("alpha", 10, FileIndex::Folders),
             (QVector<Entry>{{full("Alpha"), "alpha", true}}));
}

void FileIndexFlushTest::scanGoesDeepFirst()
{
    // Of the folders the one found last is the first to be walked, with all that is in it.
    QCOMPARE(FakeFileSystem::listings(),
             (QStringList{"", "locked", "empty", "Program", "Beta", "Alpha", "Alpha/deep"}));
    // Hidden files are listed, and those that are called like an excluded folder.
    QCOMPARE(indexed(),
             (QStringList{"b.txt", "Alpha/", "Beta/", ".hidden", ".git", "node_modules.txt",
                          "Program/", "empty/", "elsewhere/", "locked/", "Beta/three.txt",
                          "Alpha/One.TXT", "Alpha/deep/", "Alpha/deep/two.txt"}));
}

void FileIndexFlushTest::buildsOnce()
{
    const Mark mark;
    QCOMPARE(mark.scans, 1);
    FileIndex::build();
    QVERIFY(hasNotReadSince(mark));
    QCOMPARE(FakeFileSystem::busyCount(), 1); // the one watch
}

void FileIndexFlushTest::init()
{
    // Nothing of an earlier test is under way.
    QVERIFY(waitFor([] { return !isFlushDue(); }));
}

void FileIndexFlushTest::cleanup()
{
    FileIndex::setOnReady(&countReady);
    FakeFileSystem::release();
}

void FileIndexFlushTest::numbers()
{
    // Chosen with care, and everything else here goes by their names.
    QCOMPARE(FileIndex::ExpectedEntries, 90000);
    QCOMPARE(FileIndex::CoalesceMs, 800);
    QCOMPARE(FileIndex::MaxIncremental, 32);
    QCOMPARE(FileIndex::ShutdownWaitMs, 2000);
}

void FileIndexFlushTest::excludedPaths_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("isExcluded");
    QTest::newRow("nothing") << "" << false;
    QTest::newRow("plain") << "a/b.txt" << false;
    QTest::newRow("first part") << "node_modules/b.txt" << true;
    QTest::newRow("part in the middle") << "a/.git/b" << true;
    QTest::newRow("last part") << "a/b/__pycache__" << true;
    QTest::newRow("only part") << ".venv" << true;
    QTest::newRow("in capitals") << "a/APPDATA/b" << true;
    QTest::newRow("the system's own folder") << ".Programs/b" << true;
    QTest::newRow("a part of a name") << "a/node_modules2/b" << false;
    QTest::newRow("with a suffix") << "a/.git.txt" << false;
    QTest::newRow("without the dot") << "git/venv" << false;
    QTest::newRow("empty parts") << "//a///.git//" << true;
}

void FileIndexFlushTest::excludedPaths()
{
    QFETCH(QString, path);
    QTEST(FileIndex::isExcludedPath(QDir::toNativeSeparators(path)), "isExcluded");
}

void FileIndexFlushTest::singleChanges_data()
{
    QTest::addColumn<QString>("onDisk");
    QTest::addColumn<int>("action");
    QTest::addColumn<QString>("changed");
    QTest::addColumn<int>("readyCalls");
    const auto row = [](const char* name, const char* onDisk, Platform::FileAction action,
                        const QString& changed, int readyCalls) {
        QTest::newRow(name) << QString(onDisk) << static_cast<int>(action) << changed << readyCalls;
    };
    row("new file", "single/new.txt", Platform::FileAdded, "single/new.txt", 1);
    row("new name", "single/other.txt", Platform::FileRenamedNewName, "single/other.txt", 1);
    row("file that is known already", "b.txt", Platform::FileAdded, "b.txt", 0);
    row("file that has gone again", "", Platform::FileAdded, "single/gone.txt", 0);
    row("removed file that was never known", "", Platform::FileRemoved, "single/never.txt", 0);
    row("old name that was never known", "", Platform::FileRenamedOldName, "single/never.txt", 0);
    row("written file", "single/written.txt", Platform::FileModified, "single/written.txt", 0);
    row("unknown action", "single/x.txt", Platform::FileAction(77), "single/x.txt", 0);
    row("no action", "single/x.txt", Platform::FileAction(0), "single/x.txt", 0);
    row("empty path", "", Platform::FileAdded, "", 0);
    row("empty path removed", "", Platform::FileRemoved, "", 0);
    row("file in an excluded folder", "a/node_modules/x.txt", Platform::FileAdded,
        "a/node_modules/x.txt", 0);
    row("file with the name of an excluded folder", "a/Node_Modules", Platform::FileAdded,
        "a/Node_Modules", 0);
    row("excluded folder", "a/.git/", Platform::FileAdded, "a/.git", 0);
    row("file in the system's own folder", ".programs/x.txt", Platform::FileAdded,
        ".programs/x.txt", 0);
}

void FileIndexFlushTest::singleChanges()
{
    QFETCH(QString, onDisk);
    QFETCH(int, action);
    QFETCH(QString, changed);
    QFETCH(int, readyCalls);
    FakeFileSystem::add(onDisk);
    const QStringList before = indexed();
    const Mark mark;
    QVERIFY(flush({{{static_cast<quint32>(action), changed}}}));
    QCOMPARE(indexed(), readyCalls == 0 ? before : before + QStringList{changed});
    QCOMPARE(s_readyCount, mark.ready + readyCalls);
    QVERIFY(hasNotReadSince(mark));
}

void FileIndexFlushTest::changesFollowTheirOrder_data()
{
    QTest::addColumn<Changes>("changes");
    QTest::addColumn<QStringList>("names"); // of what is left in the folder, in the list's order
    const quint32 add = Platform::FileAdded;
    const quint32 remove = Platform::FileRemoved;
    QTest::newRow("added twice") << Changes{{add, "order/a"}, {add, "order/a"}} << QStringList{"a"};
    QTest::newRow("added and removed")
        << Changes{{add, "order/a"}, {remove, "order/a"}} << QStringList{};
    QTest::newRow("removed and added")
        << Changes{{add, "order/a"}, {add, "order/b"}, {remove, "order/a"}, {add, "order/a"}}
        << QStringList{"b", "a"};
    QTest::newRow("added and written")
        << Changes{{add, "order/a"}, {Platform::FileModified, "order/a"}} << QStringList{"a"};
    QTest::newRow("added and something unknown")
        << Changes{{add, "order/a"}, {77, "order/a"}} << QStringList{"a"};
    QTest::newRow("removed twice")
        << Changes{{add, "order/a"}, {remove, "order/a"}, {remove, "order/a"}} << QStringList{};
    QTest::newRow("names of one length and ending")
        << Changes{{add, "order/x1 and a long ending.txt"},
                   {add, "order/x2 and a long ending.txt"},
                   {add, "order/x3 and a long ending.txt"},
                   {remove, "order/x2 and a long ending.txt"}}
        << QStringList{"x1 and a long ending.txt", "x3 and a long ending.txt"};
    QTest::newRow("case makes another file")
        << Changes{{add, "order/a"}, {add, "order/A"}, {remove, "order/a"}} << QStringList{"A"};
    QTest::newRow("removed and there all the same")
        << Changes{{add, "order/a"}, {add, "order/b"}, {remove, "order/a"}}
        << QStringList{"b", "a"};
    QTest::newRow("only told to be gone") << Changes{{remove, "order/a"}} << QStringList{"a"};
}

void FileIndexFlushTest::changesFollowTheirOrder()
{
    QFETCH(Changes, changes);
    QFETCH(QStringList, names); // which are on the disk by then
    for (const QString& name : std::as_const(names))
        FakeFileSystem::add("order/" + name);
    QVERIFY(flush({changes}));
    const auto isInFolder = [](const QString& path) { return path.startsWith("order/"); };
    QStringList found;
    for (const QString& path : indexed()) {
        if (isInFolder(path))
            found.append(path.mid(6));
    }
    QCOMPARE(found, names);
    for (const QString& name : std::as_const(names)) {
        FakeFileSystem::remove("order/" + name);
        QVERIFY(flush({removed({"order/" + name})}));
    }
    const QStringList left = indexed();
    QVERIFY(std::none_of(left.begin(), left.end(), isInFolder));
}

void FileIndexFlushTest::renamedFileGoesToTheEnd()
{
    FakeFileSystem::add({"rename/old.txt", "rename/last.txt"});
    QVERIFY(flush({added({"rename/old.txt", "rename/last.txt"})}));
    FakeFileSystem::remove("rename/old.txt");
    FakeFileSystem::add("rename/Newer.txt");
    // A search in between, so that there are hits that must be forgotten.
    QCOMPARE(FileIndex::search("old", 9, FileIndex::Files).size(), 1);
    QVERIFY(flush({{{Platform::FileRenamedOldName, "rename/old.txt"},
                    {Platform::FileRenamedNewName, "rename/Newer.txt"}}}));
    QVERIFY(!isIndexed("rename/old.txt"));
    QCOMPARE(FileIndex::entries().last(), (Entry{full("rename/Newer.txt"), "newer.txt", false}));
    QVERIFY(FileIndex::search("old.", 9, FileIndex::Files).isEmpty());
    QCOMPARE(FileIndex::search("newer", 9, FileIndex::Files).size(), 1);
}

void FileIndexFlushTest::asManyAsTheLimitAreApplied()
{
    for (int i = 0; i < FileIndex::MaxIncremental; ++i)
        FakeFileSystem::add(QString("limit/%1.txt").arg(i));
    const Mark mark;
    QVERIFY(flush({numbered("limit/%1.txt", FileIndex::MaxIncremental)}));
    QVERIFY(isIndexed("limit/0.txt"));
    QVERIFY(isIndexed("limit/31.txt"));
    // The folder isn't there, as nobody told of it: nothing has been read.
    QVERIFY(!isIndexed("limit/"));
    QCOMPARE(s_readyCount, mark.ready + 1);
    QVERIFY(hasNotReadSince(mark));
}

void FileIndexFlushTest::moreThanTheLimitAreReadByAThread()
{
    for (int i = 0; i < FileIndex::MaxIncremental; ++i)
        FakeFileSystem::add(QString("beyond/%1.txt").arg(i));
    FakeFileSystem::add("beyond/first.txt");
    const Mark mark;
    const QStringList before = indexed();
    FakeFileSystem::looks();
    FakeFileSystem::listings();
    FakeFileSystem::hold();
    QVERIFY(flush(
        {added({"beyond/first.txt"}) + numbered("beyond/%1.txt", FileIndex::MaxIncremental)}));
    QVERIFY(waitFor(&FakeFileSystem::isHeld));
    QCOMPARE(indexed(), before); // not applied one by one
    FakeFileSystem::release();
    QVERIFY(hasReadSince(mark));
    QStringList expected = before;
    expected.append("beyond/first.txt");
    for (int i = 0; i < FileIndex::MaxIncremental; ++i)
        expected.append(QString("beyond/%1.txt").arg(i));
    QCOMPARE(indexed(), expected);
    QCOMPARE(FakeFileSystem::looks().size(), FileIndex::MaxIncremental + 1);
    QCOMPARE(FakeFileSystem::listings(), QStringList());
    QVERIFY(!isFlushDue());
    QVERIFY(hasNotReadSince(Mark())); // one was enough
}

void FileIndexFlushTest::lookedAtOnceAndFromAbove()
{
    FakeFileSystem::add({"above/in/deep/x.txt", "above/y.txt", "above beside.txt"});
    const Mark mark;
    FakeFileSystem::looks();
    FakeFileSystem::listings();
    QVERIFY(flush({added({"above/in", "above/in/deep/x.txt", "above beside.txt", "above",
                          "above/y.txt", "above/node_modules", "a/.git/b", "above"}) +
                   removed({"above/gone.txt", "above beside.txt"})}));
    QVERIFY(hasReadSince(mark));
    QCOMPARE(FakeFileSystem::looks(), (QStringList{"above beside.txt", "above"}));
    QCOMPARE(FakeFileSystem::listings(), (QStringList{"above", "above/in", "above/in/deep"}));
    QCOMPARE(indexed().last(6),
             (QStringList{"above beside.txt", "above/", "above/in/", "above/y.txt",
                          "above/in/deep/", "above/in/deep/x.txt"}));
}

void FileIndexFlushTest::readingBringsOnlyWhatIsNew()
{
    FakeFileSystem::add({"again/a.txt", "again/in/b.txt", "again/in/e.txt", "again/out/d.txt"});
    const Mark mark;
    QVERIFY(flush({added({"again"})}));
    QVERIFY(hasReadSince(mark));
    const QStringList before = indexed();

    // What was known already is no news, and stays where it was.
    const Mark secondMark;
    QVERIFY(flush({added({"again"})}));
    QVERIFY(waitFor([&] { return FakeFileSystem::readingCount() == secondMark.readings + 1; }));
    QVERIFY(hasNotReadSince({secondMark.scans, secondMark.readings + 1, 0}));
    QCOMPARE(s_readyCount, secondMark.ready + 1); // the witness
    QCOMPARE(indexed().first(before.size()), before);

    FakeFileSystem::add("again/in/news.txt");
    FakeFileSystem::remove("again/out");
    const Mark thirdMark;
    QVERIFY(flush({added({"again"})}));
    QVERIFY(hasReadSince(thirdMark));
    const QStringList after = indexed();
    QCOMPARE(after.filter(QRegularExpression("^again")),
             (QStringList{"again/", "again/a.txt", "again/in/", "again/in/b.txt", "again/in/e.txt",
                          "again/in/news.txt"}));
    QCOMPARE(FileIndex::search("news.t", 9, FileIndex::Files).size(), 1);
}

void FileIndexFlushTest::pathsBeyondAllMeasureAreAScan()
{
    FakeFileSystem::add("measure/x.txt");
    const Mark mark;
    constexpr int AtATime = 1000;
    constexpr int Batches = 101;
    QVector<Changes> batches;
    for (int i = 0; i < Batches; ++i)
        batches.append(numbered(QString("measure %1/%2.txt").arg(i).arg("%1"), AtATime));
    QVERIFY(flush(batches));
    QVERIFY(hasScannedSince(mark));
    QCOMPARE(FakeFileSystem::readingCount(), mark.readings);
    QVERIFY(isIndexed("measure/x.txt"));
    QVERIFY(endPause());
}

void FileIndexFlushTest::everyChangeCounts_data()
{
    QTest::addColumn<int>("action");
    QTest::addColumn<QString>("path");
    QTest::newRow("new file") << int(Platform::FileAdded) << "counts/new.txt";
    QTest::newRow("file that isn't there") << int(Platform::FileAdded) << "counts/gone.txt";
    QTest::newRow("in an excluded folder") << int(Platform::FileAdded) << "node_modules/x.txt";
    QTest::newRow("written file") << int(Platform::FileModified) << "b.txt";
    QTest::newRow("unknown action") << 77 << "b.txt";
    QTest::newRow("no path") << int(Platform::FileAdded) << "";
}

void FileIndexFlushTest::everyChangeCounts()
{
    QFETCH(int, action);
    QFETCH(QString, path);
    // Also one that would change nothing: the limit keeps the GUI thread from looking at each.
    const QString folder = QString("counts %1").arg(QTest::currentDataTag());
    FakeFileSystem::add({"counts/new.txt", folder + "/a.txt", folder + "/b.txt"});
    const Changes as32(32, {static_cast<quint32>(action), path});
    const Mark mark;
    QVERIFY(flush({as32.mid(1) + added({folder + "/a.txt"})}));
    QVERIFY(isIndexed(folder + "/a.txt"));
    QVERIFY(hasNotReadSince(mark));
    const Mark secondMark;
    QVERIFY(flush({as32 + added({folder + "/b.txt"})}));
    QVERIFY(hasReadSince(secondMark));
    QVERIFY(isIndexed(folder + "/b.txt"));
}

void FileIndexFlushTest::batchesAddUp()
{
    FakeFileSystem::add("sum/x.txt");
    const Mark mark;
    QVERIFY(flush({numbered("sum/%1.txt", 20), numbered("sum/%1.txt", 12), added({"sum/x.txt"})}));
    QVERIFY(hasReadSince(mark));
    QVERIFY(isIndexed("sum/x.txt"));

    // They are gone then: a few more are applied again.
    const Mark afterReading;
    FakeFileSystem::add("sum/y.txt");
    QVERIFY(flush({added({"sum/y.txt"})}));
    QCOMPARE(FileIndex::entries().last().path, full("sum/y.txt"));
    QVERIFY(hasNotReadSince(afterReading));
}

void FileIndexFlushTest::emptyBatchIsNoNews()
{
    FakeFileSystem::report({Changes(), Changes()});
    FakeFileSystem::awaitReports();
    QCoreApplication::sendPostedEvents();
    QVERIFY(!isFlushDue());
}

void FileIndexFlushTest::everyBatchRestartsTheTimer()
{
    FakeFileSystem::add({"quiet/a.txt", "quiet/b.txt"});
    FakeFileSystem::report({added({"quiet/a.txt"})});
    QVERIFY(waitFor(isFlushDue));
    QTimer* timer = coalesceTimer();
    QVERIFY(timer->isSingleShot());
    QCOMPARE(timer->interval(), FileIndex::CoalesceMs);
    const auto isHalfOver = [timer] { return timer->remainingTime() <= FileIndex::CoalesceMs / 2; };
    QVERIFY(waitFor(isHalfOver));
    FakeFileSystem::report({added({"quiet/b.txt"})});
    QVERIFY(waitFor([&] { return timer->isActive() && !isHalfOver(); }));
    QVERIFY(!isIndexed("quiet/a.txt"));
    QVERIFY(waitFor([] { return isIndexed("quiet/b.txt"); }));
    QVERIFY(isIndexed("quiet/a.txt"));
}

void FileIndexFlushTest::foldersAreReadByThemselves_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<int>("action");
    QTest::newRow("new") << "folders/new" << int(Platform::FileAdded);
    QTest::newRow("new name") << "folders/renamed" << int(Platform::FileRenamedNewName);
    QTest::newRow("removed") << "folders/new" << int(Platform::FileRemoved);
    QTest::newRow("old name") << "folders/renamed" << int(Platform::FileRenamedOldName);
}

void FileIndexFlushTest::foldersAreReadByThemselves()
{
    QFETCH(QString, folder);
    QFETCH(int, action);
    const bool isNew = action == Platform::FileAdded || action == Platform::FileRenamedNewName;
    if (isNew)
        FakeFileSystem::add({folder + "/within.txt", folder + "/deep/inner.txt"});
    else
        FakeFileSystem::remove(folder);
    const QStringList before = indexed();
    const Mark mark;
    FakeFileSystem::listings();
    QVERIFY(flush({{{static_cast<quint32>(action), folder}}}));
    QVERIFY(hasReadSince(mark));
    const QStringList contents{folder + '/', folder + "/within.txt", folder + "/deep/",
                               folder + "/deep/inner.txt"};
    if (isNew) {
        QCOMPARE(indexed(), before + contents);
        QCOMPARE(FakeFileSystem::listings(), (QStringList{folder, folder + "/deep"}));
    } else {
        QStringList rest = before;
        for (const QString& path : contents)
            QVERIFY(rest.removeOne(path));
        QCOMPARE(indexed(), rest);
        QCOMPARE(FakeFileSystem::listings(), QStringList());
    }
    QVERIFY(!isFlushDue());
}

void FileIndexFlushTest::readingIsWatchedAndForgets()
{
    FakeFileSystem::add({"forget/old/in/x.txt", "forget/y.txt"});
    const Mark mark;
    QVERIFY(flush({added({"forget"})}));
    QVERIFY(hasReadSince(mark));
    QVERIFY(FakeFileSystem::isListedUnderWatch("forget/old/in"));
    QVERIFY(!FakeFileSystem::forgotten().contains("forget"));

    FakeFileSystem::remove("forget/old");
    FakeFileSystem::add("forget/new/in/x.txt");
    const Mark secondMark;
    FakeFileSystem::hold();
    QVERIFY(flush({removed({"forget/old"}) + added({"forget/new"})}));
    QVERIFY(waitFor(&FakeFileSystem::isHeld));
    QCOMPARE(FakeFileSystem::forgotten(), QStringList()); // nothing before all was read
    FakeFileSystem::release();
    QVERIFY(hasReadSince(secondMark));
    QVERIFY(FakeFileSystem::isListedUnderWatch("forget/new/in"));
    QCOMPARE(FakeFileSystem::forgotten(), QStringList{"forget/old"});
}

void FileIndexFlushTest::whatIsNoFolderAnyMore()
{
    FakeFileSystem::add({"kinds/a/x.txt", "kinds/b"});
    const Mark mark;
    QVERIFY(flush({added({"kinds"})}));
    QVERIFY(hasReadSince(mark));
    FakeFileSystem::remove("kinds/a");
    FakeFileSystem::remove("kinds/b");
    FakeFileSystem::add({"kinds/a", "kinds/b/y.txt"});
    // Told in an order in which neither would look like a folder.
    const Mark secondMark;
    QVERIFY(flush({added({"kinds/a"}) + removed({"kinds/b"})}));
    QVERIFY(hasReadSince(secondMark));
    QCOMPARE(indexed().filter(QRegularExpression("^kinds/.")),
             (QStringList{"kinds/a", "kinds/b/", "kinds/b/y.txt"}));
    QCOMPARE(FakeFileSystem::forgotten(), QStringList{"kinds/a"});
    FakeFileSystem::remove("kinds/a");
    QVERIFY(flush({removed({"kinds/a"})}));
    QVERIFY(!isIndexed("kinds/a"));
}

void FileIndexFlushTest::filesThatChangePlaces()
{
    // In the order in which a system tells it: each name has gone once and come once.
    FakeFileSystem::add({"places/a", "places/b"});
    QVERIFY(flush({added({"places/a", "places/b"})}));
    QVERIFY(flush({{{Platform::FileRenamedOldName, "places/a"},
                    {Platform::FileRenamedNewName, "places/b"},
                    {Platform::FileRenamedOldName, "places/b"},
                    {Platform::FileRenamedNewName, "places/a"}}}));
    QVERIFY(isIndexed("places/a"));
    QVERIFY(isIndexed("places/b"));
}

void FileIndexFlushTest::overflowCausesAScan()
{
    FakeFileSystem::add("overflow/x.txt");
    const Mark mark;
    FakeFileSystem::looks();
    FakeFileSystem::reportOverflow();
    // Changes beside it aren't looked at, however few.
    QVERIFY(flush({added({"overflow/x.txt"})}));
    QVERIFY(hasScannedSince(mark));
    QVERIFY(isIndexed("overflow/"));
    QCOMPARE(FakeFileSystem::looks(), QStringList());
    // It is over with one scan.
    QVERIFY(hasNotReadSince(Mark()));
}

void FileIndexFlushTest::overflowsCauseAScanAtATime()
{
    // The one before has begun the pause.
    QTimer* pause = timerOf("fileLossTimer");
    QVERIFY(pause->isActive());
    QVERIFY(pause->isSingleShot());
    QCOMPARE(pause->interval(), 30000);
    FakeFileSystem::add({"losses/in/x.txt", "losses/y.txt"});
    const Mark mark;
    FakeFileSystem::reportOverflow();
    // Until it is over, what is told is looked at all the same.
    QVERIFY(flush({added({"losses/y.txt"})}));
    QVERIFY(isIndexed("losses/y.txt"));
    QVERIFY(hasNotReadSince({mark.scans, mark.readings, 0}));
    const Mark secondMark;
    FakeFileSystem::reportOverflow(); // once more is no more
    QVERIFY(flush({}));
    pause->start(0);
    QVERIFY(hasScannedSince(secondMark));
    QVERIFY(isIndexed("losses/in/x.txt"));
    // And the next one has to wait again.
    QVERIFY(pause->isActive());
    QCOMPARE(pause->interval(), 30000);
    const Mark thirdMark;
    pause->start(0);
    QVERIFY(waitFor([pause] { return !pause->isActive(); }));
    QVERIFY(hasNotReadSince(thirdMark)); // nothing was lost since
}

void FileIndexFlushTest::changesBeforeAFolderStandUntilItIsRead()
{
    FakeFileSystem::add({"stop/a.txt", "stop/b.txt", "stop/c.txt"});
    QVERIFY(flush({added({"stop/a.txt", "stop/b.txt", "stop/c.txt"})}));
    const qsizetype count = FileIndex::entries().size();
    QCOMPARE(FileIndex::search("c.txt", 9, FileIndex::Files).size(), 1);
    FakeFileSystem::remove("stop/a.txt");
    FakeFileSystem::remove("stop/b.txt");
    FakeFileSystem::add("stop/folder/");
    const Mark mark;
    FakeFileSystem::hold();
    QVERIFY(flush({removed({"stop/a.txt"}) + added({"stop/folder"}) + removed({"stop/b.txt"})}));
    QVERIFY(waitFor(&FakeFileSystem::isHeld));
    QCOMPARE(FileIndex::entries().size(), count - 1);
    QVERIFY(!isIndexed("stop/a.txt"));
    QVERIFY(isIndexed("stop/b.txt")); // behind the folder
    QCOMPARE(s_readyCount, mark.ready);
    // What was found before stands elsewhere in the list by now.
    QCOMPARE(FileIndex::search("c.txt", 9, FileIndex::Files),
             (QVector<Entry>{{full("stop/c.txt"), "c.txt", false}}));
    FakeFileSystem::release();
    QVERIFY(hasReadSince(mark));
    QVERIFY(!isIndexed("stop/b.txt"));
    QVERIFY(isIndexed("stop/folder/"));
}

void FileIndexFlushTest::changesDuringAReadingAreLookedAtBehindIt_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("few") << 1;
    QTest::newRow("more than the limit") << FileIndex::MaxIncremental + 1;
}

void FileIndexFlushTest::changesDuringAReadingAreLookedAtBehindIt()
{
    // The thread may have been past them by then.
    QFETCH(int, count);
    const QString folder = QString("during %1").arg(count);
    FakeFileSystem::add(folder + '/');
    const Mark mark;
    FakeFileSystem::hold();
    QVERIFY(flush({added({folder})}));
    QVERIFY(waitFor(&FakeFileSystem::isHeld));
    const QStringList before = indexed();
    const Changes changes = numbered(folder + " outside %1.txt", count);
    for (const Platform::TreeChange& change : changes)
        FakeFileSystem::add(change.rel);
    QVERIFY(flush({changes}));
    QCOMPARE(indexed(), before);
    QCOMPARE(s_readyCount, mark.ready);
    FakeFileSystem::release();
    QVERIFY(waitFor([&] { return s_readyCount == mark.ready + 1; }));
    QCOMPARE(indexed(), before + QStringList{folder + '/'});
    QVERIFY(isFlushDue());
    QCOMPARE(coalesceTimer()->interval(), FileIndex::CoalesceMs);
    coalesceTimer()->start(0);
    QVERIFY(waitFor([&] { return s_readyCount == mark.ready + 2; }));
    QVERIFY(isIndexed(changes.last().rel));
    QCOMPARE(indexed().size(), before.size() + 1 + count);
    QCOMPARE(FakeFileSystem::readingCount(), mark.readings + (count == 1 ? 1 : 2));
    QVERIFY(!isFlushDue());
    QVERIFY(hasNotReadSince(Mark()));
}

void FileIndexFlushTest::changesDuringAScanAreLookedAtBehindIt()
{
    QVERIFY(endPause());
    const Mark mark;
    FakeFileSystem::hold();
    FakeFileSystem::reportOverflow();
    QVERIFY(flush({}));
    QVERIFY(waitFor(&FakeFileSystem::isHeld));
    FakeFileSystem::remove("b.txt");
    QVERIFY(flush({removed({"b.txt"})}));
    QVERIFY(isIndexed("b.txt"));
    FakeFileSystem::reportOverflow();
    QVERIFY(flush({}));
    FakeFileSystem::release();
    QVERIFY(hasScannedSince(mark));
    QVERIFY(isFlushDue());
    // The loss has to wait, and the change hasn't.
    coalesceTimer()->start(0);
    QVERIFY(waitFor([] { return !isFlushDue(); }));
    QVERIFY(!isIndexed("b.txt"));
    QCOMPARE(FakeFileSystem::scanCount(), mark.scans + 1);
    const Mark secondMark;
    QVERIFY(endPause());
    QVERIFY(hasScannedSince(secondMark));
    QVERIFY(hasNotReadSince(Mark()));
}

void FileIndexFlushTest::oldListServesDuringAReading()
{
    const Mark mark;
    const QStringList before = indexed();
    FakeFileSystem::add("serving/x.txt");
    FakeFileSystem::hold();
    QVERIFY(flush({added({"serving"})}));
    QVERIFY(waitFor(&FakeFileSystem::isHeld));
    QVERIFY(FileIndex::isReady());
    QCOMPARE(indexed(), before);
    QCOMPARE(FileIndex::search("one.txt", 9, FileIndex::Files).size(), 1);
    FakeFileSystem::release();
    QVERIFY(hasReadSince(mark));
    QVERIFY(isIndexed("serving/x.txt"));
}

void FileIndexFlushTest::refreshReadsWhatIsNotWatched()
{
    FakeFileSystem::add({".quiet/a.txt", ".quiet/b.txt", "loud/c.txt"});
    const Mark mark;
    QVERIFY(flush({added({".quiet", "loud"})}));
    QVERIFY(hasReadSince(mark));
    QTimer* fresh = timerOf("fileFreshTimer");
    fresh->stop();
    const Mark secondMark;
    FileIndex::refresh(); // all is watched
    QVERIFY(!fresh->isActive());
    FakeFileSystem::setUnwatched({".quiet"});
    FakeFileSystem::add({".quiet/new.txt", "loud/new.txt"});
    FileIndex::refresh();
    QVERIFY(hasReadSince(secondMark));
    QVERIFY(isIndexed(".quiet/new.txt"));
    QVERIFY(!isIndexed("loud/new.txt"));

    // Not again for a minute.
    QVERIFY(fresh->isActive());
    QVERIFY(fresh->isSingleShot());
    QCOMPARE(fresh->interval(), 60000);
    const Mark thirdMark;
    FakeFileSystem::add(".quiet/late.txt");
    FileIndex::refresh();
    QVERIFY(hasNotReadSince(thirdMark));
    QVERIFY(!isIndexed(".quiet/late.txt"));

    // While a thread reads, it waits.
    const Mark fourthMark;
    fresh->stop();
    FakeFileSystem::add("loud/in/");
    FakeFileSystem::hold();
    QVERIFY(flush({added({"loud/in"})}));
    QVERIFY(waitFor(&FakeFileSystem::isHeld));
    FileIndex::refresh();
    FakeFileSystem::release();
    QVERIFY(waitFor([&] { return s_readyCount == fourthMark.ready + 1; }));
    QVERIFY(isFlushDue());
    coalesceTimer()->start(0);
    QVERIFY(waitFor([] { return isIndexed(".quiet/late.txt"); }));
    QCOMPARE(FakeFileSystem::readingCount(), fourthMark.readings + 2);
    FakeFileSystem::setUnwatched({});
}

void FileIndexFlushTest::refreshOfAllIsAScan()
{
    QVERIFY(endPause());
    timerOf("fileFreshTimer")->stop();
    FakeFileSystem::setUnwatched({""});
    FakeFileSystem::add("unseen.txt");
    const Mark mark;
    FileIndex::refresh();
    QVERIFY(isFlushDue());
    coalesceTimer()->start(0);
    QVERIFY(hasScannedSince(mark));
    QVERIFY(isIndexed("unseen.txt"));
    FakeFileSystem::setUnwatched({});
}

void FileIndexFlushTest::deliveryIsCompleteWhenItIsTold()
{
    // Within the call the list is the new one, nothing is remembered of the old one, and a thread
    // may begin again.
    const Mark mark;
    FakeFileSystem::add({"told/news.txt", "told later/x.txt"});
    QVERIFY(FileIndex::search("told", 9, FileIndex::Folders).isEmpty());
    FakeFileSystem::hold();
    QVERIFY(flush({added({"told"})}));
    QVERIFY(waitFor(&FakeFileSystem::isHeld));
    FakeFileSystem::report({added({"told later"})}); // which waits until the call
    QVERIFY(waitFor(isFlushDue));
    coalesceTimer()->stop();
    QVector<Entry> found;
    bool hasFlushed = false;
    FileIndex::setOnReady([&] {
        FileIndex::setOnReady(&countReady);
        found = FileIndex::search("told", 9, FileIndex::Folders);
        coalesceTimer()->start(0);
        hasFlushed = waitFor([] { return !isFlushDue(); });
        countReady();
    });
    FakeFileSystem::release();
    QVERIFY(waitFor([&mark] { return s_readyCount == mark.ready + 2; }));
    QVERIFY(hasFlushed);
    QCOMPARE(found, (QVector<Entry>{{full("told"), "told", true}}));
    QCOMPARE(FakeFileSystem::readingCount(), mark.readings + 2);
    QVERIFY(isIndexed("told later/x.txt"));
    QVERIFY(hasNotReadSince(Mark()));
}

void FileIndexFlushTest::callbackMayBeReplacedWithinACall()
{
    const int ready = s_readyCount;
    const auto guard = std::make_shared<int>(0);
    FileIndex::setOnReady([guard] {
        FileIndex::setOnReady({});
        ++*guard;
        ++s_readyCount;
    });
    FakeFileSystem::add({"replace/a.txt", "replace/b.txt"});
    QVERIFY(flush({added({"replace/a.txt"})}));
    QCOMPARE(s_readyCount, ready + 1);
    QCOMPARE(guard.use_count(), 1);
    // None is as good as any.
    QVERIFY(flush({added({"replace/b.txt"})}));
    QVERIFY(isIndexed("replace/b.txt"));
    QCOMPARE(s_readyCount, ready + 1);
}

namespace
{

void print(const QString& line)
{
    QTextStream(stdout) << line << '\n';
}

void startIndex()
{
    FakeFileSystem::add({"A.txt", "b.txt"});
    FileIndex::setOnReady(&countReady);
    FileIndex::build();
}

int runIgnoringCase(const QStringList&)
{
    FakeFileSystem::setCaseSensitivity(Qt::CaseInsensitive);
    startIndex();
    if (!waitFor(&FileIndex::isReady))
        return 1;
    FakeFileSystem::add("C.txt");
    FakeFileSystem::remove("b.txt");
    // Known under another case: nothing to add. Removed under another case: it goes.
    if (!flush({added({"a.TXT", "c.txt"}) + removed({"B.TXT"})}))
        return 1;
    print(indexed().join(' '));
    // Another name for the same file, and two that QString's own folding would take for one.
    FakeFileSystem::remove("A.txt");
    const QString sharpS = QString::fromUtf16(u"\u00df.txt");
    FakeFileSystem::add({"a.txt", sharpS, "ss.txt"});
    if (!flush({Changes{{Platform::FileRenamedOldName, "A.txt"},
                        {Platform::FileRenamedNewName, "a.txt"}} +
                added({sharpS, "ss.txt"})}))
        return 1;
    print(indexed().join(' ').toUtf8().toPercentEncoding(" "));
    return 0;
}

int runWithoutWatcher(const QStringList&)
{
    FakeFileSystem::refuseWatcher();
    startIndex();
    if (!waitFor(&FileIndex::isReady))
        return 1;
    print(indexed().join(' '));
    print(FakeFileSystem::isWatching() ? "watching" : "not watching");
    QTimer::singleShot(0, &QCoreApplication::quit);
    return QCoreApplication::exec();
}

int runWithBrokenWatch(const QStringList&)
{
    startIndex();
    if (!waitFor(&FileIndex::isReady) || !waitFor(&FakeFileSystem::isWatching))
        return 1;
    FakeFileSystem::breakWatch();
    FakeFileSystem::report({}); // wakes it
    if (!waitFor([] { return FakeFileSystem::busyCount() == 0; }))
        return 1;
    print(FileIndex::search("a", 9, FileIndex::Files).isEmpty() ? "nothing" : "found");
    QTimer::singleShot(0, &QCoreApplication::quit);
    return QCoreApplication::exec();
}

QElapsedTimer s_quitting; ///< started with the end of the application

/// What is left after the application: nothing may have been started or still be running. In the
/// last line how many milliseconds the end took.
void printRest()
{
    print(QString("%1 busy, %2 scans")
              .arg(FakeFileSystem::busyCount())
              .arg(FakeFileSystem::threadCount()));
    print(QString::number(s_quitting.elapsed()));
}

int quitApplication()
{
    s_quitting.start();
    QTimer::singleShot(0, &QCoreApplication::quit);
    const int code = QCoreApplication::exec();
    // What was still on its way arrives at an index that has come to its end.
    QCoreApplication::sendPostedEvents();
    if (!isFlushDue())
        return code;
    coalesceTimer()->start(0);
    if (!waitFor([] { return !isFlushDue(); }))
        return 1;
    // Nobody waits for a scan that begins only now, so this gives it time to be counted.
    return QTest::qWaitFor([] { return FakeFileSystem::threadCount() > 1; }, kStartMs) ? 1 : code;
}

int runQuit(const QStringList& arguments)
{
    const QString& when = arguments.first();
    // Routines run in the opposite order, so this one comes behind the index's own.
    qAddPostRoutine(printRest);
    const bool isScanStuck = when == "a scan is stuck" || when == "both threads are stuck";
    const bool isWatchStuck = when == "the watch is stuck" || when == "both threads are stuck";
    if (isScanStuck || when == "a scan ends meanwhile")
        FakeFileSystem::hold();
    if (isWatchStuck)
        FakeFileSystem::jamWatch();
    if (when == "a scan ends meanwhile") {
        // Before the index is told, which then waits for the thread.
        QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit,
                         &FakeFileSystem::release);
    }
    s_quitting.start();
    startIndex();
    if (when == "the loop never ran")
        return 0;
    if (isWatchStuck && !waitFor(&FakeFileSystem::isWatching))
        return 1;
    if (isScanStuck)
        return waitFor(&FakeFileSystem::isHeld) ? quitApplication() : 1;
    if (when == "a scan has just begun")
        return quitApplication();
    if (when == "a scan ends meanwhile") {
        const int code = waitFor(&FakeFileSystem::isHeld) ? quitApplication() : 1;
        print(FileIndex::isReady() ? "delivered" : "not delivered");
        return code;
    }
    if (!waitFor(&FileIndex::isReady))
        return 1;
    if (when == "changes are reported without end")
        FakeFileSystem::reportWithoutEnd(added({"b.txt"}));
    if (when == "a flush is due" || when == "changes are reported without end") {
        FakeFileSystem::reportOverflow();
        if (!waitFor(isFlushDue))
            return 1;
    }
    return quitApplication();
}

} // namespace

void FileIndexFlushTest::caseIsIgnoredWhereTheSystemDoes()
{
    const FreshProcess::Outcome outcome = FreshProcess::run("ignoring case", {});
    QVERIFY(outcome.hasExited);
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(QString(outcome.output), "A.txt c.txt\nc.txt a.txt %C3%9F.txt ss.txt\n");
}

void FileIndexFlushTest::withoutAWatcherTheIndexStandsStill()
{
    const FreshProcess::Outcome outcome = FreshProcess::run("without watcher", {});
    QVERIFY(outcome.hasExited);
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(QString(outcome.output), "A.txt b.txt\nnot watching\n");
}

void FileIndexFlushTest::brokenWatchLeavesTheIndexUsable()
{
    const FreshProcess::Outcome outcome = FreshProcess::run("broken watch", {});
    QVERIFY(outcome.hasExited);
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(QString(outcome.output), "found\n");
}

void FileIndexFlushTest::quit_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<int>("waits"); // for threads that don't end
    const QStringList clean{"0 busy, 1 scans"};
    QTest::newRow("the index is at rest") << clean << 0;
    QTest::newRow("a scan has just begun") << clean << 0;
    QTest::newRow("a scan ends meanwhile") << QStringList{"not delivered"} + clean << 0;
    QTest::newRow("a flush is due") << clean << 0;
    QTest::newRow("changes are reported without end") << clean << 0;
    QTest::newRow("the loop never ran") << clean << 0;
    // Each of the threads gets its time, once, and then the process goes its way.
    QTest::newRow("a scan is stuck") << QStringList{"1 busy, 1 scans"} << 1;
    QTest::newRow("the watch is stuck") << QStringList{"1 busy, 1 scans"} << 1;
    QTest::newRow("both threads are stuck") << QStringList{"2 busy, 1 scans"} << 2;
}

void FileIndexFlushTest::quit()
{
    QFETCH(int, waits);
    const FreshProcess::Outcome outcome = FreshProcess::run("quit", {QTest::currentDataTag()});
    QVERIFY(outcome.hasExited);
    QCOMPARE(outcome.exitCode, 0);
    QStringList lines = QString(outcome.output).split('\n', Qt::SkipEmptyParts);
    QVERIFY(!lines.isEmpty());
    const int elapsedMs = lines.takeLast().toInt();
    QTEST(lines, "lines");
    QVERIFY2(elapsedMs >= waits * 2000 - kClockMs, qPrintable(QString::number(elapsedMs)));
}

int main(int argc, char** argv)
{
    return FreshProcess::main<FileIndexFlushTest>(argc, argv,
                                                  {{"ignoring case", runIgnoringCase},
                                                   {"without watcher", runWithoutWatcher},
                                                   {"broken watch", runWithBrokenWatch},
                                                   {"quit", runQuit}});
}

#include "tst_fileindexflush.moc"
