// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGui/qwindowdefs.h>

/// Where the windows of this process stand, in the face of window managers. GUI thread only.
namespace WindowPlace
{

inline constexpr int SettleMs = 500; ///< a window manager has placed a new window by then
inline constexpr int MaxRequests = 2;

/// From now on Qt learns the true places of windows. Call it once, with an application on X11.
void watch();

/// Keeps a window that has just been shown where it is now: if the window manager puts it elsewhere
/// within `SettleMs`, it is asked for the place again, `MaxRequests` times at the most. A manager
/// that insists has its way.
void keep(WId window);

} // namespace WindowPlace
