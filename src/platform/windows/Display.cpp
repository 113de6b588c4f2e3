// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Display.h"

QString Platform::prepareDisplay(int argc, const char* const* argv)
{
    Q_UNUSED(argc);
    Q_UNUSED(argv);
    return {}; // there is one display, and every session has it
}

void Platform::forgoDisplay(int argc, const char* const* argv)
{
    Q_UNUSED(argc);
    Q_UNUSED(argv);
}

void Platform::watchDisplay()
{
    // The system tells a window's place truly.
}
