// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Inotify.h"

#include <array>
#include <cstdio>

#include <sys/inotify.h>

int Platform::watchDirectory(int inotify, int directory, uint32_t mask)
{
    // A path could be too long, or lead to another directory by now.
    std::array<char, 32> path{};
    std::snprintf(path.data(), path.size(), "/proc/self/fd/%d", directory);
    return ::inotify_add_watch(inotify, path.data(), mask | IN_MASK_ADD | IN_ONLYDIR);
}
