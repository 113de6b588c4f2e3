// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// The flows that make, change and remove sections and templates. What they are about may vanish
// while a dialog is open, by an import for example; then they end without a word.

#include "AutoQuitBlocker.h"
#include "CustomMessageBox.h"
#include "LauncherModel.h"
#include "Localization.h"
#include "MainWindow.h"
#include "NameQuestions.h"

namespace
{

using NameQuestions::ask;
using NameQuestions::NameAndIcon;
using NameQuestions::Naming;
using NameQuestions::refuse;
using NameQuestions::windowOf;

constexpr Naming kNewSection = NameQuestions::sectionNaming("dialog.add_section_title");
constexpr Naming kEditedSection = NameQuestions::sectionNaming("dialog.edit_section_title");
constexpr Naming kSectionFromTemplate = NameQuestions::sectionNaming("template.use_dialog_title");
constexpr Naming kTemplate = NameQuestions::templateNaming("template.save_dialog_title");

bool refuseEmptyName(QWidget* parent)
{
    refuse(parent, "dialog.err_section_empty");
    return false;
}

/// Passes on whether the model took the name of a section, once the user knows of a refusal.
bool reportTaken(QWidget* parent, bool isDone)
{
    if (!isDone)
        refuse(parent, "dialog.err_section_exists");
    return isDone;
}

} // namespace

bool MainWindow::addSectionViaDialog(QWidget* parent)
{
    const AutoQuitBlocker blocker;
    const DimBackdrop backdrop(m_homeView);
    const auto answer = [this, parent] {
        const TourCompanion companion(this, "tour.section_dialog_title",
                                      "tour.section_dialog_desc");
        return ask(parent, kNewSection, {});
    }();
    if (!answer)
        return false;
    if (answer->name.isEmpty())
        return refuseEmptyName(parent);
    return reportTaken(parent, m_model->addCategory(answer->name, answer->icon));
}

bool MainWindow::editSectionViaDialog(QWidget* parent, const QString& oldName)
{
    if (oldName.isEmpty() || !hasSection(oldName))
        return false;
    const AutoQuitBlocker blocker;
    const DimBackdrop backdrop(m_homeView);
    const NameAndIcon present{oldName, m_model->getCategoryIcon(oldName)};
    const auto answer = ask(parent, kEditedSection, present);
    if (!answer)
        return false;
    if (answer->name.isEmpty())
        return refuseEmptyName(parent);
    if (*answer == present || !hasSection(oldName))
        return false;
    return reportTaken(parent, m_model->editCategory(oldName, answer->name, answer->icon));
}

bool MainWindow::deleteSectionWithConfirm(QWidget* parent, const QString& cat)
{
    if (cat.isEmpty() || !hasSection(cat))
        return false;
    const AutoQuitBlocker blocker;
    const DimBackdrop backdrop(m_homeView);
    const int answer = CustomMessageBox::customQuestion(
        windowOf(parent), Tr::t("settings.del_section_title"),
        NameQuestions::textAbout("settings.del_section_msg", cat),
        {Tr::t("dialog.btn_delete"), Tr::t("dialog.btn_cancel")}, 1, {0});
    if (answer != 0 || !hasSection(cat))
        return false;
    m_model->deleteCategory(cat);
    if (m_model->data().categories.isEmpty())
        m_model->addCategory(QStringLiteral("Default"), SectionTemplate::DefaultIcon);
    return true;
}

bool MainWindow::saveSectionAsTemplate(QWidget* parent, const QString& cat)
{
    if (cat.isEmpty())
        return false;
    const AutoQuitBlocker blocker;
    const DimBackdrop backdrop(m_homeView);
    if (m_model->getItems(cat).isEmpty()) {
        CustomMessageBox::warning(windowOf(parent), Tr::t("template.save_as"),
                                  Tr::t("template.err_empty_section"));
        return false;
    }
    const auto answer = ask(parent, kTemplate, {cat, m_model->getCategoryIcon(cat)});
    if (!answer || answer->name.isEmpty() || !confirmOverwrite(parent, answer->name))
        return false;
    SectionTemplate tpl{answer->name, answer->icon, m_model->getItems(cat)};
    if (tpl.items.isEmpty())
        return false;
    for (LauncherElement& item : tpl.items)
        item.id.clear();
    m_model->saveTemplate(tpl);
    return true;
}

bool MainWindow::confirmOverwrite(QWidget* parent, const QString& templateName) const
{
    if (m_model->templateIndexOf(templateName) < 0)
        return true;
    const int answer = CustomMessageBox::customQuestion(
        windowOf(parent), Tr::t("template.confirm_overwrite_title"),
        NameQuestions::textAbout("template.confirm_overwrite_msg", templateName),
        {Tr::t("dialog.btn_save"), Tr::t("dialog.btn_cancel")}, 0, {});
    return answer == 0;
}

bool MainWindow::createSectionFromTemplateViaDialog(QWidget* parent, const QString& templateName)
{
    const int index = m_model->templateIndexOf(templateName);
    if (index < 0)
        return false;
    const AutoQuitBlocker blocker;
    const DimBackdrop backdrop(m_homeView);
    const uint icon = m_model->templates().at(index).icon;
    const auto answer =
        ask(parent, kSectionFromTemplate, {m_model->suggestSectionName(templateName), icon});
    if (!answer || answer->name.isEmpty() || m_model->templateIndexOf(templateName) < 0)
        return false;
    return reportTaken(
        parent, m_model->createCategoryFromTemplate(templateName, answer->name, answer->icon));
}
