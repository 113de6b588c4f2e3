// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace Platform
{

/// Makes a directory, and those above it that are missing, which nobody but the user can look into.
/// One that is there already is closed to everybody else; those above it are left as they are.
/// Whether that worked isn't told. Any thread.
void makePrivateDirectory(const QString& path);

} // namespace Platform
