// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "MainWindow.h"
#include "Program.h"
#include "SingleInstance.h"

#include <QFile>
#include <QFileInfo>
#include <QLocalServer>
#include <QSettings>
#include <QtTest>

#include <array>
#include <csignal>
#include <memory>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/prctl.h>
#include <unistd.h>

/// Which running instance a further start reaches, from wherever it comes.
class E2eInstance : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void furtherStartFindsTheFirst_data();
    void furtherStartFindsTheFirst();
    void lockWithoutAServer();
    void nameInTheTemporaryDirectoryIsNobodys();
    void deepRuntimeDirectory();
    void eachUserHasAnInstance_data();
    void eachUserHasAnInstance();

private:
    std::unique_ptr<Desktop> m_desktop;
};

namespace
{

/// Starts the program once more and waits for its end. \returns what it said.
QByteArray startAgain(const QProcessEnvironment& environment)
{
    QProcess process;
    Desktop::dieWithParent(process);
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(Program::binary(), QStringList());
    if (!process.waitForFinished(Desktop::PatienceMs))
        return "still runs";
    const QByteArray said = process.readAll();
    return process.exitCode() == 0 ? said : "failed: " + said;
}

/// Somebody who has logged in and runs a copy of the program that all share.
class User
{
public:
    User(Desktop& desktop, const QString& name, uid_t id);
    ~User();

    void start(QProcess& process) const;
    void startInstance();
    XClient::Window window() const;

private:
    Desktop& m_desktop;
    uid_t m_id;
    QProcessEnvironment m_environment;
    QProcess m_instance;
};

QString sharedProgram(const Desktop& desktop)
{
    return desktop.path(QStringLiteral("shared/Orlimo"));
}

/// Makes a directory that nobody but that user may look into.
void makePrivate(const QString& dir, uid_t id)
{
    QDir().mkpath(dir);
    QFile::setPermissions(dir, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    if (::chown(QFile::encodeName(dir).constData(), id, id) != 0)
        qFatal("cannot give %s away", qPrintable(dir));
}

/// As Program does: a window that welcomes its user doesn't hide.
void haveHadTheWelcome(const QString& dataHome, uid_t id)
{
    const QString dir = dataHome + QStringLiteral("/Orlimo/Orlimo");
    makePrivate(dataHome + QStringLiteral("/Orlimo"), id);
    makePrivate(dir, id);
    const QString path = dir + QStringLiteral("/settings.ini");
    QSettings settings(path, QSettings::IniFormat);
    settings.setValue(QStringLiteral("Onboarding/Completed"), true);
    settings.sync();
    if (::chown(QFile::encodeName(path).constData(), id, id) != 0)
        qFatal("cannot give %s away", qPrintable(path));
}

User::User(Desktop& desktop, const QString& name, uid_t id)
    : m_desktop(desktop), m_id(id), m_environment(desktop.environment())
{
    const QString own = desktop.path(name);
    for (const char* variable :
         {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
        const QString dir = own + QLatin1Char('/') + QString::fromLatin1(variable);
        makePrivate(dir, id);
        m_environment.insert(QString::fromLatin1(variable), dir);
    }
    haveHadTheWelcome(m_environment.value(QStringLiteral("XDG_DATA_HOME")), id);
}

User::~User()
{
    if (m_instance.state() == QProcess::NotRunning)
        return;
    m_instance.kill();
    m_instance.waitForFinished(Desktop::PatienceMs);
}

void User::start(QProcess& process) const
{
    process.setProcessEnvironment(m_environment);
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.setChildProcessModifier([id = m_id] {
        if (::setresgid(id, id, id) != 0 || ::setresuid(id, id, id) != 0)
            ::_exit(EXIT_FAILURE);
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    });
    process.start(sharedProgram(m_desktop), QStringList());
}

void User::startInstance()
{
    start(m_instance);
    QVERIFY(m_instance.waitForStarted(Desktop::PatienceMs));
    QTRY_VERIFY_WITH_TIMEOUT(window().isViewable, Desktop::PatienceMs);
}

XClient::Window User::window() const
{
    for (const XClient::Window& window : m_desktop.client().windowsOf(m_instance.processId())) {
        if (window.geometry.width() == MainWindow::WINDOW_WIDTH_GRID)
            return window;
    }
    return {};
}

/// Takes the focus away from the user's window until it has gone: at first it doesn't mind the
/// loss.
void hide(Desktop& desktop, const User& user)
{
    constexpr int kNoticeMs = 2000;
    constexpr int kFadeMs = 500;
    XClient& client = desktop.client();
    const auto isGone = [&] { return !user.window().isViewable; };
    const auto isGoneAfterLoss = [&] {
        if (isGone())
            return true;
        // A loss that comes before the window has noticed its focus is none to it.
        const xcb_window_t window = user.window().id;
        client.activate(window);
        if (!QTest::qWaitFor([&] { return client.focus() == window; }, kNoticeMs))
            return isGone();
        client.ping(window);
        if (!QTest::qWaitFor([&] { return client.hasAnswered(); }, kNoticeMs))
            return isGone();
        desktop.focusOtherWindow();
        return QTest::qWaitFor(isGone, kFadeMs);
    };
    QVERIFY(QTest::qWaitFor(isGoneAfterLoss, Desktop::PatienceMs));
}

} // namespace

void E2eInstance::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
}

void E2eInstance::furtherStartFindsTheFirst_data()
{
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("value");
    QTest::newRow("another temporary directory") << "TMPDIR"
                                                 << "/";
    QTest::newRow("no display") << "DISPLAY" << QString();
    QTest::newRow("a display that isn't there") << "DISPLAY"
                                                << ":4711";
}

void E2eInstance::furtherStartFindsTheFirst()
{
    QFETCH(QString, variable);
    QFETCH(QString, value);
    Program program(*m_desktop);
    program.startAndSettle();
    QProcessEnvironment environment = m_desktop->environment();
    environment.remove(variable);
    if (!value.isNull())
        environment.insert(variable, value);
    QCOMPARE(startAgain(environment), QByteArray());
    QTRY_VERIFY(program.homeWindow().isViewable);
}

/// Whoever has the lock doesn't answer, and the start leaves as if he had.
void E2eInstance::lockWithoutAServer()
{
    const QString key = SingleInstance::instanceKey(QFileInfo(Program::binary()).path());
    Program program(*m_desktop);
    const QString name = QStringLiteral("run/Orlimo_Vestrel_SingleInstanceMutex_") + key;
    const int lock = ::open(QFile::encodeName(m_desktop->path(name)).constData(),
                            O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    QVERIFY(lock >= 0);
    const auto letGo = qScopeGuard([lock] { ::close(lock); });
    QCOMPARE(::flock(lock, LOCK_EX | LOCK_NB), 0);
    QCOMPARE(startAgain(m_desktop->environment()), QByteArray());
    const QByteArrayList lines =
        program.readData(QStringLiteral("debug.log")).trimmed().split('\n');
    QVERIFY2(lines.last().endsWith(" [WARN] Instance lain terdeteksi (Mutex) tapi gagal terhubung "
                                   "ke IPC server-nya."),
             lines.last().constData());
    // Neither a window's nor a document's beginnings.
    QCOMPARE(QDir(program.dataDir()).entryList(QDir::Files),
             (QStringList{QStringLiteral("debug.log"), QStringLiteral("settings.ini")}));
}

void E2eInstance::nameInTheTemporaryDirectoryIsNobodys()
{
    const QString key = SingleInstance::instanceKey(QFileInfo(Program::binary()).path());
    const QString name = SingleInstance::ipcServerName(key);
    QLocalServer squatter;
    QVERIFY(squatter.listen(m_desktop->path(name)));
    Program program(*m_desktop);
    program.startAndSettle();
    QCOMPARE(startAgain(m_desktop->environment()), QByteArray());
    QTRY_VERIFY(program.homeWindow().isViewable);
    QVERIFY(!squatter.hasPendingConnections());
    QVERIFY(QFile::exists(m_desktop->path(name))); // and nobody has taken it away
    QVERIFY(QFile::exists(m_desktop->path(QStringLiteral("run/") + name)));
}

void E2eInstance::deepRuntimeDirectory()
{
    // Longer than the address of a socket can be.
    const QString dir =
        m_desktop->path(QStringLiteral("deep/%1/%1").arg(QString(80, QLatin1Char('d'))));
    QVERIFY(QDir().mkpath(dir));
    QFile::setPermissions(dir, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    Program program(*m_desktop);
    program.setVariable(QStringLiteral("XDG_RUNTIME_DIR"), dir);
    program.startAndSettle();
    QProcessEnvironment environment = m_desktop->environment();
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), dir);
    QCOMPARE(startAgain(environment), QByteArray());
    QTRY_VERIFY(program.homeWindow().isViewable);
    const QString key = SingleInstance::instanceKey(QFileInfo(Program::binary()).path());
    QCOMPARE(QDir(dir).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
             (QStringList{QStringLiteral("Orlimo_Vestrel_SingleInstanceMutex_") + key,
                          QStringLiteral("Vestrel_IPC_Server_") + key}));
}

void E2eInstance::eachUserHasAnInstance_data()
{
    QTest::addColumn<uint>("otherUser");
    // Who may not become somebody else has two sessions at least.
    QTest::newRow("same user in another session") << ::geteuid();
    if (::geteuid() == 0)
        QTest::newRow("other user") << 65533u;
}

void E2eInstance::eachUserHasAnInstance()
{
    QFETCH(uint, otherUser);
    // The directory is private otherwise, and so may be the one that the program was built in.
    QFile::setPermissions(m_desktop->path(QString()), QFile::ReadOwner | QFile::WriteOwner |
                                                          QFile::ExeOwner | QFile::ExeGroup |
                                                          QFile::ExeOther);
    QVERIFY(QDir().mkpath(m_desktop->path(QStringLiteral("shared"))));
    QFile::remove(sharedProgram(*m_desktop));
    QVERIFY(QFile::copy(Program::binary(), sharedProgram(*m_desktop)));

    const QString row = QString::fromLatin1(QTest::currentDataTag()).remove(QLatin1Char(' '));
    User one(*m_desktop, row + QStringLiteral("-one"), ::geteuid());
    User other(*m_desktop, row + QStringLiteral("-other"), otherUser);
    const std::array<User*, 2> users{&one, &other};
    for (User* user : users) {
        user->startInstance();
        hide(*m_desktop, *user);
    }
    for (const User* user : users) {
        QProcess second;
        user->start(second);
        QVERIFY(second.waitForFinished(Desktop::PatienceMs));
        QCOMPARE(second.exitCode(), 0);
        QTRY_VERIFY(user->window().isViewable);
        QCOMPARE(one.window().isViewable + other.window().isViewable, 1);
        hide(*m_desktop, *user);
    }
}

QTEST_GUILESS_MAIN(E2eInstance)

#include "tst_e2e_instance.moc"
