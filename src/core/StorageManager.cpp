// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "StorageManager.h"

#include "Files.h"
#include "PrivateDirectory.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QLatin1String>
#include <QSet>
#include <QStandardPaths>

#include <utility>

namespace
{

constexpr QLatin1String kCategories("categories");
constexpr QLatin1String kCategoryIcons("categoryIcons");
constexpr QLatin1String kDefaultCategory("defaultCategory");
constexpr QLatin1String kSectionElements("sectionElements");
constexpr QLatin1String kTemplates("templates");

constexpr QLatin1String kLegacyCategory("category");
constexpr QLatin1String kLegacyIconPath("iconPath");
constexpr QLatin1String kLegacyItems("items");
constexpr QLatin1String kLegacyName("name");
constexpr QLatin1String kLegacySubCategory("subCategory");
constexpr QLatin1String kLegacyType("type");
constexpr QLatin1String kLegacyValue("value");

constexpr QLatin1String kPreviousSuffix(".previous");

constexpr QLatin1String kDefaultName("Default");
constexpr QLatin1String kDefaultSubCategory("General");

using SubGroups = QMap<QString, QList<LauncherElement>>;

void readCommon(const QJsonObject& root, LauncherData& data)
{
    data.defaultCategory = root.value(kDefaultCategory).toString();
    const QJsonArray templates = root.value(kTemplates).toArray();
    for (const auto entry : templates)
        data.templates.append(SectionTemplate::fromJson(entry.toObject()));
}

void readCurrentShape(const QJsonObject& root, LauncherData& data)
{
    const QJsonArray categories = root.value(kCategories).toArray();
    for (const auto entry : categories)
        data.categories.append(entry.toString());

    const QJsonObject icons = root.value(kCategoryIcons).toObject();
    for (auto it = icons.begin(); it != icons.end(); ++it)
        data.categoryIcons.insert(it.key(), static_cast<unsigned int>(it.value().toInt(0)));

    const QJsonObject sections = root.value(kSectionElements).toObject();
    for (auto it = sections.begin(); it != sections.end(); ++it) {
        QList<LauncherElement>& elements = data.sectionElements[it.key()];
        const QJsonArray entries = it.value().toArray();
        for (const auto entry : entries)
            elements.append(LauncherElement::fromJson(entry.toObject()));
    }
}

LauncherElement readLegacyItem(const QJsonObject& obj)
{
    LauncherElement element;
    element.id = LauncherElement::createId();
    element.name = obj.value(kLegacyName).toString();
    element.shortcutType = obj.value(kLegacyType).toString();
    element.value = obj.value(kLegacyValue).toString();
    element.iconPath = obj.value(kLegacyIconPath).toString();
    return element;
}

void readLegacyCategories(const QJsonObject& root, LauncherData& data)
{
    const QJsonArray categories = root.value(kCategories).toArray();
    for (const auto entry : categories) {
        if (entry.isObject())
            data.categories.append(entry.toObject().value(kLegacyName).toString());
        else if (entry.isString())
            data.categories.append(entry.toString());
    }
}

void readLegacyShape(const QJsonObject& root, LauncherData& data)
{
    readLegacyCategories(root, data);

    // Besides the list, because a search through the list for each item takes minutes on a large
    // document of many categories.
    QSet<QString> known(data.categories.cbegin(), data.categories.cend());
    QMap<QString, SubGroups> grouped;
    const QJsonArray items = root.value(kLegacyItems).toArray();
    for (const auto entry : items) {
        const QJsonObject obj = entry.toObject();
        const QString category = obj.value(kLegacyCategory).toString();
        QString subGroup = obj.value(kLegacySubCategory).toString();
        if (subGroup.isEmpty())
            subGroup = kDefaultSubCategory;
        if (!known.contains(category)) {
            known.insert(category);
            data.categories.append(category);
        }
        grouped[category][subGroup].append(readLegacyItem(obj));
    }

    for (const QString& category : std::as_const(data.categories)) {
        QList<LauncherElement> elements;
        const SubGroups subGroups = grouped.value(category);
        for (const QList<LauncherElement>& subGroup : subGroups)
            elements.append(subGroup);
        data.sectionElements.insert(category, elements);
    }
}

void normalise(LauncherData& data)
{
    if (data.categories.isEmpty())
        data.categories.append(kDefaultName);
    if (data.defaultCategory.isEmpty() || !data.categories.contains(data.defaultCategory)) {
        data.defaultCategory = data.categories.contains(kDefaultName) ? QString(kDefaultName)
                                                                      : data.categories.first();
    }
}

LauncherData documentOf(const QJsonObject& root)
{
    LauncherData data;
    readCommon(root, data);
    if (root.contains(kSectionElements))
        readCurrentShape(root, data);
    else
        readLegacyShape(root, data);
    normalise(data);
    return data;
}

QJsonObject iconsToJson(const QMap<QString, unsigned int>& icons)
{
    QJsonObject result;
    // As int, because that is how they are read; see the icon of a template.
    for (auto it = icons.begin(); it != icons.end(); ++it)
        result.insert(it.key(), static_cast<int>(it.value()));
    return result;
}

QJsonObject sectionsToJson(const QMap<QString, QList<LauncherElement>>& sections)
{
    QJsonObject result;
    for (auto it = sections.begin(); it != sections.end(); ++it) {
        QJsonArray entries;
        for (const LauncherElement& element : it.value())
            entries.append(element.toJson());
        result.insert(it.key(), entries);
    }
    return result;
}

QJsonObject documentToJson(const LauncherData& data)
{
    QJsonArray templates;
    for (const SectionTemplate& sectionTemplate : data.templates)
        templates.append(sectionTemplate.toJson());
    return {{kCategories, QJsonArray::fromStringList(data.categories)},
            {kDefaultCategory, data.defaultCategory},
            {kCategoryIcons, iconsToJson(data.categoryIcons)},
            {kSectionElements, sectionsToJson(data.sectionElements)},
            {kTemplates, templates}};
}

QByteArray bytesOf(const LauncherData& data)
{
    return QJsonDocument(documentToJson(data)).toJson(QJsonDocument::Indented);
}

} // namespace

QString StorageManager::appDataDir()
{
    QString path = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    if (path.isEmpty()) {
        path = QCoreApplication::applicationDirPath();
        QDir().mkpath(path);
    } else if (QCoreApplication::organizationName().isEmpty()) {
        // Before the program has its name this is a directory of others too.
        QDir().mkpath(path);
    } else {
        Platform::makePrivateDirectory(path);
    }
    return path;
}

LauncherData StorageManager::loadData(const QString& filePath)
{
    const QByteArray bytes = readOwnFile(filePath, MaxDocumentBytes);
    const std::optional<LauncherData> data = parse(bytes);
    if (!data && !bytes.trimmed().isEmpty())
        moveFileAside(filePath);
    return data.value_or(emptyDocument());
}

std::optional<LauncherData> StorageManager::parse(const QByteArray& bytes)
{
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    return document.isObject() ? std::optional(documentOf(document.object())) : std::nullopt;
}

LauncherData StorageManager::emptyDocument()
{
    return documentOf({});
}

QString StorageManager::previousPath(const QString& filePath)
{
    return filePath + kPreviousSuffix;
}

bool StorageManager::savePrevious(const QString& filePath, const LauncherData& data)
{
    return replaceFile(previousPath(filePath), bytesOf(data));
}

void StorageManager::saveData(const QString& filePath, const LauncherData& data)
{
    replaceFile(filePath, bytesOf(data));
}
