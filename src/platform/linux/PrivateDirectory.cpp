// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "PrivateDirectory.h"

#include <QDir>
#include <QFile>

#include <cerrno>

#include <sys/stat.h>

namespace
{

constexpr mode_t kPrivate = S_IRWXU;

} // namespace

void Platform::makePrivateDirectory(const QString& path)
{
    const QByteArray name = QFile::encodeName(QDir::cleanPath(path));
    struct stat status = {};
    if (::stat(name.constData(), &status) == 0) {
        if (S_ISDIR(status.st_mode) && (status.st_mode & (S_IRWXG | S_IRWXO)) != 0)
            ::chmod(name.constData(), status.st_mode & S_IRWXU);
        return;
    }
    // With its rights from the beginning: set afterwards, they would come too late for whoever has
    // opened it meanwhile.
    if (::mkdir(name.constData(), kPrivate) == 0 || errno != ENOENT)
        return;
    for (qsizetype slash = name.indexOf('/', 1); slash > 0; slash = name.indexOf('/', slash + 1))
        ::mkdir(name.left(slash).constData(), kPrivate);
    ::mkdir(name.constData(), kPrivate);
}
