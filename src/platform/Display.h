// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace Platform
{

/// Sees to it that the application object finds a display it can work on: placing windows and
/// system-wide hotkeys need X11 on Linux, so that is what Qt is asked for on a Wayland session too.
/// Call before the application object exists. Returns an empty string, or one line that tells the
/// user why there is no way to go on. A platform that was chosen on purpose (such as "offscreen")
/// is left alone.
QString prepareDisplay(int argc, const char* const* argv);

/// Instead of `prepareDisplay`, for a process that makes the application object but shows nothing:
/// no display is needed then. A platform that was chosen on purpose is left alone.
void forgoDisplay(int argc, const char* const* argv);

/// Takes back what `prepareDisplay` changed in the environment, and keeps false news away from Qt,
/// of where windows stand, of whether a press is a repeat and of who has the focus, for as long as
/// the application object lives. Call once, right after it is made.
void watchDisplay();

} // namespace Platform
