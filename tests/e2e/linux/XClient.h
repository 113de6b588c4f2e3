// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QColor>
#include <QHash>
#include <QImage>
#include <QRect>
#include <QString>
#include <QVector>

#include <cstddef>

#include <xcb/xcb.h>

/// Another X11 client beside the program under test: looks at its windows and at the screen, holds
/// the focus, and grabs keys.
class XClient
{
public:
    struct Window
    {
        xcb_window_t id = XCB_WINDOW_NONE;
        QRect geometry; ///< on the screen
        bool isViewable = false;
    };

    /// Connects to a display such as ":7"; ends the test run if that fails.
    explicit XClient(const QString& display);
    ~XClient();
    XClient(const XClient&) = delete;
    XClient& operator=(const XClient&) = delete;

    /// Every window of a process, mapped or not.
    QVector<Window> windowsOf(qint64 pid) const;

    /// The window that has the keyboard.
    xcb_window_t focus() const;

    /// What a window is called; empty if its owner doesn't say.
    QString titleOf(xcb_window_t window) const;

    /// Makes a plain, visible window, a stand-in for whatever the user works in.
    xcb_window_t makeWindow(const QRect& geometry);

    /// Takes the focus for a window of this client without asking a window manager.
    void setFocus(xcb_window_t window);

    /// Asks the window manager to give `window` the focus.
    void activate(xcb_window_t window);

    /// Asks the owner of a window to close it, as a window manager does.
    void askToClose(xcb_window_t window);

    /// Key presses that reached windows of this client since the last call.
    int takeKeyPressCount();

    /// Asks the owner of a window for a sign of life, which it gives when it has read all that the
    /// server told it before: every key that was pressed, for one.
    void ping(xcb_window_t window);
    /// True from the answer to the last ping on.
    bool hasAnswered();

    /// Grabs a key, given as keysym, on the root window with the modifier bits. False if refused.
    bool grabKey(xcb_keysym_t keysym, quint16 modifiers);
    void ungrabKey(xcb_keysym_t keysym, quint16 modifiers);

    /// True if another client holds that key with just these modifiers.
    bool isGrabbedByOther(xcb_keycode_t code, quint16 modifiers);

    /// True if a window manager runs, and if a compositor does.
    bool hasWindowManager() const;
    bool hasCompositor() const;

    /// Presses the keys, given as keysyms, one after the other, and releases them in the opposite
    /// order. Has reached the server on return.
    void pressKeys(const QVector<xcb_keysym_t>& keysyms);

    /// The same with keys given by their codes, which are what they are in every layout.
    void pressKeycodes(const QVector<xcb_keycode_t>& codes);
    /// Presses or releases one key and leaves it so. Has reached the server on return.
    void setKeyDown(xcb_keycode_t code, bool isDown);

    /// Puts the pointer there, as a user's hand would.
    void movePointer(const QPoint& position);
    /// The same, and presses and releases a button: 1 left, 3 right, 4 and 5 the wheel up and down.
    void click(const QPoint& position, uint8_t button = 1);
    /// Presses or releases the left button where the pointer is, and leaves it so.
    void setButtonDown(bool isDown);

    /// Colour of one pixel of the screen.
    QRgb pixel(const QPoint& position) const;

    /// The whole screen as it is shown, without the lamp.
    QImage screenshot();

    /// Gives the lamp, a pixel in the upper right corner of the screen, its other colour. A
    /// compositor paints what was drawn first no later than what was drawn next: all that was
    /// there before this call is on the screen, too, once the lamp has changed on it.
    void switchLamp();
    bool hasLampChanged() const;

    /// Colour of the background where no window is.
    void paintRoot(const QColor& color);

private:
    bool grabKeycode(xcb_keycode_t code, quint16 modifiers);
    xcb_atom_t atom(const char* name) const;
    void sendProtocol(xcb_window_t window, xcb_atom_t protocol, uint32_t time);
    void collect(xcb_window_t window, QVector<Window>& found, qint64 pid) const;
    QPoint lampPlace() const { return {m_screen->width_in_pixels - 1, 0}; }
    QColor lampColor() const { return m_isLampOn ? Qt::white : Qt::black; }
    void makeLamp();
    std::size_t pictureBytes() const;
    void shareMemoryForPictures();
    void fakeInput(uint8_t type, uint8_t detail, const QPoint& position = {});
    void readEvents();
    void readEvent(const xcb_generic_event_t& event);
    xcb_get_property_cookie_t askForPid(xcb_window_t window) const;
    qint64 pidIn(xcb_get_property_cookie_t cookie) const;
    void append(xcb_window_t window, QVector<Window>& found) const;
    QVector<xcb_keycode_t> keycodesOf(xcb_keysym_t keysym) const;

    xcb_connection_t* m_connection;
    const xcb_screen_t* m_screen;
    xcb_window_t m_lamp = XCB_WINDOW_NONE; ///< above all other windows
    bool m_isLampOn = false;
    mutable QHash<QByteArray, xcb_atom_t> m_atoms; ///< those asked for, by name
    QColor m_rootColor;
    uchar* m_picture = nullptr; ///< shared with the server; null before the first picture
    uint32_t m_segment = 0;     ///< the server's name for it
    int m_keyPressCount = 0;
    uint32_t m_pingNumber = 0;
    uint32_t m_answeredNumber = 0;
};
