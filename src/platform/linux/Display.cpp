// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "platform/Display.h"

#include "platform/linux/X11.h"

#include <QAbstractNativeEventFilter>
#include <QGuiApplication>
#include <QScreen>
#include <QSet>
#include <QWindow>

#include <cstring>
#include <optional>

#include <xcb/xcb.h>

namespace
{

constexpr uint8_t kSentByClient = 0x80;
constexpr char kPlatformVariable[] = "QT_QPA_PLATFORM";

// What the environment held before it was changed for Qt; nothing if it wasn't changed.
std::optional<QByteArray> s_originalPlatform;

/// Programs that are launched get the environment as the user has it.
void restoreEnvironment()
{
    if (!s_originalPlatform)
        return;
    if (s_originalPlatform->isEmpty())
        qunsetenv(kPlatformVariable);
    else
        qputenv(kPlatformVariable, *s_originalPlatform);
    s_originalPlatform.reset();
}

bool isPlatformGivenAsArgument(int argc, const char* const* argv)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "-platform") == 0 || std::strcmp(argv[i], "--platform") == 0)
            return true;
    }
    return false;
}

bool canConnectToX()
{
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const bool connected = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return connected;
}

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
            return false; // among them what a window manager sends
        }
    }

private:
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
            // Scaled coordinates count from the screen's corner, which is the same in both.
            const QPoint corner = window->screen()->geometry().topLeft();
            const QPoint place =
                corner + (window->position() - corner) * window->devicePixelRatio();
            event.x = static_cast<int16_t>(place.x());
            event.y = static_cast<int16_t>(place.y());
        }
        event.response_type |= kSentByClient;
    }

    QSet<xcb_window_t> m_framed;
};

} // namespace

QString Platform::prepareDisplay(int argc, const char* const* argv)
{
    const QByteArray wanted = qgetenv(kPlatformVariable);
    // Desktops on Wayland set the variable for every program, so that value is nobody's choice for
    // this one.
    const bool isX11 = wanted.isEmpty() || wanted.startsWith("xcb") || wanted.contains("wayland");
    if (!isX11 || isPlatformGivenAsArgument(argc, argv))
        return {};
    if (canConnectToX()) {
        s_originalPlatform = wanted;
        qputenv(kPlatformVariable, "xcb");
        return {};
    }
    // Qt itself would abort here, which looks like a crash.
    const QByteArray display = qgetenv("DISPLAY");
    if (display.isEmpty())
        return QStringLiteral(
            "Orlimo needs an X11 display (or XWayland on Wayland), and DISPLAY is "
            "not set.");
    return QStringLiteral(
               "Orlimo needs an X11 display (or XWayland on Wayland), and \"%1\" can't be "
               "opened.")
        .arg(QString::fromLocal8Bit(display));
}

void Platform::watchDisplay()
{
    restoreEnvironment();
    if (!X11::connection())
        return;
    static PlaceFilter s_filter;
    QCoreApplication::instance()->installNativeEventFilter(&s_filter);
}
