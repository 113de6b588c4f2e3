// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "GlobalHotkeyController.h"

#include "HotkeyBackend.h"

#include <QCoreApplication>
#include <QDebug>

GlobalHotkeyController::GlobalHotkeyController(WId topLevelWindowId, int hotkeyId,
                                               HotkeyManager::Slot* slot, QObject* parent)
    : QObject(parent), m_windowId(topLevelWindowId), m_hotkeyId(hotkeyId), m_slot(slot)
{
    QCoreApplication::instance()->installNativeEventFilter(this);
}

GlobalHotkeyController::~GlobalHotkeyController()
{
    HotkeyBackend::instance().unregisterHotkey(m_windowId, m_hotkeyId);
    QCoreApplication::instance()->removeNativeEventFilter(this);
}

bool GlobalHotkeyController::applyHotkey(const QString& combo)
{
    if (combo.isEmpty() || !HotkeyManager::validate(combo, m_windowId, false, m_slot).valid)
        return false;
    HotkeyBackend& backend = HotkeyBackend::instance();
    backend.unregisterHotkey(m_windowId, m_hotkeyId);
    unsigned int modifiers = 0;
    unsigned int key = 0;
    HotkeyManager::parseCombo(combo, modifiers, key);
    if (backend.registerHotkey(m_windowId, m_hotkeyId, modifiers | HotkeyBackend::NoRepeat, key))
        return true;
    // Some systems refuse the flag.
    if (backend.registerHotkey(m_windowId, m_hotkeyId, modifiers, key))
        return true;
    qDebug() << "GlobalHotkeyController: Failed to register hotkey" << combo;
    return false;
}

bool GlobalHotkeyController::setHotkeyAndSave(const QString& combo)
{
    if (!m_slot || !applyHotkey(combo))
        return false;
    HotkeyManager::adopt(*m_slot, combo);
    HotkeyManager::saveSettings(*m_slot);
    return true;
}

bool GlobalHotkeyController::nativeEventFilter(const QByteArray& eventType, void* message,
                                               qintptr* result)
{
    Q_UNUSED(result);
    if (HotkeyBackend::instance().hotkeyIdOf(eventType, message) != m_hotkeyId)
        return false;
    emit hotkeyTriggered();
    return true;
}
