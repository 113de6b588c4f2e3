// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SystemSettingsPage.h"

#include "AutoQuitBlocker.h"
#include "CustomMessageBox.h"
#include "GlobalHotkeyController.h"
#include "Localization.h"
#include "SettingsCard.h"
#include "SettingsPill.h"
#include "Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

SystemSettingsPage::SystemSettingsPage(HotkeyRecorderFilter::ControllerGetter getMainHotkey,
                                       HotkeyRecorderFilter::ControllerGetter getSpotlightHotkey,
                                       QWidget* parent)
    : QWidget(parent),
      m_getMainHotkey(std::move(getMainHotkey)),
      m_getSpotlightHotkey(std::move(getSpotlightHotkey))
{
    QVBoxLayout* rows = makeSettingsColumn(this);
    rows->addWidget(buildRow({Tr::t("settings.system.hotkey_title"), QStringLiteral("main"),
                              &HotkeyManager::mainWindowSlot, m_getMainHotkey}));
    rows->addWidget(
        buildRow({Tr::t("settings.system.hotkey_spotlight_title"), QStringLiteral("spotlight"),
                  &HotkeyManager::spotlightSlot, m_getSpotlightHotkey}));
}

QWidget* SystemSettingsPage::buildRow(const Row& row)
{
    return new SettingsCard(row.title, buildControl(row));
}

QWidget* SystemSettingsPage::buildControl(const Row& row)
{
    auto* reset = SettingsPill::make(Tr::t("settings.sys.btn_reset"),
                                     QStringLiteral("hotkeyReset_") + row.objectName);
    auto* record = SettingsPill::make(Tr::t("settings.system.hotkey_record_btn"),
                                      QStringLiteral("hotkeyRecord_") + row.objectName);
    auto* display = new QLabel;
    display->setAlignment(Qt::AlignCenter);
    display->setFixedHeight(SettingsPill::Height);
    auto* hint = new QLabel;
    hint->setWordWrap(true);
    hint->setStyleSheet(
        Theme::textOnCardStyle(Theme::colors().onSurfaceVariant, FontTokens::SizeSm));

    auto* control = new QWidget;
    auto* column = new QVBoxLayout(control);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Theme::Sp_Sm);
    auto* line = new QHBoxLayout;
    line->setSpacing(Theme::Sp_Sm);
    for (QWidget* each : std::initializer_list<QWidget*>{reset, record, display})
        line->addWidget(each);
    column->addLayout(line);
    column->addWidget(hint);

    auto* filter =
        new HotkeyRecorderFilter(record, display, hint, Theme::colors(), this, row.getController,
                                 row.slot, Theme::smallPillStyle(Theme::colors()));
    connect(reset, &QPushButton::clicked, filter, [this, row, filter] {
        if (resetHotkey(row))
            filter->stopListening(); // which shows what is in force now
    });
    return control;
}

bool SystemSettingsPage::resetHotkey(const Row& row)
{
    GlobalHotkeyController* controller = row.getController ? row.getController() : nullptr;
    if (!controller)
        return false;
    const QString combo = row.slot->defaultCombo;
    const HotkeyManager::ValidationResult result =
        HotkeyManager::validateForChange(combo, controller->windowId(), *row.slot);
    if (result.valid && controller->changeHotkeyAndSave(combo))
        return true;
    const AutoQuitBlocker blocker;
    // Not above the page: it may be rebuilt meanwhile, and would take the message along.
    CustomMessageBox::warning(window(), QStringLiteral("Invalid Hotkey"), result.message);
    return false;
}
