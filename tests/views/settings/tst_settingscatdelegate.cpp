// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FontResource.h"
#include "IconHelper.h"
#include "Pixels.h"
#include "SettingsCatDelegate.h"
#include "TestHome.h"
#include "Theme.h"

#include <QStandardItemModel>
#include <QTest>

namespace
{

constexpr int kGap = 12;
const QRect kRow(0, 0, 240, 50);

} // namespace

class SettingsCatDelegateTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase() { loadTextFont(); }
    void init() { Theme::forceTheme = 1; }
    void height();
    void paintsTheStates_data();
    void paintsTheStates();
    void placesThings();
    void sizesAndWeights_data();
    void sizesAndWeights();
    void withoutAGlyph();
    void longNamesEndInThePill();

private:
    static QImage paint(QStyle::State state, const QString& text, uint glyph);
};

QImage SettingsCatDelegateTest::paint(QStyle::State state, const QString& text, uint glyph)
{
    QStandardItemModel model(1, 1);
    const QModelIndex index = model.index(0, 0);
    model.setData(index, text);
    model.setData(index, glyph, Qt::UserRole);
    QStyleOptionViewItem option;
    option.rect = kRow;
    option.state = state;
    QImage image = Pixels::canvas(kRow.size());
    QPainter painter(&image);
    SettingsCatDelegate(kGap).paint(&painter, option, index);
    return image;
}

void SettingsCatDelegateTest::height()
{
    QStyleOptionViewItem option;
    option.rect = QRect(0, 0, 333, 7);
    QCOMPARE(SettingsCatDelegate(12).sizeHint(option, {}), QSize(333, 50));
    QCOMPARE(SettingsCatDelegate(0).sizeHint(option, {}), QSize(333, 38));
}

void SettingsCatDelegateTest::paintsTheStates_data()
{
    QTest::addColumn<QStyle::State>("state");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("pill");
    QTest::addColumn<QString>("bubble"); // empty: a veil on the pill
    for (const int mode : {1, 2}) {
        Theme::forceTheme = mode;
        const ColorTokens c = Theme::colors();
        const QString key = getItemTheme().key;
        const auto row = [mode](const char* name, QStyle::State state, const QString& pill,
                                const QString& bubble) {
            QTest::addRow("%s, %s", name, mode == 1 ? "light" : "dark")
                << state << mode << pill << bubble;
        };
        row("idle", QStyle::State_Enabled, Theme::boxBg(), "");
        row("hovered", QStyle::State_MouseOver, c.surfaceVariant, "");
        row("selected", QStyle::State_Selected, c.primaryContainer, key);
        row("selected and hovered", QStyle::State_Selected | QStyle::State_MouseOver,
            c.primaryContainer, key);
    }
}

void SettingsCatDelegateTest::paintsTheStates()
{
    QFETCH(QStyle::State, state);
    QFETCH(int, mode);
    QFETCH(QString, pill);
    QFETCH(QString, bubble);
    Theme::forceTheme = mode;
    const QImage image = paint(state, QString(), Glyph::Folder);
    QCOMPARE(image.pixelColor(200, 25), QColor(pill));
    if (bubble.isEmpty())
        bubble = Theme::stateLayerOn(pill, Theme::colors().onSurface, 28 / 255.0);
    QVERIFY(Pixels::isNear(image.pixelColor(12 + 12 + 3, 25), QColor(bubble), 2));
    const ColorTokens c = Theme::colors();
    const bool isSelected = state.testFlag(QStyle::State_Selected);
    const QColor ink(isSelected ? getItemTheme().onKey : c.onSurfaceVariant);
    QVERIFY(Pixels::isCentredOn(Pixels::boxOfColor(image.copy(24, 11, 28, 28), ink, 40),
                                QPointF(14, 14)));
    const QColor text(isSelected ? c.onPrimaryContainer : c.onSurfaceVariant);
    const QImage withText = paint(state, "WWWW", 0);
    QVERIFY(!Pixels::boxOfColor(withText, text, 8).isEmpty());
}

void SettingsCatDelegateTest::placesThings()
{
    const QImage image = paint(QStyle::State_Selected, "WWWW", Glyph::Folder);
    QCOMPARE(Pixels::inkBox(image), QRect(12, 6, 216, 38));
    QVERIFY(image.pixelColor(12, 6) == QColor(Qt::white)); // the ends are half circles
    const QRect bubble = Pixels::boxOfColor(image, QColor(getItemTheme().key), 6);
    // Its edge is soft.
    QCOMPARE(bubble, QRect(24, 11, 28, 28).adjusted(1, 1, -1, -1));
    const QColor ink(Theme::colors().onPrimaryContainer);
    const QImage right = image.copy(56, 0, 184, 50);
    const QRect text = Pixels::boxOfColor(right, ink, 60).translated(56, 0);
    QVERIFY2(qAbs(text.left() - (24 + 28 + 10)) <= 2, qPrintable(QString::number(text.left())));
    QVERIFY(qAbs(text.center().y() - 25) <= 2);
}

void SettingsCatDelegateTest::sizesAndWeights_data()
{
    QTest::addColumn<QStyle::State>("state");
    QTest::addColumn<int>("weight");
    QTest::newRow("idle") << QStyle::State(QStyle::State_Enabled) << int(QFont::Medium);
    QTest::newRow("hovered") << QStyle::State(QStyle::State_MouseOver) << int(QFont::Medium);
    QTest::newRow("selected") << QStyle::State(QStyle::State_Selected) << int(QFont::Bold);
}

void SettingsCatDelegateTest::sizesAndWeights()
{
    QFETCH(QStyle::State, state);
    QFETCH(int, weight);
    const ColorTokens c = Theme::colors();
    const bool isSelected = state.testFlag(QStyle::State_Selected);
    // What is in it, drawn by hand on the pill and the circle that stand there empty.
    QImage expected = paint(state, QString(), ' ');
    QPainter painter(&expected);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    IconHelper::drawGlyph(&painter, QRectF(24, 11, 28, 28).center(), Glyph::Folder, 16,
                          QColor(isSelected ? getItemTheme().onKey : c.onSurfaceVariant));
    QFont font;
    font.setFamilies(FontTokens::Families);
    font.setPixelSize(13);
    font.setWeight(QFont::Weight(weight));
    painter.setFont(font);
    painter.setPen(QColor(isSelected ? c.onPrimaryContainer : c.onSurfaceVariant));
    painter.drawText(QRect(24 + 28 + 10, 6, 100, 38), Qt::AlignLeft | Qt::AlignVCenter, "Wide");
    painter.end();
    QCOMPARE(paint(state, "Wide", Glyph::Folder), expected);
}

void SettingsCatDelegateTest::withoutAGlyph()
{
    const QImage image = paint(QStyle::State_Selected, "WWWW", 0);
    QVERIFY(Pixels::boxOfColor(image, QColor(getItemTheme().key), 6).isEmpty());
    const QRect text = Pixels::boxOfColor(image, QColor(Theme::colors().onPrimaryContainer), 60);
    QVERIFY2(qAbs(text.left() - (12 + 16)) <= 2, qPrintable(QString::number(text.left())));
}

void SettingsCatDelegateTest::longNamesEndInThePill()
{
    const QImage image = paint(QStyle::State_Selected, QString(1'000'000, 'W'), Glyph::Folder);
    const QImage right = image.copy(56, 0, 184, 50);
    const QRect text =
        Pixels::boxOfColor(right, QColor(Theme::colors().onPrimaryContainer), 60).translated(56, 0);
    QVERIFY(text.right() < 240 - 12 - 16);
    QVERIFY(text.width() > 100);
}

QTEST_MAIN(SettingsCatDelegateTest)
#include "tst_settingscatdelegate.moc"
