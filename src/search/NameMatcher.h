// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringView>
#include <QtGlobal>

#include <array>

/// Looks for one text in very many short names, several times as fast as the searches of QString:
/// these are made for long texts, and spend most of their time here on beginning and ending.
/// Compares code unit by code unit. Any thread.
class NameMatcher
{
public:
    /// The pairs of neighbours in a name, without much precision: what is in the name is in the
    /// set, but the set may seem to hold more. Kept with a name, it tells most misses without a
    /// look at the name. In small units, to fit where a larger number would take its alignment.
    using Pairs = std::array<quint16, 3>;
    static constexpr Pairs AllPairs = {0xffff, 0xffff, 0xffff};

    static Pairs pairsOf(QStringView name);

    /// \param wanted not empty.
    explicit NameMatcher(const QString& wanted);

    /// False only if no name with these pairs contains the text.
    bool canBeIn(const Pairs& pairs) const
    {
        const int missing =
            (m_pairs[0] & ~pairs[0]) | (m_pairs[1] & ~pairs[1]) | (m_pairs[2] & ~pairs[2]);
        return missing == 0;
    }

    /// Where the text begins in the name, at `from` or behind it, which is where a first look
    /// finds it fastest; -1 if nowhere. \param from from 0 to the length of the name.
    qsizetype indexIn(const QString& name, qsizetype from) const;

private:
    // A block is a number that holds four code units, its lanes, to be compared in one go.
    using Block = quint64;
    static constexpr qsizetype Lanes = sizeof(Block) / sizeof(char16_t);

    static Block blockAt(const char16_t* units);
    bool isAt(const char16_t* position) const;
    template <qsizetype Length>
    Block headsAt(const char16_t* name) const;
    template <qsizetype Length>
    qsizetype search(QStringView name, qsizetype from) const;
    qsizetype firstIn(QStringView name, qsizetype from, qsizetype last) const;

    QString m_wanted;
    Pairs m_pairs;
    std::array<Block, Lanes> m_head = {}; ///< for each of the first code units four copies of it
};
