// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HotkeyGrabs.h"

#include <algorithm>
#include <cstddef>
#include <utility>

// The header names a field with a word that C++ keeps for itself.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
#include <xkbcommon/xkbcommon-x11.h>

namespace
{

// Longer than most auto-repeat delays and any interval: without a grab a press that comes later is
// a new one, since the release in between would have reached others.
constexpr xcb_timestamp_t kLongestRepeatMs = 2000;

// Another program that follows the same change of the keyboard map may hold a key for a moment that
// is ours from now on.
constexpr int kRegrabAttempts = 10;
constexpr std::chrono::milliseconds kRegrabPause(200);

// Nobody presses a key again that soon after its release.
constexpr std::chrono::milliseconds kLookPause(20);

/// What XKB gives a client to know of: the first number of its events, or nothing without XKB.
std::optional<uint8_t> setUpXkb(xcb_connection_t* connection)
{
    uint8_t firstEvent = 0;
    if (!xkb_x11_setup_xkb_extension(
            connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &firstEvent, nullptr))
        return std::nullopt;
    // Otherwise each repeat of a held key comes with a release that never happened.
    constexpr uint32_t kNoFakeReleases = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    xcb_discard_reply(connection,
                      xcb_xkb_per_client_flags(connection, XCB_XKB_ID_USE_CORE_KBD, kNoFakeReleases,
                                               kNoFakeReleases, 0, 0, 0)
                          .sequence);
    constexpr uint16_t kEvents =
        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr uint16_t kAllParts = 0xff;
    xcb_xkb_select_events(connection, XCB_XKB_ID_USE_CORE_KBD, kEvents, 0, kEvents, kAllParts,
                          kAllParts, nullptr);
    return firstEvent;
}

} // namespace

std::unique_ptr<HotkeyGrabs> HotkeyGrabs::connect(const QByteArray& display, Callbacks callbacks)
{
    int screen = 0;
    xcb_connection_t* connection = xcb_connect(display.constData(), &screen);
    const bool isConnected = xcb_connection_has_error(connection) == 0;
    const std::optional<uint8_t> xkbEvent =
        isConnected ? setUpXkb(connection) : std::optional<uint8_t>();
    if (!xkbEvent) {
        xcb_disconnect(connection);
        return nullptr;
    }
    const xcb_window_t root = X11::screenOf(connection, screen)->root;
    return std::unique_ptr<HotkeyGrabs>(
        new HotkeyGrabs(connection, root, *xkbEvent, std::move(callbacks)));
}

HotkeyGrabs::HotkeyGrabs(xcb_connection_t* connection, xcb_window_t root, uint8_t xkbEvent,
                         Callbacks callbacks)
    : m_connection(connection),
      m_root(root),
      m_xkbEvent(xkbEvent),
      m_callbacks(std::move(callbacks)),
      m_keymap(Keymap::read(connection))
{}

HotkeyGrabs::~HotkeyGrabs()
{
    xcb_disconnect(m_connection);
}

int HotkeyGrabs::descriptor() const
{
    return xcb_get_file_descriptor(m_connection);
}

bool HotkeyGrabs::isAlive() const
{
    return xcb_connection_has_error(m_connection) == 0;
}

std::optional<HotkeyGrabs::Clock::time_point> HotkeyGrabs::nextDeadline() const
{
    std::optional<Clock::time_point> next;
    if (m_hold != 0)
        next = m_holdEnd;
    if (m_regrabsLeft > 0)
        next = next ? std::min(*next, m_nextRegrab) : m_nextRegrab;
    if (m_heldKey != 0)
        next = next ? std::min(*next, m_nextLook) : m_nextLook;
    return next;
}

void HotkeyGrabs::run()
{
    X11::Reply<xcb_generic_event_t> event(xcb_poll_for_event(m_connection));
    do {
        for (; event; event.reset(xcb_poll_for_event(m_connection)))
            handleEvent(*event);
        if (m_hold != 0 && Clock::now() >= m_holdEnd)
            letNextKeyCome();
        regrabIfDue();
        lookAtHeldKeyIfDue();
        xcb_flush(m_connection);
        // An answer that is waited for brings events along, and so may what is sent. The descriptor
        // tells nothing of those.
        event.reset(xcb_poll_for_queued_event(m_connection));
    } while (event);
}

bool HotkeyGrabs::add(const Hotkey& hotkey)
{
    // The server lets one client grab the same keys twice, other systems don't, and the validation
    // of hotkeys relies on the refusal.
    Registration wanted{hotkey, {}};
    const KeysDown keysDown = readKeysDown();
    if (isTaken(hotkey) || !grab(wanted))
        return false;
    m_registrations.append(wanted);
    noteHeldKey(wanted, keysDown);
    return true;
}

void HotkeyGrabs::addPatiently(const Hotkey& hotkey)
{
    m_registrations.append({hotkey, {}});
    m_regrabsLeft = kRegrabAttempts;
    m_nextRegrab = Clock::now();
}

void HotkeyGrabs::remove(WId window, int id)
{
    const auto isMeant = [window, id](const Registration& registration) {
        return registration.hotkey.window == window && registration.hotkey.id == id;
    };
    for (Registration& registration : m_registrations) {
        if (isMeant(registration))
            ungrab(registration);
    }
    m_registrations.removeIf(isMeant);
    // A round trip: what another program grabs from now on is behind it.
    const X11::Reply<xcb_get_input_focus_reply_t> done(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
}

void HotkeyGrabs::release(quint32 hold)
{
    if (hold != 0 && hold == m_hold)
        letNextKeyCome();
}

bool HotkeyGrabs::isTaken(const Hotkey& wanted) const
{
    return std::any_of(
        m_registrations.begin(), m_registrations.end(), [&wanted](const Registration& other) {
            return other.hotkey.modifiers == wanted.modifiers && other.hotkey.key == wanted.key;
        });
}

QVector<HotkeyGrabs::Grab> HotkeyGrabs::wantedGrabs(const Hotkey& hotkey,
                                                    const Keymap& keymap) const
{
    QVector<Grab> grabs;
    const quint16 state = keymap.stateOf(hotkey.modifiers);
    for (const xcb_keycode_t code : keymap.keycodesOf(hotkey.key))
        grabs.append({code, state});
    return grabs;
}

bool HotkeyGrabs::grab(Registration& registration)
{
    for (const Grab& wanted : wantedGrabs(registration.hotkey, m_keymap)) {
        if (!grabAllVariants(wanted)) {
            ungrab(registration);
            return false;
        }
        registration.grabs.append(wanted);
    }
    return !registration.grabs.isEmpty();
}

bool HotkeyGrabs::grabAllVariants(const Grab& wanted)
{
    QVector<xcb_void_cookie_t> cookies;
    for (const quint16 locks : m_keymap.lockVariants()) {
        cookies.append(xcb_grab_key_checked(
            m_connection, 0, m_root, static_cast<quint16>(wanted.state | locks), wanted.keycode,
            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC));
    }
    bool isGranted = true;
    for (const xcb_void_cookie_t cookie : std::as_const(cookies)) {
        const X11::Reply<xcb_generic_error_t> error(xcb_request_check(m_connection, cookie));
        isGranted = isGranted && !error;
    }
    if (!isGranted)
        ungrabAllVariants(wanted);
    return isGranted && isAlive();
}

void HotkeyGrabs::ungrab(Registration& registration)
{
    if (registration.grabs.isEmpty())
        return;
    bool isUnderWay = m_grabbingKey == 0; // or may be: its press may not have been read yet
    for (const Grab& grab : std::as_const(registration.grabs)) {
        ungrabAllVariants(grab);
        isUnderWay = isUnderWay || grab.keycode == m_grabbingKey;
    }
    registration.grabs.clear();
    if (isUnderWay)
        dropKeyboard();
}

void HotkeyGrabs::ungrabAllVariants(const Grab& grab)
{
    for (const quint16 locks : m_keymap.lockVariants())
        xcb_ungrab_key(m_connection, grab.keycode, m_root,
                       static_cast<quint16>(grab.state | locks));
}

void HotkeyGrabs::dropKeyboard()
{
    // The grab of a press outlives that of the key. What was pressed before the server read the
    // request above would freeze the keyboard for good, since nobody would answer for it any more.
    m_dropRequest = xcb_ungrab_keyboard(m_connection, XCB_CURRENT_TIME).sequence;
    forgetGrab();
}

void HotkeyGrabs::forgetGrab()
{
    m_hold = 0;
    m_grabbingKey = 0;
    m_hotkeyKey = 0;
}

HotkeyGrabs::KeysDown HotkeyGrabs::readKeysDown() const
{
    KeysDown keys;
    const X11::Reply<xcb_query_keymap_reply_t> reply(
        xcb_query_keymap_reply(m_connection, xcb_query_keymap(m_connection), nullptr));
    if (!reply)
        return keys;
    for (std::size_t code = 0; code < keys.size(); ++code)
        keys[code] = ((reply->keys[code / 8] >> (code % 8)) & 1) != 0;
    return keys;
}

void HotkeyGrabs::noteHeldKey(const Registration& registration, const KeysDown& keysDown)
{
    // Whoever has just typed the keys that are to be the hotkey may still hold them. Their repeats
    // are no presses of it, and their release goes to whoever has the focus.
    for (const Grab& grab : registration.grabs) {
        if (!keysDown.test(grab.keycode))
            continue;
        m_heldKey = grab.keycode;
        m_nextLook = Clock::now() + kLookPause;
    }
}

void HotkeyGrabs::lookAtHeldKeyIfDue()
{
    if (m_heldKey == 0 || Clock::now() < m_nextLook)
        return;
    const bool isUp = !readKeysDown().test(m_heldKey);
    // Its last repeats may have come along with the answer.
    X11::Reply<xcb_generic_event_t> event(xcb_poll_for_queued_event(m_connection));
    for (; event; event.reset(xcb_poll_for_queued_event(m_connection)))
        handleEvent(*event);
    if (isUp)
        m_heldKey = 0;
    m_nextLook = Clock::now() + kLookPause;
}

bool HotkeyGrabs::isFromDroppedGrab(const xcb_generic_event_t& event) const
{
    // The numbers run over; what is compared is never far apart.
    return static_cast<int32_t>(event.full_sequence - m_dropRequest) < 0;
}

void HotkeyGrabs::handleEvent(const xcb_generic_event_t& event)
{
    switch (event.response_type & ~0x80) {
    case XCB_KEY_PRESS:
        handlePress(reinterpret_cast<const xcb_key_press_event_t&>(event),
                    isFromDroppedGrab(event));
        return;
    case XCB_KEY_RELEASE:
        if (!isFromDroppedGrab(event))
            handleRelease(reinterpret_cast<const xcb_key_release_event_t&>(event));
        return;
    default:
        noteMapping(event);
    }
}

void HotkeyGrabs::handlePress(const xcb_key_press_event_t& press, bool isLetGo)
{
    const Registration* registration = registrationOf(press);
    if (isLetGo) {
        // What thawed it has been sent already; what is frozen now is so by a later press.
        if (registration)
            tell(*registration, press, 0);
        return;
    }
    if (isRepeat(press)) {
        // Whatever modifiers have been released or pressed since.
        m_hotkeyTime = press.time;
        if (m_grabbingKey == 0)
            m_grabbingKey = press.detail;
        letNextKeyCome();
        if (registration && registration->hotkey.repeats)
            tell(*registration, press, 0);
        return;
    }
    if (!registration) {
        // To replay a modifier would end the grab, and the held key would be anybody's again.
        if (m_grabbingKey != 0 && m_keymap.isModifier(press.detail))
            letNextKeyCome();
        else
            replayKey();
        return;
    }
    m_hotkeyTime = press.time;
    if (m_grabbingKey == 0)
        m_grabbingKey = press.detail;
    m_hotkeyKey = press.detail;
    m_hold = nextHold();
    m_holdEnd = Clock::now() + std::chrono::milliseconds(LongestHoldMs);
    tell(*registration, press, m_hold);
}

void HotkeyGrabs::tell(const Registration& registration, const xcb_key_press_event_t& press,
                       quint32 hold) const
{
    m_callbacks.pressed({registration.hotkey.window, registration.hotkey.id, press.time, hold});
}

bool HotkeyGrabs::isRepeat(const xcb_key_press_event_t& press) const
{
    if (press.detail == m_heldKey)
        return true;
    // During a grab no release goes unseen.
    if (m_grabbingKey != 0)
        return press.detail == m_grabbingKey || press.detail == m_hotkeyKey;
    return press.detail == m_hotkeyKey && press.time - m_hotkeyTime < kLongestRepeatMs;
}

quint32 HotkeyGrabs::nextHold()
{
    if (++m_lastHold == 0)
        ++m_lastHold;
    return m_lastHold;
}

void HotkeyGrabs::handleRelease(const xcb_key_release_event_t& release)
{
    // The key of another hotkey, pressed during the grab, outlasts it, and its next repeat begins a
    // grab of its own.
    if (release.detail == m_hotkeyKey)
        m_hotkeyKey = 0;
    if (release.detail == m_heldKey)
        m_heldKey = 0;
    if (release.detail == m_grabbingKey) {
        m_hold = 0;
        m_grabbingKey = 0; // the server has ended it with this
        return;
    }
    // Whoever has the focus got no press of this key during the grab, and needs no release. To
    // replay it would end the grab, and the held key would be anybody's again.
    letNextKeyCome();
}

const HotkeyGrabs::Registration*
HotkeyGrabs::registrationOf(const xcb_key_press_event_t& press) const
{
    const Grab pressed{press.detail, m_keymap.withoutLocks(press.state)};
    const auto found = std::find_if(
        m_registrations.begin(), m_registrations.end(),
        [&pressed](const Registration& other) { return other.grabs.contains(pressed); });
    return found == m_registrations.end() ? nullptr : &*found;
}

void HotkeyGrabs::letNextKeyCome()
{
    m_hold = 0;
    xcb_allow_events(m_connection, XCB_ALLOW_SYNC_KEYBOARD, XCB_CURRENT_TIME);
}

void HotkeyGrabs::replayKey()
{
    forgetGrab();
    xcb_allow_events(m_connection, XCB_ALLOW_REPLAY_KEYBOARD, XCB_CURRENT_TIME);
}

void HotkeyGrabs::noteMapping(const xcb_generic_event_t& event)
{
    const int type = event.response_type & ~0x80;
    const bool isXkbMap = type == m_xkbEvent && (event.pad0 == XCB_XKB_NEW_KEYBOARD_NOTIFY ||
                                                 event.pad0 == XCB_XKB_MAP_NOTIFY);
    if (type != XCB_MAPPING_NOTIFY && !isXkbMap)
        return;
    // A change of layout comes as a burst of events; one pass behind the last that is here is
    // enough.
    m_regrabsLeft = kRegrabAttempts;
    m_nextRegrab = Clock::now();
}

void HotkeyGrabs::regrabIfDue()
{
    if (m_regrabsLeft == 0 || Clock::now() < m_nextRegrab || !isAlive())
        return;
    --m_regrabsLeft;
    regrab();
}

void HotkeyGrabs::regrab()
{
    const Keymap keymap = Keymap::read(m_connection);
    // What stays where it was isn't let go for a moment: a press in that moment would be lost.
    const bool areLocksSame = keymap.lockVariants() == m_keymap.lockVariants();
    for (Registration& registration : m_registrations) {
        if (!areLocksSame || registration.grabs != wantedGrabs(registration.hotkey, keymap))
            ungrab(registration);
    }
    m_keymap = keymap;
    QList<int> refused;
    for (Registration& registration : m_registrations) {
        if (registration.grabs.isEmpty() && !grab(registration))
            refused.append(registration.hotkey.id);
    }
    m_nextRegrab = Clock::now() + kRegrabPause;
    if (!refused.isEmpty() && m_regrabsLeft == 0)
        m_callbacks.lost(refused);
    if (refused.isEmpty())
        m_regrabsLeft = 0;
}
