// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// A disk that hangs once, for a program that this library is loaded into ahead of the system's: as
// soon as the file ORLIMO_STUCK_DISK exists, the next call of the function ORLIMO_STUCK_CALL by the
// program's first thread takes ORLIMO_STUCK_MS milliseconds more. For that time the file is called
// "<name>.stuck"; after it, it is gone.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

void hangOnce(const char* call)
{
    const char* wanted = std::getenv("ORLIMO_STUCK_CALL");
    const char* gate = std::getenv("ORLIMO_STUCK_DISK");
    const char* milliseconds = std::getenv("ORLIMO_STUCK_MS");
    if (!wanted || !gate || !milliseconds || std::strcmp(wanted, call) != 0 ||
        ::getpid() != ::gettid())
        return;
    const std::string stuck = std::string(gate) + ".stuck";
    if (std::rename(gate, stuck.c_str()) != 0)
        return;
    const long duration = std::atol(milliseconds);
    const timespec wait{duration / 1000, (duration % 1000) * 1000000};
    ::nanosleep(&wait, nullptr);
    ::unlink(stuck.c_str());
}

} // namespace

extern "C" __attribute__((visibility("default"))) int fdatasync(int file)
{
    hangOnce("fdatasync");
    return static_cast<int>(::syscall(SYS_fdatasync, file));
}

extern "C" __attribute__((visibility("default"))) int
statx(int directory, const char* path, int flags, unsigned int mask, struct statx* buffer) noexcept
{
    hangOnce("statx");
    return static_cast<int>(::syscall(SYS_statx, directory, path, flags, mask, buffer));
}
