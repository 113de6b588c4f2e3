// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FakeHotkeyBackend.h"

#include <algorithm>

FakeHotkeyBackend* FakeHotkeyBackend::install()
{
    auto fake = std::make_unique<FakeHotkeyBackend>();
    FakeHotkeyBackend* raw = fake.get();
    HotkeyBackend::setInstance(std::move(fake));
    return raw;
}

bool FakeHotkeyBackend::registerHotkey(WId window, int id, unsigned int modifiers, unsigned int key)
{
    const Registration wanted{window, id, modifiers, key};
    m_attempts.append(wanted);
    const bool isRefused = (m_refusesNoRepeat && (modifiers & NoRepeat)) ||
                           m_refusedIds.contains(id) ||
                           m_refused.contains({0, id, modifiers & ~NoRepeat, key}) ||
                           isTaken(modifiers & ~NoRepeat, key);
    if (!isRefused)
        m_registrations.append(wanted);
    return !isRefused;
}

void FakeHotkeyBackend::unregisterHotkey(WId window, int id)
{
    m_registrations.removeIf([window, id](const Registration& registration) {
        return registration.window == window && registration.id == id;
    });
}

std::optional<int> FakeHotkeyBackend::hotkeyIdOf(const QByteArray& type, const void* message) const
{
    if (type != eventType())
        return std::nullopt;
    return static_cast<const Press*>(message)->id;
}

void FakeHotkeyBackend::takeByOther(unsigned int modifiers, unsigned int key)
{
    m_others.append({0, 0, modifiers, key});
}

bool FakeHotkeyBackend::isTaken(unsigned int modifiers, unsigned int key) const
{
    const auto isSame = [modifiers, key](const Registration& other) {
        return (other.modifiers & ~NoRepeat) == modifiers && other.key == key;
    };
    return std::any_of(m_registrations.begin(), m_registrations.end(), isSame) ||
           std::any_of(m_others.begin(), m_others.end(), isSame);
}
