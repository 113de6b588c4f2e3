// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// What it costs to put items into another order: to begin with many of them, and each frame while
// tiles slide. As many plain widgets that are made and slide in the same way are the measure, so
// that numbers from different machines can be compared.

#include "Delegates.h"
#include "DrivenClock.h"
#include "FakeHotkeyBackend.h"
#include "HomeView.h"
#include "ItemReorderOverlay.h"
#include "LauncherModel.h"
#include "MainWindow.h"
#include "Stopwatch.h"
#include "StorageManager.h"
#include "TestFonts.h"
#include "TestHome.h"
#include "UiDriver.h"

#include <QApplication>
#include <QDir>
#include <QListWidget>
#include <QParallelAnimationGroup>
#include <QPropertyAnimation>

#include <functional>
#include <memory>

namespace
{

constexpr int kRounds = 20;
constexpr int kFrameMs = 16;
constexpr int kSlideMs = 500; // more than any slide takes
constexpr int kTiles = 60;
constexpr int kManyItems = 500;
constexpr QSize kView(900, 620); // ten tiles in a row, and all of them in view
constexpr QSize kCell(89, 89);

void paintNow(QWidget* widget)
{
    QCoreApplication::processEvents();
    widget->repaint();
}

/// Each frame of a slide: the tiles are moved and painted.
Timing timeFrames(const std::function<void()>& beginSlide)
{
    Stopwatch stopwatch;
    DrivenClock clock;
    for (int round = 0; round < kRounds; ++round) {
        beginSlide();
        clock.pass(0);
        for (int ms = 0; ms < kSlideMs; ms += kFrameMs) {
            if (!clock.isRunning())
                break;
            stopwatch.measure([&clock] {
                clock.pass(kFrameMs);
                QCoreApplication::processEvents();
            });
        }
        clock.pass(kSlideMs);
    }
    return stopwatch.timing();
}

std::unique_ptr<QListWidget> makeList()
{
    auto list = std::make_unique<QListWidget>();
    list->setFrameShape(QFrame::NoFrame);
    list->setViewMode(QListView::IconMode);
    list->setMovement(QListView::Static);
    list->setResizeMode(QListView::Adjust);
    list->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list->setGridSize(kCell);
    list->setItemDelegate(new GridTileDelegate(HomeView::TileGap, list.get()));
    for (int i = 0; i < kTiles; ++i)
        list->addItem(QStringLiteral("item number %1").arg(i));
    list->resize(kView);
    list->show();
    if (!QTest::qWaitForWindowExposed(list.get()))
        qFatal("the list does not show");
    return list;
}

Timing timeTiles()
{
    const auto list = makeList();
    ItemReorderOverlay overlay(list.get(), 0);
    overlay.liftCursor();
    int direction = 1;
    return timeFrames([&] {
        overlay.moveLifted(direction * (kTiles - 1));
        direction = -direction;
    });
}

/// Plain children of a window, where tiles would stand.
QList<QWidget*> makeChildren(QWidget* window, int count)
{
    QList<QWidget*> children;
    for (int i = 0; i < count; ++i) {
        auto* child = new QWidget(window);
        child->setAutoFillBackground(true);
        child->setPalette(QColor(Qt::blue));
        child->setGeometry(i % 10 * kCell.width(), i / 10 * kCell.height(), 80, 80);
        child->show();
        children.append(child);
    }
    return children;
}

Timing timeChildren()
{
    QWidget window;
    window.resize(kView);
    const QList<QWidget*> children = makeChildren(&window, kTiles);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        qFatal("the window does not show");
    int direction = 1;
    return timeFrames([&] {
        auto* group = new QParallelAnimationGroup(&window);
        for (QWidget* child : children) {
            auto* slide = new QPropertyAnimation(child, "pos");
            slide->setDuration(ReorderOverlay::DurCrossRow);
            slide->setEndValue(child->pos() + QPoint(40 * direction, 0));
            group->addAnimation(slide);
        }
        group->start(QAbstractAnimation::DeleteWhenStopped);
        direction = -direction;
    });
}

Timing timeBegin()
{
    LauncherData document;
    document.categories = QStringList{"Section"};
    document.defaultCategory = QStringLiteral("Section");
    const QStringList types{"URL", "Snippet", "Application", "Bulk", "File"};
    for (int i = 0; i < kManyItems; ++i)
        document.sectionElements["Section"].append(
            {QString::number(i), QStringLiteral("item number %1").arg(i),
             types.at(i % types.size()), QStringLiteral("https://a.example/%1").arg(i), QString()});
    StorageManager::saveData(QDir(TestHome::dataDir()).filePath(QStringLiteral("data.json")),
                             document);
    MainWindow window(nullptr);
    window.show();
    if (!QTest::qWaitForWindowActive(&window))
        qFatal("the window does not show");
    auto* home = window.findChild<HomeView*>();
    Stopwatch stopwatch;
    for (int round = 0; round < kRounds; ++round) {
        stopwatch.measure([home] {
            home->enterReorderMode();
            paintNow(home->list()->viewport());
        });
        home->exitReorderMode(false);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
    return stopwatch.timing();
}

Timing timeBareBegin()
{
    QWidget window;
    window.resize(kView);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        qFatal("the window does not show");
    Stopwatch stopwatch;
    for (int round = 0; round < kRounds; ++round) {
        QList<QWidget*> children;
        stopwatch.measure([&] {
            children = makeChildren(&window, kManyItems);
            paintNow(&window);
        });
        qDeleteAll(children);
    }
    return stopwatch.timing();
}

} // namespace

int main(int argc, char** argv)
{
    TestHome::install();
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    FakeHotkeyBackend::install();
    TestHome::writeSettings();
    TestFonts::addWeights();
    std::printf("%d items, %d of them sliding at once\n", kManyItems, kTiles);
    report("  begun and painted", timeBegin(), timeBareBegin());
    report("  a frame of the slide", timeTiles(), timeChildren());
    return 0;
}
