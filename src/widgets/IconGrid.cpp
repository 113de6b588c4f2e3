// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "IconGrid.h"

#include "GlyphWidgets.h"
#include "Localization.h"
#include "Theme.h"

#include <QDialog>
#include <QGridLayout>
#include <QVariant>

#include <algorithm>

namespace
{

constexpr char kGlyphProperty[] = "glyph";
constexpr int kIconGlyphPx = 20;

} // namespace

QList<GlyphButton*> IconGrid::build(QGridLayout* grid, const QList<unsigned int>& glyphs,
                                    int columns, QDialog* dialog)
{
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(Gap);
    QList<GlyphButton*> buttons;
    for (int i = 0; i < glyphs.size(); ++i) {
        auto* button = new GlyphButton(dialog);
        button->setFixedSize(Cell, Cell);
        button->setCursor(Qt::PointingHandCursor);
        button->setFocusPolicy(Qt::StrongFocus);
        button->setProperty(kGlyphProperty, glyphs.at(i));
        // A screen reader has nothing to read on a cell but its place in the grid.
        button->setAccessibleName(
            QStringLiteral("%1 %2").arg(Tr::t("dialog.lbl_icon"), QString::number(i + 1)));
        button->installEventFilter(dialog);
        grid->addWidget(button, i / columns, i % columns);
        buttons.append(button);
    }
    return buttons;
}

void IconGrid::applyStyle(const QList<GlyphButton*>& buttons, unsigned int selected)
{
    const ColorTokens c = Theme::colors();
    for (GlyphButton* button : buttons) {
        const bool isSelected = glyphOf(button) == selected;
        button->setStyleSheet(Theme::iconChoiceStyle(c, isSelected));
        button->setGlyph(glyphOf(button), kIconGlyphPx, Theme::iconChoiceFg(c, isSelected));
    }
}

unsigned int IconGrid::glyphOf(const GlyphButton* button)
{
    return button->property(kGlyphProperty).toUInt();
}

int IconGrid::indexOf(const QList<GlyphButton*>& buttons, const QObject* object)
{
    const auto found = std::find(buttons.begin(), buttons.end(), object);
    return found == buttons.end() ? -1 : static_cast<int>(found - buttons.begin());
}

void IconGrid::focusAt(const QList<GlyphButton*>& buttons, int index)
{
    if (!buttons.isEmpty())
        buttons.at(std::clamp(index, 0, static_cast<int>(buttons.size()) - 1))->setFocus();
}

void IconGrid::focusGlyph(const QList<GlyphButton*>& buttons, unsigned int glyph)
{
    const auto found =
        std::find_if(buttons.begin(), buttons.end(),
                     [glyph](const GlyphButton* button) { return glyphOf(button) == glyph; });
    focusAt(buttons, found == buttons.end() ? 0 : static_cast<int>(found - buttons.begin()));
}

bool IconGrid::moveFocus(const QList<GlyphButton*>& buttons, int columns, int index, int key,
                         QWidget* above, QWidget* below)
{
    switch (key) {
    case Qt::Key_Left:
        focusAt(buttons, index - 1);
        return true;
    case Qt::Key_Right:
        focusAt(buttons, index + 1);
        return true;
    case Qt::Key_Up:
        if (index >= columns)
            focusAt(buttons, index - columns);
        else if (above)
            above->setFocus();
        return true;
    case Qt::Key_Down:
        if (index + columns < buttons.size())
            focusAt(buttons, index + columns);
        else
            below->setFocus();
        return true;
    default:
        return false;
    }
}
