// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace Platform
{

/// Full path of the system's own explorer, so that no program of that name in the current directory
/// or on the search path can take its place. Empty if the system doesn't tell.
QString explorerPath();

/// Starts `program`, a full path, with an item of the shell as its one argument, detached.
/// \returns false if it could not be started.
bool startWithItem(const QString& program, const QString& item);

} // namespace Platform
