// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// What a move costs while a colour is dragged, to the painted picker: in the field, which shows the
// marker at another place of a picture that is there already, and in the bar, which makes that
// picture anew for each hue.

#include "CustomColorPickerDialog.h"
#include "HueSlider.h"
#include "SvField.h"
#include "TestHome.h"
#include "UiDriver.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace
{

constexpr int kRounds = 400;
constexpr double kNsPerMs = 1e6;

void measure(const char* what, QWidget* target)
{
    sendMouse(target, QEvent::MouseButtonPress, target->mapToGlobal(target->rect().center()));
    QCoreApplication::processEvents();
    std::vector<double> times;
    for (int round = 0; round < kRounds; ++round) {
        const QPoint point(20 + round * 7 % (target->width() - 40),
                           20 + round * 3 % std::max(1, target->height() - 40));
        QElapsedTimer timer;
        timer.start();
        sendMouse(target, QEvent::MouseMove, target->mapToGlobal(point));
        QCoreApplication::sendPostedEvents(); // the repaints, at once as on a screen of any rate
        QCoreApplication::processEvents();
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / kNsPerMs);
    }
    std::sort(times.begin(), times.end());
    std::printf("%-24s median %6.3f ms, worst %6.3f ms\n", what, times[kRounds / 2], times.back());
    sendMouse(target, QEvent::MouseButtonRelease, target->mapToGlobal(target->rect().center()));
}

} // namespace

int main(int argc, char** argv)
{
    TestHome::install();
    const QApplication app(argc, argv);
    CustomColorPickerDialog dialog(nullptr, QString());
    dialog.show();
    if (!QTest::qWaitForWindowExposed(&dialog))
        qFatal("the dialog does not show");
    measure("a move in the field", dialog.findChild<SvField*>());
    measure("a move in the bar", dialog.findChild<HueSlider*>());
    return 0;
}
