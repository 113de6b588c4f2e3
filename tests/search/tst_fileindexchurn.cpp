// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "DirectoryReader.h"
#include "FileIndex.h"
#include "TestFiles.h"
#include "TestHome.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <functional>

using Entry = FileIndex::Entry;

/// Whatever happens to the files: once it has become quiet and a scan has come by, the index holds
/// what a fresh walk finds.
///
/// ORLIMO_CHURN_SEEDS and ORLIMO_CHURN_OPERATIONS set how many runs there are and how long each is.
class FileIndexChurnTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::installWithHome(); }

private slots:
    void initTestCase();
    void churn_data();
    void churn();
    void smallChanges();
    void cleanupTestCase();
};

namespace
{

constexpr int kPatienceMs = 60000;
constexpr int kSeeds = 3;
constexpr int kOperations = 1500;
constexpr int kOperationsPerRound = 250;
constexpr int kPauseOneIn = 60;
constexpr int kLongestPauseMs = 40;
constexpr int kRetryMs = 3 * FileIndex::CoalesceMs;
constexpr int kSmallRounds = 6;

int numberFrom(const char* variable, int fallback)
{
    bool isNumber = false;
    const int number = qEnvironmentVariableIntValue(variable, &isNumber);
    return isNumber ? number : fallback;
}

/// What the index should hold, sorted.
QStringList walk()
{
    static const QStringList excluded = {"appdata", "node_modules",
                                         ".git",    "__pycache__",
                                         ".venv",   Platform::programDataFolderName().toLower()};
    QStringList paths;
    QStringList folders = {FileIndex::rootPath()};
    while (!folders.isEmpty()) {
        const QString folder = folders.takeLast();
        const QFileInfoList contents = QDir(folder).entryInfoList(
            QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
        for (const QFileInfo& item : contents) {
            const bool isFolder = item.isDir() || (item.isSymbolicLink() && !item.isFile());
            if (isFolder && (item.isSymbolicLink() || excluded.contains(item.fileName().toLower())))
                continue;
            const QString path = QDir::toNativeSeparators(item.filePath());
            paths.append(path + (isFolder ? QString(QDir::separator()) : QString()));
            if (isFolder)
                folders.append(item.filePath());
        }
    }
    paths.sort();
    return paths;
}

QStringList indexed()
{
    QStringList paths;
    for (const Entry& entry : FileIndex::entries()) {
        if (entry.lowerName != FileIndex::nameOf(entry).toLower())
            qFatal("a wrong name for %s", qPrintable(entry.path));
        paths.append(entry.path + (entry.isDir ? QString(QDir::separator()) : QString()));
    }
    paths.sort();
    return paths;
}

bool isIndexed(const QString& path)
{
    const FileIndex::Entries all = FileIndex::entries();
    return std::any_of(all.begin(), all.end(),
                       [&path](const Entry& entry) { return entry.path == path; });
}

/// What one has that the other hasn't.
QByteArray difference(const QStringList& actual, const QStringList& expected)
{
    QStringList lines;
    for (const QString& path : actual) {
        if (!expected.contains(path))
            lines.append("too much: " + path);
    }
    for (const QString& path : expected) {
        if (!actual.contains(path))
            lines.append("missing: " + path);
    }
    return lines.mid(0, 20).join('\n').toUtf8() + "\nin all " + QByteArray::number(lines.size());
}

/// Makes folders until one of them is in the index. A scan that is under way covers what happened
/// before it, so a folder may be passed over; the next one brings a scan of its own.
bool hasScannedAfter(const QString& name)
{
    static int number = 0;
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < kPatienceMs) {
        const QString marker =
            FileIndex::rootPath() + QDir::separator() + "marker" + name + QString::number(++number);
        if (!QDir().mkdir(marker))
            return false;
        if (QTest::qWaitFor([&marker] { return isIndexed(marker); }, kRetryMs))
            return true;
    }
    return false;
}

/// Waits until what has happened so far is in the index. The scan that brings the first marker may
/// have begun too early, but no scan is under way when it is delivered, so that the one that brings
/// the second began after all of it.
bool settle()
{
    return hasScannedAfter("a") && hasScannedAfter("b");
}

void makeFile(const QString& path)
{
    static_cast<void>(TestFiles::write(path)); // a folder of that name may be there
}

/// Does things to files and folders at random, and knows which there should be by looking.
class Churn
{
public:
    explicit Churn(quint32 seed)
        : m_random(seed), m_root(FileIndex::rootPath() + "/churn" + QString::number(seed))
    {
        QDir().mkpath(m_root);
    }

    void operate()
    {
        const QString folder = pickFolder();
        switch (m_random.bounded(12)) {
        case 0:
        case 1:
        case 2:
        case 3:
            makeFile(folder + '/' + makeName());
            break;
        case 4:
            QDir().mkpath(folder + '/' + makeName() + '/' + makeName());
            break;
        case 5:
            QDir().mkdir(folder + '/' + makeName());
            break;
        case 6:
        case 7:
            move(pick(QDir::Files), folder + '/' + makeName());
            break;
        case 8:
            move(pick(QDir::Dirs), folder + '/' + makeName());
            break;
        case 9:
        case 10:
            removeFile(pick(QDir::Files));
            break;
        default:
            removeFolder(pick(QDir::Dirs));
        }
    }

    /// Lets the index see something of it in the meantime.
    void pause()
    {
        QElapsedTimer timer;
        timer.start();
        const int length = m_random.bounded(kLongestPauseMs);
        static_cast<void>(QTest::qWaitFor([&] { return timer.elapsed() >= length; }));
    }

    QRandomGenerator& random() { return m_random; }

private:
    QString makeName()
    {
        static const QStringList special = {".git",  "node_modules", "AppData", "__pycache__",
                                            ".venv", ".hidden",      "Ünïcödé", "日本"};
        if (m_random.bounded(12) == 0)
            return special.at(m_random.bounded(static_cast<int>(special.size())));
        // Few, so that things come back under the names of others.
        return QString("name%1").arg(m_random.bounded(25));
    }

    QStringList contents(const QString& folder, QDir::Filters filters) const
    {
        return QDir(folder).entryList(filters | QDir::Hidden | QDir::NoDotAndDotDot |
                                      QDir::NoSymLinks);
    }

    /// A folder of the corner, reached by a random way.
    QString pickFolder()
    {
        QString folder = m_root;
        while (m_random.bounded(3) != 0) {
            const QStringList inner = contents(folder, QDir::Dirs);
            if (inner.isEmpty())
                break;
            folder += '/' + inner.at(m_random.bounded(static_cast<int>(inner.size())));
        }
        return folder;
    }

    /// Something to act on; empty if there happens to be nothing.
    QString pick(QDir::Filters filters)
    {
        const QString folder = pickFolder();
        const QStringList found = contents(folder, filters);
        if (found.isEmpty())
            return {};
        return folder + '/' + found.at(m_random.bounded(static_cast<int>(found.size())));
    }

    static void move(const QString& from, const QString& to)
    {
        if (!from.isEmpty())
            QDir().rename(from, to); // fails where something is, or into itself
    }

    static void removeFile(const QString& path)
    {
        if (!path.isEmpty())
            QFile::remove(path);
    }

    void removeFolder(const QString& path)
    {
        // Not often, or else nothing would grow.
        if (!path.isEmpty() && (m_random.bounded(3) == 0 || QDir(path).isEmpty()))
            QDir(path).removeRecursively();
    }

    QRandomGenerator m_random;
    QString m_root;
};

} // namespace

void FileIndexChurnTest::initTestCase()
{
    FileIndex::build();
    QTRY_VERIFY_WITH_TIMEOUT(FileIndex::isReady(), kPatienceMs);
}

void FileIndexChurnTest::churn_data()
{
    QTest::addColumn<quint32>("seed");
    const int seeds = numberFrom("ORLIMO_CHURN_SEEDS", kSeeds);
    for (int i = 1; i <= seeds; ++i)
        QTest::addRow("seed %d", i) << static_cast<quint32>(i);
}

void FileIndexChurnTest::churn()
{
    QFETCH(quint32, seed);
    Churn churn(seed);
    const int operations = numberFrom("ORLIMO_CHURN_OPERATIONS", kOperations);
    for (int done = 0; done < operations; done += kOperationsPerRound) {
        for (int i = 0; i < kOperationsPerRound; ++i) {
            churn.operate();
            if (churn.random().bounded(kPauseOneIn) == 0)
                churn.pause();
        }
        QVERIFY(settle());
        const QStringList actual = indexed();
        const QStringList expected = walk();
        QVERIFY2(actual == expected, difference(actual, expected).constData());
    }
    QVERIFY(FileIndex::entries().size() > 20);
}

/// Files alone, and few at a time: these go into the list one by one, without a scan.
void FileIndexChurnTest::smallChanges()
{
    const QString folder = FileIndex::rootPath() + "/small";
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(settle());
    QRandomGenerator random(1);
    int deliveries = 0;
    FileIndex::setOnReady([&deliveries] { ++deliveries; });
    // The folders that brought the last scan may have been news once more: it is over when one
    // more quiet time has passed without anything.
    const auto isAtRest = [&deliveries] {
        const int before = deliveries;
        return !QTest::qWaitFor([&] { return deliveries != before; }, kRetryMs);
    };
    QTRY_VERIFY_WITH_TIMEOUT(isAtRest(), kPatienceMs);
    for (int round = 0; round < kSmallRounds; ++round) {
        for (int i = 0; i < FileIndex::MaxIncremental / 4; ++i) {
            const QString path = QString("%1/%2").arg(folder).arg(random.bounded(12));
            const QString other = path + '_';
            if (QFile::exists(other))
                QVERIFY(QFile::remove(other));
            else if (QFile::exists(path))
                QVERIFY(QFile::rename(path, other));
            else
                makeFile(path);
        }
        const int before = deliveries;
        const QString last = QDir::toNativeSeparators(QString("%1/last%2").arg(folder).arg(round));
        makeFile(last);
        QTRY_VERIFY_WITH_TIMEOUT(isIndexed(last), kPatienceMs);
        QCOMPARE(FileIndex::entries().last().path, last); // behind what a scan has brought
        QVERIFY(deliveries > before);
        const QStringList actual = indexed();
        const QStringList expected = walk();
        QVERIFY2(actual == expected, difference(actual, expected).constData());
    }
    FileIndex::setOnReady({});
}

void FileIndexChurnTest::cleanupTestCase()
{
    const QStringList made =
        QDir(FileIndex::rootPath())
            .entryList({"churn*", "marker*", "small"}, QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& name : made)
        QVERIFY(QDir(FileIndex::rootPath() + '/' + name).removeRecursively());
}

QTEST_MAIN(FileIndexChurnTest)
#include "tst_fileindexchurn.moc"
