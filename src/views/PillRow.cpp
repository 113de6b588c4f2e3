// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "PillRow.h"

#include <algorithm>

void PillRow::layOut(const QVector<int>& widths, int spacing)
{
    m_spacing = spacing;
    m_lefts.resize(widths.size() + 1);
    int left = 0;
    for (qsizetype i = 0; i < widths.size(); ++i) {
        m_lefts[i] = left;
        left += widths.at(i) + spacing;
    }
    m_lefts.last() = left;
}

PillRow::Range PillRow::within(int left, int right) const
{
    const auto begin = m_lefts.cbegin();
    const auto end = m_lefts.cend() - 1;
    // The first whose right end lies beyond `left`, and the first that begins beyond `right`.
    const auto first = std::upper_bound(begin + 1, end + 1, left + m_spacing) - 1;
    const auto last = std::upper_bound(begin, end, right);
    const int from = int(first - begin);
    return {from, std::max(from, int(last - begin))};
}
