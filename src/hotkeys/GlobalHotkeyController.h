// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HotkeyManager.h"

#include <QAbstractNativeEventFilter>
#include <QObject>

/// Binds one hotkey slot to one native window: registers its combination with the system and tells
/// when it is pressed. GUI thread only.
class GlobalHotkeyController : public QObject, public QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    /// Registers nothing yet. `hotkeyId` must be unique in the process; `slot` is not owned.
    GlobalHotkeyController(WId topLevelWindowId, int hotkeyId, HotkeyManager::Slot* slot,
                           QObject* parent);
    /// Gives the combination back to other programs.
    ~GlobalHotkeyController() override;

    WId windowId() const { return m_windowId; }
    HotkeyManager::Slot* slot() const { return m_slot; }

    /// Registers `combo` in place of the combination before it; the slot stays as it is. False if
    /// it may not be used. If the system refuses it only at the last step, the one before is gone
    /// too.
    bool applyHotkey(const QString& combo);

    /// The same, and on success the slot takes `combo` and stores it.
    bool setHotkeyAndSave(const QString& combo);

    /// The same, but if `combo` is refused even at the last step, the slot's combination is
    /// registered again, so that the user is not left without a hotkey.
    bool changeHotkeyAndSave(const QString& combo);

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

signals:
    void hotkeyTriggered();

private:
    enum class Outcome {
        Registered,
        Refused, ///< and the combination before it is in force
        Lost     ///< and so is the combination before it
    };

    Outcome apply(const QString& combo);
    void save(const QString& combo);

    WId m_windowId;
    int m_hotkeyId;
    HotkeyManager::Slot* m_slot;
};
