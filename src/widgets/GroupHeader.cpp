// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "GroupHeader.h"

#include "Theme.h"

#include <QHBoxLayout>
#include <QLabel>

GroupHeader::GroupHeader(const QString& title, const QMargins& margins, QWidget* parent)
    : QFrame(parent)
{
    const ColorTokens c = Theme::colors();
    setObjectName(QStringLiteral("groupHeader"));
    setStyleSheet(QStringLiteral("QFrame#groupHeader { background: transparent; border: none; }"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(margins);
    row->setSpacing(Theme::Sp_Md);
    auto* label = new QLabel(title);
    label->setTextFormat(Qt::PlainText);
    label->setStyleSheet(Theme::groupHeaderStyle(c));
    row->addWidget(label);
    auto* line = new QFrame;
    line->setFixedHeight(1);
    line->setStyleSheet(Theme::separatorStyle(c));
    row->addWidget(line, 1);
}
