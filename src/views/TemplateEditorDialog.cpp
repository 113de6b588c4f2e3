// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "TemplateEditorDialog.h"

#include "ActionsMenu.h"
#include "AutoQuitBlocker.h"
#include "CardHeader.h"
#include "CustomMessageBox.h"
#include "IconHelper.h"
#include "ItemEditorPanel.h"
#include "ItemImages.h"
#include "ItemRoles.h"
#include "Keys.h"
#include "Localization.h"
#include "TemplateItemDelegate.h"
#include "Theme.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace
{

constexpr QSize kSize(420, 560);
constexpr int kButtonRowTopPad = 8;

} // namespace

TemplateEditorDialog::TemplateEditorDialog(LauncherModel* model, const SectionTemplate& tpl,
                                           const QString& title, QWidget* parent)
    : FramelessDialog(parent, title, SoftShadow, 0), m_model(model), m_tpl(tpl)
{
    setFixedSize(kSize);
    addHeader(QStringLiteral("tplEditorHeader"));
    m_stack = new QStackedWidget;
    rows()->addWidget(m_stack, 1);
    m_stack->addWidget(buildListPage());
    m_stack->addWidget(buildEditorPage());
    refreshList();
    focusList();
}

QWidget* TemplateEditorDialog::buildListPage()
{
    const ColorTokens c = Theme::colors();
    auto* page = new QWidget(this);
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(CardPad, CardPad, CardPad, CardPad);
    column->setSpacing(Spacing);

    m_emptyLbl = new QLabel(Tr::t("template.editor_empty"));
    m_emptyLbl->setTextFormat(Qt::PlainText);
    m_emptyLbl->setWordWrap(true);
    m_emptyLbl->setAlignment(Qt::AlignCenter);
    m_emptyLbl->setStyleSheet(Theme::textOnCardStyle(c.onSurfaceVariant, FontTokens::SizeSm));
    column->addWidget(m_emptyLbl);

    m_list = new QListWidget;
    m_list->setFocusPolicy(Qt::StrongFocus);
    m_list->setItemDelegate(new TemplateItemDelegate(m_list));
    m_list->setUniformItemSizes(true); // thousands of rows are laid out at once
    m_list->setResizeMode(QListView::Adjust);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setAccessibleName(windowTitle());
    m_list->setStyleSheet(
        QStringLiteral("QListWidget { background-color: %1; border: none; border-radius: %2px; "
                       "padding: 6px; outline: none; }")
            .arg(Theme::fieldIdleBg(c), QString::number(Theme::Rad_Md)));
    ItemImages::repaintOnArrival(m_list->viewport());
    m_list->installEventFilter(this);
    connect(m_list, &QListWidget::itemDoubleClicked, this,
            [this] { openItemEditor(m_list->currentRow()); });
    column->addWidget(m_list, 1);
    addListButtons(column);
    return page;
}

void TemplateEditorDialog::addListButtons(QVBoxLayout* column)
{
    const ColorTokens c = Theme::colors();
    QHBoxLayout* addRow = addButtonRow(column, 0);
    m_addBtn = addButton(addRow, Tr::t("actions.add_shortcut"), Theme::smallPillStyle(c), 1);
    QHBoxLayout* row = addButtonRow(column, kButtonRowTopPad);
    row->setSpacing(Theme::Sp_Md);
    row->addStretch();
    QPushButton* cancel = addButton(row, Tr::t("dialog.btn_cancel"),
                                    Theme::actionBtnStyle(c, QStringLiteral("transparent")));
    QPushButton* save = addButton(row, Tr::t("dialog.btn_save"), Theme::primaryBtnStyle(c));
    for (QPushButton* button : {m_addBtn, cancel, save})
        button->setCursor(Qt::PointingHandCursor);
    connect(m_addBtn, &QPushButton::clicked, this, [this] { openItemEditor(-1); });
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(save, &QPushButton::clicked, this, &TemplateEditorDialog::trySave);
}

QWidget* TemplateEditorDialog::buildEditorPage()
{
    m_itemPanel = new ItemEditorPanel(m_model, this);
    connect(m_itemPanel, &ItemEditorPanel::elementReady, this, &TemplateEditorDialog::takeElement);
    connect(m_itemPanel, &ItemEditorPanel::closeRequested, this,
            [this] { showListPage(m_editingRow); });
    return m_itemPanel;
}

bool TemplateEditorDialog::isRow(int row) const
{
    return row >= 0 && row < m_tpl.items.size();
}

void TemplateEditorDialog::openItemEditor(int row)
{
    m_editingRow = isRow(row) ? row : -1;
    m_stack->setCurrentIndex(EditorPage);
    m_itemPanel->openForElement(isRow(row) ? m_tpl.items.at(row) : LauncherElement());
}

void TemplateEditorDialog::takeElement(const LauncherElement& element)
{
    int row = m_editingRow;
    if (isRow(row)) {
        m_tpl.items[row] = element;
    } else {
        row = int(m_tpl.items.size());
        m_tpl.items.append(element);
    }
    showListPage(row);
}

void TemplateEditorDialog::showListPage(int selectRow)
{
    m_stack->setCurrentIndex(ListPage);
    refreshList();
    if (isRow(selectRow))
        m_list->setCurrentRow(selectRow);
    focusList();
}

void TemplateEditorDialog::refreshList()
{
    m_list->clear();
    for (const LauncherElement& item : std::as_const(m_tpl.items)) {
        auto* row = new QListWidgetItem(item.name);
        row->setData(ItemRoles::RoleItemType, item.shortcutType);
        row->setData(ItemRoles::RoleIconToken, item.iconPath);
        m_list->addItem(row);
    }
    // Said, or the list would make its first row the current one with the focus, seen by nobody:
    // Enter would open that, and Down would go past it.
    m_list->setCurrentIndex({});
    m_emptyLbl->setVisible(m_tpl.items.isEmpty());
    m_list->setVisible(!m_tpl.items.isEmpty());
}

void TemplateEditorDialog::focusList()
{
    // Out of view, the list would take the keys for nobody.
    QWidget* target = m_tpl.items.isEmpty() ? static_cast<QWidget*>(m_addBtn) : m_list;
    target->setFocus();
}

void TemplateEditorDialog::showItemMenu(int row)
{
    if (!isRow(row))
        return;
    m_list->scrollToItem(m_list->item(row));
    const QPointer<TemplateEditorDialog> self(this);
    ActionsMenu::Popup menu(this);
    menu.addRow(Glyph::Edit, Tr::t("actions.edit_shortcut"), [this, row] { openItemEditor(row); });
    menu.addRow(Glyph::Delete, Tr::t("actions.delete_shortcut"), [this, row] { removeItem(row); });
    menu.addCancel();
    if (!menu.execAtCenter(m_list, m_list->model()->index(row, 0)) && self)
        focusList();
}

void TemplateEditorDialog::removeItem(int row)
{
    m_tpl.items.removeAt(row);
    refreshList();
    if (!m_tpl.items.isEmpty())
        m_list->setCurrentRow(std::min(row, int(m_tpl.items.size()) - 1));
    focusList();
}

void TemplateEditorDialog::trySave()
{
    if (!m_tpl.items.isEmpty()) {
        accept();
        return;
    }
    const AutoQuitBlocker blocker;
    CustomMessageBox::warning(this, windowTitle(), Tr::t("template.err_no_items"));
}

bool TemplateEditorDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_list && event->type() == QEvent::KeyPress &&
        handleListKey(static_cast<QKeyEvent*>(event)))
        return true;
    return FramelessDialog::eventFilter(watched, event);
}

bool TemplateEditorDialog::handleListKey(QKeyEvent* event)
{
    const int row = m_list->currentRow();
    if (Keys::isEnter(event->key()) && row >= 0) {
        openItemEditor(row);
        return true;
    }
    if (event->key() == Qt::Key_Space && row >= 0) {
        showItemMenu(row);
        return true;
    }
    if (event->key() == Qt::Key_End && row < 0) {
        m_list->setCurrentRow(m_list->count() - 1); // the list would go to its first row
        return true;
    }
    // A list would take them for the beginning of a name to look for.
    return handleDialogBackKey(this, event);
}

void TemplateEditorDialog::keyPressEvent(QKeyEvent* event)
{
    if (m_stack->currentIndex() == EditorPage && Keys::isBack(event->key()))
        showListPage(-1);
    else
        FramelessDialog::keyPressEvent(event);
}
