// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CardHeader.h"

#include "Theme.h"

#include <QHBoxLayout>
#include <QLabel>

CardHeader::CardHeader(const QString& objectName, const QString& title, int radiusPx,
                       QWidget* parent)
    : QFrame(parent), m_row(new QHBoxLayout(this)), m_title(new QLabel(title))
{
    setObjectName(objectName);
    setFixedHeight(Height);
    setStyleSheet(QStringLiteral("QFrame#%1 { %2 }")
                      .arg(objectName, Theme::bandStyle(Theme::shellBg(), radiusPx, 0)));
    m_row->setContentsMargins(SidePad, 0, SidePad, 0);
    m_row->setSpacing(LeadingSpan);
    m_title->setTextFormat(Qt::PlainText);
    m_title->setAlignment(Qt::AlignCenter);
    m_title->setStyleSheet(Theme::bandTitleStyle(Theme::colors()));
    m_row->addWidget(m_title, 1);
}

QString CardHeader::title() const
{
    return m_title->text();
}

void CardHeader::setTitle(const QString& title)
{
    m_title->setText(title);
}

void CardHeader::setLeading(QWidget* widget)
{
    m_row->insertWidget(0, widget);
    m_title->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}
