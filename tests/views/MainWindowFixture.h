// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FakeHotkeyBackend.h"
#include "HotkeyManager.h"
#include "LauncherModel.h"
#include "MainWindow.h"
#include "Settings.h"
#include "TestHome.h"
#include "TestScreens.h"
#include "Theme.h"

#include <QAction>
#include <QApplication>
#include <QFrame>
#include <QMenu>
#include <QPropertyAnimation>
#include <QSequentialAnimationGroup>
#include <QSettings>
#include <QStackedWidget>
#include <QSystemTrayIcon>
#include <QTest>
#include <QWindow>

#include <algorithm>
#include <memory>

inline const QString kLastCategory = QStringLiteral("lastCategory");

/// Takes the activation the way another program does: none of our widgets has it then.
class ForeignProgram
{
public:
    ForeignProgram() { m_window.setGeometry(2000, 0, 50, 50); }

    void takeFocus()
    {
        m_window.show();
        m_window.requestActivate();
        QTRY_VERIFY(!QApplication::activeWindow());
    }

private:
    QWindow m_window;
};

/// The ground that the tests of the main window stand on: two made-up screens, the hotkeys of a
/// made-up desktop, and before each test settings and a document of three categories. The window
/// and the parts inside, by the names they bear; it goes after each test.
class MainWindowFixture : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        TestHome::install();
        TestScreens::install();
    }

private slots:
    void initTestCase()
    {
        QApplication::setQuitOnLastWindowClosed(false);
        QCOMPARE(QGuiApplication::screens().size(), 2);
        QCOMPARE(QGuiApplication::primaryScreen()->availableGeometry(), TestScreens::Primary);
        m_initialSlot = HotkeyManager::mainWindowSlot;
    }

    void init()
    {
        TestHome::writeSettings("[Theme]\nForceTheme=1\n");
        TestHome::writeDataFile("data.json", R"({"categories": ["Alpha", "Beta", "Gamma"],
            "defaultCategory": "Beta", "sectionElements": {}, "templates": []})");
        HotkeyManager::mainWindowSlot = m_initialSlot;
        m_backend = FakeHotkeyBackend::install();
    }

    void cleanup() { m_window.reset(); }

protected:
    /// Whoever starts the program now has never had it before, and is welcomed.
    static void beNewUser() { store("Onboarding/Completed", false); }

    void construct() { m_window = std::make_unique<MainWindow>(nullptr); }

    void constructAndShow()
    {
        construct();
        m_window->show();
        QTRY_VERIFY(m_window->isActiveWindow());
    }

    QFrame* background() const
    {
        return m_window->findChild<QFrame*>("bgContainer", Qt::FindDirectChildrenOnly);
    }

    QStackedWidget* stack() const
    {
        return background()->findChild<QStackedWidget*>({}, Qt::FindDirectChildrenOnly);
    }

    QAction* trayAction(int index) const
    {
        return m_window->findChild<QSystemTrayIcon*>()->contextMenu()->actions().at(index);
    }

    QPropertyAnimation* runningFade() const
    {
        for (auto* animation :
             m_window->findChildren<QPropertyAnimation*>(Qt::FindDirectChildrenOnly)) {
            if (animation->state() == QAbstractAnimation::Running)
                return animation;
        }
        return nullptr;
    }

    bool isDipping() const
    {
        const auto groups =
            m_window->findChildren<QSequentialAnimationGroup*>(Qt::FindDirectChildrenOnly);
        return std::any_of(groups.begin(), groups.end(), [](const auto* group) {
            return group->state() == QAbstractAnimation::Running;
        });
    }

    static QString stored(const QString& key)
    {
        return QSettings(Theme::settingsFilePath(), Settings::format()).value(key).toString();
    }

    static void store(const QString& key, const QVariant& value)
    {
        QSettings(Theme::settingsFilePath(), Settings::format()).setValue(key, value);
    }

    std::unique_ptr<MainWindow> m_window;
    FakeHotkeyBackend* m_backend = nullptr; ///< owned by the process, until the next test

private:
    HotkeyManager::Slot m_initialSlot;
};
