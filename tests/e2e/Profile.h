// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Types.h"

#include <QByteArray>
#include <QVector>

#include <utility>

/// Documents for the program under test.
namespace Profile
{

/// One item; its id is "id-" and the name.
LauncherElement item(const QString& name, const QString& type, const QString& value);

/// A document in the current shape with these items in one section.
QByteArray document(const QVector<LauncherElement>& items);

/// The same with several sections, each a name and its items.
using Section = std::pair<QString, QVector<LauncherElement>>;
QByteArray documentOfSections(const QVector<Section>& sections);

/// The first document in the older shape.
QByteArray legacyDocument(const QVector<LauncherElement>& items);

/// Enough of every type to fill the panel.
QVector<LauncherElement> examples();

} // namespace Profile
