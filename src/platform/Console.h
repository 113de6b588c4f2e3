// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

namespace Platform
{

/// Lets go of the console that the process was started from, where the system ties the two.
void detachFromConsole();

} // namespace Platform
