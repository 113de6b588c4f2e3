// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SystemFonts.h"

void Platform::beginReadingFonts()
{
    // The system keeps its list of fonts ready for everybody.
}

void Platform::endReadingFonts()
{}
