// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGui/qwindowdefs.h>

#include <cstdlib>
#include <memory>

#include <xcb/xcb.h>

class QWindow;

/// What the X11 implementations of the platform layer share: Qt's connection, atoms, and the
/// keyboard that a hotkey holds until the window it summoned has the focus. GUI thread only.
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

/// The atom of that name, made if it is new.
xcb_atom_t atom(const char* name);

/// The top-level window of this process with that native id; null if it has none.
QWindow* windowOf(WId id);

/// Time of the key press that was last taken for a hotkey; `XCB_CURRENT_TIME` before the first.
xcb_timestamp_t userTime();

/// Notes that a hotkey was pressed. The server withholds all keys from that moment; they are let go
/// once the event loop turns, or, if a window is on its way to the foreground then, when that
/// window has the focus. So what is typed behind the hotkey reaches the window from the first
/// character on.
void holdKeysForHotkey(xcb_timestamp_t time);

/// Tells that `window` has been asked to take the foreground.
void expectFocusOn(WId window);

/// Tells that the server has given the keyboard to `window`. What Qt says of the focus can be out
/// of date by a moment, after a hide for instance.
void noteFocusOn(WId window);

} // namespace X11
