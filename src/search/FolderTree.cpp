// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FolderTree.h"

#include "CaseFold.h"

#include <QDir>

#include <cstddef>

FolderTree::FolderTree(const QStringList& chosen)
{
    m_nodes.emplace_back();
    m_nodeOf.reserve(chosen.size());
    for (const QString& folder : chosen) {
        m_nodeOf.append(folder.isEmpty() ? -1 : addNodes(folder));
        if (m_nodeOf.last() >= 0)
            nodeAt(m_nodeOf.last()).isUnderAny = true;
    }
    for (Node& node : m_nodes)
        node.isUnderAny = node.isUnderAny || nodeAt(node.parent).isUnderAny;
}

int FolderTree::addNodes(const QString& folder)
{
    const QChar separator = QDir::separator();
    // What is under a folder begins with it and a separator, be that written or not.
    QStringView rest = folder;
    if (rest.endsWith(separator))
        rest.chop(1);
    int node = 0;
    for (const QStringView name : rest.split(separator)) {
        const QString key = CaseFold::keyOf(name);
        int child = nodeAt(node).children.value(key, 0);
        if (child == 0) {
            child = static_cast<int>(m_nodes.size());
            nodeAt(node).children.insert(key, child);
            nodeAt(node).childSizes |= sizeBit(name.size());
            m_nodes.emplace_back().parent = node;
        }
        node = child;
    }
    return node;
}

FolderTree::Place FolderTree::placeOf(QStringView path) const
{
    Place place;
    for (const QStringView name : path.split(QDir::separator()))
        place = below(place, name);
    return place;
}

FolderTree::Place FolderTree::below(Place parent, QStringView name) const
{
    if (!parent.isKnown)
        return parent;
    const Node& node = nodeAt(parent.node);
    // Most names are none of the children, and most of these have another size.
    if ((node.childSizes & sizeBit(name.size())) == 0)
        return {parent.node, false};
    const CaseFold::Units units = CaseFold::unitsOf(name);
    const int child = node.children.value(QString::fromRawData(units.constData(), units.size()), 0);
    return child == 0 ? Place{parent.node, false} : Place{child, true};
}

QVector<qsizetype> FolderTree::counts() const
{
    std::vector<qsizetype> totals(m_nodes.size());
    for (std::size_t i = m_nodes.size(); i-- > 0;) {
        totals[i] += m_nodes[i].count;
        if (i > 0)
            totals[static_cast<std::size_t>(m_nodes[i].parent)] += totals[i];
    }
    QVector<qsizetype> counts;
    counts.reserve(m_nodeOf.size());
    for (const int node : m_nodeOf)
        counts.append(node < 0 ? 0 : totals[static_cast<std::size_t>(node)]);
    return counts;
}
