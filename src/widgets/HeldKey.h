// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPointer>
#include <QWidget>

class QEvent;

/// Tells the repeats of a held Enter or Space that have run on into a widget the user hasn't seen
/// yet: where the press closes a menu or moves the focus, what comes next gets them, and would
/// choose or launch something. Give it every event of the application. GUI thread only.
class HeldKey
{
public:
    /// True if the widget must not get the event: it is a repeat of a press that another one got.
    bool hasRunOn(const QObject* watched, const QEvent* event);

private:
    QPointer<const QWidget> m_pressed; ///< got the last press that was no repeat
};
