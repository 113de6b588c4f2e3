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

/// Whether what happens in a folder is told wherever that has come from. Wine knows the folders
/// that it found and those that are made one at a time, but not where they go from there.
bool isWatchedWherever();

/// Exchanges two files or folders in one step. \returns false if that isn't possible.
bool exchange(const QString& path, const QString& other);

} // namespace ChurnTools
