// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ActionsPanel.h"
#include "Delegates.h"
#include "GlyphWidgets.h"
#include "PillRow.h"

#include <QEvent>
#include <QHash>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVector>
#include <QWidget>

class CardHeader;
class ItemEditorPanel;
class LauncherModel;
class MainWindow;
class PreviewTooltip;
class ReorderHintBanner;
class ReorderOverlay;
class QFrame;
class QHBoxLayout;
class QKeyEvent;
class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QPushButton;
class QScrollArea;
class QStackedWidget;
class QTextEdit;
class QTimer;
class QWheelEvent;
struct LauncherElement;

/// The home page: a header with buttons, search field and section pills above the grid of items.
/// An item's editor and its actions open as a card over it. It reads the document and asks the
/// window for everything that changes it; the window tells it when to build its rows anew. It has
/// no key handlers of its own either: the window hands it the events of all widgets in here.
/// GUI thread only.
class HomeView : public QWidget
{
    Q_OBJECT

public:
    static constexpr int HeaderHeight = 132; ///< sizes in px
    static constexpr int HeaderCtrlHeight = 32;
    static constexpr int HeaderRowGap = 24;
    static constexpr int HeaderVPad = 24;
    static constexpr int CatPillHeight = 28;
    static constexpr int VisibleGridRows = 3; ///< that a low grid still shows
    static constexpr int TileGap = 12;

    enum ListPage { PageList = 0, PageEmptyList = 1 };
    enum PreviewPage {
        PagePreviewEmpty = 0,
        PagePreviewDetail = 1,
        PagePreviewEditor = 2,
        PagePreviewActions = 3
    };
    enum ReorderTarget { ReorderNone = 0, ReorderItems = 1, ReorderSections = 2 };

    /// Model and window are not owned and must outlive the view.
    HomeView(LauncherModel* model, MainWindow* mainWindow, QWidget* parent);
    ~HomeView() override;

    /// Builds the pills anew, and the rows too unless an item is being edited.
    /// \param preferredIndex place in its section of the item to select; -1 for the first.
    /// \param keepActionsPanel leaves an open actions panel open.
    void refreshCategories(int preferredIndex, bool keepActionsPanel);
    /// Builds the rows anew, of the current section or of what the search field asks for.
    void refreshUI(int preferredIndex, bool keepActionsPanel);

    /// Keeps the page that shows what is behind a row; null for none. Does nothing while the card
    /// is in use.
    void updatePreviewPanel(QListWidgetItem* item);
    /// Makes the row of this item the current one and shows it. False if there is none.
    bool selectItemById(const QString& id);
    void setPreviewCardTitle(const QString& title);
    /// Fits the cells of the grid to its size and to the columns set.
    void applyGridCellSize();
    /// Shows the rows, or what stands in their place when there are none.
    void syncListStackPage();
    /// Opens one of the web suggestions for what the search field holds, 0 or 1; nothing if there
    /// is no such one.
    void launchWebQuery(int which);
    void focusListFromSearch();
    void openActionsForCurrentItem();
    /// Goes that many sections to the right. False, without any effect, where there is none.
    bool stepCategory(int delta);
    /// Lights the pill of the current section while the keyboard is on strip or grid.
    void applySelectedCatPillStyle();
    /// Dims the view behind a dialog.
    void setDialogBackdropVisible(bool visible);
    void showHoverPreview();
    void cancelHoverPreview();
    void updateSearchStyle();
    /// The glyphs of the header's buttons look the same under the pointer and at rest.
    void updateHomeSettingsBtnIcon(bool active);
    void updateHomeAddBtnIcon(bool active);
    void updateHomeTemplateBtnIcon(bool active);

    /// Begin to put the items of the current section, or the sections, into another order, or tell
    /// why that can't be, which waits for the user. Nothing while such a mode runs.
    void enterReorderMode();
    void enterSectionReorderMode();
    /// Ends the mode that runs, if any. \param save writes the new order to the document; without
    /// it, the old one stays.
    void exitReorderMode(bool save);
    /// Moves the lifted entry or, without one, the cursor. \param key a cursor key.
    void reorderArrow(int key);
    bool isReorderMode() const { return m_reorderTarget != ReorderNone; }
    ReorderTarget reorderTarget() const { return m_reorderTarget; }

    /// A key pressed in `obj`, a widget of the view. True if that was all that it is to do.
    bool handleKeyPress(QObject* obj, QKeyEvent* e);
    /// Any event of a widget of the window, ahead of the widget. True if it must not get it.
    bool handleEvent(QObject* obj, QEvent* e);

    /// The parts of the view, which live as long as it does.
    QListWidget* list() const { return m_listWidget; }
    QScrollArea* categoryStrip() const { return m_catScroll; }
    QLineEdit* searchInput() const { return m_searchInput; }
    QStackedWidget* previewStack() const { return m_previewStack; }
    GlyphButton* addButton() const { return m_homeAddBtn; }
    GlyphButton* templateButton() const { return m_homeTemplateBtn; }
    GlyphButton* settingsButton() const { return m_homeSettingsBtn; }
    /// These are built when somebody asks for them first: the start doesn't wait for them.
    ItemEditorPanel* itemEditorPanel();
    ActionsPanel* actionsPanel();
    /// The step of the actions panel; `ActionsNone` as long as there is no panel.
    ItemActionsStep actionsStep() const;
    /// The pill of the current section, until the pills are built anew; null if there is none.
    GlyphButton* selectedCategoryButton() const { return m_selectedCatBtn; }

private:
    void setupUI();
    QFrame* buildHeader();
    GlyphButton* buildHeaderButton(const QString& objectName, const QString& spokenName);
    void buildSearchFrame();
    void buildCategoryStrip();
    QWidget* buildBody();
    void buildList();
    QWidget* buildEmptyPage();
    QPushButton* buildEmptyPageButton(const QString& objectName, const QString& style);
    void buildBackdrop();
    void buildModalCard();
    QWidget* buildPreviewEmptyPage();
    QWidget* buildPreviewDetailPage();
    QWidget* addPanelPage();
    void fillModalPage();
    void buildHoverPreview();
    void connectHeader();
    void connectList();
    void connectCard();
    void connectActions();

    /// Whether all pills are made, as they are but for very many sections.
    bool isStripWhole() const;
    void measureStrip();
    void fillStrip(int left);
    void addRoom(const PillRow::Range& pills);
    void followStripScroll(int left);
    void clearPills();
    GlyphButton* makePill(const QString& section);
    GlyphButton* addPill(const QString& section);
    void scrollToSelectedPill();

    void addSectionRows(int preferredIndex);
    void addSearchRows();
    /// Without anybody being told.
    void selectRow(int row);
    /// The stored item behind a row; null if it has gone since, and without a row.
    const LauncherElement* elementOf(const QListWidgetItem* item) const;
    void showDetails(const LauncherElement& element);

    bool isCardInUse() const;
    bool isModalPage() const;
    void syncModalCard();
    void placeModalCard();
    void hideModalCard();
    void closeCardFromBackdrop();

    bool isHeaderWidget(const QObject* obj) const;
    bool takeAsSearchText(const QObject* obj, const QKeyEvent& e);
    bool handleDown(const QObject* obj);
    bool handleUp(const QObject* obj);
    bool handleLeft(const QObject* obj);
    bool handleRight(const QObject* obj);
    bool handleEnter(QObject* obj);
    void scrollStrip(const QWheelEvent& e);
    void followHeaderButton(const QObject* obj, QEvent::Type type);
    void followFocus(const QObject* obj, QEvent::Type type);

    void refuseReorder(const char* titleKey, const char* textKey);
    QVector<QRect> pillRects() const;
    QPixmap picturePill(const QString& section, const QSize& size, bool lit);
    void handleReorderKey(int key);
    void beginReorder(ReorderTarget target);
    QStringList reorderKeys() const;
    bool isReorderStale() const;
    void endStaleReorder();
    bool saveOrder(ReorderTarget target, const QString& section, const QVector<int>& order);
    void focusIfPageIsUp(QWidget* widget);

    QString m_searchQuery; ///< as typed
    QFrame* m_searchFrame = nullptr;
    QLineEdit* m_searchInput = nullptr;
    QPushButton* m_gridOverlayBackdrop = nullptr;
    QLabel* m_emptyListText = nullptr;
    QPushButton* m_emptyAddBtn = nullptr;
    QPushButton* m_emptyWebBtn = nullptr;
    QPushButton* m_emptyWebAltBtn = nullptr;
    QFrame* m_card = nullptr;
    CardHeader* m_cardHeader = nullptr;
    GlyphLabel* m_searchIconLbl = nullptr;
    QScrollArea* m_catScroll = nullptr; ///< takes the keyboard for all the pills
    QWidget* m_catContainer = nullptr;
    QHBoxLayout* m_catLayout = nullptr;
    QStringList m_stripSections;      ///< those that have a pill, in its order
    PillRow m_pillRow;                ///< of them; empty if all pills are made
    PillRow::Range m_madePills;       ///< that of the current section may be another one
    QHash<QString, int> m_pillWidths; ///< by section; the strip's font stays what it is
    QPointer<GlyphButton> m_selectedCatBtn;
    GlyphButton* m_homeSettingsBtn = nullptr;
    GlyphButton* m_homeAddBtn = nullptr;
    GlyphButton* m_homeTemplateBtn = nullptr;
    ReorderTarget m_reorderTarget = ReorderNone;
    QPointer<ReorderOverlay> m_reorderOverlay;
    QPointer<ReorderHintBanner> m_reorderHintBanner;
    QString m_reorderCategory; ///< section whose items are being reordered
    QStringList m_reorderKeys; ///< what `reorderKeys` gave when the mode began
    QListWidget* m_listWidget = nullptr;
    QStackedWidget* m_listStack = nullptr;
    QStackedWidget* m_previewStack = nullptr;
    QLabel* m_previewEmptyHintLbl = nullptr;
    GlyphBadge* m_previewIconLbl = nullptr;
    QLabel* m_previewTitleLbl = nullptr;
    QLabel* m_previewTypeLbl = nullptr;
    QTextEdit* m_previewValue = nullptr;
    QWidget* m_editorPage = nullptr;
    QWidget* m_actionsPage = nullptr;
    ItemEditorPanel* m_itemEditorPanel = nullptr; ///< null until it is needed
    ActionsPanel* m_actionsPanel = nullptr;       ///< null until it is needed
    PreviewTooltip* m_hoverPreview = nullptr;
    QTimer* m_hoverPreviewTimer = nullptr;
    QPointer<GridTileDelegate> m_gridDelegate;
    LauncherModel* m_model;
    MainWindow* m_mainWindow;
};
