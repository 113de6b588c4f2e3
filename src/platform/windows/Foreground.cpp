// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Foreground.h"

#include <windows.h>

void Platform::bringToForeground(WId windowId)
{
    SetForegroundWindow(reinterpret_cast<HWND>(windowId));
}

void Platform::passForegroundOn()
{
    AllowSetForegroundWindow(ASFW_ANY); // refused to a process that hasn't the right itself
}
