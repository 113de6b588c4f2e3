// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CardHeader.h"
#include "CardShadow.h"
#include "FramelessDialog.h"
#include "Pixels.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

namespace
{

/// Opens to a test what a dialog's own class sees.
class TestDialog : public FramelessDialog
{
public:
    explicit TestDialog(int shadowAlpha = StrongShadow, int padding = CardPad,
                        QWidget* parent = nullptr)
        : FramelessDialog(parent, "A title", shadowAlpha, padding)
    {}

    using FramelessDialog::addBody;
    using FramelessDialog::addButton;
    using FramelessDialog::addButtonRow;
    using FramelessDialog::addHeader;
    using FramelessDialog::card;
    using FramelessDialog::fitButtons;
    using FramelessDialog::rows;
    using FramelessDialog::SoftShadow;
};

} // namespace

class FramelessDialogTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init() { Theme::forceTheme = 1; }

    void backKey_data();
    void backKey();

    void window();
    void cardFillsTheWindowButForItsShadow();
    void cardLooks_data();
    void cardLooks();
    void shadowFallsAroundTheCard();
    void repaintsNoMoreThanWhatChanges();
    void rowsOfACard();
    void header();
    void body();
    void buttonRow();
    void buttonsShareTheRow();
    void tightRowTakesPadding_data();
    void tightRowTakesPadding();

    void keysClose_data();
    void keysClose();
    void backspaceInAFieldEditsIt();
    void defaultButtonHasEnter();
};

void FramelessDialogTest::backKey_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("closes");
    QTest::newRow("Esc") << int(Qt::Key_Escape) << true;
    QTest::newRow("Backspace") << int(Qt::Key_Backspace) << true;
    QTest::newRow("Return") << int(Qt::Key_Return) << false;
    QTest::newRow("Delete") << int(Qt::Key_Delete) << false;
    QTest::newRow("Left") << int(Qt::Key_Left) << false;
}

void FramelessDialogTest::backKey()
{
    QFETCH(int, key);
    QFETCH(bool, closes);
    QDialog dialog; // any one, framed or not
    dialog.setResult(QDialog::Accepted);
    dialog.show();
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QCOMPARE(handleDialogBackKey(&dialog, &event), closes);
    QCOMPARE(dialog.isVisible(), !closes);
    QCOMPARE(dialog.result(), int(closes ? QDialog::Rejected : QDialog::Accepted));
}

void FramelessDialogTest::window()
{
    QWidget parent;
    const TestDialog dialog(80, 24, &parent);
    QCOMPARE(dialog.parentWidget(), &parent);
    QCOMPARE(dialog.windowType(), Qt::Dialog);
    QVERIFY(dialog.windowFlags() & Qt::FramelessWindowHint);
    QVERIFY(dialog.windowFlags() & Qt::WindowStaysOnTopHint);
    QVERIFY(dialog.testAttribute(Qt::WA_TranslucentBackground));
    QCOMPARE(dialog.windowTitle(), "A title");
}

void FramelessDialogTest::cardFillsTheWindowButForItsShadow()
{
    TestDialog dialog;
    dialog.resize(400, 300);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCOMPARE(dialog.card()->objectName(), "dialogBg");
    QCOMPARE(dialog.card()->geometry(), QRect(10, 10, 380, 280));
}

void FramelessDialogTest::cardLooks_data()
{
    QTest::addColumn<int>("alpha");
    QTest::addColumn<int>("padding");
    QTest::newRow("plain card") << 80 << 24;
    QTest::newRow("card with a header") << 60 << 0;
}

void FramelessDialogTest::cardLooks()
{
    QFETCH(int, alpha);
    QFETCH(int, padding);
    const TestDialog dialog(alpha, padding);
    QVERIFY(dialog.card()->styleSheet().contains(QStringLiteral("padding: %1px;").arg(padding)));
    const auto* shadow = dialog.findChild<CardShadow*>();
    QVERIFY(shadow);
    QCOMPARE(shadow->color(), QColor(0, 0, 0, alpha));
    QCOMPARE(shadow->blurRadius(), 20.0);
    QCOMPARE(shadow->offset(), QPointF(0, 4));
}

void FramelessDialogTest::shadowFallsAroundTheCard()
{
    TestDialog dialog;
    for (const QSize& size : {QSize(400, 300), QSize(300, 400)}) {
        dialog.resize(size);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        const QImage image = Pixels::imageOf(dialog);
        const int below = image.pixelColor(size.width() / 2, size.height() - 5).lightness();
        const int above = image.pixelColor(size.width() / 2, 5).lightness();
        QVERIFY2(below < 240, qPrintable(QString::number(below)));
        QVERIFY2(below < above, qPrintable(QString::number(above)));
        QCOMPARE(image.pixelColor(size.width() / 2, 50), QColor(Theme::colors().surface));
    }
}

void FramelessDialogTest::repaintsNoMoreThanWhatChanges()
{
    TestDialog dialog;
    auto* changing = new QLabel;
    auto* resting = new QLabel;
    dialog.rows()->addWidget(changing);
    dialog.rows()->addWidget(resting);
    dialog.resize(400, 300);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCoreApplication::processEvents();
    const PaintCounter changed(changing);
    const PaintCounter rested(resting);
    const int pictures = dialog.findChild<CardShadow*>()->pictureCount();
    changing->update();
    QTRY_COMPARE(changed.count, 1);
    QCOMPARE(rested.count, 0);
    QCOMPARE(dialog.findChild<CardShadow*>()->pictureCount(), pictures);
}

void FramelessDialogTest::rowsOfACard()
{
    TestDialog dialog;
    auto* first = new QLabel;
    auto* second = new QLabel;
    for (QLabel* row : {first, second}) {
        row->setFixedHeight(20);
        dialog.rows()->addWidget(row);
    }
    dialog.resize(400, 10 + 1 + 24 + 20 + 12 + 20 + 24 + 1 + 10);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCOMPARE(rectIn(dialog, first), QRect(35, 35, 330, 20));
    QCOMPARE(rectIn(dialog, second), QRect(35, 67, 330, 20));
}

void FramelessDialogTest::header()
{
    TestDialog dialog(TestDialog::SoftShadow, 0);
    const CardHeader* header = dialog.addHeader("someHeader");
    QCOMPARE(header->objectName(), "someHeader");
    QCOMPARE(header->title(), "A title");
    QVERIFY(header->styleSheet().contains("border-top-left-radius: 23px"));
    dialog.resize(400, 300);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCOMPARE(header->mapTo(&dialog, QPoint(0, 0)).x(), 11); // inside the card's line
    QCOMPARE(header->width(), 378);
}

void FramelessDialogTest::body()
{
    TestDialog dialog(TestDialog::SoftShadow, 0);
    dialog.addHeader("someHeader");
    QVBoxLayout* body = dialog.addBody();
    auto* first = new QLabel;
    auto* second = new QLabel;
    for (QLabel* row : {first, second}) {
        row->setFixedHeight(20);
        body->addWidget(row);
    }
    dialog.resize(400, 11 + 56 + 24 + 20 + 12 + 20 + 24 + 11);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCOMPARE(rectIn(dialog, dialog.findChild<CardHeader*>()), QRect(11, 11, 378, 56));
    QCOMPARE(rectIn(dialog, first), QRect(35, 91, 330, 20));
    QCOMPARE(rectIn(dialog, second), QRect(35, 123, 330, 20));
}

void FramelessDialogTest::buttonRow()
{
    TestDialog dialog;
    auto* above = new QLabel;
    above->setFixedHeight(20);
    dialog.rows()->addWidget(above);
    QHBoxLayout* row = TestDialog::addButtonRow(dialog.rows(), 8);
    row->addStretch();
    QPushButton* button = dialog.addButton(row, "OK", "QPushButton { min-width: 60px; }");
    QCOMPARE(button->text(), "OK");
    QCOMPARE(button->styleSheet(), "QPushButton { min-width: 60px; }");
    dialog.resize(400, 35 + 20 + 12 + 8 + 36 + 35);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCOMPARE(rectIn(dialog, button).top(), 35 + 20 + 12 + 8);
    QCOMPARE(rectIn(dialog, button).right() + 1, 365);
    QCOMPARE(button->height(), 36);
    QVERIFY(button->width() < 200);
}

void FramelessDialogTest::buttonsShareTheRow()
{
    TestDialog dialog;
    QHBoxLayout* row = TestDialog::addButtonRow(dialog.rows(), 0);
    row->setSpacing(8);
    const QPushButton* left = dialog.addButton(row, "No", QString(), 1);
    const QPushButton* right = dialog.addButton(row, "Certainly", QString(), 1);
    dialog.resize(400, 200);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCOMPARE(left->width(), (330 - 8) / 2);
    QCOMPARE(right->width(), (330 - 8) / 2);
    QCOMPARE(right->x() - left->x(), left->width() + 8);
}

void FramelessDialogTest::tightRowTakesPadding_data()
{
    QTest::addColumn<int>("missing"); // of the width that the row would like to have
    QTest::addColumn<int>("sidePad"); // of each button in the end
    QTest::newRow("room to spare") << -20 << 16;
    QTest::newRow("just enough") << 0 << 16;
    QTest::newRow("a little too tight") << 1 << 15;
    QTest::newRow("one pixel a side") << 4 << 15;
    QTest::newRow("tight") << 40 << 6;
    QTest::newRow("too tight for any padding") << 200 << 0;
}

void FramelessDialogTest::tightRowTakesPadding()
{
    QFETCH(int, missing);
    QFETCH(int, sidePad);
    TestDialog dialog;
    QHBoxLayout* row = TestDialog::addButtonRow(dialog.rows(), 0);
    row->setSpacing(8);
    const QString style = Theme::primaryBtnStyle(Theme::colors());
    const QPushButton* left = dialog.addButton(row, "A rather long text", style, 1);
    const QPushButton* right = dialog.addButton(row, "Another one", style, 1);
    const int leftWidth = left->sizeHint().width();
    const int rightWidth = right->sizeHint().width();
    TestDialog::fitButtons(row, leftWidth + 8 + rightWidth - missing);
    QCOMPARE(left->sizeHint().width(), leftWidth - 2 * (16 - sidePad));
    QCOMPARE(right->sizeHint().width(), rightWidth - 2 * (16 - sidePad));
    QCOMPARE(left->styleSheet() == style, sidePad == 16);
}

void FramelessDialogTest::keysClose_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("closes");
    QTest::newRow("Esc") << int(Qt::Key_Escape) << true;
    QTest::newRow("Backspace") << int(Qt::Key_Backspace) << true;
    QTest::newRow("a letter") << int(Qt::Key_A) << false;
    QTest::newRow("Return without a button") << int(Qt::Key_Return) << false;
}

void FramelessDialogTest::keysClose()
{
    QFETCH(int, key);
    QFETCH(bool, closes);
    TestDialog dialog;
    dialog.setResult(QDialog::Accepted);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    pressKey(dialog, static_cast<Qt::Key>(key));
    QCOMPARE(dialog.isVisible(), !closes);
    QCOMPARE(dialog.result(), int(closes ? QDialog::Rejected : QDialog::Accepted));
}

void FramelessDialogTest::backspaceInAFieldEditsIt()
{
    TestDialog dialog;
    auto* field = new QLineEdit("ab");
    dialog.rows()->addWidget(field);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    field->setFocus();
    pressKey(dialog, Qt::Key_Backspace);
    QCOMPARE(field->text(), "a");
    QVERIFY(dialog.isVisible());
    pressKey(dialog, Qt::Key_Escape);
    QVERIFY(!dialog.isVisible());
}

void FramelessDialogTest::defaultButtonHasEnter()
{
    TestDialog dialog;
    QHBoxLayout* row = TestDialog::addButtonRow(dialog.rows(), 0);
    QPushButton* ok = dialog.addButton(row, "OK", QString());
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, &dialog, &QDialog::accept);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QTest::keyClick(&dialog, Qt::Key_Return); // with the focus on no widget of it
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

QTEST_MAIN(FramelessDialogTest)
#include "tst_framelessdialog.moc"
