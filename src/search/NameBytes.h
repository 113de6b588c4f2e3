// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

/// Names as bytes: UTF-8, in which most of them take half of their memory. Halves of surrogate
/// pairs, which some systems allow in names and which UTF-8 has no place for, are written as if
/// they were characters, so that every name comes back as it was. Any thread.
namespace NameBytes
{

QByteArray fromText(QStringView name);

/// \param size of what `fromText` made.
QString toText(const char* bytes, qsizetype size);

} // namespace NameBytes
