// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// What the tiles of the home page cost while the mouse moves from one to the next, and while they
// are scrolled, to the painted list. The same moves go to a bare list of as many rows in cells of
// the same size, in the same run, so that numbers from different machines can be compared.

#include "Delegates.h"
#include "Pixels.h"
#include "Stopwatch.h"
#include "TestFonts.h"
#include "TestHome.h"
#include "UiDriver.h"

#include <QApplication>
#include <QListWidget>
#include <QScrollBar>
#include <QTest>

#include <cstdlib>

namespace
{

constexpr int kTiles = 500;
constexpr int kRounds = 400;
constexpr int kForceLight = 1;
constexpr int kGap = 12;
constexpr int kScrollStepPx = 48;
constexpr QSize kListSize(640, 480);
constexpr QSize kCell(160, 160);
constexpr int kNameLength = 1024 * 1024;

/// A grid of cells in which the row under the mouse becomes the current one.
class Grid : public QListWidget
{
public:
    Grid(const QStringList& names, const QString& token)
    {
        setViewMode(QListView::IconMode);
        setResizeMode(QListView::Adjust);
        setMovement(QListView::Static);
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
        setGridSize(kCell);
        viewport()->setMouseTracking(true);
        const QStringList types{"URL", "Snippet", "Application", "Bulk", "File"};
        for (int i = 0; i < kTiles; ++i) {
            auto* row = new QListWidgetItem(names.at(i % names.size()), this);
            row->setSizeHint(kCell); // for a delegate that asks for it
            row->setData(ItemRoles::RoleItemType, types.at(i % types.size()));
            row->setData(ItemRoles::RoleIconToken, token);
        }
        connect(this, &QListWidget::itemEntered, this,
                [this](QListWidgetItem* row) { setCurrentItem(row); });
        resize(kListSize);
    }
};

class TileGrid : public Grid
{
public:
    explicit TileGrid(const QStringList& names, const QString& token = QString())
        : Grid(names, token)
    {
        setItemDelegate(new GridTileDelegate(kGap, this));
    }
};

void showAndPaint(QWidget& widget)
{
    widget.show();
    if (!QTest::qWaitForWindowExposed(&widget))
        qFatal("the list does not show");
    widget.activateWindow();
    widget.setFocus();
    QCoreApplication::processEvents();
}

/// Runs `step` again and again, each time to the painted list.
template <typename Step>
Timing timeSteps(QListWidget& list, const Step& step)
{
    showAndPaint(list);
    PaintCounter paints(list.viewport());
    Stopwatch stopwatch;
    for (int round = 1; round <= kRounds; ++round) { // each elsewhere than a fresh list
        stopwatch.measure([&] {
            step(round);
            QCoreApplication::processEvents();
        });
    }
    if (paints.count < kRounds)
        qFatal("%d steps have been painted %d times", kRounds, paints.count);
    list.hide();
    return stopwatch.timing();
}

Timing timeHover(QListWidget& list)
{
    const int columns = kListSize.width() / kCell.width();
    return timeSteps(list, [&list, columns](int round) {
        const QPoint middle(kCell.width() * (round % columns) + kCell.width() / 2,
                            kCell.height() * (round / columns % 2) + kCell.height() / 2);
        sendMouse(list.viewport(), QEvent::MouseMove, list.viewport()->mapToGlobal(middle),
                  Qt::NoButton);
    });
}

Timing timeScroll(QListWidget& list)
{
    QScrollBar* bar = list.verticalScrollBar();
    return timeSteps(list, [bar](int round) {
        const int steps = bar->maximum() / kScrollStepPx;
        bar->setValue(kScrollStepPx * (round % steps));
    });
}

/// A step that leaves nothing of what was in sight, so that every tile of the list is painted.
Timing timePages(QListWidget& list)
{
    QScrollBar* bar = list.verticalScrollBar();
    return timeSteps(list,
                     [bar](int round) { bar->setValue(round % 2 == 0 ? bar->maximum() : 0); });
}

void reportAll(const char* what, QListWidget& tiles, QListWidget& bare)
{
    std::printf("%d tiles, %s\n", kTiles, what);
    report("  from tile to tile", timeHover(tiles), timeHover(bare));
    report("  a scroll step of 48 px", timeScroll(tiles), timeScroll(bare));
    report("  a page, all tiles anew", timePages(tiles), timePages(bare));
}

/// Paints until the picture of the tiles is there. False if that doesn't happen.
bool paintUntilPictureShows(QListWidget& tiles)
{
    const bool isThere = QTest::qWaitFor([&tiles] {
        const QImage image = tiles.grab().toImage();
        return !Pixels::boxOfColor(image, Qt::red).isEmpty();
    });
    tiles.hide();
    return isThere;
}

} // namespace

int main(int argc, char** argv)
{
    TestHome::install();
    const QApplication application(argc, argv);
    Theme::forceTheme = kForceLight;
    TestFonts::addWeights();

    const QStringList names{"Mail", "The page of all my letters", "Notes", "Project plan 2026",
                            "A name of quite some more words than find room in a tile"};
    Grid bare(names, QString());
    TileGrid plain(names);
    reportAll("usual names and glyphs", plain, bare);

    TileGrid longNames({QStringLiteral("wide ").repeated(kNameLength / 5),
                        QString(kNameLength, u'i'), QString(kNameLength, u' ') + u'x'});
    reportAll("names of a megabyte", longNames, bare);

    const QString path = TestHome::writeDataFile(QStringLiteral("picture.png"), {});
    QImage picture(512, 512, QImage::Format_RGB32);
    picture.fill(Qt::red);
    if (!picture.save(path))
        return EXIT_FAILURE;
    TileGrid pictures(names, path);
    if (!paintUntilPictureShows(pictures))
        return EXIT_FAILURE;
    reportAll("a picture in each", pictures, bare);
    return EXIT_SUCCESS;
}
