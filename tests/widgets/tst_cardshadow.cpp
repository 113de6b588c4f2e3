// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CardShadow.h"
#include "Pixels.h"
#include "TestHome.h"

#include <QFrame>
#include <QImage>
#include <QTest>

#include <cmath>
#include <cstdlib>
#include <memory>

class CardShadowTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();

    void looksAsItsBaseClass_data();
    void looksAsItsBaseClass();
    void looksTheSameAtEveryRatio_data();
    void looksTheSameAtEveryRatio();
    void shapeDoesNotFollowTheContents();
    void contentsStandOnTheShadow();

    void blurredOnce();
    void blurredAnewForAnotherLook_data();
    void blurredAnewForAnotherLook();
    void droppedPictureIsMadeAnew();

private:
    CardShadow* addShadow(int radiusPx, const QColor& color);
    QImage paint(qreal ratio = 1.0);

    std::unique_ptr<QWidget> m_window;
    QFrame* m_card = nullptr;
};

namespace
{

constexpr int kMargin = 60;
constexpr int kRadius = 24;
constexpr qreal kBlur = 35.0;
constexpr QPointF kOffset(0, 10);
const QColor kDark(0, 0, 0, 150);

void setUp(QGraphicsDropShadowEffect* effect, const QColor& color)
{
    effect->setBlurRadius(kBlur);
    effect->setOffset(kOffset);
    effect->setColor(color);
}

QFrame* makeCard(QWidget* window, const QSize& size)
{
    auto* card = new QFrame(window);
    card->setGeometry(QRect(QPoint(kMargin, kMargin), size));
    card->setStyleSheet(QStringLiteral("background: #ffeedd; border-radius: %1px;").arg(kRadius));
    window->setFixedSize(size + QSize(2 * kMargin, 2 * kMargin));
    return card;
}

} // namespace

void CardShadowTest::init()
{
    m_window = std::make_unique<QWidget>();
    m_card = makeCard(m_window.get(), QSize(301, 200));
}

CardShadow* CardShadowTest::addShadow(int radiusPx, const QColor& color)
{
    auto* shadow = new CardShadow(m_card, radiusPx);
    setUp(shadow, color);
    m_card->setGraphicsEffect(shadow);
    return shadow;
}

/// The window on nothing.
QImage CardShadowTest::paint(qreal ratio)
{
    QImage image((QSizeF(m_window->size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    m_window->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

void CardShadowTest::looksAsItsBaseClass_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QColor>("color");
    QTest::newRow("even, dark") << QSize(520, 80) << kDark;
    QTest::newRow("even, light") << QSize(520, 408) << QColor(0, 0, 0, 40);
    QTest::newRow("odd") << QSize(553, 551) << kDark;
    QTest::newRow("no straight edges") << QSize(2 * kRadius, 2 * kRadius) << kDark;
    QTest::newRow("coloured") << QSize(200, 101) << QColor(200, 100, 50, 255);
}

void CardShadowTest::looksAsItsBaseClass()
{
    QFETCH(QSize, size);
    QFETCH(QColor, color);
    delete m_card;
    m_card = makeCard(m_window.get(), size);
    auto* plain = new QGraphicsDropShadowEffect(m_card);
    setUp(plain, color);
    m_card->setGraphicsEffect(plain);
    const QImage expected = paint();
    addShadow(kRadius, color);
    const QImage actual = paint();
    QVERIFY(qAlpha(expected.pixel(kMargin + size.width() / 2, kMargin + size.height() + 5)) > 0);
    const int difference = Pixels::largestDifference(actual, expected);
    QVERIFY2(difference <= 2, qPrintable(QString::number(difference)));
}

void CardShadowTest::looksTheSameAtEveryRatio_data()
{
    QTest::addColumn<qreal>("ratio");
    QTest::newRow("1.25") << 1.25;
    QTest::newRow("1.5") << 1.5;
    QTest::newRow("2") << 2.0;
    QTest::newRow("3") << 3.0;
}

void CardShadowTest::looksTheSameAtEveryRatio()
{
    QFETCH(qreal, ratio);
    addShadow(kRadius, kDark);
    const QImage once = paint();
    const QImage fine = paint(ratio);
    // Straight down from the middle of the lower edge, and out of a corner.
    for (const QPointF& step : {QPointF(0, 1), QPointF(1, 1)}) {
        const QPointF start = step.x() > 0 ? QPointF(kMargin + 301 - 7, kMargin + 200 - 7)
                                           : QPointF(kMargin + 150, kMargin + 200);
        for (int i = 2; i < kMargin; ++i) {
            const QPointF at = start + i * step;
            const QPointF fineAt = (at + QPointF(0.5, 0.5)) * ratio;
            const int expected = qAlpha(once.pixel(at.toPoint()));
            const int actual =
                qAlpha(fine.pixel(int(std::floor(fineAt.x())), int(std::floor(fineAt.y()))));
            QVERIFY2(std::abs(actual - expected) <= 6,
                     qPrintable(QStringLiteral("%1 from the edge: %2, %3 at ratio 1")
                                    .arg(i)
                                    .arg(actual)
                                    .arg(expected)));
        }
    }
}

void CardShadowTest::shapeDoesNotFollowTheContents()
{
    addShadow(kRadius, kDark);
    m_card->setStyleSheet(QStringLiteral("background: transparent;"));
    const QImage image = paint();
    QVERIFY(qAlpha(image.pixel(kMargin + 150, kMargin + 200 + 5)) > 20);
    QVERIFY(qAlpha(image.pixel(kMargin + 150, kMargin + 100)) > 100);
}

void CardShadowTest::contentsStandOnTheShadow()
{
    addShadow(kRadius, kDark);
    const QImage image = paint();
    QCOMPARE(image.pixelColor(kMargin + 150, kMargin + 100), QColor(0xff, 0xee, 0xdd));
    QCOMPARE(image.pixelColor(kMargin + 150, kMargin + 198), QColor(0xff, 0xee, 0xdd));
}

void CardShadowTest::blurredOnce()
{
    const CardShadow* shadow = addShadow(kRadius, kDark);
    QCOMPARE(shadow->pictureCount(), 0);
    const QImage first = paint();
    QCOMPARE(shadow->pictureCount(), 1);
    m_card->move(m_card->pos() + QPoint(1, 1));
    paint();
    m_card->setStyleSheet(QStringLiteral("background: red;"));
    paint();
    QCOMPARE(shadow->pictureCount(), 1);
}

void CardShadowTest::blurredAnewForAnotherLook_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QColor>("color");
    QTest::addColumn<qreal>("blur");
    QTest::addColumn<qreal>("ratio");
    QTest::newRow("size") << QSize(301, 201) << kDark << kBlur << 1.0;
    QTest::newRow("strength") << QSize(301, 200) << QColor(0, 0, 0, 149) << kBlur << 1.0;
    QTest::newRow("softness") << QSize(301, 200) << kDark << 34.0 << 1.0;
    QTest::newRow("ratio") << QSize(301, 200) << kDark << kBlur << 1.25;
}

void CardShadowTest::blurredAnewForAnotherLook()
{
    QFETCH(QSize, size);
    QFETCH(QColor, color);
    QFETCH(qreal, blur);
    QFETCH(qreal, ratio);
    CardShadow* shadow = addShadow(kRadius, kDark);
    paint();
    m_card->resize(size);
    shadow->setColor(color);
    shadow->setBlurRadius(blur);
    const QImage later = paint(ratio);
    QCOMPARE(shadow->pictureCount(), 2);
    // And it is what an effect that never had another look paints.
    CardShadow* fresh = addShadow(kRadius, color);
    fresh->setBlurRadius(blur);
    QCOMPARE(later, paint(ratio));
}

void CardShadowTest::droppedPictureIsMadeAnew()
{
    CardShadow* shadow = addShadow(kRadius, kDark);
    const QImage first = paint();
    shadow->dropPicture();
    QCOMPARE(shadow->pictureCount(), 1);
    QCOMPARE(paint(), first);
    QCOMPARE(shadow->pictureCount(), 2);
}

QTEST_MAIN(CardShadowTest)
#include "tst_cardshadow.moc"
