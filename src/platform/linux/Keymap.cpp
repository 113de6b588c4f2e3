// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Keymap.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <utility>

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

namespace
{

constexpr unsigned int kFirstFunctionKey = 112; // stored number of F1
constexpr unsigned int kLastFunctionKey = 135;

constexpr quint16 kAllModifiers = 0xff;
constexpr xkb_keycode_t kLastKeycode = 255;

constexpr std::array<std::pair<unsigned int, xkb_keysym_t>, 10> kNamedKeys{{
    {9, XKB_KEY_Tab},
    {13, XKB_KEY_Return},
    {27, XKB_KEY_Escape},
    {32, XKB_KEY_space},
    {37, XKB_KEY_Left},
    {38, XKB_KEY_Up},
    {39, XKB_KEY_Right},
    {40, XKB_KEY_Down},
    {44, XKB_KEY_Print},
    {46, XKB_KEY_Delete},
}};

using SharedKeymap = std::shared_ptr<xkb_keymap>;
using SharedContext = std::shared_ptr<xkb_context>;
using OwnedState = std::unique_ptr<xkb_state, decltype(&xkb_state_unref)>;

SharedContext makeContext(xkb_context_flags flags)
{
    return {xkb_context_new(flags), xkb_context_unref};
}

/// With nothing pressed; null if there is no memory.
OwnedState makeState(xkb_keymap* keymap)
{
    return {xkb_state_new(keymap), xkb_state_unref};
}

bool isLetter(unsigned int key)
{
    return key >= 'A' && key <= 'Z';
}

bool isDigit(unsigned int key)
{
    return key >= '0' && key <= '9';
}

xkb_keysym_t keysymOf(unsigned int key)
{
    if (isLetter(key))
        return key - 'A' + XKB_KEY_a;
    if (isDigit(key))
        return key - '0' + XKB_KEY_0;
    if (key >= kFirstFunctionKey && key <= kLastFunctionKey)
        return key - kFirstFunctionKey + XKB_KEY_F1;
    const auto* named = std::find_if(kNamedKeys.begin(), kNamedKeys.end(),
                                     [key](const auto& pair) { return pair.first == key; });
    return named == kNamedKeys.end() ? XKB_KEY_NoSymbol : named->second;
}

bool carries(xkb_keymap* keymap, xkb_keycode_t code, xkb_layout_index_t layout,
             xkb_level_index_t level, xkb_keysym_t keysym)
{
    const xkb_keysym_t* symbols = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(keymap, code, layout, level, &symbols);
    return std::find(symbols, symbols + count, keysym) != symbols + count;
}

bool carriesShifted(xkb_keymap* keymap, xkb_keycode_t code, xkb_layout_index_t layout,
                    xkb_keysym_t keysym)
{
    const xkb_level_index_t levels = xkb_keymap_num_levels_for_key(keymap, code, layout);
    for (xkb_level_index_t level = 1; level < levels; ++level) {
        if (carries(keymap, code, layout, level, keysym))
            return true;
    }
    return false;
}

enum class Shift { No, Yes };

/// The keycodes that carry the symbol in one layout, as they are or shifted to in some way. Codes
/// above 255 exist in no core protocol.
QVector<xcb_keycode_t> keycodesIn(xkb_keymap* keymap, xkb_layout_index_t layout,
                                  xkb_keysym_t keysym, Shift shift = Shift::No)
{
    QVector<xcb_keycode_t> found;
    const xkb_keycode_t last = std::min(xkb_keymap_max_keycode(keymap), kLastKeycode);
    for (xkb_keycode_t code = xkb_keymap_min_keycode(keymap); code <= last; ++code) {
        if (layout >= xkb_keymap_num_layouts_for_key(keymap, code))
            continue;
        const bool isFound = shift == Shift::No ? carries(keymap, code, layout, 0, keysym)
                                                : carriesShifted(keymap, code, layout, keysym);
        if (isFound)
            found.append(static_cast<xcb_keycode_t>(code));
    }
    return found;
}

/// Where the first layout that has the symbol at all has it: otherwise "Y" would also be the key
/// that is Y in another layout.
QVector<xcb_keycode_t> firstKeycodesOf(xkb_keymap* keymap, xkb_keysym_t keysym,
                                       Shift shift = Shift::No)
{
    QVector<xcb_keycode_t> found;
    const xkb_layout_index_t layouts = xkb_keymap_num_layouts(keymap);
    for (xkb_layout_index_t layout = 0; layout < layouts && found.isEmpty(); ++layout)
        found = keycodesIn(keymap, layout, keysym, shift);
    return found;
}

/// The plain Latin keyboard of the system's own tables; null if it has none.
xkb_keymap* latinKeymap()
{
    static const SharedKeymap s_keymap = [] {
        const SharedContext context = makeContext(XKB_CONTEXT_NO_ENVIRONMENT_NAMES);
        const xkb_rule_names names{"evdev", "pc105", "us", "", ""};
        xkb_keymap* keymap =
            context ? xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS)
                    : nullptr;
        return keymap ? SharedKeymap(keymap, xkb_keymap_unref) : SharedKeymap();
    }();
    return s_keymap.get();
}

/// The key in the place that carries the symbol on a plain Latin keyboard. Places have names, which
/// are the same whatever numbers a keyboard gives them.
QVector<xcb_keycode_t> keycodesInPlaceOf(xkb_keymap* keymap, xkb_keysym_t keysym)
{
    QVector<xcb_keycode_t> found;
    xkb_keymap* latin = latinKeymap();
    if (!latin)
        return found;
    for (const xcb_keycode_t latinCode : firstKeycodesOf(latin, keysym)) {
        const char* place = xkb_keymap_key_get_name(latin, latinCode);
        const xkb_keycode_t code =
            place ? xkb_keymap_key_by_name(keymap, place) : XKB_KEYCODE_INVALID;
        if (code != XKB_KEYCODE_INVALID && code <= kLastKeycode)
            found.append(static_cast<xcb_keycode_t>(code));
    }
    return found;
}

/// The modifiers that a key sets while it is held, where it carries that symbol. What pressing it
/// does is the one thing that counts: between the symbol and the bits lie names and mappings that
/// all may differ.
quint16 bitsOfPress(xkb_keymap* keymap, xkb_keycode_t code, xkb_layout_index_t layout,
                    xkb_keysym_t keysym)
{
    xkb_level_index_t level = 0;
    while (!carries(keymap, code, layout, level, keysym))
        ++level;
    xkb_mod_mask_t shift = 0;
    xkb_keymap_key_get_mods_for_level(keymap, code, layout, level, &shift, 1);
    const OwnedState state = makeState(keymap);
    if (!state)
        return 0;
    xkb_state_update_mask(state.get(), shift, 0, 0, 0, 0, layout);
    xkb_state_update_key(state.get(), code, XKB_KEY_DOWN);
    const xkb_mod_mask_t bits = xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_EFFECTIVE);
    return static_cast<quint16>(bits & ~shift & kAllModifiers);
}

/// What each key with one of these symbols sets, in the order of the symbols.
QVector<quint16> bitsOf(xkb_keymap* keymap, std::initializer_list<xkb_keysym_t> keysyms,
                        Shift shift = Shift::No)
{
    QVector<quint16> bits;
    for (const xkb_keysym_t keysym : keysyms) {
        for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts(keymap); ++layout) {
            for (const xcb_keycode_t code : keycodesIn(keymap, layout, keysym, shift)) {
                const quint16 set = bitsOfPress(keymap, code, layout, keysym);
                if (set != 0 && !bits.contains(set))
                    bits.append(set);
            }
        }
    }
    return bits;
}

QVector<quint16> subsetsOf(const QVector<quint16>& masks)
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
    // The server's own map needs none of the tables on disk.
    const SharedContext context = makeContext(static_cast<xkb_context_flags>(
        XKB_CONTEXT_NO_DEFAULT_INCLUDES | XKB_CONTEXT_NO_ENVIRONMENT_NAMES));
    const int32_t device = xkb_x11_get_core_keyboard_device_id(connection);
    if (!context || device < 0)
        return {};
    xkb_keymap* keymap = xkb_x11_keymap_new_from_device(context.get(), connection, device,
                                                        XKB_KEYMAP_COMPILE_NO_FLAGS);
    if (!keymap)
        return {};
    const SharedKeymap owned(keymap, xkb_keymap_unref);
    return of(keymap);
}

Keymap Keymap::of(xkb_keymap* keymap)
{
    Keymap result;
    result.m_keymap = {xkb_keymap_ref(keymap), xkb_keymap_unref};
    const QVector<quint16> alt = bitsOf(keymap, {XKB_KEY_Alt_L, XKB_KEY_Alt_R});
    const QVector<quint16> super = bitsOf(keymap, {XKB_KEY_Super_L, XKB_KEY_Super_R});
    result.m_alt = alt.value(0, result.m_alt);
    result.m_super = super.value(0, result.m_super);
    // Some layouts have the lock keys behind another modifier.
    QVector<quint16> locks{XCB_MOD_MASK_LOCK};
    for (const Shift shift : {Shift::No, Shift::Yes})
        locks += bitsOf(keymap, {XKB_KEY_Num_Lock, XKB_KEY_Scroll_Lock}, shift);
    result.m_lockVariants = subsetsOf(locks);
    return result;
}

quint16 Keymap::stateOf(unsigned int modifiers) const
{
    quint16 state = 0;
    if (modifiers & 1U)
        state |= m_alt;
    if (modifiers & 2U)
        state |= XCB_MOD_MASK_CONTROL;
    if (modifiers & 4U)
        state |= XCB_MOD_MASK_SHIFT;
    if (modifiers & 8U)
        state |= m_super;
    return state;
}

quint16 Keymap::withoutLocks(quint16 state) const
{
    quint16 locks = 0;
    for (const quint16 variant : m_lockVariants)
        locks |= variant;
    return static_cast<quint16>(state & kAllModifiers & ~locks);
}

bool Keymap::isModifier(xcb_keycode_t code) const
{
    if (!m_keymap)
        return false;
    const OwnedState state = makeState(m_keymap.get());
    if (!state)
        return false;
    const auto changed = xkb_state_update_key(state.get(), code, XKB_KEY_DOWN);
    return (changed & XKB_STATE_MODS_EFFECTIVE) != 0;
}

QVector<xcb_keycode_t> Keymap::keycodesOf(unsigned int key) const
{
    const xkb_keysym_t keysym = keysymOf(key);
    if (keysym == XKB_KEY_NoSymbol || !m_keymap)
        return {};
    QVector<xcb_keycode_t> codes = firstKeycodesOf(m_keymap.get(), keysym);
    // Some layouts have the digits behind Shift. Any other key that has to be shifted to is another
    // key as long as the hotkey doesn't say Shift.
    if (codes.isEmpty() && isDigit(key))
        codes = firstKeycodesOf(m_keymap.get(), keysym, Shift::Yes);
    if (codes.isEmpty() && (isDigit(key) || isLetter(key)))
        codes = keycodesInPlaceOf(m_keymap.get(), keysym);
    return codes;
}
