// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Types.h"

#include <QJsonArray>
#include <QJsonValue>
#include <QLatin1String>
#include <QUuid>

namespace
{

constexpr QLatin1String kIcon("icon");
constexpr QLatin1String kIconPath("iconPath");
constexpr QLatin1String kId("id");
constexpr QLatin1String kItems("items");
constexpr QLatin1String kName("name");
constexpr QLatin1String kShortcutType("shortcutType");
constexpr QLatin1String kType("type");
constexpr QLatin1String kValue("value");

// Older documents kept the shortcut type under this key; readers of either age find something.
constexpr QLatin1String kTypeConstant("shortcut");

/// The keys that an item has in common with an item of a template.
QJsonObject contentToJson(const LauncherElement& element)
{
    return {{kIconPath, element.iconPath},
            {kName, element.name},
            {kShortcutType, element.shortcutType},
            {kValue, element.value}};
}

LauncherElement contentFromJson(const QJsonObject& obj)
{
    LauncherElement element;
    element.name = obj.value(kName).toString();
    element.shortcutType = obj.value(kShortcutType).toString();
    element.value = obj.value(kValue).toString();
    element.iconPath = obj.value(kIconPath).toString();
    return element;
}

} // namespace

QString LauncherElement::createId()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

QJsonObject LauncherElement::toJson() const
{
    QJsonObject obj = contentToJson(*this);
    obj.insert(kId, id);
    obj.insert(kType, kTypeConstant);
    return obj;
}

LauncherElement LauncherElement::fromJson(const QJsonObject& obj)
{
    LauncherElement element = contentFromJson(obj);
    element.id = obj.value(kId).toString();
    if (element.id.isEmpty())
        element.id = createId();
    return element;
}

QJsonObject SectionTemplate::toJson() const
{
    QJsonArray itemArray;
    for (const LauncherElement& item : items)
        itemArray.append(contentToJson(item));
    // As int, because that is how it is read: a codepoint beyond the int range, which only a
    // hand-written file can hold, comes back the same.
    return {{kIcon, static_cast<int>(icon)}, {kItems, itemArray}, {kName, name}};
}

SectionTemplate SectionTemplate::fromJson(const QJsonObject& obj)
{
    SectionTemplate result;
    result.name = obj.value(kName).toString();
    if (obj.contains(kIcon))
        result.icon = static_cast<uint>(obj.value(kIcon).toInt(0));
    const QJsonArray itemArray = obj.value(kItems).toArray();
    for (const auto entry : itemArray)
        result.items.append(contentFromJson(entry.toObject()));
    return result;
}
