// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FileSearch.h"
#include "FolderFilter.h"
#include "TestHome.h"

#include <QDir>
#include <QTest>

/// What doesn't show in the index, which forgets whenever its list changes.
class FileSearchTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void cleanup();
    void longerQueryLooksAtTheHitsAlone();
    void choiceIsAskedForOnceAFolder_data();
    void choiceIsAskedForOnceAFolder();
    void choiceTakesInNewFolders();
};

namespace
{

QStringList found(FileSearch& search, const FileStore& store, const QString& query)
{
    QStringList names;
    for (const FileStore::Id id : search.best(store, query, 1000, false))
        names.append(store.name(id));
    return names;
}

QString native(const QString& path)
{
    return QDir::toNativeSeparators(path);
}

} // namespace

void FileSearchTest::cleanup()
{
    FolderFilter::setFolders({});
}

void FileSearchTest::longerQueryLooksAtTheHitsAlone()
{
    // Which entries a search looks at shows in one that comes in behind its back.
    FileStore store("/r");
    FileSearch search;
    store.append(FileStore::Root, u"lark one", false);
    QCOMPARE(found(search, store, "lark"), QStringList{"lark one"});
    store.append(FileStore::Root, u"lark other", false);
    const QStringList both{"lark one", "lark other"};

    QCOMPARE(found(search, store, "lark"), QStringList{"lark one"});
    QVERIFY(search.best(store, "lark", 9, true).isEmpty());
    QCOMPARE(found(search, store, "lark o"), QStringList{"lark one"});
    QCOMPARE(found(search, store, "lark ot"), QStringList());
    // Shorter than the last one, so that all are looked at, though it is longer than the first.
    QCOMPARE(found(search, store, "lark o"), both);
    QCOMPARE(found(search, store, "lark ot"), QStringList{"lark other"});

    // Nor does one go on from a query that it has at its end.
    QCOMPARE(found(search, store, "lark"), both);
    store.append(FileStore::Root, u"a lark", false);
    QCOMPARE(found(search, store, "a lark"), QStringList{"a lark"});
    QCOMPARE(found(search, store, "lark"), both + QStringList{"a lark"});

    store.append(FileStore::Root, u"lark at last", false);
    search.forgetNarrowing();
    QCOMPARE(found(search, store, "lark").size(), 4);
}

void FileSearchTest::choiceIsAskedForOnceAFolder_data()
{
    QTest::addColumn<QStringList>("chosen");
    QTest::newRow("none") << QStringList{};
    QTest::newRow("a folder") << QStringList{native("/r/a")};
    QTest::newRow("in another case") << QStringList{native("/R/A")};
    QTest::newRow("with a separator") << QStringList{native("/r/a/")};
    QTest::newRow("the root of the list") << QStringList{native("/r")};
    QTest::newRow("above it") << QStringList{native("/")};
    QTest::newRow("beside it") << QStringList{native("/rr")};
    QTest::newRow("beginning alike") << QStringList{native("/r/a/b b")};
    QTest::newRow("one inside another") << QStringList{native("/r/a"), native("/r/a/b")};
    QTest::newRow("a file") << QStringList{native("/r/x")};
    QTest::newRow("two") << QStringList{native("/r/c"), native("/r/a/b")};
}

void FileSearchTest::choiceIsAskedForOnceAFolder()
{
    QFETCH(QStringList, chosen);
    FileStore store(native("/r"));
    const FileStore::Folder a = store.addFolder(FileStore::Root, u"a");
    const FileStore::Folder b = store.addFolder(a, u"b");
    const FileStore::Folder c = store.addFolder(FileStore::Root, u"c");
    const FileStore::Folder longer = store.addFolder(a, u"b b");
    for (const FileStore::Folder folder : {FileStore::Root, a, b, c, longer})
        store.append(folder, u"x", false);
    FolderFilter::setFolders(chosen);
    QStringList expected;
    for (FileStore::Id id = store.begin(); id != store.end(); id = store.next(id)) {
        if (FolderFilter::accepts(store.path(id)))
            expected.append(store.path(id));
    }
    FileSearch search;
    QStringList actual;
    for (const FileStore::Id id : search.best(store, "x", 9, false))
        actual.append(store.path(id));
    QCOMPARE(actual, expected);
}

void FileSearchTest::choiceTakesInNewFolders()
{
    FileStore store(native("/r"));
    FileSearch search;
    const FileStore::Folder a = store.addFolder(FileStore::Root, u"a");
    store.append(a, u"first", false);
    store.append(FileStore::Root, u"first of all", false);
    FolderFilter::setFolders({native("/r/a")});
    QCOMPARE(found(search, store, "first"), QStringList{"first"});
    store.append(store.addFolder(a, u"b"), u"first below", false);
    search.forgetNarrowing();
    QCOMPARE(found(search, store, "first"), (QStringList{"first", "first below"}));
    FolderFilter::setFolders({native("/r/a/b")});
    QCOMPARE(found(search, store, "first"), QStringList{"first below"});
    // Another list, in which the numbers mean other folders.
    FileStore other(native("/r"));
    other.append(other.addFolder(FileStore::Root, u"z"), u"first of z", false);
    other.append(other.addFolder(other.addFolder(FileStore::Root, u"a"), u"b"), u"first", false);
    search.forgetAll();
    QCOMPARE(found(search, other, "first"), QStringList{"first"});
}

QTEST_MAIN(FileSearchTest)
#include "tst_filesearch.moc"
