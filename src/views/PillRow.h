// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QVector>

/// Where each of many pills in a row stands, whether it has been made or not. Without a state
/// beyond the places; all numbers are pixels from the left end of the row.
class PillRow
{
public:
    /// Places in the row; `end` is the one behind the last.
    struct Range
    {
        int first = 0;
        int end = 0;
        bool operator==(const Range&) const = default;
    };

    /// Lays pills of these widths in a row, each `spacing` apart from the next.
    void layOut(const QVector<int>& widths, int spacing);

    int count() const { return int(m_lefts.size()) - 1; }
    int left(int index) const { return m_lefts.at(index); }
    int width(int index) const { return m_lefts.at(index + 1) - m_lefts.at(index) - m_spacing; }

    /// The room that the pills of a range take, with the spacing behind each of them.
    int room(const Range& range) const { return m_lefts.at(range.end) - m_lefts.at(range.first); }

    /// The pills of which some part lies from `left` to `right`; none is an empty range.
    Range within(int left, int right) const;

private:
    QVector<int> m_lefts{0}; ///< of each pill, and of one more that would follow
    int m_spacing = 0;
};
