// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

/// Which news of the keyboard's focus reach Qt. GUI thread only.
namespace FocusNews
{

/// From now on Qt hears of no focus that is lost to a grab, which leaves the focus where it is.
/// Call it once, with an application on X11.
void watch();

} // namespace FocusNews
