// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HotkeyBackend.h"

#include "HotkeyListener.h"
#include "X11.h"

#include <QAbstractEventDispatcher>
#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <QDebug>
#include <QObject>

#include <utility>

namespace
{

constexpr char kPressEvent[] = "orlimo_hotkey_press"; // with a `HotkeyPress` as its message

/// Hands presses from the listener's thread to whoever filters native events, and tells the
/// listener when the window that a hotkey has summoned has the focus, or that none comes.
class X11HotkeyBackend : public HotkeyBackend, public QAbstractNativeEventFilter
{
public:
    X11HotkeyBackend()
        : m_listener(qgetenv("DISPLAY"), {[this](const HotkeyPress& press) { postPress(press); },
                                          [this](const QList<int>& ids) { postLost(ids); }})
    {
        QCoreApplication::instance()->installNativeEventFilter(this);
    }

    bool registerHotkey(WId window, int id, unsigned int modifiers, unsigned int key) override
    {
        const bool repeats = !(modifiers & NoRepeat);
        return m_listener.add({window, id, modifiers & ~NoRepeat, key, repeats});
    }

    void unregisterHotkey(WId window, int id) override { m_listener.remove(window, id); }

    std::optional<int> hotkeyIdOf(const QByteArray& eventType, const void* message) const override
    {
        if (eventType != kPressEvent)
            return std::nullopt;
        return static_cast<const HotkeyPress*>(message)->id;
    }

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override
    {
        Q_UNUSED(result);
        if (eventType != "xcb_generic_event_t")
            return false;
        const auto* event = static_cast<const xcb_generic_event_t*>(message);
        if ((event->response_type & ~0x80) == XCB_FOCUS_IN)
            noteFocus(*static_cast<const xcb_focus_in_event_t*>(message));
        return false;
    }

private:
    void postPress(const HotkeyPress& press)
    {
        QMetaObject::invokeMethod(
            &m_guiThread, [this, press] { handlePress(press); }, Qt::QueuedConnection);
    }

    void postLost(const QList<int>& ids)
    {
        const auto tell = [ids] {
            qDebug() << "X11HotkeyBackend: Gagal mendaftarkan hotkey setelah peta tombol berubah:"
                     << ids;
        };
        QMetaObject::invokeMethod(&m_guiThread, tell, Qt::QueuedConnection);
    }

    void handlePress(HotkeyPress press)
    {
        const quint32 hold = press.hold;
        X11::noteHotkey(press.time);
        m_hold = hold;
        qintptr result = 0;
        QAbstractEventDispatcher::instance()->filterNativeEvent(kPressEvent, &press, &result);
        // Whoever heard of it has asked for a window by now, or won't.
        if (m_hold == hold && !X11::expectedFocus())
            endHold();
    }

    /// What Qt says of the focus can be out of date by a moment, after a hide for instance.
    void noteFocus(const xcb_focus_in_event_t& focus)
    {
        // The end of a grab is told in the same way, but gives the focus to nobody anew.
        const bool isGrabbing =
            focus.mode == XCB_NOTIFY_MODE_GRAB || focus.mode == XCB_NOTIFY_MODE_UNGRAB;
        if (!isGrabbing && focus.detail != XCB_NOTIFY_DETAIL_POINTER &&
            focus.event == X11::expectedFocus())
            endHold();
    }

    void endHold()
    {
        if (m_hold != 0)
            m_listener.release(std::exchange(m_hold, 0));
    }

    QObject m_guiThread;       ///< receives what the listener tells
    quint32 m_hold = 0;        ///< the hold behind the last press; 0 once the listener was told
    HotkeyListener m_listener; ///< last, since its thread uses the above
};

/// For a display without system-wide hotkeys.
class NoHotkeyBackend : public HotkeyBackend
{
public:
    bool registerHotkey(WId, int, unsigned int, unsigned int) override { return false; }
    void unregisterHotkey(WId, int) override {}
    std::optional<int> hotkeyIdOf(const QByteArray&, const void*) const override
    {
        return std::nullopt;
    }
};

} // namespace

std::unique_ptr<HotkeyBackend> HotkeyBackend::create()
{
    if (X11::connection())
        return std::make_unique<X11HotkeyBackend>();
    return std::make_unique<NoHotkeyBackend>();
}
