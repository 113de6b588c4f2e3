// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AppIndex.h"
#include "AutoQuitBlocker.h"
#include "ConfirmDot.h"
#include "EventCounter.h"
#include "FakeApplications.h"
#include "FileIndex.h"
#include "HotkeyManager.h"
#include "IconHelper.h"
#include "Localization.h"
#include "Pixels.h"
#include "SpotlightFixture.h"
#include "TestScreens.h"
#include "UiDriver.h"

#include <QApplication>
#include <QClipboard>
#include <QGraphicsDropShadowEffect>
#include <QMenu>
#include <QScreen>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

#include <functional>
#include <memory>
#include <utility>

namespace
{

constexpr int kLight = 1;
constexpr int kDark = 2;
constexpr int kEmptyHeight = 144;
constexpr int kOpenHeight = 472;
constexpr int kOneChipRow = 28;

const QString kDefaultScope = QStringLiteral("Spotlight/DefaultScope");

/// The dot of the menu that is open.
ConfirmDot* confirmDot()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* dot = qobject_cast<ConfirmDot*>(widget))
            return dot;
    }
    return nullptr;
}

void clickDot(QMenu* menu)
{
    clickAt(menu, confirmDot()->geometry().center());
}

QRect rowOf(const QMenu* menu, int index)
{
    return menu->actionGeometry(menu->actions().at(index));
}

void clickRow(QMenu* menu, int index)
{
    clickAt(menu, menu->mapToGlobal(rowOf(menu, index).center()));
}

QTimer* guardTimer(const SpotlightWindow& window)
{
    for (QTimer* timer : window.findChildren<QTimer*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (timer->interval() == SpotlightWindow::ShowGuardMs)
            return timer;
    }
    return nullptr;
}

QString cornersSheet(const char* name, const QString& color, int top, int bottom)
{
    return QStringLiteral("QFrame#%1 {background-color: %2; border: none; "
                          "border-top-left-radius: %3px; border-top-right-radius: %3px; "
                          "border-bottom-left-radius: %4px; border-bottom-right-radius: %4px;}")
        .arg(QString::fromLatin1(name), color)
        .arg(top)
        .arg(bottom);
}

QRect screenArea()
{
    return QGuiApplication::primaryScreen()->availableGeometry();
}

} // namespace

class SpotlightWindowTest : public QObject
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
    void chipRowLayout();
    void resultsListSetup();
    void heights_data();
    void heights();
    void stripHeightFollowsTheChips();
    void panelHasTwoHeightsOnly();
    void typingDoesNotResize();
    void shadowFollowsTheShell();

    void startsHidden();
    void hotkeyIsRegistered();
    void hotkeyToggles();
    void hotkeyDuringTheFadeEndsHidden_data();
    void hotkeyDuringTheFadeEndsHidden();
    void showDuringTheFadeOfAHiddenWindow();
    void fadeIsShortAndLinear();
    void secondFadeIsTheFirst();
    void showTellsAndTakesTheFocus();
    void showPlacesTheWindow();
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

    void menuKeys_data();
    void menuKeys();
    void backspaceRemovesTheLastScope();
    void backspaceEditsTextFirst();
    void arrowsSkipHeaders();
    void arrowsStopAtTheEnds();
    void arrowsWithoutSelection();
    void arrowsWithoutRows();
    void moveSelectionByNothing();
    void hintsAreSkipped();
    void returnKeysLaunch_data();
    void returnKeysLaunch();
    void returnWithoutRowDoesNothing();
    void otherKeysReachTheField();
    void focusNeverLeavesTheField();

    void dragMovesTheWindow_data();
    void dragMovesTheWindow();
    void dragNeedsTheLeftButton();
    void dragEndsWithTheRelease();
    void dragIsForgottenAtTheNextShow();
    void fieldDoesNotDrag();
    void draggedWindowGrowsWhereItIs();
    void anchoredY_data();
    void anchoredY();
    void panelLiftsTheWindowAtTheBottom();
    void chipsLiftTheWindowAtTheBottom();

    void scopeDefs_data();
    void scopeDefs();
    void defaultScopes_data();
    void defaultScopes();
    void defaultScopesAreWrittenAsGiven();
    void chipsStandInFixedOrder();
    void chipLook();
    void clickedChipRemovesItsScope();
    void unknownScopeHasNoChip();
    void equalScopesChangeNothing();
    void scopesRebuildTheResults();
    void scopesLastUntilTheNextShow();

    void menuHoldsTheScopes();
    void menuOpensBelowItsButton();
    void menuChecksTheActiveScopes();
    void menuEscapeChangesNothing_data();
    void menuEscapeChangesNothing();
    void menuDotCommitsForThisShow();
    void menuTogglesTwiceIsNothing();
    void menuOrderIsThatOfToggling();
    void menuRowsStayOpen_data();
    void menuRowsStayOpen();
    void menuDotStandsBesideTheRow();
    void menuDotFlipsAtTheScreenEdge_data();
    void menuDotFlipsAtTheScreenEdge();
    void menuDotHidesUntilToggled();
    void menuBlocksHiding();
    void hotkeyWhileTheMenuIsOpen();

    void sheets_data();
    void sheets();
    void stripIsFusedWithThePanel();
    void shadowColor_data();
    void shadowColor();
    void magnifierLook();
    void textsFollowTheLanguage();
    void showReadsTheThemeAnew();

private:
    void show();
    void dragTo(const QPoint& pos);
    void fill();
    void endGuards();

    std::unique_ptr<SpotlightFixture> f;
};

void SpotlightWindowTest::init()
{
    Theme::forceTheme = kLight;
    Tr::currentLang = Lang::En;
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    f = std::make_unique<SpotlightFixture>();
}

void SpotlightWindowTest::cleanup()
{
    f.reset();
}

void SpotlightWindowTest::show()
{
    f->pressHotkey();
    QVERIFY(QTest::qWaitForWindowActive(&f->window));
}

/// Moves the window as a user does, by its strip.
void SpotlightWindowTest::dragTo(const QPoint& pos)
{
    const QPoint grab = f->window.pos() + QPoint(SpotlightWindow::WINDOW_WIDTH / 2, 40);
    sendMouse(f->pill(), QEvent::MouseButtonPress, grab);
    sendMouse(f->pill(), QEvent::MouseMove, grab + pos - f->window.pos());
    sendMouse(f->pill(), QEvent::MouseButtonRelease, grab + pos - f->window.pos());
    QCOMPARE(f->window.pos(), pos);
}

/// Two groups of two, shown: headers at rows 0 and 3.
void SpotlightWindowTest::fill()
{
    f->setItems({makeItem("note one", "Snippet", "1"), makeItem("note two", "Snippet", "2"),
                 makeItem("note three", "URL"), makeItem("note four", "URL")});
    show();
    f->window.setScopeKeys({"Snippet", "URL"});
    f->field()->setText(QStringLiteral("note"));
    QCOMPARE(f->rows(), QStringList({"# Snippet", "note one", "note two", "# Web Bookmark",
                                     "note three", "note four"}));
}

/// Waits until neither the show nor a dialog keeps the window from hiding.
void SpotlightWindowTest::endGuards()
{
    QTimer* guard = guardTimer(f->window);
    guard->start(0);
    QTRY_VERIFY(!guard->isActive());
    QTRY_VERIFY(!g_blockAutoQuit);
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
    const QVector<QWidget*> order{f->filterButton(), f->field(), f->magnifier()};
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

void SpotlightWindowTest::chipRowLayout()
{
    auto* layout = dynamic_cast<FlowLayout*>(f->chipRow()->layout());
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins(), QMargins(8, 0, 8, 0));
    QVERIFY(f->chipRow()->isHidden());
    show();
    f->window.setScopeKeys({"Application", "URL", "File", "Folder", "Snippet", "Bulk"});
    QTRY_VERIFY(f->chips().constLast()->isVisible());
    const QVector<GlyphButton*> chips = f->chips();
    QCOMPARE(f->chipRow()->geometry(), QRect(18, 80, 484, layout->heightForWidth(484)));
    QCOMPARE(chips.at(0)->pos(), QPoint(8, 0));
    QCOMPARE(chips.at(1)->x(), chips.at(0)->geometry().right() + 1 + 8);
    const int lastRow = chips.constLast()->y();
    QVERIFY(lastRow > 0); // six chips need two rows
    QCOMPARE(lastRow % (kOneChipRow + 8), 0);
    QCOMPARE(f->chipRow()->height(), lastRow + kOneChipRow);
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

void SpotlightWindowTest::heights_data()
{
    QTest::addColumn<int>("strip");
    QTest::addColumn<int>("panel");
    QTest::addColumn<int>("expected");
    QTest::newRow("empty") << 80 << 0 << 144;
    QTest::newRow("with results") << 80 << 328 << 472;
    QTest::newRow("with chips") << 126 << 0 << 190;
    QTest::newRow("with both") << 126 << 328 << 518;
    QTest::newRow("negative panel") << 80 << -1 << 144;
    QTest::newRow("very negative panel") << 80 << -1000 << 144;
}

void SpotlightWindowTest::heights()
{
    QFETCH(int, strip);
    QFETCH(int, panel);
    QTEST(f->window.windowHeightFor(strip, panel), "expected");
}

void SpotlightWindowTest::stripHeightFollowsTheChips()
{
    show();
    QCOMPARE(f->window.chipRowHeight(), 0);
    QCOMPARE(f->window.searchStripHeight(), 80);
    QCOMPARE(f->window.emptyStateHeight(), kEmptyHeight);
    f->window.setScopeKeys({"File"});
    QCOMPARE(f->window.chipRowHeight(), kOneChipRow);
    QCOMPARE(f->window.searchStripHeight(), 98 + kOneChipRow);
    QCOMPARE(f->window.emptyStateHeight(), kEmptyHeight + 18 + kOneChipRow);
    QCOMPARE(f->pill()->height(), 98 + kOneChipRow);
    QCOMPARE(f->window.height(), kEmptyHeight + 18 + kOneChipRow);
    f->window.setScopeKeys({"Application", "URL", "File", "Folder", "Snippet", "Bulk"});
    const int twoRows = 2 * kOneChipRow + 8;
    QCOMPARE(f->window.chipRowHeight(), twoRows);
    QCOMPARE(f->pill()->height(), 98 + twoRows);
    f->window.setScopeKeys({});
    QCOMPARE(f->pill()->height(), 80);
    QCOMPARE(f->window.height(), kEmptyHeight);
    QVERIFY(f->chipRow()->isHidden());
}

void SpotlightWindowTest::panelHasTwoHeightsOnly()
{
    for (const int rows : {-5, 0})
        QCOMPARE(f->window.panelHeightFor(rows), 0);
    for (const int rows : {1, 2, 5, 6, 100000})
        QCOMPARE(f->window.panelHeightFor(rows), 328);
    f->setItems({makeItem("only one", "Snippet")});
    show();
    f->window.setScopeKeys({"Snippet"});
    f->field()->setText(QStringLiteral("only"));
    QCOMPARE(f->list()->count(), 1);
    QVERIFY(f->panel()->isVisible());
    QCOMPARE(f->panel()->height(), 328);
    QCOMPARE(f->shell()->height(), 98 + kOneChipRow + 328);
    f->field()->setText(QStringLiteral("only nothing"));
    QVERIFY(f->panel()->isHidden());
    QCOMPARE(f->shell()->height(), 98 + kOneChipRow);
}

void SpotlightWindowTest::typingDoesNotResize()
{
    fill();
    QTRY_COMPARE(f->window.height(), kOpenHeight + 18 + kOneChipRow);
    QCoreApplication::processEvents();
    const EventCounter windowSizes(&f->window, QEvent::Resize);
    const EventCounter panelSizes(f->panel(), QEvent::Resize);
    const EventCounter styles(f->pill(), QEvent::StyleChange);
    for (const char* text : {"note ", "note t", "note tw", "note two", "o", "n"}) {
        f->field()->setText(QString::fromLatin1(text));
        QVERIFY(f->list()->count() > 0);
        QCoreApplication::processEvents();
    }
    QCOMPARE(windowSizes.count, 0);
    QCOMPARE(panelSizes.count, 0);
    QCOMPARE(styles.count, 0);
    f->field()->clear();
    QCOMPARE(windowSizes.count, 1);
}

void SpotlightWindowTest::shadowFollowsTheShell()
{
    const auto* effect =
        qobject_cast<QGraphicsDropShadowEffect*>(f->shadowLayer()->graphicsEffect());
    QVERIFY(effect);
    QCOMPARE(effect->blurRadius(), 35.0);
    QCOMPARE(effect->offset(), QPointF(0, 10));
    QCOMPARE(f->shadowLayer()->frameShape(), QFrame::NoFrame);
    QVERIFY(f->shadowLayer()->testAttribute(Qt::WA_TransparentForMouseEvents));
    QCOMPARE(f->shadowLayer()->parentWidget(), &f->window);
    QCOMPARE(f->window.layout()->indexOf(f->shadowLayer()), -1);
    QVERIFY(f->window.children().indexOf(f->shadowLayer()) <
            f->window.children().indexOf(f->shell())); // painted below it
    fill();
    QTRY_COMPARE(f->shell()->geometry(), QRect(32, 32, 520, 98 + kOneChipRow + 328));
    QCOMPARE(f->shadowLayer()->geometry(), f->shell()->geometry());
    f->window.setScopeKeys({});
    f->field()->clear();
    QTRY_COMPARE(f->shell()->geometry(), QRect(32, 32, 520, 80));
    QCOMPARE(f->shadowLayer()->geometry(), f->shell()->geometry());
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

void SpotlightWindowTest::showPlacesTheWindow()
{
    show();
    const QRect area = screenArea();
    QCOMPARE(f->window.geometry(),
             QRect((area.width() - 584) / 2, area.height() / 4, 584, kEmptyHeight));
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

void SpotlightWindowTest::menuKeys_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<bool>("opens");
    const Qt::KeyboardModifiers none = Qt::NoModifier;
    QTest::newRow("F4") << Qt::Key_F4 << none << true;
    QTest::newRow("Ctrl+F4") << Qt::Key_F4 << Qt::KeyboardModifiers(Qt::ControlModifier) << true;
    QTest::newRow("Alt+Down") << Qt::Key_Down << Qt::KeyboardModifiers(Qt::AltModifier) << true;
    QTest::newRow("Ctrl+Alt+Down")
        << Qt::Key_Down << (Qt::AltModifier | Qt::ControlModifier) << true;
    QTest::newRow("Down") << Qt::Key_Down << none << false;
    QTest::newRow("Shift+Down") << Qt::Key_Down << Qt::KeyboardModifiers(Qt::ShiftModifier)
                                << false;
    QTest::newRow("Alt+Up") << Qt::Key_Up << Qt::KeyboardModifiers(Qt::AltModifier) << false;
    QTest::newRow("F3") << Qt::Key_F3 << none << false;
}

void SpotlightWindowTest::menuKeys()
{
    QFETCH(Qt::Key, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(bool, opens);
    fill();
    f->list()->setCurrentRow(2);
    const MenuDriver driver([](QMenu* menu) { QTest::keyClick(menu, Qt::Key_Escape); });
    QTest::keyClick(f->field(), key, modifiers);
    QCOMPARE(driver.hasClosed(), opens);
    const bool isPlainDown = key == Qt::Key_Down && !opens;
    const bool isUp = key == Qt::Key_Up;
    QCOMPARE(f->list()->currentRow(), isPlainDown ? 4 : isUp ? 1 : 2);
    QCOMPARE(f->field()->text(), QStringLiteral("note"));
    QCOMPARE(f->window.focusWidget(), f->field());
}

void SpotlightWindowTest::backspaceRemovesTheLastScope()
{
    show();
    f->window.setScopeKeys({"Snippet", "File", "Application"});
    QCOMPARE(f->chipTexts(), QStringList({"Application", "File", "Snippet"}));
    QTest::keyClick(f->field(), Qt::Key_Backspace); // the last one that was chosen
    QCOMPARE(f->chipTexts(), QStringList({"File", "Snippet"}));
    QTest::keyClick(f->field(), Qt::Key_Backspace);
    QCOMPARE(f->chipTexts(), QStringList({"Snippet"}));
    QTest::keyClick(f->field(), Qt::Key_Backspace);
    QCOMPARE(f->chipTexts(), QStringList());
    QTest::keyClick(f->field(), Qt::Key_Backspace);
    QVERIFY(f->chips().isEmpty());
    QVERIFY(f->window.isVisible());
    QVERIFY(!f->fade());
}

void SpotlightWindowTest::backspaceEditsTextFirst()
{
    show();
    f->window.setScopeKeys({"File"});
    QTest::keyClicks(f->field(), QStringLiteral("ab"));
    QTest::keyClick(f->field(), Qt::Key_Backspace);
    QCOMPARE(f->field()->text(), QStringLiteral("a"));
    QCOMPARE(f->chips().size(), 1);
    QTest::keyClick(f->field(), Qt::Key_Backspace);
    QCOMPARE(f->field()->text(), QString());
    QCOMPARE(f->chips().size(), 1); // the press that empties the field does no more
    QTest::keyClick(f->field(), Qt::Key_Delete);
    QCOMPARE(f->chips().size(), 1);
    QTest::keyClicks(f->field(), QStringLiteral(" "));
    f->field()->home(false);
    QTest::keyClick(f->field(), Qt::Key_Backspace); // at the start, but not of an empty text
    QCOMPARE(f->chips().size(), 1);
}

void SpotlightWindowTest::arrowsSkipHeaders()
{
    fill();
    QCOMPARE(f->list()->currentRow(), 1);
    for (const int expected : {2, 4, 5}) {
        QTest::keyClick(f->field(), Qt::Key_Down);
        QCOMPARE(f->list()->currentRow(), expected);
    }
    for (const int expected : {4, 2, 1}) {
        QTest::keyClick(f->field(), Qt::Key_Up);
        QCOMPARE(f->list()->currentRow(), expected);
    }
}

void SpotlightWindowTest::arrowsStopAtTheEnds()
{
    fill();
    QTest::keyClick(f->field(), Qt::Key_Up); // only a header stands above
    QCOMPARE(f->list()->currentRow(), 1);
    QCOMPARE(f->selected(), QStringLiteral("note one"));
    f->list()->setCurrentRow(5);
    QTest::keyClick(f->field(), Qt::Key_Down);
    QCOMPARE(f->list()->currentRow(), 5);
    f->window.setScopeKeys({"URL"}); // no header at all
    QCOMPARE(f->list()->currentRow(), 0);
    QTest::keyClick(f->field(), Qt::Key_Up);
    QCOMPARE(f->list()->currentRow(), 0);
    QCOMPARE(f->selected(), QStringLiteral("note three"));
}

void SpotlightWindowTest::arrowsWithoutSelection()
{
    fill();
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up}) {
        f->list()->setCurrentRow(-1);
        QTest::keyClick(f->field(), key);
        QCOMPARE(f->list()->currentRow(), 1);
    }
}

void SpotlightWindowTest::arrowsWithoutRows()
{
    show();
    QTest::keyClicks(f->field(), QStringLiteral("x"));
    f->window.setScopeKeys({"Snippet"});
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up}) {
        QTest::keyClick(f->field(), key);
        QCOMPARE(f->list()->currentRow(), -1);
    }
    QCOMPARE(f->field()->cursorPosition(), 1); // consumed, not handed to the field
    auto* header = new QListWidgetItem(QStringLiteral("alone"), f->list());
    header->setData(SpotlightResultDelegate::RoleIsHeader, true);
    header->setFlags(Qt::NoItemFlags);
    QTest::keyClick(f->field(), Qt::Key_Down);
    QCOMPARE(f->list()->currentRow(), -1);
}

void SpotlightWindowTest::moveSelectionByNothing()
{
    fill();
    f->list()->setCurrentRow(-1);
    f->window.moveSelection(0);
    QCOMPARE(f->list()->currentRow(), -1);
}

void SpotlightWindowTest::hintsAreSkipped()
{
    fill();
    f->list()->item(2)->setData(SpotlightResultDelegate::RoleIsHint, true);
    QTest::keyClick(f->field(), Qt::Key_Down);
    QCOMPARE(f->list()->currentRow(), 4);
    QTest::keyClick(f->field(), Qt::Key_Up);
    QCOMPARE(f->list()->currentRow(), 1);
}

void SpotlightWindowTest::returnKeysLaunch_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::newRow("Return") << Qt::Key_Return << Qt::KeyboardModifiers(Qt::NoModifier);
    QTest::newRow("Enter") << Qt::Key_Enter << Qt::KeyboardModifiers(Qt::KeypadModifier);
    QTest::newRow("Shift+Return") << Qt::Key_Return << Qt::KeyboardModifiers(Qt::ShiftModifier);
}

void SpotlightWindowTest::returnKeysLaunch()
{
    QFETCH(Qt::Key, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    fill();
    QTest::keyClick(f->field(), Qt::Key_Down);
    QTest::keyClick(f->field(), key, modifiers);
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("2"));
    QTRY_VERIFY(f->window.isHidden());
}

void SpotlightWindowTest::returnWithoutRowDoesNothing()
{
    show();
    QTest::keyClick(f->field(), Qt::Key_Return);
    QTest::keyClicks(f->field(), QStringLiteral("x"));
    f->list()->clear();
    QTest::keyClick(f->field(), Qt::Key_Enter);
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("before"));
    QCOMPARE(f->field()->text(), QStringLiteral("x"));
    QVERIFY(!f->fade());
    QVERIFY(f->window.isVisible());
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

void SpotlightWindowTest::dragMovesTheWindow_data()
{
    QTest::addColumn<QString>("where");
    QTest::newRow("shell") << "spotlightShell";
    QTest::newRow("strip") << "spotlightSearchPill";
    QTest::newRow("box") << "spotlightSearchBox";
    QTest::newRow("margin") << QString();
}

void SpotlightWindowTest::dragMovesTheWindow()
{
    QFETCH(QString, where);
    show();
    QWidget* grabbed = where.isEmpty() ? &f->window : f->window.findChild<QWidget*>(where);
    QVERIFY(grabbed);
    const QPoint start = f->window.pos();
    const QPoint grab = start + QPoint(300, 36);
    sendMouse(grabbed, QEvent::MouseButtonPress, grab);
    QCOMPARE(f->window.pos(), start);
    for (const QPoint& way : {QPoint(1, 0), QPoint(-40, 25), QPoint(-300, -500)}) {
        sendMouse(grabbed, QEvent::MouseMove, grab + way);
        QCOMPARE(f->window.pos(), start + way);
    }
    sendMouse(grabbed, QEvent::MouseButtonRelease, grab);
}

void SpotlightWindowTest::dragNeedsTheLeftButton()
{
    show();
    const QPoint start = f->window.pos();
    const QPoint grab = start + QPoint(300, 36);
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
        sendMouse(f->pill(), QEvent::MouseButtonPress, grab, button);
        sendMouse(f->pill(), QEvent::MouseMove, grab + QPoint(50, 50), button);
        sendMouse(f->pill(), QEvent::MouseButtonRelease, grab + QPoint(50, 50), button);
        QCOMPARE(f->window.pos(), start);
    }
}

void SpotlightWindowTest::dragEndsWithTheRelease()
{
    show();
    const QPoint start = f->window.pos();
    const QPoint grab = start + QPoint(300, 36);
    for (const Qt::MouseButton released : {Qt::LeftButton, Qt::RightButton}) {
        sendMouse(f->pill(), QEvent::MouseButtonPress, grab);
        sendMouse(f->pill(), QEvent::MouseButtonRelease, grab, released); // of any button
        sendMouse(f->pill(), QEvent::MouseMove, grab + QPoint(50, 50));
        QCOMPARE(f->window.pos(), start);
    }
}

void SpotlightWindowTest::dragIsForgottenAtTheNextShow()
{
    show();
    const QPoint start = f->window.pos();
    const QPoint grab = start + QPoint(300, 36);
    sendMouse(f->pill(), QEvent::MouseButtonPress, grab);
    sendMouse(f->pill(), QEvent::MouseMove, grab + QPoint(50, 50));
    QCOMPARE(f->window.pos(), start + QPoint(50, 50));
    // The button is released over whatever is there then.
    f->window.fadeOutAndHide();
    QTRY_VERIFY(f->window.isHidden());
    show();
    QCOMPARE(f->window.pos(), start);
    sendMouse(f->pill(), QEvent::MouseMove, grab + QPoint(70, -30));
    QCOMPARE(f->window.pos(), start);
}

void SpotlightWindowTest::fieldDoesNotDrag()
{
    show();
    const QPoint start = f->window.pos();
    const QPoint grab = f->field()->mapToGlobal(f->field()->rect().center());
    sendMouse(f->field(), QEvent::MouseButtonPress, grab);
    sendMouse(f->field(), QEvent::MouseMove, grab + QPoint(50, 50));
    sendMouse(f->field(), QEvent::MouseButtonRelease, grab + QPoint(50, 50));
    QCOMPARE(f->window.pos(), start);
}

void SpotlightWindowTest::draggedWindowGrowsWhereItIs()
{
    show();
    dragTo(QPoint(11, 50));
    f->setItems({makeItem("note", "Snippet")});
    QTest::keyClicks(f->field(), QStringLiteral("note"));
    QCOMPARE(f->window.geometry(), QRect(11, 50, 584, kOpenHeight));
    f->window.setScopeKeys({"Snippet"});
    QCOMPARE(f->window.geometry(), QRect(11, 50, 584, kOpenHeight + 18 + kOneChipRow));
    f->field()->clear();
    QCOMPARE(f->window.geometry(), QRect(11, 50, 584, kEmptyHeight + 18 + kOneChipRow));
}

void SpotlightWindowTest::anchoredY_data()
{
    QTest::addColumn<int>("anchor");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("expected");
    // Where the card of an open window stands exactly on the lower edge of the screen.
    const int lowest = screenArea().bottom() + 1 - kOpenHeight + 32;
    const int highest = screenArea().top() - 32;
    QTest::newRow("fits") << 100 << kOpenHeight << 100;
    QTest::newRow("fits exactly") << lowest << kOpenHeight << lowest;
    QTest::newRow("one pixel too low") << lowest + 1 << kOpenHeight << lowest;
    QTest::newRow("far too low") << lowest + 300 << kOpenHeight << lowest;
    QTest::newRow("low, but small") << lowest + 300 << kEmptyHeight << lowest + 300;
    QTest::newRow("margin above the screen") << highest << kOpenHeight << highest;
    QTest::newRow("card above the screen") << highest - 1 << kOpenHeight << highest;
    QTest::newRow("higher than the screen") << 100 << 5000 << highest;
}

void SpotlightWindowTest::anchoredY()
{
    QFETCH(int, anchor);
    QFETCH(int, height);
    show();
    dragTo(QPoint(100, anchor));
    QTEST(f->window.anchoredY(height), "expected");
    QCOMPARE(f->window.y(), anchor); // asking moves nothing
}

void SpotlightWindowTest::panelLiftsTheWindowAtTheBottom()
{
    f->setItems({makeItem("note", "Snippet")});
    show();
    const int bottom = screenArea().bottom() + 1;
    const int y = bottom - kEmptyHeight + 32; // the empty card just fits
    dragTo(QPoint(100, y));
    QTest::keyClicks(f->field(), QStringLiteral("n"));
    QCOMPARE(f->window.geometry(), QRect(100, y - 328, 584, kOpenHeight));
    QCOMPARE(f->shell()->mapToGlobal(QPoint(0, f->shell()->height())).y(), bottom);
    QTest::keyClick(f->field(), Qt::Key_Backspace);
    QCOMPARE(f->window.geometry(), QRect(100, y, 584, kEmptyHeight));
}

void SpotlightWindowTest::chipsLiftTheWindowAtTheBottom()
{
    f->setItems({makeItem("note", "File")});
    show();
    const int y = screenArea().bottom() + 1 - kEmptyHeight + 32;
    dragTo(QPoint(100, y));
    f->window.setScopeKeys({"File"});
    const int oneRow = 18 + kOneChipRow;
    QCOMPARE(f->window.geometry(), QRect(100, y - oneRow, 584, kEmptyHeight + oneRow));
    f->window.setScopeKeys({"Application", "URL", "File", "Folder", "Snippet", "Bulk"});
    const int twoRows = oneRow + 8 + kOneChipRow;
    QCOMPARE(f->window.geometry(), QRect(100, y - twoRows, 584, kEmptyHeight + twoRows));
    QTest::keyClicks(f->field(), QStringLiteral("n"));
    QCOMPARE(f->window.y(), y - twoRows - 328);
    QTest::keyClick(f->field(), Qt::Key_Backspace);
    f->window.setScopeKeys({});
    QCOMPARE(f->window.geometry(), QRect(100, y, 584, kEmptyHeight));
}

void SpotlightWindowTest::scopeDefs_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("key");
    QTest::addColumn<uint>("ownGlyph");
    QTest::addColumn<uint>("glyph");
    QTest::addColumn<QString>("label");
    QTest::newRow("all") << 0 << "" << 0xE5C3u << 0xE5C3u << "All";
    QTest::newRow("Application") << 1 << "Application" << 0u << 0xE30Cu << "Application";
    QTest::newRow("URL") << 2 << "URL" << 0u << 0xE250u << "Web Bookmark";
    QTest::newRow("File") << 3 << "File" << 0u << 0xE873u << "File";
    QTest::newRow("Folder") << 4 << "Folder" << 0xE2C7u << 0xE2C7u << "Folders";
    QTest::newRow("Snippet") << 5 << "Snippet" << 0u << 0xF1C6u << "Snippet";
    QTest::newRow("Bulk") << 6 << "Bulk" << 0u << 0xEBBDu << "Bulk Action";
}

void SpotlightWindowTest::scopeDefs()
{
    QFETCH(int, index);
    QCOMPARE(SpotlightWindow::scopeDefs().size(), 7);
    const SpotlightWindow::ScopeDef& def = SpotlightWindow::scopeDefs().at(index);
    QTEST(QString::fromLatin1(def.typeKey), "key");
    QTEST(def.glyph, "ownGlyph");
    QTEST(SpotlightWindow::scopeGlyph(def), "glyph");
    QTEST(SpotlightWindow::scopeLabel(def), "label");
}

void SpotlightWindowTest::defaultScopes_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QStringList>("keys");
    const QStringList all{"Application", "URL", "File", "Folder", "Snippet", "Bulk"};
    QTest::newRow("absent") << QVariant() << QStringList();
    QTest::newRow("empty list") << QVariant(QStringList()) << QStringList();
    QTest::newRow("one") << QVariant(QStringList{"Snippet"}) << QStringList{"Snippet"};
    QTest::newRow("one as plain text") << QVariant("Snippet") << QStringList{"Snippet"};
    QTest::newRow("in another order")
        << QVariant(QStringList{"File", "Application"}) << QStringList{"Application", "File"};
    QTest::newRow("unknown words")
        << QVariant(QStringList{"Teapot", "file", " File"}) << QStringList();
    QTest::newRow("known among unknown")
        << QVariant(QStringList{"x", "Bulk", "", "URL"}) << QStringList{"URL", "Bulk"};
    QTest::newRow("twice") << QVariant(QStringList{"URL", "URL"}) << QStringList{"URL"};
    QTest::newRow("empty key") << QVariant(QStringList{""}) << QStringList();
    QTest::newRow("number") << QVariant(7) << QStringList();
    QTest::newRow("all of them") << QVariant(QStringList{"Bulk", "Snippet", "Folder", "File", "URL",
                                                         "Application"})
                                 << all;
}

void SpotlightWindowTest::defaultScopes()
{
    QFETCH(QVariant, stored);
    QFETCH(QStringList, keys);
    if (stored.isValid())
        QSettings(Theme::settingsFilePath(), QSettings::IniFormat).setValue(kDefaultScope, stored);
    QCOMPARE(SpotlightWindow::defaultScopeKeys(), keys);
    show();
    QStringList labels;
    for (const SpotlightWindow::ScopeDef& def : SpotlightWindow::scopeDefs()) {
        if (keys.contains(QString::fromLatin1(def.typeKey)))
            labels.append(SpotlightWindow::scopeLabel(def));
    }
    QCOMPARE(f->chipTexts(), labels);
    QCOMPARE(f->chipRow()->isVisible(), !keys.isEmpty());
    QCOMPARE(f->window.height(), f->window.emptyStateHeight());
}

void SpotlightWindowTest::defaultScopesAreWrittenAsGiven()
{
    const QStringList given{"File", "Teapot", "Application"};
    SpotlightWindow::setDefaultScopeKeys(given);
    const QSettings settings(Theme::settingsFilePath(), QSettings::IniFormat);
    QCOMPARE(settings.value(kDefaultScope).toStringList(), given);
    QCOMPARE(SpotlightWindow::defaultScopeKeys(), QStringList({"Application", "File"}));
    SpotlightWindow::setDefaultScopeKeys({});
    QCOMPARE(SpotlightWindow::defaultScopeKeys(), QStringList());
}

void SpotlightWindowTest::chipsStandInFixedOrder()
{
    show();
    f->window.setScopeKeys({"Bulk", "Folder", "URL", "Application", "Snippet", "File"});
    QCOMPARE(f->chipTexts(), QStringList({"Application", "Web Bookmark", "File", "Folders",
                                          "Snippet", "Bulk Action"}));
}

void SpotlightWindowTest::chipLook()
{
    show();
    f->window.setScopeKeys({"Folder"});
    GlyphButton* chip = f->chips().constFirst();
    QTRY_VERIFY(chip->isVisible());
    QCOMPARE(chip->parentWidget(), f->chipRow());
    QCOMPARE(chip->focusPolicy(), Qt::NoFocus);
    QCOMPARE(chip->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(chip->toolTip(), QStringLiteral("Remove this filter"));
    QCOMPARE(chip->size(),
             QSize(chip->fontMetrics().horizontalAdvance(QStringLiteral("Folders")) + 64, 28));
    GlyphButton expected(QString(), f->chipRow());
    PillStyle::applyFilterChip(&expected, 0xE2C7, QStringLiteral("Folders"));
    QCOMPARE(Pixels::imageOf(*chip), Pixels::imageOf(expected));
}

void SpotlightWindowTest::clickedChipRemovesItsScope()
{
    show();
    f->window.setScopeKeys({"URL", "File", "Snippet"});
    QTRY_VERIFY(f->chips().at(1)->isVisible());
    const QPointer<GlyphButton> clicked = f->chips().at(1);
    QTest::mouseClick(clicked, Qt::LeftButton);
    QCOMPARE(f->chipTexts(), QStringList({"Web Bookmark", "Snippet"}));
    QTRY_VERIFY(!clicked);
    QVERIFY(f->window.isVisible());
    QVERIFY(f->field()->hasFocus());
}

void SpotlightWindowTest::unknownScopeHasNoChip()
{
    f->setItems({makeItem("note", "Teapot"), makeItem("note two", "URL")});
    show();
    f->window.setScopeKeys({"Teapot"});
    QVERIFY(f->chips().isEmpty());
    QCOMPARE(f->window.height(), kEmptyHeight);
    QTest::keyClicks(f->field(), QStringLiteral("note"));
    QCOMPARE(f->rows(), QStringList{"note"}); // but it narrows the search
    f->field()->clear();
    QTest::keyClick(f->field(), Qt::Key_Backspace); // and goes like any other
    QTest::keyClicks(f->field(), QStringLiteral("note"));
    QVERIFY(f->rows().contains(QStringLiteral("note two")));
}

void SpotlightWindowTest::equalScopesChangeNothing()
{
    fill();
    const QVector<GlyphButton*> chips = f->chips();
    f->list()->setCurrentRow(4);
    f->window.setScopeKeys({"Snippet", "URL"});
    QCOMPARE(f->chips(), chips);
    QCOMPARE(f->list()->currentRow(), 4);
    f->window.removeScope(QStringLiteral("Bulk")); // was not there
    QCOMPARE(f->chips(), chips);
    f->window.setScopeKeys({"URL", "Snippet"}); // another order is another list
    QCOMPARE(f->list()->currentRow(), 1);
}

void SpotlightWindowTest::scopesRebuildTheResults()
{
    fill();
    f->window.removeScope(QStringLiteral("Snippet"));
    QCOMPARE(f->rows(), QStringList({"note three", "note four"}));
    QCOMPARE(f->chipTexts(), QStringList{"Web Bookmark"});
    f->window.setScopeKeys({"Bulk"});
    QCOMPARE(f->rows(), QStringList());
    QVERIFY(f->panel()->isHidden());
    f->window.setScopeKeys({"URL", "URL", "Snippet"});
    f->window.removeScope(QStringLiteral("URL")); // every one of it
    QCOMPARE(f->rows(), QStringList({"note one", "note two"}));
    QCOMPARE(f->field()->text(), QStringLiteral("note"));
}

void SpotlightWindowTest::scopesLastUntilTheNextShow()
{
    SpotlightWindow::setDefaultScopeKeys({"Snippet"});
    show();
    f->window.setScopeKeys({"URL", "File"});
    QCOMPARE(SpotlightWindow::defaultScopeKeys(), QStringList{"Snippet"});
    f->pressHotkey();
    QTRY_VERIFY(f->window.isHidden());
    show();
    QCOMPARE(f->chipTexts(), QStringList{"Snippet"});
    QCOMPARE(f->window.height(), kEmptyHeight + 18 + kOneChipRow);
}

void SpotlightWindowTest::menuHoldsTheScopes()
{
    show();
    QStringList texts;
    const MenuDriver driver([&texts](QMenu* menu) {
        for (const QAction* action : menu->actions())
            texts.append(action->text());
        QTest::keyClick(menu, Qt::Key_Escape);
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    QCOMPARE(texts.mid(0, 6), QStringList({"Application", "Web Bookmark", "File", "Folders",
                                           "Snippet", "Bulk Action"}));
    QVERIFY(!texts.contains(QStringLiteral("All")));
}

void SpotlightWindowTest::menuOpensBelowItsButton()
{
    show();
    QRect menuRect;
    const MenuDriver driver([&menuRect](QMenu* menu) {
        menuRect = menu->geometry();
        QTest::keyClick(menu, Qt::Key_Backspace); // closes it too
    });
    QTest::mouseClick(f->filterButton(), Qt::LeftButton);
    QVERIFY(driver.hasClosed());
    const QRect button(f->filterButton()->mapToGlobal(QPoint(0, 0)), f->filterButton()->size());
    QCOMPARE(menuRect.topLeft(), button.bottomLeft() + QPoint(0, 1 + 4));
    QVERIFY(menuRect.width() >= button.width());
    QCOMPARE(f->window.focusWidget(), f->field());
}

void SpotlightWindowTest::menuChecksTheActiveScopes()
{
    show();
    f->window.setScopeKeys({"URL", "Snippet"});
    QVector<bool> checked;
    const MenuDriver driver([&checked](QMenu* menu) {
        const QImage image = menu->grab().toImage();
        for (int i = 0; i < 6; ++i) {
            const QImage row = image.copy(rowOf(menu, i));
            checked.append(!Pixels::boxOfColor(row, QColor(Theme::colors().primary)).isEmpty());
        }
        QTest::keyClick(menu, Qt::Key_Escape);
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    QCOMPARE(checked, QVector<bool>({false, true, false, false, true, false}));
}

void SpotlightWindowTest::menuEscapeChangesNothing_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Escape") << Qt::Key_Escape;
    QTest::newRow("Backspace") << Qt::Key_Backspace;
}

void SpotlightWindowTest::menuEscapeChangesNothing()
{
    QFETCH(Qt::Key, key);
    fill();
    const MenuDriver driver([key](QMenu* menu) {
        clickRow(menu, 0);
        clickRow(menu, 1);
        QTest::keyClick(menu, key);
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    QCOMPARE(f->chipTexts(), QStringList({"Web Bookmark", "Snippet"}));
    QCOMPARE(f->rows().size(), 6);
    QCOMPARE(f->window.focusWidget(), f->field());
    QVERIFY(!confirmDot());
}

void SpotlightWindowTest::menuDotCommitsForThisShow()
{
    fill();
    const MenuDriver driver([](QMenu* menu) {
        clickRow(menu, 4); // "Snippet" off
        clickRow(menu, 3); // "Folder" on
        clickDot(menu);
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    QCOMPARE(f->chipTexts(), QStringList({"Web Bookmark", "Folders"}));
    QVERIFY(f->rows().contains(QStringLiteral("note three")));
    QVERIFY(!f->rows().contains(QStringLiteral("note one")));
    QCOMPARE(f->window.focusWidget(), f->field());
    QVERIFY(!confirmDot());
    QVERIFY(!QSettings(Theme::settingsFilePath(), QSettings::IniFormat).contains(kDefaultScope));
    f->pressHotkey();
    QTRY_VERIFY(f->window.isHidden());
    show();
    QVERIFY(f->chips().isEmpty());
}

void SpotlightWindowTest::menuTogglesTwiceIsNothing()
{
    fill();
    const QVector<GlyphButton*> chips = f->chips();
    const MenuDriver driver([](QMenu* menu) {
        clickRow(menu, 0);
        clickRow(menu, 0);
        clickDot(menu);
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    QCOMPARE(f->chips(), chips);
}

void SpotlightWindowTest::menuOrderIsThatOfToggling()
{
    show();
    const MenuDriver driver([](QMenu* menu) {
        for (const int row : {5, 0, 2})
            clickRow(menu, row);
        clickDot(menu);
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    QCOMPARE(f->chipTexts(), QStringList({"Application", "File", "Bulk Action"}));
    QTest::keyClick(f->field(), Qt::Key_Backspace);
    QCOMPARE(f->chipTexts(), QStringList({"Application", "Bulk Action"})); // "File" came last
}

void SpotlightWindowTest::menuRowsStayOpen_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("click") << 0;
    QTest::newRow("Space") << int(Qt::Key_Space);
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
}

void SpotlightWindowTest::menuRowsStayOpen()
{
    QFETCH(int, key);
    show();
    bool staysOpen = false;
    const MenuDriver driver([key, &staysOpen](QMenu* menu) {
        if (key == 0) {
            clickRow(menu, 1);
        } else {
            menu->setActiveAction(menu->actions().at(1));
            QTest::keyClick(menu, Qt::Key(key));
        }
        staysOpen = menu->isVisible();
        clickDot(menu);
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    QVERIFY(staysOpen);
    QCOMPARE(f->chipTexts(), QStringList{"Web Bookmark"});
}

void SpotlightWindowTest::menuDotStandsBesideTheRow()
{
    show();
    QVector<QPoint> expected;
    QVector<QRect> dots;
    const MenuDriver driver([&expected, &dots](QMenu* menu) {
        for (int i = 0; i < 6; ++i) {
            clickRow(menu, i);
            const QRect row = rowOf(menu, i);
            const QPoint topRight = menu->mapToGlobal(QPoint(menu->width(), row.top()));
            expected.append(topRight + QPoint(8, row.height() / 2 - 20));
            dots.append(confirmDot()->geometry());
        }
        QTest::keyClick(menu, Qt::Key_Escape);
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    for (int i = 0; i < 6; ++i)
        QCOMPARE(dots.at(i), QRect(expected.at(i), QSize(40, 40)));
}

void SpotlightWindowTest::menuDotFlipsAtTheScreenEdge_data()
{
    QTest::addColumn<int>("spare");
    QTest::addColumn<bool>("isLeft");
    QTest::newRow("one pixel of room") << 1 << false;
    QTest::newRow("no room") << 0 << true;
    QTest::newRow("less than none") << -20 << true;
}

void SpotlightWindowTest::menuDotFlipsAtTheScreenEdge()
{
    QFETCH(int, spare);
    QFETCH(bool, isLeft);
    show();
    QRect menuRect;
    int dotX = 0;
    const auto openMenu = [&] {
        const MenuDriver driver([&](QMenu* menu) {
            clickRow(menu, 0);
            menuRect = menu->geometry();
            dotX = confirmDot()->x();
            QTest::keyClick(menu, Qt::Key_Escape);
        });
        QTest::keyClick(f->field(), Qt::Key_F4);
        return driver.hasClosed();
    };
    QVERIFY(openMenu());
    const int wantedRight = screenArea().right() - 38 - 8 - spare; // of the menu, exclusive
    dragTo(f->window.pos() + QPoint(wantedRight - menuRect.right() - 1, 0));
    QVERIFY(openMenu());
    QCOMPARE(menuRect.right() + 1, wantedRight);
    QCOMPARE(dotX, isLeft ? menuRect.left() - 48 : menuRect.right() + 1 + 8);
}

void SpotlightWindowTest::menuDotHidesUntilToggled()
{
    show();
    bool isHiddenAtFirst = false;
    bool isShown = false;
    const MenuDriver driver([&](QMenu* menu) {
        QTest::keyClick(menu, Qt::Key_Down); // only moves
        isHiddenAtFirst = confirmDot() && !confirmDot()->isVisible();
        clickRow(menu, 2);
        isShown = confirmDot()->isVisible();
        confirmDot()->hide();
        clickDot(menu); // a click like any other beside the menu, where no dot is to be seen
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    QVERIFY(isHiddenAtFirst);
    QVERIFY(isShown);
    QVERIFY(f->chips().isEmpty());
}

void SpotlightWindowTest::menuBlocksHiding()
{
    show();
    endGuards();
    bool isBlocked = false;
    const MenuDriver driver([&isBlocked](QMenu* menu) {
        isBlocked = g_blockAutoQuit;
        QApplication::setActiveWindow(nullptr);
        QTest::keyClick(menu, Qt::Key_Escape);
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    QVERIFY(isBlocked);
    QVERIFY(f->window.isVisible());
    QVERIFY(!f->fade());
    QVERIFY(g_blockAutoQuit); // for a while after its end, too
    QTRY_VERIFY(!g_blockAutoQuit);
}

void SpotlightWindowTest::hotkeyWhileTheMenuIsOpen()
{
    fill();
    const MenuDriver driver([this](QMenu* menu) {
        clickRow(menu, 0);
        f->pressHotkey();
        QVERIFY(QTest::qWaitFor([this] { return f->window.isHidden(); }));
        f->pressHotkey();
        QVERIFY(f->window.isVisible());
        clickDot(menu);
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    QVERIFY(f->window.isVisible());
    QCOMPARE(f->chipTexts(), QStringList({"Application", "Web Bookmark", "Snippet"}));
    QCOMPARE(f->field()->text(), QString());
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
