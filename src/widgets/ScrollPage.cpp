// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ScrollPage.h"

#include "Theme.h"

#include <QVBoxLayout>

ScrollPage::ScrollPage(QWidget* parent) : QScrollArea(parent)
{
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setStyleSheet(QStringLiteral("QScrollArea { background: transparent; border: none; }"));
    auto* page = new QWidget;
    m_rows = new QVBoxLayout(page);
    m_rows->setContentsMargins(Theme::Sp_Lg, Theme::Sp_Lg, Theme::Sp_Lg, Theme::Sp_Lg);
    m_rows->setSpacing(Theme::Sp_Lg);
    setWidget(page);
    // Taking it in has made it opaque.
    page->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
}
