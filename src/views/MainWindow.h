// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FramelessWindow.h"

#include <QPointer>
#include <QSystemTrayIcon>

#include <functional>

class GlobalHotkeyController;
class LauncherModel;
class QAbstractAnimation;
class QAction;
class QFrame;
class QMenu;
class QStackedWidget;

/// The frameless home window. Owns the document's model, the tray icon and the hotkey that summons
/// it. It appears at the centre of the primary screen, goes away by a short fade when it loses the
/// focus, and rebuilds everything in it when colours or language change. GUI thread only.
class MainWindow : public FramelessWindow
{
    Q_OBJECT

public:
    static constexpr int WINDOW_WIDTH_GRID = 617;
    static constexpr int WINDOW_HEIGHT_GRID = 616;
    static constexpr int WINDOW_WIDTH_SETTINGS = 820;
    static constexpr int WINDOW_HEIGHT_SETTINGS = 580;
    static constexpr int GRID_CELL = 132;
    static constexpr int GRID_COLS_DESIGN = 4; ///< grid columns that the size was designed for
    static constexpr int PageFadeOutMs = 110;
    static constexpr int PageFadeInMs = 170;

    /// Loads settings and document, registers the hotkey and shows the tray icon; the window itself
    /// stays hidden.
    explicit MainWindow(QWidget* parent);
    ~MainWindow() override;

    /// The one owner of the document; belongs to this window.
    LauncherModel* model() const { return m_model; }

    /// The controller of the other window's hotkey, which that window keeps owning.
    void setSpotlightHotkeyController(GlobalHotkeyController* controller);
    GlobalHotkeyController* spotlightHotkeyController() const;

    /// What a further start of the program asks for: shows the window if it is hidden, else brings
    /// it in front. While it is half transparent, on its way out or in a change of page, nothing
    /// happens: `show()` on a window that is still visible changes nothing.
    void wake();

    void quitApplication();
    void saveLastCategory();

    /// Goes to page 0 (home) or 1 (settings); nothing for a page that isn't there or is shown.
    void goToPage(int index);

    QSize windowSizeFor(bool settingsPage) const;
    void applyWindowSize(bool settingsPage);
    void centerOnScreen();

    /// Where a window of that size goes on the primary screen; null without a screen.
    QRect centeredRectFor(const QSize& size) const;

    /// Runs `swap` hidden behind a quick dip in opacity, or at once if the window isn't showing.
    /// The swap is never lost, even if the dip is interrupted.
    void runBlindSwap(const std::function<void()>& swap);

    bool eventFilter(QObject* watched, QEvent* event) override;

public slots:
    void rebuildUIPreservingFocus();

protected:
    bool isToggledToShow() const override;
    void placeOnScreen() override;
    void finishShow() override;
    void prepareFade() override;

private:
    void loadModel();
    void setUpTray(const QString& hotkeyWarning);
    void setUpHotkey();
    void setupUI();
    void deleteTree();
    void buildBackground();
    void buildPages();
    void chooseValidCategory();
    void showOrRaise();
    void bringToFront();
    void stopPageAnimation();
    void connectBlindSwap(QAbstractAnimation* fadeOut, QAbstractAnimation* group,
                          const std::function<void()>& swap);
    void rebuildNow(const QString& focusName);

    QString m_jsonPath;
    LauncherModel* m_model = nullptr;
    GlobalHotkeyController* m_hotkeyController = nullptr;
    QPointer<GlobalHotkeyController> m_spotlightHotkeyController;
    QSystemTrayIcon* m_trayIcon = nullptr;
    QMenu* m_trayMenu = nullptr;
    QAction* m_trayShowAction = nullptr;
    QAction* m_trayQuitAction = nullptr;
    QFrame* m_bgContainer = nullptr;
    QStackedWidget* m_mainStack = nullptr;
    QPointer<QAbstractAnimation> m_pageAnim;
    bool m_pageTransitioning = false;
    bool m_rebuildInProgress = false;
};
