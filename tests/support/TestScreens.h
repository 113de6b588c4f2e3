// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QRect>

/// Two screens of odd sizes, of which the primary begins away from the origin, so that a sum that
/// forgets where or how large a screen is gives something else.
class TestScreens
{
public:
    static constexpr QRect Primary{100, 50, 1001, 777};
    static constexpr QRect Second{2000, 0, 900, 800};

    TestScreens() = delete;

    /// Asks the offscreen platform for them. Call it from `initMain()`, after `TestHome::install()`
    /// and before the application object exists. Leaves a file in that home, which is the current
    /// directory until the application object has been made. Ends the test run if that fails.
    static void install();
};
