// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SettingsPill.h"

#include "Theme.h"

#include <QPushButton>

QPushButton* SettingsPill::make(const QString& text, const QString& objectName)
{
    auto* button = new QPushButton(text);
    shape(button, objectName);
    button->setStyleSheet(Theme::smallPillStyle(Theme::colors()));
    return button;
}

void SettingsPill::shape(QPushButton* button, const QString& objectName)
{
    button->setObjectName(objectName);
    button->setFixedHeight(Height);
    button->setCursor(Qt::PointingHandCursor);
}
