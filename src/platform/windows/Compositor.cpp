// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Compositor.h"

bool Platform::isCompositing()
{
    return true; // the desktop window manager can't be turned off
}
