// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FolderFilter.h"
#include "FolderPaths.h"
#include "FolderTree.h"
#include "TestHome.h"

#include <QDir>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

class FolderTreeTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void counts_data();
    void counts();
    void everyFolderOfAListHasItsCount();
    void noPathIsNoCount();
    void orderDoesNotMatter();
    void foldersFromAboveToBelow();
    void agreesWithTheFilter_data();
    void agreesWithTheFilter();
};

using FolderPaths::isUnderAny;
using FolderPaths::native;

namespace
{

/// The folder of an entry; the path of one without any is empty.
FolderTree::Place folderOf(const FolderTree& tree, const QString& path)
{
    const qsizetype end = path.lastIndexOf(QDir::separator());
    return end < 0 ? FolderTree::Place() : tree.placeOf(QStringView(path).first(end));
}

QVector<qsizetype> countsOf(const QStringList& folders, const QStringList& paths)
{
    FolderTree tree(folders);
    for (const QString& path : paths)
        tree.add(folderOf(tree, path), 1);
    return tree.counts();
}

/// The same, one folder after the other and path by path.
QVector<qsizetype> filtered(const QStringList& folders, const QStringList& paths)
{
    QVector<qsizetype> counts;
    for (const QString& folder : folders)
        counts.append(std::count_if(paths.begin(), paths.end(), [&folder](const QString& path) {
            return FolderFilter::isUnder(path, folder);
        }));
    return counts;
}

/// What a home holds, folder by folder.
const QStringList kHome = native(
    QStringList{"/home/me/Docs", "/home/me/Docsier", "/home/me/Music", "/home/me/a.txt",
                "/home/me/Docs/a.txt", "/home/me/Docs/b.txt", "/home/me/Docs/sub",
                "/home/me/Docs/sub/c.txt", "/home/me/Docs/sub/deep", "/home/me/Docs/sub/deep/d.txt",
                "/home/me/Docsier/e.txt", "/home/me/DOCS/f.txt", "/home/me/Music/g.mp3"});

} // namespace

void FolderTreeTest::counts_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<qsizetype>("count");
    const auto row = [](const char* name, const char* folder, qsizetype count) {
        QTest::newRow(name) << native(QString::fromUtf8(folder)) << count;
    };
    row("files and folders alike, but not itself", "/home/me/Docs", 7);
    row("of any case", "/HOME/me/dOCS", 7);
    row("separator at its end", "/home/me/Docs/", 7);
    row("two separators at its end", "/home/me/Docs//", 0);
    row("name that goes on", "/home/me/Docsier", 1);
    row("beginning of a name", "/home/me/Doc", 0);
    row("folder in a folder", "/home/me/Docs/sub", 3);
    row("nothing in it", "/home/me/Docs/sub/deep/x", 0);
    row("a file", "/home/me/a.txt", 0);
    row("the home", "/home/me", 13);
    row("above the home", "/home", 13);
    row("root", "/", 13);
    row("another root", "C:/", 0);
    row("elsewhere", "/srv", 0);
    row("none", "", 0);
    row("no path", "home", 0);
}

void FolderTreeTest::counts()
{
    QFETCH(QString, folder);
    QFETCH(qsizetype, count);
    QCOMPARE(countsOf({folder}, kHome), QVector<qsizetype>{count});
    QCOMPARE(filtered({folder}, kHome), QVector<qsizetype>{count});
}

void FolderTreeTest::everyFolderOfAListHasItsCount()
{
    const QStringList folders = native(QStringList{"/home/me/Music", "/home/me/Docs/sub", "",
                                                   "/home/me/docs", "/home/me/Docs", "/none"});
    QCOMPARE(countsOf(folders, kHome), QVector<qsizetype>({1, 3, 0, 7, 7, 0}));
}

void FolderTreeTest::noPathIsNoCount()
{
    QCOMPARE(countsOf({}, kHome), QVector<qsizetype>());
    QCOMPARE(countsOf({native("/home")}, {}), QVector<qsizetype>{0});
    QCOMPARE(countsOf({native("/home")}, {QString(), QString()}), QVector<qsizetype>{0});
}

void FolderTreeTest::orderDoesNotMatter()
{
    const QStringList folders =
        native(QStringList{"/home/me/Docs", "/home/me/Docs/sub", "/home/me/Music"});
    QStringList paths = kHome;
    do {
        QCOMPARE(countsOf(folders, paths), QVector<qsizetype>({7, 3, 1}));
    } while (std::next_permutation(paths.end() - 6, paths.end()));
}

void FolderTreeTest::foldersFromAboveToBelow()
{
    const FolderTree tree(native(QStringList{"/home/me/Docs", "/home/me/Docs/sub/deep"}));
    const FolderTree::Place me = tree.placeOf(native("/home/me"));
    QVERIFY(!tree.isUnderAny(me));
    QVERIFY(!tree.hasNothingBelow(me));
    const FolderTree::Place docs = tree.below(me, u"DOCS");
    QVERIFY(tree.isUnderAny(docs));
    QVERIFY(!tree.hasNothingBelow(docs));
    const FolderTree::Place deep = tree.below(tree.below(docs, u"sub"), u"deep");
    QVERIFY(tree.isUnderAny(deep));
    QVERIFY(tree.hasNothingBelow(deep));
    const FolderTree::Place other = tree.below(docs, u"other");
    QVERIFY(tree.isUnderAny(other));
    QVERIFY(tree.hasNothingBelow(other));
    QVERIFY(tree.isUnderAny(tree.below(other, u"deep")));
    const FolderTree::Place music = tree.below(me, u"Music");
    QVERIFY(!tree.isUnderAny(music));
    QVERIFY(!tree.isUnderAny(tree.below(music, u"Docs")));
    QVERIFY(FolderTree().hasNothingBelow(FolderTree::Place()));
}

void FolderTreeTest::agreesWithTheFilter_data()
{
    FolderPaths::addNameRows();
}

void FolderTreeTest::agreesWithTheFilter()
{
    QFETCH(QStringList, names);
    QRandomGenerator random(1);
    for (int round = 0; round < 50; ++round) {
        QStringList folders;
        QStringList paths;
        for (int i = 0; i < 8; ++i)
            folders.append(FolderPaths::random(random, names));
        for (int i = 0; i < 60; ++i)
            paths.append(FolderPaths::random(random, names));
        if (round % 2 == 0)
            paths.sort(); // as they come from an index
        QCOMPARE(countsOf(folders, paths), filtered(folders, paths));
        const FolderTree tree(folders);
        for (const QString& path : paths)
            QCOMPARE(tree.isUnderAny(folderOf(tree, path)), isUnderAny(path, folders));
    }
}

QTEST_GUILESS_MAIN(FolderTreeTest)
#include "tst_foldertree.moc"
