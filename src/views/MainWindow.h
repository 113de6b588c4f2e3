// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ActionsPanel.h"
#include "FramelessWindow.h"
#include "HeldKey.h"
#include "Localization.h"
#include "Types.h"

#include <QPointer>
#include <QSet>
#include <QSystemTrayIcon>

#include <functional>
#include <optional>

class GlobalHotkeyController;
class HomeView;
class LauncherModel;
class QAbstractAnimation;
class QAction;
class QFrame;
class QKeyEvent;
class QListWidgetItem;
class QMenu;
class QStackedWidget;
class SettingsView;
class TourOverlay;
namespace ActionsMenu
{
class Popup;
}

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
    static constexpr int HomePage = 0;         ///< for `goToPage`
    static constexpr int SettingsPage = 1;
    static constexpr int PageFadeOutMs = 110;
    static constexpr int PageFadeInMs = 170;
    static constexpr int TourThemeDark = 2; ///< `Theme::forceTheme` during the guided tour

    /// Where the guided tour is.
    enum TourStep {
        TourWelcome = 0,
        TourMakeSection = 1,
        TourSectionMade = 2,
        TourOpenItemForm = 3,
        TourPickType = 4,
        TourFillName = 5,
        TourPickFile = 6,
        TourSaveItem = 7,
        TourItemMade = 8,
        TourFinish = 9,
        TourStepCount = 10
    };

    /// Dims the home page behind a dialog for as long as it lives, and the page that a rebuild puts
    /// in its place as well: make it on the stack.
    struct DimBackdrop
    {
        /// \param homeView may be null; may be deleted meanwhile.
        explicit DimBackdrop(HomeView* homeView);
        ~DimBackdrop();
        DimBackdrop(const DimBackdrop&) = delete;
        DimBackdrop& operator=(const DimBackdrop&) = delete;

        /// Dims a new page in the place of one that has gone while its guards live on.
        static void takeOver(HomeView* homeView);

        QPointer<HomeView> view;
    };

    /// Has the tour, if one runs, explain the dialog that is about to open, for as long as it
    /// lives: make it on the stack.
    struct TourCompanion
    {
        TourCompanion(MainWindow* window, const char* titleKey, const char* descKey);
        ~TourCompanion();
        TourCompanion(const TourCompanion&) = delete;
        TourCompanion& operator=(const TourCompanion&) = delete;

        QPointer<MainWindow> win;
    };

    /// Loads settings and document and registers the hotkey; the window itself stays hidden. The
    /// tray icon comes with the first picture of it, or after a second without one.
    explicit MainWindow(QWidget* parent);
    ~MainWindow() override;

    /// The one owner of the document; belongs to this window.
    LauncherModel* model() const { return m_model; }
    /// The file of the document.
    QString jsonPath() const { return m_jsonPath; }

    /// The page of the settings, which is built when it is entered or asked for first; null while
    /// the tree is built anew.
    SettingsView* settingsView();

    GlobalHotkeyController* hotkeyController() const { return m_hotkeyController; }
    /// The controller of the other window's hotkey, which that window keeps owning.
    void setSpotlightHotkeyController(GlobalHotkeyController* controller);
    GlobalHotkeyController* spotlightHotkeyController() const;

    /// What a further start of the program asks for: shows the window if it is hidden, else brings
    /// it in front. While it is half transparent, on its way out or in a change of page, nothing
    /// happens: `show()` on a window that is still visible changes nothing.
    void wake();

    void quitApplication();
    void saveLastCategory();

    /// Nothing for a page that isn't there or is shown.
    void goToPage(int index);
    /// Goes to the settings and gives the focus to their list of categories.
    void goToSettings();
    /// Brings the home page up to date, for what was changed on the other one, and gives the focus
    /// to its list; to the sections above if that is empty.
    void refreshHomeAndFocusGrid();

    QSize windowSizeFor(bool settingsPage) const;
    void applyWindowSize(bool settingsPage);
    void centerOnScreen();

    /// Where a window of that size goes on the primary screen; null without a screen.
    QRect centeredRectFor(const QSize& size) const;

    /// Runs `swap` hidden behind a quick dip in opacity, or at once if the window isn't showing.
    /// The swap is never lost, even if the dip is interrupted.
    void runBlindSwap(const std::function<void()>& swap);

    /// What the keys of the window do. \returns whether the key is consumed; otherwise it is the
    /// focused widget's.
    bool handleKeyPress(QObject* watched, QKeyEvent* event);

    /// Runs an item and, if it could be started, dismisses the window.
    /// \param item a row of the home page's list; null means its current one.
    void handleItemExecution(QListWidgetItem* item);

    /// Shows the form for an item. \param itemId empty for a new one in the current section.
    void openItemEditor(const QString& itemId);
    /// \param selectIndex row of the item that has been saved; -1 if the user has cancelled.
    void closeItemEditor(int selectIndex);
    bool isItemEditorOpen() const { return m_itemEditorOpen; }
    void closeItemActionsPanel();
    /// Asks whether the item is to go; nothing if there is no such item.
    void openItemDeleteConfirm(const QString& itemId);

    /// \see LauncherModel::locateElementById
    const QVector<LauncherElement>* locateElementById(const QString& id, QString& outCat,
                                                      int& outIndex) const;

    /// The menus. Each waits for its end, which may be that of what was chosen in it. All the
    /// widgets of the home page may be other ones then, because the window has been rebuilt.
    /// \param pos in the viewport of the home page's list; without an item there no menu opens.
    void showContextMenu(const QPoint& pos);
    void showContextMenuForCurrentItem();
    void showItemActionsMenu(QListWidgetItem* item, const QPoint& globalAnchor);
    /// \param focusBefore gets the focus if no section is chosen.
    void showMoveToSectionMenu(const QString& itemId, const QString& fromCat,
                               const QPoint& globalAnchor, const QPointer<QWidget>& focusBefore);
    void showCategoryActionsMenu();
    /// Makes the section current first; its menu opens once its button has been rebuilt.
    void showCategoryActionsMenuFor(const QString& category);
    void showAddActionsMenu();
    void showTemplateActionsMenu();
    /// \returns the name of the chosen template; empty without a choice or without templates.
    QString pickTemplateName(QWidget* anchorWidget);

    /// The flows that change sections and templates: each asks in dialogs of `parent`, tells of a
    /// refusal there, and waits for the end of it all. \returns whether the document has changed.
    bool addSectionViaDialog(QWidget* parent);
    bool editSectionViaDialog(QWidget* parent, const QString& oldName);
    /// The last section to go is replaced by an empty one.
    bool deleteSectionWithConfirm(QWidget* parent, const QString& cat);
    bool saveSectionAsTemplate(QWidget* parent, const QString& cat);
    bool createSectionFromTemplateViaDialog(QWidget* parent, const QString& templateName);

    /// The guided tour runs over the home page, in the dark theme, until its last step is through,
    /// what it points at is gone, or the window is rebuilt. What is made in it stays.
    bool tourActive() const;
    /// The step it is at; -1 outside of a tour.
    int tourStep() const { return m_tourStep; }
    void endTour();
    /// During a tour the home page shows only what has been made in it.
    bool tourShowsCategory(const QString& category) const;
    bool tourShowsItem(const QString& id) const;
    /// Takes the tour out of sight and back, for what else has to be seen.
    void setTourOverlayVisible(bool visible);

    bool eventFilter(QObject* watched, QEvent* event) override;

public slots:
    void rebuildUIPreservingFocus();
    /// Goes to the home page first if need be, and begins a moment later.
    void startInteractiveTour();

protected:
    bool isToggledToShow() const override;
    void placeOnScreen() override;
    void finishShow() override;
    void prepareFade() override;

private:
    void loadModel();
    void setUpTray();
    void ensureTray();
    void setUpHotkey();
    void setupUI();
    void deleteTree();
    void buildBackground();
    void buildPages();
    void buildSettings();
    void connectModel();
    void connectHomeView();
    void chooseValidCategory();
    void refreshCategories();
    void showOrRaise();
    void bringToFront();
    void stopPageAnimation();
    void connectBlindSwap(QAbstractAnimation* fadeOut, QAbstractAnimation* group,
                          const std::function<void()>& swap);
    void rebuildNow(const QString& focusName);
    QWidget* focusedInHere() const;
    void giveFocusBack(const QString& focusName);
    int settingsRow() const;
    bool isHomePage() const;
    bool isSettingsPage() const;
    bool isReordering() const;
    void endReorderMode();

    void considerOnboarding();
    void runOnboarding();
    void whenSettled(const std::function<void()>& next, int waitMs = 0);
    bool rebuildForLanguage();
    bool forceTourDarkTheme();
    void restoreThemeAfterTour();
    void beginTour();
    void showTourStep(int step);
    static bool tourStepInsideForm(int step);
    std::optional<QRect> tourTarget(int step) const;
    QRect currentItemRectInWindow() const;
    int totalItemCount() const;
    void advanceTourFrom(int step);
    void onTourDataChanged();
    void onTourItemFormOpened();
    void onTourItemFormClosed();
    void connectTour();
    void onTourTypeChanged(const QString& type);
    void onTourValueChanged();

    bool handleTab();
    bool handleModalCardKey(const QKeyEvent* event);
    bool isModalCardOpen() const;
    void focusGrid();
    void restoreFocusAfterCancel();
    void settlePreviewAfterEditor(bool keepActionsPanel);
    bool hasItem(const QString& itemId) const;
    bool hasSection(const QString& category) const;

    void addSectionItemRows(ActionsMenu::Popup& popup, const QString& itemId,
                            const QString& category, const QPoint& globalAnchor);
    bool duplicateItem(const QString& category, const QString& itemId);
    void finishSectionFlow(bool hasChanged, const ActionsMenu::Popup& popup);
    void startFromTemplate();
    void manageTemplates();
    static void restoreFocusAfterMenuCancel(QWidget* widget);
    bool confirmOverwrite(QWidget* parent, const QString& templateName) const;

    QString m_jsonPath;
    LauncherModel* m_model = nullptr;
    GlobalHotkeyController* m_hotkeyController = nullptr;
    QPointer<GlobalHotkeyController> m_spotlightHotkeyController;
    QSystemTrayIcon* m_trayIcon = nullptr;
    QMenu* m_trayMenu = nullptr;
    QAction* m_trayShowAction = nullptr;
    QAction* m_trayQuitAction = nullptr;
    QString m_hotkeyWarning; ///< what the tray is to tell once it is there
    QFrame* m_bgContainer = nullptr;
    QStackedWidget* m_mainStack = nullptr;
    HomeView* m_homeView = nullptr;
    SettingsView* m_settingsView = nullptr;
    Lang m_builtLang = Lang::En;         ///< what the texts of the tree are in
    QPointer<TourOverlay> m_tourOverlay; ///< there exactly while a tour runs
    int m_tourStep = -1;
    int m_tourBaseline = 0;        ///< sections or items that there were when a step began
    QSet<QString> m_tourKnownCats; ///< what there was when the tour began
    QSet<QString> m_tourKnownItems;
    int m_tourSavedTheme = 0;
    bool m_tourThemeForced = false;
    bool m_onboardingChecked = false; ///< once in a process
    bool m_itemEditorOpen = false;
    QPointer<QWidget> m_focusBeforeEditor;
    ItemActionsStep m_actionsStepBeforeEditor = ActionsNone;
    QPointer<QAbstractAnimation> m_pageAnim;
    bool m_pageTransitioning = false;
    bool m_rebuildInProgress = false;
    HeldKey m_heldKey;
};
