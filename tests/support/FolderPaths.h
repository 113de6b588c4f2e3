// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FolderFilter.h"

#include <QDir>
#include <QRandomGenerator>
#include <QString>
#include <QStringList>
#include <QTest>

#include <algorithm>

/// Paths to try the rules of folders with.
namespace FolderPaths
{

inline QString native(const QString& path)
{
    return QDir::toNativeSeparators(path);
}

inline QStringList native(QStringList paths)
{
    for (QString& path : paths)
        path = native(path);
    return paths;
}

/// The rule, folder by folder.
inline bool isUnderAny(const QString& path, const QStringList& folders)
{
    return std::any_of(folders.begin(), folders.end(), [&path](const QString& folder) {
        return FolderFilter::isUnder(path, folder);
    });
}

/// Rows of "names", of which paths are made that have much in common.
inline void addNameRows()
{
    QTest::addColumn<QStringList>("names");
    const auto row = [](const char* title, const QStringList& names) {
        QTest::newRow(title) << names;
    };
    row("plain", {"a", "b", "ab", "abc"});
    row("of two cases", {"a", "A", "b", "B", "Ab"});
    row("with empty ones", {"", "a", "aa", ""});
    row("beyond ASCII", {QStringLiteral("ä"), QStringLiteral("Ä"), QStringLiteral("ß"),
                         QStringLiteral("ss"), QStringLiteral("ẞ"), QStringLiteral("ſ")});
    row("in pairs", {QStringLiteral("\U00010400"), QStringLiteral("\U00010428"),
                     QStringLiteral("\U0001F600"), QString(QChar(0xd801)), QString(QChar(0xdc00))});
    row("dots", {".", "..", "..."});
    row("the separators of both systems", {"/", "\\", "a"});
    row("of lengths that differ by 64", {"a", QString(65, u'a'), QString(129, u'a')});
}

/// A path of up to five of the names.
inline QString random(QRandomGenerator& generator, const QStringList& names)
{
    QStringList parts;
    for (int i = generator.bounded(5); i >= 0; --i)
        parts.append(names.at(generator.bounded(int(names.size()))));
    return native(QString(generator.bounded(4) > 0 ? "/" : "") + parts.join('/') +
                  (generator.bounded(4) == 0 ? "/" : ""));
}

} // namespace FolderPaths
