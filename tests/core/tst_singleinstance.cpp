// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FreshProcess.h"
#include "InstanceLock.h"
#include "LocalServer.h"
#include "SingleInstance.h"
#include "TestHome.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QRegularExpression>
#include <QSemaphore>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>

/// A client in a thread of its own, since the side that it talks to blocks.
class Client
{
public:
    explicit Client(const std::function<void()>& act) : m_thread(QThread::create(act))
    {
        m_thread->start();
    }
    ~Client() { m_thread->wait(); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    bool isFinished() const { return m_thread->isFinished(); }

private:
    std::unique_ptr<QThread> m_thread;
};

class SingleInstanceTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup();

    void numbers();
    void instanceKey_data();
    void instanceKey();
    void instanceKeyIgnoresLetterCase_data();
    void instanceKeyIgnoresLetterCase();
    void namesOfServerAndLock();

    void message_data();
    void message();
    void messageInPieces_data();
    void messageInPieces();
    void silentClientIsDroppedAfterOneWait();
    void clientThatLeavesIsDroppedAtOnce();
    void tricklingClientIsWaitedForPiecewise();
    void silentClientsKeepNobodyWaiting();
    void silentClientsMakeRoomForOthers();
    void floodIsCutShort();
    void clientsAtOnceAreServedEach();
    void servedClientIsDropped();
    void nobodyIsWokenAfterTheEnd();

    void handOverWakesTheServer();
    void handOverToABusyServer();
    void handOverToALateServer();
    void earlyClientIsServedLater();
    void handOverToNobody();

    void listenReplacesWhatACrashLeft();
    void listenTakesTheNameOfALiveServer();
    void listenFailureIsLogged();

    void lockIsHeldByOneProcess();
    void locksOfOtherNamesAreFree();
    void lockDiesWithItsProcess();

private:
    /// Where the server lies, as both sides find it.
    QString place() const { return Platform::localServerPlaces(m_name).constFirst(); }
    void listenAndServe();
    void countVisit();
    int visitsOfAHandOver() const;
    /// Sends the pieces, each after a pause, and stays until it is dropped; one that `leaves` goes
    /// as soon as the system has taken all of it.
    std::unique_ptr<Client> send(const QList<QByteArray>& pieces, bool leaves) const;
    /// Sends so many bytes as fast as they are taken, and stops when it is dropped.
    std::unique_ptr<Client> flood(int bytes) const;

    QString m_name;
    std::unique_ptr<QLocalServer> m_server;
    int m_accepted = 0; ///< clients that the server has taken
    int m_served = 0;   ///< those of them that it has dropped again
    int m_woken = 0;
    int m_presentAtWake = 0; ///< clients at the time of the last wake, its own included
    qint64 m_visitMs = 0;    ///< how long the client that was dropped last had been there
};

namespace
{

constexpr int kPauseMs = 150;
constexpr int kTimeoutMs = 20000;
const char kUnknownData[] = "IPC: menerima data tak dikenal:";

/// Nothing is ever sent back, so this ends when the time is over or the other side hangs up.
void waitForNothing(QLocalSocket& socket, int timeoutMs)
{
    socket.waitForReadyRead(timeoutMs);
}

/// Waits until the system has taken what was written. A pipe of Windows has no room of its own: it
/// takes bytes when the other side reads them.
bool takeAll(QLocalSocket& socket, int timeoutMs = kTimeoutMs)
{
    while (socket.bytesToWrite() > 0) {
        if (!socket.waitForBytesWritten(timeoutMs))
            return false;
    }
    return true;
}

/// Whether this system keeps what a client sends until the server gets round to reading it.
bool keepsWhatNobodyReads()
{
    QLocalServer server;
    QLocalSocket socket;
    const QString name = QStringLiteral("orlimo_probe_") + QFileInfo(TestHome::path()).fileName();
    if (!server.listen(name))
        qFatal("cannot listen");
    socket.connectToServer(name);
    if (!socket.waitForConnected(kTimeoutMs))
        qFatal("no connection");
    socket.write("x");
    return takeAll(socket, kPauseMs);
}

void failOnAnyWarning()
{
    QTest::failOnWarning(QRegularExpression(QString()));
}

// What the processes do.

int takeLock(const QStringList& arguments)
{
    std::puts(Platform::acquireInstanceLock(arguments.first()) ? "taken" : "refused");
    return EXIT_SUCCESS;
}

int stayConnected(const QStringList& arguments)
{
    QLocalSocket socket;
    socket.connectToServer(arguments.first());
    return socket.waitForConnected(kTimeoutMs) && socket.waitForDisconnected(kTimeoutMs)
               ? EXIT_SUCCESS
               : EXIT_FAILURE;
}

/// Takes the lock, launches a program as the user would, and stays.
int takeLockAndLaunch(const QStringList& arguments)
{
    if (!Platform::acquireInstanceLock(arguments.at(0)))
        return EXIT_FAILURE;
    const QStringList own = QCoreApplication::arguments();
    const QStringList identity = own.mid(1, 3);
    QProcess::startDetached(own.first(), identity + QStringList{"stay connected", arguments.at(1)});
    return stayConnected({arguments.at(1)});
}

int listenAndCrash(const QStringList& arguments)
{
    QLocalServer server;
    if (!server.listen(arguments.first()))
        return EXIT_FAILURE;
    std::_Exit(EXIT_SUCCESS);
}

QByteArray lockOutcome(const QString& name)
{
    const FreshProcess::Outcome outcome = FreshProcess::run("take lock", {name});
    return outcome.hasExited ? outcome.output.trimmed() : "no outcome";
}

} // namespace

void SingleInstanceTest::init()
{
    // The name is shared by the whole machine, so it is made from this run's own directory.
    m_name = SingleInstance::ipcServerName(SingleInstance::instanceKey(TestHome::path()));
    m_server = std::make_unique<QLocalServer>();
    m_accepted = 0;
    m_served = 0;
    m_woken = 0;
    m_presentAtWake = 0;
    m_visitMs = 0;
}

void SingleInstanceTest::cleanup()
{
    m_server.reset();
}

void SingleInstanceTest::listenAndServe()
{
    SingleInstance::listen(*m_server, m_name);
    SingleInstance::serve(*m_server, this, [this] {
        ++m_woken;
        m_presentAtWake = m_accepted - m_served;
    });
    // Connected last, so it finds what was made of the client.
    connect(m_server.get(), &QLocalServer::newConnection, this, &SingleInstanceTest::countVisit);
}

void SingleInstanceTest::countVisit()
{
    ++m_accepted;
    QElapsedTimer visit;
    visit.start();
    const auto clients = m_server->findChildren<QLocalSocket*>(Qt::FindDirectChildrenOnly);
    connect(clients.constLast(), &QObject::destroyed, this, [this, visit] {
        ++m_served;
        m_visitMs = visit.elapsed();
    });
}

std::unique_ptr<Client> SingleInstanceTest::send(const QList<QByteArray>& pieces, bool leaves) const
{
    return std::make_unique<Client>([name = place(), pieces, leaves] {
        QLocalSocket socket;
        socket.connectToServer(name);
        if (!socket.waitForConnected(kTimeoutMs))
            qFatal("no connection");
        for (qsizetype i = 0; i < pieces.size(); ++i) {
            if (i > 0)
                waitForNothing(socket, kPauseMs);
            if (socket.state() != QLocalSocket::ConnectedState)
                return; // dropped, so nobody is there for the rest
            socket.write(pieces.at(i));
            socket.flush();
        }
        if (leaves) {
            takeAll(socket);
            socket.disconnectFromServer();
        } else if (socket.state() == QLocalSocket::ConnectedState) {
            socket.waitForDisconnected(kTimeoutMs);
        }
    });
}

std::unique_ptr<Client> SingleInstanceTest::flood(int bytes) const
{
    return std::make_unique<Client>([name = place(), bytes] {
        const QByteArray piece(50'000, 'x');
        QLocalSocket socket;
        socket.connectToServer(name);
        for (qsizetype sent = 0; sent < bytes; sent += piece.size()) {
            socket.write(piece);
            if (!takeAll(socket))
                return;
        }
        socket.waitForDisconnected(kTimeoutMs);
    });
}

void SingleInstanceTest::numbers()
{
    QCOMPARE(SingleInstance::ConnectAttempts, 6);
    QCOMPARE(SingleInstance::ConnectTimeoutMs, 300);
    QCOMPARE(SingleInstance::AttemptPauseMs, 150);
    QCOMPARE(SingleInstance::WriteTimeoutMs, 500);
    QCOMPARE(SingleInstance::ReadTimeoutMs, 500);
}

void SingleInstanceTest::instanceKey_data()
{
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QString>("key");
    QTest::newRow("usual") << "/opt/orlimo/bin"
                           << "9d32cdb0d1d25dd9";
    QTest::newRow("with drive") << "c:/program files/orlimo"
                                << "911a8f26f7d6a100";
    QTest::newRow("beyond ASCII") << QStringLiteral("/home/ä/ğürlimo") << "0d1321793e5b14e1";
    QTest::newRow("empty") << ""
                           << "da39a3ee5e6b4b0d";
}

void SingleInstanceTest::instanceKey()
{
    QFETCH(QString, directory);
    QTEST(SingleInstance::instanceKey(directory), "key");
}

void SingleInstanceTest::instanceKeyIgnoresLetterCase_data()
{
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QString>("key");
    QTest::newRow("upper") << "/OPT/ORLIMO/BIN"
                           << "9d32cdb0d1d25dd9";
    QTest::newRow("mixed") << "C:/Program Files/Orlimo"
                           << "911a8f26f7d6a100";
    QTest::newRow("beyond ASCII") << QStringLiteral("/HOME/Ä/ĞÜRLIMO") << "0d1321793e5b14e1";
}

void SingleInstanceTest::instanceKeyIgnoresLetterCase()
{
    QFETCH(QString, directory);
    QTEST(SingleInstance::instanceKey(directory), "key");
}

void SingleInstanceTest::namesOfServerAndLock()
{
    QCOMPARE(SingleInstance::ipcServerName("0123456789abcdef"),
             "Vestrel_IPC_Server_0123456789abcdef");
    QCOMPARE(SingleInstance::mutexName("0123456789abcdef"),
             "Orlimo_Vestrel_SingleInstanceMutex_0123456789abcdef");
}

void SingleInstanceTest::message_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("leaves");
    QTest::addColumn<QByteArray>("logged");
    for (const bool leaves : {false, true}) {
        const char* ending = leaves ? ", leaves" : "";
        const auto row = [&](const char* name, const QByteArray& bytes, const QByteArray& logged) {
            QTest::addRow("%s%s", name, ending) << bytes << leaves << logged;
        };
        row("the four bytes", "SHOW", {});
        row("one more", "SHOW!", "\"SHOW!\"");
        row("zero behind", QByteArray("SHOW\0", 5), "\"SHOW\\x00\"");
        row("line feed behind", "SHOW\n", "\"SHOW\\n\"");
        row("twice", "SHOWSHOW", "\"SHOWSHOW\"");
        row("lower case", "show", "\"show\"");
        row("other word of four", "QUIT", "\"QUIT\"");
        row("too short", "SHO", "\"SHO\"");
        row("one byte", "S", "\"S\"");
        row("blank in front", " SHOW", "\" SHOW\"");
        row("not text", QByteArray("\x00\xff\x80\x1b", 4), "\"\\x00\\xFF\\x80\\x1B\"");
        row("quotes", "\"%1\"\\", "\"\\\"%1\\\"\\\\\"");
    }
}

void SingleInstanceTest::message()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, leaves);
    QFETCH(QByteArray, logged);
    failOnAnyWarning();
    if (!logged.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, (QByteArray(kUnknownData) + ' ' + logged).constData());
    listenAndServe();
    const auto client = send({bytes}, leaves);
    QTRY_COMPARE_WITH_TIMEOUT(m_served, 1, kTimeoutMs);
    QCOMPARE(m_woken, logged.isEmpty() ? 1 : 0);
    QTRY_VERIFY_WITH_TIMEOUT(client->isFinished(), kTimeoutMs);
}

void SingleInstanceTest::messageInPieces_data()
{
    QTest::addColumn<QList<QByteArray>>("pieces");
    QTest::addColumn<QByteArray>("logged");
    QTest::newRow("halves") << QList<QByteArray>{"SH", "OW"} << QByteArray();
    QTest::newRow("bytes") << QList<QByteArray>{"S", "H", "O", "W"} << QByteArray();
    QTest::newRow("too much in the end")
        << QList<QByteArray>{"SHO", "W!"} << QByteArray("\"SHOW!\"");
    QTest::newRow("wrong end") << QList<QByteArray>{"SH", "UT"} << QByteArray("\"SHUT\"");
    QTest::newRow("what follows is not read")
        << QList<QByteArray>{"SHOW", "and more"} << QByteArray();
}

void SingleInstanceTest::messageInPieces()
{
    QFETCH(QList<QByteArray>, pieces);
    QFETCH(QByteArray, logged);
    failOnAnyWarning();
    if (!logged.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, (QByteArray(kUnknownData) + ' ' + logged).constData());
    listenAndServe();
    const auto client = send(pieces, false);
    QTRY_COMPARE_WITH_TIMEOUT(m_served, 1, kTimeoutMs);
    QCOMPARE(m_woken, logged.isEmpty() ? 1 : 0);
    QTRY_VERIFY_WITH_TIMEOUT(client->isFinished(), kTimeoutMs);
}

void SingleInstanceTest::silentClientIsDroppedAfterOneWait()
{
    failOnAnyWarning();
    listenAndServe();
    const auto client = send({}, false);
    QTRY_COMPARE_WITH_TIMEOUT(m_served, 1, kTimeoutMs);
    QCOMPARE(m_woken, 0);
    QVERIFY2(m_visitMs > 450, qPrintable(QString::number(m_visitMs)));
    QTRY_VERIFY_WITH_TIMEOUT(client->isFinished(), kTimeoutMs);
}

void SingleInstanceTest::clientThatLeavesIsDroppedAtOnce()
{
    failOnAnyWarning();
    listenAndServe();
    const auto silent = send({}, false);
    QTRY_COMPARE_WITH_TIMEOUT(m_accepted, 1, kTimeoutMs);
    const auto leaving = send({}, true);
    // Before the one that came earlier and stays.
    QTRY_COMPARE_WITH_TIMEOUT(m_served, 1, kTimeoutMs);
    QVERIFY(leaving->isFinished());
    QVERIFY(!silent->isFinished());
    QTRY_COMPARE_WITH_TIMEOUT(m_served, 2, kTimeoutMs);
    QCOMPARE(m_woken, 0);
    QTRY_VERIFY_WITH_TIMEOUT(silent->isFinished(), kTimeoutMs);
}

void SingleInstanceTest::tricklingClientIsWaitedForPiecewise()
{
    // Each byte starts the wait anew, and the last wait is for a byte that never comes.
    failOnAnyWarning();
    QTest::ignoreMessage(QtWarningMsg, "IPC: menerima data tak dikenal: \"SHO\"");
    listenAndServe();
    const auto client = send({"S", "H", "O"}, false);
    QTRY_COMPARE_WITH_TIMEOUT(m_served, 1, kTimeoutMs);
    QCOMPARE(m_woken, 0);
    QVERIFY2(m_visitMs > 2 * kPauseMs + 400, qPrintable(QString::number(m_visitMs)));
}

void SingleInstanceTest::silentClientsKeepNobodyWaiting()
{
    constexpr int kSilent = 30;
    failOnAnyWarning();
    listenAndServe();
    QLocalSocket silent[kSilent];
    for (int i = 0; i < kSilent; ++i) {
        silent[i].connectToServer(place());
        QTRY_COMPARE_WITH_TIMEOUT(m_accepted, i + 1, kTimeoutMs);
    }
    // In this very thread, so whoever waited for one of the others would keep this one from
    // speaking until that one is gone.
    QLocalSocket last;
    connect(&last, &QLocalSocket::connected, this, [&last] { last.write("SHOW"); });
    last.connectToServer(place());
    QTRY_COMPARE_WITH_TIMEOUT(m_woken, 1, kTimeoutMs);
    QVERIFY2(m_presentAtWake > 1, qPrintable(QString::number(m_presentAtWake)));
    QTRY_COMPARE_WITH_TIMEOUT(m_served, kSilent + 1, kTimeoutMs);
    QCOMPARE(m_woken, 1);
}

void SingleInstanceTest::silentClientsMakeRoomForOthers()
{
    constexpr int kSilent = SingleInstance::MaxClients + 20;
    failOnAnyWarning();
    listenAndServe();
    QLocalSocket silent[kSilent];
    int most = 0;
    for (int i = 0; i < kSilent; ++i) {
        silent[i].connectToServer(place());
        QTRY_COMPARE_WITH_TIMEOUT(m_accepted, i + 1, kTimeoutMs);
        most = std::max(most, m_accepted - m_served);
    }
    // The one sent away is there until the event loop comes round.
    QVERIFY2(most <= SingleInstance::MaxClients + 1, qPrintable(QString::number(most)));
    QTRY_COMPARE_WITH_TIMEOUT(silent[0].state(), QLocalSocket::UnconnectedState, kTimeoutMs);
    const auto last = send({"SHOW"}, true);
    QTRY_COMPARE_WITH_TIMEOUT(m_woken, 1, kTimeoutMs);
    QTRY_COMPARE_WITH_TIMEOUT(m_served, kSilent + 1, kTimeoutMs);
}

void SingleInstanceTest::floodIsCutShort()
{
    constexpr int kFloodBytes = 10'000'000;
    static qsizetype s_loggedLength = 0;
    static int s_loggedCount = 0;
    s_loggedLength = 0;
    s_loggedCount = 0;
    const auto previous =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
            s_loggedLength = text.startsWith(kUnknownData) ? text.size() : 0;
            ++s_loggedCount;
        });
    listenAndServe();
    const auto client = flood(kFloodBytes);
    const bool isServed = QTest::qWaitFor([this] { return m_served == 1; }, kTimeoutMs);
    // Hung up on, although it still had most of it to send.
    const bool isDropped = QTest::qWaitFor([&client] { return client->isFinished(); }, kTimeoutMs);
    qInstallMessageHandler(previous);

    QVERIFY(isServed);
    QVERIFY(isDropped);
    QCOMPARE(m_woken, 0);
    QCOMPARE(s_loggedCount, 1);
    QVERIFY2(s_loggedLength > 4 && s_loggedLength < kFloodBytes / 2,
             qPrintable(QString::number(s_loggedLength)));

    const auto next = send({"SHOW"}, true);
    QTRY_COMPARE_WITH_TIMEOUT(m_woken, 1, kTimeoutMs);
}

void SingleInstanceTest::clientsAtOnceAreServedEach()
{
    failOnAnyWarning();
    QTest::ignoreMessage(QtWarningMsg, "IPC: menerima data tak dikenal: \"NONE\"");
    listenAndServe();
    const auto silent = send({}, false);
    const auto first = send({"SHOW"}, true);
    const auto stranger = send({"NONE"}, false);
    const auto second = send({"SHOW"}, false);
    QTRY_COMPARE_WITH_TIMEOUT(m_served, 4, kTimeoutMs);
    QCOMPARE(m_woken, 2);
}

void SingleInstanceTest::servedClientIsDropped()
{
    listenAndServe();
    const auto client = send({"SHOW"}, false);
    QTRY_COMPARE_WITH_TIMEOUT(m_served, 1, kTimeoutMs);
    QTRY_VERIFY(m_server->findChildren<QLocalSocket*>().isEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(client->isFinished(), kTimeoutMs);
}

void SingleInstanceTest::nobodyIsWokenAfterTheEnd()
{
    // Whom a wake is for may go while a client is still speaking.
    failOnAnyWarning();
    SingleInstance::listen(*m_server, m_name);
    auto context = std::make_unique<QObject>();
    SingleInstance::serve(*m_server, context.get(), [this] { ++m_woken; });
    connect(m_server.get(), &QLocalServer::newConnection, this, &SingleInstanceTest::countVisit);
    QLocalSocket client;
    client.connectToServer(place());
    QTRY_COMPARE_WITH_TIMEOUT(m_accepted, 1, kTimeoutMs);
    context.reset();
    client.write("SHOW");
    QTRY_COMPARE_WITH_TIMEOUT(m_served, 1, kTimeoutMs);
    QCOMPARE(m_woken, 0);
}

/// Where a place may be a stranger's, whoever hands over looks at it first, which is a visit too.
int SingleInstanceTest::visitsOfAHandOver() const
{
    return Platform::localServerPlaces(m_name).size() > 1 ? 2 : 1;
}

void SingleInstanceTest::handOverWakesTheServer()
{
    failOnAnyWarning();
    listenAndServe();
    const Client second([this] { SingleInstance::handOver(m_name); });
    QTRY_VERIFY_WITH_TIMEOUT(second.isFinished(), kTimeoutMs);
    QTRY_COMPARE_WITH_TIMEOUT(m_served, visitsOfAHandOver(), kTimeoutMs);
    QCOMPARE(m_woken, 1);
}

void SingleInstanceTest::handOverToABusyServer()
{
    failOnAnyWarning();
    const bool arrives = keepsWhatNobodyReads();
    if (!arrives)
        QTest::ignoreMessage(QtWarningMsg,
                             "Gagal mengirim sinyal SHOW ke instance yang sudah berjalan.");
    listenAndServe();
    QSemaphore done;
    const Client second([this, &done] {
        SingleInstance::handOver(m_name);
        done.release();
    });
    // The event loop of the first instance stands still until the second one has gone.
    QVERIFY(done.tryAcquire(1, kTimeoutMs));
    QCOMPARE(m_woken, 0);
    QTRY_COMPARE_WITH_TIMEOUT(m_served, visitsOfAHandOver(), kTimeoutMs);
    QCOMPARE(m_woken, arrives ? 1 : 0);
}

void SingleInstanceTest::handOverToALateServer()
{
    failOnAnyWarning();
    QTimer::singleShot(2 * SingleInstance::AttemptPauseMs, this, [this] {
        SingleInstance::listen(*m_server, m_name);
        SingleInstance::serve(*m_server, this, [this] { ++m_woken; });
    });
    const Client second([this] { SingleInstance::handOver(m_name); });
    QTRY_VERIFY_WITH_TIMEOUT(second.isFinished(), kTimeoutMs);
    QTRY_COMPARE_WITH_TIMEOUT(m_woken, 1, kTimeoutMs);
}

void SingleInstanceTest::earlyClientIsServedLater()
{
    failOnAnyWarning();
    SingleInstance::listen(*m_server, m_name);
    const auto first = send({"SHOW"}, false);
    const auto second = send({"SHOW"}, false);
    // Announced while nobody serves.
    QTRY_VERIFY_WITH_TIMEOUT(m_server->hasPendingConnections(), kTimeoutMs);
    SingleInstance::serve(*m_server, this, [this] { ++m_woken; });
    QCOMPARE(m_woken, 0);
    QTRY_COMPARE_WITH_TIMEOUT(m_woken, 2, kTimeoutMs);
    const auto third = send({"SHOW"}, false);
    QTRY_COMPARE_WITH_TIMEOUT(m_woken, 3, kTimeoutMs);
}

void SingleInstanceTest::handOverToNobody()
{
    failOnAnyWarning();
    QTest::ignoreMessage(
        QtWarningMsg, "Instance lain terdeteksi (Mutex) tapi gagal terhubung ke IPC server-nya.");
    QElapsedTimer elapsed;
    elapsed.start();
    SingleInstance::handOver(m_name);
    // Five pauses between six attempts. How long an attempt takes is up to the system and its load.
    const qint64 elapsedMs = elapsed.elapsed();
    QVERIFY2(elapsedMs >= 750, qPrintable(QString::number(elapsedMs)));
}

void SingleInstanceTest::listenReplacesWhatACrashLeft()
{
    failOnAnyWarning();
    const FreshProcess::Outcome crash = FreshProcess::run("listen and crash", {place()});
    QVERIFY(crash.hasExited);
    QCOMPARE(crash.exitCode, 0);
    listenAndServe();
    QVERIFY(m_server->isListening());
    const auto client = send({"SHOW"}, true);
    QTRY_COMPARE_WITH_TIMEOUT(m_woken, 1, kTimeoutMs);
}

void SingleInstanceTest::listenTakesTheNameOfALiveServer()
{
    // Which of the two is reached differs between systems; that one of them is does not.
    failOnAnyWarning();
    QLocalServer older;
    SingleInstance::listen(older, m_name);
    int wokenOlder = 0;
    QObject context;
    SingleInstance::serve(older, &context, [&wokenOlder] { ++wokenOlder; });
    listenAndServe();
    QVERIFY(m_server->isListening());
    const auto client = send({"SHOW"}, true);
    QTRY_COMPARE_WITH_TIMEOUT(m_woken + wokenOlder, 1, kTimeoutMs);
}

void SingleInstanceTest::listenFailureIsLogged()
{
    failOnAnyWarning();
    static const QRegularExpression s_expected(
        "^Gagal membuat IPC server: \"QLocalServer::listen: .+\" - fitur 'bangunkan window' dari "
        "instance kedua tidak akan berfungsi untuk sesi ini\\.$");
    QTest::ignoreMessage(QtWarningMsg, s_expected);
    SingleInstance::listen(*m_server, {});
    QVERIFY(!m_server->isListening());
}

void SingleInstanceTest::lockIsHeldByOneProcess()
{
    const QString name = SingleInstance::mutexName("held_by_one");
    QVERIFY(Platform::acquireInstanceLock(name));
    QCOMPARE(lockOutcome(name), "refused");
    QCOMPARE(lockOutcome(name), "refused");
}

void SingleInstanceTest::locksOfOtherNamesAreFree()
{
    QVERIFY(Platform::acquireInstanceLock(SingleInstance::mutexName("one_install")));
    QCOMPARE(lockOutcome(SingleInstance::mutexName("other_install")), "taken");
    // And again, since the process that took it has ended.
    QCOMPARE(lockOutcome(SingleInstance::mutexName("other_install")), "taken");
}

void SingleInstanceTest::lockDiesWithItsProcess()
{
    // Killed, and survived by a program that it had launched.
    const QString name = SingleInstance::mutexName("killed");
    QVERIFY(m_server->listen(m_name));
    QList<QLocalSocket*> clients;
    connect(m_server.get(), &QLocalServer::newConnection, this,
            [&] { clients.append(m_server->nextPendingConnection()); });
    QProcess holder;
    FreshProcess::start(holder, "take lock and launch", {name, m_name});
    QTRY_COMPARE_WITH_TIMEOUT(clients.size(), 2, kTimeoutMs);
    QCOMPARE(lockOutcome(name), "refused");
    holder.kill();
    QVERIFY(holder.waitForFinished(kTimeoutMs));
    QCOMPARE(lockOutcome(name), "taken");
    const auto isConnected = [](const QLocalSocket* socket) {
        return socket->state() == QLocalSocket::ConnectedState;
    };
    QTRY_COMPARE(std::count_if(clients.begin(), clients.end(), isConnected), 1);
}

int main(int argc, char** argv)
{
    return FreshProcess::main<SingleInstanceTest, QCoreApplication>(
        argc, argv,
        {{"take lock", takeLock},
         {"take lock and launch", takeLockAndLaunch},
         {"stay connected", stayConnected},
         {"listen and crash", listenAndCrash}});
}

#include "tst_singleinstance.moc"
