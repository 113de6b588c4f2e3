// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ChoiceRow.h"

#include "Theme.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPushButton>

namespace
{

constexpr int kPillHeight = 36;
constexpr int kRoundSize = 40;

void shapeButton(QPushButton* button, ChoiceRow::Shape shape, const QString& idleBgOverride)
{
    const ColorTokens c = Theme::colors();
    const QString selector = QStringLiteral("QPushButton#%1").arg(button->objectName());
    if (shape == ChoiceRow::Shape::Round) {
        button->setFixedSize(kRoundSize, kRoundSize);
        button->setStyleSheet(Theme::choiceRoundStyle(c, selector, idleBgOverride));
    } else {
        button->setFixedHeight(kPillHeight);
        button->setStyleSheet(Theme::choicePillStyle(c, selector, idleBgOverride));
    }
}

} // namespace

ChoiceRow::ChoiceRow(const QList<Choice>& choices, int current, Shape shape,
                     const QString& idleBgOverride, QWidget* parent)
    : QWidget(parent), m_value(current)
{
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Theme::Sp_Sm);
    auto* group = new QButtonGroup(this);
    for (const Choice& choice : choices) {
        auto* button = new QPushButton(choice.text);
        button->setObjectName(choice.objectName);
        button->setCheckable(true);
        button->setCursor(Qt::PointingHandCursor);
        button->setFocusPolicy(Qt::StrongFocus);
        shapeButton(button, shape, idleBgOverride);
        group->addButton(button);
        row->addWidget(button);
        button->setChecked(choice.value == current);
        connect(button, &QPushButton::toggled, this, [this, value = choice.value](bool isOn) {
            if (isOn)
                choose(value);
        });
    }
}

void ChoiceRow::choose(int value)
{
    m_value = value;
    emit chosen(value);
}
