// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Theme.h"

#include "Settings.h"
#include "SystemTheme.h"

#include <QDateTime>
#include <QVariant>

#include <algorithm>
#include <cmath>

namespace
{

constexpr QLatin1String kForceThemeKey("Theme/ForceTheme");
constexpr QLatin1String kSeedColorKey("Theme/SeedColor");
constexpr QLatin1String kGridColumnsKey("Layout/GridColumns");
constexpr QLatin1String kDefaultSeed("#0284c7");
constexpr int kFollowSystem = 0;
constexpr int kForceLight = 1;
constexpr int kForceDark = 2;
constexpr int kDefaultGridColumns = 3;
constexpr int kMinGridColumns = 2;
constexpr int kMaxGridColumns = 4;
constexpr qint64 kSystemCheckMs = 2000; // how long an answer of the desktop is good for

constexpr Theme::ToneSpec kAccent{43.0, 49.07, 80.01, 34.9};
constexpr Theme::ToneSpec kOnAccent{100.0, 2.87, 11.05, 18.5};
constexpr Theme::ToneSpec kAccentContainer{93.57, 18.59, 33.62, 38.2};
constexpr Theme::ToneSpec kOnAccentContainer{12.29, 22.38, 100.0, 2.87};
constexpr Theme::ToneSpec kKey{43.0, 44.87, 80.01, 34.9};
constexpr Theme::ToneSpec kContainer{95.55, 6.12, 16.47, 8.24};
constexpr Theme::ToneSpec kOnContainer{34.06, 38.66, 92.29, 21.21};
constexpr Theme::ToneSpec kError{37.0, 84.0, 80.01, 84.0};
constexpr Theme::ToneSpec kOutline{73.9, 22.4, 29.7, 21.6};
constexpr Theme::ToneSpec kOutlineVariant{80.0, 14.1, 30.0, 16.9};

// What `onColorForPair` tries: white, then dark shades by HSL lightness of 0 to 255.
constexpr QLatin1String kWhite("#ffffff");
constexpr int kLightestOnColor = 26;
constexpr int kDarkestOnColor = 2;
constexpr int kOnColorStep = 2;

int modeOf(bool dark)
{
    return dark ? 1 : 0;
}

QString tokenOf(const Hct::Color& seed, const Theme::ToneSpec& sp, bool dark)
{
    return Theme::fromSpec(seed, sp, dark, 0.0, Theme::NoChromaCap);
}

int roundedHalfUp(double value)
{
    return static_cast<int>(std::floor(value + 0.5));
}

int boundedColumns(int columns)
{
    return qBound(kMinGridColumns, columns, kMaxGridColumns);
}

} // namespace

int Theme::forceTheme = kFollowSystem;
QString Theme::seedColorHex = kDefaultSeed;
int Theme::gridColumns = kDefaultGridColumns;

QString Theme::settingsFilePath()
{
    return Settings::filePath();
}

void Theme::loadSettings()
{
    forceTheme = Settings::value(kForceThemeKey, kFollowSystem).toInt();
    seedColorHex = Settings::value(kSeedColorKey, kDefaultSeed).toString();
    gridColumns = boundedColumns(Settings::value(kGridColumnsKey, kDefaultGridColumns).toInt());
}

void Theme::saveForceTheme(int mode)
{
    forceTheme = mode;
    Settings::setValue(kForceThemeKey, mode);
}

void Theme::saveSeedColor(const QString& hex)
{
    seedColorHex = hex;
    Settings::setValue(kSeedColorKey, hex);
}

void Theme::saveGridColumns(int columns)
{
    gridColumns = boundedColumns(columns);
    Settings::setValue(kGridColumnsKey, gridColumns);
}

bool Theme::isDarkMode()
{
    if (forceTheme == kForceLight)
        return false;
    if (forceTheme == kForceDark)
        return true;
    static qint64 s_lastCheckMs = 0;
    static bool s_isDark = false;
    const qint64 nowMs = QDateTime::currentMSecsSinceEpoch();
    if (nowMs - s_lastCheckMs > kSystemCheckMs) {
        s_isDark = Platform::prefersDark();
        s_lastCheckMs = nowMs;
    }
    return s_isDark;
}

QColor Theme::seedColor()
{
    return QColor(seedColorHex);
}

Hct::Color Theme::seedHct()
{
    return hctOf(seedColor());
}

Hct::Color Theme::hctOf(const QColor& color)
{
    return Hct::fromArgb(Hct::argbFromRgb(color.red(), color.green(), color.blue()));
}

QString Theme::fromSpec(const Hct::Color& seed, const ToneSpec& sp, bool dark, double hueShift,
                        double chromaCap)
{
    const double tone = dark ? sp.toneDark : sp.toneLight;
    const double want = std::min(dark ? sp.chromaDark : sp.chromaLight, chromaCap);
    // A dull seed stays dull, and a neon one comes out no stronger than the default blue.
    const double chroma = std::min(want, seed.chroma);
    double hue = seed.hue + hueShift;
    if (hue >= 360.0)
        hue -= 360.0;
    else if (hue < 0.0)
        hue += 360.0;
    return QColor::fromRgb(static_cast<QRgb>(Hct::solve(hue, chroma, tone))).name();
}

void Theme::applyAccents(ColorTokens& t, bool dark)
{
    const Hct::Color seed = seedHct();
    t.primary = tokenOf(seed, kAccent, dark);
    t.onPrimary = tokenOf(seed, kOnAccent, dark);
    t.primaryContainer = tokenOf(seed, kAccentContainer, dark);
    t.onPrimaryContainer = tokenOf(seed, kOnAccentContainer, dark);
}

void Theme::applySurfaces(ColorTokens& t, bool dark)
{
    // In the dark the tones don't follow the names: the shell (`kHigh`) lies below its boxes
    // (`kLowest`), which are the lightest of all.
    constexpr ToneSpec kSurface{98.08, 4.63, 6.53, 3.78};
    constexpr ToneSpec kLowest{98.8, 4.6, 22.0, 13.7};
    constexpr ToneSpec kLow{96.1, 7.1, 14.8, 12.1};
    constexpr ToneSpec kCont{95.55, 6.12, 11.38, 6.1};
    constexpr ToneSpec kHigh{93.0, 10.8, 9.1, 9.4};
    constexpr ToneSpec kHighest{88.58, 23.22, 19.32, 12.9};

    const Hct::Color seed = seedHct();
    t.surfaceContainerHighest = tokenOf(seed, kHighest, dark);
    t.surfaceContainerHigh = tokenOf(seed, kHigh, dark);
    t.surfaceContainer = tokenOf(seed, kCont, dark);
    t.surfaceContainerLow = tokenOf(seed, kLow, dark);
    t.surface = tokenOf(seed, kSurface, dark);
    t.surfaceContainerLowest = tokenOf(seed, kLowest, dark);
}

void Theme::applyError(ColorTokens& t, bool dark)
{
    // Not from the seed: an error must look like one under any accent.
    constexpr Hct::Color merah{ErrorHue, 84.0, 0.0, 0};
    t.errorColor = tokenOf(merah, kError, dark);
    t.onError = tokenOf(merah, kOnAccent, dark);
    t.errorContainer = tokenOf(merah, kAccentContainer, dark);
    t.onErrorContainer = tokenOf(merah, kOnAccentContainer, dark);
}

int Theme::hslHueOf(const QColor& color)
{
    // A colour of 16 bits a channel can be so near to red from below that Qt rounds it to 360,
    // which it takes back for no colour at all.
    return std::max(color.hslHue(), 0) % 360;
}

QString Theme::seedShade(const QColor& seed, double saturationShare, int cap, int lightness)
{
    const int share = static_cast<int>(seed.hslSaturation() * saturationShare);
    return QColor::fromHsl(hslHueOf(seed), qBound(0, share, cap), lightness, 255).name();
}

ColorTokens Theme::colors()
{
    static int s_cachedMode = -1;
    static QString s_cachedSeed;
    static ColorTokens s_cachedTokens;
    const bool isDark = isDarkMode();
    if (modeOf(isDark) == s_cachedMode && seedColorHex == s_cachedSeed)
        return s_cachedTokens;

    const QColor seed = seedColor();
    ColorTokens t;
    applyAccents(t, isDark);
    applySurfaces(t, isDark);
    // Text keeps a share of the seed's own saturation, which in HSL, unlike in HCT, is none at all
    // for a grey seed.
    t.onSurface = isDark ? seedShade(seed, 0.1, 30, 242) : seedShade(seed, 0.15, 40, 25);
    t.surfaceVariant = isDark ? seedShade(seed, 0.15, 40, 63) : seedShade(seed, 0.2, 50, 216);
    t.onSurfaceVariant = isDark ? seedShade(seed, 0.15, 40, 165) : seedShade(seed, 0.2, 50, 76);
    t.outline = tokenOf(seedHct(), kOutline, isDark);
    t.outlineVariant = tokenOf(seedHct(), kOutlineVariant, isDark);
    applyError(t, isDark);
    t.warning = isDark ? QStringLiteral("#f59e0b") : QStringLiteral("#d97706");
    t.onWarning = isDark ? QStringLiteral("#451a03") : QStringLiteral("#ffffff");

    s_cachedTokens = t;
    s_cachedMode = modeOf(isDark);
    s_cachedSeed = seedColorHex;
    return t;
}

ColorTokens Theme::tonesFor(const QColor& base)
{
    static int s_cachedMode = -1;
    static QString s_cachedBase;
    static QString s_cachedSeed;
    static ColorTokens s_cachedTokens;
    const bool isDark = isDarkMode();
    const QString baseHex = base.name();
    if (modeOf(isDark) == s_cachedMode && baseHex == s_cachedBase && seedColorHex == s_cachedSeed)
        return s_cachedTokens;

    ColorTokens t = colors();
    const Hct::Color b = hctOf(base);
    t.key = tokenOf(b, kKey, isDark);
    t.container = tokenOf(b, kContainer, isDark);
    t.onContainer = tokenOf(b, kOnContainer, isDark);
    t.onKey = tokenOf(b, kOnAccent, isDark);
    t.primaryContainer = tokenOf(b, kAccentContainer, isDark);
    t.onPrimaryContainer = tokenOf(b, kOnAccentContainer, isDark);

    s_cachedTokens = t;
    s_cachedMode = modeOf(isDark);
    s_cachedBase = baseHex;
    s_cachedSeed = seedColorHex;
    return t;
}

ColorTokens getItemTheme()
{
    return Theme::tonesFor(Theme::seedColor());
}

double Theme::relativeLuminance(const QColor& color)
{
    // The threshold is that of WCAG, not the one of the HCT arithmetic: audits by other tools have
    // to come to the same ratios.
    const auto linear = [](int channel) {
        const double v = channel / 255.0;
        return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.red()) + 0.7152 * linear(color.green()) +
           0.0722 * linear(color.blue());
}

double Theme::contrastRatio(const QColor& a, const QColor& b)
{
    const double first = relativeLuminance(a);
    const double second = relativeLuminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QString Theme::onColorFor(const QColor& bg, double target)
{
    return onColorForPair(bg, bg, target);
}

QString Theme::onColorForPair(const QColor& a, const QColor& b, double target)
{
    const auto worst = [&a, &b](const QColor& text) {
        return std::min(contrastRatio(b, text), contrastRatio(a, text));
    };
    const double whiteScore = worst(QColor(kWhite));
    if (whiteScore >= target)
        return kWhite;

    const int hue = hslHueOf(a);
    QString bestDark;
    double bestDarkScore = 0.0;
    for (int l = kLightestOnColor; l >= kDarkestOnColor; l -= kOnColorStep) {
        const QColor dark = QColor::fromHsl(hue, a.hslSaturation(), l, 255);
        const double score = worst(dark);
        if (score >= target)
            return dark.name();
        if (score > bestDarkScore) {
            bestDark = dark.name();
            bestDarkScore = score;
        }
    }
    // Nothing reads well. White is kept while it would do for an icon and isn't clearly worse.
    const double margin = whiteScore >= ContrastIcon ? PreferWhiteMargin : 0.0;
    return bestDarkScore > whiteScore + margin ? bestDark : QString(kWhite);
}

QColor Theme::stateLayer(const ColorTokens& c, int alpha)
{
    QColor layer(c.onSurface);
    layer.setAlpha(alpha);
    return layer;
}

QString Theme::stateLayerOn(const QString& baseHex, const QString& onHex, double alpha)
{
    const QColor base(baseHex);
    const QColor on(onHex);
    if (!base.isValid() || base.alpha() == 0) {
        // What lies below is unknown here, so the sheet gets the layer itself.
        return QStringLiteral("rgba(%1, %2, %3, %4)")
            .arg(on.red())
            .arg(on.green())
            .arg(on.blue())
            .arg(roundedHalfUp(alpha * 255.0));
    }
    const auto mix = [alpha](int onChannel, int baseChannel) {
        return roundedHalfUp(onChannel * alpha + baseChannel * (1.0 - alpha));
    };
    return QColor(mix(on.red(), base.red()), mix(on.green(), base.green()),
                  mix(on.blue(), base.blue()), 255)
        .name();
}
