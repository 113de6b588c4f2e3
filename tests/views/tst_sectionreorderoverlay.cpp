// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "DrivenClock.h"
#include "GlyphWidgets.h"
#include "IconHelper.h"
#include "Pixels.h"
#include "SectionReorderOverlay.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"

#include <QTest>
#include <QWheelEvent>

#include <memory>

using TileSource = SectionReorderOverlay::TileSource;

class SectionReorderOverlayTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup();

    void coversTheStrip();
    void tilesStandWhereThePillsStand();
    void tilesHaveRoomToGrow();
    void slotsFollowTheOrder();
    void widerPillToTheFrontShiftsTheRest();
    void everySlideIsOneInARow();
    void scrollsToPillsOutOfView();
    void wheelScrollsSideways();
    void picturesAreMadeOfWhatIsInView();
    void noSources();

    void grabKeepsCornersSeeThrough();
    void grabShowsStateAndSize();

private:
    static QVector<TileSource> sources(const QVector<int>& widths, const QPoint& origin = {})
    {
        QVector<TileSource> result;
        int x = origin.x();
        for (const int width : widths) {
            QPixmap rest(width, 28);
            rest.fill(Qt::blue);
            QPixmap lit(width, 28);
            lit.fill(Qt::red);
            result.append({rest, lit, QRect(x, origin.y(), width, 28)});
            x += width + 8;
        }
        return result;
    }
    SectionReorderOverlay* makeOverlay(const QVector<TileSource>& pills, int slot = 0)
    {
        auto* overlay = new SectionReorderOverlay(m_strip.get(), pills, 8, slot);
        m_clock->pass(2000);
        return overlay;
    }
    static ReorderTile* tile(const QWidget* overlay, int row)
    {
        for (auto* tile : overlay->findChildren<ReorderTile*>()) {
            if (tile->sourceRow() == row)
                return tile;
        }
        return nullptr;
    }

    std::unique_ptr<DrivenClock> m_clock;
    std::unique_ptr<QWidget> m_strip;
};

void SectionReorderOverlayTest::init()
{
    Theme::forceTheme = 1;
    m_clock = std::make_unique<DrivenClock>();
    m_strip = std::make_unique<QWidget>();
    m_strip->resize(400, 28);
    m_strip->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_strip.get()));
}

void SectionReorderOverlayTest::cleanup()
{
    m_strip.reset();
    m_clock.reset();
}

void SectionReorderOverlayTest::coversTheStrip()
{
    QCOMPARE(SectionReorderOverlay::TilePad, 4);
    const SectionReorderOverlay* overlay = makeOverlay(sources({50, 80, 60}), 2);
    QCOMPARE(overlay->parentWidget(), m_strip.get());
    QCOMPARE(overlay->geometry(), m_strip->rect());
    QCOMPARE(overlay->slotCount(), 3);
    QCOMPARE(overlay->cursorSlot(), 2);
    const QImage image = m_strip->grab().toImage();
    QCOMPARE(image.pixelColor(390, 14), QColor(Theme::shellBg()));
    QCOMPARE(image.pixelColor(tile(overlay, 2)->geometry().center()), QColor(Qt::red));
    QVERIFY(image.pixelColor(tile(overlay, 0)->geometry().center()) != QColor(Qt::red));
}

void SectionReorderOverlayTest::tilesStandWhereThePillsStand()
{
    // Without a hint in the strip nothing has to make room.
    const auto pills = sources({50, 80, 60}, QPoint(12, 3));
    const SectionReorderOverlay overlay(m_strip.get(), pills, 8, 0);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(tile(&overlay, i)->geometry(), pills.at(i).rect.adjusted(-4, 0, 4, 0));
    QVERIFY(overlay.findChildren<QAbstractAnimation*>(Qt::FindDirectChildrenOnly).isEmpty());
}

void SectionReorderOverlayTest::tilesHaveRoomToGrow()
{
    // A pill of 100 px is 104 px wide when it is lifted.
    SectionReorderOverlay* overlay = makeOverlay(sources({100, 80}, QPoint(20, 0)));
    overlay->liftCursor();
    m_clock->pass(1000);
    const QRect red = Pixels::boxOfColor(Pixels::imageOf(*tile(overlay, 0)), Qt::red, 80);
    QVERIFY(qAbs(red.width() - 104) <= 1);
    QCOMPARE(red.height(), 28);
}

void SectionReorderOverlayTest::slotsFollowTheOrder()
{
    SectionReorderOverlay* overlay = makeOverlay(sources({50, 80, 60, 30}, QPoint(10, 0)));
    overlay->liftCursor();
    overlay->moveLifted(2);
    m_clock->pass(1000);
    QCOMPARE(overlay->currentOrder(), QVector<int>({1, 2, 0, 3}));
    QCOMPARE(tile(overlay, 1)->x(), 10 - 4);
    QCOMPARE(tile(overlay, 2)->x(), 10 + 80 + 8 - 4);
    QCOMPARE(tile(overlay, 0)->x(), 10 + 80 + 8 + 60 + 8 - 4);
    QCOMPARE(tile(overlay, 3)->x(), 10 + 80 + 8 + 60 + 8 + 50 + 8 - 4);
}

void SectionReorderOverlayTest::widerPillToTheFrontShiftsTheRest()
{
    SectionReorderOverlay* overlay = makeOverlay(sources({50, 60, 150}, QPoint(10, 0)), 2);
    overlay->liftCursor();
    overlay->moveLifted(-2);
    m_clock->pass(1000);
    QCOMPARE(tile(overlay, 2)->x(), 10 - 4);
    QCOMPARE(tile(overlay, 0)->x(), 10 + 150 + 8 - 4);
    QCOMPARE(tile(overlay, 1)->x(), 10 + 150 + 8 + 50 + 8 - 4);
    QCOMPARE(tile(overlay, 0)->size(), QSize(58, 28));
}

void SectionReorderOverlayTest::everySlideIsOneInARow()
{
    SectionReorderOverlay* overlay = makeOverlay(sources({50, 60, 70}));
    QCOMPARE(overlay->columns(), 3);
    overlay->liftCursor();
    overlay->moveLifted(2);
    m_clock->pass(0);
    m_clock->pass(160);
    QCOMPARE(tile(overlay, 1)->x(), -4);
}

void SectionReorderOverlayTest::scrollsToPillsOutOfView()
{
    SectionReorderOverlay* overlay = makeOverlay(sources({200, 200, 200, 200}, QPoint(-250, 0)), 2);
    QCOMPARE(tile(overlay, 0)->x(), -254);
    overlay->setCursorSlot(0, true);
    QCOMPARE(tile(overlay, 0)->x(), 0);
    overlay->setCursorSlot(3, true);
    QCOMPARE(tile(overlay, 3)->geometry().right(), 400);
}

void SectionReorderOverlayTest::wheelScrollsSideways()
{
    SectionReorderOverlay* overlay = makeOverlay(sources({200, 200, 200, 200}));
    QWheelEvent event(QPointF(5, 5), QPointF(5, 5), QPoint(), QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(overlay, &event);
    QCOMPARE(tile(overlay, 0)->pos(), QPoint(-4 - 48, 0));
}

void SectionReorderOverlayTest::picturesAreMadeOfWhatIsInView()
{
    QVector<TileSource> pills = sources(QVector<int>(300, 92)); // 100 from one to the next
    QStringList made;
    for (int i = 0; i < pills.size(); ++i) {
        pills[i].picture = [&made, source = pills.at(i), i](bool lit) {
            made.append((lit ? u"lit %1"_qs : u"%1"_qs).arg(i));
            return lit ? source.lit : source.rest;
        };
    }
    SectionReorderOverlay* overlay = makeOverlay(pills);
    const QImage image = m_strip->grab().toImage();
    QCOMPARE(image.pixelColor(46, 14), QColor(Qt::red));
    made.sort();
    QCOMPARE(made, QStringList({"1", "2", "3", "4", "lit 0"})); // of the last the very beginning
    made.clear();
    overlay->setCursorSlot(299, true);
    m_strip->grab();
    QVERIFY(made.contains("lit 299"));
    QVERIFY(made.size() <= 6);
}

void SectionReorderOverlayTest::noSources()
{
    SectionReorderOverlay* overlay = makeOverlay({});
    QCOMPARE(overlay->slotCount(), 0);
    overlay->liftCursor();
    overlay->moveLifted(1);
    QVERIFY(!overlay->hasLift());
    QVERIFY(overlay->currentOrder().isEmpty());
}

void SectionReorderOverlayTest::grabKeepsCornersSeeThrough()
{
    QWidget window;
    window.setStyleSheet(QStringLiteral("background: #00ff00;"));
    auto* pill = new GlyphButton(&window);
    pill->setLabel(QStringLiteral("Section"));
    pill->setFixedSize(120, 28);
    PillStyle::applyLit(pill, Glyph::Folder);
    pill->ensurePolished();
    const QImage image = grabPillWithRoundedCorners(pill).toImage();
    QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
    QCOMPARE(image.pixelColor(119, 27).alpha(), 0);
    QCOMPARE(image.pixelColor(60, 2), QColor(getItemTheme().key));
}

void SectionReorderOverlayTest::grabShowsStateAndSize()
{
    GlyphButton pill;
    pill.setLabel(QStringLiteral("Section"));
    pill.setFixedSize(120, 28);
    PillStyle::applyResting(&pill, Glyph::Folder, false);
    pill.ensurePolished();
    const QPixmap rest = grabPillWithRoundedCorners(&pill);
    PillStyle::applyLit(&pill, Glyph::Folder);
    pill.ensurePolished();
    const QPixmap lit = grabPillWithRoundedCorners(&pill);
    QCOMPARE(rest.deviceIndependentSize(), QSizeF(120, 28));
    QCOMPARE(rest.devicePixelRatio(), pill.devicePixelRatioF());
    QCOMPARE(rest.toImage().pixelColor(60, 2), QColor(Theme::catTrackBg()));
    QCOMPARE(lit.toImage().pixelColor(60, 2), QColor(getItemTheme().key));
}

QTEST_MAIN(SectionReorderOverlayTest)
#include "tst_sectionreorderoverlay.moc"
