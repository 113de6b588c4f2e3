// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// What it costs that the file search is limited to one folder, to a hundred, and to ten thousand:
// the questions of one keystroke that finds a whole index, the dialog that shows the folders, and
// the window with a chip for each, as far as the screens have room.

#include "FolderFilter.h"
#include "FolderPickerDialog.h"
#include "SpotlightFixture.h"
#include "Stopwatch.h"

#include <QApplication>
#include <QDir>
#include <QListWidget>
#include <QTest>

#include <cstdio>
#include <memory>

namespace
{

constexpr int kFilesPerFolder = 12;
constexpr int kHits = 100000;
constexpr int kRounds = 5;
constexpr int kParents = 100;

QString folder(int number)
{
    return QDir::toNativeSeparators(QStringLiteral("/home/somebody/projects/%1/source folder %2")
                                        .arg(number % kParents)
                                        .arg(number));
}

/// Folder by folder, as an index has them.
QStringList hits()
{
    QStringList paths;
    for (int i = 0; i < kHits; ++i)
        paths.append(folder(i / kFilesPerFolder) + QDir::separator() +
                     QStringLiteral("report_%1.txt").arg(i));
    return paths;
}

/// The folders lie behind those of the hits or are the same.
void chooseFolders(int count, bool areHit)
{
    QStringList folders;
    for (int i = 0; i < count; ++i)
        folders.append(folder(areHit ? i : i + kHits));
    FolderFilter::setFolders(folders);
}

void print(const char* what, int count, Timing timing)
{
    std::printf("%-36s %6d folders: median %9.2f ms, worst %9.2f ms\n", what, count,
                timing.medianMs, timing.worstMs);
    std::fflush(stdout);
}

void measureSearch(const QStringList& paths, int count, bool areHit)
{
    chooseFolders(count, areHit);
    Stopwatch stopwatch(Stopwatch::OfTheProcessor);
    qsizetype accepted = 0;
    for (int round = 0; round < kRounds; ++round) {
        stopwatch.measure([&] {
            for (const QString& path : paths)
                accepted += FolderFilter::accepts(path) ? 1 : 0;
        });
    }
    if ((accepted > 0) != areHit)
        qFatal("wrong answers");
    print(areHit ? "100,000 hits, some accepted" : "100,000 hits, none accepted", count,
          stopwatch.timing());
}

void measureDialog(int count)
{
    chooseFolders(count, true);
    Stopwatch made(Stopwatch::OfTheProcessor);
    Stopwatch shown(Stopwatch::OfTheProcessor);
    Stopwatch toggled(Stopwatch::OfTheProcessor);
    Stopwatch asked(Stopwatch::OfTheProcessor);
    for (int round = 0; round < kRounds; ++round) {
        std::unique_ptr<FolderPickerDialog> dialog;
        made.measure([&] { dialog = std::make_unique<FolderPickerDialog>(nullptr); });
        shown.measure([&] {
            dialog->show();
            QCoreApplication::processEvents();
        });
        auto* list = dialog->findChild<QListWidget*>();
        list->setCurrentRow(list->count() / 2, QItemSelectionModel::NoUpdate);
        toggled.measure([&] {
            QTest::keyClick(list, Qt::Key_Space);
            QCoreApplication::processEvents();
        });
        asked.measure([&] {
            if (dialog->chosen().size() != count - 1)
                qFatal("a wrong number is checked");
        });
    }
    print("dialog made", count, made.timing());
    print("shown", count, shown.timing());
    print("folder unchecked", count, toggled.timing());
    print("asked for what is checked", count, asked.timing());
}

void measureWindow(int count)
{
    chooseFolders(count, true);
    SpotlightFixture spotlight;
    Stopwatch shown(Stopwatch::OfTheProcessor);
    Stopwatch removed(Stopwatch::OfTheProcessor);
    for (int round = 0; round < kRounds; ++round) {
        spotlight.window.hide();
        QCoreApplication::processEvents();
        shown.measure([&] {
            spotlight.pressHotkey();
            QCoreApplication::processEvents();
        });
        removed.measure([&] {
            spotlight.chips().constFirst()->click();
            QCoreApplication::processEvents();
        });
        chooseFolders(count, true);
    }
    print("window shown", count, shown.timing());
    print("chip removed", count, removed.timing());
}

} // namespace

int main(int argc, char* argv[])
{
    TestHome::install();
    const QApplication app(argc, argv);
    Theme::forceTheme = 1;
    const QStringList paths = hits();
    for (const int count : {1, 100, 10000}) {
        measureSearch(paths, count, false);
        measureSearch(paths, count, true);
        measureDialog(count);
        measureWindow(count);
    }
    return 0;
}
