// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "LanguageSettingsPage.h"

#include "LanguageMenu.h"
#include "Localization.h"
#include "SettingsCard.h"
#include "Theme.h"

#include <QPushButton>
#include <QVBoxLayout>

namespace
{

constexpr int kButtonHeight = 36;

QString buttonStyle()
{
    const ColorTokens c = Theme::colors();
    const QString& fill = c.surfaceContainerHighest;
    return QStringLiteral(
               "QPushButton#langPickBtn { background-color: %1; color: %2; border: none; "
               "border-radius: 18px; padding: 0 16px; font-size: 12px; "
               "font-weight: bold; outline: 0; min-width: 150px; text-align: left; }"
               "QPushButton#langPickBtn:hover { background-color: %3; color: %2; }"
               "QPushButton#langPickBtn:focus { background-color: %4; color: %2; }")
        .arg(fill, c.onSurface, Theme::stateLayerOn(fill, c.onSurface, Theme::StateHover),
             Theme::stateLayerOn(fill, c.onSurface, Theme::StateFocus));
}

} // namespace

LanguageSettingsPage::LanguageSettingsPage(QWidget* parent) : QWidget(parent)
{
    auto* button = new QPushButton(Tr::nameFor(Tr::currentLang));
    button->setObjectName(QStringLiteral("langPickBtn"));
    button->setCursor(Qt::PointingHandCursor);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setFixedHeight(kButtonHeight);
    button->setStyleSheet(buttonStyle());
    connect(button, &QPushButton::clicked, this, [this, button] { showLangMenu(button); });
    makeSettingsColumn(this)->addWidget(new SettingsCard(Tr::t("settings.sys.lang_title"), button));
}

void LanguageSettingsPage::showLangMenu(QPushButton* button)
{
    const auto lang = LanguageMenu::ask(button);
    if (!lang || *lang == Tr::currentLang)
        return;
    Tr::setLanguage(*lang);
    emit languageChanged();
}
