// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// How long the GUI thread is busy at a stretch with many templates, whose cards are widgets, and
// with a template of many items: while the page is made, shown and made anew after a change, and
// while the editor is opened and an item is taken out of it.

#include "GroupedSettingsPage.h"
#include "LauncherModel.h"
#include "StorageManager.h"
#include "TemplateEditorDialog.h"
#include "TemplateSettingsPage.h"
#include "TestHome.h"
#include "Theme.h"

#include <QApplication>
#include <QDir>
#include <QListWidget>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>

namespace
{

constexpr int kForceLight = 1;
constexpr int kSettleTurns = 400;
constexpr double kMsPerSecond = 1000;
constexpr QSize kPageSize(560, 500);

/// Of the processor, so that a busy machine doesn't matter.
double timeOf(const std::function<void()>& work)
{
    const std::clock_t begin = std::clock();
    work();
    return static_cast<double>(std::clock() - begin) * kMsPerSecond / CLOCKS_PER_SEC;
}

/// The longest turn of the event loop until nothing is left to do.
double longestTurn()
{
    double longest = 0.0;
    for (int i = 0; i < kSettleTurns; ++i) {
        longest = std::max(longest, timeOf([] { QCoreApplication::processEvents(); }));
        longest = std::max(longest, timeOf([] {
                               QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
                           }));
    }
    return longest;
}

void report(const char* what, int count, double ms, double turnMs)
{
    std::printf("%-24s %6d: %8.1f ms, then %8.1f ms at a stretch\n", what, count, ms, turnMs);
}

QVector<LauncherElement> items(int count)
{
    QVector<LauncherElement> made;
    for (int i = 0; i < count; ++i)
        made.append({{}, QStringLiteral("Item %1").arg(i), ItemType::Url, "https://x.org", {}});
    return made;
}

void measurePage(int count)
{
    const QString path = QDir(TestHome::dataDir()).filePath("data.json");
    LauncherData document;
    document.categories = QStringList{"Default"};
    document.defaultCategory = "Default";
    for (int i = 0; i < count; ++i)
        document.templates.append({QStringLiteral("Template %1").arg(i), 0xE86F, items(3)});
    StorageManager::saveData(path, document);
    LauncherModel model(path);

    std::unique_ptr<GroupedSettingsPage> page;
    TemplateSettingsPage* inner = nullptr;
    const double madeMs = timeOf([&] {
        inner = new TemplateSettingsPage(&model);
        page = std::make_unique<GroupedSettingsPage>(QList<QWidget*>{inner});
        page->resize(kPageSize);
    });
    report("page made", count, madeMs, longestTurn());
    const double shownMs = timeOf([&] { page->show(); });
    report("page shown", count, shownMs, longestTurn());
    if (auto* button = inner->findChild<QWidget*>("tplMenuBtn_Template 1"))
        button->setFocus();
    const double changedMs = timeOf([&] { model.deleteTemplate("Template 1"); });
    report("template deleted", count, changedMs, longestTurn());
}

void measureEditor(int count)
{
    std::unique_ptr<TemplateEditorDialog> editor;
    const double madeMs = timeOf([&] {
        editor = std::make_unique<TemplateEditorDialog>(
            nullptr, SectionTemplate{"Kit", 0xE86F, items(count)}, "Title", nullptr);
        editor->show();
    });
    report("editor shown", count, madeMs, longestTurn());
    auto* list = editor->findChild<QListWidget*>();
    const double endMs = timeOf([&] { QTest::keyClick(list, Qt::Key_End); });
    report("last item", count, endMs, longestTurn());
    const double openMs = timeOf([&] { QTest::keyClick(list, Qt::Key_Return); });
    report("item opened", count, openMs, longestTurn());
    const double backMs = timeOf([&] { QTest::keyClick(editor.get(), Qt::Key_Escape); });
    report("item left", count, backMs, longestTurn());
}

} // namespace

int main(int argc, char* argv[])
{
    TestHome::install();
    const QApplication app(argc, argv);
    Theme::forceTheme = kForceLight;
    for (const int count : {1, 30, 1000})
        measurePage(count);
    for (const int count : {10, 5000})
        measureEditor(count);
    return 0;
}
