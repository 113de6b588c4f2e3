// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Pixels.h"
#include "SettingsCard.h"
#include "Theme.h"

#include <QLabel>
#include <QList>
#include <QPushButton>
#include <QStringList>
#include <QVBoxLayout>
#include <QWidget>

/// Looks at what small pages of settings have in common.
namespace SettingsPageDriver
{

/// The cards from top to bottom.
inline QList<QFrame*> cardsOf(QWidget& page)
{
    QList<QFrame*> cards;
    collectSettingsRows(&page, cards);
    return cards;
}

/// The names of the cards from top to bottom.
inline QStringList titlesOf(QWidget& page)
{
    QStringList titles;
    for (const QFrame* card : cardsOf(page))
        titles.append(card->findChild<QLabel*>(QStringLiteral("titleStatic"))->text());
    return titles;
}

inline QPushButton* button(const QWidget& page, const char* name)
{
    return page.findChild<QPushButton*>(QLatin1String(name));
}

/// The object names of the buttons that are checked.
inline QStringList checkedOf(const QWidget& page)
{
    QStringList names;
    for (const QPushButton* one : page.findChildren<QPushButton*>()) {
        if (one->isChecked())
            names.append(one->objectName());
    }
    return names;
}

/// The colour of a button a little inside the middle of its left end, beside any text.
inline QColor fillOf(QWidget& page, const QPushButton& one)
{
    const QPoint place(5, one.height() / 2);
    return Pixels::imageOf(page).pixelColor(one.mapTo(&page, place));
}

} // namespace SettingsPageDriver
