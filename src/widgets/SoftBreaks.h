// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// `text` with places to break in stretches of more than `longest` characters that no line could
/// hold, such as a long file name. A label wraps at natural places alone, so it would push its
/// window over the edge of the screen. Pure: any thread.
QString withSoftBreaks(const QString& text, int longest);
