// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AccentPicker.h"

#include "AutoQuitBlocker.h"
#include "CustomColorPickerDialog.h"
#include "CustomMessageBox.h"
#include "Localization.h"
#include "ModalRun.h"

#include <QColor>
#include <QWidget>

std::optional<QString> AccentPicker::ask(QWidget* parent, const QString& initialHex)
{
    const AutoQuitBlocker blocker;
    // Not above the page that asks: it may be rebuilt meanwhile, and would take the dialog along.
    QWidget* window = parent ? parent->window() : nullptr;
    ModalRun<CustomColorPickerDialog> dialog(window, initialHex);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    const QString hex = dialog->getHex();
    if (QColor::isValidColorName(hex))
        return hex;
    CustomMessageBox::information(window, Tr::t("settings.app.err_color"),
                                  QStringLiteral("Please enter a valid Hex code (e.g. #FF0000)."));
    return std::nullopt;
}
