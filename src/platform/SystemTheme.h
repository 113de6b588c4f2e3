// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

namespace Platform
{

/// True if the desktop asks for a dark palette; false also where it says nothing or can't be asked.
/// GUI thread. The first call may take a tenth of a second, so make it at start-up; later ones may
/// read the registry, so callers cache the answer.
///
/// Its object file defines nothing else: a program that brings a definition of its own (a test
/// with a fake desktop) replaces this one, since the linker then has no reason to take it from
/// the library.
bool prefersDark();

} // namespace Platform
