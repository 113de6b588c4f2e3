// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <optional>
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
    WatchedDirectory* parent = nullptr;
    WatchedDirectory* firstChild = nullptr;
    WatchedDirectory* previous = nullptr;
    WatchedDirectory* next = nullptr;
    std::string name;
};

/// The directories of a tree that have a watch, by watch and by place. Some may be detached, which
/// is to have no place in the tree, with all that is below them.
class WatchedTree
{
public:
    using Directory = WatchedDirectory;

    WatchedTree() = default;
    WatchedTree(const WatchedTree&) = delete;
    WatchedTree& operator=(const WatchedTree&) = delete;

    /// Number of watches, also of those that are detached.
    size_t size() const { return m_byWatch.size(); }

    /// Null if there is none.
    Directory* root() const { return m_root; }

    /// Null if no directory has that watch.
    Directory* find(int watch);

    /// \param rel path below the root; empty for the root. Null if no watched directory is there.
    Directory* at(std::string_view rel) const;

    /// Puts the directory of a watch, be it known or not, to a place, from which the one that was
    /// there is detached, and detaches all that is in it. \param parent null for the root.
    /// \returns false if it would come to be below itself; then nothing has changed.
    bool put(int watch, Directory* parent, std::string_view name);

    /// Takes a directory from its place.
    void detach(Directory* directory);
    void detachChildren(Directory* directory);

    /// Forgets one of the detached directories, of which those in it become others.
    /// \returns its watch; nothing if none is detached.
    std::optional<int> takeDetached();

    /// Forgets a directory, and detaches those in it.
    void remove(Directory* directory);

    /// Path below the root; empty for the root. Nothing if the directory is detached.
    std::optional<std::string> path(const Directory* directory) const;

    /// Directories that have at least `count` watches together with what is below them, if the tree
    /// without its root has as many; no root, and none below another. As few as possible, the
    /// largest first: of one that consists of little but one of its children, that child.
    std::vector<Directory*> largest(size_t count) const;

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

    Directory* child(Directory* parent, std::string_view name) const;
    std::unordered_map<const Directory*, size_t> weights() const;
    void attach(Directory* directory, Directory* parent);
    void unlink(Directory* directory);
    static bool isAtOrAbove(const Directory* directory, const Directory* other);

    Directory* m_root = nullptr;
    Directory m_detached; ///< parent of the detached ones
    std::unordered_map<int, Directory> m_byWatch;
    std::unordered_set<Directory*, Hash, Equal> m_byPlace; ///< all but the root and detached ones
};

} // namespace Platform
