// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "IconHelper.h"

#include <cstdint>
#include <cstdlib>

/// Any icon string gives a glyph, and a token that names one comes out of it again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const uint code = IconHelper::glyphCode(text);
    if (code != 0 && IconHelper::glyphCode(IconHelper::glyphToken(code)) != code)
        std::abort();
    if (code != 0 && !IconHelper::isGlyphToken(text))
        std::abort();
    if (IconHelper::glyphForItem(text, QStringLiteral("File")).isEmpty())
        std::abort();
    return 0;
}
