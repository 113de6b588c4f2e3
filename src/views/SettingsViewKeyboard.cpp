// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// The keys of the settings page. They come here before the widgets get them, so what is done here
// goes before what a card's own filter does.

#include "FocusSearch.h"
#include "HotkeyRecorderFilter.h"
#include "Keys.h"
#include "SettingsCard.h"
#include "SettingsView.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QButtonGroup>
#include <QComboBox>
#include <QKeyEvent>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedWidget>

#include <algorithm>

namespace
{

constexpr int kRowMargin = 12; // kept in view above and below a card

bool hasOpenPopup(const QWidget* widget)
{
    const auto* box = qobject_cast<const QComboBox*>(widget);
    return box && box->view()->isVisible();
}

/// The buttons among which `widget` is a choice; empty for anything else.
QList<QWidget*> choicesWith(const QWidget* widget)
{
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    QList<QWidget*> choices;
    if (!button || !button->group())
        return choices;
    for (QAbstractButton* choice : button->group()->buttons())
        choices.append(choice);
    return choices.size() > 1 ? choices : QList<QWidget*>();
}

QScrollArea* scrollAreaAround(const QWidget* widget)
{
    for (QWidget* parent = widget->parentWidget(); parent; parent = parent->parentWidget()) {
        if (auto* area = qobject_cast<QScrollArea*>(parent))
            return area;
    }
    return nullptr;
}

} // namespace

bool SettingsView::handleKeyPress(QObject* obj, QKeyEvent* e)
{
    auto* widget = qobject_cast<QWidget*>(obj);
    if (!widget || !m_settingsCatList ||
        HotkeyRecorderFilter::isListeningOn(QApplication::focusWidget()))
        return false;
    const int key = e->key();
    if (Keys::isEnter(key))
        return handleEnter(widget, e->isAutoRepeat());
    if (Keys::isBack(key))
        return handleBack(widget, key);
    if ((key == Qt::Key_Left || key == Qt::Key_Right) &&
        handleSideways(widget, key == Qt::Key_Left ? -1 : 1))
        return true;
    if (widget == m_settingsBackBtn)
        return handleBackButtonKey(key);
    if (key == Qt::Key_Up || key == Qt::Key_Down)
        return handleVertical(widget, key == Qt::Key_Up ? -1 : 1);
    return false;
}

bool SettingsView::handleEnter(QWidget* widget, bool isRepeated)
{
    auto* button = qobject_cast<QPushButton*>(widget);
    if (button && isAncestorOf(button)) {
        // The key that has led to the button may still be held.
        if (!isRepeated)
            button->click();
        return true;
    }
    if (!isInCategoryList(widget))
        return false;
    openSelectedCategory();
    return true;
}

bool SettingsView::handleSideways(QWidget* widget, int step)
{
    QList<QWidget*> stops = choicesWith(widget);
    if (stops.isEmpty()) {
        const QFrame* row = rowOf(widget);
        if (!row || row == widget)
            return false;
        stops = FocusSearch::tabStops(row);
    }
    const qsizetype next = stops.indexOf(widget) + step;
    if (next < 0)
        focusCategoryPane();
    else if (next < stops.size())
        stops.at(next)->setFocus();
    return true;
}

bool SettingsView::handleBack(const QWidget* widget, int key)
{
    if (key == Qt::Key_Backspace && FocusSearch::isTextInput(widget))
        return false;
    if (isInCategoryList(widget) || widget == m_settingsBackBtn) {
        m_settingsBackBtn->click();
        return true;
    }
    const QWidget* focused = QApplication::focusWidget();
    if (FocusSearch::isTextInput(focused) || !m_settingsDetailStack->isAncestorOf(focused))
        return false;
    return focusCategoryPane();
}

bool SettingsView::handleBackButtonKey(int key)
{
    if (key == Qt::Key_Down) {
        if (m_settingsCatList->isVisible()) {
            focusCategoryPane();
            syncToCurrentCategory();
        } else {
            openSelectedCategory();
        }
        return true;
    }
    return key == Qt::Key_Up || key == Qt::Key_Left || key == Qt::Key_Right;
}

bool SettingsView::handleVertical(QWidget* widget, int step)
{
    if (isInCategoryList(widget) && step < 0 && m_settingsCatList->currentRow() < 1) {
        m_settingsBackBtn->setFocus();
        return true;
    }
    QFrame* row = rowOf(widget);
    if (!row || FocusSearch::isInItemView(widget) || hasOpenPopup(widget))
        return false;
    const QList<QFrame*> rows = detailRows();
    const qsizetype next = rows.indexOf(row) + step;
    if (next < 0)
        m_settingsBackBtn->setFocus();
    else if (next < rows.size())
        focusRow(rows.at(next));
    return true;
}

bool SettingsView::handleEvent(QObject* obj, QEvent* e)
{
    if (e->type() != QEvent::FocusIn || !m_settingsCatList)
        return false;
    if (isInCategoryList(obj)) {
        syncToCurrentCategory();
        return false;
    }
    auto* widget = qobject_cast<QWidget*>(obj);
    QFrame* row = rowOf(widget);
    if (row && row == widget)
        focusRowControl(row);
    return false;
}

bool SettingsView::isInCategoryList(const QObject* obj) const
{
    return obj == m_settingsCatList || obj == m_settingsCatList->viewport();
}

/// What is current may have been deselected, or its page not be there.
void SettingsView::syncToCurrentCategory()
{
    QListWidgetItem* item = m_settingsCatList->currentItem();
    if (!item) {
        m_settingsCatList->setCurrentRow(0);
        return;
    }
    item->setSelected(true);
    m_settingsDetailStack->setCurrentIndex(m_settingsCatList->currentRow());
}

bool SettingsView::focusCategoryPane()
{
    if (m_settingsCatList)
        m_settingsCatList->setFocus();
    return true;
}

void SettingsView::focusAfterRebuild(QWidget* widget) const
{
    if (!widget)
        return;
    widget->setFocus();
    if (QFrame* row = rowOf(widget))
        scrollTo(row);
}

void SettingsView::openSelectedCategory()
{
    const QList<QFrame*> rows = detailRows();
    if (!rows.isEmpty())
        focusRow(rows.constFirst());
}

bool SettingsView::openCategoryByTitle(const QString& title)
{
    if (title.isEmpty() || !m_settingsCatList)
        return false;
    const QList<QListWidgetItem*> found =
        m_settingsCatList->findItems(title, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (found.isEmpty())
        return false;
    m_settingsCatList->setCurrentItem(found.constFirst());
    found.constFirst()->setSelected(true);
    openSelectedCategory();
    return true;
}

QList<QFrame*> SettingsView::detailRows() const
{
    QList<QFrame*> rows;
    if (m_settingsDetailStack && m_settingsDetailStack->currentWidget())
        collectSettingsRows(m_settingsDetailStack->currentWidget(), rows);
    return rows;
}

QFrame* SettingsView::rowOf(QWidget* widget) const
{
    QWidget* page = m_settingsDetailStack ? m_settingsDetailStack->currentWidget() : nullptr;
    if (!page || !page->isAncestorOf(widget))
        return nullptr;
    while (widget != page && !SettingsCard::isCard(widget))
        widget = widget->parentWidget();
    return widget != page ? static_cast<QFrame*>(widget) : nullptr;
}

void SettingsView::focusRow(QFrame* row)
{
    if (!focusRowControl(row))
        row->setFocus();
}

bool SettingsView::focusRowControl(QFrame* row)
{
    QWidget* control = row ? FocusSearch::firstControl(row) : nullptr;
    if (!control)
        return false;
    control->setFocus();
    scrollTo(row);
    return true;
}

void SettingsView::scrollTo(QFrame* row)
{
    if (QScrollArea* area = scrollAreaAround(row))
        area->ensureWidgetVisible(row, 0, kRowMargin);
}
