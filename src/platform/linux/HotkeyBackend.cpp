// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HotkeyBackend.h"

#include "Keymap.h"
#include "X11.h"

#include <QDebug>
#include <QList>
#include <QTimer>
#include <QVector>

#include <algorithm>
#include <utility>

// The header names a field with a word that C++ keeps for itself.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

namespace
{

// Longer than any auto-repeat delay or interval: a press that comes later is a new one, even if the
// release in between never reached this client.
constexpr xcb_timestamp_t kLongestRepeatMs = 2000;

// Another program that follows the same change of the keyboard map may hold a key for a moment that
// is ours from now on.
constexpr int kRegrabAttempts = 10;
constexpr int kRegrabPauseMs = 200;

struct Grab
{
    xcb_keycode_t keycode = 0;
    quint16 state = 0; ///< without lock modifiers

    bool operator==(const Grab&) const = default;
};

struct Registration
{
    WId window = 0;
    int id = 0;
    unsigned int modifiers = 0;
    unsigned int key = 0;
    bool repeats = false;
    QVector<Grab> grabs;
};

/// Grabs the combinations on the root window, once for each state of the lock keys. The server
/// holds all keys back from the moment of a press (see `X11::holdKeysForHotkey`).
class X11HotkeyBackend : public HotkeyBackend
{
public:
    explicit X11HotkeyBackend(xcb_connection_t* connection)
        : m_connection(connection), m_keymap(Keymap::read(connection))
    {
        const xcb_query_extension_reply_t* xkb = xcb_get_extension_data(connection, &xcb_xkb_id);
        if (xkb && xkb->present)
            m_xkbEvent = xkb->first_event;
        m_regrabTimer.setSingleShot(true);
        m_regrabTimer.callOnTimeout([this] { regrab(); });
    }

    ~X11HotkeyBackend() override
    {
        // At exit the connection may have gone before this object, and the grabs with it.
        if (!X11::connection())
            return;
        for (Registration& registration : m_registrations)
            ungrab(registration);
        xcb_flush(m_connection);
    }

    bool registerHotkey(WId window, int id, unsigned int modifiers, unsigned int key) override
    {
        const bool repeats = !(modifiers & NoRepeat);
        Registration wanted{window, id, modifiers & ~NoRepeat, key, repeats, {}};
        // The server lets one client grab the same keys twice, other systems don't, and the
        // validation of hotkeys relies on the refusal.
        if (isTaken(wanted) || !grab(wanted))
            return false;
        m_registrations.append(wanted);
        return true;
    }

    void unregisterHotkey(WId window, int id) override
    {
        for (Registration& registration : m_registrations) {
            if (registration.window == window && registration.id == id)
                ungrab(registration);
        }
        m_registrations.removeIf([&](const Registration& registration) {
            return registration.window == window && registration.id == id;
        });
        xcb_flush(m_connection);
    }

    std::optional<int> hotkeyIdOf(const QByteArray& eventType, void* message) override
    {
        if (eventType != "xcb_generic_event_t")
            return std::nullopt;
        const auto* event = static_cast<const xcb_generic_event_t*>(message);
        const auto type = static_cast<uint8_t>(event->response_type & ~0x80);
        if (type == XCB_MAPPING_NOTIFY || (m_xkbEvent != 0 && type == m_xkbEvent)) {
            noteMapping(event, type);
            return std::nullopt;
        }
        if (type == XCB_FOCUS_IN)
            noteFocus(*static_cast<const xcb_focus_in_event_t*>(message));
        if (type == XCB_KEY_RELEASE)
            noteRelease(*static_cast<const xcb_key_release_event_t*>(message));
        if (type == XCB_KEY_PRESS)
            return idOfPress(*static_cast<const xcb_key_press_event_t*>(message));
        return std::nullopt;
    }

private:
    bool isTaken(const Registration& wanted) const
    {
        return std::any_of(
            m_registrations.begin(), m_registrations.end(), [&wanted](const Registration& other) {
                return other.modifiers == wanted.modifiers && other.key == wanted.key;
            });
    }

    /// What the keyboard map wants to be grabbed for a registration.
    QVector<Grab> wantedGrabs(const Registration& registration, const Keymap& keymap) const
    {
        QVector<Grab> grabs;
        const quint16 state = keymap.stateOf(registration.modifiers);
        for (const xcb_keycode_t code : Keymap::keycodesOf(m_connection, registration.key))
            grabs.append({code, state});
        return grabs;
    }

    bool grab(Registration& registration)
    {
        const QVector<Grab> wanted = wantedGrabs(registration, m_keymap);
        for (const Grab& key : wanted) {
            if (!grabAllVariants(key.keycode, key.state)) {
                ungrab(registration);
                return false;
            }
            registration.grabs.append(key);
        }
        return !registration.grabs.isEmpty();
    }

    bool grabAllVariants(xcb_keycode_t code, quint16 state)
    {
        QVector<xcb_void_cookie_t> cookies;
        for (const quint16 locks : std::as_const(m_keymap.lockVariants)) {
            cookies.append(xcb_grab_key_checked(m_connection, 1, X11::rootWindow(),
                                                static_cast<quint16>(state | locks), code,
                                                XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC));
        }
        bool isGranted = true;
        for (const xcb_void_cookie_t cookie : std::as_const(cookies)) {
            const X11::Reply<xcb_generic_error_t> error(xcb_request_check(m_connection, cookie));
            isGranted = isGranted && !error;
        }
        if (!isGranted)
            ungrabAllVariants(code, state);
        return isGranted;
    }

    void ungrab(Registration& registration)
    {
        for (const Grab& key : std::as_const(registration.grabs))
            ungrabAllVariants(key.keycode, key.state);
        registration.grabs.clear();
    }

    void ungrabAllVariants(xcb_keycode_t code, quint16 state)
    {
        for (const quint16 locks : std::as_const(m_keymap.lockVariants)) {
            xcb_ungrab_key(m_connection, code, X11::rootWindow(),
                           static_cast<quint16>(state | locks));
        }
    }

    const Registration* registrationOf(const xcb_key_press_event_t& press) const
    {
        const quint16 state = m_keymap.withoutLocks(press.state);
        for (const Registration& registration : m_registrations) {
            for (const Grab& grab : registration.grabs) {
                if (grab.keycode == press.detail && grab.state == state)
                    return &registration;
            }
        }
        return nullptr;
    }

    std::optional<int> idOfPress(const xcb_key_press_event_t& press)
    {
        // Every controller asks about every event; only the first question may change anything.
        if (press.sequence == m_lastPress.sequence && press.time == m_lastPress.time &&
            press.detail == m_lastPress.detail)
            return m_lastAnswer;
        m_lastPress = press;
        m_lastAnswer.reset();
        const Registration* registration = registrationOf(press);
        if (!registration)
            return std::nullopt;
        X11::holdKeysForHotkey(press.time);
        const bool repeats = isRepeat(press);
        m_heldKey = press.detail;
        m_heldSince = press.time;
        m_isReleased = false;
        // A repeated press is swallowed under an id that nobody has.
        m_lastAnswer = repeats && !registration->repeats ? NobodysId : registration->id;
        return m_lastAnswer;
    }

    static void noteFocus(const xcb_focus_in_event_t& focus)
    {
        // The end of a grab is told in the same way, but gives the focus to nobody anew.
        const bool isGrabbing =
            focus.mode == XCB_NOTIFY_MODE_GRAB || focus.mode == XCB_NOTIFY_MODE_UNGRAB;
        if (!isGrabbing && focus.detail != XCB_NOTIFY_DETAIL_POINTER)
            X11::noteFocusOn(focus.event);
    }

    /// True if the press comes from a key that is being held down. The server tells of that by
    /// presses alone or, to clients that didn't ask for that, by a release and a press at the same
    /// moment.
    bool isRepeat(const xcb_key_press_event_t& press) const
    {
        if (press.detail != m_heldKey)
            return false;
        return m_isReleased ? press.time == m_releasedAt
                            : press.time - m_heldSince < kLongestRepeatMs;
    }

    void noteRelease(const xcb_key_release_event_t& release)
    {
        if (release.detail != m_heldKey)
            return;
        m_isReleased = true;
        m_releasedAt = release.time;
    }

    void noteMapping(const xcb_generic_event_t* event, uint8_t type)
    {
        const bool isCoreKeyboard =
            type == XCB_MAPPING_NOTIFY &&
            reinterpret_cast<const xcb_mapping_notify_event_t*>(event)->request !=
                XCB_MAPPING_POINTER;
        const bool isXkbMap =
            type != XCB_MAPPING_NOTIFY &&
            (event->pad0 == XCB_XKB_NEW_KEYBOARD_NOTIFY || event->pad0 == XCB_XKB_MAP_NOTIFY);
        if (!isCoreKeyboard && !isXkbMap)
            return;
        // A change of layout comes as a burst of events; one pass behind the last of them is
        // enough.
        m_regrabsLeft = kRegrabAttempts;
        m_regrabTimer.start(0);
    }

    void regrab()
    {
        const Keymap keymap = Keymap::read(m_connection);
        // What stays where it was isn't let go for a moment: a press in that moment would be lost.
        const bool areLocksSame = keymap.lockVariants == m_keymap.lockVariants;
        for (Registration& registration : m_registrations) {
            if (!areLocksSame || registration.grabs != wantedGrabs(registration, keymap))
                ungrab(registration);
        }
        m_keymap = keymap;
        QList<int> refused;
        for (Registration& registration : m_registrations) {
            if (registration.grabs.isEmpty() && !grab(registration))
                refused.append(registration.id);
        }
        xcb_flush(m_connection);
        if (refused.isEmpty())
            return;
        if (--m_regrabsLeft > 0)
            m_regrabTimer.start(kRegrabPauseMs);
        else
            qDebug() << "X11HotkeyBackend: Gagal mendaftarkan hotkey setelah peta tombol berubah:"
                     << refused;
    }

    static constexpr int NobodysId = -1;

    xcb_connection_t* m_connection;
    Keymap m_keymap;
    uint8_t m_xkbEvent = 0;
    QVector<Registration> m_registrations;
    xcb_key_press_event_t m_lastPress{};
    std::optional<int> m_lastAnswer;
    xcb_keycode_t m_heldKey = 0;
    xcb_timestamp_t m_heldSince = 0;
    bool m_isReleased = false;
    xcb_timestamp_t m_releasedAt = 0;
    QTimer m_regrabTimer;
    int m_regrabsLeft = 0;
};

/// For a display without system-wide hotkeys.
class NoHotkeyBackend : public HotkeyBackend
{
public:
    bool registerHotkey(WId, int, unsigned int, unsigned int) override { return false; }
    void unregisterHotkey(WId, int) override {}
    std::optional<int> hotkeyIdOf(const QByteArray&, void*) override { return std::nullopt; }
};

} // namespace

std::unique_ptr<HotkeyBackend> HotkeyBackend::create()
{
    if (xcb_connection_t* connection = X11::connection())
        return std::make_unique<X11HotkeyBackend>(connection);
    return std::make_unique<NoHotkeyBackend>();
}
