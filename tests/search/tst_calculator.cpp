// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Calculator.h"
#include "TestHome.h"

#include <QTest>

#include <cmath>
#include <limits>

class CalculatorTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void looksLikeStart_data();
    void looksLikeStart();
    void evaluates_data();
    void evaluates();
    void refuses_data();
    void refuses();
    void nestingIsBounded_data();
    void nestingIsBounded();
    void hugeTexts_data();
    void hugeTexts();
    void surroundingBlanksAreNoPartOfTheExpression();
    void parserStopsAtWhatItCannotRead();
    void parserReportsOperators_data();
    void parserReportsOperators();
    void formatNumber_data();
    void formatNumber();
    void asElementIsASnippet();
};

namespace
{

constexpr int kMegabyte = 1024 * 1024;

QString nested(int levels)
{
    return "1+" + QString(levels, '(') + "1" + QString(levels, ')');
}

} // namespace

void CalculatorTest::looksLikeStart_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("looks");
    QTest::newRow("digit") << "1" << true;
    QTest::newRow("blanks before a digit") << " \t\n1+1" << true;
    QTest::newRow("digit before letters") << "7zip" << true;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("blanks") << "  " << false;
    QTest::newRow("parenthesis") << "(1+2)*3" << false;
    QTest::newRow("minus") << "-1+2" << false;
    QTest::newRow("plus") << "+1+2" << false;
    QTest::newRow("point") << ".5+1" << false;
    QTest::newRow("letter") << "x1" << false;
    QTest::newRow("digit of another script") << "٣+1" << true;
}

void CalculatorTest::looksLikeStart()
{
    QFETCH(QString, text);
    QTEST(Calculator::looksLikeStart(text), "looks");
}

void CalculatorTest::evaluates_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("value");
    const auto row = [](const char* text, const char* value) {
        QTest::newRow(text) << QString(text) << QString(value);
    };
    row("1+2*3", "7");
    row("2*(1+2)", "6");
    row("2--3", "5");
    row("2*-3", "-6");
    row("2+-+-3", "5");
    row("10-3-2", "5");
    row("100/10/2", "5");
    row("2*3+4*5", "26");
    row("12/3*4", "16");
    row("2-(3-(4-5))", "-2");
    row("2 * ( 3 + 4 )", "14");
    QTest::newRow("any white space") << "1\t+\n2"
                                     << "3";
    row("1/3", "0.3333333333");
    row("2/3", "0.6666666667");
    row("0.1+0.2", "0.3");
    row("1-1", "0");
    row("0*-1", "0");
    row("0/5", "0");
    row("1-3", "-2");
    row("1+.5", "1.5");
    row("5.+1", "6");
    row("007+1", "8");
    row("100000*100000", "1e+10");
    row("99999*99999", "9999800001");
    row("1/100000", "1e-05");
    row("12345678901+0", "1.23456789e+10");
    row("1/(2-1)", "1");
}

void CalculatorTest::evaluates()
{
    QFETCH(QString, text);
    QFETCH(QString, value);
    const Calculator::Result result = Calculator::evaluate(text);
    QVERIFY(result.ok);
    QCOMPARE(result.value, value);
    QCOMPARE(result.expression, text);
}

void CalculatorTest::refuses_data()
{
    QTest::addColumn<QString>("text");
    const auto row = [](const char* text) { QTest::newRow(text) << QString(text); };
    QTest::newRow("empty") << QString();
    row(" ");
    row("7");
    row("7.5");
    row("1(2)");
    row("7+");
    row("7*");
    row("7 / 0");
    row("7/0.0");
    row("7/-0");
    row("7/(1-1)");
    row("0/0");
    row("1/(1/0)");
    row("1 2");
    row("1 2+3");
    row("1 000+1");
    row("1.2.3+1");
    row("1e3+1");
    row("1,5+1");
    row("1+.");
    row("1+");
    row("1+)");
    row("1+2)");
    row("5*(1+2");
    row("1+(");
    row("1+()");
    row("1**2");
    row("1//2");
    row("1^2");
    row("5%2");
    row("1+2=");
    row("1+pi");
    row("1+0x10");
    row("1+inf");
    row("1+nan");
    row("(1+2)*3");
    row("-1+2");
    row("7zip");
    row("1+2;");
    row("1×2");
    row("１＋１");
    row("٣+1");
    row("1+٣");
    QTest::newRow("embedded null") << "1+1" + QString(QChar(0));
    QTest::newRow("lone surrogate") << "1+" + QString(QChar(0xD835));
    QTest::newRow("overflow to infinity") << "1" + QString("*1000000000").repeated(40);
    QTest::newRow("infinity less infinity")
        << QString("1%1-1%1").arg(QString("*1000000000").repeated(40));
    QTest::newRow("number beyond the range") << "1+" + QString(400, '9');
}

void CalculatorTest::refuses()
{
    QFETCH(QString, text);
    const Calculator::Result result = Calculator::evaluate(text);
    QVERIFY(!result.ok);
    QCOMPARE(result.expression, QString());
    QCOMPARE(result.value, QString());
}

void CalculatorTest::nestingIsBounded_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("ok");
    const int most = Calculator::MaxDepth;
    QTest::newRow("parentheses at the bound") << nested(most) << true;
    QTest::newRow("parentheses beyond it") << nested(most + 1) << false;
    QTest::newRow("parentheses far beyond it") << nested(100000) << false;
    QTest::newRow("signs at the bound") << "1+" + QString(most, '-') + "1" << true;
    QTest::newRow("signs beyond it") << "1+" + QString(most + 1, '-') + "1" << false;
    QTest::newRow("signs far beyond it") << "1+" + QString(100000, '+') + "1" << false;
    QTest::newRow("both at the bound")
        << "1+" + QString("-(").repeated(most / 2) + "1" + QString(most / 2, ')') << true;
    QTest::newRow("both beyond it")
        << "1+" + QString("-(").repeated(most / 2 + 1) + "1" + QString(most / 2 + 1, ')') << false;
    QTest::newRow("both far beyond it") << "1+" + QString("-(").repeated(100000) << false;
    QTest::newRow("side by side is not inside each other")
        << "1" + QString("+(-(+1))").repeated(10 * most) << true;
}

void CalculatorTest::nestingIsBounded()
{
    QFETCH(QString, text);
    QTEST(Calculator::evaluate(text).ok, "ok");
}

void CalculatorTest::hugeTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("value");
    QTest::newRow("sum") << "0" + QString("+1").repeated(kMegabyte / 2) << "524288";
    QTest::newRow("product") << "1" + QString("*1").repeated(kMegabyte / 2) << "1";
    QTest::newRow("blanks") << "1" + QString(kMegabyte, ' ') + "+1"
                            << "2";
    QTest::newRow("decimals") << "0." + QString(kMegabyte, '3') + "+0"
                              << "0.3333333333";
    QTest::newRow("leading zeros") << QString(kMegabyte, '0') + "1+1"
                                   << "2";
    QTest::newRow("digits") << QString(kMegabyte, '9') + "+1" << QString();
    QTest::newRow("opened") << "1+" + QString(kMegabyte, '(') << QString();
    QTest::newRow("letters") << "1" + QString(kMegabyte, 'x') << QString();
}

void CalculatorTest::hugeTexts()
{
    QFETCH(QString, text);
    QTEST(Calculator::evaluate(text).value, "value");
}

void CalculatorTest::surroundingBlanksAreNoPartOfTheExpression()
{
    const Calculator::Result result = Calculator::evaluate(" \t 1 + 2 \n");
    QVERIFY(result.ok);
    QCOMPARE(result.expression, "1 + 2");
    QCOMPARE(result.value, "3");
}

void CalculatorTest::parserStopsAtWhatItCannotRead()
{
    const QString text = "1+2 3";
    Calculator::Parser parser(text);
    QCOMPARE(parser.parseExpr(), 3.0);
    QVERIFY(parser.ok);
    QVERIFY(!parser.atEnd());
    QCOMPARE(parser.peek(), QChar('3'));

    const QString twoPoints = "1.2.3+1";
    Calculator::Parser stopping(twoPoints);
    QCOMPARE(stopping.parseExpr(), 1.2);
    QVERIFY(stopping.ok);
    QCOMPARE(stopping.i, 3);

    const QString broken = "1+*2";
    Calculator::Parser failing(broken);
    QCOMPARE(failing.parseExpr(), 0.0);
    QVERIFY(!failing.ok);

    const QString nothing = "  ";
    Calculator::Parser empty(nothing);
    empty.skipSpaces();
    QVERIFY(empty.atEnd());
    QCOMPARE(empty.peek(), QChar());
}

void CalculatorTest::parserReportsOperators_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("sawOp");
    QTest::newRow("number") << "1" << false;
    QTest::newRow("sign") << "--+1" << false;
    QTest::newRow("parentheses") << "((1))" << false;
    QTest::newRow("sum") << "1+1" << true;
    QTest::newRow("product inside") << "-(2*3)" << true;
}

void CalculatorTest::parserReportsOperators()
{
    QFETCH(QString, text);
    Calculator::Parser parser(text);
    parser.parseExpr();
    QVERIFY(parser.ok);
    QTEST(parser.sawOp, "sawOp");
}

void CalculatorTest::formatNumber_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<QString>("text");
    QTest::newRow("zero") << 0.0 << "0";
    QTest::newRow("negative zero") << -0.0 << "0";
    QTest::newRow("ten digits") << 1234567890.0 << "1234567890";
    QTest::newRow("eleven digits") << 12345678901.0 << "1.23456789e+10";
    QTest::newRow("fraction") << -2.5 << "-2.5";
    QTest::newRow("rounded") << 0.1 + 0.2 << "0.3";
    QTest::newRow("tiny") << 1e-300 << "1e-300";
    QTest::newRow("infinity") << std::numeric_limits<double>::infinity() << QString();
    QTest::newRow("negative infinity") << -std::numeric_limits<double>::infinity() << QString();
    QTest::newRow("not a number") << std::nan("") << QString();
}

void CalculatorTest::formatNumber()
{
    QFETCH(double, number);
    QTEST(Calculator::formatNumber(number), "text");
}

void CalculatorTest::asElementIsASnippet()
{
    const LauncherElement element = Calculator::asElement(Calculator::evaluate(" 1+2*3 "));
    QCOMPARE(element, (LauncherElement{"", "1+2*3 = 7", "Snippet", "7", "glyph:ea5f"}));
    QCOMPARE(Calculator::GlyphCalculate, 59999U);
}

QTEST_MAIN(CalculatorTest)
#include "tst_calculator.moc"
