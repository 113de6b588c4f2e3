// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HomeView.h"

#include "CardHeader.h"
#include "FramelessWindow.h"
#include "IconHelper.h"
#include "ItemRoles.h"
#include "Keys.h"
#include "LaunchDispatcher.h"
#include "LauncherModel.h"
#include "Localization.h"
#include "MainWindow.h"
#include "PreviewTooltip.h"
#include "RowPainting.h"
#include "SearchEngine.h"
#include "Theme.h"
#include "WebQuery.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QTextEdit>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <utility>

namespace
{

constexpr int kPillPoints = 9;
constexpr int kPillPadding = 31 + 12; // px around its text, see `PillStyle`
constexpr int kPillScrollMargin = 24;
/// The strip as wide as it is in the window, which a pill may not exceed.
constexpr int kStripWidth =
    MainWindow::WINDOW_WIDTH_GRID - 2 * FramelessWindow::SHADOW_MARGIN - 2 * Theme::Sp_Md;
/// Pills are widgets with a style sheet each. Up to so many are all made, of more only those in
/// view and as far from it as the reserve goes, so that they are not made anew at every turn of a
/// wheel.
constexpr int kPillsAtOnce = 60;
constexpr int kStripReserve = 2000;
constexpr int kEmptyButtonPadding = 2 * (16 + 1); // px around its text, see the button styles
constexpr int kTilePoints = 9;
constexpr int kMinCellWidth = 72;
constexpr int kMinCellHeight = 108;
constexpr int kMinColumns = 2;
constexpr int kMaxColumns = 4;
constexpr int kCardMargin = 12;
constexpr int kCardMaxWidth = 460;
constexpr int kCardMinHeight = 200;
// Names and values may have a megabyte, of which nobody sees, or listens to, more than this.
constexpr int kSpokenLength = 1000;
constexpr int kShownValueLength = 10000;

/// A row of the grid. It holds what it was made of and answers from that: a list of many thousand
/// rows is made anew within a keystroke, in which filling in each role by itself would show.
class ItemRow : public QListWidgetItem
{
public:
    ItemRow(const LauncherElement& element, int originalIndex, QString category)
        : m_id(element.id),
          m_name(element.name),
          m_type(element.shortcutType),
          m_iconToken(element.iconPath),
          m_category(std::move(category)),
          m_originalIndex(originalIndex)
    {
        if (m_type.isEmpty())
            m_type = ::ItemType::Url;
    }

    QListWidgetItem* clone() const override { return new ItemRow(*this); }

    QVariant data(int role) const override
    {
        switch (role) {
        case Qt::DisplayRole:
            return m_name;
        case Qt::AccessibleTextRole:
            return QStringLiteral("%1, %2").arg(RowPainting::visiblePart(m_name, kSpokenLength),
                                                RowPainting::typeLabel(m_type));
        case ItemRoles::RoleOriginalIndex:
            return m_originalIndex;
        case ItemRoles::RoleElementId:
            return m_id;
        case ItemRoles::RoleItemType:
            return m_type;
        case ItemRoles::RoleReserved:
            return 0;
        case ItemRoles::RoleIconToken:
            return m_iconToken;
        case ItemRoles::RoleCategory:
            return m_category;
        default:
            return QListWidgetItem::data(role);
        }
    }

private:
    QString m_id;
    QString m_name;
    QString m_type;
    QString m_iconToken;
    QString m_category;
    int m_originalIndex;
};

/// Adds rows to an empty list, which hears of them all at once at the end.
class RowFiller
{
public:
    explicit RowFiller(QListWidget* list) : m_list(list), m_blocker(list->model()) {}
    ~RowFiller()
    {
        m_blocker.unblock();
        m_list->reset();
    }
    RowFiller(const RowFiller&) = delete;
    RowFiller& operator=(const RowFiller&) = delete;

    void add(const LauncherElement& element, int originalIndex, const QString& category)
    {
        m_list->addItem(new ItemRow(element, originalIndex, category));
    }

private:
    QListWidget* m_list;
    QSignalBlocker m_blocker;
};

/// As much of a text as fits on one line of `width` pixels of a button, which breaks lines where a
/// painter of rows doesn't.
QString labelLine(const QPushButton& button, const QString& text, int width)
{
    QString part = RowPainting::visiblePart(text, width);
    part.replace(u'\n', u' ').replace(u'\r', u' ');
    return RowPainting::elidedLine(button.fontMetrics(), part, width);
}

void setWebLabel(QPushButton* button, const QVector<WebQuery::Suggestion>& suggestions, int which)
{
    const bool isThere = which < suggestions.size();
    button->ensurePolished();
    if (isThere) {
        const QMargins margins = button->parentWidget()->layout()->contentsMargins();
        const int room = kStripWidth - margins.left() - margins.right() - kEmptyButtonPadding;
        button->setText(
            Keys::withoutShortcut(labelLine(*button, suggestions.at(which).label, room)));
    }
    button->setVisible(isThere);
}

} // namespace

HomeView::HomeView(LauncherModel* model, MainWindow* mainWindow, QWidget* parent)
    : QWidget(parent), m_model(model), m_mainWindow(mainWindow)
{
    setupUI();
    connectHeader();
    connectList();
    connectCard();
    QTimer::singleShot(0, this, &HomeView::applyGridCellSize);
}

HomeView::~HomeView()
{
    // The parts go after this, and what they tell while they go would find half a view.
    const auto parts = findChildren<QObject*>();
    for (const QObject* part : parts)
        part->disconnect(this);
}

// Sections

void HomeView::refreshCategories(int preferredIndex, bool keepActionsPanel)
{
    endStaleReorder();
    const QString current = m_model->currentCategory();
    m_stripSections.clear();
    for (const QString& section : m_model->data().categories) {
        if (m_mainWindow->tourShowsCategory(section))
            m_stripSections.append(section);
    }
    measureStrip();
    const int place = int(m_stripSections.indexOf(current));
    fillStrip(place < 0 || isStripWhole() ? 0 : m_pillRow.left(place));
    m_catScroll->setAccessibleName(RowPainting::visiblePart(current, kSpokenLength));
    scrollToSelectedPill();
    if (!m_mainWindow->isItemEditorOpen())
        refreshUI(preferredIndex, keepActionsPanel);
}

bool HomeView::isStripWhole() const
{
    return m_stripSections.size() <= kPillsAtOnce;
}

/// Finds out where each pill stands, unless all of them are made anyway.
void HomeView::measureStrip()
{
    if (isStripWhole()) {
        m_pillRow = {};
        return;
    }
    if (m_pillWidths.size() > 2 * m_stripSections.size())
        m_pillWidths.clear(); // most of them are of names that are no more
    const std::unique_ptr<GlyphButton> gauge(makePill(m_stripSections.constFirst()));
    const QFontMetrics metrics = gauge->fontMetrics();
    const auto textWidth = [&metrics](const QString& label) {
        return metrics.size(Qt::TextShowMnemonic, label).width();
    };
    // A pill is measured once: setting each text on it would take many times as long.
    gauge->setText(QStringLiteral("X"));
    const int padding = gauge->minimumSizeHint().width() - textWidth(gauge->text());
    QVector<int> widths;
    widths.reserve(m_stripSections.size());
    for (const QString& section : std::as_const(m_stripSections)) {
        int& width = m_pillWidths[section];
        if (width == 0) {
            const QString line = labelLine(*gauge, section, kStripWidth - kPillPadding);
            width = padding + textWidth(Keys::withoutShortcut(line));
        }
        widths.append(width);
    }
    m_pillRow.layOut(widths, m_catLayout->spacing());
}

/// Makes the pills of the strip: all of them or, of very many, those around a place, which is
/// `left` pixels from its left end, and that of the current section. Room is left for the others.
void HomeView::fillStrip(int left)
{
    clearPills();
    m_madePills = {0, int(m_stripSections.size())};
    if (!isStripWhole())
        m_madePills = m_pillRow.within(left - kStripReserve, left + kStripWidth + kStripReserve);
    const int current = int(m_stripSections.indexOf(m_model->currentCategory()));
    int next = 0;
    const auto add = [&](int index) {
        addRoom({next, index});
        GlyphButton* pill = addPill(m_stripSections.at(index));
        if (index == current)
            m_selectedCatBtn = pill;
        next = index + 1;
    };
    if (current >= 0 && current < m_madePills.first)
        add(current);
    for (int index = m_madePills.first; index < m_madePills.end; ++index)
        add(index);
    if (current >= m_madePills.end)
        add(current);
    addRoom({next, int(m_stripSections.size())});
    m_catLayout->addStretch();
    applySelectedCatPillStyle();
}

/// In the place of pills that are not made.
void HomeView::addRoom(const PillRow::Range& pills)
{
    if (pills.first < pills.end)
        m_catLayout->addSpacing(m_pillRow.room(pills));
}

/// Makes the pills that have come into view and have not been made.
void HomeView::followStripScroll(int left)
{
    if (isStripWhole())
        return;
    const PillRow::Range seen = m_pillRow.within(left, left + kStripWidth);
    if (seen.first >= m_madePills.first && seen.end <= m_madePills.end)
        return;
    fillStrip(left);
    m_catLayout->activate(); // or they would be painted before they have a place
}

void HomeView::clearPills()
{
    m_selectedCatBtn = nullptr;
    while (QLayoutItem* item = m_catLayout->takeAt(0)) {
        if (QWidget* pill = item->widget()) {
            pill->hide();
            // One of them may be what has been clicked, and is still at it.
            pill->deleteLater();
        }
        delete item;
    }
}

/// At rest, and without anything that happens to it.
GlyphButton* HomeView::makePill(const QString& section)
{
    auto* pill = new GlyphButton(m_catContainer);
    pill->setCursor(Qt::PointingHandCursor);
    pill->setFocusPolicy(Qt::NoFocus);
    pill->setFixedHeight(CatPillHeight);
    QFont font = pill->font();
    font.setPointSize(kPillPoints);
    font.setWeight(QFont::Bold);
    pill->setFont(font);
    PillStyle::applyResting(pill, m_model->getCategoryIcon(section), false);
    pill->ensurePolished(); // which may bring another font
    pill->setLabel(labelLine(*pill, section, kStripWidth - kPillPadding));
    return pill;
}

GlyphButton* HomeView::addPill(const QString& section)
{
    GlyphButton* pill = makePill(section);
    pill->setAccessibleName(RowPainting::visiblePart(section, kSpokenLength));
    pill->setContextMenuPolicy(Qt::CustomContextMenu);
    // A menu waits for its end, and by then a rebuild may have taken the pill whose event this is.
    connect(
        pill, &QWidget::customContextMenuRequested, this,
        [this, section] { m_mainWindow->showCategoryActionsMenuFor(section); },
        Qt::QueuedConnection);
    connect(pill, &QPushButton::clicked, this, [this, section] {
        exitReorderMode(true);
        m_model->setCurrentCategory(section);
        refreshCategories(-1, false);
        refreshUI(-1, false);
    });
    m_catLayout->addWidget(pill);
    pill->show(); // left to the layout, it would have no place before the strip is scrolled to it
    return pill;
}

void HomeView::scrollToSelectedPill()
{
    if (!m_selectedCatBtn)
        return;
    // Not before the layout has placed the pills.
    QTimer::singleShot(0, this, [this, pill = m_selectedCatBtn] {
        if (pill)
            m_catScroll->ensureWidgetVisible(pill, kPillScrollMargin, 0);
    });
}

void HomeView::applySelectedCatPillStyle()
{
    if (!m_selectedCatBtn)
        return;
    const uint glyph = m_model->getCategoryIcon(m_model->currentCategory());
    if (m_catScroll->hasFocus() || m_listWidget->hasFocus())
        PillStyle::applyLit(m_selectedCatBtn, glyph);
    else
        PillStyle::applyResting(m_selectedCatBtn, glyph, false);
}

bool HomeView::stepCategory(int delta)
{
    const QStringList& sections = m_model->data().categories;
    const qsizetype index = sections.indexOf(m_model->currentCategory());
    const qsizetype target = index + delta;
    if (index < 0 || target < 0 || target >= sections.size())
        return false;
    m_model->setCurrentCategory(sections.at(target));
    refreshCategories(-1, false);
    return true;
}

// Rows

void HomeView::refreshUI(int preferredIndex, bool keepActionsPanel)
{
    endStaleReorder();
    if (actionsStep() != ActionsNone && !keepActionsPanel)
        m_mainWindow->closeItemActionsPanel();
    m_listWidget->clear();
    if (!m_mainWindow->isItemEditorOpen())
        m_previewStack->setCurrentIndex(PagePreviewEmpty);
    if (m_searchQuery.isEmpty())
        addSectionRows(preferredIndex);
    else
        addSearchRows();
    const int rows = m_listWidget->count();
    if (rows > 0 && m_listWidget->currentRow() < 0)
        selectRow(0);
    syncListStackPage();
    if (isCardInUse())
        return;
    if (rows == 0)
        m_previewStack->setCurrentIndex(PagePreviewEmpty);
    else
        updatePreviewPanel(m_listWidget->currentItem());
}

void HomeView::addSectionRows(int preferredIndex)
{
    const QString section = m_model->currentCategory();
    const QVector<LauncherElement>& items = m_model->getItems(section);
    int preferredRow = -1;
    {
        RowFiller filler(m_listWidget);
        int row = 0;
        for (int i = 0; i < items.size(); ++i) {
            if (!m_mainWindow->tourShowsItem(items.at(i).id))
                continue;
            filler.add(items.at(i), i, section);
            if (i == preferredIndex)
                preferredRow = row;
            ++row;
        }
    }
    if (preferredRow >= 0)
        selectRow(preferredRow);
}

void HomeView::addSearchRows()
{
    const QVector<SearchMatch> matches =
        SearchEngine::search(m_model->data(), m_searchQuery.trimmed());
    RowFiller filler(m_listWidget);
    for (const SearchMatch& match : matches) {
        if (m_mainWindow->tourShowsItem(match.el.id))
            filler.add(match.el, match.originalIndex, match.category);
    }
}

void HomeView::selectRow(int row)
{
    const QSignalBlocker blocker(m_listWidget);
    m_listWidget->setCurrentRow(row);
}

bool HomeView::selectItemById(const QString& id)
{
    if (id.isEmpty())
        return false;
    for (int row = 0; row < m_listWidget->count(); ++row) {
        QListWidgetItem* item = m_listWidget->item(row);
        if (item->data(ItemRoles::RoleElementId).toString() != id)
            continue;
        m_listWidget->setCurrentItem(item);
        m_listWidget->scrollToItem(item, QAbstractItemView::EnsureVisible);
        return true;
    }
    return false;
}

void HomeView::syncListStackPage()
{
    cancelHoverPreview();
    const bool isEmpty = m_listWidget->count() == 0;
    m_listStack->setCurrentIndex(isEmpty ? PageEmptyList : PageList);
    if (!isEmpty)
        return;
    const bool isSearching = !m_searchQuery.isEmpty();
    m_emptyListText->setText(
        Tr::t(isSearching ? QStringLiteral("home.no_results") : QStringLiteral("home.no_items")));
    m_emptyAddBtn->setVisible(!isSearching && !m_model->data().categories.isEmpty());
    const QVector<WebQuery::Suggestion> suggestions =
        isSearching ? WebQuery::suggestionsFor(m_searchInput->text())
                    : QVector<WebQuery::Suggestion>();
    setWebLabel(m_emptyWebBtn, suggestions, 0);
    setWebLabel(m_emptyWebAltBtn, suggestions, 1);
}

void HomeView::launchWebQuery(int which)
{
    const QVector<WebQuery::Suggestion> suggestions =
        WebQuery::suggestionsFor(m_searchInput->text());
    if (which < 0 || which >= suggestions.size())
        return;
    // A message box of the launch runs an event loop, which this view may not outlive.
    const QPointer<MainWindow> window = m_mainWindow;
    if (LaunchDispatcher::execute(WebQuery::asElement(suggestions.at(which)), window) && window)
        window->fadeOutAndHide();
}

void HomeView::focusListFromSearch()
{
    if (m_listWidget->count() == 0)
        return;
    m_listStack->setCurrentIndex(PageList);
    m_listWidget->setFocus();
    if (m_listWidget->currentRow() < 0)
        m_listWidget->setCurrentRow(0);
}

void HomeView::openActionsForCurrentItem()
{
    m_mainWindow->showContextMenuForCurrentItem();
}

void HomeView::applyGridCellSize()
{
    const QSize room = m_listWidget->viewport()->size();
    if (room.width() <= 1)
        return;
    const int columns = std::clamp(Theme::gridColumns, kMinColumns, kMaxColumns);
    // A pixel less, or rounding would push the last column into the next line.
    const int cellWidth = std::max(kMinCellWidth, (room.width() - 1) / columns);
    int cellHeight = GridTileDelegate::tileHeightFor(cellWidth, TileGap) + TileGap;
    if (room.height() > 1)
        cellHeight =
            std::min(cellHeight, std::max(kMinCellHeight, room.height() / VisibleGridRows));
    const QSize cell(cellWidth, cellHeight);
    // Setting it lays everything out anew.
    if (m_listWidget->gridSize() != cell)
        m_listWidget->setGridSize(cell);
}

// What is behind a row

const LauncherElement* HomeView::elementOf(const QListWidgetItem* item) const
{
    if (!item || !item->data(ItemRoles::RoleOriginalIndex).isValid())
        return nullptr;
    QString section;
    int index = -1;
    const QVector<LauncherElement>* items =
        m_model->locateElementById(item->data(ItemRoles::RoleElementId).toString(), section, index);
    return items ? &items->at(index) : nullptr;
}

void HomeView::updatePreviewPanel(QListWidgetItem* item)
{
    if (isCardInUse())
        return;
    if (const LauncherElement* element = elementOf(item)) {
        showDetails(*element);
        return;
    }
    m_previewEmptyHintLbl->clear();
    m_previewStack->setCurrentIndex(PagePreviewEmpty);
}

void HomeView::showDetails(const LauncherElement& element)
{
    m_previewStack->setGraphicsEffect(nullptr);
    m_previewIconLbl->setItem(element.iconPath, element.shortcutType);
    m_previewTitleLbl->setText(RowPainting::visiblePart(element.name, kSpokenLength));
    m_previewTypeLbl->setText(element.shortcutType.isEmpty() ? QString(ItemType::Url)
                                                             : element.shortcutType);
    m_previewValue->setPlainText(RowPainting::visiblePart(element.value, kShownValueLength));
    m_previewStack->setCurrentIndex(PagePreviewDetail);
}

void HomeView::showHoverPreview()
{
    if (isReorderMode() || m_listWidget->isHidden() || isModalPage())
        return;
    const QListWidgetItem* item = m_listWidget->currentItem();
    const LauncherElement* element = elementOf(item);
    if (!element)
        return;
    const QRect cell = m_listWidget->visualItemRect(item);
    if (!cell.isValid())
        return;
    QRect anchor;
    if (m_gridDelegate) {
        QFont font = m_listWidget->font();
        font.setFamilies(FontTokens::Families);
        font.setPointSize(kTilePoints);
        anchor = m_gridDelegate->layoutFor(cell, item->text(), font).tileRect;
    } else {
        anchor = MainListDelegate::iconCircleRect(cell);
    }
    anchor.moveTopLeft(m_listWidget->viewport()->mapToGlobal(anchor.topLeft()));
    m_hoverPreview->showFor(element->name, element->shortcutType, element->value, anchor);
}

void HomeView::cancelHoverPreview()
{
    m_hoverPreviewTimer->stop();
    m_hoverPreview->hide();
}

// The card

void HomeView::setPreviewCardTitle(const QString& title)
{
    m_cardHeader->setTitle(title);
}

bool HomeView::isCardInUse() const
{
    return m_mainWindow->isItemEditorOpen() || actionsStep() != ActionsNone;
}

ItemActionsStep HomeView::actionsStep() const
{
    return m_actionsPanel ? m_actionsPanel->currentStep() : ActionsNone;
}

bool HomeView::isModalPage() const
{
    const int page = m_previewStack->currentIndex();
    return page == PagePreviewEditor || page == PagePreviewActions;
}

void HomeView::syncModalCard()
{
    cancelHoverPreview();
    if (isModalPage()) {
        fillModalPage();
        placeModalCard();
        return;
    }
    if (m_card->isHidden())
        return;
    if (!m_card->isAncestorOf(QApplication::focusWidget())) {
        hideModalCard();
        return;
    }
    // Hidden now, it would give the focus to whatever comes next instead of where it is due.
    QTimer::singleShot(0, this, [this] {
        if (!isModalPage())
            hideModalCard();
    });
}

void HomeView::placeModalCard()
{
    const QRect area = rect();
    const int width = std::min(kCardMaxWidth, area.width() - 2 * kCardMargin);
    const int room = std::max(kCardMinHeight, area.height() - 2 * kCardMargin);
    const int height = std::clamp(m_card->sizeHint().height(), kCardMinHeight, room);
    // A tour dims the page by itself.
    if (!m_mainWindow->tourActive()) {
        m_gridOverlayBackdrop->setGeometry(area);
        m_gridOverlayBackdrop->show();
        m_gridOverlayBackdrop->raise();
    }
    m_card->setGeometry((area.width() - width) / 2, (area.height() - height) / 2, width, height);
    m_card->show();
    m_card->raise();
}

void HomeView::hideModalCard()
{
    m_card->hide();
    m_gridOverlayBackdrop->hide();
}

void HomeView::setDialogBackdropVisible(bool visible)
{
    if (visible) {
        m_gridOverlayBackdrop->setGeometry(rect());
        m_gridOverlayBackdrop->show();
        // The card of an open editor stays in front of it.
        if (!isModalPage())
            m_gridOverlayBackdrop->raise();
    } else if (!isModalPage()) {
        m_gridOverlayBackdrop->hide();
    }
}

void HomeView::closeCardFromBackdrop()
{
    if (m_previewStack->currentIndex() == PagePreviewActions)
        m_mainWindow->closeItemActionsPanel();
    else if (m_previewStack->currentIndex() == PagePreviewEditor)
        m_mainWindow->closeItemEditor(-1);
}
