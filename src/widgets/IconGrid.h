// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>

class GlyphButton;
class QDialog;
class QGridLayout;
class QObject;
class QWidget;

/// The grid of round buttons from which an icon is picked: looks, focus and arrow keys. What a
/// click means is its dialog's affair. Lengths are in pixels. GUI thread only.
namespace IconGrid
{

inline constexpr int Cell = 36; ///< side of a cell
inline constexpr int Gap = 16;  ///< between two cells

/// Height of a grid of `rows` rows.
constexpr int heightOf(int rows)
{
    return rows * Cell + (rows - 1) * Gap;
}

/// Fills `grid` with one round button for each codepoint, `columns` to a row. A button carries its
/// codepoint in the dynamic property "glyph", and `dialog` filters its events.
/// \returns the buttons in order, owned by the dialog; they have no style yet.
QList<GlyphButton*> build(QGridLayout* grid, const QList<unsigned int>& glyphs, int columns,
                          QDialog* dialog);
/// Styles the buttons so that the one of `selected` stands out; none does if no button has it.
void applyStyle(const QList<GlyphButton*>& buttons, unsigned int selected);
/// The codepoint that a button of such a grid stands for.
unsigned int glyphOf(const GlyphButton* button);
/// Index of `object` among the buttons; -1 if it is none of them.
int indexOf(const QList<GlyphButton*>& buttons, const QObject* object);
/// Gives a button the focus; an index out of range means the first or the last one.
void focusAt(const QList<GlyphButton*>& buttons, int index);
/// Gives the focus to the button of codepoint `glyph`, or to the first if there is none.
void focusGlyph(const QList<GlyphButton*>& buttons, unsigned int glyph);
/// Moves the focus off the button at `index` for an arrow key: Left and Right stop at the ends, Up
/// leaves the first row for `above` (null: stays there), Down leaves the last row for `below`.
/// \returns false if `key` is no arrow key.
bool moveFocus(const QList<GlyphButton*>& buttons, int columns, int index, int key, QWidget* above,
               QWidget* below);

} // namespace IconGrid
