// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "IconHelper.h"
#include "Pixels.h"
#include "TestHome.h"

#include <QFile>
#include <QFontDatabase>
#include <QGlyphRun>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QPushButton>
#include <QRawFont>
#include <QRegularExpression>
#include <QTest>
#include <QTextLayout>

#include <array>
#include <utility>

namespace
{

constexpr char kRegularFile[] = ":/fonts/MaterialSymbolsRounded-600.ttf";
constexpr char kFilledFile[] = ":/fonts/MaterialSymbolsRounded-600-Filled.ttf";
constexpr char kTextFile[] = ":/fonts/PlusJakartaSans-Bold.ttf";

QString textFamily()
{
    static const int id = QFontDatabase::addApplicationFont(QString::fromLatin1(kTextFile));
    return QFontDatabase::applicationFontFamilies(id).value(0);
}

QFont textFont(int px)
{
    QFont font(textFamily());
    font.setPixelSize(px);
    return font;
}

/// The padding on the four sides, in the order top, bottom, left, right.
QList<int> paddingOf(const QString& sheet)
{
    static const QRegularExpression form(
        QStringLiteral("^padding-top: (\\d+)px; padding-bottom: (\\d+)px; "
                       "padding-left: (\\d+)px; padding-right: (\\d+)px;$"));
    const QRegularExpressionMatch match = form.match(sheet);
    QList<int> sides;
    for (int i = 1; match.hasMatch() && i <= 4; ++i)
        sides << match.captured(i).toInt();
    return sides;
}

} // namespace

class IconHelperTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void fontsAreLoadedByTheFirstUse();
    void fontsAreLoadedOnce();
    void missingFontsFallBack();
    void glyphFontIsUnhinted();
    void constantsCarryTheFontsOwnNames_data();
    void constantsCarryTheFontsOwnNames();
    void glyphToken_data();
    void glyphToken();
    void isGlyphToken_data();
    void isGlyphToken();
    void hasCustomImage();
    void codepointForType_data();
    void codepointForType();
    void glyphForItem_data();
    void glyphForItem();
    void glyphText_data();
    void glyphText();
    void pickableGlyphs();
    void glyphIconIsCentredAndColoured_data();
    void glyphIconIsCentredAndColoured();
    void glyphIconAtTwiceTheResolution();
    void glyphIconOfAnEmptyCanvasIsNull();
    void drawGlyphCenteredPutsInkOnThePoint_data();
    void drawGlyphCenteredPutsInkOnThePoint();
    void drawGlyphCenteredKeepsThePainterState();
    void drawGlyphCenteredWithoutInk();
    void drawGlyphUsesSizeAndColour();
    void drawGlyphKeepsThePainterState();
    void centeringPadCentresInk_data();
    void centeringPadCentresInk();
    void centeringPadIsBoundedByTheRoom_data();
    void centeringPadIsBoundedByTheRoom();
};

void IconHelperTest::fontsAreLoadedByTheFirstUse()
{
    QVERIFY(IconHelper::regularFontFamily.isEmpty());
    QVERIFY(IconHelper::filledFontFamily.isEmpty());
    const QFont font = IconHelper::glyphFont(20);
    QVERIFY(IconHelper::regularFontFamily.startsWith(QStringLiteral("Material Symbols Rounded")));
    QVERIFY(IconHelper::filledFontFamily.startsWith(QStringLiteral("Material Symbols Rounded")));
    QVERIFY(IconHelper::regularFontFamily != IconHelper::filledFontFamily);
    QCOMPARE(font.family(), IconHelper::regularFontFamily);
}

void IconHelperTest::fontsAreLoadedOnce()
{
    IconHelper::initFonts();
    const QString regular = std::exchange(IconHelper::regularFontFamily, QStringLiteral("Kept"));
    const QString filled = std::exchange(IconHelper::filledFontFamily, QString());
    IconHelper::initFonts();
    const QString kept = std::exchange(IconHelper::regularFontFamily, regular);
    QCOMPARE(kept, QStringLiteral("Kept"));
    QCOMPARE(IconHelper::filledFontFamily, filled); // each font is looked at on its own
}

void IconHelperTest::missingFontsFallBack()
{
    IconHelper::initFonts();
    const QString regular = std::exchange(IconHelper::regularFontFamily, QString());
    const QString filled = std::exchange(IconHelper::filledFontFamily, QString());
    Q_CLEANUP_RESOURCE(orlimo_fonts);
    const bool isGone = !QFile::exists(QString::fromLatin1(kRegularFile));
    IconHelper::initFonts();
    Q_INIT_RESOURCE(orlimo_fonts);
    const QString regularFallback = std::exchange(IconHelper::regularFontFamily, regular);
    const QString filledFallback = std::exchange(IconHelper::filledFontFamily, filled);
    QVERIFY(isGone);
    QCOMPARE(regularFallback, QStringLiteral("Segoe MDL2 Assets"));
    QCOMPARE(filledFallback, QStringLiteral("Segoe MDL2 Assets"));
}

void IconHelperTest::glyphFontIsUnhinted()
{
    const QFont font = IconHelper::glyphFont(17);
    QCOMPARE(font.pixelSize(), 17);
    QCOMPARE(font.hintingPreference(), QFont::PreferNoHinting);
}

void IconHelperTest::constantsCarryTheFontsOwnNames_data()
{
    QTest::addColumn<uint>("constant");
    QTest::addColumn<uint>("code");
    struct Row
    {
        const char* name;
        uint constant;
        uint code;
    };
    static constexpr std::array rows{
        Row{"add", Glyph::Add, 0xE145},
        Row{"add_photo_alternate", Glyph::AddPhotoAlternate, 0xE43E},
        Row{"apps", Glyph::Apps, 0xE5C3},
        Row{"bookmark", Glyph::Bookmark, 0xE866},
        Row{"bookmark_add", Glyph::BookmarkAdd, 0xE598},
        Row{"bookmarks", Glyph::Bookmarks, 0xE98B},
        Row{"calculate", Glyph::Calculate, 0xEA5F},
        Row{"check", Glyph::Check, 0xE5CA},
        Row{"close", Glyph::Close, 0xE5CD},
        Row{"code", Glyph::Code, 0xE86F},
        Row{"content_copy", Glyph::ContentCopy, 0xE14D},
        Row{"create_new_folder", Glyph::CreateNewFolder, 0xE2CC},
        Row{"database", Glyph::Database, 0xF20E},
        Row{"delete", Glyph::Delete, 0xE92E},
        Row{"description", Glyph::Description, 0xE873},
        Row{"desktop_windows", Glyph::DesktopWindows, 0xE30C},
        Row{"done", Glyph::Done, 0xE876},
        Row{"drive_file_move", Glyph::DriveFileMove, 0xE9A1},
        Row{"edit", Glyph::Edit, 0xF097},
        Row{"filter_list", Glyph::FilterList, 0xE152},
        Row{"folder", Glyph::Folder, 0xE2C7},
        Row{"folder_copy", Glyph::FolderCopy, 0xEBBD},
        Row{"link", Glyph::Link, 0xE250},
        Row{"more_vert", Glyph::MoreVert, 0xE5D4},
        Row{"movie", Glyph::Movie, 0xE684},
        Row{"palette", Glyph::Palette, 0xE40A},
        Row{"reorder", Glyph::Reorder, 0xE8FE},
        Row{"search", Glyph::Search, 0xEF7A},
        Row{"settings", Glyph::Settings, 0xE8B8},
        Row{"space_dashboard", Glyph::SpaceDashboard, 0xE66B},
        Row{"sports_esports", Glyph::SportsEsports, 0xEA28},
        Row{"star", Glyph::Star, 0xF09A},
        Row{"swap_horiz", Glyph::SwapHoriz, 0xE8D4},
        Row{"text_snippet", Glyph::TextSnippet, 0xF1C6},
        Row{"topic", Glyph::Topic, 0xF1C4},
        Row{"tune", Glyph::Tune, 0xE429},
        Row{"work", Glyph::Work, 0xE943},
    };
    for (const Row& row : rows)
        QTest::newRow(row.name) << row.constant << row.code;
}

void IconHelperTest::constantsCarryTheFontsOwnNames()
{
    QFETCH(const uint, constant);
    QFETCH(const uint, code);
    QCOMPARE(constant, code);
    const QRawFont regular(QString::fromLatin1(kRegularFile), 24);
    const QRawFont filled(QString::fromLatin1(kFilledFile), 24);
    QVERIFY(regular.supportsCharacter(code));
    QVERIFY(filled.supportsCharacter(code));

    // The font turns a glyph's name, typed as text, into that glyph.
    QTextLayout name(QString::fromLatin1(QTest::currentDataTag()), IconHelper::glyphFont(24));
    name.beginLayout();
    name.createLine();
    name.endLayout();
    QList<quint32> named;
    for (const QGlyphRun& run : name.glyphRuns())
        named += run.glyphIndexes();
    QCOMPARE(named, regular.glyphIndexesForString(IconHelper::glyphText(code)));
}

void IconHelperTest::glyphToken_data()
{
    QTest::addColumn<uint>("code");
    QTest::addColumn<QString>("token");
    QTest::newRow("link") << 0xE250U << "glyph:e250";
    QTest::newRow("lower case") << 0xEBBDU << "glyph:ebbd";
    QTest::newRow("no padding") << 0x2AU << "glyph:2a";
    QTest::newRow("none") << 0U << "glyph:0";
    QTest::newRow("beyond the basic plane") << 0x1F600U << "glyph:1f600";
}

void IconHelperTest::glyphToken()
{
    QFETCH(const uint, code);
    QTEST(IconHelper::glyphToken(code), "token");
    QVERIFY(IconHelper::isGlyphToken(IconHelper::glyphToken(code)));
    QCOMPARE(IconHelper::glyphCode(IconHelper::glyphToken(code)), code);
}

void IconHelperTest::isGlyphToken_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isToken");
    QTest::newRow("token") << "glyph:e250" << true;
    QTest::newRow("prefix alone") << "glyph:" << true;
    QTest::newRow("malformed tail") << "glyph:folder" << true;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("capitals") << "GLYPH:E250" << false;
    QTest::newRow("one capital") << "Glyph:e250" << false;
    QTest::newRow("leading blank") << " glyph:e250" << false;
    QTest::newRow("without the colon") << "glyph" << false;
    QTest::newRow("path") << "/pictures/glyph:e250" << false;
}

void IconHelperTest::isGlyphToken()
{
    QCOMPARE(IconHelper::glyphScheme(), QStringLiteral("glyph:"));
    QFETCH(const QString, text);
    QTEST(IconHelper::isGlyphToken(text), "isToken");
}

void IconHelperTest::hasCustomImage()
{
    const QString file = TestHome::writeDataFile(QStringLiteral("note.txt"), "no image");
    QVERIFY(IconHelper::hasCustomImage(file)); // whether it can be decoded shows when it is drawn
    QVERIFY(IconHelper::hasCustomImage(TestHome::dataDir()));
    QVERIFY(!IconHelper::hasCustomImage(file + QStringLiteral(".gone")));
    QVERIFY(!IconHelper::hasCustomImage(QString()));
    QVERIFY(!IconHelper::hasCustomImage(QStringLiteral("glyph:e250")));
    QVERIFY(!IconHelper::hasCustomImage(QStringLiteral("GLYPH:E250")));
}

void IconHelperTest::codepointForType_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<uint>("code");
    QTest::newRow("URL") << "URL" << 0xE250U;
    QTest::newRow("Application") << "Application" << 0xE30CU;
    QTest::newRow("App") << "App" << 0xE30CU;
    QTest::newRow("File") << "File" << 0xE873U;
    QTest::newRow("Bulk") << "Bulk" << 0xEBBDU;
    QTest::newRow("Snippet") << "Snippet" << 0xF1C6U;
    QTest::newRow("empty") << "" << 0xE250U;
    QTest::newRow("unknown") << "Document" << 0xE250U;
    QTest::newRow("without a glyph of its own") << "ShellItem" << 0xE250U;
    QTest::newRow("other case") << "file" << 0xE250U;
    QTest::newRow("blank at the end") << "Bulk " << 0xE250U;
}

void IconHelperTest::codepointForType()
{
    QFETCH(const QString, type);
    QFETCH(const uint, code);
    QCOMPARE(IconHelper::codepointForType(type), code);
    QCOMPARE(IconHelper::glyphForType(type), QString(QChar(ushort(code))));
}

void IconHelperTest::glyphForItem_data()
{
    QTest::addColumn<QString>("iconPath");
    QTest::addColumn<uint>("chosen"); // 0 if the type decides
    QTest::newRow("no choice") << "" << 0U;
    QTest::newRow("token") << "glyph:e145" << 0xE145U;
    QTest::newRow("digits in capitals") << "glyph:E145" << 0xE145U;
    QTest::newRow("token in capitals") << "GLYPH:e145" << 0U;
    QTest::newRow("code zero") << "glyph:0" << 0U;
    QTest::newRow("no code") << "glyph:" << 0U;
    QTest::newRow("no number") << "glyph:folder" << 0U;
    QTest::newRow("number and more") << "glyph:e145!" << 0U;
    QTest::newRow("negative") << "glyph:-1" << 0U;
    QTest::newRow("beyond the basic plane") << "glyph:1f600" << 0x1F600U;
    QTest::newRow("last codepoint") << "glyph:10ffff" << 0x10FFFFU;
    QTest::newRow("beyond the last") << "glyph:110000" << 0U;
    QTest::newRow("largest number") << "glyph:ffffffff" << 0U;
    QTest::newRow("overflow") << "glyph:100000001" << 0U;
    QTest::newRow("first surrogate") << "glyph:d800" << 0U;
    QTest::newRow("last surrogate") << "glyph:dfff" << 0U;
    QTest::newRow("path") << "/nowhere/star.png" << 0U;
}

void IconHelperTest::glyphForItem()
{
    QFETCH(const QString, iconPath);
    QFETCH(const uint, chosen);
    const uint wanted = chosen != 0 ? chosen : 0xE873U;
    QCOMPARE(IconHelper::glyphCode(iconPath), chosen);
    QCOMPARE(IconHelper::codepointForItem(iconPath, QStringLiteral("File")), wanted);
    QCOMPARE(IconHelper::glyphForItem(iconPath, QStringLiteral("File")).toUcs4(),
             QList<uint>{wanted});
}

void IconHelperTest::glyphText_data()
{
    QTest::addColumn<uint>("code");
    QTest::addColumn<QString>("text");
    QTest::newRow("glyph") << 0xE145U << QString(QChar(0xE145));
    QTest::newRow("pair") << 0x1F600U << QString::fromUtf8("\xF0\x9F\x98\x80");
    QTest::newRow("none") << 0U << QString();
    QTest::newRow("surrogate") << 0xDC00U << QString();
    QTest::newRow("too large") << 0x110000U << QString();
}

void IconHelperTest::glyphText()
{
    QFETCH(const uint, code);
    QTEST(IconHelper::glyphText(code), "text");
}

void IconHelperTest::pickableGlyphs()
{
    const QList<unsigned int> palette{0xE2C7, 0xE40A, 0xE429, 0xF20E, 0xE943,
                                      0xEA28, 0xE86F, 0xE684, 0xE66B, 0xF09A,
                                      0xE250, 0xE30C, 0xE873, 0xEBBD, 0xF1C6};
    QCOMPARE(IconHelper::pickableGlyphs(), palette);
}

void IconHelperTest::glyphIconIsCentredAndColoured_data()
{
    QTest::addColumn<int>("canvasSize");
    QTest::addColumn<int>("fontSize");
    QTest::newRow("tray") << 64 << 48;
    QTest::newRow("odd canvas") << 63 << 48;
    QTest::newRow("small") << 32 << 26;
}

void IconHelperTest::glyphIconIsCentredAndColoured()
{
    QFETCH(const int, canvasSize);
    QFETCH(const int, fontSize);
    const double dpr = qEnvironmentVariable("QT_SCALE_FACTOR", QStringLiteral("1")).toDouble();
    QCOMPARE(qApp->devicePixelRatio(), dpr);

    const QIcon icon = IconHelper::getGlyphIcon(QChar(ushort(Glyph::Add)), canvasSize, fontSize,
                                                QStringLiteral("#0284c7"));
    const QSize side(qRound(canvasSize * dpr), qRound(canvasSize * dpr));
    const QImage image = icon.pixmap(QSize(canvasSize, canvasSize), dpr).toImage();
    QCOMPARE(image.size(), side);
    QCOMPARE(image.devicePixelRatio(), dpr);

    QImage onWhite = Pixels::canvas(side);
    QPainter painter(&onWhite);
    painter.drawImage(onWhite.rect(), image);
    painter.end();
    const QRect ink = Pixels::inkBox(onWhite);
    QVERIFY(Pixels::isCentredOn(ink, QRectF(onWhite.rect()).center()));
    QVERIFY(ink.width() > fontSize * dpr * 0.4);
    QVERIFY(ink.width() < fontSize * dpr);
    QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
    QCOMPARE(image.pixelColor(side.width() / 2, side.height() / 2), QColor(0x02, 0x84, 0xc7));
}

void IconHelperTest::glyphIconAtTwiceTheResolution()
{
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QStringLiteral("2"));
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("glyphIconIsCentredAndColoured")});
    QVERIFY(child.waitForFinished(60000));
    const QByteArray output = child.readAll();
    QVERIFY2(child.exitStatus() == QProcess::NormalExit && child.exitCode() == 0,
             output.constData());
    QVERIFY2(output.contains("glyphIconIsCentredAndColoured(tray)"), output.constData());
}

void IconHelperTest::glyphIconOfAnEmptyCanvasIsNull()
{
    QVERIFY(IconHelper::getGlyphIcon(QChar(ushort(Glyph::Add)), 0, 48, QStringLiteral("#000000"))
                .isNull());
}

void IconHelperTest::drawGlyphCenteredPutsInkOnThePoint_data()
{
    QTest::addColumn<bool>("isIcon");
    QTest::addColumn<QString>("glyph");
    QTest::addColumn<int>("px");
    for (const uint code : IconHelper::pickableGlyphs()) {
        QTest::addRow("U+%X", code) << true << IconHelper::glyphText(code) << 90;
        QTest::addRow("U+%X, small", code) << true << IconHelper::glyphText(code) << 13;
    }
    // Ink far from the middle of the advance box and of the line.
    QTest::newRow("comma") << false << "," << 90;
    QTest::newRow("circumflex") << false << "^" << 90;
    QTest::newRow("two letters") << false << "gj" << 60;
}

void IconHelperTest::drawGlyphCenteredPutsInkOnThePoint()
{
    QFETCH(const bool, isIcon);
    QFETCH(const QString, glyph);
    QFETCH(const int, px);
    for (const QPointF point : {QPointF(60, 60), QPointF(52.5, 71.25)}) {
        QImage image = Pixels::canvas({120, 120});
        QPainter painter(&image);
        painter.setFont(isIcon ? IconHelper::glyphFont(px) : textFont(px));
        painter.setPen(Qt::darkGreen);
        IconHelper::drawGlyphCentered(&painter, point, glyph);
        painter.end();
        QVERIFY(Pixels::isCentredOn(Pixels::inkBox(image), point));
    }
}

void IconHelperTest::drawGlyphCenteredKeepsThePainterState()
{
    const QString glyph = IconHelper::glyphText(Glyph::Add);
    const QBrush brush(Qt::red);
    QList<QImage> images;
    for (const int penWidth : {0, 5}) {
        QImage image = Pixels::canvas({40, 40});
        QPainter painter(&image);
        const QPen pen(QColor(10, 20, 200), penWidth);
        painter.setFont(IconHelper::glyphFont(30));
        painter.setPen(pen);
        painter.setBrush(brush);
        IconHelper::drawGlyphCentered(&painter, {20, 20}, glyph);
        QCOMPARE(painter.pen(), pen);
        QCOMPARE(painter.brush(), brush);
        QVERIFY(!painter.testRenderHint(QPainter::Antialiasing));
        images << image;
    }
    QCOMPARE(images[0].pixelColor(20, 20), QColor(10, 20, 200)); // the pen's colour, but not...
    QCOMPARE(images[1], images[0]);                              // ...an outline in its width
}

void IconHelperTest::drawGlyphCenteredWithoutInk()
{
    IconHelper::drawGlyphCentered(nullptr, {0, 0}, IconHelper::glyphText(Glyph::Add));
    const QImage before = Pixels::canvas({40, 40});
    QImage image = before;
    QPainter painter(&image);
    painter.setFont(textFont(30));
    IconHelper::drawGlyphCentered(&painter, {20, 20}, QString());
    IconHelper::drawGlyphCentered(&painter, {20, 20}, QStringLiteral(" "));
    painter.end();
    QCOMPARE(image, before);
}

void IconHelperTest::drawGlyphUsesSizeAndColour()
{
    const QColor color(120, 0, 60);
    QList<int> widths;
    for (const int px : {32, 96}) {
        QImage image = Pixels::canvas({100, 100});
        QPainter painter(&image);
        IconHelper::drawGlyph(&painter, {50, 50}, Glyph::Add, px, color);
        painter.end();
        QVERIFY(Pixels::isCentredOn(Pixels::inkBox(image), {50, 50}));
        QCOMPARE(image.pixelColor(50, 50), color);
        widths << Pixels::inkBox(image).width();
    }
    QVERIFY(qAbs(widths.last() - 3 * widths.first()) <= 6);

    IconHelper::drawGlyph(nullptr, {50, 50}, Glyph::Add, 20, color);
    const QImage before = Pixels::canvas({100, 100});
    QImage image = before;
    QPainter painter(&image);
    IconHelper::drawGlyph(&painter, {50, 50}, 0, 20, color);
    IconHelper::drawGlyph(&painter, {50, 50}, 0xFFFFFFFF, 20, color);
    IconHelper::drawGlyph(&painter, {50, 50}, Glyph::Add, 0, color);
    IconHelper::drawGlyph(&painter, {50, 50}, Glyph::Add, -4, color);
    painter.end();
    QCOMPARE(image, before);
}

void IconHelperTest::drawGlyphKeepsThePainterState()
{
    QImage image = Pixels::canvas({40, 40});
    QPainter painter(&image);
    const QFont font = textFont(11);
    painter.setFont(font);
    painter.setPen(Qt::red);
    IconHelper::drawGlyph(&painter, {20, 20}, Glyph::Add, 20, Qt::blue);
    QCOMPARE(painter.font().family(), font.family());
    QCOMPARE(painter.font().pixelSize(), 11);
    QCOMPARE(painter.pen().color(), QColor(Qt::red));
}

void IconHelperTest::centeringPadCentresInk_data()
{
    QTest::addColumn<QString>("glyph");
    // Only ink that reaches the baseline: Qt's tight rectangle takes it in even without ink there.
    QTest::newRow("capital") << "L";
    QTest::newRow("low") << ".";
    QTest::newRow("high") << QString(QChar(0xC9)); // capital E with an accent
    QTest::newRow("descender") << "j";
}

void IconHelperTest::centeringPadCentresInk()
{
    QFETCH(const QString, glyph);
    const QSize box(96, 96);
    const QFont font = textFont(40);
    const QString pad = IconHelper::glyphCenteringPad(font, glyph, box);
    const QList<int> sides = paddingOf(pad);
    QCOMPARE(sides.size(), 4);
    QVERIFY2(sides[0] == 0 || sides[1] == 0, qPrintable(pad));
    QVERIFY2(sides[2] == 0 || sides[3] == 0, qPrintable(pad));

    QPushButton button(glyph);
    button.setFont(font);
    button.setStyleSheet(
        QStringLiteral("QPushButton { background-color: white; color: black; border: none; "
                       "outline: 0; %1 }")
            .arg(pad));
    button.setFixedSize(box);
    const QRect ink = Pixels::inkBox(button.grab().toImage());
    QVERIFY2(Pixels::isCentredOn(ink, QRectF(QPointF(), box).center()), qPrintable(pad));
}

void IconHelperTest::centeringPadIsBoundedByTheRoom_data()
{
    QTest::addColumn<QSize>("box");
    QTest::addColumn<int>("maxVertical");
    QTest::addColumn<int>("maxHorizontal");
    const QFontMetricsF metrics(textFont(40));
    const int height = qCeil(metrics.height());
    const int advance = qCeil(metrics.horizontalAdvance(QLatin1Char('.')));
    QTest::newRow("smaller than the font") << QSize(2, 2) << 0 << 0;
    QTest::newRow("empty") << QSize(0, 0) << 0 << 0;
    QTest::newRow("low") << QSize(200, height - 1) << 0 << 200;
    QTest::newRow("narrow") << QSize(advance - 1, 200) << 200 << 0;
    const int room = qRound(height + 6 - metrics.height());
    QTest::newRow("little room") << QSize(200, height + 6) << room << 200;
}

void IconHelperTest::centeringPadIsBoundedByTheRoom()
{
    QFETCH(const QSize, box);
    QFETCH(const int, maxVertical);
    QFETCH(const int, maxHorizontal);
    const QList<int> sides =
        paddingOf(IconHelper::glyphCenteringPad(textFont(40), QStringLiteral("."), box));
    QCOMPARE(sides.size(), 4);
    QCOMPARE(sides[0], 0); // the ink lies low, so only the bottom can be padded
    QVERIFY(sides[1] <= maxVertical);
    QVERIFY(sides[2] <= maxHorizontal && sides[3] <= maxHorizontal);
    if (maxVertical > 0)
        QVERIFY(sides[1] > 0);
}

QTEST_MAIN(IconHelperTest)
#include "tst_iconhelper.moc"
