// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CardHeader.h"
#include "GlyphWidgets.h"
#include "HomePageFixture.h"
#include "Pixels.h"
#include "WebQuery.h"

#include <QLayout>
#include <QScrollBar>
#include <QTextEdit>

/// What the parts of the home page look like, and how list and strip are set.
class HomeViewLookTest : public HomePageFixture
{
    Q_OBJECT

private slots:
    void sheets_data();
    void sheets();
    void backdropDims();
    void glyphs();
    void stripIsSet();
    void listIsSet();
    void listFollowsItsViewport();
    void selectedPillKeepsItsDistance();
    void emptyPage();
    void previewPages();
};

namespace
{

QColor mixed(const QColor& over, qreal part, const QColor& under)
{
    const auto channel = [part](int a, int b) { return qRound(part * a + (1 - part) * b); };
    return QColor(channel(over.red(), under.red()), channel(over.green(), under.green()),
                  channel(over.blue(), under.blue()));
}

QString band(const QString& fill, int top, int bottom)
{
    return QStringLiteral("background-color: %1; border: none; border-top-left-radius: %2px; "
                          "border-top-right-radius: %2px; border-bottom-left-radius: %3px; "
                          "border-bottom-right-radius: %3px;")
        .arg(fill, QString::number(top), QString::number(bottom));
}

} // namespace

void HomeViewLookTest::sheets_data()
{
    QTest::addColumn<QString>("sheet"); // %1 its selector
    Theme::loadSettings();
    const auto sheet = [](const char* name, const QString& rules) { QTest::newRow(name) << rules; };
    const QString shell = Theme::shellBg();
    const QString frame = QStringLiteral("QFrame#%1 { ");
    sheet("homeHeader", frame + band(shell, 24, 0) + " }");
    sheet("chromeStripBase", "QWidget#%1 { " + band(shell, 0, 24) + " }");
    sheet("leftCard", frame + band(Theme::panelBg(), 16, 24) + " }");
    const QString round =
        QStringLiteral("background-color: %1; border: none; border-radius: %2px; }");
    sheet("rightCard", frame + round.arg(Theme::panelBg(), "24"));
    sheet("searchContainer", frame + round.arg(Theme::boxBg(), "16"));
    sheet("gridOverlayBackdrop", "QPushButton#%1 { " + round.arg("rgba(0, 0, 0, 90)", "24"));
    for (const char* button : {"homeAddBtn", "homeTemplateBtn", "homeSettingsBtn"})
        sheet(button, Theme::iconBtnStyle(Theme::colors(), "transparent") +
                          "QPushButton#%1 { border-radius: 16px; }");
    sheet("searchInput", QStringLiteral("QLineEdit { background: transparent; border: none; color: "
                                        "%1; font-size: 14px; font-weight: 600; }")
                             .arg(Theme::colors().onSurface));
    sheet("itemList", "QListWidget { background: transparent; border: none; outline: 0; }");
    sheet("emptyAddBtn", Theme::primaryBtnStyle(Theme::colors()));
    sheet("emptyWebBtn", Theme::primaryBtnStyle(Theme::colors()));
    sheet("emptyWebAltBtn", Theme::pillSecondaryStyle(Theme::colors()));
}

void HomeViewLookTest::sheets()
{
    QFETCH(QString, sheet);
    open();
    const char* name = QTest::currentDataTag();
    QCOMPARE(named(name)->styleSheet(), sheet.replace("%1", QLatin1String(name)));
}

void HomeViewLookTest::backdropDims()
{
    open();
    const QImage before = home()->grab().toImage();
    home()->setDialogBackdropVisible(true);
    const QImage after = home()->grab().toImage();
    for (const QPoint& place : {QPoint(300, 140), QPoint(300, 10), QPoint(4, 400)}) {
        const QColor dimmed = mixed(Qt::black, 90 / 255.0, before.pixelColor(place));
        QVERIFY2(Pixels::isNear(after.pixelColor(place), dimmed, 1),
                 qPrintable(after.pixelColor(place).name()));
    }
    QCOMPARE(after.pixelColor(1, 1), before.pixelColor(1, 1)); // radius 24
    QCOMPARE(backdrop()->cursor().shape(), Qt::PointingHandCursor);
}

void HomeViewLookTest::glyphs()
{
    open();
    auto* magnifier = named("searchContainer")->findChild<GlyphLabel*>();
    QVERIFY(magnifier);
    QCOMPARE(magnifier->size(), QSize(13, 13));
    QVERIFY(magnifier->testAttribute(Qt::WA_TransparentForMouseEvents));
    GlyphLabel likeness;
    likeness.setFixedSize(13, 13);
    likeness.setGlyph(0xEF7A, 11, Theme::colors().onSurfaceVariant);
    QCOMPARE(Pixels::imageOf(*magnifier), Pixels::imageOf(likeness));

    const QList<std::pair<GlyphButton*, uint>> buttons{{home()->addButton(), 0xE145},
                                                       {home()->templateButton(), 0xE98B},
                                                       {home()->settingsButton(), 0xE8B8}};
    for (const auto& [button, glyph] : buttons) {
        GlyphButton shown;
        shown.setObjectName(button->objectName());
        shown.setStyleSheet(button->styleSheet());
        shown.setFixedSize(32, 32);
        shown.setGlyph(glyph, 20, getItemTheme().onSurface);
        QCOMPARE(Pixels::imageOf(*button), Pixels::imageOf(shown));
        // Neither of them looks another way under the pointer.
        home()->updateHomeAddBtnIcon(true);
        home()->updateHomeTemplateBtnIcon(true);
        home()->updateHomeSettingsBtnIcon(true);
        QCOMPARE(Pixels::imageOf(*button), Pixels::imageOf(shown));
    }
}

void HomeViewLookTest::stripIsSet()
{
    open();
    const QScrollArea* area = home()->categoryStrip();
    QVERIFY(area->widgetResizable());
    QCOMPARE(area->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(area->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(area->frameShape(), QFrame::NoFrame);
    QCOMPARE(area->minimumHeight(), 28);
    QCOMPARE(area->maximumHeight(), 28);
    QCOMPARE(area->widget()->objectName(), "catContainer");
    QCOMPARE(area->widget()->layout()->contentsMargins(), QMargins());
    QCOMPARE(area->widget()->layout()->spacing(), 8);
}

void HomeViewLookTest::listIsSet()
{
    open();
    QCOMPARE(list()->editTriggers(), QAbstractItemView::NoEditTriggers);
    QCOMPARE(list()->flow(), QListView::LeftToRight);
    QVERIFY(list()->isWrapping());
    QCOMPARE(list()->resizeMode(), QListView::Adjust);
    QCOMPARE(list()->movement(), QListView::Static);
    QCOMPARE(list()->spacing(), 0);
    QCOMPARE(list()->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(named("listStack")->sizePolicy(),
             QSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred));
    QCOMPARE(named("listStack")->minimumWidth(), 0);
    QCOMPARE(named("leftCard")->layout()->spacing(), 8);
}

void HomeViewLookTest::listFollowsItsViewport()
{
    open();
    QTRY_COMPARE(list()->gridSize(), QSize(176, 132));
    list()->resize(301, 900);
    QCOMPARE(list()->gridSize().width(), 100); // a third of what is left of it, without being asked
}

void HomeViewLookTest::selectedPillKeepsItsDistance()
{
    constexpr int kDistance = 24; // px from the edge that it is scrolled to
    LauncherData document = standardDocument();
    for (int i = 0; i < 40; ++i)
        document.categories.append(QStringLiteral("Section %1").arg(i));
    open(document);
    const auto place = [this] {
        const GlyphButton* pill = home()->selectedCategoryButton();
        return QRect(pill->mapTo(strip(), QPoint(0, 0)), pill->size());
    };
    const auto select = [this](const char* section) {
        model()->setCurrentCategory(section);
        home()->refreshCategories(-1, false);
    };
    select("Section 20");
    QTRY_COMPARE(strip()->width() - 1 - place().right(), kDistance);
    select("Section 10");
    QTRY_COMPARE(place().left(), kDistance);
}

void HomeViewLookTest::emptyPage()
{
    open();
    searchField()->setText("zzz");
    QWidget* page = named<QStackedWidget>("listStack")->currentWidget();
    QCOMPARE(page->layout()->spacing(), 8);
    const auto* text = page->findChild<QLabel*>();
    QCOMPARE(text->styleSheet(),
             QStringLiteral("color: %1; font-size: 13px; letter-spacing: 0.3px; border: none;")
                 .arg(Theme::colors().onSurfaceVariant));
    QCOMPARE(text->alignment(), Qt::AlignCenter);
    QVERIFY(text->wordWrap());
    auto* badge = page->findChild<GlyphBadge*>();
    GlyphBadge likeness;
    likeness.setFixedSize(36, 36);
    likeness.setItem({}, "Document");
    QCOMPARE(Pixels::imageOf(*badge), Pixels::imageOf(likeness));
    for (const char* name : {"emptyAddBtn", "emptyWebBtn", "emptyWebAltBtn"})
        QCOMPARE(named(name)->cursor().shape(), Qt::PointingHandCursor);
}

void HomeViewLookTest::previewPages()
{
    open();
    const ColorTokens c = Theme::colors();
    const ColorTokens tones = getItemTheme();
    const QMargins pad(20, 16, 20, 16);
    const QWidget* empty = home()->previewStack()->widget(HomeView::PagePreviewEmpty);
    QCOMPARE(empty->layout()->contentsMargins(), pad);
    QCOMPARE(empty->layout()->alignment(), Qt::AlignCenter);
    const auto* hint = empty->findChild<QLabel*>();
    QCOMPARE(hint->alignment(), Qt::AlignCenter);
    QCOMPARE(hint->styleSheet(), Theme::textStyle(c.onSurfaceVariant, "16px", Theme::Weight::Bold));

    const QWidget* detail = home()->previewStack()->widget(HomeView::PagePreviewDetail);
    QCOMPARE(detail->layout()->contentsMargins(), pad);
    QCOMPARE(detail->layout()->spacing(), 12);
    QCOMPARE(detail->findChild<GlyphBadge*>()->size(), QSize(38, 38));
    const auto labels = detail->findChildren<QLabel*>();
    QCOMPARE(labels.size(), 2);
    QVERIFY(labels.at(0)->wordWrap());
    QCOMPARE(labels.at(0)->styleSheet(),
             QStringLiteral("color: %1; font-size: 15px; font-weight: 700; border: none; "
                            "background: transparent;")
                 .arg(tones.onSurface));
    QCOMPARE(labels.at(1)->sizePolicy(), QSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed));
    QCOMPARE(labels.at(1)->styleSheet(),
             QStringLiteral("background-color: %1; color: %2; font-size: 10px; font-weight: 700; "
                            "border: none; border-radius: 8px; padding: 2px 8px;")
                 .arg(tones.container, tones.onContainer));
    const auto* value = detail->findChild<QTextEdit*>();
    QVERIFY(value->isReadOnly());
    QCOMPARE(value->frameShape(), QFrame::NoFrame);
    QCOMPARE(value->styleSheet(),
             QStringLiteral("QTextEdit { background-color: %1; border: none; border-radius: 20px; "
                            "padding: 18px;color: %2; font-size: 14px; letter-spacing: 0.3px; "
                            "line-height: 1.6; }")
                 .arg(tones.surfaceContainerHighest, tones.onSurfaceVariant));
}

QTEST_MAIN(HomeViewLookTest)
#include "tst_homeviewlook.moc"
