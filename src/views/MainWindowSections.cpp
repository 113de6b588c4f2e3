// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// The flows that make, change and remove sections and templates. What they are about may vanish
// while a dialog is open, by an import for example; then they end without a word.

#include "AddEditCategoryDialog.h"
#include "AutoQuitBlocker.h"
#include "CustomMessageBox.h"
#include "LauncherModel.h"
#include "Localization.h"
#include "MainWindow.h"
#include "RowPainting.h"

#include <optional>

namespace
{

constexpr int kMaxNameWidth = 4096; // pixels of a name that a question shows

const QString kValidationTitle = QStringLiteral("Validation"); // the same in every language

/// What is named in the dialog, and what it says about it.
struct Naming
{
    const char* titleKey;
    const char* labelKey;
    const char* placeholderKey;
    const char* emptyErrKey;
};

constexpr Naming sectionNaming(const char* titleKey)
{
    return {titleKey, "dialog.lbl_section_name", "dialog.section_name_placeholder",
            "dialog.err_section_empty"};
}

constexpr Naming kNewSection = sectionNaming("dialog.add_section_title");
constexpr Naming kEditedSection = sectionNaming("dialog.edit_section_title");
constexpr Naming kSectionFromTemplate = sectionNaming("template.use_dialog_title");
constexpr Naming kTemplate{"template.save_dialog_title", "template.lbl_name",
                           "template.name_placeholder", "template.err_name_empty"};

struct NameAndIcon
{
    QString name;
    uint icon = SectionTemplate::DefaultIcon;
    bool operator==(const NameAndIcon&) const = default;
};

/// What dialogs are made children of: a rebuild deletes the widgets in a window while they wait,
/// but never the window.
QWidget* windowOf(QWidget* widget)
{
    return widget ? widget->window() : nullptr;
}

/// \returns nothing if the user gave up.
std::optional<NameAndIcon> ask(QWidget* parent, const Naming& naming, const NameAndIcon& present)
{
    AddEditCategoryDialog dialog(windowOf(parent), Tr::t(naming.titleKey), present.name,
                                 present.icon, naming.labelKey, naming.placeholderKey,
                                 naming.emptyErrKey);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return NameAndIcon{dialog.getName(), dialog.getIcon()};
}

void warn(QWidget* parent, const QString& title, const char* textKey)
{
    CustomMessageBox::warning(windowOf(parent), title, Tr::t(textKey));
}

bool warnOfEmptyName(QWidget* parent)
{
    warn(parent, kValidationTitle, "dialog.err_section_empty");
    return false;
}

/// Passes on whether the model took the name of a section, once the user knows of a refusal.
bool reportTaken(QWidget* parent, bool isDone)
{
    if (!isDone)
        warn(parent, kValidationTitle, "dialog.err_section_exists");
    return isDone;
}

/// A question about something with a name, of which only so much is read as anybody would.
QString question(const char* textKey, const QString& name)
{
    return Tr::t(textKey).arg(RowPainting::visiblePart(name, kMaxNameWidth));
}

} // namespace

bool MainWindow::addSectionViaDialog(QWidget* parent)
{
    const AutoQuitBlocker blocker;
    const DimBackdrop backdrop(m_homeView);
    const auto answer = ask(parent, kNewSection, {});
    if (!answer)
        return false;
    if (answer->name.isEmpty())
        return warnOfEmptyName(parent);
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
        return warnOfEmptyName(parent);
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
        question("settings.del_section_msg", cat),
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
        warn(parent, Tr::t("template.save_as"), "template.err_empty_section");
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
        question("template.confirm_overwrite_msg", templateName),
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
