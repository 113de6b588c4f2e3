// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FocusNews.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>

#include <xcb/xcb.h>

namespace
{

/// Keeps back the news that the keyboard has been grabbed. Qt takes the window for left behind once
/// the grab has lasted for 0.4 s, which that of a hotkey does as long as its keys are held, and the
/// window would hide under the eyes of its user. A focus that really goes elsewhere meanwhile is
/// told in another mode.
class GrabFilter : public QAbstractNativeEventFilter
{
public:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override
    {
        Q_UNUSED(result);
        if (eventType != "xcb_generic_event_t")
            return false;
        const auto& event = *static_cast<const xcb_focus_out_event_t*>(message);
        return event.response_type == XCB_FOCUS_OUT && event.mode == XCB_NOTIFY_MODE_GRAB;
    }
};

} // namespace

void FocusNews::watch()
{
    static GrabFilter filter;
    QCoreApplication::instance()->installNativeEventFilter(&filter);
}
