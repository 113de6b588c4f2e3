// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FilePattern.h"

QLatin1String Platform::anyFilePattern()
{
    // Names without a dot match it as well, and everybody knows it.
    return QLatin1String("*.*");
}
