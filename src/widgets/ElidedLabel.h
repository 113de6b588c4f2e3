// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QLabel>

/// A label for a name that somebody has given: one line, as it stands, elided where its place ends.
/// It asks for no width, so it never widens what it is in, and of a long name what is beyond the
/// visible part costs nothing. GUI thread only.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(const QString& text, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};
