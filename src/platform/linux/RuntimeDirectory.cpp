// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "RuntimeDirectory.h"

#include "PrivateDirectory.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr mode_t kOwnerOnly = 0700;
constexpr mode_t kOthers = 0077;

/// A link doesn't count: who made it could turn it elsewhere between two starts.
bool isOurs(const QByteArray& path, mode_t forbidden)
{
    struct stat status = {};
    return ::lstat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::geteuid() && (status.st_mode & forbidden) == 0;
}

QByteArray directoryOfEnvironment()
{
    const QByteArray path = qgetenv("XDG_RUNTIME_DIR");
    if (!path.startsWith('/'))
        return {}; // a relative one is nobody's promise
    ::mkdir(path.constData(), kOwnerOnly);
    return isOurs(path, kOthers) ? path : QByteArray();
}

/// A shell that was not made by a login (su, cron) lacks the variable, not the directory.
QByteArray directoryOfSession()
{
    const QByteArray path = "/run/user/" + QByteArray::number(::geteuid());
    return isOurs(path, kOthers) ? path : QByteArray();
}

QByteArray directoryAmongData()
{
    const QDir data(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    const QByteArray path = QFile::encodeName(data.filePath(QStringLiteral("run")));
    Platform::makePrivateDirectory(data.path()); // the lock may be the first to need it
    ::mkdir(path.constData(), kOwnerOnly);
    return isOurs(path, 0) && ::chmod(path.constData(), kOwnerOnly) == 0 ? path : QByteArray();
}

} // namespace

QString runtimeDirectory()
{
    for (const auto candidate : {directoryOfEnvironment, directoryOfSession, directoryAmongData}) {
        const QByteArray path = candidate();
        if (!path.isEmpty())
            return QFile::decodeName(path);
    }
    return {};
}
