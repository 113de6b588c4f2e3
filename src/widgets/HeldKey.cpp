// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HeldKey.h"

#include "Keys.h"

#include <QKeyEvent>

bool HeldKey::hasRunOn(const QObject* watched, const QEvent* event)
{
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
        return false;
    const auto* press = static_cast<const QKeyEvent*>(event);
    if (!Keys::isEnter(press->key()) && press->key() != Qt::Key_Space)
        return false;
    const auto* widget = static_cast<const QWidget*>(watched);
    // A press that a widget doesn't want is offered to its parents one after the other.
    const bool isSamePress = m_pressed && (widget == m_pressed || widget->isAncestorOf(m_pressed));
    if (press->isAutoRepeat())
        return !isSamePress;
    if (!isSamePress)
        m_pressed = widget;
    return false;
}
