// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FreshProcess.h"
#include "StorageManager.h"
#include "TestHome.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QUuid>

#include <filesystem>
#include <memory>

class StorageManagerTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup();

    void appDataDirIsCreated();
    void appDataDirBehindAFileIsStillNamed();

    void loadsFixture_data();
    void loadsFixture();
    void normalises_data();
    void normalises();
    void missingIdsAreNewAtEachLoadUntilASave();
    void legacyIdsAreNewAtEachLoadUntilASave();
    void legacyFileStaysUntilASave();
    void legacyDocumentOfManyCategories();

    void unreadableGivesTheFirstDocument_data();
    void unreadableGivesTheFirstDocument();
    void quarantine_data();
    void quarantine();
    void fileBeyondTheSizeBoundIsQuarantined();
    void nestedAlmostAsDeepAsPossible();
    void onlyTheNewestQuarantinedFileStays();
    void quarantineInTheWay_data();
    void quarantineInTheWay();
    void importFileIsQuarantinedWhereItLies();

    void savesTheCanonicalBytes();
    void savesAllKeysOfAnEmptyDocument();
    void roundTrip_data();
    void roundTrip();
    void shorterDocumentLeavesNoRest();
    void saveLeavesNothingElseBehind();
    void failedSaveIsSilent_data();
    void failedSaveIsSilent();
    void fullDiskLeavesTheOldFile_data();
    void fullDiskLeavesTheOldFile();
    void symbolicLinkIsFollowed_data();
    void symbolicLinkIsFollowed();
    void quarantineMovesTheLinkAndNotItsTarget();

private:
    QString path(const QString& name = "data.json") const { return m_dir->filePath(name); }
    void write(const QByteArray& content, const QString& name = "data.json") const;
    QByteArray read(const QString& name = "data.json") const;
    QString copyFixture(const QString& name) const;

    std::unique_ptr<QTemporaryDir> m_dir;
};

namespace
{

constexpr int kDeepNesting = 100000;

LauncherData firstDocument()
{
    LauncherData data;
    data.categories = {"Default"};
    data.defaultCategory = "Default";
    return data;
}

LauncherElement item(const QString& name)
{
    return {"id of " + name, name, "URL", "https://" + name, "glyph:e2c7"};
}

/// A document with something in every field.
LauncherData fullDocument()
{
    LauncherElement inTemplate = item("in a template");
    inTemplate.id.clear();
    LauncherData data;
    data.categories = {"Work", "Home", "Without an entry"};
    data.defaultCategory = "Home";
    data.categoryIcons = {{"Work", 58378}, {"Unlisted", 7}};
    data.sectionElements = {
        {"Work", {item("one"), item("two")}}, {"Home", {}}, {"Unlisted", {item("out of sight")}}};
    data.templates = {{"Set", 58689, {inTemplate}},
                      {"Empty set", SectionTemplate::DefaultIcon, {}}};
    return data;
}

/// Fresh ids can't be compared, so they become empty; others stay.
LauncherData withoutFreshIds(LauncherData data)
{
    for (QList<LauncherElement>& elements : data.sectionElements) {
        for (LauncherElement& element : elements) {
            if (!QUuid::fromString(element.id).isNull())
                element.id.clear();
        }
    }
    return data;
}

QStringList idsOf(const LauncherData& data)
{
    QStringList ids;
    for (const QList<LauncherElement>& elements : data.sectionElements) {
        for (const LauncherElement& element : elements)
            ids.append(element.id);
    }
    return ids;
}

/// A document of about this size on disk.
LauncherData documentOfSize(int bytes)
{
    LauncherData data = firstDocument();
    data.categories.append(QString(bytes, 'x'));
    return data;
}

/// The child's side: saves a document of a given size to a given path.
int saveDocument(const QStringList& arguments)
{
    StorageManager::saveData(arguments.at(0), documentOfSize(arguments.at(1).toInt()));
    return 0;
}

/// Not `QFile::link`, which makes shell shortcuts on one of our systems. False where links can't
/// be made, as without the right to; the cases that need one then don't exist.
bool makeLink(const QString& target, const QString& link)
{
    std::error_code error;
    std::filesystem::create_symlink(target.toStdU16String(), link.toStdU16String(), error);
    return !error;
}

bool canMakeLinks()
{
    const QTemporaryDir dir;
    return makeLink(dir.filePath("nowhere"), dir.filePath("link"));
}

void addCurrentShapeRows()
{
    LauncherData data;
    data.categories = {"Zeta", "Alpha", "Empty"};
    data.defaultCategory = "Alpha";
    data.categoryIcons = {{"Alpha", 58378}, {"Zeta", 58055}};
    data.sectionElements = {{"Alpha",
                             {{"", "Mail", "URL", "https://mail.example", "glyph:e2c7"},
                              {"", "Two lines", "Snippet", "first\nsecond", ""}}},
                            {"Zeta", {}}};
    data.templates = {{"Work day", 58689, {{"", "Editor", "Application", "editor --new", ""}}}};
    QTest::newRow("current") << "current_shape.json" << data;

    data = {};
    data.categories = QStringList{"Work", "", "", ""};
    data.defaultCategory = "Work";
    data.categoryIcons = {
        {"Work", 0}, {"Half", 0}, {"Minus", 4294967295U}, {"Right", 58055}, {"Huge", 0}};
    data.sectionElements = {{"Work", {{"kept", "", "", "", ""}, {}, {}}}, {"No list", {}}};
    data.templates = {{}, {"Set", 0, {{}, {"", "One", "", "", ""}}}, {}};
    QTest::newRow("wrong types") << "current_wrong_types.json" << data;

    data = firstDocument();
    data.sectionElements = {{"Work", {{"a", "Unreachable", "URL", "v", "i"}}}};
    QTest::newRow("no categories") << "current_without_categories.json" << data;

    data = {};
    data.categories = QStringList{"Work", ""};
    data.defaultCategory = "Work";
    QTest::newRow("the key alone makes the current shape") << "current_sections_null.json" << data;

    data = {};
    data.categories = QStringList{"second"};
    data.defaultCategory = "second";
    QTest::newRow("of a doubled key the last counts") << "current_duplicate_keys.json" << data;
}

void addLegacyShapeRows()
{
    LauncherData data;
    data.categories = {"Work", "Empty"};
    data.defaultCategory = "Work";
    data.sectionElements = {{"Work",
                             {{"", "a1", "", "", ""},
                              {"", "g1", "Bulk", "v3", ""},
                              {"", "g2", "", "", ""},
                              {"", "h1", "File", "v2", ""},
                              {"", "h2", "", "", ""},
                              {"", "w1", "URL", "v1", "i1"},
                              {"", "w2", "", "", ""},
                              {"", "z1", "", "", ""}}},
                            {"Empty", {}}};
    data.templates = {{"Set", SectionTemplate::DefaultIcon, {}}};
    QTest::newRow("legacy sub-groups come out sorted") << "legacy_subgroups.json" << data;

    data = {};
    data.categories = QStringList{"Work", "", "Unlisted"};
    data.defaultCategory = "Work";
    data.sectionElements = {
        {"Work", {}},
        {"", {{"", "homeless", "URL", "v", ""}, {"", "ill-typed", "", "", ""}, {}}},
        {"Unlisted", {{"", "new", "", "", ""}}}};
    QTest::newRow("legacy items without a category") << "legacy_without_category.json" << data;

    data = {};
    data.categories = QStringList{"Plain", "Object", ""};
    data.defaultCategory = "Plain";
    data.sectionElements = {{"Plain", {}}, {"Object", {}}, {"", {}}};
    QTest::newRow("legacy categories of all types") << "legacy_mixed_categories.json" << data;
}

} // namespace

void StorageManagerTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

void StorageManagerTest::cleanup()
{
    m_dir.reset();
}

void StorageManagerTest::write(const QByteArray& content, const QString& name) const
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

QByteArray StorageManagerTest::read(const QString& name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(not readable)");
}

QString StorageManagerTest::copyFixture(const QString& name) const
{
    // A copy, because loading may move the file aside.
    const QString copy = path(name);
    const bool isCopied = QFile::copy(QStringLiteral(ORLIMO_TEST_DATA_DIR "/") + name, copy);
    return isCopied ? copy : QString();
}

void StorageManagerTest::appDataDirIsCreated()
{
    // Another identity, because its directory surely doesn't exist, whatever the system calls it.
    const QString name = QCoreApplication::applicationName();
    QCoreApplication::setApplicationName(LauncherElement::createId());
    const QString expected = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QVERIFY(!QFileInfo::exists(expected));
    const QString first = StorageManager::appDataDir();
    const bool isCreated = QFileInfo(first).isDir();
    const QString second = StorageManager::appDataDir();
    QDir(first).removeRecursively();
    QCoreApplication::setApplicationName(name);

    QCOMPARE(first, expected);
    QCOMPARE(second, expected);
    QVERIFY(isCreated);
}

void StorageManagerTest::appDataDirBehindAFileIsStillNamed()
{
    const QString name = QCoreApplication::applicationName();
    QCoreApplication::setApplicationName(LauncherElement::createId());
    const QString expected = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QVERIFY(QDir().mkpath(QFileInfo(expected).path()));
    QFile obstacle(expected);
    QVERIFY(obstacle.open(QIODevice::WriteOnly));
    obstacle.close();
    const QString dir = StorageManager::appDataDir();
    const bool isStillAFile = QFileInfo(expected).isFile();
    obstacle.remove();
    QCoreApplication::setApplicationName(name);

    QCOMPARE(dir, expected);
    QVERIFY(isStillAFile);
}

void StorageManagerTest::loadsFixture_data()
{
    QTest::addColumn<QString>("fixture");
    QTest::addColumn<LauncherData>("expected"); // with empty ids where they are fresh
    addCurrentShapeRows();
    addLegacyShapeRows();
    QTest::newRow("array") << "array_root.json" << firstDocument();
    QTest::newRow("truncated") << "truncated.json" << firstDocument();
    QTest::newRow("not UTF-8") << "invalid_utf8.json" << firstDocument();
}

void StorageManagerTest::loadsFixture()
{
    QFETCH(QString, fixture);
    QFETCH(LauncherData, expected);
    const QString file = copyFixture(fixture);
    QVERIFY(!file.isEmpty());
    const LauncherData loaded = StorageManager::loadData(file);
    const LauncherData comparable = withoutFreshIds(loaded);
    QCOMPARE(comparable.categories, expected.categories);
    QCOMPARE(comparable.defaultCategory, expected.defaultCategory);
    QCOMPARE(comparable.categoryIcons, expected.categoryIcons);
    QCOMPARE(comparable.sectionElements, expected.sectionElements);
    QCOMPARE(comparable.templates, expected.templates);
    for (const QString& id : idsOf(loaded))
        QVERIFY(!id.isEmpty());
}

void StorageManagerTest::normalises_data()
{
    QTest::addColumn<QByteArray>("categories");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("defaultCategory");
    QTest::newRow("kept") << QByteArray(R"(["A", "B", "Default"])") << "B"
                          << "B";
    QTest::newRow("unknown, with one called Default")
        << QByteArray(R"(["A", "Default"])") << "Nothing"
        << "Default";
    QTest::newRow("unknown, with none called Default")
        << QByteArray(R"(["A", "default"])") << "Nothing"
        << "A";
    QTest::newRow("empty, with one called Default") << QByteArray(R"(["A", "Default"])") << ""
                                                    << "Default";
    QTest::newRow("empty, with a nameless category") << QByteArray(R"(["A", ""])") << ""
                                                     << "A";
    QTest::newRow("other case") << QByteArray(R"(["A", "Work"])") << "work"
                                << "A";
    QTest::newRow("no categories") << QByteArray("[]") << "Work"
                                   << "Default";
}

void StorageManagerTest::normalises()
{
    QFETCH(QByteArray, categories);
    QFETCH(QString, stored);
    const QByteArray common =
        R"({"categories": )" + categories + R"(, "defaultCategory": ")" + stored.toUtf8() + '"';
    for (const QByteArray& rest : {QByteArray(R"(, "sectionElements": {}})"), QByteArray("}")}) {
        write(common + rest);
        QTEST(StorageManager::loadData(path()).defaultCategory, "defaultCategory");
    }
}

void StorageManagerTest::missingIdsAreNewAtEachLoadUntilASave()
{
    const QString file = copyFixture("current_without_item_ids.json");
    const LauncherData first = StorageManager::loadData(file);
    const LauncherData second = StorageManager::loadData(file);
    QCOMPARE(first.sectionElements["Work"].size(), 2);
    QVERIFY(first != second);
    QCOMPARE(withoutFreshIds(first), withoutFreshIds(second));

    StorageManager::saveData(file, second);
    QCOMPARE(StorageManager::loadData(file), second);
    QCOMPARE(StorageManager::loadData(file), second);
}

void StorageManagerTest::legacyIdsAreNewAtEachLoadUntilASave()
{
    const QString file = copyFixture("legacy_subgroups.json");
    const LauncherData first = StorageManager::loadData(file);
    const LauncherData second = StorageManager::loadData(file);
    QStringList ids = idsOf(first) + idsOf(second);
    QCOMPARE(ids.size(), 16);
    QCOMPARE(ids.removeDuplicates(), 0);
    QVERIFY(!ids.contains("not read"));

    StorageManager::saveData(file, second);
    QCOMPARE(StorageManager::loadData(file), second);
}

void StorageManagerTest::legacyFileStaysUntilASave()
{
    const QString file = copyFixture("legacy_subgroups.json");
    const QByteArray before = read("legacy_subgroups.json");
    const LauncherData data = StorageManager::loadData(file);
    QCOMPARE(read("legacy_subgroups.json"), before);
    QVERIFY(!QFile::exists(file + ".bak"));

    StorageManager::saveData(file, data);
    const QJsonObject root = QJsonDocument::fromJson(read("legacy_subgroups.json")).object();
    QVERIFY(root.contains("sectionElements"));
    QVERIFY(!root.contains("items"));
}

void StorageManagerTest::legacyDocumentOfManyCategories()
{
    QByteArray json = R"({"items": [)";
    for (int i = 0; i < 50000; ++i)
        json += R"({"category": ")" + QByteArray::number(i) + R"(", "name": "n"},)";
    json += R"({"category": "0", "name": "last"}]})";
    write(json);
    const LauncherData data = StorageManager::loadData(path());
    QCOMPARE(data.categories.size(), 50000);
    QCOMPARE(data.categories.last(), "49999");
    QCOMPARE(data.sectionElements["0"].size(), 2);
    QCOMPARE(data.sectionElements["0"].last().name, "last");
}

void StorageManagerTest::unreadableGivesTheFirstDocument_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("missing") << "missing.json";
    QTest::newRow("in a missing directory") << "no/such/directory/data.json";
    QTest::newRow("directory") << ".";
    QTest::newRow("below a file") << QString(ORLIMO_TEST_DATA_DIR "/current_shape.json/data.json");
    QTest::newRow("no name") << "";
    if (QDir::rootPath() == "/" && QFileInfo::exists("/dev/zero"))
        QTest::newRow("a device without end") << "/dev/zero";
}

void StorageManagerTest::unreadableGivesTheFirstDocument()
{
    QFETCH(QString, file);
    const QString full = file.isEmpty() ? file : QDir(m_dir->path()).absoluteFilePath(file);
    const bool hadFile = QFileInfo::exists(full);
    QCOMPARE(StorageManager::loadData(full), firstDocument());
    QCOMPARE(QFileInfo::exists(full), hadFile);
    QVERIFY(QDir(m_dir->path())
                .isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System));
}

void StorageManagerTest::quarantine_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isMoved");
    const auto row = [](const char* name, const QByteArray& content, bool isMoved) {
        QTest::newRow(name) << content << isMoved;
    };
    row("empty", "", false);
    row("blanks", " \t\r\n ", false);
    row("empty object", "{}", false);
    row("object between blanks", "\n {} \n", false);
    row("object of other keys", R"({"name": "something else"})", false);
    row("object behind a byte order mark", "\xEF\xBB\xBF{}", false);
    row("byte order mark alone", "\xEF\xBB\xBF", true);
    row("array", "[]", true);
    row("number", "3", true);
    row("text", R"("text")", true);
    row("null", "null", true);
    row("no JSON", "not json", true);
    row("cut off", R"({"categories": ["Work"])", true);
    row("more behind the object", "{} {}", true);
    row("trailing comma", R"({"categories": [],})", true);
    row("comment", "{} // note", true);
    row("not UTF-8", "{\"categories\": [\"caf\xE9\"]}", true);
    row("UTF-16", QByteArray("{\0}\0", 4), true);
    row("zeros, as after a power failure", QByteArray(4096, '\0'), true);
    row("null byte inside", QByteArray("{\0}", 3), true);
    row("arrays nested deeply", QByteArray(kDeepNesting, '[') + QByteArray(kDeepNesting, ']'),
        true);
    row("opened and never closed", QByteArray(kDeepNesting, '['), true);
    row("objects nested deeply",
        QByteArray(R"({"a":)").repeated(kDeepNesting) + "1" + QByteArray(kDeepNesting, '}'), true);
    row("nested deeply inside a template",
        R"({"templates": )" + QByteArray(kDeepNesting, '[') + QByteArray(kDeepNesting, ']') + "}",
        true);
}

void StorageManagerTest::quarantine()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, isMoved);
    write(content);
    QCOMPARE(StorageManager::loadData(path()), firstDocument());
    QCOMPARE(QFile::exists(path()), !isMoved);
    QCOMPARE(QFile::exists(path("data.json.bak")), isMoved);
    QCOMPARE(read(isMoved ? "data.json.bak" : "data.json"), content);
}

void StorageManagerTest::fileBeyondTheSizeBoundIsQuarantined()
{
    write("{}");
    QVERIFY(QFile::resize(path(), StorageManager::MaxDocumentBytes + 1));
    QCOMPARE(StorageManager::loadData(path()), firstDocument());
    QVERIFY(!QFile::exists(path()));
    QCOMPARE(QFileInfo(path("data.json.bak")).size(), StorageManager::MaxDocumentBytes + 1);
}

void StorageManagerTest::nestedAlmostAsDeepAsPossible()
{
    // What the parser lets through must not harm the reading.
    const QByteArray deep = QByteArray(1000, '[') + QByteArray(1000, ']');
    write(R"({"categories": ["Work"], "sectionElements": {"Work": )" + deep + R"(}, "more": )" +
          deep + "}");
    const LauncherData data = StorageManager::loadData(path());
    QCOMPARE(data.categories, QStringList{"Work"});
    QCOMPARE(data.sectionElements["Work"].size(), 1);
}

void StorageManagerTest::onlyTheNewestQuarantinedFileStays()
{
    write("first");
    StorageManager::loadData(path());
    write("second");
    StorageManager::loadData(path());
    QCOMPARE(read("data.json.bak"), "second");
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files), QStringList{"data.json.bak"});

    // A load without a corrupt file touches nothing more.
    StorageManager::loadData(path());
    StorageManager::saveData(path(), firstDocument());
    StorageManager::loadData(path());
    QCOMPARE(read("data.json.bak"), "second");
}

void StorageManagerTest::quarantineInTheWay_data()
{
    QTest::addColumn<bool>("isDirectory");
    QTest::addColumn<bool>("isMoved");
    QTest::newRow("directory") << true << false;
    if (canMakeLinks())
        QTest::newRow("link to nowhere") << false << true;
}

void StorageManagerTest::quarantineInTheWay()
{
    QFETCH(bool, isDirectory);
    QFETCH(bool, isMoved);
    const QString bak = path("data.json.bak");
    QVERIFY(isDirectory ? QDir().mkpath(bak + "/content") : makeLink(path("nowhere"), bak));
    write("broken");
    QCOMPARE(StorageManager::loadData(path()), firstDocument());
    QCOMPARE(QFile::exists(path()), !isMoved);
    if (isMoved)
        QCOMPARE(read("data.json.bak"), "broken");
    else
        QCOMPARE(read(), "broken");

    StorageManager::saveData(path(), fullDocument());
    QCOMPARE(StorageManager::loadData(path()), fullDocument());
}

void StorageManagerTest::importFileIsQuarantinedWhereItLies()
{
    QVERIFY(QDir(m_dir->path()).mkpath("chosen by the user"));
    write("[1, 2]", "chosen by the user/list.txt");
    QCOMPARE(StorageManager::loadData(path("chosen by the user/list.txt")), firstDocument());
    QVERIFY(!QFile::exists(path("chosen by the user/list.txt")));
    QCOMPARE(read("chosen by the user/list.txt.bak"), "[1, 2]");
}

void StorageManagerTest::savesTheCanonicalBytes()
{
    const QString file = copyFixture("current_shape.json");
    const QByteArray before = read("current_shape.json");
    const LauncherData data = StorageManager::loadData(file);
    StorageManager::saveData(path(), data);
    QCOMPARE(read(), before);
}

void StorageManagerTest::savesAllKeysOfAnEmptyDocument()
{
    StorageManager::saveData(path(), LauncherData());
    QCOMPARE(read(), "{\n"
                     "    \"categories\": [\n    ],\n"
                     "    \"categoryIcons\": {\n    },\n"
                     "    \"defaultCategory\": \"\",\n"
                     "    \"sectionElements\": {\n    },\n"
                     "    \"templates\": [\n    ]\n"
                     "}\n");
    QCOMPARE(StorageManager::loadData(path()), firstDocument());
}

void StorageManagerTest::roundTrip_data()
{
    QTest::addColumn<LauncherData>("data");
    QTest::newRow("full") << fullDocument();
    QTest::newRow("first") << firstDocument();

    const auto row = [](const char* name, const QString& text) {
        LauncherData data;
        data.categories = {text, text + "2"};
        data.defaultCategory = text + "2";
        data.categoryIcons = {{text, 1}};
        data.sectionElements = {{text, {{text + "id", text, text, text, text}}}};
        data.templates = {{text, 2, {{"", text, text, text, text}}}};
        QTest::newRow(name) << data;
    };
    row("line feeds", "first\nsecond\r\nthird\r");
    row("right-to-left marks", QString::fromUtf16(u"\u202Egnp.\u202C\u200F\u2067שלום\u2069"));
    row("quotes and backslashes", "\"C:\\Program Files\\x.exe\" \\u0041 '");
    row("JSON inside", R"({"sectionElements": [1, "]}"]})");
    row("control characters", "\x01\x1B\x7F\t\b");
    row("null character", "a" + QString(QChar(0)) + "b");
    row("beyond the basic plane", "🗂️𠮷");
    row("lone surrogate", "a" + QString(QChar(0xD83D)) + "b" + QString(QChar(0xDC00)));
    row("no characters", QString::fromUtf16(u"\uFFFE\uFFFF\uFEFF"));
    row("separators of lines", QString::fromUtf16(u"\u2028\u2029\u0085"));
    row("blanks", "   ");
    row("placeholders", "%1 %2 %%");
    row("long", QString(200000, 'x'));

    LauncherData icons = firstDocument();
    icons.categoryIcons = {{"a", 0}, {"b", 0x7FFFFFFF}, {"c", 0x80000000U}, {"d", 0xFFFFFFFFU}};
    QTest::newRow("icons of every size") << icons;

    LauncherData doubled = firstDocument();
    doubled.categories = {"Twice", "Twice", "twice"};
    doubled.defaultCategory = "twice";
    QTest::newRow("category listed twice") << doubled;

    LauncherData nameless = firstDocument();
    nameless.categories = {"Work", ""};
    nameless.defaultCategory = "Work";
    nameless.sectionElements = {{"", {item("in the nameless")}}};
    QTest::newRow("category without a name") << nameless;
}

void StorageManagerTest::roundTrip()
{
    QFETCH(LauncherData, data);
    StorageManager::saveData(path(), data);
    const QByteArray bytes = read();
    QCOMPARE(StorageManager::loadData(path()), data);
    QVERIFY(!QFile::exists(path("data.json.bak")));
    StorageManager::saveData(path(), StorageManager::loadData(path()));
    QCOMPARE(read(), bytes);
}

void StorageManagerTest::shorterDocumentLeavesNoRest()
{
    StorageManager::saveData(path(), fullDocument());
    StorageManager::saveData(path(), firstDocument());
    QCOMPARE(StorageManager::loadData(path()), firstDocument());
}

void StorageManagerTest::saveLeavesNothingElseBehind()
{
    for (int i = 0; i < 3; ++i)
        StorageManager::saveData(path(), fullDocument());
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
             QStringList{"data.json"});
}

void StorageManagerTest::failedSaveIsSilent_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("parent is a file") << "file/data.json";
    QTest::newRow("parent is missing") << "missing/data.json";
    QTest::newRow("target is a directory") << "directory";
    QTest::newRow("no name") << "";
    QTest::newRow("name too long") << QString(5000, 'x');
}

void StorageManagerTest::failedSaveIsSilent()
{
    QFETCH(QString, file);
    write("kept", "file");
    QVERIFY(QDir(m_dir->path()).mkpath("directory"));
    write("kept", "directory/inside");
    const QStringList before = QDir(m_dir->path()).entryList();

    QTest::failOnWarning(QRegularExpression(".*"));
    StorageManager::saveData(file.isEmpty() ? file : path(file), fullDocument());
    QCOMPARE(QDir(m_dir->path()).entryList(), before);
    QCOMPARE(read("file"), "kept");
    QCOMPARE(read("directory/inside"), "kept");
}

void StorageManagerTest::fullDiskLeavesTheOldFile_data()
{
    QTest::addColumn<int>("blocks"); // -1 for as many as there are
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("isSaved");
    QTest::newRow("enough room, for comparison") << -1 << 10000 << true;
    if (FreshProcess::canLimitFileSize()) {
        QTest::newRow("no room at all") << 0 << 1000000 << false;
        QTest::newRow("room for a part") << 64 << 1000000 << false;
        // So little is written that it waits in a buffer until the file is closed.
        QTest::newRow("room for a part of little") << 4 << 10000 << false;
        QTest::newRow("no room for little") << 0 << 100 << false;
    }
}

void StorageManagerTest::fullDiskLeavesTheOldFile()
{
    QFETCH(int, blocks);
    QFETCH(int, size);
    QFETCH(bool, isSaved);
    StorageManager::saveData(path(), fullDocument());
    const QStringList arguments = {path(), QString::number(size)};
    const FreshProcess::Outcome outcome =
        blocks < 0 ? FreshProcess::run("save", arguments)
                   : FreshProcess::runWithFullDisk(blocks, "save", arguments);
    QVERIFY(outcome.hasExited);
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(StorageManager::loadData(path()), isSaved ? documentOfSize(size) : fullDocument());
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
             QStringList{"data.json"});
}

void StorageManagerTest::symbolicLinkIsFollowed_data()
{
    QTest::addColumn<bool>("hasTarget");
    QTest::addColumn<bool>("isLink");
    QTest::newRow("no link, for comparison") << true << false;
    if (canMakeLinks()) {
        QTest::newRow("link to a document") << true << true;
        QTest::newRow("link to nowhere") << false << true;
    }
}

void StorageManagerTest::symbolicLinkIsFollowed()
{
    QFETCH(bool, hasTarget);
    QFETCH(bool, isLink);
    QVERIFY(QDir(m_dir->path()).mkpath("elsewhere"));
    const QString target = isLink ? path("elsewhere/document.json") : path();
    if (hasTarget)
        StorageManager::saveData(target, fullDocument());
    if (isLink)
        QVERIFY(makeLink(target, path()));
    QCOMPARE(StorageManager::loadData(path()), hasTarget ? fullDocument() : firstDocument());

    LauncherData changed = fullDocument();
    changed.categories.append("Changed");
    StorageManager::saveData(path(), changed);
    QCOMPARE(QFileInfo(path()).isSymLink(), isLink);
    QCOMPARE(StorageManager::loadData(target), changed);
    QCOMPARE(StorageManager::loadData(path()), changed);
}

void StorageManagerTest::quarantineMovesTheLinkAndNotItsTarget()
{
    write("broken", "document.json");
    // Where links can't be made a plain file stands in, and the same rule holds.
    if (!makeLink(path("document.json"), path()))
        write("broken");
    QCOMPARE(StorageManager::loadData(path()), firstDocument());
    QVERIFY(!QFileInfo(path()).isSymLink());
    QVERIFY(!QFile::exists(path()));
    QCOMPARE(read("data.json.bak"), "broken");
    QCOMPARE(read("document.json"), "broken");
}

int main(int argc, char** argv)
{
    return FreshProcess::main<StorageManagerTest>(argc, argv, {{"save", saveDocument}});
}

#include "tst_storagemanager.moc"
