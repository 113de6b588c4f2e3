// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SingleInstance.h"

#include "Foreground.h"
#include "LocalServer.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QLocalServer>
#include <QLocalSocket>
#include <QPointer>
#include <QSocketNotifier>
#include <QThread>
#include <QTimer>

#include <memory>
#include <utility>

namespace
{

const QByteArray kWakeMessage = QByteArrayLiteral("SHOW");
constexpr int kInstanceKeyLength = 16;
constexpr qint64 kReadBufferSize = 4096; // in bytes

bool connectOnce(QLocalSocket& socket, const QString& ipcServerName)
{
    for (const QString& place : Platform::localServerPlaces(ipcServerName)) {
        if (Platform::isHeldByAnotherUser(place))
            continue;
        socket.connectToServer(place, QIODevice::ReadWrite);
        if (socket.waitForConnected(SingleInstance::ConnectTimeoutMs))
            return true;
    }
    return false;
}

bool connectTo(QLocalSocket& socket, const QString& ipcServerName)
{
    for (int attempt = 0; attempt < SingleInstance::ConnectAttempts; ++attempt) {
        // The first instance holds its lock a moment before its server listens.
        if (attempt > 0)
            QThread::msleep(SingleInstance::AttemptPauseMs);
        if (connectOnce(socket, ipcServerName))
            return true;
    }
    return false;
}

bool send(QLocalSocket& socket, const QByteArray& message)
{
    socket.write(message);
    socket.flush();
    // A broken connection drops what is left to write, so the state tells more than the rest.
    if (socket.state() != QLocalSocket::ConnectedState)
        return false;
    // With nothing left to write the wait would say false.
    return socket.bytesToWrite() == 0 || socket.waitForBytesWritten(SingleInstance::WriteTimeoutMs);
}

/// The place that no other user holds, or the last one, where the failure to listen will tell.
QString placeToListen(const QString& ipcServerName)
{
    QString chosen;
    for (const QString& place : Platform::localServerPlaces(ipcServerName)) {
        chosen = place;
        if (!Platform::isHeldByAnotherUser(place))
            break;
    }
    return chosen;
}

/// Takes in what one client sends, without ever waiting for it, and acts on it. Ends with the
/// client, which it drops when the message is there or nothing has come for a while.
class Visit : public QObject
{
public:
    Visit(QLocalSocket* client, QObject* context, std::function<void()> wake);

    bool hasEnded() const { return !m_patience.isActive(); }
    void end();

private:
    void read();

    QLocalSocket* m_client;
    QPointer<QObject> m_context;
    std::function<void()> m_wake;
    QTimer m_patience;
    QByteArray m_data;
};

Visit::Visit(QLocalSocket* client, QObject* context, std::function<void()> wake)
    : QObject(client), m_client(client), m_context(context), m_wake(std::move(wake))
{
    // Some systems would take in all that a client sends while the first bytes are waited for.
    client->setReadBufferSize(kReadBufferSize);
    m_patience.setSingleShot(true);
    m_patience.setInterval(SingleInstance::ReadTimeoutMs);
    connect(&m_patience, &QTimer::timeout, this, &Visit::end);
    connect(client, &QLocalSocket::readyRead, this, &Visit::read);
    connect(client, &QLocalSocket::disconnected, this, &Visit::end);
    m_patience.start();
    // What happened before is not announced again.
    if (client->bytesAvailable() > 0)
        read();
    if (m_patience.isActive() && client->state() == QLocalSocket::UnconnectedState)
        end();
}

void Visit::read()
{
    m_data += m_client->readAll();
    if (m_data.size() >= kWakeMessage.size())
        end();
    else
        m_patience.start();
}

void Visit::end()
{
    m_patience.stop();
    m_client->disconnect(this);
    // A client that has gone may have left something behind, unless the system has closed that too.
    if (m_data.size() < kWakeMessage.size() && m_client->isOpen())
        m_data += m_client->readAll();
    m_client->deleteLater();
    if (m_data != kWakeMessage) {
        if (!m_data.isEmpty())
            qWarning() << "IPC: menerima data tak dikenal:" << m_data;
    } else if (m_context) {
        m_wake();
    }
}

using Visits = QList<QPointer<Visit>>; // the first comer in front

/// Sends the one away who has been there longest: whoever has something to say does so at once.
void makeRoom(Visits& visits)
{
    visits.removeIf([](const QPointer<Visit>& visit) { return !visit || visit->hasEnded(); });
    if (visits.size() >= SingleInstance::MaxClients)
        visits.takeFirst()->end();
}

void keepListening(QLocalServer& server);

void listenAgain(QLocalServer& server, const QString& place)
{
    QLocalServer::removeServer(place);
    if (server.listen(place)) {
        keepListening(server);
        return;
    }
    QTimer::singleShot(SingleInstance::ListenPauseMs, &server,
                       [&server, place] { listenAgain(server, place); });
}

/// On some systems the server stops for good when it can't take a client in, as when the process
/// has no descriptor left. It doesn't tell, but the notifier of its socket goes then.
void keepListening(QLocalServer& server)
{
    const auto* notifier =
        server.findChild<QSocketNotifier*>(QString(), Qt::FindDirectChildrenOnly);
    if (!notifier)
        return;
    const auto onStopped = [&server, place = server.serverName()] {
        qWarning() << "IPC server berhenti:" << server.errorString() << "- akan dicoba lagi.";
        // What is missing may come back; until then each client would stop it again.
        QTimer::singleShot(SingleInstance::ListenPauseMs, &server,
                           [&server, place] { listenAgain(server, place); });
    };
    QObject::connect(notifier, &QObject::destroyed, &server, onStopped);
}

} // namespace

QString SingleInstance::instanceKey(const QString& installDirectory)
{
    const QByteArray hash =
        QCryptographicHash::hash(installDirectory.toLower().toUtf8(), QCryptographicHash::Sha1);
    return QString::fromLatin1(hash.toHex().left(kInstanceKeyLength));
}

QString SingleInstance::ipcServerName(const QString& instanceKey)
{
    return QStringLiteral("Vestrel_IPC_Server_") + instanceKey;
}

QString SingleInstance::mutexName(const QString& instanceKey)
{
    return QStringLiteral("Orlimo_Vestrel_SingleInstanceMutex_") + instanceKey;
}

void SingleInstance::handOver(const QString& ipcServerName)
{
    QLocalSocket socket;
    if (!connectTo(socket, ipcServerName)) {
        qWarning("Instance lain terdeteksi (Mutex) tapi gagal terhubung ke IPC server-nya.");
        return;
    }
    // Before the message, since the first instance acts on it at once.
    Platform::passForegroundOn();
    if (!send(socket, kWakeMessage))
        qWarning("Gagal mengirim sinyal SHOW ke instance yang sudah berjalan.");
    socket.disconnectFromServer();
}

void SingleInstance::listen(QLocalServer& server, const QString& ipcServerName)
{
    const QString place = placeToListen(ipcServerName);
    QLocalServer::removeServer(place);
    server.setSocketOptions(QLocalServer::UserAccessOption);
    if (!server.listen(place)) {
        qWarning() << "Gagal membuat IPC server:" << server.errorString()
                   << "- fitur 'bangunkan window' dari instance kedua tidak akan berfungsi untuk "
                      "sesi ini.";
    }
}

void SingleInstance::serve(QLocalServer& server, QObject* context,
                           const std::function<void()>& wake)
{
    const auto visits = std::make_shared<Visits>();
    const auto receive = [&server, context, wake, visits] {
        while (QLocalSocket* client = server.nextPendingConnection()) {
            makeRoom(*visits);
            visits->append(new Visit(client, context, wake));
        }
    };
    keepListening(server);
    QObject::connect(&server, &QLocalServer::newConnection, context, receive);
    // On Windows the server tells of a client that came while it was being set up at once, when
    // nobody can listen to it yet.
    QMetaObject::invokeMethod(context, receive, Qt::QueuedConnection);
}
