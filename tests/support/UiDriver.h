// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QApplication>
#include <QFrame>
#include <QGraphicsDropShadowEffect>
#include <QLayout>
#include <QMenu>
#include <QMouseEvent>
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

/// Works the menu that opens inside a call under test, which would otherwise never return.
class MenuDriver : public QObject
{
public:
    using Action = std::function<void(QMenu*)>;

    explicit MenuDriver(Action act) : m_act(std::move(act))
    {
        connect(&m_timer, &QTimer::timeout, this, &MenuDriver::look);
        m_timer.start(0);
    }

    /// Whether there has been a menu, and it was closed by what was done to it.
    bool hasClosed() const { return m_hasClosed; }

private:
    void look()
    {
        const QPointer<QMenu> menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu || !menu->isVisible())
            return;
        m_timer.stop();
        m_act(menu);
        m_hasClosed = !menu || !menu->isVisible();
        if (menu)
            menu->close();
    }

    QTimer m_timer;
    Action m_act;
    bool m_hasClosed = false;
};

/// Types a key at the widget of `window` that has the focus, as a keyboard does.
inline void pressKey(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QWidget* target = window.focusWidget();
    QTest::keyClick(target ? target : &window, key, modifiers);
}

/// Sends one mouse event to a widget, wherever on the screen it happens: an open menu gets them
/// all, and so does a widget that is being dragged. Only a release leaves the button up.
inline void sendMouse(QWidget* target, QEvent::Type type, const QPoint& globalPos,
                      Qt::MouseButton button = Qt::LeftButton)
{
    const bool isMove = type == QEvent::MouseMove;
    const Qt::MouseButtons held =
        type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(button);
    QMouseEvent event(type, target->mapFromGlobal(QPointF(globalPos)), QPointF(globalPos),
                      isMove ? Qt::NoButton : button, held, Qt::NoModifier);
    QApplication::sendEvent(target, &event);
}

inline void clickAt(QWidget* target, const QPoint& globalPos)
{
    sendMouse(target, QEvent::MouseButtonPress, globalPos);
    sendMouse(target, QEvent::MouseButtonRelease, globalPos);
}

/// Where a widget stands in a window above it.
inline QRect rectIn(const QWidget& window, const QWidget* widget)
{
    return {widget->mapTo(&window, QPoint(0, 0)), widget->size()};
}

/// Checks what every dialog has in common: the frameless window above its parent, and the card in
/// it with room for its shadow. \param paddingPx of the card. \param shadowAlpha of 255.
inline void verifyDialogLook(const QWidget& dialog, const QWidget& parent, int paddingPx,
                             int shadowAlpha)
{
    QCOMPARE(dialog.parentWidget(), &parent);
    QCOMPARE(dialog.windowType(), Qt::Dialog);
    QVERIFY(dialog.windowFlags() & Qt::FramelessWindowHint);
    QVERIFY(dialog.windowFlags() & Qt::WindowStaysOnTopHint);
    QVERIFY(dialog.testAttribute(Qt::WA_TranslucentBackground));
    QCOMPARE(dialog.layout()->contentsMargins(), QMargins(10, 10, 10, 10));
    const auto* card = dialog.findChild<QFrame*>(QStringLiteral("dialogBg"));
    QVERIFY(card);
    QVERIFY(card->styleSheet().contains(QStringLiteral("padding: %1px").arg(paddingPx)));
    const auto* shadow = dialog.findChild<QGraphicsDropShadowEffect*>();
    QVERIFY(shadow);
    QCOMPARE(shadow->color(), QColor(0, 0, 0, shadowAlpha));
    QCOMPARE(shadow->blurRadius(), 20.0);
    QCOMPARE(shadow->offset(), QPointF(0, 4));
}
