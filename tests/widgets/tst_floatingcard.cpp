// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Compositor.h"
#include "FloatingCard.h"
#include "Pixels.h"
#include "TestHome.h"
#include "TestScreens.h"
#include "Theme.h"

#include <QApplication>
#include <QFrame>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QTest>
#include <QVBoxLayout>

#include <memory>

namespace
{

bool s_isCompositing = true;

constexpr QPoint kInPrimary = TestScreens::Primary.center();
constexpr QPoint kNowhere(-5000, -5000);

} // namespace

// Stands in for the library's own, whose object file the linker then has no reason to take.
bool Platform::isCompositing()
{
    return s_isCompositing;
}

class FloatingCardTest : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        TestHome::install();
        TestScreens::install();
    }

private slots:
    void cleanup() { s_isCompositing = true; }

    void isAWindowWithoutFocus_data();
    void isAWindowWithoutFocus();
    void focusStaysWhereItIs();
    void paintsARoundedCard();
    void placeAt_data();
    void placeAt();
    void fitsItsContent();
    void isCutWithoutCompositor();
    void goesWithItsParent();
};

void FloatingCardTest::isAWindowWithoutFocus_data()
{
    QTest::addColumn<Qt::WindowType>("type");
    QTest::addColumn<bool>("refusesClicks");
    QTest::newRow("tip") << Qt::ToolTip << false;
    QTest::newRow("tool") << Qt::Tool << true;
}

void FloatingCardTest::isAWindowWithoutFocus()
{
    QFETCH(Qt::WindowType, type);
    QWidget parent;
    FloatingCard card(&parent, type, QStringLiteral("someCard"));
    QCOMPARE(card.parentWidget(), &parent);
    QVERIFY(card.isWindow());
    QVERIFY(!card.isVisible());
    QCOMPARE(card.windowType(), type);
    QVERIFY(card.windowFlags().testFlag(Qt::FramelessWindowHint));
    QVERIFY(card.windowFlags().testFlag(Qt::NoDropShadowWindowHint));
    QTEST(card.windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus), "refusesClicks");
    QVERIFY(card.testAttribute(Qt::WA_TranslucentBackground));
    QVERIFY(card.testAttribute(Qt::WA_ShowWithoutActivating));
    QCOMPARE(card.focusPolicy(), Qt::NoFocus);
    QCOMPARE(card.card()->objectName(), QStringLiteral("someCard"));
    QCOMPARE(card.layout()->contentsMargins(), QMargins(0, 0, 0, 0));
}

void FloatingCardTest::focusStaysWhereItIs()
{
    // The platform of these tests activates any tool window, whatever that asks for.
    QLineEdit field;
    field.show();
    QVERIFY(QTest::qWaitForWindowActive(&field));
    field.setFocus();
    FloatingCard card(&field, Qt::ToolTip, QStringLiteral("someCard"));
    card.resize(50, 50);
    card.show();
    QVERIFY(QTest::qWaitForWindowExposed(&card));
    card.raise();
    QCoreApplication::processEvents();
    QCOMPARE(QApplication::activeWindow(), &field);
    QCOMPARE(QApplication::focusWidget(), &field);
}

void FloatingCardTest::paintsARoundedCard()
{
    const ColorTokens c = Theme::colors();
    FloatingCard window(nullptr, Qt::ToolTip, QStringLiteral("someCard"));
    window.resize(100, 80);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QImage image = Pixels::imageOf(window);
    QCOMPARE(image.pixelColor(50, 40), QColor(c.surfaceContainerHighest));
    QCOMPARE(image.pixelColor(50, 1), QColor(c.surfaceContainerHighest));
    for (const QPoint& edge : {QPoint(50, 0), QPoint(50, 79), QPoint(0, 40), QPoint(99, 40)})
        QCOMPARE(image.pixelColor(edge), QColor(c.outline));
    // The nearest point of a circle of radius 16 is 4.7 pixels from the corner.
    for (const QPoint& corner : {QPoint(3, 2), QPoint(96, 2), QPoint(3, 77), QPoint(96, 77)})
        QCOMPARE(image.pixelColor(corner), QColor(Qt::white));
    QVERIFY(image.pixelColor(6, 6) == QColor(c.surfaceContainerHighest));
}

void FloatingCardTest::placeAt_data()
{
    const QRect primary = TestScreens::Primary;
    const QRect second = TestScreens::Second;
    QTest::addColumn<QPoint>("wanted");
    QTest::addColumn<QPoint>("screenPoint");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("expected");
    const QSize size(120, 60);
    QTest::newRow("fits") << QPoint(300, 200) << kInPrimary << size << QPoint(300, 200);
    QTest::newRow("left and above") << QPoint(99, 49) << kInPrimary << size << primary.topLeft();
    QTest::newRow("far off") << QPoint(-9000, -9000) << kInPrimary << size << primary.topLeft();
    const QPoint last(primary.right() - 120, primary.bottom() - 60);
    QTest::newRow("as far as it goes") << last << kInPrimary << size << last;
    QTest::newRow("right and below") << last + QPoint(1, 1) << kInPrimary << size << last;
    QTest::newRow("on the other screen")
        << QPoint(0, 900) << second.center() << size << QPoint(second.left(), second.bottom() - 60);
    QTest::newRow("on no screen") << QPoint(5000, 60) << kNowhere << size << QPoint(last.x(), 60);
    QTest::newRow("larger than the screen")
        << QPoint(300, 300) << kInPrimary << QSize(1200, 900) << primary.topLeft();
}

void FloatingCardTest::placeAt()
{
    QFETCH(QPoint, wanted);
    QFETCH(QPoint, screenPoint);
    QFETCH(QSize, size);
    QCOMPARE(QGuiApplication::primaryScreen()->availableGeometry(), TestScreens::Primary);
    FloatingCard window(nullptr, Qt::ToolTip, QStringLiteral("someCard"));
    window.resize(size);
    window.placeAt(wanted, screenPoint);
    QTEST(window.pos(), "expected");
    QCOMPARE(window.size(), size);
}

void FloatingCardTest::fitsItsContent()
{
    FloatingCard window(nullptr, Qt::ToolTip, QStringLiteral("someCard"));
    auto* box = new QVBoxLayout(window.card());
    box->setContentsMargins(5, 6, 7, 8);
    auto* content = new QWidget;
    box->addWidget(content);
    // One change after the other, while it is hidden and while it is shown.
    for (const bool isShown : {false, true}) {
        window.setVisible(isShown);
        for (const QSize& size : {QSize(200, 100), QSize(30, 20), QSize(90, 400)}) {
            content->setFixedSize(size);
            window.fitToContent();
            const QSize border(2, 2);
            QCOMPARE(window.size(), size + QSize(5 + 7, 6 + 8) + border);
        }
    }
}

void FloatingCardTest::isCutWithoutCompositor()
{
    s_isCompositing = false;
    FloatingCard window(nullptr, Qt::ToolTip, QStringLiteral("someCard"));
    window.resize(100, 80);
    QVERIFY(window.mask().isEmpty());
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCOMPARE(window.mask().boundingRect(), QRect(0, 0, 100, 80));
    QVERIFY(!window.mask().contains(QPoint(2, 2)));
    QVERIFY(window.mask().contains(QPoint(6, 6)));
    window.resize(200, 50);
    QTRY_COMPARE(window.mask().boundingRect(), QRect(0, 0, 200, 50));
}

void FloatingCardTest::goesWithItsParent()
{
    auto parent = std::make_unique<QWidget>();
    const QPointer<FloatingCard> window =
        new FloatingCard(parent.get(), Qt::ToolTip, QStringLiteral("someCard"));
    window->resize(50, 50);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window));
    parent.reset();
    QVERIFY(window.isNull());
    QCoreApplication::processEvents();
}

QTEST_MAIN(FloatingCardTest)
#include "tst_floatingcard.moc"
