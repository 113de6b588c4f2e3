// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ItemRoles.h"
#include "Pixels.h"
#include "RowPainting.h"
#include "TestHome.h"

#include <QFontDatabase>
#include <QPainter>
#include <QStandardItemModel>
#include <QTest>

namespace
{

constexpr QChar kEllipsis(0x2026);
constexpr int kTextPx = 14;

/// What a painter draws on white.
template <typename Paint>
QImage painted(Paint paint)
{
    QImage image = Pixels::canvas({400, 60});
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.setFont(RowPainting::rowFont(kTextPx));
    paint(painter);
    return image;
}

} // namespace

class RowPaintingTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase();

    void rowFont();
    void itemType_data();
    void itemType();
    void visiblePart_data();
    void visiblePart();
    void visiblePartHoldsMoreThanTheWidth();
    void elidedLineIsThatOfTheWholeText_data();
    void elidedLineIsThatOfTheWholeText();
    void cutTextNeverLooksComplete();
    void drawnLineStaysInItsRectangle();
    void glyphCircle();
};

void RowPaintingTest::initTestCase()
{
    QVERIFY(QFontDatabase::addApplicationFont(
                QStringLiteral(":/fonts/PlusJakartaSans-SemiBold.ttf")) >= 0);
}

void RowPaintingTest::rowFont()
{
    const QFont font = RowPainting::rowFont(13);
    QCOMPARE(font.families().constFirst(), QStringLiteral("Plus Jakarta Sans"));
    QCOMPARE(font.pixelSize(), 13);
    QCOMPARE(font.weight(), QFont::DemiBold);
    QCOMPARE(RowPainting::rowFont(12, QFont::Normal).weight(), QFont::Normal);
}

void RowPaintingTest::itemType_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QString>("type");
    QTest::newRow("a type") << QVariant("Bulk") << "Bulk";
    QTest::newRow("empty") << QVariant(QString()) << "URL";
    QTest::newRow("none") << QVariant() << "URL";
}

void RowPaintingTest::itemType()
{
    QFETCH(QVariant, stored);
    QStandardItemModel model(1, 1);
    model.setData(model.index(0, 0), stored, ItemRoles::RoleItemType);
    QTEST(RowPainting::itemType(model.index(0, 0)), "type");
}

void RowPaintingTest::visiblePart_data()
{
    const QString face = QStringLiteral("\U0001F600"); // two code units
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("length");
    QTest::newRow("empty") << QString() << 100 << 0;
    QTest::newRow("short") << "Name" << 0 << 4;
    QTest::newRow("as long as is kept") << QString(356, u'x') << 100 << 356;
    QTest::newRow("longer") << QString(357, u'x') << 100 << 356;
    QTest::newRow("of a megabyte") << QString(1 << 20, u'x') << 100 << 356;
    QTest::newRow("no room") << QString(1 << 20, u'x') << -5 << 256;
    QTest::newRow("cut between characters") << face.repeated(300) << 100 << 356;
    QTest::newRow("cut inside a character") << "x" + face.repeated(300) << 100 << 357;
}

void RowPaintingTest::visiblePart()
{
    QFETCH(QString, text);
    QFETCH(int, width);
    QFETCH(int, length);
    QCOMPARE(RowPainting::visiblePart(text, width), text.left(length));
}

void RowPaintingTest::visiblePartHoldsMoreThanTheWidth()
{
    const QFontMetrics metrics(RowPainting::rowFont(kTextPx));
    for (const int width : {0, 1, 440, 1920}) {
        const QString part = RowPainting::visiblePart(QString(100000, u'i'), width);
        QVERIFY(metrics.horizontalAdvance(part) > width);
    }
}

void RowPaintingTest::elidedLineIsThatOfTheWholeText_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("narrow letters") << QString(5000, u'i');
    QTest::newRow("words") << QStringLiteral("some words & more ").repeated(500);
    QTest::newRow("line feeds") << QStringLiteral("Mg\n").repeated(2000);
    QTest::newRow("from right to left") << QStringLiteral("שלום ").repeated(1000);
    QTest::newRow("both ways") << QStringLiteral("שלום and ").repeated(1000);
    QTest::newRow("accents") << QStringLiteral("e\u0301").repeated(3000);
    QTest::newRow("fits") << "Name";
    QTest::newRow("empty") << QString();
}

void RowPaintingTest::elidedLineIsThatOfTheWholeText()
{
    QFETCH(QString, text);
    const QFontMetrics metrics(RowPainting::rowFont(kTextPx));
    for (const int width : {-3, 0, 7, 100, 333, 440})
        QCOMPARE(RowPainting::elidedLine(metrics, text, width),
                 metrics.elidedText(text, Qt::ElideRight, width));
}

void RowPaintingTest::cutTextNeverLooksComplete()
{
    const QFontMetrics metrics(RowPainting::rowFont(kTextPx));
    const QString accents = QStringLiteral("x") + QString(5000, QChar(0x0301)) + "hidden";
    QVERIFY(RowPainting::elidedLine(metrics, accents, 100).endsWith(kEllipsis));
    QVERIFY(!RowPainting::elidedLine(metrics, accents.left(100), 100).endsWith(kEllipsis));
}

void RowPaintingTest::drawnLineStaysInItsRectangle()
{
    const QRect rect(50, 20, 200, 20);
    const QImage image = painted([&rect](QPainter& painter) {
        RowPainting::drawLine(&painter, rect, Qt::AlignLeft | Qt::AlignVCenter,
                              QStringLiteral("Mg\u2028Mg\u2029 wide\n").repeated(1000));
    });
    const QRect ink = Pixels::inkBox(image);
    QVERIFY(ink.width() > 150);
    QVERIFY(rect.adjusted(-1, 0, 1, 0).contains(ink));
}

void RowPaintingTest::glyphCircle()
{
    const RowPainting::Circle circle{QRect(10, 10, 40, 40), Qt::yellow, Qt::blue, 18};
    const QImage image = painted(
        [&circle](QPainter& painter) { RowPainting::drawGlyphCircle(&painter, circle, 0xE92E); });
    QCOMPARE(Pixels::inkBox(image), circle.rect);
    const QRect glyph = Pixels::boxOfColor(image, Qt::blue, 60);
    QVERIFY(Pixels::isCentredOn(glyph, QRectF(circle.rect).center()));
    QVERIFY(glyph.height() > 9 && glyph.height() <= 18);
}

QTEST_MAIN(RowPaintingTest)
#include "tst_rowpainting.moc"
