// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "DirectoryReader.h"
#include "FileStore.h"
#include "FileTree.h"
#include "NameBytes.h"
#include "NameMatcher.h"
#include "TestHome.h"

#include <QDir>
#include <QMap>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <numeric>
#include <optional>
#include <utility>
#include <vector>

using FileTree::entriesIn;
using FileTree::entriesOf;
using FileTree::hasFoldersOf;
using FileTree::joined;
using FileTree::renew;
using FileTree::sorted;
using FileTree::Tree;
using FileTree::withoutNested;

class FileStoreTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void emptyList();
    void namesComeBack_data();
    void namesComeBack();
    void pathsOfNestedFolders();
    void caseOfFolders();
    void listGoesOverManyPieces();
    void findsPlaces();
    void removes_data();
    void removes();
    void countsByFolder();
    void hitsTellTheirQuality_data();
    void hitsTellTheirQuality();
    void narrowLooksAtTheHitsAlone();
    void behavesLikeAPlainList();
    void rootOfAFileSystem();
    void exactSpellingFirst();
    void renewalKeepsWhatIsKnown();
    void renewalTakesTheNewSpelling();
    void renewalDropsNamesListedTwice();
    void renewalOfThousandsOfFolders();
    void renewalIsAFreshReading_data();
    void renewalIsAFreshReading();
    void removalsLeaveNoHoles();
};

namespace
{

constexpr int kOverManyPieces = 10000; // several times as many as lie in one

QStringList pathsIn(const FileStore& store)
{
    QStringList paths;
    for (FileStore::Id id = store.begin(); id != store.end(); id = store.next(id))
        paths.append(store.path(id));
    return paths;
}

QStringList found(const FileStore& store, const QString& wanted)
{
    std::vector<FileStore::Hit> hits;
    store.search(NameMatcher(NameBytes::fromText(wanted)), hits);
    QStringList names;
    for (const FileStore::Hit hit : hits)
        names.append(store.name(hit.id));
    return names;
}

FileStore numbered(int count)
{
    FileStore store("/r");
    for (int i = 0; i < count; ++i)
        store.append(FileStore::Root, QString("File %1").arg(i), false);
    return store;
}

QString native(const QString& path)
{
    return QDir::toNativeSeparators(path);
}

} // namespace

void FileStoreTest::emptyList()
{
    const FileStore store;
    QCOMPARE(store.size(), 0);
    QCOMPARE(store.begin(), store.end());
    QCOMPARE(store.folderCount(), 1U);
    QCOMPARE(found(store, "a"), QStringList());
    QVERIFY(!store.childOf(FileStore::Root, u"a"));
    QCOMPARE(store.countsByFolder(), std::vector<quint32>{0});
}

void FileStoreTest::namesComeBack_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("lower case") << "readme.txt";
    QTest::newRow("upper case") << "README.TXT";
    QTest::newRow("empty") << "";
    QTest::newRow("beyond ASCII") << QString::fromUtf16(u"\u00dcBER.txt");
    QTest::newRow("lower case of another length") << QString(QChar(0x130)) + "stanbul";
    QTest::newRow("a pair") << QString::fromUtf16(u"\U00010400");
    QTest::newRow("half a pair") << "A" + QString(QChar(0xd83d));
    QTest::newRow("a byte order mark") << QChar(QChar::ByteOrderMark) + QString("List.txt");
    QTest::newRow("a line feed") << "a\nB";
    QTest::newRow("long") << QString(10000, 'W') + "x";
}

void FileStoreTest::namesComeBack()
{
    QFETCH(QString, name);
    FileStore store("/r");
    store.append(FileStore::Root, u"before", false);
    const FileStore::Id id = store.append(FileStore::Root, name, true);
    store.append(FileStore::Root, u"After", false);
    QCOMPARE(store.name(id), name);
    QCOMPARE(store.lowerName(id), name.toLower());
    QCOMPARE(store.path(id), "/r" + QString(QDir::separator()) + name);
    QVERIFY(store.isDir(id));
    QVERIFY(!store.isDir(store.begin()));
    QCOMPARE(store.name(store.last()), QString("After"));
    if (!name.isEmpty())
        QVERIFY(found(store, name.toLower()).contains(name));
}

void FileStoreTest::pathsOfNestedFolders()
{
    FileStore store(native("/home/u"));
    const FileStore::Folder a = store.addFolder(FileStore::Root, u"a");
    const FileStore::Folder b = store.addFolder(a, QString::fromUtf16(u"\u00fc B"));
    const FileStore::Folder c = store.addFolder(b, u"");
    QCOMPARE(store.folderPath(FileStore::Root), native("/home/u"));
    QCOMPARE(store.folderPath(b), native(QString::fromUtf16(u"/home/u/a/\u00fc B")));
    QCOMPARE(store.folderName(c), QString());
    QCOMPARE(store.parentOf(b), a);
    QCOMPARE(store.path(store.append(b, u"x", false)),
             native(QString::fromUtf16(u"/home/u/a/\u00fc B/x")));
    QCOMPARE(store.childOf(a, QString::fromUtf16(u"\u00fc B")), std::optional(b));
    QVERIFY(!store.childOf(FileStore::Root, QString::fromUtf16(u"\u00fc B")));
    QVERIFY(!store.childOf(b, u"x")); // a file
}

void FileStoreTest::caseOfFolders()
{
    FileStore store("/r");
    const FileStore::Folder folder =
        store.addFolder(FileStore::Root, QString::fromUtf16(u"\u00c4 \U00010400"));
    const bool isIgnored = Platform::pathCaseSensitivity() == Qt::CaseInsensitive;
    const auto other = store.childOf(FileStore::Root, QString::fromUtf16(u"\u00e4 \U00010428"));
    QCOMPARE(other, isIgnored ? std::optional(folder) : std::nullopt);
    const FileStore::Id id = store.append(FileStore::Root, u"File", false);
    const std::vector<FileStore::Place> places{{FileStore::Root, "FILE"}};
    QCOMPARE(store.find(places).at(0), isIgnored ? std::optional(id) : std::nullopt);
}

void FileStoreTest::listGoesOverManyPieces()
{
    const FileStore store = numbered(kOverManyPieces);
    QCOMPARE(store.size(), kOverManyPieces);
    QStringList expected;
    for (int i = 0; i < kOverManyPieces; ++i)
        expected.append("/r" + QString(QDir::separator()) + QString("File %1").arg(i));
    QCOMPARE(pathsIn(store), expected);
    QCOMPARE(found(store, "file 9999"), QStringList{"File 9999"});
    QCOMPARE(found(store, "file").size(), kOverManyPieces);
    QCOMPARE(found(store, "FILE").size(), 0);
}

void FileStoreTest::findsPlaces()
{
    FileStore store("/r");
    const FileStore::Folder folder = store.addFolder(FileStore::Root, u"sub");
    store.append(FileStore::Root, u"sub", true);
    const FileStore::Id first = store.append(folder, u"Same", false);
    store.append(folder, u"Same", false);
    const FileStore::Id other = store.append(FileStore::Root, u"Same", false);
    const std::vector<FileStore::Place> places{{folder, "Same"},
                                               {FileStore::Root, "Same"},
                                               {folder, "sub"},
                                               {folder, "Sam"},
                                               {folder, "Same"}};
    const std::vector<std::optional<FileStore::Id>> expected{first, other, std::nullopt,
                                                             std::nullopt, first};
    QCOMPARE(store.find(places), expected);
    QVERIFY(store.find({}).empty());
}

void FileStoreTest::removes_data()
{
    QTest::addColumn<QList<int>>("numbers");
    QTest::newRow("none") << QList<int>{};
    QTest::newRow("the first") << QList<int>{0};
    QTest::newRow("the last") << QList<int>{kOverManyPieces - 1};
    QTest::newRow("in no order, one twice") << QList<int>{9000, 5, 4096, 4095, 5, 6};
    QList<int> piece(4096);
    std::iota(piece.begin(), piece.end(), 4096);
    QTest::newRow("a whole piece") << piece;
    QList<int> all(kOverManyPieces);
    std::iota(all.begin(), all.end(), 0);
    QTest::newRow("all") << all;
}

void FileStoreTest::removes()
{
    QFETCH(QList<int>, numbers);
    FileStore store = numbered(kOverManyPieces);
    QStringList expected = pathsIn(store);
    std::vector<FileStore::Id> ids;
    for (const int number : numbers) {
        FileStore::Id id = store.begin();
        for (int i = 0; i < number; ++i)
            id = store.next(id);
        ids.push_back(id);
        expected[number].clear();
    }
    expected.removeAll(QString());
    store.remove(ids);
    QCOMPARE(pathsIn(store), expected);
    QCOMPARE(store.size(), expected.size());
    QCOMPARE(found(store, "file").size(), expected.size());
    // It goes on behind the last one.
    store.append(FileStore::Root, u"More", false);
    QCOMPARE(store.name(store.last()), QString("More"));
    QCOMPARE(pathsIn(store).size(), expected.size() + 1);
}

void FileStoreTest::countsByFolder()
{
    FileStore store("/r");
    const FileStore::Folder a = store.addFolder(FileStore::Root, u"a");
    const FileStore::Folder b = store.addFolder(a, u"b");
    store.append(b, u"1", false);
    store.append(FileStore::Root, u"a", true);
    store.append(b, u"2", false);
    QCOMPARE(store.countsByFolder(), (std::vector<quint32>{1, 0, 2}));
}

void FileStoreTest::hitsTellTheirQuality_data()
{
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<bool>("begins");
    QTest::addColumn<bool>("isWhole");
    QTest::newRow("whole") << "name" << true << true;
    QTest::newRow("beginning") << "na" << true << false;
    QTest::newRow("inside") << "am" << false << false;
    QTest::newRow("end") << "me" << false << false;
}

void FileStoreTest::hitsTellTheirQuality()
{
    QFETCH(QString, wanted);
    FileStore store("/r");
    store.append(FileStore::Root, u"NAME", true);
    std::vector<FileStore::Hit> hits;
    store.search(NameMatcher(NameBytes::fromText(wanted)), hits);
    QCOMPARE(hits.size(), 1U);
    QVERIFY(hits.front().isDir);
    QTEST(bool(hits.front().begins), "begins");
    QTEST(bool(hits.front().isWhole), "isWhole");
}

void FileStoreTest::narrowLooksAtTheHitsAlone()
{
    FileStore store = numbered(20);
    std::vector<FileStore::Hit> hits;
    store.search(NameMatcher("file 1"), hits);
    QCOMPARE(hits.size(), 11U);
    hits.erase(hits.begin()); // "File 1"
    store.narrow(NameMatcher("1"), hits);
    QCOMPARE(hits.size(), 10U);
    QVERIFY(!hits.front().begins);
    store.narrow(NameMatcher("file 15"), hits);
    QCOMPARE(hits.size(), 1U);
    QVERIFY(hits.front().isWhole);
}

void FileStoreTest::behavesLikeAPlainList()
{
    struct Plain
    {
        FileStore::Folder folder;
        QString name;
        bool isDir;
    };
    QRandomGenerator random(15);
    FileStore store("/r");
    std::vector<Plain> plain;
    const auto step = [&](int number) {
        if (random.bounded(3) > 0 || plain.empty()) {
            const FileStore::Folder folder = random.bounded(store.folderCount());
            const QString name = QString("N%1%2").arg(random.bounded(40)).arg(QChar(0xe9));
            const bool isDir = random.bounded(5) == 0;
            if (isDir)
                store.addFolder(folder, name);
            store.append(folder, name, isDir);
            plain.push_back({folder, name, isDir});
            return;
        }
        std::vector<FileStore::Id> ids;
        std::vector<Plain> kept;
        FileStore::Id id = store.begin();
        for (const Plain& entry : plain) {
            if (random.bounded(number) < 3)
                ids.push_back(id);
            else
                kept.push_back(entry);
            id = store.next(id);
        }
        store.remove(ids);
        plain = std::move(kept);
    };
    for (int number = 10; number < 1500; ++number) {
        step(number);
        QCOMPARE(store.size(), static_cast<qsizetype>(plain.size()));
    }
    FileStore::Id id = store.begin();
    for (const Plain& entry : plain) {
        QCOMPARE(store.folderOf(id), entry.folder);
        QCOMPARE(store.name(id), entry.name);
        QCOMPARE(store.isDir(id), entry.isDir);
        id = store.next(id);
    }
    QCOMPARE(id, store.end());
    QVERIFY(plain.size() > 100);
}

void FileStoreTest::rootOfAFileSystem()
{
    FileStore store(native("/"));
    const FileStore::Folder etc = store.addFolder(FileStore::Root, u"etc");
    QCOMPARE(store.folderPath(etc), native("/etc"));
    QCOMPARE(store.path(store.append(etc, u"x", false)), native("/etc/x"));
    QCOMPARE(store.path(store.append(FileStore::Root, u"y", false)), native("/y"));
    std::vector<FolderTree::Place> places;
    const FolderTree tree({native("/etc"), native("/")});
    store.addPlaces(tree, places);
    for (const FolderTree::Place place : places)
        QVERIFY(tree.isUnderAny(place));
    const FolderTree inner({native("/etc")});
    places.clear();
    store.addPlaces(inner, places);
    QVERIFY(!inner.isUnderAny(places[FileStore::Root]));
    QVERIFY(inner.isUnderAny(places[etc]));
}

void FileStoreTest::exactSpellingFirst()
{
    // Where case counts they are different things anyway.
    FileStore store("/r");
    const FileStore::Folder upper = store.addFolder(FileStore::Root, u"DIR");
    const FileStore::Folder lower = store.addFolder(FileStore::Root, u"dir");
    const FileStore::Folder mixed = store.addFolder(FileStore::Root, u"Dir");
    QCOMPARE(store.childOf(FileStore::Root, u"DIR"), std::optional(upper));
    QCOMPARE(store.childOf(FileStore::Root, u"dir"), std::optional(lower));
    QCOMPARE(store.childOf(FileStore::Root, u"Dir"), std::optional(mixed));
    const FileStore::Id first = store.append(FileStore::Root, u"FILE", false);
    const FileStore::Id second = store.append(FileStore::Root, u"file", false);
    const FileStore::Id third = store.append(FileStore::Root, u"File", false);
    const std::vector<FileStore::Place> places{
        {FileStore::Root, "File"}, {FileStore::Root, "file"}, {FileStore::Root, "FILE"}};
    QCOMPARE(store.find(places), (std::vector<std::optional<FileStore::Id>>{third, second, first}));
}

void FileStoreTest::renewalKeepsWhatIsKnown()
{
    Tree tree{{{"a", true}, {"a/1", false}, {"a/in", true}, {"a/in/2", false}, {"b", false}}};
    FileStore store = readAll(tree);
    const QStringList before = entriesIn(store);
    const auto in = store.childOf(*store.childOf(FileStore::Root, u"a"), u"in");
    QVERIFY(!renew(store, tree, {"a", "b", "never", "c/never"}).hasChanged);
    QCOMPARE(entriesIn(store), before);
    QVERIFY(!store.childOf(FileStore::Root, u"c"));

    // A folder in which something changed comes to the end, and the others stay.
    tree.entries.insert("a/0", false);
    const FileStore::Renewal renewal = renew(store, tree, {"a"});
    QVERIFY(renewal.hasChanged);
    QVERIFY(!renewal.areFoldersRenumbered);
    QCOMPARE(entriesIn(store), (QStringList{"a/", "b", "a/in/2", "a/0", "a/1", "a/in/"}));
    QCOMPARE(store.childOf(*store.childOf(FileStore::Root, u"a"), u"in"), in);

    tree.remove("a");
    QVERIFY(renew(store, tree, {"a"}).hasChanged);
    QCOMPARE(entriesIn(store), QStringList{"b"});
    QVERIFY(!store.childOf(FileStore::Root, u"a"));
    // A folder that is gone tells nothing of itself.
    std::vector<FolderTree::Place> places;
    const FolderTree chosen({native("/r/a")});
    store.addPlaces(chosen, places);
    QCOMPARE(places.size(), std::size_t(store.folderCount()));
}

void FileStoreTest::renewalTakesTheNewSpelling()
{
    Tree tree{{{"A", true}, {"A/x", false}, {"F", false}}};
    FileStore store = readAll(tree);
    tree = {{{"a", true}, {"a/x", false}, {"f", false}}};
    const bool isIgnored = Platform::pathCaseSensitivity() == Qt::CaseInsensitive;
    QVERIFY(renew(store, tree, {"a", "f"}).hasChanged);
    QStringList expected{"a/", "f", "a/x"};
    if (!isIgnored) // nobody told of what was called so
        expected = QStringList{"A/", "F", "A/x"} + expected;
    QCOMPARE(sorted(entriesIn(store)), sorted(expected));
}

void FileStoreTest::renewalDropsNamesListedTwice()
{
    // Some file systems do that while a directory changes.
    FileStore store("/r");
    const FileStore::Folder first = store.addFolder(FileStore::Root, u"a");
    store.append(FileStore::Root, u"a", true);
    store.append(first, u"x", false);
    store.append(first, u"x", false);
    store.append(FileStore::Root, u"f", false);
    store.append(FileStore::Root, u"f", false);
    const Tree tree{{{"a", true}, {"a/x", false}, {"f", false}}};
    QVERIFY(renew(store, tree, {"a", "f"}).hasChanged);
    QCOMPARE(sorted(entriesIn(store)), (QStringList{"a/", "a/x", "f"}));
}

void FileStoreTest::renewalOfThousandsOfFolders()
{
    // Numbers that nobody has any more don't pile up.
    Tree tree;
    tree.entries.insert("keep", true);
    tree.entries.insert("keep/file", false);
    FileStore store = readAll(tree);
    bool hasRenumbered = false;
    FileStore::Folder most = 0;
    for (int round = 0; round < 12; ++round) {
        QStringList paths;
        for (int i = 0; i < 400; ++i) {
            const QString path = QString("%1 %2").arg(round).arg(i);
            tree.entries.insert(path, true);
            tree.entries.insert(path + "/x", false);
            paths.append(path);
        }
        QVERIFY(renew(store, tree, paths).hasChanged);
        QVERIFY(hasFoldersOf(store, tree));
        for (const QString& path : std::as_const(paths))
            tree.remove(path);
        const FileStore::Renewal renewal = renew(store, tree, paths);
        hasRenumbered = hasRenumbered || renewal.areFoldersRenumbered;
        most = std::max(most, store.folderCount());
        QCOMPARE(entriesIn(store), (QStringList{"keep/", "keep/file"}));
        QVERIFY(hasFoldersOf(store, tree));
    }
    QVERIFY(hasRenumbered);
    QVERIFY(most < 2500);
}

void FileStoreTest::renewalIsAFreshReading_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 20; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void FileStoreTest::renewalIsAFreshReading()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    Tree tree;
    FileStore store("/r");
    const auto pickFolder = [&] {
        const QStringList folders = tree.folders();
        return folders.at(random.bounded(static_cast<int>(folders.size())));
    };
    const auto makeName = [&] { return QString("n%1%2").arg(random.bounded(9)).arg(QChar(0xe9)); };
    for (int round = 0; round < 80; ++round) {
        QStringList due;
        for (int i = random.bounded(1, 12); i > 0; --i) {
            const QString path = joined(pickFolder(), makeName());
            const bool isKept = random.bounded(6) == 0;
            if (!isKept)
                tree.remove(path);
            if (!isKept && random.bounded(3) > 0) {
                tree.entries.insert(path, random.bounded(2) == 0);
                for (int j = random.bounded(4); tree.entries.value(path) && j > 0; --j)
                    tree.entries.insert(joined(path, makeName()), random.bounded(3) == 0);
            }
            due.append(path);
        }
        const QStringList before = entriesIn(store);
        const FileStore::Renewal renewal = renew(store, tree, withoutNested(due));
        QCOMPARE(sorted(entriesIn(store)), entriesOf(tree));
        QCOMPARE(store.size(), tree.entries.size());
        QVERIFY(hasFoldersOf(store, tree));
        QCOMPARE(renewal.hasChanged, entriesIn(store) != before);
        QCOMPARE(found(store, QString("n1") + QChar(0xe9)).size(),
                 entriesIn(store).filter(QRegularExpression("n1.\\/?$")).size());
    }
    QVERIFY(tree.entries.size() > 5);
}

void FileStoreTest::removalsLeaveNoHoles()
{
    // A list that has lost most of its entries is gone through as quickly as a short one.
    FileStore store = numbered(kOverManyPieces);
    QStringList expected;
    std::vector<FileStore::Id> ids;
    int number = 0;
    for (FileStore::Id id = store.begin(); id != store.end(); id = store.next(id), ++number) {
        if (number % 100 == 0)
            expected.append(store.name(id));
        else
            ids.push_back(id);
    }
    store.remove(ids);
    QCOMPARE(found(store, "file"), expected);
    QCOMPARE(store.last(), static_cast<FileStore::Id>(store.size() - 1)); // in one piece
}

QTEST_MAIN(FileStoreTest)
#include "tst_filestore.moc"
