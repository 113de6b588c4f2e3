// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Profile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

LauncherElement Profile::item(const QString& name, const QString& type, const QString& value)
{
    LauncherElement element;
    element.id = QStringLiteral("id-") + name;
    element.name = name;
    element.shortcutType = type;
    element.value = value;
    return element;
}

QByteArray Profile::document(const QVector<LauncherElement>& items)
{
    return documentOfSections({{QStringLiteral("Work"), items}});
}

QByteArray Profile::documentOfSections(const QVector<Section>& sections)
{
    QJsonArray names;
    QJsonObject icons;
    QJsonObject elements;
    for (const auto& [name, items] : sections) {
        QJsonArray array;
        for (const LauncherElement& element : items)
            array.append(element.toJson());
        names.append(name);
        icons.insert(name, 0xE943);
        elements.insert(name, array);
    }
    const QJsonObject root{
        {QStringLiteral("categories"), names},
        {QStringLiteral("categoryIcons"), icons},
        {QStringLiteral("defaultCategory"), names.first()},
        {QStringLiteral("sectionElements"), elements},
        {QStringLiteral("templates"), QJsonArray()},
    };
    return QJsonDocument(root).toJson();
}

QByteArray Profile::legacyDocument(const QVector<LauncherElement>& items)
{
    QJsonArray array;
    for (const LauncherElement& element : items) {
        array.append(QJsonObject{
            {QStringLiteral("name"), element.name},
            {QStringLiteral("type"), element.shortcutType},
            {QStringLiteral("value"), element.value},
            {QStringLiteral("iconPath"), element.iconPath},
            {QStringLiteral("category"), QStringLiteral("Work")},
        });
    }
    const QJsonObject root{
        {QStringLiteral("categories"),
         QJsonArray{QJsonObject{{QStringLiteral("name"), QStringLiteral("Work")}}}},
        {QStringLiteral("items"), array},
    };
    return QJsonDocument(root).toJson();
}

QVector<LauncherElement> Profile::examples()
{
    return {
        item(QStringLiteral("Team calendar"), QStringLiteral("URL"),
             QStringLiteral("https://calendar.example.org")),
        item(QStringLiteral("Team wiki"), QStringLiteral("URL"),
             QStringLiteral("https://wiki.example.org")),
        item(QStringLiteral("Team chat"), QStringLiteral("Application"), QStringLiteral("chat")),
        item(QStringLiteral("Team report"), QStringLiteral("File"),
             QStringLiteral("/tmp/report.pdf")),
        item(QStringLiteral("Team address"), QStringLiteral("Snippet"),
             QStringLiteral("team@example.org")),
        item(QStringLiteral("Team morning"), QStringLiteral("Bulk"),
             QStringLiteral("https://a.example.org\nhttps://b.example.org")),
    };
}
