// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HomePage.h"
#include "MainWindow.h"

#include <QSet>
#include <QTest>

/// The settings of the program under test, worked by keys from the home page on.
class SettingsKeys : public HomePage
{
public:
    /// The category that holds the hotkeys and the data, and its rows from the top.
    static constexpr int AppCategory = 1;
    enum AppRow { MainHotkeyRow, SpotlightHotkeyRow, ExportRow, ImportRow, DeleteRow };

    static constexpr xcb_keysym_t Alt = 0xffe9;

    explicit SettingsKeys(Desktop& desktop) : HomePage(desktop), m_client(desktop.client()) {}

    /// From the home page to the first control of a row.
    void openRow(int category, int row)
    {
        press({Tab});
        waitForSettings();
        settledScreenshot(); // the change of page is over
        press(Down, category);
        press({Return});
        press(Down, row);
    }

    void waitForSettings() { waitForWidth(MainWindow::WINDOW_WIDTH_SETTINGS); }

    /// Waits until a window of the program's that has not been there before has the keyboard.
    void waitForNextDialog()
    {
        waitOrGiveUp(
            [this] {
                const xcb_window_t focus = m_client.focus();
                if (m_seen.contains(focus) || focus == program().homeWindow().id)
                    return false;
                for (const XClient::Window& window : m_client.windowsOf(program().processId())) {
                    if (window.id == focus && window.isViewable) {
                        m_seen.insert(focus);
                        return true;
                    }
                }
                return false;
            },
            "the next dialog doesn't come up");
    }

    /// From an open file chooser: takes the file of that name. A path works as well.
    void chooseFile(const QString& name)
    {
        chord({Control, 'a'});
        program().paste(name);
        press({Return});
    }

    void restart()
    {
        program().process().kill();
        program().process().waitForFinished(Desktop::PatienceMs);
        m_seen.clear();
        start();
    }

    void waitOrGiveUp(const std::function<bool()>& condition, const char* failure)
    {
        program().waitFor(condition, failure);
    }

private:
    /// What tells the one page from the other.
    void waitForWidth(int width)
    {
        waitOrGiveUp(
            [this, width] { return isUp() && program().homeWindow().geometry.width() == width; },
            "the page of that width doesn't have the keyboard");
    }

    XClient& m_client;
    QSet<xcb_window_t> m_seen;
};
