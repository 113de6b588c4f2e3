// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "InstanceLock.h"
#include "LocalServer.h"
#include "RuntimeDirectory.h"
#include "SingleInstance.h"
#include "TestHome.h"
#include "WantOfDescriptors.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

#include <sys/stat.h>
#include <unistd.h>

/// Where lock and socket of the one instance lie.
class LinuxInstanceTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();

    void runtimeDirectoryOfTheEnvironment_data();
    void runtimeDirectoryOfTheEnvironment();
    void temporaryDirectoryDoesNotMatter();
    void fallbackIsPrivate();
    void fallbackIsTightened();
    void fallbackIsNoLink();
    void fallbackMakesPrivateParents();

    void serverLiesBesideTheLock();
    void serverIsReachedAtAnyDepth_data();
    void serverIsReachedAtAnyDepth();
    void nobodyElseHoldsThePlace();
    void serverOutlivesWantOfDescriptors();

private:
    QString path(const QString& name) const { return m_dir->filePath(name); }
    static QString sessionDirectory();

    std::unique_ptr<QTemporaryDir> m_dir;
};

namespace
{

const char kRuntimeVariable[] = "XDG_RUNTIME_DIR";
const QString kName = QStringLiteral("the_name");

void useRuntimeDirectory(const QString& path)
{
    qputenv(kRuntimeVariable, QFile::encodeName(path));
}

mode_t modeOf(const QString& path)
{
    struct stat status = {};
    if (::lstat(QFile::encodeName(path).constData(), &status) != 0)
        return 0;
    return status.st_mode & 0777;
}

void makeDirectory(const QString& path, mode_t mode)
{
    if (::mkdir(QFile::encodeName(path).constData(), mode) != 0 ||
        ::chmod(QFile::encodeName(path).constData(), mode) != 0)
        qFatal("cannot make %s", qPrintable(path));
}

/// Of the fall-backs the last; the first is there only on machines where the user has logged in.
QString dataFallback()
{
    return QDir(TestHome::dataDir()).filePath("run");
}

} // namespace

void LinuxInstanceTest::init()
{
    qunsetenv("TMPDIR");
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    qunsetenv(kRuntimeVariable);
    QVERIFY(QDir(dataFallback()).removeRecursively());
}

/// What the login has made for this user; empty without a login.
QString LinuxInstanceTest::sessionDirectory()
{
    const QString path = QStringLiteral("/run/user/%1").arg(::geteuid());
    return modeOf(path) == 0700 ? path : QString();
}

void LinuxInstanceTest::runtimeDirectoryOfTheEnvironment_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("isTaken");
    QTest::newRow("own and private") << "%1/private" << true;
    QTest::newRow("not there yet") << "%1/new" << true;
    QTest::newRow("others may look") << "%1/readable" << false;
    QTest::newRow("others may enter") << "%1/passable" << false;
    QTest::newRow("somebody else's") << (::geteuid() == 0 ? "%1/foreign" : "/usr") << false;
    QTest::newRow("link") << "%1/link" << false;
    QTest::newRow("file") << "%1/file" << false;
    QTest::newRow("in a directory that isn't there") << "%1/missing/new" << false;
    QTest::newRow("relative") << "private" << false;
    QTest::newRow("empty") << "" << false;
}

void LinuxInstanceTest::runtimeDirectoryOfTheEnvironment()
{
    QFETCH(QString, value);
    QFETCH(bool, isTaken);
    makeDirectory(path("private"), 0700);
    makeDirectory(path("readable"), 0704);
    makeDirectory(path("passable"), 0710);
    makeDirectory(path("foreign"), 0700);
    if (::geteuid() == 0)
        QCOMPARE(::chown(QFile::encodeName(path("foreign")).constData(), 65533, 65533), 0);
    QVERIFY(QFile::link(path("private"), path("link")));
    QVERIFY(QFile(path("file")).open(QIODevice::WriteOnly));

    const QString fallback = runtimeDirectory();
    value.replace("%1", m_dir->path());
    useRuntimeDirectory(value);
    QCOMPARE(runtimeDirectory(), isTaken ? value : fallback);
    QVERIFY(fallback != value);
    QCOMPARE(modeOf(runtimeDirectory()), mode_t(0700));
    // What is not taken is left as it was.
    QVERIFY(modeOf(path("readable")) == 0704 && modeOf(path("passable")) == 0710);
}

void LinuxInstanceTest::temporaryDirectoryDoesNotMatter()
{
    const QString usual = runtimeDirectory();
    qputenv("TMPDIR", QFile::encodeName(m_dir->path()));
    QCOMPARE(QDir::tempPath(), m_dir->path());
    QCOMPARE(runtimeDirectory(), usual);
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), QStringList());
}

void LinuxInstanceTest::fallbackIsPrivate()
{
    const QString session = sessionDirectory();
    QCOMPARE(runtimeDirectory(), session.isEmpty() ? dataFallback() : session);
    QCOMPARE(modeOf(runtimeDirectory()), mode_t(0700));
}

void LinuxInstanceTest::fallbackIsTightened()
{
    makeDirectory(dataFallback(), 0777);
    const QString session = sessionDirectory();
    QCOMPARE(runtimeDirectory(), session.isEmpty() ? dataFallback() : session);
    QCOMPARE(modeOf(dataFallback()), mode_t(session.isEmpty() ? 0700 : 0777));
}

void LinuxInstanceTest::fallbackIsNoLink()
{
    makeDirectory(path("elsewhere"), 0700);
    QVERIFY(QFile::link(path("elsewhere"), dataFallback()));
    QCOMPARE(runtimeDirectory(), sessionDirectory());
    QVERIFY(QFile::remove(dataFallback()));
}

void LinuxInstanceTest::fallbackMakesPrivateParents()
{
    const bool isNeeded = sessionDirectory().isEmpty();
    const QByteArray usual = qgetenv("XDG_DATA_HOME");
    const mode_t usualMask = ::umask(0022);
    qputenv("XDG_DATA_HOME", QFile::encodeName(path("data")));
    const QString made = runtimeDirectory();
    qputenv("XDG_DATA_HOME", usual);
    ::umask(usualMask);
    QCOMPARE(made, isNeeded ? path("data/Orlimo/Orlimo/run") : sessionDirectory());
    for (const char* directory : {"data", "data/Orlimo", "data/Orlimo/Orlimo"})
        QCOMPARE(modeOf(path(directory)), mode_t(isNeeded ? 0700 : 0)); // 0: not there
}

void LinuxInstanceTest::serverLiesBesideTheLock()
{
    makeDirectory(path("run"), 0700);
    useRuntimeDirectory(path("run"));
    QVERIFY(Platform::acquireInstanceLock("the_lock"));
    QLocalServer server;
    QCOMPARE(Platform::localServerPlaces(kName), QStringList{path("run/the_name")});
    QVERIFY(server.listen(Platform::localServerPlaces(kName).constFirst()));
    const QStringList both{"the_lock", kName};
    QCOMPARE(QDir(path("run")).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
             both);
}

void LinuxInstanceTest::serverIsReachedAtAnyDepth_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<bool>("isShortened");
    // The address has 108 bytes, of which Qt leaves two free.
    QTest::newRow("fits exactly") << 106 << false;
    QTest::newRow("one too long") << 107 << true;
    QTest::newRow("as long as the address") << 108 << true;
    QTest::newRow("far too long") << 220 << true;
}

void LinuxInstanceTest::serverIsReachedAtAnyDepth()
{
    QFETCH(int, length);
    QFETCH(bool, isShortened);
    const qsizetype missing = length - path(kName).size() - 1;
    const QString deep = path(QString(missing, 'd'));
    makeDirectory(deep, 0700);
    useRuntimeDirectory(deep);
    const QString place = Platform::localServerPlaces(kName).constFirst();
    QCOMPARE(place != QDir(deep).filePath(kName), isShortened);
    QVERIFY(place.startsWith('/'));
    QCOMPARE(QFileInfo(place).fileName(), kName);
    QCOMPARE(QDir(deep).filePath(kName).size(), length);

    QLocalServer server;
    server.setSocketOptions(QLocalServer::UserAccessOption);
    QVERIFY2(server.listen(place), qPrintable(server.errorString()));
    QVERIFY(QFile::exists(QDir(deep).filePath(kName)));
    QLocalSocket client;
    client.connectToServer(Platform::localServerPlaces(kName).constFirst());
    QTRY_VERIFY(server.hasPendingConnections());
    server.close();
    QCOMPARE(QDir(deep).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
             QStringList());
}

void LinuxInstanceTest::nobodyElseHoldsThePlace()
{
    makeDirectory(path("run"), 0700);
    useRuntimeDirectory(path("run"));
    const QString place = Platform::localServerPlaces(kName).constFirst();
    QVERIFY(!Platform::isHeldByAnotherUser(place));
    QLocalServer server;
    QVERIFY(server.listen(place));
    QVERIFY(!Platform::isHeldByAnotherUser(place));
}

void LinuxInstanceTest::serverOutlivesWantOfDescriptors()
{
    makeDirectory(path("run"), 0700);
    useRuntimeDirectory(path("run"));
    QLocalServer server;
    int woken = 0;
    SingleInstance::listen(server, kName);
    SingleInstance::serve(server, this, [&woken] { ++woken; });
    const QString place = Platform::localServerPlaces(kName).constFirst();
    QCOMPARE(server.fullServerName(), place);

    static const QRegularExpression s_stopped("^IPC server berhenti: .+ - akan dicoba lagi\\.$");
    for (int round = 1; round <= 2; ++round) {
        QTest::ignoreMessage(QtWarningMsg, s_stopped);
        QLocalSocket early;
        early.connectToServer(place);
        QVERIFY(early.waitForConnected());
        {
            const WantOfDescriptors want;
            // Nobody can be taken in, so the socket goes with the one that tried.
            QTRY_VERIFY(!QFile::exists(place));
        }
        QTRY_VERIFY(QFile::exists(place));
        QLocalSocket late;
        late.connectToServer(place);
        late.write("SHOW");
        QTRY_COMPARE(woken, round);
    }
}

QTEST_GUILESS_MAIN(LinuxInstanceTest)

#include "tst_linuxinstance.moc"
