// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Program.h"

#include <QtTest>

/// Both windows under window managers that place them in different ways.
class E2eManagers : public QObject
{
    Q_OBJECT

private slots:
    void windowsComeUpInTheirPlaces_data();
    void windowsComeUpInTheirPlaces();
};

namespace
{

// A manager may draw a line around each window, and then counts from its outer edge.
constexpr int kFramePx = 2;
constexpr int kShows = 4;

bool isAt(const XClient::Window& window, const QPoint& place)
{
    const QPoint off = window.geometry.topLeft() - place;
    return std::abs(off.x()) <= kFramePx && std::abs(off.y()) <= kFramePx;
}

QString placeOf(const XClient::Window& window)
{
    return QStringLiteral("at %1,%2").arg(window.geometry.x()).arg(window.geometry.y());
}

} // namespace

void E2eManagers::windowsComeUpInTheirPlaces_data()
{
    QTest::addColumn<int>("features");
    QTest::addColumn<QStringList>("manager");
    QTest::newRow("openbox") << int(Desktop::WindowManager)
                             << QStringList{QStringLiteral("openbox"),
                                            QStringLiteral("--sm-disable")};
    QTest::newRow("awesome, which places every window itself")
        << int(Desktop::WindowManager) << QStringList{QStringLiteral("awesome")};
    QTest::newRow("i3, which adds a title bar")
        << int(Desktop::WindowManager)
        << QStringList{QStringLiteral("i3"), QStringLiteral("-c"), QStringLiteral("/dev/null")};
    QTest::newRow("none") << int(Desktop::NoFeature) << QStringList();
}

void E2eManagers::windowsComeUpInTheirPlaces()
{
    QFETCH(int, features);
    QFETCH(QStringList, manager);
    Desktop desktop(features, manager);
    Program program(desktop);
    program.startWithoutWaiting();
    QTRY_VERIFY_WITH_TIMEOUT(program.homeWindow().isViewable, 15000);
    const QSize home = program.homeWindow().geometry.size();
    const QPoint homePlace((Desktop::ScreenWidth - home.width()) / 2,
                           (Desktop::ScreenHeight - home.height()) / 2 +
                               Desktop::ScreenHeight / 20);
    const QPoint spotlightPlace = Program::SpotlightCard - QPoint(32, 32);
    QTRY_VERIFY2(isAt(program.homeWindow(), homePlace), qPrintable(placeOf(program.homeWindow())));
    for (int show = 0; show < kShows; ++show) {
        program.openSpotlight();
        QTRY_VERIFY2(isAt(program.spotlight(), spotlightPlace),
                     qPrintable(placeOf(program.spotlight())));
        QTRY_VERIFY(!program.homeWindow().isViewable);
        program.key(QStringLiteral("ctrl+alt+space"));
        QTRY_VERIFY(program.homeWindow().isViewable && !program.spotlight().isViewable);
        QTRY_VERIFY2(isAt(program.homeWindow(), homePlace),
                     qPrintable(placeOf(program.homeWindow())));
    }
}

QTEST_GUILESS_MAIN(E2eManagers)
#include "tst_e2e_managers.moc"
