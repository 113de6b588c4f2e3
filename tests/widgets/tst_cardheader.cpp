// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CardHeader.h"
#include "TestHome.h"
#include "Theme.h"

#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QTest>

class CardHeaderTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init() { Theme::forceTheme = 1; }
    void looks();
    void titleIsCentred();
    void titleCanChange();
    void titleIsNotMarkup();
    void leadingWidgetStandsBeforeTheTitle();
};

void CardHeaderTest::looks()
{
    const CardHeader header("someHeader", "A title", 23);
    QCOMPARE(header.objectName(), "someHeader");
    QCOMPARE(header.minimumHeight(), 56);
    QCOMPARE(header.maximumHeight(), 56);
    QCOMPARE(header.layout()->contentsMargins(), QMargins(12, 0, 12, 0));
    QCOMPARE(header.styleSheet(),
             QStringLiteral("QFrame#someHeader { background-color: %1; border: none; "
                            "border-top-left-radius: 23px; border-top-right-radius: 23px; "
                            "border-bottom-left-radius: 0px; border-bottom-right-radius: 0px; }")
                 .arg(Theme::shellBg()));
    QCOMPARE(header.findChild<QLabel*>()->styleSheet(),
             QStringLiteral("color: %1; font-size: 18px; font-weight: bold; border: none; "
                            "background: transparent;")
                 .arg(Theme::colors().onSurface));
}

void CardHeaderTest::titleIsCentred()
{
    CardHeader header("h", "A title", 24);
    header.resize(300, 56);
    header.show();
    QVERIFY(QTest::qWaitForWindowExposed(&header));
    const auto* title = header.findChild<QLabel*>();
    QCOMPARE(title->geometry(), QRect(12, 0, 276, 56));
    QCOMPARE(title->alignment(), Qt::AlignCenter);
}

void CardHeaderTest::titleCanChange()
{
    CardHeader header("h", "Before", 24);
    QCOMPARE(header.title(), "Before");
    header.setTitle("After");
    QCOMPARE(header.title(), "After");
    QCOMPARE(header.findChild<QLabel*>()->text(), "After");
}

void CardHeaderTest::titleIsNotMarkup()
{
    const CardHeader header("h", "<b>R&D</b>", 24);
    QCOMPARE(header.findChild<QLabel*>()->text(), "<b>R&D</b>");
    QCOMPARE(header.findChild<QLabel*>()->textFormat(), Qt::PlainText);
}

void CardHeaderTest::leadingWidgetStandsBeforeTheTitle()
{
    CardHeader header("h", "A title", 24);
    auto* back = new QPushButton;
    back->setFixedSize(32, 32);
    header.setLeading(back);
    QCOMPARE(back->parentWidget(), &header);
    header.resize(300, 56);
    header.show();
    QVERIFY(QTest::qWaitForWindowExposed(&header));
    QCOMPARE(back->geometry(), QRect(12, 12, 32, 32));
    const auto* title = header.findChild<QLabel*>();
    QCOMPARE(title->geometry(), QRect(52, 0, 236, 56));
    QCOMPARE(title->alignment(), Qt::AlignLeft | Qt::AlignVCenter);
}

QTEST_MAIN(CardHeaderTest)
#include "tst_cardheader.moc"
