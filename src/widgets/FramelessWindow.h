// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>

class QEvent;
class QGraphicsDropShadowEffect;
class QPropertyAnimation;
class QWidget;

/// What the two windows without a frame have in common. GUI thread only.
namespace FramelessWindow
{

/// Gives `card` the shadow of a window; the card owns it.
QGraphicsDropShadowEffect* addShadow(QWidget* card);

/// Gives the shadow the strength that fits the present mode, light or dark.
void tintShadow(QGraphicsDropShadowEffect* shadow);

/// Starts the fade in which a window goes, and calls `onFinished` at its end, but not if it is
/// stopped before. The animation belongs to the window and deletes itself.
QPropertyAnimation* startFadeOut(QWidget* window, const std::function<void()>& onFinished);

/// True if `event` tells that the user has gone from `window` to another program, while no dialog
/// or menu of this one is, or was just now, in the way.
bool isLeftForAnotherProgram(const QWidget* window, const QEvent* event);

} // namespace FramelessWindow
