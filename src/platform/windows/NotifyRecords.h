// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "TreeWatcher.h"

#include <QVector>

#include <cstddef>

namespace Platform
{

/// The changes in a buffer that `ReadDirectoryChangesW` filled, those without a name left out.
/// A record that doesn't fit into the buffer ends the list.
/// \param bytes how much of the buffer is filled.
QVector<TreeChange> changesIn(const unsigned char* buffer, std::size_t bytes);

} // namespace Platform
