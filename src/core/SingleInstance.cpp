// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SingleInstance.h"

#include "platform/Foreground.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QLocalServer>
#include <QLocalSocket>
#include <QThread>

namespace
{

const QByteArray kWakeMessage = QByteArrayLiteral("SHOW");
constexpr int kInstanceKeyLength = 16;
constexpr qint64 kReadBufferSize = 4096; // in bytes

bool connectTo(QLocalSocket& socket, const QString& ipcServerName)
{
    for (int attempt = 0; attempt < SingleInstance::ConnectAttempts; ++attempt) {
        // The first instance holds its lock a moment before its server listens.
        if (attempt > 0)
            QThread::msleep(SingleInstance::AttemptPauseMs);
        socket.connectToServer(ipcServerName, QIODevice::ReadWrite);
        if (socket.waitForConnected(SingleInstance::ConnectTimeoutMs))
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

QByteArray readMessage(QLocalSocket& client)
{
    // Some systems would take in all that a client sends while the first bytes are waited for.
    client.setReadBufferSize(kReadBufferSize);
    QByteArray data;
    while (data.size() < kWakeMessage.size()) {
        if (client.bytesAvailable() == 0 && !client.waitForReadyRead(SingleInstance::ReadTimeoutMs))
            break;
        data += client.readAll();
    }
    return data;
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
    QLocalServer::removeServer(ipcServerName);
    server.setSocketOptions(QLocalServer::UserAccessOption);
    if (!server.listen(ipcServerName)) {
        qWarning() << "Gagal membuat IPC server:" << server.errorString()
                   << "- fitur 'bangunkan window' dari instance kedua tidak akan berfungsi untuk "
                      "sesi ini.";
    }
}

void SingleInstance::handleConnection(QLocalServer& server, const std::function<void()>& wake)
{
    QLocalSocket* client = server.nextPendingConnection();
    if (!client)
        return;
    const QByteArray data = readMessage(*client);
    if (data == kWakeMessage)
        wake();
    else if (!data.isEmpty())
        qWarning() << "IPC: menerima data tak dikenal:" << data;
    client->deleteLater();
}

void SingleInstance::serve(QLocalServer& server, QObject* context,
                           const std::function<void()>& wake)
{
    QObject::connect(&server, &QLocalServer::newConnection, context,
                     [&server, wake] { handleConnection(server, wake); });
    // On Windows the server tells of a client that came while it was being set up at once, when
    // nobody can listen to it yet.
    const auto handleEarlyOnes = [&server, wake] {
        while (server.hasPendingConnections())
            handleConnection(server, wake);
    };
    QMetaObject::invokeMethod(context, handleEarlyOnes, Qt::QueuedConnection);
}
