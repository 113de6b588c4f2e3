// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <QVector>

#include <vector>

/// Tells of very many folders, walked from above to below, under which of a few chosen ones they
/// lie, by the rule of `FolderFilter::isUnder`: one look at a name for each, and none at most. Any
/// thread.
class FolderTree
{
public:
    /// Where a folder lies.
    struct Place
    {
        int node = 0;        ///< the deepest known folder that it is in, or that it is
        bool isKnown = true; ///< it is that folder
    };

    FolderTree() : FolderTree(QStringList()) {}

    /// \param chosen may contain each other, be equal or empty.
    explicit FolderTree(const QStringList& chosen);

    /// Of a folder by its path.
    Place placeOf(QStringView path) const;

    /// Of a folder in another one.
    Place below(Place parent, QStringView name) const;

    /// Whether `below` would tell the same for every name.
    bool hasNothingBelow(Place parent) const
    {
        return !parent.isKnown || nodeAt(parent.node).children.isEmpty();
    }

    /// Whether entries of a folder are under one of those chosen.
    bool isUnderAny(Place folder) const { return nodeAt(folder.node).isUnderAny; }

    /// Counts entries of a folder.
    void add(Place folder, qsizetype entries) { nodeAt(folder.node).count += entries; }

    /// For each chosen folder how many of the entries so far are under it, in the order of the
    /// folders.
    QVector<qsizetype> counts() const;

private:
    /// A folder on the way to one that was chosen, or such a one.
    struct Node
    {
        int parent = 0;
        bool isUnderAny = false;
        quint64 childSizes = 0; ///< those of the children's names, a bit for each
        QHash<QString, int> children;
        qsizetype count = 0; ///< entries that are not under any of the children
    };

    static quint64 sizeBit(qsizetype size) { return quint64(1) << (size % 64); }
    Node& nodeAt(int index) { return m_nodes[static_cast<std::size_t>(index)]; }
    const Node& nodeAt(int index) const { return m_nodes[static_cast<std::size_t>(index)]; }
    int addNodes(const QString& folder);

    std::vector<Node> m_nodes; ///< parents before their children, the top first
    QVector<int> m_nodeOf;     ///< for each chosen folder; -1 for an empty one
};
