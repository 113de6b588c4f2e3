// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "WindowPlace.h"

#include "X11.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QPointer>
#include <QScreen>
#include <QSet>
#include <QTimer>
#include <QWindow>

#include <xcb/xcb.h>

namespace
{

using WindowPlace::MaxRequests;
using WindowPlace::SettleMs;

constexpr uint8_t kSentByClient = 0x80;

/// Makes the server's reports on windows carry the true place. Qt doesn't trust the place in a
/// report of the server's own and asks where the window is instead; while a window manager puts a
/// new window into its frame that answer is the frame's passing place, and Qt then believes in it
/// for good: the next resize would throw the window there, and menus would open elsewhere. Qt does
/// trust what a window manager sends, so the server's reports are made to look like that.
class PlaceFilter : public QAbstractNativeEventFilter
{
public:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override
    {
        Q_UNUSED(result);
        if (eventType != "xcb_generic_event_t")
            return false;
        switch (static_cast<const xcb_generic_event_t*>(message)->response_type) {
        case XCB_CONFIGURE_NOTIFY | kSentByClient:
            checkPlace(*static_cast<const xcb_configure_notify_event_t*>(message));
            return false;
        case XCB_REPARENT_NOTIFY:
            noteParent(*static_cast<const xcb_reparent_notify_event_t*>(message));
            return false;
        case XCB_DESTROY_NOTIFY:
            m_framed.remove(static_cast<const xcb_destroy_notify_event_t*>(message)->window);
            return false;
        case XCB_CONFIGURE_NOTIFY:
            setTruePlace(*static_cast<xcb_configure_notify_event_t*>(message));
            return false;
        default:
            return false;
        }
    }

    void keep(QWindow* window)
    {
        m_kept = window;
        m_requestsLeft = MaxRequests;
        m_isAsking = false;
        m_settled.setRemainingTime(SettleMs);
    }

private:
    void checkPlace(const xcb_configure_notify_event_t& event)
    {
        if (!m_kept || m_isAsking || m_requestsLeft == 0 || m_settled.hasExpired())
            return;
        if (!m_kept->handle() || m_kept->winId() != event.window)
            return;
        // Until Qt handles this event, that is the place which the window was last given by us.
        const QPoint place = m_kept->position();
        if (nativePlaceOf(*m_kept) == QPoint(event.x, event.y))
            return;
        m_isAsking = true;
        --m_requestsLeft;
        QTimer::singleShot(0, m_kept, [this, window = m_kept.data(), place] {
            if (window != m_kept) // the other window has been shown in the meantime
                return;
            m_isAsking = false;
            window->setPosition(place);
        });
    }

    /// Scaled coordinates count from the screen's corner, which is the same in both.
    static QPoint nativePlaceOf(const QWindow& window)
    {
        const QPoint corner = window.screen()->geometry().topLeft();
        return corner + (window.position() - corner) * window.devicePixelRatio();
    }

    void noteParent(const xcb_reparent_notify_event_t& event)
    {
        if (event.parent == X11::rootWindow())
            m_framed.remove(event.window);
        else
            m_framed.insert(event.window);
    }

    void setTruePlace(xcb_configure_notify_event_t& event) const
    {
        if (m_framed.contains(event.window)) {
            // Told relative to the frame. A window manager that moves the frame says so itself.
            const QWindow* window = X11::windowOf(event.window);
            if (!window)
                return;
            const QPoint place = nativePlaceOf(*window);
            event.x = static_cast<int16_t>(place.x());
            event.y = static_cast<int16_t>(place.y());
        }
        event.response_type |= kSentByClient;
    }

    QSet<xcb_window_t> m_framed;
    QPointer<QWindow> m_kept;
    int m_requestsLeft = 0;
    bool m_isAsking = false;
    QDeadlineTimer m_settled;
};

PlaceFilter& filter()
{
    static PlaceFilter s_filter;
    return s_filter;
}

} // namespace

void WindowPlace::watch()
{
    QCoreApplication::instance()->installNativeEventFilter(&filter());
}

void WindowPlace::keep(WId window)
{
    if (QWindow* found = X11::windowOf(window))
        filter().keep(found);
}
