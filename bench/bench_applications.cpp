// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// What the list of installed applications costs, which the first turn of the event loop waits for.
// Beside each figure stands a plain read of the same files, measured in the same run, so that
// numbers from different machines can be compared.

#include "InstalledApplications.h"
#include "TestHome.h"

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace
{

constexpr int kRuns = 21;
constexpr int kInFoldersEach = 10; ///< one entry in so many lies in a folder of its vendor
constexpr int kNotShownEach = 4;   ///< one in so many is not displayed, as handlers of types are
constexpr int kTryExecEach = 8;    ///< one in so many asks whether a program is there
constexpr double kNsPerMs = 1e6;

const QStringList kLanguageCodes{"ar",    "bg", "ca", "cs",       "da", "de",   "el", "en_GB",
                                 "eo",    "es", "et", "fi",       "fr", "gl",   "he", "hu",
                                 "id",    "it", "ja", "ko",       "lt", "nb",   "nl", "pl",
                                 "pt_BR", "ro", "ru", "sr@latin", "sv", "zh_CN"};

/// A key with all its translations, as a real entry has it for name and comment.
QByteArray localised(const QByteArray& key, const QByteArray& text)
{
    QByteArray lines = key + '=' + text + '\n';
    for (const QString& code : kLanguageCodes)
        lines += key + '[' + code.toLatin1() + "]=" + text + " \xc3\xa9\xc3\xbc " +
                 code.toLatin1() + '\n';
    return lines;
}

QByteArray entryOf(int number)
{
    const QByteArray digits = QByteArray::number(number);
    QByteArray content = "[Desktop Entry]\nVersion=1.5\nType=Application\n";
    content += localised("Name", "Application " + digits);
    content += localised("GenericName", "Program for a certain purpose");
    content += localised("Comment", "Does what number " + digits + " does, and does it well");
    content += localised("Keywords", "purpose;number;program;");
    content += "Exec=/usr/bin/application-" + digits + " --new-window \"a b\" %U\n";
    content += "Icon=application-" + digits + "\nTerminal=false\nStartupNotify=true\n";
    content += "Categories=Utility;GTK;Network;\nMimeType=text/plain;text/html;image/png;\n";
    if (number % kNotShownEach == 0)
        content += "NoDisplay=true\n";
    if (number % kTryExecEach == 1)
        content += "TryExec=sh\n";
    content += "Actions=new;\n\n[Desktop Action new]\nExec=/usr/bin/application-" + digits + "\n";
    return content + localised("Name", "New window");
}

void writeEntries(const QString& folder, int count)
{
    for (int i = 0; i < count; ++i) {
        const QString vendor = i % kInFoldersEach == 0 ? QStringLiteral("vendor%1/").arg(i) : "";
        const QString path = QStringLiteral("%1/applications/%2org.example.App%3.desktop")
                                 .arg(folder, vendor)
                                 .arg(i);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(entryOf(i)) < 0)
            qFatal("cannot write %s", qPrintable(path));
    }
}

double medianMs(const std::function<void()>& work)
{
    work(); // warms the caches of the machine
    std::vector<double> times;
    for (int i = 0; i < kRuns; ++i) {
        QElapsedTimer timer;
        timer.start();
        work();
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / kNsPerMs);
    }
    std::nth_element(times.begin(), times.begin() + kRuns / 2, times.end());
    return times[kRuns / 2];
}

/// The least that reading the files can cost.
qint64 readPlainly(const QString& folder)
{
    qint64 bytes = 0;
    QDirIterator files(folder, {"*.desktop"}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
            bytes += file.readAll().size();
    }
    return bytes;
}

void measure(int count)
{
    const QString folder = TestHome::path() + QStringLiteral("/tree%1").arg(count);
    writeEntries(folder, count);
    qputenv("XDG_DATA_HOME", QFile::encodeName(folder));
    int found = 0;
    const double listMs = medianMs([&found] {
        found = 0;
        Platform::listInstalledApplications([&found](const auto&) { ++found; });
    });
    qint64 bytes = 0;
    const double readMs = medianMs([&] { bytes = readPlainly(folder); });
    std::printf("%5d entries, %4d offered, %6.1f MB: median %8.3f ms  = %5.2f x plain read"
                " (%.3f ms)\n",
                count, found, double(bytes) / 1e6, listMs, listMs / readMs, readMs);
}

} // namespace

int main(int argc, char** argv)
{
    TestHome::install();
    const QGuiApplication application(argc, argv);
    qputenv("XDG_DATA_DIRS", "/nonexistent");
    qputenv("LC_ALL", "sv_SE.UTF-8");
    for (const int count : {50, 500, 2000})
        measure(count);
    return 0;
}
