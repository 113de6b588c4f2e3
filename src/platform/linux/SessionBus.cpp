// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SessionBus.h"

#include <QByteArray>
#include <QByteArrayList>

#include <algorithm>

#include <sys/stat.h>
#include <unistd.h>

namespace
{

bool startsBus(const QByteArray& address)
{
    return address.startsWith("autolaunch:");
}

/// The user's bus, as the client library recognises it.
bool isBusSocket(const QByteArray& path)
{
    struct stat status = {};
    return ::lstat(path.constData(), &status) == 0 && S_ISSOCK(status.st_mode) &&
           status.st_uid == ::getuid();
}

} // namespace

bool hasSessionBus()
{
    const QByteArray addresses = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    if (!addresses.isEmpty()) {
        // They are tried one after the other, so any of them may be the one that is used.
        const QByteArrayList all = addresses.split(';');
        return std::none_of(all.cbegin(), all.cend(), startsBus);
    }
    const QByteArray runtimeDir = qgetenv("XDG_RUNTIME_DIR");
    return !runtimeDir.isEmpty() && isBusSocket(runtimeDir + "/bus");
}
