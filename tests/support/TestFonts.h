// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FontResource.h"

#include <QString>

#include <algorithm>
#include <array>

/// The fonts that the program is drawn in.
namespace TestFonts
{

/// Adds the weights of the text font that stand in files of their own; the platform of the tests
/// can't take them from the variable one. \returns whether all of them could be added.
inline bool addWeights()
{
    static constexpr std::array kWeights{"Medium", "SemiBold", "Bold"};
    return std::all_of(kWeights.begin(), kWeights.end(), [](const char* weight) {
        return addFontResource(
                   QStringLiteral(":/fonts/PlusJakartaSans-%1.ttf").arg(QLatin1String(weight))) !=
               -1;
    });
}

} // namespace TestFonts
