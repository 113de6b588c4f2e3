// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ActionsMenu.h"
#include "IconHelper.h"
#include "Keys.h"
#include "Localization.h"

#include <QApplication>
#include <QMenu>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QWidgetAction>

#include <functional>
#include <utility>

/// Works the menus that open one after the other inside a call under test, each by its own action,
/// which should end in closing it.
class MenuScript : public QObject
{
public:
    using Action = std::function<void(QMenu*)>;

    explicit MenuScript(QList<Action> actions) : m_actions(std::move(actions))
    {
        connect(&m_timer, &QTimer::timeout, this, &MenuScript::look);
        m_timer.start(0);
    }

    /// Whether every action has had its menu, and there was no menu beyond those.
    bool isDone() const { return m_actions.isEmpty() && !m_hasOther; }

private:
    void look()
    {
        const QPointer<QMenu> menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu || menu == m_handled || !menu->isVisible())
            return;
        m_handled = menu;
        m_hasOther = m_hasOther || m_actions.isEmpty();
        if (!m_actions.isEmpty())
            m_actions.takeFirst()(menu);
        if (menu)
            menu->close();
    }

    QTimer m_timer;
    QList<Action> m_actions;
    QPointer<QMenu> m_handled;
    bool m_hasOther = false;
};

/// A row of a menu as a user sees it.
struct MenuRow
{
    QString text; ///< empty for a separator
    uint glyph = 0;
};

/// What is done to an open menu and looked at in it; a base of tests.
class MenuSteps
{
protected:
    static QAction* rowNamed(const QMenu* menu, const QString& text)
    {
        for (QAction* action : menu->actions()) {
            if (action->text() == Keys::withoutShortcut(text) && !action->isSeparator())
                return action;
        }
        return nullptr;
    }

    /// Chooses a row by its text.
    static MenuScript::Action choose(const QString& text)
    {
        return [text](QMenu* menu) {
            QAction* action = rowNamed(menu, text);
            QVERIFY2(action, qPrintable(text));
            menu->setActiveAction(action);
            QTest::keyClick(menu, Qt::Key_Return);
        };
    }
    static MenuScript::Action chooseKey(const char* key) { return choose(Tr::t(key)); }
    static void cancelByKey(QMenu* menu) { QTest::keyClick(menu, Qt::Key_Escape); }

    static QStringList textsOf(const QMenu* menu)
    {
        QStringList texts;
        for (const QAction* action : menu->actions())
            texts.append(action->isSeparator() ? QString() : action->text());
        return texts;
    }

    /// Checks texts, separators and painted glyphs of an open menu, row by row.
    static void verifyRows(QMenu* menu, const QList<MenuRow>& expected)
    {
        QStringList texts;
        for (const MenuRow& row : expected)
            texts.append(Keys::withoutShortcut(row.text));
        QCOMPARE(textsOf(menu), texts);
        menu->setActiveAction(nullptr);
        QAction unseen(nullptr);
        for (int i = 0; i < expected.size(); ++i) {
            if (expected.at(i).text.isEmpty())
                continue;
            auto* action = qobject_cast<QWidgetAction*>(menu->actions().at(i));
            ActionsMenuRow likeness(menu, &unseen, expected.at(i).glyph, expected.at(i).text,
                                    Theme::colors(), false, {});
            likeness.resize(action->defaultWidget()->size());
            QVERIFY2(action->defaultWidget()->grab().toImage() == likeness.grab().toImage(),
                     qPrintable(expected.at(i).text));
        }
    }

    /// The two rows that end every menu.
    static QList<MenuRow> withCancel(QList<MenuRow> rows)
    {
        rows.append({{}, 0});
        rows.append({Tr::t("dialog.btn_cancel"), Glyph::Close});
        return rows;
    }
};
