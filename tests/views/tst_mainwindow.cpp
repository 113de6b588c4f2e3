// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AutoQuitBlocker.h"
#include "CardShadow.h"
#include "MainWindowFixture.h"
#include "Pixels.h"
#include "UiDriver.h"

#include <QDialog>
#include <QGraphicsDropShadowEffect>
#include <QLayout>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <memory>

/// The window as it stands on the screen, how it comes, how it goes, and how it is moved.
class MainWindowTest : public MainWindowFixture
{
    Q_OBJECT

private slots:
    void constructedHidden();
    void constructionSetsTheApplicationFont();
    void blockerFlagIsClearedAfterASecond();
    void blockerFlagStaysWhileAGuardLives();

    void lastCategoryIsUsed_data();
    void lastCategoryIsUsed();
    void lastCategoryIsSavedOnFade();
    void emptyCategoryIsNotSaved();

    void showAppearsAtOnce();
    void showEmitsEachTime();
    void showGoesBackToTheFirstPage();
    void showStopsAFade();

    void fadeOut();
    void secondFadeIsNone();
    void closingLastsUntilTheNextShow();
    void destroyedInMidFade();
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

    void backgroundStyle_data();
    void backgroundStyle();
    void shadow_data();
    void shadow();
    void shadowFollowsTheCard();
    void shadowLooksAsThatOfTheCard_data();
    void shadowLooksAsThatOfTheCard();
    void repaintStaysInItsPlace();
    void shadowIsBlurredOncePerShow();

    void dragMoves_data();
    void dragMoves();
    void dragEndsWithTheLeftButton();
    void dragThroughAChild();
    void dragIsForgottenAtTheNextShow();

private:
    void showPastTheGuard();
    QTimer* guardTimer() const;
    QFrame* shadowLayer() const;
    CardShadow* cardShadow() const;
};

void MainWindowTest::showPastTheGuard()
{
    construct();
    QSignalSpy guardEnds(guardTimer(), &QTimer::timeout);
    m_window->show();
    QVERIFY(guardEnds.wait());
    QTRY_VERIFY(!g_blockAutoQuit);
    QTRY_VERIFY(m_window->isActiveWindow());
}

QTimer* MainWindowTest::guardTimer() const
{
    for (QTimer* timer : m_window->findChildren<QTimer*>(Qt::FindDirectChildrenOnly)) {
        if (timer->isSingleShot() && (timer->interval() == 1500 || timer->interval() == 0))
            return timer;
    }
    return nullptr;
}

QFrame* MainWindowTest::shadowLayer() const
{
    return m_window->findChild<QFrame*>("bgShadowLayer", Qt::FindDirectChildrenOnly);
}

CardShadow* MainWindowTest::cardShadow() const
{
    return qobject_cast<CardShadow*>(shadowLayer()->graphicsEffect());
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

void MainWindowTest::destroyedInMidFade()
{
    constructAndShow();
    m_window->fadeOutAndHide();
    QVERIFY(runningFade());
    m_window.reset();
    QVERIFY(m_backend->registrations().isEmpty());
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
    QCOMPARE(MainWindow::GRID_CELL, 132);
    QCOMPARE(MainWindow::GRID_COLS_DESIGN, 4);
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
    // The pages have the same round corners, and each such layer rounds in its own way.
    stack()->hide();
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

QTEST_MAIN(MainWindowTest)
#include "tst_mainwindow.moc"
