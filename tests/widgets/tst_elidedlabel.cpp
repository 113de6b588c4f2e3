// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ElidedLabel.h"
#include "Pixels.h"
#include "TestHome.h"

#include <QHBoxLayout>
#include <QTest>

class ElidedLabelTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void asksForALineAndNoWidth_data();
    void asksForALineAndNoWidth();
    void heightFollowsTheStyleSheet();
    void takesTheRoomOfItsLayout();
    void standsAtTheLeft_data();
    void standsAtTheLeft();
    void endsInItsPlace();
    void showsNoMarkup();
    void showsOneLine();

private:
    static QImage imageOf(const QString& text, int width = 200);
};

/// Black on white, in a height for three lines.
QImage ElidedLabelTest::imageOf(const QString& text, int width)
{
    ElidedLabel label(text);
    label.setStyleSheet("color: #000000; font-size: 14px;");
    label.resize(width, 60);
    return Pixels::imageOf(label);
}

void ElidedLabelTest::asksForALineAndNoWidth_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << "";
    QTest::newRow("short") << "Kit";
    QTest::newRow("a megabyte") << QString(1'000'000, 'W');
    QTest::newRow("lines") << QString("a\n").repeated(1000);
}

void ElidedLabelTest::asksForALineAndNoWidth()
{
    QFETCH(QString, text);
    const ElidedLabel label(text);
    QCOMPARE(label.sizeHint(), QSize(0, label.fontMetrics().height()));
    QCOMPARE(label.minimumSizeHint(), label.sizeHint());
    QCOMPARE(label.text(), text);
}

void ElidedLabelTest::heightFollowsTheStyleSheet()
{
    ElidedLabel label("Kit");
    label.setStyleSheet("font-size: 40px;");
    QVERIFY(label.sizeHint().height() >= 40);
}

void ElidedLabelTest::takesTheRoomOfItsLayout()
{
    QWidget row;
    auto* layout = new QHBoxLayout(&row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* label = new ElidedLabel(QString(10'000, 'W'));
    layout->addWidget(label, 1);
    row.resize(300, 40);
    row.show();
    QVERIFY(QTest::qWaitForWindowExposed(&row));
    QCOMPARE(row.width(), 300);
    QCOMPARE(label->width(), 300);
}

void ElidedLabelTest::standsAtTheLeft_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("left to right") << "HHH";
    QTest::newRow("right to left") << QString::fromUtf8("\xd7\x97\xd7\x97\xd7\x97");
}

void ElidedLabelTest::standsAtTheLeft()
{
    QFETCH(QString, text);
    const QRect ink = Pixels::inkBox(imageOf(text));
    QVERIFY(!ink.isEmpty());
    QVERIFY(ink.left() < 6);
    QVERIFY(qAbs(ink.center().y() - 30) <= 4);
}

void ElidedLabelTest::endsInItsPlace()
{
    const QImage image = imageOf(QString(1'000'000, 'W'), 100);
    const QRect ink = Pixels::inkBox(image);
    QVERIFY(ink.right() < 100);
    QVERIFY(ink.width() > 80);
    QVERIFY(image != imageOf(QString(7, 'W'), 100)); // it ends in an ellipsis
}

void ElidedLabelTest::showsNoMarkup()
{
    QVERIFY(imageOf("<b>a</b>") != imageOf("a"));
    QVERIFY(imageOf("a & b") != imageOf("a  b"));
    QVERIFY(imageOf("&a") != imageOf("a")); // nor a mark for a shortcut
}

void ElidedLabelTest::showsOneLine()
{
    const int line = Pixels::inkBox(imageOf("HH")).height();
    for (const char16_t end : {u'\n', u'\r', u'\u2028', u'\u2029'})
        QVERIFY(Pixels::inkBox(imageOf(u'H' + QString(end) + u'H')).height() <= line + 1);
}

QTEST_MAIN(ElidedLabelTest)
#include "tst_elidedlabel.moc"
