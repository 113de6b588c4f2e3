// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CaseFold.h"

namespace
{

char16_t asciiLower(char16_t unit)
{
    return unit >= u'A' && unit <= u'Z' ? char16_t(unit + (u'a' - u'A')) : unit;
}

} // namespace

// Character by character, as comparisons without regard to case do it: QString's own folding makes
// two characters of some.
CaseFold::Units CaseFold::unitsOf(QStringView text)
{
    Units units(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar unit = text[i];
        const bool isPair =
            unit.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (!isPair) {
            units[i] =
                unit.unicode() < 0x80 ? QChar(asciiLower(unit.unicode())) : unit.toCaseFolded();
            continue;
        }
        const char32_t character = QChar::toCaseFolded(QChar::surrogateToUcs4(unit, text[i + 1]));
        units[i] = QChar(QChar::highSurrogate(character));
        units[++i] = QChar(QChar::lowSurrogate(character));
    }
    return units;
}

QString CaseFold::keyOf(QStringView text)
{
    const Units units = unitsOf(text);
    return QString(units.constData(), units.size());
}
