// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QSettings>

/// The text of an INI file in the form that `QSettings` gives it, except that no value is ever
/// made into an object: Qt runs what stands in "@Variant(...)" through the reader of any type it
/// knows, whoever wrote it. Pure: any thread, no state, no I/O.
namespace IniText
{

/// A value of a kind that isn't read. It is kept as it stands, for whoever wrote it.
struct RawValue
{
    QByteArray text;
};

/// Never fails: a line that makes no sense is left out. The values are texts, lists of texts,
/// invalid ones for what Qt calls an empty list, and `RawValue`. Of a doubled key the last counts.
QSettings::SettingsMap parse(const QByteArray& text);

/// \param values texts, lists of texts, `RawValue`, invalid ones, and what turns into a text.
QByteArray format(const QSettings::SettingsMap& values);

} // namespace IniText

Q_DECLARE_METATYPE(IniText::RawValue)
