// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Hct.h"

#include <QColor>
#include <QString>
#include <QStringList>

class QFrame;
class QWidget;

/// The resolved palette. Each field is "#" and six lower-case hexadecimal digits, but for the last
/// four, which are empty in what `Theme::colors()` returns: only `Theme::tonesFor` and
/// `getItemTheme` fill them.
struct ColorTokens
{
    QString primary;
    QString onPrimary;
    QString primaryContainer;
    QString onPrimaryContainer;
    QString surface;                 ///< frameless dialogs
    QString surfaceContainer;        ///< neutral container
    QString surfaceContainerLowest;  ///< cards, search boxes, list rows
    QString surfaceContainerLow;     ///< panels
    QString surfaceContainerHigh;    ///< the window shell
    QString surfaceContainerHighest; ///< idle buttons, menus, base of the field fill
    QString onSurface;               ///< text and glyphs
    QString surfaceVariant;
    QString onSurfaceVariant; ///< muted text
    QString outline;          ///< dialog border
    QString outlineVariant;   ///< separators
    QString errorColor;
    QString onError;
    QString errorContainer;
    QString onErrorContainer;
    QString warning;
    QString onWarning;
    QString container;   ///< tinted container of a base colour
    QString key;         ///< strong colour of a base colour: selected controls, focus rings
    QString onContainer; ///< text on `container`
    QString onKey;       ///< text on `key`

    bool operator==(const ColorTokens&) const = default;
};

/// The type scale. `Family` is a font list in style-sheet form; the text sizes come as numbers for
/// painters and as text for style sheets.
namespace FontTokens
{

inline const QString Family =
    QStringLiteral("'Plus Jakarta Sans', 'Inter', 'Segoe UI', sans-serif");
/// The same list for a `QFont`.
inline const QStringList Families{QStringLiteral("Plus Jakarta Sans"), QStringLiteral("Inter"),
                                  QStringLiteral("Segoe UI"), QStringLiteral("sans-serif")};
inline constexpr int SizeSmPx = 13;
inline constexpr int SizeMdPx = 14;
inline constexpr int SizeLgPx = 16;
inline const QString SizeSm = QString::number(SizeSmPx) + QStringLiteral("px");
inline const QString SizeMd = QString::number(SizeMdPx) + QStringLiteral("px");
inline const QString SizeLg = QString::number(SizeLgPx) + QStringLiteral("px");

} // namespace FontTokens

/// The look of the whole program, computed from one seed colour and one mode.
///
/// A widget never stores a colour: it asks here when it builds or paints, and is rebuilt after a
/// change of the settings. GUI thread only. Nothing here fails: an invalid seed gives greys.
class Theme
{
public:
    /// What a token takes of its seed: the tone is fixed, the chroma a ceiling.
    struct ToneSpec
    {
        double toneLight = 0.0;
        double chromaLight = 0.0;
        double toneDark = 0.0;
        double chromaDark = 0.0;
    };

    /// A seed that the audits look at.
    struct Sample
    {
        const char* name;
        const char* hex;
    };

    static constexpr double ContrastText = 4.5;         ///< WCAG ratio wanted of text
    static constexpr double ContrastIcon = 3.0;         ///< WCAG ratio wanted of icons
    static constexpr double NoChromaCap = 1000000000.0; ///< `chromaCap` that caps nothing
    static constexpr double PreferWhiteMargin = 0.5;    ///< how far a dark colour must beat white
    static constexpr double ErrorHue = 22.5;            ///< hue of the red key, degrees
    static constexpr double StateHover = 0.08;          ///< weight of the state layer on hover
    static constexpr double StateFocus = 0.1;           ///< on keyboard focus
    static constexpr double StatePressed = 0.1;         ///< on press

    static constexpr int Sp_Xs = 4; ///< spacings, px
    static constexpr int Sp_Sm = 8;
    static constexpr int Sp_Md = 12;
    static constexpr int Sp_Lg = 16;
    static constexpr int Sp_Xl = 20;
    static constexpr int Sp_Xxl = 24;
    static constexpr int Rad_Sm = 8; ///< corner radii, px
    static constexpr int Rad_Md = 16;
    static constexpr int Rad_Lg = 24;

    static int forceTheme;       ///< 0 follows the desktop, 1 forces light, 2 forces dark
    static QString seedColorHex; ///< as stored, not validated
    static int gridColumns;      ///< columns of the home grid, 2 to 4 when loaded or saved here

    Theme() = delete;

    /// Full path of "settings.ini"; makes its directory if that is missing.
    static QString settingsFilePath();
    /// Fills the three settings from the file, or with their defaults.
    static void loadSettings();
    /// Set one setting and write it through. If the file can't be written, the change holds until
    /// the process ends. Nothing is refreshed: the caller asks for the rebuild.
    static void saveForceTheme(int mode);
    static void saveSeedColor(const QString& hex);
    /// \param columns bounded to 2 to 4.
    static void saveGridColumns(int columns);

    /// The mode in force. A change of the desktop's mode is seen up to two seconds late.
    static bool isDarkMode();
    /// The palette of the present seed and mode, with the last four fields empty. Cheap enough for
    /// paint code: the palette is computed only when seed or mode has changed.
    static ColorTokens colors();
    /// `colors()` with key, container, primary container and their text colours made from `base`.
    /// Keeps the last result only, so calls with alternating bases compute each time.
    static ColorTokens tonesFor(const QColor& base);
    /// The seed as a colour; invalid if the stored text names none.
    static QColor seedColor();
    static Hct::Color seedHct();
    /// The HCT coordinates of a colour, its alpha taken as 255; those of black if it is invalid.
    static Hct::Color hctOf(const QColor& color);

    /// One token: the hue of `seed`, the tone of `sp`, and the least of the chromas of `seed`, `sp`
    /// and `chromaCap`.
    /// \param hueShift degrees, -360 to 360.
    static QString fromSpec(const Hct::Color& seed, const ToneSpec& sp, bool dark, double hueShift,
                            double chromaCap);
    /// Fill one group of fields each, from the seed; the error colours have a red of their own.
    static void applyAccents(ColorTokens& t, bool dark);
    static void applySurfaces(ColorTokens& t, bool dark);
    static void applyError(ColorTokens& t, bool dark);

    /// WCAG relative luminance, 0 to 1, and the ratio of two colours, 1 to 21 in either order.
    static double relativeLuminance(const QColor& color);
    static double contrastRatio(const QColor& a, const QColor& b);
    /// A text colour that reaches the ratio `target` on `bg`, white if that does; the best
    /// of white and a dark shade of `bg` if nothing does.
    static QString onColorFor(const QColor& bg, double target);
    /// The same on two backgrounds at once, the dark shades taken from `a`.
    static QString onColorForPair(const QColor& a, const QColor& b, double target);
    /// `onSurface` as a translucent layer, for painters on unknown backgrounds.
    /// \param alpha 0 to 255.
    static QColor stateLayer(const ColorTokens& c, int alpha);
    /// `onHex` laid over `baseHex` with weight `alpha` (0 to 1), as a solid colour, or as an
    /// "rgba(...)" overlay for style sheets if the base is invalid or fully transparent.
    static QString stateLayerOn(const QString& baseHex, const QString& onHex, double alpha);

    /// Style sheets. Plain text made afresh by each call; `key` and `onKey` in them always come
    /// from the present seed, whatever `c` holds.
    static QString primaryBtnStyle(const ColorTokens& c);
    /// \param idleBgOverride any style-sheet colour; empty takes `surfaceContainerHighest`.
    static QString actionBtnStyle(const ColorTokens& c, const QString& idleBgOverride = QString());
    static QString destructiveBtnStyle(const ColorTokens& c);
    static QString activeListeningStyle(const ColorTokens& c);
    /// \param idleBgOverride as in `actionBtnStyle`.
    static QString iconBtnStyle(const ColorTokens& c, const QString& idleBgOverride = QString());
    static QString pillSecondaryStyle(const ColorTokens& c);
    static QString iconChoiceStyle(const ColorTokens& c, bool selected);
    /// State rules to append to the sheet of a checkable control.
    /// \param sel selector of that control.
    /// \param idleBgOverride as in `actionBtnStyle`.
    static QString choiceBtnStates(const ColorTokens& c, const QString& sel,
                                   const QString& idleBgOverride = QString());
    static QString fieldInputStyle(const ColorTokens& c);
    static QString fieldLabelStyle(const ColorTokens& c);
    static QString dialogTitleStyle(const ColorTokens& c);
    static QString groupHeaderStyle(const ColorTokens& c);
    static QString contextMenuStyle(const ColorTokens& c);
    /// For every scroll bar of the program: invisible until the pointer is on it, in every theme.
    static QString scrollBarStyle();

    enum class Weight { Normal, Bold };
    /// A label in `color`, any style-sheet colour, and `size`, one of `FontTokens`.
    static QString textStyle(const QString& color, const QString& size,
                             Weight weight = Weight::Normal);
    /// The same on a card of the pages, whose own sheet would give the label a ground of its own.
    static QString textOnCardStyle(const QString& color, const QString& size,
                                   Weight weight = Weight::Normal);
    /// The name of a row of the pages; for a label whose object name is "titleStatic".
    static QString staticTitleStyle(const ColorTokens& c);
    /// The vertical scroll bar of a text that is not all in view: shown at all times, unlike the
    /// others of the program.
    static QString shownScrollBarStyle(const ColorTokens& c);
    /// A line between groups; the widget's height is the caller's.
    static QString separatorStyle(const ColorTokens& c);
    /// `pillSecondaryStyle` for a push button 36 px high at the end of a row.
    static QString smallPillStyle(const ColorTokens& c);
    /// A push button 36 px high that shows a choice and opens a menu to change it.
    /// \param sel selector of that button.
    /// \param activeBg, activeFg colours under the pointer and with focus.
    /// \param leftPad px before the text, where a glyph may stand.
    /// \param minWidth px of the text's box.
    static QString pickerPillStyle(const QString& sel, const ColorTokens& c,
                                   const QString& activeBg, const QString& activeFg, int leftPad,
                                   int minWidth);
    /// A checkable push button 36 px high, one of a row of choices; with `choiceBtnStates`.
    /// \param sel, idleBgOverride as there.
    static QString choicePillStyle(const ColorTokens& c, const QString& sel,
                                   const QString& idleBgOverride = QString());
    /// The same for a round one, 40 px wide and high.
    static QString choiceRoundStyle(const ColorTokens& c, const QString& sel,
                                    const QString& idleBgOverride = QString());
    /// A filled box whose upper and lower corners differ, such as the band at the top of a card:
    /// what stands between the braces of its rule.
    /// \param topRadius, bottomRadius px.
    static QString bandStyle(const QString& fill, int topRadius, int bottomRadius);
    /// The title in such a band.
    static QString bandTitleStyle(const ColorTokens& c);

    static QString shellBg();     ///< windows and dialogs in the window colour
    static QString panelBg();     ///< panels of the home and settings views
    static QString boxBg();       ///< search boxes, cards, rows, filters
    static QString boxActiveBg(); ///< selected row
    static QString catTrackBg();  ///< track behind section and filter pills
    static QString fieldIdleBg(const ColorTokens& c);
    static QString fieldFocusBg(const ColorTokens& c);
    /// The glyph colour that goes with `iconChoiceStyle`.
    static QString iconChoiceFg(const ColorTokens& c, bool selected);

    /// The rounded, shadowed card "dialogBg" that every frameless dialog stands in.
    /// \param shadowAlpha 0 to 255.
    /// \param padding px.
    /// \returns a frame owned by `parent`, in no layout yet.
    static QFrame* createFramelessDialogBackground(QWidget* parent, const ColorTokens& c,
                                                   int shadowAlpha, int padding);

    /// Checks of the palette for those who change it, behind switches of the command line. Seed and
    /// mode are as before afterwards, and no setting is written.
    ///
    /// The seeds of the first two audits. \param count receives how many; may be null.
    static const Sample* auditSamples(int* count);
    /// Writes every token of every sample in both modes to a text file, a line each, as columns
    /// parted by tabs. Whether that went well is told in the log alone.
    static void auditColor(const QString& outPath);
    /// Logs for each sample how well texts read on their backgrounds, and at the end how many don't
    /// reach `ContrastText`.
    static void auditContrast();
    /// Logs the same for seeds all around the colour wheel, and where a text reads worse than in
    /// the palette of plain HSL that this one took the place of. Takes seconds.
    static void auditContrastSweep();

private:
    /// The HSL hue, 0 for colours that have none.
    static int hslHueOf(const QColor& color);
    /// A neutral of the hue of `seed` and of a share of its HSL saturation.
    /// \param cap the largest saturation, 0 to 255.
    /// \param lightness 0 to 255.
    static QString seedShade(const QColor& seed, double saturationShare, int cap, int lightness);
};

/// The palette with the tones of the present seed filled in: `Theme::tonesFor` of the seed.
ColorTokens getItemTheme();
