// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "DataSettingsPage.h"

#include "AutoQuitBlocker.h"
#include "CustomMessageBox.h"
#include "FileChooser.h"
#include "Files.h"
#include "LauncherModel.h"
#include "Localization.h"
#include "PageNow.h"
#include "SettingsCard.h"
#include "SettingsPill.h"
#include "StorageManager.h"
#include "Theme.h"

#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

namespace
{

const QString kExportName = QStringLiteral("brelvanti_data.json");
const QString kFilter = QStringLiteral("JSON Files (*.json)");

QString errorPillStyle()
{
    const ColorTokens c = Theme::colors();
    return QStringLiteral(
               "QPushButton { background-color: %1; color: %2; border: 1px solid transparent; "
               "border-radius: 18px; padding: 0 16px; font-size: 12px; font-weight: bold; "
               "outline: 0; }"
               "QPushButton:hover { background-color: %3; color: %4; }"
               "QPushButton:focus { background-color: %3; color: %4; outline: 0; }")
        .arg(c.errorContainer, c.onErrorContainer, c.errorColor, c.onError);
}

bool isConfirmed(QWidget* window, const QString& titleKey, const QString& textKey,
                 const QString& confirmKey)
{
    return CustomMessageBox::customQuestion(window, Tr::t(titleKey), Tr::t(textKey),
                                            {Tr::t(confirmKey), Tr::t("dialog.btn_cancel")}, 1,
                                            {0}) == 0;
}

} // namespace

DataSettingsPage::DataSettingsPage(LauncherModel* model, const QString& jsonPath, QWidget* parent)
    : QWidget(parent), m_model(model), m_jsonPath(jsonPath)
{
    QPushButton* exporter =
        SettingsPill::make(Tr::t("settings.data.btn_export"), QStringLiteral("btnExportData"));
    QPushButton* importer =
        SettingsPill::make(Tr::t("settings.data.btn_import"), QStringLiteral("btnImportData"));
    auto* resetter = new QPushButton(Tr::t("settings.data.btn_reset"));
    SettingsPill::shape(resetter, QStringLiteral("btnResetData"));
    resetter->setStyleSheet(errorPillStyle());

    QVBoxLayout* rows = makeSettingsColumn(this);
    rows->addWidget(
        buildRow("settings.data.export_title", exporter, &DataSettingsPage::exportData));
    rows->addWidget(
        buildRow("settings.data.import_title", importer, &DataSettingsPage::importData));
    rows->addWidget(buildRow("settings.data.reset_title", resetter, &DataSettingsPage::resetData));
}

QWidget* DataSettingsPage::buildRow(const QString& titleKey, QPushButton* button,
                                    void (DataSettingsPage::*act)()) const
{
    button->setMinimumWidth(MinButtonWidth);
    connect(button, &QPushButton::clicked, this, act);
    return new SettingsCard(Tr::t(titleKey), button);
}

// A rebuild may take the page away while one of these dialogs is open. What the user has answered
// counts all the same, as long as there is a window to tell the outcome in.

void DataSettingsPage::exportData()
{
    const AutoQuitBlocker blocker;
    const QString jsonPath = m_jsonPath;
    const QPointer<QWidget> owner(window());
    const QString target =
        FileChooser::saveFile(owner, QStringLiteral("Export Data"), kExportName, kFilter);
    if (target.isEmpty() || !owner)
        return;
    // On disk is all there is, and success is what is told of any outcome.
    copyOver(jsonPath, target);
    CustomMessageBox::information(owner, Tr::t("settings.data.export_success_title"),
                                  Tr::t("settings.data.export_success_msg").arg(target));
}

void DataSettingsPage::importData()
{
    const AutoQuitBlocker blocker;
    LauncherModel* const model = m_model;
    const Teller tell = teller();
    const QPointer<QWidget> owner(window());
    const QString source = FileChooser::openFile(owner, QStringLiteral("Import Data"), kFilter);
    if (source.isEmpty() || !owner)
        return;
    if (!isConfirmed(owner, "settings.data.import_confirm_title",
                     "settings.data.import_confirm_msg", "dialog.btn_yes") ||
        !owner)
        return;
    const LauncherModel::Replacement outcome = model->importData(source);
    if (outcome == LauncherModel::Replacement::Unreadable) {
        CustomMessageBox::warning(owner, Tr::t("settings.data.import_fail_title"),
                                  Tr::t("settings.data.import_fail_msg").arg(source));
        return;
    }
    tell(outcome, "settings.data.import_success_title", "settings.data.import_success_msg");
}

void DataSettingsPage::resetData()
{
    const AutoQuitBlocker blocker;
    LauncherModel* const model = m_model;
    const Teller tell = teller();
    const QPointer<QWidget> owner(window());
    if (!isConfirmed(owner, "settings.data.reset_confirm_title", "settings.data.reset_confirm_msg",
                     "settings.data.btn_reset_confirm") ||
        !owner)
        return;
    tell(model->resetData(), "settings.data.reset_success_title",
         "settings.data.reset_success_msg");
}

DataSettingsPage::Teller DataSettingsPage::teller()
{
    return [self = QPointer(this), owner = QPointer(window()),
            previous = StorageManager::previousPath(m_jsonPath)](LauncherModel::Replacement outcome,
                                                                 const QString& titleKey,
                                                                 const QString& textKey) {
        if (outcome == LauncherModel::Replacement::NotKept) {
            CustomMessageBox::warning(
                owner, QStringLiteral("Error"),
                QStringLiteral("The present data could not be kept, so nothing has been changed. "
                               "This file could not be written:\n%1")
                    .arg(previous));
            return;
        }
        CustomMessageBox::information(owner, Tr::t(titleKey), Tr::t(textKey));
        if (DataSettingsPage* page = pageNow(self, owner))
            emit page->dataChanged();
    };
}
