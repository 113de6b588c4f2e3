// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Pixels.h"
#include "TestHome.h"
#include "Theme.h"

#include <QFrame>
#include <QGraphicsDropShadowEffect>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTest>

#include <memory>

namespace
{

constexpr int kForceLight = 1;
constexpr int kForceDark = 2;

using Declarations = QMap<QString, QString>;

Declarations declarationsOf(const QString& body)
{
    Declarations found;
    for (const QString& declaration : body.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const qsizetype colon = declaration.indexOf(QLatin1Char(':'));
        if (colon > 0)
            found.insert(declaration.left(colon).trimmed(), declaration.mid(colon + 1).trimmed());
    }
    return found;
}

/// The declarations under one selector of a sheet; empty if it has no such rule.
Declarations ruleOf(const QString& sheet, const QString& selector)
{
    static const QRegularExpression rule(QStringLiteral("([^{}]+)\\{([^{}]*)\\}"));
    auto matches = rule.globalMatch(sheet);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        if (match.captured(1).trimmed() == selector)
            return declarationsOf(match.captured(2));
    }
    return {};
}

/// Colours that no palette holds, each used for one token only, so that a sheet tells which token
/// went where.
ColorTokens markedTokens()
{
    ColorTokens c;
    c.primary = QStringLiteral("#100000");
    c.onPrimary = QStringLiteral("#e00000");
    c.primaryContainer = QStringLiteral("#200000");
    c.onPrimaryContainer = QStringLiteral("#d00000");
    c.surface = QStringLiteral("#001000");
    c.surfaceContainerHighest = QStringLiteral("#300000");
    c.onSurface = QStringLiteral("#c00000");
    c.onSurfaceVariant = QStringLiteral("#b00000");
    c.outline = QStringLiteral("#002000");
    c.outlineVariant = QStringLiteral("#003000");
    c.errorColor = QStringLiteral("#c01020");
    c.onError = QStringLiteral("#004000");
    c.key = QStringLiteral("#badbad"); // never to be seen: the tones come from the seed
    c.onKey = QStringLiteral("#badbad");
    return c;
}

} // namespace

class ThemeStylesTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void measures();
    void fontTokens();

    void primaryButton();
    void actionButton();
    void actionButtonOnAnotherGround();
    void destructiveButton_data();
    void destructiveButton();
    void listeningButton();
    void iconButton();
    void iconButtonOnAnotherGround();
    void secondaryPill();
    void unselectedIconChoice();
    void selectedIconChoice();
    void choiceStates();
    void choiceStatesOnAnotherGround();
    void choiceStatesLeaveTheSelectorAlone();
    void fieldInput();
    void labels();
    void text();
    void band();
    void bandTitle();
    void textOnACard();
    void staticTitle();
    void separator();
    void shownScrollBar();
    void smallPill();
    void pickerPill();
    void choicePill_data();
    void choicePill();
    void contextMenu();
    void scrollBars_data();
    void scrollBars();
    void keyComesFromTheSeed();
    void sheetsFollowTheSeed();
    void sheetsParse();

    void surfaceGetters_data();
    void surfaceGetters();
    void seedGetters_data();
    void seedGetters();
    void fieldGetters_data();
    void fieldGetters();
    void fieldFillKeepsAPaleGround();
    void iconChoiceForeground();

    void dialogBackground();
    void dialogBackgroundWithoutPadding();
    void dialogBackgroundIsOwnedByItsParent();
};

void ThemeStylesTest::init()
{
    Theme::forceTheme = kForceLight;
    Theme::seedColorHex = QStringLiteral("#0284c7");
}

void ThemeStylesTest::measures()
{
    QCOMPARE(Theme::Sp_Xs, 4);
    QCOMPARE(Theme::Sp_Sm, 8);
    QCOMPARE(Theme::Sp_Md, 12);
    QCOMPARE(Theme::Sp_Lg, 16);
    QCOMPARE(Theme::Sp_Xl, 20);
    QCOMPARE(Theme::Sp_Xxl, 24);
    QCOMPARE(Theme::Rad_Sm, 8);
    QCOMPARE(Theme::Rad_Md, 16);
    QCOMPARE(Theme::Rad_Lg, 24);
}

void ThemeStylesTest::fontTokens()
{
    QCOMPARE(FontTokens::Family,
             QStringLiteral("'Plus Jakarta Sans', 'Inter', 'Segoe UI', sans-serif"));
    QCOMPARE(FontTokens::SizeSmPx, 13);
    QCOMPARE(FontTokens::SizeMdPx, 14);
    QCOMPARE(FontTokens::SizeLgPx, 16);
    QCOMPARE(FontTokens::SizeSm, QStringLiteral("13px"));
    QCOMPARE(FontTokens::SizeMd, QStringLiteral("14px"));
    QCOMPARE(FontTokens::SizeLg, QStringLiteral("16px"));
}

void ThemeStylesTest::primaryButton()
{
    QCOMPARE(Theme::primaryBtnStyle(markedTokens()),
             QStringLiteral(
                 "QPushButton { background-color: #100000; border: 1px solid transparent; "
                 "border-radius: 16px; padding: 8px 16px; color: #e00000; font-weight: bold; "
                 "outline: 0; }"
                 "QPushButton:hover { background-color: #210000; color: #e00000; }"
                 "QPushButton:focus { background-color: #250000; color: #e00000; outline: 0; }"));
}

void ThemeStylesTest::actionButton()
{
    const QString expected = QStringLiteral(
        "QPushButton { background-color: #300000; border: 1px solid transparent; "
        "border-radius: 16px; padding: 8px 16px; color: #c00000; font-weight: bold; outline: 0; }"
        "QPushButton:hover { background-color: #3c0000; color: #c00000; }"
        "QPushButton:focus { background-color: #3e0000; color: #c00000; border-color: #0a6ba1; "
        "outline: 0; }");
    QCOMPARE(Theme::actionBtnStyle(markedTokens(), QString()), expected);
    QCOMPARE(Theme::actionBtnStyle(markedTokens()), expected);
}

void ThemeStylesTest::actionButtonOnAnotherGround()
{
    const QString solid = Theme::actionBtnStyle(markedTokens(), QStringLiteral("#000030"));
    QCOMPARE(ruleOf(solid, "QPushButton")["background-color"], QStringLiteral("#000030"));
    QCOMPARE(ruleOf(solid, "QPushButton:hover")["background-color"], QStringLiteral("#0f002c"));
    QCOMPARE(ruleOf(solid, "QPushButton:focus")["background-color"], QStringLiteral("#13002b"));

    const QString clear = Theme::actionBtnStyle(markedTokens(), QStringLiteral("transparent"));
    QCOMPARE(ruleOf(clear, "QPushButton")["background-color"], QStringLiteral("transparent"));
    QCOMPARE(ruleOf(clear, "QPushButton:hover")["background-color"],
             QStringLiteral("rgba(192, 0, 0, 20)"));
    QCOMPARE(ruleOf(clear, "QPushButton:focus")["background-color"],
             QStringLiteral("rgba(192, 0, 0, 26)"));
}

void ThemeStylesTest::destructiveButton_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("hover");
    QTest::addColumn<QString>("focus");
    QTest::newRow("darker in the light") << kForceLight << QColor("#c01020").darker(115).name()
                                         << QColor("#c01020").darker(130).name();
    QTest::newRow("lighter in the dark") << kForceDark << QColor("#c01020").lighter(115).name()
                                         << QColor("#c01020").lighter(130).name();
}

void ThemeStylesTest::destructiveButton()
{
    QFETCH(int, mode);
    QFETCH(QString, hover);
    QFETCH(QString, focus);
    Theme::forceTheme = mode;
    QCOMPARE(
        Theme::destructiveBtnStyle(markedTokens()),
        QStringLiteral("QPushButton { background-color: #c01020; border: 1px solid transparent; "
                       "border-radius: 16px; padding: 8px 16px; color: #004000; font-weight: bold; "
                       "outline: 0; }QPushButton:hover { background-color: %1; }"
                       "QPushButton:focus { background-color: %2; outline: 0; }")
            .arg(hover, focus));
}

void ThemeStylesTest::listeningButton()
{
    const Declarations box = ruleOf(Theme::activeListeningStyle(markedTokens()), "QPushButton");
    QCOMPARE(box["background-color"], QStringLiteral("#200000"));
    QCOMPARE(box["border"], QStringLiteral("1px solid #100000"));
    QCOMPARE(box["color"], QStringLiteral("#d00000"));
    QCOMPARE(box["border-radius"], QStringLiteral("16px"));
    QCOMPARE(box["padding"], QStringLiteral("8px 16px"));
    QCOMPARE(box["font-weight"], QStringLiteral("bold"));
}

void ThemeStylesTest::iconButton()
{
    const QString sheet = Theme::iconBtnStyle(markedTokens(), QString());
    QCOMPARE(Theme::iconBtnStyle(markedTokens()), sheet);
    const Declarations box = ruleOf(sheet, "QPushButton");
    QCOMPARE(box["background-color"], QStringLiteral("#300000"));
    QCOMPARE(box["color"], QStringLiteral("#c00000"));
    QCOMPARE(box["border"], QStringLiteral("none"));
    QCOMPARE(box["border-radius"], QStringLiteral("16px"));
    QCOMPARE(box["padding"], QStringLiteral("0px"));
    QCOMPARE(ruleOf(sheet, "QPushButton:hover")["background-color"], QStringLiteral("#3c0000"));
    QCOMPARE(ruleOf(sheet, "QPushButton:focus")["background-color"], QStringLiteral("#3e0000"));
    QCOMPARE(ruleOf(sheet, "QPushButton::menu-indicator")["image"], QStringLiteral("none"));
}

void ThemeStylesTest::iconButtonOnAnotherGround()
{
    const QString sheet = Theme::iconBtnStyle(markedTokens(), QStringLiteral("transparent"));
    QCOMPARE(ruleOf(sheet, "QPushButton")["background-color"], QStringLiteral("transparent"));
    QCOMPARE(ruleOf(sheet, "QPushButton:hover")["background-color"],
             QStringLiteral("rgba(192, 0, 0, 20)"));
    QCOMPARE(ruleOf(sheet, "QPushButton:focus")["background-color"],
             QStringLiteral("rgba(192, 0, 0, 26)"));
}

void ThemeStylesTest::secondaryPill()
{
    const QString sheet = Theme::pillSecondaryStyle(markedTokens());
    const Declarations box = ruleOf(sheet, "QPushButton");
    QCOMPARE(box["background-color"], QStringLiteral("#300000"));
    QCOMPARE(box["color"], QStringLiteral("#c00000"));
    QCOMPARE(box["border"], QStringLiteral("1px solid transparent"));
    QCOMPARE(box["border-radius"], QStringLiteral("12px"));
    QCOMPARE(box["padding"], QStringLiteral("4px 12px"));
    QCOMPARE(box["font-weight"], QStringLiteral("bold"));
    QCOMPARE(ruleOf(sheet, "QPushButton:hover")["background-color"], QStringLiteral("#3c0000"));
    QCOMPARE(ruleOf(sheet, "QPushButton:focus")["background-color"], QStringLiteral("#3e0000"));
    QCOMPARE(ruleOf(sheet, "QPushButton:focus")["border-color"], QStringLiteral("#0a6ba1"));
    QCOMPARE(ruleOf(sheet, "QPushButton:pressed")["background-color"], QStringLiteral("#3e0000"));
    // Equal in weight, so the later rule wins: a pressed pill has the focus too.
    QVERIFY(sheet.indexOf(":pressed") > sheet.indexOf(":focus"));
}

void ThemeStylesTest::unselectedIconChoice()
{
    const ColorTokens c = markedTokens();
    const QString idle = Theme::fieldIdleBg(c);
    const QString sheet = Theme::iconChoiceStyle(c, false);
    const Declarations box = ruleOf(sheet, "QPushButton");
    QCOMPARE(box["background-color"], idle);
    QCOMPARE(box["border"], QStringLiteral("2px solid transparent"));
    QCOMPARE(box["border-radius"], QStringLiteral("18px"));
    QCOMPARE(ruleOf(sheet, "QPushButton:hover")["background-color"],
             Theme::stateLayerOn(idle, c.onSurface, Theme::StateHover));
    const Declarations focus = ruleOf(sheet, "QPushButton:focus");
    QCOMPARE(focus["background-color"], Theme::stateLayerOn(idle, c.onSurface, Theme::StateFocus));
    QCOMPARE(focus["border-color"], QStringLiteral("#0a6ba1"));
}

void ThemeStylesTest::selectedIconChoice()
{
    const QString sheet = Theme::iconChoiceStyle(markedTokens(), true);
    QCOMPARE(ruleOf(sheet, "QPushButton")["background-color"], QStringLiteral("#0a6ba1"));
    QCOMPARE(ruleOf(sheet, "QPushButton:hover")["background-color"],
             Theme::stateLayerOn("#0a6ba1", "#ffffff", Theme::StateHover));
    const Declarations focus = ruleOf(sheet, "QPushButton:focus");
    QCOMPARE(focus["background-color"],
             Theme::stateLayerOn("#0a6ba1", "#ffffff", Theme::StateFocus));
    QCOMPARE(focus["border-color"], QStringLiteral("#ffffff"));
}

void ThemeStylesTest::choiceStates()
{
    // In the dark, where the ring (#0b1f2e, onKey) can't be taken for any white.
    Theme::forceTheme = kForceDark;
    const QString expected = QStringLiteral(
        "QPushButton#a:hover { background-color: #3c0000; color: #c00000; }"
        "QPushButton#a:focus { background-color: #3e0000; color: #c00000; border-color: #9bccf8; }"
        "QPushButton#a:checked { background-color: #9bccf8; color: #0b1f2e; "
        "border-color: transparent; }"
        "QPushButton#a:checked:hover { background-color: #8fbee8; color: #0b1f2e; }"
        "QPushButton#a:checked:focus { background-color: #8dbbe4; color: #0b1f2e; "
        "border-color: #0b1f2e; }");
    const QString selector = QStringLiteral("QPushButton#a");
    QCOMPARE(Theme::choiceBtnStates(markedTokens(), selector, QString()), expected);
    QCOMPARE(Theme::choiceBtnStates(markedTokens(), selector), expected);
}

void ThemeStylesTest::choiceStatesOnAnotherGround()
{
    const QString sheet = Theme::choiceBtnStates(markedTokens(), QStringLiteral("QPushButton#a"),
                                                 QStringLiteral("#000030"));
    QCOMPARE(ruleOf(sheet, "QPushButton#a:hover")["background-color"], QStringLiteral("#0f002c"));
    QCOMPARE(ruleOf(sheet, "QPushButton#a:focus")["background-color"], QStringLiteral("#13002b"));
    QCOMPARE(ruleOf(sheet, "QPushButton#a:checked")["background-color"], QStringLiteral("#0a6ba1"));
}

void ThemeStylesTest::choiceStatesLeaveTheSelectorAlone()
{
    // An object name may hold what looks like a placeholder: some are made of users' texts.
    const QString selector = QStringLiteral("QPushButton#tpl%2_%10");
    const QString sheet = Theme::choiceBtnStates(markedTokens(), selector, QString());
    QCOMPARE(sheet.count(selector), 5);
    QCOMPARE(ruleOf(sheet, selector + ":hover")["background-color"], QStringLiteral("#3c0000"));
}

void ThemeStylesTest::fieldInput()
{
    const ColorTokens c = markedTokens();
    QCOMPARE(Theme::fieldInputStyle(c),
             QStringLiteral(
                 "QLineEdit { background-color: %1; border: none; border-radius: 18px; "
                 "padding: 10px 16px; color: #c00000; font-size: 14px; }"
                 "QPlainTextEdit { background-color: %1; border: none; border-radius: 16px; "
                 "padding: 8px; color: #c00000; font-size: 14px; }"
                 "QLineEdit:focus, QPlainTextEdit:focus { background-color: %2; color: #c00000; }")
                 .arg(Theme::fieldIdleBg(c), Theme::fieldFocusBg(c)));
}

void ThemeStylesTest::labels()
{
    const Declarations label = declarationsOf(Theme::fieldLabelStyle(markedTokens()));
    QCOMPARE(label["color"], QStringLiteral("#b00000"));
    QCOMPARE(label["font-size"], QStringLiteral("13px"));
    QCOMPARE(label["font-weight"], QStringLiteral("600"));
    QCOMPARE(label["letter-spacing"], QStringLiteral("0.3px"));
    QCOMPARE(label["border"], QStringLiteral("none"));

    const Declarations title = declarationsOf(Theme::dialogTitleStyle(markedTokens()));
    QCOMPARE(title["color"], QStringLiteral("#c00000"));
    QCOMPARE(title["font-size"], QStringLiteral("16px"));
    QCOMPARE(title["font-weight"], QStringLiteral("bold"));
    QCOMPARE(title["border"], QStringLiteral("none"));

    const Declarations header = declarationsOf(Theme::groupHeaderStyle(markedTokens()));
    QCOMPARE(header["color"], QStringLiteral("#b00000"));
    QCOMPARE(header["font-size"], QStringLiteral("13px"));
    QCOMPARE(header["font-weight"], QStringLiteral("bold"));
    QCOMPARE(header["letter-spacing"], QStringLiteral("0.6px"));
    QCOMPARE(header["background"], QStringLiteral("transparent"));
    QCOMPARE(header["border"], QStringLiteral("none"));
}

void ThemeStylesTest::text()
{
    QCOMPARE(Theme::textStyle("#123456", FontTokens::SizeMd),
             QStringLiteral("color: #123456; font-size: 14px; border: none;"));
    QCOMPARE(Theme::textStyle("#123456", FontTokens::SizeLg, Theme::Weight::Bold),
             QStringLiteral("color: #123456; font-size: 16px; font-weight: bold; border: none;"));
}

void ThemeStylesTest::band()
{
    QCOMPARE(Theme::bandStyle("#123456", 24, 16),
             QStringLiteral("background-color: #123456; border: none; "
                            "border-top-left-radius: 24px; border-top-right-radius: 24px; "
                            "border-bottom-left-radius: 16px; border-bottom-right-radius: 16px;"));
}

void ThemeStylesTest::bandTitle()
{
    QCOMPARE(Theme::bandTitleStyle(markedTokens()),
             QStringLiteral("color: #c00000; font-size: 18px; font-weight: bold; border: none; "
                            "background: transparent;"));
}

void ThemeStylesTest::textOnACard()
{
    for (const Theme::Weight weight : {Theme::Weight::Normal, Theme::Weight::Bold}) {
        const Declarations text =
            declarationsOf(Theme::textOnCardStyle("#123456", FontTokens::SizeSm, weight));
        QCOMPARE(text["color"], QStringLiteral("#123456"));
        QCOMPARE(text["font-size"], QStringLiteral("13px"));
        QCOMPARE(text["border"], QStringLiteral("none"));
        QCOMPARE(text["background"], QStringLiteral("transparent"));
        QCOMPARE(text.value("font-weight", "normal"),
                 weight == Theme::Weight::Bold ? QStringLiteral("bold") : QStringLiteral("normal"));
    }
}

void ThemeStylesTest::staticTitle()
{
    QCOMPARE(Theme::staticTitleStyle(markedTokens()),
             QStringLiteral("QLabel#titleStatic { background-color: transparent; color: #c00000; "
                            "font-size: 14px; font-weight: bold; border: none; }"));
}

void ThemeStylesTest::shownScrollBar()
{
    const QString sheet = Theme::shownScrollBarStyle(markedTokens());
    QCOMPARE(ruleOf(sheet, "QScrollBar:vertical")["width"], QStringLiteral("6px"));
    const Declarations handle = ruleOf(sheet, "QScrollBar::handle:vertical");
    QCOMPARE(handle["background"], QStringLiteral("#002000"));
    QCOMPARE(handle["border-radius"], QStringLiteral("3px"));
    QCOMPARE(ruleOf(sheet, "QScrollBar::handle:vertical:hover")["background"],
             QStringLiteral("#b00000"));
}

void ThemeStylesTest::separator()
{
    QCOMPARE(Theme::separatorStyle(markedTokens()),
             QStringLiteral("background-color: #003000; border: none;"));
}

void ThemeStylesTest::smallPill()
{
    const ColorTokens c = markedTokens();
    const QString sheet = Theme::smallPillStyle(c);
    QVERIFY(sheet.startsWith(Theme::pillSecondaryStyle(c))); // so that the rule behind it wins
    QCOMPARE(sheet.mid(Theme::pillSecondaryStyle(c).size()),
             QStringLiteral("QPushButton { border-radius: 18px; padding: 0 16px; "
                            "font-size: 12px; }"));
}

void ThemeStylesTest::pickerPill()
{
    const ColorTokens c = markedTokens();
    const QString sheet =
        Theme::pickerPillStyle("QPushButton#pick", c, "#123456", "#654321", 34, 80);
    const Declarations box = ruleOf(sheet, "QPushButton#pick");
    QCOMPARE(box["background-color"], Theme::fieldIdleBg(c));
    QCOMPARE(box["border"], QStringLiteral("none"));
    QCOMPARE(box["border-radius"], QStringLiteral("18px"));
    QCOMPARE(box["padding"], QStringLiteral("6px 14px 6px 34px"));
    QCOMPARE(box["color"], QStringLiteral("#c00000"));
    QCOMPARE(box["font-weight"], QStringLiteral("bold"));
    QCOMPARE(box["letter-spacing"], QStringLiteral("0.3px"));
    QCOMPARE(box["outline"], QStringLiteral("0"));
    QCOMPARE(box["min-width"], QStringLiteral("80px"));
    QCOMPARE(box["text-align"], QStringLiteral("left"));
    for (const char* state : {"QPushButton#pick:hover", "QPushButton#pick:focus"}) {
        QCOMPARE(ruleOf(sheet, state)["background-color"], QStringLiteral("#123456"));
        QCOMPARE(ruleOf(sheet, state)["color"], QStringLiteral("#654321"));
    }
    QCOMPARE(ruleOf(sheet, "QPushButton#pick:focus")["outline"], QStringLiteral("0"));
}

void ThemeStylesTest::choicePill_data()
{
    QTest::addColumn<QString>("override");
    QTest::addColumn<QString>("idle");
    QTest::newRow("on a card") << QString() << QStringLiteral("#300000");
    QTest::newRow("on a dialog") << QStringLiteral("#123456") << QStringLiteral("#123456");
}

void ThemeStylesTest::choicePill()
{
    QFETCH(QString, override);
    QFETCH(QString, idle);
    const ColorTokens c = markedTokens();
    const QString selector = QStringLiteral("QPushButton#themeBtn_auto");
    const QString sheet = Theme::choicePillStyle(c, selector, override);
    const Declarations box = ruleOf(sheet, selector);
    QCOMPARE(box["background-color"], idle);
    QCOMPARE(box["color"], QStringLiteral("#c00000"));
    QCOMPARE(box["border"], QStringLiteral("2px solid transparent"));
    QCOMPARE(box["border-radius"], QStringLiteral("18px"));
    QCOMPARE(box["padding"], QStringLiteral("0 14px"));
    QCOMPARE(box["font-size"], QStringLiteral("12px"));
    QCOMPARE(box["font-weight"], QStringLiteral("bold"));
    QCOMPARE(box["outline"], QStringLiteral("0"));
    QVERIFY(sheet.endsWith(Theme::choiceBtnStates(c, selector, override)));
    const QString round = Theme::choiceRoundStyle(c, selector, override);
    const Declarations circle = ruleOf(round, selector);
    QCOMPARE(circle["background-color"], idle);
    QCOMPARE(circle["color"], QStringLiteral("#c00000"));
    QCOMPARE(circle["border"], QStringLiteral("2px solid transparent"));
    QCOMPARE(circle["border-radius"], QStringLiteral("20px"));
    QCOMPARE(circle["font-weight"], QStringLiteral("bold"));
    QVERIFY(round.endsWith(Theme::choiceBtnStates(c, selector, override)));
}

void ThemeStylesTest::contextMenu()
{
    QCOMPARE(Theme::contextMenuStyle(markedTokens()),
             QStringLiteral(
                 "QMenu { background-color: #300000; border: none; border-radius: 16px; "
                 "padding: 6px; font-family: 'Plus Jakarta Sans', 'Inter', 'Segoe UI', sans-serif; "
                 "font-size: 14px; color: #c00000; letter-spacing: 0.3px; }"
                 "QMenu::item { padding: 0px; margin: 0px; background: transparent; }"
                 "QMenu::separator { height: 1px; background-color: #003000; "
                 "margin: 4px 10px; }"));
}

void ThemeStylesTest::scrollBars_data()
{
    QTest::addColumn<bool>("isUpright");
    QTest::addColumn<QSize>("bar");
    QTest::addColumn<QRect>("handle");
    QTest::newRow("vertical") << true << QSize(6, 100) << QRect(0, 0, 6, 50);
    QTest::newRow("horizontal") << false << QSize(100, 6) << QRect(0, 0, 50, 6);
}

void ThemeStylesTest::scrollBars()
{
    QFETCH(bool, isUpright);
    QFETCH(QSize, bar);
    QFETCH(QRect, handle);
    QScrollBar scrollBar(isUpright ? Qt::Vertical : Qt::Horizontal);
    scrollBar.setStyleSheet(Theme::scrollBarStyle());
    scrollBar.setRange(0, 100);
    scrollBar.setPageStep(100);
    scrollBar.resize(bar);
    scrollBar.show();
    QVERIFY(QTest::qWaitForWindowExposed(&scrollBar));
    const int thickness = isUpright ? scrollBar.sizeHint().width() : scrollBar.sizeHint().height();
    QCOMPARE(thickness, 6);
    QTest::mouseMove(&scrollBar, QRect(QPoint(), bar).bottomRight()); // beside the handle
    QTRY_COMPARE(Pixels::inkBox(Pixels::imageOf(scrollBar)), QRect());
    QTest::mouseMove(&scrollBar, handle.center());
    QTRY_COMPARE(Pixels::inkBox(Pixels::imageOf(scrollBar)), handle); // no arrows before it
    const int grey = qRound(0.6 * 128 + 0.4 * 255);
    const QColor shown = Pixels::imageOf(scrollBar).pixelColor(handle.center());
    QVERIFY2(Pixels::isNear(shown, QColor(grey, grey, grey), 1), qPrintable(shown.name()));
}

void ThemeStylesTest::keyComesFromTheSeed()
{
    const ColorTokens c = markedTokens();
    const QString selector = QStringLiteral("QPushButton");
    for (const QString& sheet :
         {Theme::actionBtnStyle(c), Theme::pillSecondaryStyle(c), Theme::iconChoiceStyle(c, false),
          Theme::iconChoiceStyle(c, true), Theme::choiceBtnStates(c, selector)}) {
        QVERIFY(sheet.contains(QStringLiteral("#0a6ba1"))); // key of the default seed
        QVERIFY(!sheet.contains(c.key));
    }
}

void ThemeStylesTest::sheetsFollowTheSeed()
{
    const ColorTokens c = markedTokens();
    const QString before = Theme::actionBtnStyle(c);
    Theme::seedColorHex = QStringLiteral("#ef4444");
    const QString after = Theme::actionBtnStyle(c);
    QVERIFY(after != before);
    QCOMPARE(ruleOf(after, "QPushButton:focus")["border-color"], QStringLiteral("#a34b46"));
}

void ThemeStylesTest::sheetsParse()
{
    // Qt warns of a sheet it can't parse when a widget is first styled by it.
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
    const ColorTokens c = Theme::colors();
    QPushButton button;
    const QString clear = QStringLiteral("transparent");
    for (const QString& sheet :
         {Theme::primaryBtnStyle(c), Theme::actionBtnStyle(c), Theme::actionBtnStyle(c, clear),
          Theme::destructiveBtnStyle(c), Theme::activeListeningStyle(c), Theme::iconBtnStyle(c),
          Theme::iconBtnStyle(c, clear), Theme::pillSecondaryStyle(c),
          Theme::iconChoiceStyle(c, false), Theme::iconChoiceStyle(c, true),
          Theme::choiceBtnStates(c, QStringLiteral("QPushButton")), Theme::smallPillStyle(c),
          Theme::pickerPillStyle(QStringLiteral("QPushButton"), c, c.primary, c.onPrimary, 34, 80),
          Theme::choicePillStyle(c, QStringLiteral("QPushButton")),
          Theme::choiceRoundStyle(c, QStringLiteral("QPushButton"))}) {
        button.setStyleSheet(sheet);
        QVERIFY(!button.grab().isNull());
    }
    QLabel label(QStringLiteral("text"));
    for (const QString& sheet :
         {Theme::fieldLabelStyle(c), Theme::dialogTitleStyle(c), Theme::groupHeaderStyle(c),
          Theme::bandTitleStyle(c), Theme::textStyle(c.primary, FontTokens::SizeSm),
          Theme::textOnCardStyle(c.primary, FontTokens::SizeSm), Theme::staticTitleStyle(c),
          Theme::separatorStyle(c)}) {
        label.setStyleSheet(sheet);
        QVERIFY(!label.grab().isNull());
    }
    QLineEdit line;
    line.setStyleSheet(Theme::fieldInputStyle(c));
    QVERIFY(!line.grab().isNull());
    QPlainTextEdit text;
    text.setStyleSheet(Theme::fieldInputStyle(c));
    QVERIFY(!text.grab().isNull());
    QMenu menu;
    menu.addSeparator();
    menu.addAction(QStringLiteral("entry"));
    menu.setStyleSheet(Theme::contextMenuStyle(c));
    QVERIFY(!menu.grab().isNull());
}

void ThemeStylesTest::surfaceGetters_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("light") << kForceLight;
    QTest::newRow("dark") << kForceDark;
}

void ThemeStylesTest::surfaceGetters()
{
    QFETCH(int, mode);
    Theme::forceTheme = mode;
    const ColorTokens c = Theme::colors();
    QCOMPARE(Theme::shellBg(), c.surfaceContainerHigh);
    QCOMPARE(Theme::panelBg(), c.surfaceContainerLow);
    QCOMPARE(Theme::boxBg(), c.surfaceContainerLowest);
}

void ThemeStylesTest::seedGetters_data()
{
    QTest::addColumn<QString>("seed");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("active");
    QTest::addColumn<QString>("track");
    const struct
    {
        const char* name;
        const char* seed;
        int mode;
        const char* active;
        const char* track;
    } rows[] = {
        {"default, light", "#0284c7", kForceLight, "#cfecfb", "#dfe7eb"},
        {"default, dark", "#0284c7", kForceDark, "#2b576d", "#212a2f"},
        {"red, light", "#ff0000", kForceLight, "#fbcfcf", "#ebdfdf"},
        {"red, dark", "#ff0000", kForceDark, "#6d2b2b", "#2f2121"},
        {"grey, light", "#808080", kForceLight, "#e5e5e5", "#e5e5e5"},
        {"grey, dark", "#808080", kForceDark, "#4c4c4c", "#282828"},
    };
    for (const auto& row : rows)
        QTest::newRow(row.name) << QString(row.seed) << row.mode << QString(row.active)
                                << QString(row.track);
}

void ThemeStylesTest::seedGetters()
{
    QFETCH(QString, seed);
    QFETCH(int, mode);
    Theme::forceTheme = mode;
    Theme::seedColorHex = seed;
    QTEST(Theme::boxActiveBg(), "active");
    QTEST(Theme::catTrackBg(), "track");
}

void ThemeStylesTest::fieldGetters_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("idle");
    QTest::addColumn<QString>("focus");
    QTest::newRow("light") << kForceLight << QStringLiteral("#dfe2e5") << QStringLiteral("#cbced1");
    QTest::newRow("dark") << kForceDark << QStringLiteral("#2b3035") << QStringLiteral("#3f4348");
}

void ThemeStylesTest::fieldGetters()
{
    QFETCH(int, mode);
    Theme::forceTheme = mode;
    const ColorTokens c = Theme::colors();
    QTEST(Theme::fieldIdleBg(c), "idle");
    QTEST(Theme::fieldFocusBg(c), "focus");
}

void ThemeStylesTest::fieldFillKeepsAPaleGround()
{
    ColorTokens c = markedTokens();
    c.surfaceContainerHighest = QStringLiteral("#c8cccf"); // saturation below the cap of 28
    QVERIFY(QColor(c.surfaceContainerHighest).hslSaturation() < 28);
    // The same but for one step, which whole numbers of HSL lose.
    QCOMPARE(Theme::fieldIdleBg(c), QStringLiteral("#c9cdcf"));
    c.surfaceContainerHighest = QStringLiteral("#ff0000");
    QCOMPARE(QColor(Theme::fieldIdleBg(c)).hslSaturation(), 28);
    QCOMPARE(QColor(Theme::fieldIdleBg(c)).lightness(), 128);
    c.surfaceContainerHighest = QStringLiteral("#777777"); // no hue at all
    QCOMPARE(Theme::fieldIdleBg(c), QStringLiteral("#777777"));
}

void ThemeStylesTest::iconChoiceForeground()
{
    Theme::forceTheme = kForceDark;
    QCOMPARE(Theme::iconChoiceFg(markedTokens(), true), QStringLiteral("#0b1f2e"));
    QCOMPARE(Theme::iconChoiceFg(markedTokens(), false), QStringLiteral("#c00000"));
}

void ThemeStylesTest::dialogBackground()
{
    QWidget dialog;
    const QFrame* frame = Theme::createFramelessDialogBackground(&dialog, markedTokens(), 80, 24);
    QCOMPARE(frame->objectName(), QStringLiteral("dialogBg"));
    QCOMPARE(frame->styleSheet(),
             QStringLiteral("QFrame#dialogBg { background-color: #001000; border: 1px solid "
                            "#002000; border-radius: 24px; padding: 24px; }"));
    const auto* shadow = qobject_cast<QGraphicsDropShadowEffect*>(frame->graphicsEffect());
    QVERIFY(shadow);
    QCOMPARE(shadow->blurRadius(), 20.0);
    QCOMPARE(shadow->color(), QColor(0, 0, 0, 80));
    QCOMPARE(shadow->offset(), QPointF(0.0, 4.0));
    QVERIFY(!frame->layout());
}

void ThemeStylesTest::dialogBackgroundWithoutPadding()
{
    QWidget dialog;
    const QFrame* frame = Theme::createFramelessDialogBackground(&dialog, markedTokens(), 60, 0);
    const Declarations box = ruleOf(frame->styleSheet(), "QFrame#dialogBg");
    QCOMPARE(box["padding"], QStringLiteral("0px"));
    QCOMPARE(box["border-radius"], QStringLiteral("24px"));
    QCOMPARE(box["border"], QStringLiteral("1px solid #002000"));
}

void ThemeStylesTest::dialogBackgroundIsOwnedByItsParent()
{
    auto dialog = std::make_unique<QWidget>();
    const QPointer<QFrame> frame =
        Theme::createFramelessDialogBackground(dialog.get(), markedTokens(), 60, 0);
    QCOMPARE(frame->parentWidget(), dialog.get());
    dialog.reset();
    QVERIFY(frame.isNull());
}

QTEST_MAIN(ThemeStylesTest)
#include "tst_themestyles.moc"
