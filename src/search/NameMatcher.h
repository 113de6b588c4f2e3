// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define ORLIMO_WIDE_COMPARISON
#endif

/// Looks for one text in very many short names, byte by byte. Searches made for long texts spend
/// most of their time here on beginning and ending. Any thread.
class NameMatcher
{
public:
    struct Match
    {
        bool isThere;
        bool begins; ///< the name begins with it

        bool operator==(const Match& other) const = default;
    };

    /// So many bytes behind every name must be readable, whatever they hold.
    static constexpr qsizetype Padding = 32;

    /// \param wanted not empty.
    explicit NameMatcher(QByteArray wanted) : m_wanted(std::move(wanted))
    {
        Q_ASSERT(!m_wanted.isEmpty());
#ifdef ORLIMO_WIDE_COMPARISON
        m_firsts = _mm_set1_epi8(m_wanted.front());
        m_lasts = _mm_set1_epi8(m_wanted.back());
#endif
    }

    qsizetype size() const
    {
        return m_wanted.size();
    }

    /// Whether the text is in a name. As fast as the processor allows.
    Match matchIn(const char* name, qsizetype size) const
    {
#ifdef ORLIMO_WIDE_COMPARISON
        return matchByBlocks(name, size);
#else
        return matchByBytes(name, size);
#endif
    }

    /// The same on every processor.
    Match matchByBytes(const char* name, qsizetype size) const
    {
        const char* position = name;
        for (qsizetype left = size - m_wanted.size() + 1; left > 0;) {
            const void* head =
                std::memchr(position, m_wanted.front(), static_cast<std::size_t>(left));
            if (!head)
                break;
            const auto* found = static_cast<const char*>(head);
            if (isAt(found))
                return {true, found == name};
            left -= found + 1 - position;
            position = found + 1;
        }
        return {false, false};
    }

#ifdef ORLIMO_WIDE_COMPARISON
    /// The same with 32 places in one go, which is all of most names. No branch depends on whether
    /// a short text is in it: half of the time it would be mispredicted.
    Match matchByBlocks(const char* name, qsizetype size) const
    {
        const qsizetype places = size - m_wanted.size() + 1;
        const quint32 heads = headsAt(name, places);
        if (places > Padding) [[unlikely]]
            return matchBehind(name, places, heads);
        return {heads != 0, (heads & 1) != 0};
    }
#endif

private:
    bool isAt(const char* position) const
    {
        return std::equal(m_wanted.begin(), m_wanted.end(), position);
    }

#ifdef ORLIMO_WIDE_COMPARISON
    /// A bit for the first place where the text is, if any, and perhaps for some behind it.
    quint32 headsAt(const char* block, qsizetype places) const
    {
        constexpr int Half = Padding / 2;
        // Of a text that is longer than the name, the end is looked for where there is memory.
        const qsizetype reach = m_wanted.size() - 1;
        const char* ends = block + std::min(reach, reach + places);
        const quint64 inside = (quint64(1) << std::clamp<qsizetype>(places, 0, Padding)) - 1;
        quint32 heads =
            (halfHeadsAt(block, ends) | (halfHeadsAt(block + Half, ends + Half) << Half)) &
            static_cast<quint32>(inside);
        // First and last byte are right so far, which is all of a short text.
        while (m_wanted.size() > 2 && heads != 0 && !isAt(block + std::countr_zero(heads)))
            heads &= heads - 1;
        return heads;
    }

    quint32 halfHeadsAt(const char* firsts, const char* lasts) const
    {
        const __m128i first = _mm_cmpeq_epi8(blockAt(firsts), m_firsts);
        const __m128i last = _mm_cmpeq_epi8(blockAt(lasts), m_lasts);
        return static_cast<quint32>(_mm_movemask_epi8(_mm_and_si128(first, last)));
    }

    static __m128i blockAt(const char* bytes)
    {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
    }

    /// In a name that is longer than a block, of which the first one has been looked at.
    Match matchBehind(const char* name, qsizetype places, quint32 heads) const
    {
        const bool begins = (heads & 1) != 0;
        for (qsizetype block = Padding; heads == 0 && block < places; block += Padding)
            heads = headsAt(name + block, places - block);
        return {heads != 0, begins};
    }

    __m128i m_firsts;
    __m128i m_lasts;
#endif

    QByteArray m_wanted;
};
