// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SoftBreaks.h"

#include <QTextBoundaryFinder>

QString withSoftBreaks(const QString& text, int longest)
{
    constexpr QChar kZeroWidthSpace(0x200B);
    QString result;
    QTextBoundaryFinder breaks(QTextBoundaryFinder::Line, text);
    qsizetype stretchLength = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        breaks.setPosition(i);
        stretchLength = breaks.isAtBoundary() ? 1 : stretchLength + 1;
        if (stretchLength > longest && !text.at(i).isLowSurrogate()) {
            result += kZeroWidthSpace;
            stretchLength = 1;
        }
        result += text.at(i);
    }
    return result;
}
