// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AppearanceSettingsPage.h"

#include "AccentPicker.h"
#include "AutoQuitBlocker.h"
#include "ChoiceRow.h"
#include "GlyphWidgets.h"
#include "Localization.h"
#include "PageNow.h"
#include "SettingsCard.h"
#include "Theme.h"

#include <QPointer>
#include <QVBoxLayout>

AppearanceSettingsPage::AppearanceSettingsPage(QWidget* parent) : QWidget(parent)
{
    QVBoxLayout* rows = makeSettingsColumn(this);
    rows->addWidget(buildThemeCard());
    rows->addWidget(buildAccentCard());
}

QWidget* AppearanceSettingsPage::buildThemeCard() const
{
    auto* themes =
        new ChoiceRow({{0, Tr::t("settings.app.theme_auto"), QStringLiteral("themeBtn_auto")},
                       {1, Tr::t("settings.app.theme_light"), QStringLiteral("themeBtn_light")},
                       {2, Tr::t("settings.app.theme_dark"), QStringLiteral("themeBtn_dark")}},
                      Theme::forceTheme, ChoiceRow::Shape::Pill);
    connect(themes, &ChoiceRow::chosen, this, &AppearanceSettingsPage::changeTheme);
    return new SettingsCard(Tr::t("settings.app.theme_title"), themes);
}

QWidget* AppearanceSettingsPage::buildAccentCard() const
{
    auto* swatch =
        new AccentSwatchButton(Theme::seedColor(), QColor(Theme::colors().outline), nullptr);
    swatch->setObjectName(QStringLiteral("accentSwatch"));
    connect(swatch, &QPushButton::clicked, this, &AppearanceSettingsPage::askForAccent);
    return new SettingsCard(Tr::t("settings.app.accent_title"), swatch);
}

void AppearanceSettingsPage::changeTheme(int mode)
{
    if (mode == Theme::forceTheme)
        return;
    const AutoQuitBlocker blocker; // the rebuild takes the focus away for a moment
    Theme::saveForceTheme(mode);
    emit appearanceChanged();
}

void AppearanceSettingsPage::askForAccent()
{
    const QPointer<AppearanceSettingsPage> self(this);
    const QPointer<QWidget> owner(window());
    const auto hex = AccentPicker::ask(this);
    if (!hex)
        return;
    Theme::saveSeedColor(*hex);
    if (AppearanceSettingsPage* page = pageNow(self, owner))
        emit page->appearanceChanged();
}
