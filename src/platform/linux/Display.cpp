// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Display.h"

#include "FocusNews.h"
#include "KeyRepeats.h"
#include "WindowPlace.h"
#include "X11.h"

#include <QByteArray>

#include <cstring>
#include <optional>

#include <xcb/xcb.h>

namespace
{

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

/// Whether nobody but a desktop has said which platform to take. Desktops on Wayland set the
/// variable for every program, so that value is nobody's choice for this one.
bool isPlatformOpen(int argc, const char* const* argv)
{
    const QByteArray wanted = qgetenv(kPlatformVariable);
    const bool isUsual = wanted.isEmpty() || wanted.startsWith("xcb") || wanted.contains("wayland");
    return isUsual && !isPlatformGivenAsArgument(argc, argv);
}

bool canConnectToX()
{
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const bool connected = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return connected;
}

} // namespace

QString Platform::prepareDisplay(int argc, const char* const* argv)
{
    if (!isPlatformOpen(argc, argv))
        return {};
    if (canConnectToX()) {
        s_originalPlatform = qgetenv(kPlatformVariable);
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

void Platform::forgoDisplay(int argc, const char* const* argv)
{
    if (isPlatformOpen(argc, argv))
        qputenv(kPlatformVariable, "offscreen");
}

void Platform::watchDisplay()
{
    restoreEnvironment();
    if (!X11::connection())
        return;
    WindowPlace::watch();
    FocusNews::watch();
    KeyRepeats::watch();
}
