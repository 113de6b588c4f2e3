// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Keymap.h"

#include "X11.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include <xcb/xcb_keysyms.h>

namespace
{

constexpr xcb_keysym_t kNumLock = 0xff7f;
constexpr xcb_keysym_t kScrollLock = 0xff14;
constexpr xcb_keysym_t kAltLeft = 0xffe9;
constexpr xcb_keysym_t kAltRight = 0xffea;
constexpr xcb_keysym_t kSuperLeft = 0xffeb;
constexpr xcb_keysym_t kSuperRight = 0xffec;

constexpr unsigned int kFirstFunctionKey = 112; // stored number of F1
constexpr unsigned int kLastFunctionKey = 135;
constexpr xcb_keysym_t kFirstFunctionKeysym = 0xffbe;

constexpr std::array<std::pair<unsigned int, xcb_keysym_t>, 10> kNamedKeys{{
    {9, 0xff09},  // Tab
    {13, 0xff0d}, // Return
    {27, 0xff1b}, // Escape
    {32, 0x0020}, // space
    {37, 0xff51}, // Left
    {38, 0xff52}, // Up
    {39, 0xff53}, // Right
    {40, 0xff54}, // Down
    {44, 0xff61}, // Print
    {46, 0xffff}, // Delete
}};

// Keycodes of the letters A to Z on a Latin keyboard under evdev.
constexpr std::array<xcb_keycode_t, 26> kLetterPositions{38, 56, 54, 40, 26, 41, 42, 43, 31,
                                                         44, 45, 46, 58, 57, 32, 33, 24, 27,
                                                         39, 28, 30, 55, 25, 53, 29, 52};

using KeySymbols = std::unique_ptr<xcb_key_symbols_t,
                                   decltype([](xcb_key_symbols_t* s) { xcb_key_symbols_free(s); })>;

bool isLetter(unsigned int key)
{
    return key >= 'A' && key <= 'Z';
}

xcb_keysym_t keysymOf(unsigned int key)
{
    if (isLetter(key))
        return key - 'A' + 'a';
    if (key >= '0' && key <= '9')
        return key;
    if (key >= kFirstFunctionKey && key <= kLastFunctionKey)
        return kFirstFunctionKeysym + key - kFirstFunctionKey;
    const auto* named = std::find_if(kNamedKeys.begin(), kNamedKeys.end(),
                                     [key](const auto& pair) { return pair.first == key; });
    return named == kNamedKeys.end() ? XCB_NO_SYMBOL : named->second;
}

/// Where a keyboard with several layouts has the symbol in the first of them, only that place
/// counts: otherwise "Y" would also be the key that is Y in another layout.
QVector<xcb_keycode_t> keycodesOfKeysym(xcb_key_symbols_t* symbols, xcb_keysym_t keysym)
{
    QVector<xcb_keycode_t> anywhere;
    QVector<xcb_keycode_t> first;
    const X11::Reply<xcb_keycode_t> codes(xcb_key_symbols_get_keycode(symbols, keysym));
    for (const xcb_keycode_t* code = codes.get(); code && *code != XCB_NO_SYMBOL; ++code) {
        anywhere.append(*code);
        if (xcb_key_symbols_get_keysym(symbols, *code, 0) == keysym)
            first.append(*code);
    }
    return first.isEmpty() ? anywhere : first;
}

/// A key press carries every modifier that is down, so a combination can ask for one bit only.
quint16 lowestBit(quint16 bits)
{
    return static_cast<quint16>(bits & (~bits + 1));
}

/// The bits of all modifiers that have a key with one of these symbols on them.
class ModifierTable
{
public:
    explicit ModifierTable(xcb_connection_t* connection)
        : m_symbols(xcb_key_symbols_alloc(connection)),
          m_mapping(xcb_get_modifier_mapping_reply(connection, xcb_get_modifier_mapping(connection),
                                                   nullptr))
    {}

    quint16 bitsOf(std::initializer_list<xcb_keysym_t> keysyms) const
    {
        quint16 bits = 0;
        for (const xcb_keysym_t keysym : keysyms) {
            for (const xcb_keycode_t code : keycodesOfKeysym(m_symbols.get(), keysym))
                bits |= bitsOfKeycode(code);
        }
        return bits;
    }

private:
    quint16 bitsOfKeycode(xcb_keycode_t code) const
    {
        if (!m_mapping)
            return 0;
        const xcb_keycode_t* codes = xcb_get_modifier_mapping_keycodes(m_mapping.get());
        const std::ptrdiff_t perModifier = m_mapping->keycodes_per_modifier;
        quint16 bits = 0;
        for (unsigned int modifier = 0; modifier < 8; ++modifier) {
            const xcb_keycode_t* begin = codes + std::ptrdiff_t{modifier} * perModifier;
            if (std::find(begin, begin + perModifier, code) != begin + perModifier)
                bits = static_cast<quint16>(bits | (1U << modifier));
        }
        return bits;
    }

    KeySymbols m_symbols;
    X11::Reply<xcb_get_modifier_mapping_reply_t> m_mapping;
};

QVector<quint16> subsetsOf(std::initializer_list<quint16> masks)
{
    QVector<quint16> result{0};
    for (const quint16 mask : masks) {
        const QVector<quint16> known = result;
        for (const quint16 other : known) {
            const auto joined = static_cast<quint16>(other | mask);
            if (!result.contains(joined))
                result.append(joined);
        }
    }
    return result;
}

} // namespace

Keymap Keymap::read(xcb_connection_t* connection)
{
    const ModifierTable table(connection);
    Keymap keymap;
    if (const quint16 alt = lowestBit(table.bitsOf({kAltLeft, kAltRight})))
        keymap.alt = alt;
    if (const quint16 super = lowestBit(table.bitsOf({kSuperLeft, kSuperRight})))
        keymap.super = super;
    keymap.lockVariants =
        subsetsOf({XCB_MOD_MASK_LOCK, table.bitsOf({kNumLock}), table.bitsOf({kScrollLock})});
    return keymap;
}

quint16 Keymap::stateOf(unsigned int modifiers) const
{
    quint16 state = 0;
    if (modifiers & 1U)
        state |= alt;
    if (modifiers & 2U)
        state |= XCB_MOD_MASK_CONTROL;
    if (modifiers & 4U)
        state |= XCB_MOD_MASK_SHIFT;
    if (modifiers & 8U)
        state |= super;
    return state;
}

quint16 Keymap::withoutLocks(quint16 state) const
{
    constexpr quint16 kAllModifiers = 0xff;
    quint16 locks = 0;
    for (const quint16 variant : lockVariants)
        locks |= variant;
    return static_cast<quint16>(state & kAllModifiers & ~locks);
}

QVector<xcb_keycode_t> Keymap::keycodesOf(xcb_connection_t* connection, unsigned int key)
{
    const xcb_keysym_t keysym = keysymOf(key);
    if (keysym == XCB_NO_SYMBOL)
        return {};
    const KeySymbols symbols(xcb_key_symbols_alloc(connection));
    QVector<xcb_keycode_t> codes = keycodesOfKeysym(symbols.get(), keysym);
    if (codes.isEmpty() && isLetter(key))
        codes.append(kLetterPositions[key - 'A']);
    return codes;
}
