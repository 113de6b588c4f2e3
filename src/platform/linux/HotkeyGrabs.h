// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Keymap.h"
#include "X11.h"

#include <QByteArray>
#include <QList>
#include <QVector>
#include <QtGui/qwindowdefs.h>

#include <bitset>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include <xcb/xcb.h>

/// A combination that is to be told of. Two are the same if window and id are.
struct Hotkey
{
    WId window = 0;
    int id = 0;
    unsigned int modifiers = 0; ///< stored numbers, as for the key
    unsigned int key = 0;
    bool repeats = false; ///< tells of the repeats of a held key too
};

/// That a hotkey was pressed.
struct HotkeyPress
{
    WId window = 0;
    int id = 0;
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    quint32 hold = 0; ///< number of the hold that began with it; 0 if it began none
};

/// The hotkeys of one connection to the X server: grabs the combinations on the root window, once
/// for each state of the lock keys, and decides what becomes of the keys behind a press.
///
/// From the moment of a press the server holds all keys back. The hold ends with `release()`, at
/// the latest after `LongestHoldMs`. From then on keys go where they belong, one by one as long as
/// the hotkey's own key is down: a repeat of that is swallowed, and so are modifiers and the
/// release of anything. The press of any other key ends the grab and is replayed, so that it
/// reaches whoever has the focus as if there had been no grab.
///
/// A key that is down already when a hotkey is added is no press of it before it has been released.
///
/// One thread at a time.
class HotkeyGrabs
{
public:
    using Clock = std::chrono::steady_clock;

    /// A window manager may refuse the focus, and whoever was to be told may be busy; the keyboard
    /// must not stay frozen over that.
    static constexpr int LongestHoldMs = 400;

    struct Callbacks
    {
        std::function<void(const HotkeyPress&)> pressed;
        /// Hotkeys, by id, that the server refused after the keyboard map had changed.
        std::function<void(const QList<int>&)> lost;
    };

    /// Connects to a display such as ":0"; null if that fails or the server has no XKB extension.
    static std::unique_ptr<HotkeyGrabs> connect(const QByteArray& display, Callbacks callbacks);
    /// Closes the connection, and with it goes every grab.
    ~HotkeyGrabs();
    HotkeyGrabs(const HotkeyGrabs&) = delete;
    HotkeyGrabs& operator=(const HotkeyGrabs&) = delete;

    /// To be waited on for input.
    int descriptor() const;
    /// False once the connection is lost; it doesn't come back.
    bool isAlive() const;
    /// When `run()` has something to do without any input; nothing if it hasn't.
    std::optional<Clock::time_point> nextDeadline() const;

    /// Does all that there is to do without waiting for input. To be called after each call of the
    /// functions below, too.
    void run();

    /// False if the server refuses the combination, or this object has it already.
    [[nodiscard]] bool add(const Hotkey& hotkey);
    /// The same, but tries again later where it is refused, as after a change of the keyboard map.
    void addPatiently(const Hotkey& hotkey);
    void remove(WId window, int id);

    /// Ends that hold; nothing happens if it isn't the one under way.
    void release(quint32 hold);

private:
    struct Grab
    {
        xcb_keycode_t keycode = 0;
        quint16 state = 0; ///< without lock modifiers

        bool operator==(const Grab&) const = default;
    };

    struct Registration
    {
        Hotkey hotkey;
        QVector<Grab> grabs;
    };

    using KeysDown = std::bitset<256>; ///< by keycode

    HotkeyGrabs(xcb_connection_t* connection, xcb_window_t root, uint8_t xkbEvent,
                Callbacks callbacks);

    bool isTaken(const Hotkey& wanted) const;
    QVector<Grab> wantedGrabs(const Hotkey& hotkey, const Keymap& keymap) const;
    bool grab(Registration& registration);
    bool grabAllVariants(const Grab& wanted);
    void ungrab(Registration& registration);
    void ungrabAllVariants(const Grab& grab);
    void dropKeyboard();
    void forgetGrab();
    bool isFromDroppedGrab(const xcb_generic_event_t& event) const;

    void handleEvent(const xcb_generic_event_t& event);
    void handlePress(const xcb_key_press_event_t& press, bool isLetGo);
    void handleRelease(const xcb_key_release_event_t& release);
    const Registration* registrationOf(const xcb_key_press_event_t& press) const;
    bool isRepeat(const xcb_key_press_event_t& press) const;
    void tell(const Registration& registration, const xcb_key_press_event_t& press,
              quint32 hold) const;
    quint32 nextHold();
    void letNextKeyCome();
    void replayKey();

    KeysDown readKeysDown() const;
    void noteHeldKey(const Registration& registration, const KeysDown& keysDown);
    void lookAtHeldKeyIfDue();

    void noteMapping(const xcb_generic_event_t& event);
    void regrabIfDue();
    void regrab();

    xcb_connection_t* m_connection;
    xcb_window_t m_root;
    uint8_t m_xkbEvent;
    Callbacks m_callbacks;
    Keymap m_keymap;
    QVector<Registration> m_registrations;

    quint32 m_lastHold = 0;
    quint32 m_hold = 0; ///< the one under way; 0 if there is none
    Clock::time_point m_holdEnd;
    xcb_keycode_t m_grabbingKey = 0;  ///< whose press began the grab under way; 0 if there is none
    xcb_keycode_t m_hotkeyKey = 0;    ///< the last that was told of, until its release is seen
    xcb_timestamp_t m_hotkeyTime = 0; ///< of its last press or repeat
    xcb_keycode_t m_heldKey = 0;      ///< was down when it became a hotkey's, and is since; or 0
    Clock::time_point m_nextLook;     ///< when to find out whether that key is still down
    uint32_t m_dropRequest = 0;       ///< number of the last request that ended a grab from outside

    int m_regrabsLeft = 0; ///< attempts that a change of the map has left; 0 without a change
    Clock::time_point m_nextRegrab;
};
