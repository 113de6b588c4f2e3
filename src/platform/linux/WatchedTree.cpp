// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "WatchedTree.h"

#include <algorithm>

Platform::WatchedDirectory* Platform::WatchedTree::find(int watch)
{
    const auto found = m_byWatch.find(watch);
    return found == m_byWatch.end() ? nullptr : &found->second;
}

Platform::WatchedDirectory* Platform::WatchedTree::at(std::string_view rel) const
{
    Directory* directory = m_root;
    while (directory && !rel.empty()) {
        const size_t slash = std::min(rel.find('/'), rel.size());
        directory = child(directory, rel.substr(0, slash));
        rel.remove_prefix(std::min(slash + 1, rel.size()));
    }
    return directory;
}

Platform::WatchedDirectory* Platform::WatchedTree::child(Directory* parent,
                                                         std::string_view name) const
{
    const auto found = m_byPlace.find(Place{parent, name});
    return found == m_byPlace.end() ? nullptr : *found;
}

bool Platform::WatchedTree::put(int watch, Directory* parent, std::string_view name)
{
    Directory* directory = find(watch);
    if (directory && isAtOrAbove(directory, parent))
        return false;
    Directory* previous = parent ? child(parent, name) : m_root;
    if (!directory || directory != previous) {
        if (directory)
            unlink(directory);
        else
            directory = &m_byWatch[watch];
        if (previous)
            detach(previous);
        directory->watch = watch;
        directory->name = name;
        attach(directory, parent);
    }
    detachChildren(directory);
    return true;
}

void Platform::WatchedTree::detach(Directory* directory)
{
    unlink(directory);
    attach(directory, &m_detached);
}

void Platform::WatchedTree::detachChildren(Directory* directory)
{
    while (directory->firstChild)
        detach(directory->firstChild);
}

std::optional<int> Platform::WatchedTree::takeDetached()
{
    Directory* directory = m_detached.firstChild;
    if (!directory)
        return std::nullopt;
    const int watch = directory->watch;
    remove(directory);
    return watch;
}

void Platform::WatchedTree::remove(Directory* directory)
{
    detachChildren(directory);
    unlink(directory);
    m_byWatch.erase(directory->watch);
}

std::optional<std::string> Platform::WatchedTree::path(const Directory* directory) const
{
    size_t size = 0;
    const Directory* top = directory;
    for (; top->parent; top = top->parent)
        size += top->name.size() + 1;
    if (top != m_root)
        return std::nullopt;
    // Filled from its end: otherwise the names had to be gathered first.
    std::string path(std::max<size_t>(size, 1) - 1, '/');
    size_t end = path.size();
    for (const Directory* at = directory; at != m_root; at = at->parent) {
        end -= at->name.size();
        path.replace(end, at->name.size(), at->name);
        end -= end > 0 ? 1 : 0;
    }
    return path;
}

std::vector<Platform::WatchedDirectory*> Platform::WatchedTree::largest(size_t count) const
{
    std::vector<Directory*> found;
    for (Directory* each = m_root ? m_root->firstChild : nullptr; each; each = each->next)
        found.push_back(each);
    const auto weightOf = [weights = weights()](const Directory* each) { return weights.at(each); };
    std::stable_sort(found.begin(), found.end(), [&](const Directory* a, const Directory* b) {
        return weightOf(a) > weightOf(b);
    });
    size_t used = 0;
    for (size_t sum = 0; used < found.size() && sum < count; ++used) {
        Directory*& directory = found[used];
        for (Directory* each = directory->firstChild; each;) {
            const bool isMostOfIt = weightOf(each) > weightOf(directory) / 2;
            if (isMostOfIt && weightOf(each) >= count - sum)
                directory = each;
            each = directory == each ? each->firstChild : each->next;
        }
        sum += weightOf(directory);
    }
    found.resize(used);
    return found;
}

/// Numbers of watches in the directories of the tree, themselves included.
std::unordered_map<const Platform::WatchedDirectory*, size_t> Platform::WatchedTree::weights() const
{
    std::vector<const Directory*> fromAbove;
    if (m_root)
        fromAbove.push_back(m_root);
    for (size_t i = 0; i < fromAbove.size(); ++i) {
        for (const Directory* each = fromAbove[i]->firstChild; each; each = each->next)
            fromAbove.push_back(each);
    }
    std::unordered_map<const Directory*, size_t> weights;
    for (size_t i = fromAbove.size(); i-- > 0;) {
        const Directory* each = fromAbove[i];
        const size_t weight = ++weights[each];
        if (each->parent)
            weights[each->parent] += weight;
    }
    return weights;
}

/// \param parent null for the root.
void Platform::WatchedTree::attach(Directory* directory, Directory* parent)
{
    directory->parent = parent;
    if (!parent) {
        m_root = directory;
        return;
    }
    directory->next = parent->firstChild;
    if (directory->next)
        directory->next->previous = directory;
    parent->firstChild = directory;
    if (parent != &m_detached)
        m_byPlace.insert(directory);
}

void Platform::WatchedTree::unlink(Directory* directory)
{
    if (directory == m_root) {
        m_root = nullptr;
        return;
    }
    if (directory->parent != &m_detached)
        m_byPlace.erase(directory);
    if (directory->previous)
        directory->previous->next = directory->next;
    else
        directory->parent->firstChild = directory->next;
    if (directory->next)
        directory->next->previous = directory->previous;
    directory->parent = directory->previous = directory->next = nullptr;
}

bool Platform::WatchedTree::isAtOrAbove(const Directory* directory, const Directory* other)
{
    while (other && other != directory)
        other = other->parent;
    return other;
}

size_t Platform::WatchedTree::Hash::operator()(const Place& place) const
{
    const size_t parent = std::hash<const void*>()(place.parent);
    return std::hash<std::string_view>()(place.name) ^ (parent * 0x9E3779B97F4A7C15U);
}
