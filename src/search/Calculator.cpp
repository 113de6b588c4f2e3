// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Calculator.h"

#include <cmath>

namespace
{

constexpr int kSignificantDigits = 10;

} // namespace

void Calculator::Parser::skipSpaces()
{
    while (!atEnd() && s.at(i).isSpace())
        ++i;
}

bool Calculator::Parser::atEnd() const
{
    return i >= s.size();
}

QChar Calculator::Parser::peek() const
{
    return atEnd() ? QChar() : s.at(i);
}

double Calculator::Parser::parseExpr()
{
    double value = parseTerm();
    while (ok) {
        skipSpaces();
        const QChar op = peek();
        if (op != u'+' && op != u'-')
            return value;
        ++i;
        sawOp = true;
        const double right = parseTerm();
        value = op == u'+' ? value + right : value - right;
    }
    return 0.0;
}

double Calculator::Parser::parseTerm()
{
    double value = parseFactor();
    while (ok) {
        skipSpaces();
        const QChar op = peek();
        if (op != u'*' && op != u'/')
            return value;
        ++i;
        sawOp = true;
        const double right = parseFactor();
        if (op == u'*')
            value *= right;
        else if (right == 0.0)
            return fail();
        else
            value /= right;
    }
    return 0.0;
}

double Calculator::Parser::parseFactor()
{
    // Every way to go deeper leads through here, so this one bound holds for signs and
    // parentheses alike.
    if (depth > MaxDepth)
        return fail();
    ++depth;
    skipSpaces();
    double value = 0.0;
    if (peek() == u'-') {
        ++i;
        value = -parseFactor();
    } else if (peek() == u'+') {
        ++i;
        value = parseFactor();
    } else {
        value = parsePrimary();
    }
    --depth;
    return ok ? value : 0.0;
}

double Calculator::Parser::parsePrimary()
{
    skipSpaces();
    if (atEnd())
        return fail();
    if (peek() != u'(')
        return parseNumber();
    ++i;
    const double value = parseExpr();
    skipSpaces();
    if (!ok || peek() != u')')
        return fail();
    ++i;
    return value;
}

double Calculator::Parser::parseNumber()
{
    const int start = i;
    bool hasPoint = false;
    while (peek().isDigit() || (peek() == u'.' && !hasPoint)) {
        hasPoint = hasPoint || peek() == u'.';
        ++i;
    }
    // Nothing collected fails here as well, for an empty text is no number.
    bool isNumber = false;
    const double value = s.mid(start, i - start).toDouble(&isNumber);
    return isNumber ? value : fail();
}

double Calculator::Parser::fail()
{
    ok = false;
    return 0.0;
}

bool Calculator::looksLikeStart(const QString& text)
{
    const QString trimmed = text.trimmed();
    return !trimmed.isEmpty() && trimmed.front().isDigit();
}

Calculator::Result Calculator::evaluate(const QString& text)
{
    if (!looksLikeStart(text))
        return {};
    const QString expr = text.trimmed();
    Parser parser(expr);
    const double number = parser.parseExpr();
    parser.skipSpaces();
    if (!parser.ok || !parser.atEnd() || !parser.sawOp)
        return {};
    const QString value = formatNumber(number);
    if (value.isEmpty())
        return {};
    return {true, expr, value};
}

LauncherElement Calculator::asElement(const Result& result)
{
    LauncherElement element;
    element.name = result.expression + QStringLiteral(" = ") + result.value;
    element.shortcutType = ItemType::Snippet;
    element.value = result.value;
    element.iconPath = IconHelper::glyphToken(GlyphCalculate);
    return element;
}

QString Calculator::formatNumber(double v)
{
    if (!std::isfinite(v))
        return {};
    // Said here, so that no library decides whether the sign of a negative zero shows.
    if (v == 0.0)
        return QStringLiteral("0");
    return QString::number(v, 'g', kSignificantDigits);
}
