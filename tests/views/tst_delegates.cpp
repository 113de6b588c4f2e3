// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Delegates.h"
#include "IconHelper.h"
#include "ItemGlyphRows.h"
#include "Pictures.h"
#include "Pixels.h"
#include "RowPainting.h"
#include "TestFonts.h"
#include "TestHome.h"

#include <QFile>
#include <QListWidget>
#include <QPainter>
#include <QStandardItemModel>
#include <QTest>

namespace
{

using Layout = GridTileDelegate::TileLayout;
using Roles = QMap<int, QVariant>;

constexpr int kLight = 1;
constexpr int kDark = 2;
constexpr int kGap = 12;
constexpr QChar kEllipsis(0x2026);
constexpr int kMegabyte = 1 << 20;

// One cell as it stands in a grid, away from the origin so that a forgotten offset shows.
const QRect kCell(20, 70, 152, 152);
const QRect kTile = kCell.adjusted(6, 6, -6, -6);
constexpr int kPlateSide = 53;    // 38 % of the 140 px of the tile
constexpr int kPlateGap = 14;     // 10 % of them
constexpr int kPictureInset = 12; // 23 % of the plate
constexpr int kGlyphPx = 27;      // half of it
constexpr int kTextWidth = 112;   // the tile less 10 % on each side

const QRect kRow(20, 70, 360, 64);

QFont tileFont(QFont::Weight weight = QFont::Bold)
{
    QFont font;
    font.setFamilies(FontTokens::Families);
    font.setPointSize(9);
    font.setWeight(weight);
    return font;
}

QFontMetrics tileMetrics()
{
    return QFontMetrics(tileFont());
}

/// The lines of a name as the rule says it, with every word looked at.
QStringList linesByTheRule(const QString& title, int width, int maxLines)
{
    const QFontMetrics metrics = tileMetrics();
    QStringList all;
    QString line;
    for (const QString& word : title.split(u' ', Qt::SkipEmptyParts)) {
        const QString candidate = line.isEmpty() ? word : line + u' ' + word;
        if (line.isEmpty() || metrics.horizontalAdvance(candidate) <= width) {
            line = candidate;
        } else {
            all << line;
            line = word;
        }
    }
    if (!line.isEmpty())
        all << line;
    if (all.isEmpty())
        all << title;
    QStringList kept = all.mid(0, maxLines);
    if (all.size() > maxLines)
        kept.last() += kEllipsis;
    for (QString& shown : kept)
        shown = metrics.elidedText(shown, Qt::ElideRight, width);
    return kept;
}

Layout layoutOf(const QString& title, const QRect& cell = kCell)
{
    return GridTileDelegate(kGap).layoutFor(cell, title, tileFont());
}

Roles item(const QString& name, const QString& type = QStringLiteral("URL"),
           const QString& token = QString())
{
    return {{Qt::DisplayRole, name},
            {ItemRoles::RoleItemType, type},
            {ItemRoles::RoleIconToken, token}};
}

/// What a delegate draws of one of `rows`, on a transparent ground.
QImage painted(const QAbstractItemDelegate& delegate, const QList<Roles>& rows, int row,
               const QRect& rect, QStyle::State state, const QWidget* widget = nullptr,
               qreal ratio = 1.0)
{
    QStandardItemModel model(static_cast<int>(rows.size()), 1);
    for (int i = 0; i < rows.size(); ++i)
        model.setItemData(model.index(i, 0), rows.at(i));
    QImage image(QSize(rect.right() + 21, rect.bottom() + 21) * ratio,
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QStyleOptionViewItem option;
    option.rect = rect;
    option.state = state;
    option.widget = widget;
    QPainter painter(&image);
    delegate.paint(&painter, option, model.index(row, 0));
    painter.end();
    image.setDevicePixelRatio(1.0);
    return image;
}

QImage tile(const Roles& roles, QStyle::State state = QStyle::State_Enabled,
            const QRect& cell = kCell, const QWidget* widget = nullptr)
{
    return painted(GridTileDelegate(kGap), {roles}, 0, cell, state, widget);
}

Roles cardRow(const QString& title, const QString& description = QString(),
              int kind = CardListDelegate::IconNone)
{
    return {{Qt::DisplayRole, title}, {257, description}, {258, kind}};
}

/// The middle one of three rows, all of whose corners are alike.
QImage card(const Roles& roles, QStyle::State state = QStyle::State_Enabled,
            const QString& seedHex = QString())
{
    return painted(CardListDelegate(Theme::colors(), seedHex), {roles, roles, roles}, 1, kRow,
                   state);
}

int countOf(const QImage& image, const QRect& part, const QColor& color)
{
    int count = 0;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x)
            count += image.pixelColor(x, y) == color ? 1 : 0;
    }
    return count;
}

bool isInked(const QColor& color)
{
    return color.alpha() > 0;
}

/// `over` on an opaque `under`, as a painter blends them.
QColor blended(const QColor& over, const QColor& under)
{
    QImage image(1, 1, QImage::Format_ARGB32_Premultiplied);
    image.fill(under);
    QPainter painter(&image);
    painter.fillRect(image.rect(), over);
    painter.end();
    return image.pixelColor(0, 0);
}

/// A picture file in the private home; a null image makes one that can't be decoded.
QString imageFile(const QString& name, const QImage& image)
{
    const QString path = TestHome::writeDataFile(name, QByteArrayLiteral("this is no image"));
    if (!image.isNull() && !image.save(path))
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

QImage plainImage(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

QRect pictureBox()
{
    return layoutOf(QStringLiteral("Name"))
        .iconRect.adjusted(kPictureInset, kPictureInset, -kPictureInset, -kPictureInset);
}

/// On the plate's rim, outside of everything that an icon may cover.
QPoint onPlate(const Layout& layout)
{
    return {layout.iconRect.left() + 4, layout.iconRect.center().y()};
}

const QPoint kOnTile(kTile.left() + 3, kTile.center().y());

} // namespace

class DelegatesTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase();
    void init();

    void numbers_data();
    void numbers();
    void tileHeightFor_data();
    void tileHeightFor();
    void tileSizeHint_data();
    void tileSizeHint();
    void iconCircleRect();

    void tileMeasures_data();
    void tileMeasures();
    void plateStandsAboveTheLines_data();
    void plateStandsAboveTheLines();
    void linesOfAName_data();
    void linesOfAName();
    void linesAtEveryWidth();
    void wideWordStandsAlone();
    void thirdLineEndsInAnEllipsis();
    void lowTileShowsOneLine();
    void blankName_data();
    void blankName();
    void weightChangesNothing();
    void hugeNames_data();
    void hugeNames();
    void marksWithoutEnd();

    void tileColors_data();
    void tileColors();
    void selectionLightsUpWithTheFocusOnly();
    void tileIsRoundedByTwenty();
    void plateIsACircle();
    void tileGlyph_data();
    void tileGlyph();
    void tilePicture_data();
    void tilePicture();
    void tilePictureIsSharpOnAFineScreen();
    void tilePictureThatCannotBeShown();
    void missingPictureGivesTheGlyph();
    void nameHasItsPlaceFontAndColour_data();
    void nameHasItsPlaceFontAndColour();
    void strangeNames_data();
    void strangeNames();
    void lineFeedIsDrawnAsABlank();
    void tileTooSmallForAnything_data();
    void tileTooSmallForAnything();

    void cardSizeHint();
    void cardColors_data();
    void cardColors();
    void cardTakesItsTokensAtConstruction();
    void cardTakesItsToneFromASeed();
    void cardCorners_data();
    void cardCorners();
    void cardIcon_data();
    void cardIcon();
    void cardTitle_data();
    void cardTitle();
    void cardTitleAndDescription();
    void longCardTextsAreElided();
    void painterStateIsKept();
};

void DelegatesTest::initTestCase()
{
    QVERIFY(TestFonts::addWeights());
}

void DelegatesTest::init()
{
    Theme::forceTheme = kLight;
}

void DelegatesTest::numbers_data()
{
    QTest::addColumn<int>("actual");
    QTest::addColumn<int>("expected");
    QTest::newRow("TileSide") << GridTileDelegate::TileSide << 120;
    QTest::newRow("MinTileHeight") << GridTileDelegate::MinTileHeight << 96;
    QTest::newRow("MaxTileHeight") << GridTileDelegate::MaxTileHeight << 176;
    QTest::newRow("IconNone") << int(CardListDelegate::IconNone) << 0;
    QTest::newRow("IconEdit") << int(CardListDelegate::IconEdit) << 1;
    QTest::newRow("IconDelete") << int(CardListDelegate::IconDelete) << 2;
    QTest::newRow("RoleDescription") << int(CardListDelegate::RoleDescription) << 257;
    QTest::newRow("RoleIconKind") << int(CardListDelegate::RoleIconKind) << 258;
    QTest::newRow("BarHeight") << MainListDelegate::BarHeight << 64;
    QTest::newRow("IconLeftPad") << MainListDelegate::IconLeftPad << 16;
    QTest::newRow("IconSize") << MainListDelegate::IconSize << 44;
}

void DelegatesTest::numbers()
{
    QFETCH(int, actual);
    QTEST(actual, "expected");
}

void DelegatesTest::tileHeightFor_data()
{
    QTest::addColumn<int>("cellWidth");
    QTest::addColumn<int>("gap");
    QTest::addColumn<int>("height");
    QTest::newRow("as wide as high") << 140 << 12 << 128;
    QTest::newRow("another gap") << 140 << 0 << 140;
    QTest::newRow("just the lowest") << 108 << 12 << 96;
    QTest::newRow("below the lowest") << 107 << 12 << 96;
    QTest::newRow("nothing") << 0 << 12 << 96;
    QTest::newRow("just the highest") << 188 << 12 << 176;
    QTest::newRow("above the highest") << 189 << 12 << 176;
    QTest::newRow("far above") << 5000 << 12 << 176;
}

void DelegatesTest::tileHeightFor()
{
    QFETCH(int, cellWidth);
    QFETCH(int, gap);
    QTEST(GridTileDelegate::tileHeightFor(cellWidth, gap), "height");
}

void DelegatesTest::tileSizeHint_data()
{
    QTest::addColumn<int>("gap");
    QTest::addColumn<int>("width");
    QTest::addColumn<QSize>("size");
    QTest::newRow("in between") << 12 << 150 << QSize(150, 150);
    QTest::newRow("narrow") << 12 << 80 << QSize(80, 108);
    QTest::newRow("wide") << 12 << 400 << QSize(400, 188);
    QTest::newRow("another gap") << 4 << 400 << QSize(400, 180);
}

void DelegatesTest::tileSizeHint()
{
    QFETCH(int, gap);
    QFETCH(int, width);
    QStandardItemModel model(1, 1);
    QStyleOptionViewItem option;
    option.rect = QRect(5, 6, width, 3);
    QTEST(GridTileDelegate(gap).sizeHint(option, model.index(0, 0)), "size");
}

void DelegatesTest::iconCircleRect()
{
    QCOMPARE(MainListDelegate::iconCircleRect(QRect(10, 100, 300, 64)), QRect(26, 110, 44, 44));
    QCOMPARE(MainListDelegate::iconCircleRect(QRect(0, 0, 5, 71)), QRect(16, 13, 44, 44));
}

void DelegatesTest::tileMeasures_data()
{
    QTest::addColumn<QSize>("tile");
    QTest::addColumn<int>("iconSize");
    QTest::addColumn<int>("iconTextGap");
    QTest::addColumn<int>("sidePad");
    QTest::addColumn<int>("textW");
    QTest::newRow("in between") << QSize(140, 140) << 53 << 14 << 14 << 112;
    QTest::newRow("rounded") << QSize(114, 114) << 43 << 11 << 11 << 92;
    QTest::newRow("the lowest") << QSize(96, 96) << 38 << 10 << 10 << 76;
    QTest::newRow("the highest") << QSize(176, 176) << 60 << 18 << 18 << 140;
    QTest::newRow("lower than any") << QSize(140, 40) << 38 << 6 << 14 << 112;
    QTest::newRow("higher than any") << QSize(140, 300) << 60 << 24 << 14 << 112;
    QTest::newRow("narrow") << QSize(60, 140) << 53 << 14 << 8 << 44;
    QTest::newRow("wide") << QSize(400, 140) << 53 << 14 << 20 << 360;
    QTest::newRow("narrower than its pads") << QSize(10, 140) << 53 << 14 << 8 << -6;
}

void DelegatesTest::tileMeasures()
{
    QFETCH(QSize, tile);
    for (const int gap : {0, 7, 12}) {
        const int half = gap / 2;
        const QRect tileRect(QPoint(20, 70), tile);
        const Layout layout = GridTileDelegate(gap).layoutFor(
            tileRect.adjusted(-half, -half, half, half), QStringLiteral("Name"), tileFont());
        QCOMPARE(layout.tileRect, tileRect);
        QTEST(layout.iconSize, "iconSize");
        QTEST(layout.iconTextGap, "iconTextGap");
        QTEST(layout.sidePad, "sidePad");
        QTEST(layout.textW, "textW");
        QCOMPARE(layout.lineHeight, tileMetrics().height());
        QCOMPARE(layout.iconRect.size(), QSize(layout.iconSize, layout.iconSize));
        QCOMPARE(layout.iconRect.left(), tileRect.center().x() - layout.iconSize / 2);
    }
}

void DelegatesTest::plateStandsAboveTheLines_data()
{
    QTest::addColumn<int>("height");
    QTest::addColumn<QString>("title");
    for (const int height : {20, 60, 96, 97, 140, 176, 400}) {
        QTest::addRow("one line, %d px", height) << height << "Name";
        QTest::addRow("two lines, %d px", height) << height << QString(12, u'm') + " " + "more";
    }
}

void DelegatesTest::plateStandsAboveTheLines()
{
    QFETCH(int, height);
    QFETCH(QString, title);
    const QRect cell(20, 70, 152, height + kGap);
    const Layout layout = layoutOf(title, cell);
    const int content = layout.iconSize + layout.iconTextGap +
                        layout.lineHeight * static_cast<int>(layout.lines.size());
    const int above = layout.iconRect.top() - layout.tileRect.top();
    QCOMPARE(above, qMax(8, (height - content) / 2));
}

void DelegatesTest::linesOfAName_data()
{
    QTest::addColumn<QString>("title");
    const QString face = QStringLiteral("\U0001F600");
    QTest::newRow("one word") << "Name";
    QTest::newRow("words for one line") << "My own page";
    QTest::newRow("words for two lines") << "The page of all my letters";
    QTest::newRow("words for many lines") << QStringLiteral("some more words ").repeated(20);
    QTest::newRow("blanks all over") << "   The    page  of all    my   letters   ";
    QTest::newRow("wide word first") << QString(60, u'w') + " and more";
    QTest::newRow("wide word last") << "and " + QString(60, u'w');
    QTest::newRow("wide words only") << (QString(60, u'w') + u' ').repeated(5);
    QTest::newRow("10,000 words") << QStringLiteral("a bc ").repeated(5000);
    QTest::newRow("words of one letter") << QStringLiteral("i ").repeated(300);
    QTest::newRow("long word") << QString(20000, u'i');
    QTest::newRow("long word, then another") << QString(20000, u'i') + " more";
    QTest::newRow("long word behind another") << "more " + QString(20000, u'i');
    QTest::newRow("line feeds") << "The\npage of\nall my\n\nletters and files";
    QTest::newRow("tabs") << "The\tpage\tof all\tmy letters";
    QTest::newRow("no-break blanks") << QStringLiteral("The\u00a0page\u00a0of\u00a0all my letters");
    QTest::newRow("right-to-left marks") << QStringLiteral("\u202eThe page\u202c of \u200f all my");
    QTest::newRow("from right to left") << QStringLiteral("שלום עולם ").repeated(10);
    QTest::newRow("faces") << (face + u' ').repeated(40);
    QTest::newRow("faces without blanks") << face.repeated(400);
    QTest::newRow("cut inside a face") << "x" + face.repeated(400) + " x";
    QTest::newRow("accents") << (QStringLiteral("e\u0301").repeated(30) + u' ').repeated(10);
    QTest::newRow("markup") << "<b>The page</b> of &amp; all <br> my letters";
    QTest::newRow("ampersands") << "&The && page & of && all";
    QTest::newRow("an ellipsis of its own") << QStringLiteral("The page of all… my letters…");
}

void DelegatesTest::linesOfAName()
{
    QFETCH(QString, title);
    const Layout high = layoutOf(title);
    QCOMPARE(high.lines, linesByTheRule(title, kTextWidth, 2));
    const Layout low = layoutOf(title, QRect(20, 70, 152, 80));
    QCOMPARE(low.lines, linesByTheRule(title, kTextWidth, 1));
}

void DelegatesTest::linesAtEveryWidth()
{
    // At some of so many widths a word just fits or just doesn't, and there one pixel matters.
    const QString title = QStringLiteral("The page of all letters & files I ever wrote");
    QSet<QStringList> different;
    for (int width = 60; width < 420; ++width) {
        const Layout layout = layoutOf(title, QRect(0, 0, width, 152));
        QCOMPARE(layout.lines, linesByTheRule(title, layout.textW, 2));
        different.insert(layout.lines);
    }
    QVERIFY(different.size() > 10);
}

void DelegatesTest::wideWordStandsAlone()
{
    const Layout layout = layoutOf("a " + QString(60, u'w'));
    QCOMPARE(layout.lines.size(), 2);
    QCOMPARE(layout.lines.first(), QStringLiteral("a"));
    QVERIFY(layout.lines.last().startsWith(QStringLiteral("www")));
    QVERIFY(layout.lines.last().endsWith(kEllipsis));
    QVERIFY(tileMetrics().horizontalAdvance(layout.lines.last()) <= kTextWidth);
}

void DelegatesTest::thirdLineEndsInAnEllipsis()
{
    // Each word takes a line of its own, with room for the mark that there are more.
    const QString word = QStringLiteral("mmmmmmm");
    QVERIFY(tileMetrics().horizontalAdvance(word + kEllipsis) <= kTextWidth);
    QVERIFY(tileMetrics().horizontalAdvance(word + u' ' + word) > kTextWidth);
    const QString two = word + u' ' + word;
    QCOMPARE(layoutOf(two).lines, QStringList({word, word}));
    QCOMPARE(layoutOf(two + u' ' + word).lines, QStringList({word, word + kEllipsis}));
    QCOMPARE(layoutOf(two + QStringLiteral("   ")).lines, QStringList({word, word}));
}

void DelegatesTest::lowTileShowsOneLine()
{
    const QString title = QStringLiteral("mmmmmmm mmmmmmm");
    for (const int height : {0, 13, 40, 80}) {
        const Layout layout = layoutOf(title, QRect(20, 70, 152, height));
        QCOMPARE(layout.lines, QStringList(QStringLiteral("mmmmmmm") + kEllipsis));
        QCOMPARE(layout.iconSize, 38);
    }
}

void DelegatesTest::blankName_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("line");
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("a blank") << " "
                             << " ";
    QTest::newRow("three") << "   "
                           << "   ";
    QTest::newRow("more than fit")
        << QString(1000, u' ')
        << tileMetrics().elidedText(QString(1000, u' '), Qt::ElideRight, kTextWidth);
}

void DelegatesTest::blankName()
{
    QFETCH(QString, title);
    QFETCH(QString, line);
    QCOMPARE(layoutOf(title).lines, QStringList(line));
}

void DelegatesTest::weightChangesNothing()
{
    const QString title = QStringLiteral("The page of all letters and files I ever wrote");
    for (int width = 80; width < 300; ++width) {
        const QRect cell(20, 70, width, 152);
        const Layout heavy = GridTileDelegate(kGap).layoutFor(cell, title, tileFont());
        for (const QFont::Weight weight : {QFont::Normal, QFont::Medium, QFont::Black})
            QCOMPARE(GridTileDelegate(kGap).layoutFor(cell, title, tileFont(weight)), heavy);
    }
}

void DelegatesTest::hugeNames_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("beginning");
    const QString face = QStringLiteral("\U0001F600");
    QTest::newRow("one word") << QString(kMegabyte, u'i') << QString(2000, u'i');
    QTest::newRow("words") << QStringLiteral("wide ").repeated(kMegabyte / 5)
                           << QStringLiteral("wide ").repeated(200);
    QTest::newRow("line feeds") << QStringLiteral("Mg\n").repeated(kMegabyte / 3)
                                << QStringLiteral("Mg\n").repeated(700);
    QTest::newRow("faces") << face.repeated(kMegabyte / 2) << face.repeated(1000);
    QTest::newRow("blanks before") << QString(kMegabyte, u' ') + "The page"
                                   << "The page";
    QTest::newRow("blanks between") << "The" + QString(kMegabyte, u' ') + "page"
                                    << "The page";
    QTest::newRow("blanks behind") << "The page" + QString(kMegabyte, u' ') << "The page";
    QTest::newRow("huge word behind a short one") << "a " + QString(kMegabyte, u'i') + " b"
                                                  << "a " + QString(2000, u'i') + " b";
}

void DelegatesTest::hugeNames()
{
    QFETCH(QString, title);
    QFETCH(QString, beginning);
    QCOMPARE(layoutOf(title).lines, linesByTheRule(beginning, kTextWidth, 2));
}

void DelegatesTest::marksWithoutEnd()
{
    // They take no room, so where such a word is cut it doesn't end at the tile's edge.
    const QString line = layoutOf(u'e' + QString(kMegabyte, QChar(0x0301)) + "more").lines.first();
    QVERIFY(line.startsWith(QStringLiteral("e\u0301")));
    QVERIFY(line.endsWith(kEllipsis));
    QVERIFY(line.size() < 1000);
}

void DelegatesTest::tileColors_data()
{
    QTest::addColumn<int>("theme");
    QTest::addColumn<QStyle::State>("state");
    QTest::addColumn<bool>("isLit");
    const QStyle::State none = QStyle::State_Enabled;
    for (const int theme : {kLight, kDark}) {
        const char* mode = theme == kDark ? "dark" : "light";
        QTest::addRow("%s, resting", mode) << theme << none << false;
        QTest::addRow("%s, selected without the focus", mode)
            << theme << (none | QStyle::State_Selected) << false;
        QTest::addRow("%s, hovered", mode) << theme << (none | QStyle::State_MouseOver) << true;
        QTest::addRow("%s, both", mode)
            << theme << (none | QStyle::State_Selected | QStyle::State_MouseOver) << true;
    }
}

void DelegatesTest::tileColors()
{
    QFETCH(int, theme);
    QFETCH(QStyle::State, state);
    QFETCH(bool, isLit);
    Theme::forceTheme = theme;
    const ColorTokens c = Theme::colors();
    const ColorTokens tones = Theme::tonesFor(QColor(Theme::seedColorHex));
    const QColor fill(isLit ? c.primaryContainer : Theme::boxBg());
    const QColor plate =
        isLit ? QColor(tones.key) : blended(Theme::stateLayer(c, 28), QColor(Theme::boxBg()));
    const Layout layout = layoutOf(QStringLiteral("MMMM"));
    const QImage image = tile(item(QStringLiteral("MMMM")), state);
    QCOMPARE(image.pixelColor(kOnTile), fill);
    QVERIFY(Pixels::isNear(image.pixelColor(onPlate(layout)), plate, 1));
    QVERIFY(countOf(image, layout.iconRect, QColor(isLit ? tones.onKey : c.onSurfaceVariant)) > 20);
    const QRect text(kTile.left(), layout.iconRect.bottom() + 1, kTile.width(), 40);
    QVERIFY(countOf(image, text, QColor(isLit ? c.onPrimaryContainer : c.onSurfaceVariant)) > 20);
}

void DelegatesTest::selectionLightsUpWithTheFocusOnly()
{
    QListWidget list;
    list.show();
    QVERIFY(QTest::qWaitForWindowExposed(&list));
    list.activateWindow();
    list.setFocus();
    QTRY_VERIFY(list.hasFocus());
    const Roles roles = item(QStringLiteral("Name"));
    const QImage resting = tile(roles);
    const QImage lit = tile(roles, QStyle::State_MouseOver);
    QVERIFY(lit != resting);
    QCOMPARE(tile(roles, QStyle::State_Selected, kCell, &list), lit);
    QCOMPARE(tile(roles, QStyle::State_Enabled, kCell, &list), resting);
    list.clearFocus();
    QCOMPARE(tile(roles, QStyle::State_Selected, kCell, &list), resting);
    QCOMPARE(tile(roles, QStyle::State_Selected), resting);
    QCOMPARE(tile(roles, QStyle::State_MouseOver, kCell, &list), lit);
}

void DelegatesTest::tileIsRoundedByTwenty()
{
    const QImage image = tile(item(QString()));
    QCOMPARE(Pixels::boxWhere(image, isInked), kTile);
    QImage expected(image.size(), image.format());
    expected.fill(Qt::transparent);
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(Theme::boxBg()));
    painter.drawRoundedRect(kTile, 20.0, 20.0);
    painter.end();
    const QRect above(kTile.topLeft(), QSize(kTile.width(), 24));
    const QRect below = above.translated(0, kTile.height() - 24);
    QCOMPARE(image.copy(above), expected.copy(above));
    QCOMPARE(image.copy(below), expected.copy(below));
    const QColor fill(Theme::boxBg());
    for (const QPoint& corner :
         {kTile.topLeft(), kTile.topRight(), kTile.bottomLeft(), kTile.bottomRight()}) {
        const QPoint inward(corner.x() == kTile.left() ? 1 : -1,
                            corner.y() == kTile.top() ? 1 : -1);
        QCOMPARE(image.pixelColor(corner + 4 * inward).alpha(), 0); // the arc passes at 5.9
        QCOMPARE(image.pixelColor(corner + 7 * inward), fill);
        // Along the edges it ends at 20.
        QVERIFY(image.pixelColor(corner + QPoint(12 * inward.x(), 0)).alpha() < 255);
        QCOMPARE(image.pixelColor(corner + QPoint(20 * inward.x(), 0)), fill);
    }
}

void DelegatesTest::plateIsACircle()
{
    // Lit, the plate has the one colour that nothing else in the tile has.
    const QImage image = tile(item(QString()), QStyle::State_MouseOver);
    const QRect plate = layoutOf(QString()).iconRect;
    QCOMPARE(plate.size(), QSize(kPlateSide, kPlateSide));
    const QColor key(getItemTheme().key);
    const QRect box = Pixels::boxOfColor(image, key, 40);
    QVERIFY(plate.contains(box));
    QVERIFY(box.width() >= kPlateSide - 2 && box.height() >= kPlateSide - 2);
    const QColor fill(Theme::colors().primaryContainer);
    QCOMPARE(image.pixelColor(plate.topLeft() + QPoint(6, 6)), fill); // the circle passes at 7.8
    QCOMPARE(image.pixelColor(plate.topLeft() + QPoint(10, 10)), key);
}

void DelegatesTest::tileGlyph_data()
{
    addItemGlyphRows();
}

void DelegatesTest::tileGlyph()
{
    QFETCH(QString, token);
    QFETCH(QString, type);
    QFETCH(uint, code);
    const QImage image = tile(item(QString(), type, token), QStyle::State_MouseOver);
    const QRect plate = layoutOf(QString()).iconRect;
    QImage expected(image.size(), image.format());
    expected.fill(getItemTheme().key);
    QPainter painter(&expected);
    IconHelper::drawGlyph(&painter, QRectF(plate).center(), code, kGlyphPx,
                          QColor(getItemTheme().onKey));
    painter.end();
    const QRect inner = plate.adjusted(9, 9, -9, -9);
    QCOMPARE(image.copy(inner), expected.copy(inner));
}

void DelegatesTest::tilePicture_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("shown");
    QTest::newRow("of its size") << QSize(29, 29) << QSize(29, 29);
    QTest::newRow("large") << QSize(300, 300) << QSize(29, 29);
    QTest::newRow("small") << QSize(5, 5) << QSize(29, 29);
    QTest::newRow("wide") << QSize(290, 100) << QSize(29, 10);
    QTest::newRow("high") << QSize(100, 290) << QSize(10, 29);
}

void DelegatesTest::tilePicture()
{
    QFETCH(QSize, size);
    QFETCH(QSize, shown);
    const QString name = QStringLiteral("tile_%1x%2.png").arg(size.width()).arg(size.height());
    const QString path = imageFile(name, plainImage(size.width(), size.height()));
    pictureOnceRead(path, pictureBox().size());
    const QImage image = tile(item(QStringLiteral("Name"), QStringLiteral("URL"), path));
    const QRect box = Pixels::boxOfColor(image, Qt::red);
    QCOMPARE(box.size(), shown);
    QVERIFY(Pixels::isCentredOn(box, QRectF(pictureBox()).center()));
    QCOMPARE(countOf(image, box, Qt::red), box.width() * box.height());
}

void DelegatesTest::tilePictureIsSharpOnAFineScreen()
{
    // One column of pixels in red and the next in blue, which any scaling would blur.
    QImage stripes(58, 58, QImage::Format_RGB32);
    for (int x = 0; x < stripes.width(); ++x) {
        for (int y = 0; y < stripes.height(); ++y)
            stripes.setPixelColor(x, y, x % 2 == 0 ? Qt::red : Qt::blue);
    }
    const QString path = imageFile(QStringLiteral("tile_stripes.png"), stripes);
    pictureOnceRead(path, pictureBox().size(), 2.0);
    const QImage image =
        painted(GridTileDelegate(kGap), {item(QString(), QStringLiteral("URL"), path)}, 0, kCell,
                QStyle::State_Enabled, nullptr, 2.0);
    const QRect pixels(pictureBox().topLeft() * 2, pictureBox().size() * 2);
    QCOMPARE(image.copy(pixels).convertToFormat(stripes.format()), stripes);
}

void DelegatesTest::tilePictureThatCannotBeShown()
{
    const QString late = imageFile(QStringLiteral("tile_late.png"), plainImage(29, 29));
    const QString broken = imageFile(QStringLiteral("tile_broken.png"), QImage());
    pictureOnceRead(broken, pictureBox().size());
    pictureOnceRead(TestHome::dataDir(), pictureBox().size()); // a directory exists as well
    const int area = pictureBox().width() * pictureBox().height();
    for (const QString& path : {late, broken, TestHome::dataDir()}) {
        const QImage image =
            tile(item(QString(), QStringLiteral("URL"), path), QStyle::State_MouseOver);
        QCOMPARE(countOf(image, pictureBox(), QColor(getItemTheme().key)), area);
    }
    pictureOnceRead(late, pictureBox().size());
    QCOMPARE(countOf(tile(item(QString(), QStringLiteral("URL"), late)), pictureBox(), Qt::red),
             area);
}

void DelegatesTest::missingPictureGivesTheGlyph()
{
    for (const char* token : {"/no/such/icon.png", "GLYPH:ea5f"}) {
        const QString path = QString::fromLatin1(token);
        pictureOnceRead(path, pictureBox().size());
        QCOMPARE(tile(item(QStringLiteral("Name"), QStringLiteral("Bulk"), path)),
                 tile(item(QStringLiteral("Name"), QStringLiteral("Bulk"))));
    }
}

void DelegatesTest::nameHasItsPlaceFontAndColour_data()
{
    QTest::addColumn<bool>("isLit");
    QTest::addColumn<QString>("title");
    QTest::newRow("resting, one line") << false << "Quick Journey";
    QTest::newRow("resting, two lines") << false << "A Quick Journey to the South";
    QTest::newRow("lit, one line") << true << "Quick Journey";
    QTest::newRow("lit, two lines") << true << "A Quick Journey to the South";
}

void DelegatesTest::nameHasItsPlaceFontAndColour()
{
    QFETCH(bool, isLit);
    QFETCH(QString, title);
    const ColorTokens c = Theme::colors();
    const QImage image = tile(item(title), isLit ? QStyle::State_MouseOver : QStyle::State_None);
    const Layout layout = layoutOf(title);

    QImage expected(image.size(), image.format());
    expected.fill(isLit ? c.primaryContainer : Theme::boxBg());
    QPainter painter(&expected);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.setFont(tileFont(isLit ? QFont::Bold : QFont::Medium));
    painter.setPen(QColor(isLit ? c.onPrimaryContainer : c.onSurfaceVariant));
    QRect line(kTile.left() + 14, layout.iconRect.top() + kPlateSide + kPlateGap, kTextWidth,
               tileMetrics().height());
    const QRect first = line;
    for (const QString& text : layout.lines) {
        painter.drawText(line, Qt::AlignHCenter | Qt::AlignTop, text);
        line.translate(0, line.height());
    }
    painter.end();
    const QRect part(first.left(), first.top(), first.width(),
                     first.height() * static_cast<int>(layout.lines.size()));
    QCOMPARE(layout.lines.size(), title.size() > 20 ? 2 : 1);
    QCOMPARE(image.copy(part), expected.copy(part));
}

void DelegatesTest::strangeNames_data()
{
    QTest::addColumn<QString>("title");
    QTest::newRow("line feeds") << "Mg\nMg\nMg\nMg";
    QTest::newRow("long with line feeds") << QStringLiteral("Mg\n").repeated(5000);
    QTest::newRow("words with line feeds") << QStringLiteral("Mg\nMg ").repeated(5000);
    QTest::newRow("carriage returns") << "Mg\r\nMg\r\nMg";
    QTest::newRow("line separator") << QStringLiteral("Mg\u2028Mg\u2029Mg");
    QTest::newRow("other line ends") << QStringLiteral("Mg\u000bMg\u000cMg\u0085Mg");
    QTest::newRow("tabs") << "Mg\tMg\tMg";
    QTest::newRow("markup") << "<h1>Mg</h1><br><br>";
    QTest::newRow("ampersands") << "&Mg && &&&";
    QTest::newRow("right-to-left marks") << QStringLiteral("\u202eMg\u202c\u200f Mg \u200f");
    QTest::newRow("from right to left") << QStringLiteral("שלום ").repeated(300);
    QTest::newRow("faces") << QStringLiteral("\U0001F600").repeated(5000);
}

void DelegatesTest::strangeNames()
{
    QFETCH(QString, title);
    const Layout layout = layoutOf(title);
    const QImage image = tile(item(title));
    QCOMPARE(Pixels::boxWhere(image, isInked), kTile);
    // The lines, and around them nothing but the tile.
    const QRect lines(kTile.left() + 14, layout.iconRect.bottom() + 1 + kPlateGap, kTextWidth,
                      layout.lineHeight * static_cast<int>(layout.lines.size()));
    const QColor fill(Theme::boxBg());
    QVERIFY(countOf(image, lines, fill) < lines.width() * lines.height());
    const QRect left(kTile.left() + 1, lines.top(), 12, lines.height());
    const QRect right(lines.right() + 2, lines.top(), 12, lines.height());
    const QRect below(kTile.left() + 20, lines.bottom() + 1, 100,
                      kTile.bottom() - lines.bottom() - 1);
    for (const QRect& margin : {left, right, below})
        QCOMPARE(countOf(image, margin, fill), margin.width() * margin.height());
}

void DelegatesTest::lineFeedIsDrawnAsABlank()
{
    const QImage blank = tile(item(QStringLiteral("Mg Mg")));
    for (const char* name : {"Mg\nMg", "Mg\rMg", "Mg\tMg"})
        QCOMPARE(tile(item(QString::fromLatin1(name))), blank);
}

void DelegatesTest::tileTooSmallForAnything_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("nothing") << QSize(0, 0);
    QTest::newRow("smaller than the gap") << QSize(5, 5);
    QTest::newRow("narrower than the plate") << QSize(30, 152);
    QTest::newRow("lower than the plate") << QSize(152, 30);
}

void DelegatesTest::tileTooSmallForAnything()
{
    QFETCH(QSize, size);
    const QRect cell(QPoint(40, 40), size);
    const Layout layout = layoutOf(QStringLiteral("Name of it"), cell);
    QVERIFY(!layout.lines.isEmpty());
    QVERIFY(layout.iconRect.top() >= layout.tileRect.top() + 8);
    const QImage image = tile(item(QStringLiteral("Name of it")), QStyle::State_MouseOver, cell);
    QVERIFY(countOf(image, image.rect(), QColor(getItemTheme().key)) > 0);
}

void DelegatesTest::cardSizeHint()
{
    QListWidget list;
    list.addItem(QStringLiteral("Title"));
    list.addItem(QStringLiteral("Title"));
    list.item(1)->setData(CardListDelegate::RoleDescription, QStringLiteral("What it does"));
    const CardListDelegate delegate(Theme::colors(), QString());
    QStyleOptionViewItem option;
    option.rect = QRect(5, 6, 417, 3);
    const QModelIndex plain = list.model()->index(0, 0);
    const QModelIndex described = list.model()->index(1, 0);
    QCOMPARE(delegate.sizeHint(option, plain), QStyledItemDelegate().sizeHint(option, plain));
    QVERIFY(!delegate.sizeHint(option, plain).isEmpty());
    QCOMPARE(delegate.sizeHint(option, described), QSize(417, 64));
}

void DelegatesTest::cardColors_data()
{
    QTest::addColumn<int>("theme");
    QTest::addColumn<QStyle::State>("state");
    QTest::addColumn<QString>("fill");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isBold");
    QTest::addColumn<bool>("isCircleLit");
    const QStyle::State none = QStyle::State_Enabled;
    const QStyle::State both = QStyle::State_Selected | QStyle::State_MouseOver;
    for (const int theme : {kLight, kDark}) {
        Theme::forceTheme = theme;
        const char* mode = theme == kDark ? "dark" : "light";
        const ColorTokens c = Theme::colors();
        const ColorTokens tones = getItemTheme();
        QTest::addRow("%s, selected", mode)
            << theme << QStyle::State(QStyle::State_Selected) << c.primaryContainer
            << c.onPrimaryContainer << true << true;
        QTest::addRow("%s, selected and hovered", mode)
            << theme << both << Theme::stateLayerOn(c.primaryContainer, c.onPrimaryContainer, 0.08)
            << c.onPrimaryContainer << true << true;
        QTest::addRow("%s, hovered", mode)
            << theme << QStyle::State(QStyle::State_MouseOver)
            << Theme::stateLayerOn(tones.container, c.onSurface, 0.08) << c.onSurface << false
            << true;
        QTest::addRow("%s, neither", mode)
            << theme << none << tones.container << c.onSurface << false << false;
    }
}

void DelegatesTest::cardColors()
{
    QFETCH(int, theme);
    QFETCH(QStyle::State, state);
    QFETCH(QString, fill);
    QFETCH(QString, text);
    QFETCH(bool, isBold);
    QFETCH(bool, isCircleLit);
    Theme::forceTheme = theme;
    const ColorTokens tones = getItemTheme();
    const QString title = QStringLiteral("Quick Journey");
    const QImage image = card(cardRow(title, QString(), CardListDelegate::IconEdit), state);
    QCOMPARE(image.pixelColor(kRow.left() + 6, kRow.center().y()).name(), fill);
    const QPoint onCircle(kRow.left() + 16 + 4, kRow.center().y());
    QCOMPARE(image.pixelColor(onCircle).name(), isCircleLit ? tones.key : tones.container);
    const QRect circle(kRow.left() + 16, kRow.top() + 12, 40, 40);
    QVERIFY(countOf(image, circle, QColor(isCircleLit ? tones.onKey : tones.onContainer)) > 10);

    QImage expected(image.size(), image.format());
    expected.fill(QColor(fill));
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(RowPainting::rowFont(14, isBold ? QFont::Bold : QFont::Normal));
    painter.setPen(QColor(text));
    const QRect place = kRow.adjusted(16 + 40 + 12, 0, -16, 0);
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter, title);
    painter.end();
    const QRect part = place.adjusted(0, 4, 0, -4);
    QCOMPARE(image.copy(part), expected.copy(part));
}

void DelegatesTest::cardTakesItsTokensAtConstruction()
{
    const CardListDelegate delegate(Theme::colors(), QString());
    const ColorTokens light = Theme::colors();
    Theme::forceTheme = kDark;
    QVERIFY(light.primaryContainer != Theme::colors().primaryContainer);
    const QImage image = painted(delegate, {cardRow(QString())}, 0, kRow, QStyle::State_Selected);
    QCOMPARE(image.pixelColor(kRow.center()).name(), light.primaryContainer);
}

void DelegatesTest::cardTakesItsToneFromASeed()
{
    const QString seed = QStringLiteral("#b3261e");
    const QString own = Theme::tonesFor(QColor(seed)).container;
    QVERIFY(own != getItemTheme().container);
    QCOMPARE(card(cardRow(QString()), QStyle::State_None, seed).pixelColor(kRow.center()).name(),
             own);
    QCOMPARE(card(cardRow(QString()), QStyle::State_None).pixelColor(kRow.center()).name(),
             getItemTheme().container);
    // The fill of a selected row is that of the palette, whatever the seed.
    QCOMPARE(
        card(cardRow(QString()), QStyle::State_Selected, seed).pixelColor(kRow.center()).name(),
        Theme::colors().primaryContainer);
}

void DelegatesTest::cardCorners_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("isRoundAbove");
    QTest::addColumn<bool>("isRoundBelow");
    QTest::newRow("first") << 3 << 0 << true << false;
    QTest::newRow("middle") << 3 << 1 << false << false;
    QTest::newRow("last") << 3 << 2 << false << true;
    QTest::newRow("first of two") << 2 << 0 << true << false;
    QTest::newRow("only") << 1 << 0 << true << true;
}

void DelegatesTest::cardCorners()
{
    QFETCH(int, rows);
    QFETCH(int, row);
    QFETCH(bool, isRoundAbove);
    QFETCH(bool, isRoundBelow);
    const QImage image =
        painted(CardListDelegate(Theme::colors(), QString()),
                QList<Roles>(rows, cardRow(QString())), row, kRow, QStyle::State_Enabled);
    QCOMPARE(Pixels::boxWhere(image, isInked), kRow);
    const QColor fill(getItemTheme().container);
    QImage expected(image.size(), image.format());
    expected.fill(Qt::transparent);
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawPath(
        RowPainting::twoRadiusPath(kRow, isRoundAbove ? 24.0 : 4.0, isRoundBelow ? 24.0 : 4.0));
    painter.end();
    QCOMPARE(image, expected);
    const auto verifyCorner = [&image, &fill](QPoint corner, QPoint inward, bool isRound) {
        // An arc of radius 24 passes the diagonal at 7.0, one of radius 4 at 1.2.
        QCOMPARE(image.pixelColor(corner + 5 * inward).alpha(), isRound ? 0 : 255);
        QCOMPARE(image.pixelColor(corner + 8 * inward), fill);
        QVERIFY(image.pixelColor(corner).alpha() < 128);
        QCOMPARE(image.pixelColor(corner + QPoint(16 * inward.x(), 0)).alpha() < 255, isRound);
        QCOMPARE(image.pixelColor(corner + QPoint(24 * inward.x(), 0)), fill);
    };
    verifyCorner(kRow.topLeft(), {1, 1}, isRoundAbove);
    verifyCorner(kRow.topRight(), {-1, 1}, isRoundAbove);
    verifyCorner(kRow.bottomLeft(), {1, -1}, isRoundBelow);
    verifyCorner(kRow.bottomRight(), {-1, -1}, isRoundBelow);
}

void DelegatesTest::cardIcon_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<uint>("code");
    QTest::newRow("edit") << int(CardListDelegate::IconEdit) << 0xF097u;
    QTest::newRow("delete") << int(CardListDelegate::IconDelete) << 0xE92Eu;
    QTest::newRow("none") << int(CardListDelegate::IconNone) << 0u;
}

void DelegatesTest::cardIcon()
{
    QFETCH(int, kind);
    QFETCH(uint, code);
    const ColorTokens tones = getItemTheme();
    const QImage image = card(cardRow(QString(), QString(), kind), QStyle::State_Selected);
    const QRect circle(kRow.left() + 16, kRow.top() + 12, 40, 40);
    QImage expected(image.size(), image.format());
    expected.fill(QColor(Theme::colors().primaryContainer));
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing);
    if (code != 0) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(tones.key));
        painter.drawEllipse(circle);
        IconHelper::drawGlyph(&painter, QRectF(circle).center(), code, 18, QColor(tones.onKey));
    }
    painter.end();
    const QRect part = kRow.adjusted(8, 8, -8, -8);
    QCOMPARE(image.copy(part), expected.copy(part));
}

void DelegatesTest::cardTitle_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("left");
    QTest::newRow("without an icon") << int(CardListDelegate::IconNone) << 16;
    QTest::newRow("behind an icon") << int(CardListDelegate::IconDelete) << 68;
}

void DelegatesTest::cardTitle()
{
    QFETCH(int, kind);
    QFETCH(int, left);
    const QString title = QStringLiteral("Quick Journey");
    const QImage image = card(cardRow(title, QString(), kind));
    QImage expected(image.size(), image.format());
    expected.fill(QColor(getItemTheme().container));
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(RowPainting::rowFont(14, QFont::Normal));
    painter.setPen(QColor(Theme::colors().onSurface));
    const QRect place = kRow.adjusted(left, 0, -16, 0);
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter, title);
    painter.end();
    const QRect part = place.adjusted(0, 4, 0, -4);
    QCOMPARE(image.copy(part), expected.copy(part));
    // Thin strokes may have no pixel of their full colour.
    QVERIFY(countOf(image, part, QColor(getItemTheme().container)) <
            part.width() * part.height() - 20);
}

void DelegatesTest::cardTitleAndDescription()
{
    for (const QStyle::State state : {QStyle::State_Enabled, QStyle::State_Selected}) {
        const bool isSelected = state == QStyle::State_Selected;
        const ColorTokens c = Theme::colors();
        const QImage image = card(
            cardRow(QStringLiteral("Quick Journey"), QStringLiteral("What good it does")), state);
        const QColor text(isSelected ? c.onPrimaryContainer : c.onSurface);
        QImage expected(image.size(), image.format());
        expected.fill(QColor(isSelected ? c.primaryContainer : getItemTheme().container));
        QPainter painter(&expected);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setFont(RowPainting::rowFont(14, QFont::Bold));
        painter.setPen(text);
        const QRect upper(kRow.left() + 16, kRow.top(), kRow.width() - 32, 32);
        painter.drawText(upper, Qt::AlignLeft | Qt::AlignBottom, QStringLiteral("Quick Journey"));
        QColor muted = text;
        muted.setAlphaF(0.68F);
        painter.setFont(RowPainting::rowFont(12, QFont::Normal));
        painter.setPen(muted);
        painter.drawText(upper.translated(0, 32), Qt::AlignLeft | Qt::AlignTop,
                         QStringLiteral("What good it does"));
        painter.end();
        const QRect part = kRow.adjusted(16, 4, -16, -4);
        QCOMPARE(image.copy(part), expected.copy(part));
    }
}

void DelegatesTest::longCardTextsAreElided()
{
    const QString text = QStringLiteral("wide ").repeated(kMegabyte / 5);
    const int width = kRow.width() - 32;
    const QString title = QFontMetrics(RowPainting::rowFont(14, QFont::Bold))
                              .elidedText(text.left(2000), Qt::ElideRight, width);
    const QString description = QFontMetrics(RowPainting::rowFont(12, QFont::Normal))
                                    .elidedText(text.left(2000), Qt::ElideRight, width);
    QCOMPARE(card(cardRow(text, text)), card(cardRow(title, description)));
    QVERIFY(title.endsWith(kEllipsis) && description.endsWith(kEllipsis));
}

void DelegatesTest::painterStateIsKept()
{
    QStandardItemModel model(1, 1);
    model.setItemData(model.index(0, 0), item(QStringLiteral("Name")));
    QImage image(400, 300, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setPen(Qt::magenta);
    painter.setBrush(Qt::cyan);
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QFont font = painter.font();
    QStyleOptionViewItem option;
    option.rect = kCell;
    const GridTileDelegate grid(kGap);
    const CardListDelegate cards(Theme::colors(), QString());
    for (const QAbstractItemDelegate* delegate :
         {static_cast<const QAbstractItemDelegate*>(&grid),
          static_cast<const QAbstractItemDelegate*>(&cards)}) {
        delegate->paint(&painter, option, model.index(0, 0));
        QCOMPARE(painter.pen().color(), QColor(Qt::magenta));
        QCOMPARE(painter.brush().color(), QColor(Qt::cyan));
        QCOMPARE(painter.font(), font);
        QVERIFY(!painter.testRenderHint(QPainter::Antialiasing));
    }
}

QTEST_MAIN(DelegatesTest)
#include "tst_delegates.moc"
