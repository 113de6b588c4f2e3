// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HotkeyManager.h"

#include "HotkeyBackend.h"
#include "Settings.h"

#include <QHash>

#include <algorithm>
#include <utility>

namespace
{

constexpr unsigned int kKeyTab = 9;
constexpr unsigned int kKeyReturn = 13;
constexpr unsigned int kKeyEscape = 27;
constexpr unsigned int kKeySpace = 32;
constexpr unsigned int kKeyLeft = 37;
constexpr unsigned int kKeyUp = 38;
constexpr unsigned int kKeyRight = 39;
constexpr unsigned int kKeyDown = 40;
constexpr unsigned int kKeyPrintScreen = 44;
constexpr unsigned int kKeyDelete = 46;
constexpr unsigned int kKeyBeforeF1 = 111;
constexpr unsigned int kKeyF4 = kKeyBeforeF1 + 4;
constexpr int kLastFunctionKey = 24;

using Combination = std::pair<unsigned int, unsigned int>; // modifiers, key

bool isDenied(unsigned int modifiers, unsigned int key)
{
    constexpr unsigned int kCtrlShift = HotkeyManager::ModControl | HotkeyManager::ModShift;
    constexpr unsigned int kCtrlAlt = HotkeyManager::ModControl | HotkeyManager::ModAlt;
    static const QVector<Combination> s_denied{
        {HotkeyManager::ModControl, 'C'}, {HotkeyManager::ModControl, 'V'},
        {HotkeyManager::ModControl, 'X'}, {HotkeyManager::ModControl, 'Z'},
        {HotkeyManager::ModControl, 'Y'}, {HotkeyManager::ModControl, 'A'},
        {HotkeyManager::ModControl, 'S'}, {HotkeyManager::ModControl, 'P'},
        {HotkeyManager::ModControl, 'N'}, {HotkeyManager::ModControl, 'O'},
        {HotkeyManager::ModControl, 'F'}, {HotkeyManager::ModControl, 'W'},
        {HotkeyManager::ModControl, 'T'}, {HotkeyManager::ModControl, kKeyEscape},
        {HotkeyManager::ModAlt, kKeyF4},  {HotkeyManager::ModAlt, kKeyTab},
        {kCtrlShift, kKeyEscape},         {HotkeyManager::ModWin, 'L'},
        {HotkeyManager::ModWin, 'D'},     {HotkeyManager::ModWin, 'E'},
        {HotkeyManager::ModWin, 'R'},     {HotkeyManager::ModWin, kKeyTab},
        {kCtrlAlt, kKeyDelete},
    };
    return s_denied.contains(Combination(modifiers, key));
}

unsigned int modifierOf(const QString& word)
{
    static const QHash<QString, unsigned int> s_words{
        {QStringLiteral("CTRL"), HotkeyManager::ModControl},
        {QStringLiteral("CONTROL"), HotkeyManager::ModControl},
        {QStringLiteral("ALT"), HotkeyManager::ModAlt},
        {QStringLiteral("SHIFT"), HotkeyManager::ModShift},
        {QStringLiteral("WIN"), HotkeyManager::ModWin},
        {QStringLiteral("WINDOWS"), HotkeyManager::ModWin},
        {QStringLiteral("META"), HotkeyManager::ModWin},
    };
    return s_words.value(word, 0);
}

/// Number of a function key behind its "F", digits only; 0 if it is none.
unsigned int functionKeyOf(const QString& digits)
{
    const bool areDigits =
        std::all_of(digits.begin(), digits.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    bool isNumber = false;
    const int number = digits.toInt(&isNumber);
    const bool isKey = areDigits && isNumber && number >= 1 && number <= kLastFunctionKey;
    return isKey ? kKeyBeforeF1 + static_cast<unsigned int>(number) : 0;
}

/// Code of a key word, 0 if there is no such key.
unsigned int keyOf(const QString& word)
{
    static const QHash<QString, unsigned int> s_words{
        {QStringLiteral("SPACE"), kKeySpace},
        {QStringLiteral("ENTER"), kKeyReturn},
        {QStringLiteral("RETURN"), kKeyReturn},
        {QStringLiteral("ESC"), kKeyEscape},
        {QStringLiteral("ESCAPE"), kKeyEscape},
        {QStringLiteral("TAB"), kKeyTab},
        {QStringLiteral("UP"), kKeyUp},
        {QStringLiteral("DOWN"), kKeyDown},
        {QStringLiteral("LEFT"), kKeyLeft},
        {QStringLiteral("RIGHT"), kKeyRight},
        {QStringLiteral("PRINTSCREEN"), kKeyPrintScreen},
        {QStringLiteral("PRTSCN"), kKeyPrintScreen},
        {QStringLiteral("DELETE"), kKeyDelete},
        {QStringLiteral("DEL"), kKeyDelete},
    };
    if (word.size() == 1) {
        const char16_t character = word.at(0).unicode();
        const bool isLetter = character >= u'A' && character <= u'Z';
        const bool isDigit = character >= u'0' && character <= u'9';
        return isLetter || isDigit ? character : 0;
    }
    if (word.startsWith(u'F'))
        return functionKeyOf(word.mid(1));
    return s_words.value(word, 0);
}

bool isGrantedBySystem(WId windowId, unsigned int modifiers, unsigned int key)
{
    HotkeyBackend& backend = HotkeyBackend::instance();
    if (!backend.registerHotkey(windowId, HotkeyManager::ProbeId, modifiers, key))
        return false;
    backend.unregisterHotkey(windowId, HotkeyManager::ProbeId);
    return true;
}

} // namespace

HotkeyManager::Slot HotkeyManager::mainWindowSlot{QStringLiteral("Ctrl+Alt+Space"), 0, 0,
                                                  QStringLiteral("Hotkey/Combo"),
                                                  QStringLiteral("Ctrl+Alt+Space")};
HotkeyManager::Slot HotkeyManager::spotlightSlot{QStringLiteral("Ctrl+Alt+Y"), 0, 0,
                                                 QStringLiteral("Hotkey/SpotlightCombo"),
                                                 QStringLiteral("Ctrl+Alt+Y")};

QVector<HotkeyManager::Slot*> HotkeyManager::allSlots()
{
    return {&mainWindowSlot, &spotlightSlot};
}

QString HotkeyManager::settingsFilePath()
{
    return Settings::filePath();
}

bool HotkeyManager::parseCombo(const QString& combo, unsigned int& outModifiers,
                               unsigned int& outVK)
{
    outModifiers = 0;
    outVK = 0;
    QStringList words = combo.split(u'+', Qt::SkipEmptyParts);
    if (words.isEmpty())
        return false;
    const QString key = words.takeLast().trimmed().toUpper();
    for (const QString& word : std::as_const(words)) {
        const unsigned int modifier = modifierOf(word.trimmed().toUpper());
        if (modifier == 0)
            return false;
        outModifiers |= modifier;
    }
    outVK = keyOf(key);
    return outVK != 0;
}

HotkeyManager::ValidationResult HotkeyManager::validate(const QString& combo, WId windowId,
                                                        bool forceTest, const Slot* forSlot)
{
    if (!forceTest && forSlot && combo == forSlot->combo)
        return {true, QString()};
    unsigned int modifiers = 0;
    unsigned int key = 0;
    if (!parseCombo(combo, modifiers, key))
        return {false, QStringLiteral("Format hotkey tidak valid.")};
    if (modifiers == 0)
        return {false, QStringLiteral("Wajib menggunakan modifier (Ctrl/Alt/Shift/Win).")};
    if (key == kKeyPrintScreen)
        return {false, QStringLiteral("PrintScreen tidak diizinkan.")};
    if (key == kKeyEscape)
        return {false, QStringLiteral("Tombol Escape dicadangkan untuk sistem navigasi.")};
    if (isDenied(modifiers, key))
        return {false, QStringLiteral("Kombinasi ini dicadangkan (Denylist).")};
    if (windowId && !isGrantedBySystem(windowId, modifiers, key))
        return {false, QStringLiteral("Kombinasi sudah dipakai aplikasi lain.")};
    return {true, QStringLiteral("OK")};
}

HotkeyManager::ValidationResult HotkeyManager::validateForChange(const QString& combo, WId windowId,
                                                                 const Slot& forSlot)
{
    ValidationResult result = validate(combo, windowId, false, &forSlot);
    if (!result.valid)
        return result;
    for (const Slot* slot : allSlots()) {
        if (slot != &forSlot && slot->combo.compare(combo, Qt::CaseInsensitive) == 0) {
            return {false,
                    QStringLiteral("Kombinasi ini sudah dipakai hotkey lain di aplikasi ini.")};
        }
    }
    return {true, QStringLiteral("OK")};
}

void HotkeyManager::adopt(Slot& s, const QString& combo)
{
    s.combo = combo;
    parseCombo(combo, s.modifiers, s.vk);
}

QString HotkeyManager::loadSettings(Slot& s, WId windowId)
{
    // A first run leaves both keys in the file, for whoever wants to change them by hand.
    if (!Settings::contains(s.settingsKey))
        Settings::setValue(s.settingsKey, s.defaultCombo);
    const QString savedCombo = Settings::value(s.settingsKey, s.defaultCombo).toString();
    const ValidationResult result = validate(savedCombo, windowId, true, &s);
    if (result.valid) {
        adopt(s, savedCombo);
        return {};
    }
    adopt(s, s.defaultCombo);
    saveSettings(s);
    return QStringLiteral("Hotkey invalid (%1). Fallback ke default.").arg(result.message);
}

void HotkeyManager::saveSettings(const Slot& s)
{
    Settings::setValue(s.settingsKey, s.combo);
}
