// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HotkeyManager.h"

#include <cstdint>
#include <cstdlib>

namespace
{

constexpr unsigned int kAllModifiers = HotkeyManager::ModAlt | HotkeyManager::ModControl |
                                       HotkeyManager::ModShift | HotkeyManager::ModWin;
constexpr unsigned int kLastKey = 135; // F24

} // namespace

/// Any text is a combination within the stored numbers, or none at all.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    unsigned int modifiers = 0;
    unsigned int key = 0;
    if (!HotkeyManager::parseCombo(text, modifiers, key))
        return 0;
    if ((modifiers & ~kAllModifiers) != 0 || key == 0 || key > kLastKey)
        std::abort();
    // Letter case never matters.
    unsigned int otherModifiers = 0;
    unsigned int otherKey = 0;
    const bool isSame = HotkeyManager::parseCombo(text.toUpper(), otherModifiers, otherKey) &&
                        otherModifiers == modifiers && otherKey == key;
    if (!isSame)
        std::abort();
    return 0;
}
