// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "X11.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QHash>
#include <QWindow>

namespace
{

xcb_timestamp_t s_userTime = XCB_CURRENT_TIME;
WId s_expectedFocus = 0;

} // namespace

xcb_connection_t* X11::connection()
{
    const auto* x11 = qApp ? qApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

int X11::screenNumber()
{
    static const int s_number = [] {
        char* host = nullptr;
        int display = 0;
        int screen = 0;
        const bool isParsed = xcb_parse_display(nullptr, &host, &display, &screen) != 0;
        const X11::Reply<char> freed(host);
        return isParsed ? screen : 0;
    }();
    return s_number;
}

xcb_window_t X11::rootWindow()
{
    return screenOf(connection(), screenNumber())->root;
}

const xcb_screen_t* X11::screenOf(xcb_connection_t* connection, int number)
{
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int i = 0; i < number && screens.rem > 1; ++i)
        xcb_screen_next(&screens);
    return screens.data;
}

xcb_atom_t X11::atom(const char* name)
{
    // The server never takes an atom back, so each is asked for once.
    static QHash<QByteArray, xcb_atom_t> s_atoms;
    const QByteArray key(name);
    const auto known = s_atoms.constFind(key);
    if (known != s_atoms.constEnd())
        return *known;
    const auto cookie = xcb_intern_atom(connection(), 0, static_cast<uint16_t>(key.size()), name);
    const Reply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection(), cookie, nullptr));
    if (!reply)
        return XCB_ATOM_NONE;
    s_atoms.insert(key, reply->atom);
    return reply->atom;
}

QWindow* X11::windowOf(WId id)
{
    for (QWindow* window : QGuiApplication::topLevelWindows()) {
        if (window->handle() && window->winId() == id)
            return window;
    }
    return nullptr;
}

xcb_timestamp_t X11::userTime()
{
    return s_userTime;
}

void X11::noteHotkey(xcb_timestamp_t time)
{
    s_userTime = time;
    s_expectedFocus = 0;
}

void X11::expectFocusOn(WId window)
{
    s_expectedFocus = window;
}

WId X11::expectedFocus()
{
    return s_expectedFocus;
}
