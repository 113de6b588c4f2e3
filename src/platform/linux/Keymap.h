// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QVector>

#include <memory>

#include <xcb/xcb.h>

struct xkb_keymap;

/// The part of the keyboard map that hotkeys need: which keycodes carry a key, and which modifier
/// bits stand for what. A snapshot: read it again when the map changes. One thread at a time.
class Keymap
{
public:
    /// An empty map, which has no key.
    Keymap() = default;

    /// Reads the keyboard behind `connection`, which must have the XKB extension set up. Waits for
    /// the server. Empty if it can't be read.
    static Keymap read(xcb_connection_t* connection);

    /// Takes one that is read already. Shares it.
    static Keymap of(xkb_keymap* keymap);

    /// The X modifier bits of the stored modifier bits (1 Alt, 2 Ctrl, 4 Shift, 8 Win).
    quint16 stateOf(unsigned int modifiers) const;

    /// Every combination of the modifiers that a lock key sets, 0 among them.
    const QVector<quint16>& lockVariants() const { return m_lockVariants; }

    /// `state` of a key event without locks, pointer buttons and keyboard group.
    quint16 withoutLocks(quint16 state) const;

    /// Whether the key changes modifiers when it is pressed by itself; lock keys do, too. False in
    /// an empty map.
    bool isModifier(xcb_keycode_t code) const;

    /// The keycodes that carry the stored key; empty if the keyboard has no such key. Of several
    /// layouts the first that has it decides. Where none has a letter or digit, it is the key in
    /// the place where a plain Latin keyboard has it.
    QVector<xcb_keycode_t> keycodesOf(unsigned int key) const;

private:
    std::shared_ptr<xkb_keymap> m_keymap;
    quint16 m_alt = XCB_MOD_MASK_1;
    quint16 m_super = XCB_MOD_MASK_4;
    QVector<quint16> m_lockVariants{0};
};
