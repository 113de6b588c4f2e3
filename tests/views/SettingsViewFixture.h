// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "EventCounter.h"
#include "HomePageFixture.h"
#include "SettingsView.h"

/// The main window of `HomePageFixture` on its settings page.
class SettingsViewFixture : public HomePageFixture
{
    Q_OBJECT

protected:
    /// Starts on the settings page, with the focus on a category.
    void openSettings(int row = 0)
    {
        open();
        enterSettings(row);
    }

    void enterSettings(int row = 0) const
    {
        stack()->setCurrentIndex(MainWindow::SettingsPage);
        categories()->setCurrentRow(row);
        categories()->setFocus();
        QCOMPARE(focused(), categories());
    }

    SettingsView* settings() const { return m_window->settingsView(); }
    QListWidget* categories() const { return settings()->categoryList(); }
    QStackedWidget* pages() const { return settings()->detailStack(); }
    QPushButton* backButton() const { return settings()->backButton(); }
    bool isOnSettings() const { return stack()->currentIndex() == MainWindow::SettingsPage; }

    static QString focusedName() { return focused() ? focused()->objectName() : QString(); }

    /// Types a key where the focus is. \returns whether the page has taken it from the widget.
    static bool isTaken(Qt::Key key)
    {
        QWidget* target = focused();
        const EventCounter presses(target, QEvent::KeyPress);
        QTest::keyClick(target, key);
        return presses.count == 0;
    }

    /// Changes the page, or builds it anew, and waits for the end of that.
    void waitForTheDip() const
    {
        QTRY_VERIFY(!isDipping());
        QCOMPARE(m_window->windowOpacity(), 1.0);
    }
};
