// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SpotlightWindow.h"

#include <QListWidget>

#include <memory>
#include <utility>

namespace
{

using Delegate = SpotlightResultDelegate;

/// The row of an item that isn't stored anywhere, as yet without an icon.
std::unique_ptr<QListWidgetItem> makeSyntheticItem(const LauncherElement& element)
{
    auto item = std::make_unique<QListWidgetItem>(element.name);
    item->setData(Delegate::RoleItemType, element.shortcutType);
    item->setData(Delegate::RoleReserved, 0);
    item->setData(Delegate::RoleSynthetic, true);
    item->setData(Delegate::RoleValue, element.value);
    return item;
}

/// The row of a stored item. It holds the match and answers from that: there may be many thousand
/// within a keystroke, in which filling in each role by itself would show.
class ShortcutRow : public QListWidgetItem
{
public:
    ShortcutRow(const SearchMatch& match, QString type) : m_match(match), m_type(std::move(type)) {}

    QListWidgetItem* clone() const override { return new ShortcutRow(*this); }

    QVariant data(int role) const override
    {
        switch (role) {
        case Qt::DisplayRole:
            return m_match.el.name;
        case Delegate::RoleItemType:
            return m_type;
        case Delegate::RoleReserved:
            return 0;
        case Delegate::RoleIconToken:
            return m_match.el.iconPath;
        case Delegate::RoleOriginalIndex:
            return m_match.originalIndex;
        case Delegate::RoleElementId:
        case SpotlightWindow::RoleUsageKey:
            return m_match.el.id;
        case Delegate::RoleCategory:
            return m_match.category;
        default:
            return QListWidgetItem::data(role);
        }
    }

private:
    SearchMatch m_match;
    QString m_type;
};

} // namespace

void SpotlightWindow::addHeaderRow(const QString& text)
{
    auto item = std::make_unique<QListWidgetItem>(text);
    item->setData(Delegate::RoleIsHeader, true);
    item->setFlags(Qt::NoItemFlags);
    m_resultsList->addItem(item.release());
}

void SpotlightWindow::addShortcutRow(const SearchMatch& match, bool first, bool last)
{
    auto item = std::make_unique<ShortcutRow>(match, typeOf(match.el));
    markGroupEdges(item.get(), first, last);
    m_resultsList->addItem(item.release());
}

void SpotlightWindow::addAppRow(const AppIndex::Entry& entry, bool first, bool last)
{
    auto item = makeSyntheticItem(AppIndex::asElement(entry));
    item->setIcon(AppIndex::iconFor(entry));
    item->setData(RoleUsageKey, entry.key);
    markGroupEdges(item.get(), first, last);
    m_resultsList->addItem(item.release());
}

void SpotlightWindow::addFileRow(const FileIndex::Entry& entry, bool first, bool last)
{
    auto item = makeSyntheticItem(FileIndex::asElement(entry));
    item->setIcon(FileIndex::iconFor(entry));
    item->setData(RoleUsageKey, entry.path);
    markGroupEdges(item.get(), first, last);
    m_resultsList->addItem(item.release());
}

void SpotlightWindow::addWebRow(const WebQuery::Suggestion& suggestion, bool first, bool last)
{
    auto item = makeSyntheticItem(WebQuery::asElement(suggestion));
    item->setData(Delegate::RoleIconToken, suggestion.iconToken);
    markGroupEdges(item.get(), first, last);
    m_resultsList->addItem(item.release());
}

void SpotlightWindow::addCalcRow(const Calculator::Result& result)
{
    const LauncherElement element = Calculator::asElement(result);
    auto item = makeSyntheticItem(element);
    item->setData(Delegate::RoleIconToken, element.iconPath);
    markGroupEdges(item.get(), true, true);
    m_resultsList->addItem(item.release());
}

void SpotlightWindow::addHintRow(const QString& text, const QString& iconToken, const QString& type)
{
    auto item = std::make_unique<QListWidgetItem>(text);
    item->setData(Delegate::RoleItemType, type);
    item->setData(Delegate::RoleIconToken, iconToken);
    item->setData(Delegate::RoleIsHint, true);
    item->setFlags(Qt::NoItemFlags);
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

LauncherElement SpotlightWindow::elementOf(const QListWidgetItem& item)
{
    LauncherElement element;
    element.name = item.text();
    element.shortcutType = item.data(Delegate::RoleItemType).toString();
    element.value = item.data(Delegate::RoleValue).toString();
    element.iconPath = item.data(Delegate::RoleIconToken).toString();
    return element;
}
