// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Desktop.h"
#include "Program.h"
#include "Theme.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

// Whole-process figures on a virtual screen: start to the first painted window, memory at rest, and
// hotkey to painted Spotlight. A bare program with an empty window is run in turn with Orlimo, so
// that a ratio holds on any machine.

namespace
{

constexpr int kStarts = 15;
constexpr int kHotkeys = 60;
constexpr int kPatienceMs = 20000;
constexpr int kSettleMs = 1500; // beyond every timer of the start: what is left is rest

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

double largest(const std::vector<double>& values)
{
    return *std::max_element(values.begin(), values.end());
}

/// Milliseconds until `isReached`, asked without a pause.
double timeUntil(const std::function<bool()>& isReached)
{
    QElapsedTimer timer;
    timer.start();
    while (!isReached()) {
        if (timer.elapsed() > kPatienceMs)
            qFatal("waited in vain");
    }
    return double(timer.nsecsElapsed()) / 1e6;
}

double residentMegabytes(qint64 pid)
{
    QFile file(QStringLiteral("/proc/%1/status").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no status of the process");
    const QByteArray key = "VmRSS:";
    const QByteArray status = file.readAll();
    const qsizetype begin = status.indexOf(key) + key.size();
    return status.mid(begin, status.indexOf("kB", begin) - begin).trimmed().toDouble() / 1024.0;
}

struct Start
{
    double paintedMs = 0;
    double residentMb = 0;
};

/// Starts a program whose window comes up around the middle of the screen.
Start measureStart(Desktop& desktop, const QString& binary)
{
    const QPoint middle(Desktop::ScreenWidth / 2, Desktop::ScreenHeight / 2);
    const QRgb empty = desktop.client().pixel(middle);
    QProcess process;
    process.setProcessEnvironment(desktop.environment());
    Start result;
    QElapsedTimer timer;
    timer.start();
    process.start(binary, QStringList());
    timeUntil([&] { return desktop.client().pixel(middle) != empty; });
    result.paintedMs = double(timer.nsecsElapsed()) / 1e6;
    QTest::qWait(kSettleMs);
    result.residentMb = residentMegabytes(process.processId());
    process.kill();
    process.waitForFinished();
    timeUntil([&] { return desktop.client().pixel(middle) == empty; });
    return result;
}

void reportStarts(Desktop& desktop)
{
    const Program profile(desktop); // what is started finds it, and so shows no welcome
    std::vector<double> ownMs;
    std::vector<double> bareMs;
    std::vector<double> ownMb;
    std::vector<double> bareMb;
    for (int i = 0; i <= kStarts; ++i) {
        const Start own = measureStart(desktop, Program::binary());
        const Start bare = measureStart(desktop, QStringLiteral(ORLIMO_BARE_WINDOW));
        if (i == 0)
            continue; // warms the caches of the machine
        ownMs.push_back(own.paintedMs);
        bareMs.push_back(bare.paintedMs);
        ownMb.push_back(own.residentMb);
        bareMb.push_back(bare.residentMb);
    }
    std::printf("start to painted window: median %.1f ms, bare %.1f ms, ratio %.2f\n",
                median(ownMs), median(bareMs), median(ownMs) / median(bareMs));
    std::printf("resident at rest:        median %.1f MB, bare %.1f MB, ratio %.2f\n",
                median(ownMb), median(bareMb), median(ownMb) / median(bareMb));
}

void reportHotkey(Desktop& desktop)
{
    Theme::forceTheme = 1;
    Program program(desktop);
    program.setSetting(QStringLiteral("Theme/ForceTheme"), Theme::forceTheme);
    program.startAndSettle();
    program.openSpotlight(); // the first show makes its native resources
    const QPoint strip = program.spotlight().geometry.topLeft() + QPoint(32 + 260, 32 + 8);
    const QRgb shell = QColor(Theme::shellBg()).rgb();
    std::vector<double> shownMs;
    for (int i = 0; i < kHotkeys; ++i) {
        program.key(QStringLiteral("Escape"));
        program.waitUntilSpotlightIsGone();
        desktop.focusOtherWindow();
        desktop.client().pressKeys({0xffe3, 0xffe9, 'y'}); // Control, Alt
        shownMs.push_back(timeUntil([&] { return desktop.client().pixel(strip) == shell; }));
        if (!QTest::qWaitFor([&] { return program.isSpotlightUp(); }, kPatienceMs))
            qFatal("Spotlight has no focus");
    }
    std::printf("hotkey to painted Spotlight: median %.1f ms, largest %.1f ms\n", median(shownMs),
                largest(shownMs));
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    Desktop desktop(Desktop::WindowManager);
    reportStarts(desktop);
    reportHotkey(desktop);
    return 0;
}
