// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ConfirmDot.h"
#include "Pixels.h"
#include "TestHome.h"

#include <QTest>

class ConfirmDotTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void neverTakesFocusOrMouse();
    void isAFloatingFramelessSquare();
    void paintsACircle();
    void paintsTheTickInTheMiddle();
    void setColorsRepaints();
};

void ConfirmDotTest::neverTakesFocusOrMouse()
{
    const ConfirmDot dot(nullptr);
    QVERIFY(dot.testAttribute(Qt::WA_TranslucentBackground));
    QVERIFY(dot.testAttribute(Qt::WA_ShowWithoutActivating));
    QVERIFY(dot.testAttribute(Qt::WA_TransparentForMouseEvents));
}

void ConfirmDotTest::isAFloatingFramelessSquare()
{
    QWidget parent;
    const ConfirmDot dot(&parent);
    QCOMPARE(ConfirmDot::Size, 40);
    QCOMPARE(ConfirmDot::Glyph, 58826U);
    QCOMPARE(dot.parentWidget(), &parent);
    QCOMPARE(dot.windowType(), Qt::Tool);
    const Qt::WindowFlags flags =
        Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint | Qt::WindowStaysOnTopHint;
    QCOMPARE(dot.windowFlags() & flags, flags);
    QCOMPARE(dot.minimumSize(), QSize(40, 40));
    QCOMPARE(dot.maximumSize(), QSize(40, 40));
}

void ConfirmDotTest::paintsACircle()
{
    ConfirmDot dot(nullptr);
    dot.setColors(QColor(0, 0, 200), QColor(0, 0, 200));
    const QImage image = Pixels::imageOf(dot);
    QCOMPARE(Pixels::inkBox(image), QRect(1, 1, 38, 38)); // radius 19 around (20, 20)
    QCOMPARE(image.pixelColor(20, 3), QColor(0, 0, 200));
    QCOMPARE(image.pixelColor(4, 4), QColor(Qt::white)); // inside a square, outside a circle
    QCOMPARE(image.pixelColor(35, 35), QColor(Qt::white));
}

void ConfirmDotTest::paintsTheTickInTheMiddle()
{
    ConfirmDot dot(nullptr);
    dot.setColors(Qt::black, Qt::red);
    const QRect tick = Pixels::boxOfColor(Pixels::imageOf(dot), Qt::red, 120);
    QVERIFY(Pixels::isCentredOn(tick, QPointF(20, 20)));
    QVERIFY(tick.width() > 10 && tick.width() <= 20);
    QVERIFY(tick.width() > tick.height());
}

void ConfirmDotTest::setColorsRepaints()
{
    ConfirmDot dot(nullptr);
    dot.setColors(Qt::black, Qt::white);
    dot.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dot));
    const PaintCounter counter(&dot);
    dot.setColors(QColor(1, 2, 3), Qt::white);
    QTRY_VERIFY(counter.count > 0);
    QCOMPARE(Pixels::imageOf(dot).pixelColor(20, 3), QColor(1, 2, 3));
}

QTEST_MAIN(ConfirmDotTest)
#include "tst_confirmdot.moc"
