// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

class QLocalServer;
class QObject;

/// The rule of one process per install directory: how an install is named, how a second start wakes
/// the first, and what the first makes of it. Main thread only.
class SingleInstance
{
public:
    static constexpr int ConnectAttempts = 6;
    static constexpr int ConnectTimeoutMs = 300;
    static constexpr int AttemptPauseMs = 150;
    static constexpr int WriteTimeoutMs = 500;
    static constexpr int ReadTimeoutMs = 500;
    static constexpr int ListenPauseMs = 300;
    static constexpr int MaxClients = 32;

    SingleInstance() = delete;

    /// 16 lower-case hexadecimal digits that name the install in `installDirectory`; spellings that
    /// differ only in letter case give the same.
    static QString instanceKey(const QString& installDirectory);

    /// Names of the local server and of the lock for an instance key.
    static QString ipcServerName(const QString& instanceKey);
    static QString mutexName(const QString& instanceKey);

    /// Wakes the running instance and leaves it the right to come to the foreground. Blocks for at
    /// most 2,550 ms if nobody answers, or 4,350 ms where the server may lie in two places;
    /// failures are logged and otherwise silent.
    static void handOver(const QString& ipcServerName);

    /// Makes `server` listen under the name, in place of what a crashed run may have left there,
    /// for clients of the same user; where on the system that is, both sides find out by the same
    /// rule. A failure is logged; the program then runs without being woken.
    static void listen(QLocalServer& server, const QString& ipcServerName);

    /// From now on, as long as `context` lives, takes each connection of a listening `server`, and
    /// in the next turn of the event loop those that are there already, and calls `wake` if the
    /// client sends just the wake message. Waits for nobody: clients are read as their bytes come,
    /// each being dropped after `ReadTimeoutMs` without any, and the one that has been there
    /// longest when there are more than `MaxClients`. If the server stops, that is
    /// logged, and it listens again as soon as it can.
    static void serve(QLocalServer& server, QObject* context, const std::function<void()>& wake);
};
