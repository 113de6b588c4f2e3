// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

namespace Platform
{

/// True if translucent windows are blended with what lies below them; where they are not, their
/// transparent margins would show as black. Asks the display server: GUI thread, once per show.
bool isCompositing();

} // namespace Platform
