// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Files.h"
#include "FreshProcess.h"
#include "LauncherModel.h"
#include "StorageManager.h"
#include "TestFiles.h"
#include "TestHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>

#include <optional>

/// The document that an import or a reset takes away, whatever is wrong with the disk or with the
/// file that is imported; and the export, from which it may come back.
class ReplacedDocumentTest : public QObject, private TestTree
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void previousIsPrivate();
    void fullDisk_data();
    void fullDisk();
    void fullDiskAtAnImportOfTheBrokenPrevious_data();
    void fullDiskAtAnImportOfTheBrokenPrevious();
    void fullDiskAtAnExport_data();
    void fullDiskAtAnExport();
    void exportTakesTheOldFileAway();
    void neitherPipesNorDevicesAreRead_data();
    void neitherPipesNorDevicesAreRead();
    void flippedBytes();
};

namespace
{

constexpr int kFlips = 1000;
constexpr quint32 kSeed = 20261122;

LauncherData document(const QString& category, int size)
{
    LauncherData data;
    data.categories = {category};
    data.defaultCategory = category;
    data.categoryIcons = {{category, 10}};
    data.sectionElements = {{category, {{"id-1", "Mail", "Snippet", QString(size, u'x'), ""}}}};
    data.templates = {{"Set", 30, {{"", "Note", "Snippet", "text", ""}}}};
    return data;
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(not readable)");
}

/// What a process does on a full disk: imports a file, or resets without one. The result is the
/// code.
int replaceTask(const QStringList& arguments)
{
    LauncherModel model(arguments.at(0), nullptr);
    const LauncherModel::Replacement outcome =
        arguments.at(1).isEmpty() ? model.resetData() : model.importData(arguments.at(1));
    return static_cast<int>(outcome);
}

int exportTask(const QStringList& arguments)
{
    return copyOver(arguments.at(0), arguments.at(1)) ? 0 : 1;
}

FreshProcess::Outcome runWith(int blocks, const QString& task, const QStringList& arguments)
{
    return blocks < 0 ? FreshProcess::run(task, arguments)
                      : FreshProcess::runWithFullDisk(blocks, task, arguments);
}

} // namespace

void ReplacedDocumentTest::init()
{
    makeRoot();
    StorageManager::saveData(path("data.json"), document("Work", 10));
}

void ReplacedDocumentTest::previousIsPrivate()
{
    write("data.json.previous", "open from earlier");
    QVERIFY(QFile::setPermissions(path("data.json.previous"),
                                  QFileDevice::Permissions(0x6666))); // for everybody
    LauncherModel model(path("data.json"), nullptr);
    QCOMPARE(model.resetData(), LauncherModel::Replacement::Done);
    const QFileDevice::Permissions others = QFile::permissions(path("data.json.previous")) &
                                            (QFileDevice::ReadGroup | QFileDevice::WriteGroup |
                                             QFileDevice::ReadOther | QFileDevice::WriteOther);
    // As private as the document itself; some systems know no rights.
    QCOMPARE(others, QFile::permissions(path("data.json")) &
                         (QFileDevice::ReadGroup | QFileDevice::WriteGroup |
                          QFileDevice::ReadOther | QFileDevice::WriteOther));
}

void ReplacedDocumentTest::fullDisk_data()
{
    QTest::addColumn<int>("blocks"); // of 512 bytes, -1 for as many as there are
    QTest::addColumn<bool>("isImport");
    QTest::addColumn<int>("outcome");
    QTest::addColumn<QString>("category"); // on disk afterwards
    const int done = static_cast<int>(LauncherModel::Replacement::Done);
    const int notKept = static_cast<int>(LauncherModel::Replacement::NotKept);
    QTest::newRow("import with enough room, for comparison") << -1 << true << done << "Home";
    QTest::newRow("reset with enough room, for comparison") << -1 << false << done << "Default";
    if (FreshProcess::canLimitFileSize()) {
        QTest::newRow("import without any room") << 0 << true << notKept << "Work";
        QTest::newRow("reset without any room") << 0 << false << notKept << "Work";
        QTest::newRow("import with room for a part") << 1 << true << notKept << "Work";
        // The old document is kept and the new one not written: the file stays the old one.
        QTest::newRow("import with room for the old one") << 64 << true << done << "Work";
    }
}

void ReplacedDocumentTest::fullDisk()
{
    QFETCH(int, blocks);
    QFETCH(bool, isImport);
    QFETCH(int, outcome);
    QFETCH(QString, category);
    StorageManager::saveData(path("other.json"), document("Home", 1'000'000));
    const QByteArray before = contentOf(path("data.json"));
    const QByteArray chosen = contentOf(path("other.json"));
    write("data.json.previous", "from earlier");
    const FreshProcess::Outcome result =
        runWith(blocks, "replace", {path("data.json"), isImport ? path("other.json") : QString()});
    QVERIFY(result.hasExited);
    QCOMPARE(result.exitCode, outcome);
    QCOMPARE(StorageManager::loadData(path("data.json")).categories, QStringList{category});
    if (category == "Work")
        QCOMPARE(contentOf(path("data.json")), before);
    QCOMPARE(contentOf(path("data.json.previous")), outcome == 0 ? before : "from earlier");
    QCOMPARE(contentOf(path("other.json")), chosen);
    QCOMPARE(QDir(root()).entryList(QDir::Files | QDir::Hidden, QDir::Name),
             QStringList({"data.json", "data.json.previous", "other.json"}));
}

void ReplacedDocumentTest::fullDiskAtAnImportOfTheBrokenPrevious_data()
{
    QTest::addColumn<int>("blocks");
    QTest::addColumn<int>("outcome");
    QTest::addColumn<QByteArray>("aside");
    const int notKept = static_cast<int>(LauncherModel::Replacement::NotKept);
    QTest::newRow("enough room, for comparison")
        << -1 << static_cast<int>(LauncherModel::Replacement::Done) << QByteArray("[broken");
    if (FreshProcess::canLimitFileSize()) {
        QTest::newRow("no room at all") << 0 << notKept << QByteArray("broken earlier");
        QTest::newRow("room for the broken one") << 1 << notKept << QByteArray("[broken");
    }
}

void ReplacedDocumentTest::fullDiskAtAnImportOfTheBrokenPrevious()
{
    QFETCH(int, blocks);
    QFETCH(int, outcome);
    const QByteArray before = contentOf(path("data.json"));
    QVERIFY(before.size() > 512);
    write("data.json.previous", "[broken");
    write("data.json.previous.bak", "broken earlier");
    const FreshProcess::Outcome result =
        runWith(blocks, "replace", {path("data.json"), path("data.json.previous")});
    QVERIFY(result.hasExited);
    QCOMPARE(result.exitCode, outcome);
    QTEST(contentOf(path("data.json.previous.bak")), "aside");
    QCOMPARE(contentOf(path("data.json.previous")), blocks < 0 ? before : "[broken");
    QCOMPARE(contentOf(path("data.json")) == before, blocks >= 0);
}

void ReplacedDocumentTest::fullDiskAtAnExport_data()
{
    QTest::addColumn<int>("blocks");
    QTest::addColumn<int>("size");
    QTest::newRow("enough room, for comparison") << -1 << 1'000'000;
    if (FreshProcess::canLimitFileSize()) {
        QTest::newRow("no room at all") << 0 << 1'000'000;
        QTest::newRow("room for a part") << 64 << 1'000'000;
        QTest::newRow("room for a part of little") << 1 << 1'000;
    }
}

void ReplacedDocumentTest::fullDiskAtAnExport()
{
    QFETCH(int, blocks);
    QFETCH(int, size);
    StorageManager::saveData(path("data.json"), document("Work", size));
    write("copy.json", "an older copy");
    const FreshProcess::Outcome result =
        runWith(blocks, "export", {path("data.json"), path("copy.json")});
    QVERIFY(result.hasExited);
    QCOMPARE(result.exitCode, blocks < 0 ? 0 : 1);
    if (blocks < 0)
        QCOMPARE(contentOf(path("copy.json")), contentOf(path("data.json")));
    const QStringList whole{"copy.json", "data.json"};
    QCOMPARE(QDir(root()).entryList(QDir::Files | QDir::Hidden, QDir::Name),
             blocks < 0 ? whole : whole.mid(1));
}

void ReplacedDocumentTest::exportTakesTheOldFileAway()
{
    write("copy.json", "an older copy");
    QVERIFY(!copyOver(path("missing.json"), path("copy.json")));
    QVERIFY(!QFileInfo::exists(path("copy.json")));
    // Nothing is lost where there is nothing to win.
    const QByteArray before = contentOf(path("data.json"));
    QVERIFY(copyOver(path("data.json"), path("data.json")));
    QCOMPARE(contentOf(path("data.json")), before);
    makeDirectory("folder/inside");
    QVERIFY(!copyOver(path("data.json"), path("folder")));
    QVERIFY(QFileInfo(path("folder/inside")).isDir());
}

void ReplacedDocumentTest::neitherPipesNorDevicesAreRead_data()
{
    QTest::addColumn<QString>("source");
    QTest::newRow("directory") << "folder";
    if (QFileInfo::exists("/dev/zero")) {
        QTest::newRow("device") << "/dev/zero";
        QTest::newRow("terminal") << "/dev/tty";
        QTest::newRow("nothing at all") << "/dev/null";
        QTest::newRow("pipe") << "pipe";
    }
}

void ReplacedDocumentTest::neitherPipesNorDevicesAreRead()
{
    QFETCH(QString, source);
    makeDirectory("folder");
    if (source == "pipe")
        QCOMPARE(QProcess::execute("mkfifo", {path("pipe")}), 0);
    if (!source.startsWith('/'))
        source = path(source);
    const QByteArray before = contentOf(path("data.json"));
    LauncherModel model(path("data.json"), nullptr);
    QCOMPARE(model.importData(source), LauncherModel::Replacement::Unreadable);
    QCOMPARE(model.data(), document("Work", 10));
    QCOMPARE(contentOf(path("data.json")), before);
    QVERIFY(!QFileInfo::exists(path("data.json.previous")));
}

void ReplacedDocumentTest::flippedBytes()
{
    QVERIFY(copyOver(path("data.json"), path("copy.json")));
    const QByteArray exported = contentOf(path("copy.json"));
    LauncherModel model(path("data.json"), nullptr);
    QRandomGenerator random(kSeed);
    int brokenCount = 0;
    for (int i = 0; i < kFlips; ++i) {
        QByteArray flipped = exported;
        const qsizetype at = random.bounded(flipped.size());
        flipped[at] = static_cast<char>(flipped.at(at) ^ (1 + random.bounded(255)));
        write("copy.json", flipped);
        const LauncherData before = model.data();
        QCOMPARE(model.importData(path("copy.json")), LauncherModel::Replacement::Done);
        QCOMPARE(StorageManager::loadData(path("data.json.previous")), before);
        QCOMPARE(StorageManager::loadData(path("data.json")), model.data());
        QVERIFY(model.data().categories.contains(model.data().defaultCategory));
        const std::optional<LauncherData> parsed = StorageManager::parse(flipped);
        QCOMPARE(QFileInfo::exists(path("copy.json")), parsed.has_value());
        QCOMPARE(contentOf(path(parsed ? "copy.json" : "copy.json.bak")), flipped);
        if (parsed)
            continue;
        ++brokenCount;
        QCOMPARE(model.data(), StorageManager::emptyDocument());
        // And back.
        QCOMPARE(model.importData(path("data.json.previous")), LauncherModel::Replacement::Done);
        QCOMPARE(model.data(), before);
    }
    QVERIFY(brokenCount > 0 && brokenCount < kFlips);
}

int main(int argc, char** argv)
{
    return FreshProcess::main<ReplacedDocumentTest>(
        argc, argv, {{"replace", replaceTask}, {"export", exportTask}});
}

#include "tst_replaceddocument.moc"
