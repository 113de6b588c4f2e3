// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// What it costs that the file search is limited to one folder, to a hundred, and to ten thousand:
// a keystroke that finds each of 20,000 files, the dialog that shows the folders, and the window
// with a chip for each, as far as the screens have room.

#include "FakeFileSystem.h"
#include "FileIndex.h"
#include "FolderFilter.h"
#include "FolderPickerDialog.h"
#include "SpotlightFixture.h"
#include "Stopwatch.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QListWidget>
#include <QTest>

#include <cstdio>
#include <memory>

namespace
{

constexpr int kFilesPerFolder = 12;
constexpr int kHits = 20000;
constexpr int kRounds = 5;
constexpr int kParents = 100;

QString relativeFolder(int number)
{
    return QStringLiteral("projects/%1/source folder %2").arg(number % kParents).arg(number);
}

/// An index of which every file is a hit. Files are in the first folders only.
void makeIndex()
{
    for (int i = 0; i < kHits; ++i)
        FakeFileSystem::add(relativeFolder(i / kFilesPerFolder) +
                            QStringLiteral("/report_%1.txt").arg(i));
    QEventLoop loop;
    FileIndex::setOnReady([&loop] { loop.quit(); });
    FileIndex::build();
    loop.exec();
    FileIndex::setOnReady({});
}

/// The folders lie behind those of the hits or are the same.
void chooseFolders(int count, bool areHit)
{
    QStringList folders;
    for (int i = 0; i < count; ++i)
        folders.append(FileIndex::rootPath() + QDir::separator() +
                       QDir::toNativeSeparators(relativeFolder(areHit ? i : i + kHits)));
    FolderFilter::setFolders(folders);
}

void print(const char* what, int count, Timing timing)
{
    std::printf("%-36s %6d folders: median %9.2f ms, worst %9.2f ms\n", what, count,
                timing.medianMs, timing.worstMs);
    std::fflush(stdout);
}

void measureSearch(int count, bool areHit)
{
    Stopwatch first(Stopwatch::OfTheProcessor);
    Stopwatch next(Stopwatch::OfTheProcessor);
    const auto search = [areHit] {
        FileIndex::forgetNarrowing();
        const auto found = FileIndex::search(QStringLiteral("report"), 1, FileIndex::Files);
        if (found.isEmpty() == areHit)
            qFatal("wrong answers");
    };
    for (int round = 0; round < kRounds; ++round) {
        FolderFilter::setFolders({});
        FileIndex::search(QStringLiteral("x"), 1,
                          FileIndex::Files); // forgets what was chosen before
        chooseFolders(count, areHit);
        first.measure(search); // finds out how the folders of the index lie to those chosen
        next.measure(search);
    }
    print(areHit ? "first search, some accepted" : "first search, none accepted", count,
          first.timing());
    print(areHit ? "next search, some accepted" : "next search, none accepted", count,
          next.timing());
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
    makeIndex();
    for (const int count : {1, 100, 10000}) {
        measureSearch(count, false);
        measureSearch(count, true);
        measureDialog(count);
        measureWindow(count);
    }
    return 0;
}
