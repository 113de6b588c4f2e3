// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// What the churn of files does that not every system can.
namespace ChurnTools
{

/// Lets the system watch no more than so many directories, where it watches each by itself. Before
/// the watch begins.
void allowWatches(int count);

/// Exchanges two files or folders in one step. \returns false if that isn't possible.
bool exchange(const QString& path, const QString& other);

} // namespace ChurnTools
