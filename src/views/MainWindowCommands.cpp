// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// The keys of the window, and what is done to the item that they mean.

#include "ActionsPanel.h"
#include "HomeView.h"
#include "ItemEditorPanel.h"
#include "ItemRoles.h"
#include "Keys.h"
#include "LaunchDispatcher.h"
#include "LauncherModel.h"
#include "Localization.h"
#include "MainWindow.h"
#include "SettingsView.h"

#include <QApplication>
#include <QKeyEvent>
#include <QListWidget>
#include <QScrollArea>
#include <QStackedWidget>
#include <QTimer>
#include <QVector>

#include <utility>

namespace
{

bool isTextEditor(const QWidget* widget)
{
    return widget && (widget->inherits("QLineEdit") || widget->inherits("QPlainTextEdit") ||
                      widget->inherits("QTextEdit"));
}

/// True if Backspace deletes a character where the focus is. The parent is asked as well, for a
/// text's viewport.
bool isTextEditorFocused()
{
    const QWidget* focused = QApplication::focusWidget();
    return focused && (isTextEditor(focused) || isTextEditor(focused->parentWidget()));
}

/// The guards that live, in the order in which they were made.
QVector<MainWindow::DimBackdrop*>& dimBackdrops()
{
    static QVector<MainWindow::DimBackdrop*> s_backdrops;
    return s_backdrops;
}

} // namespace

MainWindow::DimBackdrop::DimBackdrop(HomeView* homeView) : view(homeView)
{
    dimBackdrops().append(this);
    if (view)
        view->setDialogBackdropVisible(true);
}

MainWindow::DimBackdrop::~DimBackdrop()
{
    dimBackdrops().removeOne(this);
    if (view)
        view->setDialogBackdropVisible(false);
}

void MainWindow::DimBackdrop::takeOver(HomeView* homeView)
{
    for (DimBackdrop* backdrop : std::as_const(dimBackdrops())) {
        if (backdrop->view)
            continue;
        backdrop->view = homeView;
        homeView->setDialogBackdropVisible(true);
    }
}

bool MainWindow::handleKeyPress(QObject* watched, QKeyEvent* event)
{
    if (!m_homeView || !m_mainStack || !m_settingsView)
        return false;
    if (tourActive() && event->key() == Qt::Key_Tab)
        return true;
    if (isReordering())
        return m_homeView->handleKeyPress(watched, event);
    if (event->key() == Qt::Key_Tab)
        return handleTab();
    if (isSettingsPage())
        return m_settingsView->handleKeyPress(watched, event);
    if (!isHomePage())
        return false;
    if (isModalCardOpen())
        return handleModalCardKey(event);
    return m_homeView->handleKeyPress(watched, event);
}

bool MainWindow::isReordering() const
{
    return isHomePage() && m_homeView->isReorderMode();
}

bool MainWindow::isModalCardOpen() const
{
    return m_itemEditorOpen || m_homeView->actionsStep() != ActionsNone;
}

/// Tab leads to the other page and never along the widgets of one.
bool MainWindow::handleTab()
{
    if (isModalCardOpen())
        return true;
    if (isHomePage()) {
        goToSettings();
    } else {
        goToPage(HomePage);
        refreshCategories();
        m_homeView->categoryStrip()->setFocus();
    }
    return true;
}

bool MainWindow::handleModalCardKey(const QKeyEvent* event)
{
    if (!Keys::isBack(event->key()))
        return false;
    if (event->key() == Qt::Key_Backspace && isTextEditorFocused())
        return false;
    if (m_homeView->actionsStep() != ActionsNone)
        closeItemActionsPanel();
    if (m_itemEditorOpen)
        closeItemEditor(-1);
    return true;
}

void MainWindow::handleItemExecution(QListWidgetItem* item)
{
    if (!m_homeView || isReordering())
        return;
    const QListWidgetItem* row = item ? item : m_homeView->list()->currentItem();
    if (!row || !row->data(ItemRoles::RoleOriginalIndex).isValid())
        return;
    QString category;
    int index = -1;
    const QVector<LauncherElement>* items =
        locateElementById(row->data(ItemRoles::RoleElementId).toString(), category, index);
    if (!items || index < 0 || index >= items->size())
        return;
    // A copy: the document may change while the user reads that the program can't be started.
    const LauncherElement element = items->at(index);
    if (LaunchDispatcher::execute(element, this))
        fadeOutAndHide();
}

const QVector<LauncherElement>* MainWindow::locateElementById(const QString& id, QString& outCat,
                                                              int& outIndex) const
{
    return m_model->locateElementById(id, outCat, outIndex);
}

bool MainWindow::hasItem(const QString& itemId) const
{
    QString category;
    int index = -1;
    return locateElementById(itemId, category, index);
}

bool MainWindow::hasSection(const QString& category) const
{
    return m_model->data().categories.contains(category);
}

void MainWindow::openItemEditor(const QString& itemId)
{
    if (!m_homeView)
        return;
    endReorderMode(); // which would keep the keys from the form
    if (!m_itemEditorOpen) {
        m_focusBeforeEditor = focusedInHere();
        m_actionsStepBeforeEditor = m_homeView->actionsStep();
    }
    m_itemEditorOpen = true;
    m_homeView->setPreviewCardTitle(
        Tr::t(itemId.isEmpty() ? "actions.add_shortcut" : "actions.edit_shortcut"));
    m_homeView->previewStack()->setCurrentIndex(HomeView::PagePreviewEditor);
    QString category;
    int index = -1;
    if (itemId.isEmpty() || !locateElementById(itemId, category, index))
        category = m_model->currentCategory();
    m_homeView->itemEditorPanel()->openEditor(category, itemId);
    onTourItemFormOpened();
}

void MainWindow::closeItemEditor(int selectIndex)
{
    onTourItemFormClosed();
    m_itemEditorOpen = false;
    if (!m_homeView)
        return;
    const bool isCancelled = selectIndex == -1;
    const QString savedCat = m_homeView->itemEditorPanel()->editingCategory();
    // An item that went to another section takes the view along.
    if (selectIndex >= 0 && !savedCat.isEmpty() && savedCat != m_model->currentCategory() &&
        hasSection(savedCat)) {
        m_model->setCurrentCategory(savedCat);
        m_homeView->refreshCategories(selectIndex, isCancelled);
    } else {
        m_homeView->refreshUI(selectIndex, isCancelled);
    }
    if (isCancelled)
        restoreFocusAfterCancel();
    else
        focusGrid();
    QTimer::singleShot(0, this, [this, isCancelled] { settlePreviewAfterEditor(isCancelled); });
}

void MainWindow::restoreFocusAfterCancel()
{
    const bool hadPanel = m_actionsStepBeforeEditor != ActionsNone;
    // The panel comes back into view only when this turn of the event loop is over.
    if (m_focusBeforeEditor && (hadPanel || m_focusBeforeEditor->isVisible()))
        m_focusBeforeEditor->setFocus();
    else if (hadPanel)
        m_homeView->actionsPanel()->setFocus();
    else
        focusGrid();
}

void MainWindow::settlePreviewAfterEditor(bool keepActionsPanel)
{
    if (m_itemEditorOpen || !m_homeView)
        return;
    if (m_homeView->actionsStep() == ActionsNone) {
        m_homeView->updatePreviewPanel(m_homeView->list()->currentItem());
    } else if (keepActionsPanel) {
        m_homeView->previewStack()->setCurrentIndex(HomeView::PagePreviewActions);
        restoreFocusAfterCancel(); // which went when the card was out of view for a moment
    }
}

void MainWindow::focusGrid()
{
    // An empty list is not in view.
    if (m_homeView->list()->count() > 0)
        m_homeView->list()->setFocus();
    else
        m_homeView->categoryStrip()->setFocus();
}

void MainWindow::closeItemActionsPanel()
{
    if (!m_homeView)
        return;
    setTourOverlayVisible(true);
    m_actionsStepBeforeEditor = ActionsNone;
    m_homeView->actionsPanel()->reset();
    m_homeView->updatePreviewPanel(m_homeView->list()->currentItem());
    focusGrid();
}

void MainWindow::openItemDeleteConfirm(const QString& itemId)
{
    QString category;
    int index = -1;
    if (!m_homeView || !locateElementById(itemId, category, index))
        return;
    setTourOverlayVisible(false); // the question lies below it
    m_homeView->previewStack()->setCurrentIndex(HomeView::PagePreviewActions);
    m_homeView->actionsPanel()->openDeleteConfirm(category, itemId);
}
