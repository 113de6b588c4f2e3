// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

namespace Platform
{

/// How many directories this program may watch: half of what the system lets the user have, since
/// his other programs live on the same. Read anew at each call.
size_t watchLimit();

} // namespace Platform
