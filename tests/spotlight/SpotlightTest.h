// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AppIndex.h"
#include "AutoQuitBlocker.h"
#include "FileIndex.h"
#include "Localization.h"
#include "SpotlightFixture.h"
#include "UiDriver.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QScreen>
#include <QTest>
#include <QTimer>

#include <memory>

inline constexpr int kLight = 1;
inline constexpr int kDark = 2;
inline constexpr int kEmptyHeight = 144;
inline constexpr int kOpenHeight = 472;
inline constexpr int kOneChipRow = 28;

/// No scope that has a chip, but one that only own items can be of.
inline const QStringList kOwnOnly{"Snippet", "URL"};

/// A window of Spotlight, made anew for each test function, and what a user does to it; for a test
/// to inherit.
class SpotlightTest
{
protected:
    using Delegate = SpotlightResultDelegate;

    /// Begins with a light theme, English, "before" in the clipboard and a hidden window.
    void makeSpotlight()
    {
        Theme::forceTheme = kLight;
        Tr::currentLang = Lang::En;
        QGuiApplication::clipboard()->setText(QStringLiteral("before"));
        f = std::make_unique<SpotlightFixture>();
    }

    /// The process lists applications and files once, when its first window has been made; the rows
    /// are built again when that ends, which a test about something else must not run into.
    static void waitForIndexes()
    {
        QTRY_VERIFY(AppIndex::isBuilt());
        QTRY_VERIFY(FileIndex::isReady());
    }

    void show()
    {
        f->pressHotkey();
        QVERIFY(QTest::qWaitForWindowActive(&f->window));
    }

    /// Moves the window as a user does, by its strip.
    void dragTo(const QPoint& pos)
    {
        const QPoint grab = f->window.pos() + QPoint(SpotlightWindow::WINDOW_WIDTH / 2, 40);
        sendMouse(f->pill(), QEvent::MouseButtonPress, grab);
        sendMouse(f->pill(), QEvent::MouseMove, grab + pos - f->window.pos());
        sendMouse(f->pill(), QEvent::MouseButtonRelease, grab + pos - f->window.pos());
        QCOMPARE(f->window.pos(), pos);
    }

    /// Two groups of two, shown: headers at rows 0 and 3.
    void fill()
    {
        f->setItems({makeItem("note one", "Snippet", "1"), makeItem("note two", "Snippet", "2"),
                     makeItem("note three", "URL"), makeItem("note four", "URL")});
        show();
        f->window.setScopeKeys({"Snippet", "URL"});
        f->field()->setText(QStringLiteral("note"));
        QCOMPARE(f->rows(), QStringList({"# Snippet", "note one", "note two", "# Web Bookmark",
                                         "note three", "note four"}));
    }

    /// Shows the window with a text in its field. Scopes keep sources out that a test isn't about.
    void type(const QString& text, const QStringList& scopes = kOwnOnly)
    {
        if (!f->window.isVisible())
            show();
        f->window.setScopeKeys(scopes);
        f->field()->setText(text);
    }

    /// Null before the first show.
    static QTimer* guardTimer(const SpotlightWindow& window)
    {
        for (QTimer* timer : window.findChildren<QTimer*>(QString(), Qt::FindDirectChildrenOnly)) {
            if (timer->interval() == SpotlightWindow::ShowGuardMs)
                return timer;
        }
        return nullptr;
    }

    /// Waits until neither the show nor a dialog keeps the window from hiding.
    void endGuards()
    {
        QTimer* guard = guardTimer(f->window);
        guard->start(0);
        QTRY_VERIFY(!guard->isActive());
        QTRY_VERIFY(!g_blockAutoQuit);
    }

    static QRect screenArea() { return QGuiApplication::primaryScreen()->availableGeometry(); }

    static QString clipboardText() { return QGuiApplication::clipboard()->text(); }

    static LauncherElement snippet(const QString& name, const QString& value = QString())
    {
        return makeItem(name, QStringLiteral("Snippet"), value);
    }

    /// All four events of it; the view asks for the press before.
    static void doubleClick(QWidget* widget, const QPoint& pos)
    {
        QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, pos);
        QTest::mouseDClick(widget, Qt::LeftButton, Qt::NoModifier, pos);
        QTest::mouseRelease(widget, Qt::LeftButton, Qt::NoModifier, pos);
    }

    std::unique_ptr<SpotlightFixture> f;
};
