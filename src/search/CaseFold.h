// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QChar>
#include <QString>
#include <QStringView>
#include <QVarLengthArray>

/// Keys of texts whose case doesn't matter: two of them are equal exactly if
/// `QString::compare(..., Qt::CaseInsensitive)` finds the texts equal. Any thread.
namespace CaseFold
{

using Units = QVarLengthArray<QChar, 256>;

/// As many units as the text has, so that a part of it has the same part of these as its key,
/// unless it begins or ends within a surrogate pair.
Units unitsOf(QStringView text);

/// The same as a string.
QString keyOf(QStringView text);

} // namespace CaseFold
