// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "IconHelper.h"
#include "ItemGlyphRows.h"
#include "Localization.h"
#include "Pictures.h"
#include "Pixels.h"
#include "SpotlightResultDelegate.h"
#include "TestHome.h"
#include "Theme.h"

#include <QFile>
#include <QFontDatabase>
#include <QIcon>
#include <QPainter>
#include <QStandardItemModel>
#include <QTest>

#include <numbers>

using Delegate = SpotlightResultDelegate;

namespace
{

constexpr int kLight = 1;
constexpr int kDark = 2;
constexpr int kRowWidth = 300;

// One row as it stands in a list, away from the origin so that a forgotten offset shows.
const QRect kRow(20, 70, kRowWidth, Delegate::RowHeight);
const QRect kBlock = kRow.adjusted(4, 4, -4, -4);
const QRect kCircle(kBlock.left() + 12, kBlock.top() + 10, 36, 36);
const QRect kIconBox = kCircle.adjusted(7, 7, -7, -7);
const QRect kTitle(kCircle.left() + 36 + 12, kBlock.top(), kBlock.width() - 48 - 18, 56);

// Where the block shows and nothing else does.
const QPoint kOnBlock(kBlock.left() + 6, kBlock.center().y());
// On the circle's rim, outside of everything that an icon may cover.
const QPoint kOnCircle(kCircle.left() + 3, kCircle.center().y());

using Roles = QMap<int, QVariant>;

Roles row(const QString& title, const QString& type = QStringLiteral("URL"))
{
    return {{Qt::DisplayRole, title}, {Delegate::RoleItemType, type}};
}

Roles with(Roles roles, int role, const QVariant& value)
{
    roles.insert(role, value);
    return roles;
}

/// What the delegate draws of one row, on a transparent ground, once it knows the row's picture.
QImage painted(const Roles& roles, QStyle::State state = QStyle::State_Enabled,
               const Delegate& delegate = Delegate(nullptr), const QRect& rect = kRow)
{
    pictureOnceRead(roles.value(Delegate::RoleIconToken).toString(), kIconBox.size());
    QStandardItemModel model(1, 1);
    model.setItemData(model.index(0, 0), roles);
    QImage image(rect.right() + 21, rect.bottom() + 21, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QStyleOptionViewItem option;
    option.rect = rect;
    option.state = state;
    QPainter painter(&image);
    delegate.paint(&painter, option, model.index(0, 0));
    return image;
}

QImage paintedWithEnds(const Roles& roles, int topRadius, int bottomRadius)
{
    Delegate delegate(nullptr);
    delegate.setFirstRowTopRadius(topRadius);
    delegate.setLastRowBottomRadius(bottomRadius);
    return painted(roles, QStyle::State_Enabled, delegate);
}

QFont textFont(int px)
{
    QFont font(QStringLiteral("Plus Jakarta Sans"));
    font.setPixelSize(px);
    font.setWeight(QFont::DemiBold);
    return font;
}

bool isInked(const QColor& color)
{
    return color.alpha() > 0;
}

/// The pixels of a part of a picture that have a colour, and only that one.
int countOf(const QImage& image, const QRect& part, const QColor& color)
{
    int count = 0;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x)
            count += image.pixelColor(x, y) == color ? 1 : 0;
    }
    return count;
}

/// A picture file in the private home; a null image makes one that can't be decoded.
QString imageFile(const QString& name, const QImage& image)
{
    const QString path = TestHome::writeDataFile(name, QByteArrayLiteral("this is no image"));
    if (!image.isNull() && !image.save(path))
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

QImage plainImage(int width, int height, Qt::GlobalColor color)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

} // namespace

class SpotlightResultDelegateTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase();
    void init();

    void numbers_data();
    void numbers();
    void sizeHint();
    void typeLabel_data();
    void typeLabel();
    void typeLabelInEveryLanguage();

    void headerIsTextWithoutBackground();
    void headerStandsAtTheLowerLeft();
    void headerIgnoresStateAndIcons();
    void longHeaderIsElided();
    void strangeHeadersStayOnOneLine_data();
    void strangeHeadersStayOnOneLine();

    void rowColors_data();
    void rowColors();
    void blockLeavesFourPixels();
    void circleStandsInTheMiddle();
    void hintNeverLightsUp_data();
    void hintNeverLightsUp();

    void plainRowIsRoundedByEight();
    void endsAreRoundedOnTheirSideOnly_data();
    void endsAreRoundedOnTheirSideOnly();
    void endsKeepEightUntilSet();
    void largeRadiiAreHalfCircles();
    void twoRadiusPath_data();
    void twoRadiusPath();
    void twoRadiusPathOfNothing_data();
    void twoRadiusPathOfNothing();

    void glyphIsCentred();
    void glyphComesFromTokenOrType_data();
    void glyphComesFromTokenOrType();
    void ownIconComesFirst();
    void ownIconIsAskedFor_data();
    void ownIconIsAskedFor();
    void smallIconKeepsItsSize();
    void nullIconCountsAsNone();
    void customImageKeepsItsShape_data();
    void customImageKeepsItsShape();
    void customImageIsSharpOnAFineScreen();
    void imageThatIsNotReadYetPaintsNothing();
    void brokenImagePaintsNothing();
    void missingImageGivesTheGlyph();

    void titleHasItsPlaceFontAndColour();
    void longTitleIsElided();
    void strangeTitlesStayOnOneLine_data();
    void strangeTitlesStayOnOneLine();
    void rightToLeftTitleStartsAtTheLeft();
    void rowTooSmallForAnything_data();
    void rowTooSmallForAnything();
    void painterStateIsKept();
};

void SpotlightResultDelegateTest::initTestCase()
{
    QVERIFY(QFontDatabase::addApplicationFont(
                QStringLiteral(":/fonts/PlusJakartaSans-SemiBold.ttf")) >= 0);
}

void SpotlightResultDelegateTest::init()
{
    Theme::forceTheme = kLight;
    Tr::currentLang = Lang::En;
}

void SpotlightResultDelegateTest::numbers_data()
{
    QTest::addColumn<int>("actual");
    QTest::addColumn<int>("expected");
    QTest::newRow("HeaderHeight") << Delegate::HeaderHeight << 30;
    QTest::newRow("RowHeight") << Delegate::RowHeight << 64;
    QTest::newRow("RowBlockHeight") << Delegate::RowBlockHeight << 56;
    QTest::newRow("RowGap") << Delegate::RowGap << 8;
    QTest::newRow("RoleOriginalIndex") << int(Delegate::RoleOriginalIndex) << 256;
    QTest::newRow("RoleElementId") << int(Delegate::RoleElementId) << 258;
    QTest::newRow("RoleItemType") << int(Delegate::RoleItemType) << 261;
    QTest::newRow("RoleReserved") << int(Delegate::RoleReserved) << 262;
    QTest::newRow("RoleIconToken") << int(Delegate::RoleIconToken) << 263;
    QTest::newRow("RoleCategory") << int(Delegate::RoleCategory) << 264;
    QTest::newRow("RoleSynthetic") << int(Delegate::RoleSynthetic) << 265;
    QTest::newRow("RoleValue") << int(Delegate::RoleValue) << 266;
    QTest::newRow("RoleIsHeader") << int(Delegate::RoleIsHeader) << 267;
    QTest::newRow("RoleGroupFirst") << int(Delegate::RoleGroupFirst) << 268;
    QTest::newRow("RoleGroupLast") << int(Delegate::RoleGroupLast) << 269;
    QTest::newRow("RoleIsHint") << int(Delegate::RoleIsHint) << 270;
    QTest::newRow("RoleNextFree") << int(Delegate::RoleNextFree) << 271;
}

void SpotlightResultDelegateTest::numbers()
{
    QFETCH(int, actual);
    QTEST(actual, "expected");
}

void SpotlightResultDelegateTest::sizeHint()
{
    QStandardItemModel model(3, 1);
    model.setData(model.index(1, 0), true, Delegate::RoleIsHeader);
    model.setData(model.index(2, 0), true, Delegate::RoleIsHint);
    QStyleOptionViewItem option;
    option.rect = QRect(5, 6, 417, 3);
    const Delegate delegate(nullptr);
    QCOMPARE(delegate.sizeHint(option, model.index(0, 0)), QSize(417, 64));
    QCOMPARE(delegate.sizeHint(option, model.index(1, 0)), QSize(417, 30));
    QCOMPARE(delegate.sizeHint(option, model.index(2, 0)), QSize(417, 64));
}

void SpotlightResultDelegateTest::typeLabel_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("label");
    QTest::newRow("URL") << "URL"
                         << "Web Bookmark";
    QTest::newRow("File") << "File"
                          << "File";
    QTest::newRow("Snippet") << "Snippet"
                             << "Snippet";
    QTest::newRow("Bulk") << "Bulk"
                          << "Bulk Action";
    QTest::newRow("Application") << "Application"
                                 << "Application";
    QTest::newRow("ShellItem") << "ShellItem"
                               << "Application";
    QTest::newRow("unknown") << "Teapot"
                             << "Application";
    QTest::newRow("empty") << ""
                           << "Application";
    QTest::newRow("other letter case") << "url"
                                       << "Application";
    QTest::newRow("with a blank") << "URL "
                                  << "Application";
}

void SpotlightResultDelegateTest::typeLabel()
{
    QFETCH(QString, type);
    QTEST(Delegate::typeLabel(type), "label");
}

void SpotlightResultDelegateTest::typeLabelInEveryLanguage()
{
    const QMap<QString, QString> keys{{"URL", "spotlight.type_url"},
                                      {"File", "spotlight.type_file"},
                                      {"Snippet", "spotlight.type_snippet"},
                                      {"Bulk", "spotlight.type_bulk"},
                                      {"Application", "spotlight.type_app"}};
    for (const Lang lang : Tr::all()) {
        Tr::currentLang = lang;
        for (auto it = keys.begin(); it != keys.end(); ++it) {
            QCOMPARE(Delegate::typeLabel(it.key()), Tr::t(it.value()));
            QVERIFY(Delegate::typeLabel(it.key()) != it.value());
        }
    }
    Tr::currentLang = Lang::Ja;
    QCOMPARE(Delegate::typeLabel(QStringLiteral("Snippet")), QStringLiteral("スニペット"));
}

void SpotlightResultDelegateTest::headerIsTextWithoutBackground()
{
    const QRect rect(20, 70, kRowWidth, Delegate::HeaderHeight);
    const QColor ink(Theme::colors().onSurfaceVariant);
    const Roles header{{Qt::DisplayRole, "MMMM"}, {Delegate::RoleIsHeader, true}};
    const QImage image = painted(header, QStyle::State_Enabled, Delegate(nullptr), rect);

    QImage expected(image.size(), image.format());
    expected.fill(Qt::transparent);
    QPainter painter(&expected);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.setFont(textFont(13));
    painter.setPen(ink);
    painter.drawText(rect.adjusted(16, 0, -16, -2), Qt::AlignLeft | Qt::AlignBottom,
                     QStringLiteral("MMMM"));
    painter.end();
    QCOMPARE(image, expected);
    QVERIFY(countOf(image, rect, ink) > 20);
    QVERIFY(countOf(image, rect, Qt::transparent) > rect.width() * rect.height() / 2);
}

void SpotlightResultDelegateTest::headerStandsAtTheLowerLeft()
{
    const QRect rect(20, 70, kRowWidth, Delegate::HeaderHeight);
    const Roles header{{Qt::DisplayRole, "gg"}, {Delegate::RoleIsHeader, true}};
    const QImage image = painted(header, QStyle::State_Enabled, Delegate(nullptr), rect);
    const QRect ink = Pixels::boxWhere(image, isInked);
    QVERIFY(ink.left() >= rect.left() + 16 && ink.left() <= rect.left() + 20);
    QVERIFY(ink.bottom() <= rect.bottom() - 2 && ink.bottom() >= rect.bottom() - 8);
}

void SpotlightResultDelegateTest::headerIgnoresStateAndIcons()
{
    const Roles header{{Qt::DisplayRole, "Group"}, {Delegate::RoleIsHeader, true}};
    const QImage plain = painted(header);
    QCOMPARE(painted(header, QStyle::State_Selected | QStyle::State_MouseOver), plain);
    Roles rich = with(header, Delegate::RoleIconToken, "glyph:e250");
    rich.insert(Delegate::RoleIsHint, true);
    rich.insert(Delegate::RoleGroupFirst, true);
    QCOMPARE(painted(rich), plain);
}

void SpotlightResultDelegateTest::longHeaderIsElided()
{
    const QRect rect(20, 70, kRowWidth, Delegate::HeaderHeight);
    const auto header = [&rect](const QString& text) {
        return painted({{Qt::DisplayRole, text}, {Delegate::RoleIsHeader, true}},
                       QStyle::State_Enabled, Delegate(nullptr), rect);
    };
    const QString text = QStringLiteral("Search for: ") + QStringLiteral("wide").repeated(5000);
    const QString elided =
        QFontMetrics(textFont(13)).elidedText(text, Qt::ElideRight, rect.width() - 32);
    QVERIFY(elided.endsWith(QChar(0x2026)));
    const QImage image = header(text);
    QCOMPARE(image, header(elided));
    QVERIFY(Pixels::boxWhere(image, isInked).right() <= rect.right() - 16);
}

void SpotlightResultDelegateTest::strangeHeadersStayOnOneLine_data()
{
    strangeTitlesStayOnOneLine_data();
}

void SpotlightResultDelegateTest::strangeHeadersStayOnOneLine()
{
    QFETCH(QString, title);
    const QRect rect(20, 70, kRowWidth, Delegate::HeaderHeight);
    const QImage image = painted({{Qt::DisplayRole, title}, {Delegate::RoleIsHeader, true}},
                                 QStyle::State_Enabled, Delegate(nullptr), rect);
    const QRect line = Pixels::boxWhere(image, isInked);
    QVERIFY(!line.isEmpty());
    QVERIFY(line.height() <= 20);
    QVERIFY(line.bottom() <= rect.bottom() - 2 && line.bottom() >= rect.bottom() - 12);
    QVERIFY(line.left() >= rect.left() + 15 && line.right() <= rect.right() - 15);
}

void SpotlightResultDelegateTest::rowColors_data()
{
    QTest::addColumn<int>("theme");
    QTest::addColumn<QStyle::State>("state");
    QTest::addColumn<bool>("isHint");
    QTest::addColumn<QString>("block");
    QTest::addColumn<QString>("circle");
    QTest::addColumn<QString>("glyph");
    QTest::addColumn<QString>("title");
    const QStyle::State none = QStyle::State_Enabled;
    const QStyle::State both = QStyle::State_Selected | QStyle::State_MouseOver;
    for (const int theme : {kLight, kDark}) {
        Theme::forceTheme = theme;
        const ColorTokens c = Theme::colors();
        const auto add = [theme](const char* name, QStyle::State state, bool isHint,
                                 const QStringList& colors) {
            const QByteArray tag = QByteArray(theme == kDark ? "dark, " : "light, ") + name;
            QTest::newRow(tag.constData()) << theme << state << isHint << colors.at(0)
                                           << colors.at(1) << colors.at(2) << colors.at(3);
        };
        const QString box = Theme::boxBg();
        const QString active = Theme::boxActiveBg();
        add("plain", none, false, {box, c.surfaceVariant, c.onSurface, c.onSurface});
        add("selected", QStyle::State_Selected, false,
            {active, c.primary, c.onPrimary, c.onSurface});
        add("hovered", QStyle::State_MouseOver, false,
            {active, c.surfaceVariant, c.onSurface, c.onSurface});
        add("selected and hovered", both, false, {active, c.primary, c.onPrimary, c.onSurface});
        add("hint", none, true, {box, c.surfaceVariant, c.onSurfaceVariant, c.onSurfaceVariant});
    }
}

void SpotlightResultDelegateTest::rowColors()
{
    QFETCH(int, theme);
    QFETCH(QStyle::State, state);
    QFETCH(bool, isHint);
    QFETCH(QString, glyph);
    QFETCH(QString, title);
    Theme::forceTheme = theme;
    const QImage image = painted(with(row("MMMMMM"), Delegate::RoleIsHint, isHint), state);
    QTEST(image.pixelColor(kOnBlock).name(), "block");
    QTEST(image.pixelColor(kOnCircle).name(), "circle");
    QVERIFY(countOf(image, kIconBox, QColor(glyph)) > 10);
    QVERIFY(countOf(image, kTitle, QColor(title)) > 10);
}

void SpotlightResultDelegateTest::blockLeavesFourPixels()
{
    const QImage image = painted(row("Name"));
    QCOMPARE(Pixels::boxWhere(image, isInked), kBlock);
    QCOMPARE(kBlock.height(), Delegate::RowBlockHeight);
}

void SpotlightResultDelegateTest::circleStandsInTheMiddle()
{
    // Selected, the circle has the one colour that nothing else in the row has.
    const QImage image = painted(row(QString()), QStyle::State_Selected);
    const QColor fill(Theme::colors().primary);
    const QRect box = Pixels::boxOfColor(image, fill, 90);
    QVERIFY(box.left() >= kCircle.left() && box.left() <= kCircle.left() + 1);
    QVERIFY(box.right() <= kCircle.right() && box.right() >= kCircle.right() - 1);
    QVERIFY(qAbs(QRectF(box).center().y() - QRectF(kBlock).center().y()) <= 1.0);
    QVERIFY(box.height() >= 34 && box.height() <= 36);
    QCOMPARE(image.pixelColor(kCircle.topLeft() + QPoint(3, 3)).name(), Theme::boxActiveBg());
}

void SpotlightResultDelegateTest::hintNeverLightsUp_data()
{
    QTest::addColumn<QStyle::State>("state");
    const QStyle::State enabled = QStyle::State_Enabled;
    QTest::newRow("hovered") << (enabled | QStyle::State_MouseOver);
    QTest::newRow("selected") << (enabled | QStyle::State_Selected);
    QTest::newRow("both") << (enabled | QStyle::State_Selected | QStyle::State_MouseOver);
}

void SpotlightResultDelegateTest::hintNeverLightsUp()
{
    QFETCH(QStyle::State, state);
    const Roles hint = with(row("Preparing"), Delegate::RoleIsHint, true);
    QCOMPARE(painted(hint, state), painted(hint));
    QVERIFY(painted(row("Preparing"), state) != painted(row("Preparing")));
}

void SpotlightResultDelegateTest::plainRowIsRoundedByEight()
{
    const QImage image = painted(row(QString()));
    const QColor fill(Theme::boxBg());
    for (const QPoint& corner :
         {kBlock.topLeft(), kBlock.topRight(), kBlock.bottomLeft(), kBlock.bottomRight()}) {
        const QPoint inward(corner.x() == kBlock.left() ? 1 : -1,
                            corner.y() == kBlock.top() ? 1 : -1);
        QCOMPARE(image.pixelColor(corner + inward).alpha(), 0); // radius 8 cuts these off
        QCOMPARE(image.pixelColor(corner + 4 * inward), fill);  // and no larger one leaves these
    }
}

void SpotlightResultDelegateTest::endsAreRoundedOnTheirSideOnly_data()
{
    QTest::addColumn<bool>("isFirst");
    QTest::addColumn<bool>("isLast");
    QTest::newRow("middle") << false << false;
    QTest::newRow("first") << true << false;
    QTest::newRow("last") << false << true;
    QTest::newRow("only") << true << true;
}

void SpotlightResultDelegateTest::endsAreRoundedOnTheirSideOnly()
{
    QFETCH(bool, isFirst);
    QFETCH(bool, isLast);
    Roles roles = with(row(QString()), Delegate::RoleGroupFirst, isFirst);
    roles.insert(Delegate::RoleGroupLast, isLast);
    const QImage image = paintedWithEnds(roles, 30, 30);
    // Inside a corner of radius 8, outside one of radius 28.
    const auto isCutAt = [&image](QPoint corner, QPoint inward) {
        return image.pixelColor(corner + 4 * inward).alpha() == 0;
    };
    QCOMPARE(isCutAt(kBlock.topLeft(), {1, 1}), isFirst);
    QCOMPARE(isCutAt(kBlock.topRight(), {-1, 1}), isFirst);
    QCOMPARE(isCutAt(kBlock.bottomLeft(), {1, -1}), isLast);
    QCOMPARE(isCutAt(kBlock.bottomRight(), {-1, -1}), isLast);
    if (!isFirst && !isLast)
        QCOMPARE(image, painted(row(QString())));
}

void SpotlightResultDelegateTest::endsKeepEightUntilSet()
{
    Roles roles = with(row("Name"), Delegate::RoleGroupFirst, true);
    roles.insert(Delegate::RoleGroupLast, true);
    QCOMPARE(painted(roles), painted(row("Name")));
}

void SpotlightResultDelegateTest::largeRadiiAreHalfCircles()
{
    Roles roles = with(row("Name"), Delegate::RoleGroupFirst, true);
    roles.insert(Delegate::RoleGroupLast, true);
    const QImage pill = paintedWithEnds(roles, 30, 30);
    QCOMPARE(pill, paintedWithEnds(roles, 28, 28));
    QCOMPARE(pill, paintedWithEnds(roles, 1000, 1000));
    QVERIFY(pill != paintedWithEnds(roles, 26, 28));
    QVERIFY(pill != paintedWithEnds(roles, 28, 26));
    // A half circle touches the block's left edge only in the middle.
    QVERIFY(pill.pixelColor(kBlock.left(), kBlock.center().y()).alpha() > 200);
    QCOMPARE(pill.pixelColor(kBlock.left(), kBlock.top() + 12).alpha(), 0);
    QCOMPARE(pill.pixelColor(kBlock.left(), kBlock.bottom() - 12).alpha(), 0);
}

void SpotlightResultDelegateTest::twoRadiusPath_data()
{
    QTest::addColumn<QRect>("rect");
    QTest::addColumn<int>("top");
    QTest::addColumn<int>("bottom");
    QTest::addColumn<double>("topIs");
    QTest::addColumn<double>("bottomIs");
    const QRect block(10, 20, 200, 56);
    QTest::newRow("two different ones") << block << 8 << 20 << 8.0 << 20.0;
    QTest::newRow("bounded by the height") << block << 30 << 29 << 28.0 << 28.0;
    QTest::newRow("bounded by the width") << QRect(0, 0, 21, 100) << 99 << 5 << 10.5 << 5.0;
    QTest::newRow("negative") << block << -4 << -1 << 0.0 << 0.0;
    QTest::newRow("none at the top") << block << 0 << 12 << 0.0 << 12.0;
    QTest::newRow("none at the bottom") << block << 12 << 0 << 12.0 << 0.0;
}

void SpotlightResultDelegateTest::twoRadiusPath()
{
    QFETCH(QRect, rect);
    QFETCH(int, top);
    QFETCH(int, bottom);
    QFETCH(double, topIs);
    QFETCH(double, bottomIs);
    const QPainterPath path = Delegate::twoRadiusPath(rect, top, bottom);
    const QRectF r(rect);
    QCOMPARE(path.boundingRect(), r);
    // Just inside and just outside of each corner's arc, on its diagonal.
    const double inside = 1.0 - 0.5 * std::numbers::sqrt2;
    const auto isRounded = [&path, inside](QPointF corner, double radius, QPointF inward) {
        const QPointF onArc = corner + radius * inside * inward;
        return path.contains(onArc + 0.1 * inward) && !path.contains(onArc - 0.1 * inward);
    };
    QVERIFY(isRounded(r.topLeft(), topIs, {1, 1}));
    QVERIFY(isRounded(r.topRight(), topIs, {-1, 1}));
    QVERIFY(isRounded(r.bottomLeft(), bottomIs, {1, -1}));
    QVERIFY(isRounded(r.bottomRight(), bottomIs, {-1, -1}));
    QVERIFY(path.contains(r.center()));
    QCOMPARE(path.elementAt(0).x, r.left());
    QCOMPARE(path.elementAt(0).y, r.top() + topIs);
}

void SpotlightResultDelegateTest::twoRadiusPathOfNothing_data()
{
    QTest::addColumn<QRect>("rect");
    QTest::newRow("empty") << QRect(5, 5, 0, 0);
    QTest::newRow("no width") << QRect(5, 5, 0, 56);
    QTest::newRow("negative width") << QRect(5, 5, -3, 56);
    QTest::newRow("negative height") << QRect(5, 5, 100, -8);
    QTest::newRow("null") << QRect();
}

void SpotlightResultDelegateTest::twoRadiusPathOfNothing()
{
    QFETCH(QRect, rect);
    const QPainterPath path = Delegate::twoRadiusPath(rect, 30, 30);
    QVERIFY(path.boundingRect().width() <= 100.0);
    QVERIFY(!path.contains(QPointF(5.5, 30.0)));
}

void SpotlightResultDelegateTest::glyphIsCentred()
{
    const QColor ink(Theme::colors().onPrimary);
    const QImage image = painted(row(QString()), QStyle::State_Selected);
    const QRect glyph = Pixels::boxOfColor(image.copy(kCircle.adjusted(5, 5, -5, -5)), ink, 60);
    QVERIFY(Pixels::isCentredOn(glyph.translated(kCircle.topLeft() + QPoint(5, 5)),
                                QRectF(kCircle).center()));
    QVERIFY(glyph.width() >= 12 && glyph.width() <= 20);
}

void SpotlightResultDelegateTest::glyphComesFromTokenOrType_data()
{
    addItemGlyphRows();
}

void SpotlightResultDelegateTest::glyphComesFromTokenOrType()
{
    QFETCH(QString, token);
    QFETCH(QString, type);
    QFETCH(uint, code);
    const QImage image = painted(with(row(QString(), type), Delegate::RoleIconToken, token));

    QImage expected(image.size(), image.format());
    expected.fill(Theme::colors().surfaceVariant);
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing);
    IconHelper::drawGlyph(&painter, QRectF(kCircle).center(), code, 20,
                          QColor(Theme::colors().onSurface));
    painter.end();
    QCOMPARE(image.copy(kIconBox), expected.copy(kIconBox));
}

void SpotlightResultDelegateTest::ownIconComesFirst()
{
    QPixmap red(64, 64);
    red.fill(Qt::red);
    Roles roles = with(row(QString()), Qt::DecorationRole, QIcon(red));
    roles.insert(Delegate::RoleIconToken, "glyph:ea5f");
    const QImage image = painted(roles);
    QCOMPARE(Pixels::boxOfColor(image, Qt::red), kIconBox);
    QCOMPARE(countOf(image, kIconBox, Qt::red), 22 * 22);
    QCOMPARE(image.pixelColor(kOnCircle).name(), Theme::colors().surfaceVariant);
}

void SpotlightResultDelegateTest::ownIconIsAskedFor_data()
{
    QTest::addColumn<QStyle::State>("state");
    QTest::newRow("plain") << QStyle::State(QStyle::State_Enabled);
    QTest::newRow("selected") << QStyle::State(QStyle::State_Selected);
    QTest::newRow("hovered") << QStyle::State(QStyle::State_MouseOver);
    QTest::newRow("not enabled") << QStyle::State(QStyle::State_None);
}

void SpotlightResultDelegateTest::ownIconIsAskedFor()
{
    QFETCH(QStyle::State, state);
    // One picture for each question that an icon can be asked; the right one is red.
    QIcon icon;
    for (const QIcon::Mode mode :
         {QIcon::Normal, QIcon::Disabled, QIcon::Active, QIcon::Selected}) {
        for (const QIcon::State onOff : {QIcon::On, QIcon::Off}) {
            QPixmap pixmap(64, 64);
            pixmap.fill(mode == QIcon::Normal && onOff == QIcon::Off ? Qt::red : Qt::blue);
            icon.addPixmap(pixmap, mode, onOff);
        }
    }
    const QImage image = painted(with(row(QString()), Qt::DecorationRole, icon), state);
    QCOMPARE(countOf(image, kIconBox, Qt::red), 22 * 22);
}

void SpotlightResultDelegateTest::smallIconKeepsItsSize()
{
    QPixmap pixmap(16, 12);
    pixmap.fill(Qt::red);
    const QImage image = painted(with(row(QString()), Qt::DecorationRole, QIcon(pixmap)));
    const QRect box = Pixels::boxOfColor(image, Qt::red);
    QCOMPARE(box.size(), QSize(16, 12));
    QVERIFY(Pixels::isCentredOn(box, QRectF(kIconBox).center()));
}

void SpotlightResultDelegateTest::nullIconCountsAsNone()
{
    const Roles roles = row("Name", "File");
    QCOMPARE(painted(with(roles, Qt::DecorationRole, QIcon())), painted(roles));
    QCOMPARE(painted(with(roles, Qt::DecorationRole, "no icon at all")), painted(roles));
}

void SpotlightResultDelegateTest::customImageKeepsItsShape_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QRect>("expected");
    const QPoint at = kIconBox.topLeft();
    QTest::newRow("square") << QSize(50, 50) << kIconBox;
    QTest::newRow("wide") << QSize(100, 50) << QRect(at + QPoint(0, 5), QSize(22, 11));
    QTest::newRow("high") << QSize(50, 100) << QRect(at + QPoint(5, 0), QSize(11, 22));
    QTest::newRow("tiny") << QSize(2, 2) << kIconBox;
}

void SpotlightResultDelegateTest::customImageKeepsItsShape()
{
    QFETCH(QSize, size);
    QFETCH(QRect, expected);
    const QString name = QStringLiteral("icon_%1x%2.png").arg(size.width()).arg(size.height());
    const QString path = imageFile(name, plainImage(size.width(), size.height(), Qt::red));
    const QImage image = painted(with(row(QString()), Delegate::RoleIconToken, path));
    const QRect box = Pixels::boxOfColor(image, Qt::red);
    QCOMPARE(box.size(), expected.size());
    QVERIFY((box.topLeft() - expected.topLeft()).manhattanLength() <= 1);
    QCOMPARE(countOf(image, box, Qt::red), box.width() * box.height());
}

void SpotlightResultDelegateTest::customImageIsSharpOnAFineScreen()
{
    // One column of pixels in red and the next in blue, which any scaling would blur.
    QImage stripes(44, 44, QImage::Format_RGB32);
    for (int x = 0; x < stripes.width(); ++x) {
        for (int y = 0; y < stripes.height(); ++y)
            stripes.setPixelColor(x, y, x % 2 == 0 ? Qt::red : Qt::blue);
    }
    const QString path = imageFile(QStringLiteral("stripes.png"), stripes);
    pictureOnceRead(path, kIconBox.size(), 2.0);
    QStandardItemModel model(1, 1);
    model.setItemData(model.index(0, 0), with(row(QString()), Delegate::RoleIconToken, path));
    QImage image(800, 400, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(2.0);
    QStyleOptionViewItem option;
    option.rect = kRow;
    QPainter painter(&image);
    Delegate(nullptr).paint(&painter, option, model.index(0, 0));
    painter.end();
    image.setDevicePixelRatio(1.0);
    const QRect pixels(kIconBox.topLeft() * 2, kIconBox.size() * 2);
    QCOMPARE(image.copy(pixels).convertToFormat(stripes.format()), stripes);
}

void SpotlightResultDelegateTest::imageThatIsNotReadYetPaintsNothing()
{
    const QString path = imageFile(QStringLiteral("late.png"), plainImage(22, 22, Qt::red));
    QStandardItemModel model(1, 1);
    model.setItemData(model.index(0, 0), with(row(QString()), Delegate::RoleIconToken, path));
    QImage image(400, 200, QImage::Format_ARGB32_Premultiplied);
    QStyleOptionViewItem option;
    option.rect = kRow;
    QPainter painter(&image);
    Delegate(nullptr).paint(&painter, option, model.index(0, 0));
    painter.end();
    QCOMPARE(countOf(image, kIconBox, QColor(Theme::colors().surfaceVariant)), 22 * 22);
    const Roles late = with(row(QString()), Delegate::RoleIconToken, path);
    QCOMPARE(countOf(painted(late), kIconBox, Qt::red), 22 * 22);
}

void SpotlightResultDelegateTest::brokenImagePaintsNothing()
{
    const QString path = imageFile(QStringLiteral("broken.png"), QImage());
    const QColor circle(Theme::colors().surfaceVariant);
    for (const QString& token : {path, TestHome::dataDir()}) { // a directory exists as well
        const QImage image = painted(with(row(QString()), Delegate::RoleIconToken, token));
        QCOMPARE(countOf(image, kIconBox, circle), 22 * 22);
    }
}

void SpotlightResultDelegateTest::missingImageGivesTheGlyph()
{
    const Roles roles = row("Name", "Bulk");
    for (const char* token : {"/no/such/icon.png", "GLYPH:ea5f"}) {
        const QString path = QString::fromLatin1(token);
        QCOMPARE(painted(with(roles, Delegate::RoleIconToken, path)), painted(roles));
    }
}

void SpotlightResultDelegateTest::titleHasItsPlaceFontAndColour()
{
    const QImage image = painted(row("Quick Journey"));
    QImage expected(image.size(), image.format());
    expected.fill(Theme::boxBg());
    QPainter painter(&expected);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.setFont(textFont(14));
    painter.setPen(QColor(Theme::colors().onSurface));
    painter.drawText(kTitle, Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("Quick Journey"));
    painter.end();
    const QRect part = kTitle.adjusted(0, 1, 0, -1);
    QCOMPARE(image.copy(part), expected.copy(part));
    QVERIFY(countOf(image, kTitle, QColor(Theme::colors().onSurface)) > 20);
}

void SpotlightResultDelegateTest::longTitleIsElided()
{
    const QFontMetrics metrics(textFont(14));
    const auto elided = [&metrics](const QString& title, int width) {
        return metrics.elidedText(title, Qt::ElideRight, width);
    };
    int narrowerDiffers = 0;
    int widerDiffers = 0;
    // Of so many titles some end exactly where the room does, and there one pixel matters.
    for (int count = 0; count < 80; ++count) {
        const QString title = QString(count % 10, u'i') + QString(count / 10, u'r') +
                              QStringLiteral("wide").repeated(50);
        const QString expected = elided(title, kTitle.width());
        QVERIFY(expected.endsWith(QChar(0x2026)));
        QCOMPARE(painted(row(title)), painted(row(expected)));
        narrowerDiffers += elided(title, kTitle.width() - 1) != expected ? 1 : 0;
        widerDiffers += elided(title, kTitle.width() + 1) != expected ? 1 : 0;
    }
    QVERIFY(narrowerDiffers > 0);
    QVERIFY(widerDiffers > 0);
    const QImage image = painted(row(QString(500, u'm')));
    const QRect behind(QPoint(kTitle.right() + 1, kBlock.top() + 8),
                       kBlock.bottomRight() - QPoint(0, 8));
    QCOMPARE(behind.width(), 6);
    QCOMPARE(countOf(image, behind, QColor(Theme::boxBg())), behind.width() * behind.height());
}

void SpotlightResultDelegateTest::strangeTitlesStayOnOneLine_data()
{
    QTest::addColumn<QString>("title");
    QTest::newRow("line feeds") << "Mg\nMg\nMg\nMg";
    QTest::newRow("carriage returns") << "Mg\r\nMg\r\nMg";
    QTest::newRow("line separator") << QStringLiteral("Mg\u2028Mg\u2029Mg");
    QTest::newRow("other line ends") << QStringLiteral("Mg\u000bMg\u000cMg\u0085Mg");
    QTest::newRow("tabs") << "Mg\tMg\tMg";
    QTest::newRow("markup") << "<h1>Mg</h1><br><br>";
    QTest::newRow("ampersands") << "&Mg && &&&";
    QTest::newRow("long with line feeds") << QStringLiteral("Mg\n").repeated(5000);
    QTest::newRow("right-to-left marks") << QStringLiteral("\u202eMg\u202c\u200f Mg \u200f");
}

void SpotlightResultDelegateTest::strangeTitlesStayOnOneLine()
{
    QFETCH(QString, title);
    const QColor ink(Theme::colors().onSurface);
    const QImage image = painted(row(title));
    const QRect line = Pixels::boxOfColor(image.copy(kTitle), ink, 60);
    QVERIFY(!line.isEmpty());
    QVERIFY(line.height() <= 20);
    QVERIFY(qAbs(QRectF(line).center().y() - kTitle.height() / 2.0) <= 5.0);
    QCOMPARE(Pixels::boxWhere(image, isInked), kBlock);
}

void SpotlightResultDelegateTest::rightToLeftTitleStartsAtTheLeft()
{
    const QImage image = painted(row(QStringLiteral("שלום")));
    const QColor ink(Theme::colors().onSurface);
    const QRect text = Pixels::boxOfColor(image.copy(kTitle), ink, 60);
    QVERIFY(!text.isEmpty());
    QVERIFY(text.right() < kTitle.width() / 2);
}

void SpotlightResultDelegateTest::rowTooSmallForAnything_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("isTitled");
    QTest::newRow("nothing") << QSize(0, 0) << false;
    QTest::newRow("narrower than its margin") << QSize(5, 64) << false;
    QTest::newRow("lower than its margin") << QSize(300, 5) << true;
    QTest::newRow("no room for a title") << QSize(60, 64) << false;
    QTest::newRow("room for the ellipsis") << QSize(100, 64) << true;
}

void SpotlightResultDelegateTest::rowTooSmallForAnything()
{
    QFETCH(QSize, size);
    Delegate delegate(nullptr);
    delegate.setFirstRowTopRadius(30);
    delegate.setLastRowBottomRadius(30);
    Roles roles = with(row("Name"), Delegate::RoleGroupFirst, true);
    roles.insert(Delegate::RoleGroupLast, true);
    const QRect rect(QPoint(20, 20), size);
    const Roles untitled = with(roles, Qt::DisplayRole, QString());
    const bool isTitled = painted(roles, QStyle::State_Selected, delegate, rect) !=
                          painted(untitled, QStyle::State_Selected, delegate, rect);
    QTEST(isTitled, "isTitled");
}

void SpotlightResultDelegateTest::painterStateIsKept()
{
    QStandardItemModel model(2, 1);
    model.setItemData(model.index(0, 0), row("Name"));
    model.setItemData(model.index(1, 0), {{Delegate::RoleIsHeader, true}});
    QImage image(400, 200, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setPen(Qt::magenta);
    painter.setBrush(Qt::cyan);
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QFont font = painter.font();
    QStyleOptionViewItem option;
    option.rect = kRow;
    for (int i = 0; i < 2; ++i) {
        Delegate(nullptr).paint(&painter, option, model.index(i, 0));
        QCOMPARE(painter.pen().color(), QColor(Qt::magenta));
        QCOMPARE(painter.brush().color(), QColor(Qt::cyan));
        QCOMPARE(painter.font(), font);
        QVERIFY(!painter.testRenderHint(QPainter::Antialiasing));
    }
}

QTEST_MAIN(SpotlightResultDelegateTest)
#include "tst_spotlightresultdelegate.moc"
