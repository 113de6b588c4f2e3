// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace Platform
{

/// Adds a watch for an open directory, wherever it is. A directory that is watched already keeps
/// its watch, and reports what is in `mask` besides.
/// \returns the watch; negative with `errno` set if there is none left or it isn't allowed.
int watchDirectory(int inotify, int directory, uint32_t mask);

} // namespace Platform
