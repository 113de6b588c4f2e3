// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FloatingCard.h"

#include "CardShape.h"
#include "Theme.h"

#include <QFrame>
#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace
{

Qt::WindowFlags flagsFor(Qt::WindowType type)
{
    const Qt::WindowFlags flags = type | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint;
    // No system gives the focus to a tip; a tool window would get it by a click.
    return type == Qt::ToolTip ? flags : flags | Qt::WindowDoesNotAcceptFocus;
}

int bounded(int value, int first, int last)
{
    return std::clamp(value, first, std::max(first, last));
}

} // namespace

FloatingCard::FloatingCard(QWidget* parent, Qt::WindowType type, const QString& cardName)
    : QWidget(parent, flagsFor(type)), m_card(new QFrame)
{
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFocusPolicy(Qt::NoFocus);
    auto* box = new QVBoxLayout(this);
    box->setContentsMargins(0, 0, 0, 0);
    box->addWidget(m_card);
    const ColorTokens c = Theme::colors();
    m_card->setObjectName(cardName);
    m_card->setStyleSheet(QStringLiteral("QFrame#%1 { background-color: %2; border: 1px solid %3; "
                                         "border-radius: %4px; }")
                              .arg(cardName, c.surfaceContainerHighest, c.outline)
                              .arg(Theme::Rad_Md));
    CardShape::attach(this, m_card, Theme::Rad_Md);
    hide();
}

void FloatingCard::fitToContent()
{
    // A hidden window's layouts would tell each other of a change only in a later turn.
    if (m_card->layout())
        m_card->layout()->activate();
    layout()->activate();
    adjustSize();
}

void FloatingCard::placeAt(const QPoint& topLeft, const QPoint& screenPoint)
{
    const QScreen* screen = QGuiApplication::screenAt(screenPoint);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen) {
        move(topLeft);
        return;
    }
    const QRect area = screen->availableGeometry();
    move(bounded(topLeft.x(), area.left(), area.right() - width()),
         bounded(topLeft.y(), area.top(), area.bottom() - height()));
}
