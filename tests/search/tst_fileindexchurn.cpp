// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ChurnTools.h"
#include "DirectoryReader.h"
#include "FileIndex.h"
#include "FreshProcess.h"
#include "TestFiles.h"
#include "TestHome.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTest>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>

using Entry = FileIndex::Entry;

/// Whatever happens to the files: once it has become quiet, the index holds what a fresh walk
/// finds, without a second scan.
///
/// ORLIMO_CHURN_SEEDS and ORLIMO_CHURN_OPERATIONS set how many runs there are and how long each is,
/// ORLIMO_CHURN_FIRST with which seed they begin.
class FileIndexChurnTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::installWithHome(); }

private slots:
    void initTestCase();
    void churn_data();
    void churn();
    void watchesRunOut();
    void smallChanges();
    void cleanupTestCase();
};

namespace
{

constexpr int kPatienceMs = 60000;
constexpr int kTellingMs = 500; // in which a change is told by a system that watches
constexpr int kSeeds = 50;
constexpr int kSeedsWithFewWatches = 10;
constexpr int kFewWatches = 40;
constexpr int kOperations = 240;
constexpr int kOperationsPerRound = 80;
constexpr int kPauseOneIn = 25;
constexpr int kLongestPauseMs = 4;
constexpr int kFlushOneIn = 3; // pauses
constexpr int kTurnMs = 2;
constexpr int kSmallRounds = 6;

int numberFrom(const char* variable, int fallback)
{
    bool isNumber = false;
    const int number = qEnvironmentVariableIntValue(variable, &isNumber);
    return isNumber ? number : fallback;
}

bool isExcluded(const QString& name)
{
    static const QStringList excluded = {"appdata", "node_modules",
                                         ".git",    "__pycache__",
                                         ".venv",   Platform::programDataFolderName().toLower()};
    return excluded.contains(name.toLower());
}

/// What the index should hold, sorted. Of files that are called like an excluded folder it says
/// nothing certain.
QStringList walk()
{
    QStringList paths;
    QStringList folders = {FileIndex::rootPath()};
    while (!folders.isEmpty()) {
        const QString folder = folders.takeLast();
        const QFileInfoList contents = QDir(folder).entryInfoList(
            QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
        for (const QFileInfo& item : contents) {
            const bool isFolder = item.isDir() || (item.isSymbolicLink() && !item.isFile());
            if (isExcluded(item.fileName()) || (isFolder && item.isSymbolicLink()))
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
        if (entry.isDir || !isExcluded(entry.lowerName))
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

QTimer* timerOf(const char* name)
{
    return QCoreApplication::instance()->findChild<QTimer*>(name);
}

/// Spares the wait for quiet, if changes have been told.
void hurry()
{
    if (QTimer* timer = timerOf("fileCoalesceTimer"); timer->isActive())
        timer->start(0);
}

/// As `QTest::qWaitFor`, but looks whenever something has happened.
template <typename Condition>
bool waitFor(const Condition& condition, int patienceMs = kPatienceMs)
{
    QElapsedTimer timer;
    timer.start();
    QTimer turns;
    turns.start(kTurnMs);
    while (!condition()) {
        if (timer.elapsed() > patienceMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

/// Makes a file of that name and number, and tells whether the index takes it in before long.
bool isToldOf(const char* name, int number, int patienceMs = kTellingMs)
{
    const QString marker =
        QDir::toNativeSeparators(QString("%1/%2%3").arg(FileIndex::rootPath(), name).arg(number));
    if (!TestFiles::write(marker))
        return false;
    const bool hasArrived = waitFor(
        [&marker] {
            hurry();
            return isIndexed(marker);
        },
        patienceMs);
    QFile::remove(marker);
    return hasArrived;
}

/// Waits until what has happened so far is in the index.
bool settle()
{
    static int number = 0;
    return isToldOf("marker", ++number, kPatienceMs);
}

/// What the index and the disk differ in when all has settled; empty if in nothing.
QByteArray differenceAtRest()
{
    if (!settle())
        return "a file that was made last never came into the index";
    QByteArray found;
    const auto isRight = [&found] {
        hurry();
        // What isn't watched is read when somebody is about to search.
        timerOf("fileFreshTimer")->stop();
        FileIndex::refresh();
        const QStringList actual = indexed();
        const QStringList expected = walk();
        found = actual == expected ? QByteArray() : difference(actual, expected);
        return found.isEmpty();
    };
    static_cast<void>(waitFor(isRight)); // `found` tells
    return found;
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
        : m_random(seed),
          m_root(FileIndex::rootPath() + "/churn" + QString::number(seed)),
          m_outside(TestHome::path() + "/outside" + QString::number(seed))
    {
        QDir().mkpath(m_root);
        if (ChurnTools::isWatchedWherever())
            QDir().mkpath(m_outside); // otherwise nothing goes there
    }

    /// The place in the home directory, and the one elsewhere.
    QStringList places() const { return {m_root, m_outside}; }

    void operate()
    {
        const QString folder = pickFolder();
        int operation = m_random.bounded(16);
        if (!ChurnTools::isWatchedWherever() && movesFolders(operation))
            operation = 0;
        switch (operation) {
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
        case 11:
            move(pick(QDir::Dirs), m_outside + '/' + makeName());
            break;
        case 12:
            bringBack(folder);
            break;
        case 13:
            link(pick(QDir::Files), folder + '/' + makeName());
            break;
        case 14:
            exchange(pick(QDir::AllEntries), pick(QDir::AllEntries));
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
        static_cast<void>(waitFor([&] { return timer.elapsed() >= length; }));
        if (m_random.bounded(kFlushOneIn) == 0)
            hurry();
    }

    QRandomGenerator& random() { return m_random; }

private:
    /// Or makes some at once, one in the other.
    static bool movesFolders(int operation)
    {
        constexpr std::array kThose{4, 8, 11, 12, 14};
        return std::find(kThose.begin(), kThose.end(), operation) != kThose.end();
    }

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

    /// From outside, with what has been done to it there.
    void bringBack(const QString& folder)
    {
        const QStringList found = contents(m_outside, QDir::Dirs);
        if (found.isEmpty())
            return;
        const QString from =
            m_outside + '/' + found.at(m_random.bounded(static_cast<int>(found.size())));
        makeFile(from + '/' + makeName());
        move(from, folder + '/' + makeName());
    }

    static void link(const QString& from, const QString& to)
    {
        std::error_code error; // where something is, or there are no such links
        if (!from.isEmpty())
            std::filesystem::create_hard_link(from.toStdU16String(), to.toStdU16String(), error);
    }

    static void exchange(const QString& path, const QString& other)
    {
        if (!path.isEmpty() && !other.isEmpty())
            ChurnTools::exchange(path, other);
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
    QString m_outside;
};

/// What the index and the disk differ in after some rounds; empty if in nothing.
QByteArray differenceAfter(quint32 seed)
{
    Churn churn(seed);
    QByteArray found;
    const int operations = numberFrom("ORLIMO_CHURN_OPERATIONS", kOperations);
    for (int done = 0; done < operations && found.isEmpty(); done += kOperationsPerRound) {
        for (int i = 0; i < kOperationsPerRound; ++i) {
            churn.operate();
            if (churn.random().bounded(kPauseOneIn) == 0)
                churn.pause();
        }
        found = differenceAtRest();
    }
    for (const QString& place : churn.places()) {
        if (!QDir(place).removeRecursively() && found.isEmpty())
            found = "cannot clear " + place.toUtf8();
    }
    return found;
}

int runFewWatches(const QStringList& /*arguments*/)
{
    ChurnTools::allowWatches(kFewWatches);
    FileIndex::build();
    if (!QTest::qWaitFor(&FileIndex::isReady, kPatienceMs))
        return 1;
    for (int seed = 1; seed <= kSeedsWithFewWatches; ++seed) {
        const QByteArray found = differenceAfter(static_cast<quint32>(seed));
        if (found.isEmpty())
            continue;
        QTextStream(stdout) << "seed " << seed << ": " << found << '\n';
        return 2;
    }
    return 0;
}

} // namespace

void FileIndexChurnTest::initTestCase()
{
    FileIndex::build();
    QTRY_VERIFY_WITH_TIMEOUT(FileIndex::isReady(), kPatienceMs);
    // A system that watches whole trees by itself may begin to do so when the tree has been read.
    int number = 0;
    QTRY_VERIFY_WITH_TIMEOUT(isToldOf("first", ++number), kPatienceMs);
}

void FileIndexChurnTest::churn_data()
{
    QTest::addColumn<quint32>("seed");
    const int seeds = numberFrom("ORLIMO_CHURN_SEEDS", kSeeds);
    const int first = numberFrom("ORLIMO_CHURN_FIRST", 1);
    for (int i = first; i < first + seeds; ++i)
        QTest::addRow("seed %d", i) << static_cast<quint32>(i);
}

void FileIndexChurnTest::churn()
{
    QFETCH(quint32, seed);
    const QByteArray found = differenceAfter(seed);
    QVERIFY2(found.isEmpty(), found.constData());
}

void FileIndexChurnTest::watchesRunOut()
{
    const FreshProcess::Outcome outcome = FreshProcess::run("few watches", {});
    QVERIFY2(outcome.exitCode == 0, outcome.output.constData());
}

/// Files alone, and few at a time: these go into the list one by one, without a scan.
void FileIndexChurnTest::smallChanges()
{
    const QString folder = FileIndex::rootPath() + "/small";
    QVERIFY(QDir().mkpath(folder));
    QCOMPARE(differenceAtRest(), QByteArray());
    QRandomGenerator random(1);
    int deliveries = 0;
    FileIndex::setOnReady([&deliveries] { ++deliveries; });
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
        QCOMPARE(FileIndex::entries().last().path, last); // behind what has been read
        QVERIFY(deliveries > before);
        const QByteArray found = differenceAtRest();
        QVERIFY2(found.isEmpty(), found.constData());
    }
    FileIndex::setOnReady({});
}

void FileIndexChurnTest::cleanupTestCase()
{
    QVERIFY(QDir(FileIndex::rootPath() + "/small").removeRecursively());
}

int main(int argc, char** argv)
{
    return FreshProcess::main<FileIndexChurnTest>(argc, argv, {{"few watches", runFewWatches}});
}

#include "tst_fileindexchurn.moc"
