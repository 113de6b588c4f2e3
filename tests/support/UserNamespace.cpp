// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "UserNamespace.h"

#include <QProcess>

#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

namespace
{

constexpr int kPatienceMs = 30000;

bool writeAll(const char* path, const char* text, size_t size)
{
    const int file = ::open(path, O_WRONLY);
    const bool isWritten = file >= 0 && ::write(file, text, size) == static_cast<ssize_t>(size);
    ::close(file);
    return isWritten;
}

} // namespace

FreshProcess::Outcome UserNamespace::run(const QString& task, const QStringList& arguments,
                                         int further)
{
    // Made here: between fork and exec nothing may be allocated.
    char users[64] = {};
    char groups[64] = {};
    std::snprintf(users, sizeof users, "0 %u 1", ::geteuid());
    std::snprintf(groups, sizeof groups, "0 %u 1", ::getegid());
    QProcess process;
    process.setChildProcessModifier([=] {
        if (::unshare(CLONE_NEWUSER | further) != 0 ||
            !writeAll("/proc/self/setgroups", "deny", 4) ||
            !writeAll("/proc/self/uid_map", users, qstrlen(users)) ||
            !writeAll("/proc/self/gid_map", groups, qstrlen(groups)))
            ::_exit(EXIT_FAILURE);
    });
    FreshProcess::start(process, task, arguments);
    FreshProcess::Outcome outcome;
    outcome.hasExited =
        process.waitForFinished(kPatienceMs) && process.exitStatus() == QProcess::NormalExit;
    outcome.exitCode = process.exitCode();
    outcome.output = process.readAllStandardOutput();
    return outcome;
}

bool UserNamespace::write(const char* path, const QByteArray& text)
{
    return writeAll(path, text.constData(), static_cast<size_t>(text.size()));
}
