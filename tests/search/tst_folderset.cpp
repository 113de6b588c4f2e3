// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FolderFilter.h"
#include "FolderSet.h"
#include "TestHome.h"

#include <QDir>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

class FolderSetTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void isAbove_data();
    void isAbove();
    void noFoldersAreAboveNothing();
    void lastAnswerIsNotThatOfOthers();
    void agreesWithTheFilter_data();
    void agreesWithTheFilter();
    void tenThousandFolders();
};

namespace
{

QString native(const QString& path)
{
    return QDir::toNativeSeparators(path);
}

QStringList native(QStringList paths)
{
    for (QString& path : paths)
        path = native(path);
    return paths;
}

/// The rule, folder by folder.
bool isUnderAny(const QString& path, const QStringList& folders)
{
    return std::any_of(folders.begin(), folders.end(), [&path](const QString& folder) {
        return FolderFilter::isUnder(path, folder);
    });
}

} // namespace

void FolderSetTest::isAbove_data()
{
    QTest::addColumn<QStringList>("folders");
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("isAbove");
    const auto row = [](const char* name, const QStringList& folders, const char* path,
                        bool isAbove) {
        QTest::newRow(name) << native(folders) << native(QString::fromUtf8(path)) << isAbove;
    };
    const QStringList docs{"/home/me/Docs"};
    row("a file in it", docs, "/home/me/Docs/a.txt", true);
    row("a file deep in it", docs, "/home/me/Docs/b/c/a.txt", true);
    row("the folder itself", docs, "/home/me/Docs", false);
    row("the folder itself with a separator", docs, "/home/me/Docs/", true);
    row("the folder above", docs, "/home/me", false);
    row("a sibling with a longer name", docs, "/home/me/Docsier/a", false);
    row("a sibling of the same length", docs, "/home/me/Dogs/a", false);
    row("of another case", {"/HOME/me/dOCS"}, "/home/me/Docs/a", true);
    row("beyond ASCII", {QStringLiteral("/home/ÄRGER")}, "/home/\xC3\xA4rger/a", true);
    row("no path", docs, "", false);
    row("a path without a folder", {"/"}, "a.txt", false);
    row("an empty folder", {""}, "/home/me/a.txt", false);
    row("a root", {"/"}, "/a.txt", true);
    row("the root itself", {"/"}, "/", true);
    row("a drive", {"C:/"}, "c:/a.txt", true);
    row("the drive itself", {"C:/"}, "C:/", true);
    row("another drive", {"C:/"}, "D:/a.txt", false);
    row("a drive without its separator", {"C:/"}, "C:", false);
    row("a folder with a separator at its end", {"/home/me/Docs/"}, "/home/me/Docs/a", true);
    row("two separators", {"/home/me/Docs//"}, "/home/me/Docs/a", false);
    row("under the first of several", {"/a", "/home/b/c", "/d"}, "/a/x", true);
    row("under the longest of several", {"/a", "/home/b/c", "/d"}, "/home/b/c/x", true);
    row("under none of several", {"/a", "/home/b/c", "/d"}, "/home/b/d/x", false);
    row("under one in another", {"/a", "/a/b"}, "/a/c/x", true);
    row("the same twice", {"/a", "/A/"}, "/a/x", true);
}

void FolderSetTest::isAbove()
{
    QFETCH(QStringList, folders);
    QFETCH(QString, path);
    QTEST(FolderSet(folders).isAbove(path), "isAbove");
    QCOMPARE(FolderSet(folders).isAbove(path), isUnderAny(path, folders));
}

void FolderSetTest::noFoldersAreAboveNothing()
{
    for (const QString& path : {QString(), native("/"), native("/home/a.txt")}) {
        QVERIFY(!FolderSet().isAbove(path));
        QVERIFY(!FolderSet(QStringList()).isAbove(path));
    }
}

void FolderSetTest::lastAnswerIsNotThatOfOthers()
{
    const FolderSet set(native(QStringList{"/home/ab", "/"}));
    QVERIFY(set.isAbove(native("/home/ab/a")));
    const FolderSet two(native(QStringList{"/home/ab"}));
    QVERIFY(two.isAbove(native("/home/ab/a")));
    QVERIFY(two.isAbove(native("/home/ab/b")));
    QVERIFY(!two.isAbove(native("/home/ac/b"))); // as long
    QVERIFY(!two.isAbove(native("/home/abc")));
    QVERIFY(two.isAbove(native("/home/AB/b")));
    QVERIFY(!two.isAbove("b"));
    QVERIFY(two.isAbove(native("/home/ab/c/b")));
    QVERIFY(!two.isAbove(native("/home/ab")));
}

void FolderSetTest::agreesWithTheFilter_data()
{
    QTest::addColumn<QStringList>("names");
    const auto row = [](const char* name, const QStringList& names) {
        QTest::newRow(name) << names;
    };
    row("plain", {"a", "b", "ab", "abc"});
    row("of two cases", {"a", "A", "b", "B", "Ab"});
    row("with empty ones", {"", "a", "aa", ""});
    row("beyond ASCII", {QStringLiteral("ä"), QStringLiteral("Ä"), QStringLiteral("ß"),
                         QStringLiteral("ss"), QStringLiteral("ẞ"), QStringLiteral("ſ")});
    row("in pairs", {QStringLiteral("\U00010400"), QStringLiteral("\U00010428"),
                     QStringLiteral("\U0001F600"), QString(QChar(0xd801)), QString(QChar(0xdc00))});
    row("the separators of both systems", {"/", "\\", "a"});
}

void FolderSetTest::agreesWithTheFilter()
{
    QFETCH(QStringList, names);
    QRandomGenerator random(1);
    const auto makePath = [&] {
        QStringList parts;
        for (int i = random.bounded(5); i >= 0; --i)
            parts.append(names.at(random.bounded(int(names.size()))));
        return native(QString(random.bounded(4) > 0 ? "/" : "") + parts.join('/') +
                      (random.bounded(4) == 0 ? "/" : ""));
    };
    int countUnder = 0;
    int count = 0;
    for (int round = 0; round < 50; ++round) {
        QStringList folders;
        for (int i = 0; i < 4; ++i)
            folders.append(makePath());
        const FolderSet set(folders);
        for (int i = 0; i < 60; ++i, ++count) {
            const QString path = makePath();
            const bool isUnder = isUnderAny(path, folders);
            if (set.isAbove(path) != isUnder)
                QFAIL(qPrintable(path + " in " + folders.join(" | ")));
            countUnder += isUnder ? 1 : 0;
        }
    }
    QVERIFY(countUnder > 0 && countUnder < count);
}

void FolderSetTest::tenThousandFolders()
{
    constexpr int Count = 10000;
    QStringList folders;
    for (int i = 0; i < Count; ++i)
        folders.append(native(QString("/home/me/%1/folder %2").arg(i % 100).arg(i)));
    const FolderSet set(folders);
    for (int i = 0; i < Count; ++i) {
        const QString folder = native(QString("/home/ME/%1/Folder %2").arg(i % 100).arg(i));
        QVERIFY(set.isAbove(folder + native("/a.txt")));
        QVERIFY(!set.isAbove(folder + native("x/a.txt")));
        QVERIFY(!set.isAbove(folder));
    }
}

QTEST_GUILESS_MAIN(FolderSetTest)
#include "tst_folderset.moc"
