// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FakeFileSystem.h"
#include "FileIndex.h"
#include "FolderFilter.h"
#include "TestHome.h"
#include "UsageStats.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <array>

using Entry = FileIndex::Entry;

/// What a search finds in an index that stands.
class FileIndexSearchTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase();
    void init();
    void names_data();
    void names();
    void kindsAreApart();
    void nothingIsFound_data();
    void nothingIsFound();
    void limits_data();
    void limits();
    void tierBeatsUsageBeatsLength();
    void otherwiseTheOrderOfTheListStays();
    void poolOfATierIsLimited();
    void rejectedEntriesTakeNoPlaceInThePool();
    void chosenFolderItselfIsNoResult();
    void typingAndErasing();
    void agreesWithTheRules();

    void countUnder();

    void nameOf_data();
    void nameOf();
    void asElement();
    void iconKeys_data();
    void iconKeys();
    void iconsAreAskedForOnce();
};

namespace
{

constexpr int kPoolFiles = FileIndex::PoolPerTier + 5;
constexpr int kRandomEntries = 1500;
constexpr int kRandomQueries = 400;
constexpr quint32 kSeed = 35;

QString full(const QString& path)
{
    return FileIndex::rootPath() + QDir::separator() + QDir::toNativeSeparators(path);
}

QStringList namesOf(const QVector<Entry>& entries)
{
    QStringList names;
    for (const Entry& entry : entries)
        names.append(FileIndex::nameOf(entry));
    return names;
}

QStringList found(const QString& query, FileIndex::Kind kind = FileIndex::Files, int limit = 1000)
{
    return namesOf(FileIndex::search(query, limit, kind));
}

QString padded(int number)
{
    return QString::number(number).rightJustified(4, '0');
}

/// As many files as a pool takes and a few more, in this order, each in a name of its own.
QStringList poolPaths(const QString& folder, const QString& pattern)
{
    QStringList paths;
    for (int i = 0; i < kPoolFiles; ++i)
        paths.append(folder + '/' + pattern.arg(padded(i)));
    return paths;
}

QString randomName(QRandomGenerator& random)
{
    static const QString alphabet = "abAB.é ";
    QString name;
    for (int left = random.bounded(1, 9); left > 0; --left)
        name.append(alphabet.at(random.bounded(static_cast<int>(alphabet.size()))));
    return name;
}

QStringList randomPaths()
{
    QRandomGenerator random(kSeed);
    QStringList paths;
    while (paths.size() < kRandomEntries) {
        const QString folder = QString("random/%1").arg(random.bounded(5));
        paths.append(folder + '/' + randomName(random) + (random.bounded(4) == 0 ? "/" : ""));
    }
    return paths;
}

/// Launches of some of the entries. They are from the future, so that their scores stay the same
/// while a test runs.
QByteArray usageOf(const QStringList& paths)
{
    UsageStats::Map records;
    for (qsizetype i = 0; i < paths.size(); i += 5)
        records.insert(full(paths.at(i)), {static_cast<int>(i % 3) + 1, 1LL << 40});
    return UsageStats::toBytes(records);
}

/// The rules in their plainest form, without pools that are cut short, and without a memory.
QVector<Entry> searchByTheRules(const QString& query, int limit, FileIndex::Kind kind)
{
    const QString q = query.trimmed().toLower();
    std::array<QVector<Entry>, 3> tiers;
    for (const Entry& entry : FileIndex::entries()) {
        if (q.isEmpty() || entry.isDir != (kind == FileIndex::Folders) ||
            !entry.lowerName.contains(q))
            continue;
        const std::size_t tier = entry.lowerName == q ? 0 : entry.lowerName.startsWith(q) ? 1 : 2;
        if (tiers.at(tier).size() < FileIndex::PoolPerTier && FolderFilter::accepts(entry.path))
            tiers.at(tier).append(entry);
    }
    QVector<Entry> best;
    for (QVector<Entry>& tier : tiers) {
        std::stable_sort(tier.begin(), tier.end(), [](const Entry& a, const Entry& b) {
            const double scoreA = UsageStats::scoreFor(a.path);
            const double scoreB = UsageStats::scoreFor(b.path);
            return scoreA != scoreB ? scoreA > scoreB : a.lowerName.size() < b.lowerName.size();
        });
        best += tier;
    }
    return best.mid(0, limit);
}

} // namespace

void FileIndexSearchTest::initTestCase()
{
    FakeFileSystem::add({"Report.TXT", "docs/report", "docs/Final REPORT.txt", "docs/reporter.md",
                         "docs/my report", "Reports/", "old report/", "report/"});
    FakeFileSystem::add(
        {"Übergrößen.odt", "ＷＩＤＥ.txt", "İstanbul.txt", "a  b.txt", "日本語.txt"});
    FakeFileSystem::add({"used/zebra", "used/zebra crossing", "used/my zebra", "used/zebra ab",
                         "used/zebra cd", "used/zebra e"});
    FakeFileSystem::add({"same/quail 1", "same/quail 2", "same/quail 3"});
    FakeFileSystem::add("typed/lark one");
    FakeFileSystem::add(poolPaths("pool", "inner vulture %1"));
    FakeFileSystem::add(poolPaths("pool", "vulture %1"));
    FakeFileSystem::add("pool/vulture");
    FakeFileSystem::add({"choice/raven of choice", "choice/sub/raven below", "choicest/raven no"});
    FakeFileSystem::add(poolPaths("crowd", "raven %1"));
    FakeFileSystem::add(randomPaths());
    TestHome::writeDataFile("usage.json", usageOf(randomPaths()));
    FileIndex::build();
    QTRY_VERIFY(FileIndex::isReady());
    QVERIFY(FileIndex::entries().size() > kRandomEntries);
}

void FileIndexSearchTest::init()
{
    FolderFilter::setFolders({});
}

void FileIndexSearchTest::names_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QStringList>("names");
    const QStringList reports = {"report", "Report.TXT", "reporter.md", "my report",
                                 "Final REPORT.txt"};
    QTest::newRow("equal, then prefix, then inner, shorter first") << "report" << reports;
    QTest::newRow("in capitals") << "REPORT" << reports;
    QTest::newRow("with blanks around it") << " \t report\n" << reports;
    QTest::newRow("a blank inside counts") << "l r" << QStringList{"Final REPORT.txt"};
    QTest::newRow("two blanks are not one") << "a b.t" << QStringList{};
    QTest::newRow("two blanks") << "a  b.t" << QStringList{"a  b.txt"};
    QTest::newRow("the suffix is part of the name")
        << "rt.txt" << QStringList{"Report.TXT", "Final REPORT.txt"};
    QTest::newRow("letters beyond ASCII") << "ÜBERGRÖ" << QStringList{"Übergrößen.odt"};
    QTest::newRow("wide letters") << "ｗｉｄｅ" << QStringList{"ＷＩＤＥ.txt"};
    QTest::newRow("a capital that grows in lower case") << "İsta" << QStringList{"İstanbul.txt"};
    QTest::newRow("letters without case") << "本" << QStringList{"日本語.txt"};
    QTest::newRow("the folders above don't count") << "docs" << QStringList{};
}

void FileIndexSearchTest::names()
{
    QFETCH(QString, query);
    QTEST(found(query), "names");
}

void FileIndexSearchTest::kindsAreApart()
{
    QCOMPARE(found("report", FileIndex::Folders), (QStringList{"report", "Reports", "old report"}));
    QCOMPARE(found("docs", FileIndex::Folders), QStringList{"docs"});
    for (const Entry& entry : FileIndex::search("report", 100, FileIndex::Folders))
        QVERIFY(entry.isDir);
    for (const Entry& entry : FileIndex::search("report", 100, FileIndex::Files))
        QVERIFY(!entry.isDir);
    QCOMPARE(FileIndex::search("my report", 1, FileIndex::Files),
             (QVector<Entry>{{full("docs/my report"), "my report", false}}));
}

void FileIndexSearchTest::nothingIsFound_data()
{
    QTest::addColumn<QString>("query");
    QTest::newRow("empty") << "";
    QTest::newRow("blanks") << " \t\n ";
    QTest::newRow("no such name") << "no such name";
    QTest::newRow("longer than any name") << QString(100000, 'r');
    QTest::newRow("a wildcard") << "rep*";
    QTest::newRow("a null character") << QString(QChar::Null);
}

void FileIndexSearchTest::nothingIsFound()
{
    QFETCH(QString, query);
    QCOMPARE(found(query), QStringList());
    QCOMPARE(found(query, FileIndex::Folders), QStringList());
}

void FileIndexSearchTest::limits_data()
{
    QTest::addColumn<int>("limit");
    QTest::addColumn<int>("count");
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("less than none") << -1 << 0;
    QTest::newRow("one") << 1 << 1;
    QTest::newRow("as many as there are") << 5 << 5;
    QTest::newRow("more") << 6 << 5;
}

void FileIndexSearchTest::limits()
{
    QFETCH(int, limit);
    QTEST(static_cast<int>(found("report", FileIndex::Files, limit).size()), "count");
    QCOMPARE(found("report", FileIndex::Files, limit), found("report").mid(0, std::max(limit, 0)));
}

void FileIndexSearchTest::tierBeatsUsageBeatsLength()
{
    const QStringList unused = {"zebra",    "zebra e",        "zebra ab",
                                "zebra cd", "zebra crossing", "my zebra"};
    QCOMPARE(found("zebra"), unused);
    for (int launch = 0; launch < 3; ++launch)
        UsageStats::record(full("used/my zebra"));
    UsageStats::record(full("used/zebra cd"));
    UsageStats::record(full("used/zebra crossing"));
    UsageStats::record(full("used/zebra crossing"));
    QCOMPARE(found("zebra"), (QStringList{"zebra", "zebra crossing", "zebra cd", "zebra e",
                                          "zebra ab", "my zebra"}));
}

void FileIndexSearchTest::otherwiseTheOrderOfTheListStays()
{
    QCOMPARE(found("quail"), (QStringList{"quail 1", "quail 2", "quail 3"}));
}

void FileIndexSearchTest::poolOfATierIsLimited()
{
    const QStringList all = found("vulture");
    QCOMPARE(FileIndex::PoolPerTier, 200);
    QCOMPARE(all.size(), 1 + 2 * FileIndex::PoolPerTier);
    QCOMPARE(all.first(), "vulture");
    QCOMPARE(all.at(1), "vulture 0000");
    QCOMPARE(all.last(), "inner vulture " + padded(FileIndex::PoolPerTier - 1));

    // What is used most is not seen behind the first of its tier; it wins among these.
    UsageStats::record(full("pool/vulture " + padded(FileIndex::PoolPerTier)));
    QCOMPARE(found("vulture"), all);
    const QString last = "vulture " + padded(FileIndex::PoolPerTier - 1);
    UsageStats::record(full("pool/" + last));
    QCOMPARE(found("vulture").at(1), last);
}

void FileIndexSearchTest::rejectedEntriesTakeNoPlaceInThePool()
{
    QVERIFY(!found("raven").contains("raven below"));
    FolderFilter::setFolders({full("choice"), full("elsewhere")});
    QCOMPARE(found("raven"), (QStringList{"raven below", "raven of choice"}));
    // The same query again, with the hits of before and another choice.
    FolderFilter::setFolders({full("CHOICE/SUB")});
    QCOMPARE(found("raven"), QStringList{"raven below"});
    FolderFilter::setFolders({});
    QCOMPARE(found("raven").size(), FileIndex::PoolPerTier);
}

void FileIndexSearchTest::chosenFolderItselfIsNoResult()
{
    FolderFilter::setFolders({full("choice")});
    QCOMPARE(found("choice", FileIndex::Folders), QStringList());
    QCOMPARE(found("sub", FileIndex::Folders), QStringList{"sub"});
}

void FileIndexSearchTest::typingAndErasing()
{
    // Whatever was asked before, and whether a query goes on from it, answers are the same.
    const QStringList typed = {"r",      "re",   "rep",   "report", "reporter", "reporters",
                               "report", "re",   "e",     "re",     "r",        "q",
                               "report", "port", "ports", "por",    " report",  "report "};
    for (const QString& query : typed) {
        for (const FileIndex::Kind kind : {FileIndex::Folders, FileIndex::Files}) {
            const QVector<Entry> entries = FileIndex::search(query, 1000, kind);
            QCOMPARE(entries, searchByTheRules(query, 1000, kind));
            FileIndex::forgetNarrowing();
            QCOMPARE(FileIndex::search(query, 1000, kind), entries);
            FileIndex::search(query.left(2), 1, kind);
        }
    }
}

void FileIndexSearchTest::agreesWithTheRules()
{
    QRandomGenerator random(kSeed + 1);
    QString query;
    int hitCount = 0;
    for (int round = 0; round < kRandomQueries; ++round) {
        // Types on, erases, or begins anew.
        const int action = random.bounded(4);
        query = action == 0   ? randomName(random).left(3)
                : action == 1 ? query.chopped(std::min<qsizetype>(1, query.size()))
                              : query + randomName(random).left(1);
        if (random.bounded(10) == 0) {
            const QString folder = full(QString("random/%1").arg(random.bounded(5)));
            FolderFilter::setFolders(random.bounded(2) == 0 ? QStringList() : QStringList{folder});
        }
        const auto kind = random.bounded(3) == 0 ? FileIndex::Folders : FileIndex::Files;
        const QVector<Entry> entries = FileIndex::search(query, 1000, kind);
        QCOMPARE(entries, searchByTheRules(query, 1000, kind));
        hitCount += entries.isEmpty() ? 0 : 1;
    }
    QVERIFY(hitCount > kRandomQueries / 4);
}

void FileIndexSearchTest::countUnder()
{
    const QStringList folders{FileIndex::rootPath(),
                              full("pool"),
                              full("RANDOM/3"),
                              full("none"),
                              full("random"),
                              full("random") + QDir::separator(),
                              QString()};
    QVector<qsizetype> expected;
    const FileIndex::Entries all = FileIndex::entries();
    for (const QString& folder : folders)
        expected.append(std::count_if(all.begin(), all.end(), [&folder](const Entry& entry) {
            return FolderFilter::isUnder(entry.path, folder);
        }));
    QCOMPARE(expected.at(0), all.size());
    QVERIFY(expected.at(2) > 0 && expected.at(2) < expected.at(4));
    QCOMPARE(FileIndex::countUnder(folders), expected);
    QCOMPARE(FileIndex::countUnder({}), QVector<qsizetype>());
}

void FileIndexSearchTest::nameOf_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::newRow("a path") << QDir::toNativeSeparators("/a/B.txt") << "B.txt";
    QTest::newRow("a name alone") << "B.txt"
                                  << "B.txt";
    QTest::newRow("a separator at the end") << QDir::toNativeSeparators("/a/") << "";
    QTest::newRow("nothing") << ""
                             << "";
}

void FileIndexSearchTest::nameOf()
{
    QFETCH(QString, path);
    QTEST(FileIndex::nameOf({path, "other", false}), "name");
}

void FileIndexSearchTest::asElement()
{
    const QString path = QDir::toNativeSeparators("/a/Some File.TXT");
    for (const bool isDir : {false, true}) {
        LauncherElement expected;
        expected.name = "Some File.TXT";
        expected.shortcutType = "File";
        expected.value = path;
        QCOMPARE(FileIndex::asElement({path, "some file.txt", isDir}), expected);
    }
}

void FileIndexSearchTest::iconKeys_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isDir");
    QTest::addColumn<QString>("request");
    QTest::newRow("suffix") << "a.one" << false << ".one";
    QTest::newRow("the last of two suffixes") << "a.tar.two" << false << ".two";
    QTest::newRow("suffix in capitals") << "A.THREE" << false << ".three";
    QTest::newRow("a dot at the end") << "a." << false << ".";
    QTest::newRow("no dot") << "makefile" << false << "";
    QTest::newRow("folder with a suffix") << "a.four" << true << "<dir>";
}

void FileIndexSearchTest::iconKeys()
{
    QFETCH(QString, name);
    QFETCH(bool, isDir);
    const qsizetype before = FakeFileSystem::iconRequests().size();
    FileIndex::iconFor({full("some.where/" + name), name.toLower(), isDir});
    QTEST(FakeFileSystem::iconRequests().mid(before).join('|'), "request");
}

void FileIndexSearchTest::iconsAreAskedForOnce()
{
    QPixmap pixmap(2, 2);
    pixmap.fill(Qt::red);
    FakeFileSystem::setIcon(".red", pixmap);
    const qsizetype before = FakeFileSystem::iconRequests().size();
    QVERIFY(!FileIndex::iconFor({"a.red", "a.red", false}).isNull());
    QVERIFY(!FileIndex::iconFor({"B.RED", "b.red", false}).isNull());
    // A missing icon isn't looked for again either.
    QVERIFY(FileIndex::iconFor({"a.none", "a.none", false}).isNull());
    QVERIFY(FileIndex::iconFor({"b.none", "b.none", false}).isNull());
    QCOMPARE(FakeFileSystem::iconRequests().mid(before), (QStringList{".red", ".none"}));
    // Nothing but a dot in front is no suffix, and known from the file without any.
    FileIndex::iconFor({"file", "file", false});
    const qsizetype known = FakeFileSystem::iconRequests().size();
    FileIndex::iconFor({full(".gitignore"), ".gitignore", false});
    QCOMPARE(FakeFileSystem::iconRequests().size(), known);
}

QTEST_MAIN(FileIndexSearchTest)
#include "tst_fileindexsearch.moc"
