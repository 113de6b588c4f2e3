// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QApplication>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <utility>

/// Answers the modal windows that open inside a call under test, which would otherwise never
/// return. Works from its construction to its end; make it before the call.
class ModalDriver : public QObject
{
public:
    /// What to do to a window that has just become active; it should end in closing it.
    using Action = std::function<void(QWidget*)>;

    explicit ModalDriver(Action act) : m_act(std::move(act))
    {
        connect(&m_timer, &QTimer::timeout, this, &ModalDriver::look);
        m_timer.start(0);
    }

    /// How many modal windows there have been.
    int count() const { return m_count; }

private:
    void look()
    {
        QWidget* modal = QApplication::activeModalWidget();
        // Before it is active its widgets have no focus, and keys would find nobody.
        if (!modal || modal == m_handled || !modal->isActiveWindow())
            return;
        m_handled = modal;
        ++m_count;
        m_act(modal);
    }

    QTimer m_timer;
    Action m_act;
    QPointer<QWidget> m_handled;
    int m_count = 0;
};

/// Types a key at the widget of `window` that has the focus, as a keyboard does.
inline void pressKey(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QWidget* target = window.focusWidget();
    QTest::keyClick(target ? target : &window, key, modifiers);
}
