// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FreshProcess.h"
#include "TestHome.h"
#include "UsageStats.h"

#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>
#include <QTextStream>

#include <cmath>
#include <limits>

class UsageStatsTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void cleanup();

    void decayedCount_data();
    void decayedCount();
    void fromBytes_data();
    void fromBytes();
    void toBytesIsOneCompactObject();
    void bytesRoundTrip_data();
    void bytesRoundTrip();

    void filePathIsInTheDataDirectory();
    void firstLaunchWritesTheFile();
    void eachLaunchCountsAndWrites();
    void emptyKeyDoesNothing();
    void unknownKeyScoresNothing();
    void storedRecordsScore();
    void aRecordFromTheFutureScoresItsCount();
    void aLaunchMakesAnOldRecordFresh();
    void otherRecordsAreKept();
    void recordsWithoutACountVanishWithTheNextLaunch();
    void theCountSaturates();
    void unusableFileIsOverwritten_data();
    void unusableFileIsOverwritten();
    void theFileIsReadOncePerProcess();
    void aDeletedFileComesBackWhole();
    void aFailedSaveStaysInMemory();
    void fullDiskLeavesTheOldFile_data();
    void fullDiskLeavesTheOldFile();
};

namespace
{

constexpr qint64 kDay = 86400;

QString usageFile()
{
    return QDir(TestHome::dataDir()).filePath("usage.json");
}

QByteArray usageContent()
{
    QFile file(usageFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(not readable)");
}

UsageStats::Map usageRecords()
{
    return UsageStats::fromBytes(usageContent());
}

void writeUsage(const UsageStats::Map& records)
{
    TestHome::writeDataFile("usage.json", UsageStats::toBytes(records));
}

qint64 now()
{
    return QDateTime::currentSecsSinceEpoch();
}

/// The child's side: does what the words say, in order. "record" and "score" take a key, "write"
/// the new content of the file; a score is printed on a line of its own.
int runScript(const QStringList& words)
{
    QTextStream out(stdout);
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QString& word = words.at(i);
        if (word == "record")
            UsageStats::record(words.at(++i));
        else if (word == "score")
            out << QString::number(UsageStats::scoreFor(words.at(++i)), 'g', 17) << '\n';
        else if (word == "write")
            TestHome::writeDataFile("usage.json", words.at(++i).toUtf8());
        else if (word == "delete file")
            QFile::remove(usageFile());
        else if (word == "block file")
            QDir().mkpath(usageFile() + "/inside");
        else if (word == "unblock file")
            QDir(usageFile()).removeRecursively();
        else
            qFatal("no such word: %s", qPrintable(word));
    }
    return 0;
}

/// The scores that the script printed in a process of its own, rounded to a thousandth, because
/// the clock goes on.
QList<double> run(const QStringList& script)
{
    QList<double> scores;
    for (const QString& line : FreshProcess::linesOf("script", script))
        scores.append(std::round(line.toDouble() * 1000.0) / 1000.0);
    return scores;
}

} // namespace

void UsageStatsTest::cleanup()
{
    QDir(usageFile()).removeRecursively();
    QFile::remove(usageFile());
}

void UsageStatsTest::decayedCount_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<qint64>("age");
    QTest::addColumn<double>("score");
    QTest::newRow("now") << 3 << qint64(0) << 3.0;
    QTest::newRow("one half-life") << 10 << 30 * kDay << 5.0;
    QTest::newRow("two half-lives") << 10 << 60 * kDay << 2.5;
    QTest::newRow("half a half-life") << 1 << 15 * kDay << std::sqrt(0.5);
    QTest::newRow("one second") << 1 << qint64(1) << std::pow(2.0, -1.0 / (30.0 * 86400.0));
    QTest::newRow("from the future") << 7 << -1000 * kDay << 7.0;
    QTest::newRow("from the beginning of time")
        << 1000 << std::numeric_limits<qint64>::max() / 2 << 0.0;
    QTest::newRow("from the end of time")
        << 1000 << -(std::numeric_limits<qint64>::max() / 2) << 1000.0;
    QTest::newRow("no launches") << 0 << qint64(0) << 0.0;
    QTest::newRow("as many as there can be")
        << std::numeric_limits<int>::max() << qint64(0) << 2147483647.0;
}

void UsageStatsTest::decayedCount()
{
    QFETCH(int, count);
    QFETCH(qint64, age);
    const qint64 at = 1700000000;
    QTEST(UsageStats::decayedCount({count, at - age}, at), "score");
}

void UsageStatsTest::fromBytes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<UsageStats::Map>("records");
    const auto row = [](const char* name, const QByteArray& bytes,
                        const UsageStats::Map& records = {}) {
        QTest::newRow(name) << bytes << records;
    };
    row("empty", "");
    row("no JSON", "not json");
    row("cut off", R"({"a":{"c":1,"t":2})");
    row("array", R"([{"c":1,"t":2}])");
    row("not UTF-8", "{\"caf\xE9\":{\"c\":1,\"t\":2}}");
    row("nested deeply", QByteArray(100000, '['));
    row("empty object", "{}");
    row("records", R"({"a":{"c":1,"t":2},"b":{"t":4,"c":3}})", {{"a", {1, 2}}, {"b", {3, 4}}});
    row("members that are no objects are dropped, the rest kept",
        R"({"a":1,"b":"x","c":null,"d":[{"c":1}],"e":{"c":1,"t":2},"f":true})", {{"e", {1, 2}}});
    row("without a count", R"({"a":{"t":2},"b":{"c":1}})", {{"b", {1, 0}}});
    row("count not positive", R"({"a":{"c":0,"t":2},"b":{"c":-1,"t":2}})");
    row("count ill-typed", R"({"a":{"c":"5","t":2},"b":{"c":1.5,"t":2},"c":{"c":1e10,"t":2}})");
    row("time ill-typed", R"({"a":{"c":1,"t":"2"}})", {{"a", {1, 0}}});
    row("time with a fraction", R"({"a":{"c":1,"t":2.999},"b":{"c":1,"t":-2.999}})",
        {{"a", {1, 2}}, {"b", {1, -2}}});
    row("time beyond every clock", R"({"a":{"c":1,"t":1e300},"b":{"c":1,"t":-1e300}})",
        {{"a", {1, 9007199254740992}}, {"b", {1, -9007199254740992}}});
    row("other keys", R"({"a":{"c":1,"t":2,"x":3}})", {{"a", {1, 2}}});
    row("of a doubled key the last counts", R"({"a":{"c":1,"t":2},"a":{"c":3,"t":4}})",
        {{"a", {3, 4}}});
    row("keys are opaque", R"({"/tmp/a \"b\"\n":{"c":1,"t":2},"日本":{"c":3,"t":4}})",
        {{"/tmp/a \"b\"\n", {1, 2}}, {"日本", {3, 4}}});
}

void UsageStatsTest::fromBytes()
{
    QFETCH(QByteArray, bytes);
    QTEST(UsageStats::fromBytes(bytes), "records");
}

void UsageStatsTest::toBytesIsOneCompactObject()
{
    QCOMPARE(UsageStats::toBytes({{"a", {2, 1700000000}}}), R"({"a":{"c":2,"t":1700000000}})");
    QCOMPARE(UsageStats::toBytes({}), "{}");
}

void UsageStatsTest::bytesRoundTrip_data()
{
    QTest::addColumn<UsageStats::Map>("records");
    QTest::newRow("several") << UsageStats::Map{{"a", {1, 2}}, {"b", {3, 1700000000}}};
    QTest::newRow("extremes") << UsageStats::Map{
        {"a", {std::numeric_limits<int>::max(), 9007199254740992}}, {"b", {1, -9007199254740992}}};
    QTest::newRow("odd keys") << UsageStats::Map{{"/home/a/b\nc", {1, 2}},
                                                 {QString::fromUtf16(u"\u202Egnp.exe"), {1, 3}},
                                                 {"x" + QString(QChar(0xD83D)), {1, 4}},
                                                 {" ", {1, 5}},
                                                 {QString(100000, 'k'), {1, 6}}};
}

void UsageStatsTest::bytesRoundTrip()
{
    QFETCH(UsageStats::Map, records);
    QCOMPARE(UsageStats::fromBytes(UsageStats::toBytes(records)), records);
}

void UsageStatsTest::filePathIsInTheDataDirectory()
{
    QCOMPARE(UsageStats::filePath(), usageFile());
}

void UsageStatsTest::firstLaunchWritesTheFile()
{
    const qint64 before = now();
    QCOMPARE(run({"record", "a key", "score", "a key"}), QList<double>{1.0});
    const UsageStats::Map records = usageRecords();
    QCOMPARE(records.keys(), QStringList{"a key"});
    QCOMPARE(records["a key"].count, 1);
    QVERIFY(records["a key"].last >= before);
    QVERIFY(records["a key"].last <= now());
    QVERIFY2(!usageContent().contains('\n') && !usageContent().contains(' ' + QByteArray("\"")),
             usageContent().constData());
}

void UsageStatsTest::eachLaunchCountsAndWrites()
{
    QCOMPARE(run({"record", "a", "record", "a", "record", "b", "score", "a", "score", "b"}),
             (QList<double>{2.0, 1.0}));
    QCOMPARE(usageRecords()["a"].count, 2);
    // A new process goes on from there.
    QCOMPARE(run({"record", "a", "score", "a", "score", "b"}), (QList<double>{3.0, 1.0}));
    QCOMPARE(usageRecords()["a"].count, 3);
    QCOMPARE(QDir(TestHome::dataDir()).entryList({"usage*"}, QDir::Files),
             QStringList{"usage.json"});
}

void UsageStatsTest::emptyKeyDoesNothing()
{
    QCOMPARE(run({"record", "", "score", ""}), QList<double>{0.0});
    QVERIFY(!QFile::exists(usageFile()));
    // Nor does a record of that name count that got into the file otherwise.
    writeUsage({{"", {5, now()}}});
    QCOMPARE(run({"score", ""}), QList<double>{0.0});
}

void UsageStatsTest::unknownKeyScoresNothing()
{
    QCOMPARE(run({"score", "a", "record", "b", "score", "a", "score", "B"}),
             (QList<double>{0.0, 0.0, 0.0}));
    // Asking leaves no record.
    QCOMPARE(usageRecords().keys(), QStringList{"b"});
}

void UsageStatsTest::storedRecordsScore()
{
    writeUsage({{"now", {4, now()}},
                {"a month", {10, now() - 30 * kDay}},
                {"two months", {10, now() - 60 * kDay}},
                {"long ago", {10, 0}}});
    QCOMPARE(run({"score", "now", "score", "a month", "score", "two months", "score", "long ago"}),
             (QList<double>{4.0, 5.0, 2.5, 0.0}));
}

void UsageStatsTest::aRecordFromTheFutureScoresItsCount()
{
    writeUsage({{"a", {7, now() + 1000 * kDay}}, {"b", {7, 9007199254740992}}});
    QCOMPARE(run({"score", "a", "score", "b"}), (QList<double>{7.0, 7.0}));
}

void UsageStatsTest::aLaunchMakesAnOldRecordFresh()
{
    writeUsage({{"a", {9, now() - 300 * kDay}}});
    QCOMPARE(run({"record", "a", "score", "a"}), QList<double>{10.0});
}

void UsageStatsTest::otherRecordsAreKept()
{
    // However low their score is.
    writeUsage({{"old", {1, 1}}, {"future", {1, 9007199254740992}}});
    run({"record", "a"});
    const UsageStats::Map records = usageRecords();
    QCOMPARE(records.size(), 3);
    QCOMPARE(records["old"], (UsageStats::Stat{1, 1}));
    QCOMPARE(records["future"], (UsageStats::Stat{1, 9007199254740992}));
}

void UsageStatsTest::recordsWithoutACountVanishWithTheNextLaunch()
{
    const QByteArray content = R"({"zero":{"c":0,"t":5},"text":"x","kept":{"c":1,"t":5.9}})";
    TestHome::writeDataFile("usage.json", content);
    QCOMPARE(run({"score", "zero"}), QList<double>{0.0});
    QCOMPARE(usageContent(), content);

    run({"record", "a"});
    const QJsonObject root = QJsonDocument::fromJson(usageContent()).object();
    QCOMPARE(root.keys(), (QStringList{"a", "kept"}));
    QCOMPARE(root["kept"].toObject(), (QJsonObject{{"c", 1}, {"t", 5}}));
}

void UsageStatsTest::theCountSaturates()
{
    const int most = std::numeric_limits<int>::max();
    writeUsage({{"a", {most, now()}}});
    run({"record", "a"});
    QCOMPARE(usageRecords()["a"].count, most);
}

void UsageStatsTest::unusableFileIsOverwritten_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("no JSON") << QByteArray("not json");
    QTest::newRow("array") << QByteArray("[1]");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("zeros") << QByteArray(100, '\0');
    QTest::newRow("nested deeply") << QByteArray(R"({"a":)").repeated(100000);
}

void UsageStatsTest::unusableFileIsOverwritten()
{
    QFETCH(QByteArray, content);
    TestHome::writeDataFile("usage.json", content);
    QCOMPARE(run({"score", "a"}), QList<double>{0.0});
    QCOMPARE(usageContent(), content);
    QCOMPARE(run({"score", "a", "record", "a", "score", "a"}), (QList<double>{0.0, 1.0}));
    QCOMPARE(usageRecords()["a"].count, 1);
    QVERIFY(!QFile::exists(usageFile() + ".bak"));
}

void UsageStatsTest::theFileIsReadOncePerProcess()
{
    const QString later = QString::fromUtf8(UsageStats::toBytes({{"a", {8, now()}}}));
    QCOMPARE(run({"score", "a", "write", later, "score", "a"}), (QList<double>{0.0, 0.0}));
    QCOMPARE(run({"score", "a"}), QList<double>{8.0});
    // What the process knows replaces what it doesn't.
    run({"delete file", "record", "b", "write", later, "record", "b"});
    QCOMPARE(usageRecords().keys(), QStringList{"b"});
}

void UsageStatsTest::aDeletedFileComesBackWhole()
{
    writeUsage({{"a", {5, now()}}});
    QCOMPARE(run({"score", "a", "delete file", "score", "a"}), (QList<double>{5.0, 5.0}));
    QVERIFY(!QFile::exists(usageFile()));

    writeUsage({{"a", {5, now()}}});
    QCOMPARE(run({"score", "a", "delete file", "record", "b", "score", "a"}),
             (QList<double>{5.0, 5.0}));
    QCOMPARE(usageRecords()["a"].count, 5);
    QCOMPARE(usageRecords()["b"].count, 1);
}

void UsageStatsTest::aFailedSaveStaysInMemory()
{
    // A directory of that name can be neither read nor replaced, whoever runs the test.
    QCOMPARE(run({"block file", "score", "a", "record", "a", "score", "a"}),
             (QList<double>{0.0, 1.0}));
    QVERIFY(QFileInfo(usageFile() + "/inside").isDir());
    QCOMPARE(run({"record", "a", "unblock file", "record", "b"}), QList<double>());
    QCOMPARE(usageRecords()["a"].count, 1);
    QCOMPARE(usageRecords()["b"].count, 1);
}

void UsageStatsTest::fullDiskLeavesTheOldFile_data()
{
    QTest::addColumn<int>("blocks"); // -1 for as many as there are
    QTest::addColumn<int>("count");  // what the file says afterwards
    QTest::newRow("enough room, for comparison") << -1 << 2;
    if (FreshProcess::canLimitFileSize()) {
        QTest::newRow("room for a part") << 4 << 1;
        QTest::newRow("no room at all") << 0 << 1;
    }
}

void UsageStatsTest::fullDiskLeavesTheOldFile()
{
    QFETCH(int, blocks);
    const UsageStats::Map before = {{"a", {1, 5}}, {QString(10000, 'k'), {1, 5}}};
    writeUsage(before);
    const QStringList script = {"record", "a"};
    const FreshProcess::Outcome outcome =
        blocks < 0 ? FreshProcess::run("script", script)
                   : FreshProcess::runWithFullDisk(blocks, "script", script);
    QVERIFY(outcome.hasExited);
    QCOMPARE(outcome.exitCode, 0);
    QTEST(usageRecords().value("a").count, "count");
    QCOMPARE(usageRecords().size(), 2);
}

int main(int argc, char** argv)
{
    return FreshProcess::main<UsageStatsTest>(argc, argv, {{"script", runScript}});
}

#include "tst_usagestats.moc"
