// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>
#include <QString>

namespace Platform
{

/// The icon of a shortcut: the one that it names, else that of its target; null if it has neither
/// or the shortcut can't be read. GUI thread. \param lnkPath path of the `.lnk` file.
QIcon shortcutIcon(const QString& lnkPath);

/// An icon out of a program, library or icon file; null if it isn't there. GUI thread.
/// \param path may hold `%VARIABLE%`.
/// \param index counted from 0, or the negative of a resource number.
QIcon extractIcon(const QString& path, int index);

/// Puts the values of `%VARIABLE%` in; as it is where the result is longer than 519 characters. A
/// variable that isn't set stays as written.
QString expandEnv(const QString& s);

} // namespace Platform
