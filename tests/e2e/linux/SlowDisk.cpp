// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// A disk that takes its time, for a program that this library is loaded into ahead of the system's:
// to read on in a directory below the home takes ORLIMO_SLOW_DISK_MS milliseconds as long as the
// file ORLIMO_SLOW_DISK exists.

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string_view>

#include <dirent.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

bool isBelowHome(int directory)
{
    char link[64];
    char target[PATH_MAX];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", directory);
    const ssize_t size = ::readlink(link, target, sizeof target);
    const char* home = std::getenv("HOME");
    return size > 0 && home &&
           std::string_view(target, static_cast<size_t>(size)).starts_with(home);
}

void takeTime()
{
    const char* milliseconds = std::getenv("ORLIMO_SLOW_DISK_MS");
    const long duration = milliseconds ? std::atol(milliseconds) : 0;
    const timespec wait{duration / 1000, (duration % 1000) * 1000000};
    ::nanosleep(&wait, nullptr);
}

} // namespace

extern "C" __attribute__((visibility("default"))) ssize_t getdents64(int directory, void* buffer,
                                                                     size_t size) noexcept
{
    const char* gate = std::getenv("ORLIMO_SLOW_DISK");
    if (gate && ::access(gate, F_OK) == 0 && isBelowHome(directory))
        takeTime();
    return ::syscall(SYS_getdents64, directory, buffer, size);
}
