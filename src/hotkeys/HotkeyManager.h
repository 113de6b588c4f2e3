// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QVector>
#include <QtGui/qwindowdefs.h>

/// The two system-wide hotkeys and everything about them but their registration: reading their text
/// form, deciding whether a combination may be used, keeping it in the settings. GUI thread only.
class HotkeyManager
{
public:
    static constexpr unsigned int ModAlt = 1;
    static constexpr unsigned int ModControl = 2;
    static constexpr unsigned int ModShift = 4;
    static constexpr unsigned int ModWin = 8;

    static constexpr int ProbeId = 999; ///< registration id that only `validate` uses

    /// One hotkey: what is in force, and where and with what fallback it is stored.
    struct Slot
    {
        QString combo;              ///< text form, such as "Ctrl+Alt+Y"
        unsigned int modifiers = 0; ///< bits of `combo`; 0 before `adopt`
        unsigned int vk = 0;        ///< key code of `combo`; 0 before `adopt`
        QString settingsKey;
        QString defaultCombo;
    };

    struct ValidationResult
    {
        bool valid = false;
        QString message; ///< for the user, not translated; "OK" or empty if valid
    };

    static Slot mainWindowSlot;
    static Slot spotlightSlot;

    HotkeyManager() = delete;

    /// Both slots, the main window's first.
    static QVector<Slot*> allSlots();

    /// Path of "settings.ini"; its directory exists afterwards.
    static QString settingsFilePath();

    /// Reads a text such as "ctrl + F1". False if it names no combination; the outputs are then
    /// partly filled and mean nothing.
    static bool parseCombo(const QString& combo, unsigned int& outModifiers, unsigned int& outVK);

    /// Decides whether `combo` may be used, at last by registering it for `windowId` for a moment.
    /// Without `forceTest` the present combination of `forSlot` is valid unseen.
    static ValidationResult validate(const QString& combo, WId windowId, bool forceTest,
                                     const Slot* forSlot);

    /// The same for a combination that the user wants for `forSlot`: refuses the other slots' too.
    static ValidationResult validateForChange(const QString& combo, WId windowId,
                                              const Slot& forSlot);

    /// Puts `combo` into the slot, whether or not it can be read.
    static void adopt(Slot& s, const QString& combo);

    /// Fills the slot from the settings. A stored combination that can't be used gives way to the
    /// default, also on disk, and the result then is a warning for the user; else it is empty.
    static QString loadSettings(Slot& s, WId windowId);

    /// Stores the slot's combination.
    static void saveSettings(const Slot& s);
};
