// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CustomDialogs.h"

#include "CardShape.h"
#include "GlyphWidgets.h"
#include "Keys.h"
#include "Localization.h"
#include "Theme.h"

#include <QDialog>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <QVariant>

#include <algorithm>

namespace
{

constexpr char kGlyphProperty[] = "glyph";
constexpr int kIconGlyphPx = 20;
constexpr int kHeaderSidePad = 12;
constexpr int kHeaderedShadowAlpha = 60;

} // namespace

bool handleDialogBackKey(QDialog* dialog, QKeyEvent* event)
{
    if (!Keys::isBack(event->key()))
        return false;
    dialog->reject();
    return true;
}

QFrame* CustomDialogs::buildCard(QDialog* dialog, const ColorTokens& c, int shadowAlpha,
                                 int padding)
{
    dialog->setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    dialog->setAttribute(Qt::WA_TranslucentBackground);
    auto* outer = new QVBoxLayout(dialog);
    outer->setContentsMargins(ShadowPad, ShadowPad, ShadowPad, ShadowPad);
    QFrame* card = Theme::createFramelessDialogBackground(dialog, c, shadowAlpha, padding);
    outer->addWidget(card);
    CardShape::attach(dialog, card, Theme::Rad_Lg);
    return card;
}

QFrame* CustomDialogs::buildHeader(const QString& objectName, const QString& title,
                                   const ColorTokens& c)
{
    auto* header = new QFrame;
    header->setObjectName(objectName);
    header->setFixedHeight(HeaderHeight);
    // The band lies inside the card's border, so its corners are that much tighter.
    header->setStyleSheet(
        QStringLiteral("QFrame#%3 { background-color: %1; border: none; "
                       "border-top-left-radius: %2px; "
                       "border-top-right-radius: %2px; "
                       "border-bottom-left-radius: 0px; "
                       "border-bottom-right-radius: 0px; }")
            .arg(Theme::shellBg(), QString::number(Theme::Rad_Lg - PaperBorder), objectName));
    auto* layout = new QHBoxLayout(header);
    layout->setContentsMargins(kHeaderSidePad, 0, kHeaderSidePad, 0);
    auto* label = new QLabel(title);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    label->setStyleSheet(QStringLiteral("color: %1; font-size: 18px; font-weight: bold; "
                                        "border: none; background: transparent;")
                             .arg(c.onSurface));
    layout->addWidget(label);
    return header;
}

QVBoxLayout* CustomDialogs::buildCardWithHeader(QDialog* dialog, const ColorTokens& c,
                                                const QString& headerName, const QString& title)
{
    auto* paper = new QVBoxLayout(buildCard(dialog, c, kHeaderedShadowAlpha, 0));
    paper->setContentsMargins(0, 0, 0, 0);
    paper->setSpacing(0);
    paper->addWidget(buildHeader(headerName, title, c));
    auto* body = new QVBoxLayout;
    body->setContentsMargins(BodyPad, BodyPad, BodyPad, BodyPad);
    body->setSpacing(BodySpacing);
    paper->addLayout(body);
    return body;
}

QPushButton* CustomDialogs::buildButton(const QString& text, const QString& style, QWidget* parent)
{
    auto* button = new QPushButton(text, parent);
    button->setFixedHeight(ButtonHeight);
    button->setStyleSheet(style);
    return button;
}

QList<GlyphButton*> CustomDialogs::buildIconGrid(QGridLayout* grid,
                                                 const QList<unsigned int>& glyphs, int columns,
                                                 QDialog* dialog)
{
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(IconGap);
    QList<GlyphButton*> buttons;
    for (int i = 0; i < glyphs.size(); ++i) {
        auto* button = new GlyphButton(dialog);
        button->setFixedSize(IconCell, IconCell);
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

void CustomDialogs::styleIconGrid(const QList<GlyphButton*>& buttons, unsigned int selected)
{
    const ColorTokens c = Theme::colors();
    for (GlyphButton* button : buttons) {
        const bool isSelected = glyphOf(button) == selected;
        button->setStyleSheet(Theme::iconChoiceStyle(c, isSelected));
        button->setGlyph(glyphOf(button), kIconGlyphPx, Theme::iconChoiceFg(c, isSelected));
    }
}

unsigned int CustomDialogs::glyphOf(const GlyphButton* button)
{
    return button->property(kGlyphProperty).toUInt();
}

int CustomDialogs::iconIndexOf(const QList<GlyphButton*>& buttons, const QObject* object)
{
    const auto found = std::find(buttons.begin(), buttons.end(), object);
    return found == buttons.end() ? -1 : static_cast<int>(found - buttons.begin());
}

void CustomDialogs::focusIcon(const QList<GlyphButton*>& buttons, int index)
{
    if (!buttons.isEmpty())
        buttons.at(std::clamp(index, 0, static_cast<int>(buttons.size()) - 1))->setFocus();
}

void CustomDialogs::focusIconOf(const QList<GlyphButton*>& buttons, unsigned int glyph)
{
    const auto found =
        std::find_if(buttons.begin(), buttons.end(),
                     [glyph](const GlyphButton* button) { return glyphOf(button) == glyph; });
    focusIcon(buttons, found == buttons.end() ? 0 : static_cast<int>(found - buttons.begin()));
}

bool CustomDialogs::moveInIconGrid(const QList<GlyphButton*>& buttons, int columns, int index,
                                   int key, QWidget* above, QWidget* below)
{
    switch (key) {
    case Qt::Key_Left:
        focusIcon(buttons, index - 1);
        return true;
    case Qt::Key_Right:
        focusIcon(buttons, index + 1);
        return true;
    case Qt::Key_Up:
        if (index >= columns)
            focusIcon(buttons, index - columns);
        else if (above)
            above->setFocus();
        return true;
    case Qt::Key_Down:
        if (index + columns < buttons.size())
            focusIcon(buttons, index + columns);
        else
            below->setFocus();
        return true;
    default:
        return false;
    }
}
