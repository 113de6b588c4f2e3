// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CustomWidgets.h"
#include "LaunchDispatcher.h"
#include "LauncherModel.h"
#include "Localization.h"
#include "SpotlightWindow.h"
#include "Types.h"
#include "UsageStats.h"

#include <QHash>
#include <QListWidget>

#include <algorithm>
#include <functional>
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
    QVector<double> scores;
    scores.reserve(entries.size());
    for (const Entry& entry : std::as_const(entries))
        scores.append(UsageStats::scoreFor(keyOf(entry)));
    // Few things have ever been used, and there may be many thousand.
    if (std::is_sorted(scores.cbegin(), scores.cend(), std::greater<>()))
        return;
    QVector<std::pair<double, Entry>> scored;
    scored.reserve(entries.size());
    for (qsizetype i = 0; i < entries.size(); ++i)
        scored.append({scores.at(i), std::move(entries[i])});
    std::stable_sort(scored.begin(), scored.end(),
                     [](const auto& a, const auto& b) { return a.first > b.first; });
    std::transform(scored.begin(), scored.end(), entries.begin(),
                   [](auto& pair) { return std::move(pair.second); });
}

/// Whether results of several kinds may stand in the list.
bool isMixedView(const QStringList& scopeKeys)
{
    return scopeKeys.isEmpty() || scopeKeys.size() >= 2;
}

/// Calls `addRow` for each entry of a group, with whether it is the first and whether the last.
template <typename Entry, typename AddRow>
void addRows(const QVector<Entry>& entries, AddRow addRow)
{
    const qsizetype size = entries.size();
    for (qsizetype i = 0; i < size; ++i)
        addRow(entries.at(i), i == 0, i == size - 1);
}

/// What an engine is asked for: the title of its group, and the ghost of a query to come.
QString engineTitle(const WebQuery::EngineMatch& em)
{
    if (em.query.isEmpty())
        return Tr::t(QStringLiteral("web.engine_group_empty")).arg(em.engineName);
    return Tr::t(QStringLiteral("web.engine_group")).arg(em.engineName, em.query);
}

} // namespace

/// The hits of one type among the user's items, the most used first.
struct SpotlightWindow::Group
{
    QString type;
    QVector<SearchMatch> matches;
};

QString SpotlightWindow::typeOf(const LauncherElement& element)
{
    return element.shortcutType.isEmpty() ? QString(ItemType::Url) : element.shortcutType;
}

void SpotlightWindow::rebuildResults(const QString& text, const QStringList& scopeKeys)
{
    m_resultsList->clear();
    const bool allScopes = scopeKeys.isEmpty();
    const WebQuery::EngineMatch em = WebQuery::engineFor(text);
    m_searchInput->setGhostText(em.matched && em.query.isEmpty() ? engineTitle(em) : QString());
    if (!text.isEmpty()) {
        m_fileHits = fileHits(text, scopeKeys);
        if (allScopes)
            addCalculatorGroup(text);
        addOwnItemGroups(text, scopeKeys);
        if (allScopes || scopeKeys.contains(ItemType::Application))
            addApplicationGroup(text);
        addFileGroups(scopeKeys);
        if (allScopes)
            addWebGroups(text, em);
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
    QHash<QString, qsizetype> places; // a document may hold as many types as items
    QVector<SearchMatch> matches = SearchEngine::search(m_model->data(), text.trimmed());
    for (SearchMatch& match : matches) {
        const QString type = typeOf(match.el);
        const qsizetype place = places.value(type, groups.size());
        if (place == groups.size()) {
            places.insert(type, place);
            groups.append({type, {}});
        }
        groups[place].matches.append(std::move(match));
    }
    for (Group& group : groups)
        sortByUsage(group.matches, [](const SearchMatch& match) { return match.el.id; });
    sortByUsage(groups, [](const Group& group) { return group.matches.constFirst().el.id; });
    return groups;
}

void SpotlightWindow::addOwnItemGroups(const QString& text, const QStringList& scopeKeys)
{
    const QVector<Group> groups = ownItemGroups(text);
    for (const Group& group : groups) {
        if (!scopeKeys.isEmpty() && !scopeKeys.contains(group.type))
            continue;
        if (isMixedView(scopeKeys))
            addHeaderRow(Delegate::typeLabel(group.type));
        addRows(group.matches, [this](const SearchMatch& match, bool first, bool last) {
            addShortcutRow(match, first, last);
        });
    }
}

void SpotlightWindow::addApplicationGroup(const QString& text)
{
    // Cut off before usage ranks them: it never brings in one that the search itself didn't.
    QVector<AppIndex::Entry> entries = AppIndex::search(text.trimmed(), APP_LIMIT);
    if (entries.isEmpty())
        return;
    sortByUsage(entries, [](const AppIndex::Entry& entry) { return entry.key; });
    addHeaderRow(Tr::t(QStringLiteral("spotlight.group_apps")));
    addRows(entries, [this](const AppIndex::Entry& entry, bool first, bool last) {
        addAppRow(entry, first, last);
    });
}

SpotlightWindow::FileHits SpotlightWindow::fileHits(const QString& text,
                                                    const QStringList& scopeKeys) const
{
    FileHits hits;
    hits.wantsFiles = scopeKeys.isEmpty() || scopeKeys.contains(ItemType::File);
    hits.wantsFolders = scopeKeys.contains(FolderScope); // only where they are asked for
    if (!hits.wantsFiles && !hits.wantsFolders)
        return hits;
    hits.isReady = FileIndex::isReady();
    const QString query = text.trimmed();
    const int limit = isMixedView(scopeKeys) ? VISIBLE_ROWS : FILE_LIMIT;
    if (hits.wantsFiles)
        hits.files = FileIndex::search(query, limit, FileIndex::Files);
    if (hits.wantsFolders)
        hits.folders = FileIndex::search(query, limit, FileIndex::Folders);
    return hits;
}

void SpotlightWindow::addFileGroups(const QStringList& scopeKeys)
{
    const FileHits hits = m_fileHits;
    if (!hits.wantsFiles && !hits.wantsFolders)
        return;
    const QString filesTitle = Tr::t(QStringLiteral("spotlight.group_files"));
    const QString foldersTitle = Tr::t(QStringLiteral("spotlight.group_folders"));
    if (!hits.isReady) {
        if (scopeKeys.isEmpty())
            return; // a search through everything has enough to show without
        addHeaderRow(hits.wantsFiles ? filesTitle : foldersTitle);
        addHintRow(Tr::t(QStringLiteral("spotlight.files_preparing")), QString(), ItemType::File);
        return;
    }
    addFileGroup(filesTitle, hits.files);
    addFileGroup(foldersTitle, hits.folders);
}

void SpotlightWindow::rebuildForChangedFiles()
{
    const QString text = m_searchInput->text();
    // What has changed is mostly elsewhere, and a rebuilt list forgets what the user has selected.
    if (!text.isEmpty() && fileHits(text, m_scopeKeys) != m_fileHits)
        rebuildResults(text, m_scopeKeys);
}

void SpotlightWindow::addFileGroup(const QString& title, const QVector<FileIndex::Entry>& hits)
{
    if (hits.isEmpty())
        return;
    addHeaderRow(title);
    addRows(hits, [this](const FileIndex::Entry& entry, bool first, bool last) {
        addFileRow(entry, first, last);
    });
}

void SpotlightWindow::addWebGroups(const QString& text, const WebQuery::EngineMatch& em)
{
    QVector<WebQuery::Suggestion> engineRows;
    QVector<WebQuery::Suggestion> webRows;
    const QVector<WebQuery::Suggestion> suggestions = WebQuery::suggestionsFor(text);
    for (const WebQuery::Suggestion& suggestion : suggestions)
        (suggestion.fromEngine ? engineRows : webRows).append(suggestion);
    if (em.matched) {
        addHeaderRow(engineTitle(em));
        addWebRows(engineRows);
        if (engineRows.isEmpty())
            addHintRow(Tr::t(QStringLiteral("web.engine_hint")), em.iconToken, ItemType::Url);
    }
    if (!webRows.isEmpty()) {
        addHeaderRow(Tr::t(QStringLiteral("spotlight.group_web")));
        addWebRows(webRows);
    }
}

void SpotlightWindow::addWebRows(const QVector<WebQuery::Suggestion>& suggestions)
{
    addRows(suggestions, [this](const WebQuery::Suggestion& suggestion, bool first, bool last) {
        addWebRow(suggestion, first, last);
    });
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
