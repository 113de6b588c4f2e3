// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "LayoutSettingsPage.h"

#include "ChoiceRow.h"
#include "Localization.h"
#include "SettingsCard.h"
#include "Theme.h"

#include <QVBoxLayout>

LayoutSettingsPage::LayoutSettingsPage(QWidget* parent) : QWidget(parent)
{
    QList<ChoiceRow::Choice> choices;
    for (const int columns : {2, 3, 4}) {
        const QString number = QString::number(columns);
        choices.append({columns, number, QStringLiteral("gridColBtn_") + number});
    }
    auto* row = new ChoiceRow(choices, Theme::gridColumns, ChoiceRow::Shape::Round);
    connect(row, &ChoiceRow::chosen, this, &LayoutSettingsPage::changeGridColumns);
    makeSettingsColumn(this)->addWidget(
        new SettingsCard(Tr::t("settings.layout.grid_columns"), row));
}

void LayoutSettingsPage::changeGridColumns(int columns)
{
    if (columns == Theme::gridColumns)
        return;
    Theme::saveGridColumns(columns);
    emit layoutModeChanged();
}
