// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileStore.h"

#include <QByteArray>
#include <QString>
#include <QStringView>
#include <QtGlobal>

#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <vector>

/// Names as `NameBytes` has them. Any thread.
namespace StoredNames
{

std::string_view viewOf(const QByteArray& bytes);
QString textOf(std::string_view name);

/// Whether two names are the same to the system.
bool isSame(std::string_view left, std::string_view right);

/// Of names that are the same to the system, the same.
quint32 hashOf(std::string_view name);

} // namespace StoredNames

/// Places in a list, among which those of an entry are found by its name.
class FileStore::PlaceTable
{
public:
    /// \param folders as many as the list has.
    explicit PlaceTable(std::size_t folders) : m_isWanted(folders) {}

    /// The places count on from 0.
    void add(Folder folder, QStringView name);
    void skip() { m_names.emplace_back(); } ///< a place of which no entry can be

    /// Whether any of the places lies in that folder.
    bool hasIn(Folder folder) const { return m_isWanted[folder]; }

    /// Calls `function(number, isSpelledAlike)` for each of the places that an entry has.
    template <typename Function>
    void visit(Folder folder, std::string_view name, Function&& function) const
    {
        const quint32 hash = StoredNames::hashOf(name);
        const auto [first, behind] = m_places.equal_range(keyOf(folder, hash));
        for (auto place = first; place != behind; ++place) {
            const std::string_view wanted = StoredNames::viewOf(m_names[place->second]);
            if (wanted == name)
                function(place->second, true);
            else if (StoredNames::isSame(wanted, name))
                function(place->second, false);
        }
    }

private:
    static quint64 keyOf(Folder folder, quint32 hash) { return quint64(folder) << 32 | hash; }

    std::vector<bool> m_isWanted;
    std::vector<QByteArray> m_names;
    std::unordered_multimap<quint64, std::size_t> m_places;
};
