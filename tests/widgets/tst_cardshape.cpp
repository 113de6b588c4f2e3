// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CardShape.h"
#include "Compositor.h"
#include "TestHome.h"

#include <QFrame>
#include <QGraphicsDropShadowEffect>
#include <QTest>
#include <QVBoxLayout>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <memory>

namespace
{

bool s_isCompositing = false;
int s_askedCount = 0;

} // namespace

// Stands in for the library's own, whose object file the linker then has no reason to take.
bool Platform::isCompositing()
{
    ++s_askedCount;
    return s_isCompositing;
}

class CardShapeTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup();

    void withoutCompositorTheWindowIsCut_data();
    void withoutCompositorTheWindowIsCut();
    void withoutCompositorNoShadow();
    void withCompositorNothingChanges();
    void askedOncePerShow();
    void cutFollowsTheCard();
    void windowThatIsItsOwnCard();
    void shadowOfAnotherWidget();
    void cardWithoutShadow();
    void compositorThatComesAndGoes();
    void otherWidgetsAreLeftAlone();
    void cardThatIsDeleted();
    void cardThatIsReplacedInAShownWindow_data();
    void cardThatIsReplacedInAShownWindow();

private:
    void buildCard();
    static QWidget* shadowed(QWidget* widget);

    std::unique_ptr<QWidget> m_window;
    QFrame* m_card = nullptr;
};

namespace
{

constexpr int kMargin = 32;
constexpr int kRadius = 24;
constexpr QSize kWindowSize(400, 300);

/// How far the centre of a pixel lies outside a rounded rectangle; negative inside.
double distanceOutside(const QRectF& rect, double radius, const QPointF& point)
{
    const QPointF fromCentre = point - rect.center();
    const double x = std::abs(fromCentre.x()) - (rect.width() / 2 - radius);
    const double y = std::abs(fromCentre.y()) - (rect.height() / 2 - radius);
    const double outside = std::hypot(std::max(x, 0.0), std::max(y, 0.0));
    return outside + std::min(std::max(x, y), 0.0) - radius;
}

/// Every pixel is in the region or out of it as the rounded rectangle says, but for those that its
/// outline runs through.
void verifyRounded(const QRegion& region, const QRect& rect, int radius)
{
    QCOMPARE(region.boundingRect(), rect);
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            const double outside = distanceOutside(QRectF(rect), radius, QPointF(x + 0.5, y + 0.5));
            if (std::abs(outside) < 1.0)
                continue;
            if (region.contains(QPoint(x, y)) != (outside < 0))
                QFAIL(qPrintable(QStringLiteral("%1, %2: %3").arg(x).arg(y).arg(outside)));
        }
    }
}

void show(QWidget& window)
{
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
}

} // namespace

void CardShapeTest::init()
{
    s_isCompositing = false;
    s_askedCount = 0;
    m_window = std::make_unique<QWidget>();
    m_window->setWindowFlags(Qt::FramelessWindowHint | Qt::Tool);
    m_window->setAttribute(Qt::WA_TranslucentBackground);
    m_window->setFixedSize(kWindowSize);
    auto* layout = new QVBoxLayout(m_window.get());
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    buildCard();
}

void CardShapeTest::cleanup()
{
    m_window.reset();
}

void CardShapeTest::buildCard()
{
    m_card = new QFrame(m_window.get());
    shadowed(m_card);
    m_window->layout()->addWidget(m_card);
    CardShape::attach(m_window.get(), m_card, kRadius);
    m_card->show();
}

QWidget* CardShapeTest::shadowed(QWidget* widget)
{
    widget->setGraphicsEffect(new QGraphicsDropShadowEffect(widget));
    return widget;
}

void CardShapeTest::withoutCompositorTheWindowIsCut_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("even") << QSize(400, 300);
    QTest::newRow("odd") << QSize(617, 615);
    QTest::newRow("no straight edges") << QSize(2 * (kMargin + kRadius), 2 * (kMargin + kRadius));
}

void CardShapeTest::withoutCompositorTheWindowIsCut()
{
    QFETCH(QSize, size);
    m_window->setFixedSize(size);
    QVERIFY(m_window->mask().isEmpty());
    show(*m_window);
    verifyRounded(m_window->mask(), QRect(QPoint(kMargin, kMargin), size).adjusted(0, 0, -64, -64),
                  kRadius);
}

void CardShapeTest::withoutCompositorNoShadow()
{
    QVERIFY(m_card->graphicsEffect()->isEnabled());
    show(*m_window);
    QVERIFY(!m_card->graphicsEffect()->isEnabled());
}

void CardShapeTest::withCompositorNothingChanges()
{
    s_isCompositing = true;
    show(*m_window);
    QVERIFY(m_window->mask().isEmpty());
    QVERIFY(m_card->graphicsEffect()->isEnabled());
    m_window->setFixedSize(500, 500);
    QTRY_COMPARE(m_card->width(), 500 - 2 * kMargin);
    QVERIFY(m_window->mask().isEmpty());
    QVERIFY(m_card->graphicsEffect()->isEnabled());
}

void CardShapeTest::askedOncePerShow()
{
    QCOMPARE(s_askedCount, 0);
    show(*m_window);
    QCOMPARE(s_askedCount, 1);
    m_window->setFixedSize(500, 500);
    QTRY_COMPARE(m_card->width(), 500 - 2 * kMargin);
    QCOMPARE(s_askedCount, 1);
    m_window->hide();
    QCOMPARE(s_askedCount, 1);
    show(*m_window);
    QCOMPARE(s_askedCount, 2);
}

void CardShapeTest::cutFollowsTheCard()
{
    show(*m_window);
    m_window->setFixedSize(820, 580);
    QTRY_COMPARE(m_card->size(), QSize(756, 516));
    verifyRounded(m_window->mask(), QRect(32, 32, 756, 516), kRadius);
    m_window->layout()->setContentsMargins(10, 20, 30, 40);
    QTRY_COMPARE(m_card->pos(), QPoint(10, 20));
    verifyRounded(m_window->mask(), QRect(10, 20, 780, 520), kRadius);
    // To another place at the same size.
    m_window->layout()->setContentsMargins(30, 40, 10, 20);
    QTRY_COMPARE(m_card->pos(), QPoint(30, 40));
    verifyRounded(m_window->mask(), QRect(30, 40, 780, 520), kRadius);
}

void CardShapeTest::windowThatIsItsOwnCard()
{
    QWidget menu;
    menu.setWindowFlags(Qt::FramelessWindowHint | Qt::Tool);
    menu.setFixedSize(200, 150);
    CardShape::attach(&menu, &menu, 16);
    show(menu);
    verifyRounded(menu.mask(), QRect(0, 0, 200, 150), 16);
    menu.setFixedSize(300, 100);
    QTRY_COMPARE(menu.mask().boundingRect(), QRect(0, 0, 300, 100));
}

void CardShapeTest::shadowOfAnotherWidget()
{
    QWidget window;
    window.setWindowFlags(Qt::FramelessWindowHint | Qt::Tool);
    window.setFixedSize(kWindowSize);
    auto* holder = new QWidget(&window);
    holder->setGeometry(0, 0, 400, 300);
    shadowed(holder);
    auto* card = new QFrame(holder);
    card->setGeometry(50, 60, 200, 100);
    CardShape::attach(&window, card, kRadius, holder);
    show(window);
    QVERIFY(!holder->graphicsEffect()->isEnabled());
    verifyRounded(window.mask(), QRect(50, 60, 200, 100), kRadius);
}

void CardShapeTest::cardWithoutShadow()
{
    m_card->setGraphicsEffect(nullptr);
    show(*m_window);
    verifyRounded(m_window->mask(), QRect(32, 32, 336, 236), kRadius);
}

void CardShapeTest::compositorThatComesAndGoes()
{
    show(*m_window);
    m_window->hide();
    s_isCompositing = true;
    show(*m_window);
    QVERIFY(m_window->mask().isEmpty());
    QVERIFY(m_card->graphicsEffect()->isEnabled());
    m_window->hide();
    s_isCompositing = false;
    show(*m_window);
    verifyRounded(m_window->mask(), QRect(32, 32, 336, 236), kRadius);
    QVERIFY(!m_card->graphicsEffect()->isEnabled());
}

void CardShapeTest::otherWidgetsAreLeftAlone()
{
    // A widget in the card may come and go without the window being looked at again.
    show(*m_window);
    auto* inner = new QWidget(m_card);
    inner->setGeometry(5, 5, 50, 50);
    inner->show();
    QCOMPARE(s_askedCount, 1);
    QVERIFY(inner->mask().isEmpty());
    QVERIFY(m_card->mask().isEmpty());
}

void CardShapeTest::cardThatIsDeleted()
{
    delete m_card;
    show(*m_window);
    m_window->setFixedSize(500, 500);
    m_window->hide();
    show(*m_window);
    QVERIFY(m_window->mask().isEmpty());
}

void CardShapeTest::cardThatIsReplacedInAShownWindow_data()
{
    QTest::addColumn<bool>("isCompositing");
    QTest::newRow("compositor") << true;
    QTest::newRow("no compositor") << false;
}

void CardShapeTest::cardThatIsReplacedInAShownWindow()
{
    // A change of language rebuilds the card while the window is up, and then may resize it.
    QFETCH(bool, isCompositing);
    s_isCompositing = isCompositing;
    show(*m_window);
    delete m_card;
    buildCard();
    m_window->setFixedSize(820, 580);
    QTRY_COMPARE(m_card->size(), QSize(756, 516));
    QCOMPARE(m_card->graphicsEffect()->isEnabled(), isCompositing);
    if (isCompositing)
        QVERIFY(m_window->mask().isEmpty());
    else
        verifyRounded(m_window->mask(), QRect(32, 32, 756, 516), kRadius);
}

QTEST_MAIN(CardShapeTest)
#include "tst_cardshape.moc"
