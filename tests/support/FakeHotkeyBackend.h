// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HotkeyBackend.h"

#include <QVector>

/// A desktop's hotkeys in memory: grants and refuses like the real ones, remembers every call, and
/// reports a press when told to.
class FakeHotkeyBackend : public HotkeyBackend
{
public:
    struct Registration
    {
        WId window = 0;
        int id = 0;
        unsigned int modifiers = 0; ///< with `NoRepeat` if it was asked for
        unsigned int key = 0;

        bool operator==(const Registration&) const = default;
    };

    /// What `press` hands to native event filters in place of a system's own event.
    struct Press
    {
        int id = 0;
    };

    /// Puts a fresh fake in place of the system's backend and returns it; it stays owned there.
    static FakeHotkeyBackend* install();

    bool registerHotkey(WId window, int id, unsigned int modifiers, unsigned int key) override;
    void unregisterHotkey(WId window, int id) override;
    std::optional<int> hotkeyIdOf(const QByteArray& eventType, const void* message) const override;

    /// Lets another program hold a combination from now on.
    void takeByOther(unsigned int modifiers, unsigned int key);

    /// Refuses every registration that asks for no repeats.
    void refuseNoRepeat() { m_refusesNoRepeat = true; }

    /// Refuses every registration under that id.
    void refuseId(int id) { m_refusedIds.append(id); }

    /// Refuses one combination under that id alone, as when another program takes it between a
    /// probe and the registration.
    void refuseUnder(int id, unsigned int modifiers, unsigned int key)
    {
        m_refused.append({0, id, modifiers, key});
    }

    const QVector<Registration>& registrations() const { return m_registrations; }
    /// Every attempt to register, granted or not, in order.
    const QVector<Registration>& attempts() const { return m_attempts; }

    /// Type name under which `Press` events travel.
    static QByteArray eventType() { return QByteArrayLiteral("fake_hotkey_event"); }

private:
    bool isTaken(unsigned int modifiers, unsigned int key) const;

    QVector<Registration> m_registrations;
    QVector<Registration> m_attempts;
    QVector<Registration> m_others;
    QVector<Registration> m_refused; ///< under one id each, whatever the window
    QVector<int> m_refusedIds;
    bool m_refusesNoRepeat = false;
};
