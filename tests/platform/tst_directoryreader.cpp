// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "DirectoryReader.h"
#include "TestFiles.h"
#include "TestHome.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRandomGenerator>
#include <QTest>

using Platform::DirectoryItem;
using Platform::DirectoryReader;
using Platform::PathKind;

class DirectoryReaderTest : public QObject, private TestTree
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void listsFilesAndDirectories();
    void namesComeBackUnchanged_data();
    void namesComeBackUnchanged();
    void emptyDirectoryIsRead();
    void directoriesThatCantBeRead_data();
    void directoriesThatCantBeRead();
    void directoryMadeLaterIsRead();
    void sameDirectoryIsReadAgain();
    void wholeTreeIsFound();
    void directoriesInAnyOrder();
    void manyNamesInOneDirectory();
    void kindOf_data();
    void kindOf();
    void programDataFolderIsAName();
    void caseSensitivityIsThatOfTheSystem();
};

namespace
{

using Listing = QMap<QString, DirectoryItem>;

bool listInto(DirectoryReader& reader, const QString& directory, Listing& listing)
{
    return reader.list(directory, [&](DirectoryItem&& item) { listing.insert(item.name, item); });
}

/// Depth first, as the index walks. Directories end with a separator.
QStringList walk(const QString& root)
{
    const std::unique_ptr<DirectoryReader> reader = DirectoryReader::create(root);
    QStringList found;
    QStringList stack = {root};
    while (!stack.isEmpty()) {
        const QString directory = stack.takeLast();
        reader->list(directory, [&](DirectoryItem&& item) {
            const QString path = directory + QDir::separator() + item.name;
            found.append(item.isDir ? path + QDir::separator() : path);
            if (item.enter)
                stack.append(path);
        });
    }
    found.sort();
    return found;
}

QStringList walkByQt(const QString& root)
{
    QStringList found;
    QDirIterator it(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = QDir::toNativeSeparators(it.next());
        found.append(it.fileInfo().isDir() ? path + QDir::separator() : path);
    }
    found.sort();
    return found;
}

} // namespace

void DirectoryReaderTest::init()
{
    makeRoot();
}

void DirectoryReaderTest::listsFilesAndDirectories()
{
    makeFile("letter.txt");
    makeFile(".hidden");
    makeDirectory("pictures");
    makeDirectory(".config");
    makeFile("pictures/not here.png");
    Listing listing;
    QVERIFY(listInto(*DirectoryReader::create(root()), root(), listing));
    QCOMPARE(listing.keys(), QStringList({".config", ".hidden", "letter.txt", "pictures"}));
    QVERIFY(!listing["letter.txt"].isDir);
    QVERIFY(!listing["letter.txt"].enter);
    QVERIFY(!listing[".hidden"].isDir);
    QVERIFY(listing["pictures"].isDir);
    QVERIFY(listing["pictures"].enter);
    QVERIFY(listing[".config"].isDir);
    QVERIFY(listing[".config"].enter);
}

void DirectoryReaderTest::namesComeBackUnchanged_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("blanks") << "two  words.txt";
    QTest::newRow("dots") << "a.tar.gz";
    QTest::newRow("three dots") << "...a";
    QTest::newRow("capitals") << "README.TXT";
    QTest::newRow("accents, composed") << QString::fromUtf8("M\u00fasica");
    QTest::newRow("accents, decomposed") << QString::fromUtf8("Mu\u0301sica");
    QTest::newRow("Japanese") << QString::fromUtf8("日本語");
    QTest::newRow("beyond the basic plane") << QString::fromUtf8("\U0001F600 smile");
    QTest::newRow("byte order mark") << QString(QChar(0xFEFF)) + "list";
    QTest::newRow("right to left") << QString::fromUtf8("\u202Egnp");
    QTest::newRow("percent") << "100%25.txt";
    QTest::newRow("quotes") << "it's #1 & 'co'";
    QTest::newRow("long") << QString(200, 'n');
}

void DirectoryReaderTest::namesComeBackUnchanged()
{
    QFETCH(QString, name);
    makeFile(name);
    makeDirectory("directories/" + name);
    makeFile("directories/" + name + "/inside");
    const auto reader = DirectoryReader::create(root());
    Listing listing;
    QVERIFY(listInto(*reader, root(), listing));
    QStringList names = {name, "directories"};
    names.sort();
    QCOMPARE(listing.keys(), names);
    Listing inside;
    QVERIFY(listInto(*reader, path("directories/" + name), inside));
    QCOMPARE(inside.keys(), QStringList("inside"));
}

void DirectoryReaderTest::emptyDirectoryIsRead()
{
    Listing listing;
    QVERIFY(listInto(*DirectoryReader::create(root()), root(), listing));
    QVERIFY(listing.isEmpty());
}

void DirectoryReaderTest::directoriesThatCantBeRead_data()
{
    QTest::addColumn<QString>("rel");
    QTest::newRow("missing") << "nowhere";
    QTest::newRow("missing, two levels") << "nowhere/else";
    QTest::newRow("a file") << "file";
    QTest::newRow("below a file") << "file/inside";
}

void DirectoryReaderTest::directoriesThatCantBeRead()
{
    QFETCH(QString, rel);
    makeFile("file");
    makeDirectory("directory");
    const auto reader = DirectoryReader::create(root());
    Listing listing;
    QVERIFY(!listInto(*reader, path(rel), listing));
    QVERIFY(listing.isEmpty());
    // It isn't the end of the reader.
    QVERIFY(listInto(*reader, root(), listing));
    QCOMPARE(listing.keys(), QStringList({"directory", "file"}));
}

void DirectoryReaderTest::directoryMadeLaterIsRead()
{
    const auto reader = DirectoryReader::create(root());
    Listing listing;
    QVERIFY(listInto(*reader, root(), listing));
    makeFile("new");
    makeDirectory("a/b");
    makeFile("a/b/c");
    QVERIFY(listInto(*reader, path("a/b"), listing));
    QCOMPARE(listing.keys(), QStringList("c"));
}

void DirectoryReaderTest::sameDirectoryIsReadAgain()
{
    makeFile("file");
    makeDirectory("sub");
    makeFile("sub/inner");
    const auto reader = DirectoryReader::create(root());
    for (int round = 0; round < 3; ++round) {
        Listing listing;
        QVERIFY(listInto(*reader, root(), listing));
        QCOMPARE(listing.size(), 2);
        Listing inner;
        QVERIFY(listInto(*reader, path("sub"), inner));
        QVERIFY(listInto(*reader, path("sub"), inner));
        QCOMPARE(inner.keys(), QStringList("inner"));
    }
}

void DirectoryReaderTest::wholeTreeIsFound()
{
    QRandomGenerator random(20260101);
    QStringList directories = {QString()};
    for (int i = 0; i < 400; ++i) {
        const QString parent = directories.at(random.bounded(directories.size()));
        const QString rel = parent + QStringLiteral("%1%2").arg(QChar('a' + i % 7)).arg(i);
        if (i % 3 == 0) {
            makeDirectory(rel);
            directories.append(rel + '/');
        } else {
            makeFile(rel);
        }
    }
    const QStringList found = walk(root());
    QCOMPARE(found.size(), 400);
    QCOMPARE(found, walkByQt(root()));
}

void DirectoryReaderTest::directoriesInAnyOrder()
{
    QRandomGenerator random(7);
    QStringList directories = {"d"};
    makeDirectory("d");
    makeFile("d/in");
    for (int i = 0; i < 60; ++i) {
        // Names that begin alike, so that one path is the beginning of another's text.
        const QString rel = directories.at(random.bounded(directories.size())) + "/d" +
                            QString(random.bounded(3), 'd') + QString::number(i);
        makeDirectory(rel);
        makeFile(rel + "/in " + QString::number(i));
        directories.append(rel);
    }
    const auto reader = DirectoryReader::create(root());
    for (int i = 0; i < 500; ++i) {
        const QString rel = directories.at(random.bounded(directories.size()));
        Listing listing;
        QVERIFY(listInto(*reader, path(rel), listing));
        QStringList expected =
            QDir(path(rel)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::NoSort);
        expected.sort();
        QCOMPARE(listing.keys(), expected);
    }
}

void DirectoryReaderTest::manyNamesInOneDirectory()
{
    // More than any buffer takes at once.
    constexpr int Count = 6000;
    for (int i = 0; i < Count; ++i)
        makeFile(QStringLiteral("a file with quite a long name, number %1").arg(i));
    int visits = 0;
    Listing listing;
    QVERIFY(DirectoryReader::create(root())->list(root(), [&](DirectoryItem&& item) {
        ++visits;
        listing.insert(item.name, item);
    }));
    QCOMPARE(visits, Count);
    QCOMPARE(listing.size(), Count);
}

void DirectoryReaderTest::kindOf_data()
{
    QTest::addColumn<QString>("rel");
    QTest::addColumn<PathKind>("kind");
    QTest::newRow("file") << "dir/file" << PathKind::File;
    QTest::newRow("directory") << "dir" << PathKind::Directory;
    QTest::newRow("hidden directory") << "dir/.hidden" << PathKind::Directory;
    QTest::newRow("missing") << "dir/other" << PathKind::Missing;
    QTest::newRow("in a missing directory") << "other/file" << PathKind::Missing;
    QTest::newRow("below a file") << "dir/file/file" << PathKind::Missing;
}

void DirectoryReaderTest::kindOf()
{
    QFETCH(QString, rel);
    makeDirectory("dir/.hidden");
    makeFile("dir/file");
    const std::unique_ptr<DirectoryReader> reader = DirectoryReader::create(root());
    QTEST(reader->kindOf(path(rel)), "kind");
    // Another time, and between listings, with the same reader.
    Listing listing;
    QVERIFY(listInto(*reader, path("dir"), listing));
    QTEST(reader->kindOf(path(rel)), "kind");
    QVERIFY(listInto(*reader, path("dir"), listing));
    QCOMPARE(listing.size(), 2);
    QCOMPARE(reader->kindOf(root()), PathKind::Directory);
    QCOMPARE(reader->kindOf(QString()), PathKind::Missing);
}

void DirectoryReaderTest::programDataFolderIsAName()
{
    const QString name = Platform::programDataFolderName();
    QVERIFY(!name.isEmpty());
    QVERIFY(!name.contains('/'));
    QVERIFY(!name.contains('\\'));
}

void DirectoryReaderTest::caseSensitivityIsThatOfTheSystem()
{
    makeFile("letter");
    QCOMPARE(Platform::pathCaseSensitivity() == Qt::CaseInsensitive,
             QFileInfo::exists(path("LETTER")));
}

QTEST_MAIN(DirectoryReaderTest)
#include "tst_directoryreader.moc"
