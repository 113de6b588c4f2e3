// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "LanguageMenu.h"

#include "ActionsMenu.h"

#include <QPointer>
#include <QWidget>

std::optional<Lang> LanguageMenu::ask(QWidget* button)
{
    const QPointer<QWidget> anchor(button);
    std::optional<Lang> chosen;
    ActionsMenu::Popup popup(button);
    for (const Lang lang : Tr::all())
        popup.addRow(0, Tr::nameFor(lang), [&chosen, lang] { chosen = lang; });
    popup.addCancel();
    popup.execBelow(button);
    if (anchor)
        anchor->setFocus();
    return chosen;
}
