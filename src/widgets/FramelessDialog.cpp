// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FramelessDialog.h"

#include "CardHeader.h"
#include "CardShadow.h"
#include "CardShape.h"
#include "Keys.h"
#include "Theme.h"

#include <QFrame>
#include <QGraphicsDropShadowEffect>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace
{

constexpr int kButtonSidePad = 16; // in the style sheets of buttons

QList<QPushButton*> buttonsOf(const QHBoxLayout* row)
{
    QList<QPushButton*> buttons;
    for (int i = 0; i < row->count(); ++i) {
        if (auto* button = qobject_cast<QPushButton*>(row->itemAt(i)->widget()))
            buttons.append(button);
    }
    return buttons;
}

} // namespace

bool handleDialogBackKey(QDialog* dialog, QKeyEvent* event)
{
    if (!Keys::isBack(event->key()))
        return false;
    dialog->reject();
    return true;
}

FramelessDialog::FramelessDialog(QWidget* parent, const QString& title, int shadowAlpha,
                                 int padding)
    : QDialog(parent)
{
    setWindowTitle(title);
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setAttribute(Qt::WA_TranslucentBackground);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(ShadowPad, ShadowPad, ShadowPad, ShadowPad);
    m_card = Theme::createFramelessDialogBackground(this, Theme::colors(), shadowAlpha, padding);
    outer->addWidget(m_card);
    moveShadowBelowCard();
    CardShape::attach(this, m_card, Theme::Rad_Lg, m_shadowLayer);
    m_rows = new QVBoxLayout(m_card);
    m_rows->setContentsMargins(0, 0, 0, 0);
    m_rows->setSpacing(Spacing);
}

void FramelessDialog::moveShadowBelowCard()
{
    // On the card itself, every blink of a caret in it would paint all of it and blur that.
    const auto* given = qobject_cast<QGraphicsDropShadowEffect*>(m_card->graphicsEffect());
    m_shadowLayer = new QWidget(this);
    m_shadowLayer->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_shadowLayer->lower();
    auto* shadow = new CardShadow(m_shadowLayer, Theme::Rad_Lg);
    shadow->setBlurRadius(given->blurRadius());
    shadow->setColor(given->color());
    shadow->setOffset(given->offset());
    m_shadowLayer->setGraphicsEffect(shadow);
    m_card->setGraphicsEffect(nullptr);
}

CardHeader* FramelessDialog::addHeader(const QString& objectName)
{
    // The band lies inside the card's border, so its corners are that much tighter.
    auto* header = new CardHeader(objectName, windowTitle(), Theme::Rad_Lg - PaperBorder);
    m_rows->setSpacing(0);
    m_rows->insertWidget(0, header);
    return header;
}

QVBoxLayout* FramelessDialog::addBody()
{
    auto* body = new QVBoxLayout;
    body->setContentsMargins(CardPad, CardPad, CardPad, CardPad);
    body->setSpacing(Spacing);
    m_rows->addLayout(body);
    return body;
}

QHBoxLayout* FramelessDialog::addButtonRow(QVBoxLayout* column, int topPad)
{
    auto* row = new QHBoxLayout;
    row->setContentsMargins(0, topPad, 0, 0);
    column->addLayout(row);
    return row;
}

QPushButton* FramelessDialog::addButton(QHBoxLayout* row, const QString& text, const QString& style,
                                        int stretch)
{
    auto* button = new QPushButton(text, this);
    button->setFixedHeight(ButtonHeight);
    button->setStyleSheet(style);
    row->addWidget(button, stretch);
    return button;
}

void FramelessDialog::fitButtons(const QHBoxLayout* row, int width)
{
    const QList<QPushButton*> buttons = buttonsOf(row);
    const int count = static_cast<int>(buttons.size());
    int excess = row->spacing() * (count - 1) - width;
    for (const QPushButton* button : buttons)
        excess += button->sizeHint().width();
    if (excess <= 0)
        return;
    const int sides = 2 * count;
    const int sidePad = std::max(0, kButtonSidePad - (excess + sides - 1) / sides);
    for (QPushButton* button : buttons)
        button->setStyleSheet(
            button->styleSheet() +
            QStringLiteral("QPushButton { padding-left: %1px; padding-right: %1px; }")
                .arg(sidePad));
}

void FramelessDialog::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    m_shadowLayer->setGeometry(rect().adjusted(ShadowPad, ShadowPad, -ShadowPad, -ShadowPad));
}

void FramelessDialog::keyPressEvent(QKeyEvent* event)
{
    if (!handleDialogBackKey(this, event))
        QDialog::keyPressEvent(event);
}
