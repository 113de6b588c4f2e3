// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "GlyphWidgets.h"
#include "ItemRoles.h"
#include "Pictures.h"
#include "Pixels.h"
#include "TemplateItemDelegate.h"
#include "TestHome.h"
#include "Theme.h"

#include <QDir>
#include <QListWidget>
#include <QStandardItemModel>
#include <QTest>

namespace
{

const QRect kRow(10, 4, 240, 44);
const QRect kBadge(18, 12, 28, 28);

} // namespace

class TemplateItemDelegateTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init() { Theme::forceTheme = 1; }
    void measures();
    void widthOfAView();
    void paintsTheStates_data();
    void paintsTheStates();
    void badgeIsTheItems_data();
    void badgeIsTheItems();
    void badgeShowsAPicture();
    void textStandsBetweenBadgeAndEdge();
    void longNamesEndInTheRow_data();
    void longNamesEndInTheRow();
    void leavesThePainterAsItWas();

private:
    static QImage paint(const QString& name, QStyle::State state = QStyle::State_Enabled,
                        const QString& token = {}, const QString& type = "Snippet");
};

QImage TemplateItemDelegateTest::paint(const QString& name, QStyle::State state,
                                       const QString& token, const QString& type)
{
    QStandardItemModel model(1, 1);
    const QModelIndex index = model.index(0, 0);
    model.setData(index, name);
    model.setData(index, type, 261);
    model.setData(index, token, 263);
    QStyleOptionViewItem option;
    option.rect = kRow;
    option.state = state;
    option.font.setPixelSize(14);
    QImage image = Pixels::canvas(QSize(260, 52));
    QPainter painter(&image);
    TemplateItemDelegate().paint(&painter, option, index);
    return image;
}

void TemplateItemDelegateTest::measures()
{
    QCOMPARE(TemplateItemDelegate::IconSize, 28);
    QCOMPARE(TemplateItemDelegate::PadH, 8);
    QCOMPARE(TemplateItemDelegate::PadV, 8);
    QCOMPARE(TemplateItemDelegate::Gap, 10);
    QStyleOptionViewItem option;
    option.rect = QRect(0, 0, 333, 7);
    QCOMPARE(TemplateItemDelegate().sizeHint(option, {}), QSize(333, 44));
}

void TemplateItemDelegateTest::widthOfAView()
{
    QListWidget list;
    list.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    list.resize(200, 100);
    list.show();
    QVERIFY(QTest::qWaitForWindowExposed(&list));
    QVERIFY(list.viewport()->width() < 200);
    QStyleOptionViewItem option;
    option.widget = &list;
    option.rect = list.rect();
    QCOMPARE(TemplateItemDelegate().sizeHint(option, {}), QSize(list.viewport()->width(), 44));
}

void TemplateItemDelegateTest::paintsTheStates_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QStyle::State>("state");
    QTest::addColumn<bool>("isFilled");
    for (const int mode : {1, 2}) {
        const auto row = [mode](const char* name, QStyle::State state, bool isFilled) {
            QTest::addRow("%s, %s", name, mode == 1 ? "light" : "dark")
                << mode << state << isFilled;
        };
        row("idle", QStyle::State_Enabled, false);
        row("hovered", QStyle::State_MouseOver, false);
        row("selected", QStyle::State_Selected, true);
    }
}

void TemplateItemDelegateTest::paintsTheStates()
{
    QFETCH(int, mode);
    QFETCH(QStyle::State, state);
    QFETCH(bool, isFilled);
    Theme::forceTheme = mode;
    const ColorTokens c = Theme::colors();
    const QImage image = paint("HHHH", state);
    const QColor fill = isFilled ? QColor(c.primaryContainer) : QColor(Qt::white);
    QCOMPARE(image.pixelColor(200, 26), fill);
    const QColor ink(isFilled ? c.onPrimaryContainer : c.onSurface);
    QVERIFY(!Pixels::boxOfColor(image.copy(56, 0, 100, 52), ink, 12).isEmpty());
    if (!isFilled)
        return;
    QCOMPARE(Pixels::inkBox(image), QRect(11, 4, 238, 44)); // a pixel off both edges of the row
    QCOMPARE(image.pixelColor(11, 4), QColor(Qt::white));   // and rounded
    QCOMPARE(image.pixelColor(11 + 10, 4), fill);
    QCOMPARE(image.pixelColor(11, 4 + 10), fill);
}

void TemplateItemDelegateTest::badgeIsTheItems_data()
{
    QTest::addColumn<QString>("token");
    QTest::addColumn<QString>("type");
    QTest::newRow("type") << ""
                          << "File";
    QTest::newRow("no type") << ""
                             << "";
    QTest::newRow("glyph") << "glyph:ea5f"
                           << "File";
    QTest::newRow("missing picture") << "/nowhere/at.png"
                                     << "Bulk";
}

void TemplateItemDelegateTest::badgeIsTheItems()
{
    QFETCH(QString, token);
    QFETCH(QString, type);
    pictureOnceRead(token, kBadge.size(), 1.0, Qt::IgnoreAspectRatio);
    QImage expected = Pixels::canvas(QSize(260, 52));
    QPainter painter(&expected);
    GlyphBadge::paintInto(&painter, kBadge, token, type);
    painter.end();
    QCOMPARE(paint("", QStyle::State_Enabled, token, type), expected);
    QVERIFY(!Pixels::inkBox(expected).isEmpty());
}

void TemplateItemDelegateTest::badgeShowsAPicture()
{
    QImage picture(8, 8, QImage::Format_RGB32);
    picture.fill(Qt::red);
    const QString path = QDir(TestHome::path()).filePath("picture.png");
    QVERIFY(picture.save(path));
    pictureOnceRead(path, kBadge.size(), 1.0, Qt::IgnoreAspectRatio);
    QCOMPARE(Pixels::boxOfColor(paint("", QStyle::State_Enabled, path), Qt::red), kBadge);
}

void TemplateItemDelegateTest::textStandsBetweenBadgeAndEdge()
{
    const QImage image = paint("HHHH");
    const QRect ink = Pixels::inkBox(image.copy(50, 0, 210, 52)).translated(50, 0);
    QVERIFY2(qAbs(ink.left() - (10 + 8 + 28 + 10)) <= 2, qPrintable(QString::number(ink.left())));
    QVERIFY(qAbs(ink.center().y() - 26) <= 2);
}

void TemplateItemDelegateTest::longNamesEndInTheRow_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("a megabyte") << QString(1'000'000, 'W');
    QTest::newRow("lines") << QString("WW\n").repeated(10'000);
    QTest::newRow("markup") << QString("<b>W</b>").repeated(100);
    // Turned around by a mark: not every system here has a font with letters of such a script.
    QTest::newRow("right to left") << QChar(0x202E) + QString(1000, 'W');
}

void TemplateItemDelegateTest::longNamesEndInTheRow()
{
    QFETCH(QString, name);
    const QRect ink = Pixels::inkBox(paint(name).copy(50, 0, 210, 52)).translated(50, 0);
    QVERIFY(ink.right() <= 250 - 8);
    QVERIFY(ink.width() > 150);
    QVERIFY(ink.height() < 24); // one line
}

void TemplateItemDelegateTest::leavesThePainterAsItWas()
{
    QStandardItemModel model(1, 1);
    QImage image = Pixels::canvas(QSize(260, 52));
    QPainter painter(&image);
    const QPen pen(Qt::green);
    painter.setPen(pen);
    QStyleOptionViewItem option;
    option.rect = kRow;
    option.state = QStyle::State_Selected;
    TemplateItemDelegate().paint(&painter, option, model.index(0, 0));
    QCOMPARE(painter.pen(), pen);
    QCOMPARE(painter.brush(), QBrush());
    QVERIFY(!painter.testRenderHint(QPainter::Antialiasing));
}

QTEST_MAIN(TemplateItemDelegateTest)
#include "tst_templateitemdelegate.moc"
