// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Pixels.h"
#include "SvField.h"
#include "TestHome.h"
#include "UiDriver.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QSignalSpy>
#include <QTest>

#include <limits>

namespace
{

constexpr int kTolerance = 4;

/// Where a point of a widget lies on the screen.
QPoint onScreen(const QWidget& widget, const QPoint& point)
{
    return widget.mapToGlobal(point);
}

QPair<int, int> choiceOf(const SvField& field)
{
    return {field.sat(), field.val()};
}

/// Compares two colours and tells which they are if they differ.
#define COMPARE_COLOR(actual, expected)                                                            \
    QVERIFY2(Pixels::isNear(actual, expected, kTolerance),                                         \
             qPrintable((actual).name() + " instead of " + (expected).name()))

} // namespace

class SvFieldTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void startsAtFullRed();
    void settersBoundTheirValues_data();
    void settersBoundTheirValues();
    void settersAreSilent();
    void repaintsOnAChangeAlone();

    void picks_data();
    void picks();
    void dragsAndTellsOfChangesAlone();

    void paintsTheField_data();
    void paintsTheField();
    void paintsAnotherHueAnew();
    void paintsAnotherSizeAnew();
    void marksTheChoice_data();
    void marksTheChoice();
    void markerHasItsMeasures();
    void paintsInTinySizes_data();
    void paintsInTinySizes();
    void everyPixelHasItsColor();
    void everyPixelOfAFineScreenToo_data();
    void everyPixelOfAFineScreenToo();
};

void SvFieldTest::startsAtFullRed()
{
    const SvField field;
    QCOMPARE(field.hue(), 0);
    QCOMPARE(choiceOf(field), qMakePair(255, 255));
    QCOMPARE(field.sizeHint(), QSize(252, 150));
    QCOMPARE(field.minimumHeight(), 150);
    QCOMPARE(field.cursor().shape(), Qt::CrossCursor);
    QCOMPARE(field.focusPolicy(), Qt::NoFocus);
}

void SvFieldTest::settersBoundTheirValues_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("hue");
    QTest::addColumn<int>("level");
    QTest::newRow("zero") << 0 << 0 << 0;
    QTest::newRow("below") << -1 << 0 << 0;
    QTest::newRow("middle") << 120 << 120 << 120;
    QTest::newRow("largest level") << 255 << 255 << 255;
    QTest::newRow("above the levels") << 256 << 256 << 255;
    QTest::newRow("largest hue") << 359 << 359 << 255;
    QTest::newRow("above the hues") << 360 << 359 << 255;
    QTest::newRow("far below") << std::numeric_limits<int>::min() << 0 << 0;
    QTest::newRow("far above") << std::numeric_limits<int>::max() << 359 << 255;
}

void SvFieldTest::settersBoundTheirValues()
{
    QFETCH(int, value);
    QFETCH(int, level);
    SvField field;
    field.setHue(value);
    QTEST(field.hue(), "hue");
    field.setSv(value, 7);
    QCOMPARE(choiceOf(field), qMakePair(level, 7));
    field.setSv(7, value);
    QCOMPARE(choiceOf(field), qMakePair(7, level));
}

void SvFieldTest::settersAreSilent()
{
    SvField field;
    const QSignalSpy changed(&field, &SvField::svChanged);
    field.setHue(77);
    field.setSv(1, 2);
    QCOMPARE(changed.count(), 0);
}

void SvFieldTest::repaintsOnAChangeAlone()
{
    SvField field;
    field.show();
    QVERIFY(QTest::qWaitForWindowExposed(&field));
    field.setHue(10);
    field.setSv(20, 30);
    QCoreApplication::processEvents();
    const PaintCounter paints(&field);
    field.setHue(10);
    field.setSv(20, 30);
    QTest::mousePress(&field, Qt::LeftButton, {}, field.rect().center());
    QTRY_COMPARE(paints.count, 1);
    QTest::mousePress(&field, Qt::LeftButton, {}, field.rect().center());
    field.setHue(11);
    QTRY_COMPARE(paints.count, 2);
    field.setSv(21, 31);
    QTRY_COMPARE(paints.count, 3);
}

void SvFieldTest::picks_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<int>("sat");
    QTest::addColumn<int>("val");
    const QSize size(256, 256); // one level a pixel
    QTest::newRow("upper left") << size << QPoint(0, 0) << 0 << 255;
    QTest::newRow("upper right") << size << QPoint(255, 0) << 255 << 255;
    QTest::newRow("lower left") << size << QPoint(0, 255) << 0 << 0;
    QTest::newRow("lower right") << size << QPoint(255, 255) << 255 << 0;
    QTest::newRow("inside") << size << QPoint(100, 55) << 100 << 200;
    QTest::newRow("beyond the left and the top") << size << QPoint(-40, -9000) << 0 << 255;
    QTest::newRow("beyond the right and the bottom") << size << QPoint(256, 9000) << 255 << 0;
    const QSize usual(250, 150);
    QTest::newRow("rounded up") << usual << QPoint(125, 74) << 128 << 128;
    QTest::newRow("rounded down") << usual << QPoint(120, 101) << 123 << 82;
    const QSize slim(1, 150);
    QTest::newRow("one pixel wide") << slim << QPoint(0, 149) << 0 << 0;
    QTest::newRow("beside one pixel") << slim << QPoint(1, 0) << 255 << 255;
}

void SvFieldTest::picks()
{
    QFETCH(QSize, size);
    QFETCH(QPoint, point);
    SvField field;
    field.resize(size);
    field.setSv(1, 1);
    const QSignalSpy changed(&field, &SvField::svChanged);
    sendMouse(&field, QEvent::MouseButtonPress, onScreen(field, point));
    QTEST(field.sat(), "sat");
    QTEST(field.val(), "val");
    QCOMPARE(changed.count(), 1);
}

void SvFieldTest::dragsAndTellsOfChangesAlone()
{
    SvField field;
    field.resize(256, 256);
    const QSignalSpy changed(&field, &SvField::svChanged);
    sendMouse(&field, QEvent::MouseButtonPress, onScreen(field, {10, 245}));
    QCOMPARE(choiceOf(field), qMakePair(10, 10));
    sendMouse(&field, QEvent::MouseMove, onScreen(field, {20, 235}));
    QCOMPARE(choiceOf(field), qMakePair(20, 20));
    QCOMPARE(changed.count(), 2);
    sendMouse(&field, QEvent::MouseMove, onScreen(field, {-5, 300}));
    QCOMPARE(choiceOf(field), qMakePair(0, 0));
    sendMouse(&field, QEvent::MouseMove, onScreen(field, {-50, 3000}));
    sendMouse(&field, QEvent::MouseButtonRelease, onScreen(field, {-50, 3000}));
    QCOMPARE(changed.count(), 3);
    QTest::mouseMove(&field, QPoint(128, 128)); // nothing is held
    QCOMPARE(changed.count(), 3);
}

void SvFieldTest::paintsTheField_data()
{
    QTest::addColumn<int>("hue");
    QTest::newRow("red") << 0;
    QTest::newRow("green") << 120;
    QTest::newRow("blue") << 240;
    QTest::newRow("of the default accent") << 202;
    QTest::newRow("last") << 359;
}

void SvFieldTest::paintsTheField()
{
    QFETCH(int, hue);
    SvField field;
    field.resize(250, 150);
    field.setHue(hue);
    field.setSv(0, 0); // the marker is out of the way
    const QImage image = Pixels::imageOf(field);
    COMPARE_COLOR(image.pixelColor(2, 20), QColor::fromHsv(hue, 2, 220));
    COMPARE_COLOR(image.pixelColor(125, 2), QColor::fromHsv(hue, 128, 251));
    COMPARE_COLOR(image.pixelColor(125, 75), QColor::fromHsv(hue, 128, 127));
    COMPARE_COLOR(image.pixelColor(248, 20), QColor::fromHsv(hue, 253, 220));
    COMPARE_COLOR(image.pixelColor(248, 75), QColor::fromHsv(hue, 253, 127));
    COMPARE_COLOR(image.pixelColor(125, 148), QColor(Qt::black));
    // The corners are round, and a hairline runs along the edge.
    QCOMPARE(image.pixelColor(0, 0), QColor(Qt::white));
    QCOMPARE(image.pixelColor(249, 149), QColor(Qt::white));
    QCOMPARE(image.pixelColor(249, 0), QColor(Qt::white));
    const int inked = 255 - 35;
    COMPARE_COLOR(image.pixelColor(0, 20), QColor::fromHsv(hue, 0, 220 * inked / 255));
}

void SvFieldTest::paintsAnotherHueAnew()
{
    SvField field;
    field.resize(250, 150);
    field.setSv(0, 0);
    COMPARE_COLOR(Pixels::imageOf(field).pixelColor(240, 15), QColor::fromHsv(0, 246, 228));
    field.setHue(120);
    COMPARE_COLOR(Pixels::imageOf(field).pixelColor(240, 15), QColor::fromHsv(120, 246, 228));
}

void SvFieldTest::paintsAnotherSizeAnew()
{
    SvField field;
    field.resize(250, 150);
    field.setSv(0, 0);
    Pixels::imageOf(field);
    field.resize(500, 300);
    COMPARE_COLOR(Pixels::imageOf(field).pixelColor(480, 30), QColor::fromHsv(0, 246, 228));
}

void SvFieldTest::marksTheChoice_data()
{
    QTest::addColumn<int>("sat");
    QTest::addColumn<int>("val");
    QTest::addColumn<QPoint>("centre");
    QTest::newRow("middle") << 102 << 127 << QPoint(100, 75);
    QTest::newRow("white") << 0 << 255 << QPoint(9, 9);
    QTest::newRow("full colour") << 255 << 255 << QPoint(241, 9);
    QTest::newRow("black") << 0 << 0 << QPoint(9, 141);
    QTest::newRow("black, saturated") << 255 << 0 << QPoint(241, 141);
}

void SvFieldTest::marksTheChoice()
{
    QFETCH(int, sat);
    QFETCH(int, val);
    QFETCH(QPoint, centre);
    SvField field;
    field.resize(250, 150);
    field.setHue(200);
    field.setSv(sat, val);
    QImage image = Pixels::imageOf(field);
    const QColor fill = QColor::fromHsv(200, sat, val);
    COMPARE_COLOR(image.pixelColor(centre), fill);
    COMPARE_COLOR(image.pixelColor(centre + QPoint(4, 0)), fill);
    for (const QPoint& ring : {QPoint(6, 0), QPoint(-7, 0), QPoint(0, 6), QPoint(0, -7)})
        QVERIFY(image.pixelColor(centre + ring).lightness() > 210);
    // Without the marker nothing but its place changes.
    field.setSv(255 - sat, 255 - val);
    const QImage other = Pixels::imageOf(field);
    const QRect place(centre - QPoint(9, 9), QSize(18, 18));
    const QPoint away = centre + (centre.x() < 125 ? QPoint(10, 0) : QPoint(-11, 0));
    QCOMPARE(image.pixelColor(away), other.pixelColor(away));
    QVERIFY(image.copy(place) != other.copy(place));
}

void SvFieldTest::markerHasItsMeasures()
{
    SvField field;
    field.resize(250, 150);
    field.setHue(200);
    field.setSv(0, 0); // far from where it is looked at
    QImage expected = Pixels::imageOf(field);
    const QPointF centre(250 * 102 / 255.0, 150 * (1 - 127 / 255.0));
    Pixels::drawHandle(expected, centre, QColor::fromHsv(200, 102, 127), 6.5, 8);
    field.setSv(102, 127);
    const QRect place(centre.toPoint() - QPoint(12, 12), QSize(25, 25));
    const QImage image = Pixels::imageOf(field).copy(place);
    QVERIFY(Pixels::largestDifference(image, expected.copy(place)) <= 2);
}

void SvFieldTest::paintsInTinySizes_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("nothing") << QSize(0, 0);
    QTest::newRow("a line") << QSize(1, 150);
    QTest::newRow("a point") << QSize(1, 1);
    QTest::newRow("less than the marker") << QSize(12, 12);
}

void SvFieldTest::paintsInTinySizes()
{
    QFETCH(QSize, size);
    SvField field;
    field.setMinimumHeight(0);
    field.resize(size);
    QImage image = Pixels::canvas(QSize(40, 200));
    QPainter painter(&image);
    field.render(&painter, QPoint(), QRegion(), QWidget::DrawChildren);
    painter.end();
    QCOMPARE(field.rect() | Pixels::inkBox(image), field.rect());
}

void SvFieldTest::everyPixelHasItsColor()
{
    SvField field;
    field.resize(60, 150); // narrow: from one pixel of the finest screen to the next is a step
    field.setSv(0, 0);
    const QImage image = field.grab().toImage();
    const qreal ratio = qEnvironmentVariable("QT_SCALE_FACTOR", "1").toDouble();
    QCOMPARE(image.devicePixelRatio(), ratio);
    QCOMPARE(image.size(), QSize(60, 150) * ratio);
    const int y = qRound(40 * ratio);
    for (int x = 4; x < image.width() - 4; ++x)
        QVERIFY2(image.pixel(x, y) != image.pixel(x - 1, y), qPrintable(QString::number(x)));
}

void SvFieldTest::everyPixelOfAFineScreenToo_data()
{
    QTest::addColumn<QString>("scale");
    QTest::newRow("1.5") << "1.5";
    QTest::newRow("2") << "2";
}

void SvFieldTest::everyPixelOfAFineScreenToo()
{
    QFETCH(QString, scale);
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_SCALE_FACTOR", scale);
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.start(QCoreApplication::applicationFilePath(), {"everyPixelHasItsColor"});
    QVERIFY(child.waitForFinished(60000));
    const QByteArray output = child.readAll();
    QVERIFY2(child.exitStatus() == QProcess::NormalExit && child.exitCode() == 0,
             output.constData());
    QVERIFY2(output.contains("everyPixelHasItsColor()"), output.constData());
}

QTEST_MAIN(SvFieldTest)
#include "tst_svfield.moc"
