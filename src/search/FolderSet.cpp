// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FolderSet.h"

#include "CaseFold.h"

#include <QDir>

#include <algorithm>

FolderSet::FolderSet(const QStringList& folders)
{
    m_keys.reserve(folders.size());
    QSet<qsizetype> lengths;
    for (QStringView folder : folders) {
        if (folder.isEmpty())
            continue;
        // What is under a folder begins with it and a separator, be that written or not.
        if (folder.endsWith(QDir::separator()))
            folder.chop(1);
        m_keys.insert(CaseFold::keyOf(folder));
        lengths.insert(folder.size());
    }
    m_lengths.assign(lengths.cbegin(), lengths.cend());
    std::sort(m_lengths.begin(), m_lengths.end());
}

bool FolderSet::isAbove(const QString& path) const
{
    // Only a folder's name with its separator decides, and paths mostly come folder by folder.
    const qsizetype end = path.lastIndexOf(QDir::separator());
    if (end < 0)
        return false;
    if (end != m_lastEnd || QStringView(path).first(end) != QStringView(m_last).first(end)) {
        m_lastAnswer = look(path);
        m_last = path;
        m_lastEnd = end;
    }
    return m_lastAnswer;
}

bool FolderSet::look(const QString& path) const
{
    CaseFold::Units units;
    for (const qsizetype length : m_lengths) {
        if (length >= path.size())
            return false;
        if (path.at(length) != QDir::separator())
            continue;
        if (units.isEmpty())
            units = CaseFold::unitsOf(path);
        if (m_keys.contains(QString::fromRawData(units.constData(), length)))
            return true;
    }
    return false;
}
