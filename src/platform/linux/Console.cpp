// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Console.h"

void Platform::detachFromConsole()
{
    // A process is bound to its terminal only as far as its parent shell wants it to be.
}
