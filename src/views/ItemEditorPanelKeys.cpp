// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CustomWidgets.h"
#include "GlyphWidgets.h"
#include "ItemEditorPanel.h"
#include "Keys.h"
#include "PickerPill.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTextBlock>

#include <algorithm>

bool ItemEditorPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && watched->isWidgetType() &&
        handleKey(static_cast<QWidget*>(watched), static_cast<QKeyEvent*>(event)->key()))
        return true;
    return QWidget::eventFilter(watched, event);
}

bool ItemEditorPanel::handleKey(QWidget* watched, int key)
{
    if (Keys::isEnter(key) && watched == m_editorNameInput) {
        m_editorTypeBtn->setFocus();
        return true;
    }
    if (Keys::isEnter(key)) {
        auto* button = qobject_cast<QAbstractButton*>(watched);
        if (button)
            button->click(); // which may be the end of this panel
        return button != nullptr;
    }
    switch (key) {
    case Qt::Key_Escape:
        forceClose();
        return true;
    case Qt::Key_Up:
        return handleUp(watched);
    case Qt::Key_Down:
        return handleDown(watched);
    case Qt::Key_Left:
    case Qt::Key_Right:
        return handleSideways(watched, key);
    default:
        return false;
    }
}

bool ItemEditorPanel::handleUp(QWidget* watched)
{
    QWidget* target = nullptr;
    if (watched == m_editorTypeBtn || watched == m_editorSectionBtn)
        target = m_editorNameInput;
    else if (watched == m_editorBrowseValueBtn)
        target = m_editorTypeBtn;
    else if (watched == m_editorSaveBtn || watched == m_editorCancelBtn)
        target = m_editorValueInput;
    else if (watched == m_editorValueInput &&
             !m_editorValueInput->textCursor().block().previous().isValid())
        target = rowAboveValue();
    if (target)
        target->setFocus();
    return target != nullptr;
}

bool ItemEditorPanel::handleDown(QWidget* watched)
{
    QWidget* target = nullptr;
    if (watched == m_editorNameInput || watched == m_editorIconBtn)
        target = m_editorTypeBtn;
    else if (watched == m_editorTypeBtn || watched == m_editorSectionBtn)
        target = rowBelowTypeRow();
    else if (watched == m_editorBrowseValueBtn)
        target = m_editorValueInput;
    else if (watched == m_editorValueInput &&
             !m_editorValueInput->textCursor().block().next().isValid())
        target = m_editorCancelBtn;
    if (target)
        target->setFocus();
    return target != nullptr;
}

bool ItemEditorPanel::handleSideways(QWidget* watched, int key)
{
    const bool isLeft = key == Qt::Key_Left;
    const QList<QWidget*> chain = typeRowChain();
    const qsizetype position = chain.indexOf(watched);
    if (position >= 0) {
        const qsizetype next = position + (isLeft ? -1 : 1);
        chain.at(std::clamp<qsizetype>(next, 0, chain.size() - 1))->setFocus();
        return true;
    }
    if (watched == m_editorBrowseValueBtn)
        return true;
    QWidget* target = nullptr;
    if (isLeft && watched == m_editorSaveBtn)
        target = m_editorCancelBtn;
    else if (isLeft && watched == m_editorNameInput && m_editorNameInput->cursorPosition() == 0 &&
             !m_editorNameInput->hasSelectedText())
        target = m_editorIconBtn;
    else if (!isLeft && watched == m_editorCancelBtn)
        target = m_editorSaveBtn;
    else if (!isLeft && watched == m_editorIconBtn)
        target = m_editorNameInput;
    if (target)
        target->setFocus();
    return target != nullptr;
}

QList<QWidget*> ItemEditorPanel::typeRowChain() const
{
    QList<QWidget*> chain{m_editorTypeBtn};
    if (m_sectionPickerShown)
        chain.append(m_editorSectionBtn);
    return chain;
}

QWidget* ItemEditorPanel::rowAboveValue() const
{
    if (m_browseShown)
        return m_editorBrowseValueBtn;
    return m_editorTypeBtn;
}

QWidget* ItemEditorPanel::rowBelowTypeRow() const
{
    if (m_browseShown)
        return m_editorBrowseValueBtn;
    return m_editorValueInput;
}
