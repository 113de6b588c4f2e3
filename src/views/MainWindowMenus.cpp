// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// The menus of the window. What they are about may vanish while they are open, by an import for
// example; then a choice does nothing.

#include "ActionsMenu.h"
#include "GlyphWidgets.h"
#include "HomeView.h"
#include "IconHelper.h"
#include "ItemRoles.h"
#include "LauncherModel.h"
#include "Localization.h"
#include "MainWindow.h"
#include "SettingsView.h"

#include <QApplication>
#include <QListWidget>
#include <QTimer>

#include <utility>

namespace
{

constexpr int kPageChangeMs = 300; // outlasts the dip of a change of page

} // namespace

void MainWindow::restoreFocusAfterMenuCancel(QWidget* widget)
{
    if (widget)
        widget->setFocus();
}

void MainWindow::showContextMenu(const QPoint& pos)
{
    if (!m_homeView)
        return;
    const QListWidget* list = m_homeView->list();
    if (QListWidgetItem* item = list->itemAt(pos))
        showItemActionsMenu(item, list->viewport()->mapToGlobal(pos));
}

void MainWindow::showContextMenuForCurrentItem()
{
    if (!m_homeView)
        return;
    const QListWidget* list = m_homeView->list();
    if (QListWidgetItem* item = list->currentItem()) {
        const QPoint center = list->visualItemRect(item).center();
        showItemActionsMenu(item, list->viewport()->mapToGlobal(center));
    }
}

void MainWindow::showItemActionsMenu(QListWidgetItem* item, const QPoint& globalAnchor)
{
    if (!m_homeView || !item || isReordering())
        return;
    m_homeView->list()->setCurrentItem(item);
    const QString id = item->data(ItemRoles::RoleElementId).toString();
    QString category;
    int index = -1;
    const bool isKnown = locateElementById(id, category, index);
    ActionsMenu::Popup popup(this);
    popup.addRow(Glyph::Edit, Tr::t("actions.edit_shortcut"), [this, id, &popup] {
        if (hasItem(id))
            openItemEditor(id);
        else
            popup.restoreFocus();
    });
    if (isKnown)
        addSectionItemRows(popup, id, category, globalAnchor);
    popup.addRow(Glyph::Delete, Tr::t("actions.delete_shortcut"), [this, id, &popup] {
        if (hasItem(id))
            openItemDeleteConfirm(id);
        else
            popup.restoreFocus();
    });
    popup.addCancel();
    popup.execAt(globalAnchor);
}

/// The rows for an item whose section is known.
void MainWindow::addSectionItemRows(ActionsMenu::Popup& popup, const QString& itemId,
                                    const QString& category, const QPoint& globalAnchor)
{
    popup.addRow(Glyph::ContentCopy, Tr::t("actions.duplicate_shortcut"),
                 [this, itemId, category, &popup] {
                     if (!duplicateItem(category, itemId))
                         popup.restoreFocus();
                 });
    if (m_model->data().categories.size() < 2)
        return;
    const QPointer<QWidget> focusBefore = QApplication::focusWidget();
    popup.addRow(Glyph::DriveFileMove, Tr::t("actions.move_item"),
                 [this, itemId, category, globalAnchor, focusBefore] {
                     showMoveToSectionMenu(itemId, category, globalAnchor, focusBefore);
                 });
}

bool MainWindow::duplicateItem(const QString& category, const QString& itemId)
{
    QString newId;
    if (!m_model->duplicateItem(category, itemId, &newId))
        return false;
    m_homeView->selectItemById(newId);
    focusGrid();
    return true;
}

void MainWindow::showMoveToSectionMenu(const QString& itemId, const QString& fromCat,
                                       const QPoint& globalAnchor,
                                       const QPointer<QWidget>& focusBefore)
{
    QStringList targets = m_model->data().categories;
    targets.removeAll(fromCat);
    if (targets.isEmpty()) {
        restoreFocusAfterMenuCancel(focusBefore);
        return;
    }
    ActionsMenu::Popup popup(this);
    for (const QString& target : std::as_const(targets)) {
        popup.addRow(m_model->getCategoryIcon(target), target, [this, itemId, fromCat, target] {
            if (m_model->moveItemToCategory(fromCat, itemId, target))
                focusGrid();
        });
    }
    popup.addCancel();
    if (!popup.execAt(globalAnchor))
        restoreFocusAfterMenuCancel(focusBefore);
}

void MainWindow::showCategoryActionsMenuFor(const QString& category)
{
    if (!m_homeView || category.isEmpty() || !hasSection(category) || isReordering())
        return;
    if (category == m_model->currentCategory()) {
        showCategoryActionsMenu();
        return;
    }
    m_model->setCurrentCategory(category);
    refreshCategories();
    QTimer::singleShot(0, this, [this, category] {
        if (category == m_model->currentCategory())
            showCategoryActionsMenu();
    });
}

void MainWindow::showCategoryActionsMenu()
{
    const QWidget* anchor = m_homeView ? m_homeView->selectedCategoryButton() : nullptr;
    if (!anchor)
        return;
    const QString category = m_model->currentCategory();
    ActionsMenu::Popup popup(this);
    popup.addRow(Glyph::Add, Tr::t("actions.add_shortcut"), [this] { openItemEditor({}); });
    popup.addRow(Glyph::Reorder, Tr::t("actions.reorder_items"), [this] {
        if (m_homeView)
            m_homeView->enterReorderMode();
    });
    popup.addSeparator();
    popup.addRow(Glyph::Edit, Tr::t("actions.edit_section"), [this, category, &popup] {
        finishSectionFlow(editSectionViaDialog(this, category), popup);
    });
    popup.addRow(Glyph::Delete, Tr::t("actions.delete_section"), [this, category, &popup] {
        finishSectionFlow(deleteSectionWithConfirm(this, category), popup);
    });
    popup.addRow(Glyph::SwapHoriz, Tr::t("actions.reorder_sections"), [this] {
        if (m_homeView)
            m_homeView->enterSectionReorderMode();
    });
    popup.addCancel();
    popup.execAtCenter(anchor);
}

void MainWindow::finishSectionFlow(bool hasChanged, const ActionsMenu::Popup& popup)
{
    if (hasChanged && m_homeView)
        m_homeView->refreshUI(-1, false);
    popup.restoreFocus();
}

void MainWindow::showAddActionsMenu()
{
    const QWidget* anchor = m_homeView ? m_homeView->addButton() : nullptr;
    if (!anchor)
        return;
    ActionsMenu::Popup popup(this);
    popup.addRow(Glyph::Add, Tr::t("actions.add_shortcut"), [this] { openItemEditor({}); });
    popup.addRow(Glyph::CreateNewFolder, Tr::t("actions.add_section"), [this, &popup] {
        if (addSectionViaDialog(this))
            refreshCategories();
        popup.restoreFocus();
    });
    popup.addCancel();
    popup.execAtCenter(anchor);
}

void MainWindow::showTemplateActionsMenu()
{
    const QWidget* anchor = m_homeView ? m_homeView->templateButton() : nullptr;
    if (!anchor)
        return;
    const QString category = m_model->currentCategory();
    const bool hasTemplates = !m_model->templates().isEmpty();
    ActionsMenu::Popup popup(this);
    if (!category.isEmpty()) {
        popup.addRow(Glyph::BookmarkAdd, Tr::t("template.save_as"), [this, category, &popup] {
            saveSectionAsTemplate(this, category);
            popup.restoreFocus();
        });
    }
    if (hasTemplates) {
        popup.addRow(Glyph::Bookmark, Tr::t("template.from_template"), [this, &popup] {
            startFromTemplate();
            popup.restoreFocus();
        });
    }
    if (!category.isEmpty() || hasTemplates)
        popup.addSeparator();
    popup.addRow(Glyph::Bookmarks, Tr::t("template.manage"), [this] { manageTemplates(); });
    popup.addCancel();
    popup.execAtCenter(anchor);
}

void MainWindow::startFromTemplate()
{
    const QString name = m_homeView ? pickTemplateName(m_homeView->templateButton()) : QString();
    if (!name.isEmpty())
        createSectionFromTemplateViaDialog(this, name);
}

void MainWindow::manageTemplates()
{
    const int delayMs = isSettingsPage() ? 0 : kPageChangeMs;
    goToPage(SettingsPage);
    QTimer::singleShot(delayMs, this, [this] {
        // The user may have left in the meantime.
        if (isSettingsPage())
            m_settingsView->openCategoryByTitle(Tr::t("settings.cat_template"));
    });
}

QString MainWindow::pickTemplateName(QWidget* anchorWidget)
{
    if (!anchorWidget || m_model->templates().isEmpty())
        return {};
    QString chosen;
    ActionsMenu::Popup popup(this);
    for (const SectionTemplate& tpl : m_model->templates()) {
        popup.addRow(tpl.icon, tpl.name, [&chosen, name = tpl.name] { chosen = name; });
    }
    popup.addCancel();
    popup.execAtCenter(anchorWidget);
    return chosen;
}
