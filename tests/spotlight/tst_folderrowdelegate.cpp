// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FolderRowDelegate.h"
#include "GlyphWidgets.h"
#include "Pixels.h"
#include "TestHome.h"
#include "Theme.h"

#include <QListWidget>
#include <QStandardItemModel>
#include <QTest>

namespace
{

const QColor kFg(0x10, 0x20, 0x30);
const QColor kOnFg(0x00, 0x80, 0x00);
const QColor kDimFg(0x90, 0x00, 0x90);
const QColor kHoverBg(0xe0, 0xe0, 0x00);
const QColor kSelBg(0xa0, 0xd0, 0xff);
const QColor kDotBg(0xff, 0x00, 0x00);
const QColor kDotFg(0xff, 0xff, 0xff);

constexpr QRect kRow(20, 10, 300, 40);

/// Colours that can be told from each other.
ColorTokens tokens()
{
    ColorTokens c = Theme::colors();
    c.onSurface = kFg.name();
    c.onPrimaryContainer = kOnFg.name();
    c.onSurfaceVariant = kDimFg.name();
    c.surfaceVariant = kHoverBg.name();
    c.primaryContainer = kSelBg.name();
    c.primary = kDotBg.name();
    c.onPrimary = kDotFg.name();
    return c;
}

} // namespace

class FolderRowDelegateTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void sizeHint_data();
    void sizeHint();
    void rowsAreNoWiderThanTheirView();
    void background_data();
    void background();
    void circle_data();
    void circle();
    void textPlace();
    void longTextIsElided_data();
    void longTextIsElided();
    void rowWithTheKeyboard();
    void asksForItsOwnRow();
    void leavesThePainterAsItWas();

private:
    QStyleOptionViewItem option(QStyle::State state = QStyle::State_Enabled) const;
    QImage paint(bool isChecked, QStyle::State state = QStyle::State_Enabled) const;
    void setText(const QString& text) { m_model.item(0)->setText(text); }
    QModelIndex index() const { return m_model.index(0, 0); }

    QStandardItemModel m_model;
};

void FolderRowDelegateTest::init()
{
    m_model.clear();
    m_model.appendRow(new QStandardItem(QStringLiteral("Documents")));
}

QStyleOptionViewItem FolderRowDelegateTest::option(QStyle::State state) const
{
    QStyleOptionViewItem result;
    result.rect = kRow;
    result.state = state;
    result.font = QFont(FontTokens::Families);
    result.font.setPixelSize(14);
    return result;
}

QImage FolderRowDelegateTest::paint(bool isChecked, QStyle::State state) const
{
    const FolderRowDelegate delegate(
        tokens(), [isChecked](const QModelIndex&) { return isChecked; }, nullptr);
    QImage image = Pixels::canvas(QSize(340, 60));
    QPainter painter(&image);
    delegate.paint(&painter, option(state), index());
    return image;
}

void FolderRowDelegateTest::sizeHint_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("fontPx");
    QTest::newRow("none") << "" << 14;
    QTest::newRow("short") << "Docs" << 14;
    QTest::newRow("small font") << "Docs" << 6;
    QTest::newRow("large font") << "Docs" << 40;
    QTest::newRow("with a count") << QStringLiteral("Pictures  ·  12,345 items") << 14;
}

void FolderRowDelegateTest::sizeHint()
{
    QFETCH(QString, text);
    QFETCH(int, fontPx);
    setText(text);
    QStyleOptionViewItem opt = option();
    opt.font.setPixelSize(fontPx);
    const QFontMetrics metrics(opt.font);
    const FolderRowDelegate delegate(tokens(), {}, nullptr);
    QCOMPARE(delegate.sizeHint(opt, index()),
             QSize(metrics.horizontalAdvance(text) + 50, qMax(18, metrics.height()) + 16));
}

void FolderRowDelegateTest::rowsAreNoWiderThanTheirView()
{
    QListWidget list;
    list.setItemDelegate(new FolderRowDelegate(tokens(), {}, &list));
    list.addItems({"short", QString(10000, u'w'), QString(1024 * 1024, u'x')});
    list.resize(300, 200);
    list.show();
    QVERIFY(QTest::qWaitForWindowExposed(&list));
    for (int row = 0; row < 3; ++row)
        QCOMPARE(list.visualItemRect(list.item(row)).width(), list.viewport()->width());
}

void FolderRowDelegateTest::background_data()
{
    QTest::addColumn<bool>("isChecked");
    QTest::addColumn<bool>("isHovered");
    QTest::addColumn<QColor>("color");
    QTest::newRow("idle") << false << false << QColor(Qt::white);
    QTest::newRow("under the pointer") << false << true << kHoverBg;
    QTest::newRow("checked") << true << false << kSelBg;
    QTest::newRow("checked under the pointer") << true << true << kSelBg;
}

void FolderRowDelegateTest::background()
{
    QFETCH(bool, isChecked);
    QFETCH(bool, isHovered);
    QFETCH(QColor, color);
    QStyle::State state = QStyle::State_Enabled;
    state.setFlag(QStyle::State_MouseOver, isHovered);
    // What the view itself has selected doesn't count.
    state.setFlag(QStyle::State_Selected, !isChecked);
    const QImage image = paint(isChecked, state);
    // Filled up to its edges, but for its round corners.
    QCOMPARE(image.pixelColor(kRow.center().x(), kRow.top()), color);
    QCOMPARE(image.pixelColor(kRow.center().x(), kRow.bottom()), color);
    QCOMPARE(image.pixelColor(kRow.left(), kRow.top() + 20), color);
    QCOMPARE(image.pixelColor(kRow.right(), kRow.top() + 20), color);
    QCOMPARE(image.pixelColor(kRow.topLeft() + QPoint(4, 4)), color);
    QCOMPARE(image.pixelColor(kRow.topLeft() + QPoint(1, 1)), QColor(Qt::white));
    QCOMPARE(image.pixelColor(kRow.topRight() + QPoint(-1, 1)), QColor(Qt::white));
    QVERIFY(kRow.contains(Pixels::inkBox(image)));
}

void FolderRowDelegateTest::circle_data()
{
    QTest::addColumn<bool>("isChecked");
    QTest::newRow("checked") << true;
    QTest::newRow("not checked") << false;
}

void FolderRowDelegateTest::circle()
{
    QFETCH(bool, isChecked);
    const QImage image = paint(isChecked);
    QImage expected = Pixels::canvas(image.size());
    if (isChecked)
        expected.fill(kSelBg);
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing);
    CheckCircle::draw(&painter, QPointF(kRow.left() + 19, kRow.top() + 20), isChecked,
                      isChecked ? kOnFg : kDimFg, kDotBg, kDotFg);
    painter.end();
    const QRect box(kRow.left() + 10, kRow.top() + 11, 18, 18);
    QCOMPARE(image.copy(box), expected.copy(box));
}

void FolderRowDelegateTest::textPlace()
{
    for (const bool isChecked : {false, true}) {
        const QImage image = paint(isChecked);
        const QRect ink =
            Pixels::boxOfColor(image.copy(kRow.adjusted(36, 0, 0, 0)), isChecked ? kOnFg : kFg, 60);
        QVERIFY(!ink.isEmpty());
        QVERIFY2(ink.left() >= 4 && ink.left() <= 8, qPrintable(QString::number(ink.left())));
        QVERIFY2(qAbs(ink.center().y() - 20) <= 3, qPrintable(QString::number(ink.center().y())));
    }
}

void FolderRowDelegateTest::longTextIsElided_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("long") << QString(300, u'w');
    QTest::newRow("a megabyte") << QString(1024 * 1024, u'w');
    QTest::newRow("lines") << QString(QStringLiteral("w\n")).repeated(300);
}

void FolderRowDelegateTest::longTextIsElided()
{
    QFETCH(QString, text);
    setText(text);
    const QImage image = paint(false);
    const QRect ink =
        Pixels::boxOfColor(image.copy(kRow.adjusted(36, 0, 0, 0)), kFg, 60).translated(36, 0);
    // Between the circle and the free edge, on one line.
    QVERIFY2(ink.right() <= 299 - 9, qPrintable(QString::number(ink.right())));
    QVERIFY2(ink.right() >= 299 - 9 - 20, qPrintable(QString::number(ink.right())));
    QVERIFY2(ink.height() <= 14, qPrintable(QString::number(ink.height())));
}

void FolderRowDelegateTest::rowWithTheKeyboard()
{
    for (const bool isChecked : {false, true}) {
        const QImage image = paint(isChecked, QStyle::State_Enabled | QStyle::State_HasFocus);
        QVERIFY(Pixels::isNear(image.pixelColor(kRow.center().x(), kRow.top()), kDotBg, 1));
        QVERIFY(Pixels::isNear(image.pixelColor(kRow.left(), kRow.top() + 20), kDotBg, 1));
        QCOMPARE(image.pixelColor(kRow.center().x() + 100, kRow.top() + 20),
                 isChecked ? kSelBg : QColor(Qt::white));
        QVERIFY(kRow.contains(Pixels::inkBox(image)));
    }
}

void FolderRowDelegateTest::asksForItsOwnRow()
{
    m_model.appendRow(new QStandardItem(QStringLiteral("Music")));
    QVector<int> asked;
    const FolderRowDelegate delegate(
        tokens(),
        [&asked](const QModelIndex& index) {
            asked.append(index.row());
            return index.row() == 1;
        },
        nullptr);
    for (const int row : {1, 0}) {
        QImage image = Pixels::canvas(QSize(340, 60));
        QPainter painter(&image);
        delegate.paint(&painter, option(), m_model.index(row, 0));
        QCOMPARE(image.pixelColor(kRow.center().x(), kRow.top()),
                 row == 1 ? kSelBg : QColor(Qt::white));
    }
    QCOMPARE(asked, QVector<int>({1, 0}));
    const FolderRowDelegate withoutQuestion(tokens(), {}, nullptr);
    QImage image = Pixels::canvas(QSize(340, 60));
    QPainter painter(&image);
    withoutQuestion.paint(&painter, option(), m_model.index(1, 0));
    QCOMPARE(image.pixelColor(kRow.center().x(), kRow.top()), QColor(Qt::white));
}

void FolderRowDelegateTest::leavesThePainterAsItWas()
{
    const FolderRowDelegate delegate(tokens(), {}, nullptr);
    QImage image = Pixels::canvas(QSize(340, 60));
    QPainter painter(&image);
    painter.setPen(Qt::cyan);
    painter.setBrush(Qt::magenta);
    const QFont font = painter.font();
    delegate.paint(&painter, option(), index());
    QCOMPARE(painter.pen().color(), QColor(Qt::cyan));
    QCOMPARE(painter.brush().color(), QColor(Qt::magenta));
    QCOMPARE(painter.font(), font);
    QVERIFY(!painter.testRenderHint(QPainter::Antialiasing));
}

QTEST_MAIN(FolderRowDelegateTest)
#include "tst_folderrowdelegate.moc"
