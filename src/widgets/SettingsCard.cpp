// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SettingsCard.h"

#include "SettingsCardFilter.h"
#include "Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace
{

constexpr QMargins kMargins(24, 12, 16, 12);
constexpr QMargins kPageMargins(16, 16, 16, 16);

QLabel* makeTitle(const QString& text)
{
    auto* title = new QLabel(text);
    title->setObjectName(QStringLiteral("titleStatic"));
    title->setTextFormat(Qt::PlainText);
    title->setWordWrap(true); // in a narrow page the control keeps its place
    title->setStyleSheet(Theme::staticTitleStyle(Theme::colors()));
    return title;
}

} // namespace

SettingsCard::SettingsCard(const QString& title, QWidget* control, QWidget* parent)
    : SettingsCard(makeTitle(title), control, parent)
{}

SettingsCard::SettingsCard(QWidget* heading, QWidget* control, QWidget* parent) : QFrame(parent)
{
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(kMargins);
    row->setSpacing(Theme::Sp_Md);
    row->addWidget(heading, 1, Qt::AlignVCenter);
    row->addWidget(control, 0, Qt::AlignVCenter);
    new SettingsCardFilter(this, control, this);
}

bool SettingsCard::isCard(const QWidget* widget)
{
    return qobject_cast<const QFrame*>(widget) && widget->focusPolicy() == Qt::StrongFocus;
}

void collectSettingsRows(QWidget* root, QList<QFrame*>& out)
{
    const auto children = root->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget* child : children) {
        if (SettingsCard::isCard(child))
            out.append(static_cast<QFrame*>(child));
        else
            collectSettingsRows(child, out);
    }
}

QVBoxLayout* makeSettingsColumn(QWidget* page)
{
    page->setStyleSheet(QStringLiteral("background: transparent;"));
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(kPageMargins);
    column->setSpacing(Theme::Sp_Lg);
    return column;
}
