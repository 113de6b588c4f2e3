// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "TestFiles.h"
#include "TestHome.h"
#include "WatchRun.h"

#include <QTest>

using Platform::FileAdded;
using Platform::FileRemoved;
using Platform::FileRenamedNewName;
using Platform::FileRenamedOldName;

class TreeWatcherTest : public QObject, private TestTree
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void fileIsCreatedAndRemoved_data();
    void fileIsCreatedAndRemoved();
    void fileIsRenamed();
    void fileIsMovedToAnotherDirectory();
    void contentsAreNotReported();
    void newDirectoryIsWatched();
    void newDirectoriesInEachOtherAreWatched();
    void renamedDirectoryHasItsNewPath();
    void directoryRenamedTwiceHasItsLastPath();
    void directoryMovedInIsWatched();
    void directoryMovedOutIsNotWatched();
    void nameIsUsedAgain();
    void orderIsKept();
    void missingRootEndsTheRun();
    void stopEndsTheRun();
    void stopBeforeTheRun();
    void stopTwice();

private:
    void rename(const QString& from, const QString& to) const
    {
        QVERIFY(QDir().rename(path(from), path(to)));
    }

    std::unique_ptr<QTemporaryDir> m_elsewhere;
};

void TreeWatcherTest::init()
{
    makeRoot();
    m_elsewhere = TestFiles::newDirectory("elsewhere");
}

void TreeWatcherTest::fileIsCreatedAndRemoved_data()
{
    QTest::addColumn<QString>("rel");
    QTest::newRow("in the root") << "letter.txt";
    QTest::newRow("below") << "a/b/c/letter.txt";
    QTest::newRow("in a hidden directory") << "a/.config/letter.txt";
    QTest::newRow("blanks") << "two words/two  words";
    QTest::newRow("Japanese") << QString::fromUtf8("日本語/手紙");
    QTest::newRow("beyond the basic plane") << QString::fromUtf8("a/\U0001F600");
    QTest::newRow("byte order mark") << QString(QChar(0xFEFF)) + "a/" + QChar(0xFEFF);
}

void TreeWatcherTest::fileIsCreatedAndRemoved()
{
    QFETCH(QString, rel);
    makeDirectory(QFileInfo(rel).path());
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    makeFile(rel);
    QTRY_COMPARE(watch.actionsOf(rel), QVector<quint32>({FileAdded}));
    QVERIFY(QFile::remove(path(rel)));
    QTRY_COMPARE(watch.actionsOf(rel), QVector<quint32>({FileAdded, FileRemoved}));
    QVERIFY(!watch.wasABatchEmpty());
}

void TreeWatcherTest::fileIsRenamed()
{
    makeFile("old");
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    rename("old", "new");
    QTRY_COMPARE(watch.actionsOf("new"), QVector<quint32>({FileRenamedNewName}));
    QCOMPARE(watch.actionsOf("old"), QVector<quint32>({FileRenamedOldName}));
}

void TreeWatcherTest::fileIsMovedToAnotherDirectory()
{
    makeDirectory("from");
    makeDirectory("to");
    makeFile("from/file");
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    rename("from/file", "to/file");
    // One system calls it a renaming, another a removal and an addition.
    QTRY_COMPARE(watch.actionsOf("to/file").size(), 1);
    QTRY_COMPARE(watch.actionsOf("from/file").size(), 1);
    const quint32 came = watch.actionsOf("to/file").constFirst();
    const quint32 went = watch.actionsOf("from/file").constFirst();
    QVERIFY(came == FileAdded || came == FileRenamedNewName);
    QVERIFY(went == FileRemoved || went == FileRenamedOldName);
}

void TreeWatcherTest::contentsAreNotReported()
{
    makeFile("file");
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    QFile file(path("file"));
    QVERIFY(file.open(QIODevice::Append));
    QCOMPARE(file.write("more"), 4);
    file.close();
    QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    makeFile("marker");
    QTRY_VERIFY(watch.hasSeen(FileAdded, "marker"));
    QCOMPARE(watch.actionsOf("file"), QVector<quint32>());
}

void TreeWatcherTest::newDirectoryIsWatched()
{
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    makeDirectory("new");
    QTRY_VERIFY(watch.hasSeen(FileAdded, "new"));
    makeFile("new/file");
    QTRY_VERIFY(watch.hasSeen(FileAdded, "new/file"));
}

void TreeWatcherTest::newDirectoriesInEachOtherAreWatched()
{
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    // All at once: the inner ones are there before the outer one can be watched.
    makeDirectory("a/b/c/d/e/f/g/h");
    makeDirectory("a/b/2/d/e");
    QTRY_VERIFY(watch.hasSeen(FileAdded, "a"));
    for (const QString rel : {"a", "a/b", "a/b/c/d", "a/b/c/d/e/f/g/h", "a/b/2/d/e"}) {
        makeFile(rel + "/file");
        QTRY_VERIFY2(watch.hasSeen(FileAdded, rel + "/file"), qPrintable(rel));
    }
}

void TreeWatcherTest::renamedDirectoryHasItsNewPath()
{
    makeDirectory("old/inner/most");
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    rename("old", "new");
    QTRY_COMPARE(watch.actionsOf("new"), QVector<quint32>({FileRenamedNewName}));
    QCOMPARE(watch.actionsOf("old"), QVector<quint32>({FileRenamedOldName}));
    makeFile("new/file");
    makeFile("new/inner/most/file");
    QTRY_VERIFY(watch.hasSeen(FileAdded, "new/file"));
    QTRY_VERIFY(watch.hasSeen(FileAdded, "new/inner/most/file"));
    QVERIFY(!watch.hasSeen(FileAdded, "old/file"));
}

void TreeWatcherTest::directoryRenamedTwiceHasItsLastPath()
{
    makeDirectory("first/inner");
    makeDirectory("other");
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    rename("first", "second");
    rename("second", "other/third");
    QVERIFY(watch.isWatched("other/third"));
    QVERIFY(watch.isWatched("other/third/inner"));
}

void TreeWatcherTest::directoryMovedInIsWatched()
{
    QVERIFY(QDir().mkpath(m_elsewhere->filePath("comes/inner")));
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    QVERIFY(QDir().rename(m_elsewhere->filePath("comes"), path("came")));
    QTRY_COMPARE(watch.actionsOf("came").size(), 1);
    makeFile("came/inner/file");
    QTRY_VERIFY(watch.hasSeen(FileAdded, "came/inner/file"));
}

void TreeWatcherTest::directoryMovedOutIsNotWatched()
{
    makeDirectory("goes/inner");
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    QVERIFY(QDir().rename(path("goes"), m_elsewhere->filePath("gone")));
    QTRY_COMPARE(watch.actionsOf("goes").size(), 1);
    watch.forget();
    QVERIFY(TestFiles::write(m_elsewhere->filePath("gone/file")));
    QVERIFY(TestFiles::write(m_elsewhere->filePath("gone/inner/file")));
    makeFile("marker");
    QTRY_VERIFY(watch.hasSeen(FileAdded, "marker"));
    QCOMPARE(watch.changes().size(), 1);
}

void TreeWatcherTest::nameIsUsedAgain()
{
    makeDirectory("a/inner");
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    rename("a", "b");
    makeDirectory("a/inner");
    QVERIFY(watch.isWatched("a"));
    QVERIFY(watch.isWatched("a/inner"));
    QVERIFY(watch.isWatched("b"));
    QVERIFY(watch.isWatched("b/inner"));
    QVERIFY(QDir(path("a")).removeRecursively());
    makeDirectory("a/other");
    QVERIFY(watch.isWatched("a/other"));
    QVERIFY(watch.isWatched("b/inner"));
}

void TreeWatcherTest::orderIsKept()
{
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    watch.forget();
    constexpr int Count = 300;
    for (int i = 0; i < Count; ++i)
        makeFile(QString::number(i));
    QTRY_VERIFY(watch.hasSeen(FileAdded, QString::number(Count - 1)));
    const QVector<Platform::TreeChange> changes = watch.changes();
    QCOMPARE(changes.size(), Count);
    for (int i = 0; i < Count; ++i)
        QCOMPARE(changes.at(i).rel, QString::number(i));
}

void TreeWatcherTest::missingRootEndsTheRun()
{
    WatchRun watch(path("nowhere"));
    QTRY_VERIFY(watch.hasEnded());
    QCOMPARE(watch.overflows(), 0);
}

void TreeWatcherTest::stopEndsTheRun()
{
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    QVERIFY(!watch.hasEnded());
    watch.stop();
    QTRY_VERIFY(watch.hasEnded());
    const qsizetype before = watch.changes().size();
    makeFile("too late");
    QCOMPARE(watch.changes().size(), before);
}

void TreeWatcherTest::stopBeforeTheRun()
{
    const auto watcher = Platform::TreeWatcher::create(root());
    QVERIFY(watcher);
    watcher->stop();
    int calls = 0;
    watcher->run({[&](QVector<Platform::TreeChange>&&) { ++calls; }, [&] { ++calls; }});
    QCOMPARE(calls, 0);
}

void TreeWatcherTest::stopTwice()
{
    WatchRun watch(root());
    QVERIFY(watch.isWatched());
    watch.stop();
    watch.stop();
    QTRY_VERIFY(watch.hasEnded());
    watch.stop();
}

QTEST_MAIN(TreeWatcherTest)
#include "tst_treewatcher.moc"
