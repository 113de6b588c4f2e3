// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "TreeWatcher.h"

#include <string_view>

namespace Platform
{

/// The watcher as it is for those who read the tree, which is when the watches are set. Any thread.
class TreeWatch : public TreeWatcher
{
public:
    /// Somebody begins to list directories, and has ended. What he found anew under another name
    /// keeps its watch; what he should have found and didn't loses it at the end.
    virtual void beginReading() = 0;
    virtual void endReading() = 0;

    /// Watches a directory that is going to be listed, if it is one of those that are watched at
    /// all, and no longer what is below it, until that is listed as well.
    /// \param directory open, so that no path can lead elsewhere by now.
    /// \param rel its path below the root.
    virtual void watch(int directory, std::string_view rel) = 0;

    /// A directory couldn't be listed for want of means.
    virtual void noteLoss() = 0;
};

} // namespace Platform
