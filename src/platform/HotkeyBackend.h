// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QtGui/qwindowdefs.h>

#include <memory>
#include <optional>

/// Registers system-wide hotkeys with the desktop. One object serves the whole process; GUI thread
/// only. Modifiers and keys are the stored numbers of `HotkeyManager`, whatever the system.
class HotkeyBackend
{
public:
    static constexpr unsigned int NoRepeat = 0x4000; ///< modifier flag: holding the keys fires once

    HotkeyBackend() = default;
    HotkeyBackend(const HotkeyBackend&) = delete;
    HotkeyBackend& operator=(const HotkeyBackend&) = delete;
    virtual ~HotkeyBackend() = default;

    /// Registers a combination for `window` under `id`. False if the system refuses it, which it
    /// does for a combination that any program, this one included, has registered already.
    [[nodiscard]] virtual bool registerHotkey(WId window, int id, unsigned int modifiers,
                                              unsigned int key) = 0;

    /// Gives the combination of `window` and `id` back; nothing happens if there is none.
    virtual void unregisterHotkey(WId window, int id) = 0;

    /// The id of the hotkey that a native event reports, or nothing for any other event. A press is
    /// one such event, which every native event filter of the application is shown. No more than a
    /// question: asking changes nothing.
    virtual std::optional<int> hotkeyIdOf(const QByteArray& eventType,
                                          const void* message) const = 0;

    /// The backend in use; the system's own is made at the first call.
    static HotkeyBackend& instance();

    /// Puts another backend in place, for tests; null brings the system's own back.
    static void setInstance(std::unique_ptr<HotkeyBackend> backend);

    /// Makes the system's own backend. It refuses everything where the display has no hotkeys.
    static std::unique_ptr<HotkeyBackend> create();
};
