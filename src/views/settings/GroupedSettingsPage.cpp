// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "GroupedSettingsPage.h"

#include "GroupHeader.h"
#include "ScrollPage.h"

#include <QVBoxLayout>

namespace
{

constexpr QMargins kHeaderMargins(24, 0, 16, 4);
constexpr int kHeaderTopSpace = 12;

} // namespace

GroupedSettingsPage::GroupedSettingsPage(const QList<Group>& groups, QWidget* parent)
    : QWidget(parent)
{
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    auto* scroll = new ScrollPage;
    outer->addWidget(scroll);
    bool isFirst = true;
    for (const Group& group : groups) {
        if (!group.page)
            continue;
        if (!group.title.isEmpty())
            scroll->rows()->addWidget(makeGroupHeader(group.title, !isFirst));
        isFirst = false;
        if (group.page->layout())
            group.page->layout()->setContentsMargins(0, 0, 0, 0);
        scroll->rows()->addWidget(group.page);
    }
    scroll->rows()->addStretch();
}

GroupedSettingsPage::GroupedSettingsPage(const QList<QWidget*>& pages, QWidget* parent)
    : GroupedSettingsPage(withoutTitles(pages), parent)
{}

QList<GroupedSettingsPage::Group> GroupedSettingsPage::withoutTitles(const QList<QWidget*>& pages)
{
    QList<Group> groups;
    for (QWidget* page : pages)
        groups.append({QString(), page});
    return groups;
}

QFrame* GroupedSettingsPage::makeGroupHeader(const QString& title, bool topSpace)
{
    return new GroupHeader(title,
                           kHeaderMargins + QMargins(0, topSpace ? kHeaderTopSpace : 0, 0, 0));
}
