// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Console.h"

#include <windows.h>

void Platform::detachFromConsole()
{
    FreeConsole();
}
