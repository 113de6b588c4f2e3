// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AutoQuitBlocker.h"
#include "Theme.h"

#include <QColor>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>

class QAbstractItemView;
class QAction;
class QMenu;
class QModelIndex;

/// One row of a themed menu, which paints itself: an optional check circle, an optional glyph, and
/// a text. Takes neither focus nor mouse events, both are the menu's.
class ActionsMenuRow : public QWidget
{
    Q_OBJECT

public:
    static constexpr int PadH = 16; ///< lengths in pixels
    static constexpr int PadV = 9;
    static constexpr int IconBox = 18;
    static constexpr int IconGap = 12;
    static constexpr int IconPx = 15;
    static constexpr int CheckBox = 18;
    static constexpr int CheckGap = 12;
    static constexpr int Radius = 10;
    static constexpr int MaxTextWidth = 4096; ///< what is beyond that isn't even measured

    /// \param action the action that this row stands for in `menu`.
    /// \param glyph codepoint, 0 for none.
    /// \param text shown as it is, on one line; elided where the row is too narrow for it.
    /// \param reserveCheck keeps the column of the check circle and draws one in it.
    /// \param checkedProbe asked at each paint whether the circle is checked; may be empty.
    ActionsMenuRow(QMenu* menu, QAction* action, uint glyph, const QString& text,
                   const ColorTokens& tokens, bool reserveCheck,
                   std::function<bool()> checkedProbe);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintText(QPainter* painter, const QRect& rect) const;
    int checkLead() const;
    int iconLead() const;

    QMenu* m_menu;
    QAction* m_action;
    uint m_glyph;
    QString m_text;
    QColor m_idleFg;
    QColor m_selFg;
    QColor m_selBg;
    QColor m_dimFg;
    QColor m_onBg;
    QColor m_onFg;
    bool m_reserveCheck;
    std::function<bool()> m_checkedProbe;
};

/// The one way to build a popup menu. The menu owns everything that is added to it.
namespace ActionsMenu
{

constexpr int AnchorGap = 4; ///< pixels between a button and the menu below it

/// Gives a fresh menu its look, and Backspace as a second key to close it. Call it first.
void style(QMenu& menu, const ColorTokens& tokens);

/// Appends a row. \see ActionsMenuRow for the parameters.
QAction* addRow(QMenu& menu, uint glyph, const QString& text, const ColorTokens& tokens,
                bool reserveCheck = false, std::function<bool()> checkedProbe = {});
/// Appends a row of text only.
QAction* addPlainRow(QMenu& menu, const QString& text, const ColorTokens& tokens);
/// Appends a row with a check circle. Have a `ToggleFilter` watch it, or it closes the menu.
QAction* addCheckRow(QMenu& menu, std::function<bool()> checkedProbe, uint glyph,
                     const QString& text, const ColorTokens& tokens);
/// Append a separator and the closing row of a menu.
/// \param reserveCheck aligns its text with that of check rows above.
QAction* addDone(QMenu& menu, const ColorTokens& tokens, bool reserveCheck = false);
QAction* addCancel(QMenu& menu, const ColorTokens& tokens, bool reserveCheck = false);

/// Makes the menu at least as wide as `btn`.
/// \returns the global position at which it opens below the button.
QPoint anchorBelow(QWidget* btn, QMenu& menu);

/// Keeps a menu open while some of its rows are toggled by click, Return, Enter or Space.
class ToggleFilter : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<void(QAction*)>;

    /// Works from now until its end, which is at the latest that of the menu, its parent.
    ToggleFilter(QMenu* menu, Handler onToggle);

    /// Makes a row one that toggles.
    void watch(QAction* action);
    /// Takes the left clicks on `w`, a top-level widget beside the menu, which would otherwise
    /// close the menu. `onClick` may be empty.
    void watchArea(QWidget* w, std::function<void()> onClick);
    /// Toggles: calls the handler, then repaints all rows, whose circles may depend on each other.
    void fire(QAction* action);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Area
    {
        QPointer<QWidget> w;
        std::function<void()> fn;
    };

    bool handleKey(int key);
    bool handleClick(const QPoint& globalPos, const QPoint& menuPos, bool released);

    QMenu* m_menu;
    Handler m_onToggle;
    QList<QAction*> m_watched;
    QList<Area> m_areas;
};

/// A menu from its opening to what becomes of the choice. While it lives no window hides for want
/// of the focus: make it on the stack, add the rows, open it once.
///
/// Its parent may be deleted while the menu is open, as a rebuild of a window does it; the menu
/// then ends without a choice. Rows belong to the menu, which owns what a `ToggleFilter` needs as
/// well.
class Popup
{
public:
    static constexpr int MaxRowWidth = 420; ///< pixels; longer names are elided

    /// Remembers who has the focus.
    explicit Popup(QWidget* parent);
    ~Popup();
    Popup(const Popup&) = delete;
    Popup& operator=(const Popup&) = delete;

    /// Only before it is opened: later it may be gone.
    QMenu& menu() const;

    /// Append a row. \see ActionsMenuRow for the parameters.
    /// \param onChosen called once the menu has closed, with the windows still held.
    QAction* addRow(uint glyph, const QString& text, std::function<void()> onChosen);
    QAction* addCheckRow(std::function<bool()> checkedProbe, uint glyph, const QString& text);
    QAction* addDone(std::function<void()> onChosen, bool reserveCheck = false);
    /// Like any end without a choice it gives the focus back.
    QAction* addCancel(bool reserveCheck = false);
    void addSeparator();

    /// Open the menu and wait for its end: with the corner at a point of the screen, below a button
    /// and at least as wide, at the middle of a widget, at the middle of a row.
    /// \returns whether a row was chosen that does something, and it has been done. If not, whoever
    /// had the focus has it again.
    bool execAt(const QPoint& globalPos);
    bool execBelow(QWidget* button);
    bool execAtCenter(const QWidget* widget);
    bool execAtCenter(const QAbstractItemView* view, const QModelIndex& index);

    /// Gives the focus back to whoever had it, if that is in view. For rows whose action failed.
    void restoreFocus() const;

private:
    QAction* keep(QAction* action, std::function<void()> onChosen);
    void boundRows();

    AutoQuitBlocker m_blocker;
    ColorTokens m_colors;
    QPointer<QMenu> m_menu;
    QPointer<QWidget> m_focusBefore;
    QHash<const QAction*, std::function<void()>> m_onChosen;
};

/// Lets Backspace close a menu, as it closes the dialogs.
class BackKeyFilter : public QObject
{
    Q_OBJECT

public:
    /// Works from now on. The menu is its parent.
    explicit BackKeyFilter(QMenu* menu);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QMenu* m_menu;
};

} // namespace ActionsMenu
