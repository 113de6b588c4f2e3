// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPointer>
#include <QWidget>

/// The page itself or, where a rebuild has taken it away while one of its dialogs was open, the one
/// that stands in its place in the window by now. Null without either. GUI thread only.
template <typename Page>
Page* pageNow(const QPointer<Page>& page, const QPointer<QWidget>& window)
{
    if (page || !window)
        return page;
    return window->findChild<Page*>();
}
