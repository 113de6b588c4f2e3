// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "InstanceLock.h"

#include "RuntimeDirectory.h"

#include <QDir>
#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

bool Platform::acquireInstanceLock(const QString& name)
{
    const QString directory = runtimeDirectory();
    if (directory.isEmpty())
        return false;
    // Closed on exec, or every program that is launched would keep the lock alive after us.
    const int descriptor = ::open(QFile::encodeName(QDir(directory).filePath(name)).constData(),
                                  O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return false;
    int result = 0;
    do {
        result = ::flock(descriptor, LOCK_EX | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    if (result != 0)
        ::close(descriptor);
    // Otherwise left open on purpose: the lock ends with the process.
    return result == 0;
}
