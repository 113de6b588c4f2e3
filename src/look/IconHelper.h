// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QFont>
#include <QIcon>
#include <QList>
#include <QString>

class QColor;
class QPainter;
class QPointF;
class QSize;

/// Codepoints of the icon font, under the names the font itself gives its glyphs.
namespace Glyph
{

inline constexpr uint Add = 0xE145;
inline constexpr uint AddPhotoAlternate = 0xE43E;
inline constexpr uint Apps = 0xE5C3;
inline constexpr uint Bookmark = 0xE866;
inline constexpr uint BookmarkAdd = 0xE598;
inline constexpr uint Bookmarks = 0xE98B;
inline constexpr uint Calculate = 0xEA5F;
inline constexpr uint Check = 0xE5CA;
inline constexpr uint Close = 0xE5CD;
inline constexpr uint Code = 0xE86F;
inline constexpr uint ContentCopy = 0xE14D;
inline constexpr uint CreateNewFolder = 0xE2CC;
inline constexpr uint Database = 0xF20E;
inline constexpr uint Delete = 0xE92E;
inline constexpr uint Description = 0xE873;
inline constexpr uint DesktopWindows = 0xE30C;
inline constexpr uint Done = 0xE876;
inline constexpr uint DriveFileMove = 0xE9A1;
inline constexpr uint Edit = 0xF097;
inline constexpr uint FilterList = 0xE152;
inline constexpr uint Folder = 0xE2C7;
inline constexpr uint FolderCopy = 0xEBBD;
inline constexpr uint Link = 0xE250;
inline constexpr uint MoreVert = 0xE5D4;
inline constexpr uint Movie = 0xE684;
inline constexpr uint Palette = 0xE40A;
inline constexpr uint Reorder = 0xE8FE;
inline constexpr uint Search = 0xEF7A;
inline constexpr uint Settings = 0xE8B8;
inline constexpr uint SpaceDashboard = 0xE66B;
inline constexpr uint SportsEsports = 0xEA28;
inline constexpr uint Star = 0xF09A;
inline constexpr uint SwapHoriz = 0xE8D4;
inline constexpr uint TextSnippet = 0xF1C6;
inline constexpr uint Topic = 0xF1C4;
inline constexpr uint Tune = 0xE429;
inline constexpr uint Work = 0xE943;

} // namespace Glyph

/// The icon font, the "glyph:" icon strings of items and sections, and drawing that centres a
/// glyph's ink instead of its advance box. GUI thread only.
///
/// An icon string is empty (the glyph of the item's type), "glyph:" with a lower-case hexadecimal
/// codepoint, or the path of an image file.
class IconHelper
{
public:
    /// Family of the outlined font, the one everything is drawn with; empty before `initFonts()`.
    static QString regularFontFamily;
    /// Family of the filled font; empty before `initFonts()`.
    static QString filledFontFamily;

    IconHelper() = delete;

    /// Loads both icon fonts from the resources, once per process. Needs the application object.
    /// A font that does not load is replaced by "Segoe MDL2 Assets"; nothing is reported.
    static void initFonts();

    /// The icon font at `px` pixels, unhinted. Loads the fonts if that has not happened yet.
    static QFont glyphFont(int px);

    /// The prefix "glyph:".
    static const QString& glyphScheme();
    /// The icon string of a codepoint.
    static QString glyphToken(uint code);
    /// Case-sensitive: "GLYPH:e250" is the path of a file.
    static bool isGlyphToken(const QString& iconPath);
    /// The codepoint of a token; 0 if `token` is no token, is malformed, or names no character.
    static uint glyphCode(const QString& token);
    /// True if `iconPath` names something that exists on a disk of this machine; it need not be a
    /// readable image. Looks at the disk: what paints asks `ItemImages`.
    static bool hasCustomImage(const QString& iconPath);

    /// Exact comparison; any unknown type gives the link glyph.
    static uint codepointForType(const QString& type);
    static QString glyphForType(const QString& type);
    /// The codepoint of the token `iconPath`, or else that of `type`. Never 0.
    static uint codepointForItem(const QString& iconPath, const QString& type);
    static QString glyphForItem(const QString& iconPath, const QString& type);
    /// One character as text (two code units beyond the basic plane); empty for 0, for a surrogate
    /// and above U+10FFFF.
    static QString glyphText(uint code);

    /// The palette of the icon picker, in its order.
    static QList<unsigned int> pickableGlyphs();

    /// A glyph of `fontSize` pixels in the middle of a transparent square of `canvasSize` pixels,
    /// both device-independent. A null icon if `canvasSize` is below 1.
    static QIcon getGlyphIcon(QChar glyph, int canvasSize, int fontSize, const QString& color);

    /// Draws `glyph` in the painter's font and pen colour so that the centre of its ink lies on
    /// `center`. Leaves the painter's state alone. Does nothing without a painter or without ink.
    static void drawGlyphCentered(QPainter* painter, const QPointF& center, const QString& glyph);

    /// The same for a codepoint in the icon font at `px` pixels and in `color`.
    static void drawGlyph(QPainter* painter, const QPointF& center, uint code, int px,
                          const QColor& color);

    /// Style-sheet padding that centres the ink of `glyph` in a push button of size `box` which
    /// shows it as text in `font`.
    static QString glyphCenteringPad(const QFont& font, const QString& glyph, const QSize& box);
};
