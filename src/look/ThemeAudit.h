// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QLatin1String>
#include <QString>

#include <array>

/// What the audits of `Theme` are made of.
namespace ThemeAudit
{

/// A text and the two backgrounds it has to be read on, as colours in hexadecimal.
struct TextPair
{
    QLatin1String label;
    QString a;
    QString b;
    QString text;
};

/// The line of the contrast report: the ratios on the worse background, and what is to be said of
/// that. Backgrounds that are equal are named once.
QString pairLine(const TextPair& pair);

/// How well one kind of text reads: the lower of its WCAG ratios on its two backgrounds.
struct Legibility
{
    double now = 0.0;    ///< in the present palette
    double before = 0.0; ///< in the palette of plain HSL that it took the place of
};

inline constexpr int SweepRows = 5;
/// The rows in the order of the report.
inline constexpr std::array<const char*, SweepRows> kNames{"onKey", "choiceFocus", "cardHover",
                                                           "onPrimary", "onPrimCont"};

/// What one row of the sweep comes to in a round of all hues.
class RowTally
{
public:
    /// \param hue of the seed, in degrees.
    void add(int hue, const Legibility& ratio);

    /// How many hues gave a ratio below `Theme::ContrastText`.
    int below() const { return m_below; }
    /// How many of those were better before.
    int regressions() const { return m_regressions; }
    /// The line of the report.
    QString line(const char* name) const;

private:
    int m_below = 0;
    int m_firstBelow = 0;
    int m_lastBelow = 0;
    double m_worst = 0.0;
    int m_worstHue = -1;
    int m_regressions = 0;
    double m_largestLoss = 0.0;
    int m_largestLossHue = 0;
};

/// The rows for the present seed and mode. GUI thread.
std::array<Legibility, SweepRows> sweepRows();

} // namespace ThemeAudit
