// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QFont>
#include <QPainterPath>
#include <QRect>
#include <QString>

class QFontMetrics;
class QModelIndex;
class QPainter;
class QPixmap;

/// What the painters of rows and tiles have in common. Texts may be of any length and content: what
/// lies beyond the visible part costs nothing. GUI thread only.
namespace RowPainting
{

/// A filled circle with something in its middle.
struct Circle
{
    QRect rect;
    QColor fill;
    QColor ink; ///< of a glyph
    int glyphPx = 0;
};

/// The text font in `px` pixels.
QFont rowFont(int px, QFont::Weight weight = QFont::DemiBold);

/// The type of the item of a row; "URL" if it says none.
QString itemType(const QModelIndex& index);

/// What a type of items is called in the present language, as "URL" or "Application"; that of
/// applications for an unknown one.
QString typeLabel(const QString& type);

/// The beginning of a text: more than `width` pixels hold in any font, and the whole text if that
/// is not longer. Measure and break this instead of the text. `width` below 0 counts as 0.
QString visiblePart(const QString& text, int width);
QStringView visiblePart(QStringView text, int width);

/// A text on one line of at most `width` pixels; what doesn't fit ends in an ellipsis.
QString elidedLine(const QFontMetrics& metrics, const QString& text, int width);

/// Draws a text on one line of `rect`, elided if need be, in the painter's font and pen.
void drawLine(QPainter* painter, const QRect& rect, Qt::Alignment alignment, const QString& text);

/// Fills a circle. Leaves the painter without a pen and with `circle.fill` as its brush.
void fillCircle(QPainter* painter, const Circle& circle);

/// Fills a circle and draws a glyph in its middle.
void drawGlyphCircle(QPainter* painter, const Circle& circle, uint glyph);

/// Fills a circle and draws the icon of an item in it: its picture, as large as it fits in its own
/// shape into the circle's square less `pictureInset` pixels on each side, or else its glyph. A
/// picture that can't be read leaves the circle empty, as does one that has not been read yet: name
/// the view's viewport to `ItemImages::repaintOnArrival`.
/// \param token icon string of the item
void drawItemCircle(QPainter* painter, const Circle& circle, int pictureInset, const QString& token,
                    const QString& type);

/// Draws a picture in the middle of a box, on whole pixels of the screen.
void drawPicture(QPainter* painter, const QRect& box, const QPixmap& picture);

/// A rounded rectangle with one radius for its upper and one for its lower corners, each bounded to
/// half the shorter side.
QPainterPath twoRadiusPath(const QRect& rect, qreal topRadius, qreal bottomRadius);

} // namespace RowPainting
