// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AppIndex.h"
#include "AutoQuitBlocker.h"
#include "FakeApplications.h"
#include "FileIndex.h"
#include "HotkeyManager.h"
#include "Localization.h"
#include "Pixels.h"
#include "SpotlightTest.h"
#include "TestScreens.h"

#include <QApplication>
#include <QGraphicsDropShadowEffect>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

#include <memory>

namespace
{

QString cornersSheet(const char* name, const QString& color, int top, int bottom)
{
    return QStringLiteral("QFrame#%1 {background-color: %2; border: none; "
                          "border-top-left-radius: %3px; border-top-right-radius: %3px; "
                          "border-bottom-left-radius: %4px; border-bottom-right-radius: %4px;}")
        .arg(QString::fromLatin1(name), color)
        .arg(top)
        .arg(bottom);
}

} // namespace

class SpotlightWindowTest : public QObject, protected SpotlightTest
{
    Q_OBJECT

public:
    static void initMain()
    {
        TestHome::install();
        TestScreens::install();
    }

private slots:
    void init();
    void cleanup();

    void indexesOnceTheLoopRuns(); // the first, because a process does so once

    void constants_data();
    void constants();
    void frameOfTheWindow();
    void layouts();
    void searchBoxContents();
    void resultsListSetup();

    void startsHidden();
    void hotkeyIsRegistered();
    void hotkeyToggles();
    void hotkeyDuringTheFadeEndsHidden_data();
    void hotkeyDuringTheFadeEndsHidden();
    void showDuringTheFadeOfAHiddenWindow();
    void fadeIsShortAndLinear();
    void secondFadeIsTheFirst();
    void showTellsAndTakesTheFocus();
    void showResetsEverything();
    void escapeFades();
    void otherWindowHidesIt();

    void guardRunsAtEveryShow();
    void focusLostDuringTheGuard();
    void focusLostAfterTheGuard();
    void focusLostToAnOwnWindow();
    void focusLostWhileBlocked();
    void focusLostWithoutReason();
    void showBlocksTheOtherWindow();

    void otherKeysReachTheField();
    void focusNeverLeavesTheField();

    void sheets_data();
    void sheets();
    void stripIsFusedWithThePanel();
    void shadowColor_data();
    void shadowColor();
    void magnifierLook();
    void textsFollowTheLanguage();
    void showReadsTheThemeAnew();
};

void SpotlightWindowTest::init()
{
    makeSpotlight();
}

void SpotlightWindowTest::cleanup()
{
    f.reset();
}

void SpotlightWindowTest::indexesOnceTheLoopRuns()
{
    QVERIFY(!AppIndex::isBuilt()); // though there is a window
    f.reset();
    QCoreApplication::processEvents(); // in its first turn there is none any more
    QVERIFY(!AppIndex::isBuilt());
    f = std::make_unique<SpotlightFixture>();
    QVERIFY(!AppIndex::isBuilt());
    QTRY_VERIFY(AppIndex::isBuilt());
    QTRY_VERIFY(FileIndex::isReady());
    f = std::make_unique<SpotlightFixture>();
    QCoreApplication::processEvents();
    QCOMPARE(FakeApplications::listCount(), 1);
}

void SpotlightWindowTest::constants_data()
{
    QTest::addColumn<int>("actual");
    QTest::addColumn<int>("expected");
    QTest::newRow("SHADOW_MARGIN") << SpotlightWindow::SHADOW_MARGIN << 32;
    QTest::newRow("WINDOW_WIDTH") << SpotlightWindow::WINDOW_WIDTH << 584;
    QTest::newRow("PILL_HEIGHT") << SpotlightWindow::PILL_HEIGHT << 80;
    QTest::newRow("SEARCH_BOX_HEIGHT") << SpotlightWindow::SEARCH_BOX_HEIGHT << 44;
    QTest::newRow("STRIP_PAD") << SpotlightWindow::STRIP_PAD << 18;
    QTest::newRow("PILL_INSET") << SpotlightWindow::PILL_INSET << 8;
    QTest::newRow("ChipRowWidth") << SpotlightWindow::ChipRowWidth << 484;
    QTest::newRow("SEAM_GAP") << SpotlightWindow::SEAM_GAP << 0;
    QTest::newRow("RESULTS_PAD_SIDE") << SpotlightWindow::RESULTS_PAD_SIDE << 6;
    QTest::newRow("RESULTS_PAD_TOP") << SpotlightWindow::RESULTS_PAD_TOP << 4;
    QTest::newRow("RESULTS_PAD_BOTTOM") << SpotlightWindow::RESULTS_PAD_BOTTOM << 4;
    QTest::newRow("VISIBLE_ROWS") << SpotlightWindow::VISIBLE_ROWS << 5;
    QTest::newRow("APP_LIMIT") << SpotlightWindow::APP_LIMIT << 12;
    QTest::newRow("FILE_LIMIT") << SpotlightWindow::FILE_LIMIT << 12;
    QTest::newRow("ShowGuardMs") << SpotlightWindow::ShowGuardMs << 1500;
    QTest::newRow("RoleUsageKey") << SpotlightWindow::RoleUsageKey << 271;
}

void SpotlightWindowTest::constants()
{
    QFETCH(int, actual);
    QTEST(actual, "expected");
}

void SpotlightWindowTest::frameOfTheWindow()
{
    QCOMPARE(f->window.windowFlags(), Qt::WindowFlags(Qt::FramelessWindowHint | Qt::Tool));
    QVERIFY(f->window.testAttribute(Qt::WA_TranslucentBackground));
    QCOMPARE(f->window.styleSheet(),
             QStringLiteral("QWidget { font-family: %1; }").arg(FontTokens::Family));
    QCOMPARE(f->window.size(), QSize(584, kEmptyHeight));
    QCOMPARE(f->window.minimumHeight(), kEmptyHeight);
    QCOMPARE(f->window.maximumHeight(), kEmptyHeight);
}

void SpotlightWindowTest::layouts()
{
    const auto* root = qobject_cast<QVBoxLayout*>(f->window.layout());
    QVERIFY(root);
    QCOMPARE(root->contentsMargins(), QMargins(32, 32, 32, 32));
    QCOMPARE(root->spacing(), 0);
    QCOMPARE(root->count(), 1);
    QCOMPARE(root->itemAt(0)->widget(), f->shell());
    QCOMPARE(root->itemAt(0)->alignment(), Qt::AlignTop);
    for (const QFrame* plain : {f->shell(), f->panel()}) {
        QCOMPARE(plain->frameShape(), QFrame::NoFrame);
        QCOMPARE(plain->layout()->contentsMargins(), QMargins());
        QCOMPARE(plain->layout()->spacing(), 0);
    }
    QCOMPARE(f->shell()->layout()->itemAt(0)->widget(), f->pill());
    QCOMPARE(f->shell()->layout()->itemAt(1)->widget(), f->panel());
    QCOMPARE(f->pill()->layout()->contentsMargins(), QMargins(18, 18, 18, 18));
    QCOMPARE(f->pill()->layout()->spacing(), 18);
    QCOMPARE(f->pill()->layout()->itemAt(0)->widget(), f->box());
    QCOMPARE(f->pill()->layout()->itemAt(1)->widget(), f->chipRow());
}

void SpotlightWindowTest::searchBoxContents()
{
    QCOMPARE(f->box()->minimumHeight(), 44);
    QCOMPARE(f->box()->maximumHeight(), 44);
    const auto* layout = qobject_cast<QHBoxLayout*>(f->box()->layout());
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins(), QMargins(8, 0, 6, 0));
    QCOMPARE(layout->spacing(), 8);
    const QVector<QWidget*> order{f->filterButton(), f->field(), f->magnifier(),
                                  f->settingsButton()};
    QCOMPARE(layout->count(), 4);
    for (int i = 0; i < order.size(); ++i) {
        QCOMPARE(layout->itemAt(i)->widget(), order.at(i));
        QCOMPARE(layout->itemAt(i)->alignment(), Qt::AlignVCenter);
        QCOMPARE(layout->stretch(i), i == 1 ? 1 : 0);
    }
    QCOMPARE(f->filterButton()->minimumHeight(), 28);
    QCOMPARE(f->filterButton()->maximumHeight(), 28);
    QCOMPARE(f->filterButton()->focusPolicy(), Qt::NoFocus);
    QCOMPARE(f->filterButton()->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(f->magnifier()->minimumSize(), QSize(20, 20));
    QCOMPARE(f->magnifier()->maximumSize(), QSize(20, 20));
    QVERIFY(!f->field()->hasFrame());
}

void SpotlightWindowTest::resultsListSetup()
{
    const QListWidget* list = f->list();
    QCOMPARE(list->parentWidget(), f->panel());
    QVERIFY(f->panel()->isHidden());
    QCOMPARE(list->frameShape(), QFrame::NoFrame);
    QCOMPARE(list->styleSheet(),
             QStringLiteral("QListWidget { background: transparent; border: none; outline: 0; "
                            "padding: 4px 6px 4px 6px; }QListWidget::item { border: none; }"));
    QCOMPARE(list->focusPolicy(), Qt::NoFocus);
    QCOMPARE(list->selectionMode(), QAbstractItemView::SingleSelection);
    QCOMPARE(list->verticalScrollMode(), QAbstractItemView::ScrollPerPixel);
    QVERIFY(qobject_cast<SpotlightResultDelegate*>(list->itemDelegate()));
}

void SpotlightWindowTest::startsHidden()
{
    QCoreApplication::processEvents();
    QVERIFY(f->window.isHidden());
    QCOMPARE(f->window.windowOpacity(), 1.0);
    QCOMPARE(f->rows(), QStringList());
    QVERIFY(f->chips().isEmpty());
}

void SpotlightWindowTest::hotkeyIsRegistered()
{
    const GlobalHotkeyController* controller = f->window.hotkeyController();
    QVERIFY(controller);
    QCOMPARE(controller->slot(), &HotkeyManager::spotlightSlot);
    QCOMPARE(controller->windowId(), f->window.winId());
    QCOMPARE(HotkeyManager::spotlightSlot.combo, QStringLiteral("Ctrl+Alt+Y"));
    QCOMPARE(f->backend->registrations().size(), 1);
    const FakeHotkeyBackend::Registration& registration = f->backend->registrations().constFirst();
    QCOMPARE(registration.id, 2);
    QCOMPARE(registration.window, f->window.winId());
    QCOMPARE(registration.key, uint('Y'));
}

void SpotlightWindowTest::hotkeyToggles()
{
    f->pressHotkey();
    QVERIFY(f->window.isVisible());
    f->pressHotkey();
    QVERIFY(f->window.isVisible()); // fading
    QVERIFY(f->fade());
    QTRY_VERIFY(f->window.isHidden());
    QCOMPARE(f->window.windowOpacity(), 0.0);
    f->pressHotkey();
    QVERIFY(f->window.isVisible());
    QCOMPARE(f->window.windowOpacity(), 1.0);
}

void SpotlightWindowTest::hotkeyDuringTheFadeEndsHidden_data()
{
    QTest::addColumn<int>("atMs");
    QTest::newRow("at its first moment") << 0;
    QTest::newRow("in the middle") << 30;
    QTest::newRow("shortly before its end") << 59;
}

void SpotlightWindowTest::hotkeyDuringTheFadeEndsHidden()
{
    QFETCH(int, atMs);
    show();
    const QSignalSpy shown(&f->window, &SpotlightWindow::becameVisible);
    f->pressHotkey();
    QPropertyAnimation* fade = f->fade();
    QVERIFY(fade);
    fade->pause();
    fade->setCurrentTime(atMs);
    f->pressHotkey();
    f->pressHotkey();
    QCOMPARE(f->fade(), fade);
    QVERIFY(f->window.isVisible());
    fade->resume();
    QTRY_VERIFY(f->window.isHidden());
    QCOMPARE(shown.count(), 0);
}

void SpotlightWindowTest::showDuringTheFadeOfAHiddenWindow()
{
    show();
    f->window.fadeOutAndHide();
    const QPointer<QPropertyAnimation> fade = f->fade();
    fade->pause();
    fade->setCurrentTime(30);
    f->window.hide(); // as the window system may do at any time
    f->pressHotkey();
    QVERIFY(f->window.isVisible());
    QVERIFY(!fade || fade->state() == QAbstractAnimation::Stopped);
    QCOMPARE(f->window.windowOpacity(), 1.0);
    QTRY_VERIFY(!fade);
    QVERIFY(f->window.isVisible());
    f->pressHotkey(); // and a new fade can begin
    QTRY_VERIFY(f->window.isHidden());
}

void SpotlightWindowTest::fadeIsShortAndLinear()
{
    show();
    f->window.setWindowOpacity(0.6);
    const double opacity = f->window.windowOpacity();
    f->window.fadeOutAndHide();
    const QPropertyAnimation* fade = f->fade();
    QVERIFY(fade);
    QCOMPARE(fade->targetObject(), &f->window);
    QCOMPARE(fade->propertyName(), QByteArray("windowOpacity"));
    QCOMPARE(fade->duration(), 60);
    QCOMPARE(fade->startValue().toDouble(), opacity);
    QCOMPARE(fade->endValue().toDouble(), 0.0);
    QCOMPARE(fade->easingCurve(), QEasingCurve(QEasingCurve::Linear));
    QTRY_VERIFY(f->window.isHidden());
}

void SpotlightWindowTest::secondFadeIsTheFirst()
{
    show();
    f->window.fadeOutAndHide();
    f->window.fadeOutAndHide();
    f->window.hideForOtherWindow();
    QCOMPARE(f->window.findChildren<QPropertyAnimation*>().size(), 1);
    QTRY_VERIFY(f->window.isHidden());
    f->window.fadeOutAndHide(); // still on its way out, until the next show
    QVERIFY(!f->fade());
}

void SpotlightWindowTest::showTellsAndTakesTheFocus()
{
    const QSignalSpy shown(&f->window, &SpotlightWindow::becameVisible);
    show();
    QCOMPARE(shown.count(), 1);
    QTRY_VERIFY(f->field()->hasFocus());
    f->pressHotkey();
    QTRY_VERIFY(f->window.isHidden());
    QCOMPARE(shown.count(), 1);
    f->filterButton()->setFocus();
    show();
    QCOMPARE(shown.count(), 2);
    QCOMPARE(f->window.focusWidget(), f->field());
}

void SpotlightWindowTest::showResetsEverything()
{
    fill();
    dragTo(QPoint(5, 300));
    f->list()->setCurrentRow(4);
    QTRY_COMPARE(f->window.height(), kOpenHeight + 18 + kOneChipRow);
    f->pressHotkey();
    QTRY_VERIFY(f->window.isHidden());
    f->pressHotkey();
    QCOMPARE(f->field()->text(), QString());
    QCOMPARE(f->rows(), QStringList());
    QVERIFY(f->chips().isEmpty());
    QVERIFY(f->panel()->isHidden());
    const QRect area = screenArea();
    QCOMPARE(f->window.geometry(),
             QRect((area.width() - 584) / 2, area.height() / 4, 584, kEmptyHeight));
    QCOMPARE(f->pill()->styleSheet(),
             cornersSheet("spotlightSearchPill", Theme::shellBg(), 40, 40));
    QCOMPARE(f->window.anchoredY(kEmptyHeight), area.height() / 4);
}

void SpotlightWindowTest::escapeFades()
{
    fill();
    QTest::keyClick(f->field(), Qt::Key_Escape);
    QVERIFY(f->fade());
    QTRY_VERIFY(f->window.isHidden());
}

void SpotlightWindowTest::otherWindowHidesIt()
{
    f->window.hideForOtherWindow(); // hidden already
    QVERIFY(!f->fade());
    QCOMPARE(f->window.windowOpacity(), 1.0);
    show();
    f->window.hideForOtherWindow();
    QVERIFY(f->fade());
    QTRY_VERIFY(f->window.isHidden());
}

void SpotlightWindowTest::guardRunsAtEveryShow()
{
    const QTimer* guard = guardTimer(f->window);
    QVERIFY(!guard); // it has not been started yet
    show();
    guard = guardTimer(f->window);
    QVERIFY(guard);
    QVERIFY(guard->isSingleShot());
    QVERIFY(guard->isActive());
    QTRY_VERIFY(!guard->isActive());
    f->pressHotkey();
    QTRY_VERIFY(f->window.isHidden());
    show();
    QVERIFY(guard->isActive());
    QVERIFY(guard->remainingTime() > 1000);
}

void SpotlightWindowTest::focusLostDuringTheGuard()
{
    show();
    QTRY_VERIFY(!g_blockAutoQuit);
    QVERIFY(guardTimer(f->window)->isActive());
    QApplication::setActiveWindow(nullptr);
    QVERIFY(!f->window.isActiveWindow());
    QVERIFY(!f->fade());
    endGuards();
    QVERIFY(f->window.isVisible()); // nothing is made up for
    QVERIFY(!f->fade());
    f->pressHotkey(); // keys dismiss it at any time
    QTRY_VERIFY(f->window.isHidden());
}

void SpotlightWindowTest::focusLostAfterTheGuard()
{
    show();
    endGuards();
    QApplication::setActiveWindow(nullptr);
    QVERIFY(f->fade());
    QTRY_VERIFY(f->window.isHidden());
}

void SpotlightWindowTest::focusLostToAnOwnWindow()
{
    show();
    endGuards();
    QWidget other;
    other.show();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QVERIFY(!f->window.isActiveWindow());
    QVERIFY(!f->fade());
    QVERIFY(f->window.isVisible());
}

void SpotlightWindowTest::focusLostWhileBlocked()
{
    show();
    endGuards();
    {
        const AutoQuitBlocker blocker;
        QApplication::setActiveWindow(nullptr);
        QVERIFY(!f->fade());
        QApplication::setActiveWindow(&f->window);
    }
    QVERIFY(g_blockAutoQuit); // for a while longer
    QApplication::setActiveWindow(nullptr);
    QVERIFY(!f->fade());
    QApplication::setActiveWindow(&f->window);
    QTRY_VERIFY(!g_blockAutoQuit);
    QApplication::setActiveWindow(nullptr);
    QVERIFY(f->fade());
}

void SpotlightWindowTest::focusLostWithoutReason()
{
    show();
    endGuards();
    // Other changes of the window are none of activation.
    f->window.setWindowTitle(QStringLiteral("renamed"));
    QEvent change(QEvent::PaletteChange);
    QApplication::sendEvent(&f->window, &change);
    QEvent activation(QEvent::ActivationChange); // but the window is active
    QApplication::sendEvent(&f->window, &activation);
    QVERIFY(!f->fade());
}

void SpotlightWindowTest::showBlocksTheOtherWindow()
{
    QTRY_VERIFY(!g_blockAutoQuit);
    bool isBlocked = false;
    connect(&f->window, &SpotlightWindow::becameVisible, this,
            [&isBlocked] { isBlocked = g_blockAutoQuit; });
    f->pressHotkey();
    QVERIFY(isBlocked);
    QTRY_VERIFY(!g_blockAutoQuit);
}

void SpotlightWindowTest::otherKeysReachTheField()
{
    show();
    QTest::keyClicks(f->field(), QStringLiteral("ac"));
    QTest::keyClick(f->field(), Qt::Key_Left);
    QTest::keyClicks(f->field(), QStringLiteral("b"));
    QTest::keyClick(f->field(), Qt::Key_Home);
    QTest::keyClicks(f->field(), QStringLiteral("0"));
    QTest::keyClick(f->field(), Qt::Key_End);
    QTest::keyClicks(f->field(), QStringLiteral("d"));
    QCOMPARE(f->field()->text(), QStringLiteral("0abcd"));
}

void SpotlightWindowTest::focusNeverLeavesTheField()
{
    fill();
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Tab}) {
        QTest::keyClick(f->field(), key);
        QVERIFY(f->field()->hasFocus());
    }
    QTRY_VERIFY(f->chips().constFirst()->isVisible());
    QTest::mouseClick(f->chips().constFirst(), Qt::LeftButton);
    QVERIFY(f->field()->hasFocus());
    const QRect row = f->list()->visualItemRect(f->list()->item(1));
    QTest::mouseClick(f->list()->viewport(), Qt::LeftButton, Qt::NoModifier, row.center());
    QVERIFY(f->field()->hasFocus());
}

void SpotlightWindowTest::sheets_data()
{
    QTest::addColumn<int>("theme");
    QTest::newRow("light") << kLight;
    QTest::newRow("dark") << kDark;
}

void SpotlightWindowTest::sheets()
{
    QFETCH(int, theme);
    Theme::forceTheme = theme;
    f->window.applyThemeColors();
    const ColorTokens c = Theme::colors();
    QCOMPARE(f->shell()->styleSheet(),
             QStringLiteral("QFrame#spotlightShell { background: transparent; border: none; }"));
    QCOMPARE(f->shadowLayer()->styleSheet(),
             QStringLiteral("QFrame#spotlightShadowLayer { background-color: %1; border: none; "
                            "border-radius: 40px; }")
                 .arg(Theme::shellBg()));
    QCOMPARE(f->box()->styleSheet(),
             QStringLiteral("QFrame#spotlightSearchBox { background-color: %1; border: none; "
                            "border-radius: 22px; }")
                 .arg(Theme::boxBg()));
    QCOMPARE(f->field()->styleSheet(),
             QStringLiteral("QLineEdit { background: transparent; border: none; color: %1; "
                            "font-size: 14px; font-weight: 600; padding: 2px 0; }")
                 .arg(c.onSurface));
    GlyphButton resting;
    PillStyle::applyResting(&resting, 0xE145, false);
    QCOMPARE(f->filterButton()->styleSheet(), resting.styleSheet());
    QCOMPARE(f->filterButton()->text(), QStringLiteral("Filter"));
    QCOMPARE(f->field()->placeholderText(), QStringLiteral("Search..."));
}

void SpotlightWindowTest::stripIsFusedWithThePanel()
{
    show();
    const QString shellBg = Theme::shellBg();
    QCOMPARE(f->pill()->styleSheet(), cornersSheet("spotlightSearchPill", shellBg, 40, 40));
    const QString panelSheet = cornersSheet("spotlightResultsPanel", Theme::panelBg(), 0, 40);
    QCOMPARE(f->panel()->styleSheet(), panelSheet);
    fill();
    QCOMPARE(f->pill()->styleSheet(), cornersSheet("spotlightSearchPill", shellBg, 40, 0));
    QCOMPARE(f->panel()->styleSheet(), panelSheet);
    QCOMPARE(f->panel()->mapTo(f->shell(), QPoint(0, 0)).y(), f->pill()->height()); // no seam
    Theme::forceTheme = kDark;
    f->window.applyThemeColors(); // keeps the shape
    QVERIFY(Theme::shellBg() != shellBg);
    QCOMPARE(f->pill()->styleSheet(), cornersSheet("spotlightSearchPill", Theme::shellBg(), 40, 0));
    f->field()->clear();
    QCOMPARE(f->pill()->styleSheet(),
             cornersSheet("spotlightSearchPill", Theme::shellBg(), 40, 40));
}

void SpotlightWindowTest::shadowColor_data()
{
    QTest::addColumn<int>("theme");
    QTest::addColumn<int>("alpha");
    QTest::newRow("light") << kLight << 40;
    QTest::newRow("dark") << kDark << 150;
}

void SpotlightWindowTest::shadowColor()
{
    QFETCH(int, theme);
    QFETCH(int, alpha);
    Theme::forceTheme = theme;
    show();
    const auto* effect =
        qobject_cast<QGraphicsDropShadowEffect*>(f->shadowLayer()->graphicsEffect());
    QCOMPARE(effect->color(), QColor(0, 0, 0, alpha));
}

void SpotlightWindowTest::magnifierLook()
{
    for (const int theme : {kLight, kDark}) {
        Theme::forceTheme = theme;
        f->window.applyThemeColors();
        QCOMPARE(f->magnifier()->sizeHint(), QSize(16, 16));
        GlyphLabel expected;
        expected.setFixedSize(20, 20);
        expected.setGlyph(0xEF7A, 16, Theme::colors().onSurfaceVariant);
        QCOMPARE(Pixels::imageOf(*f->magnifier()), Pixels::imageOf(expected));
    }
}

void SpotlightWindowTest::textsFollowTheLanguage()
{
    show();
    f->window.setScopeKeys({"Folder"});
    Tr::currentLang = Lang::Ja;
    f->window.applyThemeColors();
    QCOMPARE(f->filterButton()->text(), QStringLiteral("フィルター"));
    QCOMPARE(f->field()->placeholderText(), QStringLiteral("検索..."));
    QCOMPARE(f->chipTexts(), QStringList{QStringLiteral("フォルダー")});
    QCOMPARE(f->chips().constFirst()->toolTip(), QStringLiteral("このフィルターを解除"));
}

void SpotlightWindowTest::showReadsTheThemeAnew()
{
    Theme::forceTheme = kDark;
    Tr::currentLang = Lang::Es;
    QVERIFY(!f->box()->styleSheet().contains(Theme::boxBg()));
    show();
    QVERIFY(f->box()->styleSheet().contains(Theme::boxBg()));
    QCOMPARE(f->field()->placeholderText(), QStringLiteral("Buscar..."));
}

QTEST_MAIN(SpotlightWindowTest)
#include "tst_spotlightwindow.moc"
