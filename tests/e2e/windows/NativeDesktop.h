// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QRect>
#include <QString>

/// What somebody at the keyboard of a Windows desktop sees and does.
namespace NativeDesktop
{

struct Window
{
    QRect geometry;            ///< physical pixels; null if there is no such window
    bool isForeground = false; ///< has the keyboard
    bool isOfSystem = false;   ///< one of the system's own dialogs, as to choose a file
    quintptr handle = 0;       ///< no other window's, as long as this one lives
    bool exists() const { return !geometry.isNull(); }
};

/// The visible top-level windows of a process.
QList<Window> windowsOf(qint64 processId);

/// Presses the keys of a combination as `HotkeyManager` writes it ("Ctrl+Alt+Y", "Return") in
/// order, and lets them go the other way round. Ends the test run if the text is none.
void pressKeys(const QString& combination);

/// Types letters, digits and blanks, each by its key.
void type(const QString& text);

/// Presses the left button at a place of the screen, in physical pixels, lets it go, and puts
/// the pointer into the corner of the screen.
void click(const QPoint& place);

/// The text on the clipboard; null if there is none or another program is at it just now.
QString clipboardText();
bool setClipboardText(const QString& text);

/// Holds a system-wide hotkey as another program would.
class TakenHotkey
{
public:
    explicit TakenHotkey(const QString& combination);
    ~TakenHotkey();
    TakenHotkey(const TakenHotkey&) = delete;
    TakenHotkey& operator=(const TakenHotkey&) = delete;

    bool isTaken() const { return m_isTaken; }

private:
    bool m_isTaken = false;
};

} // namespace NativeDesktop
