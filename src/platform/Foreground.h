// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGui/qwindowdefs.h>

namespace Platform
{

/// Brings a top-level window of this process to the foreground and gives it the keyboard, also
/// when another program has it now. Asynchronous: a window that is just being shown gets it as
/// soon as it is on the screen. GUI thread.
void bringToForeground(WId windowId);

/// Lets another process, whichever asks next, bring a window of its own to the foreground. For a
/// process that the user has just started and that leaves the rest to one that runs already: some
/// systems grant the foreground to the first of the two alone. Needs no application object; any
/// thread.
void passForegroundOn();

} // namespace Platform
