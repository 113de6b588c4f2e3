// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ToolTips.h"

#include <QTextDocument>

namespace
{

constexpr char16_t kEllipsis = u'\u2026';

} // namespace

QString ToolTips::plain(const QString& text)
{
    QString shown = text;
    if (text.size() > MaxLength) {
        const bool isWithinPair = text.at(MaxLength - 1).isHighSurrogate();
        shown = text.first(isWithinPair ? MaxLength - 1 : MaxLength) + kEllipsis;
    }
    // Left alone otherwise, since what is marked up is broken into lines.
    return Qt::mightBeRichText(shown) ? Qt::convertFromPlainText(shown, Qt::WhiteSpaceNormal)
                                      : shown;
}
