// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

#include <vector>

/// Tells whether a path lies under any of many folders, by the rule of `FolderFilter::isUnder`. The
/// number of folders hardly matters for the time that it takes. One thread at a time.
class FolderSet
{
public:
    FolderSet() = default;

    /// \param folders may contain each other, be equal or empty.
    explicit FolderSet(const QStringList& folders);

    /// Whether the path lies under one of the folders.
    bool isAbove(const QString& path) const;

private:
    bool look(const QString& path) const;

    QSet<QString> m_keys;             ///< folders without the separator at their end, any case
    std::vector<qsizetype> m_lengths; ///< those that the keys have, ascending
    // The answer for what lies in the same folder as the path asked about last.
    mutable QString m_last;
    mutable qsizetype m_lastEnd = -1; ///< of that folder in the path; -1 before the first question
    mutable bool m_lastAnswer = false;
};
