// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// Adds a font that is compiled into the program, without a copy of it in memory. Returns the
/// application font id of `QFontDatabase`, or -1 if there is no such resource or it is no font.
/// GUI thread, once the application object exists.
int addFontResource(const QString& path);

/// Adds the font that all texts are set in. That it can't be had is logged; the texts are then set
/// in a font of the system's. GUI thread, once the application object exists.
void loadTextFont();
