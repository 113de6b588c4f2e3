// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "NameBytes.h"

#include <QByteArrayView>
#include <QStringDecoder>

namespace
{

// A half of a pair as three bytes: the first is always this one, the second from this one on.
constexpr char kHalfFirst = '\xed';
constexpr uchar kHalfSecond = 0xa0;
constexpr qsizetype kHalfSize = 3;

bool isHalfAt(const char* byte, const char* end)
{
    return end - byte >= kHalfSize && byte[0] == kHalfFirst &&
           static_cast<uchar>(byte[1]) >= kHalfSecond;
}

const char* findHalf(const char* byte, const char* end)
{
    while (byte != end && !isHalfAt(byte, end))
        ++byte;
    return byte;
}

QChar halfFrom(const char* bytes)
{
    constexpr int Bits = 6;
    constexpr uint Mask = 0x3f;
    return QChar(0xd000 | ((static_cast<uchar>(bytes[1]) & Mask) << Bits) |
                 (static_cast<uchar>(bytes[2]) & Mask));
}

/// Unlike `QString::fromUtf8` with all of it: that leaves out a byte order mark at the beginning.
QString fromUtf8(const char* bytes, qsizetype size)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                     QStringDecoder::Flag::ConvertInitialBom);
    return decoder(QByteArrayView(bytes, size));
}

QByteArray halfToBytes(QChar half)
{
    constexpr int Bits = 6;
    constexpr uint Mask = 0x3f;
    constexpr uint Follower = 0x80;
    QByteArray bytes(1, kHalfFirst);
    bytes.append(static_cast<char>(Follower | ((half.unicode() >> Bits) & Mask)));
    bytes.append(static_cast<char>(Follower | (half.unicode() & Mask)));
    return bytes;
}

} // namespace

QByteArray NameBytes::fromText(QStringView name)
{
    if (name.isValidUtf16())
        return name.toUtf8();
    QByteArray bytes;
    for (qsizetype i = 0; i < name.size(); ++i) {
        const bool isPair =
            name[i].isHighSurrogate() && i + 1 < name.size() && name[i + 1].isLowSurrogate();
        if (name[i].isSurrogate() && !isPair) {
            bytes += halfToBytes(name[i]);
        } else {
            bytes += name.sliced(i, isPair ? 2 : 1).toUtf8();
            i += isPair ? 1 : 0;
        }
    }
    return bytes;
}

QString NameBytes::toText(const char* bytes, qsizetype size)
{
    const char* const end = bytes + size;
    QString text;
    while (true) {
        const char* half = findHalf(bytes, end);
        text += fromUtf8(bytes, half - bytes);
        if (half == end)
            return text;
        text += halfFrom(half);
        bytes = half + kHalfSize;
    }
}
