// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SearchEngine.h"

QVector<SearchMatch> SearchEngine::search(const LauncherData& data, const QString& query)
{
    QVector<SearchMatch> matches;
    if (query.isEmpty())
        return matches;
    for (const QString& category : data.categories) {
        const auto section = data.sectionElements.constFind(category);
        if (section == data.sectionElements.cend())
            continue;
        for (int index = 0; index < section->size(); ++index) {
            const LauncherElement& element = section->at(index);
            if (element.name.contains(query, Qt::CaseInsensitive))
                matches.append({category, element, index});
        }
    }
    return matches;
}
