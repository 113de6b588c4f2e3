// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ActionsMenu.h"

#include "CardShape.h"
#include "GlyphWidgets.h"
#include "IconHelper.h"
#include "Keys.h"
#include "Localization.h"
#include "RowPainting.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QWidgetAction>

#include <algorithm>
#include <utility>

namespace
{

/// Calls `update` on the rows of a menu.
void repaintRows(const QMenu* menu)
{
    for (QAction* action : menu->actions()) {
        const auto* row = qobject_cast<QWidgetAction*>(action);
        if (row && row->defaultWidget())
            row->defaultWidget()->update();
    }
}

} // namespace

ActionsMenuRow::ActionsMenuRow(QMenu* menu, QAction* action, uint glyph, const QString& text,
                               const ColorTokens& tokens, bool reserveCheck,
                               std::function<bool()> checkedProbe)
    : QWidget(menu),
      m_menu(menu),
      m_action(action),
      m_glyph(glyph),
      m_text(RowPainting::visiblePart(text, MaxTextWidth)),
      m_idleFg(tokens.onSurface),
      m_selFg(tokens.onPrimaryContainer),
      m_selBg(tokens.primaryContainer),
      m_dimFg(tokens.onSurfaceVariant),
      m_onBg(tokens.primary),
      m_onFg(tokens.onPrimary),
      m_reserveCheck(reserveCheck),
      m_checkedProbe(std::move(checkedProbe))
{
    QFont textFont = font();
    textFont.setPixelSize(FontTokens::SizeMdPx);
    setFont(textFont);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

int ActionsMenuRow::checkLead() const
{
    return m_reserveCheck ? CheckBox + CheckGap : 0;
}

int ActionsMenuRow::iconLead() const
{
    return m_glyph != 0 ? IconBox + IconGap : 0;
}

QSize ActionsMenuRow::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return {checkLead() + PadH + iconLead() + metrics.horizontalAdvance(m_text) + PadH,
            std::max(IconBox, metrics.height()) + 2 * PadV};
}

void ActionsMenuRow::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool selected = m_menu->activeAction() == m_action;
    if (selected) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_selBg);
        painter.drawRoundedRect(rect(), Radius, Radius);
    }
    const QColor foreground = selected ? m_selFg : m_idleFg;
    const double middle = height() / 2.0;
    if (m_reserveCheck) {
        const bool checked = m_checkedProbe && m_checkedProbe();
        CheckCircle::draw(&painter, QPointF(PadH + CheckBox / 2.0, middle), checked,
                          selected ? m_selFg : m_dimFg, m_onBg, m_onFg);
    }
    if (m_glyph != 0) {
        IconHelper::drawGlyph(&painter, QPointF(checkLead() + PadH + IconBox / 2.0, middle),
                              m_glyph, IconPx, foreground);
    }
    const int textX = checkLead() + PadH + iconLead();
    painter.setPen(foreground);
    paintText(&painter, QRect(textX, 0, width() - textX - PadH, height()));
}

void ActionsMenuRow::paintText(QPainter* painter, const QRect& rect) const
{
    const Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter;
    // A text just as wide as its row may exceed it by a part of a pixel.
    if (fontMetrics().horizontalAdvance(m_text) <= rect.width())
        painter->drawText(rect, int(alignment) | Qt::TextSingleLine, m_text);
    else
        RowPainting::drawLine(painter, rect, alignment, m_text);
}

void ActionsMenu::style(QMenu& menu, const ColorTokens& tokens)
{
    menu.setWindowFlags(menu.windowFlags() | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
    menu.setAttribute(Qt::WA_TranslucentBackground);
    menu.setStyleSheet(Theme::contextMenuStyle(tokens));
    new BackKeyFilter(&menu);
    CardShape::attach(&menu, &menu, Theme::Rad_Md);
}

QAction* ActionsMenu::addRow(QMenu& menu, uint glyph, const QString& text,
                             const ColorTokens& tokens, bool reserveCheck,
                             std::function<bool()> checkedProbe)
{
    auto* action = new QWidgetAction(&menu);
    // Not shown, but read out by a screen reader.
    action->setText(
        Keys::withoutShortcut(RowPainting::visiblePart(text, ActionsMenuRow::MaxTextWidth)));
    auto* row = new ActionsMenuRow(&menu, action, glyph, text, tokens, reserveCheck,
                                   std::move(checkedProbe));
    action->setDefaultWidget(row);
    menu.addAction(action);
    QObject::connect(&menu, &QMenu::hovered, row, qOverload<>(&QWidget::update));
    return action;
}

QAction* ActionsMenu::addPlainRow(QMenu& menu, const QString& text, const ColorTokens& tokens)
{
    return addRow(menu, 0, text, tokens);
}

QAction* ActionsMenu::addCheckRow(QMenu& menu, std::function<bool()> checkedProbe, uint glyph,
                                  const QString& text, const ColorTokens& tokens)
{
    return addRow(menu, glyph, text, tokens, true, std::move(checkedProbe));
}

QAction* ActionsMenu::addDone(QMenu& menu, const ColorTokens& tokens, bool reserveCheck)
{
    menu.addSeparator();
    return addRow(menu, Glyph::Done, Tr::t("dialog.btn_done"), tokens, reserveCheck);
}

QAction* ActionsMenu::addCancel(QMenu& menu, const ColorTokens& tokens, bool reserveCheck)
{
    menu.addSeparator();
    return addRow(menu, Glyph::Close, Tr::t("dialog.btn_cancel"), tokens, reserveCheck);
}

QPoint ActionsMenu::anchorBelow(QWidget* btn, QMenu& menu)
{
    menu.setMinimumWidth(btn->width());
    return btn->mapToGlobal(QPoint(0, btn->height() + AnchorGap));
}

ActionsMenu::ToggleFilter::ToggleFilter(QMenu* menu, Handler onToggle)
    : QObject(menu), m_menu(menu), m_onToggle(std::move(onToggle))
{
    m_menu->installEventFilter(this);
}

void ActionsMenu::ToggleFilter::watch(QAction* action)
{
    m_watched.append(action);
}

void ActionsMenu::ToggleFilter::watchArea(QWidget* w, std::function<void()> onClick)
{
    m_areas.append({w, std::move(onClick)});
}

void ActionsMenu::ToggleFilter::fire(QAction* action)
{
    // What is toggled may rebuild the window that the menu belongs to.
    const QPointer<QMenu> menu(m_menu);
    m_onToggle(action);
    if (menu)
        repaintRows(menu);
}

bool ActionsMenu::ToggleFilter::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        if (handleKey(static_cast<QKeyEvent*>(event)->key()))
            return true;
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick: {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() == Qt::LeftButton &&
            handleClick(mouse->globalPosition().toPoint(), mouse->position().toPoint(),
                        event->type() == QEvent::MouseButtonRelease))
            return true;
        break;
    }
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

bool ActionsMenu::ToggleFilter::handleKey(int key)
{
    if (!Keys::isEnter(key) && key != Qt::Key_Space)
        return false;
    QAction* active = m_menu->activeAction();
    if (!m_watched.contains(active))
        return false;
    fire(active);
    return true;
}

bool ActionsMenu::ToggleFilter::handleClick(const QPoint& globalPos, const QPoint& menuPos,
                                            bool released)
{
    for (const Area& area : std::as_const(m_areas)) {
        if (!area.w || !area.w->isVisible() || !area.w->geometry().contains(globalPos))
            continue;
        if (released && area.fn)
            area.fn();
        return true;
    }
    QAction* action = m_menu->actionAt(menuPos);
    if (!m_watched.contains(action))
        return false;
    if (released)
        fire(action);
    return true;
}

ActionsMenu::Popup::Popup(QWidget* parent)
    : m_colors(Theme::colors()),
      m_menu(new QMenu(parent)),
      m_focusBefore(QApplication::focusWidget())
{
    style(*m_menu, m_colors);
}

ActionsMenu::Popup::~Popup()
{
    delete m_menu;
}

QMenu& ActionsMenu::Popup::menu() const
{
    return *m_menu;
}

QAction* ActionsMenu::Popup::addRow(uint glyph, const QString& text, std::function<void()> onChosen)
{
    return keep(ActionsMenu::addRow(*m_menu, glyph, text, m_colors), std::move(onChosen));
}

QAction* ActionsMenu::Popup::addCheckRow(std::function<bool()> checkedProbe, uint glyph,
                                         const QString& text)
{
    return ActionsMenu::addCheckRow(*m_menu, std::move(checkedProbe), glyph, text, m_colors);
}

QAction* ActionsMenu::Popup::addDone(std::function<void()> onChosen, bool reserveCheck)
{
    return keep(ActionsMenu::addDone(*m_menu, m_colors, reserveCheck), std::move(onChosen));
}

QAction* ActionsMenu::Popup::addCancel(bool reserveCheck)
{
    return ActionsMenu::addCancel(*m_menu, m_colors, reserveCheck);
}

void ActionsMenu::Popup::addSeparator()
{
    m_menu->addSeparator();
}

bool ActionsMenu::Popup::execAt(const QPoint& globalPos)
{
    boundRows();
    const QAction* chosen = m_menu->exec(globalPos);
    const std::function<void()> onChosen = m_onChosen.value(chosen);
    if (!onChosen) {
        restoreFocus();
        return false;
    }
    onChosen();
    return true;
}

bool ActionsMenu::Popup::execBelow(QWidget* button)
{
    return execAt(anchorBelow(button, *m_menu));
}

bool ActionsMenu::Popup::execAtCenter(const QWidget* widget)
{
    return execAt(widget->mapToGlobal(widget->rect().center()));
}

bool ActionsMenu::Popup::execAtCenter(const QAbstractItemView* view, const QModelIndex& index)
{
    return execAt(view->viewport()->mapToGlobal(view->visualRect(index).center()));
}

void ActionsMenu::Popup::restoreFocus() const
{
    // What is out of view by now would take the keys for nobody.
    if (m_focusBefore && m_focusBefore->isVisibleTo(m_focusBefore->window()))
        m_focusBefore->setFocus();
}

QAction* ActionsMenu::Popup::keep(QAction* action, std::function<void()> onChosen)
{
    m_onChosen[action] = std::move(onChosen);
    return action;
}

void ActionsMenu::Popup::boundRows()
{
    // A menu that has to be wider than that is filled by its rows.
    const int width = std::max(MaxRowWidth, m_menu->minimumWidth());
    for (QAction* action : m_menu->actions()) {
        if (auto* row = qobject_cast<QWidgetAction*>(action))
            row->defaultWidget()->setMaximumWidth(width);
    }
}

ActionsMenu::BackKeyFilter::BackKeyFilter(QMenu* menu) : QObject(menu), m_menu(menu)
{
    m_menu->installEventFilter(this);
}

bool ActionsMenu::BackKeyFilter::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress ||
        static_cast<QKeyEvent*>(event)->key() != Qt::Key_Backspace)
        return QObject::eventFilter(watched, event);
    m_menu->close();
    return true;
}
