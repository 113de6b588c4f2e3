// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "X11.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QHash>
#include <QPointer>
#include <QTimer>
#include <QWindow>

namespace
{

// A window manager may refuse the focus; the keyboard must not stay frozen over that.
constexpr int kLongestHoldMs = 400;

xcb_timestamp_t s_userTime = XCB_CURRENT_TIME;

/// Lets the withheld keys go at the right moment. Lives as long as the application object.
class KeyRelease : public QObject
{
public:
    static KeyRelease* instance()
    {
        static QPointer<KeyRelease> s_instance;
        if (!s_instance)
            s_instance = new KeyRelease(qApp);
        return s_instance;
    }

    void hold()
    {
        m_holding = true;
        m_awaited = 0;
        m_limit.start(kLongestHoldMs);
        // One turn later the slots of the hotkey have run and have asked for a window, or not.
        QTimer::singleShot(0, this, [this] {
            if (!m_awaited)
                release();
        });
    }

    void expectFocusOn(WId window)
    {
        if (m_holding)
            m_awaited = window;
    }

    void noteFocusOn(WId window)
    {
        if (m_awaited && window == m_awaited)
            release();
    }

private:
    explicit KeyRelease(QObject* parent) : QObject(parent)
    {
        m_limit.setSingleShot(true);
        connect(&m_limit, &QTimer::timeout, this, &KeyRelease::release);
    }

    void release()
    {
        if (!m_holding)
            return;
        m_holding = false;
        m_awaited = 0;
        m_limit.stop();
        xcb_allow_events(X11::connection(), XCB_ALLOW_ASYNC_KEYBOARD, XCB_CURRENT_TIME);
        xcb_flush(X11::connection());
    }

    QTimer m_limit;
    bool m_holding = false;
    WId m_awaited = 0;
};

const xcb_screen_t* defaultScreen()
{
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(X11::connection()));
    for (int i = 0; i < X11::screenNumber() && screens.rem > 1; ++i)
        xcb_screen_next(&screens);
    return screens.data;
}

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
    return defaultScreen()->root;
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

void X11::holdKeysForHotkey(xcb_timestamp_t time)
{
    s_userTime = time;
    KeyRelease::instance()->hold();
}

void X11::expectFocusOn(WId window)
{
    KeyRelease::instance()->expectFocusOn(window);
}

void X11::noteFocusOn(WId window)
{
    KeyRelease::instance()->noteFocusOn(window);
}
