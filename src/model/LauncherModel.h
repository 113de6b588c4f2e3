// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Types.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>

/// The only owner of the document in memory. Everything that changes the document goes through
/// here; each successful change is on disk before its signals are sent. A refusal is told by the
/// result alone. GUI thread; the signals are direct calls from within the changing call.
class LauncherModel : public QObject
{
    Q_OBJECT

public:
    /// Loads the document from `jsonPath`, which stays the file that every change is saved to.
    explicit LauncherModel(const QString& jsonPath, QObject* parent = nullptr);

    const LauncherData& data() const { return m_data; }

    /// The items of `category`; an empty list for one that has none. Valid until the next change.
    const QVector<LauncherElement>& getItems(const QString& category) const;

    /// The list in which the item of this id stands, or null; the categories are searched in
    /// display order. Sets `outCat` and `outIndex`, to empty and -1 if there is no such item.
    const QVector<LauncherElement>* locateElementById(const QString& id, QString& outCat,
                                                      int& outIndex) const;

    /// The category shown in the home view; empty until somebody sets it.
    QString currentCategory() const { return m_currentCategory; }

    /// Glyph codepoint of a category, the folder if it has none of its own.
    uint getCategoryIcon(const QString& cat) const;

    const QVector<SectionTemplate>& templates() const { return m_data.templates; }

    /// -1 if no template has exactly this name.
    int templateIndexOf(const QString& name) const;

    /// `base`, or `base` with the first number from 2 to 999 that no item of `category` bears;
    /// `base` again if all are taken.
    QString suggestItemName(const QString& category, const QString& base) const;

    /// The same among the names of the categories.
    QString suggestSectionName(const QString& base) const;

    /// Appends a category and makes it current. False if the name is empty or taken.
    bool addCategory(const QString& newCat, uint icon);

    /// Gives a category another name, icon or both; another name also makes it current. False if
    /// the new name is empty or taken. True, without any effect, if there is no `oldName`.
    bool editCategory(const QString& oldName, const QString& newName, uint newIcon);

    /// Removes a category with its items. Its icon stays behind, unseen.
    void deleteCategory(const QString& targetCat);

    /// No effect if unchanged. The name is not checked, and not part of the document.
    void setCurrentCategory(const QString& category);

    /// Takes `newCategories` as it is.
    void saveReorderedCategories(const QStringList& newCategories);

    /// Replaces the item at `index`, or appends one if there is none, as at -1.
    void saveItem(const QString& category, const LauncherElement& item, int index);

    /// No effect on the file if there is no such item.
    void deleteItem(const QString& category, const QString& itemId);

    /// Puts a copy under a fresh id and a free name behind the item. False if there is no such
    /// item. `outNewId` may be null.
    bool duplicateItem(const QString& category, const QString& itemId, QString* outNewId);

    /// Appends the item to `toCat` under its old id. Signals the change of `fromCat` only. False
    /// if the two are the same or either the category or the item doesn't exist.
    bool moveItemToCategory(const QString& fromCat, const QString& itemId, const QString& toCat);

    void saveReorderedItems(const QString& category, const QVector<LauncherElement>& newItems);

    /// Replaces the template of the same name or appends a new one. No effect without a name.
    void saveTemplate(const SectionTemplate& tpl);

    /// False if `oldName` is unknown or `newName` empty or borne by another template.
    bool renameTemplate(const QString& oldName, const QString& newName, uint newIcon);

    /// No effect if there is no such template.
    void deleteTemplate(const QString& name);

    /// Appends a category with fresh copies of the template's items and makes it current. False
    /// if the template is unknown or the name empty or taken.
    bool createCategoryFromTemplate(const QString& templateName, const QString& newCat, uint icon);

    /// What came of replacing the whole document. Unless it is `Done`, everything is as it was.
    enum class Replacement {
        Done,       ///< the one before is in the file that `StorageManager::previousPath` names
        Unreadable, ///< of an import: there is no such file, it isn't a regular one, it is larger
                    ///< than `StorageManager::MaxDocumentBytes`, or the disk fails in the middle
        NotKept     ///< the present document could not be written to that file
    };

    /// Back to one empty category "Default", without templates.
    Replacement resetData();

    /// Replaces the whole document by the one in another file, which may also be the model's own
    /// file or the one of the document before. A file that holds anything but a JSON object makes
    /// an empty document, and is moved aside as `moveFileAside` does.
    Replacement importData(const QString& sourceJsonPath);

signals:
    void dataLoaded();
    void categoriesChanged();
    void itemsChanged(const QString& category);
    void currentCategoryChanged(const QString& category);
    void templatesChanged();

private:
    void save() const;
    void ensureDefaultCategoryValid();
    void migrateLegacyIcons();
    void renameCategoryAt(qsizetype position, const QString& newName);
    void appendCategory(const QString& name, uint icon);
    void replaceAll(const LauncherData& data);
    void saveAndShow(const QString& category);

    QString m_jsonPath;
    LauncherData m_data;
    QString m_currentCategory;
};
