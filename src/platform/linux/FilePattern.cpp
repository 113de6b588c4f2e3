// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FilePattern.h"

QLatin1String Platform::anyFilePattern()
{
    // Most programs have no dot in their names here, and "*.*" would hide them.
    return QLatin1String("*");
}
