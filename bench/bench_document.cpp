// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// What it costs to put a document of 10,000 items in the place of another one as large: reading,
// keeping the one before and writing. The bytes alone are read and written twice in the same run,
// so that numbers from different machines can be compared.

#include "Files.h"
#include "LauncherModel.h"
#include "Stopwatch.h"
#include "StorageManager.h"
#include "TestHome.h"

#include <QCoreApplication>
#include <QDir>

#include <cstdio>
#include <cstdlib>

namespace
{

constexpr int kItems = 10'000;
constexpr int kSections = 20;
constexpr int kRounds = 21;

LauncherData document()
{
    LauncherData data;
    for (int i = 0; i < kSections; ++i)
        data.categories.append(QStringLiteral("Section %1").arg(i));
    data.defaultCategory = data.categories.first();
    for (int i = 0; i < kItems; ++i) {
        data.sectionElements[data.categories.at(i % kSections)].append(
            {LauncherElement::createId(), QStringLiteral("Item %1").arg(i), QStringLiteral("URL"),
             QStringLiteral("https://www.example.org/page/%1").arg(i),
             QStringLiteral("glyph:e2c7")});
    }
    return data;
}

} // namespace

int main(int argc, char** argv)
{
    TestHome::install();
    const QCoreApplication application(argc, argv);
    const QDir directory(TestHome::dataDir());
    const QString own = directory.filePath(QStringLiteral("data.json"));
    const QString other = directory.filePath(QStringLiteral("other.json"));
    StorageManager::saveData(own, document());
    StorageManager::saveData(other, document());
    LauncherModel model(own);
    Stopwatch import;
    Stopwatch bare;
    for (int i = 0; i < kRounds; ++i) {
        import.measure([&] {
            if (model.importData(other) != LauncherModel::Replacement::Done)
                std::exit(EXIT_FAILURE);
    });
    bare.measure([&] {
        const FileContent content = readFile(other, StorageManager::MaxDocumentBytes);
        for (const char* name : {"one.json", "two.json"})
            replaceFile(directory.filePath(QString::fromLatin1(name)), content.bytes);
    });
}
report("import of 10,000 items", import.timing(), bare.timing());
return EXIT_SUCCESS;
}
