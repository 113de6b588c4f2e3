// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QFrame>
#include <QString>

class QMargins;

/// The title of a group of settings, with a line behind it to the end of the row. GUI thread only.
class GroupHeader : public QFrame
{
    Q_OBJECT

public:
    GroupHeader(const QString& title, const QMargins& margins, QWidget* parent = nullptr);
};
