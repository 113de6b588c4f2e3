// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

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

/// Starts the fade in which a window goes. The animation belongs to the window and deletes itself;
/// hiding the window when it has finished is the caller's.
QPropertyAnimation* startFadeOut(QWidget* window);

/// True if `event` tells that the user has gone from `window` to another program, while no dialog
/// or menu of this one is, or was just now, in the way.
bool isLeftForAnotherProgram(const QWidget* window, const QEvent* event);

} // namespace FramelessWindow
