// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Program.h"

#include <QJsonArray>

#include <functional>
#include <initializer_list>

/// The home page of the program under test: pressed, clicked and looked at as its user would, with
/// the document on disk as the witness of what came of it. Whatever doesn't happen in time ends the
/// test run.
class HomePage
{
public:
    /// Keys by their X11 names; letters and digits stand for themselves.
    enum Key : xcb_keysym_t {
        Space = 0x20,
        BackSpace = 0xff08,
        Tab = 0xff09,
        Return = 0xff0d,
        Escape = 0xff1b,
        Home = 0xff50,
        Left = 0xff51,
        Up = 0xff52,
        Right = 0xff53,
        Down = 0xff54,
        End = 0xff57,
        Shift = 0xffe1,
        Control = 0xffe3,
    };

    /// Rows of the menus, from the top; those of cancelling aren't counted.
    enum AddRow { AddItemRow, AddSectionRow };
    enum TemplateRow { SaveTemplateRow, UseTemplateRow };
    enum SectionRow {
        SectionAddItemRow,
        ReorderItemsRow,
        EditSectionRow,
        DeleteSectionRow,
        ReorderSectionsRow
    };
    /// With several sections. The last one is `MoveItemRow` if there is but one.
    enum ItemRow { EditItemRow, DuplicateItemRow, MoveItemRow, DeleteItemRow };
    enum TypeRow { UrlRow, ApplicationRow, FileRow, BulkRow, SnippetRow };

    // Where things are, from the corner of the window, whose margin is its shadow's.
    static constexpr QPoint AddButton{60, 72};
    static constexpr QPoint TemplateButton{100, 72};
    static constexpr QPoint SearchField{300, 72};
    static constexpr QPoint FirstPill{72, 126};
    static constexpr QPoint BesideTheCard{48, 320}; ///< on the dimmed page around the editor
    static QPoint tile(int index);

    explicit HomePage(Desktop& desktop);

    Program& program() { return m_program; }
    QImage settledScreenshot() const { return m_program.settledScreenshot(); }

    /// Starts the program and waits for its window, in which the strip of sections has the
    /// keyboard.
    void start();
    /// By the hotkey, if it isn't up. The strip has the keyboard and the first item is current.
    void show();
    /// Like show(), but a dialog may be what has the keyboard then.
    void bringUp();
    /// Hides the window, if it is up, and shows it again.
    void showAgain();
    void waitUntilGone() const;
    bool isUp() const;        ///< on the screen and with the keyboard
    bool hasKeyboard() const; ///< that, or one of its dialogs is

    /// Presses keys one after the other, each once the one before has been dealt with: a key that
    /// comes while a menu closes behind a choice still belongs to that menu.
    void press(std::initializer_list<xcb_keysym_t> keys) const;
    void press(xcb_keysym_t key, int times) const;
    /// Presses keys together, the modifiers first.
    void chord(std::initializer_list<xcb_keysym_t> keys) const;
    void type(const QString& text) const;
    void click(const QPoint& place, uint8_t button = 1) const;
    /// The same at a place of the screen.
    void clickOnScreen(const QPoint& place, uint8_t button = 1) const;

    /// Presses the left button at a place, moves the pointer with it to others, and releases it
    /// where it is by then.
    void takeWithPointer(const QPoint& place) const;
    void movePointer(const QPoint& place) const;
    void dropFromPointer() const;

    /// Chooses a row of the menu that has just been opened.
    void chooseRow(int row) const;
    /// From the strip: opens the menu of the add, or of the template button.
    void openAddMenu() const;
    void openTemplateMenu() const;
    /// From the name field of the editor: fills the form in and saves it.
    void fillEditor(const QString& name, TypeRow type, const QString& value) const;
    /// From the strip: goes to an item of the grid, as three columns show it.
    void goToItem(int index) const;

    /// Waits until a window of the program other than the home page's and than `notThis` has the
    /// keyboard, and returns it.
    xcb_window_t waitForDialog(xcb_window_t notThis = XCB_WINDOW_NONE) const;
    /// Waits until the home page has the keyboard again.
    void waitForHome() const;

    /// The document as it is on disk; empty before the first change. Ends the test run if it is
    /// there and can't be parsed.
    QJsonObject document() const;
    QStringList sections() const;
    QStringList itemNames(const QString& section) const;
    QJsonObject item(const QString& section, int index) const;

private:
    void waitFor(const std::function<bool()>& condition, const char* failure) const;
    xcb_window_t otherWindowWithKeyboard() const;
    QJsonArray items(const QString& section) const;

    Desktop& m_desktop;
    Program m_program;
};
