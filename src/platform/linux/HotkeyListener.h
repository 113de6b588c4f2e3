// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileDescriptor.h"
#include "HotkeyGrabs.h"

#include <QByteArray>
#include <QVector>

#include <functional>
#include <memory>
#include <mutex>
#include <thread>

/// Keeps `HotkeyGrabs` on a thread and a connection of its own, so that nothing the rest of the
/// program does or waits for holds the keyboard of the desktop. A connection that is lost, or can't
/// be had at first, is tried for again, and the hotkeys come back with it.
///
/// The functions may be called by one thread; the callbacks come on the listener's own.
class HotkeyListener
{
public:
    /// `display` such as ":0"; empty means that of the environment.
    HotkeyListener(QByteArray display, HotkeyGrabs::Callbacks callbacks);
    /// Frees all hotkeys and waits for the thread to end.
    ~HotkeyListener();
    HotkeyListener(const HotkeyListener&) = delete;
    HotkeyListener& operator=(const HotkeyListener&) = delete;

    /// Waits for the answer of the server. False if it refuses the combination, if there is no
    /// connection to it, if this listener has the combination already, or if the system had no
    /// descriptor left for the listener when it was made.
    [[nodiscard]] bool add(const Hotkey& hotkey);
    /// Other programs may have the combination when this returns.
    void remove(WId window, int id);

    /// Lets the keys go on that wait behind a press. Doesn't wait.
    void release(quint32 hold);

private:
    using Command = std::function<void()>;

    void post(Command command);
    void postAndWait(const Command& command);

    void run();
    bool runCommands();
    void keepConnected();
    void waitForWork();

    const QByteArray m_display;
    const HotkeyGrabs::Callbacks m_callbacks;
    const Platform::FileDescriptor m_wake; ///< written to when there is a command

    std::mutex m_mutex;
    QVector<Command> m_commands; ///< guarded by the mutex
    bool m_isStopped = false;    ///< guarded by the mutex

    // Of the thread alone.
    std::unique_ptr<HotkeyGrabs> m_grabs; ///< null without a connection
    QVector<Hotkey> m_hotkeys;
    HotkeyGrabs::Clock::time_point m_nextConnect;

    std::thread m_thread; ///< last, since it uses all of the above; none if it couldn't be woken
};
