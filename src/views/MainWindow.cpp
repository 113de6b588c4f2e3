// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "MainWindow.h"

#include "ActionsPanel.h"
#include "AutoQuitBlocker.h"
#include "CardShape.h"
#include "GlobalHotkeyController.h"
#include "HomeView.h"
#include "HotkeyManager.h"
#include "HotkeyRecorderFilter.h"
#include "IconHelper.h"
#include "LauncherModel.h"
#include "Localization.h"
#include "Settings.h"
#include "SettingsView.h"
#include "StorageManager.h"
#include "Theme.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFrame>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPropertyAnimation>
#include <QScreen>
#include <QScrollArea>
#include <QSequentialAnimationGroup>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <memory>

namespace
{

constexpr int kHotkeyId = 1;
constexpr int kBlockerResetMs = 1000;
constexpr int kBalloonMs = 6000;
constexpr int kTrayPatienceMs = 1000;
constexpr int kTrayCanvas = 64;
constexpr int kTrayGlyphPx = 48;
constexpr int kFontPoints = 10;

const QString kLastCategoryKey = QStringLiteral("lastCategory");

void applyApplicationFont()
{
    QFont font;
    font.setFamilies(FontTokens::Families);
    font.setStyleHint(QFont::SansSerif);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(
        static_cast<QFont::StyleStrategy>(QFont::PreferAntialias | QFont::PreferQuality));
    font.setPointSize(kFontPoints);
    font.setWeight(QFont::DemiBold);
    QApplication::setFont(font);
}

} // namespace

MainWindow::MainWindow(QWidget* parent) : FramelessWindow(parent)
{
    Theme::loadSettings();
    Tr::loadSettings();
    loadModel();
    connectModel();
    // The hotkey needs a native window before the first show.
    m_hotkeyWarning = HotkeyManager::loadSettings(HotkeyManager::mainWindowSlot, winId());
    applyApplicationFont();
    setUpTray();
    setUpHotkey();
    setFixedSize(WINDOW_WIDTH_GRID, WINDOW_HEIGHT_GRID);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(SHADOW_MARGIN, SHADOW_MARGIN, SHADOW_MARGIN, SHADOW_MARGIN);
    buildShadowLayer(QStringLiteral("bgShadowLayer"), Theme::Rad_Lg);
    setupUI();
    QCoreApplication::instance()->installEventFilter(this);
    // A window that nobody sees, on a locked screen for example, is no reason to go without.
    QTimer::singleShot(kTrayPatienceMs, this, &MainWindow::ensureTray);
    QTimer::singleShot(kBlockerResetMs, this, [] {
        if (g_autoQuitBlockCount < 1)
            g_blockAutoQuit = false;
    });
}

MainWindow::~MainWindow()
{
    // It ends with the other children, when this object is no longer what the slots take it for.
    if (m_pageAnim)
        m_pageAnim->disconnect(this);
    // The tree as well, before the model that its pages look at.
    m_rebuildInProgress = true;
    deleteTree();
}

void MainWindow::loadModel()
{
    m_jsonPath = QDir(StorageManager::appDataDir()).filePath(QStringLiteral("data.json"));
    m_model = new LauncherModel(m_jsonPath, this);
    const QStringList& categories = m_model->data().categories;
    if (categories.isEmpty())
        return;
    const QString last = Settings::value(kLastCategoryKey).toString();
    m_model->setCurrentCategory(categories.contains(last) ? last : categories.constFirst());
}

void MainWindow::connectModel()
{
    connect(m_model, &LauncherModel::categoriesChanged, this, &MainWindow::refreshCategories);
    connect(m_model, &LauncherModel::itemsChanged, this, [this] {
        if (m_homeView)
            m_homeView->refreshUI(-1, false);
    });
    connect(m_model, &LauncherModel::categoriesChanged, this, &MainWindow::onTourDataChanged);
    connect(m_model, &LauncherModel::itemsChanged, this, &MainWindow::onTourDataChanged);
}

void MainWindow::refreshCategories()
{
    if (m_homeView)
        m_homeView->refreshCategories(-1, false);
}

void MainWindow::setUpTray()
{
    m_trayIcon = new QSystemTrayIcon(this);
    m_trayMenu = new QMenu(this);
    m_trayShowAction = m_trayMenu->addAction(Tr::t(QStringLiteral("main.tray_show")));
    connect(m_trayShowAction, &QAction::triggered, this, &MainWindow::showOrRaise);
    m_trayQuitAction = m_trayMenu->addAction(Tr::t(QStringLiteral("main.tray_exit")));
    connect(m_trayQuitAction, &QAction::triggered, this, &MainWindow::quitApplication);
    m_trayIcon->setContextMenu(m_trayMenu);
    connect(m_trayIcon, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::DoubleClick)
                    toggleVisibility();
            });
}

void MainWindow::ensureTray()
{
    if (m_trayIcon->isVisible())
        return;
    m_trayIcon->setIcon(IconHelper::getGlyphIcon(QChar(Glyph::Search), kTrayCanvas, kTrayGlyphPx,
                                                 Theme::colors().primary));
    m_trayIcon->show();
    if (!m_hotkeyWarning.isEmpty()) {
        m_trayIcon->showMessage(QStringLiteral("Info Hotkey"), m_hotkeyWarning,
                                QSystemTrayIcon::Warning, kBalloonMs);
    }
}

void MainWindow::setUpHotkey()
{
    m_hotkeyController =
        new GlobalHotkeyController(winId(), kHotkeyId, &HotkeyManager::mainWindowSlot, this);
    m_hotkeyController->applyHotkey(HotkeyManager::mainWindowSlot.combo);
    connect(m_hotkeyController, &GlobalHotkeyController::hotkeyTriggered, this,
            &MainWindow::toggleVisibility);
}

void MainWindow::setSpotlightHotkeyController(GlobalHotkeyController* controller)
{
    m_spotlightHotkeyController = controller;
}

GlobalHotkeyController* MainWindow::spotlightHotkeyController() const
{
    return m_spotlightHotkeyController;
}

bool MainWindow::isToggledToShow() const
{
    // A window that dips for a change of page stands in full view all the same.
    return isHidden() || (!m_pageTransitioning && FramelessWindow::isToggledToShow());
}

void MainWindow::showOrRaise()
{
    if (isToggledToShow())
        show();
    else
        bringToFront();
}

void MainWindow::wake()
{
    if (FramelessWindow::isToggledToShow())
        show();
    else
        bringToFront();
}

void MainWindow::bringToFront()
{
    activateWindow();
    raise();
}

void MainWindow::quitApplication()
{
    saveLastCategory();
    QCoreApplication::quit();
}

void MainWindow::saveLastCategory()
{
    if (!m_model || m_model->currentCategory().isEmpty())
        return;
    Settings::setValue(kLastCategoryKey, m_model->currentCategory());
}

void MainWindow::prepareFade()
{
    stopPageAnimation();
    saveLastCategory();
    endReorderMode();
}

void MainWindow::endReorderMode()
{
    if (m_homeView)
        m_homeView->exitReorderMode(true);
}

void MainWindow::goToPage(int index)
{
    if (!m_mainStack || index < 0 || index >= m_mainStack->count() ||
        index == m_mainStack->currentIndex())
        return;
    runBlindSwap([this, index] {
        if (m_mainStack)
            m_mainStack->setCurrentIndex(index);
    });
}

SettingsView* MainWindow::settingsView()
{
    if (m_settingsView)
        buildSettings();
    return m_settingsView;
}

/// Its pages take longer than all the rest of the window, and few who start the program go there.
void MainWindow::buildSettings()
{
    if (m_settingsView->categoryList())
        return;
    m_settingsView->setupUI();
    // Left to the layout, they would come into view, and could have the focus, one turn later.
    const auto parts =
        m_settingsView->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget* part : parts)
        part->show();
}

void MainWindow::goToSettings()
{
    if (!m_settingsView)
        return;
    buildSettings();
    goToPage(SettingsPage);
    // At once: whatever is typed during the dip is typed there.
    m_settingsView->focusCategoryPane();
    QListWidget* categories = m_settingsView->categoryList();
    if (categories->currentRow() < 0)
        categories->setCurrentRow(0);
}

void MainWindow::refreshHomeAndFocusGrid()
{
    refreshCategories();
    if (m_homeView)
        focusGrid();
}

QSize MainWindow::windowSizeFor(bool settingsPage) const
{
    return settingsPage ? QSize(WINDOW_WIDTH_SETTINGS, WINDOW_HEIGHT_SETTINGS)
                        : QSize(WINDOW_WIDTH_GRID, WINDOW_HEIGHT_GRID);
}

void MainWindow::applyWindowSize(bool settingsPage)
{
    setFixedSize(windowSizeFor(settingsPage));
    centerOnScreen();
}

QRect MainWindow::centeredRectFor(const QSize& size) const
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return {};
    const QRect area = screen->availableGeometry();
    const int x = area.x() + (area.width() - size.width()) / 2;
    // A little below the middle, where the eye rests.
    int y = area.y() + (area.height() - size.height()) / 2 + area.height() / 20;
    y = std::min(y, area.y() + area.height() - size.height());
    y = std::max(y, area.y());
    return {QPoint(x, y), size};
}

void MainWindow::centerOnScreen()
{
    const QRect rect = centeredRectFor(size());
    if (!rect.isNull())
        move(rect.topLeft());
}

void MainWindow::stopPageAnimation()
{
    if (m_pageAnim)
        m_pageAnim->stop();
}

void MainWindow::runBlindSwap(const std::function<void()>& swap)
{
    if (!swap)
        return;
    if (!isVisible() || m_isClosing || m_rebuildInProgress) {
        swap();
        return;
    }
    stopPageAnimation();
    m_pageTransitioning = true;
    auto* group = new QSequentialAnimationGroup(this);
    auto* fadeOut = new QPropertyAnimation(this, "windowOpacity");
    fadeOut->setDuration(PageFadeOutMs);
    fadeOut->setStartValue(windowOpacity());
    fadeOut->setEndValue(0.0);
    fadeOut->setEasingCurve(QEasingCurve::InQuad);
    auto* fadeIn = new QPropertyAnimation(this, "windowOpacity");
    fadeIn->setDuration(PageFadeInMs);
    fadeIn->setStartValue(0.0);
    fadeIn->setEndValue(1.0);
    fadeIn->setEasingCurve(QEasingCurve::OutQuad);
    group->addAnimation(fadeOut);
    group->addAnimation(fadeIn);
    connectBlindSwap(fadeOut, group, swap);
    m_pageAnim = group;
    group->start(QAbstractAnimation::DeleteWhenStopped);
}

void MainWindow::connectBlindSwap(QAbstractAnimation* fadeOut, QAbstractAnimation* group,
                                  const std::function<void()>& swap)
{
    const auto swapped = std::make_shared<bool>(false);
    connect(fadeOut, &QAbstractAnimation::finished, this, [this, swapped, swap] {
        m_pageTransitioning = false;
        *swapped = true;
        swap();
    });
    connect(group, &QAbstractAnimation::stateChanged, this,
            [this, swapped, swap](QAbstractAnimation::State state) {
                if (state != QAbstractAnimation::Stopped)
                    return;
                m_pageTransitioning = false;
                if (!*swapped) {
                    *swapped = true;
                    QTimer::singleShot(0, this, swap);
                }
                if (!m_isClosing)
                    setWindowOpacity(1.0);
            });
}

void MainWindow::setupUI()
{
    const AutoQuitBlocker blocker;
    endReorderMode();
    m_rebuildInProgress = true;
    applyWindowSize(false);
    deleteTree();
    buildBackground();
    buildPages();
    m_builtLang = Tr::currentLang;
    // Left to the layout, the new content would appear one turn of the event loop later.
    m_bgContainer->show();
    chooseValidCategory();
    refreshCategories();
    DimBackdrop::takeOver(m_homeView);
    // A window that isn't there would take the keyboard from the one that is, and one that lies
    // behind a dialog or a menu would take it from there for nobody.
    if (isVisible() && !m_isClosing && !QApplication::activeModalWidget() &&
        !QApplication::activePopupWidget())
        activateWindow();
    m_rebuildInProgress = false;
}

void MainWindow::deleteTree()
{
    // Whoever calls this window while the tree goes must not be led into it.
    const QFrame* tree = m_bgContainer;
    m_bgContainer = nullptr;
    m_mainStack = nullptr;
    m_homeView = nullptr;
    m_settingsView = nullptr;
    m_itemEditorOpen = false;
    m_actionsStepBeforeEditor = ActionsNone;
    delete tree;
}

void MainWindow::buildBackground()
{
    m_bgContainer = new QFrame(this);
    m_bgContainer->setObjectName(QStringLiteral("bgContainer"));
    m_bgContainer->setStyleSheet(
        QStringLiteral("QFrame#bgContainer { background-color: %1; border: none; "
                       "border-radius: %2px; }")
            .arg(Theme::shellBg())
            .arg(Theme::Rad_Lg));
    layout()->addWidget(m_bgContainer);
    tintShadow();
    CardShape::attach(this, m_bgContainer, Theme::Rad_Lg, m_shadowLayer);
}

void MainWindow::buildPages()
{
    auto* containerLayout = new QVBoxLayout(m_bgContainer);
    containerLayout->setContentsMargins(0, 0, 0, 0);
    containerLayout->setSpacing(0);
    m_mainStack = new QStackedWidget(m_bgContainer);
    containerLayout->addWidget(m_mainStack, 1);
    connect(m_mainStack, &QStackedWidget::currentChanged, this, [this](int index) {
        if (index == SettingsPage)
            buildSettings();
        applyWindowSize(index == SettingsPage);
        setTourOverlayVisible(true); // which ends a tour that points at the other page
    });
    auto* homePage = new QWidget(m_mainStack);
    auto* homeLayout = new QVBoxLayout(homePage);
    homeLayout->setContentsMargins(0, 0, 0, 0);
    homeLayout->setSpacing(0);
    m_homeView = new HomeView(m_model, this, homePage);
    homeLayout->addWidget(m_homeView, 1);
    m_mainStack->addWidget(homePage);
    m_settingsView = new SettingsView(m_model, this, m_mainStack);
    m_mainStack->addWidget(m_settingsView);
    connectHomeView();
}

void MainWindow::connectHomeView()
{
    QListWidget* list = m_homeView->list();
    list->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(list, &QWidget::customContextMenuRequested, this, &MainWindow::showContextMenu);
    connect(list, &QListWidget::itemDoubleClicked, this, &MainWindow::handleItemExecution);
    connect(list, &QListWidget::itemSelectionChanged, this, [this] {
        // A list that goes with its page may still say that it has lost its rows.
        if (m_homeView)
            m_homeView->updatePreviewPanel(m_homeView->list()->currentItem());
    });
}

void MainWindow::chooseValidCategory()
{
    const LauncherData& document = m_model->data();
    if (document.categories.contains(m_model->currentCategory()))
        return;
    if (document.categories.contains(document.defaultCategory))
        m_model->setCurrentCategory(document.defaultCategory);
    else
        m_model->setCurrentCategory(document.categories.value(0));
}

void MainWindow::rebuildUIPreservingFocus()
{
    if (m_rebuildInProgress) {
        QTimer::singleShot(0, this, &MainWindow::rebuildUIPreservingFocus);
        return;
    }
    endTour();
    const QWidget* focused = focusedInHere();
    const QString focusName = focused ? focused->objectName() : QString();
    const auto rebuild = [this, focusName] { rebuildNow(focusName); };
    if (isHidden() || m_isClosing)
        QTimer::singleShot(0, this, rebuild);
    else
        runBlindSwap(rebuild);
}

void MainWindow::rebuildNow(const QString& focusName)
{
    // Asked now and not when the rebuild was: a change of page may have come in between.
    const bool wasSettings = isSettingsPage();
    const int row = settingsRow();
    setupUI();
    m_trayShowAction->setText(Tr::t(QStringLiteral("main.tray_show")));
    m_trayQuitAction->setText(Tr::t(QStringLiteral("main.tray_exit")));
    if (wasSettings) {
        settingsView()->categoryList()->setCurrentRow(row);
        m_mainStack->setCurrentIndex(SettingsPage);
    }
    giveFocusBack(focusName);
}

/// The current category of the settings; the first one on another page.
int MainWindow::settingsRow() const
{
    return isSettingsPage() ? m_settingsView->categoryList()->currentRow() : 0;
}

/// Who has the focus or, behind a menu or a dialog, has it again at its end.
QWidget* MainWindow::focusedInHere() const
{
    QWidget* focused = QApplication::focusWidget();
    return focused && isAncestorOf(focused) ? focused : focusWidget();
}

void MainWindow::giveFocusBack(const QString& focusName)
{
    auto* widget = focusName.isEmpty() ? nullptr : m_bgContainer->findChild<QWidget*>(focusName);
    // The form that was open is closed now, and what is in it would take the keys unseen.
    if (widget && !widget->isVisibleTo(m_bgContainer))
        widget = nullptr;
    if (isSettingsPage()) {
        m_settingsView->focusAfterRebuild(widget ? widget : m_settingsView->categoryList());
        return;
    }
    if (!widget)
        widget = m_homeView->searchInput();
    widget->setFocus();
}

void MainWindow::placeOnScreen()
{
    centerOnScreen();
}

void MainWindow::finishShow()
{
    if (!m_homeView)
        return;
    m_mainStack->setCurrentIndex(HomePage);
    m_settingsView->resetToTop();
    if (m_homeView->actionsStep() != ActionsNone)
        closeItemActionsPanel();
    m_homeView->searchInput()->clear();
    if (m_itemEditorOpen)
        closeItemEditor(-1);
    if (m_model->currentCategory().isEmpty())
        m_model->setCurrentCategory(m_model->data().categories.value(0));
    refreshCategories();
    m_homeView->categoryStrip()->setFocus();
    setTourOverlayVisible(true);
    considerOnboarding();
}

bool MainWindow::isHomePage() const
{
    return m_homeView && m_mainStack && m_mainStack->currentIndex() == HomePage;
}

bool MainWindow::isSettingsPage() const
{
    return m_settingsView && m_mainStack && m_mainStack->currentIndex() == SettingsPage;
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (m_heldKey.hasRunOn(watched, event))
        return true;
    if (m_rebuildInProgress)
        return FramelessWindow::eventFilter(watched, event);
    // Its icon costs as much as a good part of the window, for which the user waits.
    if (watched == this && event->type() == QEvent::Paint && !m_trayIcon->isVisible())
        QTimer::singleShot(0, this, &MainWindow::ensureTray);
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (!widget || widget->window() != this)
        return FramelessWindow::eventFilter(watched, event);
    // Every key is the recorder's while it listens for a hotkey.
    if (HotkeyRecorderFilter::isListeningOn(QApplication::focusWidget()))
        return FramelessWindow::eventFilter(watched, event);
    if (isHomePage() && m_homeView->handleEvent(watched, event))
        return true;
    if (isSettingsPage() && m_settingsView->handleEvent(watched, event))
        return true;
    // Taken here, Tab arrives as a key press instead of moving the focus.
    if (event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Tab) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::KeyPress &&
        handleKeyPress(watched, static_cast<QKeyEvent*>(event)))
        return true;
    return FramelessWindow::eventFilter(watched, event);
}
