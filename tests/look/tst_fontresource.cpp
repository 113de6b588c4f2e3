// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FontResource.h"
#include "TestHome.h"

#include <QFontDatabase>
#include <QRegularExpression>
#include <QResource>
#include <QTest>

/// The fonts that are compiled into the program.
class FontResourceTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void fonts_data();
    void fonts();
    void noFont_data();
    void noFont();
    void textFontIsLoaded();
    void missingTextFontIsLogged();
};

// Not in a namespace, as the macros demand.
static void takeFontsAway()
{
    Q_CLEANUP_RESOURCE(orlimo_fonts);
}

static void giveFontsBack()
{
    Q_INIT_RESOURCE(orlimo_fonts);
}

void FontResourceTest::init()
{
    QFontDatabase::removeAllApplicationFonts();
}

void FontResourceTest::fonts_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("family");
    const QString text = QStringLiteral("Plus Jakarta Sans");
    const QString icons = QStringLiteral("Material Symbols Rounded");
    QTest::newRow("text") << "PlusJakartaSans-VariableFont_wght.ttf" << text;
    QTest::newRow("medium text") << "PlusJakartaSans-Medium.ttf" << text;
    QTest::newRow("half bold text") << "PlusJakartaSans-SemiBold.ttf" << text;
    QTest::newRow("bold text") << "PlusJakartaSans-Bold.ttf" << text;
    QTest::newRow("icons") << "MaterialSymbolsRounded-600.ttf" << icons;
    QTest::newRow("filled icons") << "MaterialSymbolsRounded-600-Filled.ttf" << icons;
}

void FontResourceTest::fonts()
{
    QFETCH(QString, file);
    QFETCH(QString, family);
    const QString path = ":/fonts/" + file;
    // In place, or each would be in memory once more.
    QCOMPARE(QResource(path).compressionAlgorithm(), QResource::NoCompression);
    const int id = addFontResource(path);
    QVERIFY(id != -1);
    const QStringList families = QFontDatabase::applicationFontFamilies(id);
    QVERIFY(!families.isEmpty());
    for (const QString& name : families) // a weight may count as one of its own
        QVERIFY2(name.startsWith(family), qPrintable(name));
}

void FontResourceTest::noFont_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("missing") << ":/fonts/missing.ttf";
    QTest::newRow("a directory") << ":/fonts";
    QTest::newRow("nothing") << "";
}

void FontResourceTest::noFont()
{
    QFETCH(QString, path);
    QCOMPARE(addFontResource(path), -1);
}

namespace
{

/// Of the fonts that have been loaded since the others were taken away. What the system has by
/// itself, which may be the same ones, doesn't count.
QStringList loadedFamilies()
{
    constexpr int kMoreThanThereAre = 20;
    QStringList families;
    for (int id = 0; id < kMoreThanThereAre; ++id)
        families += QFontDatabase::applicationFontFamilies(id);
    return families;
}

} // namespace

void FontResourceTest::textFontIsLoaded()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
    QCOMPARE(loadedFamilies(), QStringList());
    loadTextFont();
    QVERIFY(loadedFamilies().contains("Plus Jakarta Sans"));
}

void FontResourceTest::missingTextFontIsLogged()
{
    takeFontsAway();
    QTest::ignoreMessage(
        QtWarningMsg,
        "Gagal memuat font Plus Jakarta Sans, aplikasi akan fallback ke font sistem.");
    loadTextFont();
    giveFontsBack();
    QCOMPARE(loadedFamilies(), QStringList());
}

QTEST_MAIN(FontResourceTest)
#include "tst_fontresource.moc"
