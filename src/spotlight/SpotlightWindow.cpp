// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SpotlightWindow.h"

#include "AppIndex.h"
#include "CardShape.h"
#include "CustomWidgets.h"
#include "FileIndex.h"
#include "FlowLayout.h"
#include "GlobalHotkeyController.h"
#include "GlyphWidgets.h"
#include "HotkeyManager.h"
#include "IconHelper.h"
#include "ItemImages.h"
#include "Keys.h"
#include "Localization.h"
#include "SpotlightResultDelegate.h"
#include "Theme.h"

#include <QKeyEvent>
#include <QListWidget>
#include <QPainterPath>
#include <QPointer>
#include <QRegion>
#include <QTimer>
#include <QVBoxLayout>

namespace
{

constexpr int kHotkeyId = 2;
constexpr int kShellRadius = 40;
constexpr int kBoxRadius = 22;
constexpr int kRowEndRadius = 30;
constexpr int kBoxSpacing = 8;
constexpr int kBoxMarginLeft = 8;
constexpr int kBoxMarginRight = 6;
constexpr int kSearchIconBox = 20;
constexpr int kSearchIconPx = 16;
constexpr int kSettingsIconPx = 20;

} // namespace

SpotlightWindow::SpotlightWindow(LauncherModel* model, QWidget* parent)
    : FramelessWindow(parent), m_model(model)
{
    buildShell();
    buildSearchStrip();
    buildResultsPanel();
    CardShape::attach(this, m_shell, kShellRadius, m_shadowLayer);
    setFixedHeight(emptyStateHeight());
    resize(WINDOW_WIDTH, emptyStateHeight());
    connect(m_searchInput, &QLineEdit::textChanged, this,
            [this](const QString& text) { rebuildResults(text, m_scopeKeys); });
    m_searchInput->installEventFilter(this);
    connect(m_resultsList, &QListWidget::itemDoubleClicked, this, &SpotlightWindow::launchItem);
    setUpHotkey();
    startIndexing();
    // Its colours and heights come with each show, and the program's start needn't wait for them.
}

void SpotlightWindow::buildShell()
{
    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(SHADOW_MARGIN, SHADOW_MARGIN, SHADOW_MARGIN, SHADOW_MARGIN);
    root->setSpacing(0);

    buildShadowLayer(QStringLiteral("spotlightShadowLayer"), kShellRadius);

    m_shell = new QFrame(this);
    m_shell->setObjectName(QStringLiteral("spotlightShell"));
    m_shell->setFrameShape(QFrame::NoFrame);
    m_shell->raise();
    auto* shellLayout = new QVBoxLayout(m_shell);
    shellLayout->setContentsMargins(0, 0, 0, 0);
    shellLayout->setSpacing(0);
    root->addWidget(m_shell, 0, Qt::AlignTop);
}

void SpotlightWindow::buildSearchStrip()
{
    m_searchPill = new QFrame(m_shell);
    m_searchPill->setObjectName(QStringLiteral("spotlightSearchPill"));
    auto* pillLayout = new QVBoxLayout(m_searchPill);
    pillLayout->setContentsMargins(STRIP_PAD, STRIP_PAD, STRIP_PAD, STRIP_PAD);
    pillLayout->setSpacing(STRIP_PAD);
    m_shell->layout()->addWidget(m_searchPill);
    buildSearchBox();
    buildChipRow();
}

void SpotlightWindow::buildSearchBox()
{
    m_searchBox = new QFrame(m_searchPill);
    m_searchBox->setObjectName(QStringLiteral("spotlightSearchBox"));
    m_searchBox->setFixedHeight(SEARCH_BOX_HEIGHT);
    auto* boxLayout = new QHBoxLayout(m_searchBox);
    boxLayout->setContentsMargins(kBoxMarginLeft, 0, kBoxMarginRight, 0);
    boxLayout->setSpacing(kBoxSpacing);

    m_addFilterBtn = new GlyphButton(m_searchBox);
    m_addFilterBtn->setFixedHeight(PillStyle::Height);
    // The focus never leaves the field.
    m_addFilterBtn->setFocusPolicy(Qt::NoFocus);
    m_addFilterBtn->setCursor(Qt::PointingHandCursor);
    connect(m_addFilterBtn, &QPushButton::clicked, this, &SpotlightWindow::showFilterMenu);
    boxLayout->addWidget(m_addFilterBtn, 0, Qt::AlignVCenter);

    m_searchInput = new GhostLineEdit(m_searchBox);
    m_searchInput->setFrame(false);
    boxLayout->addWidget(m_searchInput, 1, Qt::AlignVCenter);

    m_searchIconLbl = new GlyphLabel(m_searchBox);
    m_searchIconLbl->setFixedSize(kSearchIconBox, kSearchIconBox);
    boxLayout->addWidget(m_searchIconLbl, 0, Qt::AlignVCenter);

    m_settingsBtn = new GlyphButton(m_searchBox);
    m_settingsBtn->setFixedSize(SETTINGS_BTN_SIZE, SETTINGS_BTN_SIZE);
    m_settingsBtn->setFocusPolicy(Qt::NoFocus);
    m_settingsBtn->setCursor(Qt::PointingHandCursor);
    connect(m_settingsBtn, &QPushButton::clicked, this, &SpotlightWindow::showSettingsDialog);
    boxLayout->addWidget(m_settingsBtn, 0, Qt::AlignVCenter);
    m_searchPill->layout()->addWidget(m_searchBox);
}

void SpotlightWindow::buildChipRow()
{
    m_chipRow = new QWidget(m_searchPill);
    m_chipRow->setObjectName(QStringLiteral("spotlightChipRow"));
    m_chipLayout = new FlowLayout(m_chipRow, CHIP_GAP, CHIP_GAP);
    m_chipLayout->setContentsMargins(CHIP_MARGIN, 0, CHIP_MARGIN, 0);
    m_chipRow->hide();
    m_searchPill->layout()->addWidget(m_chipRow);
}

void SpotlightWindow::buildResultsPanel()
{
    m_resultsPanel = new QFrame(m_shell);
    m_resultsPanel->setObjectName(QStringLiteral("spotlightResultsPanel"));
    m_resultsPanel->setFrameShape(QFrame::NoFrame);
    auto* panelLayout = new QVBoxLayout(m_resultsPanel);
    panelLayout->setContentsMargins(0, 0, 0, 0);
    panelLayout->setSpacing(0);
    m_resultsPanel->hide();
    m_shell->layout()->addWidget(m_resultsPanel);

    m_resultsList = new QListWidget(m_resultsPanel);
    m_resultsList->setFrameShape(QFrame::NoFrame);
    m_resultsList->setStyleSheet(
        QStringLiteral("QListWidget { background: transparent; border: none; outline: 0; "
                       "padding: %1px %2px %3px %2px; }QListWidget::item { border: none; }")
            .arg(RESULTS_PAD_TOP)
            .arg(RESULTS_PAD_SIDE)
            .arg(RESULTS_PAD_BOTTOM));
    m_resultsList->setFocusPolicy(Qt::NoFocus);
    m_resultsList->setSelectionMode(QAbstractItemView::SingleSelection);
    m_resultsList->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_resultsList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_resultsList->setMouseTracking(true); // rows light up under the pointer
    m_rowDelegate = new SpotlightResultDelegate(m_resultsList);
    m_rowDelegate->setFirstRowTopRadius(kRowEndRadius);
    m_rowDelegate->setLastRowBottomRadius(kRowEndRadius);
    m_resultsList->setItemDelegate(m_rowDelegate);
    ItemImages::repaintOnArrival(m_resultsList->viewport());
    panelLayout->addWidget(m_resultsList);
    clipRowsToPanel();
}

void SpotlightWindow::clipRowsToPanel()
{
    // Rows that are scrolled half out of view would stand out of the panel's round corners.
    QPainterPath card;
    card.addRoundedRect(
        QRect(0, -kShellRadius, WINDOW_WIDTH - 2 * SHADOW_MARGIN, kShellRadius + panelHeightFor(1)),
        kShellRadius, kShellRadius);
    m_resultsList->setMask(QRegion(card.toFillPolygon().toPolygon()));
}

void SpotlightWindow::setUpHotkey()
{
    HotkeyManager::Slot& slot = HotkeyManager::spotlightSlot;
    m_hotkeyController = new GlobalHotkeyController(winId(), kHotkeyId, &slot, this);
    HotkeyManager::loadSettings(slot, winId());
    m_hotkeyController->applyHotkey(slot.combo);
    connect(m_hotkeyController, &GlobalHotkeyController::hotkeyTriggered, this,
            &SpotlightWindow::toggleVisibility);
}

void SpotlightWindow::startIndexing()
{
    // It takes long, so the event loop runs and the windows stand before it begins.
    QTimer::singleShot(0, this, [] {
        AppIndex::build();
        FileIndex::build();
    });
    // The index outlives the window.
    FileIndex::setOnReady([window = QPointer(this)] {
        if (window && window->isVisible())
            window->rebuildForChangedFiles();
    });
}

// Showing and hiding

void SpotlightWindow::prepareShow()
{
    FileIndex::refresh();
    m_anchorValid = false;
    m_panelHeight = -1;
    m_stripHeight = -1;
    m_resultsList->clear();
    m_scopeKeys = defaultScopeKeys(); // before the colours, which come with new chips
    applyThemeColors();
    applyResultsLayout(0);
    resize(WINDOW_WIDTH, emptyStateHeight());
    m_searchInput->clear();
    update();
}

void SpotlightWindow::finishShow()
{
    m_searchInput->setFocus();
}

// Keys and mouse

bool SpotlightWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_searchInput && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (handleFieldKey(key->key(), key->modifiers()))
            return true;
    }
    return FramelessWindow::eventFilter(watched, event);
}

bool SpotlightWindow::handleFieldKey(int key, Qt::KeyboardModifiers modifiers)
{
    if (key == Qt::Key_F4 || (key == Qt::Key_Down && modifiers.testFlag(Qt::AltModifier))) {
        showFilterMenu();
        return true;
    }
    if (key == Qt::Key_Backspace && m_searchInput->text().isEmpty() && !m_scopeKeys.isEmpty()) {
        removeScope(m_scopeKeys.constLast());
        return true;
    }
    switch (key) {
    case Qt::Key_Down:
        moveSelection(1);
        return true;
    case Qt::Key_Up:
        moveSelection(-1);
        return true;
    default:
        break;
    }
    if (!Keys::isEnter(key))
        return false;
    launchItem(m_resultsList->currentItem());
    return true;
}

void SpotlightWindow::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        fadeOutAndHide();
    else
        FramelessWindow::keyPressEvent(event);
}

void SpotlightWindow::moveSelection(int delta)
{
    const int count = m_resultsList->count();
    if (count == 0 || delta == 0)
        return;
    const int current = m_resultsList->currentRow();
    if (current < 0) {
        selectFirstResultRow();
        return;
    }
    int row = current + delta;
    while (row >= 0 && row < count && !isResultRow(row))
        row += delta;
    if (row >= 0 && row < count)
        m_resultsList->setCurrentRow(row);
}

bool SpotlightWindow::isDragEndedBy(Qt::MouseButton /*button*/) const
{
    return true;
}

// Theming

void SpotlightWindow::applyThemeColors()
{
    const ColorTokens c = Theme::colors();
    m_shell->setStyleSheet(
        QStringLiteral("QFrame#spotlightShell { background: transparent; border: none; }"));
    m_shadowLayer->setStyleSheet(
        QStringLiteral("QFrame#spotlightShadowLayer { background-color: %1; border: none; "
                       "border-radius: %2px; }")
            .arg(Theme::shellBg())
            .arg(kShellRadius));
    tintShadow();
    applySearchStripStyle();
    m_addFilterBtn->setText(Tr::t(QStringLiteral("spotlight.filter_add")));
    PillStyle::applyResting(m_addFilterBtn, Glyph::Add, false);
    refreshFilterChips();
    m_searchIconLbl->setGlyph(Glyph::Search, kSearchIconPx, c.onSurfaceVariant);
    m_searchInput->setStyleSheet(
        QStringLiteral("QLineEdit { background: transparent; border: none; color: %1; "
                       "font-size: %2; font-weight: 600; padding: 2px 0; }")
            .arg(c.onSurface, FontTokens::SizeMd));
    m_searchInput->setPlaceholderText(Tr::t(QStringLiteral("home.search_placeholder")));
    m_searchInput->setGhostColor(QColor(c.onSurfaceVariant));
    m_settingsBtn->setGlyph(Glyph::Settings, kSettingsIconPx, c.onSurfaceVariant);
    m_settingsBtn->setGlyphActiveColor(c.onSurface);
    m_settingsBtn->setStyleSheet(
        QStringLiteral("QPushButton { background: transparent; border: none; }"));
    m_settingsBtn->setAccessibleName(Tr::t(QStringLiteral("settings.title")));
    m_resultsList->viewport()->update();
}

void SpotlightWindow::applySearchStripStyle()
{
    if (!m_searchPill || !m_searchBox || !m_resultsPanel)
        return;
    m_searchPill->setStyleSheet(QStringLiteral("QFrame#spotlightSearchPill {%1}")
                                    .arg(Theme::bandStyle(Theme::shellBg(), kShellRadius,
                                                          m_resultsShown ? 0 : kShellRadius)));
    m_resultsPanel->setStyleSheet(QStringLiteral("QFrame#spotlightResultsPanel {%1}")
                                      .arg(Theme::bandStyle(Theme::panelBg(), 0, kShellRadius)));
    m_searchBox->setStyleSheet(
        QStringLiteral("QFrame#spotlightSearchBox { background-color: %1; border: none; "
                       "border-radius: %2px; }")
            .arg(Theme::boxBg())
            .arg(kBoxRadius));
}
