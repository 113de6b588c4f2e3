// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Calculator.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace
{

void require(bool condition)
{
    if (!condition)
        std::abort();
}

/// Rules that hold for every result that has a value.
void checkValue(const QString& text, const Calculator::Result& result)
{
    require(Calculator::looksLikeStart(text));
    require(result.expression == text.trimmed());

    bool isNumber = false;
    const double value = result.value.toDouble(&isNumber);
    require(isNumber && std::isfinite(value));
    // What is shown is shown the same when it is read again.
    require(Calculator::formatNumber(value) == result.value);

    const Calculator::Result padded = Calculator::evaluate("\n " + text + "\t");
    require(padded.ok && padded.value == result.value && padded.expression == result.expression);

    // Parentheses around a whole expression change nothing, but may nest one level too deep.
    const Calculator::Result nested = Calculator::evaluate("0+(" + text + ")");
    require(!nested.ok || nested.value == result.value);

    const LauncherElement element = Calculator::asElement(result);
    require(element.id.isEmpty() && element.value == result.value);
    require(element.name.startsWith(result.expression) && element.name.endsWith(result.value));
}

} // namespace

/// Any text is evaluated or refused, by the same rules each time.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const Calculator::Result result = Calculator::evaluate(text);
    if (result.ok)
        checkValue(text, result);
    else
        require(result.expression.isEmpty() && result.value.isEmpty());
    return 0;
}
