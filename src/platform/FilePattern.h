// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QLatin1String>

namespace Platform
{

/// The pattern that a file chooser shows every file for.
QLatin1String anyFilePattern();

} // namespace Platform
