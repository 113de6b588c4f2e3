// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FreshProcess.h"
#include "LocalServer.h"
#include "SingleInstance.h"
#include "TestHome.h"

#include <QCoreApplication>
#include <QLocalServer>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <memory>

#include <windows.h>

#include <sddl.h>

/// What the local server is called on a machine whose names are shared by all its users.
class WindowsInstanceTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup();

    void placesAreTheNameAndOneOfTheUser();
    void ownServerIsNoStrangers();
    void busyPipeIsAStrangers();
    void furtherStartReachesTheFirst_data();
    void furtherStartReachesTheFirst();
    void nobodyIsAskedWhereStrangersHoldAll();

private:
    void holdAsStranger(const QString& place);
    void serve();
    static void startFurther(const QString& name);

    QString m_name;
    std::unique_ptr<QLocalServer> m_server;
    std::unique_ptr<QProcess> m_strangers[2];
    int m_woken = 0;
};

namespace
{

constexpr int kTimeoutMs = 20000;

// It belongs to everybody, or where the system doesn't let that be said, nobody may come in: either
// way it is none of ours.
const wchar_t* const kStrangers[] = {L"O:WDG:WDD:", L"D:"};

HANDLE makePipe(const QString& path, const wchar_t* rights)
{
    SECURITY_ATTRIBUTES attributes = {sizeof(SECURITY_ATTRIBUTES), nullptr, FALSE};
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorW(
            rights, SDDL_REVISION_1, &attributes.lpSecurityDescriptor, nullptr))
        return INVALID_HANDLE_VALUE;
    const HANDLE pipe = CreateNamedPipeW(reinterpret_cast<LPCWSTR>(path.utf16()),
                                         PIPE_ACCESS_DUPLEX | FILE_FLAG_OVERLAPPED, PIPE_TYPE_BYTE,
                                         PIPE_UNLIMITED_INSTANCES, 0, 0, 0, &attributes);
    LocalFree(attributes.lpSecurityDescriptor);
    return pipe;
}

/// Holds a name until this process is killed.
int holdName(const QStringList& arguments)
{
    const QString path = R"(\\.\pipe\)" + arguments.first();
    for (const wchar_t* rights : kStrangers) {
        // Several, since whoever looks at one uses it up.
        HANDLE pipes[8] = {};
        for (HANDLE& pipe : pipes)
            pipe = makePipe(path, rights);
        if (pipes[std::size(pipes) - 1] == INVALID_HANDLE_VALUE)
            continue;
        std::puts("held");
        std::fflush(stdout);
        Sleep(INFINITE);
    }
    return EXIT_FAILURE;
}

int handOver(const QStringList& arguments)
{
    SingleInstance::handOver(arguments.first());
    return EXIT_SUCCESS;
}

void failOnAnyWarning()
{
    QTest::failOnWarning(QRegularExpression(QString()));
}

} // namespace

void WindowsInstanceTest::init()
{
    static int s_run = 0; // a stranger's name may live on for a moment
    const QString key = SingleInstance::instanceKey(TestHome::path() + QString::number(++s_run));
    m_name = SingleInstance::ipcServerName(key);
    m_server = std::make_unique<QLocalServer>();
    m_woken = 0;
}

void WindowsInstanceTest::cleanup()
{
    m_server.reset();
    for (std::unique_ptr<QProcess>& stranger : m_strangers) {
        if (!stranger)
            continue;
        stranger->kill();
        stranger->waitForFinished(kTimeoutMs);
        stranger.reset();
    }
}

void WindowsInstanceTest::holdAsStranger(const QString& place)
{
    std::unique_ptr<QProcess>& stranger = m_strangers[m_strangers[0] ? 1 : 0];
    stranger = std::make_unique<QProcess>();
    FreshProcess::start(*stranger, "hold name", {place});
    QVERIFY(stranger->waitForReadyRead(kTimeoutMs));
    QCOMPARE(stranger->readAllStandardOutput().trimmed(), "held");
}

void WindowsInstanceTest::serve()
{
    SingleInstance::listen(*m_server, m_name);
    SingleInstance::serve(*m_server, this, [this] { ++m_woken; });
}

void WindowsInstanceTest::startFurther(const QString& name)
{
    QProcess further;
    FreshProcess::start(further, "hand over", {name});
    QTRY_COMPARE_WITH_TIMEOUT(further.state(), QProcess::NotRunning, kTimeoutMs);
    QCOMPARE(further.exitCode(), 0);
    QCOMPARE(further.exitStatus(), QProcess::NormalExit);
}

void WindowsInstanceTest::placesAreTheNameAndOneOfTheUser()
{
    const QStringList places = Platform::localServerPlaces("some_name");
    QCOMPARE(places.size(), 2);
    QCOMPARE(places.first(), "some_name");
    QVERIFY2(QRegularExpression("^some_name_[0-9a-f]{16}$").match(places.last()).hasMatch(),
             qPrintable(places.last()));
    QCOMPARE(Platform::localServerPlaces("some_name"), places);
}

void WindowsInstanceTest::ownServerIsNoStrangers()
{
    QVERIFY(!Platform::isHeldByAnotherUser(m_name));
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    QVERIFY(m_server->listen(m_name));
    QVERIFY(!Platform::isHeldByAnotherUser(m_name));
    const QString other = Platform::localServerPlaces(m_name).last();
    holdAsStranger(other);
    QVERIFY(Platform::isHeldByAnotherUser(other));
}

void WindowsInstanceTest::busyPipeIsAStrangers()
{
    // The one pipe there is, in use already: whose it is can't be found out.
    const QString path = R"(\\.\pipe\)" + m_name;
    const auto name = reinterpret_cast<LPCWSTR>(path.utf16());
    const HANDLE pipe =
        CreateNamedPipeW(name, PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE, 1, 0, 0, 0, nullptr);
    QVERIFY(pipe != INVALID_HANDLE_VALUE);
    const HANDLE client =
        CreateFileW(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    const bool isHeld = Platform::isHeldByAnotherUser(m_name);
    if (client != INVALID_HANDLE_VALUE)
        CloseHandle(client);
    CloseHandle(pipe);
    QVERIFY(client != INVALID_HANDLE_VALUE);
    QVERIFY(isHeld);
}

void WindowsInstanceTest::furtherStartReachesTheFirst_data()
{
    QTest::addColumn<bool>("isTaken");
    QTest::addColumn<bool>("isFreedLater");
    QTest::newRow("name is free") << false << false;
    QTest::newRow("a stranger holds it") << true << false;
    QTest::newRow("a stranger held it at first") << true << true;
}

void WindowsInstanceTest::furtherStartReachesTheFirst()
{
    QFETCH(bool, isTaken);
    QFETCH(bool, isFreedLater);
    failOnAnyWarning();
    const QStringList places = Platform::localServerPlaces(m_name);
    if (isTaken)
        holdAsStranger(m_name);
    serve();
    QCOMPARE(m_server->serverName(), isTaken ? places.last() : places.first());
    if (isFreedLater) {
        m_strangers[0]->kill();
        QVERIFY(m_strangers[0]->waitForFinished(kTimeoutMs));
    }
    startFurther(m_name);
    QTRY_COMPARE_WITH_TIMEOUT(m_woken, 1, kTimeoutMs);
}

void WindowsInstanceTest::nobodyIsAskedWhereStrangersHoldAll()
{
    const QStringList places = Platform::localServerPlaces(m_name);
    for (const QString& place : places)
        holdAsStranger(place);
    for (const QString& place : places)
        QVERIFY(Platform::isHeldByAnotherUser(place));
    QTest::ignoreMessage(
        QtWarningMsg, "Instance lain terdeteksi (Mutex) tapi gagal terhubung ke IPC server-nya.");
    SingleInstance::handOver(m_name); // and nobody else hears of it
}

int main(int argc, char** argv)
{
    return FreshProcess::main<WindowsInstanceTest, QCoreApplication>(
        argc, argv, {{"hold name", holdName}, {"hand over", handOver}});
}

#include "tst_instance_windows.moc"
