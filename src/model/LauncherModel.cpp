// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "LauncherModel.h"

#include "Files.h"
#include "StorageManager.h"

#include <QFileInfo>
#include <QHash>

#include <algorithm>

namespace
{

constexpr int kFirstNameNumber = 2;
constexpr int kLastNameNumber = 999;

/// First position of the item with this id, or -1.
qsizetype indexOfId(const QVector<LauncherElement>& items, const QString& id)
{
    const auto found = std::find_if(items.cbegin(), items.cend(),
                                    [&id](const LauncherElement& item) { return item.id == id; });
    return found == items.cend() ? -1 : found - items.cbegin();
}

template <typename IsTaken>
QString firstFreeName(const QString& base, IsTaken isTaken)
{
    if (base.isEmpty() || !isTaken(base))
        return base;
    for (int n = kFirstNameNumber; n <= kLastNameNumber; ++n) {
        // Both arguments at once: a base that itself holds "%2" must come out unharmed.
        QString candidate = QStringLiteral("%1 %2").arg(base, QString::number(n));
        if (!isTaken(candidate))
            return candidate;
    }
    return base;
}

} // namespace

LauncherModel::LauncherModel(const QString& jsonPath, QObject* parent)
    : QObject(parent), m_jsonPath(jsonPath), m_data(StorageManager::loadData(jsonPath))
{
    migrateLegacyIcons();
}

const QVector<LauncherElement>& LauncherModel::getItems(const QString& category) const
{
    static const QVector<LauncherElement> none;
    const auto found = m_data.sectionElements.constFind(category);
    return found == m_data.sectionElements.cend() ? none : found.value();
}

const QVector<LauncherElement>* LauncherModel::locateElementById(const QString& id, QString& outCat,
                                                                 int& outIndex) const
{
    // The results are set last, because the id may stand in the very variable that takes one.
    const QStringList searched = id.isEmpty() ? QStringList() : m_data.categories;
    for (const QString& category : searched) {
        const QVector<LauncherElement>& items = getItems(category);
        const qsizetype index = indexOfId(items, id);
        if (index >= 0) {
            outCat = category;
            outIndex = static_cast<int>(index);
            return &items;
        }
    }
    outCat.clear();
    outIndex = -1;
    return nullptr;
}

uint LauncherModel::getCategoryIcon(const QString& cat) const
{
    return m_data.categoryIcons.value(cat, SectionTemplate::DefaultIcon);
}

int LauncherModel::templateIndexOf(const QString& name) const
{
    const auto begin = m_data.templates.cbegin();
    const auto end = m_data.templates.cend();
    const auto found =
        std::find_if(begin, end, [&name](const SectionTemplate& tpl) { return tpl.name == name; });
    return found == end ? -1 : static_cast<int>(found - begin);
}

QString LauncherModel::suggestItemName(const QString& category, const QString& base) const
{
    const QVector<LauncherElement>& items = getItems(category);
    return firstFreeName(base, [&items](const QString& name) {
        return std::any_of(items.cbegin(), items.cend(),
                           [&name](const LauncherElement& item) { return item.name == name; });
    });
}

QString LauncherModel::suggestSectionName(const QString& base) const
{
    return firstFreeName(base,
                         [this](const QString& name) { return m_data.categories.contains(name); });
}

bool LauncherModel::addCategory(const QString& newCat, uint icon)
{
    if (newCat.isEmpty() || m_data.categories.contains(newCat))
        return false;
    appendCategory(newCat, icon);
    saveAndShow(newCat);
    return true;
}

bool LauncherModel::editCategory(const QString& oldName, const QString& newName, uint newIcon)
{
    const bool isRename = newName != oldName;
    if (newName.isEmpty() || (isRename && m_data.categories.contains(newName)))
        return false;
    if (!isRename) {
        m_data.categoryIcons.insert(newName, newIcon);
        save();
        emit categoriesChanged();
        return true;
    }
    const qsizetype position = m_data.categories.indexOf(oldName);
    if (position < 0)
        return true;
    renameCategoryAt(position, newName);
    m_data.categoryIcons.insert(newName, newIcon);
    saveAndShow(newName);
    return true;
}

void LauncherModel::renameCategoryAt(qsizetype position, const QString& newName)
{
    const QString oldName = m_data.categories.at(position);
    m_data.categories[position] = newName;
    m_data.categoryIcons.remove(oldName);
    if (m_data.sectionElements.contains(oldName))
        m_data.sectionElements.insert(newName, m_data.sectionElements.take(oldName));
    if (m_data.defaultCategory == oldName)
        m_data.defaultCategory = newName;
}

void LauncherModel::deleteCategory(const QString& targetCat)
{
    // A copy, because callers may pass the very entry of the list that goes.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): a reference would dangle
    const QString category(targetCat);
    m_data.categories.removeAll(category);
    m_data.sectionElements.remove(category);
    ensureDefaultCategoryValid();
    saveAndShow(category == m_currentCategory ? m_data.categories.value(0) : m_currentCategory);
}

void LauncherModel::setCurrentCategory(const QString& category)
{
    if (category == m_currentCategory)
        return;
    m_currentCategory = category;
    emit currentCategoryChanged(m_currentCategory);
}

void LauncherModel::saveReorderedCategories(const QStringList& newCategories)
{
    m_data.categories = newCategories;
    ensureDefaultCategoryValid();
    save();
    emit categoriesChanged();
}

void LauncherModel::saveItem(const QString& category, const LauncherElement& item, int index)
{
    QList<LauncherElement>& items = m_data.sectionElements[category];
    if (index >= 0 && index < items.size())
        items[index] = item;
    else
        items.append(item);
    save();
    emit itemsChanged(category);
}

void LauncherModel::deleteItem(const QString& category, const QString& itemId)
{
    QList<LauncherElement>& items = m_data.sectionElements[category];
    const qsizetype index = indexOfId(items, itemId);
    if (index < 0)
        return;
    items.removeAt(index);
    save();
    emit itemsChanged(category);
}

bool LauncherModel::duplicateItem(const QString& category, const QString& itemId, QString* outNewId)
{
    const auto section = m_data.sectionElements.find(category);
    if (section == m_data.sectionElements.end())
        return false;
    const qsizetype index = indexOfId(section.value(), itemId);
    if (index < 0)
        return false;

    LauncherElement copy = section.value().at(index);
    copy.id = LauncherElement::createId();
    copy.name = suggestItemName(category, copy.name);
    section.value().insert(index + 1, copy);
    save();
    if (outNewId)
        *outNewId = copy.id;
    emit itemsChanged(category);
    return true;
}

bool LauncherModel::moveItemToCategory(const QString& fromCat, const QString& itemId,
                                       const QString& toCat)
{
    if (fromCat == toCat || !m_data.categories.contains(toCat))
        return false;
    const auto source = m_data.sectionElements.find(fromCat);
    if (source == m_data.sectionElements.end())
        return false;
    const qsizetype index = indexOfId(source.value(), itemId);
    if (index < 0)
        return false;

    const LauncherElement item = source.value().takeAt(index);
    m_data.sectionElements[toCat].append(item);
    save();
    emit itemsChanged(fromCat);
    return true;
}

void LauncherModel::saveReorderedItems(const QString& category,
                                       const QVector<LauncherElement>& newItems)
{
    m_data.sectionElements.insert(category, newItems);
    save();
    emit itemsChanged(category);
}

void LauncherModel::saveTemplate(const SectionTemplate& tpl)
{
    if (tpl.name.isEmpty())
        return;
    const int index = templateIndexOf(tpl.name);
    if (index >= 0)
        m_data.templates[index] = tpl;
    else
        m_data.templates.append(tpl);
    save();
    emit templatesChanged();
}

bool LauncherModel::renameTemplate(const QString& oldName, const QString& newName, uint newIcon)
{
    const int index = templateIndexOf(oldName);
    if (index < 0 || newName.isEmpty())
        return false;
    const int holder = templateIndexOf(newName);
    if (holder >= 0 && holder != index)
        return false;

    SectionTemplate& tpl = m_data.templates[index];
    tpl.name = newName;
    tpl.icon = newIcon;
    save();
    emit templatesChanged();
    return true;
}

void LauncherModel::deleteTemplate(const QString& name)
{
    const int index = templateIndexOf(name);
    if (index < 0)
        return;
    m_data.templates.removeAt(index);
    save();
    emit templatesChanged();
}

bool LauncherModel::createCategoryFromTemplate(const QString& templateName, const QString& newCat,
                                               uint icon)
{
    const int index = templateIndexOf(templateName);
    if (index < 0 || newCat.isEmpty() || m_data.categories.contains(newCat))
        return false;

    QVector<LauncherElement> items = m_data.templates.at(index).items;
    for (LauncherElement& item : items)
        item.id = LauncherElement::createId();
    appendCategory(newCat, icon);
    m_data.sectionElements.insert(newCat, items);
    saveAndShow(newCat);
    return true;
}

LauncherModel::Replacement LauncherModel::resetData()
{
    if (!StorageManager::savePrevious(m_jsonPath, m_data))
        return Replacement::NotKept;
    replaceAll(StorageManager::emptyDocument());
    return Replacement::Done;
}

LauncherModel::Replacement LauncherModel::importData(const QString& sourceJsonPath)
{
    const FileContent content = readFile(sourceJsonPath, StorageManager::MaxDocumentBytes);
    if (content.state != FileContent::State::Whole)
        return Replacement::Unreadable;
    const std::optional<LauncherData> data = StorageManager::parse(content.bytes);
    const bool isBroken = !data && !content.bytes.trimmed().isEmpty();
    // It may be one of the two files that are written now, and what it holds must be safe before.
    // As a copy: if the next step fails, nothing has changed.
    const QFileInfo previous(StorageManager::previousPath(m_jsonPath));
    const bool isPrevious = QFileInfo(sourceJsonPath) == previous;
    if (isBroken && isPrevious && !copyAside(sourceJsonPath, content.bytes))
        return Replacement::NotKept;
    if (!StorageManager::savePrevious(m_jsonPath, m_data))
        return Replacement::NotKept;
    if (isBroken && !isPrevious)
        moveFileAside(sourceJsonPath);
    replaceAll(data.value_or(StorageManager::emptyDocument()));
    return Replacement::Done;
}

void LauncherModel::replaceAll(const LauncherData& data)
{
    m_data = data;
    // Any document has a category and a default among them.
    const bool isStillThere = m_data.categories.contains(m_currentCategory);
    saveAndShow(isStillThere ? m_currentCategory : m_data.defaultCategory);
}

void LauncherModel::save() const
{
    StorageManager::saveData(m_jsonPath, m_data);
}

void LauncherModel::saveAndShow(const QString& category)
{
    // On disk before the first of the two signals: what listens may read the file.
    save();
    setCurrentCategory(category);
    emit categoriesChanged();
}

void LauncherModel::appendCategory(const QString& name, uint icon)
{
    m_data.categories.append(name);
    m_data.categoryIcons.insert(name, icon);
    ensureDefaultCategoryValid();
}

void LauncherModel::ensureDefaultCategoryValid()
{
    if (!m_data.categories.contains(m_data.defaultCategory))
        m_data.defaultCategory = m_data.categories.value(0);
}

void LauncherModel::migrateLegacyIcons()
{
    // Codepoints of the glyph font of older documents, and their successors.
    static const QHash<uint, uint> kLegacyIcons = {
        {0xF428, 0xE2C7}, {0xF2F6, 0xE40A}, {0xE713, 0xE429}, {0xF30B, 0xF20E}, {0xF4A5, 0xE943},
        {0xF446, 0xEA28}, {0xF411, 0xE86F}, {0xF376, 0xE684}, {0xF2C7, 0xE66B}, {0xF2D1, 0xF09A},
    };

    bool hasChanged = false;
    for (uint& icon : m_data.categoryIcons) {
        const auto successor = kLegacyIcons.constFind(icon);
        if (successor != kLegacyIcons.cend()) {
            icon = successor.value();
            hasChanged = true;
        }
    }
    if (hasChanged)
        save();
}
