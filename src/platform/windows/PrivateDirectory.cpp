// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "PrivateDirectory.h"

#include <QDir>

void Platform::makePrivateDirectory(const QString& path)
{
    // What lies in the user's profile takes over its rights: no other user has any.
    QDir().mkpath(path);
}
