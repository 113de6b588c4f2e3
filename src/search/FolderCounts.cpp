// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FolderCounts.h"

#include "CaseFold.h"

#include <QDir>

FolderCounts::FolderCounts(const QStringList& folders, const QString& start)
    : m_startLength(start.size())
{
    m_nodes.emplace_back();
    m_trail.push_back({});
    m_nodeOf.reserve(folders.size());
    for (const QString& folder : folders)
        m_nodeOf.append(folder.isEmpty() ? -1 : nodeFor(folder));
    findPlace(start);
    m_decided = 0;
}

int FolderCounts::nodeFor(const QString& folder)
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
            nodeAt(node).childLengths |= lengthBit(name.size());
            m_nodes.emplace_back().parent = node;
        }
        node = child;
    }
    return node;
}

int FolderCounts::childOf(const Node& node, QStringView name) const
{
    // Most names are none of the children, and most of these have another length.
    if ((node.childLengths & lengthBit(name.size())) == 0)
        return 0;
    const CaseFold::Units units = CaseFold::unitsOf(name);
    return node.children.value(QString::fromRawData(units.constData(), units.size()), 0);
}

void FolderCounts::walk(QStringView path)
{
    nodeAt(m_trail.back().node).count += m_run;
    m_run = 0;
    while (m_trail.size() > 1 && !beginsLikeLast(path, m_trail.back().end))
        m_trail.pop_back();
    findPlace(path);
}

void FolderCounts::findPlace(QStringView path)
{
    while (true) {
        const Step step = m_trail.back();
        const Node& node = nodeAt(step.node);
        m_decided = step.end;
        if (node.children.isEmpty())
            return;
        const qsizetype nameEnd = path.indexOf(QDir::separator(), step.end);
        m_decided = nameEnd + 1; // 0 where there is no further folder in the path
        if (nameEnd < 0)
            return;
        const int child = childOf(node, path.sliced(step.end, nameEnd - step.end));
        if (child == 0)
            return;
        m_trail.push_back({child, nameEnd + 1});
    }
}

QVector<qsizetype> FolderCounts::counts()
{
    nodeAt(m_trail.back().node).count += m_run;
    m_run = 0;
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
