// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "DirectoryReader.h"
#include "FileStore.h"
#include "NameBytes.h"
#include "NameMatcher.h"
#include "TestHome.h"

#include <QDir>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <numeric>
#include <vector>

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

QTEST_MAIN(FileStoreTest)
#include "tst_filestore.moc"
