// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FontResource.h"
#include "TestFonts.h"
#include "Theme.h"

#include <QApplication>
#include <QFont>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionButton>

/// Whether texts fit where they are shown.
namespace FittingText
{

/// The fonts of the program, at the size and weight in which it starts.
inline void useProgramFont()
{
    addFontResource(":/fonts/PlusJakartaSans-VariableFont_wght.ttf");
    TestFonts::addWeights();
    QFont font;
    font.setFamilies(FontTokens::Families);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setPointSize(10);
    font.setWeight(QFont::DemiBold);
    QApplication::setFont(font);
}

/// Where a button puts its text: inside the border and the padding of its style sheet.
inline QRect contentsOf(const QPushButton& button)
{
    QStyleOptionButton option;
    option.initFrom(&button);
    option.text = button.text();
    return button.style()->subElementRect(QStyle::SE_PushButtonContents, &option, &button);
}

} // namespace FittingText
