// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// What it costs to put items or sections into another order: to begin and to end with many of them,
// each frame while tiles slide or scroll, and the memory. As many plain widgets that are made and
// slide in the same way are the measure, so that numbers from different machines can be compared.

#include "Delegates.h"
#include "DrivenClock.h"
#include "HomeView.h"
#include "ItemReorderOverlay.h"
#include "LauncherModel.h"
#include "MainWindow.h"
#include "Stopwatch.h"
#include "StorageManager.h"
#include "TestHome.h"
#include "UiDriver.h"
#include "WindowBench.h"

#include <QDir>
#include <QFile>
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
constexpr int kVeryManyItems = 20000;
constexpr int kManySections = 2000;
constexpr int kScrollFrames = 200;
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

LauncherData manyItems(int count)
{
    LauncherData document;
    document.categories = QStringList{"Section", "Other"};
    document.defaultCategory = QStringLiteral("Section");
    const QStringList types{"URL", "Snippet", "Application", "Bulk", "File"};
    for (int i = 0; i < count; ++i)
        document.sectionElements["Section"].append(
            {QString::number(i), QStringLiteral("item number %1").arg(i),
             types.at(i % types.size()), QStringLiteral("https://a.example/%1").arg(i), QString()});
    return document;
}

LauncherData manySections(int count)
{
    LauncherData document;
    for (int i = 0; i < count; ++i)
        document.categories.append(QStringLiteral("section number %1").arg(i));
    document.defaultCategory = document.categories.first();
    return document;
}

/// The window with this document, on the screen.
class Page
{
public:
    explicit Page(const LauncherData& document)
    {
        const QString path = QDir(TestHome::dataDir()).filePath(QStringLiteral("data.json"));
        StorageManager::saveData(path, document);
        m_window = std::make_unique<MainWindow>(nullptr);
        m_window->show();
        if (!QTest::qWaitForWindowActive(m_window.get()))
            qFatal("the window does not show");
        m_home = m_window->findChild<HomeView*>();
        paintNow(m_window.get());
    }

    void begin(HomeView::ReorderTarget target) const
    {
        if (target == HomeView::ReorderItems)
            m_home->enterReorderMode();
        else
            m_home->enterSectionReorderMode();
        paintNow(m_window.get());
    }
    void end() const
    {
        m_home->exitReorderMode(false);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        paintNow(m_window.get());
    }
    HomeView* home() const { return m_home; }

private:
    std::unique_ptr<MainWindow> m_window;
    HomeView* m_home = nullptr;
};

/// Kilobytes that the process holds, where the system tells.
qint64 residentKilobytes()
{
    constexpr qint64 kPageKilobytes = 4;
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong() * kPageKilobytes;
}

struct BeginAndEnd
{
    Timing begin;
    Timing end;
};

BeginAndEnd timeMode(const LauncherData& document, HomeView::ReorderTarget target)
{
    const Page page(document);
    Stopwatch beginnings;
    Stopwatch ends;
    page.begin(target); // what is made once is made now
    page.end();
    const qint64 before = residentKilobytes();
    qint64 meanwhile = 0;
    for (int round = 0; round < kRounds; ++round) {
        beginnings.measure([&] { page.begin(target); });
        meanwhile = std::max(meanwhile, residentKilobytes());
        ends.measure([&] { page.end(); });
    }
    std::printf("  memory: %lld KB before, %lld KB meanwhile, %lld KB after %d times\n", before,
                meanwhile, residentKilobytes(), kRounds);
    return {beginnings.timing(), ends.timing()};
}

/// Each frame while the tiles of a long list are scrolled below a tile that is held.
Timing timeScrolling(const LauncherData& document)
{
    const Page page(document);
    page.begin(HomeView::ReorderItems);
    auto* overlay = page.home()->list()->viewport()->findChild<ReorderOverlay*>();
    overlay->liftCursor();
    Stopwatch stopwatch;
    for (int frame = 0; frame < kScrollFrames; ++frame) {
        stopwatch.measure([&] {
            overlay->setScroll(frame * ReorderOverlay::AutoScrollStep);
            overlay->moveLifted(frame % 2 == 0 ? 1 : -1);
            QCoreApplication::processEvents();
        });
    }
    return stopwatch.timing();
}

BeginAndEnd timeBareMode(int count)
{
    QWidget window;
    window.resize(kView);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        qFatal("the window does not show");
    Stopwatch beginnings;
    Stopwatch ends;
    for (int round = 0; round < kRounds; ++round) {
        QList<QWidget*> children;
        beginnings.measure([&] {
            children = makeChildren(&window, count);
            paintNow(&window);
        });
        ends.measure([&] {
            qDeleteAll(children);
            paintNow(&window);
        });
    }
    return {beginnings.timing(), ends.timing()};
}

void reportMode(const BeginAndEnd& mode, const BeginAndEnd& bare)
{
    report("  begun and painted", mode.begin, bare.begin);
    report("  ended and painted", mode.end, bare.end);
}

} // namespace

int main(int argc, char** argv)
{
    const WindowBench bench(argc, argv);
    std::printf("%d tiles sliding at once\n", kTiles);
    const Timing bareFrame = timeChildren();
    report("  a frame", timeTiles(), bareFrame);
    const BeginAndEnd bareMode = timeBareMode(kManyItems);
    for (const int count : {kManyItems, kVeryManyItems}) {
        std::printf("%d items\n", count);
        const LauncherData document = manyItems(count);
        reportMode(timeMode(document, HomeView::ReorderItems), bareMode);
        report("  a frame while it scrolls", timeScrolling(document), bareFrame);
    }
    std::printf("%d sections\n", kManySections);
    reportMode(timeMode(manySections(kManySections), HomeView::ReorderSections), bareMode);
    return 0;
}
