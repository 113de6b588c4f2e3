// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Platform
{

/// A directory that has a watch. It knows its own name alone: renaming one costs nothing below it.
struct WatchedDirectory
{
    int watch = -1;
    uint32_t seen = 0; ///< number of the walk that last came here
    WatchedDirectory* parent = nullptr;
    WatchedDirectory* firstChild = nullptr;
    WatchedDirectory* previous = nullptr;
    WatchedDirectory* next = nullptr;
    std::string name;
};

/// The directories of a tree that have a watch, by watch and by place. Part of them may be detached
/// for a while, with all that is below.
class WatchedTree
{
public:
    using Directory = WatchedDirectory;

    WatchedTree() = default;
    WatchedTree(const WatchedTree&) = delete;
    WatchedTree& operator=(const WatchedTree&) = delete;

    /// Null before the first `addRoot`.
    Directory* root() const { return m_root; }

    Directory* addRoot(int watch);

    /// The watch must be unknown so far, and the place free.
    Directory* add(int watch, Directory* parent, std::string_view name);

    /// Null if no directory has that watch.
    Directory* find(int watch);

    /// Null if no watched directory is there.
    Directory* child(Directory* parent, std::string_view name) const;

    /// Takes a directory from its place, if it has one. It stays known by its watch.
    void detach(Directory* directory);

    /// Puts a directory to a place that must be free and not below itself.
    void move(Directory* directory, Directory* parent, std::string_view name);

    /// Whether `directory` is `other` or above it.
    static bool isAtOrAbove(const Directory* directory, const Directory* other);

    bool isAttached(const Directory* directory) const { return isAtOrAbove(m_root, directory); }

    /// Path below the root; empty for the root. The directory must be attached.
    std::string path(const Directory* directory) const;

    /// Attached directories that the walk of that number has not come to, the highest of each
    /// branch only.
    std::vector<Directory*> unseen(uint32_t walk) const;

    /// Forgets a directory and all below it. Calls `forget` for each before it is gone.
    void remove(Directory* directory, const std::function<void(Directory*)>& forget);

private:
    struct Place
    {
        const Directory* parent;
        std::string_view name;
    };
    static Place placeOf(const Directory* directory)
    {
        return {directory->parent, directory->name};
    }
    struct Hash
    {
        using is_transparent = void;
        size_t operator()(const Place& place) const;
        size_t operator()(const Directory* directory) const { return (*this)(placeOf(directory)); }
    };
    struct Equal
    {
        using is_transparent = void;
        bool operator()(const Directory* a, const Directory* b) const { return a == b; }
        bool operator()(const Place& a, const Directory* b) const
        {
            return a.parent == b->parent && a.name == b->name;
        }
        bool operator()(const Directory* a, const Place& b) const { return (*this)(b, a); }
    };

    void attach(Directory* directory, Directory* parent, std::string_view name);

    Directory* m_root = nullptr;
    std::unordered_map<int, Directory> m_byWatch;
    std::unordered_set<Directory*, Hash, Equal> m_byPlace; ///< all but the root and detached ones
};

} // namespace Platform
