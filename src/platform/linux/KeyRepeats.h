// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

/// Marks the repeats of held keys that Qt takes for new presses. GUI thread only.
namespace KeyRepeats
{

/// From now on every repeat says so (`QKeyEvent::isAutoRepeat`), for as long as the application
/// object lives. Call it once, with an application on X11.
void watch();

} // namespace KeyRepeats
