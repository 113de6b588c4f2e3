// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Types.h"

#include <QString>
#include <QVector>

/// One hit among the user's items.
struct SearchMatch
{
    QString category;       ///< the section in which the item stands
    LauncherElement el;     ///< a copy, so it outlives a change of the document
    int originalIndex = -1; ///< position within the section when the search was made

    bool operator==(const SearchMatch&) const = default;
};

/// Finds the user's own items by name. Pure; ranking is the caller's business.
class SearchEngine
{
public:
    SearchEngine() = delete;

    /// All items whose name contains `query`, in any case and in document order; none for an
    /// empty query. The caller trims.
    static QVector<SearchMatch> search(const LauncherData& data, const QString& query);
};
