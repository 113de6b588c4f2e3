// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Compositor.h"

#include "X11.h"

#include <QByteArray>

#include <memory>

#include <xcb/xcb.h>

bool Platform::isCompositing()
{
    xcb_connection_t* connection = X11::connection();
    if (!connection)
        return true; // not an X display: nothing is ever drawn over black
    const QByteArray selection = "_NET_WM_CM_S" + QByteArray::number(X11::screenNumber());
    const auto cookie = xcb_get_selection_owner(connection, X11::atom(selection.constData()));
    const X11::Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(connection, cookie, nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}
