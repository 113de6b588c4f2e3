// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Profile.h"
#include "Program.h"
#include "Theme.h"

#include <QtTest>

/// What stands on the screen, pixel by pixel where the design has numbers, and as pictures to look
/// at in every theme and language.
class E2eLooks : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void spotlight_data();
    void spotlight();
    void scrollBarShowsUnderThePointer();
    void messageBox_data();
    void messageBox();
    void homeWindow_data();
    void homeWindow();
    void withoutCompositorTheCardIsCutOut();

private:
    struct Pill
    {
        QPoint corner;
        QColor fill;
        QColor around;
        QColor glyph;
    };

    void checkStrip(const QImage& picture) const;
    void checkGlyph(const QImage& picture, const QPoint& center, int reach) const;
    void checkPill(const QImage& picture, const Pill& pill) const;
    void checkSelectedRow(const QImage& picture) const;
    void checkMenu(const QImage& picture) const;

    std::unique_ptr<Desktop> m_desktop;
};

namespace
{

constexpr QPoint kCard = Program::SpotlightCard;
constexpr int kCardWidth = 520;
constexpr int kStripHeight = 80;

QColor pixel(const QImage& picture, const QPoint& position)
{
    return picture.pixelColor(position);
}

/// The middle of all pixels in `area` that are nearer to `ink` than to `paper`.
QPointF middleOfInk(const QImage& picture, const QRect& area, const QColor& ink,
                    const QColor& paper)
{
    const auto distance = [](const QColor& a, const QColor& b) {
        return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) +
               std::abs(a.blue() - b.blue());
    };
    QRect box;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            const QColor color = picture.pixelColor(x, y);
            if (distance(color, ink) < distance(color, paper))
                box |= QRect(x, y, 1, 1);
        }
    }
    return QRectF(box).center();
}

bool isNear(const QPointF& a, const QPointF& b, qreal tolerance)
{
    return std::abs(a.x() - b.x()) <= tolerance && std::abs(a.y() - b.y()) <= tolerance;
}

} // namespace

void E2eLooks::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
}

void E2eLooks::spotlight_data()
{
    QTest::addColumn<int>("theme");
    QTest::addColumn<QString>("language");
    for (const char* language : {"en", "id", "es", "ja"}) {
        QTest::addRow("light-%s", language) << 1 << QString::fromLatin1(language);
        QTest::addRow("dark-%s", language) << 2 << QString::fromLatin1(language);
    }
}

void E2eLooks::spotlight()
{
    QFETCH(int, theme);
    QFETCH(QString, language);
    const QString name = QStringLiteral("spotlight-") + QLatin1String(QTest::currentDataTag());
    Theme::forceTheme = theme; // for the colours that are expected
    Program program(*m_desktop);
    program.setSetting(QStringLiteral("Theme/ForceTheme"), theme);
    program.setSetting(QStringLiteral("Language/Code"), language);
    program.writeData(QStringLiteral("data.json"), Profile::document(Profile::examples()));
    program.startAndSettle();

    program.openSpotlight();
    const QImage empty = program.settledScreenshot();
    Program::keep(empty, name + QStringLiteral("-empty"));
    checkStrip(empty);
    const ColorTokens c = Theme::colors();
    checkPill(empty, {kCard + QPoint(18 + 8, 18 + 8), QColor(Theme::catTrackBg()),
                      QColor(Theme::boxBg()), QColor(c.onSurface)});

    program.type(QStringLiteral("team"));
    const QImage rows = program.settledScreenshot();
    Program::keep(rows, name + QStringLiteral("-rows"));
    checkSelectedRow(rows);

    program.key(QStringLiteral("Escape"));
    program.waitUntilSpotlightIsGone();
    program.setSetting(QStringLiteral("Spotlight/DefaultScope"),
                       QStringList{QStringLiteral("Bulk"), QStringLiteral("Application"),
                                   QStringLiteral("URL"), QStringLiteral("Folder"),
                                   QStringLiteral("Snippet")});
    program.openSpotlight();
    program.type(QStringLiteral("team"));
    const QImage chips = program.settledScreenshot();
    Program::keep(chips, name + QStringLiteral("-chips"));
    // The first chip stands below the box, 18 pixels away.
    checkPill(chips, {kCard + QPoint(18 + 8, 18 + 44 + 18), QColor(c.primaryContainer),
                      QColor(Theme::shellBg()), QColor(c.onPrimaryContainer)});

    program.key(QStringLiteral("F4"));
    program.key(QStringLiteral("Down"));
    const QImage menu = program.settledScreenshot();
    Program::keep(menu, name + QStringLiteral("-menu"));
    checkMenu(menu);
}

void E2eLooks::checkPill(const QImage& picture, const Pill& pill) const
{
    // 28 high, round at its ends.
    QCOMPARE(pixel(picture, pill.corner + QPoint(40, -1)), pill.around);
    QCOMPARE(pixel(picture, pill.corner + QPoint(40, 0)), pill.fill);
    QCOMPARE(pixel(picture, pill.corner + QPoint(40, 27)), pill.fill);
    QCOMPARE(pixel(picture, pill.corner + QPoint(40, 28)), pill.around);
    QCOMPARE(pixel(picture, pill.corner + QPoint(6, 6)), pill.fill);
    QCOMPARE(pixel(picture, pill.corner + QPoint(1, 1)), pill.around);
    const QPointF ink = middleOfInk(picture, QRect(pill.corner + QPoint(12, 6), QSize(15, 16)),
                                    pill.glyph, pill.fill);
    QVERIFY2(isNear(ink, QPointF(pill.corner) + QPointF(19.5, 14), 1.0),
             qPrintable(QStringLiteral("%1, %2").arg(ink.x()).arg(ink.y())));
}

void E2eLooks::checkMenu(const QImage& picture) const
{
    const ColorTokens c = Theme::colors();
    const QColor paper(c.surfaceContainerHighest);
    // Four pixels below the button.
    const QPoint corner = kCard + QPoint(18 + 8, 18 + 8 + 28 + 4);
    QCOMPARE(pixel(picture, corner + QPoint(3, 60)), paper);
    QVERIFY(pixel(picture, corner + QPoint(2, 2)) != paper); // radius 16
    QCOMPARE(pixel(picture, corner + QPoint(6, 6)), paper);
    // The first row is the active one: 6 pixels of padding, radius 10.
    const QPoint row = corner + QPoint(6, 6);
    QCOMPARE(pixel(picture, row + QPoint(20, 1)), QColor(c.primaryContainer));
    QCOMPARE(pixel(picture, row + QPoint(1, 1)), paper);
    // Its check circle, filled: 25 from the left, radius 8.
    QCOMPARE(pixel(picture, row + QPoint(25 - 7, 18)), QColor(c.primary));
    QCOMPARE(pixel(picture, row + QPoint(25 + 6, 18)), QColor(c.primary));
    QCOMPARE(pixel(picture, row + QPoint(25 + 9, 18)), QColor(c.primaryContainer));
}

/// That of a list without a sheet of its own, which has it from the application's.
void E2eLooks::scrollBarShowsUnderThePointer()
{
    Theme::forceTheme = 1;
    Program program(*m_desktop);
    program.setSetting(QStringLiteral("Theme/ForceTheme"), 1);
    QVector<LauncherElement> items;
    for (int i = 0; i < 20; ++i)
        items << Profile::item(QStringLiteral("row %1").arg(i), QStringLiteral("Snippet"),
                               QStringLiteral("text"));
    program.writeData(QStringLiteral("data.json"), Profile::document(items));
    program.startAndSettle();
    program.openSpotlight();
    program.type(QStringLiteral("row"));
    const QColor panel(Theme::panelBg());
    const QPoint handle = kCard + QPoint(kCardWidth - 6 - 3, kStripHeight + 4 + 20);
    QCOMPARE(pixel(program.settledScreenshot(), handle), panel);
    m_desktop->xdotool(
        {QStringLiteral("mousemove"), QString::number(handle.x()), QString::number(handle.y())});
    const QImage picture = program.settledScreenshot();
    Program::keep(picture, QStringLiteral("spotlight-scroll-bar"));
    const auto over = [](int channel) { return qRound(0.6 * 128 + 0.4 * channel); };
    const QColor shown = pixel(picture, handle);
    for (const auto& [got, paper] :
         {std::pair(shown.red(), panel.red()), std::pair(shown.green(), panel.green()),
          std::pair(shown.blue(), panel.blue())})
        QVERIFY2(std::abs(got - over(paper)) <= 1, qPrintable(shown.name()));
    // Six pixels wide.
    const QColor left = pixel(picture, handle - QPoint(4, 0));
    QCOMPARE(left, panel);
}

void E2eLooks::messageBox_data()
{
    QTest::addColumn<int>("theme");
    QTest::newRow("light") << 1;
    QTest::newRow("dark") << 2;
}

void E2eLooks::messageBox()
{
    QFETCH(int, theme);
    Theme::forceTheme = theme;
    Program program(*m_desktop);
    program.setSetting(QStringLiteral("Theme/ForceTheme"), theme);
    program.writeData(
        QStringLiteral("data.json"),
        Profile::document({Profile::item(QStringLiteral("Broken"), QStringLiteral("Application"),
                                         QStringLiteral("/nowhere/at/all"))}));
    program.startAndSettle();
    program.openSpotlight();
    program.type(QStringLiteral("broken"));
    program.key(QStringLiteral("Return"));
    const auto box = [&] {
        for (const XClient::Window& w :
             m_desktop->client().windowsOf(program.process().processId())) {
            if (w.isViewable && w.id == m_desktop->client().focus() &&
                w.id != program.spotlight().id)
                return w.geometry;
        }
        return QRect();
    };
    QTRY_VERIFY(box().isValid());
    const QImage picture = program.settledScreenshot();
    const QRect window = box();
    Program::keep(picture, QStringLiteral("message-box-") + QLatin1String(QTest::currentDataTag()));
    const QRect card = window.adjusted(10, 10, -10, -10);
    QVERIFY2(card.width() >= 350, qPrintable(QString::number(card.width())));
    const QColor surface(Theme::colors().surface);
    QCOMPARE(pixel(picture, card.topLeft() + QPoint(0, card.height() / 2)),
             QColor(Theme::colors().outline));
    QCOMPARE(pixel(picture, card.topLeft() + QPoint(1, card.height() / 2)), surface);
    QCOMPARE(pixel(picture, card.topLeft() + QPoint(10, 10)), surface); // radius 24
    QVERIFY(pixel(picture, card.topLeft() + QPoint(4, 4)) != surface);
}

void E2eLooks::checkStrip(const QImage& picture) const
{
    const QColor shell(Theme::shellBg());
    const QColor box(Theme::boxBg());
    const QColor background = pixel(picture, QPoint(5, 5));
    QCOMPARE(pixel(picture, kCard + QPoint(8, kStripHeight / 2)), shell);
    QCOMPARE(pixel(picture, kCard + QPoint(kCardWidth / 2, 8)), shell);
    // The box: 18 pixels of padding, 44 high.
    QCOMPARE(pixel(picture, kCard + QPoint(kCardWidth / 2, 17)), shell);
    QCOMPARE(pixel(picture, kCard + QPoint(kCardWidth / 2, 18)), box);
    QCOMPARE(pixel(picture, kCard + QPoint(kCardWidth / 2, 61)), box);
    QCOMPARE(pixel(picture, kCard + QPoint(kCardWidth / 2, 62)), shell);
    // Corners of radius 40: the arc crosses the diagonal 11.7 pixels from either edge.
    QCOMPARE(pixel(picture, kCard + QPoint(13, 13)), shell);
    QVERIFY(pixel(picture, kCard + QPoint(10, 10)) != shell);
    QCOMPARE(pixel(picture, kCard + QPoint(kCardWidth - 14, kStripHeight - 14)), shell);
    QVERIFY(pixel(picture, kCard + QPoint(kCardWidth - 11, kStripHeight - 11)) != shell);
    // The shadow falls downwards.
    const QColor below = pixel(picture, kCard + QPoint(kCardWidth / 2, kStripHeight + 6));
    QVERIFY(below.lightness() < background.lightness());
    QCOMPARE(pixel(picture, kCard + QPoint(kCardWidth / 2, -60)), background);
    // From the right end of the box: 6 pixels, the gear in 32, 8 more, the magnifier in 20.
    checkGlyph(picture, QPoint(kCard.x() + kCardWidth - 18 - 6 - 16, kCard.y() + 40), 16);
    checkGlyph(picture, QPoint(kCard.x() + kCardWidth - 18 - 6 - 32 - 8 - 10, kCard.y() + 40), 10);
}

void E2eLooks::checkGlyph(const QImage& picture, const QPoint& center, int reach) const
{
    const QRect around(center - QPoint(reach, reach), QSize(2 * reach, 2 * reach));
    const QPointF ink = middleOfInk(picture, around, QColor(Theme::colors().onSurfaceVariant),
                                    QColor(Theme::boxBg()));
    QVERIFY2(isNear(ink, center, 1.0),
             qPrintable(QStringLiteral("%1, %2").arg(ink.x()).arg(ink.y())));
}

void E2eLooks::checkSelectedRow(const QImage& picture) const
{
    const ColorTokens c = Theme::colors();
    const QColor active(Theme::boxActiveBg());
    const QColor panel(Theme::panelBg());
    QCOMPARE(pixel(picture, kCard + QPoint(kCardWidth / 2, kStripHeight - 2)),
             QColor(Theme::shellBg()));
    QCOMPARE(pixel(picture, kCard + QPoint(kCardWidth / 2, kStripHeight + 1)), panel);
    // List padding 6 and 4, header 30, block inset 4.
    const QPoint block = kCard + QPoint(6 + 4, kStripHeight + 4 + 30 + 4);
    QCOMPARE(pixel(picture, block + QPoint(200, -1)), panel);
    QCOMPARE(pixel(picture, block + QPoint(200, 0)), active);
    QCOMPARE(pixel(picture, block + QPoint(200, 55)), active);
    QCOMPARE(pixel(picture, block + QPoint(200, 56)), panel);
    // Two rows in the group: round at the top of the first, radius 8 at its bottom.
    QCOMPARE(pixel(picture, block + QPoint(10, 10)), active);
    QCOMPARE(pixel(picture, block + QPoint(6, 6)), panel);
    QCOMPARE(pixel(picture, block + QPoint(4, 51)), active);
    // The badge: a circle of 36, 12 from the left.
    const QPoint circle = block + QPoint(12, 10);
    QCOMPARE(pixel(picture, circle + QPoint(2, 18)), QColor(c.primary));
    QCOMPARE(pixel(picture, circle + QPoint(33, 18)), QColor(c.primary));
    QCOMPARE(pixel(picture, circle + QPoint(18, 2)), QColor(c.primary));
    QCOMPARE(pixel(picture, circle + QPoint(-1, 18)), active);
    const QPointF ink = middleOfInk(picture, QRect(circle + QPoint(6, 6), QSize(24, 24)),
                                    QColor(c.onPrimary), QColor(c.primary));
    QVERIFY2(isNear(ink, QPointF(circle + QPoint(18, 18)), 1.0),
             qPrintable(QStringLiteral("%1, %2").arg(ink.x()).arg(ink.y())));
    // The row below isn't selected; 64 further down.
    QCOMPARE(pixel(picture, block + QPoint(200, 64)), QColor(Theme::boxBg()));
    QCOMPARE(pixel(picture, block + QPoint(12 + 2, 64 + 28)), QColor(c.surfaceVariant));
}

void E2eLooks::homeWindow_data()
{
    QTest::addColumn<int>("theme");
    QTest::newRow("light") << 1;
    QTest::newRow("dark") << 2;
}

void E2eLooks::homeWindow()
{
    QFETCH(int, theme);
    Theme::forceTheme = theme;
    Program program(*m_desktop);
    program.setSetting(QStringLiteral("Theme/ForceTheme"), theme);
    program.start();
    const QRect window((1280 - 617) / 2, (800 - 616) / 2 + 800 / 20, 617, 616);
    QTRY_COMPARE(program.homeWindow().geometry, window);
    const QImage picture = program.settledScreenshot();
    Program::keep(picture, QStringLiteral("home-") + QLatin1String(QTest::currentDataTag()));
    const QPoint card = window.topLeft() + QPoint(32, 32);
    const QColor shell(Theme::shellBg());
    const int header = 100; // px down the card
    QCOMPARE(pixel(picture, card + QPoint(0, header)), shell);
    QVERIFY(pixel(picture, card + QPoint(-1, header)) != shell);
    QCOMPARE(pixel(picture, card + QPoint(617 - 64 - 1, header)), shell);
    // Radius 24: the arc crosses the diagonal 7 pixels from either edge.
    QCOMPARE(pixel(picture, card + QPoint(9, 9)), shell);
    QVERIFY(pixel(picture, card + QPoint(5, 5)) != shell);
}

void E2eLooks::withoutCompositorTheCardIsCutOut()
{
    Theme::forceTheme = 1;
    Desktop plain(Desktop::WindowManager);
    Program program(plain);
    program.setSetting(QStringLiteral("Theme/ForceTheme"), 1);
    program.writeData(QStringLiteral("data.json"), Profile::document(Profile::examples()));
    program.startAndSettle();
    program.openSpotlight();
    program.type(QStringLiteral("team"));
    const QImage picture = program.settledScreenshot();
    Program::keep(picture, QStringLiteral("spotlight-no-compositor"));
    const QColor background(0x80, 0x90, 0xa0);
    const QColor shell(Theme::shellBg());
    QCOMPARE(pixel(picture, kCard + QPoint(13, 13)), shell);
    for (const QPoint& outside :
         {QPoint(-1, 40), QPoint(-20, 40), QPoint(5, 5), QPoint(kCardWidth + 1, 100),
          QPoint(kCardWidth - 4, kStripHeight + 328 - 4),
          QPoint(kCardWidth / 2, kStripHeight + 328 + 2)})
        QCOMPARE(pixel(picture, kCard + outside), background);
}

QTEST_GUILESS_MAIN(E2eLooks)
#include "tst_e2e_looks.moc"
