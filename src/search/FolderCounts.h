// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <QVector>

#include <cstring>
#include <vector>

/// Counts what lies under each of many folders in one walk over all paths, by the rule of
/// `FolderFilter::isUnder`. Made for paths that come folder by folder, as an index holds them: one
/// in the same folder as the one before costs a single comparison, however many folders there are.
/// Any thread.
class FolderCounts
{
public:
    /// \param folders may contain each other, be equal or empty.
    /// \param start what every path begins with, letter for letter; the more, the less there is to
    /// compare. May be empty.
    explicit FolderCounts(const QStringList& folders, const QString& start = QString());

    /// Counts one path. It must stay as it is until the next has been counted.
    void add(const QString& path)
    {
        if (m_decided == 0 || !beginsLikeLast(path, m_decided))
            walk(path);
        m_last = path;
        ++m_run;
    }

    /// For each folder how many of the paths lie under it, in the order of the folders.
    QVector<qsizetype> counts();

private:
    /// A folder on the way to one that is counted, or such a one.
    struct Node
    {
        int parent = 0;
        quint64 childLengths = 0; ///< those of the children's names, a bit for each
        QHash<QString, int> children;
        qsizetype count = 0; ///< paths under it that are not under any of the children
    };

    /// A folder that the last path is in, and where in that what is below begins.
    struct Step
    {
        int node = 0;
        qsizetype end = 0;
    };

    static quint64 lengthBit(qsizetype length) { return quint64(1) << (length % 64); }
    Node& nodeAt(int index) { return m_nodes[static_cast<std::size_t>(index)]; }
    const Node& nodeAt(int index) const { return m_nodes[static_cast<std::size_t>(index)]; }
    int nodeFor(const QString& folder);
    int childOf(const Node& node, QStringView name) const;
    void findPlace(QStringView path);

    static quint64 blockAt(const QChar* units)
    {
        quint64 block = 0;
        std::memcpy(&block, units, sizeof(block));
        return block;
    }

    bool beginsLikeLast(QStringView path, qsizetype length) const
    {
        if (path.size() < length)
            return false;
        // From the end, where paths differ that begin alike; four units at a time.
        constexpr qsizetype Lanes = sizeof(quint64) / sizeof(QChar);
        const QChar* left = path.data();
        const QChar* right = m_last.data();
        for (; length >= m_startLength + Lanes; length -= Lanes) {
            if (blockAt(left + length - Lanes) != blockAt(right + length - Lanes))
                return false;
        }
        for (; length > m_startLength; --length) {
            if (left[length - 1] != right[length - 1])
                return false;
        }
        return true;
    }

    /// Finds the folder of a path, once those before are counted.
    void walk(QStringView path);

    std::vector<Node> m_nodes; ///< parents before their children, the root first
    QVector<int> m_nodeOf;     ///< for each folder; -1 for an empty one
    std::vector<Step> m_trail; ///< from the root down to where the last path is
    QStringView m_last;
    /// Every path that begins with so many characters of the last one is in the same folder; 0 if
    /// none can be told by that.
    qsizetype m_decided = 0;
    qsizetype m_startLength; ///< of what all paths begin with
    qsizetype m_run = 0;     ///< paths in the same folder as the last, not counted yet
};
