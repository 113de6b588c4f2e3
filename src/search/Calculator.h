// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IconHelper.h"
#include "Types.h"

#include <QChar>
#include <QString>
#include <QtGlobal>

/// Answers simple arithmetic: the four operations, signs, parentheses, decimal numbers.
/// Pure functions; the time is linear in the length of the text.
class Calculator
{
public:
    struct Result
    {
        bool ok = false;    ///< false: both texts are empty
        QString expression; ///< the input without surrounding blanks
        QString value;      ///< as `formatNumber` gives it
    };

    /// One pass of recursive descent over a text that outlives it. Every step skips blanks before
    /// its tokens; after an error `ok` is false and all steps return 0.
    struct Parser
    {
        explicit Parser(const QString& text) : s(text) {}

        void skipSpaces();
        bool atEnd() const;
        QChar peek() const; ///< the character under the cursor, null at the end

        double parseExpr();
        double parseTerm();
        double parseFactor();
        double parsePrimary();

        const QString& s;
        int i = 0;
        bool ok = true;
        bool sawOp = false; ///< a binary operator was consumed
        int depth = 0;      ///< signs and parentheses that are open at the cursor

    private:
        double parseNumber();
        double fail();
    };

    static constexpr uint GlyphCalculate = Glyph::Calculate; ///< 59999
    /// So many signs and parentheses may stand inside each other; an expression with more fails.
    /// Nobody types that many, and the stack of every thread holds them.
    static constexpr int MaxDepth = 256;

    Calculator() = delete;

    /// True if the first character that is no blank is a digit. An expression can't start with a
    /// sign or a parenthesis, so that ordinary queries aren't taken for one.
    static bool looksLikeStart(const QString& text);

    /// Fails for what is no complete expression, for a bare number, and for a value that is not
    /// finite.
    static Result evaluate(const QString& text);

    /// The item that puts the value on the clipboard; it has no id.
    static LauncherElement asElement(const Result& result);

    /// Up to ten significant digits, "." as the decimal mark, no grouping, scientific form for
    /// the very large and very small; empty if `v` is not finite.
    static QString formatNumber(double v);
};
