// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CustomMessageBox.h"
#include "LanguageRows.h"
#include "Localization.h"
#include "Pixels.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"

#include <QFrame>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QScopeGuard>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

namespace
{

using Box = CustomMessageBox;

constexpr int kNoKey = 0;

QStringList textsOf(const QList<QPushButton*>& buttons)
{
    QStringList texts;
    for (const QPushButton* button : buttons)
        texts.append(button->text());
    return texts;
}

QList<QPushButton*> buttonsOf(const QWidget& box)
{
    return box.findChildren<QPushButton*>();
}

QLabel* labelOf(const QWidget& box, int index)
{
    return box.findChildren<QLabel*>().value(index);
}

QString linesOf(int count)
{
    QStringList lines;
    for (int i = 1; i <= count; ++i)
        lines.append(QStringLiteral("line %1").arg(i));
    return lines.join(QLatin1Char('\n'));
}

/// What a question looks like while it is open, and how it ended.
struct Question
{
    /// Answers by `answer`, which is called with the open box.
    Question(const QStringList& texts, int defaultIdx, const QVector<int>& destructive,
             const std::function<void(QWidget&)>& answer)
    {
        ModalDriver driver([this, &answer](QWidget* modal) {
            for (const QPushButton* button : buttonsOf(*modal)) {
                buttonTexts.append(button->text());
                styles.append(button->styleSheet());
                defaults.append(button->isDefault());
            }
            title = labelOf(*modal, 0)->text();
            titleStyle = labelOf(*modal, 0)->styleSheet();
            text = labelOf(*modal, 1)->text();
            answer(*modal);
        });
        result = Box::customQuestion(nullptr, "A title", "A text", texts, defaultIdx, destructive);
        count = driver.count();
    }

    QString title;
    QString titleStyle;
    QString text;
    QStringList buttonTexts;
    QStringList styles;
    QList<bool> defaults;
    int result = -1;
    int count = 0;
};

std::function<void(QWidget&)> byKey(Qt::Key key)
{
    return [key](QWidget& box) { pressKey(box, key); };
}

std::function<void(QWidget&)> byClick(int index)
{
    return [index](QWidget& box) { QTest::mouseClick(buttonsOf(box).at(index), Qt::LeftButton); };
}

} // namespace

class CustomMessageBoxTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();

    void enumerationValues();
    void looksLikeEveryDialog();
    void fitsItsContent();
    void titleColorTellsSeverity_data();
    void titleColorTellsSeverity();
    void textsAreNotMarkup();
    void longWordsDoNotWidenTheBox();
    void hugeTextStaysOnTheScreen();
    void longTextsScroll_data();
    void longTextsScroll();
    void scrollingShowsTheEnd();
    void scrolledTextStandsOnTheCard();
    void scrollBarIsInSight_data();
    void scrollBarIsInSight();
    void keysScroll_data();
    void keysScroll();
    void scrolledBoxEndsAsAnyOther();
    void ordinaryTextsStayAsTheyAre_data();
    void ordinaryTextsStayAsTheyAre();

    void standardButtonsHaveAFixedOrder_data();
    void standardButtonsHaveAFixedOrder();
    void standardButtonStyles();
    void standardButtonGivesItsCode_data();
    void standardButtonGivesItsCode();
    void messagesHaveAnOkButton_data();
    void messagesHaveAnOkButton();
    void messageEnds_data();
    void messageEnds();

    void questionStyles_data();
    void questionStyles();
    void questionGivesTheIndex_data();
    void questionGivesTheIndex();
    void dismissedQuestionCountsAsFirstButton_data();
    void dismissedQuestionCountsAsFirstButton();
    void cancelHasToBeChosen();
    void questionWithoutButtons();

    void arrowsWrapAround_data();
    void arrowsWrapAround();
    void arrowsWithoutFocusTakeTheFirst_data();
    void arrowsWithoutFocusTakeTheFirst();
    void arrowsWithoutButtons();
    void enterClicksTheFocusedButton_data();
    void enterClicksTheFocusedButton();
    void enterWithoutFocusTriggersTheDefault_data();
    void enterWithoutFocusTriggersTheDefault();
    void otherKeysDoNothing();
};

void CustomMessageBoxTest::init()
{
    Tr::currentLang = Lang::En;
    Theme::forceTheme = 1;
}

void CustomMessageBoxTest::enumerationValues()
{
    QCOMPARE(int(Box::NoButton), 0);
    QCOMPARE(int(Box::Ok), 1);
    QCOMPARE(int(Box::Yes), 2);
    QCOMPARE(int(Box::No), 4);
    QCOMPARE(int(Box::Cancel), 8);
    QCOMPARE(int(Box::Info), 0);
    QCOMPARE(int(Box::Warning), 1);
    QCOMPARE(int(Box::Critical), 2);
}

void CustomMessageBoxTest::looksLikeEveryDialog()
{
    QWidget parent;
    const Box box(&parent, "t", "x", Box::Ok, Box::Ok, Box::Info);
    verifyDialogLook(box, parent, 24, 80);
    const auto* card = box.findChild<QFrame*>("dialogBg");
    QVERIFY(card);
    QCOMPARE(card->minimumWidth(), 350);
    QCOMPARE(card->layout()->spacing(), 12);
    QCOMPARE(card->layout()->contentsMargins(), QMargins());
}

void CustomMessageBoxTest::fitsItsContent()
{
    Box box(nullptr, "t", "x", Box::Ok, Box::Ok, Box::Info);
    box.show();
    QVERIFY(QTest::qWaitForWindowExposed(&box));
    QCOMPARE(box.minimumSize(), box.maximumSize());
    QCOMPARE(box.width(), 350 + 2 * 10);
    QPushButton* ok = buttonsOf(box).first();
    const QRect okInBox(ok->mapTo(&box, QPoint(0, 0)), ok->size());
    QCOMPARE(okInBox.right(), box.width() - 10 - 1 - 24 - 1); // shadow margin, border, padding
    QCOMPARE(okInBox.bottom(), box.height() - 10 - 1 - 24 - 1);
    const int textBottom =
        labelOf(box, 1)->mapTo(&box, QPoint(0, 0)).y() + labelOf(box, 1)->height();
    QCOMPARE(okInBox.top() - textBottom, 12 + 12); // spacing and the row's own margin
}

void CustomMessageBoxTest::titleColorTellsSeverity_data()
{
    QTest::addColumn<int>("severity");
    QTest::addColumn<QString>("color");
    Theme::forceTheme = 1;
    const ColorTokens c = Theme::colors();
    QTest::newRow("info") << int(Box::Info) << c.onSurface;
    QTest::newRow("warning") << int(Box::Warning) << c.warning;
    QTest::newRow("critical") << int(Box::Critical) << c.errorColor;
}

void CustomMessageBoxTest::titleColorTellsSeverity()
{
    QFETCH(int, severity);
    QFETCH(QString, color);
    const Box box(nullptr, "t", "x", Box::Ok, Box::Ok, static_cast<Box::Severity>(severity));
    QCOMPARE(
        labelOf(box, 0)->styleSheet(),
        QStringLiteral("color: %1; font-size: 16px; font-weight: bold; border: none;").arg(color));
    QCOMPARE(labelOf(box, 1)->styleSheet(),
             QStringLiteral("color: %1; font-size: 14px; border: none;")
                 .arg(Theme::colors().onSurfaceVariant));
    QVERIFY(labelOf(box, 1)->wordWrap());
}

void CustomMessageBoxTest::textsAreNotMarkup()
{
    const Box box(nullptr, "<b>t</b>", "a <i>b</i>\nc", Box::Ok, Box::Ok, Box::Info);
    QCOMPARE(labelOf(box, 0)->text(), "<b>t</b>");
    QCOMPARE(labelOf(box, 0)->textFormat(), Qt::PlainText);
    QCOMPARE(labelOf(box, 1)->text(), "a <i>b</i>\nc");
    QCOMPARE(labelOf(box, 1)->textFormat(), Qt::PlainText);
}

void CustomMessageBoxTest::longWordsDoNotWidenTheBox()
{
    // Letters of two code units, out of step with the places where the word is broken.
    const QString word = "W" + QString::fromUtf8("𝐖").repeated(600);
    Box box(nullptr, "t", word, Box::Ok, Box::Ok, Box::Info);
    box.show();
    QVERIFY(QTest::qWaitForWindowExposed(&box));
    QVERIFY2(box.width() < 700, qPrintable(QString::number(box.width())));
    QVERIFY(labelOf(box, 1)->height() > 5 * labelOf(box, 1)->fontMetrics().height());
    // All of it is there, and no letter is torn apart.
    QString shown = labelOf(box, 1)->text();
    QVERIFY(shown.isValidUtf16());
    QCOMPARE(shown.remove(QChar(0x200B)), word);
    QCOMPARE(labelOf(box, 1)->accessibleName(), word);
}

void CustomMessageBoxTest::hugeTextStaysOnTheScreen()
{
    Box box(nullptr, "t", QStringLiteral("line\n").repeated(5000), Box::Ok, Box::Ok, Box::Info);
    box.show();
    QVERIFY(QTest::qWaitForWindowExposed(&box));
    QVERIFY2(box.height() < 600, qPrintable(QString::number(box.height())));
}

void CustomMessageBoxTest::longTextsScroll_data()
{
    QTest::addColumn<int>("missingLines"); // to the first text that is higher than 400 px
    QTest::addColumn<bool>("scrolls");
    QTest::newRow("the longest that fits") << 1 << false;
    QTest::newRow("one line more") << 0 << true;
}

void CustomMessageBoxTest::longTextsScroll()
{
    QFETCH(int, missingLines);
    QFETCH(bool, scrolls);
    const Box probe(nullptr, "t", "x", Box::Ok, Box::Ok, Box::Info);
    int lines = 1;
    for (; labelOf(probe, 1)->sizeHint().height() <= 400; ++lines)
        labelOf(probe, 1)->setText(linesOf(lines + 1));
    Box box(nullptr, "t", linesOf(lines - missingLines), Box::Ok, Box::Ok, Box::Info);
    box.show();
    QVERIFY(QTest::qWaitForWindowExposed(&box));
    QCOMPARE(box.findChild<QScrollArea*>() != nullptr, scrolls);
    const QLabel* text = labelOf(box, 1);
    QVERIFY(text->height() >= text->heightForWidth(text->width())); // none of it is cut
    QCOMPARE(text->height() > 400, scrolls);
    if (scrolls) {
        QCOMPARE(box.findChild<QScrollArea*>()->height(), 400);
        QVERIFY(box.findChild<QScrollArea*>()->verticalScrollBar()->isVisible());
    }
}

void CustomMessageBoxTest::scrollingShowsTheEnd()
{
    Box box(nullptr, "t", linesOf(200), Box::Ok, Box::Ok, Box::Info);
    box.show();
    QVERIFY(QTest::qWaitForWindowActive(&box));
    const QLabel* text = labelOf(box, 1);
    const int lastRow = text->height() - 1;
    QVERIFY(!text->visibleRegion().contains(QPoint(0, lastRow)));
    pressKey(box, Qt::Key_End);
    QVERIFY(text->visibleRegion().contains(QPoint(0, lastRow)));
    QVERIFY(!text->visibleRegion().contains(QPoint(0, 0)));
}

void CustomMessageBoxTest::scrolledTextStandsOnTheCard()
{
    Box box(nullptr, "t", linesOf(200), Box::Ok, Box::Ok, Box::Info);
    box.show();
    QVERIFY(QTest::qWaitForWindowActive(&box));
    const auto* scroll = box.findChild<QScrollArea*>();
    const QImage image = box.grab().toImage();
    // Between the lines of the text there is the card, and nothing of a colour of its own.
    const QPoint corner = scroll->viewport()->mapTo(&box, scroll->viewport()->rect().bottomRight());
    QCOMPARE(image.pixelColor(corner), QColor(Theme::colors().surface));
}

void CustomMessageBoxTest::scrollBarIsInSight_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("light") << 1;
    QTest::newRow("dark") << 2;
}

void CustomMessageBoxTest::scrollBarIsInSight()
{
    QFETCH(int, mode);
    Theme::forceTheme = mode;
    // The bars of the program are invisible until the pointer is on them.
    qApp->setStyleSheet("QScrollBar::handle:vertical { background: transparent; }");
    const auto restore = qScopeGuard([] { qApp->setStyleSheet(QString()); });
    Box box(nullptr, "t", linesOf(200), Box::Ok, Box::Ok, Box::Info);
    box.show();
    QVERIFY(QTest::qWaitForWindowActive(&box));
    const QScrollBar* bar = box.findChild<QScrollArea*>()->verticalScrollBar();
    const QRect barInBox(bar->mapTo(&box, QPoint(0, 0)), bar->size());
    const QRect handle =
        Pixels::boxOfColor(box.grab().toImage().copy(barInBox), QColor(Theme::colors().outline), 2);
    QVERIFY(handle.width() >= 4);
    QVERIFY(handle.height() >= 20);
    QVERIFY(handle.top() < 10);
    QVERIFY(handle.bottom() < barInBox.height() / 2); // most of the text is below
}

void CustomMessageBoxTest::keysScroll_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("direction"); // from the middle of the text
    QTest::newRow("Up") << int(Qt::Key_Up) << -1;
    QTest::newRow("Down") << int(Qt::Key_Down) << 1;
    QTest::newRow("Page Up") << int(Qt::Key_PageUp) << -1;
    QTest::newRow("Page Down") << int(Qt::Key_PageDown) << 1;
    QTest::newRow("Home") << int(Qt::Key_Home) << -1;
    QTest::newRow("End") << int(Qt::Key_End) << 1;
    QTest::newRow("Left") << int(Qt::Key_Left) << 0;
    QTest::newRow("Right") << int(Qt::Key_Right) << 0;
}

void CustomMessageBoxTest::keysScroll()
{
    QFETCH(int, key);
    QFETCH(int, direction);
    Box box(nullptr, "t", linesOf(200), Box::Yes | Box::No, Box::No, Box::Info);
    box.show();
    QVERIFY(QTest::qWaitForWindowActive(&box));
    QScrollBar* bar = box.findChild<QScrollArea*>()->verticalScrollBar();
    for (QWidget* focused :
         {static_cast<QWidget*>(buttonsOf(box).at(1)), static_cast<QWidget*>(&box)}) {
        focused->setFocus();
        bar->setValue(bar->maximum() / 2);
        const int before = bar->value();
        QTest::keyClick(focused, static_cast<Qt::Key>(key));
        QCOMPARE((bar->value() > before) - (bar->value() < before), direction);
        // Keys that scroll leave the focus where it is.
        QVERIFY(direction == 0 || box.focusWidget() == focused || focused == &box);
        QVERIFY(box.isVisible());
    }
}

void CustomMessageBoxTest::scrolledBoxEndsAsAnyOther()
{
    QList<int> results;
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        const ModalDriver driver([key](QWidget* modal) {
            pressKey(*modal, Qt::Key_PageDown);
            pressKey(*modal, key);
        });
        results.append(Box::showMessage(nullptr, "t", linesOf(200), Box::Info));
    }
    QCOMPARE(results, (QList<int>{Box::Ok, Box::NoButton}));
}

void CustomMessageBoxTest::ordinaryTextsStayAsTheyAre_data()
{
    addLanguageRows();
}

void CustomMessageBoxTest::ordinaryTextsStayAsTheyAre()
{
    QFETCH(Lang, lang);
    Tr::currentLang = lang;
    for (const char* key : {"settings.del_section_msg", "settings.data.import_confirm_msg",
                            "settings.data.reset_confirm_msg", "dialog.err_section_exists"}) {
        const QString text = Tr::t(key);
        QVERIFY(text != key);
        const Box box(nullptr, "t", text, Box::Ok, Box::Ok, Box::Info);
        QCOMPARE(labelOf(box, 1)->text(), text);
    }
}

void CustomMessageBoxTest::standardButtonsHaveAFixedOrder_data()
{
    QTest::addColumn<int>("buttons");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("none") << int(Box::NoButton) << QStringList();
    QTest::newRow("ok") << int(Box::Ok) << QStringList{"OK"};
    QTest::newRow("cancel and ok") << (Box::Cancel | Box::Ok) << QStringList{"OK", "Cancel"};
    QTest::newRow("no and yes") << (Box::No | Box::Yes) << QStringList{"Yes", "No"};
    QTest::newRow("all") << (Box::Ok | Box::Yes | Box::No | Box::Cancel)
                         << QStringList{"Yes", "No", "OK", "Cancel"};
    QTest::newRow("unknown bits") << (0x70 | Box::No) << QStringList{"No"};
}

void CustomMessageBoxTest::standardButtonsHaveAFixedOrder()
{
    QFETCH(int, buttons);
    Box box(nullptr, "t", "x", buttons, Box::Ok, Box::Info);
    QTEST(textsOf(buttonsOf(box)), "texts");
    box.show();
    QVERIFY(QTest::qWaitForWindowExposed(&box));
    int right = 0; // as in the list, so on the screen
    for (const QPushButton* button : buttonsOf(box)) {
        QVERIFY(button->geometry().left() > right);
        right = button->geometry().right();
    }
}

void CustomMessageBoxTest::standardButtonStyles()
{
    const ColorTokens c = Theme::colors();
    const int all = Box::Ok | Box::Yes | Box::No | Box::Cancel;
    const Box okDefault(nullptr, "t", "x", all, Box::Ok, Box::Info);
    const QList<QPushButton*> buttons = buttonsOf(okDefault);
    QCOMPARE(buttons.at(0)->styleSheet(), Theme::actionBtnStyle(c));
    QCOMPARE(buttons.at(1)->styleSheet(), Theme::actionBtnStyle(c));
    QCOMPARE(buttons.at(2)->styleSheet(), Theme::primaryBtnStyle(c));
    QCOMPARE(buttons.at(3)->styleSheet(), Theme::actionBtnStyle(c, "transparent"));
    for (const QPushButton* button : buttons)
        QCOMPARE(button->isDefault(), button->text() == "OK");

    const Box cancelDefault(nullptr, "t", "x", all, Box::Cancel, Box::Info);
    QCOMPARE(buttonsOf(cancelDefault).at(2)->styleSheet(), Theme::actionBtnStyle(c));
    QCOMPARE(buttonsOf(cancelDefault).at(3)->styleSheet(), Theme::primaryBtnStyle(c));
    QVERIFY(buttonsOf(cancelDefault).at(3)->isDefault());
}

void CustomMessageBoxTest::standardButtonGivesItsCode_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("code");
    QTest::newRow("yes") << 0 << int(Box::Yes);
    QTest::newRow("no") << 1 << int(Box::No);
    QTest::newRow("ok") << 2 << int(Box::Ok);
    QTest::newRow("cancel") << 3 << int(Box::Cancel);
}

void CustomMessageBoxTest::standardButtonGivesItsCode()
{
    QFETCH(int, index);
    Box box(nullptr, "t", "x", Box::Ok | Box::Yes | Box::No | Box::Cancel, Box::Ok, Box::Info);
    const ModalDriver driver([index](QWidget* modal) {
        QTest::mouseClick(buttonsOf(*modal).at(index), Qt::LeftButton);
    });
    QTEST(box.exec(), "code");
}

void CustomMessageBoxTest::messagesHaveAnOkButton_data()
{
    QTest::addColumn<int>("severity");
    QTest::newRow("information") << int(Box::Info);
    QTest::newRow("warning") << int(Box::Warning);
    QTest::newRow("critical") << int(Box::Critical);
}

void CustomMessageBoxTest::messagesHaveAnOkButton()
{
    QFETCH(int, severity);
    Tr::currentLang = Lang::Es;
    QStringList texts;
    QString titleStyle;
    bool isDefault = false;
    const ModalDriver driver([&](QWidget* modal) {
        texts = QStringList{labelOf(*modal, 0)->text(), labelOf(*modal, 1)->text()} +
                textsOf(buttonsOf(*modal));
        titleStyle = labelOf(*modal, 0)->styleSheet();
        isDefault = buttonsOf(*modal).first()->isDefault();
        pressKey(*modal, Qt::Key_Return);
    });
    const auto show = severity == Box::Info      ? &Box::information
                      : severity == Box::Warning ? &Box::warning
                                                 : &Box::critical;
    const Box::StandardButton result = show(nullptr, "Error", "x");
    QCOMPARE(result, Box::Ok);
    QCOMPARE(texts, (QStringList{"Error", "x", "Aceptar"})); // only what comes from the table
    QVERIFY(isDefault);
    const ColorTokens c = Theme::colors();
    const QStringList colors{c.onSurface, c.warning, c.errorColor};
    QVERIFY(titleStyle.contains("color: " + colors.at(severity) + ";"));
}

void CustomMessageBoxTest::messageEnds_data()
{
    QTest::addColumn<int>("key"); // kNoKey: closed by the window system
    QTest::addColumn<int>("result");
    QTest::newRow("Return") << int(Qt::Key_Return) << int(Box::Ok);
    QTest::newRow("Enter") << int(Qt::Key_Enter) << int(Box::Ok);
    QTest::newRow("Space") << int(Qt::Key_Space) << int(Box::Ok);
    QTest::newRow("Esc") << int(Qt::Key_Escape) << int(Box::NoButton);
    QTest::newRow("Backspace") << int(Qt::Key_Backspace) << int(Box::NoButton);
    QTest::newRow("closed") << kNoKey << int(Box::NoButton);
}

void CustomMessageBoxTest::messageEnds()
{
    QFETCH(int, key);
    const ModalDriver driver([key](QWidget* modal) {
        if (key == kNoKey)
            modal->close();
        else
            pressKey(*modal, static_cast<Qt::Key>(key));
    });
    QTEST(Box::showMessage(nullptr, "t", "x", Box::Info), "result");
    QCOMPARE(driver.count(), 1);
}

void CustomMessageBoxTest::questionStyles_data()
{
    QTest::addColumn<int>("defaultIdx");
    QTest::addColumn<QVector<int>>("destructive");
    QTest::addColumn<QString>("looks"); // p: primary, d: destructive, a: action
    QTest::newRow("deletion") << 1 << QVector<int>{0} << "dpa";
    QTest::newRow("overwrite") << 0 << QVector<int>() << "paa";
    QTest::newRow("red default") << 0 << QVector<int>{0} << "daa";
    QTest::newRow("two red ones") << 1 << QVector<int>{2, 1} << "add";
    QTest::newRow("indices out of range") << 7 << QVector<int>{-1, 9} << "aaa";
}

void CustomMessageBoxTest::questionStyles()
{
    QFETCH(int, defaultIdx);
    QFETCH(QVector<int>, destructive);
    QFETCH(QString, looks);
    const Question question({"A", "B", "C"}, defaultIdx, destructive, byKey(Qt::Key_Escape));
    const ColorTokens c = Theme::colors();
    const QMap<QChar, QString> styles{{'p', Theme::primaryBtnStyle(c)},
                                      {'d', Theme::destructiveBtnStyle(c)},
                                      {'a', Theme::actionBtnStyle(c)}};
    QCOMPARE(question.buttonTexts, (QStringList{"A", "B", "C"}));
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(question.styles.at(i), styles.value(looks.at(i)));
        // A button without `setDefault` may still be the automatic default while it has the focus.
        if (defaultIdx < 3)
            QCOMPARE(question.defaults.at(i), i == defaultIdx);
    }
    QCOMPARE(question.title, "A title");
    QCOMPARE(question.text, "A text");
    QVERIFY(question.titleStyle.contains("color: " + c.onSurface + ";"));
}

void CustomMessageBoxTest::questionGivesTheIndex_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < 3; ++i)
        QTest::addRow("button %d", i) << i;
}

void CustomMessageBoxTest::questionGivesTheIndex()
{
    QFETCH(int, index);
    const Question question({"A", "B", "C"}, 0, {}, byClick(index));
    QCOMPARE(question.result, index);
    QCOMPARE(question.count, 1);
}

void CustomMessageBoxTest::dismissedQuestionCountsAsFirstButton_data()
{
    QTest::addColumn<int>("key"); // kNoKey: closed by the window system
    QTest::newRow("Esc") << int(Qt::Key_Escape);
    QTest::newRow("Backspace") << int(Qt::Key_Backspace);
    QTest::newRow("closed") << kNoKey;
}

void CustomMessageBoxTest::dismissedQuestionCountsAsFirstButton()
{
    QFETCH(int, key);
    const Question question({"Delete", "Cancel"}, 1, {0}, [key](QWidget& box) {
        if (key == kNoKey)
            box.close();
        else
            pressKey(box, static_cast<Qt::Key>(key));
    });
    QCOMPARE(question.result, 0);
}

void CustomMessageBoxTest::cancelHasToBeChosen()
{
    QCOMPARE(Question({"Delete", "Cancel"}, 1, {0}, byKey(Qt::Key_Return)).result, 1);
    QCOMPARE(Question({"Delete", "Cancel"}, 1, {0}, byClick(1)).result, 1);
    QCOMPARE(Question({"Save", "Cancel"}, 0, {}, byKey(Qt::Key_Return)).result, 0);
    const Question byArrow({"Save", "Cancel"}, 0, {}, [](QWidget& box) {
        pressKey(box, Qt::Key_Right);
        pressKey(box, Qt::Key_Return);
    });
    QCOMPARE(byArrow.result, 1);
}

void CustomMessageBoxTest::questionWithoutButtons()
{
    const Question question({}, 0, {}, [](QWidget& box) {
        pressKey(box, Qt::Key_Return); // nothing to trigger
        QVERIFY(box.isVisible());
        pressKey(box, Qt::Key_Escape);
    });
    QCOMPARE(question.result, 0);
    QCOMPARE(question.count, 1);
}

void CustomMessageBoxTest::arrowsWrapAround_data()
{
    QTest::addColumn<int>("buttons");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("to");
    const int three = Box::Yes | Box::No | Box::Cancel;
    QTest::newRow("right") << three << 0 << int(Qt::Key_Right) << 1;
    QTest::newRow("right in the middle") << three << 1 << int(Qt::Key_Right) << 2;
    QTest::newRow("right at the end") << three << 2 << int(Qt::Key_Right) << 0;
    QTest::newRow("left") << three << 2 << int(Qt::Key_Left) << 1;
    QTest::newRow("left at the beginning") << three << 0 << int(Qt::Key_Left) << 2;
    QTest::newRow("right, only one") << int(Box::Ok) << 0 << int(Qt::Key_Right) << 0;
    QTest::newRow("left, only one") << int(Box::Ok) << 0 << int(Qt::Key_Left) << 0;
}

void CustomMessageBoxTest::arrowsWrapAround()
{
    QFETCH(int, buttons);
    QFETCH(int, from);
    QFETCH(int, key);
    QFETCH(int, to);
    for (const bool isAtDialog : {false, true}) {
        Box box(nullptr, "t", "x", buttons, Box::NoButton, Box::Info);
        box.show();
        QVERIFY(QTest::qWaitForWindowActive(&box));
        buttonsOf(box).at(from)->setFocus();
        // A key reaches the box by way of the button, or directly where the button passed it on.
        QTest::keyClick(isAtDialog ? static_cast<QWidget*>(&box) : buttonsOf(box).at(from),
                        static_cast<Qt::Key>(key));
        QCOMPARE(box.focusWidget(), buttonsOf(box).at(to));
    }
}

void CustomMessageBoxTest::arrowsWithoutFocusTakeTheFirst_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("left") << int(Qt::Key_Left);
    QTest::newRow("right") << int(Qt::Key_Right);
}

void CustomMessageBoxTest::arrowsWithoutFocusTakeTheFirst()
{
    QFETCH(int, key);
    Box box(nullptr, "t", "x", Box::Yes | Box::No | Box::Cancel, Box::No, Box::Info);
    box.show();
    QVERIFY(QTest::qWaitForWindowActive(&box));
    if (box.focusWidget())
        box.focusWidget()->clearFocus();
    QVERIFY(!box.focusWidget());
    QTest::keyClick(&box, static_cast<Qt::Key>(key));
    QCOMPARE(box.focusWidget(), buttonsOf(box).at(0));
}

void CustomMessageBoxTest::arrowsWithoutButtons()
{
    Box box(nullptr, "t", "x", Box::NoButton, Box::NoButton, Box::Info);
    box.show();
    QVERIFY(QTest::qWaitForWindowActive(&box));
    QTest::keyClick(&box, Qt::Key_Left);
    QTest::keyClick(&box, Qt::Key_Right);
    QVERIFY(box.isVisible());
    QVERIFY(!box.focusWidget());
}

void CustomMessageBoxTest::enterClicksTheFocusedButton_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
}

void CustomMessageBoxTest::enterClicksTheFocusedButton()
{
    QFETCH(int, key);
    for (const bool isAtDialog : {false, true}) {
        Box box(nullptr, "t", "x", Box::Yes | Box::No | Box::Cancel, Box::Yes, Box::Info);
        box.show();
        QVERIFY(QTest::qWaitForWindowActive(&box));
        buttonsOf(box).at(1)->setFocus();
        QTest::keyClick(isAtDialog ? static_cast<QWidget*>(&box) : buttonsOf(box).at(1),
                        static_cast<Qt::Key>(key));
        QVERIFY(!box.isVisible());
        QCOMPARE(box.result(), int(Box::No));
    }
}

void CustomMessageBoxTest::enterWithoutFocusTriggersTheDefault_data()
{
    enterClicksTheFocusedButton_data();
}

void CustomMessageBoxTest::enterWithoutFocusTriggersTheDefault()
{
    QFETCH(int, key);
    Box box(nullptr, "t", "x", Box::Yes | Box::No | Box::Cancel, Box::No, Box::Info);
    box.show();
    QVERIFY(QTest::qWaitForWindowActive(&box));
    if (box.focusWidget())
        box.focusWidget()->clearFocus();
    QTest::keyClick(&box, static_cast<Qt::Key>(key));
    QVERIFY(!box.isVisible());
    QCOMPARE(box.result(), int(Box::No));
}

void CustomMessageBoxTest::otherKeysDoNothing()
{
    Box box(nullptr, "t", "x", Box::Yes | Box::No, Box::Yes, Box::Info);
    box.show();
    QVERIFY(QTest::qWaitForWindowActive(&box));
    buttonsOf(box).at(0)->setFocus();
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_Delete, Qt::Key_F1, Qt::Key_Home})
        pressKey(box, key);
    QVERIFY(box.isVisible());
    QCOMPARE(box.focusWidget(), buttonsOf(box).at(0));
}

QTEST_MAIN(CustomMessageBoxTest)
#include "tst_custommessagebox.moc"
