// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "WatchedTree.h"

#include <algorithm>

Platform::WatchedDirectory* Platform::WatchedTree::addRoot(int watch)
{
    m_root = &m_byWatch[watch];
    m_root->watch = watch;
    return m_root;
}

Platform::WatchedDirectory* Platform::WatchedTree::add(int watch, Directory* parent,
                                                       std::string_view name)
{
    Directory* directory = &m_byWatch[watch];
    directory->watch = watch;
    attach(directory, parent, name);
    return directory;
}

Platform::WatchedDirectory* Platform::WatchedTree::find(int watch)
{
    const auto found = m_byWatch.find(watch);
    return found == m_byWatch.end() ? nullptr : &found->second;
}

Platform::WatchedDirectory* Platform::WatchedTree::child(Directory* parent,
                                                         std::string_view name) const
{
    const auto found = m_byPlace.find(Place{parent, name});
    return found == m_byPlace.end() ? nullptr : *found;
}

void Platform::WatchedTree::detach(Directory* directory)
{
    Directory* parent = directory->parent;
    if (!parent)
        return;
    m_byPlace.erase(directory);
    if (directory->previous)
        directory->previous->next = directory->next;
    else
        parent->firstChild = directory->next;
    if (directory->next)
        directory->next->previous = directory->previous;
    directory->parent = directory->previous = directory->next = nullptr;
}

void Platform::WatchedTree::move(Directory* directory, Directory* parent, std::string_view name)
{
    detach(directory);
    attach(directory, parent, name);
}

void Platform::WatchedTree::attach(Directory* directory, Directory* parent, std::string_view name)
{
    directory->name = name;
    directory->parent = parent;
    directory->next = parent->firstChild;
    if (directory->next)
        directory->next->previous = directory;
    parent->firstChild = directory;
    m_byPlace.insert(directory);
}

bool Platform::WatchedTree::isAtOrAbove(const Directory* directory, const Directory* other)
{
    while (other && other != directory)
        other = other->parent;
    return other && directory;
}

std::string Platform::WatchedTree::path(const Directory* directory) const
{
    size_t size = 0;
    for (const Directory* at = directory; at != m_root; at = at->parent)
        size += at->name.size() + 1;
    if (size == 0)
        return std::string();
    // Filled from its end: otherwise the names had to be gathered first.
    std::string path(size - 1, '/');
    size_t end = path.size();
    for (const Directory* at = directory; at != m_root; at = at->parent) {
        end -= at->name.size();
        path.replace(end, at->name.size(), at->name);
        end -= end > 0 ? 1 : 0;
    }
    return path;
}

std::vector<Platform::WatchedDirectory*> Platform::WatchedTree::unseen(uint32_t walk) const
{
    std::vector<Directory*> found;
    for (Directory* directory : m_byPlace) {
        if (directory->seen != walk && directory->parent->seen == walk)
            found.push_back(directory);
    }
    return found;
}

void Platform::WatchedTree::remove(Directory* directory,
                                   const std::function<void(Directory*)>& forget)
{
    detach(directory);
    std::vector<Directory*> gone{directory};
    for (size_t i = 0; i < gone.size(); ++i) {
        for (Directory* child = gone[i]->firstChild; child; child = child->next)
            gone.push_back(child);
    }
    // From below, so that the place of each can still be told when it is forgotten.
    std::reverse(gone.begin(), gone.end());
    for (Directory* each : gone) {
        forget(each);
        m_byPlace.erase(each);
        if (each == m_root)
            m_root = nullptr;
        m_byWatch.erase(each->watch);
    }
}

size_t Platform::WatchedTree::Hash::operator()(const Place& place) const
{
    const size_t parent = std::hash<const void*>()(place.parent);
    return std::hash<std::string_view>()(place.name) ^ (parent * 0x9E3779B97F4A7C15U);
}
