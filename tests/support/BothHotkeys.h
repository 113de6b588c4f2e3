// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FakeHotkeyBackend.h"
#include "GlobalHotkeyController.h"
#include "HotkeyManager.h"
#include "TestHome.h"

#include <memory>

/// The controllers of both windows' hotkeys, with the defaults registered at a backend of its own.
class BothHotkeys
{
public:
    static constexpr WId Window = 4711;

    /// Forgets the stored hotkeys. Ends the test run if a default is refused.
    BothHotkeys() : backend(FakeHotkeyBackend::install())
    {
        TestHome::writeDataFile("settings.ini", "");
        for (HotkeyManager::Slot* slot : HotkeyManager::allSlots())
            HotkeyManager::loadSettings(*slot, Window);
        main = registered(1, HotkeyManager::mainWindowSlot);
        spotlight = registered(2, HotkeyManager::spotlightSlot);
    }

    FakeHotkeyBackend* const backend; ///< not owned
    std::unique_ptr<GlobalHotkeyController> main;
    std::unique_ptr<GlobalHotkeyController> spotlight;

private:
    static std::unique_ptr<GlobalHotkeyController> registered(int id, HotkeyManager::Slot& slot)
    {
        auto controller = std::make_unique<GlobalHotkeyController>(Window, id, &slot, nullptr);
        if (!controller->applyHotkey(slot.combo))
            qFatal("%s is refused", qPrintable(slot.combo));
        return controller;
    }
};
