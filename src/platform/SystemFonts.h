// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

namespace Platform
{

/// Begins to read what the system says of its fonts, beside the calling thread, which has other
/// things to do until it needs the first one. Call once, before the application object exists.
void beginReadingFonts();

/// Waits until that has been read; at once if it was never begun. Without it, whoever needs a font
/// meanwhile reads everything a second time. Main thread.
void endReadingFonts();

} // namespace Platform
