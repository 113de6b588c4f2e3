// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "NativeDesktop.h"

#include "HotkeyManager.h"

#include <array>
#include <cstring>
#include <utility>

#include <windows.h>

namespace
{

constexpr int kHotkeyId = 1;

struct Search
{
    DWORD processId = 0;
    QList<NativeDesktop::Window> found;
};

constexpr WORD kDialogClass = 0x8002; // which all dialogs of the system have

BOOL CALLBACK addWindow(HWND window, LPARAM parameter)
{
    auto* search = reinterpret_cast<Search*>(parameter);
    DWORD processId = 0;
    GetWindowThreadProcessId(window, &processId);
    RECT rect{};
    if (processId != search->processId || !IsWindowVisible(window) || !GetWindowRect(window, &rect))
        return TRUE;
    search->found.append(
        {QRect(rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top),
         window == GetForegroundWindow(), GetClassWord(window, GCW_ATOM) == kDialogClass,
         reinterpret_cast<quintptr>(window)});
    return TRUE;
}

void sendKey(WORD key, bool isDown)
{
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = isDown ? 0 : KEYEVENTF_KEYUP;
    if (SendInput(1, &input, sizeof input) != 1)
        qFatal("the desktop takes no keys");
}

void sendButton(DWORD event)
{
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = event;
    if (SendInput(1, &input, sizeof input) != 1)
        qFatal("the desktop takes no clicks");
}

void press(const QList<WORD>& keys)
{
    for (const WORD key : keys)
        sendKey(key, true);
    for (auto it = keys.crbegin(); it != keys.crend(); ++it)
        sendKey(*it, false);
}

QList<WORD> keysOf(const QString& combination)
{
    constexpr std::array<std::pair<unsigned int, WORD>, 4> kModifierKeys{{
        {MOD_CONTROL, VK_CONTROL},
        {MOD_ALT, VK_MENU},
        {MOD_SHIFT, VK_SHIFT},
        {MOD_WIN, VK_LWIN},
    }};
    unsigned int modifiers = 0;
    unsigned int key = 0;
    if (!HotkeyManager::parseCombo(combination, modifiers, key))
        qFatal("no combination: %s", qPrintable(combination));
    QList<WORD> keys;
    for (const auto& [bit, modifierKey] : kModifierKeys) {
        if ((modifiers & bit) != 0)
            keys.append(modifierKey);
    }
    keys.append(static_cast<WORD>(key));
    return keys;
}

} // namespace

QList<NativeDesktop::Window> NativeDesktop::windowsOf(qint64 processId)
{
    Search search;
    search.processId = static_cast<DWORD>(processId);
    EnumWindows(addWindow, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

void NativeDesktop::pressKeys(const QString& combination)
{
    press(keysOf(combination));
}

void NativeDesktop::type(const QString& text)
{
    // The codes of these keys are those of the characters.
    for (const QChar character : text)
        press({static_cast<WORD>(character.toUpper().unicode())});
}

void NativeDesktop::click(const QPoint& place)
{
    constexpr QPoint outOfTheWay(2, 2); // over a row of a menu the pointer would choose that
    SetCursorPos(place.x(), place.y());
    sendButton(MOUSEEVENTF_LEFTDOWN);
    sendButton(MOUSEEVENTF_LEFTUP);
    SetCursorPos(outOfTheWay.x(), outOfTheWay.y());
}

QString NativeDesktop::clipboardText()
{
    if (!OpenClipboard(nullptr))
        return {};
    QString text;
    if (const HANDLE data = GetClipboardData(CF_UNICODETEXT)) {
        if (const void* bytes = GlobalLock(data)) {
            text = QString::fromWCharArray(static_cast<const wchar_t*>(bytes));
            GlobalUnlock(data);
        }
    }
    CloseClipboard();
    return text;
}

bool NativeDesktop::setClipboardText(const QString& text)
{
    const std::size_t size = (static_cast<std::size_t>(text.size()) + 1) * sizeof(wchar_t);
    const HGLOBAL data = GlobalAlloc(GMEM_MOVEABLE, size);
    void* bytes = data ? GlobalLock(data) : nullptr;
    if (!bytes)
        return false;
    std::memcpy(bytes, text.utf16(), size);
    GlobalUnlock(data);
    if (!OpenClipboard(nullptr)) {
        GlobalFree(data);
        return false;
    }
    EmptyClipboard();
    const bool isSet = SetClipboardData(CF_UNICODETEXT, data) != nullptr;
    CloseClipboard();
    return isSet;
}

NativeDesktop::TakenHotkey::TakenHotkey(const QString& combination)
{
    unsigned int modifiers = 0;
    unsigned int key = 0;
    m_isTaken = HotkeyManager::parseCombo(combination, modifiers, key) &&
                RegisterHotKey(nullptr, kHotkeyId, modifiers, key) != 0;
}

NativeDesktop::TakenHotkey::~TakenHotkey()
{
    if (m_isTaken)
        UnregisterHotKey(nullptr, kHotkeyId);
}
