// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// Documents far beyond what anybody has: 10,000 sections, and 100,000 items in one section or
// spread over many. How long the window stands still at each thing that a user does with them. A
// list of as many plain rows is filled beside it, so that numbers from different machines can be
// compared.

#include "HomeView.h"
#include "LauncherModel.h"
#include "MainWindow.h"
#include "SettingsView.h"
#include "SpotlightWindow.h"
#include "Stopwatch.h"
#include "StorageManager.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"
#include "WindowBench.h"

#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollArea>
#include <QScrollBar>

#include <memory>

namespace
{

constexpr int kRounds = 9;
constexpr int kManySections = 10000;
constexpr int kManyItems = 100000;

LauncherData makeDocument(int sections, int itemsEach)
{
    LauncherData document;
    for (int i = 0; i < sections; ++i) {
        const QString section = QStringLiteral("Section %1").arg(i);
        QVector<LauncherElement> items;
        for (int k = 0; k < itemsEach; ++k)
            items.append({QStringLiteral("%1-%2").arg(i).arg(k),
                          QStringLiteral("item number %1 of %2").arg(k).arg(i),
                          QStringLiteral("Snippet"), QStringLiteral("text %1").arg(k), QString()});
        document.categories << section;
        document.sectionElements.insert(section, items);
    }
    document.defaultCategory = document.categories.constFirst();
    return document;
}

/// What `step` takes, with all that it has left for the next turns of the event loop.
template <typename Step>
void time(const char* what, int rounds, const Step& step)
{
    Stopwatch stopwatch;
    for (int round = 1; round <= rounds; ++round) {
        stopwatch.measure([&] {
            step(round);
            QCoreApplication::processEvents();
        });
        // What the step has put off beyond that turn isn't to count for the next one.
        QTest::qWait(1);
    }
    const Timing timing = stopwatch.timing();
    std::printf("  %-34s median %9.2f ms  worst %9.2f ms\n", what, timing.medianMs, timing.worstMs);
}

void waitUntilOpaque(const QWidget& window)
{
    if (!QTest::qWaitFor([&window] { return window.windowOpacity() >= 1.0; }))
        qFatal("the window stays half transparent");
}

void timeReordering(HomeView& view)
{
    time("order of the sections: begin", 1, [&](int) { view.enterSectionReorderMode(); });
    time("order of the sections: move", kRounds, [&](int round) {
        if (round == 1)
            QTest::keyClick(view.categoryStrip(), Qt::Key_Space);
        QTest::keyClick(view.categoryStrip(), Qt::Key_Right);
    });
    time("order of the sections: save", 1, [&](int) { view.exitReorderMode(true); });
}

void timeSections(MainWindow& window)
{
    HomeView& view = *window.findChild<HomeView*>();
    QScrollArea* strip = view.categoryStrip();
    strip->setFocus();
    time("another section", kRounds, [&](int) { QTest::keyClick(strip, Qt::Key_Right); });
    QScrollBar* bar = strip->horizontalScrollBar();
    time("strip scrolled", kRounds, [&](int round) { bar->setValue(600 * round); });
    time("strip scrolled to its end", 1, [&](int) { bar->setValue(bar->maximum()); });
    timeReordering(view);
    LauncherModel& model = *window.model();
    time("section added", kRounds,
         [&](int round) { model.addCategory(QStringLiteral("New %1").arg(round), 0xE2C7); });
    time("section renamed", kRounds, [&](int round) {
        model.editCategory(QStringLiteral("New %1").arg(round),
                           QStringLiteral("Newer %1").arg(round), 0xE2C7);
    });
    time("section deleted", kRounds,
         [&](int round) { model.deleteCategory(QStringLiteral("Newer %1").arg(round)); });
}

void timeItems(MainWindow& window)
{
    HomeView& view = *window.findChild<HomeView*>();
    LauncherModel& model = *window.model();
    const QString id = model.getItems(model.currentCategory()).constFirst().id;
    time("editor opened", kRounds, [&](int) {
        window.openItemEditor(id);
        window.closeItemEditor(-1);
    });
    time("list of sections to move to", 1, [&](int) {
        const MenuDriver driver([](QMenu* menu) { menu->close(); });
        window.showMoveToSectionMenu(id, model.currentCategory(), window.geometry().center(), {});
    });
    time("keystroke in the search", kRounds, [&](int round) {
        view.searchInput()->setText(QStringLiteral("item number 1").left(round + 4));
    });
    view.searchInput()->clear();
    QCoreApplication::processEvents();
    time("item duplicated", kRounds,
         [&](int) { model.duplicateItem(model.currentCategory(), id, nullptr); });
}

void timePages(MainWindow& window)
{
    window.goToSettings();
    waitUntilOpaque(window);
    QListWidget* categories = window.settingsView()->categoryList();
    time("page of the settings", categories->count(),
         [&](int round) { categories->setCurrentRow(round - 1); });
    window.goToPage(0);
    waitUntilOpaque(window);
    window.hide();
    QCoreApplication::processEvents();
    time("hidden and shown", kRounds, [&](int) {
        window.hide();
        window.show();
    });
    time("interface rebuilt while hidden", 3, [&](int) {
        window.hide();
        window.rebuildUIPreservingFocus();
        QCoreApplication::processEvents();
        window.show();
    });
}

void timeSpotlight(LauncherModel& model)
{
    SpotlightWindow spotlight(&model, nullptr);
    time("Spotlight shown", kRounds, [&](int) {
        spotlight.hide();
        spotlight.show();
    });
    time("keystroke in Spotlight", kRounds, [&](int round) {
        spotlight.findChild<QLineEdit*>()->setText(QStringLiteral("item number 1").left(round + 4));
    });
}

void reportDocument(int sections, int itemsEach)
{
    std::printf("%d sections of %d items\n", sections, itemsEach);
    StorageManager::saveData(QDir(TestHome::dataDir()).filePath(QStringLiteral("data.json")),
                             makeDocument(sections, itemsEach));
    std::unique_ptr<MainWindow> window;
    time("window made", 1, [&](int) { window = std::make_unique<MainWindow>(nullptr); });
    time("window shown", 1, [&](int) { window->show(); });
    if (!QTest::qWaitForWindowActive(window.get()))
        qFatal("the window does not show");
    timeItems(*window);
    if (sections > 1)
        timeSections(*window);
    timePages(*window);
    timeSpotlight(*window->model());
}

void reportPlainList()
{
    QListWidget list;
    list.show();
    time("a plain list of 10,000 rows", kRounds, [&](int) {
        list.clear();
        for (int i = 0; i < kManySections; ++i)
            list.addItem(QString::number(i));
    });
}

} // namespace

int main(int argc, char** argv)
{
    const WindowBench bench(argc, argv);
    reportPlainList();
    reportDocument(3, 10);
    reportDocument(kManySections, 1);
    reportDocument(kManySections, kManyItems / kManySections);
    reportDocument(1, kManyItems);
    return 0;
}
