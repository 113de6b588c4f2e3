// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "GlyphWidgets.h"

class QStyleOptionButton;

/// A button that shows a choice and opens a menu to change it; with a glyph on its left and
/// `Theme::pickerPillStyle` as its sheet. The choice is a name that somebody has given
/// (`setLabel`): it stays on one line, is elided where the pill is too narrow, and never makes the
/// pill wider than the sheet's least width if there is no room. Lengths are in pixels.
class PickerPill : public GlyphButton
{
    Q_OBJECT

public:
    static constexpr int Height = 36;
    static constexpr int GlyphPx = 12;

    explicit PickerPill(QWidget* parent = nullptr);

    /// The width that the whole label would take, and the least that the sheet asks for.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void initStyleOption(QStyleOptionButton* option) const override;

private:
    /// The label on one line of at most `width`.
    QString lineOf(int width) const;
    QSize hintFor(const QString& text) const;
};
