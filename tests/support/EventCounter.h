// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QEvent>
#include <QWidget>

/// Counts the events of one type that reach a widget.
class EventCounter : public QObject
{
public:
    EventCounter(QWidget* watched, QEvent::Type type) : m_type(type)
    {
        watched->installEventFilter(this);
    }

    int count = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        count += event->type() == m_type ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }

private:
    QEvent::Type m_type;
};
