// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "TemplateSettingsPage.h"

#include "ActionsMenu.h"
#include "AutoQuitBlocker.h"
#include "CustomMessageBox.h"
#include "ElidedLabel.h"
#include "FocusSearch.h"
#include "GlyphWidgets.h"
#include "IconHelper.h"
#include "LauncherModel.h"
#include "Localization.h"
#include "ModalRun.h"
#include "NameQuestions.h"
#include "SettingsCard.h"
#include "TemplateEditorDialog.h"
#include "Theme.h"

#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace
{

constexpr int kButtonHeight = 36;
constexpr int kIconBox = 24;
constexpr int kIconPx = 18;
constexpr int kLineSpacing = 2;
constexpr int kMenuButton = 36;
constexpr int kMenuGlyphPx = 16;
constexpr int kTurnMs = 8; // of the event loop, for cards that nobody sees yet

constexpr NameQuestions::Naming kNewTemplate =
    NameQuestions::templateNaming("template.create_dialog_title");
constexpr NameQuestions::Naming kEditedTemplate =
    NameQuestions::templateNaming("template.edit_dialog_title");

QString menuButtonStyle(const ColorTokens& c)
{
    const QString& idle = c.surfaceContainerHighest;
    return QStringLiteral("QPushButton { background-color: %1; border: none; border-radius: %2px; "
                          "outline: 0; }QPushButton:hover { background-color: %3; }"
                          "QPushButton:focus { background-color: %4; }")
        .arg(idle, QString::number(kMenuButton / 2),
             Theme::stateLayerOn(idle, c.onSurface, Theme::StateHover),
             Theme::stateLayerOn(idle, c.onSurface, Theme::StateFocus));
}

/// Two lines: the name, and how much is in the template.
QLayout* makeTexts(const SectionTemplate& tpl, const ColorTokens& c)
{
    auto* name = new ElidedLabel(tpl.name);
    name->setObjectName(QStringLiteral("titleStatic"));
    name->setStyleSheet(Theme::staticTitleStyle(c));
    auto* count = new QLabel(Tr::t("template.item_count").arg(tpl.items.size()));
    count->setTextFormat(Qt::PlainText);
    count->setStyleSheet(Theme::textOnCardStyle(c.onSurfaceVariant, FontTokens::SizeSm));
    auto* texts = new QVBoxLayout;
    texts->setContentsMargins(0, 0, 0, 0);
    texts->setSpacing(kLineSpacing);
    texts->addWidget(name);
    texts->addWidget(count);
    return texts;
}

QWidget* makeHeading(const SectionTemplate& tpl, const ColorTokens& c)
{
    auto* heading = new QWidget;
    auto* row = new QHBoxLayout(heading);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Theme::Sp_Md);
    auto* icon = new GlyphLabel;
    icon->setFixedSize(kIconBox, kIconBox);
    icon->setGlyph(tpl.icon, kIconPx, c.onSurface);
    row->addWidget(icon, 0, Qt::AlignVCenter);
    row->addLayout(makeTexts(tpl, c), 1);
    return heading;
}

/// The user edits the items of a template and saves it. The page that began this may be gone by
/// then, the window and the model are not.
bool editItems(LauncherModel* model, const SectionTemplate& tpl, QWidget* window)
{
    ModalRun<TemplateEditorDialog> editor(model, tpl, Tr::t("template.edit_contents_title"),
                                          window);
    if (editor.exec() != QDialog::Accepted)
        return false;
    model->saveTemplate(editor->result());
    return true;
}

} // namespace

TemplateSettingsPage::TemplateSettingsPage(LauncherModel* model, QWidget* parent)
    : QWidget(parent), m_model(model), m_layout(new QVBoxLayout(this))
{
    setStyleSheet(QStringLiteral("background: transparent;"));
    m_layout->setContentsMargins(Theme::Sp_Lg, Theme::Sp_Lg, Theme::Sp_Lg, Theme::Sp_Lg);
    m_layout->setSpacing(Theme::Sp_Md);
    m_layout->addWidget(makeCreateRow(Theme::colors()));
    rebuildRows();
    if (!m_model)
        return;
    // Not at once: the change may come from the menu of a row that goes.
    connect(m_model, &LauncherModel::templatesChanged, this,
            [this] { QTimer::singleShot(0, this, &TemplateSettingsPage::rebuildRows); });
}

bool TemplateSettingsPage::Row::shows(const SectionTemplate& tpl) const
{
    return name == tpl.name && icon == tpl.icon && count == tpl.items.size();
}

void TemplateSettingsPage::rebuildRows()
{
    const int focused = focusedRow();
    QList<QWidget*> gone;
    rebuildEmptyState(gone);
    rebuildCards(gone);
    for (QWidget* widget : std::as_const(gone))
        m_layout->removeWidget(widget);
    if (focused >= 0 && focusedRow() < 0)
        focusRow(focused); // before it goes, or it would hand the focus to somebody else
    for (QWidget* widget : std::as_const(gone)) {
        widget->setParent(nullptr);
        widget->deleteLater();
    }
    scheduleWaitingRows();
}

void TemplateSettingsPage::rebuildEmptyState(QList<QWidget*>& gone)
{
    const bool isEmpty = !m_model || m_model->templates().isEmpty();
    if (isEmpty && !m_emptyState) {
        m_emptyState = makeEmptyState(Theme::colors());
        m_layout->addWidget(m_emptyState);
    } else if (!isEmpty && m_emptyState) {
        gone.append(std::exchange(m_emptyState, nullptr));
    }
}

void TemplateSettingsPage::rebuildCards(QList<QWidget*>& gone)
{
    const ColorTokens c = Theme::colors();
    const QList<Row> before = std::exchange(m_rows, {});
    auto next = before.begin();
    const auto leave = [&gone, &next](QList<Row>::const_iterator end) {
        for (; next != end; ++next)
            gone.append(next->card);
    };
    int made = 0;
    for (const SectionTemplate& tpl : m_model ? m_model->templates() : QVector<SectionTemplate>()) {
        const auto kept =
            std::find_if(next, before.end(), [&tpl](const Row& row) { return row.shows(tpl); });
        if (kept != before.end()) {
            leave(kept);
            if (made > 0)
                kept->card->raise(); // the keys go through the cards in the order of the children
            m_rows.append(*next++);
        } else if (made++ < RowsAtOnce) {
            appendRow(tpl, c);
        } else {
            break;
        }
    }
    leave(before.end());
}

void TemplateSettingsPage::appendRow(const SectionTemplate& tpl, const ColorTokens& c)
{
    const int place = m_rows.isEmpty() ? 1 : m_layout->indexOf(m_rows.constLast().card) + 1;
    QFrame* card = makeTemplateRow(tpl, c);
    m_layout->insertWidget(place, card);
    card->show();
    m_rows.append({tpl.name, tpl.icon, tpl.items.size(), card});
}

bool TemplateSettingsPage::isComplete() const
{
    return !m_model || m_rows.size() >= m_model->templates().size();
}

void TemplateSettingsPage::scheduleWaitingRows()
{
    if (m_isAppending || !isVisible() || isComplete())
        return;
    m_isAppending = true;
    QTimer::singleShot(0, this, &TemplateSettingsPage::appendWaitingRows);
}

void TemplateSettingsPage::appendWaitingRows()
{
    m_isAppending = false;
    const ColorTokens c = Theme::colors();
    m_layout->setEnabled(false); // or each card that appears would place all of them anew
    QElapsedTimer turn;
    turn.start();
    while (!isComplete() && !turn.hasExpired(kTurnMs))
        appendRow(m_model->templates().at(m_rows.size()), c);
    m_layout->setEnabled(true);
    m_layout->activate();
    scheduleWaitingRows();
}

void TemplateSettingsPage::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    scheduleWaitingRows();
}

int TemplateSettingsPage::focusedRow() const
{
    const QWidget* focused = window()->focusWidget();
    for (int row = 0; focused && row < m_layout->count(); ++row) {
        const QWidget* widget = m_layout->itemAt(row)->widget();
        if (widget == focused || widget->isAncestorOf(focused))
            return row;
    }
    return -1;
}

void TemplateSettingsPage::focusRow(int row)
{
    for (int i = std::min(row, m_layout->count() - 1); i >= 0; --i) {
        if (QWidget* control = FocusSearch::firstControl(m_layout->itemAt(i)->widget())) {
            control->setFocus();
            return;
        }
    }
}

QFrame* TemplateSettingsPage::makeCreateRow(const ColorTokens& c) const
{
    auto* button = new QPushButton(Tr::t("template.btn_create"));
    button->setObjectName(QStringLiteral("tplCreateBtn"));
    button->setFixedHeight(kButtonHeight);
    button->setCursor(Qt::PointingHandCursor);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setStyleSheet(Theme::primaryBtnStyle(c));
    connect(button, &QPushButton::clicked, this, &TemplateSettingsPage::createTemplateFromScratch);
    return new SettingsCard(Tr::t("template.create_row_title"), button);
}

QLabel* TemplateSettingsPage::makeEmptyState(const ColorTokens& c)
{
    auto* label = new QLabel(Tr::t("template.page_empty"));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setStyleSheet(Theme::textOnCardStyle(c.onSurfaceVariant, FontTokens::SizeSm) +
                         QStringLiteral(" padding-left: %1px;").arg(Theme::Sp_Xxl));
    return label;
}

QFrame* TemplateSettingsPage::makeTemplateRow(const SectionTemplate& tpl, const ColorTokens& c)
{
    return new SettingsCard(makeHeading(tpl, c), makeMenuButton(tpl.name, c));
}

QPushButton* TemplateSettingsPage::makeMenuButton(const QString& name, const ColorTokens& c)
{
    auto* button = new GlyphButton;
    button->setObjectName(QStringLiteral("tplMenuBtn_") + name);
    button->setAccessibleName(name);
    button->setFixedSize(kMenuButton, kMenuButton);
    button->setCursor(Qt::PointingHandCursor);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setGlyph(Glyph::MoreVert, kMenuGlyphPx, c.onSurface);
    button->setStyleSheet(menuButtonStyle(c));
    connect(button, &QPushButton::clicked, this,
            [this, button, name] { showRowMenu(button, name); });
    return button;
}

void TemplateSettingsPage::showRowMenu(QPushButton* anchor, const QString& name)
{
    const QPointer<QPushButton> button(anchor);
    bool hasChanged = false;
    ActionsMenu::Popup menu(this);
    menu.addRow(Glyph::Edit, Tr::t("template.edit"),
                [this, name, &hasChanged] { hasChanged = editTemplate(name); });
    menu.addRow(Glyph::Topic, Tr::t("template.edit_contents"),
                [this, name, &hasChanged] { hasChanged = editTemplateContents(name); });
    menu.addRow(Glyph::Delete, Tr::t("template.delete"),
                [this, name, &hasChanged] { hasChanged = deleteTemplateWithConfirm(name); });
    menu.addCancel();
    menu.execBelow(anchor);
    // After a change the row goes, and what comes in its place gets the focus.
    if (!hasChanged && button && button->isVisibleTo(button->window()))
        button->setFocus();
}

void TemplateSettingsPage::createTemplateFromScratch()
{
    if (!m_model)
        return;
    const AutoQuitBlocker blocker;
    LauncherModel* model = m_model; // the page may go while its window waits for the answers
    const QPointer<QWidget> window(this->window());
    const auto answer = NameQuestions::ask(window, kNewTemplate, {});
    if (!answer || answer->name.isEmpty())
        return;
    if (model->templateIndexOf(answer->name) >= 0) {
        NameQuestions::refuse(window, "template.err_name_exists");
        return;
    }
    editItems(model, {answer->name, answer->icon, {}}, window);
}

bool TemplateSettingsPage::editTemplate(const QString& name)
{
    const int index = m_model->templateIndexOf(name);
    if (index < 0)
        return false;
    const AutoQuitBlocker blocker;
    LauncherModel* model = m_model;
    const QPointer<QWidget> window(this->window());
    const uint icon = model->templates().at(index).icon;
    const auto answer = NameQuestions::ask(window, kEditedTemplate, {name, icon});
    if (!answer || answer->name.isEmpty() || model->templateIndexOf(name) < 0)
        return false;
    const bool isDone = model->renameTemplate(name, answer->name, answer->icon);
    if (!isDone)
        NameQuestions::refuse(window, "template.err_name_exists");
    return isDone;
}

bool TemplateSettingsPage::editTemplateContents(const QString& name)
{
    const int index = m_model->templateIndexOf(name);
    if (index < 0)
        return false;
    const AutoQuitBlocker blocker;
    if (name.isEmpty()) {
        // The model keeps nothing without a name, so the work would be lost.
        NameQuestions::refuse(this, "template.err_name_empty");
        return false;
    }
    return editItems(m_model, m_model->templates().at(index), window());
}

bool TemplateSettingsPage::deleteTemplateWithConfirm(const QString& name)
{
    if (m_model->templateIndexOf(name) < 0)
        return false;
    const AutoQuitBlocker blocker;
    LauncherModel* model = m_model;
    const int answer = CustomMessageBox::customQuestion(
        window(), Tr::t("template.confirm_delete_title"),
        NameQuestions::textAbout("template.confirm_delete_msg", name),
        {Tr::t("dialog.btn_delete"), Tr::t("dialog.btn_cancel")}, 1, {0});
    if (answer != 0 || model->templateIndexOf(name) < 0)
        return false;
    model->deleteTemplate(name);
    return true;
}
