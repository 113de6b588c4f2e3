// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HueSlider.h"
#include "Pixels.h"
#include "TestHome.h"
#include "UiDriver.h"

#include <QSignalSpy>
#include <QTest>

#include <limits>

class HueSliderTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void startsAtRed();
    void setterBoundsItsValue_data();
    void setterBoundsItsValue();
    void setterIsSilent();
    void repaintsOnAChangeAlone();

    void picks_data();
    void picks();
    void dragsAndTellsOfChangesAlone();

    void paintsTheBar();
    void marksTheChoice_data();
    void marksTheChoice();
};

void HueSliderTest::startsAtRed()
{
    const HueSlider slider;
    QCOMPARE(slider.hue(), 0);
    QCOMPARE(slider.minimumHeight(), 22);
    QCOMPARE(slider.maximumHeight(), 22);
    QCOMPARE(slider.cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(slider.focusPolicy(), Qt::NoFocus);
}

void HueSliderTest::setterBoundsItsValue_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("hue");
    QTest::newRow("zero") << 0 << 0;
    QTest::newRow("below") << -1 << 0;
    QTest::newRow("middle") << 180 << 180;
    QTest::newRow("largest") << 359 << 359;
    QTest::newRow("above") << 360 << 359;
    QTest::newRow("far below") << std::numeric_limits<int>::min() << 0;
    QTest::newRow("far above") << std::numeric_limits<int>::max() << 359;
}

void HueSliderTest::setterBoundsItsValue()
{
    QFETCH(int, value);
    HueSlider slider;
    slider.setHue(5);
    slider.setHue(value);
    QTEST(slider.hue(), "hue");
}

void HueSliderTest::setterIsSilent()
{
    HueSlider slider;
    const QSignalSpy changed(&slider, &HueSlider::hueChanged);
    slider.setHue(77);
    QCOMPARE(changed.count(), 0);
}

void HueSliderTest::repaintsOnAChangeAlone()
{
    HueSlider slider;
    slider.resize(200, HueSlider::Height);
    slider.setHue(100);
    slider.show();
    QVERIFY(QTest::qWaitForWindowExposed(&slider));
    QCoreApplication::processEvents();
    const PaintCounter paints(&slider);
    slider.setHue(100);
    QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(20, 5));
    QTRY_COMPARE(paints.count, 1);
    QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(20, 5));
    slider.setHue(101);
    QTRY_COMPARE(paints.count, 2);
}

void HueSliderTest::picks_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("hue");
    const int exact = 359 + 22; // one degree a pixel
    QTest::newRow("left end of the handle's way") << exact << 11 << 0;
    QTest::newRow("right end of the handle's way") << exact << 370 << 359;
    QTest::newRow("inside") << exact << 211 << 200;
    QTest::newRow("left of the way") << exact << 3 << 0;
    QTest::newRow("right of the way") << exact << 380 << 359;
    QTest::newRow("beyond the left") << exact << -500 << 0;
    QTest::newRow("beyond the right") << exact << 5000 << 359;
    QTest::newRow("rounded") << 250 << 100 << 140; // 89 of 228 px
    QTest::newRow("as narrow as the handle, left") << 22 << 11 << 0;
    QTest::newRow("as narrow as the handle, right") << 22 << 12 << 359;
    QTest::newRow("one pixel wide") << 1 << 0 << 0;
}

void HueSliderTest::picks()
{
    QFETCH(int, width);
    QFETCH(int, x);
    QFETCH(int, hue);
    HueSlider slider;
    slider.resize(width, HueSlider::Height);
    slider.setHue(1);
    const QSignalSpy changed(&slider, &HueSlider::hueChanged);
    sendMouse(&slider, QEvent::MouseButtonPress, slider.mapToGlobal(QPoint(x, 11)));
    QCOMPARE(slider.hue(), hue);
    QCOMPARE(changed, QList<QList<QVariant>>{{hue}});
}

void HueSliderTest::dragsAndTellsOfChangesAlone()
{
    HueSlider slider;
    slider.resize(381, HueSlider::Height);
    const QSignalSpy changed(&slider, &HueSlider::hueChanged);
    const auto drag = [&slider](QEvent::Type type, const QPoint& point) {
        sendMouse(&slider, type, slider.mapToGlobal(point));
    };
    drag(QEvent::MouseButtonPress, {111, 11});
    drag(QEvent::MouseMove, {112, 900}); // how high doesn't matter
    drag(QEvent::MouseMove, {112, -900});
    drag(QEvent::MouseMove, {-3, 11});
    drag(QEvent::MouseMove, {-300, 11});
    drag(QEvent::MouseButtonRelease, {-300, 11});
    QTest::mouseMove(&slider, QPoint(200, 11)); // nothing is held
    QCOMPARE(changed, (QList<QList<QVariant>>{{100}, {101}, {0}}));
}

void HueSliderTest::paintsTheBar()
{
    HueSlider slider;
    slider.resize(600, HueSlider::Height);
    const QImage image = Pixels::imageOf(slider);
    for (int hue = 20; hue < 360; hue += 10) {
        const QColor color = image.pixelColor(hue * 600 / 360, 11);
        QVERIFY2(Pixels::isNear(color, QColor::fromHsv(hue, 255, 255), 6),
                 qPrintable(QStringLiteral("%1: %2").arg(hue).arg(color.name())));
    }
    // Half as high as the widget, in its middle.
    const QImage middle = image.copy(300, 0, 1, HueSlider::Height);
    const QRect ink = Pixels::inkBox(middle);
    QVERIFY(ink.top() == 5 && ink.bottom() == 16);         // each end is the half of a pixel
    QCOMPARE(image.pixelColor(599, 6), QColor(Qt::white)); // the ends are round
}

void HueSliderTest::marksTheChoice_data()
{
    QTest::addColumn<int>("hue");
    QTest::addColumn<int>("x");
    QTest::newRow("red") << 0 << 11;
    QTest::newRow("middle") << 180 << 191;
    QTest::newRow("last") << 359 << 370;
}

void HueSliderTest::marksTheChoice()
{
    QFETCH(int, hue);
    QFETCH(int, x);
    HueSlider slider;
    slider.resize(381, HueSlider::Height);
    slider.setHue(hue);
    const QImage image = Pixels::imageOf(slider);
    QVERIFY(Pixels::isNear(image.pixelColor(x, 11), QColor::fromHsv(hue, 255, 255), 2));
    for (const QPoint& ring : {QPoint(8, 0), QPoint(-9, 0), QPoint(0, 8), QPoint(0, -9)})
        QVERIFY(image.pixelColor(QPoint(x, 11) + ring).lightness() > 200);
    slider.setHue(hue < 180 ? 359 : 0);
    QImage other = Pixels::imageOf(slider);
    const QRect place(x - 11, 0, 22, 22);
    Pixels::drawHandle(other, QPointF(hue / 359.0 * (381 - 22) + 11, 11),
                       QColor::fromHsv(hue, 255, 255), 9, 10);
    QVERIFY(Pixels::largestDifference(image.copy(place), other.copy(place)) <= 2);
    // The hairline around the ring ends inside the widget.
    const QRect ink = Pixels::inkBox(image);
    QVERIFY(slider.rect().contains(ink));
    const QColor edge = image.pixelColor(x, 0);
    QVERIFY(edge != QColor(Qt::white) && edge.lightness() > 180);
}

QTEST_MAIN(HueSliderTest)
#include "tst_hueslider.moc"
