// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QJsonObject>
#include <QLatin1String>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

/// What an item does, as `LauncherElement::shortcutType` spells it in documents and as the scopes
/// of a search are called in the settings. Compared case-sensitively.
namespace ItemType
{

inline constexpr QLatin1String Url("URL");
inline constexpr QLatin1String Application("Application");
inline constexpr QLatin1String File("File");
inline constexpr QLatin1String Bulk("Bulk");
inline constexpr QLatin1String Snippet("Snippet");
inline constexpr QLatin1String ShellItem("ShellItem");

} // namespace ItemType

/// One launchable item. `shortcutType` is one of the words of `ItemType`; any other text is legal
/// and launches as an application.
struct LauncherElement
{
    QString id;           ///< see `createId`; empty only inside a `SectionTemplate`
    QString name;         ///< display name, free text
    QString shortcutType; ///< what the item does
    QString value;        ///< the target, read as `shortcutType` says
    QString iconPath;     ///< empty, an image path, or a "glyph:" reference

    /// A fresh identity: a UUID as 36 lower-case characters with hyphens and without braces.
    static QString createId();

    QJsonObject toJson() const;

    /// Never fails: a missing or ill-typed key reads as an empty text, and an empty "id" is
    /// replaced by a fresh one.
    static LauncherElement fromJson(const QJsonObject& obj);

    bool operator==(const LauncherElement&) const = default;
};

/// A saved set of items, from which sections are made.
struct SectionTemplate
{
    static constexpr uint DefaultIcon = 58055; ///< 0xE2C7, the folder glyph

    QString name;                   ///< unique among the templates, case-sensitively
    uint icon = DefaultIcon;        ///< glyph codepoint
    QVector<LauncherElement> items; ///< each with an empty `id`

    QJsonObject toJson() const;

    /// Never fails. Without an "icon" key the folder glyph stays; an "icon" that is no whole
    /// number gives 0. An entry of "items" that is no object becomes an empty item.
    static SectionTemplate fromJson(const QJsonObject& obj);

    bool operator==(const SectionTemplate&) const = default;
};

/// The whole document. A category without an entry in `sectionElements` reads as empty, one
/// without an entry in `categoryIcons` has the folder glyph; entries of either map for names that
/// are not in `categories` are kept and never shown.
struct LauncherData
{
    QString defaultCategory;                   ///< after a load always one of `categories`
    QStringList categories;                    ///< in display order
    QMap<QString, unsigned int> categoryIcons; ///< glyph codepoints
    QMap<QString, QList<LauncherElement>> sectionElements; ///< items in display order
    QVector<SectionTemplate> templates;                    ///< in saved order

    bool operator==(const LauncherData&) const = default;
};
