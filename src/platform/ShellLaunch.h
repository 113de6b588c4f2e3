// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace Platform
{

/// Hands an item to the desktop's shell, detached.
/// \param value what the shell knows the item by: on Windows a parsing name, on Linux the id or the
/// path of a desktop entry.
/// \returns false if there is no such item (where that can be told), or the launch could not be
/// started. True says nothing about what becomes of the launched program.
bool launchShellItem(const QString& value);

} // namespace Platform
