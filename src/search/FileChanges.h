// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "TreeWatcher.h"

#include <QVector>

class FileStore;

/// Brings a list of files up to date with what was told of the tree it was read from. The thread of
/// the list.
namespace FileChanges
{

/// Whether something came to that name.
bool isArrival(const Platform::TreeChange& change);

/// Whether something may have gone from that name.
bool isDeparture(const Platform::TreeChange& change);

struct Outcome
{
    bool hasChanged = false;   ///< entries were added or removed
    bool needsReading = false; ///< a folder is concerned, which has to be read
};

/// Applies a few changes in their order, up to the first one that needs more. What a change tells
/// is looked up on the disk.
Outcome apply(FileStore& store, const QVector<Platform::TreeChange>& changes);

} // namespace FileChanges
