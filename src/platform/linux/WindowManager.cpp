// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "WindowManager.h"

#include "X11.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>

#include <cstring>
#include <optional>

#include <xcb/xcb.h>

namespace
{

constexpr uint8_t kEventTypeMask = 0x7f;

/// Adds events to those that this connection, which is Qt's, has chosen for a window. False if the
/// window is gone.
bool selectEvents(xcb_window_t window, uint32_t mask)
{
    xcb_connection_t* connection = X11::connection();
    const X11::Reply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        connection, xcb_get_window_attributes(connection, window), nullptr));
    if (!attributes)
        return false;
    const uint32_t events = attributes->your_event_mask | mask;
    const X11::Reply<xcb_generic_error_t> error(xcb_request_check(
        connection,
        xcb_change_window_attributes_checked(connection, window, XCB_CW_EVENT_MASK, &events)));
    return !error;
}

class Watch : public QAbstractNativeEventFilter
{
public:
    Watch()
    {
        selectEvents(X11::rootWindow(), XCB_EVENT_MASK_PROPERTY_CHANGE);
        QCoreApplication::instance()->installNativeEventFilter(this);
    }

    bool isRunning()
    {
        if (!m_isRunning)
            m_isRunning = ask();
        return *m_isRunning;
    }

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override
    {
        Q_UNUSED(result);
        if (eventType == "xcb_generic_event_t")
            note(*static_cast<const xcb_generic_event_t*>(message));
        return false;
    }

private:
    void note(const xcb_generic_event_t& event)
    {
        switch (event.response_type & kEventTypeMask) {
        case XCB_PROPERTY_NOTIFY: {
            const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
            if (change.window == X11::rootWindow() && change.atom == m_checkAtom)
                m_isRunning.reset();
            break;
        }
        case XCB_DESTROY_NOTIFY:
            if (reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == m_checkWindow)
                m_isRunning.reset();
            break;
        default:
            break;
        }
    }

    bool ask()
    {
        const auto cookie = xcb_get_property(X11::connection(), 0, X11::rootWindow(), m_checkAtom,
                                             XCB_ATOM_WINDOW, 0, 1);
        const X11::Reply<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(X11::connection(), cookie, nullptr));
        if (!reply || xcb_get_property_value_length(reply.get()) != int(sizeof(m_checkWindow)))
            return false;
        std::memcpy(&m_checkWindow, xcb_get_property_value(reply.get()), sizeof(m_checkWindow));
        // A manager that died leaves the property behind, naming a window that is gone.
        return selectEvents(m_checkWindow, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    }

    const xcb_atom_t m_checkAtom = X11::atom("_NET_SUPPORTING_WM_CHECK");
    xcb_window_t m_checkWindow = XCB_WINDOW_NONE;
    std::optional<bool> m_isRunning; ///< empty: unknown
};

} // namespace

bool WindowManager::isRunning()
{
    static Watch s_watch;
    return s_watch.isRunning();
}
