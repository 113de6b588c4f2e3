// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FittingText.h"
#include "Localization.h"
#include "Pixels.h"
#include "TestHome.h"
#include "TestScreens.h"
#include "Theme.h"
#include "TourOverlay.h"
#include "UiDriver.h"

#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace
{

constexpr int kForceLight = 1;
constexpr int kForceDark = 2;
constexpr QRect kPlace(32, 32, 553, 552); // the overlay in its window
constexpr QRect kButton(40, 60, 32, 32);
const QStringList kSteps{"welcome", "section", "pill", "item", "type",
                         "name",    "file",    "save", "run",  "finish"};

} // namespace

class TourOverlayTest : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        TestHome::install();
        TestScreens::install();
    }

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void holePath_data();
    void holePath();
    void cardPlace_data();
    void cardPlace();
    void companionPlace_data();
    void companionPlace();

    void look();
    void cardNeverTakesTheKeyboard();
    void stepShowsItsTexts();
    void stepWithoutButton();
    void buttonAdvances();
    void backdrop_data();
    void backdrop();
    void pixels();
    void mouseGoesThroughTheHole();
    void maskFollowsTheTarget();
    void cardStandsWhereItBelongs();
    void cardFollowsTheWindow();
    void cardGoesWithTheWindow();
    void companion();
    void stepAfterACompanion();
    void dismissHidesAll();
    void deletingTakesTheCard();
    void textsFit_data();
    void textsFit();

private:
    void show(const QRect& target, const QString& next = QStringLiteral("Next"));
    QLabel* label(const char* name) const
    {
        return m_overlay->cardWindow()->findChild<QLabel*>(QLatin1String(name));
    }

    std::unique_ptr<QWidget> m_window;
    TourOverlay* m_overlay = nullptr;
};

void TourOverlayTest::initTestCase()
{
    FittingText::useProgramFont();
}

void TourOverlayTest::init()
{
    Theme::forceTheme = kForceDark;
    Tr::currentLang = Lang::En;
    m_window = std::make_unique<QWidget>(nullptr, Qt::FramelessWindowHint);
    m_window->setGeometry(100, 80, 617, 616);
    m_window->setStyleSheet(QStringLiteral("QWidget { font-family: %1; }").arg(FontTokens::Family));
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    m_overlay = new TourOverlay(m_window.get());
    m_overlay->setGeometry(kPlace);
}

void TourOverlayTest::cleanup()
{
    m_window.reset();
}

void TourOverlayTest::show(const QRect& target, const QString& next)
{
    m_overlay->showStep(target, QStringLiteral("Title"), QStringLiteral("Text"), 2, 10, next);
}

void TourOverlayTest::holePath_data()
{
    QTest::addColumn<QRect>("target");
    QTest::addColumn<QRectF>("bounds");
    QTest::addColumn<QPointF>("insideCorner"); // from the corner of the hole, just on its edge
    QTest::newRow("none") << QRect() << QRectF() << QPointF();
    // Radius 19 is half of the side, so the corner of a square of 38 lies 19 (1 - 0.7071) inside.
    QTest::newRow("round button") << QRect(40, 60, 32, 32) << QRectF(37, 57, 38, 38)
                                  << QPointF(5.565, 5.565);
    QTest::newRow("wide and low") << QRect(0, 0, 200, 28) << QRectF(-3, -3, 206, 34)
                                  << QPointF(4.979, 4.979);
    // Radius 23.
    QTest::newRow("large") << QRect(10, 10, 132, 132) << QRectF(7, 7, 138, 138)
                           << QPointF(6.737, 6.737);
}

void TourOverlayTest::holePath()
{
    QFETCH(QRect, target);
    QFETCH(QRectF, bounds);
    QFETCH(QPointF, insideCorner);
    show(target);
    const QPainterPath path = m_overlay->holePath();
    QCOMPARE(path.boundingRect(), bounds);
    if (target.isNull()) {
        QVERIFY(path.isEmpty());
        return;
    }
    const QPointF little(0.2, 0.2);
    QVERIFY(path.contains(bounds.topLeft() + insideCorner + little));
    QVERIFY(!path.contains(bounds.topLeft() + insideCorner - little));
}

void TourOverlayTest::cardPlace_data()
{
    QTest::addColumn<QRect>("target");
    QTest::addColumn<QSize>("card");
    QTest::addColumn<QPoint>("place");
    // In an overlay of 600 x 500; a third of that is 200.
    const QSize card(280, 120);
    QTest::newRow("no target: centred") << QRect() << card << QPoint(160, 190);
    QTest::newRow("on the left: at the right edge")
        << QRect(40, 60, 32, 32) << card << QPoint(308, 60);
    QTest::newRow("on the right: at the left edge")
        << QRect(500, 60, 32, 32) << card << QPoint(12, 60);
    QTest::newRow("in the middle: at the left edge")
        << QRect(290, 60, 21, 21) << card << QPoint(12, 60);
    QTest::newRow("just a third") << QRect(0, 60, 200, 32) << card << QPoint(308, 60);
    QTest::newRow("just wider than a third: below")
        << QRect(20, 60, 201, 32) << card << QPoint(20, 104);
    QTest::newRow("wide, just room below") << QRect(20, 300, 400, 56) << card << QPoint(20, 368);
    QTest::newRow("wide, a pixel too low: above")
        << QRect(20, 301, 400, 56) << card << QPoint(20, 169);
    QTest::newRow("wide, room neither below nor above: kept inside")
        << QRect(20, 50, 400, 400) << card << QPoint(20, 12);
    QTest::newRow("narrow, near the bottom: kept inside")
        << QRect(40, 460, 32, 32) << card << QPoint(308, 368);
    QTest::newRow("wide, far right: kept inside")
        << QRect(350, 60, 240, 32) << card << QPoint(308, 104);
    QTest::newRow("wide, beyond the left edge")
        << QRect(-30, 60, 400, 32) << card << QPoint(12, 104);
    QTest::newRow("larger than the overlay")
        << QRect(40, 60, 32, 32) << QSize(700, 600) << QPoint(12, 12);
}

void TourOverlayTest::cardPlace()
{
    QFETCH(QRect, target);
    QFETCH(QSize, card);
    QTEST(TourOverlay::cardPlace(QSize(600, 500), target, card), "place");
}

void TourOverlayTest::companionPlace_data()
{
    QTest::addColumn<QRect>("anchor");
    QTest::addColumn<QPoint>("place");
    // A card of 280 x 120 on a screen of 1000 x 700 that begins at (100, 50).
    QTest::newRow("to the right") << QRect(300, 200, 320, 400) << QPoint(632, 200);
    QTest::newRow("just room to the right") << QRect(488, 200, 320, 400) << QPoint(820, 200);
    QTest::newRow("a pixel too far: to the left") << QRect(489, 200, 320, 400) << QPoint(197, 200);
    QTest::newRow("at the left edge") << QRect(100, 200, 320, 400) << QPoint(432, 200);
    QTest::newRow("at the right edge") << QRect(780, 200, 320, 400) << QPoint(488, 200);
    QTest::newRow("as wide as the screen") << QRect(100, 200, 1000, 400) << QPoint(100, 200);
    QTest::newRow("above the screen") << QRect(300, 10, 320, 400) << QPoint(632, 50);
    QTest::newRow("near the bottom") << QRect(300, 700, 320, 400) << QPoint(632, 630);
}

void TourOverlayTest::companionPlace()
{
    QFETCH(QRect, anchor);
    QTEST(TourOverlay::companionPlace(QRect(100, 50, 1000, 700), anchor, QSize(280, 120)), "place");
}

void TourOverlayTest::look()
{
    show(kButton);
    QCOMPARE(m_overlay->objectName(), QStringLiteral("tourOverlay"));
    QCOMPARE(m_overlay->focusPolicy(), Qt::NoFocus);
    QVERIFY(m_overlay->testAttribute(Qt::WA_NoSystemBackground));
    const QWidget* window = m_overlay->cardWindow();
    QCOMPARE(window->width(), 280);
    const auto* card = window->findChild<QFrame*>("tourCard");
    QCOMPARE(card->size(), window->size());
    QCOMPARE(card->styleSheet(),
             QStringLiteral("QFrame#tourCard { background-color: %1; border: none; "
                            "border-radius: 16px; }")
                 .arg(Theme::colors().surfaceContainerHighest));
    QCOMPARE(card->layout()->contentsMargins(), QMargins(16, 12, 16, 12));
    QCOMPARE(card->layout()->spacing(), 8);
    QCOMPARE(m_overlay->nextButton()->height(), 32);
    QCOMPARE(m_overlay->nextButton()->cursor().shape(), Qt::PointingHandCursor);
    const ColorTokens c = Theme::colors();
    QCOMPARE(label("tourTitle")->styleSheet(),
             Theme::textOnCardStyle(c.onSurface, "14px", Theme::Weight::Bold));
    for (const char* name : {"tourText", "tourCounter"})
        QCOMPARE(label(name)->styleSheet(), Theme::textOnCardStyle(c.onSurfaceVariant, "13px"));
    QCOMPARE(m_overlay->nextButton()->styleSheet(), Theme::primaryBtnStyle(c));
    QVERIFY(label("tourTitle")->wordWrap());
    QVERIFY(label("tourText")->wordWrap());
}

void TourOverlayTest::cardNeverTakesTheKeyboard()
{
    // Whether that holds on a desktop is looked at there; this is what asks for it.
    const QWidget* card = m_overlay->cardWindow();
    QCOMPARE(card->parentWidget(), m_window.get());
    QCOMPARE(card->windowType(), Qt::Tool);
    QVERIFY(card->windowFlags().testFlag(Qt::FramelessWindowHint));
    QVERIFY(card->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
    QVERIFY(card->testAttribute(Qt::WA_ShowWithoutActivating));
    QVERIFY(card->testAttribute(Qt::WA_TranslucentBackground));
    QCOMPARE(m_overlay->nextButton()->focusPolicy(), Qt::NoFocus);
}

void TourOverlayTest::stepShowsItsTexts()
{
    m_overlay->showStep(kButton, QStringLiteral("A & B"), QStringLiteral("<b>text</b>"), 3, 10,
                        QStringLiteral("Begin"));
    QCOMPARE(label("tourTitle")->text(), QStringLiteral("A & B"));
    QCOMPARE(label("tourText")->text(), QStringLiteral("<b>text</b>"));
    QCOMPARE(label("tourText")->textFormat(), Qt::PlainText);
    QCOMPARE(label("tourCounter")->text(), QStringLiteral("3 of 10"));
    QCOMPARE(m_overlay->nextButton()->text(), QStringLiteral("Begin"));
    QVERIFY(m_overlay->nextButton()->isVisible());
    QVERIFY(m_overlay->isVisible());
    QVERIFY(m_overlay->cardWindow()->isVisible());
}

void TourOverlayTest::stepWithoutButton()
{
    show(kButton);
    const int height = m_overlay->cardWindow()->height();
    show(kButton, QString());
    QVERIFY(!m_overlay->nextButton()->isVisible());
    QVERIFY(m_overlay->cardWindow()->height() < height);
    show(kButton);
    QCOMPARE(m_overlay->cardWindow()->height(), height);
}

void TourOverlayTest::buttonAdvances()
{
    const QSignalSpy advanced(m_overlay, &TourOverlay::advanced);
    show(kButton);
    QTest::mouseClick(m_overlay->nextButton(), Qt::LeftButton);
    QCOMPARE(advanced.count(), 1);
}

void TourOverlayTest::backdrop_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QColor>("color");
    QTest::newRow("dark") << kForceDark << QColor(0, 0, 0, 150);
    QTest::newRow("light") << kForceLight << QColor(0, 0, 0, 110);
}

void TourOverlayTest::backdrop()
{
    QFETCH(int, mode);
    Theme::forceTheme = mode;
    QTEST(m_overlay->backdropColor(), "color");
}

void TourOverlayTest::pixels()
{
    show(kButton);
    QImage image(m_overlay->size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    m_overlay->render(&image, QPoint(), QRegion(m_overlay->rect()), QWidget::RenderFlags());
    const QColor dim(105, 105, 105); // 255 (1 - 150 / 255)
    const int middle = kButton.center().y();
    QCOMPARE(image.pixelColor(300, 300), dim);
    QCOMPARE(image.pixelColor(kButton.left() - 6, middle), dim);
    // The hole begins three pixels before the button; its line lies half on either side.
    const QColor line(Theme::colors().outline);
    const QColor half((line.red() + dim.red()) / 2, (line.green() + dim.green()) / 2,
                      (line.blue() + dim.blue()) / 2);
    const QColor shown = image.pixelColor(kButton.left() - 4, middle);
    QVERIFY2(Pixels::isNear(shown, half, 4), qPrintable(shown.name()));
    for (int x = kButton.left() - 2; x <= kButton.right() + 2; ++x)
        QCOMPARE(image.pixelColor(x, middle), QColor(Qt::white));
    QCOMPARE(image.pixelColor(kButton.right() + 6, middle), dim);
    // Rounded like the window's own card: nothing in the corner, all of it on the edge.
    // Its arc crosses the diagonal 7 pixels from either edge.
    QCOMPARE(image.pixelColor(5, 5), QColor(Qt::white));
    QCOMPARE(image.pixelColor(8, 8), dim);
    QCOMPARE(image.pixelColor(200, 0), dim);
}

void TourOverlayTest::mouseGoesThroughTheHole()
{
    QPushButton below(m_window.get());
    below.setGeometry(kButton.translated(kPlace.topLeft()));
    below.show();
    m_overlay->raise();
    show(kButton);
    const auto widgetAt = [this](const QPoint& place) {
        return m_window->childAt(kPlace.topLeft() + place);
    };
    QCOMPARE(widgetAt(kButton.center()), &below);
    QCOMPARE(widgetAt({300, 300}), m_overlay);
    QCOMPARE(widgetAt(kButton.topLeft() - QPoint(5, 0)), m_overlay);
    show(QRect());
    QCOMPARE(widgetAt(kButton.center()), m_overlay);
}

void TourOverlayTest::maskFollowsTheTarget()
{
    show(QRect());
    QCOMPARE(m_overlay->mask(), QRegion(m_overlay->rect()));
    show(kButton);
    QVERIFY(!m_overlay->mask().contains(kButton.center()));
    QVERIFY(m_overlay->mask().contains(kButton.topLeft() - QPoint(3, 3))); // a round hole's corner
    // It is open beyond the control, up to its ring.
    const QPoint middle = kButton.center();
    for (const QPoint& place :
         {QPoint(kButton.left() - 2, middle.y()), QPoint(kButton.right() + 2, middle.y()),
          QPoint(middle.x(), kButton.top() - 2), QPoint(middle.x(), kButton.bottom() + 2)})
        QVERIFY(!m_overlay->mask().contains(place));
    m_overlay->resize(400, 400);
    QCOMPARE(m_overlay->mask().boundingRect(), QRect(0, 0, 400, 400));
}

void TourOverlayTest::cardStandsWhereItBelongs()
{
    for (const QRect& target : {QRect(), kButton, QRect(20, 100, 500, 28)}) {
        show(target);
        const QPoint place = m_overlay->mapToGlobal(
            TourOverlay::cardPlace(m_overlay->size(), target, m_overlay->cardWindow()->size()));
        QCOMPARE(m_overlay->cardWindow()->pos(), place);
    }
    m_overlay->resize(250, 400);
    QCOMPARE(m_overlay->cardWindow()->width(), 250 - 24);
}

void TourOverlayTest::cardFollowsTheWindow()
{
    show(kButton);
    const QPoint before = m_overlay->cardWindow()->pos();
    m_window->move(m_window->pos() + QPoint(70, 30));
    QTRY_COMPARE(m_overlay->cardWindow()->pos(), before + QPoint(70, 30));
}

void TourOverlayTest::cardGoesWithTheWindow()
{
    show(kButton);
    m_window->hide();
    QVERIFY(!m_overlay->cardWindow()->isVisible());
    m_window->show();
    m_overlay->showCompanion(QRect(300, 200, 320, 400), QStringLiteral("T"), QStringLiteral("D"));
    m_window->hide();
    QVERIFY(!m_overlay->cardWindow()->isVisible());
}

void TourOverlayTest::companion()
{
    show(kButton);
    const QRect anchor(300, 200, 320, 400);
    m_overlay->showCompanion(anchor, QStringLiteral("Name it"), QStringLiteral("And so on"));
    QVERIFY(!m_overlay->isVisible());
    QVERIFY(m_overlay->cardWindow()->isVisible());
    QCOMPARE(label("tourTitle")->text(), QStringLiteral("Name it"));
    QCOMPARE(label("tourText")->text(), QStringLiteral("And so on"));
    QCOMPARE(label("tourCounter")->text(), QStringLiteral("2 of 10"));
    QVERIFY(!m_overlay->nextButton()->isVisible());
    QCOMPARE(m_overlay->cardWindow()->width(), 280);
    QCOMPARE(
        m_overlay->cardWindow()->pos(),
        TourOverlay::companionPlace(TestScreens::Primary, anchor, m_overlay->cardWindow()->size()));
    // The dialog may change the window's size; that is no affair of the card's.
    const QPoint place = m_overlay->cardWindow()->pos();
    m_overlay->resize(300, 300);
    QCOMPARE(m_overlay->cardWindow()->pos(), place);
}

void TourOverlayTest::stepAfterACompanion()
{
    m_overlay->showCompanion(QRect(300, 200, 320, 400), QStringLiteral("T"), QStringLiteral("D"));
    show(kButton);
    QVERIFY(m_overlay->isVisible());
    QCOMPARE(m_overlay->cardWindow()->pos(),
             m_overlay->mapToGlobal(TourOverlay::cardPlace(m_overlay->size(), kButton,
                                                           m_overlay->cardWindow()->size())));
    m_overlay->hide();
    QVERIFY(!m_overlay->cardWindow()->isVisible());
}

void TourOverlayTest::dismissHidesAll()
{
    show(kButton);
    m_overlay->dismiss();
    QVERIFY(!m_overlay->isVisible());
    QVERIFY(!m_overlay->cardWindow()->isVisible());
    m_overlay->showCompanion(QRect(300, 200, 320, 400), QStringLiteral("T"), QStringLiteral("D"));
    m_overlay->dismiss();
    QVERIFY(!m_overlay->cardWindow()->isVisible());
}

void TourOverlayTest::deletingTakesTheCard()
{
    const QPointer<QWidget> card = m_overlay->cardWindow();
    delete m_overlay;
    QVERIFY(!card);
    m_overlay = new TourOverlay(m_window.get());
    m_window.reset(); // in whatever order its children go
}

void TourOverlayTest::textsFit_data()
{
    QTest::addColumn<Lang>("lang");
    QTest::addColumn<QString>("step");
    for (const Lang lang : Tr::all()) {
        for (const QString& step : kSteps + QStringList{"section_dialog"})
            QTest::addRow("%s, %s", qPrintable(Tr::codeFor(lang)), qPrintable(step))
                << lang << step;
    }
}

void TourOverlayTest::textsFit()
{
    QFETCH(Lang, lang);
    QFETCH(QString, step);
    Tr::currentLang = lang;
    m_overlay->showStep(kButton, Tr::t("tour." + step + "_title"), Tr::t("tour." + step + "_desc"),
                        10, 10, Tr::t("tour.btn_next"));
    QVERIFY(QTest::qWaitForWindowExposed(m_overlay->cardWindow()));
    QCoreApplication::processEvents();
    for (const char* name : {"tourTitle", "tourText", "tourCounter"}) {
        const QLabel* shown = label(name);
        const QRect text = shown->fontMetrics().boundingRect(
            QRect(0, 0, shown->width(), 0), shown->wordWrap() ? Qt::TextWordWrap : 0,
            shown->text());
        QVERIFY2(text.height() <= shown->height() && text.width() <= shown->width(),
                 qPrintable(shown->text()));
    }
    const QPushButton* next = m_overlay->nextButton();
    QVERIFY(next->fontMetrics().horizontalAdvance(next->text()) <=
            FittingText::contentsOf(*next).width());
}

QTEST_MAIN(TourOverlayTest)
#include "tst_touroverlay.moc"
