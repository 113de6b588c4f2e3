// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// The modes in which items or sections are put into another order. The document is written once, at
// the end of a mode.

#include "AutoQuitBlocker.h"
#include "CustomMessageBox.h"
#include "HomeView.h"
#include "ItemReorderOverlay.h"
#include "Keys.h"
#include "LauncherModel.h"
#include "Localization.h"
#include "MainWindow.h"
#include "SectionReorderOverlay.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPointer>
#include <QScrollArea>
#include <QStackedWidget>

#include <algorithm>
#include <memory>
#include <utility>

namespace
{

/// `source` in the order of its former indices; what is no index of it is left out.
template <typename List>
List reordered(const List& source, const QVector<int>& order)
{
    List result;
    result.reserve(source.size());
    for (const int index : order) {
        if (index >= 0 && index < source.size())
            result.append(source.at(index));
    }
    return result;
}

/// Takes a widget off the screen at once; it may be the one whose event is being handled.
template <typename Widget>
void removeLater(QPointer<Widget>& widget)
{
    if (!widget)
        return;
    widget->setParent(nullptr);
    widget->deleteLater();
    widget.clear();
}

} // namespace

void HomeView::enterReorderMode()
{
    if (isReorderMode())
        return;
    cancelHoverPreview();
    const QString section = m_model->currentCategory();
    const qsizetype count = m_model->getItems(section).size();
    const char* error = nullptr;
    if (!m_searchQuery.isEmpty())
        error = "reorder.err_searching";
    else if (count == 0)
        error = "reorder.err_empty";
    else if (count == 1)
        error = "reorder.err_single";
    if (error) {
        refuseReorder("actions.reorder_items", error);
        return;
    }
    beginReorder(ReorderItems);
    m_listWidget->setFocus();
    if (m_listWidget->currentRow() < 0 && m_listWidget->count() > 0)
        m_listWidget->setCurrentRow(0);
    m_reorderOverlay =
        new ItemReorderOverlay(m_listWidget, std::max(0, m_listWidget->currentRow()));
}

void HomeView::beginReorder(ReorderTarget target)
{
    m_reorderTarget = target;
    if (target == ReorderItems)
        m_reorderCategory = m_model->currentCategory();
    m_reorderKeys = reorderKeys();
}

/// The ids of the items, or the names of the sections, that are being reordered, as the document
/// has them now.
QStringList HomeView::reorderKeys() const
{
    if (m_reorderTarget == ReorderSections)
        return m_model->data().categories;
    const QVector<LauncherElement>& items = m_model->getItems(m_reorderCategory);
    QStringList ids;
    ids.reserve(items.size());
    for (const LauncherElement& item : items)
        ids.append(item.id);
    return ids;
}

/// Whether the tiles stand for something else than what is there now, so that their order says
/// nothing about it.
bool HomeView::isReorderStale() const
{
    const bool isElsewhere =
        m_reorderTarget == ReorderItems && m_model->currentCategory() != m_reorderCategory;
    return isElsewhere || reorderKeys() != m_reorderKeys;
}

void HomeView::endStaleReorder()
{
    if (isReorderMode() && isReorderStale())
        exitReorderMode(false);
}

void HomeView::refuseReorder(const char* titleKey, const char* textKey)
{
    const AutoQuitBlocker blocker;
    const MainWindow::DimBackdrop dim(this);
    CustomMessageBox::warning(m_mainWindow, Tr::t(titleKey), Tr::t(textKey));
}

void HomeView::enterSectionReorderMode()
{
    if (isReorderMode())
        return;
    const QStringList sections = m_model->data().categories;
    if (sections.size() < 2) {
        refuseReorder("actions.reorder_sections", "reorder.err_single_section");
        return;
    }
    if (m_stripSections != sections)
        return;
    QVector<SectionReorderOverlay::TileSource> sources;
    sources.reserve(sections.size());
    for (const QRect& rect : pillRects()) {
        const QString& name = sections.at(sources.size());
        const auto picture = [this, name, size = rect.size()](bool lit) {
            return picturePill(name, size, lit);
        };
        sources.append({{}, {}, rect, picture});
    }
    beginReorder(ReorderSections);
    m_catScroll->setFocus();
    const int current = int(sections.indexOf(m_model->currentCategory()));
    m_reorderOverlay = new SectionReorderOverlay(m_catScroll->viewport(), sources,
                                                 m_catLayout->spacing(), std::max(0, current));
    // The strip is too low for a hint.
    m_reorderHintBanner = new ReorderHintBanner(m_listStack, "reorder.hint_sections");
}

/// Of a pill made for the purpose: the one on the strip may be gone when the picture is needed, and
/// has the pointer on it or not.
QPixmap HomeView::picturePill(const QString& section, const QSize& size, bool lit)
{
    const std::unique_ptr<GlyphButton> pill(makePill(section));
    const uint glyph = m_model->getCategoryIcon(section);
    if (lit)
        PillStyle::applyLit(pill.get(), glyph);
    pill->ensurePolished();
    pill->resize(size);
    return grabPillWithRoundedCorners(pill.get());
}

/// Where the pills stand in the viewport of the strip, those that are not made among them.
QVector<QRect> HomeView::pillRects() const
{
    const QPoint origin = m_catContainer->pos();
    QVector<QRect> rects;
    rects.reserve(m_stripSections.size());
    if (isStripWhole()) {
        for (int i = 0; i < m_catLayout->count(); ++i) {
            if (const QWidget* pill = m_catLayout->itemAt(i)->widget())
                rects.append(pill->geometry().translated(origin));
        }
        return rects;
    }
    for (int i = 0; i < m_pillRow.count(); ++i)
        rects.append(
            QRect(m_pillRow.left(i), 0, m_pillRow.width(i), CatPillHeight).translated(origin));
    return rects;
}

void HomeView::reorderArrow(int key)
{
    if (!m_reorderOverlay)
        return;
    const int row = m_reorderTarget == ReorderItems ? m_reorderOverlay->columns() : 0;
    int delta = 0;
    if (key == Qt::Key_Left)
        delta = -1;
    else if (key == Qt::Key_Right)
        delta = 1;
    else if (key == Qt::Key_Up)
        delta = -row;
    else if (key == Qt::Key_Down)
        delta = row;
    if (delta == 0)
        return;
    if (m_reorderOverlay->hasLift())
        m_reorderOverlay->moveLifted(delta);
    else
        m_reorderOverlay->setCursorSlot(m_reorderOverlay->cursorSlot() + delta, true);
}

void HomeView::handleReorderKey(int key)
{
    if (Keys::isEnter(key)) {
        exitReorderMode(true);
    } else if (Keys::isBack(key)) {
        exitReorderMode(false);
    } else if (key != Qt::Key_Space) {
        reorderArrow(key);
    } else if (m_reorderOverlay) {
        if (m_reorderOverlay->hasLift())
            m_reorderOverlay->dropLifted();
        else
            m_reorderOverlay->liftCursor();
    }
}

void HomeView::exitReorderMode(bool save)
{
    if (!isReorderMode())
        return;
    const bool canSave = save && !isReorderStale();
    const ReorderTarget target = std::exchange(m_reorderTarget, ReorderNone);
    const QString section = std::exchange(m_reorderCategory, QString());
    m_reorderKeys.clear();
    QVector<int> order;
    int cursor = 0;
    bool isChanged = false;
    if (m_reorderOverlay) {
        order = m_reorderOverlay->currentOrder();
        isChanged = m_reorderOverlay->orderChanged();
        cursor = m_reorderOverlay->cursorSlot();
    }
    removeLater(m_reorderOverlay);
    removeLater(m_reorderHintBanner);
    const bool isSaved = canSave && isChanged && saveOrder(target, section, order);
    if (target == ReorderSections) {
        focusIfPageIsUp(m_catScroll);
        applySelectedCatPillStyle();
    } else if (isSaved) {
        refreshUI(cursor, false); // the item that was moved last is the current one
    } else {
        focusIfPageIsUp(m_listWidget);
    }
}

/// On a page that isn't up a widget would take the keys, and nobody would see where they go.
void HomeView::focusIfPageIsUp(QWidget* widget)
{
    if (isVisibleTo(m_mainWindow))
        widget->setFocus();
}

bool HomeView::saveOrder(ReorderTarget target, const QString& section, const QVector<int>& order)
{
    if (target == ReorderSections) {
        const QStringList sections = m_model->data().categories;
        const QStringList wanted = reordered(sections, order);
        if (wanted.size() != sections.size())
            return false;
        m_model->saveReorderedCategories(wanted);
        return true;
    }
    const QVector<LauncherElement> items = m_model->getItems(section);
    const QVector<LauncherElement> wanted = reordered(items, order);
    if (wanted.size() != items.size())
        return false;
    m_model->saveReorderedItems(section, wanted);
    return true;
}
