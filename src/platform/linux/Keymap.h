// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QVector>

#include <xcb/xcb.h>

/// The part of the X keyboard map that hotkeys need: which keycodes carry a key, and which modifier
/// bits stand for what. A snapshot: read it again when the map changes.
struct Keymap
{
    quint16 alt = XCB_MOD_MASK_1;   ///< modifier bit of the Alt keys
    quint16 super = XCB_MOD_MASK_4; ///< modifier bit of the Windows keys
    QVector<quint16> lockVariants;  ///< every combination of the lock modifiers, 0 among them

    /// Reads the modifiers of the keyboard behind `connection`.
    static Keymap read(xcb_connection_t* connection);

    /// The X modifier bits of the stored modifier bits (1 Alt, 2 Ctrl, 4 Shift, 8 Win).
    quint16 stateOf(unsigned int modifiers) const;

    /// `state` of a key event without locks, pointer buttons and keyboard group.
    quint16 withoutLocks(quint16 state) const;

    /// The keycodes that carry the stored key; empty if the keyboard has no such key. A layout
    /// without Latin letters answers with the keys that carry them on a Latin one.
    static QVector<xcb_keycode_t> keycodesOf(xcb_connection_t* connection, unsigned int key);
};
