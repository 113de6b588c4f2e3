// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ActionsPanel.h"
#include "CardHeader.h"
#include "CustomWidgets.h"
#include "HomeView.h"
#include "IconHelper.h"
#include "ItemEditorPanel.h"
#include "ItemImages.h"
#include "Localization.h"
#include "MainWindow.h"
#include "PreviewTooltip.h"
#include "Theme.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTextEdit>
#include <QTimer>
#include <QVBoxLayout>

namespace
{

constexpr int kHeaderCtrlRadius = HomeView::HeaderCtrlHeight / 2;
constexpr int kHeaderGlyphPx = 20;
constexpr int kSearchGlyphBox = 13;
constexpr int kSearchGlyphPx = 11;
constexpr int kEmptyBadgeSize = 36;
constexpr int kEmptyButtonHeight = 36;
constexpr int kDetailBadgeSize = 38;
constexpr int kPreviewSidePad = 20;

/// A label that shows names of users or other text, and never takes it for markup.
QLabel* plainLabel(const QString& style, QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setStyleSheet(style);
    return label;
}

void setPagePadding(QLayout* page)
{
    page->setContentsMargins(kPreviewSidePad, Theme::Sp_Lg, kPreviewSidePad, Theme::Sp_Lg);
}

} // namespace

void HomeView::setupUI()
{
    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(0, 0, 0, 0);
    root->setSpacing(0);
    root->addWidget(buildHeader());
    root->addWidget(buildBody(), 1);
    buildBackdrop();
    buildModalCard();
    buildHoverPreview();
}

QFrame* HomeView::buildHeader()
{
    auto* header = new QFrame(this);
    header->setObjectName(QStringLiteral("homeHeader"));
    header->setFixedHeight(HeaderHeight);
    header->setStyleSheet(QStringLiteral("QFrame#homeHeader { %1 }")
                              .arg(Theme::bandStyle(Theme::shellBg(), Theme::Rad_Lg, 0)));
    auto* rows = new QVBoxLayout(header);
    rows->setContentsMargins(Theme::Sp_Md, HeaderVPad, Theme::Sp_Md, HeaderVPad);
    rows->setSpacing(HeaderRowGap);

    // Made in the order in which they stand, which is also that of the focus.
    m_homeAddBtn = buildHeaderButton(QStringLiteral("homeAddBtn"),
                                     Tr::t(QStringLiteral("actions.add_shortcut")));
    m_homeTemplateBtn = buildHeaderButton(QStringLiteral("homeTemplateBtn"),
                                          Tr::t(QStringLiteral("settings.cat_template")));
    buildSearchFrame();
    m_homeSettingsBtn = buildHeaderButton(QStringLiteral("homeSettingsBtn"),
                                          Tr::t(QStringLiteral("settings.title")));
    updateHomeAddBtnIcon(false);
    updateHomeTemplateBtnIcon(false);
    updateHomeSettingsBtnIcon(false);
    auto* firstRow = new QHBoxLayout;
    firstRow->setSpacing(Theme::Sp_Sm);
    firstRow->addWidget(m_homeAddBtn);
    firstRow->addWidget(m_homeTemplateBtn);
    firstRow->addWidget(m_searchFrame, 1);
    firstRow->addWidget(m_homeSettingsBtn);
    rows->addLayout(firstRow);

    buildCategoryStrip();
    rows->addWidget(m_catScroll);
    return header;
}

GlyphButton* HomeView::buildHeaderButton(const QString& objectName, const QString& spokenName)
{
    auto* button = new GlyphButton(this);
    button->setObjectName(objectName);
    button->setAccessibleName(spokenName);
    button->setFixedSize(HeaderCtrlHeight, HeaderCtrlHeight);
    button->setCursor(Qt::PointingHandCursor);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setStyleSheet(Theme::iconBtnStyle(Theme::colors(), QStringLiteral("transparent")) +
                          QStringLiteral("QPushButton#%1 { border-radius: %2px; }")
                              .arg(objectName, QString::number(kHeaderCtrlRadius)));
    return button;
}

void HomeView::buildSearchFrame()
{
    m_searchFrame = new QFrame(this);
    m_searchFrame->setObjectName(QStringLiteral("searchContainer"));
    m_searchFrame->setFixedHeight(HeaderCtrlHeight);
    m_searchFrame->setMinimumWidth(0);
    m_searchFrame->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_searchFrame->setCursor(Qt::IBeamCursor);
    m_searchFrame->setFocusPolicy(Qt::NoFocus);
    auto* row = new QHBoxLayout(m_searchFrame);
    row->setContentsMargins(Theme::Sp_Md, 0, Theme::Sp_Md, 0);
    row->setSpacing(Theme::Sp_Sm);

    m_searchIconLbl = new GlyphLabel(m_searchFrame);
    m_searchIconLbl->setFixedSize(kSearchGlyphBox, kSearchGlyphBox);
    m_searchIconLbl->setAttribute(Qt::WA_TransparentForMouseEvents);
    row->addWidget(m_searchIconLbl);

    m_searchInput = new QLineEdit(m_searchFrame);
    m_searchInput->setObjectName(QStringLiteral("searchInput"));
    m_searchInput->setFrame(false);
    m_searchInput->setFocusPolicy(Qt::StrongFocus);
    m_searchInput->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    const QString placeholder = Tr::t(QStringLiteral("home.search_placeholder"));
    m_searchInput->setPlaceholderText(placeholder);
    m_searchInput->setAccessibleName(placeholder);
    row->addWidget(m_searchInput, 1);
    updateSearchStyle();
}

void HomeView::updateSearchStyle()
{
    const ColorTokens c = Theme::colors();
    m_searchFrame->setStyleSheet(
        QStringLiteral("QFrame#searchContainer { background-color: %1; border: none; "
                       "border-radius: %2px; }")
            .arg(Theme::boxBg(), QString::number(kHeaderCtrlRadius)));
    m_searchIconLbl->setGlyph(Glyph::Search, kSearchGlyphPx, c.onSurfaceVariant);
    m_searchInput->setStyleSheet(
        QStringLiteral("QLineEdit { background: transparent; border: none; color: %1; "
                       "font-size: %2; font-weight: 600; }")
            .arg(c.onSurface, FontTokens::SizeMd));
}

// The calls tell what happens to the button, although it looks the same throughout.

void HomeView::updateHomeAddBtnIcon(bool)
{
    m_homeAddBtn->setGlyph(Glyph::Add, kHeaderGlyphPx, getItemTheme().onSurface);
}

void HomeView::updateHomeTemplateBtnIcon(bool)
{
    m_homeTemplateBtn->setGlyph(Glyph::Bookmarks, kHeaderGlyphPx, getItemTheme().onSurface);
}

void HomeView::updateHomeSettingsBtnIcon(bool)
{
    m_homeSettingsBtn->setGlyph(Glyph::Settings, kHeaderGlyphPx, getItemTheme().onSurface);
}

void HomeView::buildCategoryStrip()
{
    m_catScroll = new QScrollArea(this);
    m_catScroll->setObjectName(QStringLiteral("catScroll"));
    m_catScroll->setWidgetResizable(true);
    m_catScroll->setFixedHeight(CatPillHeight);
    m_catScroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_catScroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_catScroll->setFrameShape(QFrame::NoFrame);
    m_catScroll->setFocusPolicy(Qt::StrongFocus);
    m_catScroll->setStyleSheet(QStringLiteral(
        "QScrollArea#catScroll, QWidget#catContainer { background: transparent; border: none; }"));
    m_catContainer = new QWidget;
    m_catContainer->setObjectName(QStringLiteral("catContainer"));
    m_catLayout = new QHBoxLayout(m_catContainer);
    m_catLayout->setContentsMargins(0, 0, 0, 0);
    m_catLayout->setSpacing(Theme::Sp_Sm);
    m_catScroll->setWidget(m_catContainer);
}

QWidget* HomeView::buildBody()
{
    auto* body = new QWidget(this);
    body->setObjectName(QStringLiteral("chromeStripBase"));
    body->setAttribute(Qt::WA_StyledBackground);
    body->setStyleSheet(QStringLiteral("QWidget#chromeStripBase { %1 }")
                            .arg(Theme::bandStyle(Theme::shellBg(), 0, Theme::Rad_Lg)));
    auto* bodyLayout = new QHBoxLayout(body);
    bodyLayout->setContentsMargins(0, 0, 0, 0);
    bodyLayout->setSpacing(Theme::Sp_Md);

    auto* card = new QFrame(body);
    card->setObjectName(QStringLiteral("leftCard"));
    card->setStyleSheet(QStringLiteral("QFrame#leftCard { %1 }")
                            .arg(Theme::bandStyle(Theme::panelBg(), Theme::Rad_Md, Theme::Rad_Lg)));
    auto* cardLayout = new QVBoxLayout(card);
    cardLayout->setContentsMargins(Theme::Sp_Md, Theme::Sp_Md, Theme::Sp_Md, Theme::Sp_Md);
    cardLayout->setSpacing(Theme::Sp_Sm);
    bodyLayout->addWidget(card, 1);

    m_listStack = new QStackedWidget(card);
    m_listStack->setObjectName(QStringLiteral("listStack"));
    m_listStack->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_listStack->setMinimumWidth(0);
    buildList();
    m_listStack->addWidget(m_listWidget);
    m_listStack->addWidget(buildEmptyPage());
    cardLayout->addWidget(m_listStack, 1);
    return body;
}

void HomeView::buildList()
{
    m_listWidget = new QListWidget(m_listStack);
    m_listWidget->setObjectName(QStringLiteral("itemList"));
    m_listWidget->setFocusPolicy(Qt::StrongFocus);
    m_listWidget->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_listWidget->setViewMode(QListView::IconMode);
    m_listWidget->setFlow(QListView::LeftToRight);
    m_listWidget->setWrapping(true);
    m_listWidget->setResizeMode(QListView::Adjust);
    m_listWidget->setMovement(QListView::Static);
    m_listWidget->setSpacing(0);
    m_listWidget->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_listWidget->viewport()->setMouseTracking(true);
    m_listWidget->setStyleSheet(
        QStringLiteral("QListWidget { background: transparent; border: none; outline: 0; }"));
    m_gridDelegate = new GridTileDelegate(TileGap, m_listWidget);
    m_listWidget->setItemDelegate(m_gridDelegate);
    ItemImages::repaintOnArrival(m_listWidget->viewport());
}

QWidget* HomeView::buildEmptyPage()
{
    const ColorTokens c = Theme::colors();
    auto* page = new QWidget(m_listStack);
    auto* column = new QVBoxLayout(page);
    column->setSpacing(Theme::Sp_Sm);
    // Instead of a layout aligned to the middle, which would break the text at half the width.
    column->addStretch();

    auto* badge = new GlyphBadge(page);
    badge->setFixedSize(kEmptyBadgeSize, kEmptyBadgeSize);
    badge->setItem(QString(), QStringLiteral("Document"));
    column->addWidget(badge, 0, Qt::AlignHCenter);

    m_emptyListText =
        plainLabel(QStringLiteral("color: %1; font-size: %2; letter-spacing: 0.3px; border: none;")
                       .arg(c.onSurfaceVariant, FontTokens::SizeSm),
                   page);
    m_emptyListText->setAlignment(Qt::AlignCenter);
    m_emptyListText->setWordWrap(true);
    column->addWidget(m_emptyListText);

    const QString mainStyle = Theme::primaryBtnStyle(c);
    m_emptyAddBtn = buildEmptyPageButton(QStringLiteral("emptyAddBtn"), mainStyle);
    m_emptyAddBtn->setText(Tr::t(QStringLiteral("actions.add_shortcut")));
    m_emptyWebBtn = buildEmptyPageButton(QStringLiteral("emptyWebBtn"), mainStyle);
    m_emptyWebAltBtn =
        buildEmptyPageButton(QStringLiteral("emptyWebAltBtn"), Theme::pillSecondaryStyle(c));
    for (QPushButton* button : {m_emptyAddBtn, m_emptyWebBtn, m_emptyWebAltBtn})
        column->addWidget(button, 0, Qt::AlignHCenter);
    column->addStretch();
    return page;
}

QPushButton* HomeView::buildEmptyPageButton(const QString& objectName, const QString& style)
{
    auto* button = new QPushButton(m_listStack);
    button->setObjectName(objectName);
    button->setCursor(Qt::PointingHandCursor);
    button->setFixedHeight(kEmptyButtonHeight);
    button->setStyleSheet(style);
    return button;
}

void HomeView::buildBackdrop()
{
    m_gridOverlayBackdrop = new QPushButton(this);
    m_gridOverlayBackdrop->setObjectName(QStringLiteral("gridOverlayBackdrop"));
    m_gridOverlayBackdrop->setAccessibleName(Tr::t(QStringLiteral("dialog.btn_cancel")));
    m_gridOverlayBackdrop->setCursor(Qt::PointingHandCursor);
    m_gridOverlayBackdrop->setFocusPolicy(Qt::NoFocus);
    m_gridOverlayBackdrop->setStyleSheet(
        QStringLiteral("QPushButton#gridOverlayBackdrop { background-color: rgba(0, 0, 0, 90); "
                       "border: none; border-radius: %1px; }")
            .arg(Theme::Rad_Lg));
    m_gridOverlayBackdrop->hide();
}

void HomeView::buildModalCard()
{
    m_card = new QFrame(this);
    m_card->setObjectName(QStringLiteral("rightCard"));
    m_card->setStyleSheet(QStringLiteral("QFrame#rightCard { background-color: %1; border: none; "
                                         "border-radius: %2px; }")
                              .arg(Theme::panelBg(), QString::number(Theme::Rad_Lg)));
    auto* column = new QVBoxLayout(m_card);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    m_cardHeader =
        new CardHeader(QStringLiteral("previewCardHeader"), QString(), Theme::Rad_Lg, m_card);
    column->addWidget(m_cardHeader);

    m_previewStack = new SizeAdaptiveStackedWidget(m_card);
    m_previewStack->setObjectName(QStringLiteral("previewStack"));
    m_previewStack->setStyleSheet(
        QStringLiteral("QStackedWidget#previewStack { background: transparent; border: none; }"));
    m_previewStack->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_previewStack->setMinimumWidth(0);
    m_previewStack->addWidget(buildPreviewEmptyPage());
    m_previewStack->addWidget(buildPreviewDetailPage());
    m_editorPage = addPanelPage();
    m_actionsPage = addPanelPage();
    column->addWidget(m_previewStack, 1);
    m_card->hide();
}

/// A page of the card that one panel is to fill.
QWidget* HomeView::addPanelPage()
{
    auto* page = new QWidget(m_previewStack);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    m_previewStack->addWidget(page);
    return page;
}

ItemEditorPanel* HomeView::itemEditorPanel()
{
    if (m_itemEditorPanel)
        return m_itemEditorPanel;
    m_itemEditorPanel = new ItemEditorPanel(m_model, m_editorPage);
    m_editorPage->layout()->addWidget(m_itemEditorPanel);
    connect(m_itemEditorPanel, &ItemEditorPanel::closeRequested, this,
            [this](int row) { m_mainWindow->closeItemEditor(row); });
    return m_itemEditorPanel;
}

ActionsPanel* HomeView::actionsPanel()
{
    if (m_actionsPanel)
        return m_actionsPanel;
    m_actionsPanel = new ActionsPanel(m_model, m_actionsPage);
    m_actionsPage->layout()->addWidget(m_actionsPanel);
    connectActions();
    return m_actionsPanel;
}

/// Before a page is measured for the card that shows it.
void HomeView::fillModalPage()
{
    if (m_previewStack->currentIndex() == PagePreviewEditor)
        itemEditorPanel();
    else if (m_previewStack->currentIndex() == PagePreviewActions)
        actionsPanel();
}

QWidget* HomeView::buildPreviewEmptyPage()
{
    auto* page = new QWidget(m_previewStack);
    auto* column = new QVBoxLayout(page);
    setPagePadding(column);
    column->setAlignment(Qt::AlignCenter);
    m_previewEmptyHintLbl = plainLabel(
        Theme::textStyle(Theme::colors().onSurfaceVariant, FontTokens::SizeLg, Theme::Weight::Bold),
        page);
    m_previewEmptyHintLbl->setAlignment(Qt::AlignCenter);
    column->addWidget(m_previewEmptyHintLbl);
    return page;
}

QWidget* HomeView::buildPreviewDetailPage()
{
    const ColorTokens tones = getItemTheme();
    auto* page = new QWidget(m_previewStack);
    auto* column = new QVBoxLayout(page);
    setPagePadding(column);
    column->setSpacing(Theme::Sp_Md);

    m_previewIconLbl = new GlyphBadge(page);
    m_previewIconLbl->setFixedSize(kDetailBadgeSize, kDetailBadgeSize);
    m_previewTitleLbl = plainLabel(QStringLiteral("color: %1; font-size: 15px; font-weight: 700; "
                                                  "border: none; background: transparent;")
                                       .arg(tones.onSurface),
                                   page);
    m_previewTitleLbl->setWordWrap(true);
    m_previewTypeLbl = plainLabel(QStringLiteral("background-color: %1; color: %2; "
                                                 "font-size: 10px; font-weight: 700; border: none; "
                                                 "border-radius: 8px; padding: 2px 8px;")
                                      .arg(tones.container, tones.onContainer),
                                  page);
    m_previewTypeLbl->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(Theme::Sp_Xs);
    texts->addWidget(m_previewTitleLbl);
    texts->addWidget(m_previewTypeLbl, 0, Qt::AlignLeft);
    auto* head = new QHBoxLayout;
    head->setSpacing(Theme::Sp_Md);
    head->addWidget(m_previewIconLbl);
    head->addLayout(texts, 1);
    column->addLayout(head);

    m_previewValue = new QTextEdit(page);
    m_previewValue->setReadOnly(true);
    m_previewValue->setFrameShape(QFrame::NoFrame);
    m_previewValue->setStyleSheet(
        QStringLiteral("QTextEdit { background-color: %1; border: none; border-radius: 20px; "
                       "padding: 18px;color: %2; font-size: %3; letter-spacing: 0.3px; "
                       "line-height: 1.6; }")
            .arg(tones.surfaceContainerHighest, tones.onSurfaceVariant, FontTokens::SizeMd));
    column->addWidget(m_previewValue, 1);
    return page;
}

void HomeView::buildHoverPreview()
{
    m_hoverPreviewTimer = new QTimer(this);
    m_hoverPreviewTimer->setSingleShot(true);
    m_hoverPreviewTimer->setInterval(PreviewTooltip::DelayMs);
    connect(m_hoverPreviewTimer, &QTimer::timeout, this, &HomeView::showHoverPreview);
    m_hoverPreview = new PreviewTooltip(this);
    m_hoverPreview->setDelayTimer(m_hoverPreviewTimer);
    m_hoverPreview->attachTo(m_listWidget->viewport());
    m_hoverPreview->attachTo(m_listWidget);
    m_hoverPreview->attachTo(m_mainWindow);
}

void HomeView::connectHeader()
{
    connect(m_searchInput, &QLineEdit::textChanged, this, [this](const QString& text) {
        m_searchQuery = text;
        refreshUI(-1, false);
    });
    connect(m_catScroll->horizontalScrollBar(), &QScrollBar::valueChanged, this,
            &HomeView::followStripScroll);
    connect(m_homeAddBtn, &QPushButton::clicked, this,
            [this] { m_mainWindow->showAddActionsMenu(); });
    connect(m_homeTemplateBtn, &QPushButton::clicked, this,
            [this] { m_mainWindow->showTemplateActionsMenu(); });
    connect(m_homeSettingsBtn, &QPushButton::clicked, this,
            [this] { m_mainWindow->goToSettings(); });
}

void HomeView::connectList()
{
    connect(m_listWidget, &QListWidget::itemEntered, this, [this](QListWidgetItem* item) {
        if (!isReorderMode())
            m_listWidget->setCurrentItem(item);
    });
    connect(m_listWidget, &QListWidget::currentItemChanged, this, [this] {
        cancelHoverPreview();
        m_hoverPreviewTimer->start();
    });
    connect(m_listWidget->verticalScrollBar(), &QScrollBar::valueChanged, this,
            &HomeView::cancelHoverPreview);
    connect(m_listStack, &QStackedWidget::currentChanged, this,
            [this] { m_listStack->parentWidget()->update(); });
    connect(m_emptyAddBtn, &QPushButton::clicked, this,
            [this] { m_mainWindow->openItemEditor(QString()); });
    connect(m_emptyWebBtn, &QPushButton::clicked, this, [this] { launchWebQuery(0); });
    connect(m_emptyWebAltBtn, &QPushButton::clicked, this, [this] { launchWebQuery(1); });
}

void HomeView::connectCard()
{
    connect(m_previewStack, &QStackedWidget::currentChanged, this, &HomeView::syncModalCard);
    connect(m_gridOverlayBackdrop, &QPushButton::clicked, this, &HomeView::closeCardFromBackdrop);
}

void HomeView::connectActions()
{
    connect(m_actionsPanel, &ActionsPanel::stepChanged, this, [this](ItemActionsStep step) {
        if (step == ActionsNone)
            return;
        setPreviewCardTitle(Tr::t(step == ActionsConfirmDelete
                                      ? QStringLiteral("actions.delete_shortcut")
                                      : QStringLiteral("actions.title_shortcut")));
    });
    connect(m_actionsPanel, &ActionsPanel::editItemRequested, this,
            [this](const QString& id) { m_mainWindow->openItemEditor(id); });
    connect(m_actionsPanel, &ActionsPanel::dataChanged, this, [this] { refreshUI(-1, false); });
    connect(m_actionsPanel, &ActionsPanel::closeRequested, this,
            [this] { m_mainWindow->closeItemActionsPanel(); });
}
