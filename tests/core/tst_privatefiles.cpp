// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FolderFilter.h"
#include "FreshProcess.h"
#include "Logging.h"
#include "Settings.h"
#include "StorageManager.h"
#include "TestHome.h"
#include "UsageStats.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <cstdlib>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

/// What the program keeps is the user's alone, from the first byte on.
class PrivateFilesTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void everythingIsPrivate_data();
    void everythingIsPrivate();
    void directoriesAboveAreLeftAsTheyAre();
    void namelessProgramClosesNothing();
};

namespace
{

bool s_isWatching = false;
int s_openWrites = 0; ///< to files that others could read

/// The lock that Qt takes for the settings holds a process id and nothing of the user's.
bool isLock(int descriptor)
{
    const QString link = QString("/proc/self/fd/%1").arg(descriptor);
    return QFile::symLinkTarget(link).endsWith(".lock");
}

} // namespace

/// Stands in for the system's own, also in Qt.
extern "C" ssize_t write(int descriptor, const void* buffer, size_t size)
{
    struct stat status = {};
    if (s_isWatching && ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
        (status.st_mode & (S_IRWXG | S_IRWXO)) != 0 && !isLock(descriptor))
        ++s_openWrites;
    return ::syscall(SYS_write, descriptor, buffer, size);
}

namespace
{

int writeEverything(const QStringList&)
{
    ::umask(0);
    s_isWatching = true;
    qInstallMessageHandler(fileMessageHandler);
    qInfo("text");
    const QString path = QDir(StorageManager::appDataDir()).filePath("data.json");
    StorageManager::saveData(path, LauncherData());
    UsageStats::record("key");
    FolderFilter::setFolders({"/folder"});
    Settings::setValue("Some/key", "value");
    s_isWatching = false;
    return s_openWrites == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

int nameNothing(const QStringList&)
{
    QCoreApplication::setOrganizationName({});
    StorageManager::appDataDir();
    return EXIT_SUCCESS;
}

mode_t modeOf(const QString& path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 0777 : 0;
}

QString dataDir()
{
    return TestHome::dataDir();
}

} // namespace

void PrivateFilesTest::init()
{
    QVERIFY(QDir(QFileInfo(dataDir()).path()).removeRecursively());
}

void PrivateFilesTest::everythingIsPrivate_data()
{
    QTest::addColumn<bool>("isThere");
    QTest::newRow("made anew") << false;
    QTest::newRow("open from earlier") << true;
}

void PrivateFilesTest::everythingIsPrivate()
{
    QFETCH(bool, isThere);
    const QStringList names = {"data.json", "debug.log", "folderfilter.json", "settings.ini",
                               "usage.json"};
    const QString directory = dataDir();
    QVERIFY(QDir(directory).removeRecursively());
    QVERIFY(QDir().rmdir(QFileInfo(directory).path()));
    if (isThere) {
        for (const QString& name : names) {
            const QByteArray path = QFile::encodeName(TestHome::writeDataFile(name, {}));
            QCOMPARE(::chmod(path.constData(), 0666), 0);
        }
        QCOMPARE(::chmod(QFile::encodeName(directory).constData(), 0777), 0);
    }
    const FreshProcess::Outcome outcome = FreshProcess::run("write everything", {});
    QVERIFY(outcome.hasExited);
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(modeOf(directory), 0700u);
    if (!isThere)
        QCOMPARE(modeOf(QFileInfo(directory).path()), 0700u);
    QCOMPARE(QDir(directory).entryList(QDir::Files | QDir::Hidden), names);
    for (const QString& name : names)
        QVERIFY2(modeOf(directory + '/' + name) == 0600, qPrintable(name));
}

void PrivateFilesTest::directoriesAboveAreLeftAsTheyAre()
{
    const QString above = QFileInfo(dataDir()).path();
    QCOMPARE(::chmod(QFile::encodeName(above).constData(), 0755), 0);
    QCOMPARE(FreshProcess::run("write everything", {}).exitCode, 0);
    QCOMPARE(modeOf(above), 0755u);
    QCOMPARE(modeOf(dataDir()), 0700u);
}

/// What it takes for its own before it has a name may belong to others.
void PrivateFilesTest::namelessProgramClosesNothing()
{
    const QString above = QFileInfo(dataDir()).path();
    QCOMPARE(::chmod(QFile::encodeName(above).constData(), 0755), 0);
    QCOMPARE(FreshProcess::run("name nothing", {}).exitCode, 0);
    QCOMPARE(modeOf(above), 0755u);
}

int main(int argc, char** argv)
{
    return FreshProcess::main<PrivateFilesTest>(
        argc, argv, {{"write everything", writeEverything}, {"name nothing", nameNothing}});
}

#include "tst_privatefiles.moc"
