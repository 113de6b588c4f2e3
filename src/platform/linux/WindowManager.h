// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

/// Whether a window manager runs on Qt's display. GUI thread only.
namespace WindowManager
{

/// True while one runs that says so, as all that answer requests do. Follows its coming and going
/// by the server's events, so that only the first question after a change asks the server and
/// waits. Needs an X11 connection.
bool isRunning();

} // namespace WindowManager
