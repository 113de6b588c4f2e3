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

GlobalHotkeyController::Outcome GlobalHotkeyController::apply(const QString& combo)
{
    if (combo.isEmpty() || !HotkeyManager::validate(combo, m_windowId, false, m_slot).valid)
        return Outcome::Refused;
    HotkeyBackend& backend = HotkeyBackend::instance();
    backend.unregisterHotkey(m_windowId, m_hotkeyId);
    unsigned int modifiers = 0;
    unsigned int key = 0;
    HotkeyManager::parseCombo(combo, modifiers, key);
    if (backend.registerHotkey(m_windowId, m_hotkeyId, modifiers | HotkeyBackend::NoRepeat, key))
        return Outcome::Registered;
    // Some systems refuse the flag.
    if (backend.registerHotkey(m_windowId, m_hotkeyId, modifiers, key))
        return Outcome::Registered;
    qDebug() << "GlobalHotkeyController: Failed to register hotkey" << combo;
    return Outcome::Lost;
}

void GlobalHotkeyController::save(const QString& combo)
{
    HotkeyManager::adopt(*m_slot, combo);
    HotkeyManager::saveSettings(*m_slot);
}

bool GlobalHotkeyController::applyHotkey(const QString& combo)
{
    return apply(combo) == Outcome::Registered;
}

bool GlobalHotkeyController::setHotkeyAndSave(const QString& combo)
{
    if (!m_slot || !applyHotkey(combo))
        return false;
    save(combo);
    return true;
}

bool GlobalHotkeyController::changeHotkeyAndSave(const QString& combo)
{
    if (!m_slot)
        return false;
    const Outcome outcome = apply(combo);
    if (outcome == Outcome::Registered)
        save(combo);
    else if (outcome == Outcome::Lost)
        apply(m_slot->combo);
    return outcome == Outcome::Registered;
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
