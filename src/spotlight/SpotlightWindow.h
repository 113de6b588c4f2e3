// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AppIndex.h"
#include "Calculator.h"
#include "FileIndex.h"
#include "FramelessWindow.h"
#include "SearchEngine.h"
#include "SpotlightResultDelegate.h"
#include "WebQuery.h"

#include <QPoint>
#include <QStringList>
#include <QVector>

class ConfirmDot;
class FlowLayout;
class GhostLineEdit;
class GlobalHotkeyController;
class GlyphButton;
class GlyphLabel;
class LauncherModel;
class QDialog;
class QFrame;
class QListWidget;
class QListWidgetItem;
class QMenu;

/// The search window: a strip with a field, a row of filter chips, and a panel of results that is
/// either closed or open at its full height. Its hotkey toggles it; each show starts empty at the
/// same place. It runs what the user chooses and remembers the choice. GUI thread only.
class SpotlightWindow : public FramelessWindow
{
    Q_OBJECT

public:
    static constexpr int WINDOW_WIDTH = 584;
    static constexpr int PILL_HEIGHT = 80;
    static constexpr int SEARCH_BOX_HEIGHT = 44;
    static constexpr int STRIP_PAD = 18;
    static constexpr int PILL_INSET = 8;
    static constexpr int ChipRowWidth = 484;
    static constexpr int SETTINGS_BTN_SIZE = 32;
    static constexpr int CHIP_MARGIN = 8; ///< beside the chips, where their widths leave it
    static constexpr int CHIP_GAP = 8;    ///< between neighbours and between lines of them
    static constexpr int SEAM_GAP = 0;    ///< between strip and panel
    static constexpr int RESULTS_PAD_SIDE = 6;
    static constexpr int RESULTS_PAD_TOP = 4;
    static constexpr int RESULTS_PAD_BOTTOM = 4;
    static constexpr int VISIBLE_ROWS = 5;
    static constexpr int APP_LIMIT = 12;  ///< applications of one search, before usage ranks them
    static constexpr int FILE_LIMIT = 12; ///< files, or folders, where nothing else is searched for
    /// Item role: under what key a launch of the row is remembered.
    static constexpr int RoleUsageKey = SpotlightResultDelegate::RoleNextFree;

    /// Key of the scope of folders, the one that is no type of item.
    static constexpr QLatin1String FolderScope{"Folder"};

    /// A kind of result that a search can be narrowed to.
    struct ScopeDef
    {
        const char* typeKey; ///< empty for all kinds
        uint glyph;          ///< 0: that of the type
    };

    /// `model` is not owned and must outlive the window.
    SpotlightWindow(LauncherModel* model, QWidget* parent);

    GlobalHotkeyController* hotkeyController() const { return m_hotkeyController; }

    /// Every kind of result, in the order of chips, menu rows and stored keys.
    static const QVector<ScopeDef>& scopeDefs();
    static uint scopeGlyph(const ScopeDef& def);
    static QString scopeLabel(const ScopeDef& def);

    /// The scopes that every show starts with, without unknown ones and in the order of
    /// `scopeDefs()`. Empty means all.
    static QStringList defaultScopeKeys();
    static void setDefaultScopeKeys(const QStringList& keys);

    /// Narrows the present search, until the next show.
    void setScopeKeys(const QStringList& keys);
    void removeScope(const QString& key);

    /// Takes a folder from those that file results are limited to, for good.
    void removeFolder(const QString& path);

    /// Asks to which folders the file results shall be limited, and waits for the answer.
    void showFolderPicker();

    /// Lets the user change language and look of the program and the scopes of every show, and
    /// waits for the answer. The scopes become those of the present search, too.
    void showSettingsDialog();

    /// Places a dialog that has a free margin around its card so that the card begins at the height
    /// of the strip, in the middle below it, and lies on the primary screen.
    void alignDialogToSearchBar(QDialog* dialog) const;

    /// Fills the list for a text as typed. Synchronous; selects the first result.
    void rebuildResults(const QString& text, const QStringList& scopeKeys);

    /// Runs a row. On success the use is remembered and the window goes; on failure all stays.
    void launchItem(QListWidgetItem* item);

    /// Moves the selection past headers and hints; stops at either end.
    void moveSelection(int delta);

    /// Heights in pixels, of the chip row (0 without chips), the strip, the panel and the window.
    int chipRowHeight() const;
    int searchStripHeight() const;
    int panelHeightFor(int rows) const;
    int windowHeightFor(int strip, int panel) const;
    int emptyStateHeight() const;

    /// Where a window of that height goes so that its visible part stays on the primary screen.
    int anchoredY(int height) const;

    /// Reads colours and texts anew.
    void applyThemeColors();

signals:
    /// Something that the other window shows too was changed from here.
    void appearanceChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void prepareShow() override;
    void placeOnScreen() override;
    void finishShow() override;
    bool isDragEndedBy(Qt::MouseButton button) const override;
    void dragged() override;
    void syncShadowLayers() override;

private:
    struct Group;

    /// What the file index has for a text and its scopes.
    struct FileHits
    {
        bool wantsFiles = false;
        bool wantsFolders = false;
        bool isReady = false;
        QVector<FileIndex::Entry> files;
        QVector<FileIndex::Entry> folders;

        bool operator==(const FileHits& other) const = default;
    };

    void buildShell();
    void buildSearchStrip();
    void buildSearchBox();
    void buildChipRow();
    void buildResultsPanel();
    void clipRowsToPanel();
    void setUpHotkey();
    void startIndexing();
    bool handleFieldKey(int key, Qt::KeyboardModifiers modifiers);

    void setFolders(const QStringList& folders);
    void refreshFilterChips();
    void addScopeChips();
    void addFolderChips();
    /// Width in pixels, gaps included, that chips in one line must have to fill all screens' height
    /// when they are broken into lines.
    static int roomForChips();
    void fitChipMargins();
    GlyphButton* addFilterChip(uint glyph, const QString& label);
    void showFilterMenu();
    void applySettings(const QStringList& scopes, bool hasNewLook);
    static void placeConfirmDot(ConfirmDot* dot, const QMenu& menu, const QRect& row);

    void applySearchStripStyle();
    void applyResultsLayout(int rowCount);

    void addCalculatorGroup(const QString& text);
    void addOwnItemGroups(const QString& text, const QStringList& scopeKeys);
    QVector<Group> ownItemGroups(const QString& text) const;
    void addApplicationGroup(const QString& text);
    FileHits fileHits(const QString& text, const QStringList& scopeKeys) const;
    void addFileGroups(const QStringList& scopeKeys);
    void rebuildForChangedFiles();
    void addFileGroup(const QString& title, const QVector<FileIndex::Entry>& hits);
    void addWebGroups(const QString& text, const WebQuery::EngineMatch& em);
    void addWebRows(const QVector<WebQuery::Suggestion>& suggestions);
    void addHeaderRow(const QString& text);
    void addShortcutRow(const SearchMatch& match, bool first, bool last);
    void addAppRow(const AppIndex::Entry& entry, bool first, bool last);
    void addFileRow(const FileIndex::Entry& entry, bool first, bool last);
    void addWebRow(const WebQuery::Suggestion& suggestion, bool first, bool last);
    void addCalcRow(const Calculator::Result& result);
    void addHintRow(const QString& text, const QString& iconToken, const QString& type);
    static void markGroupEdges(QListWidgetItem* item, bool first, bool last);
    /// The type of one of the user's items, which an old document may leave open.
    static QString typeOf(const LauncherElement& element);
    /// The item of a synthetic row, put together from what the row says.
    static LauncherElement elementOf(const QListWidgetItem& item);
    bool isResultRow(int row) const;
    void selectFirstResultRow();
    static void recordUsage(const QListWidgetItem* item);

    QStringList m_scopeKeys; ///< empty: all scopes
    FileHits m_fileHits;     ///< in the rows
    LauncherModel* m_model = nullptr;
    QFrame* m_shell = nullptr;
    QFrame* m_searchPill = nullptr;
    QFrame* m_searchBox = nullptr;
    bool m_resultsShown = false;
    GlyphLabel* m_searchIconLbl = nullptr;
    GhostLineEdit* m_searchInput = nullptr;
    GlyphButton* m_addFilterBtn = nullptr;
    GlyphButton* m_settingsBtn = nullptr;
    QWidget* m_chipRow = nullptr;
    FlowLayout* m_chipLayout = nullptr;
    QVector<GlyphButton*> m_chips;
    QFrame* m_resultsPanel = nullptr;
    QListWidget* m_resultsList = nullptr;
    SpotlightResultDelegate* m_rowDelegate = nullptr;
    GlobalHotkeyController* m_hotkeyController = nullptr;
    QPoint m_anchorPos; ///< where the window stands before it grows
    bool m_anchorValid = false;
    int m_panelHeight = -1; ///< last applied
    int m_stripHeight = -1; ///< last applied
};
