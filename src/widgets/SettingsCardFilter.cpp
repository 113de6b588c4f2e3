// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SettingsCardFilter.h"

#include "FocusSearch.h"
#include "Keys.h"
#include "SettingsCard.h"
#include "Theme.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QFrame>
#include <QKeyEvent>
#include <QPushButton>
#include <QScrollArea>

namespace
{

bool hasOpenPopup(const QWidget* widget)
{
    const auto* box = qobject_cast<const QComboBox*>(widget);
    return box && box->view()->isVisible();
}

} // namespace

SettingsCardFilter::SettingsCardFilter(QFrame* card, QWidget* content, QObject* parent)
    : QObject(parent), m_card(card), m_content(content)
{
    card->setFocusPolicy(Qt::StrongFocus);
    card->installEventFilter(this);
    installOnChildren(content);
    updateStyle();
}

void SettingsCardFilter::updateStyle()
{
    m_card->setStyleSheet(
        QStringLiteral("QFrame { background-color: %1; border: none; border-radius: %2px; }")
            .arg(Theme::boxBg())
            .arg(Theme::Rad_Md));
}

void SettingsCardFilter::installOnChildren(QWidget* content)
{
    content->installEventFilter(this);
    for (QWidget* control : content->findChildren<QWidget*>()) {
        if (control->focusPolicy() != Qt::NoFocus)
            control->installEventFilter(this);
    }
}

bool SettingsCardFilter::isEditingNow() const
{
    const QWidget* focused = QApplication::focusWidget();
    return focused && focused != m_card && m_card->isAncestorOf(focused);
}

bool SettingsCardFilter::eventFilter(QObject* watched, QEvent* event)
{
    auto* widget = qobject_cast<QWidget*>(watched);
    // What a control opens, such as the list of a combo box, has its keys for itself.
    if (event->type() != QEvent::KeyPress || !widget || widget->window() != m_card->window())
        return QObject::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    const bool isTaken =
        widget == m_card ? handleCardKey(key) : isEditingNow() && handleControlKey(widget, key);
    return isTaken || QObject::eventFilter(watched, event);
}

bool SettingsCardFilter::handleCardKey(int key)
{
    if (Keys::isEnter(key)) {
        enterCard();
        return true;
    }
    if (key != Qt::Key_Up && key != Qt::Key_Down)
        return false;
    if (QFrame* next = neighbour(key == Qt::Key_Up ? -1 : 1))
        next->setFocus();
    return true;
}

void SettingsCardFilter::enterCard()
{
    const bool isControl =
        (m_content->focusPolicy() & Qt::TabFocus) && !qobject_cast<QScrollArea*>(m_content);
    QWidget* target = isControl ? m_content : FocusSearch::firstControl(m_content);
    if (target)
        target->setFocus();
}

bool SettingsCardFilter::handleControlKey(QWidget* control, int key)
{
    switch (key) {
    case Qt::Key_Backspace:
        if (FocusSearch::isTextInput(control))
            return false;
        [[fallthrough]];
    case Qt::Key_Escape:
        m_card->setFocus();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return activate(control);
    case Qt::Key_Up:
        return moveToNeighbour(control, -1);
    case Qt::Key_Down:
        return moveToNeighbour(control, 1);
    case Qt::Key_Left:
        return moveInside(control, -1);
    case Qt::Key_Right:
        return moveInside(control, 1);
    default:
        return false;
    }
}

bool SettingsCardFilter::activate(QWidget* control)
{
    if (FocusSearch::isTextInput(control))
        return false;
    if (auto* button = qobject_cast<QPushButton*>(control))
        button->click();
    else if (auto* box = qobject_cast<QComboBox*>(control); box && !hasOpenPopup(box))
        box->showPopup();
    return true;
}

bool SettingsCardFilter::moveToNeighbour(const QWidget* control, int step)
{
    if (FocusSearch::isInItemView(control) || hasOpenPopup(control))
        return false;
    QFrame* next = neighbour(step);
    if (!next) {
        m_card->setFocus();
        return true;
    }
    next->setFocus();
    // From control to control: whoever works inside the cards stays inside.
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Enter, Qt::NoModifier);
    QApplication::sendEvent(next, &enter);
    return true;
}

bool SettingsCardFilter::moveInside(QWidget* control, int step)
{
    if (FocusSearch::isInItemView(control))
        return false;
    const QList<QWidget*> controls = FocusSearch::focusables(m_content);
    const int count = static_cast<int>(controls.size());
    if (count == 0)
        return true;
    const int index = qMax(0, static_cast<int>(controls.indexOf(control)));
    controls.at((index + step + count) % count)->setFocus();
    return true;
}

QFrame* SettingsCardFilter::neighbour(int step) const
{
    QWidget* parent = m_card->parentWidget();
    if (!parent)
        return nullptr;
    QList<QFrame*> cards;
    collectSettingsRows(parent, cards);
    return cards.value(cards.indexOf(m_card) + step);
}
