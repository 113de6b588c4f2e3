// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// What it costs to paint a small part of a window anew, as every hover and every blink of the caret
// does: a tile of the grid in the main window, a row of results in Spotlight. The same widget is
// repainted in a bare window of the same size in the same run, so that numbers from different
// machines can be compared. Beside it stands what the shadow costs once for each look.

#include "CardShadow.h"
#include "FakeHotkeyBackend.h"
#include "MainWindow.h"
#include "SpotlightFixture.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFrame>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace
{

constexpr int kRounds = 200;
constexpr double kNsPerUs = 1e3;

/// A card with round corners and nothing in it.
class Tile : public QFrame
{
public:
    Tile(QWidget* parent, const QRect& place) : QFrame(parent)
    {
        setStyleSheet(QStringLiteral("background: #8899aa; border-radius: 16px;"));
        setGeometry(place);
        show();
    }
};

/// Median time of one call, in microseconds.
double timeOf(const std::function<void()>& work)
{
    std::vector<double> times;
    for (int round = 0; round < kRounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        work();
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / kNsPerUs);
    }
    const auto middle = times.begin() + kRounds / 2;
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

double timeRepaint(Tile& tile)
{
    QWidget* window = tile.window();
    window->show();
    if (!QTest::qWaitForWindowExposed(window))
        qFatal("the window does not show");
    QCoreApplication::processEvents();
    return timeOf([&tile] { tile.repaint(); });
}

void report(const char* what, QWidget* card, const QSize& size)
{
    const QRect place(QPoint(60, 60), size);
    QWidget bare;
    bare.setAttribute(Qt::WA_TranslucentBackground);
    bare.setWindowFlags(Qt::FramelessWindowHint | Qt::Tool);
    bare.resize(card->window()->size());
    Tile bareTile(&bare, place);
    Tile tile(card, place);
    const double bareUs = timeRepaint(bareTile);
    bare.hide();
    const double us = timeRepaint(tile);
    auto* shadow = card->window()->findChild<CardShadow*>();
    const double blurUs = timeOf([shadow, &tile] {
        shadow->dropPicture();
        tile.repaint();
    });
    std::printf("%-32s median %9.1f us  = %6.1f x bare (%.1f us), with the shadow made anew "
                "%.1f us\n",
                what, us, us / bareUs, bareUs, blurUs);
}

} // namespace

int main(int argc, char** argv)
{
    TestHome::install();
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    {
        FakeHotkeyBackend::install();
        MainWindow window(nullptr);
        report("a tile of the main window", window.findChild<QFrame*>("bgContainer"),
               QSize(MainWindow::GRID_CELL, MainWindow::GRID_CELL));
    }
    SpotlightFixture spotlight;
    report("a field of Spotlight", spotlight.shell(), QSize(300, 28));
    return 0;
}
