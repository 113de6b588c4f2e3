// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ChoiceRow.h"
#include "TestHome.h"
#include "Theme.h"

#include <QButtonGroup>
#include <QLayout>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

namespace
{

const QList<ChoiceRow::Choice> kThemes{
    {0, QStringLiteral("Auto"), QStringLiteral("themeBtn_auto")},
    {1, QStringLiteral("Light & bright"), QStringLiteral("themeBtn_light")},
    {2, QStringLiteral("Dark"), QStringLiteral("themeBtn_dark")}};

QList<QPushButton*> buttonsOf(const ChoiceRow& row)
{
    return row.findChildren<QPushButton*>();
}

QList<bool> checksOf(const ChoiceRow& row)
{
    QList<bool> checks;
    for (const QPushButton* button : buttonsOf(row))
        checks.append(button->isChecked());
    return checks;
}

} // namespace

class ChoiceRowTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init() { Theme::forceTheme = 1; }
    void pills();
    void rounds();
    void checksTheCurrentValue_data();
    void checksTheCurrentValue();
    void tellsOfAnotherValue();
    void saysNothingOfTheSameValue();
    void isOneGroup();
    void mayBeDeletedByWhoeverIsTold();
};

void ChoiceRowTest::pills()
{
    const QString fill = QStringLiteral("#123456");
    const ChoiceRow row(kThemes, 1, ChoiceRow::Shape::Pill, fill);
    QCOMPARE(row.layout()->contentsMargins(), QMargins());
    QCOMPARE(row.layout()->spacing(), 8);
    const QList<QPushButton*> buttons = buttonsOf(row);
    QCOMPARE(buttons.size(), 3);
    for (int i = 0; i < 3; ++i) {
        const QPushButton* button = buttons.at(i);
        QCOMPARE(button->text(), kThemes.at(i).text);
        QCOMPARE(button->objectName(), kThemes.at(i).objectName);
        QVERIFY(button->isCheckable());
        QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
        QCOMPARE(button->minimumHeight(), 36);
        QCOMPARE(button->maximumHeight(), 36);
        QCOMPARE(
            button->styleSheet(),
            Theme::choicePillStyle(Theme::colors(), "QPushButton#" + button->objectName(), fill));
    }
}

void ChoiceRowTest::rounds()
{
    const ChoiceRow row({{2, "2", "gridColBtn_2"}, {3, "3", "gridColBtn_3"}}, 3,
                        ChoiceRow::Shape::Round);
    for (const QPushButton* button : buttonsOf(row)) {
        QCOMPARE(button->minimumSize(), QSize(40, 40));
        QCOMPARE(button->maximumSize(), QSize(40, 40));
        QCOMPARE(button->styleSheet(),
                 Theme::choiceRoundStyle(Theme::colors(), "QPushButton#" + button->objectName()));
    }
}

void ChoiceRowTest::checksTheCurrentValue_data()
{
    QTest::addColumn<int>("current");
    QTest::addColumn<QList<bool>>("checks");
    QTest::newRow("first") << 0 << QList<bool>{true, false, false};
    QTest::newRow("last") << 2 << QList<bool>{false, false, true};
    QTest::newRow("none of them") << 77 << QList<bool>{false, false, false};
    QTest::newRow("below them") << -1 << QList<bool>{false, false, false};
}

void ChoiceRowTest::checksTheCurrentValue()
{
    QFETCH(int, current);
    const ChoiceRow row(kThemes, current, ChoiceRow::Shape::Pill);
    QTEST(checksOf(row), "checks");
    QCOMPARE(row.value(), current);
}

void ChoiceRowTest::tellsOfAnotherValue()
{
    for (const int start : {0, 77}) {
        ChoiceRow row(kThemes, start, ChoiceRow::Shape::Pill);
        const QSignalSpy chosen(&row, &ChoiceRow::chosen);
        buttonsOf(row).at(2)->click();
        QCOMPARE(checksOf(row), (QList<bool>{false, false, true}));
        QCOMPARE(row.value(), 2);
        buttonsOf(row).at(1)->click();
        QCOMPARE(chosen, (QList<QList<QVariant>>{{2}, {1}}));
    }
}

void ChoiceRowTest::saysNothingOfTheSameValue()
{
    ChoiceRow row(kThemes, 1, ChoiceRow::Shape::Pill);
    const QSignalSpy chosen(&row, &ChoiceRow::chosen);
    buttonsOf(row).at(1)->click();
    QCOMPARE(chosen.count(), 0);
    QCOMPARE(checksOf(row), (QList<bool>{false, true, false}));
}

void ChoiceRowTest::isOneGroup()
{
    const ChoiceRow row(kThemes, 1, ChoiceRow::Shape::Pill);
    const QButtonGroup* group = buttonsOf(row).first()->group();
    QVERIFY(group);
    QVERIFY(group->exclusive());
    QCOMPARE(group->buttons().size(), 3);
    for (const QPushButton* button : buttonsOf(row))
        QVERIFY(button->focusPolicy() & Qt::ClickFocus);
    QVERIFY(buttonsOf(row).at(1)->focusPolicy() & Qt::TabFocus);
}

void ChoiceRowTest::mayBeDeletedByWhoeverIsTold()
{
    auto* row = new ChoiceRow(kThemes, 1, ChoiceRow::Shape::Pill);
    const QPointer<ChoiceRow> guard(row);
    connect(row, &ChoiceRow::chosen, row, [row] { row->deleteLater(); });
    buttonsOf(*row).at(0)->click();
    QTRY_VERIFY(!guard);
}

QTEST_MAIN(ChoiceRowTest)
#include "tst_choicerow.moc"
