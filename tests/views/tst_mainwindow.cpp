// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AutoQuitBlocker.h"
#include "CardShadow.h"
#include "EventCounter.h"
#include "FakeHotkeyBackend.h"
#include "GlobalHotkeyController.h"
#include "IconHelper.h"
#include "LauncherModel.h"
#include "Localization.h"
#include "MainWindow.h"
#include "Pixels.h"
#include "TestHome.h"
#include "TestScreens.h"
#include "Theme.h"
#include "UiDriver.h"

#include <QAbstractEventDispatcher>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFrame>
#include <QGraphicsDropShadowEffect>
#include <QLayout>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QPropertyAnimation>
#include <QSequentialAnimationGroup>
#include <QSettings>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <functional>
#include <memory>

using Registration = FakeHotkeyBackend::Registration;

class MainWindowTest : public QObject
{
    Q_OBJECT

public:
    static void initMain();

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void constructedHidden();
    void constructionSetsTheApplicationFont();
    void constructionRegistersTheHotkey();
    void constructionBuildsTheTray();
    void blockerFlagIsClearedAfterASecond();
    void blockerFlagStaysWhileAGuardLives();

    void lastCategoryIsUsed_data();
    void lastCategoryIsUsed();
    void lastCategoryIsSavedOnFade();
    void emptyCategoryIsNotSaved();

    void takenHotkeyFallsBack();
    void takenDefaultLeavesTheHotkeyDead();
    void hotkeyIsFreedAtTheEnd();
    void spotlightControllerIsGuarded();

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

    void showAppearsAtOnce();
    void showEmitsEachTime();
    void showGoesBackToTheFirstPage();
    void showStopsAFade();

    void fadeOut();
    void secondFadeIsNone();
    void closingLastsUntilTheNextShow();
    void hideForOtherWindow();
    void hideForOtherWindowWhenHidden();

    void focusLossWithinTheGuardIsIgnored();
    void everyShowRestartsTheGuard();
    void focusLossHides();
    void blockerSuspendsHiding();
    void ownWindowDoesNotHide();

    void centeredRect_data();
    void centeredRect();
    void windowSizes();
    void alwaysOnThePrimaryScreen();

    void swapBehindADip();
    void swapAtOnceWhenNotShowing();
    void emptySwapIsNone();
    void swapStartsFromThePresentOpacity();
    void fadeDoesNotLoseTheSwap();
    void secondSwapDoesNotLoseTheFirst();
    void swapFromWithinASwap();
    void destroyedInMidSwap_data();
    void destroyedInMidSwap();
    void destroyedInMidFade();

    void goToPageOutOfBounds_data();
    void goToPageOutOfBounds();
    void goToPage();

    void backgroundStyle_data();
    void backgroundStyle();
    void shadow_data();
    void shadow();
    void shadowFollowsTheCard();
    void shadowLooksAsThatOfTheCard_data();
    void shadowLooksAsThatOfTheCard();
    void repaintStaysInItsPlace();
    void shadowIsBlurredOncePerShow();

    void rebuildBehindADip();
    void rebuildWhenHidden();
    void rebuildWhileFading();
    void rebuildTwice();
    void rebuildChangesTheLanguage();
    void rebuildChoosesAValidCategory_data();
    void rebuildChoosesAValidCategory();
    void rebuildGivesTheFocusBack_data();
    void rebuildGivesTheFocusBack();
    void rebuildDuringARebuildComesAfterIt();
    void pagesSwapAtOnceDuringARebuild();
    void keysPassDuringARebuild();
    void rebuildLeavesContentVisible();
    void fadingWindowLeavesTheActivation();
    void rebuildTakesTheActivationOfAShownWindow();
    void oldTreeIsOutOfReachWhileItGoes();
    void treeGoesBeforeTheModel();

    void dragMoves_data();
    void dragMoves();
    void dragEndsWithTheLeftButton();
    void dragThroughAChild();
    void dragIsForgottenAtTheNextShow();

    void tabIsTakenFromTheFocusChain_data();
    void tabIsTakenFromTheFocusChain();
    void otherWindowsKeepTheirTab();

    void quitSaves();

private:
    enum class Trigger { Hotkey, TrayDoubleClick, TrayEntry };

    void construct();
    void constructAndShow();
    void showPastTheGuard();
    void fire(Trigger trigger);
    void addTriggers(const QList<Trigger>& triggers) const;
    QTimer* guardTimer() const;
    QFrame* background() const;
    QFrame* shadowLayer() const;
    CardShadow* cardShadow() const;
    QStackedWidget* stack() const;
    QAction* trayAction(int index) const;
    QPropertyAnimation* runningFade() const;
    bool isDipping() const;
    void rebuildAnd(const std::function<void()>& inBetween);
    static QString stored(const QString& key);
    static void store(const QString& key, const QVariant& value);

    std::unique_ptr<MainWindow> m_window;
    FakeHotkeyBackend* m_backend = nullptr;
    HotkeyManager::Slot m_initialSlot;
};

namespace
{

constexpr unsigned int kNoRepeat = 0x4000;
const QString kLastCategory = QStringLiteral("lastCategory");

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

/// True if the event was consumed before it reached the widget.
bool isOverrideConsumed(QWidget* widget, Qt::Key key)
{
    EventCounter counter(widget, QEvent::ShortcutOverride);
    QKeyEvent event(QEvent::ShortcutOverride, key, Qt::NoModifier);
    event.ignore();
    QApplication::sendEvent(widget, &event);
    return counter.count == 0 && event.isAccepted();
}

} // namespace

void MainWindowTest::initMain()
{
    TestHome::install();
    TestScreens::install();
}

void MainWindowTest::initTestCase()
{
    QApplication::setQuitOnLastWindowClosed(false);
    QCOMPARE(QGuiApplication::screens().size(), 2);
    QCOMPARE(QGuiApplication::primaryScreen()->availableGeometry(), TestScreens::Primary);
    m_initialSlot = HotkeyManager::mainWindowSlot;
}

void MainWindowTest::init()
{
    TestHome::writeDataFile("settings.ini", "[Theme]\nForceTheme=1\n");
    TestHome::writeDataFile("data.json", R"({"categories": ["Alpha", "Beta", "Gamma"],
        "defaultCategory": "Beta", "sectionElements": {}, "templates": []})");
    HotkeyManager::mainWindowSlot = m_initialSlot;
    m_backend = FakeHotkeyBackend::install();
}

void MainWindowTest::cleanup()
{
    m_window.reset();
}

void MainWindowTest::construct()
{
    m_window = std::make_unique<MainWindow>(nullptr);
}

void MainWindowTest::constructAndShow()
{
    construct();
    m_window->show();
    QTRY_VERIFY(m_window->isActiveWindow());
}

void MainWindowTest::showPastTheGuard()
{
    construct();
    QSignalSpy guardEnds(guardTimer(), &QTimer::timeout);
    m_window->show();
    QVERIFY(guardEnds.wait());
    QTRY_VERIFY(!g_blockAutoQuit);
    QTRY_VERIFY(m_window->isActiveWindow());
}

void MainWindowTest::fire(Trigger trigger)
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

void MainWindowTest::addTriggers(const QList<Trigger>& triggers) const
{
    const QHash<Trigger, const char*> names{{Trigger::Hotkey, "hotkey"},
                                            {Trigger::TrayDoubleClick, "tray, double click"},
                                            {Trigger::TrayEntry, "tray, entry"}};
    QTest::addColumn<int>("trigger");
    for (const Trigger trigger : triggers)
        QTest::newRow(names.value(trigger)) << int(trigger);
}

QTimer* MainWindowTest::guardTimer() const
{
    for (QTimer* timer : m_window->findChildren<QTimer*>(Qt::FindDirectChildrenOnly)) {
        if (timer->isSingleShot() && (timer->interval() == 1500 || timer->interval() == 0))
            return timer;
    }
    return nullptr;
}

QFrame* MainWindowTest::background() const
{
    return m_window->findChild<QFrame*>("bgContainer", Qt::FindDirectChildrenOnly);
}

QFrame* MainWindowTest::shadowLayer() const
{
    return m_window->findChild<QFrame*>("bgShadowLayer", Qt::FindDirectChildrenOnly);
}

CardShadow* MainWindowTest::cardShadow() const
{
    return qobject_cast<CardShadow*>(shadowLayer()->graphicsEffect());
}

QStackedWidget* MainWindowTest::stack() const
{
    return background()->findChild<QStackedWidget*>({}, Qt::FindDirectChildrenOnly);
}

QAction* MainWindowTest::trayAction(int index) const
{
    return m_window->findChild<QSystemTrayIcon*>()->contextMenu()->actions().at(index);
}

QPropertyAnimation* MainWindowTest::runningFade() const
{
    for (auto* animation :
         m_window->findChildren<QPropertyAnimation*>(Qt::FindDirectChildrenOnly)) {
        if (animation->state() == QAbstractAnimation::Running)
            return animation;
    }
    return nullptr;
}

bool MainWindowTest::isDipping() const
{
    const auto groups =
        m_window->findChildren<QSequentialAnimationGroup*>(Qt::FindDirectChildrenOnly);
    return std::any_of(groups.begin(), groups.end(), [](const auto* group) {
        return group->state() == QAbstractAnimation::Running;
    });
}

QString MainWindowTest::stored(const QString& key)
{
    return QSettings(Theme::settingsFilePath(), QSettings::IniFormat).value(key).toString();
}

void MainWindowTest::store(const QString& key, const QVariant& value)
{
    QSettings(Theme::settingsFilePath(), QSettings::IniFormat).setValue(key, value);
}

void MainWindowTest::constructedHidden()
{
    construct();
    QVERIFY(m_window->isHidden());
    QVERIFY(m_window->testAttribute(Qt::WA_TranslucentBackground));
    QCOMPARE(m_window->windowFlags(), Qt::FramelessWindowHint | Qt::Tool);
    QCOMPARE(m_window->minimumSize(), QSize(617, 616));
    QCOMPARE(m_window->maximumSize(), QSize(617, 616));
    QCOMPARE(m_window->layout()->contentsMargins(), QMargins(32, 32, 32, 32));
    QCOMPARE(m_window->styleSheet(), "QWidget { font-family: " + FontTokens::Family + "; }");
    QVERIFY(background());
    QCOMPARE(m_window->model()->parent(), m_window.get());
    QVERIFY(!runningFade());
}

void MainWindowTest::constructionSetsTheApplicationFont()
{
    QApplication::setFont(QFont("monospace", 30, QFont::Light));
    construct();
    const QFont font = QApplication::font();
    const QStringList families{"Plus Jakarta Sans", "Inter", "Segoe UI", "sans-serif"};
    QCOMPARE(font.families(), families);
    QCOMPARE(font.pointSize(), 10);
    QCOMPARE(int(font.weight()), 600);
    QCOMPARE(font.styleHint(), QFont::SansSerif);
    QCOMPARE(int(font.styleStrategy()), int(QFont::PreferAntialias | QFont::PreferQuality));
    QCOMPARE(font.hintingPreference(), QFont::PreferNoHinting);
}

void MainWindowTest::constructionRegistersTheHotkey()
{
    construct();
    const QVector<Registration> expected{{m_window->winId(), 1, 3 | kNoRepeat, 32}};
    QCOMPARE(m_backend->registrations(), expected);
    QCOMPARE(stored("Hotkey/Combo"), "Ctrl+Alt+Space");
}

void MainWindowTest::constructionBuildsTheTray()
{
    construct();
    auto* tray = m_window->findChild<QSystemTrayIcon*>({}, Qt::FindDirectChildrenOnly);
    QVERIFY(tray);
    QCOMPARE(tray->contextMenu()->parent(), m_window.get());
    QCOMPARE(tray->contextMenu()->actions().size(), 2);
    QCOMPARE(trayAction(0)->text(), Tr::t("main.tray_show"));
    QCOMPARE(trayAction(1)->text(), Tr::t("main.tray_exit"));
    const QIcon glyph = IconHelper::getGlyphIcon(QChar(0xEF7A), 64, 48, Theme::colors().primary);
    QCOMPARE(tray->icon().pixmap(64, 64).toImage(), glyph.pixmap(64, 64).toImage());
    QVERIFY(tray->isVisible());
}

void MainWindowTest::blockerFlagIsClearedAfterASecond()
{
    QTRY_COMPARE(g_autoQuitBlockCount, 0);
    construct();
    // One guard more, whose end nobody sees: its own release can't clear the flag.
    ++g_autoQuitBlockCount;
    QTimer::singleShot(750, Qt::PreciseTimer, m_window.get(), [] {
        QCOMPARE(g_autoQuitBlockCount, 1);
        QVERIFY(g_blockAutoQuit);
        g_autoQuitBlockCount = 0;
    });
    QTRY_VERIFY(!g_blockAutoQuit);
}

void MainWindowTest::blockerFlagStaysWhileAGuardLives()
{
    QTRY_COMPARE(g_autoQuitBlockCount, 0);
    construct();
    auto blocker = std::make_unique<AutoQuitBlocker>();
    bool isOver = false;
    QTimer::singleShot(1200, Qt::PreciseTimer, m_window.get(), [&isOver] { isOver = true; });
    QTRY_VERIFY(isOver);
    QVERIFY(g_blockAutoQuit);
    blocker.reset();
    QTRY_VERIFY(!g_blockAutoQuit);
}

void MainWindowTest::lastCategoryIsUsed_data()
{
    QTest::addColumn<QVariant>("last");
    QTest::addColumn<QString>("current");
    QTest::newRow("never stored") << QVariant() << "Alpha";
    QTest::newRow("known") << QVariant("Gamma") << "Gamma";
    QTest::newRow("unknown") << QVariant("Delta") << "Alpha";
    QTest::newRow("other letter case") << QVariant("gamma") << "Alpha";
    QTest::newRow("empty") << QVariant("") << "Alpha";
}

void MainWindowTest::lastCategoryIsUsed()
{
    QFETCH(QVariant, last);
    if (last.isValid())
        store(kLastCategory, last);
    construct();
    QTEST(m_window->model()->currentCategory(), "current");
}

void MainWindowTest::lastCategoryIsSavedOnFade()
{
    constructAndShow();
    m_window->model()->setCurrentCategory("Gamma");
    QCOMPARE(stored(kLastCategory), QString());
    m_window->fadeOutAndHide();
    QCOMPARE(stored(kLastCategory), "Gamma");
    m_window.reset();
    construct();
    QCOMPARE(m_window->model()->currentCategory(), "Gamma");
}

void MainWindowTest::emptyCategoryIsNotSaved()
{
    store(kLastCategory, "Gamma");
    construct();
    m_window->model()->setCurrentCategory({});
    m_window->saveLastCategory();
    QCOMPARE(stored(kLastCategory), "Gamma");
}

void MainWindowTest::takenHotkeyFallsBack()
{
    m_backend->takeByOther(3, 'K');
    store("Hotkey/Combo", "Ctrl+Alt+K");
    construct();
    QCOMPARE(stored("Hotkey/Combo"), "Ctrl+Alt+Space");
    QCOMPARE(HotkeyManager::mainWindowSlot.combo, "Ctrl+Alt+Space");
    const QVector<Registration> expected{{m_window->winId(), 1, 3 | kNoRepeat, 32}};
    QCOMPARE(m_backend->registrations(), expected);
}

void MainWindowTest::takenDefaultLeavesTheHotkeyDead()
{
    m_backend->takeByOther(3, 32);
    QTest::ignoreMessage(QtDebugMsg,
                         "GlobalHotkeyController: Failed to register hotkey \"Ctrl+Alt+Space\"");
    construct();
    QVERIFY(m_backend->registrations().isEmpty());
    fire(Trigger::TrayEntry);
    QVERIFY(m_window->isVisible());
}

void MainWindowTest::hotkeyIsFreedAtTheEnd()
{
    construct();
    m_window.reset();
    QVERIFY(m_backend->registrations().isEmpty());
}

void MainWindowTest::spotlightControllerIsGuarded()
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

void MainWindowTest::toggleWhenHidden_data()
{
    addTriggers({Trigger::Hotkey, Trigger::TrayDoubleClick, Trigger::TrayEntry});
}

void MainWindowTest::toggleWhenHidden()
{
    QFETCH(int, trigger);
    construct();
    fire(static_cast<Trigger>(trigger));
    QVERIFY(m_window->isVisible());
    QCOMPARE(m_window->windowOpacity(), 1.0);
    QTRY_VERIFY(m_window->isActiveWindow());
    QVERIFY(!runningFade());
}

void MainWindowTest::toggleWhenShown_data()
{
    addTriggers({Trigger::Hotkey, Trigger::TrayDoubleClick, Trigger::TrayEntry});
}

void MainWindowTest::toggleWhenShown()
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

void MainWindowTest::pressDuringTheFadeIsLost_data()
{
    addTriggers({Trigger::Hotkey, Trigger::TrayDoubleClick, Trigger::TrayEntry});
}

void MainWindowTest::pressDuringTheFadeIsLost()
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

void MainWindowTest::toggleInTheFirstHalfOfASwap_data()
{
    addTriggers({Trigger::Hotkey, Trigger::TrayDoubleClick, Trigger::TrayEntry});
}

void MainWindowTest::toggleInTheFirstHalfOfASwap()
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

void MainWindowTest::toggleInTheSecondHalfOfASwap_data()
{
    addTriggers({Trigger::Hotkey, Trigger::TrayDoubleClick, Trigger::TrayEntry});
}

void MainWindowTest::toggleInTheSecondHalfOfASwap()
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

void MainWindowTest::othersPressesDoNothing()
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

void MainWindowTest::wakeWhenHidden()
{
    construct();
    QSignalSpy shown(m_window.get(), &MainWindow::becameVisible);
    m_window->wake();
    QCOMPARE(shown.count(), 1);
    QVERIFY(m_window->isVisible());
    QTRY_VERIFY(m_window->isActiveWindow());
}

void MainWindowTest::wakeWhenShown()
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

void MainWindowTest::wakeDuringTheFade_data()
{
    QTest::addColumn<double>("opacity");
    QTest::newRow("no step made yet") << 1.0;
    QTest::newRow("half way") << 0.5;
}

void MainWindowTest::wakeDuringTheFade()
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

void MainWindowTest::wakeDuringADip_data()
{
    QTest::addColumn<bool>("isSecondHalf");
    QTest::newRow("first half") << false;
    QTest::newRow("second half") << true;
}

void MainWindowTest::wakeDuringADip()
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

void MainWindowTest::showAppearsAtOnce()
{
    construct();
    m_window->setWindowOpacity(0.25);
    m_window->move(2100, 300);
    m_window->show();
    QCOMPARE(m_window->windowOpacity(), 1.0);
    QCOMPARE(m_window->pos(), QPoint(292, 168));
    QVERIFY(g_blockAutoQuit);
    QVERIFY(guardTimer()->isActive());
    QCOMPARE(guardTimer()->interval(), 1500);
    QTRY_VERIFY(m_window->isActiveWindow());
}

void MainWindowTest::showEmitsEachTime()
{
    construct();
    QSignalSpy shown(m_window.get(), &MainWindow::becameVisible);
    for (int i = 1; i <= 3; ++i) {
        m_window->toggleVisibility();
        QCOMPARE(shown.count(), i);
        m_window->toggleVisibility();
        QTRY_VERIFY(m_window->isHidden());
    }
    QCOMPARE(shown.count(), 3);
}

void MainWindowTest::showGoesBackToTheFirstPage()
{
    constructAndShow();
    while (stack()->count() < 2)
        stack()->addWidget(new QWidget);
    m_window->goToPage(1);
    QTRY_VERIFY(!isDipping());
    QCOMPARE(stack()->currentIndex(), 1);
    m_window->fadeOutAndHide();
    QTRY_VERIFY(m_window->isHidden());
    m_window->show();
    QCOMPARE(stack()->currentIndex(), 0);
    QCOMPARE(m_window->geometry(), QRect(292, 168, 617, 616));
}

void MainWindowTest::showStopsAFade()
{
    constructAndShow();
    m_window->fadeOutAndHide();
    m_window->setWindowOpacity(0.5);
    m_window->hide();
    m_window->show();
    QVERIFY(!runningFade());
    QCOMPARE(m_window->windowOpacity(), 1.0);
    m_window->fadeOutAndHide();
    QVERIFY(runningFade());
    QTRY_VERIFY(m_window->isHidden());
}

void MainWindowTest::fadeOut()
{
    constructAndShow();
    m_window->setWindowOpacity(0.75);
    m_window->fadeOutAndHide();
    const QPropertyAnimation* fade = runningFade();
    QVERIFY(fade);
    QCOMPARE(fade->propertyName(), "windowOpacity");
    QCOMPARE(fade->duration(), 60);
    QCOMPARE(fade->startValue().toReal(), m_window->windowOpacity());
    QVERIFY(qAbs(fade->startValue().toReal() - 0.75) < 0.01);
    QCOMPARE(fade->endValue().toReal(), 0.0);
    QCOMPARE(fade->easingCurve().type(), QEasingCurve::Linear);
    QVERIFY(m_window->isVisible());
    QTRY_VERIFY(m_window->isHidden());
    QCOMPARE(m_window->windowOpacity(), 0.0);
    QTRY_VERIFY(m_window->findChildren<QPropertyAnimation*>(Qt::FindDirectChildrenOnly).isEmpty());
}

void MainWindowTest::secondFadeIsNone()
{
    constructAndShow();
    m_window->fadeOutAndHide();
    m_window->model()->setCurrentCategory("Gamma");
    m_window->fadeOutAndHide();
    QCOMPARE(m_window->findChildren<QPropertyAnimation*>(Qt::FindDirectChildrenOnly).size(), 1);
    QCOMPARE(stored(kLastCategory), "Alpha");
}

void MainWindowTest::closingLastsUntilTheNextShow()
{
    constructAndShow();
    m_window->fadeOutAndHide();
    QTRY_VERIFY(m_window->isHidden());
    m_window->model()->setCurrentCategory("Gamma");
    m_window->fadeOutAndHide();
    QVERIFY(!runningFade());
    QCOMPARE(stored(kLastCategory), "Alpha");
    m_window->show();
    m_window->fadeOutAndHide();
    QVERIFY(runningFade());
    QCOMPARE(stored(kLastCategory), "Gamma");
}

void MainWindowTest::hideForOtherWindow()
{
    constructAndShow();
    m_window->hideForOtherWindow();
    QVERIFY(runningFade());
    m_window->hideForOtherWindow();
    QCOMPARE(m_window->findChildren<QPropertyAnimation*>(Qt::FindDirectChildrenOnly).size(), 1);
    QTRY_VERIFY(m_window->isHidden());
}

void MainWindowTest::hideForOtherWindowWhenHidden()
{
    construct();
    m_window->hideForOtherWindow();
    QVERIFY(!runningFade());
    QCOMPARE(stored(kLastCategory), QString());
    // Not even remembered: the window still goes when it is told to.
    m_window->show();
    m_window->hideForOtherWindow();
    QVERIFY(runningFade());
}

void MainWindowTest::focusLossWithinTheGuardIsIgnored()
{
    constructAndShow();
    // Only the guard is on trial here.
    QTRY_VERIFY(!g_blockAutoQuit);
    QVERIFY(guardTimer()->isActive());
    ForeignProgram foreign;
    foreign.takeFocus();
    QVERIFY(!runningFade());
    // Nor is the loss remembered until the guard ends.
    QSignalSpy guardEnds(guardTimer(), &QTimer::timeout);
    QVERIFY(guardEnds.wait());
    QVERIFY(!runningFade());
    QVERIFY(m_window->isVisible());
}

void MainWindowTest::everyShowRestartsTheGuard()
{
    showPastTheGuard();
    ForeignProgram foreign;
    foreign.takeFocus();
    QTRY_VERIFY(m_window->isHidden());
    m_window->show();
    QTRY_VERIFY(m_window->isActiveWindow());
    QTRY_VERIFY(!g_blockAutoQuit);
    QVERIFY(guardTimer()->isActive());
    foreign.takeFocus();
    QVERIFY(!runningFade());
    QVERIFY(m_window->isVisible());
}

void MainWindowTest::focusLossHides()
{
    showPastTheGuard();
    QVERIFY(m_window->isVisible());
    ForeignProgram foreign;
    foreign.takeFocus();
    QTRY_VERIFY(m_window->isHidden());
}

void MainWindowTest::blockerSuspendsHiding()
{
    showPastTheGuard();
    auto blocker = std::make_unique<AutoQuitBlocker>();
    {
        ForeignProgram foreign;
        foreign.takeFocus();
        QVERIFY(!runningFade());
    }
    blocker.reset();
    m_window->activateWindow();
    QTRY_VERIFY(m_window->isActiveWindow());
    {
        // The guard has ended and still works on for a moment.
        QVERIFY(g_blockAutoQuit);
        ForeignProgram foreign;
        foreign.takeFocus();
        QVERIFY(!runningFade());
    }
    QTRY_VERIFY(!g_blockAutoQuit);
    QVERIFY(m_window->isVisible());
    m_window->activateWindow();
    QTRY_VERIFY(m_window->isActiveWindow());
    ForeignProgram foreign;
    foreign.takeFocus();
    QTRY_VERIFY(m_window->isHidden());
}

void MainWindowTest::ownWindowDoesNotHide()
{
    showPastTheGuard();
    QDialog dialog(m_window.get());
    dialog.setModal(true);
    dialog.show();
    QTRY_VERIFY(dialog.isActiveWindow());
    QVERIFY(!m_window->isActiveWindow());
    QVERIFY(!runningFade());
    QVERIFY(m_window->isVisible());
}

void MainWindowTest::centeredRect_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("topLeft");
    // On 1001 x 777 at (100, 50), a twentieth of the height below the middle.
    QTest::newRow("home page") << QSize(617, 616) << QPoint(292, 168);
    QTest::newRow("settings page") << QSize(820, 580) << QPoint(190, 186);
    QTest::newRow("small") << QSize(10, 20) << QPoint(595, 466);
    QTest::newRow("last height that fits below") << QSize(617, 700) << QPoint(292, 126);
    QTest::newRow("pushed up to the bottom edge") << QSize(617, 750) << QPoint(292, 77);
    QTest::newRow("as high as the screen") << QSize(617, 777) << QPoint(292, 50);
    QTest::newRow("higher than the screen") << QSize(617, 1000) << QPoint(292, 50);
    QTest::newRow("wider than the screen") << QSize(1202, 616) << QPoint(0, 168);
}

void MainWindowTest::centeredRect()
{
    QFETCH(QSize, size);
    QFETCH(QPoint, topLeft);
    construct();
    QCOMPARE(m_window->centeredRectFor(size), QRect(topLeft, size));
}

void MainWindowTest::windowSizes()
{
    construct();
    QCOMPARE(m_window->windowSizeFor(false), QSize(617, 616));
    QCOMPARE(m_window->windowSizeFor(true), QSize(820, 580));
    m_window->applyWindowSize(true);
    QCOMPARE(m_window->geometry(), QRect(190, 186, 820, 580));
    QCOMPARE(m_window->minimumSize(), m_window->maximumSize());
    m_window->applyWindowSize(false);
    QCOMPARE(m_window->geometry(), QRect(292, 168, 617, 616));
}

void MainWindowTest::alwaysOnThePrimaryScreen()
{
    constructAndShow();
    m_window->move(2050, 100);
    QTRY_COMPARE(m_window->screen(), QGuiApplication::screens().at(1));
    m_window->centerOnScreen();
    QCOMPARE(m_window->pos(), QPoint(292, 168));
}

void MainWindowTest::swapBehindADip()
{
    constructAndShow();
    QVector<qreal> opacities;
    m_window->runBlindSwap([this, &opacities] { opacities.append(m_window->windowOpacity()); });
    QVERIFY(opacities.isEmpty());
    auto* group = m_window->findChild<QSequentialAnimationGroup*>({}, Qt::FindDirectChildrenOnly);
    QVERIFY(group);
    QCOMPARE(group->animationCount(), 2);
    const auto* out = qobject_cast<QPropertyAnimation*>(group->animationAt(0));
    const auto* in = qobject_cast<QPropertyAnimation*>(group->animationAt(1));
    QCOMPARE(out->duration(), 110);
    QCOMPARE(out->easingCurve().type(), QEasingCurve::InQuad);
    QCOMPARE(in->duration(), 170);
    QCOMPARE(in->easingCurve().type(), QEasingCurve::OutQuad);
    QTRY_VERIFY(!isDipping());
    QCOMPARE(opacities, QVector<qreal>{0.0});
    QCOMPARE(m_window->windowOpacity(), 1.0);
    QVERIFY(m_window->isVisible());
}

void MainWindowTest::swapAtOnceWhenNotShowing()
{
    construct();
    int swapped = 0;
    m_window->runBlindSwap([&swapped] { ++swapped; });
    QCOMPARE(swapped, 1);
    QVERIFY(!isDipping());

    m_window->show();
    m_window->fadeOutAndHide();
    m_window->runBlindSwap([&swapped] { ++swapped; });
    QCOMPARE(swapped, 2);
    QVERIFY(!isDipping());
    QVERIFY(runningFade());
}

void MainWindowTest::emptySwapIsNone()
{
    construct();
    m_window->runBlindSwap({});
    m_window->show();
    int swapped = 0;
    m_window->runBlindSwap([&swapped] { ++swapped; });
    m_window->runBlindSwap({});
    // What runs already isn't disturbed by it.
    QVERIFY(isDipping());
    QTRY_VERIFY(!isDipping());
    QCOMPARE(swapped, 1);
}

void MainWindowTest::swapStartsFromThePresentOpacity()
{
    constructAndShow();
    m_window->setWindowOpacity(0.5);
    m_window->runBlindSwap([] {});
    const auto* group =
        m_window->findChild<QSequentialAnimationGroup*>({}, Qt::FindDirectChildrenOnly);
    const auto* out = qobject_cast<QPropertyAnimation*>(group->animationAt(0));
    QVERIFY(qAbs(out->startValue().toReal() - 0.5) < 0.01);
    QTRY_VERIFY(!isDipping());
    QCOMPARE(m_window->windowOpacity(), 1.0);
}

void MainWindowTest::fadeDoesNotLoseTheSwap()
{
    constructAndShow();
    int swapped = 0;
    m_window->runBlindSwap([&swapped] { ++swapped; });
    m_window->setWindowOpacity(0.5);
    m_window->fadeOutAndHide();
    QVERIFY(!isDipping());
    // The dip is put right before the fade begins.
    QCOMPARE(runningFade()->startValue().toReal(), 1.0);
    QCOMPARE(swapped, 0); // only when the event loop turns
    QTRY_COMPARE(swapped, 1);
    QTRY_VERIFY(m_window->isHidden());
    QCOMPARE(swapped, 1);
    QCOMPARE(m_window->windowOpacity(), 0.0);
}

void MainWindowTest::secondSwapDoesNotLoseTheFirst()
{
    constructAndShow();
    QStringList swapped;
    m_window->runBlindSwap([&swapped] { swapped.append("first"); });
    m_window->setWindowOpacity(0.5);
    m_window->runBlindSwap([&swapped] { swapped.append("second"); });
    // The first dip has been put right.
    QCOMPARE(m_window->windowOpacity(), 1.0);
    QTRY_VERIFY(!isDipping());
    const QStringList expected{"first", "second"};
    QCOMPARE(swapped, expected);
    QCOMPARE(m_window->windowOpacity(), 1.0);
}

void MainWindowTest::swapFromWithinASwap()
{
    constructAndShow();
    QStringList swapped;
    m_window->runBlindSwap([this, &swapped] {
        swapped.append("outer");
        m_window->runBlindSwap([&swapped] { swapped.append("inner"); });
    });
    QTRY_COMPARE(swapped.size(), 2);
    QTRY_VERIFY(!isDipping());
    const QStringList expected{"outer", "inner"};
    QCOMPARE(swapped, expected);
    QCOMPARE(m_window->windowOpacity(), 1.0);
}

void MainWindowTest::destroyedInMidSwap_data()
{
    QTest::addColumn<bool>("isSwapped");
    QTest::newRow("before the swap") << false;
    QTest::newRow("after the swap") << true;
}

void MainWindowTest::destroyedInMidSwap()
{
    QFETCH(bool, isSwapped);
    constructAndShow();
    int swapped = 0;
    m_window->runBlindSwap([this, &swapped, isSwapped] {
        ++swapped;
        if (isSwapped)
            QTimer::singleShot(0, this, [this] { m_window.reset(); });
    });
    if (!isSwapped)
        m_window.reset();
    QTRY_VERIFY(!m_window);
    QCOMPARE(swapped, isSwapped ? 1 : 0);
}

void MainWindowTest::destroyedInMidFade()
{
    constructAndShow();
    m_window->fadeOutAndHide();
    QVERIFY(runningFade());
    m_window.reset();
    QVERIFY(m_backend->registrations().isEmpty());
}

void MainWindowTest::goToPageOutOfBounds_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("present") << 0;
    QTest::newRow("negative") << -1;
    QTest::newRow("behind the last") << 2;
    QTest::newRow("far") << 1000000;
}

void MainWindowTest::goToPageOutOfBounds()
{
    QFETCH(int, index);
    constructAndShow();
    while (stack()->count() < 2)
        stack()->addWidget(new QWidget);
    m_window->goToPage(index);
    QVERIFY(!isDipping());
    QCOMPARE(stack()->currentIndex(), 0);
}

void MainWindowTest::goToPage()
{
    constructAndShow();
    while (stack()->count() < 2)
        stack()->addWidget(new QWidget);
    QVector<qreal> opacities;
    connect(stack(), &QStackedWidget::currentChanged, this,
            [&] { opacities.append(m_window->windowOpacity()); });
    m_window->goToPage(1);
    QCOMPARE(m_window->geometry(), QRect(292, 168, 617, 616));
    QTRY_VERIFY(!isDipping());
    QCOMPARE(stack()->currentIndex(), 1);
    QCOMPARE(m_window->geometry(), QRect(190, 186, 820, 580));
    m_window->goToPage(0);
    QTRY_VERIFY(!isDipping());
    QCOMPARE(stack()->currentIndex(), 0);
    QCOMPARE(m_window->geometry(), QRect(292, 168, 617, 616));
    // Size and place have jumped at the darkest moments.
    const QVector<qreal> dark{0.0, 0.0};
    QCOMPARE(opacities, dark);
}

void MainWindowTest::backgroundStyle_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("light") << 1;
    QTest::newRow("dark") << 2;
}

void MainWindowTest::backgroundStyle()
{
    QFETCH(int, mode);
    store("Theme/ForceTheme", mode);
    store("Theme/SeedColor", "#a03050");
    construct();
    QCOMPARE(background()->styleSheet(),
             "QFrame#bgContainer { background-color: " + Theme::shellBg() +
                 "; border: none; border-radius: 24px; }");
    m_window->show();
    QTRY_COMPARE(background()->geometry(), QRect(32, 32, 553, 552));
}

void MainWindowTest::shadow_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("alpha");
    QTest::newRow("light") << 1 << 40;
    QTest::newRow("dark") << 2 << 150;
}

void MainWindowTest::shadow()
{
    QFETCH(int, mode);
    QFETCH(int, alpha);
    store("Theme/ForceTheme", mode);
    construct();
    const CardShadow* shadow = cardShadow();
    QVERIFY(shadow);
    QCOMPARE(shadow->blurRadius(), 35.0);
    QCOMPARE(shadow->color(), QColor(0, 0, 0, alpha));
    QCOMPARE(shadow->offset(), QPointF(0, 10));
    QVERIFY(shadow->isEnabled());
    // The strength follows a change of mode.
    Theme::saveForceTheme(3 - mode);
    m_window->rebuildUIPreservingFocus();
    QTRY_COMPARE(cardShadow()->color(), QColor(0, 0, 0, 190 - alpha));
}

void MainWindowTest::shadowFollowsTheCard()
{
    constructAndShow();
    QVERIFY(shadowLayer()->testAttribute(Qt::WA_TransparentForMouseEvents));
    QCOMPARE(m_window->layout()->indexOf(shadowLayer()), -1);
    QTRY_COMPARE(background()->geometry(), QRect(32, 32, 553, 552));
    QCOMPARE(shadowLayer()->geometry(), background()->geometry());
    m_window->applyWindowSize(true);
    QTRY_COMPARE(background()->geometry(), QRect(32, 32, 756, 516));
    QCOMPARE(shadowLayer()->geometry(), background()->geometry());
    // Below the card that a rebuild makes, too.
    const QPointer<QFrame> old = background();
    m_window->rebuildUIPreservingFocus();
    QTRY_VERIFY(!old);
    QVERIFY(m_window->children().indexOf(shadowLayer()) <
            m_window->children().indexOf(background()));
}

void MainWindowTest::shadowLooksAsThatOfTheCard_data()
{
    backgroundStyle_data();
}

void MainWindowTest::shadowLooksAsThatOfTheCard()
{
    QFETCH(int, mode);
    store("Theme/ForceTheme", mode);
    constructAndShow();
    QTRY_COMPARE(background()->geometry(), QRect(32, 32, 553, 552));
    const QImage actual = m_window->grab().toImage();
    cardShadow()->setEnabled(false);
    auto* plain = new QGraphicsDropShadowEffect(background());
    plain->setBlurRadius(35.0);
    plain->setOffset(0, 10);
    plain->setColor(cardShadow()->color());
    background()->setGraphicsEffect(plain);
    const QImage expected = m_window->grab().toImage();
    QCOMPARE(actual.size(), expected.size());
    const int largest = Pixels::largestDifference(actual, expected);
    QVERIFY2(largest <= 2, qPrintable(QString::number(largest)));
}

void MainWindowTest::repaintStaysInItsPlace()
{
    constructAndShow();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QWidget far(background());
    far.setGeometry(300, 300, 40, 40);
    far.show();
    QWidget near(background());
    near.setGeometry(20, 20, 132, 132);
    near.show();
    PaintCounter farPaints(&far);
    PaintCounter nearPaints(&near);
    QTRY_VERIFY(farPaints.count > 0);
    QCoreApplication::processEvents();
    farPaints.count = 0;
    nearPaints.count = 0;
    near.repaint();
    QCOMPARE(nearPaints.count, 1);
    QCOMPARE(farPaints.count, 0);
}

void MainWindowTest::shadowIsBlurredOncePerShow()
{
    constructAndShow();
    QTRY_COMPARE(cardShadow()->pictureCount(), 1);
    for (int i = 0; i < 3; ++i)
        m_window->repaint();
    QCOMPARE(cardShadow()->pictureCount(), 1);
    m_window->fadeOutAndHide();
    QTRY_VERIFY(m_window->isHidden());
    m_window->show();
    QTRY_COMPARE(cardShadow()->pictureCount(), 2);
}

void MainWindowTest::rebuildBehindADip()
{
    constructAndShow();
    const QPointer<QFrame> old = background();
    Theme::saveSeedColor("#a03050");
    m_window->rebuildUIPreservingFocus();
    QVERIFY(isDipping());
    QVERIFY(old);
    QTRY_VERIFY(!isDipping());
    QVERIFY(!old);
    QCOMPARE(m_window->findChildren<QFrame*>("bgContainer").size(), 1);
    QCOMPARE(m_window->layout()->count(), 1);
    QVERIFY(background()->styleSheet().contains(Theme::shellBg()));
    QCOMPARE(m_window->windowOpacity(), 1.0);
    QVERIFY(m_window->isVisible());
}

void MainWindowTest::rebuildWhenHidden()
{
    construct();
    const QPointer<QFrame> old = background();
    Theme::saveForceTheme(2);
    m_window->rebuildUIPreservingFocus();
    QVERIFY(old);
    QTRY_VERIFY(!old);
    QVERIFY(background()->styleSheet().contains(Theme::shellBg()));
    QVERIFY(m_window->isHidden());
    QVERIFY(!isDipping());
}

void MainWindowTest::rebuildWhileFading()
{
    constructAndShow();
    const QPointer<QFrame> old = background();
    m_window->fadeOutAndHide();
    m_window->rebuildUIPreservingFocus();
    QVERIFY(old);
    QTRY_VERIFY(!old);
    QTRY_VERIFY(m_window->isHidden());
    QVERIFY(background());
    QVERIFY(!isDipping());
}

void MainWindowTest::rebuildTwice()
{
    constructAndShow();
    const QPointer<QFrame> old = background();
    m_window->rebuildUIPreservingFocus();
    Theme::saveSeedColor("#a03050");
    m_window->rebuildUIPreservingFocus();
    QTRY_VERIFY(!isDipping());
    QVERIFY(!old);
    QCOMPARE(m_window->findChildren<QFrame*>("bgContainer").size(), 1);
    QVERIFY(background()->styleSheet().contains(Theme::shellBg()));
    QCOMPARE(m_window->windowOpacity(), 1.0);
}

void MainWindowTest::rebuildChangesTheLanguage()
{
    construct();
    QCOMPARE(trayAction(0)->text(), "Show");
    QCOMPARE(trayAction(1)->text(), "Exit");
    Tr::setLanguage(Lang::Ja);
    m_window->rebuildUIPreservingFocus();
    QTRY_COMPARE(trayAction(0)->text(), QStringLiteral("表示"));
    QCOMPARE(trayAction(1)->text(), QStringLiteral("終了"));
    QCOMPARE(m_window->findChild<QSystemTrayIcon*>()->contextMenu()->actions().size(), 2);
}

void MainWindowTest::rebuildChoosesAValidCategory_data()
{
    const QStringList all{"Alpha", "Beta", "Gamma"};
    QTest::addColumn<QStringList>("categories");
    QTest::addColumn<QString>("standard");
    QTest::addColumn<QString>("current");
    QTest::addColumn<QString>("chosen");
    QTest::newRow("still there") << all << "Beta"
                                 << "Gamma"
                                 << "Gamma";
    QTest::newRow("gone, to the default") << all << "Beta"
                                          << "Gone"
                                          << "Beta";
    QTest::newRow("none yet") << all << "Beta"
                              << ""
                              << "Beta";
    QTest::newRow("other case") << all << "Beta"
                                << "gamma"
                                << "Beta";
    QTest::newRow("default gone too") << QStringList{"Gamma", "Alpha"} << "Beta"
                                      << "Gone"
                                      << "Gamma";
    QTest::newRow("none left") << QStringList() << "Beta"
                               << "Gone"
                               << "";
}

void MainWindowTest::rebuildChoosesAValidCategory()
{
    QFETCH(QStringList, categories);
    QFETCH(QString, standard);
    QFETCH(QString, current);
    construct();
    // No operation of the model leaves a default behind that isn't there; a document may.
    auto& document = const_cast<LauncherData&>(m_window->model()->data());
    document.categories = categories;
    document.defaultCategory = standard;
    m_window->model()->setCurrentCategory(current);
    rebuildAnd([] {});
    QTEST(m_window->model()->currentCategory(), "chosen");
}

void MainWindowTest::rebuildGivesTheFocusBack_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<bool>("isGivenBack");
    QTest::newRow("same name") << "nameEdit"
                               << "nameEdit" << true;
    QTest::newRow("other name") << "nameEdit"
                                << "valueEdit" << false;
    QTest::newRow("without a name") << ""
                                    << "" << false;
}

void MainWindowTest::rebuildGivesTheFocusBack()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    constructAndShow();
    const auto addEdit = [this](const QString& name) {
        auto* edit = new QLineEdit;
        edit->setObjectName(name);
        stack()->currentWidget()->layout()->addWidget(edit);
        edit->show();
        return edit;
    };
    addEdit(before)->setFocus();
    QPointer<QLineEdit> built;
    // The texts of the tray change when the tree is built and before the focus is given.
    connect(trayAction(0), &QAction::changed, this, [&] { built = addEdit(after); });
    Tr::setLanguage(Lang::Ja);
    m_window->rebuildUIPreservingFocus();
    QTRY_VERIFY(!isDipping());
    QVERIFY(built);
    QFETCH(bool, isGivenBack);
    const QWidget* expected = isGivenBack ? built.data() : nullptr;
    QCOMPARE(QApplication::focusWidget(), expected);
}

/// Rebuilds the tree and does something in the middle of it.
void MainWindowTest::rebuildAnd(const std::function<void()>& inBetween)
{
    const QPointer<QFrame> old = background();
    const auto connection =
        connect(m_window->model(), &LauncherModel::currentCategoryChanged, this, inBetween);
    m_window->rebuildUIPreservingFocus();
    QTRY_VERIFY(!old);
    disconnect(connection);
}

void MainWindowTest::rebuildDuringARebuildComesAfterIt()
{
    constructAndShow();
    m_window->model()->setCurrentCategory("Gone"); // so that the rebuild chooses another
    QPointer<QFrame> inner;
    bool isLeftAlone = false;
    rebuildAnd([&] {
        inner = background();
        m_window->rebuildUIPreservingFocus();
        isLeftAlone = inner && inner == background();
    });
    QVERIFY(isLeftAlone);
    QTRY_VERIFY(!inner); // replaced once more
    QTRY_VERIFY(!isDipping());
    QCOMPARE(m_window->findChildren<QFrame*>("bgContainer").size(), 1);
    QCOMPARE(m_window->windowOpacity(), 1.0);
}

void MainWindowTest::pagesSwapAtOnceDuringARebuild()
{
    constructAndShow();
    m_window->model()->setCurrentCategory("Gone");
    int page = -1;
    rebuildAnd([&] {
        stack()->addWidget(new QWidget);
        m_window->goToPage(1);
        page = stack()->currentIndex();
    });
    QCOMPARE(page, 1);
}

void MainWindowTest::keysPassDuringARebuild()
{
    constructAndShow();
    m_window->model()->setCurrentCategory("Gone");
    bool isTaken = true;
    rebuildAnd([&] { isTaken = isOverrideConsumed(m_window.get(), Qt::Key_Tab); });
    QVERIFY(!isTaken);
    QVERIFY(isOverrideConsumed(m_window.get(), Qt::Key_Tab));
}

void MainWindowTest::rebuildLeavesContentVisible()
{
    // By the time the texts of the tray follow, and not one turn of the event loop later.
    constructAndShow();
    bool isVisible = false;
    connect(trayAction(0), &QAction::changed, this,
            [this, &isVisible] { isVisible = stack()->currentWidget()->isVisible(); });
    Tr::setLanguage(Lang::Ja);
    m_window->rebuildUIPreservingFocus();
    QTRY_COMPARE(trayAction(0)->text(), QStringLiteral("表示"));
    QVERIFY(isVisible);
}

void MainWindowTest::fadingWindowLeavesTheActivation()
{
    constructAndShow();
    const QPointer<QFrame> old = background();
    m_window->fadeOutAndHide();
    runningFade()->pause();
    QWidget other;
    other.show();
    other.activateWindow();
    QTRY_VERIFY(other.isActiveWindow());
    EventCounter changes(&other, QEvent::ActivationChange);
    m_window->rebuildUIPreservingFocus();
    QTRY_VERIFY(!old);
    QCoreApplication::processEvents();
    QCOMPARE(changes.count, 0);
    QVERIFY(other.isActiveWindow());
}

void MainWindowTest::rebuildTakesTheActivationOfAShownWindow()
{
    constructAndShow();
    const QPointer<QFrame> old = background();
    QWidget other;
    other.show();
    other.activateWindow();
    QTRY_VERIFY(other.isActiveWindow());
    m_window->rebuildUIPreservingFocus();
    QTRY_VERIFY(!old);
    QTRY_VERIFY(m_window->isActiveWindow());
}

void MainWindowTest::oldTreeIsOutOfReachWhileItGoes()
{
    constructAndShow();
    const QPointer<QFrame> old = background();
    QWidget* page = stack()->currentWidget();
    stack()->addWidget(new QWidget);
    // A page that goes may still call the window.
    int calls = 0;
    connect(page, &QObject::destroyed, m_window.get(), [this, &calls] {
        ++calls;
        m_window->goToPage(1);
    });
    m_window->rebuildUIPreservingFocus();
    QTRY_VERIFY(!old);
    QCOMPARE(calls, 1);
    QCOMPARE(stack()->currentIndex(), 0);
    QCOMPARE(m_window->size(), QSize(617, 616));
}

void MainWindowTest::treeGoesBeforeTheModel()
{
    construct();
    bool hadModel = false;
    connect(background(), &QObject::destroyed, this,
            [&hadModel, model = QPointer(m_window->model())] { hadModel = model; });
    m_window.reset();
    QVERIFY(hadModel);
}

void MainWindowTest::dragMoves_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<bool>("isMoved");
    QTest::newRow("left") << int(Qt::LeftButton) << true;
    QTest::newRow("right") << int(Qt::RightButton) << false;
    QTest::newRow("middle") << int(Qt::MiddleButton) << false;
}

void MainWindowTest::dragMoves()
{
    QFETCH(int, button);
    QFETCH(bool, isMoved);
    constructAndShow();
    const QPoint start = m_window->pos();
    const QPoint grip = start + QPoint(40, 40);
    sendMouse(m_window.get(), QEvent::MouseButtonPress, grip, static_cast<Qt::MouseButton>(button));
    sendMouse(m_window.get(), QEvent::MouseMove, grip + QPoint(30, -20));
    QCOMPARE(m_window->pos(), isMoved ? start + QPoint(30, -20) : start);
    sendMouse(m_window.get(), QEvent::MouseMove, grip + QPoint(-5, 7));
    QCOMPARE(m_window->pos(), isMoved ? start + QPoint(-5, 7) : start);
}

void MainWindowTest::dragEndsWithTheLeftButton()
{
    constructAndShow();
    const QPoint start = m_window->pos();
    const QPoint grip = start + QPoint(40, 40);
    sendMouse(m_window.get(), QEvent::MouseButtonPress, grip, Qt::LeftButton);
    sendMouse(m_window.get(), QEvent::MouseButtonRelease, grip, Qt::RightButton);
    sendMouse(m_window.get(), QEvent::MouseMove, grip + QPoint(10, 10));
    QCOMPARE(m_window->pos(), start + QPoint(10, 10));
    sendMouse(m_window.get(), QEvent::MouseButtonRelease, grip + QPoint(10, 10), Qt::LeftButton);
    sendMouse(m_window.get(), QEvent::MouseMove, grip + QPoint(99, 99));
    QCOMPARE(m_window->pos(), start + QPoint(10, 10));
}

void MainWindowTest::dragThroughAChild()
{
    constructAndShow();
    const QPoint start = m_window->pos();
    const QPoint grip = start + QPoint(300, 300);
    sendMouse(background(), QEvent::MouseButtonPress, grip, Qt::LeftButton);
    sendMouse(background(), QEvent::MouseMove, grip + QPoint(15, 25));
    QCOMPARE(m_window->pos(), start + QPoint(15, 25));
}

void MainWindowTest::dragIsForgottenAtTheNextShow()
{
    constructAndShow();
    const QPoint start = m_window->pos();
    const QPoint grip = start + QPoint(40, 40);
    sendMouse(m_window.get(), QEvent::MouseButtonPress, grip, Qt::LeftButton);
    sendMouse(m_window.get(), QEvent::MouseMove, grip + QPoint(30, -20));
    QCOMPARE(m_window->pos(), start + QPoint(30, -20));
    // The button is released over whatever is there then.
    m_window->fadeOutAndHide();
    QTRY_VERIFY(m_window->isHidden());
    m_window->show();
    QCOMPARE(m_window->pos(), start);
    sendMouse(m_window.get(), QEvent::MouseMove, grip + QPoint(70, 50));
    QCOMPARE(m_window->pos(), start);
}

void MainWindowTest::tabIsTakenFromTheFocusChain_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("isConsumed");
    QTest::newRow("tab") << int(Qt::Key_Tab) << true;
    QTest::newRow("return") << int(Qt::Key_Return) << false;
    QTest::newRow("letter") << int(Qt::Key_A) << false;
}

void MainWindowTest::tabIsTakenFromTheFocusChain()
{
    QFETCH(int, key);
    QFETCH(bool, isConsumed);
    constructAndShow();
    for (QWidget* widget : {static_cast<QWidget*>(m_window.get()),
                            static_cast<QWidget*>(background()), stack()->currentWidget()})
        QCOMPARE(isOverrideConsumed(widget, static_cast<Qt::Key>(key)), isConsumed);
}

void MainWindowTest::otherWindowsKeepTheirTab()
{
    constructAndShow();
    QWidget other;
    QVERIFY(!isOverrideConsumed(&other, Qt::Key_Tab));
    QDialog dialog(m_window.get());
    QVERIFY(!isOverrideConsumed(&dialog, Qt::Key_Tab));
}

void MainWindowTest::quitSaves()
{
    constructAndShow();
    m_window->model()->setCurrentCategory("Gamma");
    QTimer::singleShot(0, this, [this] { trayAction(1)->trigger(); });
    QObject deadline;
    QTimer::singleShot(10000, &deadline, [] { QCoreApplication::exit(EXIT_FAILURE); });
    QCOMPARE(QApplication::exec(), EXIT_SUCCESS);
    QCOMPARE(stored(kLastCategory), "Gamma");
}

QTEST_MAIN(MainWindowTest)
#include "tst_mainwindow.moc"
