// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ActionsPanel.h"
#include "HomeView.h"
#include "Keys.h"
#include "LauncherModel.h"
#include "Localization.h"
#include "MainWindow.h"
#include "Theme.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTimer>
#include <QWheelEvent>

#include <algorithm>
#include <array>
#include <utility>

namespace
{

/// Looks at a whole character, which in UTF-16 may be two units, none of them printable alone.
bool startsWithPrintable(const QString& text)
{
    const QList<uint> characters = text.left(2).toUcs4();
    return !characters.isEmpty() && QChar::isPrint(characters.constFirst());
}

} // namespace

bool HomeView::handleKeyPress(QObject* obj, QKeyEvent* e)
{
    if (isReorderMode()) {
        handleReorderKey(e->key());
        return true;
    }
    if (e->key() == Qt::Key_Escape) {
        m_mainWindow->fadeOutAndHide();
        return true;
    }
    if (takeAsSearchText(obj, *e))
        return true;
    switch (e->key()) {
    case Qt::Key_Down:
        return handleDown(obj);
    case Qt::Key_Up:
        return handleUp(obj);
    case Qt::Key_Left:
        return handleLeft(obj);
    case Qt::Key_Right:
        return handleRight(obj);
    case Qt::Key_Space:
        if (obj != m_listWidget)
            return false;
        openActionsForCurrentItem();
        return true;
    default:
        return Keys::isEnter(e->key()) && handleEnter(obj);
    }
}

bool HomeView::isHeaderWidget(const QObject* obj) const
{
    return obj == m_searchInput || obj == m_homeAddBtn || obj == m_homeTemplateBtn ||
           obj == m_homeSettingsBtn;
}

bool HomeView::takeAsSearchText(const QObject* obj, const QKeyEvent& e)
{
    const QString text = e.text();
    const bool isPlain = e.modifiers() == Qt::NoModifier || e.modifiers() == Qt::ShiftModifier;
    if (obj == m_searchInput || !startsWithPrintable(text) || !isPlain || e.key() == Qt::Key_Space)
        return false;
    m_searchInput->setFocus();
    m_searchInput->setText(m_searchInput->text() + text);
    return true;
}

bool HomeView::handleDown(const QObject* obj)
{
    if (isHeaderWidget(obj))
        m_catScroll->setFocus();
    else if (obj == m_catScroll)
        focusListFromSearch();
    else
        return false;
    return true;
}

bool HomeView::handleUp(const QObject* obj)
{
    if (isHeaderWidget(obj))
        return true;
    if (obj == m_catScroll) {
        m_searchInput->setFocus();
        return true;
    }
    if (obj == m_listWidget && m_listWidget->currentRow() < std::max(1, Theme::gridColumns)) {
        m_catScroll->setFocus();
        return true;
    }
    return false;
}

bool HomeView::handleLeft(const QObject* obj)
{
    if (obj == m_searchInput) {
        if (m_searchInput->cursorPosition() != 0 || m_searchInput->hasSelectedText())
            return false;
        m_homeTemplateBtn->setFocus();
    } else if (obj == m_homeTemplateBtn) {
        m_homeAddBtn->setFocus();
    } else if (obj == m_homeSettingsBtn) {
        m_searchInput->setFocus();
    } else if (obj == m_catScroll) {
        if (!stepCategory(-1))
            m_searchInput->setFocus();
    } else {
        return obj == m_homeAddBtn;
    }
    return true;
}

bool HomeView::handleRight(const QObject* obj)
{
    if (obj == m_searchInput) {
        if (m_searchInput->cursorPosition() != m_searchInput->text().size() ||
            m_searchInput->hasSelectedText())
            return false;
        m_homeSettingsBtn->setFocus();
    } else if (obj == m_homeAddBtn) {
        m_homeTemplateBtn->setFocus();
    } else if (obj == m_homeTemplateBtn) {
        m_searchInput->setFocus();
    } else if (obj == m_catScroll) {
        if (!stepCategory(1))
            m_homeSettingsBtn->setFocus();
    } else {
        return obj == m_homeSettingsBtn;
    }
    return true;
}

bool HomeView::handleEnter(QObject* obj)
{
    if (obj == m_searchInput) {
        if (m_listWidget->count() > 0) {
            focusListFromSearch();
            m_mainWindow->handleItemExecution(nullptr);
        } else {
            launchWebQuery(0);
        }
    } else if (obj == m_catScroll) {
        m_mainWindow->showCategoryActionsMenu();
    } else if (obj == m_listWidget) {
        m_mainWindow->handleItemExecution(nullptr);
    } else if (auto* button = qobject_cast<QAbstractButton*>(obj)) {
        button->click();
    } else {
        return false;
    }
    return true;
}

bool HomeView::handleEvent(QObject* obj, QEvent* e)
{
    switch (e->type()) {
    case QEvent::Resize:
        if (obj == m_listWidget->viewport())
            applyGridCellSize();
        return false;
    case QEvent::Wheel:
        if (obj != m_catScroll && obj != m_catContainer)
            return false;
        scrollStrip(*static_cast<QWheelEvent*>(e));
        return true;
    case QEvent::MouseButtonPress:
        if (obj != m_searchFrame)
            return false;
        m_searchInput->setFocus();
        return true;
    case QEvent::Enter:
    case QEvent::Leave:
        followHeaderButton(obj, e->type());
        return false;
    case QEvent::FocusIn:
    case QEvent::FocusOut:
        followHeaderButton(obj, e->type());
        followFocus(obj, e->type());
        return false;
    default:
        return false;
    }
}

void HomeView::scrollStrip(const QWheelEvent& e)
{
    const QPoint angle = e.angleDelta();
    QScrollBar* bar = m_catScroll->horizontalScrollBar();
    bar->setValue(bar->value() - (angle.y() != 0 ? angle.y() : angle.x()));
}

void HomeView::followHeaderButton(const QObject* obj, QEvent::Type type)
{
    using IconUpdate = void (HomeView::*)(bool);
    const std::array<std::pair<GlyphButton*, IconUpdate>, 3> buttons{
        {{m_homeAddBtn, &HomeView::updateHomeAddBtnIcon},
         {m_homeTemplateBtn, &HomeView::updateHomeTemplateBtnIcon},
         {m_homeSettingsBtn, &HomeView::updateHomeSettingsBtnIcon}}};
    for (const auto& [button, update] : buttons) {
        if (obj != button)
            continue;
        if (type == QEvent::Enter || type == QEvent::FocusIn) {
            (this->*update)(true);
            return;
        }
        // What the button says of itself holds once the event is through.
        QTimer::singleShot(0, this, [this, button = button, update = update] {
            (this->*update)(button->hasFocus() || button->underMouse());
        });
        return;
    }
}

void HomeView::followFocus(const QObject* obj, QEvent::Type type)
{
    if (obj == m_searchInput && type == QEvent::FocusIn) {
        m_previewEmptyHintLbl->setText(Tr::t(QStringLiteral("home.search_hint")));
        if (actionsStep() != ActionsNone)
            m_mainWindow->closeItemActionsPanel();
        if (!m_mainWindow->isItemEditorOpen())
            m_previewStack->setCurrentIndex(PagePreviewEmpty);
    } else if (obj == m_catScroll || obj == m_listWidget) {
        QTimer::singleShot(0, this, &HomeView::applySelectedCatPillStyle);
    }
}
