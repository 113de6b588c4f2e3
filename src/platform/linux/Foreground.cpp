// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Foreground.h"

#include "WindowManager.h"
#include "WindowPlace.h"
#include "X11.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWindow>

namespace
{

constexpr uint32_t kSourcePager = 2; // a direct wish of the user, which no focus policy turns down

xcb_window_t inputFocus()
{
    const X11::Reply<xcb_get_input_focus_reply_t> reply(xcb_get_input_focus_reply(
        X11::connection(), xcb_get_input_focus(X11::connection()), nullptr));
    return reply ? reply->focus : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

void askWindowManager(WId id)
{
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = static_cast<xcb_window_t>(id);
    event.type = X11::atom("_NET_ACTIVE_WINDOW");
    event.data.data32[0] = kSourcePager;
    event.data.data32[1] = X11::userTime();
    xcb_send_event(X11::connection(), 0, X11::rootWindow(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
}

void setInputFocus(xcb_window_t window)
{
    xcb_set_input_focus(X11::connection(), XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    xcb_flush(X11::connection());
}

/// Waits until one window is on the screen, since neither a window manager nor the server gives
/// the focus to a window that isn't. Without a window manager it also gives the focus back when
/// the window goes, as a manager would. Owned by the window.
class ForegroundRequest : public QObject
{
public:
    /// The request of a window, made at the first call.
    static ForegroundRequest* requestOf(QWindow* window)
    {
        for (QObject* child : window->children()) {
            if (auto* request = dynamic_cast<ForegroundRequest*>(child))
                return request;
        }
        return new ForegroundRequest(window);
    }

    void start()
    {
        m_wanted = true;
        // Now, since Qt may take the focus for the window as soon as it is mapped.
        if (!WindowManager::isRunning())
            notePrevious(inputFocus());
        else
            WindowPlace::keep(window()->winId());
        X11::expectFocusOn(window()->winId());
        if (window()->isExposed())
            take();
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Expose && m_wanted && window()->isExposed())
            take();
        if (event->type() == QEvent::Hide)
            giveBack();
        return QObject::eventFilter(watched, event);
    }

private:
    explicit ForegroundRequest(QWindow* window) : QObject(window)
    {
        window->installEventFilter(this);
    }

    QWindow* window() const { return static_cast<QWindow*>(parent()); }

    void take()
    {
        m_wanted = false;
        if (WindowManager::isRunning()) {
            askWindowManager(window()->winId());
            xcb_flush(X11::connection());
            return;
        }
        setInputFocus(ownId());
    }

    /// Whom to give the focus back to: not another window of this process, which goes when this one
    /// comes, but whoever that one had it from.
    void notePrevious(xcb_window_t previous)
    {
        if (previous == ownId())
            return;
        QWindow* sibling = X11::windowOf(previous);
        m_previous = sibling ? requestOf(sibling)->m_previous : previous;
    }

    xcb_window_t ownId() const { return static_cast<xcb_window_t>(window()->winId()); }

    void giveBack()
    {
        m_wanted = false;
        const xcb_window_t previous = m_previous;
        m_previous = XCB_WINDOW_NONE;
        if (previous <= XCB_INPUT_FOCUS_POINTER_ROOT)
            return;
        // Whoever has taken the focus meanwhile keeps it.
        const xcb_window_t current = inputFocus();
        const bool isOurs = current <= XCB_INPUT_FOCUS_POINTER_ROOT || current == ownId();
        if (isOurs)
            setInputFocus(previous);
    }

    bool m_wanted = false;
    xcb_window_t m_previous = XCB_WINDOW_NONE;
};

} // namespace

void Platform::bringToForeground(WId windowId)
{
    if (!X11::connection())
        return;
    QWindow* window = X11::windowOf(windowId);
    if (!window)
        return;
    ForegroundRequest::requestOf(window)->start();
}

void Platform::passForegroundOn()
{} // asking as a pager does needs nobody's leave
