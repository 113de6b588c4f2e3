// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "DirectoryReader.h"

#include <optional>

#include <windows.h>

namespace Platform
{

/// What a walk sees of a find: nothing of the directory itself and its parent, nor of links to
/// directories, below which it might go round in circles.
std::optional<DirectoryItem> itemOf(const WIN32_FIND_DATAW& found);

} // namespace Platform
