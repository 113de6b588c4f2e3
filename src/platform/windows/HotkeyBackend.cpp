// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HotkeyBackend.h"

#include <windows.h>

namespace
{

// Combinations are handed on as they are stored, in the numbers of `HotkeyManager`.
static_assert(MOD_ALT == 1 && MOD_CONTROL == 2 && MOD_SHIFT == 4 && MOD_WIN == 8);
static_assert(HotkeyBackend::NoRepeat == MOD_NOREPEAT);

class WindowsHotkeyBackend : public HotkeyBackend
{
public:
    bool registerHotkey(WId window, int id, unsigned int modifiers, unsigned int key) override
    {
        return RegisterHotKey(reinterpret_cast<HWND>(window), id, modifiers, key) != 0;
    }

    void unregisterHotkey(WId window, int id) override
    {
        UnregisterHotKey(reinterpret_cast<HWND>(window), id);
    }

    std::optional<int> hotkeyIdOf(const QByteArray& eventType, const void* message) const override
    {
        Q_UNUSED(eventType);
        const auto* native = static_cast<const MSG*>(message);
        if (!native || native->message != WM_HOTKEY)
            return std::nullopt;
        return static_cast<int>(native->wParam);
    }
};

} // namespace

std::unique_ptr<HotkeyBackend> HotkeyBackend::create()
{
    return std::make_unique<WindowsHotkeyBackend>();
}
