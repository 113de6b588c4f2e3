// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CustomWidgets.h"
#include "LaunchDispatcher.h"
#include "LauncherModel.h"
#include "Localization.h"
#include "SpotlightWindow.h"
#include "UsageStats.h"

#include <QListWidget>

#include <algorithm>
#include <memory>
#include <numeric>
#include <utility>

namespace
{

using Delegate = SpotlightResultDelegate;

/// The most used first; what is used equally keeps its order. Scores are taken once, since they
/// decay while a sort runs and a sort needs a firm order.
template <typename Entry, typename KeyOf>
void sortByUsage(QVector<Entry>& entries, KeyOf keyOf)
{
    QVector<std::pair<double, Entry>> scored;
    scored.reserve(entries.size());
    for (Entry& entry : entries) {
        const double score = UsageStats::scoreFor(keyOf(entry));
        scored.append({score, std::move(entry)});
    }
    std::stable_sort(scored.begin(), scored.end(),
                     [](const auto& a, const auto& b) { return a.first > b.first; });
    std::transform(scored.begin(), scored.end(), entries.begin(),
                   [](auto& pair) { return std::move(pair.second); });
}

std::unique_ptr<QListWidgetItem> makeSyntheticItem(const LauncherElement& element)
{
    auto item = std::make_unique<QListWidgetItem>(element.name);
    item->setData(Delegate::RoleItemType, element.shortcutType);
    item->setData(Delegate::RoleReserved, 0);
    item->setData(Delegate::RoleIconToken, element.iconPath);
    item->setData(Delegate::RoleSynthetic, true);
    item->setData(Delegate::RoleValue, element.value);
    return item;
}

/// The item of a synthetic row, put together from what the row says.
LauncherElement elementOf(const QListWidgetItem& item)
{
    LauncherElement element;
    element.name = item.text();
    element.shortcutType = item.data(Delegate::RoleItemType).toString();
    element.value = item.data(Delegate::RoleValue).toString();
    element.iconPath = item.data(Delegate::RoleIconToken).toString();
    return element;
}

} // namespace

/// The hits of one type among the user's items, the most used first.
struct SpotlightWindow::Group
{
    QString type;
    QVector<SearchMatch> matches;
};

void SpotlightWindow::rebuildResults(const QString& text, const QStringList& scopeKeys)
{
    m_resultsList->clear();
    m_searchInput->setGhostText(QString());
    if (!text.isEmpty()) {
        if (scopeKeys.isEmpty())
            addCalculatorGroup(text);
        addOwnItemGroups(text, scopeKeys);
        selectFirstResultRow();
        // The view stays scrolled where it was, and selecting shows a row without its header.
        m_resultsList->scrollToTop();
    }
    applyResultsLayout(m_resultsList->count());
}

void SpotlightWindow::addCalculatorGroup(const QString& text)
{
    if (!Calculator::looksLikeStart(text))
        return;
    // Ahead of the evaluation, so that the panel stays open while an expression is unfinished.
    addHeaderRow(Tr::t(QStringLiteral("spotlight.group_calc")));
    const Calculator::Result result = Calculator::evaluate(text);
    if (result.ok)
        addCalcRow(result);
}

QVector<SpotlightWindow::Group> SpotlightWindow::ownItemGroups(const QString& text) const
{
    QVector<Group> groups;
    const QVector<SearchMatch> matches = SearchEngine::search(m_model->data(), text.trimmed());
    for (const SearchMatch& match : matches) {
        const QString type =
            match.el.shortcutType.isEmpty() ? QStringLiteral("URL") : match.el.shortcutType;
        auto group = std::find_if(groups.begin(), groups.end(),
                                  [&type](const Group& g) { return g.type == type; });
        if (group == groups.end())
            group = groups.insert(groups.end(), Group{type, {}});
        group->matches.append(match);
    }
    for (Group& group : groups)
        sortByUsage(group.matches, [](const SearchMatch& match) { return match.el.id; });
    sortByUsage(groups, [](const Group& group) { return group.matches.constFirst().el.id; });
    return groups;
}

void SpotlightWindow::addOwnItemGroups(const QString& text, const QStringList& scopeKeys)
{
    const bool allScopes = scopeKeys.isEmpty();
    const bool mixedView = allScopes || scopeKeys.size() >= 2;
    const QVector<Group> groups = ownItemGroups(text);
    for (const Group& group : groups) {
        if (!allScopes && !scopeKeys.contains(group.type))
            continue;
        if (mixedView)
            addHeaderRow(Delegate::typeLabel(group.type));
        const qsizetype size = group.matches.size();
        for (qsizetype i = 0; i < size; ++i)
            addShortcutRow(group.matches.at(i), i == 0, i == size - 1);
    }
}

void SpotlightWindow::addHeaderRow(const QString& text)
{
    auto item = std::make_unique<QListWidgetItem>(text);
    item->setData(Delegate::RoleIsHeader, true);
    item->setFlags(Qt::NoItemFlags);
    m_resultsList->addItem(item.release());
}

void SpotlightWindow::addShortcutRow(const SearchMatch& match, bool first, bool last)
{
    auto item = std::make_unique<QListWidgetItem>(match.el.name);
    const QString& type = match.el.shortcutType;
    item->setData(Delegate::RoleItemType, type.isEmpty() ? QStringLiteral("URL") : type);
    item->setData(Delegate::RoleReserved, 0);
    item->setData(Delegate::RoleIconToken, match.el.iconPath);
    item->setData(Delegate::RoleOriginalIndex, match.originalIndex);
    item->setData(Delegate::RoleElementId, match.el.id);
    item->setData(Delegate::RoleCategory, match.category);
    item->setData(RoleUsageKey, match.el.id);
    markGroupEdges(item.get(), first, last);
    m_resultsList->addItem(item.release());
}

void SpotlightWindow::addCalcRow(const Calculator::Result& result)
{
    auto item = makeSyntheticItem(Calculator::asElement(result));
    markGroupEdges(item.get(), true, true);
    m_resultsList->addItem(item.release());
}

void SpotlightWindow::markGroupEdges(QListWidgetItem* item, bool first, bool last)
{
    item->setData(Delegate::RoleGroupFirst, first);
    item->setData(Delegate::RoleGroupLast, last);
}

bool SpotlightWindow::isResultRow(int row) const
{
    const QListWidgetItem* item = m_resultsList->item(row);
    return item && !item->data(Delegate::RoleIsHeader).toBool() &&
           !item->data(Delegate::RoleIsHint).toBool();
}

void SpotlightWindow::selectFirstResultRow()
{
    for (int row = 0; row < m_resultsList->count(); ++row) {
        if (isResultRow(row)) {
            m_resultsList->setCurrentRow(row);
            return;
        }
    }
}

void SpotlightWindow::launchItem(QListWidgetItem* item)
{
    if (!item || item->data(Delegate::RoleIsHeader).toBool() ||
        item->data(Delegate::RoleIsHint).toBool())
        return;
    // A copy: a message box of the launch runs an event loop, in which the list may be made anew.
    const std::unique_ptr<QListWidgetItem> row(item->clone());
    LauncherElement element;
    if (row->data(Delegate::RoleSynthetic).toBool()) {
        element = elementOf(*row);
    } else {
        QString category;
        int index = -1;
        const QVector<LauncherElement>* items = m_model->locateElementById(
            row->data(Delegate::RoleElementId).toString(), category, index);
        if (!items || index < 0 || index >= items->size())
            return; // deleted since the row was made
        element = items->at(index);
    }
    if (!LaunchDispatcher::execute(element, this))
        return;
    recordUsage(row.get());
    m_searchInput->clear();
    fadeOutAndHide();
}

void SpotlightWindow::recordUsage(const QListWidgetItem* item)
{
    if (item)
        UsageStats::record(item->data(RoleUsageKey).toString());
}
