// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "GlobalHotkeyController.h"
#include "IconHelper.h"
#include "Localization.h"
#include "MainWindowFixture.h"

#include <QAbstractEventDispatcher>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>
#include <utility>

using Registration = FakeHotkeyBackend::Registration;

namespace
{

/// Does something at the first event of a type that an object gets, before the object.
class EventHook : public QObject
{
public:
    EventHook(QEvent::Type type, std::function<void()> act) : m_type(type), m_act(std::move(act)) {}
    bool hasFired() const { return !m_act; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == m_type && m_act)
            std::exchange(m_act, nullptr)();
        return QObject::eventFilter(watched, event);
    }

private:
    QEvent::Type m_type;
    std::function<void()> m_act;
};

} // namespace

/// What calls the window from outside: its hotkey, its icon in the tray, and another instance.
class MainWindowTrayTest : public MainWindowFixture
{
    Q_OBJECT

private slots:
    void constructionRegistersTheHotkey();
    void takenHotkeyFallsBack();
    void takenDefaultLeavesTheHotkeyDead();
    void hotkeyIsFreedAtTheEnd();
    void spotlightControllerIsGuarded();

    void constructionBuildsTheTray();
    void trayComesBehindTheFirstPicture();

    void toggleWhenHidden_data();
    void toggleWhenHidden();
    void toggleWhenShown_data();
    void toggleWhenShown();
    void pressDuringTheFadeIsLost_data();
    void pressDuringTheFadeIsLost();
    void toggleInTheFirstHalfOfASwap_data();
    void toggleInTheFirstHalfOfASwap();
    void toggleInTheSecondHalfOfASwap_data();
    void toggleInTheSecondHalfOfASwap();
    void othersPressesDoNothing();

    void wakeWhenHidden();
    void wakeWhenShown();
    void wakeDuringTheFade_data();
    void wakeDuringTheFade();
    void wakeDuringADip_data();
    void wakeDuringADip();

    void quitSaves();

private:
    enum class Trigger { Hotkey, TrayDoubleClick, TrayEntry };

    void fire(Trigger trigger);
    void addTriggers(const QList<Trigger>& triggers) const;
};

namespace
{

constexpr unsigned int kNoRepeat = 0x4000;

/// Takes the activation as a dialog of this program does.
class OwnWindow
{
public:
    void takeFocus()
    {
        m_window.show();
        m_window.activateWindow();
        QTRY_VERIFY(m_window.isActiveWindow());
    }

private:
    QWidget m_window;
};

} // namespace

void MainWindowTrayTest::fire(Trigger trigger)
{
    if (trigger == Trigger::TrayEntry) {
        trayAction(0)->trigger();
    } else if (trigger == Trigger::TrayDoubleClick) {
        emit m_window->findChild<QSystemTrayIcon*>()->activated(QSystemTrayIcon::DoubleClick);
    } else {
        FakeHotkeyBackend::Press press{1};
        qintptr result = 0;
        QVERIFY(QAbstractEventDispatcher::instance()->filterNativeEvent(
            FakeHotkeyBackend::eventType(), &press, &result));
    }
}

void MainWindowTrayTest::addTriggers(const QList<Trigger>& triggers) const
{
    const QHash<Trigger, const char*> names{{Trigger::Hotkey, "hotkey"},
                                            {Trigger::TrayDoubleClick, "tray, double click"},
                                            {Trigger::TrayEntry, "tray, entry"}};
    QTest::addColumn<int>("trigger");
    for (const Trigger trigger : triggers)
        QTest::newRow(names.value(trigger)) << int(trigger);
}

void MainWindowTrayTest::constructionRegistersTheHotkey()
{
    construct();
    const QVector<Registration> expected{{m_window->winId(), 1, 3 | kNoRepeat, 32}};
    QCOMPARE(m_backend->registrations(), expected);
    QCOMPARE(stored("Hotkey/Combo"), "Ctrl+Alt+Space");
}

void MainWindowTrayTest::takenHotkeyFallsBack()
{
    m_backend->takeByOther(3, 'K');
    store("Hotkey/Combo", "Ctrl+Alt+K");
    construct();
    QCOMPARE(stored("Hotkey/Combo"), "Ctrl+Alt+Space");
    QCOMPARE(HotkeyManager::mainWindowSlot.combo, "Ctrl+Alt+Space");
    const QVector<Registration> expected{{m_window->winId(), 1, 3 | kNoRepeat, 32}};
    QCOMPARE(m_backend->registrations(), expected);
}

void MainWindowTrayTest::takenDefaultLeavesTheHotkeyDead()
{
    m_backend->takeByOther(3, 32);
    QTest::ignoreMessage(QtDebugMsg,
                         "GlobalHotkeyController: Failed to register hotkey \"Ctrl+Alt+Space\"");
    construct();
    QVERIFY(m_backend->registrations().isEmpty());
    fire(Trigger::TrayEntry);
    QVERIFY(m_window->isVisible());
}

void MainWindowTrayTest::hotkeyIsFreedAtTheEnd()
{
    construct();
    m_window.reset();
    QVERIFY(m_backend->registrations().isEmpty());
}

void MainWindowTrayTest::spotlightControllerIsGuarded()
{
    construct();
    QCOMPARE(m_window->spotlightHotkeyController(), nullptr);
    auto controller = std::make_unique<GlobalHotkeyController>(
        m_window->winId(), 2, &HotkeyManager::spotlightSlot, nullptr);
    m_window->setSpotlightHotkeyController(controller.get());
    QCOMPARE(m_window->spotlightHotkeyController(), controller.get());
    controller.reset();
    QCOMPARE(m_window->spotlightHotkeyController(), nullptr);
}

void MainWindowTrayTest::constructionBuildsTheTray()
{
    construct();
    auto* tray = m_window->findChild<QSystemTrayIcon*>({}, Qt::FindDirectChildrenOnly);
    QVERIFY(tray);
    QCOMPARE(tray->contextMenu()->parent(), m_window.get());
    QCOMPARE(tray->contextMenu()->actions().size(), 2);
    QCOMPARE(trayAction(0)->text(), Tr::t("main.tray_show"));
    QCOMPARE(trayAction(1)->text(), Tr::t("main.tray_exit"));
    QTRY_VERIFY(tray->isVisible()); // even if nobody sees the window
    const QIcon glyph = IconHelper::getGlyphIcon(QChar(0xEF7A), 64, 48, Theme::colors().primary);
    QCOMPARE(tray->icon().pixmap(64, 64).toImage(), glyph.pixmap(64, 64).toImage());
}

void MainWindowTrayTest::trayComesBehindTheFirstPicture()
{
    construct();
    const auto* tray = m_window->findChild<QSystemTrayIcon*>();
    bool wasTrayThere = true;
    EventHook onPaint(QEvent::Paint, [&] { wasTrayThere = tray->isVisible(); });
    m_window->installEventFilter(&onPaint);
    m_window->show();
    QTRY_VERIFY(onPaint.hasFired());
    QVERIFY(!wasTrayThere);
    QTRY_VERIFY(tray->isVisible());
    m_window->hide();
    QVERIFY(tray->isVisible());
}

void MainWindowTrayTest::toggleWhenHidden_data()
{
    addTriggers({Trigger::Hotkey, Trigger::TrayDoubleClick, Trigger::TrayEntry});
}

void MainWindowTrayTest::toggleWhenHidden()
{
    QFETCH(int, trigger);
    construct();
    fire(static_cast<Trigger>(trigger));
    QVERIFY(m_window->isVisible());
    QCOMPARE(m_window->windowOpacity(), 1.0);
    QTRY_VERIFY(m_window->isActiveWindow());
    QVERIFY(!runningFade());
}

void MainWindowTrayTest::toggleWhenShown_data()
{
    addTriggers({Trigger::Hotkey, Trigger::TrayDoubleClick, Trigger::TrayEntry});
}

void MainWindowTrayTest::toggleWhenShown()
{
    QFETCH(int, trigger);
    constructAndShow();
    ForeignProgram foreign;
    foreign.takeFocus();
    fire(static_cast<Trigger>(trigger));
    if (static_cast<Trigger>(trigger) == Trigger::TrayEntry) {
        QTRY_VERIFY(m_window->isActiveWindow());
        QVERIFY(!runningFade());
        QVERIFY(m_window->isVisible());
    } else {
        QVERIFY(runningFade());
        QTRY_VERIFY(m_window->isHidden());
    }
}

void MainWindowTrayTest::pressDuringTheFadeIsLost_data()
{
    addTriggers({Trigger::Hotkey, Trigger::TrayDoubleClick, Trigger::TrayEntry});
}

void MainWindowTrayTest::pressDuringTheFadeIsLost()
{
    QFETCH(int, trigger);
    constructAndShow();
    QSignalSpy shown(m_window.get(), &MainWindow::becameVisible);
    m_window->fadeOutAndHide();
    fire(static_cast<Trigger>(trigger)); // no step of the fade has been made yet
    m_window->setWindowOpacity(0.5);
    fire(static_cast<Trigger>(trigger)); // now it has
    QVERIFY(m_window->isVisible());
    QVERIFY(runningFade());
    QTRY_VERIFY(m_window->isHidden());
    QCOMPARE(shown.count(), 0);
}

void MainWindowTrayTest::toggleInTheFirstHalfOfASwap_data()
{
    addTriggers({Trigger::Hotkey, Trigger::TrayDoubleClick, Trigger::TrayEntry});
}

void MainWindowTrayTest::toggleInTheFirstHalfOfASwap()
{
    // Half transparent, and still a window that is shown.
    QFETCH(int, trigger);
    constructAndShow();
    int swapped = 0;
    m_window->runBlindSwap([&swapped] { ++swapped; });
    m_window->setWindowOpacity(0.5);
    fire(static_cast<Trigger>(trigger));
    if (static_cast<Trigger>(trigger) == Trigger::TrayEntry) {
        QVERIFY(isDipping());
        QTRY_VERIFY(!isDipping());
        QVERIFY(m_window->isVisible());
    } else {
        QVERIFY(!isDipping());
        QCOMPARE(swapped, 0);
        QTRY_VERIFY(m_window->isHidden());
    }
    QCOMPARE(swapped, 1);
}

void MainWindowTrayTest::toggleInTheSecondHalfOfASwap_data()
{
    addTriggers({Trigger::Hotkey, Trigger::TrayDoubleClick, Trigger::TrayEntry});
}

void MainWindowTrayTest::toggleInTheSecondHalfOfASwap()
{
    // Once the content has changed, transparency counts as hidden, and showing changes nothing.
    QFETCH(int, trigger);
    constructAndShow();
    QSignalSpy shown(m_window.get(), &MainWindow::becameVisible);
    m_window->runBlindSwap([this, trigger] { fire(static_cast<Trigger>(trigger)); });
    QTRY_VERIFY(!isDipping());
    QVERIFY(m_window->isVisible());
    QVERIFY(!runningFade());
    QCOMPARE(m_window->windowOpacity(), 1.0);
    QCOMPARE(shown.count(), 0);
}

void MainWindowTrayTest::othersPressesDoNothing()
{
    construct();
    FakeHotkeyBackend::Press press{2};
    qintptr result = 0;
    QVERIFY(!QAbstractEventDispatcher::instance()->filterNativeEvent(FakeHotkeyBackend::eventType(),
                                                                     &press, &result));
    auto* tray = m_window->findChild<QSystemTrayIcon*>();
    for (const auto reason : {QSystemTrayIcon::Unknown, QSystemTrayIcon::Context,
                              QSystemTrayIcon::Trigger, QSystemTrayIcon::MiddleClick})
        emit tray->activated(reason);
    QVERIFY(m_window->isHidden());
}

void MainWindowTrayTest::wakeWhenHidden()
{
    construct();
    QSignalSpy shown(m_window.get(), &MainWindow::becameVisible);
    m_window->wake();
    QCOMPARE(shown.count(), 1);
    QVERIFY(m_window->isVisible());
    QTRY_VERIFY(m_window->isActiveWindow());
}

void MainWindowTrayTest::wakeWhenShown()
{
    constructAndShow();
    QSignalSpy shown(m_window.get(), &MainWindow::becameVisible);
    OwnWindow other;
    other.takeFocus();
    m_window->wake();
    QTRY_VERIFY(m_window->isActiveWindow());
    QVERIFY(!runningFade());
    QCOMPARE(shown.count(), 0);
}

void MainWindowTrayTest::wakeDuringTheFade_data()
{
    QTest::addColumn<double>("opacity");
    QTest::newRow("no step made yet") << 1.0;
    QTest::newRow("half way") << 0.5;
}

void MainWindowTrayTest::wakeDuringTheFade()
{
    QFETCH(double, opacity);
    constructAndShow();
    QSignalSpy shown(m_window.get(), &MainWindow::becameVisible);
    m_window->fadeOutAndHide();
    m_window->setWindowOpacity(opacity);
    m_window->wake();
    QVERIFY(runningFade());
    QTRY_VERIFY(m_window->isHidden());
    QCOMPARE(shown.count(), 0);
}

void MainWindowTrayTest::wakeDuringADip_data()
{
    QTest::addColumn<bool>("isSecondHalf");
    QTest::newRow("first half") << false;
    QTest::newRow("second half") << true;
}

void MainWindowTrayTest::wakeDuringADip()
{
    // Unlike the tray's entry it takes every transparency for a window that is going.
    QFETCH(bool, isSecondHalf);
    constructAndShow();
    QSignalSpy shown(m_window.get(), &MainWindow::becameVisible);
    OwnWindow other;
    other.takeFocus();
    int swapped = 0;
    m_window->runBlindSwap([&, isSecondHalf] {
        ++swapped;
        if (isSecondHalf)
            m_window->wake();
    });
    if (!isSecondHalf) {
        m_window->setWindowOpacity(0.5);
        m_window->wake();
    }
    QVERIFY(isDipping());
    QTRY_VERIFY(!isDipping());
    QCOMPARE(swapped, 1);
    QVERIFY(m_window->isVisible());
    QVERIFY(!m_window->isActiveWindow());
    QCOMPARE(m_window->windowOpacity(), 1.0);
    QCOMPARE(shown.count(), 0);
}

void MainWindowTrayTest::quitSaves()
{
    constructAndShow();
    m_window->model()->setCurrentCategory("Gamma");
    QTimer::singleShot(0, this, [this] { trayAction(1)->trigger(); });
    QObject deadline;
    QTimer::singleShot(10000, &deadline, [] { QCoreApplication::exit(EXIT_FAILURE); });
    QCOMPARE(QApplication::exec(), EXIT_SUCCESS);
    QCOMPARE(stored(kLastCategory), "Gamma");
}

QTEST_MAIN(MainWindowTrayTest)
#include "tst_mainwindowtray.moc"
