// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FakeHotkeyBackend.h"
#include "TestFonts.h"
#include "TestHome.h"

#include <QApplication>

/// What the program's windows need around them, in a home and with settings of their own. To be
/// made first of all in `main()`, and to last as long as that; the arguments too.
class WindowBench
{
public:
    WindowBench(int& argc, char** argv) : m_application(argc, argv)
    {
        QApplication::setQuitOnLastWindowClosed(false);
        FakeHotkeyBackend::install();
        TestHome::writeSettings();
        TestFonts::addWeights();
    }

private:
    /// Before the application, which looks for its directories.
    struct Home
    {
        Home() { TestHome::install(); }
    };

    Home m_home;
    QApplication m_application;
};
