// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "GroupHeader.h"
#include "Pixels.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"

#include <QLabel>
#include <QTest>

class GroupHeaderTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void looks();
    void keepsItsMargins_data();
    void keepsItsMargins();
    void isNoCard();
};

void GroupHeaderTest::looks()
{
    Theme::forceTheme = 1;
    GroupHeader header("Colour & <b>light</b>", QMargins());
    const ColorTokens c = Theme::colors();
    const auto* label = header.findChild<QLabel*>();
    QCOMPARE(label->text(), "Colour & <b>light</b>");
    QCOMPARE(label->textFormat(), Qt::PlainText);
    QCOMPARE(label->styleSheet(), Theme::groupHeaderStyle(c));
    header.resize(400, 30);
    header.layout()->activate();
    const QImage image = Pixels::imageOf(header);
    QCOMPARE(image.pixelColor(0, 0), QColor(Qt::white)); // its ground shows through
    const QRect line = Pixels::boxOfColor(image, QColor(c.outlineVariant));
    QCOMPARE(line.height(), 1);
    QCOMPARE(line.right(), 399);
    QCOMPARE(line.left() - label->geometry().right() - 1, 12);
    QVERIFY(qAbs(line.top() - 15) <= 1);
}

void GroupHeaderTest::keepsItsMargins_data()
{
    QTest::addColumn<QMargins>("margins");
    QTest::newRow("on a page") << QMargins(24, 12, 16, 4);
    QTest::newRow("at the top of a page") << QMargins(24, 0, 16, 4);
    QTest::newRow("in a dialog") << QMargins(0, 8, 0, 0);
}

void GroupHeaderTest::keepsItsMargins()
{
    QFETCH(QMargins, margins);
    GroupHeader header("A title", margins);
    header.resize(400, header.sizeHint().height());
    header.layout()->activate();
    const QRect label = header.findChild<QLabel*>()->geometry();
    QCOMPARE(label.left(), margins.left());
    QCOMPARE(label.top(), margins.top());
    QCOMPARE(header.height() - label.bottom() - 1, margins.bottom());
}

void GroupHeaderTest::isNoCard()
{
    const GroupHeader header("A title", QMargins());
    QCOMPARE(header.focusPolicy(), Qt::NoFocus);
    for (const QWidget* child : header.findChildren<QWidget*>())
        QCOMPARE(child->focusPolicy(), Qt::NoFocus);
}

QTEST_MAIN(GroupHeaderTest)
#include "tst_groupheader.moc"
