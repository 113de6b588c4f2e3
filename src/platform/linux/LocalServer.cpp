// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "LocalServer.h"

#include "RuntimeDirectory.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <sys/un.h>

namespace
{

/// Whether the path fits into the address of a socket, as Qt counts: with a byte at both ends.
bool fitsAnAddress(const QString& path)
{
    return QFile::encodeName(path).size() + 2 <= qsizetype(sizeof(sockaddr_un::sun_path));
}

/// The same place by way of a descriptor of its directory, which the kernel follows; as long as
/// this process lives, since the descriptor stays open.
QString shortened(const QString& directory, const QString& name)
{
    const int descriptor =
        ::open(QFile::encodeName(directory).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    return QStringLiteral("/proc/self/fd/%1/%2").arg(QString::number(descriptor), name);
}

} // namespace

QStringList Platform::localServerPlaces(const QString& name)
{
    // Beside the lock, so that whoever finds that taken finds the server of its holder.
    const QString directory = runtimeDirectory();
    if (directory.isEmpty())
        return {};
    const QString path = QDir(directory).filePath(name);
    return {fitsAnAddress(path) ? path : shortened(directory, name)};
}

bool Platform::isHeldByAnotherUser(const QString& place)
{
    Q_UNUSED(place);
    return false; // nobody else can enter the directory
}
