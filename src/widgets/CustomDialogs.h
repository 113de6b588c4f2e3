// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

class GlyphButton;
class QDialog;
class QFrame;
class QGridLayout;
class QKeyEvent;
class QObject;
class QPushButton;
class QVBoxLayout;
class QWidget;
struct ColorTokens;

/// Esc and Backspace close a dialog: rejects it and returns true for these two keys, otherwise
/// does nothing and returns false. Call it first in `keyPressEvent`; an input that has the focus
/// takes its Backspace before the dialog sees it.
bool handleDialogBackKey(QDialog* dialog, QKeyEvent* event);

/// The pieces that several of the frameless dialogs are built of. Lengths are in pixels.
namespace CustomDialogs
{

inline constexpr int ShadowPad = 10;  ///< free margin around the card, for its shadow
inline constexpr int PaperBorder = 1; ///< line around the card
inline constexpr int HeaderHeight = 56;
inline constexpr int BodyPad = 24;
inline constexpr int BodySpacing = 12;
inline constexpr int ButtonHeight = 36;
inline constexpr int IconCell = 36; ///< side of a cell of the icon grid
inline constexpr int IconGap = 16;  ///< between two cells

/// Height of an icon grid of `rows` rows.
constexpr int iconGridHeight(int rows)
{
    return rows * IconCell + (rows - 1) * IconGap;
}

/// Makes `dialog` a frameless, translucent window that stays on top, gives it its one layout, and
/// puts the themed card in it. Call it once, first in the constructor of the dialog, which must not
/// have a layout yet.
/// \param shadowAlpha 0 to 255.
/// \returns the card, owned by the dialog, without a layout.
QFrame* buildCard(QDialog* dialog, const ColorTokens& c, int shadowAlpha, int padding);

/// The coloured band with the dialog's title at the top of a card that has no padding.
/// \returns a frame that the caller puts into a layout.
QFrame* buildHeader(const QString& objectName, const QString& title, const ColorTokens& c);

/// Like `buildCard`, without padding and with a header, for a dialog of fixed size.
/// \returns the layout of the padded body below the header, still empty.
QVBoxLayout* buildCardWithHeader(QDialog* dialog, const ColorTokens& c, const QString& headerName,
                                 const QString& title);

/// A push button in `style`, `ButtonHeight` high, owned by `parent` and in no layout yet.
QPushButton* buildButton(const QString& text, const QString& style, QWidget* parent);

/// Fills `grid` with one round button for each codepoint, `columns` to a row. A button carries its
/// codepoint in the dynamic property "glyph", and `dialog` filters its events.
/// \returns the buttons in order, owned by the dialog; they have no style yet.
QList<GlyphButton*> buildIconGrid(QGridLayout* grid, const QList<unsigned int>& glyphs, int columns,
                                  QDialog* dialog);
/// Styles the buttons so that the one of `selected` stands out; none does if no button has it.
void styleIconGrid(const QList<GlyphButton*>& buttons, unsigned int selected);
/// The codepoint that a button of such a grid stands for.
unsigned int glyphOf(const GlyphButton* button);
/// Index of `object` among the buttons; -1 if it is none of them.
int iconIndexOf(const QList<GlyphButton*>& buttons, const QObject* object);
/// Gives a button the focus; an index out of range means the first or the last one.
void focusIcon(const QList<GlyphButton*>& buttons, int index);
/// Gives the focus to the button of codepoint `glyph`, or to the first if there is none.
void focusIconOf(const QList<GlyphButton*>& buttons, unsigned int glyph);
/// Moves the focus off the button at `index` for an arrow key: Left and Right stop at the ends, Up
/// leaves the first row for `above` (null: stays there), Down leaves the last row for `below`.
/// \returns false if `key` is no arrow key.
bool moveInIconGrid(const QList<GlyphButton*>& buttons, int columns, int index, int key,
                    QWidget* above, QWidget* below);

} // namespace CustomDialogs
