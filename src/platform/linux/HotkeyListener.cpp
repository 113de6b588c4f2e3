// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HotkeyListener.h"

#include <algorithm>
#include <array>
#include <future>
#include <optional>
#include <utility>

#include <poll.h>
#include <sys/eventfd.h>

namespace
{

constexpr std::chrono::seconds kReconnectPause(2);

} // namespace

HotkeyListener::HotkeyListener(QByteArray display, HotkeyGrabs::Callbacks callbacks)
    : m_display(std::move(display)),
      m_callbacks(std::move(callbacks)),
      m_wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    // A thread that nobody can wake would keep everybody waiting.
    if (m_wake.isOpen())
        m_thread = std::thread([this] { run(); });
}

HotkeyListener::~HotkeyListener()
{
    if (!m_thread.joinable())
        return;
    {
        const std::lock_guard lock(m_mutex);
        m_isStopped = true;
    }
    post([] {});
    m_thread.join();
}

bool HotkeyListener::add(const Hotkey& hotkey)
{
    bool isGranted = false;
    postAndWait([this, &hotkey, &isGranted] {
        isGranted = m_grabs && m_grabs->add(hotkey);
        if (isGranted)
            m_hotkeys.append(hotkey);
    });
    return isGranted;
}

void HotkeyListener::remove(WId window, int id)
{
    postAndWait([this, window, id] {
        m_hotkeys.removeIf([window, id](const Hotkey& hotkey) {
            return hotkey.window == window && hotkey.id == id;
        });
        if (m_grabs)
            m_grabs->remove(window, id);
    });
}

void HotkeyListener::release(quint32 hold)
{
    post([this, hold] {
        if (m_grabs)
            m_grabs->release(hold);
    });
}

void HotkeyListener::post(Command command)
{
    if (!m_thread.joinable())
        return;
    const std::lock_guard lock(m_mutex);
    m_commands.append(std::move(command));
    // Fails only where the counter is full, and then the thread is being woken already.
    [[maybe_unused]] const int result = ::eventfd_write(m_wake.get(), 1);
}

void HotkeyListener::postAndWait(const Command& command)
{
    if (!m_thread.joinable())
        return;
    std::promise<void> done;
    post([&command, &done] {
        command();
        done.set_value();
    });
    done.get_future().wait();
}

void HotkeyListener::run()
{
    while (true) {
        keepConnected();
        const bool isStopped = runCommands();
        if (isStopped)
            break;
        if (m_grabs)
            m_grabs->run();
        waitForWork();
    }
    m_grabs.reset();
}

bool HotkeyListener::runCommands()
{
    eventfd_t count = 0;
    [[maybe_unused]] const int result = ::eventfd_read(m_wake.get(), &count);
    QVector<Command> commands;
    bool isStopped = false;
    {
        const std::lock_guard lock(m_mutex);
        commands.swap(m_commands);
        isStopped = m_isStopped;
    }
    for (const Command& command : std::as_const(commands))
        command();
    return isStopped;
}

void HotkeyListener::keepConnected()
{
    if (m_grabs && !m_grabs->isAlive()) {
        m_grabs.reset();
        m_nextConnect = HotkeyGrabs::Clock::now() + kReconnectPause;
    }
    if (m_grabs || HotkeyGrabs::Clock::now() < m_nextConnect)
        return;
    m_grabs = HotkeyGrabs::connect(m_display, m_callbacks);
    m_nextConnect = HotkeyGrabs::Clock::now() + kReconnectPause;
    if (!m_grabs)
        return;
    for (const Hotkey& hotkey : std::as_const(m_hotkeys))
        m_grabs->addPatiently(hotkey);
}

void HotkeyListener::waitForWork()
{
    std::array<pollfd, 2> watched{{{m_wake.get(), POLLIN, 0}, {-1, POLLIN, 0}}};
    std::optional<HotkeyGrabs::Clock::time_point> deadline = m_nextConnect;
    if (m_grabs) {
        watched[1].fd = m_grabs->descriptor();
        deadline = m_grabs->isAlive() ? m_grabs->nextDeadline() : HotkeyGrabs::Clock::now();
    }
    int timeoutMs = -1;
    if (deadline) {
        using std::chrono::ceil;
        using std::chrono::milliseconds;
        const auto left = ceil<milliseconds>(*deadline - HotkeyGrabs::Clock::now());
        timeoutMs = static_cast<int>(std::max(left, milliseconds(0)).count());
    }
    ::poll(watched.data(), watched.size(), timeoutMs);
}
