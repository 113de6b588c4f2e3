// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FramelessDialog.h"
#include "Types.h"

class ItemEditorPanel;
class LauncherModel;
class QLabel;
class QListWidget;
class QPushButton;
class QStackedWidget;

/// Edits the items of a template: a list of them, and behind it the form for one. It works on a
/// copy, which is complete once the dialog has been accepted and then holds at least one item.
class TemplateEditorDialog : public FramelessDialog
{
    Q_OBJECT

public:
    enum Page { ListPage, EditorPage };

    /// \param model outlives the dialog and stays untouched; may be null.
    /// \param title of the window, shown in its band.
    TemplateEditorDialog(LauncherModel* model, const SectionTemplate& tpl, const QString& title,
                         QWidget* parent);

    /// The edited copy. Hides the result code of a dialog.
    const SectionTemplate& result() const { return m_tpl; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* buildListPage();
    void addListButtons(QVBoxLayout* column);
    QWidget* buildEditorPage();
    bool handleListKey(QKeyEvent* event);
    bool isRow(int row) const;
    /// \param row -1 for a new item.
    void openItemEditor(int row);
    void takeElement(const LauncherElement& element);
    /// \param selectRow -1 to select none.
    void showListPage(int selectRow);
    void refreshList();
    void focusList();
    void showItemMenu(int row);
    void removeItem(int row);
    void trySave();

    LauncherModel* m_model;
    SectionTemplate m_tpl;
    QStackedWidget* m_stack = nullptr;
    QListWidget* m_list = nullptr;
    QLabel* m_emptyLbl = nullptr;
    QPushButton* m_addBtn = nullptr;
    ItemEditorPanel* m_itemPanel = nullptr;
    int m_editingRow = -1; ///< -1 for a new item
};
