// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ThemeAudit.h"

#include "Theme.h"

#include <QDebug>
#include <QSaveFile>
#include <QTextStream>
#include <QVector>

#include <algorithm>
#include <utility>

using ThemeAudit::TextPair;

namespace
{

struct Mode
{
    int forceTheme;
    QLatin1String word;
};

constexpr Mode kModes[] = {{1, QLatin1String("TERANG")}, {2, QLatin1String("GELAP")}};
constexpr Theme::Sample kSamples[] = {
    {"biru bawaan", "#0284c7"}, {"kuning", "#ffd400"}, {"kuning murni", "#ffff00"},
    {"hijau limau", "#7cfc00"}, {"sian", "#00ffff"},   {"hijau", "#22c55e"},
    {"merah", "#ef4444"},       {"ungu", "#8b5cf6"},
};
constexpr int kLabelWidth = 24; // of the names in the contrast report
constexpr int kHues = 360;
constexpr int kSweepSaturations[] = {255, 128};
constexpr int kSweepLightness = 128;
constexpr double kNegligible = 0.005; // a loss that two decimals don't show is none

/// Gives back the seed and the mode that an audit has changed. Neither is ever saved meanwhile.
class ThemeKeeper
{
public:
    ThemeKeeper() : m_forceTheme(Theme::forceTheme), m_seed(Theme::seedColorHex) {}
    ~ThemeKeeper()
    {
        Theme::forceTheme = m_forceTheme;
        Theme::seedColorHex = m_seed;
    }
    ThemeKeeper(const ThemeKeeper&) = delete;
    ThemeKeeper& operator=(const ThemeKeeper&) = delete;

private:
    int m_forceTheme;
    QString m_seed;
};

void report(const QString& line)
{
    qInfo().noquote() << line;
}

QString twoDecimals(double value)
{
    return QString::number(value, 'f', 2);
}

/// The worse of the ratios of a text on two backgrounds.
double worstRatio(const QColor& a, const QColor& b, const QColor& text)
{
    return std::min(Theme::contrastRatio(a, text), Theme::contrastRatio(b, text));
}

using NamedColor = std::pair<QLatin1String, QString>;

QVector<NamedColor> tokenRows(const ColorTokens& t)
{
    return {
        {QLatin1String("primary"), t.primary},
        {QLatin1String("onPrimary"), t.onPrimary},
        {QLatin1String("primaryContainer"), t.primaryContainer},
        {QLatin1String("onPrimaryContainer"), t.onPrimaryContainer},
        {QLatin1String("surface"), t.surface},
        {QLatin1String("surfaceContainer"), t.surfaceContainer},
        {QLatin1String("surfaceContainerLowest"), t.surfaceContainerLowest},
        {QLatin1String("surfaceContainerLow"), t.surfaceContainerLow},
        {QLatin1String("surfaceContainerHigh"), t.surfaceContainerHigh},
        {QLatin1String("surfaceContainerHighest"), t.surfaceContainerHighest},
        {QLatin1String("onSurface"), t.onSurface},
        {QLatin1String("surfaceVariant"), t.surfaceVariant},
        {QLatin1String("onSurfaceVariant"), t.onSurfaceVariant},
        {QLatin1String("outline"), t.outline},
        {QLatin1String("outlineVariant"), t.outlineVariant},
        {QLatin1String("errorColor"), t.errorColor},
        {QLatin1String("onError"), t.onError},
        {QLatin1String("errorContainer"), t.errorContainer},
        {QLatin1String("onErrorContainer"), t.onErrorContainer},
        {QLatin1String("warning"), t.warning},
        {QLatin1String("onWarning"), t.onWarning},
        {QLatin1String("container"), t.container},
        {QLatin1String("key"), t.key},
        {QLatin1String("onContainer"), t.onContainer},
        {QLatin1String("onKey"), t.onKey},
    };
}

/// What is made of the tokens where they are used.
QVector<NamedColor> derivedRows(const ColorTokens& t, const ColorTokens& c)
{
    const auto onControl = [&t](double weight) {
        return Theme::stateLayerOn(t.surfaceContainerHighest, t.onSurface, weight);
    };
    const auto onKey = [&t](double weight) { return Theme::stateLayerOn(t.key, t.onKey, weight); };
    return {
        {QLatin1String("boxActiveBg"), Theme::boxActiveBg()},
        {QLatin1String("catTrackBg"), Theme::catTrackBg()},
        {QLatin1String("stateHoverControl"), onControl(Theme::StateHover)},
        {QLatin1String("stateFocusControl"), onControl(Theme::StateFocus)},
        {QLatin1String("stateHoverKey"), onKey(Theme::StateHover)},
        {QLatin1String("stateFocusKey"), onKey(Theme::StateFocus)},
        {QLatin1String("fieldIdleBg"), Theme::fieldIdleBg(c)},
        {QLatin1String("fieldFocusBg"), Theme::fieldFocusBg(c)},
    };
}

void writeColors(QTextStream& out)
{
    out << "# Orlimo audit warna v1\n# mode\tseed\tperan\thex\n";
    for (const Mode& mode : kModes) {
        Theme::forceTheme = mode.forceTheme;
        for (const Theme::Sample& sample : kSamples) {
            Theme::seedColorHex = QLatin1String(sample.hex);
            const ColorTokens t = Theme::tonesFor(Theme::seedColor());
            for (const auto& [role, hex] : tokenRows(t) + derivedRows(t, Theme::colors()))
                out << mode.word << '\t' << sample.hex << '\t' << role << '\t' << hex << '\n';
        }
    }
}

QVector<TextPair> textPairs(const ColorTokens& t, const ColorTokens& c)
{
    const auto focused = [](const QString& background, const QString& text) {
        return Theme::stateLayerOn(background, text, Theme::StateFocus);
    };
    return {
        {QLatin1String("onKey"), t.key, focused(t.key, t.onKey), t.onKey},
        {QLatin1String("onSurface di kontrol"), c.surfaceContainerHighest,
         focused(c.surfaceContainerHighest, c.onSurface), c.onSurface},
        {QLatin1String("onPrimary"), c.primary, focused(c.primary, c.onPrimary), c.onPrimary},
        {QLatin1String("onSurface di kotak isian"), Theme::fieldIdleBg(c), Theme::fieldFocusBg(c),
         c.onSurface},
    };
}

QLatin1String verdictOf(double ratio)
{
    if (ratio >= Theme::ContrastText)
        return QLatin1String("OK   ");
    return ratio >= Theme::ContrastIcon ? QLatin1String("tipis") : QLatin1String("GAGAL");
}

/// Returns whether the pair reads badly.
bool reportPair(const TextPair& pair)
{
    report(ThemeAudit::pairLine(pair));
    return worstRatio(QColor(pair.a), QColor(pair.b), QColor(pair.text)) < Theme::ContrastText;
}

/// A text and its two backgrounds in the palette of plain HSL.
struct FormerPair
{
    QColor a;
    QColor b;
    QColor text;
};

std::array<FormerPair, ThemeAudit::SweepRows> formerPairs(const QColor& seed, bool dark)
{
    const int h = std::max(seed.hslHue(), 0);
    const int ss = seed.hslSaturation();
    const int keySat = qBound(0, static_cast<int>(ss * 0.85), 190);
    const auto share = [h](int saturation, double lightness) {
        return QColor::fromHsl(h, saturation, static_cast<int>(lightness * 255.0));
    };
    const QColor oKey = share(keySat, dark ? 0.75 : 0.42);
    const QColor oPress = share(keySat, dark ? 0.55 : 0.28);
    const QColor oFocus = share(keySat, dark ? 0.4 : 0.58);
    const QColor oHover = QColor::fromHsl(h, keySat, 89);
    const QColor oPrim = QColor::fromHsl(h, ss, 102);
    const QColor oPCont = share(ss, dark ? 0.25 : 0.92);
    const QColor oOnPCont = share(ss, dark ? 0.9 : 0.25);
    const QColor white(Qt::white);
    return {{{oKey, oPress, dark ? QColor::fromHsl(h, ss, 25) : white},
             {oFocus, oFocus, white},
             {oHover, oHover, white},
             {oPrim, oPrim, white},
             {oPCont, oPCont, oOnPCont}}};
}

std::array<double, ThemeAudit::SweepRows> presentRatios()
{
    const ColorTokens t = getItemTheme();
    const auto ratio = [](const QString& a, const QString& b, const QString& text) {
        return worstRatio(QColor(a), QColor(b), QColor(text));
    };
    const auto onControl = [&t](double weight) {
        return Theme::stateLayerOn(t.surfaceContainerHighest, t.onSurface, weight);
    };
    return {ratio(t.key, Theme::stateLayerOn(t.key, t.onKey, Theme::StateFocus), t.onKey),
            ratio(onControl(Theme::StateFocus), t.surfaceContainerHighest, t.onSurface),
            ratio(onControl(Theme::StateHover), t.surfaceContainerHighest, t.onSurface),
            ratio(t.primary, t.primary, t.onPrimary),
            ratio(t.primaryContainer, t.primaryContainer, t.onPrimaryContainer)};
}

using RoundTally = std::array<ThemeAudit::RowTally, ThemeAudit::SweepRows>;

RoundTally sweepHues(int saturation)
{
    RoundTally tally;
    for (int hue = 0; hue < kHues; ++hue) {
        Theme::seedColorHex = QColor::fromHsl(hue, saturation, kSweepLightness, 255).name();
        const auto ratios = ThemeAudit::sweepRows();
        for (std::size_t i = 0; i < tally.size(); ++i)
            tally.at(i).add(hue, ratios.at(i));
    }
    return tally;
}

} // namespace

QString ThemeAudit::pairLine(const TextPair& pair)
{
    const QColor a(pair.a);
    const QColor b(pair.b);
    const double got = worstRatio(a, b, QColor(pair.text));
    const QString other = pair.b == pair.a ? QStringLiteral("       ") : pair.b;
    return QStringLiteral("      %1 %2 %3  teks %4  =  %5 %6   (putih %7 / hitam %8)")
        .arg(QString(pair.label).leftJustified(kLabelWidth), pair.a, other, pair.text,
             twoDecimals(got), verdictOf(got), twoDecimals(worstRatio(a, b, Qt::white)),
             twoDecimals(worstRatio(a, b, Qt::black)));
}

void ThemeAudit::RowTally::add(int hue, const Legibility& ratio)
{
    if (m_worstHue < 0 || ratio.now < m_worst) {
        m_worst = ratio.now;
        m_worstHue = hue;
    }
    if (ratio.now >= Theme::ContrastText)
        return;
    if (m_below == 0)
        m_firstBelow = hue;
    m_lastBelow = hue;
    ++m_below;
    if (ratio.before - kNegligible <= ratio.now)
        return;
    ++m_regressions;
    if (ratio.before - ratio.now > m_largestLoss) {
        m_largestLoss = ratio.before - ratio.now;
        m_largestLossHue = hue;
    }
}

QString ThemeAudit::RowTally::line(const char* name) const
{
    const QString span = m_below > 0
                             ? QStringLiteral("hue %1..%2").arg(m_firstBelow).arg(m_lastBelow)
                             : QStringLiteral("-");
    const QString losses = m_regressions > 0 ? QStringLiteral("%1 (terparah -%2 @hue %3)")
                                                   .arg(m_regressions)
                                                   .arg(twoDecimals(m_largestLoss))
                                                   .arg(m_largestLossHue)
                                             : QStringLiteral("0");
    return QStringLiteral("   %1 di bawah 4.5: %2/360  %3   terburuk %4 @hue %5   kemunduran: %6")
        .arg(QLatin1String(name), QString::number(m_below), span, twoDecimals(m_worst),
             QString::number(m_worstHue), losses);
}

std::array<ThemeAudit::Legibility, ThemeAudit::SweepRows> ThemeAudit::sweepRows()
{
    const auto now = presentRatios();
    const auto former = formerPairs(Theme::seedColor(), Theme::isDarkMode());
    std::array<Legibility, SweepRows> rows;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const FormerPair& pair = former.at(i);
        rows.at(i) = {now.at(i), worstRatio(pair.a, pair.b, pair.text)};
    }
    return rows;
}

const Theme::Sample* Theme::auditSamples(int* count)
{
    if (count)
        *count = static_cast<int>(std::size(kSamples));
    return kSamples;
}

void Theme::auditColor(const QString& outPath)
{
    const ThemeKeeper keeper;
    QSaveFile file(outPath);
    file.setDirectWriteFallback(true); // for a file in a directory that takes no others
    bool isWritten = file.open(QIODevice::WriteOnly | QIODevice::Text);
    if (isWritten) {
        QTextStream out(&file);
        writeColors(out);
        out.flush();
        isWritten = file.commit();
    }
    if (isWritten)
        report(QStringLiteral("AUDIT WARNA ditulis ke ") + outPath);
    else
        qWarning().noquote() << "AUDIT WARNA GAGAL: tidak bisa menulis" << outPath;
}

void Theme::auditContrast()
{
    const ThemeKeeper keeper;
    int violations = 0;
    for (const Mode& mode : kModes) {
        forceTheme = mode.forceTheme;
        report(QStringLiteral("=== AUDIT KONTRAS -- mode %1 ===").arg(mode.word));
        for (const Sample& sample : kSamples) {
            seedColorHex = QLatin1String(sample.hex);
            report(QStringLiteral("  %1 %2").arg(QLatin1String(sample.name), seedColorHex));
            for (const TextPair& pair : textPairs(tonesFor(seedColor()), colors()))
                violations += reportPair(pair) ? 1 : 0;
        }
    }
    report(QStringLiteral("=== AUDIT SELESAI -- pelanggaran tersisa setelah onColorFor: %1 ===")
               .arg(violations));
}

void Theme::auditContrastSweep()
{
    const ThemeKeeper keeper;
    int below = 0;
    int regressions = 0;
    for (const Mode& mode : kModes) {
        forceTheme = mode.forceTheme;
        for (const int saturation : kSweepSaturations) {
            const RoundTally tally = sweepHues(saturation);
            report(QStringLiteral("=== SAPUAN -- mode %1, saturasi %2 (360 hue) ===")
                       .arg(mode.word)
                       .arg(saturation));
            for (std::size_t i = 0; i < tally.size(); ++i) {
                report(tally.at(i).line(ThemeAudit::kNames.at(i)));
                below += tally.at(i).below();
                regressions += tally.at(i).regressions();
            }
        }
    }
    // The number of pairs is a fixed word of the report, whatever the loops come to.
    report(QStringLiteral("=== SAPUAN SELESAI -- 5760 pasangan | di bawah ambang: %1 | "
                          "KEMUNDURAN: %2 ===")
               .arg(below)
               .arg(regressions));
    report(QStringLiteral("    (kemunduran WAJIB 0; sisa di bawah ambang = pekerjaan latar, "
                          "Bagian 7)"));
}
