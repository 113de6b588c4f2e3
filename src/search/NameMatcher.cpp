// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "NameMatcher.h"

#include <QtEndian>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>

namespace
{

constexpr quint64 kOnes = 0x0001000100010001;
constexpr quint64 kHighBits = kOnes << 15;

constexpr quint32 kFirstFactor = 0x9e3779b1; // two odd numbers without a pattern in their bits
constexpr quint32 kSecondFactor = 0x85ebca6b;
constexpr int kUnitBits = 16;
constexpr quint32 kPairSlots = 3 * kUnitBits;

/// A slot for two neighbours, spread evenly over all slots.
quint32 slotOf(QChar first, QChar second)
{
    const quint32 mixed = first.unicode() * kFirstFactor + second.unicode() * kSecondFactor;
    return ((mixed >> kUnitBits) * kPairSlots) >> kUnitBits;
}

} // namespace

NameMatcher::Pairs NameMatcher::pairsOf(QStringView name)
{
    quint64 set = 0;
    for (qsizetype i = 1; i < name.size(); ++i)
        set |= quint64(1) << slotOf(name[i - 1], name[i]);
    return {static_cast<quint16>(set), static_cast<quint16>(set >> kUnitBits),
            static_cast<quint16>(set >> (2 * kUnitBits))};
}

NameMatcher::NameMatcher(const QString& wanted) : m_wanted(wanted), m_pairs(pairsOf(wanted))
{
    Q_ASSERT(!wanted.isEmpty());
    for (std::size_t i = 0; i < m_head.size(); ++i) {
        if (static_cast<qsizetype>(i) < wanted.size())
            m_head[i] = kOnes * wanted.at(static_cast<qsizetype>(i)).unicode();
    }
}

qsizetype NameMatcher::indexIn(const QString& name, qsizetype from) const
{
    if (name.size() - from < m_wanted.size())
        return -1;
    if (isAt(QStringView(name).utf16() + from))
        return from;
    switch (m_wanted.size()) {
    case 1:
        return search<1>(name, from + 1);
    case 2:
        return search<2>(name, from + 1);
    case 3:
        return search<3>(name, from + 1);
    default:
        return search<Lanes>(name, from + 1);
    }
}

inline NameMatcher::Block NameMatcher::blockAt(const char16_t* units)
{
    return qFromLittleEndian<Block>(units); // the first lane is the lowest one everywhere
}

inline bool NameMatcher::isAt(const char16_t* position) const
{
    // The first one is compared in place, because mostly it differs.
    const char16_t* wanted = QStringView(m_wanted).utf16();
    return *position == *wanted && std::equal(position + 1, position + m_wanted.size(), wanted + 1);
}

/// Marks of the lanes in which the first `Length` code units of the text begin, 0 if there is none.
/// Above the lowest mark there may be false ones.
template <qsizetype Length>
inline NameMatcher::Block NameMatcher::headsAt(const char16_t* name) const
{
    Block difference = 0;
    for (qsizetype i = 0; i < Length; ++i)
        difference |= blockAt(name + i) ^ m_head[static_cast<std::size_t>(i)];
    // A lane of 0 borrows into its high bit. If there is none, no high bit is left.
    return (difference - kOnes) & ~difference & kHighBits;
}

template <qsizetype Length>
inline qsizetype NameMatcher::search(QStringView name, qsizetype from) const
{
    const qsizetype last = name.size() - m_wanted.size();
    // The last block ends with the last position, so that nothing is read behind the name. It may
    // overlap with the one before.
    const qsizetype lastBlock = last - Lanes + 1;
    if (lastBlock < from)
        return firstIn(name, from, last);
    for (qsizetype block = from;; block = std::min(block + Lanes, lastBlock)) {
        const Block heads = headsAt<Length>(name.utf16() + block);
        if (heads != 0) {
            const qsizetype position = block + std::countr_zero(heads) / kUnitBits;
            if (m_wanted.size() == Length)
                return position;
            const qsizetype found = firstIn(name, position, block + Lanes - 1);
            if (found >= 0)
                return found;
        }
        if (block == lastBlock)
            return -1;
    }
}

inline qsizetype NameMatcher::firstIn(QStringView name, qsizetype from, qsizetype last) const
{
    for (qsizetype position = from; position <= last; ++position) {
        if (isAt(name.utf16() + position))
            return position;
    }
    return -1;
}
