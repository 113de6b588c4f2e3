// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FreshProcess.h"
#include "GlyphWidgets.h"
#include "IconHelper.h"
#include "Pictures.h"
#include "Pixels.h"
#include "TestHome.h"
#include "Theme.h"

#include <QApplication>
#include <QDir>
#include <QEnterEvent>
#include <QPainter>
#include <QPainterPath>
#include <QTest>

#include <cstdio>
#include <functional>
#include <memory>

using ButtonAction = std::function<void(GlyphButton&)>;
using LabelAction = std::function<void(GlyphLabel&)>;
Q_DECLARE_METATYPE(ButtonAction)
Q_DECLARE_METATYPE(LabelAction)

namespace
{

const QColor kInk(0xc0, 0x10, 0x40);
const QString kInkName = kInk.name();
const QString kActiveName = QStringLiteral("#1030d0");
const QString kFlatSheet =
    QStringLiteral("QPushButton { background: white; color: black; border: none; outline: 0; }");

QImage painted(const QSize& size, const std::function<void(QPainter&)>& draw)
{
    QImage image = Pixels::canvas(size);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    draw(painter);
    return image;
}

/// Styles a pill that isn't there, in the way that is named, and repeats the name if it survives.
int styleNoPill(const QStringList& arguments)
{
    const QString& style = arguments.first();
    if (style == "resting")
        PillStyle::applyResting(nullptr, Glyph::Add, false);
    else if (style == "lit")
        PillStyle::applyLit(nullptr, Glyph::Add);
    else
        PillStyle::applyFilterChip(nullptr, Glyph::Add, QStringLiteral("Text"));
    std::printf("%s\n", qPrintable(style));
    return 0;
}

void sendEnter(QWidget& widget)
{
    QEnterEvent event(QPointF(2, 2), QPointF(2, 2), widget.mapToGlobal(QPointF(2, 2)));
    QApplication::sendEvent(&widget, &event);
}

void sendLeave(QWidget& widget)
{
    QEvent event(QEvent::Leave);
    QApplication::sendEvent(&widget, &event);
}

/// A shown window with the widget under test and a marker, which shows when a round of painting is
/// over.
class Stage
{
public:
    explicit Stage(QWidget* actor)
    {
        actor->setParent(&m_window);
        actor->setGeometry(0, 0, 80, 40);
        m_marker = new QWidget(&m_window);
        m_marker->setGeometry(100, 50, 20, 20);
        m_window.setGeometry(200, 200, 140, 80); // away from the pointer, which rests at (0, 0)
        m_actorPaints = std::make_unique<PaintCounter>(actor);
        m_markerPaints = std::make_unique<PaintCounter>(m_marker);
        m_window.show();
    }

    bool waitUntilReady() { return QTest::qWaitForWindowActive(&m_window) && isPainted(); }

    /// True if the widget under test paints itself because of `act`.
    bool repaintsOn(const std::function<void()>& act)
    {
        if (!isPainted()) // what happened before does not count
            return false;
        const int before = m_actorPaints->count;
        act();
        return isPainted() && m_actorPaints->count > before;
    }

    void pointElsewhere() { QTest::mouseMove(m_marker); }

private:
    bool isPainted()
    {
        const int before = m_markerPaints->count;
        m_marker->update();
        return QTest::qWaitFor([this, before] { return m_markerPaints->count > before; });
    }

    QWidget m_window;
    QWidget* m_marker;
    std::unique_ptr<PaintCounter> m_actorPaints;
    std::unique_ptr<PaintCounter> m_markerPaints;
};

/// An opaque picture file, the left half red and the right half blue.
QString writePicture(const QString& name = QStringLiteral("picture.png"))
{
    QImage image(10, 4, QImage::Format_RGB32);
    image.fill(Qt::red);
    QPainter painter(&image);
    painter.fillRect(5, 0, 5, 4, Qt::blue);
    painter.end();
    QString file = QDir(TestHome::dataDir()).filePath(name);
    if (!image.save(file))
        qFatal("cannot write %s", qPrintable(file));
    return file;
}

void addModes()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("light") << 1;
    QTest::newRow("dark") << 2;
}

} // namespace

class GlyphWidgetsTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();

    void labelCentresItsGlyph_data();
    void labelCentresItsGlyph();
    void labelWithoutSomethingToShow_data();
    void labelWithoutSomethingToShow();
    void labelSizeAndFocus();
    void labelRepaintsOnlyOnChange_data();
    void labelRepaintsOnlyOnChange();

    void buttonWithoutColourIsAPushButton();
    void buttonCentresItsGlyphOverText_data();
    void buttonCentresItsGlyphOverText();
    void buttonInsetsAreDistancesToGlyphCentres();
    void buttonTrailingGlyphNeedsNoLeadingOne();
    void buttonActiveColour();
    void buttonFocusLightsTheGlyph();
    void buttonRepaintsWithThePointer();
    void clearGlyphKeepsTheTrailingOne();
    void buttonRepaintsOnlyOnChange_data();
    void buttonRepaintsOnlyOnChange();
    void buttonShowsAPictureInPlaceOfItsGlyph();
    void buttonPictureStates_data();
    void buttonPictureStates();
    void buttonIsPaintedAgainOnceItsPictureIsRead();

    void badgeShowsAGlyphOnACircle_data();
    void badgeShowsAGlyphOnACircle();
    void badgeGlyphGrowsWithTheBox();
    void badgeGlyphFollowsTheItem_data();
    void badgeGlyphFollowsTheItem();
    void badgeStretchesImages();
    void badgeOfAnUnreadableImageIsEmpty();
    void badgeKeepsThePainterState();
    void badgeWithoutPainterOrBox();
    void badgeWidgetCentresItsSquare_data();
    void badgeWidgetCentresItsSquare();
    void badgeIsPaintedAgainOnceItsPictureIsRead();
    void badgeRepaintsOnSetItem();

    void swatchIsAFixedFocusableCircle();
    void swatchDrawsItsColourAndHairline();
    void swatchOffersAPencil();
    void swatchRepaintsWithPointerAndFocus();
    void swatchSetColor();

    void checkCircleChecked();
    void checkCircleUnchecked();
    void checkCircleLeavesNoBrush();

    void pillResting_data();
    void pillResting();
    void pillLit_data();
    void pillLit();
    void pillLitPaints();
    void labelKeepsItsAmpersands();
    void filterChip_data();
    void filterChip();
    void filterChipShowsItsGlyphs();
    void filterChipShowsAmpersands();
    void filterChipMeasuresTheFontInForce();
    void pillStylesIgnoreNull_data();
    void pillStylesIgnoreNull();
};

void GlyphWidgetsTest::init()
{
    Theme::forceTheme = 1;
    Theme::seedColorHex = QStringLiteral("#0284c7");
}

void GlyphWidgetsTest::labelCentresItsGlyph_data()
{
    QTest::addColumn<uint>("glyph");
    QTest::addColumn<int>("px");
    QTest::addColumn<QSize>("size");
    QTest::newRow("magnifier") << Glyph::Search << 16 << QSize(16, 16);
    QTest::newRow("star") << Glyph::Star << 18 << QSize(24, 24);
    QTest::newRow("tall widget") << Glyph::Link << 20 << QSize(31, 90);
    QTest::newRow("dots") << Glyph::MoreVert << 40 << QSize(64, 64);
}

void GlyphWidgetsTest::labelCentresItsGlyph()
{
    QFETCH(const uint, glyph);
    QFETCH(const int, px);
    QFETCH(const QSize, size);
    GlyphLabel label;
    label.resize(size);
    label.setGlyph(glyph, px, kInkName);
    const QRect ink = Pixels::inkBox(Pixels::imageOf(label));
    QVERIFY(Pixels::isCentredOn(ink, QRectF(QPointF(), size).center()));
    QVERIFY(ink.height() > px / 3 && ink.height() <= px);
}

void GlyphWidgetsTest::labelWithoutSomethingToShow_data()
{
    QTest::addColumn<uint>("glyph");
    QTest::addColumn<int>("px");
    QTest::addColumn<QString>("color");
    QTest::newRow("no glyph") << 0U << 16 << kInkName;
    QTest::newRow("no size") << Glyph::Add << 0 << kInkName;
    QTest::newRow("negative size") << Glyph::Add << -3 << kInkName;
    QTest::newRow("no colour") << Glyph::Add << 16 << QString();
    QTest::newRow("surrogate") << 0xD800U << 16 << kInkName;
    QTest::newRow("no character") << 0xFFFFFFFFU << 16 << kInkName;
}

void GlyphWidgetsTest::labelWithoutSomethingToShow()
{
    QFETCH(const uint, glyph);
    QFETCH(const int, px);
    QFETCH(const QString, color);
    GlyphLabel label;
    label.resize(30, 30);
    QCOMPARE(Pixels::imageOf(label), Pixels::canvas({30, 30}));
    label.setGlyph(glyph, px, color);
    QCOMPARE(Pixels::imageOf(label), Pixels::canvas({30, 30}));
}

void GlyphWidgetsTest::labelSizeAndFocus()
{
    GlyphLabel label;
    QCOMPARE(label.sizeHint(), QSize(0, 0));
    QCOMPARE(label.focusPolicy(), Qt::NoFocus);
    label.setGlyph(Glyph::Add, 31, kInkName);
    QCOMPARE(label.sizeHint(), QSize(31, 31));
    label.resize(40, 40);
    QCOMPARE(Pixels::imageOf(label).pixelColor(20, 20), kInk);
    label.setGlyphColor(kActiveName);
    QCOMPARE(Pixels::imageOf(label).pixelColor(20, 20), QColor(kActiveName));
}

void GlyphWidgetsTest::labelRepaintsOnlyOnChange_data()
{
    QTest::addColumn<LabelAction>("act");
    QTest::addColumn<bool>("repaints");
    const auto row = [](const char* name, bool repaints, const LabelAction& act) {
        QTest::newRow(name) << act << repaints;
    };
    row("same glyph", false, [](GlyphLabel& l) { l.setGlyph(Glyph::Add, 20, kInkName); });
    row("same colour", false, [](GlyphLabel& l) { l.setGlyphColor(kInkName); });
    row("other glyph", true, [](GlyphLabel& l) { l.setGlyph(Glyph::Star, 20, kInkName); });
    row("other size", true, [](GlyphLabel& l) { l.setGlyph(Glyph::Add, 21, kInkName); });
    row("other colour", true, [](GlyphLabel& l) { l.setGlyph(Glyph::Add, 20, kActiveName); });
    row("colour alone", true, [](GlyphLabel& l) { l.setGlyphColor(kActiveName); });
}

void GlyphWidgetsTest::labelRepaintsOnlyOnChange()
{
    QFETCH(const LabelAction, act);
    auto* label = new GlyphLabel;
    label->setGlyph(Glyph::Add, 20, kInkName);
    Stage stage(label);
    QVERIFY(stage.waitUntilReady());
    QTEST(stage.repaintsOn([&] { act(*label); }), "repaints");
}

void GlyphWidgetsTest::buttonWithoutColourIsAPushButton()
{
    const QString text = QStringLiteral("Text");
    QPushButton plain(text);
    GlyphButton button(text);
    plain.resize(90, 32);
    button.resize(90, 32);
    button.setGlyph(Glyph::Add, 20, QString());
    button.setTrailingGlyph(Glyph::Close, 13);
    QCOMPARE(Pixels::imageOf(button), Pixels::imageOf(plain));
    button.setGlyph(0, 20, kInkName); // and with a colour, but without a glyph
    button.setTrailingGlyph(Glyph::Close, 0);
    QCOMPARE(Pixels::imageOf(button), Pixels::imageOf(plain));
    button.setTrailingGlyph(Glyph::Close, 13);
    QVERIFY(Pixels::imageOf(button) != Pixels::imageOf(plain));
}

void GlyphWidgetsTest::buttonCentresItsGlyphOverText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("inset");
    QTest::newRow("no text") << QString() << 0.0;
    QTest::newRow("text") << QStringLiteral("Some text") << 0.0;
    QTest::newRow("negative inset") << QString() << -5.0;
}

void GlyphWidgetsTest::buttonCentresItsGlyphOverText()
{
    QFETCH(const QString, text);
    QFETCH(const double, inset);
    GlyphButton button(text);
    button.setStyleSheet(kFlatSheet);
    button.resize(110, 36);
    button.setGlyphLeftInset(inset);
    button.setGlyph(Glyph::Add, 20, kInkName);
    QVERIFY(Pixels::isCentredOn(Pixels::boxOfColor(Pixels::imageOf(button), kInk, 60),
                                QPointF(55, 18)));
}

void GlyphWidgetsTest::buttonInsetsAreDistancesToGlyphCentres()
{
    GlyphButton button;
    button.setStyleSheet(kFlatSheet);
    button.resize(120, 36);
    button.setGlyph(Glyph::Add, 20, kInkName);
    button.setTrailingGlyph(Glyph::Close, 20);
    button.setGlyphLeftInset(22.0);
    button.setGlyphRightInset(19.5);
    const QImage image = Pixels::imageOf(button);
    QVERIFY(Pixels::isCentredOn(Pixels::inkBox(image.copy(0, 0, 60, 36)), QPointF(22, 18)));
    const QRect trailing = Pixels::inkBox(image.copy(60, 0, 60, 36)).translated(60, 0);
    QVERIFY(Pixels::isCentredOn(trailing, QPointF(120 - 19.5, 18)));
}

void GlyphWidgetsTest::buttonTrailingGlyphNeedsNoLeadingOne()
{
    GlyphButton button;
    button.setStyleSheet(kFlatSheet);
    button.resize(100, 30);
    button.setGlyphColor(kInkName);
    button.setTrailingGlyph(Glyph::Close, 16);
    button.setGlyphRightInset(20);
    QVERIFY(Pixels::isCentredOn(Pixels::inkBox(Pixels::imageOf(button)), QPointF(80, 15)));
}

void GlyphWidgetsTest::buttonActiveColour()
{
    GlyphButton button;
    button.setStyleSheet(kFlatSheet);
    button.resize(40, 40);
    button.setGlyph(Glyph::Add, 24, kInkName);
    const auto color = [&button] { return Pixels::imageOf(button).pixelColor(20, 20); };
    sendEnter(button);
    QCOMPARE(color(), kInk); // no active colour, no change
    button.setGlyphActiveColor(kActiveName);
    QCOMPARE(color(), QColor(kActiveName));
    sendLeave(button);
    QCOMPARE(color(), kInk);
}

void GlyphWidgetsTest::buttonFocusLightsTheGlyph()
{
    auto* button = new GlyphButton;
    button->setStyleSheet(kFlatSheet);
    button->setGlyph(Glyph::Add, 24, kInkName);
    button->setGlyphActiveColor(kActiveName);
    Stage stage(button);
    QVERIFY(stage.waitUntilReady());
    button->clearFocus();
    QCOMPARE(Pixels::imageOf(*button).pixelColor(40, 20), kInk);
    QVERIFY(stage.repaintsOn([&] { button->setFocus(); }));
    QVERIFY(button->hasFocus());
    QCOMPARE(Pixels::imageOf(*button).pixelColor(40, 20), QColor(kActiveName));
    button->clearFocus();
}

void GlyphWidgetsTest::buttonRepaintsWithThePointer()
{
    auto* button = new GlyphButton;
    button->setStyleSheet(kFlatSheet);
    button->setGlyph(Glyph::Add, 24, kInkName);
    button->setGlyphActiveColor(kActiveName);
    button->setFocusPolicy(Qt::NoFocus);
    Stage stage(button);
    QVERIFY(stage.waitUntilReady());
    QCOMPARE(Pixels::imageOf(*button).pixelColor(40, 20), kInk);
    QVERIFY(stage.repaintsOn([&] { QTest::mouseMove(button); }));
    QCOMPARE(Pixels::imageOf(*button).pixelColor(40, 20), QColor(kActiveName));
    QVERIFY(stage.repaintsOn([&] { stage.pointElsewhere(); }));
    QCOMPARE(Pixels::imageOf(*button).pixelColor(40, 20), kInk);
}

void GlyphWidgetsTest::clearGlyphKeepsTheTrailingOne()
{
    GlyphButton button;
    button.setStyleSheet(kFlatSheet);
    button.resize(100, 30);
    button.setGlyph(Glyph::Add, 16, kInkName);
    button.setGlyphLeftInset(20);
    button.setTrailingGlyph(Glyph::Close, 16);
    button.setGlyphRightInset(20);
    const QImage both = Pixels::imageOf(button);
    button.clearGlyph();
    QVERIFY(Pixels::isCentredOn(Pixels::inkBox(Pixels::imageOf(button)), QPointF(80, 15)));
    button.setGlyph(Glyph::Add, 16, kInkName);
    QCOMPARE(Pixels::imageOf(button), both);
}

void GlyphWidgetsTest::buttonRepaintsOnlyOnChange_data()
{
    QTest::addColumn<ButtonAction>("act");
    QTest::addColumn<bool>("repaints");
    const auto row = [](const char* name, bool repaints, const ButtonAction& act) {
        QTest::newRow(name) << act << repaints;
    };
    row("same glyph", false, [](GlyphButton& b) { b.setGlyph(Glyph::Add, 20, kInkName); });
    row("same colour", false, [](GlyphButton& b) { b.setGlyphColor(kInkName); });
    row("same active colour", false, [](GlyphButton& b) { b.setGlyphActiveColor(kActiveName); });
    row("same left inset", false, [](GlyphButton& b) { b.setGlyphLeftInset(0.1 + 0.2); });
    row("same trailing glyph", false, [](GlyphButton& b) { b.setTrailingGlyph(Glyph::Close, 9); });
    row("same right inset", false, [](GlyphButton& b) { b.setGlyphRightInset(19.5); });
    row("other glyph", true, [](GlyphButton& b) { b.setGlyph(Glyph::Star, 20, kInkName); });
    row("other size", true, [](GlyphButton& b) { b.setGlyph(Glyph::Add, 21, kInkName); });
    row("other colour", true, [](GlyphButton& b) { b.setGlyphColor(kActiveName); });
    row("other active colour", true, [](GlyphButton& b) { b.setGlyphActiveColor(kInkName); });
    row("other left inset", true, [](GlyphButton& b) { b.setGlyphLeftInset(0.4); });
    row("other trailing glyph", true, [](GlyphButton& b) { b.setTrailingGlyph(Glyph::Add, 9); });
    row("other trailing size", true, [](GlyphButton& b) { b.setTrailingGlyph(Glyph::Close, 8); });
    row("other right inset", true, [](GlyphButton& b) { b.setGlyphRightInset(20); });
    row("glyph taken away", true, [](GlyphButton& b) { b.clearGlyph(); });
}

void GlyphWidgetsTest::buttonRepaintsOnlyOnChange()
{
    QFETCH(const ButtonAction, act);
    auto* button = new GlyphButton;
    button->setGlyph(Glyph::Add, 20, kInkName);
    button->setGlyphActiveColor(kActiveName);
    button->setGlyphLeftInset(0.3);
    button->setTrailingGlyph(Glyph::Close, 9);
    button->setGlyphRightInset(19.5);
    Stage stage(button);
    QVERIFY(stage.waitUntilReady());
    QTEST(stage.repaintsOn([&] { act(*button); }), "repaints");
}

void GlyphWidgetsTest::buttonShowsAPictureInPlaceOfItsGlyph()
{
    const QString file = writePicture();
    GlyphButton button;
    button.setStyleSheet(kFlatSheet);
    button.resize(60, 40);
    button.setIconSize({20, 20});
    button.setGlyph(Glyph::Add, 20, kInkName);
    QCOMPARE(pictureOnceRead(file, {20, 20}).state, ItemImages::State::Ready);
    button.setPicture(file);
    const QImage image = Pixels::imageOf(button);
    // 10 by 4 pixels in a box of 20 by 20, in its own shape.
    QCOMPARE(Pixels::inkBox(image), QRect(20, 16, 20, 8));
    QCOMPARE(image.pixelColor(22, 20), QColor(Qt::red));
    QCOMPARE(image.pixelColor(37, 20), QColor(Qt::blue));
    button.setGlyphLeftInset(15);
    QCOMPARE(Pixels::inkBox(Pixels::imageOf(button)), QRect(5, 16, 20, 8));
    button.setPicture(QString());
    QVERIFY(Pixels::isCentredOn(Pixels::inkBox(Pixels::imageOf(button)), QPointF(15, 20)));
}

void GlyphWidgetsTest::buttonPictureStates_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("showsGlyph");
    const QDir dir(TestHome::dataDir());
    QTest::newRow("no such file") << dir.filePath("gone.png") << true;
    QTest::newRow("glyph token") << "glyph:e2c7" << true;
    QTest::newRow("no picture") << TestHome::writeDataFile("text.png", "text") << false;
    QTest::newRow("directory") << dir.path() << false;
}

void GlyphWidgetsTest::buttonPictureStates()
{
    QFETCH(const QString, path);
    QFETCH(const bool, showsGlyph);
    GlyphButton button;
    button.setStyleSheet(kFlatSheet);
    button.resize(40, 40);
    button.setIconSize({20, 20});
    button.setGlyph(Glyph::Add, 24, kInkName);
    button.setTrailingGlyph(Glyph::Close, 10);
    button.setGlyphRightInset(6);
    pictureOnceRead(path, {20, 20});
    button.setPicture(path);
    const QImage image = Pixels::imageOf(button);
    QCOMPARE(image.pixelColor(20, 20) == kInk, showsGlyph);
    QVERIFY(!Pixels::inkBox(image.copy(28, 0, 12, 40)).isEmpty()); // the trailing one stays
}

void GlyphWidgetsTest::buttonIsPaintedAgainOnceItsPictureIsRead()
{
    const QString file = writePicture(QStringLiteral("latebutton.png"));
    auto* button = new GlyphButton;
    button->setIconSize({20, 20});
    button->setPicture(file);
    const Stage stage(button);
    const PaintWatcher watcher(button, [&file] {
        return ItemImages::find(file, {20, 20}, 1.0).state == ItemImages::State::Ready;
    });
    QTRY_VERIFY(watcher.wasTrue());
    QVERIFY(!Pixels::boxOfColor(Pixels::imageOf(*button), Qt::red).isEmpty());
}

void GlyphWidgetsTest::badgeShowsAGlyphOnACircle_data()
{
    addModes();
}

void GlyphWidgetsTest::badgeShowsAGlyphOnACircle()
{
    QFETCH(const int, mode);
    Theme::forceTheme = mode;
    const ColorTokens tones = getItemTheme();
    // A path that leads nowhere counts as no choice.
    const QString path = QStringLiteral("/nowhere/x.png");
    pictureOnceRead(path, {44, 44}, 1.0, Qt::IgnoreAspectRatio);
    const QImage image = painted({44, 44}, [&path](QPainter& p) {
        GlyphBadge::paintInto(&p, QRectF(0, 0, 44, 44), path, QStringLiteral("Bulk"));
    });
    QCOMPARE(Pixels::inkBox(image), QRect(0, 0, 44, 44));
    QCOMPARE(image.pixelColor(22, 3), QColor(tones.container));
    QCOMPARE(image.pixelColor(2, 2), QColor(Qt::white)); // in the square, outside the circle
    const QRect glyph = Pixels::boxOfColor(image, QColor(tones.onContainer));
    QVERIFY(Pixels::isCentredOn(glyph, QPointF(22, 22)));
    QVERIFY(glyph.width() > 12 && glyph.width() <= 20);
}

void GlyphWidgetsTest::badgeGlyphGrowsWithTheBox()
{
    const QColor ink(getItemTheme().onContainer);
    QList<int> widths;
    for (const QSizeF& box : {QSizeF(44, 44), QSizeF(176, 176), QSizeF(176, 44)}) {
        const QImage image = painted({176, 176}, [box](QPainter& p) {
            GlyphBadge::paintInto(&p, QRectF(QPointF(), box), QString(), QStringLiteral("Bulk"));
        });
        widths << Pixels::boxOfColor(image, ink).width();
    }
    QVERIFY(qAbs(widths[1] - 4 * widths[0]) <= 8);
    QCOMPARE(widths[2], widths[0]); // the shorter side counts
}

void GlyphWidgetsTest::badgeGlyphFollowsTheItem_data()
{
    QTest::addColumn<QString>("iconPath");
    QTest::addColumn<QString>("type");
    QTest::addColumn<uint>("glyph");
    QTest::newRow("type") << ""
                          << "File" << Glyph::Description;
    QTest::newRow("token") << "glyph:f09a"
                           << "File" << Glyph::Star;
    QTest::newRow("broken token") << "glyph:zz"
                                  << "File" << Glyph::Description;
    QTest::newRow("token of a surrogate") << "glyph:d800"
                                          << "Snippet" << Glyph::TextSnippet;
    QTest::newRow("unknown type") << ""
                                  << "Document" << Glyph::Link;
    QTest::newRow("token in capitals") << "GLYPH:F09A"
                                       << "Bulk" << Glyph::FolderCopy;
}

void GlyphWidgetsTest::badgeGlyphFollowsTheItem()
{
    QFETCH(const QString, iconPath);
    QFETCH(const QString, type);
    QFETCH(const uint, glyph);
    const QRectF box(0, 0, 66, 66);
    pictureOnceRead(iconPath, {66, 66}, 1.0, Qt::IgnoreAspectRatio);
    const ColorTokens tones = getItemTheme();
    const QImage wanted = painted({66, 66}, [&](QPainter& p) {
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(tones.container));
        p.drawEllipse(box);
        IconHelper::drawGlyph(&p, box.center(), glyph, 30, QColor(tones.onContainer));
    });
    QCOMPARE(
        painted({66, 66}, [&](QPainter& p) { GlyphBadge::paintInto(&p, box, iconPath, type); }),
        wanted);
}

void GlyphWidgetsTest::badgeStretchesImages()
{
    const QString file = writePicture();
    pictureOnceRead(file, {40, 40}, 1.0, Qt::IgnoreAspectRatio);
    const QImage image = painted({60, 60}, [&file](QPainter& p) {
        GlyphBadge::paintInto(&p, QRectF(10.2, 10.4, 40, 40), file, QStringLiteral("URL"));
    });
    QCOMPARE(Pixels::inkBox(image), QRect(10, 10, 40, 40)); // the square's corners too: no clipping
    QCOMPARE(image.pixelColor(12, 12), QColor(Qt::red));
    QCOMPARE(image.pixelColor(12, 48), QColor(Qt::red));
    QCOMPARE(image.pixelColor(47, 12), QColor(Qt::blue));
}

void GlyphWidgetsTest::badgeOfAnUnreadableImageIsEmpty()
{
    const QString file = TestHome::writeDataFile(QStringLiteral("broken.png"), "not a picture");
    const QRectF box(0, 0, 44, 44);
    for (const QString& path : {file, TestHome::dataDir()}) {
        pictureOnceRead(path, {44, 44}, 1.0, Qt::IgnoreAspectRatio);
        QCOMPARE(painted({44, 44},
                         [&](QPainter& p) {
                             GlyphBadge::paintInto(&p, box, path, QStringLiteral("URL"));
                         }),
                 Pixels::canvas({44, 44}));
    }
}

void GlyphWidgetsTest::badgeKeepsThePainterState()
{
    const QString file = writePicture();
    for (const QString& path : {QString(), file}) {
        pictureOnceRead(path, {44, 44}, 1.0, Qt::IgnoreAspectRatio);
        QImage image = Pixels::canvas({44, 44});
        QPainter painter(&image);
        const QPen pen(Qt::darkYellow, 3);
        const QBrush brush(Qt::cyan);
        painter.setPen(pen);
        painter.setBrush(brush);
        const QFont font = painter.font();
        GlyphBadge::paintInto(&painter, QRectF(0, 0, 44, 44), path, QStringLiteral("URL"));
        QCOMPARE(painter.pen(), pen);
        QCOMPARE(painter.brush(), brush);
        QCOMPARE(painter.font(), font);
        QVERIFY(!painter.testRenderHint(QPainter::Antialiasing));
        QVERIFY(!painter.testRenderHint(QPainter::SmoothPixmapTransform));
    }
}

void GlyphWidgetsTest::badgeWithoutPainterOrBox()
{
    GlyphBadge::paintInto(nullptr, QRectF(0, 0, 44, 44), QString(), QStringLiteral("URL"));
    const QImage image = painted({44, 44}, [](QPainter& p) {
        GlyphBadge::paintInto(&p, QRectF(), QString(), QStringLiteral("URL"));
        GlyphBadge::paintInto(&p, QRectF(5, 5, 0, 30), QString(), QStringLiteral("URL"));
        GlyphBadge::paintInto(&p, QRectF(5, 5, 30, -1), QString(), QStringLiteral("URL"));
    });
    QCOMPARE(image, Pixels::canvas({44, 44}));
}

void GlyphWidgetsTest::badgeWidgetCentresItsSquare_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QRect>("square");
    QTest::newRow("square") << QSize(38, 38) << QRect(0, 0, 38, 38);
    QTest::newRow("wide") << QSize(100, 40) << QRect(30, 0, 40, 40);
    QTest::newRow("tall") << QSize(40, 100) << QRect(0, 30, 40, 40);
}

void GlyphWidgetsTest::badgeWidgetCentresItsSquare()
{
    QFETCH(const QSize, size);
    GlyphBadge badge;
    QCOMPARE(badge.focusPolicy(), Qt::NoFocus);
    badge.resize(size);
    badge.setItem(QString(), QStringLiteral("File"));
    QTEST(Pixels::inkBox(Pixels::imageOf(badge)), "square");
}

void GlyphWidgetsTest::badgeIsPaintedAgainOnceItsPictureIsRead()
{
    const QString file = writePicture(QStringLiteral("late.png"));
    auto* badge = new GlyphBadge;
    badge->setItem(file, QStringLiteral("URL"));
    const Stage stage(badge);
    const PaintWatcher watcher(badge, [&file, badge] {
        const int side = badge->height();
        return ItemImages::find(file, {side, side}, 1.0, Qt::IgnoreAspectRatio).state ==
               ItemImages::State::Ready;
    });
    QTRY_VERIFY(watcher.wasTrue());
    QVERIFY(!Pixels::boxOfColor(Pixels::imageOf(*badge), Qt::red).isEmpty());
}

void GlyphWidgetsTest::badgeRepaintsOnSetItem()
{
    auto* badge = new GlyphBadge;
    Stage stage(badge);
    QVERIFY(stage.waitUntilReady());
    const QImage before = Pixels::imageOf(*badge);
    QVERIFY(stage.repaintsOn([&] { badge->setItem({}, QStringLiteral("Bulk")); }));
    QVERIFY(Pixels::imageOf(*badge) != before);
    // A file may have come into being behind the same path.
    QVERIFY(stage.repaintsOn([&] { badge->setItem({}, QStringLiteral("Bulk")); }));
}

void GlyphWidgetsTest::swatchIsAFixedFocusableCircle()
{
    const AccentSwatchButton swatch(kInk, Qt::black, nullptr);
    QCOMPARE(AccentSwatchButton::Size, 36);
    QCOMPARE(swatch.minimumSize(), QSize(36, 36));
    QCOMPARE(swatch.maximumSize(), QSize(36, 36));
    QCOMPARE(swatch.cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(swatch.focusPolicy(), Qt::StrongFocus);
}

void GlyphWidgetsTest::swatchDrawsItsColourAndHairline()
{
    AccentSwatchButton swatch(kInk, Qt::black, nullptr);
    const QImage image = Pixels::imageOf(swatch);
    QCOMPARE(Pixels::inkBox(image), QRect(0, 0, 36, 36));
    for (const QPoint& inside : {QPoint(18, 18), QPoint(18, 3), QPoint(33, 18)})
        QCOMPARE(image.pixelColor(inside), kInk);
    // The hairline is one pixel wide and lies inside the widget.
    for (const QPoint& edge : {QPoint(18, 0), QPoint(0, 18), QPoint(35, 18), QPoint(18, 35)})
        QVERIFY(Pixels::isNear(image.pixelColor(edge), Qt::black, 40));
    QCOMPARE(image.pixelColor(3, 3), QColor(Qt::white));
}

void GlyphWidgetsTest::swatchOffersAPencil()
{
    AccentSwatchButton swatch(QColor(200, 100, 40), QColor(200, 100, 40), nullptr);
    const QImage resting = Pixels::imageOf(swatch);
    sendEnter(swatch);
    const QImage lit = Pixels::imageOf(swatch);
    const double rest = 1.0 - 140 / 255.0;
    QVERIFY(Pixels::isNear(lit.pixelColor(18, 3),
                           QColor(qRound(200 * rest), qRound(100 * rest), qRound(40 * rest)), 2));
    QCOMPARE(lit.pixelColor(2, 2), resting.pixelColor(2, 2)); // the veil keeps to the circle
    const QRect pencil = Pixels::boxOfColor(lit.copy(6, 6, 24, 24), Qt::white).translated(6, 6);
    QVERIFY(Pixels::isCentredOn(pencil, QPointF(18, 18)));
    QImage expected = resting;
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath circle;
    circle.addEllipse(QRectF(0.5, 0.5, 35, 35));
    painter.setClipPath(circle);
    painter.fillRect(expected.rect(), QColor(0, 0, 0, 140));
    painter.setClipping(false);
    IconHelper::drawGlyph(&painter, QPointF(18, 18), 0xF097, 16, Qt::white);
    painter.end();
    QCOMPARE(lit, expected);
    sendLeave(swatch);
    QCOMPARE(Pixels::imageOf(swatch), resting);
}

void GlyphWidgetsTest::swatchRepaintsWithPointerAndFocus()
{
    auto* swatch = new AccentSwatchButton(kInk, Qt::black, nullptr);
    Stage stage(swatch);
    QVERIFY(stage.waitUntilReady());
    swatch->clearFocus();
    const QImage resting = Pixels::imageOf(*swatch);
    QVERIFY(stage.repaintsOn([&] { sendEnter(*swatch); }));
    const QImage lit = Pixels::imageOf(*swatch);
    QVERIFY(lit != resting);
    QVERIFY(stage.repaintsOn([&] { sendLeave(*swatch); }));
    QVERIFY(stage.repaintsOn([&] { swatch->setFocus(); }));
    QCOMPARE(Pixels::imageOf(*swatch), lit);
    QVERIFY(stage.repaintsOn([&] { swatch->clearFocus(); }));
    QCOMPARE(Pixels::imageOf(*swatch), resting);
}

void GlyphWidgetsTest::swatchSetColor()
{
    auto* swatch = new AccentSwatchButton(kInk, Qt::black, nullptr);
    Stage stage(swatch);
    QVERIFY(stage.waitUntilReady());
    swatch->clearFocus();
    QVERIFY(stage.repaintsOn([&] { swatch->setColor(QColor(kActiveName)); }));
    QCOMPARE(Pixels::imageOf(*swatch).pixelColor(18, 18), QColor(kActiveName));
    QVERIFY(!stage.repaintsOn([&] { swatch->setColor(QColor(kActiveName)); }));
}

void GlyphWidgetsTest::checkCircleChecked()
{
    const QImage image = painted({40, 40}, [](QPainter& p) {
        CheckCircle::draw(&p, {20, 20}, true, Qt::green, Qt::black, Qt::red);
    });
    QCOMPARE(Pixels::inkBox(image), QRect(12, 12, 16, 16)); // radius 8
    QCOMPARE(image.pixelColor(20, 13), QColor(Qt::black));
    const QRect tick = Pixels::boxOfColor(image, Qt::red, 120);
    QVERIFY(Pixels::isCentredOn(tick, QPointF(20, 20)));
    QVERIFY(Pixels::boxOfColor(image, Qt::green).isEmpty());
    QCOMPARE(image, painted({40, 40}, [](QPainter& p) {
                 p.setPen(Qt::NoPen);
                 p.setBrush(Qt::black);
                 p.drawEllipse(QPointF(20, 20), 8, 8);
                 IconHelper::drawGlyph(&p, {20, 20}, 0xE5CA, 12, Qt::red);
             }));
}

void GlyphWidgetsTest::checkCircleUnchecked()
{
    const QImage image = painted({40, 40}, [](QPainter& p) {
        p.setBrush(Qt::yellow);
        CheckCircle::draw(&p, {20, 20}, false, Qt::black, Qt::red, Qt::red);
    });
    QCOMPARE(Pixels::inkBox(image), QRect(11, 11, 18, 18)); // radius 8 and half of the ring's 1.5
    QCOMPARE(image.pixelColor(20, 20), QColor(Qt::white));  // empty inside
    QVERIFY(image.pixelColor(20, 12).lightness() < 70);     // the ring
    QCOMPARE(image.pixelColor(20, 14), QColor(Qt::white));
    QCOMPARE(image, painted({40, 40}, [](QPainter& p) {
                 p.setPen(QPen(Qt::black, 1.5));
                 p.drawEllipse(QPointF(20, 20), 8, 8);
             }));
}

void GlyphWidgetsTest::checkCircleLeavesNoBrush()
{
    CheckCircle::draw(nullptr, {20, 20}, true, Qt::green, Qt::black, Qt::red);
    for (const bool checked : {false, true}) {
        QImage image = Pixels::canvas({40, 40});
        QPainter painter(&image);
        painter.setBrush(Qt::yellow);
        CheckCircle::draw(&painter, {20, 20}, checked, Qt::green, Qt::black, Qt::red);
        QCOMPARE(painter.brush().style(), Qt::NoBrush);
    }
}

void GlyphWidgetsTest::pillResting_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("dim");
    QTest::newRow("light") << 1 << false;
    QTest::newRow("light, dim") << 1 << true;
    QTest::newRow("dark") << 2 << false;
    QTest::newRow("dark, dim") << 2 << true;
}

void GlyphWidgetsTest::pillResting()
{
    QFETCH(const int, mode);
    QFETCH(const bool, dim);
    Theme::forceTheme = mode;
    const ColorTokens c = Theme::colors();
    GlyphButton pill;
    pill.resize(120, 28);
    PillStyle::applyResting(&pill, Glyph::Add, dim);

    const QString faded = QStringLiteral("#61") + c.onSurfaceVariant.mid(1); // 0.38 of 255
    const QString text = dim ? faded : c.onSurfaceVariant;
    QCOMPARE(pill.styleSheet(), "QPushButton { background: " + Theme::catTrackBg() +
                                    "; color: " + text +
                                    "; border: none; border-radius: 14px; padding-left: 31px; "
                                    "padding-right: 12px; }QPushButton:hover { background: " +
                                    c.surfaceVariant + "; color: " + c.onSurface + "; }");

    GlyphButton wanted;
    wanted.resize(120, 28);
    wanted.setStyleSheet(pill.styleSheet());
    wanted.setGlyphLeftInset(19.5);
    wanted.setGlyph(Glyph::Add, 13, dim ? faded : c.onSurface);
    QCOMPARE(Pixels::imageOf(pill), Pixels::imageOf(wanted));
}

void GlyphWidgetsTest::pillLit_data()
{
    addModes();
}

void GlyphWidgetsTest::pillLit()
{
    QFETCH(const int, mode);
    Theme::forceTheme = mode;
    const ColorTokens tones = getItemTheme();
    GlyphButton pill;
    PillStyle::applyLit(&pill, Glyph::Add);
    QCOMPARE(pill.styleSheet(), "QPushButton { background: " + tones.key +
                                    "; color: " + tones.onKey +
                                    "; border: none; border-radius: 14px; padding-left: 31px; "
                                    "padding-right: 12px; }");
}

void GlyphWidgetsTest::pillLitPaints()
{
    const ColorTokens tones = getItemTheme();
    GlyphButton pill;
    pill.resize(120, 28);
    PillStyle::applyLit(&pill, Glyph::Add);
    const QImage image = Pixels::imageOf(pill);
    QCOMPARE(image.pixelColor(60, 14), QColor(tones.key));
    QCOMPARE(image.pixelColor(1, 1), QColor(Qt::white)); // rounded
    const QRect ink = Pixels::boxWhere(image.copy(8, 4, 30, 20), [&tones](const QColor& color) {
        return color != QColor(tones.key);
    });
    QVERIFY(Pixels::isCentredOn(ink.translated(8, 4), QPointF(19.5, 14)));
    QVERIFY(ink.width() > 6 && ink.width() <= 13);
    QVERIFY(!Pixels::boxOfColor(image, QColor(tones.onKey), 40).isEmpty());
}

void GlyphWidgetsTest::labelKeepsItsAmpersands()
{
    GlyphButton button;
    const QString name = QStringLiteral("Research&Development of everything");
    button.setText(name);
    QVERIFY(!button.shortcut().isEmpty()); // what a label must not have
    const int narrow = button.sizeHint().width();
    button.setLabel(name);
    QVERIFY(button.shortcut().isEmpty());
    const int ampersand = button.fontMetrics().horizontalAdvance(QLatin1Char('&'));
    QVERIFY(button.sizeHint().width() >= narrow + ampersand - 1);
}

void GlyphWidgetsTest::filterChip_data()
{
    addModes();
}

void GlyphWidgetsTest::filterChip()
{
    QFETCH(const int, mode);
    Theme::forceTheme = mode;
    const ColorTokens c = Theme::colors();
    const QString bg = c.primaryContainer;
    const QString ink = c.onPrimaryContainer;
    const QString label = QStringLiteral("Documents");
    GlyphButton chip;
    PillStyle::applyFilterChip(&chip, Glyph::Folder, label);
    QCOMPARE(chip.text(), label);
    QCOMPARE(chip.styleSheet(), "QPushButton { background: " + bg + "; color: " + ink +
                                    "; border: none; border-radius: 14px; padding-left: 31px; "
                                    "padding-right: 31px; }QPushButton:hover { background: " +
                                    Theme::stateLayerOn(bg, ink, 0.08) +
                                    "; }QPushButton:pressed { background: " +
                                    Theme::stateLayerOn(bg, ink, 0.1) + "; }");
    const QSize size(chip.fontMetrics().horizontalAdvance(label) + 64, 28);
    QCOMPARE(chip.minimumSize(), size);
    QCOMPARE(chip.maximumSize(), size);
}

void GlyphWidgetsTest::filterChipShowsItsGlyphs()
{
    const ColorTokens c = Theme::colors();
    GlyphButton chip;
    PillStyle::applyFilterChip(&chip, Glyph::Add, QString());
    QCOMPARE(chip.size(), QSize(64, 28));

    GlyphButton wanted;
    wanted.setFixedSize(64, 28);
    wanted.setStyleSheet(chip.styleSheet());
    wanted.setGlyphLeftInset(19.5);
    wanted.setGlyphRightInset(19.5);
    wanted.setGlyph(0xE145, 13, c.onPrimaryContainer);
    wanted.setTrailingGlyph(0xE5CD, 13);
    QCOMPARE(Pixels::imageOf(chip), Pixels::imageOf(wanted));
}

void GlyphWidgetsTest::filterChipShowsAmpersands()
{
    const QString label = QStringLiteral("R&D");
    GlyphButton chip;
    PillStyle::applyFilterChip(&chip, Glyph::Folder, label);
    QCOMPARE(chip.text(), QStringLiteral("R&&D")); // the push button's way to write one "&"
    QVERIFY(chip.shortcut().isEmpty());
    QCOMPARE(chip.width(), chip.fontMetrics().horizontalAdvance(label) + 64);
}

void GlyphWidgetsTest::filterChipMeasuresTheFontInForce()
{
    QWidget window;
    window.setStyleSheet(QStringLiteral("QWidget { font-size: 30px; }"));
    const QString label = QStringLiteral("Documents");
    auto* chip = new GlyphButton(&window);
    PillStyle::applyFilterChip(chip, Glyph::Folder, label);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCOMPARE(chip->font().pixelSize(), 30);
    QCOMPARE(chip->width(), QFontMetrics(chip->font()).horizontalAdvance(label) + 64);
}

void GlyphWidgetsTest::pillStylesIgnoreNull_data()
{
    QTest::addColumn<QString>("style");
    for (const char* style : {"resting", "lit", "filter chip"})
        QTest::newRow(style) << style;
}

void GlyphWidgetsTest::pillStylesIgnoreNull()
{
    QFETCH(QString, style);
    QCOMPARE(FreshProcess::linesOf("style no pill", {style}), QStringList(style)); // no crash
}

int main(int argc, char** argv)
{
    return FreshProcess::main<GlyphWidgetsTest>(argc, argv, {{"style no pill", styleNoPill}});
}

#include "tst_glyphwidgets.moc"
