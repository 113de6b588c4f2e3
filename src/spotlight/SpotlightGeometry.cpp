// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FlowLayout.h"
#include "SpotlightWindow.h"

#include <QDialog>
#include <QFrame>
#include <QGuiApplication>
#include <QLayout>
#include <QScreen>

#include <algorithm>

int SpotlightWindow::chipRowHeight() const
{
    return m_chips.isEmpty() ? 0 : m_chipLayout->heightForWidth(ChipRowWidth);
}

int SpotlightWindow::searchStripHeight() const
{
    const int chips = chipRowHeight();
    return chips < 1 ? PILL_HEIGHT : PILL_HEIGHT + STRIP_PAD + chips;
}

int SpotlightWindow::panelHeightFor(int rows) const
{
    // Two heights only, so that typing doesn't resize the window.
    if (rows < 1)
        return 0;
    return VISIBLE_ROWS * SpotlightResultDelegate::RowHeight + RESULTS_PAD_TOP + RESULTS_PAD_BOTTOM;
}

int SpotlightWindow::windowHeightFor(int strip, int panel) const
{
    return strip + SEAM_GAP + std::max(panel, 0) + 2 * SHADOW_MARGIN;
}

int SpotlightWindow::emptyStateHeight() const
{
    return windowHeightFor(searchStripHeight(), 0);
}

int SpotlightWindow::anchoredY(int height) const
{
    int y = m_anchorPos.y();
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return y;
    // Only the visible card has to fit; the shadow's margin may hang off the screen.
    const QRect area = screen->availableGeometry();
    const int overflow = y + height - SHADOW_MARGIN - (area.bottom() + 1);
    if (overflow > 0)
        y -= overflow;
    return std::max(y, area.top() - SHADOW_MARGIN);
}

void SpotlightWindow::applyResultsLayout(int rowCount)
{
    if (!m_shell || !m_resultsPanel || !m_searchPill)
        return;
    const int panel = panelHeightFor(rowCount);
    const int strip = searchStripHeight();
    if (panel == m_panelHeight && strip == m_stripHeight)
        return;
    m_panelHeight = panel;
    m_stripHeight = strip;
    m_resultsShown = panel > 0;
    applySearchStripStyle();
    if (panel != 0)
        m_resultsPanel->setFixedHeight(panel);
    m_resultsPanel->setVisible(panel > 0);
    if (const int chips = chipRowHeight())
        m_chipRow->setFixedHeight(chips);
    m_searchPill->setFixedHeight(strip);
    m_shell->setFixedHeight(panel + strip);
    for (QLayout* changed : {m_shell->layout(), layout()}) {
        changed->invalidate();
        changed->activate();
    }
    const int height = windowHeightFor(strip, panel);
    setFixedHeight(height);
    if (m_anchorValid)
        setGeometry(m_anchorPos.x(), anchoredY(height), WINDOW_WIDTH, height);
    syncShadowLayers();
    update();
}

void SpotlightWindow::syncShadowLayers()
{
    m_shadowLayer->setGeometry(m_shell->geometry());
}

void SpotlightWindow::placeOnScreen()
{
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        const QRect area = screen->availableGeometry();
        move((area.width() - width()) / 2, area.height() / 4);
    }
    m_anchorPos = pos();
    m_anchorValid = true;
}

void SpotlightWindow::dragged()
{
    m_anchorPos = pos();
}

void SpotlightWindow::alignDialogToSearchBar(QDialog* dialog) const
{
    dialog->adjustSize();
    // Only the card has to fit; the margin around it, which is for the shadow, may hang off.
    const int margin = dialog->layout() ? dialog->layout()->contentsMargins().top() : 0;
    int x = geometry().center().x() - dialog->width() / 2;
    int y = geometry().top() + SHADOW_MARGIN - margin;
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        const QRect area = screen->availableGeometry();
        const int overflow = dialog->height() + y - margin - (area.bottom() + 1);
        y -= std::max(overflow, 0);
        y = std::max(y, area.top() - margin);
        x = std::min(x, area.right() + 1 + margin - dialog->width());
        x = std::max(x, area.left() - margin);
    }
    dialog->move(x, y);
}
