// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ActionsPanel.h"

#include "Delegates.h"
#include "Keys.h"
#include "LauncherModel.h"
#include "Localization.h"
#include "RowPainting.h"
#include "SoftBreaks.h"
#include "Theme.h"

#include <QFontMetrics>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

namespace
{

constexpr int kRowSpacing = 2;
constexpr int kRowRadius = 16;
// About three lines of the card; what is longer than that is recognised by its beginning.
constexpr int kMaxNameWidth = 1200;
constexpr int kMaxStretch = 24; ///< characters that surely find room on one line of the card

constexpr QLatin1String kEdit("edit");
constexpr QLatin1String kDelete("delete");
constexpr QLatin1String kConfirmDelete("confirm_delete");
constexpr QLatin1String kCancel("cancel");

QString listStyle(const ColorTokens& c)
{
    return QStringLiteral(
               "QListWidget { background-color: transparent; border: none; outline: 0; "
               "padding: 0px; margin: 0px; }"
               "QListWidget::item { padding: 8px 16px; border-radius: %1px; font-size: 14px; "
               "border: 1px solid transparent; background: transparent; }"
               "QListWidget::item:hover { background-color: %2; }"
               "QListWidget::item:selected { background-color: %3; border: 1px solid %4; }"
               "QListWidget::item:focus { background-color: %3; border: 1px solid %4; }")
        .arg(kRowRadius)
        .arg(c.surfaceVariant, c.surfaceContainerHighest, c.outline);
}

/// As much of a name as a question should hold, without what would begin a new line.
QString shownName(const QString& name)
{
    const QFontMetrics metrics(RowPainting::rowFont(FontTokens::SizeMdPx));
    QString shown = RowPainting::elidedLine(metrics, name, kMaxNameWidth);
    for (QChar& c : shown) {
        if (c.category() == QChar::Other_Control)
            c = u' ';
    }
    return shown;
}

} // namespace

ActionsPanel::ActionsPanel(LauncherModel* model, QWidget* parent) : QWidget(parent), m_model(model)
{
    setupUI();
}

void ActionsPanel::setupUI()
{
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(Theme::Sp_Xxl, Theme::Sp_Md, Theme::Sp_Xxl, Theme::Sp_Md);
    rows->setSpacing(Theme::Sp_Md);
    m_actionsTitleLabel = new QLabel;
    m_actionsTitleLabel->setTextFormat(Qt::PlainText); // the name in it may look like markup
    m_actionsTitleLabel->setWordWrap(true);
    m_actionsTitleLabel->setAlignment(Qt::AlignCenter);
    m_actionsTitleLabel->setStyleSheet(
        QStringLiteral("color: %1; font-size: %2; letter-spacing: 0.2px; border: none;")
            .arg(Theme::colors().onSurfaceVariant, FontTokens::SizeMd));
    m_actionsTitleLabel->hide();
    // Not aligned in its place: a label that is takes fewer pixels than its height is reckoned for.
    rows->addWidget(m_actionsTitleLabel);
    buildList();
    rows->addWidget(m_actionsListWidget);
    setFocusProxy(m_actionsListWidget);
}

void ActionsPanel::buildList()
{
    const ColorTokens c = Theme::colors();
    m_actionsListWidget = new QListWidget;
    m_actionsListWidget->setObjectName(QStringLiteral("actionsList"));
    m_actionsListWidget->setFocusPolicy(Qt::StrongFocus);
    m_actionsListWidget->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_actionsListWidget->setSpacing(kRowSpacing);
    m_actionsListWidget->setDragDropMode(QAbstractItemView::NoDragDrop);
    m_actionsListWidget->setItemDelegate(new CardListDelegate(c, QString(), m_actionsListWidget));
    m_actionsListWidget->setStyleSheet(listStyle(c));
    m_actionsListWidget->installEventFilter(this);
    connect(m_actionsListWidget, &QListWidget::itemDoubleClicked, this,
            &ActionsPanel::executeSelection);
}

void ActionsPanel::openItemMenu(const QString& category, const QString& itemId, bool takeFocus)
{
    m_currentCategory = category;
    m_currentItemId = itemId;
    enterStep(takeFocus ? ActionsList : ActionsNone);
    m_actionsTitleLabel->hide();
    m_actionsListWidget->clear();
    m_actionsListWidget->setAccessibleName(Tr::t(QStringLiteral("actions.title_shortcut")));
    addRow(Tr::t(QStringLiteral("actions.edit_shortcut")), kEdit,
           Tr::t(QStringLiteral("actions.edit_shortcut_desc")), CardListDelegate::IconEdit);
    addRow(Tr::t(QStringLiteral("actions.delete_shortcut")), kDelete,
           Tr::t(QStringLiteral("actions.delete_shortcut_desc")), CardListDelegate::IconDelete);
    finalizeActionsList(true, takeFocus);
}

void ActionsPanel::addRow(const QString& text, const QString& actionId, const QString& description,
                          int iconKind)
{
    auto* row = new QListWidgetItem(text, m_actionsListWidget);
    row->setData(Qt::UserRole, actionId);
    row->setData(CardListDelegate::RoleDescription, description);
    row->setData(CardListDelegate::RoleIconKind, iconKind);
}

void ActionsPanel::openDeleteConfirm(const QString& category, const QString& itemId)
{
    m_currentCategory = category;
    m_currentItemId = itemId;
    buildDeleteConfirm();
}

void ActionsPanel::enterStep(ItemActionsStep step)
{
    m_step = step;
    emit stepChanged(step);
}

QString ActionsPanel::currentName() const
{
    for (const LauncherElement& element : m_model->getItems(m_currentCategory)) {
        if (element.id == m_currentItemId)
            return element.name;
    }
    return QStringLiteral("Shortcut");
}

void ActionsPanel::buildDeleteConfirm()
{
    enterStep(ActionsConfirmDelete);
    const QString question =
        Tr::t(QStringLiteral("actions.del_shortcut_title")).arg(shownName(currentName()));
    m_actionsTitleLabel->setText(withSoftBreaks(question, kMaxStretch));
    m_actionsTitleLabel->setAccessibleName(question);
    m_actionsTitleLabel->show();
    m_actionsListWidget->clear();
    // Who hears the row alone has to hear what "Yes" means.
    m_actionsListWidget->setAccessibleName(question);
    auto* yes = new QListWidgetItem(Tr::t(QStringLiteral("dialog.btn_yes")), m_actionsListWidget);
    yes->setData(Qt::UserRole, QString(kConfirmDelete));
    yes->setForeground(QColor(Theme::colors().errorColor));
    finalizeActionsList(true, true);
}

void ActionsPanel::finalizeActionsList(bool selectFirst, bool takeFocus)
{
    if (m_actionsListWidget->count() > 0)
        m_actionsListWidget->setCurrentRow(selectFirst && takeFocus ? 0 : -1);
    if (takeFocus)
        m_actionsListWidget->setFocus();
}

void ActionsPanel::reset()
{
    m_step = ActionsNone;
    m_currentCategory.clear();
    m_currentItemId.clear();
    m_actionsListWidget->clear();
    m_actionsTitleLabel->clear();
    m_actionsTitleLabel->hide();
}

void ActionsPanel::executeSelection(QListWidgetItem* item)
{
    if (!item || !item->flags().testFlag(Qt::ItemIsEnabled))
        return;
    const QString actionId = item->data(Qt::UserRole).toString();
    if (actionId == kCancel) {
        goBack(Qt::Key_Escape);
    } else if (m_step == ActionsList) {
        executeListed(actionId);
    } else if (m_step == ActionsConfirmDelete && actionId == kConfirmDelete) {
        deleteCurrentItem();
    }
}

void ActionsPanel::executeListed(const QString& actionId)
{
    if (actionId == kEdit)
        emit editItemRequested(m_currentItemId);
    else if (actionId == kDelete)
        buildDeleteConfirm();
}

void ActionsPanel::deleteCurrentItem()
{
    // Copies, since whoever hears of the change may reset the panel.
    m_model->deleteItem(QString(m_currentCategory), QString(m_currentItemId));
    emit dataChanged();
    emit closeRequested();
}

bool ActionsPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const auto* press = static_cast<QKeyEvent*>(event);
    const int key = press->key();
    if (Keys::isBack(key)) {
        goBack(key);
        return true;
    }
    // The press that led to the question may still be held, before anybody has read it.
    if (press->isAutoRepeat() && m_step == ActionsConfirmDelete && Keys::isEnter(key))
        return true;
    if (watched == m_actionsListWidget && handleListKey(key))
        return true;
    return QWidget::eventFilter(watched, event);
}

void ActionsPanel::goBack(int key)
{
    // Only Esc goes back one step.
    if (key == Qt::Key_Escape && m_step == ActionsConfirmDelete)
        openItemMenu(QString(m_currentCategory), QString(m_currentItemId), true);
    else
        emit closeRequested();
}

bool ActionsPanel::handleListKey(int key)
{
    const int row = m_actionsListWidget->currentRow();
    if (key == Qt::Key_Left) {
        emit closeRequested();
        return true;
    }
    if (Keys::isEnter(key)) {
        executeSelection(m_actionsListWidget->currentItem());
        return true;
    }
    // At the ends the focus would leave the list.
    return (key == Qt::Key_Up && row <= 0) ||
           (key == Qt::Key_Down && row == m_actionsListWidget->count() - 1);
}
