// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGui/qwindowdefs.h>

#include <cstdlib>
#include <memory>

#include <xcb/xcb.h>

class QWindow;

/// What the X11 implementations of the platform layer share: Qt's connection, atoms, and which
/// window a hotkey has summoned. GUI thread only, where nothing else is said.
namespace X11
{

struct FreeDeleter
{
    void operator()(void* memory) const { std::free(memory); }
};

/// A reply or error of the X server, which the C library hands over for the caller to free.
template <typename T>
using Reply = std::unique_ptr<T, FreeDeleter>;

/// Qt's own connection; null if the application doesn't run on X11.
xcb_connection_t* connection();

/// Number of the default screen, and its root window.
int screenNumber();
xcb_window_t rootWindow();

/// A screen of any connection, by number. Any thread.
const xcb_screen_t* screenOf(xcb_connection_t* connection, int number);

/// The atom of that name, made if it is new.
xcb_atom_t atom(const char* name);

/// The top-level window of this process with that native id; null if it has none.
QWindow* windowOf(WId id);

/// Time of the key press that was last taken for a hotkey; `XCB_CURRENT_TIME` before the first.
xcb_timestamp_t userTime();

/// Notes that a hotkey was pressed. No window is expected to take the foreground over it yet.
void noteHotkey(xcb_timestamp_t time);

/// Tells that `window` has been asked to take the foreground.
void expectFocusOn(WId window);

/// The window that was asked last since the last hotkey; 0 if none was.
WId expectedFocus();

} // namespace X11
