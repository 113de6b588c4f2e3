// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FileStorePlaces.h"

#include "CaseFold.h"
#include "DirectoryReader.h"
#include "NameBytes.h"

#include <algorithm>

namespace
{

Qt::CaseSensitivity pathCase()
{
    static const Qt::CaseSensitivity caseSensitivity = Platform::pathCaseSensitivity();
    return caseSensitivity;
}

class Hash
{
public:
    void add(quint32 unit)
    {
        constexpr quint32 Factor = 0x9e3779b1; // odd, without a pattern in its bits
        m_value = (m_value ^ unit) * Factor;
        m_value ^= m_value >> 15;
    }

    quint32 value() const { return m_value; }

private:
    quint32 m_value = 0;
};

bool isAscii(std::string_view name)
{
    return std::all_of(name.begin(), name.end(),
                       [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

unsigned char lowerOf(char letter)
{
    return static_cast<unsigned char>(letter >= 'A' && letter <= 'Z' ? letter + ('a' - 'A')
                                                                     : letter);
}

} // namespace

std::string_view StoredNames::viewOf(const QByteArray& bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

QString StoredNames::textOf(std::string_view name)
{
    return NameBytes::toText(name.data(), static_cast<qsizetype>(name.size()));
}

bool StoredNames::isSame(std::string_view left, std::string_view right)
{
    if (left == right)
        return true;
    return pathCase() == Qt::CaseInsensitive &&
           textOf(left).compare(textOf(right), Qt::CaseInsensitive) == 0;
}

quint32 StoredNames::hashOf(std::string_view name)
{
    Hash hash;
    if (pathCase() == Qt::CaseSensitive) {
        for (const char byte : name)
            hash.add(static_cast<unsigned char>(byte));
    } else if (isAscii(name)) {
        for (const char byte : name)
            hash.add(lowerOf(byte));
    } else {
        for (const QChar unit : CaseFold::unitsOf(textOf(name)))
            hash.add(unit.unicode());
    }
    return hash.value();
}

void FileStore::PlaceTable::add(Folder folder, QStringView name)
{
    const QByteArray& bytes = m_names.emplace_back(NameBytes::fromText(name));
    m_places.emplace(keyOf(folder, StoredNames::hashOf(StoredNames::viewOf(bytes))),
                     m_names.size() - 1);
    m_isWanted[folder] = true;
}
