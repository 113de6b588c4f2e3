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

} // namespace Platform
